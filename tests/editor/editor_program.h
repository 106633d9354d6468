#pragma once

#include "file_contents.h"
#include "own_directory.h"
#include "run_program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

/// Runs of the editor in a directory of the test's own.
class EditorProgram : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }

    /// The name of a file with that session.
    static std::string sessionOf(const std::string& session)
    {
        writeFileContents("session.txt", session);
        return "session.txt";
    }

    static ProgramRun play(const std::string& session, const std::string& arguments = "")
    {
        return runProgram(XUM_EDITOR_PROGRAM,
                          "--data " XUM_DATA_DIRECTORY " --play " + sessionOf(session) + " " + arguments);
    }

    /// One of tests/editor/sessions.
    static ProgramRun playFile(const std::string& name, const std::string& arguments)
    {
        return runProgram(XUM_EDITOR_PROGRAM,
                          "--data " XUM_DATA_DIRECTORY " --play " XUM_SESSION_DIRECTORY "/" + name + " " + arguments);
    }
};
