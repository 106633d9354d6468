#include <xum/engine/log.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/short_vectors.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr int mostSubdivisions = 12; // 400 million corners
constexpr float tolerance = 0.001f;

using Triangle = std::array<int, 3>;

struct Surface {
    std::vector<Vector3<float>> positions;
    std::vector<Triangle> triangles;
};

Surface makeOctahedron()
{
    const float c = static_cast<float>(1.0 / std::sqrt(2.0));
    return {{{0, 0, -1}, {-c, -c, 0}, {c, -c, 0}, {c, c, 0}, {-c, c, 0}, {0, 0, 1}},
            {{0, 2, 1}, {0, 3, 2}, {0, 4, 3}, {0, 1, 4}, {5, 1, 2}, {5, 2, 3}, {5, 3, 4}, {5, 4, 1}}};
}

int addMiddle(Surface& surface, int a, int b)
{
    const Vector3<float> sum =
        surface.positions[static_cast<std::size_t>(a)] + surface.positions[static_cast<std::size_t>(b)];
    surface.positions.push_back(directionOf(sum));
    return static_cast<int>(surface.positions.size() - 1);
}

/// Splits each triangle into four. Neighbours do not share the new positions.
void subdivide(Surface& surface)
{
    std::vector<Triangle> smaller;
    smaller.reserve(surface.triangles.size() * 4);
    surface.positions.reserve(surface.positions.size() + surface.triangles.size() * 3);
    for (const auto& [a, b, c] : surface.triangles) {
        const int ab = addMiddle(surface, a, b);
        const int bc = addMiddle(surface, c, b);
        const int ca = addMiddle(surface, c, a);
        smaller.insert(smaller.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
    }
    surface.triangles.swap(smaller);
}

bool areClose(const Vector3<float>& a, const Vector3<float>& b)
{
    return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance && std::fabs(a.z - b.z) < tolerance;
}

/// Positions without those that are close to an earlier one, hashed by the cells of a grid.
class DistinctPositions {
public:
    /// Cells wider than the tolerance: what is close to a position lies in its cell or in one beside it.
    DistinctPositions(std::size_t expected, float cellSize) : cellSize(cellSize)
    {
        std::size_t buckets = 16;
        while (buckets < expected) buckets *= 2;
        lastInBucket.assign(buckets, -1);
        positions.reserve(expected);
        nextInBucket.reserve(expected);
    }

    /// The index of the first position close to this one, which is added if there is none.
    int findOrAdd(const Vector3<float>& position)
    {
        const int found = find(position);
        return found >= 0 ? found : add(position);
    }

    std::vector<Vector3<float>> take() { return std::move(positions); }

private:
    struct Cell {
        int x;
        int y;
        int z;
    };

    /// The lowest index, as a search from the start would find it; -1 for none.
    int find(const Vector3<float>& position) const
    {
        const Vector3<float> reach = {tolerance, tolerance, tolerance};
        const Cell low = cellOf(position - reach);
        const Cell high = cellOf(position + reach);
        int lowest = -1;
        for (int x = low.x; x <= high.x; ++x)
            for (int y = low.y; y <= high.y; ++y)
                for (int z = low.z; z <= high.z; ++z)
                    for (int i = lastInBucket[bucketOf({x, y, z})]; i >= 0;
                         i = nextInBucket[static_cast<std::size_t>(i)])
                        if ((lowest < 0 || i < lowest) && areClose(positions[static_cast<std::size_t>(i)], position))
                            lowest = i;
        return lowest;
    }

    int add(const Vector3<float>& position)
    {
        const int index = static_cast<int>(positions.size());
        int& last = lastInBucket[bucketOf(cellOf(position))];
        positions.push_back(position);
        nextInBucket.push_back(last);
        last = index;
        return index;
    }

    Cell cellOf(const Vector3<float>& position) const
    {
        const auto along = [this](float coordinate) { return static_cast<int>(std::floor(coordinate / cellSize)); };
        return {along(position.x), along(position.y), along(position.z)};
    }

    std::size_t bucketOf(const Cell& cell) const
    {
        const auto hash = static_cast<std::uint32_t>(cell.x) * 73856093U ^
                          static_cast<std::uint32_t>(cell.y) * 19349663U ^
                          static_cast<std::uint32_t>(cell.z) * 83492791U;
        return (hash ^ hash >> 15) & (lastInBucket.size() - 1);
    }

    float cellSize;
    std::vector<Vector3<float>> positions;
    std::vector<int> lastInBucket;
    std::vector<int> nextInBucket; // by position
};

/// The surface with each position once, as far as the tolerance tells.
std::unique_ptr<Mesh> merge(const Surface& surface, int subdivisions, float radius)
{
    const float typicalDistance = 2.0f / static_cast<float>(1 << subdivisions);
    DistinctPositions distinct(surface.positions.size() / 2, std::max(typicalDistance, 2.5f * tolerance));
    std::vector<int> merged;
    merged.reserve(surface.positions.size());
    for (const Vector3<float>& position : surface.positions) merged.push_back(distinct.findOrAdd(position));

    std::vector<int> indexes;
    indexes.reserve(surface.triangles.size() * 3);
    for (const Triangle& triangle : surface.triangles) {
        for (const int corner : triangle) {
            const int index = merged[static_cast<std::size_t>(corner)];
            if (index < 0) error("Vertex index not found!");
            indexes.push_back(index);
        }
    }
    std::vector<Vector3<float>> positions = distinct.take();
    for (Vector3<float>& position : positions) position *= radius;
    return std::make_unique<Mesh>(std::move(positions), std::vector<Vector2<float>>(), std::move(indexes));
}

} // namespace

Mesh* createSphereMesh(int subdivisions, float radius)
{
    if (subdivisions > mostSubdivisions) return nullptr;
    const int rounds = std::max(subdivisions, 0);
    try {
        Surface surface = makeOctahedron();
        for (int round = 0; round < rounds; ++round) subdivide(surface);
        std::unique_ptr<Mesh> mesh = merge(surface, rounds, radius);
        mesh->calculateFaceNormals();
        mesh->calculateVertexNormals();
        return mesh.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
