#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The layout of a resource archive: a header of 16 bytes, the directory, and the data of the files anywhere.
namespace ResourceArchiveFormat {

constexpr std::string_view magic = "!XumRes";
constexpr std::size_t headerSize = 16;
constexpr std::size_t checkedHeaderSize = 11; // the magic and four bytes that nobody looks at
constexpr std::size_t countOffset = 11;       // of the entry count, 32 bits

constexpr std::size_t entrySize = 144;
constexpr std::size_t nameSize = 128; // the terminating NUL included
constexpr std::size_t offsetOffset = 128;
constexpr std::size_t sizeOffset = 136;

inline std::uint32_t readU32(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

inline std::uint64_t readU64(const unsigned char* bytes)
{
    return static_cast<std::uint64_t>(readU32(bytes)) | static_cast<std::uint64_t>(readU32(bytes + 4)) << 32;
}

/// A directory entry, read from its bytes. The name ends at its NUL or, for want of one, at the end of its field.
struct Entry {
    explicit Entry(const unsigned char* bytes)
        : name(reinterpret_cast<const char*>(bytes), lengthOfName(bytes)), offset(readU64(bytes + offsetOffset)),
          size(readU32(bytes + sizeOffset))
    {}

    std::string_view name; ///< lies in the bytes that it was read from
    std::uint64_t offset;  ///< of the data, from the start of the archive
    std::uint32_t size;    ///< of the data

private:
    static std::size_t lengthOfName(const unsigned char* bytes)
    {
        const void* end = std::memchr(bytes, 0, nameSize);
        return end == nullptr ? nameSize : static_cast<std::size_t>(static_cast<const unsigned char*>(end) - bytes);
    }
};

} // namespace ResourceArchiveFormat
