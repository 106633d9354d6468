#pragma once

#include <xum/files/config_file.h>

#include <memory>
#include <string>

/// A settings file, which a user may have written wrongly. Null when there is none, and for one that is broken; then
/// outProblem says so, and is empty otherwise.
std::unique_ptr<ConfigFile> readSettingsFile(const std::string& fileName, std::string& outProblem);

/// Puts the file in its place when it is whole: see replaceFile.
bool writeSettingsFile(const ConfigFile& file, const std::string& fileName, std::string& outProblem);

/// Adds an entry with a value.
void addEntry(ConfigSection& section, const std::string& name, const std::string& value);

/// A new section within another one.
ConfigSection& addSection(ConfigSection& section, const std::string& name);
