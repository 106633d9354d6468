#pragma once

#include <xum/files/file.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// An entry of an archive's directory.
struct PackEntry {
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::string name;
    bool fillsItsField; ///< the name, which has no NUL behind it then
    std::uint64_t offset;
    std::uint32_t size;
    std::size_t replacement = none; ///< the index of the last entry of the same name, when that is a later one
};

/// An archive, read as the engine reads it, but with all its entries and without an end of the program on a bad one.
class PackArchive {
public:
    explicit PackArchive(const std::string& fileName);

    const std::string& getFileName() const { return fileName; }

    /// Why this is no archive with a header, as "FILE: REASON"; empty when it is one. There are no entries then.
    const std::string& getProblem() const { return problem; }

    /// Whether the engine ends on it with a fatal message. Other problems make an archive without files for it.
    bool isFatal() const { return isFatalProblem; }

    /// "FILE: REASON" for a directory that is cut off; empty for a whole one.
    std::string findDirectoryProblem() const;

    /// Those that are there, in their order.
    const std::vector<PackEntry>& getEntries() const { return entries; }

    std::uint64_t getFileSize() const { return fileSize; }

    /// How many bytes of an entry's data the file has.
    std::uint64_t countPresentBytes(const PackEntry& entry) const;

    /// Hands the data to `take`, part by part, until that returns false. False when they cannot be read.
    bool readData(const PackEntry& entry, const std::function<bool(const char* data, std::size_t size)>& take);

private:
    void readHeader();
    void readDirectory();
    void findReplacements();
    void fail(const std::string& reason);

    std::string fileName;
    InputFile file;
    std::uint64_t fileSize = 0;
    std::uint32_t countInHeader = 0;
    std::vector<PackEntry> entries;
    std::string problem;
    bool isFatalProblem = false;
};

/// The size of the parts in which data are copied.
constexpr std::size_t packBlockSize = 1u << 20;
