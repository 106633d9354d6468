#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Where the shell's lines come from.
class LineReader {
public:
    virtual ~LineReader() = default;

    enum class Result {
        Line,
        Abandoned, ///< by Ctrl-C
        End,
    };

    /// The next line without its end. The prompt is shown to a terminal only.
    virtual Result read(const std::string& prompt, std::string& line) = 0;

    /// Keeps a line for later runs.
    virtual void remember(const std::string& line) = 0;

    virtual bool isTerminal() const = 0;
};

/// The names that begin with a word.
using Completer = std::function<std::vector<std::string>(const std::string& word)>;

/// Reads standard input: with line editing when it is a terminal, plainly otherwise.
std::unique_ptr<LineReader> makeLineReader(Completer completer);

/// Lines as they come, for input that is no terminal and for systems without line editing.
std::unique_ptr<LineReader> makePlainLineReader(bool isTerminal);

/// With line editing by libedit; only where that was found when the program was built.
std::unique_ptr<LineReader> makeEditingLineReader(Completer completer);
