#pragma once

#include <cstdio>
#include <string>

/// Writes one line to standard error, behind what scripts have written to standard output so far.
inline void report(const std::string& line)
{
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", line.c_str());
}
