#pragma once

/// @file
/// Triangle meshes, and where they come from: a file or a sphere.

#include <xum/engine/export.h>
#include <xum/geometry/box.h>
#include <xum/geometry/vector.h>

#include <string>
#include <vector>

class RenderDevice;
class VertexBuffer;

/// An indexed triangle mesh with texture coordinates and normals, all optional. The front of a triangle is where its
/// corners run counter-clockwise. Slot order is ABI.
///
/// The create functions return new buffers, which the caller hands back to the device: null from a device that makes
/// none, and when memory runs out.
class XUM_API Mesh {
public:
    /// There is a texture coordinate for each position or none at all, and three indexes a triangle.
    /// The normals stay empty until they are calculated. A triangle with an index that names no position is nothing to
    /// draw and has no normal.
    Mesh(std::vector<Vector3<float>> positions, std::vector<Vector2<float>> textureCoordinates,
         std::vector<int> indexes);

    virtual ~Mesh();

    /// True.
    virtual bool isValid();

    /// As the constructor got them.
    /// @{
    const std::vector<Vector3<float>>& getPositions() const { return positions; }
    const std::vector<Vector2<float>>& getTextureCoordinates() const { return textureCoordinates; }
    const std::vector<int>& getIndexes() const { return indexes; }
    /// @}

    /// One for each triangle; empty until calculated.
    const std::vector<Vector3<float>>& getFaceNormals() const { return faceNormals; }

    /// One for each position; empty until calculated.
    const std::vector<Vector3<float>>& getVertexNormals() const { return vertexNormals; }

    /// Of the positions; the empty box when there are none.
    Box calculateBoundingBox() const;

    /// (c - b) x (a - b) for the corners a, b, c, made as long as 1. Kept on purpose: where that product is shorter
    /// than 0.00001, small triangles included, the normal is zero.
    void calculateFaceNormals();

    /// For each position the sum of the normals of the faces around it, made as long as 1; zero where that is shorter
    /// than 0.00001. The face normals come first.
    void calculateVertexNormals();

    /// The positions, texture coordinates (when there is one for each position) and vertex normals that there are, for
    /// VertexBuffer::drawTriangles.
    VertexBuffer* createVertexBuffer(RenderDevice* device) const;

    /// The sides of all triangles, for VertexBuffer::drawLines.
    VertexBuffer* createWireframeVertexBuffer(RenderDevice* device) const;

    /// Lines along the normals, from the middle of each face and from each position, for VertexBuffer::drawLines. They
    /// are a twentieth of the diagonal of the bounding box long.
    /// @{
    VertexBuffer* createFaceNormalsVertexBuffer(RenderDevice* device) const;
    VertexBuffer* createVertexNormalsVertexBuffer(RenderDevice* device) const;
    /// @}

private:
    /// Whether all three indexes name a position.
    bool isTriangle(std::size_t triangle) const;

    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<int> indexes;
    std::vector<Vector3<float>> faceNormals;
    std::vector<Vector3<float>> vertexNormals;
};

/// Reads a mesh file; docs/file_formats.md has the bytes. The caller owns the mesh, which has no normals yet. Null,
/// without a message, for what is no mesh file: a missing file, another magic, counts that the file cannot have. What
/// a file that ends early lacks is zero.
XUM_API Mesh* loadMesh(const std::string& path);

/// An octahedron whose triangles are split into four so many times, each time moved out to the sphere: 8 * 4^n
/// triangles, with face and vertex normals. The caller owns it. Null for more than 12 subdivisions, and when memory
/// runs out; a negative number counts as 0.
XUM_API Mesh* createSphereMesh(int subdivisions, float radius);
