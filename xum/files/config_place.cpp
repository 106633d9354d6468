#include <xum/files/config_place.h>

#include <algorithm>
#include <iterator>

std::string describePlace(const std::string& text, std::size_t position)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
    const auto lineStart = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    const auto line = std::count(text.begin(), lineStart, '\n') + 1;
    const auto startsCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    const auto column = std::count_if(lineStart, end, startsCharacter) + 1;
    return std::to_string(line) + ":" + std::to_string(column);
}
