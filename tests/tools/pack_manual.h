#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// The parts of docs/file_formats.md that can be tried.

inline std::vector<std::string> fileFormatLines()
{
    std::ifstream manual(XUM_FILE_FORMATS);
    std::vector<std::string> lines;
    for (std::string line; std::getline(manual, line);) lines.push_back(line);
    return lines;
}

/// The blocks of that mark, each with its line feeds.
inline std::vector<std::string> fileFormatBlocks(const std::string& mark)
{
    const std::vector<std::string> lines = fileFormatLines();
    std::vector<std::string> blocks;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i] != "```" + mark) continue;
        blocks.emplace_back();
        for (++i; i < lines.size() && lines[i] != "```"; ++i) blocks.back() += lines[i] + "\n";
    }
    return blocks;
}

/// The rows of the table with that heading, "| a | b |", without it and the line below.
inline std::vector<std::string> fileFormatRows(const std::string& heading)
{
    const std::vector<std::string> lines = fileFormatLines();
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (lines[i] == heading)
            for (i += 2; i < lines.size() && !lines[i].empty(); ++i) rows.push_back(lines[i]);
    return rows;
}

/// What stands between backticks in a row, in order.
inline std::vector<std::string> quotedIn(const std::string& row)
{
    std::vector<std::string> quoted;
    for (std::size_t at = row.find('`'); at != std::string::npos; at = row.find('`', at + 1)) {
        const std::size_t end = row.find('`', at + 1);
        quoted.push_back(row.substr(at + 1, end - at - 1));
        at = end;
    }
    return quoted;
}

/// From lines of an offset and bytes, all in hexadecimal.
inline std::string bytesOf(const std::string& dump)
{
    std::string bytes;
    std::istringstream lines(dump);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream numbers(line);
        std::size_t offset = 0;
        numbers >> std::hex >> offset;
        bytes.resize(offset, '\0');
        for (unsigned byte = 0; numbers >> byte;) bytes += static_cast<char>(byte);
    }
    return bytes;
}
