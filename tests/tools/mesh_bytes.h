#pragma once

#include "pack_bytes.h"

#include <cstring>
#include <string>
#include <vector>

/// Mesh files and parts of models byte by byte.

inline std::string floatBytes(const std::vector<float>& values)
{
    std::string bytes;
    for (const float value : values) {
        std::uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        bytes += littleEndian(bits, 4);
    }
    return bytes;
}

inline std::string integerBytes(const std::vector<int>& values, int size = 4)
{
    std::string bytes;
    for (const int value : values) bytes += littleEndian(static_cast<std::uint32_t>(value), size);
    return bytes;
}

inline std::string meshHeader(int positions, int textureCoordinates, int indexes)
{
    return "!XumMesh" + integerBytes({0, positions, textureCoordinates, indexes, 0, 0});
}

/// Three floats a position, two a texture coordinate.
inline std::string meshOf(const std::vector<float>& positions, const std::vector<float>& textureCoordinates,
                          const std::vector<int>& indexes)
{
    return meshHeader(static_cast<int>(positions.size() / 3), static_cast<int>(textureCoordinates.size() / 2),
                      static_cast<int>(indexes.size())) +
           floatBytes(positions) + floatBytes(textureCoordinates) + integerBytes(indexes);
}
