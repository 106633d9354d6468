#pragma once

#include <string>

/// Prints what a mesh file holds and what is odd about it. False for a broken file, which has been reported.
bool printMeshInfo(const std::string& mesh);
