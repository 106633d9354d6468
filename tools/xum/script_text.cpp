#include "script_text.h"

#include <xum/lisp/lisp_reader.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

ScriptText::ScriptText(std::string name, std::string original, std::uint64_t firstLine)
    : name(std::move(name)), original(std::move(original)), firstLine(firstLine), stretches{{0, 0}}
{
    // As scripts are loaded: a comment takes its line feed with it, and the text before and behind it is joined.
    const std::string& source = this->original;
    for (std::size_t at = 0; at < source.size();) {
        const std::size_t comment = std::min(source.find(';', at), source.size());
        text.append(source, at, comment - at);
        if (comment == source.size()) break;
        const std::size_t lineEnd = source.find('\n', comment);
        at = lineEnd == std::string::npos ? source.size() : lineEnd + 1;
        stretches.push_back({text.size(), at});
    }
}

ScriptText::Place ScriptText::findPlace(std::uint64_t offset) const
{
    // Where comments stand side by side, several stretches begin at one offset: the last holds the character.
    const auto behind = std::upper_bound(stretches.begin(), stretches.end(), offset,
                                         [](std::uint64_t at, const Stretch& stretch) { return at < stretch.offset; });
    const Stretch& stretch = *std::prev(behind);
    const std::uint64_t end =
        std::min<std::uint64_t>(stretch.originalOffset + offset - stretch.offset, original.size());
    Place place = {firstLine, 1};
    for (std::uint64_t i = 0; i < end; ++i) {
        const bool continuesCharacter = (static_cast<unsigned char>(original[i]) & 0xC0) == 0x80;
        if (original[i] == '\n')
            place = {place.line + 1, 1};
        else if (!continuesCharacter)
            ++place.column;
    }
    return place;
}

std::string ScriptText::describePlace(std::uint64_t offset) const
{
    const Place place = findPlace(offset);
    return name + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

// ---- files --------------------------------------------------------------------------------------------------------

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const
    {
        if (file != stdin) std::fclose(file);
    }
};

/// Stops behind the largest script, so that a device without an end is no danger.
bool readAll(std::FILE* file, std::string& out)
{
    char block[65536];
    while (out.size() <= largestScript) {
        const std::size_t size = std::fread(block, 1, sizeof block, file);
        out.append(block, size);
        if (size < sizeof block) return std::ferror(file) == 0;
    }
    return true;
}

} // namespace

std::optional<std::string> readScript(const std::string& fileName, std::string& problem)
{
    const bool isStandardInput = fileName == "-";
    const std::string shown = isStandardInput ? "standard input" : fileName;
    std::error_code unknown;
    if (!isStandardInput && std::filesystem::is_directory(fileName, unknown)) {
        problem = shown + ": is a directory";
        return {};
    }
    const std::unique_ptr<std::FILE, FileCloser> file(isStandardInput ? stdin : std::fopen(fileName.c_str(), "rb"));
    std::string text;
    if (file == nullptr || !readAll(file.get(), text)) {
        problem = shown + (file == nullptr ? ": cannot be opened: " : ": cannot be read: ") + std::strerror(errno);
        return {};
    }
    if (text.size() > largestScript)
        problem = shown + ": is too large for a script (more than 64 MiB)";
    else if (text.find('\0') != std::string::npos)
        problem = shown + ": is no text (it holds a zero byte)";
    else
        return text;
    return {};
}

std::string findReadProblem(const ScriptText& script, std::int64_t offset, std::int64_t& next)
{
    const char* text = script.getText().c_str();
    const lisp_check_result check = lisp_check_expression(text, offset);
    next = check.next;
    if (check.reason == nullptr) return {};
    std::string problem = script.describePlace(check.at) + ": " + check.reason;
    // An open list shows only at the end of the text; where its end was forgotten is nearer to its begin.
    const std::uint64_t begin = static_cast<std::uint64_t>(offset) + std::strspn(text + offset, " \t\r\n");
    if (check.at == script.getText().size() && begin < check.at)
        problem += " (the expression begins in line " + std::to_string(script.findPlace(begin).line) + ")";
    return problem;
}
