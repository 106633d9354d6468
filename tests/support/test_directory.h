#pragma once

#include <filesystem>

/// The fresh directory that the test program runs in; it is the working directory and is removed at the end.
std::filesystem::path testDirectory();
