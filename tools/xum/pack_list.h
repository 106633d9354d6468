#pragma once

#include <string>
#include <vector>

/// Prints "SIZE OFFSET NAME" of each entry, separated by tabs, with a fourth column "replaced" where a later entry has
/// the same name. False when the archive cannot be read or is cut off, which is reported.
bool listArchive(const std::string& fileName);

/// Reports all that is wrong with archives, a line each. False when there is something.
bool checkArchives(const std::vector<std::string>& fileNames);
