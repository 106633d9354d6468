#pragma once

namespace CLI {
class App;
}

/// The subcommands of xum, one file each. A function adds its subcommand with its options and says what is to be done
/// when it was chosen; main.cpp calls them all. What fails throws CLI::RuntimeError with the exit status.

enum ExitStatus : int {
    exitSuccess = 0,
    exitFailure = 1, // a script or a file
    exitWrongUsage = 2,
};

void addConfigCommand(CLI::App& app);
void addFontCommand(CLI::App& app);
void addLispCommand(CLI::App& app);
void addMapCommand(CLI::App& app);
void addMeshCommand(CLI::App& app);
void addPackCommand(CLI::App& app);
