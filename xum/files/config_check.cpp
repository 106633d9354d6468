#include <xum/files/config_check.h>

#include <xum/files/config_reader.h>

#include <algorithm>
#include <iterator>

namespace {

std::string describePlace(const std::string& text, std::size_t position)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
    const auto lineStart = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    const auto line = std::count(text.begin(), lineStart, '\n') + 1;
    const auto startsCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    const auto column = std::count_if(lineStart, end, startsCharacter) + 1;
    return std::to_string(line) + ":" + std::to_string(column);
}

} // namespace

bool checkConfigText(const std::string& text, std::string& outProblem)
{
    if (text.empty()) {
        outProblem = "1:1: the text is empty";
        return false;
    }
    try {
        if (ConfigReader(text).read()) return true;
        outProblem = "1:1: there is no root section";
    } catch (const ConfigSyntaxError& problem) {
        outProblem = describePlace(text, problem.position) + ": " + problem.message;
    }
    return false;
}
