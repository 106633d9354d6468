#pragma once

#include <string>

/// The key of a name in archives: every "../" is taken out together with the path segment before it, if there is one.
/// "./", repeated separators and backslashes stay.
std::string normalizeResourceName(const std::string& name);
