#pragma once

#include "test_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

/// What the system says of a process that ended with exit(-1), as after a fatal error.
#ifdef _WIN32
constexpr int fatalExitCode = -1;
#else
constexpr int fatalExitCode = 255;
#endif

/// A directory for the current test alone. The process of a death test enters it before its first report, so that its
/// log does not replace the one that the parent process has open.
inline std::filesystem::path ownDirectory()
{
    const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
    const auto path = testDirectory() / (std::string(test.test_suite_name()) + "." + test.name());
    std::filesystem::create_directory(path);
    return path;
}

inline void enterOwnDirectory()
{
    std::filesystem::current_path(ownDirectory());
}

/// The log that a process left in the test's own directory.
inline std::string ownLogFile()
{
    return (ownDirectory() / "log.txt").string();
}
