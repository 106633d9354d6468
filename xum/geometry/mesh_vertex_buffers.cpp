#include <xum/geometry/mesh.h>

#include <xum/geometry/static_vertex_buffer.h>

namespace {

constexpr float normalLength = 0.05f; // of the bounding box's diagonal

float calculateNormalLength(const Box& box)
{
    return box.isEmpty() ? 0.0f : length(box.maximum - box.minimum) * normalLength;
}

} // namespace

VertexBuffer* Mesh::createVertexBuffer(RenderDevice* device) const
{
    return makeStaticVertexBuffer(device, [this](VertexBuffer& buffer) {
        setAttributeIfAny(buffer, VertexAttribute::Position, positions);
        if (textureCoordinates.size() == positions.size())
            setAttributeIfAny(buffer, VertexAttribute::TextureCoordinate, textureCoordinates);
        setAttributeIfAny(buffer, VertexAttribute::Normal, vertexNormals);

        std::vector<unsigned int> corners;
        corners.reserve(indexes.size());
        for (std::size_t triangle = 0; triangle < indexes.size() / 3; ++triangle)
            if (isTriangle(triangle))
                for (std::size_t i = triangle * 3; i < triangle * 3 + 3; ++i)
                    corners.push_back(static_cast<unsigned int>(indexes[i]));
        buffer.setIndices(corners);
    });
}

VertexBuffer* Mesh::createWireframeVertexBuffer(RenderDevice* device) const
{
    return makeStaticVertexBuffer(device, [this](VertexBuffer& buffer) {
        setAttributeIfAny(buffer, VertexAttribute::Position, positions);

        std::vector<unsigned int> sides;
        sides.reserve(indexes.size() * 2);
        for (std::size_t triangle = 0; triangle < indexes.size() / 3; ++triangle) {
            if (!isTriangle(triangle)) continue;
            const auto a = static_cast<unsigned int>(indexes[triangle * 3]);
            const auto b = static_cast<unsigned int>(indexes[triangle * 3 + 1]);
            const auto c = static_cast<unsigned int>(indexes[triangle * 3 + 2]);
            sides.insert(sides.end(), {a, b, b, c, c, a});
        }
        buffer.setIndices(sides);
    });
}

VertexBuffer* Mesh::createFaceNormalsVertexBuffer(RenderDevice* device) const
{
    return makeStaticVertexBuffer(device, [this](VertexBuffer& buffer) {
        const float size = calculateNormalLength(calculateBoundingBox());
        std::vector<Vector3<float>> ends;
        ends.reserve(faceNormals.size() * 2);
        for (std::size_t triangle = 0; triangle < faceNormals.size(); ++triangle) {
            if (!isTriangle(triangle)) continue;
            const Vector3<float> middle = (positions[static_cast<std::size_t>(indexes[triangle * 3])] +
                                           positions[static_cast<std::size_t>(indexes[triangle * 3 + 1])] +
                                           positions[static_cast<std::size_t>(indexes[triangle * 3 + 2])]) /
                                          3.0f;
            ends.push_back(middle);
            ends.push_back(middle + faceNormals[triangle] * size);
        }
        setAttributeIfAny(buffer, VertexAttribute::Position, ends);
    });
}

VertexBuffer* Mesh::createVertexNormalsVertexBuffer(RenderDevice* device) const
{
    return makeStaticVertexBuffer(device, [this](VertexBuffer& buffer) {
        const float size = calculateNormalLength(calculateBoundingBox());
        std::vector<Vector3<float>> ends;
        ends.reserve(vertexNormals.size() * 2);
        for (std::size_t i = 0; i < vertexNormals.size(); ++i) {
            ends.push_back(positions[i]);
            ends.push_back(positions[i] + vertexNormals[i] * size);
        }
        setAttributeIfAny(buffer, VertexAttribute::Position, ends);
    });
}
