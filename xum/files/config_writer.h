#pragma once

#include <string>

class ConfigSection;
class OutputFile;

/// Writes a tree of sections as text, line by line.
class ConfigWriter {
public:
    explicit ConfigWriter(OutputFile& file) : file(file) {}

    /// False as soon as a line cannot be written, and when the file does not take the last ones.
    bool write(const ConfigSection& root);

private:
    bool writeEntries(const ConfigSection& section, std::size_t depth);
    bool writeTag(std::size_t depth, const char* start, const std::string& name);
    bool writeLine();

    OutputFile& file;
    std::string line; // one for all, so that its memory is taken once
};
