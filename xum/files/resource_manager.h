#pragma once

#include <xum/engine/export.h>

#include <string>
#include <vector>

/// @class ResourceFileImplementation
/// One opened archive, owned by its resource manager. Hosts only pass pointers to it.
class ResourceFileImplementation;

/// Returns the bytes of named files, plain ones and those in archives. Made by Engine::createResourceManager, given
/// back to Engine::destroyResourceManager. Slot order is ABI.
class XUM_API ResourceManager {
public:
    /// Opens an archive for as long as the manager lives. One that cannot be read counts as empty; one that is no
    /// archive is a fatal error: "Invalid header for resource file!". Null when memory runs out.
    virtual ResourceFileImplementation* addResourceFile(const std::string& fileName) = 0;

    /// Replaces `data` by the bytes of a file. A plain file of that name, relative to the working directory, wins; then
    /// the archives are asked, the one added last first, for the name without each "DIRECTORY/../". Names are compared
    /// exactly, with '/' between directories. False, with `data` as it was, when nobody has the file or memory runs
    /// out. Bytes that a damaged archive lacks are 0:
    /// what its directory says of a size, up to 4 GiB, is what is made (`xum pack check` finds such archives).
    virtual bool load(std::vector<unsigned char>& data, const std::string& name) = 0;

protected:
    ~ResourceManager() = default;
};
