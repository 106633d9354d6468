#pragma once

#include "file_contents.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <string>

/// A regular expression that matches this text and no other.
inline std::string literally(const std::string& text)
{
    std::string expression;
    for (const char character : text) {
        if (std::string("\\^$.|?*+()[]{}").find(character) != std::string::npos) expression += '\\';
        expression += character;
    }
    return expression;
}

/// Expects that `act` ends its process with this fatal error. The process is a new one, in the test's own directory,
/// and reports nothing before it.
template <class Act>
void expectFatalError(const Act& act, const std::string& message)
{
    const auto report = [&act] {
        enterOwnDirectory();
        act();
    };
    EXPECT_EXIT(report(), ::testing::ExitedWithCode(fatalExitCode), literally("[[Error|" + message + "]]\n"));
    EXPECT_EQ(fileText(ownLogFile()), "ERROR: " + message + "\n");
}
