#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A script as the interpreter reads it, without its comments, and where everything stood before they were removed.
class ScriptText {
public:
    /// `name` is what messages call it, `firstLine` the number of its first line.
    ScriptText(std::string name, std::string original, std::uint64_t firstLine = 1);

    /// Without comments.
    const std::string& getText() const { return text; }

    /// Where the character at an offset of the text stood: counted from 1, columns in characters of UTF-8.
    struct Place {
        std::uint64_t line;
        std::uint64_t column;
    };
    Place findPlace(std::uint64_t offset) const;

    /// "name:line:column" of the same.
    std::string describePlace(std::uint64_t offset) const;

private:
    /// A stretch of the text that is also one of the original.
    struct Stretch {
        std::uint64_t offset;
        std::uint64_t originalOffset;
    };

    std::string name;
    std::string original;
    std::uint64_t firstLine;
    std::string text;
    std::vector<Stretch> stretches;
};

/// The largest script that is read, in bytes: a heap's worth of lists would not fit in more.
constexpr std::uint64_t largestScript = 64u << 20;

/// The contents of a script file, or of standard input for "-". Without a value when there are none; `problem` then
/// says why, with the name.
std::optional<std::string> readScript(const std::string& fileName, std::string& problem);

/// Why a script cannot be read at `offset`, the begin of an expression, as "name:line:column: reason"; empty when the
/// expression is readable. `next` is where the following one begins, -1 at the end.
std::string findReadProblem(const ScriptText& script, std::int64_t offset, std::int64_t& next);
