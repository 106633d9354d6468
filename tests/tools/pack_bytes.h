#pragma once

#include <cstdint>
#include <string>

/// Archives byte by byte, good ones and others.

inline std::string littleEndian(std::uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    return bytes;
}

inline std::string packHeader(std::uint32_t count)
{
    return "!XumRes" + std::string(4, '\0') + littleEndian(count, 4) + '\0';
}

/// A name of 128 bytes fills its field.
inline std::string packEntry(std::string name, std::uint64_t offset, std::uint32_t size)
{
    name.resize(128, '\0');
    return name + littleEndian(offset, 8) + littleEndian(size, 4) + std::string(4, '\0');
}

/// An archive of one file.
inline std::string packOf(const std::string& name, const std::string& contents)
{
    return packHeader(1) + packEntry(name, 160, static_cast<std::uint32_t>(contents.size())) + contents;
}
