#pragma once

#include <string>
#include <vector>

/// Reads scripts without evaluating them and reports the first unreadable expression of each, as
/// "file:line:column: reason". False when there was one, or a file that could not be read.
bool checkScripts(const std::vector<std::string>& fileNames);
