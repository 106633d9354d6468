#include "plain_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>

namespace plain {

namespace {

template <class Value>
void write(std::ostream& out, const Value& value)
{
    out.write(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class Value>
Value read(std::istream& in)
{
    Value value{};
    in.read(reinterpret_cast<char*>(&value), sizeof value);
    return value;
}

class TreeWriter {
public:
    explicit TreeWriter(std::ostream& out) : out(out) {}

    void write(int leaves, int level, const Vector3<float>& low, const Vector3<float>& high)
    {
        if (leaves == 1) {
            writeLeaf();
            return;
        }
        Vector3<float> normal = {random.between(-0.02f, 0.02f), random.between(-0.02f, 0.02f),
                                 random.between(-0.02f, 0.02f)};
        const auto axis = [level](Vector3<float>& v) -> float& {
            return level % 3 == 0 ? v.x : level % 3 == 1 ? v.y : v.z;
        };
        axis(normal) = 1;
        normal = normalize(normal);
        Vector3<float> middle = (low + high) / 2.0f;
        plain::write(out, '\0');
        plain::write(out, Plane<float>(normal, dot(normal, middle)));
        Vector3<float> frontLow = low;
        Vector3<float> backHigh = high;
        axis(frontLow) = axis(middle);
        axis(backHigh) = axis(middle);
        write(leaves - leaves / 2, level + 1, frontLow, high);
        write(leaves / 2, level + 1, low, backHigh);
    }

private:
    void writeLeaf()
    {
        plain::write(out, '\1');
        plain::write(out, '\0');
        plain::write(out, std::uint32_t{1});
        plain::write(out, random.below(256));
        plain::write(out, std::uint32_t{1});
        plain::write(out, std::uint32_t{4});
        for (int i = 0; i < 4; ++i) {
            plain::write(out, Vector3<float>());
            plain::write(out, Vector2<float>());
        }
    }

    std::ostream& out;
    Random random;
};

std::unique_ptr<Node> readNode(std::istream& in, const Tree& tree)
{
    const bool isLeaf = read<char>(in) != 0;
    auto node = std::make_unique<Node>(Node{isLeaf, nullptr});
    if (isLeaf) {
        auto leaf = std::make_unique<LeafContent>();
        leaf->kind = read<char>(in) != 0;
        leaf->brushes.resize(read<std::uint32_t>(in));
        for (Brush*& brush : leaf->brushes) brush = tree.brushes[read<std::uint32_t>(in)].get();
        leaf->polygons.resize(read<std::uint32_t>(in));
        for (std::unique_ptr<Polygon>& polygon : leaf->polygons) {
            polygon = std::make_unique<Polygon>(std::vector<Vertex>(read<std::uint32_t>(in)));
            for (Vertex& vertex : polygon->vertices) {
                vertex.position = read<Vector3<float>>(in);
                vertex.textureCoordinate = read<Vector2<float>>(in);
            }
        }
        node->content = std::move(leaf);
    } else {
        auto inner = std::make_unique<InnerContent>();
        inner->plane = read<Plane<float>>(in);
        inner->front = readNode(in, tree);
        inner->back = readNode(in, tree);
        node->content = std::move(inner);
    }
    return node;
}

/// A brush of its own for each leaf that has one.
std::unique_ptr<Node> cloneNode(const Node& node, Tree& into)
{
    auto copy = std::make_unique<Node>(Node{node.isLeaf, nullptr});
    if (node.isLeaf) {
        const auto& leaf = static_cast<const LeafContent&>(*node.content);
        auto content = std::make_unique<LeafContent>();
        content->kind = leaf.kind;
        for (const Brush* brush : leaf.brushes) {
            into.brushes.push_back(std::make_unique<Brush>(*brush));
            content->brushes.push_back(into.brushes.back().get());
        }
        for (const auto& polygon : leaf.polygons) content->polygons.push_back(std::make_unique<Polygon>(*polygon));
        copy->content = std::move(content);
    } else {
        const auto& inner = static_cast<const InnerContent&>(*node.content);
        auto content = std::make_unique<InnerContent>();
        content->plane = inner.plane;
        content->front = cloneNode(*inner.front, into);
        content->back = cloneNode(*inner.back, into);
        copy->content = std::move(content);
    }
    return copy;
}

} // namespace

void writeTree(const std::string& file, int leaves)
{
    std::ofstream out(file, std::ios::binary);
    write(out, Vector3<float>());
    write(out, std::uint32_t{256});
    for (std::uint32_t number = 0; number < 256; ++number) {
        write(out, number);
        write(out, std::uint32_t{6});
        for (int i = 0; i < 6; ++i) write(out, Plane<float>({0, 0, 1}, 3));
        write(out, static_cast<unsigned char>(number));
    }
    TreeWriter(out).write(leaves, 0, {0, 0, 0}, {1024, 1024, 1024});
}

std::unique_ptr<Tree> readTree(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    auto tree = std::make_unique<Tree>();
    read<Vector3<float>>(in);
    tree->brushes.resize(read<std::uint32_t>(in));
    for (std::size_t i = 0; i < tree->brushes.size(); ++i) {
        std::unique_ptr<Brush>& brush = tree->brushes[read<std::uint32_t>(in)];
        brush = std::make_unique<Brush>();
        brush->planes.resize(read<std::uint32_t>(in));
        for (Plane<float>& plane : brush->planes) plane = read<Plane<float>>(in);
        brush->kind = read<unsigned char>(in);
    }
    tree->root = readNode(in, *tree);
    return tree;
}

std::unique_ptr<Tree> cloneTree(const Tree& tree)
{
    auto copy = std::make_unique<Tree>();
    copy->root = cloneNode(*tree.root, *copy);
    return copy;
}

std::vector<const Node*> collectLeaves(const Tree& tree)
{
    std::vector<const Node*> leaves;
    std::vector<const Node*> pending = {tree.root.get()};
    while (!pending.empty()) {
        const Node* const node = pending.back();
        pending.pop_back();
        if (node->isLeaf) {
            leaves.push_back(node);
            continue;
        }
        const auto& inner = static_cast<const InnerContent&>(*node->content);
        pending.push_back(inner.back.get());
        pending.push_back(inner.front.get());
    }
    return leaves;
}

std::uint64_t locateAll(const Tree& tree, const std::vector<Vector3<float>>& points)
{
    std::uint64_t sum = 0;
    for (const Vector3<float>& point : points) {
        const Node* node = tree.root.get();
        while (!node->isLeaf) {
            const auto& inner = static_cast<const InnerContent&>(*node->content);
            node = inner.plane.signedDistance(point) >= 0 ? inner.front.get() : inner.back.get();
        }
        sum += static_cast<const LeafContent&>(*node->content).brushes[0]->kind;
    }
    return sum;
}

std::vector<Vector3<float>> makePoints(int count, bool areCoherent)
{
    Random random;
    std::vector<Vector3<float>> points;
    const auto walk = [&random](float from) { return std::min(1023.0f, std::max(1.0f, from + random.between(-1, 1))); };
    Vector3<float> point(512, 512, 512);
    for (int i = 0; i < count; ++i) {
        if (areCoherent)
            point = {walk(point.x), walk(point.y), walk(point.z)};
        else
            point = {random.between(0, 1024), random.between(0, 1024), random.between(0, 1024)};
        points.push_back(point);
    }
    return points;
}

std::vector<Plane<float>> makeFrustum()
{
    const float s = std::sqrt(0.5f);
    return {{{0, 1, 0}, 1}, {{s, s, 0}, 0}, {{-s, s, 0}, 0}, {{0, s, s}, 0}, {{0, s, -s}, 0}};
}

std::vector<Polygon> makePolygons(int count)
{
    Random random;
    std::vector<Polygon> polygons;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t corners = 4 + random.below(5);
        const float y = random.between(5, 200);
        const float x = random.between(-1.3f, 1.3f) * y;
        const float z = random.between(-1.3f, 1.3f) * y;
        const float radius = random.between(1, 30);
        std::vector<Vertex> vertices;
        for (std::uint32_t corner = 0; corner < corners; ++corner) {
            const float angle = 6.2831853f * static_cast<float>(corner) / static_cast<float>(corners);
            const float c = std::cos(angle);
            const float s = std::sin(angle);
            vertices.emplace_back(Vector3<float>(x + radius * c, y + radius * 0.3f * s, z + radius * s),
                                  Vector2<float>(c, s));
        }
        polygons.emplace_back(vertices);
    }
    return polygons;
}

std::vector<Vector3<float>> makeScatteredPoints(int count)
{
    Random random;
    std::vector<Vector3<float>> points;
    for (int i = 0; i < count; ++i) {
        const float y = random.between(-20, 200);
        points.emplace_back(random.between(-1.3f, 1.3f) * y, y, random.between(-1.3f, 1.3f) * y);
    }
    return points;
}

std::vector<Vertex> clipPolygon(const std::vector<Plane<float>>& planes, const Polygon& polygon)
{
    constexpr float margin = 0.01f;
    Vertex loops[2][32];
    const Vertex* in = polygon.vertices.data();
    std::size_t count = polygon.vertices.size();
    int turn = 0;
    for (const Plane<float>& plane : planes) {
        Vertex* const out = loops[turn];
        turn ^= 1;
        std::size_t outCount = 0;
        const float firstDistance = plane.signedDistance(in[0].position);
        float fromDistance = firstDistance;
        for (std::size_t i = 0; i < count; ++i) {
            const Vertex& from = in[i];
            const Vertex& to = in[i + 1 == count ? 0 : i + 1];
            const float toDistance = i + 1 == count ? firstDistance : plane.signedDistance(to.position);
            if (fromDistance >= margin) out[outCount++] = from;
            if ((fromDistance >= margin) != (toDistance >= margin)) {
                const float crossing = (margin - fromDistance) / (toDistance - fromDistance);
                out[outCount++] = {from.position + (to.position - from.position) * crossing,
                                   from.textureCoordinate + (to.textureCoordinate - from.textureCoordinate) * crossing};
            }
            fromDistance = toDistance;
        }
        in = out;
        count = outCount;
        if (count < 3) break;
    }
    return {in, in + count};
}

bool clipLine(const std::vector<Plane<float>>& planes, Vector3<float>& outStart, Vector3<float>& outEnd,
              const Vector3<float>& start, const Vector3<float>& end)
{
    constexpr float margin = 0.01f;
    float enter = 0;
    float leave = 1;
    bool isClipped = false;
    for (const Plane<float>& plane : planes) {
        const float startDistance = plane.signedDistance(start);
        const float endDistance = plane.signedDistance(end);
        if (startDistance > margin && endDistance > margin) continue;
        if (startDistance < margin && endDistance < margin) return false;
        isClipped = true;
        const float crossing = (margin - startDistance) / (endDistance - startDistance);
        if (startDistance < margin)
            enter = std::max(enter, crossing);
        else if (endDistance < margin)
            leave = std::min(leave, crossing);
    }
    outStart = isClipped ? start + (end - start) * enter : start;
    outEnd = isClipped ? start + (end - start) * leave : end;
    return true;
}

Arrays makeGrid(int columns, int rows)
{
    Arrays arrays;
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            const auto fx = static_cast<float>(x);
            const auto fy = static_cast<float>(y);
            arrays.positions.emplace_back(fx, fy, 20 * std::sin(fx * 0.01f) * std::cos(fy * 0.013f));
            arrays.textureCoordinates.emplace_back(fx / static_cast<float>(columns), fy / static_cast<float>(rows));
        }
    }
    for (int y = 0; y + 1 < rows; ++y) {
        for (int x = 0; x + 1 < columns; ++x) {
            const int a = y * columns + x;
            arrays.indexes.insert(arrays.indexes.end(), {a, a + 1, a + columns + 1, a + columns + 1, a + columns, a});
        }
    }
    return arrays;
}

void calculateNormals(Arrays& arrays)
{
    const auto unit = [](const Vector3<float>& v) {
        const float size = length(v);
        return size < 0.00001f ? Vector3<float>() : v / size;
    };
    const std::vector<Vector3<float>>& p = arrays.positions;
    const std::vector<int>& indexes = arrays.indexes;
    arrays.faceNormals.clear();
    arrays.faceNormals.reserve(indexes.size() / 3);
    for (std::size_t i = 0; i < indexes.size(); i += 3) {
        const Vector3<float>& b = p[static_cast<std::size_t>(indexes[i + 1])];
        arrays.faceNormals.push_back(
            unit(cross(p[static_cast<std::size_t>(indexes[i + 2])] - b, p[static_cast<std::size_t>(indexes[i])] - b)));
    }
    arrays.vertexNormals.assign(p.size(), Vector3<float>());
    for (std::size_t i = 0; i < indexes.size(); ++i)
        arrays.vertexNormals[static_cast<std::size_t>(indexes[i])] += arrays.faceNormals[i / 3];
    for (Vector3<float>& normal : arrays.vertexNormals) normal = unit(normal);
}

Arrays makeSphere(int subdivisions, float radius)
{
    const float c = static_cast<float>(1 / std::sqrt(2.0));
    std::vector<Vector3<float>> vertices = {{0, 0, -1}, {-c, -c, 0}, {c, -c, 0}, {c, c, 0}, {-c, c, 0}, {0, 0, 1}};
    Arrays arrays;
    arrays.indexes = {0, 2, 1, 0, 3, 2, 0, 4, 3, 0, 1, 4, 5, 1, 2, 5, 2, 3, 5, 3, 4, 5, 4, 1};
    for (int round = 0; round < subdivisions; ++round) {
        std::vector<int> smaller;
        smaller.reserve(arrays.indexes.size() * 4);
        vertices.reserve(vertices.size() + arrays.indexes.size());
        const auto append = [&vertices](int first, int second) {
            vertices.push_back(
                normalize(vertices[static_cast<std::size_t>(first)] + vertices[static_cast<std::size_t>(second)]));
        };
        for (std::size_t i = 0; i < arrays.indexes.size(); i += 3) {
            const int first = arrays.indexes[i];
            const int second = arrays.indexes[i + 1];
            const int third = arrays.indexes[i + 2];
            const int ab = static_cast<int>(vertices.size());
            append(first, second);
            append(third, second);
            append(third, first);
            smaller.insert(smaller.end(),
                           {first, ab, ab + 2, ab, second, ab + 1, ab + 2, ab + 1, third, ab, ab + 1, ab + 2});
        }
        arrays.indexes.swap(smaller);
    }
    // Equal positions have equal bits: a table by hash serves, without a look at neighbours.
    std::size_t slots = 1;
    while (slots < vertices.size()) slots *= 2;
    std::vector<int> table(slots, -1);
    std::vector<int> merged;
    merged.reserve(vertices.size());
    for (const Vector3<float>& vertex : vertices) {
        std::array<std::uint32_t, 3> bits;
        const Vector3<float> positive = vertex + Vector3<float>(); // no -0
        std::memcpy(bits.data(), &positive, sizeof bits);
        std::uint32_t hash = (bits[0] * 73856093U) ^ (bits[1] * 19349663U) ^ (bits[2] * 83492791U);
        hash ^= hash >> 15;
        for (;; ++hash) {
            int& slot = table[hash & (slots - 1)];
            if (slot < 0) {
                slot = static_cast<int>(arrays.positions.size());
                arrays.positions.push_back(vertex);
            }
            if (arrays.positions[static_cast<std::size_t>(slot)] != vertex) continue;
            merged.push_back(slot);
            break;
        }
    }
    for (int& index : arrays.indexes) index = merged[static_cast<std::size_t>(index)];
    for (Vector3<float>& position : arrays.positions) position *= radius;
    calculateNormals(arrays);
    return arrays;
}

void writeMesh(const std::string& file, const Arrays& arrays)
{
    std::ofstream out(file, std::ios::binary);
    out.write("!XumMesh\0\0\0", 12);
    const std::uint32_t counts[] = {static_cast<std::uint32_t>(arrays.positions.size()),
                                    static_cast<std::uint32_t>(arrays.textureCoordinates.size()),
                                    static_cast<std::uint32_t>(arrays.indexes.size()), 0, 0};
    write(out, counts);
    for (const Vector3<float>& position : arrays.positions) write(out, position);
    for (const Vector2<float>& textureCoordinate : arrays.textureCoordinates) write(out, textureCoordinate);
    for (const int index : arrays.indexes) write(out, index);
}

Arrays readMesh(const std::string& file)
{
    Arrays arrays;
    std::FILE* in = std::fopen(file.c_str(), "rb");
    std::uint32_t header[8] = {};
    std::size_t read = std::fread(header, sizeof header, 1, in);
    arrays.positions.resize(header[3]);
    arrays.textureCoordinates.resize(header[4]);
    arrays.indexes.resize(header[5]);
    read += std::fread(arrays.positions.data(), sizeof(Vector3<float>), header[3], in);
    read += std::fread(arrays.textureCoordinates.data(), sizeof(Vector2<float>), header[4], in);
    read += std::fread(arrays.indexes.data(), sizeof(int), header[5], in);
    std::fclose(in);
    if (read != 1 + header[3] + header[4] + header[5]) arrays = {};
    return arrays;
}

TerrainArrays::TerrainArrays(int width, int height, int spacing) : columns(2 * width + 1), rows(2 * height + 1)
{
    const std::size_t count = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    positions.reserve(count);
    textureCoordinates.reserve(count);
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            positions.emplace_back(static_cast<float>((x - width) * spacing),
                                   static_cast<float>((y - height) * spacing), 0.0f);
            textureCoordinates.emplace_back(static_cast<float>(x) / static_cast<float>(2 * width),
                                            static_cast<float>(y) / static_cast<float>(2 * height));
        }
    }
    indexes.resize(static_cast<std::size_t>(columns - 1) * static_cast<std::size_t>(rows - 1) * 6);
    int* next = indexes.data();
    for (int y = 0; y + 1 < rows; ++y) {
        for (int x = 0; x + 1 < columns; ++x) {
            const int a = y * columns + x;
            for (const int index : {a, a + 1, a + columns + 1, a + columns + 1, a + columns, a}) *next++ = index;
        }
    }
    calculateBox();
}

void TerrainArrays::modify(const std::function<Vector3<float>(int, int, const Vector3<float>&)>& function)
{
    std::size_t i = 0;
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x, ++i) positions[i] = function(x, y, positions[i]);
    calculateBox();
}

void TerrainArrays::smooth(int passes)
{
    std::vector<float> before(positions.size());
    std::vector<float> after(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) before[i] = positions[i].z;
    const auto width = static_cast<std::size_t>(columns);
    const auto height = static_cast<std::size_t>(rows);
    for (int pass = 0; pass < passes; ++pass) {
        for (std::size_t y = 0; y < height; ++y) {
            const float* const row = &before[y * width];
            float* const out = &after[y * width];
            const bool hasBelow = y > 0;
            const bool hasAbove = y + 1 < height;
            const auto smoothAt = [&](std::size_t x) {
                float sum = row[x];
                float count = 1;
                if (x > 0) sum += row[x - 1], ++count;
                if (x + 1 < width) sum += row[x + 1], ++count;
                if (hasBelow) sum += *(row + x - width), ++count;
                if (hasAbove) sum += row[x + width], ++count;
                out[x] = sum / count;
            };
            if (!hasBelow || !hasAbove) {
                for (std::size_t x = 0; x < width; ++x) smoothAt(x);
                continue;
            }
            smoothAt(0);
            const float* const below = row - width;
            const float* const above = row + width;
            for (std::size_t x = 1; x + 1 < width; ++x)
                out[x] = (row[x] + row[x - 1] + row[x + 1] + below[x] + above[x]) / 5.0f;
            smoothAt(width - 1);
        }
        before.swap(after);
    }
    for (std::size_t i = 0; i < positions.size(); ++i) positions[i].z = before[i];
    calculateBox();
}

void TerrainArrays::calculateBox()
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    minimum = {infinity, infinity, infinity};
    maximum = {-infinity, -infinity, -infinity};
    for (const Vector3<float>& p : positions) {
        minimum = {std::min(minimum.x, p.x), std::min(minimum.y, p.y), std::min(minimum.z, p.z)};
        maximum = {std::max(maximum.x, p.x), std::max(maximum.y, p.y), std::max(maximum.z, p.z)};
    }
}

TiledDepths::TiledDepths(int width, int height, int shiftX, int shiftY)
    : shiftX(shiftX), shiftY(shiftY), tilesPerRow((width - 1 + (1 << shiftX)) >> shiftX)
{
    const int down = (height - 1 + (1 << shiftY)) >> shiftY;
    for (int i = 0; i < tilesPerRow * down; ++i)
        tiles.push_back(std::make_unique<Tile>(Tile{std::make_unique<float[]>(std::size_t{1} << (shiftX + shiftY))}));
}

void TiledDepths::clear()
{
    for (const std::unique_ptr<Tile>& tile : tiles)
        std::memset(tile->depths.get(), 0, sizeof(float) << (shiftX + shiftY));
}

}
