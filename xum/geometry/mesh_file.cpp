#include <xum/files/file_serializer.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/serialized_values.h>

#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace {

constexpr std::string_view magic = "!XumMesh";
constexpr std::size_t headerSize = 12;
constexpr std::uint64_t unquestionedSize = 64U << 20; // bytes that the counts may ask for beyond the end of the file

struct Counts {
    std::int32_t positions;
    std::int32_t textureCoordinates;
    std::int32_t indexes;
    std::int32_t reserved[2];

    bool areNegative() const { return positions < 0 || textureCoordinates < 0 || indexes < 0; }

    /// Of the arrays, in bytes.
    std::uint64_t getSize() const
    {
        return static_cast<std::uint64_t>(positions) * sizeof(Vector3<float>) +
               static_cast<std::uint64_t>(textureCoordinates) * sizeof(Vector2<float>) +
               static_cast<std::uint64_t>(indexes) * sizeof(std::int32_t);
    }
};

struct Arrays {
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<int> indexes;
};

void readZeroExtended(Deserializer& in, const Counts& counts, Arrays& arrays)
{
    const auto read = [&in](auto& values, std::int32_t count) {
        values.resize(static_cast<std::size_t>(count));
        readValues(in, values.data(), values.size());
    };
    read(arrays.positions, counts.positions);
    read(arrays.textureCoordinates, counts.textureCoordinates);
    read(arrays.indexes, counts.indexes);
}

/// False for more than there is.
bool readArrays(FileDeserializer& in, const Counts& counts, Arrays& arrays)
{
    if (counts.getSize() > unquestionedSize) {
        if (in.getRemaining() == FileDeserializer::unknownRemaining)
            return readArrivingValues(in, arrays.positions, static_cast<std::size_t>(counts.positions)) &&
                   readArrivingValues(in, arrays.textureCoordinates,
                                      static_cast<std::size_t>(counts.textureCoordinates)) &&
                   readArrivingValues(in, arrays.indexes, static_cast<std::size_t>(counts.indexes));
        if (counts.getSize() > in.getRemaining()) return false;
    }
    readZeroExtended(in, counts, arrays);
    return true;
}

} // namespace

Mesh* loadMesh(const std::string& path)
{
    try {
        FileDeserializer in(path);
        char header[headerSize] = {};
        readValues(in, header, headerSize);
        if (std::memcmp(header, magic.data(), magic.size()) != 0) return nullptr;
        const auto counts = readValue<Counts>(in);
        Arrays arrays;
        if (counts.areNegative() || !readArrays(in, counts, arrays) || in.failed()) return nullptr;
        return new Mesh(std::move(arrays.positions), std::move(arrays.textureCoordinates), std::move(arrays.indexes));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
