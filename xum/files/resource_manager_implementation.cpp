#include <xum/files/resource_manager_implementation.h>

#include <xum/files/file_opening.h>
#include <xum/files/read_file.h>
#include <xum/files/resource_path.h>

#include <algorithm>
#include <fstream>
#include <new>

namespace {

bool loadPlain(std::vector<unsigned char>& data, std::ifstream& file)
{
    const std::streamoff size = file.seekg(0, std::ios::end).tellg();
    if (!resizeIfPossible(data, size < 0 ? 0 : static_cast<std::uint64_t>(size))) return false;
    file.seekg(0, std::ios::beg);
    // A file that shrinks meanwhile, a broken disk: the size stands, and nothing that was in `data` before stays.
    if (!readBytes(file, data.data(), data.size())) std::fill(data.begin(), data.end(), static_cast<unsigned char>(0));
    return true;
}

} // namespace

ResourceFileImplementation* ResourceManagerImplementation::addResourceFile(const std::string& fileName)
{
    try {
        return new ResourceFileImplementation(fileName, *this);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool ResourceManagerImplementation::load(std::vector<unsigned char>& data, const std::string& name)
{
    try {
        if (mayBeReadable(name)) {
            std::ifstream plain;
            openReadable(plain, name, std::ios::in | std::ios::binary);
            if (plain.is_open()) return loadPlain(data, plain);
        }
        const std::string key = normalizeResourceName(name);
        for (ResourceFileImplementation* archive = getLast(); archive != nullptr; archive = archive->getPrev())
            if (archive->load(data, key)) return true;
    } catch (const std::bad_alloc&) {
        // what was allocated was not for the data, which are as they were
    }
    return false;
}
