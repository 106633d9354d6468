#pragma once

#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_pool.h>

#include <cstdint>
#include <memory>
#include <vector>

class Deserializer;
class FileDeserializer;

/// Reads the tree of a BSPMesh.
class BSPReader {
public:
    explicit BSPReader(Deserializer& in);

    /// Null for data that cannot be a tree: more elements than there are bytes for, a brush that does not exist.
    std::unique_ptr<BSP> read(Vector3<float>& outOrigin);

private:
    /// Whether it is known how many bytes are left.
    bool knowsEnd() const;

    bool readBrushes();
    std::unique_ptr<BSPNode> readTree();
    std::unique_ptr<BSPNode> readNode();
    std::unique_ptr<BSPNode> readLeaf();
    bool readPolygons(std::vector<Polygon*>& polygons);
    bool readCount(std::uint32_t& count, std::uint64_t elementSize);
    template <class Value>
    bool readVector(std::vector<Value>& values, std::uint32_t count);

    Deserializer& in;
    const FileDeserializer* file; // null for other data
    std::unique_ptr<BSPPool> pool;
    std::vector<Brush*> brushes;        // by number
    std::vector<std::uint32_t> numbers; // of the brushes of the leaf that is being read
    bool isDamaged = false;
};
