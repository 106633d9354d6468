#pragma once

#include <string>
#include <vector>

/// Reads a whole file. False, with `out` untouched, for what cannot be opened or read: a directory, a missing file, a
/// name that holds a NUL, more bytes than an int counts.
bool readFile(const std::string& fileName, std::vector<char>& out);
