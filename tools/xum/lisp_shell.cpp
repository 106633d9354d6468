#include "lisp_shell.h"

#include "interruption.h"
#include "lisp_help.h"
#include "lisp_session.h"
#include "line_reader.h"
#include "report.h"

#include <cstdio>
#include <memory>

namespace {

/// Without blanks around it, in lower case: the language makes no difference either.
std::string trimmed(const std::string& line)
{
    const std::size_t begin = line.find_first_not_of(" \t\r");
    const std::size_t end = line.find_last_not_of(" \t\r");
    if (begin == std::string::npos) return {};
    std::string text = line.substr(begin, end - begin + 1);
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

class Shell {
public:
    explicit Shell(LispSession& session)
        : session(session), reader(makeLineReader([&session](const std::string& word) {
              return findCompletions(session.listNames(), word);
          }))
    {}

    bool run();

private:
    static std::vector<std::string> findCompletions(const std::vector<std::string>& names, const std::string& word);

    bool runCommand(const std::string& line);
    void addLine(const std::string& line);
    void evaluateInput();

    LispSession& session;
    std::unique_ptr<LineReader> reader;
    std::string input; // lines that are not yet an expression
    std::uint64_t lineNumber = 0;
    std::uint64_t inputLine = 0; // where the input begins
    bool isEnded = false;
    bool isAllRead = true;
};

std::vector<std::string> Shell::findCompletions(const std::vector<std::string>& names, const std::string& word)
{
    std::vector<std::string> found;
    for (const std::string& name : names)
        if (name.compare(0, word.size(), word) == 0) found.push_back(name);
    for (const char* command : {":help", ":quit"})
        if (std::string(command).compare(0, word.size(), word) == 0) found.emplace_back(command);
    return found;
}

bool Shell::runCommand(const std::string& line)
{
    const std::string command = trimmed(line);
    if (command == ":quit")
        isEnded = true;
    else if (command == ":help")
        printHelp();
    else if (command.compare(0, 6, ":help ") == 0)
        printHelp(session, trimmed(command.substr(6)));
    else
        return false;
    return true;
}

void Shell::evaluateInput()
{
    // A terminal shows only what was typed now, so lines are counted from there.
    const ScriptText script("<stdin>", input, reader->isTerminal() ? 1 : inputLine);
    switch (LispSession::findCompleteness(script.getText())) {
    case LispSession::Completeness::Empty: input.clear(); return;
    case LispSession::Completeness::Open:
        if (!isEnded) return;
        break;
    case LispSession::Completeness::Complete: break;
    }
    input.clear();
    takeInterruption(); // one that came while the line was typed
    if (!session.run(script, LispSession::Printing::EachValue)) isAllRead = false;
    std::fflush(stdout);
}

void Shell::addLine(const std::string& line)
{
    ++lineNumber;
    if (input.empty()) inputLine = lineNumber;
    if (line.find('\0') != std::string::npos) {
        report("<stdin>:" + std::to_string(lineNumber) + ": is no text (it holds a zero byte)");
        isAllRead = false;
        input.clear();
        return;
    }
    if (!trimmed(line).empty()) reader->remember(line);
    if (input.empty() && runCommand(line)) return;
    input += line + "\n";
    evaluateInput();
}

bool Shell::run()
{
    std::unique_ptr<Interruption> interruption;
    if (reader->isTerminal()) {
        interruption = std::make_unique<Interruption>(session.getInterpreter());
        std::puts("xum-lisp 0.0.1. :help lists what there is, :quit or Ctrl-D ends.");
    }
    std::string line;
    while (!isEnded) {
        switch (reader->read(input.empty() ? "lisp> " : "....> ", line)) {
        case LineReader::Result::Line: addLine(line); break;
        case LineReader::Result::Abandoned: input.clear(); break;
        case LineReader::Result::End: isEnded = true; break;
        }
    }
    if (!input.empty() && !reader->isTerminal()) evaluateInput();
    return isAllRead || reader->isTerminal();
}

} // namespace

bool runShell(LispSession& session)
{
    return Shell(session).run();
}
