#pragma once

#include <string>
#include <vector>

struct ExtractionOrder {
    std::string archive;
    std::string directory = ".";    ///< made when it is not there
    std::vector<std::string> names; ///< as they stand in the archive; none means all
    bool overwrites = false;
};

/// Writes files of an archive into a directory, never outside of it. False when something was asked for that could not
/// be written, which is reported; the rest is there all the same.
bool extractArchive(const ExtractionOrder& order);
