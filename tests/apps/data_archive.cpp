#include "data_archive.h"

#include "file_contents.h"

#include <cstddef>
#include <filesystem>
#include <utility>
#include <vector>

namespace {

void appendNumber(std::string& bytes, std::size_t number, int size)
{
    for (int i = 0; i < size; ++i, number >>= 8) bytes += static_cast<char>(number & 0xFF);
}

} // namespace

void writeDataArchive(const std::string& archive, const std::string& directory, const std::string& leftOut)
{
    constexpr std::size_t headerSize = 16;
    constexpr std::size_t entrySize = 144;
    constexpr std::size_t nameSize = 128;
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        const std::string name = entry.path().lexically_relative(directory).generic_string();
        if (entry.is_regular_file() && name != leftOut) files.emplace_back(name, fileContents(entry.path().string()));
    }

    std::string bytes = std::string("!XumRes") + std::string(4, '\0');
    appendNumber(bytes, files.size(), 4);
    bytes += '\0';
    std::size_t offset = headerSize + files.size() * entrySize;
    for (auto& [name, contents] : files) {
        std::string field = name;
        field.resize(nameSize, '\0');
        bytes += field;
        appendNumber(bytes, offset, 8);
        appendNumber(bytes, contents.size(), 4);
        appendNumber(bytes, 0, 4);
        offset += contents.size();
    }
    for (const auto& file : files) bytes += file.second;
    writeFileContents(archive, bytes);
}
