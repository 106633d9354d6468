#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Archives put together byte by byte. What readers must not look at is filled with bytes that would lead them astray.
namespace archive {

constexpr char unread = '\x7f';

inline std::string littleEndian(std::uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 255);
    return bytes;
}

/// The 16 bytes before the directory.
inline std::string header(std::uint32_t entryCount)
{
    return "!XumRes" + std::string(4, unread) + littleEndian(entryCount, 4) + unread;
}

/// The 144 bytes of a directory entry. A name of 128 bytes or more fills its field and has no NUL behind it.
inline std::string entry(const std::string& name, std::uint64_t offset, std::uint32_t size)
{
    std::string field = name.substr(0, 128);
    if (field.size() < 128) field += '\0';
    field.resize(128, unread);
    return field + littleEndian(offset, 8) + littleEndian(size, 4) + std::string(4, unread);
}

/// The name and the contents of one file.
using PackedFile = std::pair<std::string, std::string>;

/// A whole archive: the files' contents follow the directory, in order and some bytes apart.
inline std::string pack(const std::vector<PackedFile>& files)
{
    std::string directory = header(static_cast<std::uint32_t>(files.size()));
    std::string data;
    const std::size_t dataStart = directory.size() + 144 * files.size();
    for (const auto& [name, contents] : files) {
        data += std::string(3, unread);
        directory += entry(name, dataStart + data.size(), static_cast<std::uint32_t>(contents.size()));
        data += contents;
    }
    return directory + data;
}

} // namespace archive
