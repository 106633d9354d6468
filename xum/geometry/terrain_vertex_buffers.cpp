#include <xum/geometry/terrain.h>

#include <xum/geometry/static_vertex_buffer.h>

VertexBuffer* Terrain::createVertexBuffer(RenderDevice* device) const
{
    return makeStaticVertexBuffer(device, [this](VertexBuffer& buffer) {
        setAttributeIfAny(buffer, VertexAttribute::Position, positions);
        setAttributeIfAny(buffer, VertexAttribute::TextureCoordinate, textureCoordinates);
        buffer.setIndices(std::vector<unsigned int>(indexes.begin(), indexes.end()));
    });
}

VertexBuffer* Terrain::createDebugVertexBuffer(RenderDevice* device) const
{
    return makeStaticVertexBuffer(device, [this](VertexBuffer& buffer) {
        setAttributeIfAny(buffer, VertexAttribute::Position, positions);
        std::vector<unsigned int> lines;
        lines.reserve(positions.size() * 4);
        const auto addLine = [&lines](int from, int to) {
            lines.push_back(static_cast<unsigned int>(from));
            lines.push_back(static_cast<unsigned int>(to));
        };
        if (!positions.empty())
            for (int y = 0; y <= 2 * height; ++y)
                for (int x = 0; x <= 2 * width; ++x) {
                    const int offset = calculateOffset(x, y);
                    if (x < 2 * width) addLine(offset, calculateOffset(x + 1, y));
                    if (y < 2 * height) addLine(offset, calculateOffset(x, y + 1));
                }
        buffer.setIndices(lines);
    });
}
