#include "memory_file.h"
#include "survivable_errors.h"

#include <xum/files/resource_manager_implementation.h>
#include <xum/files/resource_path.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <sys/stat.h>

// Opens each input as an archive, loads what its directory names and some names more, and compares with a reading of
// its own.

namespace {

const MemoryFile* archiveFile = nullptr;

/// An entry may claim 4 GiB, and gets them.
constexpr std::uint32_t largestLoad = 1u << 20;

struct Entry {
    std::uint64_t offset;
    std::uint32_t size;
};
using Directory = std::map<std::string, Entry>;

template <class Number>
Number readNumber(const std::uint8_t* bytes)
{
    Number number;
    std::memcpy(&number, bytes, sizeof(number));
    return number;
}

Directory readDirectory(const std::uint8_t* data, std::size_t size)
{
    Directory directory;
    if (size < 16) return directory;
    const std::uint32_t count = readNumber<std::uint32_t>(data + 11);
    for (std::size_t at = 16, i = 0; i < count && at + 144 <= size; at += 144, ++i) {
        const char* name = reinterpret_cast<const char*>(data + at);
        directory[std::string(name, strnlen(name, 128))] = {readNumber<std::uint64_t>(data + at + 128),
                                                            readNumber<std::uint32_t>(data + at + 136)};
    }
    return directory;
}

std::vector<unsigned char> bytesOf(const Entry& entry, const std::uint8_t* data, std::size_t size)
{
    std::vector<unsigned char> bytes(entry.size);
    if (entry.offset >= size) return bytes;
    const std::size_t present = std::min<std::size_t>(entry.size, size - static_cast<std::size_t>(entry.offset));
    std::copy(data + entry.offset, data + entry.offset + present, bytes.begin());
    return bytes;
}

/// What is on the disk wins: nobody knows what that is.
bool isOnDisk(const std::string& name)
{
    struct stat status = {};
    return stat(name.c_str(), &status) == 0;
}

void checkLoad(ResourceManager& resources, const Directory& directory, const std::string& name,
               const std::uint8_t* data, std::size_t size)
{
    if (isOnDisk(name)) return;
    const std::string key = normalizeResourceName(name);
    abortIf(key.find("../") != std::string::npos, "a name keeps its \"../\"");
    abortIf(normalizeResourceName("a directory/../" + name) != key, "a directory is not taken out");
    const auto found = directory.find(key);
    if (found != directory.end() && found->second.size > largestLoad) return;
    const std::vector<unsigned char> untouched = {1, 2, 3};
    std::vector<unsigned char> loaded = untouched;
    const bool isLoaded = resources.load(loaded, name);
    abortIf(isLoaded != (found != directory.end()), "a file appears or is missing");
    abortIf(loaded != (isLoaded ? bytesOf(found->second, data, size) : untouched), "the bytes are others");
}

void check(const std::uint8_t* data, std::size_t size)
{
    constexpr char magic[] = "!XumRes";
    const bool isArchive = std::memcmp(data, magic, std::min<std::size_t>(size, 7)) == 0;
    archiveFile->write(data, size);
    ResourceManagerImplementation resources;
    abortIf(resources.addResourceFile(archiveFile->getName()) == nullptr, "there is no archive");
    abortIf(!isArchive, "another file passes for an archive");

    const Directory directory = readDirectory(data, size);
    for (const auto& [name, entry] : directory) {
        checkLoad(resources, directory, name, data, size);
        checkLoad(resources, directory, "no such directory/../" + name, data, size);
        checkLoad(resources, directory, name + "x", data, size);
    }
    // The data themselves as a name, with all that can be in one.
    const std::size_t length = std::min<std::size_t>(size, 200);
    checkLoad(resources, directory, std::string(data + size - length, data + size), data, size);
    checkLoad(resources, directory, "", data, size);
    // Once more: no load may spoil a later one.
    for (const auto& [name, entry] : directory) checkLoad(resources, directory, name, data, size);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    makeErrorsSurvivable();
    archiveFile = new MemoryFile;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        check(data, size);
    } catch (const FatalError&) {
        constexpr char magic[] = "!XumRes";
        abortIf(std::memcmp(data, magic, std::min<std::size_t>(size, 7)) == 0, "an archive is refused");
    }
    return 0;
}
