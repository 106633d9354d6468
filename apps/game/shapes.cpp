#include "shapes.h"

#include <xum/geometry/mesh.h>
#include <xum/geometry/terrain.h>

Solid makeShape(const Mesh& mesh)
{
    Solid shape;
    shape.positions = mesh.getPositions();
    shape.normals = mesh.getVertexNormals();
    shape.triangles.assign(mesh.getIndexes().begin(), mesh.getIndexes().end());
    shape.textureCoordinates = mesh.getTextureCoordinates();
    if (shape.textureCoordinates.size() != shape.positions.size()) {
        shape.textureCoordinates.clear();
        for (const Vector3<float>& position : shape.positions)
            shape.textureCoordinates.emplace_back(position.x, -position.z);
    }
    return shape;
}

Solid makeShape(const Terrain& terrain)
{
    Mesh mesh(terrain.getPositions(), terrain.getTextureCoordinates(), terrain.getIndexes());
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    return makeShape(mesh);
}
