#include "mesh_model.h"
#include "pack_name.h"
#include "printable_text.h"

#include <xum/files/file.h>

#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

// ---- reading the file ---------------------------------------------------------------------------------------------

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

tinygltf::Model load(const std::string& bytes, const std::string& directory)
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

// ---- numbers ------------------------------------------------------------------------------------------------------

template <class Number>
double readAs(const unsigned char* bytes)
{
    Number value;
    std::memcpy(&value, bytes, sizeof value);
    return static_cast<double>(value);
}

/// Integers that are said to be normalized stand for 0 to 1 or -1 to 1.
double readComponent(const unsigned char* bytes, int type, bool isNormalized)
{
    const auto signedOne = [isNormalized](double value, double one) {
        return isNormalized ? std::max(value / one, -1.0) : value;
    };
    switch (type) {
    case TINYGLTF_COMPONENT_TYPE_BYTE: return signedOne(readAs<std::int8_t>(bytes), 127);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE: return signedOne(readAs<std::uint8_t>(bytes), 255);
    case TINYGLTF_COMPONENT_TYPE_SHORT: return signedOne(readAs<std::int16_t>(bytes), 32767);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: return signedOne(readAs<std::uint16_t>(bytes), 65535);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: return signedOne(readAs<std::uint32_t>(bytes), 4294967295);
    default: return readAs<float>(bytes);
    }
}

/// 0 for a type that glTF does not have.
std::size_t sizeOfComponent(int type)
{
    switch (type) {
    case TINYGLTF_COMPONENT_TYPE_BYTE:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE: return 1;
    case TINYGLTF_COMPONENT_TYPE_SHORT:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: return 2;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
    case TINYGLTF_COMPONENT_TYPE_FLOAT: return 4;
    default: return 0;
    }
}

/// Three rows of a matrix for column vectors.
struct Affine {
    double rows[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

    friend Affine operator*(const Affine& a, const Affine& b)
    {
        Affine product;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 4; ++j)
                product.rows[i][j] = a.rows[i][0] * b.rows[0][j] + a.rows[i][1] * b.rows[1][j] +
                                     a.rows[i][2] * b.rows[2][j] + (j == 3 ? a.rows[i][3] : 0);
        return product;
    }

    Vector3<float> apply(const double* p) const
    {
        const auto row = [p](const double* r) {
            return static_cast<float>(r[0] * p[0] + r[1] * p[1] + r[2] * p[2] + r[3]);
        };
        return {row(rows[0]), row(rows[1]), row(rows[2])};
    }

    bool isMirror() const
    {
        const double(&r)[3][4] = rows;
        return r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) - r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
                   r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]) <
               0;
    }
};

Affine transformOf(const tinygltf::Node& node)
{
    Affine all;
    if (node.matrix.size() == 16) { // column by column
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 4; ++j) all.rows[i][j] = node.matrix[j * 4 + i];
        return all;
    }
    const std::vector<double> still = {0, 0, 0, 1};
    const std::vector<double>& q = node.rotation.size() == 4 ? node.rotation : still;
    const double x = q[0];
    const double y = q[1];
    const double z = q[2];
    const double w = q[3];
    const double rotation[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                                   {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                                   {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j)
            all.rows[i][j] = rotation[i][j] * (node.scale.size() == 3 ? node.scale[j] : 1);
        if (node.translation.size() == 3) all.rows[i][3] = node.translation[i];
    }
    return all;
}

// ---- its triangles ------------------------------------------------------------------------------------------------

class GltfReader {
public:
    GltfReader(const tinygltf::Model& source, Model& out) : source(source), out(out) {}

    /// Node by node, each before its children, all in the order of the file.
    void read()
    {
        struct Visit {
            int node;
            Affine parent;
        };
        std::vector<Visit> open;
        const auto postpone = [&open](const std::vector<int>& nodes, const Affine& parent) {
            for (std::size_t i = nodes.size(); i > 0; --i) open.push_back({nodes[i - 1], parent});
        };
        std::vector<bool> isVisited(source.nodes.size());
        postpone(findRoots(), {});
        while (!open.empty()) {
            const Visit visit = open.back();
            open.pop_back();
            const auto number = static_cast<std::size_t>(visit.node);
            const std::string name = "node " + std::to_string(visit.node);
            if (number >= isVisited.size()) refuse(name, "is not there");
            if (isVisited[number]) refuse(name, "has more than one parent");
            isVisited[number] = true;
            const tinygltf::Node& node = source.nodes[number];
            const Affine transform = visit.parent * transformOf(node);
            if (node.mesh >= 0) addMesh(node, transform);
            postpone(node.children, transform);
        }
    }

private:
    /// The place of elements in a buffer.
    struct Elements {
        const unsigned char* first;
        std::size_t stride;
    };

    [[noreturn]] static void refuse(const std::string& what, const std::string& reason)
    {
        throw ModelProblem(what + ": " + reason);
    }

    // ---- nodes

    std::vector<int> findRoots() const
    {
        if (!source.scenes.empty()) {
            const int scene = std::max(source.defaultScene, 0);
            if (static_cast<std::size_t>(scene) >= source.scenes.size()) refuse("the default scene", "is not there");
            return source.scenes[static_cast<std::size_t>(scene)].nodes;
        }
        std::vector<bool> isChild(source.nodes.size());
        for (const tinygltf::Node& node : source.nodes)
            for (const int child : node.children)
                if (static_cast<std::size_t>(child) < isChild.size()) isChild[static_cast<std::size_t>(child)] = true;
        std::vector<int> roots;
        for (std::size_t i = 0; i < isChild.size(); ++i)
            if (!isChild[i]) roots.push_back(static_cast<int>(i));
        return roots;
    }

    void addMesh(const tinygltf::Node& node, const Affine& transform)
    {
        const std::string name = "mesh " + std::to_string(node.mesh);
        if (static_cast<std::size_t>(node.mesh) >= source.meshes.size()) refuse(name, "is not there");
        if (node.skin >= 0) out.note(name + ": its skin is left out");
        vertices.clear();
        const auto& primitives = source.meshes[static_cast<std::size_t>(node.mesh)].primitives;
        for (std::size_t i = 0; i < primitives.size(); ++i)
            addPrimitive(primitives[i], node.skin >= 0 ? Affine() : transform, // only joints move what has a skin
                         name + ", primitive " + std::to_string(i));
    }

    // ---- primitives

    void addPrimitive(const tinygltf::Primitive& primitive, const Affine& transform, const std::string& name)
    {
        const int mode = primitive.mode < 0 ? TINYGLTF_MODE_TRIANGLES : primitive.mode;
        if (mode > TINYGLTF_MODE_TRIANGLE_FAN) refuse(name, "has the unknown mode " + std::to_string(mode));
        if (mode < TINYGLTF_MODE_TRIANGLES) {
            out.note(name + ": points and lines are left out");
            return;
        }
        if (!primitive.targets.empty()) out.note(name + ": its morph targets are left out");
        const int positionAccessor = findAttribute(primitive, "POSITION");
        const int coordinateAccessor = findAttribute(primitive, "TEXCOORD_0");
        if (positionAccessor < 0) {
            out.note(name + ": has no positions, and is left out");
            return;
        }
        const std::vector<double> positions = readAccessor(positionAccessor, TINYGLTF_TYPE_VEC3, name);
        const std::vector<double> coordinates =
            coordinateAccessor < 0 ? std::vector<double>() : readAccessor(coordinateAccessor, TINYGLTF_TYPE_VEC2, name);
        const std::size_t count = positions.size() / 3;
        if (coordinateAccessor >= 0 && coordinates.size() / 2 != count)
            refuse(name, "has " + std::to_string(coordinates.size() / 2) + " texture coordinates for " +
                             std::to_string(count) + " positions");

        // Primitives of a mesh that share their attributes share vertices, too: they are smooth across.
        std::vector<int>& made = vertices[{positionAccessor, coordinateAccessor}];
        made.resize(count, -1);
        const auto vertex = [&](std::size_t i) {
            if (made[i] < 0) {
                const Vector2<float> coordinate = coordinates.empty()
                                                      ? Vector2<float>()
                                                      : Vector2<float>(static_cast<float>(coordinates[i * 2]),
                                                                       static_cast<float>(coordinates[i * 2 + 1]));
                made[i] =
                    out.addVertex(transform.apply(&positions[i * 3]), coordinates.empty() ? nullptr : &coordinate);
            }
            return made[i];
        };
        const std::vector<std::size_t> corners = readCorners(primitive, count, name);
        const bool isMirrored = transform.isMirror(); // turns fronts into backs
        const auto addTriangle = [&](std::size_t a, std::size_t b, std::size_t c) {
            const int first = vertex(corners[a]);
            const int second = vertex(corners[b]);
            const int third = vertex(corners[c]);
            isMirrored ? out.addTriangle(first, third, second) : out.addTriangle(first, second, third);
        };
        addTriangles(mode, corners.size(), addTriangle);
        if (mode == TINYGLTF_MODE_TRIANGLES && corners.size() % 3 != 0)
            out.note(name + ": the last corners are no whole triangle, and are left out");
    }

    template <class Add>
    static void addTriangles(int mode, std::size_t cornerCount, const Add& add)
    {
        if (mode == TINYGLTF_MODE_TRIANGLES)
            for (std::size_t i = 0; i + 2 < cornerCount; i += 3) add(i, i + 1, i + 2);
        else if (mode == TINYGLTF_MODE_TRIANGLE_STRIP)
            for (std::size_t i = 0; i + 2 < cornerCount; ++i) add(i, i + 1 + i % 2, i + 2 - i % 2);
        else
            for (std::size_t i = 0; i + 2 < cornerCount; ++i) add(i + 1, i + 2, 0);
    }

    static int findAttribute(const tinygltf::Primitive& primitive, const char* name)
    {
        const auto found = primitive.attributes.find(name);
        return found == primitive.attributes.end() ? -1 : found->second;
    }

    std::vector<std::size_t> readCorners(const tinygltf::Primitive& primitive, std::size_t count,
                                         const std::string& name) const
    {
        std::vector<std::size_t> corners;
        if (primitive.indices < 0) {
            for (std::size_t i = 0; i < count; ++i) corners.push_back(i);
            return corners;
        }
        for (const double index : readAccessor(primitive.indices, TINYGLTF_TYPE_SCALAR, name)) {
            if (!(index >= 0 && index < static_cast<double>(count)))
                refuse(name, "has index " + std::to_string(static_cast<long long>(index)) + ", but " +
                                 std::to_string(count) + " positions");
            corners.push_back(static_cast<std::size_t>(index));
        }
        return corners;
    }

    // ---- accessors

    /// All components in order.
    std::vector<double> readAccessor(int number, int type, const std::string& user) const
    {
        const std::string name = user + ": accessor " + std::to_string(number);
        if (static_cast<std::size_t>(number) >= source.accessors.size()) refuse(name, "is not there");
        const tinygltf::Accessor& accessor = source.accessors[static_cast<std::size_t>(number)];
        const std::size_t componentSize = sizeOfComponent(accessor.componentType);
        const bool isIndex = type == TINYGLTF_TYPE_SCALAR;
        if (accessor.type != type || componentSize == 0 ||
            (isIndex && accessor.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT))
            refuse(name, "has a type that does not fit");
        const std::size_t components = isIndex ? 1 : static_cast<std::size_t>(type);

        std::vector<double> values;
        if (accessor.bufferView >= 0) {
            const Elements elements = findElements(accessor.bufferView, accessor.byteOffset, componentSize * components,
                                                   accessor.count, name);
            values.resize(accessor.count * components);
            for (std::size_t i = 0; i < accessor.count; ++i)
                readElement(elements, i, accessor, components, &values[i * components]);
        } else if (accessor.count <= mostMissingElements) {
            values.resize(accessor.count * components);
        } else {
            refuse(name, "has no data");
        }
        if (accessor.sparse.isSparse) overlay(accessor, components, name, values);
        return values;
    }

    static void readElement(const Elements& elements, std::size_t i, const tinygltf::Accessor& accessor,
                            std::size_t components, double* out)
    {
        const std::size_t size = sizeOfComponent(accessor.componentType);
        for (std::size_t k = 0; k < components; ++k)
            out[k] = readComponent(elements.first + i * elements.stride + k * size, accessor.componentType,
                                   accessor.normalized);
    }

    /// A sparse accessor replaces some of its elements.
    void overlay(const tinygltf::Accessor& accessor, std::size_t components, const std::string& name,
                 std::vector<double>& values) const
    {
        const auto& sparse = accessor.sparse;
        const std::size_t indexSize = sizeOfComponent(sparse.indices.componentType);
        if (sparse.count < 0 || sparse.indices.byteOffset < 0 || sparse.values.byteOffset < 0 || indexSize == 0 ||
            sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT)
            refuse(name, "is sparse in a way that cannot be");
        const auto count = static_cast<std::size_t>(sparse.count);
        const Elements indexes = findElements(
            sparse.indices.bufferView, static_cast<std::size_t>(sparse.indices.byteOffset), indexSize, count, name);
        const Elements elements =
            findElements(sparse.values.bufferView, static_cast<std::size_t>(sparse.values.byteOffset),
                         sizeOfComponent(accessor.componentType) * components, count, name);
        for (std::size_t i = 0; i < count; ++i) {
            const double index = readComponent(indexes.first + i * indexes.stride, sparse.indices.componentType, false);
            if (!(index >= 0 && index < static_cast<double>(accessor.count)))
                refuse(name, "replaces an element that is not there");
            readElement(elements, i, accessor, components, &values[static_cast<std::size_t>(index) * components]);
        }
    }

    /// All of them lie in the buffer.
    Elements findElements(int viewNumber, std::size_t offset, std::size_t size, std::size_t count,
                          const std::string& name) const
    {
        if (static_cast<std::size_t>(viewNumber) >= source.bufferViews.size())
            refuse(name, "has buffer view " + std::to_string(viewNumber) + ", which is not there");
        const tinygltf::BufferView& view = source.bufferViews[static_cast<std::size_t>(viewNumber)];
        if (static_cast<std::size_t>(view.buffer) >= source.buffers.size())
            refuse(name, "has buffer " + std::to_string(view.buffer) + ", which is not there");
        const std::vector<unsigned char>& bytes = source.buffers[static_cast<std::size_t>(view.buffer)].data;
        const std::size_t stride = view.byteStride == 0 ? size : view.byteStride;
        const bool isViewInside = view.byteOffset <= bytes.size() && view.byteLength <= bytes.size() - view.byteOffset;
        const bool isInside =
            isViewInside && (count == 0 || (offset <= view.byteLength && size <= view.byteLength - offset &&
                                            count - 1 <= (view.byteLength - offset - size) / stride));
        if (!isInside) refuse(name, "reaches beyond its buffer");
        return {bytes.data() + view.byteOffset + (count == 0 ? 0 : offset), stride};
    }

    static constexpr std::size_t mostMissingElements = 1 << 24; // all zero, so that a small file says what it likes

    const tinygltf::Model& source;
    Model& out;
    std::map<std::pair<int, int>, std::vector<int>> vertices; // of the current mesh, by its accessors; -1 if not made
};

} // namespace

void readGltfModel(const std::string& bytes, const std::string& directory, Model& out)
{
    const tinygltf::Model source = load(bytes, directory);
    GltfReader(source, out).read();
}
