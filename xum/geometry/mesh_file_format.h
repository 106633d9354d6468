#pragma once

#include <cstdint>
#include <cstring>

/// What a mesh file begins with. Behind it lie the positions, the texture coordinates and the indexes.
struct MeshFileHeader {
    char magic[8] = {'!', 'X', 'u', 'm', 'M', 'e', 's', 'h'};
    std::int32_t reserved = 0;
    std::int32_t positions = 0;
    std::int32_t textureCoordinates = 0;
    std::int32_t indexes = 0;
    std::int32_t unused[2] = {0, 0};

    bool hasMagic() const { return std::memcmp(magic, MeshFileHeader().magic, sizeof magic) == 0; }
    bool hasNegativeCount() const { return positions < 0 || textureCoordinates < 0 || indexes < 0; }

    /// Of the arrays, in bytes; no count is negative.
    std::uint64_t getArraySize() const
    {
        return static_cast<std::uint64_t>(positions) * 12 + static_cast<std::uint64_t>(textureCoordinates) * 8 +
               static_cast<std::uint64_t>(indexes) * 4;
    }
};

static_assert(sizeof(MeshFileHeader) == 32);
