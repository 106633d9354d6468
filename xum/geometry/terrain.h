#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/base_list.h>
#include <xum/geometry/box.h>
#include <xum/geometry/vector.h>

#include <functional>
#include <vector>

class RenderDevice;
class Serializer;
class VertexBuffer;

/// A height field: a grid of vertices in the x-y plane whose positions the game shapes. It has 2 * width + 1 columns
/// and 2 * height + 1 rows, `spacing` world units apart, around the origin; two triangles a cell, counter-clockwise as
/// seen from above. It has no normals.
///
/// The create functions return new buffers, which the caller hands back to the device: null from a device that makes
/// none, and when memory runs out.
class XUM_API Terrain : public BaseListNode<Terrain> {
public:
    /// Flat, in no list. With a negative width or height it has no vertices. Throws std::bad_alloc when memory runs
    /// out, and for more vertices than an int can count.
    Terrain(int width, int height, int spacing);

    /// Kept on purpose: the copy carries the list links of its source without being in the list. To destroy it, to
    /// unlink it or to append it elsewhere takes the source's place out of the list, and to append it to the same list
    /// does nothing: who wants both in a list unlinks the source, copies it, and appends both.
    Terrain(const Terrain& other);
    Terrain& operator=(const Terrain&) = delete;

    ~Terrain() override;

    /// Half the number of cells along x and along y, as the constructor got them.
    /// @{
    int getWidth() const { return width; }
    int getHeight() const { return height; }
    /// @}

    /// From one vertex to the next, in world units.
    int getSpacing() const { return spacing; }

    /// Row by row: column x of row y is number y * (2 * width + 1) + x.
    const std::vector<Vector3<float>>& getPositions() const { return positions; }

    /// One for each position: (0, 0) at the first, (1, 1) at the last. Not a number where width or height is 0.
    const std::vector<Vector2<float>>& getTextureCoordinates() const { return textureCoordinates; }

    /// Six a cell.
    const std::vector<int>& getIndexes() const { return indexes; }

    /// Replaces each position, row by row, by what the function makes of its column, its row and the position. Then
    /// each height becomes, so many times, the mean of itself and those of its two to four neighbours along the grid
    /// (all from before that pass). An empty function throws
    /// std::bad_function_call. What the function throws passes through: the positions before that one keep their new
    /// places, and nothing is smoothed.
    void modify(const std::function<Vector3<float>(int x, int y, const Vector3<float>& position)>& function,
                int smoothPasses);

    /// Of the positions, calculated whenever they change; the empty box when there are none.
    const Box& getBoundingBox() const { return boundingBox; }

    /// A copy, owned by the caller; see the copy constructor. Null when memory runs out.
    Terrain* clone() const;

    /// The positions and texture coordinates, for VertexBuffer::drawTriangles.
    VertexBuffer* createVertexBuffer(RenderDevice* device) const;

    /// The lines of the grid, for VertexBuffer::drawLines.
    VertexBuffer* createDebugVertexBuffer(RenderDevice* device) const;

    /// Writes nothing: terrains are no part of a file. False when the serializer has failed.
    bool serialize(Serializer& out) const;

private:
    int calculateOffset(int x, int y) const;
    void getSurroundingOffsets(std::vector<int>& offsets, int x, int y) const;
    void callForEach(const std::function<Vector3<float>(int x, int y, const Vector3<float>& position)>& function);
    void smooth(int passes, std::vector<float>& heights, std::vector<float>& smoothed);
    void smoothOnce(const std::vector<float>& before, std::vector<float>& after) const;
    void calculateBoundingBox();

    int width;
    int height;
    int spacing;
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<int> indexes;
    Box boundingBox;
};
