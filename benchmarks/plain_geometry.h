#pragma once

#include <xum/geometry/plane.h>
#include <xum/geometry/polygon.h>
#include <xum/geometry/vector.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The work of the geometry benchmarks in plain code: loops over arrays, nodes of two objects each, and the C++
/// library's streams. No robustness, no generality; the same results.
namespace plain {

class Random {
public:
    std::uint32_t operator()()
    {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state >> 33);
    }

    std::uint32_t below(std::uint32_t limit) { return (*this)() % limit; }

    float between(float low, float high)
    {
        return low + (high - low) * (static_cast<float>((*this)() & 0xFFFFFF) / static_cast<float>(0x1000000));
    }

private:
    std::uint64_t state = 12345;
};

// Trees. Each node is an object with a pointer to another one, as the engine's are.

struct Brush {
    std::vector<Plane<float>> planes;
    unsigned char kind = 0;
};

struct Content {
    virtual ~Content() = default;
};

struct Node {
    bool isLeaf;
    std::unique_ptr<Content> content;
};

struct InnerContent final : Content {
    Plane<float> plane;
    std::unique_ptr<Node> front;
    std::unique_ptr<Node> back;
};

struct LeafContent final : Content {
    bool kind = false;
    std::vector<Brush*> brushes;
    std::vector<std::unique_ptr<Polygon>> polygons;
};

struct Tree {
    std::vector<std::unique_ptr<Brush>> brushes;
    std::unique_ptr<Node> root;
};

/// A tree over 0 to 1024 in each direction, halved in turn by planes that are tilted a little, in the file format of
/// BSPMesh. Each leaf has a brush, of 256, and a polygon of four vertices.
void writeTree(const std::string& file, int leaves);

std::unique_ptr<Tree> readTree(const std::string& file);
std::unique_ptr<Tree> cloneTree(const Tree& tree);
std::vector<const Node*> collectLeaves(const Tree& tree);

/// The sum of the brushes' kinds in the points' leaves.
std::uint64_t locateAll(const Tree& tree, const std::vector<Vector3<float>>& points);

/// In the tree's box: anywhere, or each near the one before.
std::vector<Vector3<float>> makePoints(int count, bool areCoherent);

// Clipping.

std::vector<Plane<float>> makeFrustum();

/// Of four to eight vertices. About a third lie inside the frustum, a third cross it and a third are outside.
std::vector<Polygon> makePolygons(int count);

/// In and around the frustum.
std::vector<Vector3<float>> makeScatteredPoints(int count);

std::vector<Vertex> clipPolygon(const std::vector<Plane<float>>& planes, const Polygon& polygon);
bool clipLine(const std::vector<Plane<float>>& planes, Vector3<float>& outStart, Vector3<float>& outEnd,
              const Vector3<float>& start, const Vector3<float>& end);

// Meshes.

struct Arrays {
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<int> indexes;
    std::vector<Vector3<float>> faceNormals;
    std::vector<Vector3<float>> vertexNormals;
};

Arrays makeGrid(int columns, int rows);
Arrays makeSphere(int subdivisions, float radius);
void calculateNormals(Arrays& arrays);
void writeMesh(const std::string& file, const Arrays& arrays);
Arrays readMesh(const std::string& file);

// Terrain.

struct TerrainArrays {
    TerrainArrays(int width, int height, int spacing);

    void modify(const std::function<Vector3<float>(int, int, const Vector3<float>&)>& function);
    void smooth(int passes);
    void calculateBox();

    int columns;
    int rows;
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<int> indexes;
    Vector3<float> minimum;
    Vector3<float> maximum;
};

// Depths in tiles that are allocated one by one.

class TiledDepths {
public:
    TiledDepths(int width, int height, int shiftX, int shiftY);

    void clear();

    bool test(int x, int y, float depth)
    {
        const Tile& tile = *tiles[static_cast<std::size_t>((y >> shiftY) * tilesPerRow + (x >> shiftX))];
        float& stored =
            tile.depths[static_cast<std::size_t>(((y & ((1 << shiftY) - 1)) << shiftX) + (x & ((1 << shiftX) - 1)))];
        if (!(depth > stored)) return false;
        stored = depth;
        return true;
    }

private:
    struct Tile {
        std::unique_ptr<float[]> depths;
    };

    int shiftX;
    int shiftY;
    int tilesPerRow;
    std::vector<std::unique_ptr<Tile>> tiles;
};

}
