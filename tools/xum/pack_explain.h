#pragma once

#include <string>
#include <vector>

/// Prints who answers a load of that name, as the engine looks for it: a plain file, then the archives, the last one
/// first. Behind that everything that would have answered otherwise. False when nobody answers or an archive cannot be
/// read, which is reported.
bool explainLoad(const std::string& name, const std::vector<std::string>& archiveNames);
