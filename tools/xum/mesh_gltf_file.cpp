#include "mesh_gltf_file.h"

#include "mesh_model.h"
#include "pack_name.h"
#include "printable_text.h"

#include <xum/files/file.h>

#include <tiny_gltf.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view binaryMagic = "glTF";
constexpr int deepestJson = 200; // of objects and lists inside each other: the loader calls itself for each

/// What the loader asks for by name. It seeks everything in the directory "." of its own; nothing outside of the
/// model's directory is ever opened.
struct ModelDirectory {
    fs::path path;
    std::string refusal; // of the last name that was refused

    static ModelDirectory& of(void* directory) { return *static_cast<ModelDirectory*>(directory); }

    /// Empty for what may not be opened.
    fs::path find(const std::string& askedFor)
    {
        std::string_view name = askedFor;
        if (name.substr(0, 2) == "./") name.remove_prefix(2);
        if (findNameProblem(name).empty()) return path / fs::path(std::u8string(name.begin(), name.end()));
        refusal = "refers to \"" + printable(name) + "\", which may lie outside of its directory";
        return {};
    }

    static bool isThere(const std::string& name, void* directory)
    {
        std::error_code unknown;
        const fs::path file = of(directory).find(name);
        return !file.empty() && fs::is_regular_file(file, unknown);
    }

    static std::string keepName(const std::string& name, void* /*directory*/) { return name; }

    static bool read(std::vector<unsigned char>* out, std::string* problem, const std::string& name, void* directory)
    {
        InputFile file(of(directory).find(name).native());
        const std::uint64_t size = file.getSize();
        if (file.isOpen() && size <= std::numeric_limits<unsigned>::max()) {
            out->resize(static_cast<std::size_t>(size));
            if (file.read(*out, static_cast<unsigned>(size))) return true;
        }
        *problem = "cannot be read";
        return false;
    }

    static bool write(std::string* problem, const std::string& /*name*/, const std::vector<unsigned char>& /*bytes*/,
                      void* /*directory*/)
    {
        *problem = "is not to be written";
        return false;
    }
};

/// Pictures stay closed.
bool takeNoPicture(tinygltf::Image* /*image*/, int /*number*/, std::string* /*error*/, std::string* /*warning*/,
                   int /*width*/, int /*height*/, const unsigned char* /*bytes*/, int /*size*/, void* /*userData*/)
{
    return true;
}

bool isBinary(const std::string& bytes)
{
    return bytes.compare(0, binaryMagic.size(), binaryMagic) == 0;
}

void checkVersion(const std::string& version)
{
    if (!version.empty() && version.substr(0, 2) != "2.")
        throw ModelProblem("is glTF " + printable(version) + ", which cannot be read: only glTF 2 can");
}

/// The loader forgets the eight bytes before the data of the second part, and would read as far beyond the end.
void checkParts(const std::string& bytes)
{
    const auto numberAt = [&bytes](std::uint64_t place) {
        std::uint64_t number = 0;
        for (std::size_t i = 4; i > 0; --i)
            number = number << 8 | static_cast<unsigned char>(bytes[static_cast<std::size_t>(place) + i - 1]);
        return number;
    };
    if (bytes.size() < 20) return;
    if (numberAt(4) == 1) checkVersion("1.0");
    const std::uint64_t end = std::min<std::uint64_t>(numberAt(8), bytes.size());
    const std::uint64_t second = 20 + numberAt(12);
    if (second + 8 <= end && numberAt(second) > end - second - 8) throw ModelProblem("ends within its data");
}

void checkDepth(const std::string& bytes)
{
    const std::size_t begin = isBinary(bytes) ? 20 : 0; // behind the header and that of its first part
    int depth = 0;
    bool isInString = false;
    for (std::size_t i = begin; i < bytes.size(); ++i) {
        const char character = bytes[i];
        if (isInString && character == '\\')
            ++i;
        else if (character == '"')
            isInString = !isInString;
        else if (!isInString && (character == '{' || character == '['))
            ++depth;
        else if (!isInString && (character == '}' || character == ']') && --depth == 0)
            return;
        if (depth > deepestJson)
            throw ModelProblem("has more than " + std::to_string(deepestJson) + " objects inside each other");
    }
}

/// The loader's text in one line of a bearable length; it may quote whole files.
std::string summarize(std::string text)
{
    constexpr std::size_t longest = 200;
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    if (text.size() > longest) text = text.substr(0, longest) + "...";
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n')) text.replace(at, 1, "; ");
    return printable(text);
}

/// Whether positions, texture coordinates and triangles are the same without it.
bool isHarmless(std::string_view extension)
{
    for (const std::string_view prefix : {"KHR_materials_", "KHR_texture_", "EXT_texture_", "KHR_lights_"})
        if (extension.substr(0, prefix.size()) == prefix) return true;
    return extension == "KHR_mesh_quantization";
}

void checkExtensions(const std::vector<std::string>& extensions)
{
    for (const std::string& extension : extensions)
        if (!isHarmless(extension))
            throw ModelProblem("needs the extension \"" + printable(extension) + "\", which is not known here");
}

} // namespace

tinygltf::Model loadGltf(const std::string& bytes, const std::string& directory)
{
    if (bytes.size() > std::numeric_limits<unsigned>::max()) throw ModelProblem("is too large (4 GiB or more)");
    if (isBinary(bytes)) checkParts(bytes);
    checkDepth(bytes);
    ModelDirectory files{directory, ""};
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(takeNoPicture, nullptr);
    loader.SetFsCallbacks(
        {ModelDirectory::isThere, ModelDirectory::keepName, ModelDirectory::read, ModelDirectory::write, &files});
    tinygltf::Model source;
    std::string problem;
    std::string warning;
    const auto size = static_cast<unsigned>(bytes.size());
    const bool isLoaded =
        isBinary(bytes) ? loader.LoadBinaryFromMemory(&source, &problem, &warning,
                                                      reinterpret_cast<const unsigned char*>(bytes.data()), size, ".")
                        : loader.LoadASCIIFromString(&source, &problem, &warning, bytes.data(), size, ".");
    checkVersion(source.asset.version);
    checkExtensions(source.extensionsRequired);
    const bool isFileMissing = problem.find("File not found") != std::string::npos;
    if (!isLoaded && isFileMissing && !files.refusal.empty()) throw ModelProblem(files.refusal);
    if (!isLoaded) throw ModelProblem("cannot be read: " + summarize(problem));
    return source;
}
