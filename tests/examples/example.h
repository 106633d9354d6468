#pragma once

#include "run_program.h"

/// Runs an example by its name, with arguments as a shell reads them.
inline ProgramRun runExample(const std::string& name, const std::string& arguments = "")
{
    return runProgram(XUM_EXAMPLE_DIRECTORY "/" + name, arguments);
}

/// What the last run put into its log when something was wrong.
inline std::string problemsOfLog()
{
    const std::string log = fileText("log.txt");
    return log.find("WARNING") == std::string::npos && log.find("ERROR") == std::string::npos ? "" : log;
}
