#include "mesh_gltf_accessor.h"
#include "mesh_gltf_file.h"
#include "mesh_gltf_transform.h"
#include "mesh_model.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

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
            if (number >= isVisited.size()) throw ModelProblem(name, "is not there");
            if (isVisited[number]) throw ModelProblem(name, "has more than one parent");
            isVisited[number] = true;
            const tinygltf::Node& node = source.nodes[number];
            const Affine transform = visit.parent * transformOf(node);
            if (node.mesh >= 0) addMesh(node, transform);
            postpone(node.children, transform);
        }
    }

private:
    // ---- nodes

    std::vector<int> findRoots() const
    {
        if (!source.scenes.empty()) {
            const int scene = std::max(source.defaultScene, 0);
            if (static_cast<std::size_t>(scene) >= source.scenes.size())
                throw ModelProblem("the default scene", "is not there");
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
        if (static_cast<std::size_t>(node.mesh) >= source.meshes.size()) throw ModelProblem(name, "is not there");
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
        if (mode > TINYGLTF_MODE_TRIANGLE_FAN) throw ModelProblem(name, "has the unknown mode " + std::to_string(mode));
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
        const std::vector<double> positions = readAccessor(source, positionAccessor, TINYGLTF_TYPE_VEC3, name);
        const std::vector<double> coordinates =
            coordinateAccessor < 0 ? std::vector<double>()
                                   : readAccessor(source, coordinateAccessor, TINYGLTF_TYPE_VEC2, name);
        const std::size_t count = positions.size() / 3;
        if (coordinateAccessor >= 0 && coordinates.size() / 2 != count)
            throw ModelProblem(name, "has " + std::to_string(coordinates.size() / 2) + " texture coordinates for " +
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
        for (const double index : readAccessor(source, primitive.indices, TINYGLTF_TYPE_SCALAR, name)) {
            if (!(index >= 0 && index < static_cast<double>(count)))
                throw ModelProblem(name, "has index " + std::to_string(static_cast<long long>(index)) + ", but " +
                                             std::to_string(count) + " positions");
            corners.push_back(static_cast<std::size_t>(index));
        }
        return corners;
    }

    const tinygltf::Model& source;
    Model& out;
    std::map<std::pair<int, int>, std::vector<int>> vertices; // of the current mesh, by its accessors; -1 if not made
};

} // namespace

void readGltfModel(const std::string& bytes, const std::string& directory, Model& out)
{
    const tinygltf::Model source = loadGltf(bytes, directory);
    GltfReader(source, out).read();
}
