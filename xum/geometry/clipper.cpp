#include <xum/geometry/clipper.h>

#include <algorithm>
#include <limits>

namespace {

constexpr std::size_t stackCapacity = 32;

/// Writes the loop of what is left, of up to two vertices for each edge.
std::size_t clipLoop(Vertex* out, const Vertex* loop, std::size_t count, const Plane<float>& plane)
{
    constexpr float margin = Clipper::margin;
    Vertex* const first = out;
    const float firstDistance = plane.signedDistance(loop[0].position);
    float fromDistance = firstDistance;
    for (std::size_t i = 0; i < count; ++i) {
        const bool isLast = i + 1 == count;
        const Vertex& from = loop[i];
        const Vertex& to = loop[isLast ? 0 : i + 1];
        const float toDistance = isLast ? firstDistance : plane.signedDistance(to.position);
        const bool isFromInside = fromDistance >= margin;
        if (isFromInside) *out++ = from;
        if (isFromInside != (toDistance >= margin)) {
            const float crossing = (margin - fromDistance) / (toDistance - fromDistance);
            *out++ = {from.position + (to.position - from.position) * crossing,
                      from.textureCoordinate + (to.textureCoordinate - from.textureCoordinate) * crossing};
        }
        fromDistance = toDistance;
    }
    return static_cast<std::size_t>(out - first);
}

} // namespace

bool Clipper::clipLine(Vector3<float>& outStart, Vector3<float>& outEnd, const Vector3<float>& start,
                       const Vector3<float>& end) const
{
    float enter = -std::numeric_limits<float>::infinity();
    float leave = std::numeric_limits<float>::infinity();
    bool isClipped = false;
    for (const Plane<float>& plane : planes) {
        const float startDistance = plane.signedDistance(start);
        const float endDistance = plane.signedDistance(end);
        if (startDistance > margin && endDistance > margin) continue;
        if (startDistance < margin && endDistance < margin) return false;
        isClipped = true;
        // Only now: with both ends at the margin there is no crossing.
        const float crossing = (margin - startDistance) / (endDistance - startDistance);
        if (startDistance < margin)
            enter = std::max(enter, crossing);
        else if (endDistance < margin)
            leave = std::min(leave, crossing);
    }
    const Vector3<float> first = start; // the outputs may be the inputs
    const Vector3<float> last = end;
    if (isClipped) {
        outStart = first + (last - first) * std::max(enter, 0.0f);
        outEnd = first + (last - first) * std::min(leave, 1.0f);
    } else {
        outStart = first;
        outEnd = last;
    }
    return true;
}

std::vector<Vertex> Clipper::clipPolygon(const Polygon* polygon) const
{
    if (polygon == nullptr) return {};
    const Vertex* loop = polygon->vertices.data();
    std::size_t count = polygon->vertices.size();
    if (count == 0) return {};

    Vertex onStack[2][stackCapacity];
    std::vector<Vertex> onHeap[2]; // for large polygons
    int turn = 0;
    for (const Plane<float>& plane : planes) {
        Vertex* out = onStack[turn];
        if (count * 2 > stackCapacity) {
            onHeap[turn].resize(count * 2);
            out = onHeap[turn].data();
        }
        count = clipLoop(out, loop, count, plane);
        loop = out;
        turn ^= 1;
        if (count < 3) break;
    }
    return {loop, loop + count};
}
