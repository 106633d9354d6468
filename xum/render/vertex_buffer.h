#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <list>
#include <vector>

/// Vertex attributes and an optional index list, drawn with the current program. Made by
/// RenderDevice::createVertexBuffer, given back to RenderDevice::destroyVertexBuffer.
///
/// The vertex count comes from location 0 alone, and only from the Vector3 forms: filled any other way, location 0
/// leaves the count as it was. Setting a location again replaces its data. A location below 0 or above 15 is ignored.
/// Slot order is ABI.
class XUM_API VertexBuffer {
public:
    /// Copies one value for each vertex.
    /// @{
    virtual void setAttribute(int location, const std::vector<Vector4<float>>& values) = 0;
    virtual void setAttribute(int location, const std::vector<Vector3<float>>& values) = 0;
    virtual void setAttribute(int location, const std::vector<Vector2<float>>& values) = 0;
    /// @}

    /// setAttribute from a list, for callers that collect vertices in one.
    /// @{
    virtual void setAttributeFrom(int location, const std::list<Vector4<float>>& values) = 0;
    virtual void setAttributeFrom(int location, const std::list<Vector3<float>>& values) = 0;
    virtual void setAttributeFrom(int location, const std::list<Vector2<float>>& values) = 0;
    /// @}

    /// From now on the draws go through the indices, also when there are none: then nothing is drawn.
    virtual void setIndices(const std::vector<unsigned int>& indices) = 0;

    /// Draw pairs of vertices as lines, threes as triangles, or triangles around the first vertex as a fan. `first`
    /// counts indices where there are any, else vertices; a count of -1 means all from `first` on. A negative `first`
    /// draws nothing.
    /// @{
    virtual void drawLines(int first = 0, int count = -1) = 0;
    virtual void drawTriangles(int first = 0, int count = -1) = 0;
    virtual void drawTriangleFan(int first = 0, int count = -1) = 0;
    /// @}

protected:
    ~VertexBuffer() = default;
};
