#include <xum/files/file_serializer.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/mesh_file_format.h>
#include <xum/geometry/serialized_values.h>

#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace {

// Bytes that the counts may ask for beyond the end of the file.
constexpr std::uint64_t unquestionedSize = 64U << 20;

struct Arrays {
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<int> indexes;
};

void readZeroExtended(Deserializer& in, const MeshFileHeader& counts, Arrays& arrays)
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
bool readArrays(FileDeserializer& in, const MeshFileHeader& counts, Arrays& arrays)
{
    if (counts.getArraySize() > unquestionedSize) {
        if (in.getRemaining() == FileDeserializer::unknownRemaining)
            return readArrivingValues(in, arrays.positions, static_cast<std::size_t>(counts.positions)) &&
                   readArrivingValues(in, arrays.textureCoordinates,
                                      static_cast<std::size_t>(counts.textureCoordinates)) &&
                   readArrivingValues(in, arrays.indexes, static_cast<std::size_t>(counts.indexes));
        if (counts.getArraySize() > in.getRemaining()) return false;
    }
    readZeroExtended(in, counts, arrays);
    return true;
}

} // namespace

Mesh* loadMesh(const std::string& path)
{
    try {
        FileDeserializer in(path);
        MeshFileHeader header;
        std::memset(header.magic, 0, sizeof header.magic); // what cannot be read is no magic
        readValues(in, &header, 1);
        if (!header.hasMagic()) return nullptr;
        Arrays arrays;
        if (header.hasNegativeCount() || !readArrays(in, header, arrays) || in.failed()) return nullptr;
        return new Mesh(std::move(arrays.positions), std::move(arrays.textureCoordinates), std::move(arrays.indexes));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
