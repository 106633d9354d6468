#include "lisp_check.h"

#include "report.h"
#include "script_text.h"

#include <xum/lisp/lisp.h>

namespace {

/// Empty when the whole script is readable.
std::string findProblem(const std::string& fileName)
{
    std::string problem;
    const std::optional<std::string> text = readScript(fileName, problem);
    if (!text) return problem;
    const ScriptText script(fileName == "-" ? "<stdin>" : fileName, *text);
    std::int64_t next = 0;
    do {
        problem = findReadProblem(script, next, next);
    } while (problem.empty() && next != -1);
    return problem;
}

} // namespace

bool checkScripts(const std::vector<std::string>& fileNames)
{
    // The reader calls an empty token fatal; here it is a finding like any other.
    lisp_set_fatal_handler([](const char*) {});
    bool areReadable = true;
    for (const std::string& fileName : fileNames) {
        const std::string problem = findProblem(fileName);
        if (problem.empty()) continue;
        report(problem);
        areReadable = false;
    }
    return areReadable;
}
