#pragma once

#include <string>

/// Prints what a compiled map holds, and reports all that is wrong with it, a line each. False when something is.
bool printMapInfo(const std::string& fileName);
