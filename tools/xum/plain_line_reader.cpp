#include "line_reader.h"

#include <cstdio>
#include <iostream>
#include <utility>

#ifdef _WIN32
#    include <io.h>
#else
#    include <unistd.h>
#endif

namespace {

class PlainLineReader final : public LineReader {
public:
    explicit PlainLineReader(bool isTerminal) : hasTerminal(isTerminal) {}

    Result read(const std::string& prompt, std::string& line) override
    {
        if (hasTerminal) {
            std::fputs(prompt.c_str(), stdout);
            std::fflush(stdout);
        }
        return std::getline(std::cin, line) ? Result::Line : Result::End;
    }

    void remember(const std::string& /*line*/) override {}
    bool isTerminal() const override { return hasTerminal; }

private:
    bool hasTerminal;
};

bool areTerminals()
{
#ifdef _WIN32
    return _isatty(_fileno(stdin)) != 0 && _isatty(_fileno(stdout)) != 0;
#else
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
#endif
}

} // namespace

std::unique_ptr<LineReader> makePlainLineReader(bool isTerminal)
{
    return std::make_unique<PlainLineReader>(isTerminal);
}

std::unique_ptr<LineReader> makeLineReader([[maybe_unused]] Completer completer)
{
    const bool isTerminal = areTerminals();
#ifdef XUM_HAS_LINE_EDITING
    if (isTerminal) return makeEditingLineReader(std::move(completer));
#endif
    return makePlainLineReader(isTerminal);
}
