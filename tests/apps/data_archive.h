#pragma once

#include <string>

/// Packs the files below a directory, by hand and without any check, but for one, if it is named.
void writeDataArchive(const std::string& archive, const std::string& directory, const std::string& leftOut = "");
