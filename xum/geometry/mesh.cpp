#include <xum/geometry/mesh.h>

#include <xum/geometry/short_vectors.h>

#include <utility>

namespace {

/// Whether all three indexes of a triangle name one of so many positions; negative ones never do.
bool namePositions(const int* corners, std::size_t positionCount)
{
    return static_cast<std::size_t>(corners[0]) < positionCount &&
           static_cast<std::size_t>(corners[1]) < positionCount && static_cast<std::size_t>(corners[2]) < positionCount;
}

} // namespace

Mesh::Mesh(std::vector<Vector3<float>> positions, std::vector<Vector2<float>> textureCoordinates,
           std::vector<int> indexes)
    : positions(std::move(positions)), textureCoordinates(std::move(textureCoordinates)), indexes(std::move(indexes))
{}

Mesh::~Mesh() = default;

bool Mesh::isValid()
{
    return true;
}

Box Mesh::calculateBoundingBox() const
{
    return Box::around(positions);
}

void Mesh::calculateFaceNormals()
{
    faceNormals.resize(indexes.size() / 3);
    const std::size_t positionCount = positions.size();
    const int* corners = indexes.data();
    for (Vector3<float>& normal : faceNormals) {
        normal = {};
        if (namePositions(corners, positionCount)) {
            const Vector3<float>& a = positions[static_cast<std::size_t>(corners[0])];
            const Vector3<float>& b = positions[static_cast<std::size_t>(corners[1])];
            const Vector3<float>& c = positions[static_cast<std::size_t>(corners[2])];
            normal = directionOf(cross(c - b, a - b));
        }
        corners += 3;
    }
}

// One pass over the triangles. Each position gets the same summands in the same order as if all triangles were searched
// for it, so that the sums are the same to the last bit. (The normal of a triangle that names a position twice is
// zero.)
void Mesh::calculateVertexNormals()
{
    vertexNormals.assign(positions.size(), Vector3<float>());
    const std::size_t positionCount = positions.size();
    const int* corners = indexes.data();
    for (const Vector3<float>& normal : faceNormals) {
        if (namePositions(corners, positionCount))
            for (int i = 0; i < 3; ++i) vertexNormals[static_cast<std::size_t>(corners[i])] += normal;
        corners += 3;
    }
    for (Vector3<float>& normal : vertexNormals) normal = directionOf(normal);
}

bool Mesh::isTriangle(std::size_t triangle) const
{
    return namePositions(&indexes[triangle * 3], positions.size());
}
