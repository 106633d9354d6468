#include <xum/render/debug_shapes.h>

#include <xum/geometry/angles.h>
#include <xum/render/owned_vertex_buffer.h>
#include <xum/render/vertex_buffer.h>

#include <algorithm>

namespace {

constexpr int mostSegments = 65536; // no eye sees more

void drawSegments(VertexBuffer* buffer, const std::list<Vector3<float>>& points)
{
    buffer->setAttributeFrom(VertexAttribute::Position, points);
    buffer->drawLines(0, -1);
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts compile against the value
void DebugObject::withVertexBuffer(RenderDevice* device, std::function<void(VertexBuffer*)> action)
{
    const OwnedVertexBuffer buffer = makeVertexBuffer(device, false);
    if (buffer || !action) action(buffer.get());
}

void DebugLine::draw(RenderDevice* device)
{
    withVertexBuffer(device, [this](VertexBuffer* buffer) { drawSegments(buffer, {from, to}); });
}

void DebugBox::draw(RenderDevice* device)
{
    withVertexBuffer(device, [this](VertexBuffer* buffer) {
        const Vector3<float>& a = minimum;
        const Vector3<float>& b = maximum;
        std::list<Vector3<float>> points;
        for (const float z : {a.z, b.z}) {
            drawHelper(points, {a.x, a.y, z}, {b.x, a.y, z});
            drawHelper(points, {b.x, a.y, z}, {b.x, b.y, z});
            drawHelper(points, {b.x, b.y, z}, {a.x, b.y, z});
            drawHelper(points, {a.x, b.y, z}, {a.x, a.y, z});
        }
        for (const float x : {a.x, b.x})
            for (const float y : {a.y, b.y}) drawHelper(points, {x, y, a.z}, {x, y, b.z});
        drawSegments(buffer, points);
    });
}

void DebugBox::drawHelper(std::list<Vector3<float>>& points, const Vector3<float>& a, const Vector3<float>& b)
{
    points.push_back(a);
    points.push_back(b);
}

void DebugSphere::draw(RenderDevice* device)
{
    if (segments <= 0) return;
    withVertexBuffer(device, [this](VertexBuffer* buffer) {
        std::list<Vector3<float>> points;
        drawHelper(points, {radius, 0, 0}, [](float sine, float cosine, const Vector3<float>& start) {
            return Vector3<float>(cosine * start.x, sine * start.x, 0);
        });
        drawHelper(points, {0, 0, radius}, [](float sine, float cosine, const Vector3<float>& start) {
            return Vector3<float>(0, -sine * start.z, cosine * start.z);
        });
        drawHelper(points, {0, 0, radius}, [](float sine, float cosine, const Vector3<float>& start) {
            return Vector3<float>(-sine * start.z, 0, cosine * start.z);
        });
        drawSegments(buffer, points);
    });
}

void DebugSphere::drawHelper(std::list<Vector3<float>>& points, const Vector3<float>& start,
                             // NOLINTNEXTLINE(performance-unnecessary-value-param): the same
                             std::function<Vector3<float>(float, float, const Vector3<float>&)> circlePoint) const
{
    if (segments <= 0) return;
    const int steps = std::min(segments, mostSegments);
    const float stepAngle = 360.0f / static_cast<float>(steps);
    Vector3<float> previous = center + start;
    for (int i = 0; i <= steps; ++i) {
        const float angle = static_cast<float>(i) * stepAngle;
        const Vector3<float> next = center + circlePoint(sineOf(angle), cosineOf(angle), start);
        points.push_back(previous);
        points.push_back(next);
        previous = next;
    }
}
