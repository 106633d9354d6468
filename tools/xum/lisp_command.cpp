#include "commands.h"

#include "lisp_check.h"
#include "lisp_session.h"
#include "lisp_shell.h"
#include "report.h"
#include "script_text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <string>

namespace {

struct Options {
    std::vector<std::string> fileNames;
    std::vector<std::string> texts;
    std::vector<std::string> checkedFileNames;
};

/// In the encoding of the name, which the standard library's paths would change on Windows.
std::string directoryOf(const std::string& fileName)
{
#ifdef _WIN32
    const std::size_t end = fileName.find_last_of("/\\");
#else
    const std::size_t end = fileName.rfind('/');
#endif
    return end == std::string::npos ? "" : fileName.substr(0, std::max<std::size_t>(end, 1));
}

bool runFile(LispSession& session, const std::string& fileName)
{
    std::string problem;
    const std::optional<std::string> text = readScript(fileName, problem);
    if (!text) {
        report(problem);
        return false;
    }
    const bool isStandardInput = fileName == "-";
    session.setLoadPath(isStandardInput ? "" : directoryOf(fileName));
    const ScriptText script(isStandardInput ? "<stdin>" : fileName, *text);
    return session.run(script, LispSession::Printing::Nothing);
}

bool runTexts(LispSession& session, const std::vector<std::string>& texts)
{
    session.setLoadPath("");
    for (const std::string& text : texts)
        if (!session.run(ScriptText("-e", text), LispSession::Printing::LastValue)) return false;
    return true;
}

void runLisp(const Options& options)
{
    LispSession session;
    const bool hasWork = !options.fileNames.empty() || !options.texts.empty();
    bool isDone = true;
    for (const std::string& fileName : options.fileNames) isDone = isDone && runFile(session, fileName);
    isDone = isDone && (options.texts.empty() || runTexts(session, options.texts));
    if (!hasWork) isDone = runShell(session);
    if (!isDone) throw CLI::RuntimeError(exitFailure);
}

} // namespace

void addLispCommand(CLI::App& app)
{
    const auto options = std::make_shared<Options>();
    CLI::App* lisp = app.add_subcommand("lisp", "Run scripts, or evaluate line by line what is typed or piped in");
    lisp->add_option("FILE", options->fileNames,
                     "Scripts, run in this order by one interpreter; - is standard input. *load-path* is the "
                     "directory of the script, then lisp/ of the engine's data")
        ->type_name("");
    lisp->add_option("-e", options->texts,
                     "Evaluate TEXT behind the scripts, and print the value of its last expression; may be given again")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    lisp->footer("Without arguments: a shell, in which :help lists what there is. Comments are removed from all "
                 "scripts and texts.\nExit status: 0 when everything was read and evaluated, 1 for a script that "
                 "cannot be read or ends in a fatal message,\n2 for wrong usage. Other messages of a script are no "
                 "failure.");

    CLI::App* check = lisp->add_subcommand("check", "Read scripts without evaluating them, and report what is "
                                                    "unreadable as FILE:LINE:COLUMN: REASON");
    check->add_option("FILE", options->checkedFileNames, "Scripts; - is standard input")->required()->type_name("");
    check->footer("Exit status: 0 when all scripts are readable, 1 when one is not, 2 for wrong usage.");

    lisp->callback([options, check] {
        if (!check->parsed())
            runLisp(*options);
        else if (!checkScripts(options->checkedFileNames))
            throw CLI::RuntimeError(exitFailure);
    });
}
