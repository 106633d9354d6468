#include <xum/render/quad.h>

#include <xum/render/owned_vertex_buffer.h>
#include <xum/render/vertex_buffer.h>

void createQuadPositions(std::vector<Vector3<float>>& positions, const Vector2<float>& origin,
                         const Vector2<float>& size)
{
    const Vector2<float> end = origin + size;
    positions.insert(positions.end(), {{origin.x, 0, origin.y},
                                       {origin.x, 0, end.y},
                                       {end.x, 0, end.y},
                                       {end.x, 0, end.y},
                                       {end.x, 0, origin.y},
                                       {origin.x, 0, origin.y}});
}

void createQuadTextureCoordinates(std::vector<Vector2<float>>& coordinates, bool flipU, bool flipV)
{
    const float firstU = flipU ? 1.0f : 0.0f;
    const float lastU = 1.0f - firstU;
    const float firstV = flipV ? 1.0f : 0.0f;
    const float lastV = 1.0f - firstV;
    coordinates.insert(
        coordinates.end(),
        {{firstU, firstV}, {firstU, lastV}, {lastU, lastV}, {lastU, lastV}, {lastU, firstV}, {firstU, firstV}});
}

void createQuadColors(std::vector<Vector4<float>>& colors, const Vector4<float>& color)
{
    const Vector4<float> copy = color; // it may be one of the vector's own
    colors.insert(colors.end(), 6, copy);
}

void createQuadVertexes(std::vector<Vector3<float>>& positions, std::vector<Vector2<float>>& coordinates,
                        std::vector<Vector4<float>>& colors, const Vector2<float>& origin, const Vector2<float>& size,
                        const Vector4<float>& color, bool flipU, bool flipV)
{
    createQuadPositions(positions, origin, size);
    createQuadTextureCoordinates(coordinates, flipU, flipV);
    createQuadColors(colors, color);
}

void drawQuad(RenderDevice* device, float x, float y, float width, float height)
{
    const OwnedVertexBuffer buffer = makeVertexBuffer(device, true);
    if (!buffer) return;
    buffer->setAttribute(
        VertexAttribute::Position,
        std::vector<Vector3<float>>{{x, y, 0}, {x + width, y, 0}, {x + width, y + height, 0}, {x, y + height, 0}});
    buffer->drawTriangleFan();
}

void drawFullscreenQuad(RenderDevice* device)
{
    drawQuad(device, -1, -1, 2, 2);
}
