#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// The bytes of a file; empty when there is none.
inline std::string fileContents(const std::string& fileName)
{
    std::ifstream file(fileName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The text of a file, without what Windows writes before the end of a line; empty when there is none.
inline std::string fileText(const std::string& fileName)
{
    std::string text = fileContents(fileName);
#ifdef _WIN32
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
#endif
    return text;
}

/// The lines of the log that the library wrote into the working directory.
inline std::vector<std::string> logLines()
{
    std::ifstream log("log.txt");
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    return lines;
}

inline void writeFileContents(const std::string& fileName, const std::string& contents)
{
    std::ofstream(fileName, std::ios::binary) << contents;
}
