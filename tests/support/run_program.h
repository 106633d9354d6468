#pragma once

#include "file_contents.h"

#include <cstdlib>
#include <string>

#ifndef _WIN32
#    include <sys/wait.h>
#endif

/// What a finished program left behind.
struct ProgramRun {
    int status; ///< what its main returned; -1 when it did not end by itself
    std::string output;
    std::string errors;
};

/// Runs a program with arguments as a shell reads them, in the working directory, and waits for its end.
inline ProgramRun runProgram(const std::string& program, const std::string& arguments)
{
    std::string command = "\"" + program + "\" " + arguments + " >run-output.txt 2>run-errors.txt";
#ifdef _WIN32
    // A message box would wait for somebody. cmd takes the outer quotes off.
    command = "\"set XUM_MESSAGE_BOXES=0&& " + command + "\"";
    const int status = std::system(command.c_str());
#else
    const int result = std::system(command.c_str());
    const int status = WIFEXITED(result) ? WEXITSTATUS(result) : -1;
#endif
    return {status, fileText("run-output.txt"), fileText("run-errors.txt")};
}
