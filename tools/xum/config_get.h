#pragma once

#include <string>

/// Prints the value of the entry at the path, which starts below the root section. False when there is none, which is
/// reported.
bool printConfigValue(const std::string& fileName, const std::string& path);

/// Prints what the section at the path holds: its sections as "NAME/", then its entries as NAME, a tab and the value.
/// An empty path is the root section.
bool listConfigSection(const std::string& fileName, const std::string& path);
