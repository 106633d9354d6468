#pragma once

#include <xum/engine/export.h>

#include <string>

class AudioDevice;
class Program;
class RenderDevice;
class Sample;
class Stream;
class Texture;

/// Loads game data by name, each item once, and keeps it until it is released. Everything is read through the resource
/// manager that the cache was made over. The file of an item is data root + directory of its kind + name, joined as
/// they are: the directories bring their '/'. Made by Engine::createCache, given back to Engine::destroyCache, which
/// releases everything through the devices that loaded it: destroy the cache before them. Slot order is ABI.
///
/// Archives hold relative names, as a rule: set the data root to "" or to a relative directory to read from them.
class XUM_API Cache {
public:
    /// At the start what defaultDataRoot() returns. What is loaded already stays when a directory changes.
    /// @{
    virtual std::string getDataRoot() = 0;
    virtual void setDataRoot(const std::string& directory) = 0;
    /// @}

    /// Where each kind lies below the data root, in this order at the start "shaders/", "programs/", "textures/",
    /// "samples/" and "streams/".
    /// @{
    virtual std::string getShaderDirectory() = 0;
    virtual void setShaderDirectory(const std::string& directory) = 0;
    virtual std::string getProgramDirectory() = 0;
    virtual void setProgramDirectory(const std::string& directory) = 0;
    virtual std::string getTextureDirectory() = 0;
    virtual void setTextureDirectory(const std::string& directory) = 0;
    virtual std::string getSampleDirectory() = 0;
    virtual void setSampleDirectory(const std::string& directory) = 0;
    virtual std::string getStreamDirectory() = 0;
    virtual void setStreamDirectory(const std::string& directory) = 0;
    /// @}

    /// The identifier of a name: 0 for the first name, 1 for the next one and so on; -1 when memory runs out. One name
    /// stands for one kind of data: to ask for it as another while it is loaded is a fatal error, "Cache::getTexture()
    /// -> data of another kind is loaded (NAME)!" and so on.
    virtual int getId(const std::string& name) = 0;

    /// The program of an identifier, loaded if it is not yet. A transient one goes with every release, the others only
    /// when all are released. An item that is loaded comes back whatever the other arguments are. The cache owns what
    /// it returns.
    ///
    /// Null for an identifier that getId never gave out, and when the device makes nothing: the "Software" render
    /// device, or no device at all, as on a machine without sound. Such an item stays unloaded.
    ///
    /// A program's description is a configuration file with the entries "vertex-shaders", "geometry-shaders",
    /// "fragment-shaders", "compute-shaders", "inputs" and "outputs", all optional, each a list of names separated by
    /// commas. A description that is missing or broken is a fatal error, see ConfigFile. A missing shader is left out.
    virtual Program* getProgram(RenderDevice* device, int id, bool transient) = 0;

    /// The other kinds of items, as getProgram gives programs. A file that is missing or cannot be decoded is a fatal
    /// error: "Could not load texture: NAME", "Could not load sample: NAME", "Could not load stream: NAME".
    /// @{
    virtual Texture* getTexture(RenderDevice* device, int id, bool mipmaps, bool transient) = 0;
    virtual Sample* getSample(AudioDevice* audio, int id, bool transient) = 0;
    virtual Stream* getStream(AudioDevice* audio, int id, bool transient) = 0;
    /// @}

    /// Destroys what was loaded as transient, or everything, shaders included, through the devices; a null device
    /// stands for the one that loaded the item. Names keep their identifiers: the next request loads anew. Music that
    /// is being faded out is waited for.
    virtual void release(RenderDevice* device, AudioDevice* audio, bool all) = 0;

protected:
    ~Cache() = default;
};
