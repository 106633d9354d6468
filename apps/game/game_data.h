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

    Cache& getCache() { return *cache; }
    ResourceManager& getResources() { return *resources; }

    /// The whole name, in front of which stands the data root: of an item "brick.png" in "textures/".
    std::string getFileName(const std::string& directory, const std::string& name) const;

    /// The bytes of a file. Throws Failure, naming it, when it is not there.
    std::vector<unsigned char> read(const std::string& fileName);

private:
    std::string archive;
    OwnedResourceManager resources;
    OwnedCache cache;
};
