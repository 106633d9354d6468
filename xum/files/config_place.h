#pragma once

#include <cstddef>
#include <string>

/// "LINE:COLUMN" of a position in a text: counted from 1, columns in characters of UTF-8.
std::string describePlace(const std::string& text, std::size_t position);
