#include "commands.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <clocale>
#include <cstdio>
#include <exception>
#include <string>

// The program for authors: each subcommand is added by one line and does its work in a file of its own.

namespace {

constexpr char exitStatusText[] = "Exit status: 0 when all went well, 1 for a script or a file that failed, "
                                  "2 for wrong usage.";

int run(CLI::App& app, int argc, char** argv)
{
    try {
        app.parse(argc, argv);
        if (!app.get_subcommands().empty()) return exitSuccess;
        report(app.help()); // not left to the parser, which would complain of this before an unknown word
        return exitWrongUsage;
    } catch (const CLI::RuntimeError& end) { // a subcommand has reported what it has to say
        return end.get_exit_code();
    } catch (const CLI::ParseError& end) { // also of --help and --version, which are no failures
        return app.exit(end) == 0 ? exitSuccess : exitWrongUsage;
    }
}

} // namespace

int main(int argc, char** argv)
{
#ifdef _WIN32
    std::setlocale(LC_CTYPE, ".ACP"); // paths are made of narrow names as the system reads these
#endif
    try {
        CLI::App app("Tools for authors of xum-engine games", "xum");
        app.allow_windows_style_options(false); // for all subcommands: a name may begin with '/'
        app.set_version_flag("--version", "xum " XUM_VERSION, "Print the version and exit");
        app.set_help_flag("-h,--help", "Print this text and exit");
        app.require_subcommand(0, 1);
        app.footer(exitStatusText);

        addConfigCommand(app);
        addFontCommand(app);
        addLispCommand(app);
        addMapCommand(app);
        addMeshCommand(app);
        addPackCommand(app);

        const int status = run(app, argc, argv);
        if (std::fflush(stdout) == 0) return status;
        report("xum: cannot write to the standard output");
    } catch (const std::exception& failure) {
        report(std::string("xum: ") + failure.what());
    }
    return exitFailure;
}
