#include <xum/geometry/compiled_map.h>

#include <xum/files/file_serializer.h>
#include <xum/geometry/compiled_map_format.h>
#include <xum/geometry/serialized_values.h>

#include <cstring>
#include <memory>
#include <new>

namespace {

using CompiledMapFormat::headerSize;
using CompiledMapFormat::magic;

constexpr std::uint64_t smallestMeshSize = 26;
constexpr std::uint64_t unquestionedSize = 64U << 20; // bytes that a count may ask for beyond the end of the file

void writeText(Serializer& out, const std::string& text)
{
    writeValue(out, static_cast<std::uint32_t>(text.size()));
    writeValues(out, text.data(), text.size());
}

/// False for a length that the file cannot have. What it lacks is zero.
bool readText(FileDeserializer& in, std::string& text)
{
    const auto length = readValue<std::int32_t>(in);
    if (length < 0) return false;
    const auto size = static_cast<std::uint64_t>(length);
    const bool isThere = in.getRemaining() != FileDeserializer::unknownRemaining && size <= in.getRemaining();
    if (!isThere && size > unquestionedSize) return false;
    text.resize(static_cast<std::size_t>(size));
    readValues(in, text.data(), text.size());
    return true;
}

std::unique_ptr<CompiledMap> readMap(FileDeserializer& in)
{
    char header[headerSize] = {};
    readValues(in, header, headerSize);
    if (std::memcmp(header, magic.data(), magic.size()) != 0) return nullptr;
    std::string first;
    std::string second;
    if (!readText(in, first) || !readText(in, second)) return nullptr;
    auto map = std::make_unique<CompiledMap>(first, second);
    const auto count = readValue<std::uint32_t>(in);
    if (count > in.getRemaining() / smallestMeshSize) return nullptr;
    for (std::uint32_t i = 0; i < count; ++i) {
        BSPMesh* const mesh = BSPMesh::deserialize(in);
        if (mesh == nullptr) return nullptr;
        map->getBSPMeshes().append(mesh);
    }
    if (in.failed()) return nullptr;
    return map;
}

} // namespace

bool writeCompiledMap(Serializer& out, const CompiledMap& map)
{
    char header[headerSize] = {};
    std::memcpy(header, magic.data(), magic.size());
    writeValues(out, header, headerSize);
    writeText(out, map.getFirst());
    writeText(out, map.getSecond());
    writeValue(out, map.getBSPMeshes().getCount());
    for (const BSPMesh* mesh = map.getBSPMeshes().getFirst(); mesh != nullptr; mesh = mesh->getNext())
        if (!mesh->serialize(out)) return false;
    return !out.failed();
}

CompiledMap::CompiledMap(const std::string& first, const std::string& second) : first(first), second(second) {}

CompiledMap::~CompiledMap() = default;

bool CompiledMap::writeToFile(const std::string& path) const
{
    try {
        FileSerializer out(path);
        if (!writeCompiledMap(out, *this)) return false;
        out.flush();
        return !out.failed();
    } catch (const std::bad_alloc&) {
        return false;
    }
}

CompiledMap* CompiledMap::readFromFile(const std::string& path)
{
    try {
        FileDeserializer in(path);
        return readMap(in).release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
