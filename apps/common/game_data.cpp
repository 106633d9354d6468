#include "game_data.h"

#include "failure.h"
#include "path_name.h"

#include <xum/files/cache.h>
#include <xum/files/resource_manager.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace {

void requireDirectory(const std::string& directory)
{
    std::error_code failure;
    if (std::filesystem::is_directory(directory, failure)) return;
    throw Failure(ExitStatus::BrokenData, "there is no data directory " + directory + " (choose another with --data)");
}

// Asked before the engine is: it takes a file that it cannot read for an empty archive, and another one for a reason to
// stop the program.
void requireArchive(const std::string& fileName)
{
    const std::string magic = "!XumRes";
    std::error_code failure;
    const bool isFile = std::filesystem::is_regular_file(fileName, failure);
    std::ifstream file(fileName, std::ios::binary);
    if (!isFile || !file) throw Failure(ExitStatus::BrokenData, "cannot read the archive " + fileName);
    std::string start(magic.size(), '\0');
    file.read(start.data(), static_cast<std::streamsize>(start.size()));
    if (start != magic) throw Failure(ExitStatus::BrokenData, fileName + " is no archive");
}

/// Ends with '/'.
std::string makeTemporaryDirectory()
{
    std::error_code failure;
    const std::filesystem::path parent = std::filesystem::temp_directory_path(failure);
    std::random_device chance;
    for (int attempt = 0; attempt < 100 && !failure; ++attempt) {
        const std::filesystem::path directory = parent / ("xum-game-" + std::to_string(chance()));
        if (std::filesystem::create_directory(directory, failure)) return nameOf(directory) + "/";
    }
    throw Failure(ExitStatus::BrokenData, "cannot make a temporary directory");
}

} // namespace

GameData::GameData(Engine& engine, const DataSource& source)
    : archive(source.archive), localRoot(source.directory), resources(engine.createResourceManager(), {&engine}),
      cache(nullptr, {&engine})
{
    if (resources) cache.reset(engine.createCache(resources.get()));
    if (!cache) throw Failure(ExitStatus::BrokenData, "not enough memory for the data");
    if (archive.empty()) {
        requireDirectory(source.directory);
        cache->setDataRoot(source.directory);
    } else {
        requireArchive(archive);
        resources->addResourceFile(archive);
        cache->setDataRoot(""); // names in archives begin with the directory of their kind
        localRoot = makeTemporaryDirectory();
    }
}

GameData::~GameData()
{
    std::error_code failure;
    if (!archive.empty()) std::filesystem::remove_all(localRoot, failure);
}

std::string GameData::getFileName(const std::string& directory, const std::string& name) const
{
    return cache->getDataRoot() + directory + name;
}

std::vector<unsigned char> GameData::read(const std::string& fileName)
{
    std::vector<unsigned char> data;
    if (resources->load(data, fileName)) return data;
    throw Failure(ExitStatus::BrokenData,
                  "cannot read the file " + fileName + (archive.empty() ? "" : " from the archive " + archive));
}

std::string GameData::provideFile(const std::string& fileName)
{
    const std::vector<unsigned char> data = read(fileName);
    if (archive.empty()) return fileName;
    std::error_code failure;
    const std::filesystem::path copy = localRoot + fileName;
    if (std::filesystem::exists(copy, failure)) return nameOf(copy); // perhaps in use, so Windows would not replace it
    std::filesystem::create_directories(copy.parent_path(), failure);
    std::ofstream file(copy, std::ios::binary);
    file.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
    file.close();
    if (!file) throw Failure(ExitStatus::BrokenData, "cannot write the temporary file " + nameOf(copy));
    return nameOf(copy);
}
