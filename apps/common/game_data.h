#pragma once

#include "owned.h"

#include <string>
#include <vector>

/// Where the game's data come from: a directory, or an archive alone.
struct DataSource {
    std::string directory; ///< ends with '/'
    std::string archive;   ///< empty: the directory
};

/// The game's data. They are loaded through the engine's cache, which stops the program when something is wrong with
/// them; read finds out beforehand. Destroy it before the devices that anything was loaded through.
class GameData {
public:
    /// Throws Failure when there is no such directory or archive.
    GameData(Engine& engine, const DataSource& source);

    /// Removes the files that it provided from an archive.
    ~GameData();

    GameData(const GameData&) = delete;
    GameData& operator=(const GameData&) = delete;

    Cache& getCache() { return *cache; }
    ResourceManager& getResources() { return *resources; }

    /// The whole name, in front of which stands the data root: of an item "brick.png" in "textures/".
    std::string getFileName(const std::string& directory, const std::string& name) const;

    /// The bytes of a file. Throws Failure, naming it, when it is not there.
    std::vector<unsigned char> read(const std::string& fileName);

    /// The name of a file on the disk with these contents, for what the engine reads itself: maps, meshes and scripts.
    /// From an archive it is a temporary one. Throws Failure, naming the file, when it is not there.
    std::string provideFile(const std::string& fileName);

    /// Under which provided files have their names; ends with '/'.
    const std::string& getLocalRoot() const { return localRoot; }

private:
    std::string archive;
    std::string localRoot;
    OwnedResourceManager resources;
    OwnedCache cache;
};
