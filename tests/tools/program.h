#pragma once

#include "run_program.h"

#include <string>

/// Runs xum with arguments as a shell reads them.
inline ProgramRun runXum(const std::string& arguments)
{
    return runProgram(XUM_PROGRAM, arguments);
}

/// The same with that standard input.
inline ProgramRun runXumWithInput(const std::string& arguments, const std::string& input)
{
    writeFileContents("input.txt", input);
    return runProgram(XUM_PROGRAM, arguments + " <input.txt");
}
