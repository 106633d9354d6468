#include <xum/geometry/bsp_reader.h>

#include <xum/files/file_serializer.h>
#include <xum/geometry/serialized_values.h>

#include <unordered_map>

namespace {

// The fewest bytes that an element takes in the file.
constexpr std::uint64_t brushSize = 9;
constexpr std::uint64_t polygonSize = 4;

// Where the end of the data is not known, more of anything is not believed.
constexpr std::uint32_t largestBlindCount = 1U << 24;

} // namespace

BSPReader::BSPReader(Deserializer& in)
    : in(in), file(dynamic_cast<const FileDeserializer*>(&in)), pool(std::make_unique<BSPPool>())
{}

bool BSPReader::knowsEnd() const
{
    return file != nullptr && file->getRemaining() != FileDeserializer::unknownRemaining;
}

std::unique_ptr<BSP> BSPReader::read(Vector3<float>& outOrigin)
{
    outOrigin = readValue<Vector3<float>>(in);
    if (!readBrushes()) return nullptr;
    std::unique_ptr<BSPNode> root = readTree();
    if (!root || isDamaged) return nullptr;
    return std::unique_ptr<BSP>(new BSP(std::move(root), std::move(pool)));
}

bool BSPReader::readBrushes()
{
    std::uint32_t count = 0;
    if (!readCount(count, brushSize)) return false;
    std::unordered_map<std::uint32_t, Brush*> byNumber;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto number = readValue<std::uint32_t>(in);
        Brush& brush = pool->add(Brush({}, 0));
        // With a number twice, another one would have no brush.
        if (number >= count || !byNumber.emplace(number, &brush).second) return false;
        std::uint32_t planeCount = 0;
        if (!readCount(planeCount, sizeof(Plane<float>)) || !readVector(brush.planes, planeCount)) return false;
        brush.kind = readValue<unsigned char>(in);
    }
    brushes.resize(count);
    for (const auto& [number, brush] : byNumber) brushes[number] = brush;
    return true;
}

// What is read hangs in the tree at once, so that it goes when the reading is given up. No recursion: a file may ask
// for any depth.
std::unique_ptr<BSPNode> BSPReader::readTree()
{
    std::unique_ptr<BSPNode> root = readNode();
    std::vector<BSPNode**> places; // of the nodes to come
    const auto expectChildren = [&places](BSPNode& node) {
        if (node.isLeaf()) return;
        places.push_back(&node.getNode()->back);
        places.push_back(&node.getNode()->front);
    };
    if (root) expectChildren(*root);
    while (!places.empty() && !isDamaged) {
        BSPNode** const place = places.back();
        places.pop_back();
        *place = readNode().release();
        if (*place != nullptr) expectChildren(**place);
    }
    return root;
}

std::unique_ptr<BSPNode> BSPReader::readNode()
{
    unsigned char isLeaf = 1; // where the data end the tree ends, too
    in.read(reinterpret_cast<char*>(&isLeaf), 1);
    if (isLeaf == 0) return std::make_unique<BSPNode>(readValue<Plane<float>>(in), nullptr, nullptr);
    return readLeaf();
}

std::unique_ptr<BSPNode> BSPReader::readLeaf()
{
    const bool kind = readValue<unsigned char>(in) != 0;
    std::uint32_t count = 0;
    numbers.clear(); // a short file leaves zeros
    std::vector<Brush*> used;
    std::vector<Polygon*> polygons;
    isDamaged = true;
    if (!readCount(count, sizeof(std::uint32_t)) || !readVector(numbers, count)) return nullptr;
    used.reserve(numbers.size());
    for (const std::uint32_t number : numbers) {
        if (number >= brushes.size()) return nullptr;
        used.push_back(brushes[number]);
    }
    if (!readPolygons(polygons)) return nullptr;
    isDamaged = false;
    return std::make_unique<BSPNode>(kind, std::move(used), std::move(polygons));
}

bool BSPReader::readPolygons(std::vector<Polygon*>& polygons)
{
    std::uint32_t count = 0;
    if (!readCount(count, polygonSize)) return false;
    if (knowsEnd()) polygons.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint32_t vertexCount = 0;
        if (!readCount(vertexCount, sizeof(Vertex))) return false;
        Polygon& polygon = pool->add(Polygon({}));
        if (!readVector(polygon.vertices, vertexCount)) return false;
        polygons.push_back(&polygon);
    }
    return true;
}

/// False for more than there can be.
bool BSPReader::readCount(std::uint32_t& count, std::uint64_t elementSize)
{
    count = knowsEnd() ? 0 : ~std::uint32_t{0};
    in.read(reinterpret_cast<char*>(&count), static_cast<int>(sizeof count));
    return count == 0 || count <= (knowsEnd() ? file->getRemaining() / elementSize : largestBlindCount);
}

/// False where the data end first.
template <class Value>
bool BSPReader::readVector(std::vector<Value>& values, std::uint32_t count)
{
    if (!knowsEnd()) return readArrivingValues(in, values, count);
    values.resize(count);
    readValues(in, values.data(), count);
    return true;
}
