#include "mesh_info.h"

#include "printable_text.h"
#include "report.h"

#include <xum/files/file.h>
#include <xum/geometry/box.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/mesh_file_format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <tuple>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Triangle = std::array<std::size_t, 3>;

class MeshInfo {
public:
    explicit MeshInfo(const std::string& path) : path(path) {}

    bool print()
    {
        if (!readHeader()) return false;
        mesh.reset(loadMesh(path));
        if (mesh == nullptr) return fail("cannot be read");
        findTriangles();
        printCounts();
        printBounds();
        printTriangles();
        printEdges();
        return !hasProblem;
    }

private:
    bool fail(const std::string& reason)
    {
        report(printable(path) + ": " + reason);
        hasProblem = true;
        return false;
    }

    /// Of the file, as its header has it.
    std::uint64_t getWholeSize() const { return sizeof header + header.getArraySize(); }

    bool readHeader()
    {
        std::error_code failure;
        const fs::file_status status = fs::status(path, failure);
        if (!fs::exists(status)) return fail("cannot be opened: " + failure.message());
        if (!fs::is_regular_file(status)) return fail("is no file");
        InputFile file(path);
        if (!file.isOpen()) return fail("cannot be opened");
        fileSize = file.getSize();
        std::memset(header.magic, 0, sizeof header.magic); // what cannot be read is no magic
        file.read(&header, sizeof header);
        if (!header.hasMagic()) return fail("is no mesh file");
        if (fileSize < sizeof header) return fail("ends within its header");
        if (header.hasNegativeCount()) return fail("has a count below 0");
        if (getWholeSize() > fileSize)
            return fail("ends at byte " + std::to_string(fileSize) + " of " + std::to_string(getWholeSize()));
        return true;
    }

    /// Those whose corners are all there.
    void findTriangles()
    {
        const std::vector<int>& indexes = mesh->getIndexes();
        const std::size_t positionCount = mesh->getPositions().size();
        std::size_t wrong = 0;
        for (const int index : indexes)
            if (static_cast<std::size_t>(index) >= positionCount) ++wrong;
        for (std::size_t i = 0; i + 2 < indexes.size(); i += 3) {
            const Triangle triangle = {static_cast<std::size_t>(indexes[i]), static_cast<std::size_t>(indexes[i + 1]),
                                       static_cast<std::size_t>(indexes[i + 2])};
            if (*std::max_element(triangle.begin(), triangle.end()) < positionCount) triangles.push_back(triangle);
        }
        if (wrong != 0) fail(std::to_string(wrong) + " indexes name no position");
    }

    static void line(const char* name, const std::string& value) { std::printf("%s: %s\n", name, value.c_str()); }
    static void line(const char* name, std::size_t value) { line(name, std::to_string(value)); }

    static void note(const std::string& text) { line("note", text); }

    void printCounts()
    {
        const std::size_t positions = mesh->getPositions().size();
        const std::size_t coordinates = mesh->getTextureCoordinates().size();
        const std::size_t indexes = mesh->getIndexes().size();
        line("positions", positions);
        line("texture coordinates", coordinates == 0 ? "none" : std::to_string(coordinates));
        line("triangles", indexes / 3);
        if (coordinates != 0 && coordinates != positions)
            note("the texture coordinates are not used, as there is not one for each position");
        if (indexes % 3 != 0) note("the last indexes are no whole triangle");
        if (fileSize > getWholeSize())
            note(std::to_string(fileSize - getWholeSize()) + " bytes behind the end are not used");
    }

    void printBounds()
    {
        std::size_t infinite = 0;
        for (const Vector3<float>& p : mesh->getPositions())
            if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) ++infinite;
        for (const Vector2<float>& c : mesh->getTextureCoordinates())
            if (!std::isfinite(c.x) || !std::isfinite(c.y)) ++infinite;
        if (infinite != 0) fail(std::to_string(infinite) + " positions and texture coordinates are not finite");
        if (mesh->getPositions().empty()) return;
        const Box box = mesh->calculateBoundingBox();
        std::printf("bounds: %.9g %.9g %.9g to %.9g %.9g %.9g\n", static_cast<double>(box.minimum.x),
                    static_cast<double>(box.minimum.y), static_cast<double>(box.minimum.z),
                    static_cast<double>(box.maximum.x), static_cast<double>(box.maximum.y),
                    static_cast<double>(box.maximum.z));
    }

    void printTriangles()
    {
        std::vector<bool> isUsed(mesh->getPositions().size());
        std::size_t flat = 0;
        std::vector<Triangle> sorted;
        for (const Triangle& triangle : triangles) {
            for (const std::size_t corner : triangle) isUsed[corner] = true;
            if (!hasArea(triangle)) ++flat;
            sorted.push_back(triangle);
            std::sort(sorted.back().begin(), sorted.back().end());
        }
        std::sort(sorted.begin(), sorted.end());
        const auto different = static_cast<std::size_t>(std::unique(sorted.begin(), sorted.end()) - sorted.begin());
        line("unused positions", static_cast<std::size_t>(std::count(isUsed.begin(), isUsed.end(), false)));
        line("triangles without area", flat);
        line("duplicate triangles", triangles.size() - different);
    }

    bool hasArea(const Triangle& triangle) const
    {
        const auto corner = [this, &triangle](std::size_t i) {
            const Vector3<float>& p = mesh->getPositions()[triangle[i]];
            return Vector3<double>(p.x, p.y, p.z);
        };
        return length(cross(corner(2) - corner(1), corner(0) - corner(1))) > 0;
    }

    /// The number of the first position in the same place, for each one: texture coordinates part what touches.
    std::vector<std::size_t> findPlaces() const
    {
        const std::vector<Vector3<float>>& positions = mesh->getPositions();
        std::vector<std::size_t> order;
        for (std::size_t i = 0; i < positions.size(); ++i) order.push_back(i);
        const auto key = [&positions](std::size_t i) {
            return std::tie(positions[i].x, positions[i].y, positions[i].z);
        };
        std::sort(order.begin(), order.end(),
                  [&key](std::size_t a, std::size_t b) { return key(a) < key(b) || (key(a) == key(b) && a < b); });
        std::vector<std::size_t> places(positions.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            const bool isSame = i != 0 && key(order[i]) == key(order[i - 1]);
            places[order[i]] = isSame ? places[order[i - 1]] : order[i];
        }
        return places;
    }

    void printEdges()
    {
        if (hasProblem || triangles.empty()) return; // what is not finite has no order
        const std::vector<std::size_t> places = findPlaces();
        std::vector<std::pair<std::size_t, std::size_t>> sides;
        for (const Triangle& triangle : triangles) {
            for (std::size_t i = 0; i < 3; ++i) {
                const auto ends = std::minmax(places[triangle[i]], places[triangle[(i + 1) % 3]]);
                if (ends.first != ends.second) sides.emplace_back(ends.first, ends.second);
            }
        }
        std::sort(sides.begin(), sides.end());
        std::size_t edges = 0;
        std::size_t single = 0;
        std::size_t crowded = 0;
        for (std::size_t i = 0; i < sides.size();) {
            std::size_t end = i + 1;
            while (end < sides.size() && sides[end] == sides[i]) ++end;
            ++edges;
            if (end - i == 1) ++single;
            if (end - i > 2) ++crowded;
            i = end;
        }
        line("edges", edges);
        line("edges of one triangle", single);
        line("edges of three or more triangles", crowded);
        line("surface", single == 0 ? "closed" : "open");
    }

    const std::string& path;
    MeshFileHeader header;
    std::uint64_t fileSize = 0;
    std::unique_ptr<Mesh> mesh;
    std::vector<Triangle> triangles;
    bool hasProblem = false;
};

} // namespace

bool printMeshInfo(const std::string& mesh)
{
    return MeshInfo(mesh).print();
}
