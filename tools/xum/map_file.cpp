#include "map_file.h"

#include "replacement_file.h"

#include <xum/files/read_file.h>
#include <xum/files/serializer.h>
#include <xum/geometry/compiled_map.h>
#include <xum/geometry/compiled_map_format.h>
#include <xum/geometry/serialized_values.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

namespace {

using CompiledMapFormat::headerSize;
using CompiledMapFormat::magic;

class ReplacementSerializer final : public Serializer {
public:
    explicit ReplacementSerializer(ReplacementFile& file) : file(file) {}

    bool failed() override { return hasFailed; }
    void write(const char* data, int size) override
    {
        if (size > 0 && !file.write(data, static_cast<std::size_t>(size))) hasFailed = true;
    }

private:
    ReplacementFile& file;
    bool hasFailed = false;
};

/// A read behind the end is a failure, which no file can tell.
class BytesDeserializer final : public Deserializer {
public:
    explicit BytesDeserializer(const std::vector<char>& bytes) : next(bytes.data()), left(bytes.size()) {}

    bool failed() override { return hasFailed; }
    void read(char* data, int size) override
    {
        if (size <= 0) return;
        const std::size_t given = std::min(left, static_cast<std::size_t>(size));
        if (given < static_cast<std::size_t>(size)) hasFailed = true;
        std::memcpy(data, next, given);
        next += given;
        left -= given;
    }

    std::size_t countLeft() const { return left; }

private:
    const char* next;
    std::size_t left;
    bool hasFailed = false;
};

bool readText(BytesDeserializer& in, std::string& text)
{
    const auto size = readValue<std::uint32_t>(in);
    if (in.failed() || size > in.countLeft()) return false;
    text.resize(size);
    readValues(in, text.data(), text.size());
    return true;
}

std::unique_ptr<CompiledMap> readMap(const std::vector<char>& bytes, std::string& problem)
{
    if (bytes.size() < magic.size() || !std::equal(magic.begin(), magic.end(), bytes.begin())) {
        problem = "is no compiled map: it does not begin with " + std::string(magic);
        return nullptr;
    }
    BytesDeserializer in(bytes);
    std::array<char, headerSize> header = {};
    std::string first;
    std::string second;
    problem = "is damaged: it ends within its header and texts";
    readValues(in, header.data(), header.size());
    if (!readText(in, first) || !readText(in, second)) return nullptr;
    const auto count = readValue<std::uint32_t>(in);
    if (in.failed()) return nullptr;
    auto map = std::make_unique<CompiledMap>(first, second);
    for (std::uint32_t i = 0; i < count; ++i) {
        BSPMesh* const mesh = BSPMesh::deserialize(in);
        if (mesh == nullptr) {
            problem = "is damaged: mesh " + std::to_string(i + 1) + " of " + std::to_string(count) +
                      (in.failed() ? " is cut off" : " cannot be read");
            return nullptr;
        }
        map->getBSPMeshes().append(mesh);
    }
    problem = "is damaged: there are " + std::to_string(in.countLeft()) + " bytes behind the last mesh";
    if (in.countLeft() != 0) return nullptr;
    return map;
}

} // namespace

std::string writeMapFile(const std::string& fileName, const CompiledMap& map)
{
    ReplacementFile file(behindLinks(fileName));
    ReplacementSerializer out(file);
    writeCompiledMap(out, map);
    return file.finish() ? "" : file.getProblem();
}

std::unique_ptr<CompiledMap> readMapFile(const std::string& fileName, std::string& problem)
{
    std::error_code unknown;
    if (std::filesystem::is_directory(fileName, unknown)) {
        problem = "is a directory";
        return nullptr;
    }
    std::vector<char> bytes;
    errno = 0;
    if (!readFile(fileName, bytes)) {
        problem = std::string("cannot be read") + (errno != 0 ? std::string(": ") + std::strerror(errno) : "");
        return nullptr;
    }
    return readMap(bytes, problem);
}
