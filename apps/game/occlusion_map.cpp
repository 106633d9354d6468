#include "occlusion_map.h"

#include <xum/geometry/clipper.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double pixelSlack = 0.02;  // the graphics hardware rounds positions on the screen
constexpr double depthSlack = 1.001; // and depths

/// The largest float that is no larger.
float roundDown(double value)
{
    const auto rounded = static_cast<float>(value);
    return static_cast<double>(rounded) > value ? std::nextafter(rounded, -1.0f) : rounded;
}

} // namespace

void OcclusionMap::begin(const Viewpoint& viewpoint, const Vector2<float>& viewExtents, float newNearDistance)
{
    eye = viewpoint.position;
    right = viewpoint.getRight();
    up = viewpoint.getUp();
    forward = viewpoint.getForward();
    extents = viewExtents;
    nearDistance = newNearDistance;
    buffer.clear();
    std::fill(depths.begin(), depths.end(), 0.0f);
}

OcclusionMap::Projected OcclusionMap::project(const Vector3<float>& point) const
{
    const Vector3<float> way = point - eye;
    const double depth = 1.0 / static_cast<double>(dot(forward, way));
    const double x = static_cast<double>(dot(right, way)) * depth / static_cast<double>(extents.x);
    const double y = static_cast<double>(dot(up, way)) * depth / static_cast<double>(extents.y);
    return {(x + 1.0) * 0.5 * width, (y + 1.0) * 0.5 * height, depth};
}

void OcclusionMap::addOccluder(const Polygon& polygon)
{
    const float start = dot(forward, eye) + nearDistance;
    const Plane<float> nearSide(forward, start);
    const auto isAhead = [&](const Vertex& vertex) {
        return nearSide.signedDistance(vertex.position) >= Clipper::margin;
    };
    const std::vector<Vertex>& vertices = polygon.vertices;
    corners.clear();
    if (std::all_of(vertices.begin(), vertices.end(), isAhead)) // most are, and the clipper would only copy them
        for (const Vertex& vertex : vertices) corners.push_back(project(vertex.position));
    else
        for (const Vertex& vertex : Clipper({nearSide}).clipPolygon(&polygon))
            corners.push_back(project(vertex.position));
    if (corners.size() >= 3) fill();
}

void OcclusionMap::fill()
{
    // On the screen 1 / distance is a plane: depth = c.depth + slopeX * (x - c.x) + slopeY * (y - c.y).
    double area = 0;
    double slopeX = 0;
    double slopeY = 0;
    const Projected& c = corners.front();
    for (std::size_t i = 2; i < corners.size(); ++i) {
        const Projected a = {corners[i - 1].x - c.x, corners[i - 1].y - c.y, corners[i - 1].depth - c.depth};
        const Projected b = {corners[i].x - c.x, corners[i].y - c.y, corners[i].depth - c.depth};
        area += a.x * b.y - a.y * b.x;
        slopeX += a.depth * b.y - b.depth * a.y;
        slopeY += b.depth * a.x - a.depth * b.x;
    }
    if (!(area > 1.0)) return; // turned away, or less than half a pixel
    slopeX /= area;
    slopeY /= area;

    const auto [left, rightmost] = std::minmax_element(
        corners.begin(), corners.end(), [](const Projected& a, const Projected& b) { return a.x < b.x; });
    const auto [lowest, highest] = std::minmax_element(
        corners.begin(), corners.end(), [](const Projected& a, const Projected& b) { return a.y < b.y; });
    const int x0 = static_cast<int>(std::clamp(left->x, 0.0, static_cast<double>(width)));
    const int x1 = static_cast<int>(std::clamp(rightmost->x, 0.0, static_cast<double>(width)));
    const int y0 = static_cast<int>(std::clamp(lowest->y, 0.0, static_cast<double>(height)));
    const int y1 = static_cast<int>(std::clamp(highest->y, 0.0, static_cast<double>(height)));

    const double reach = 0.5 + pixelSlack; // from the middle of a pixel to its sides
    sides.clear();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Projected& from = corners[i];
        const Projected& to = corners[(i + 1) % corners.size()];
        const double across = to.x - from.x;
        const double along = to.y - from.y;
        sides.push_back({from.x, from.y, across, along, reach * (std::fabs(across) + std::fabs(along))});
    }
    const double farther = reach * (std::fabs(slopeX) + std::fabs(slopeY));
    for (int y = y0; y < y1; ++y) {
        const double middleY = y + 0.5;
        const auto [first, end] = findFilled(middleY, x0, x1);
        const double higher = slopeY * (middleY - c.y);
        for (int x = first; x < end; ++x) {
            const auto depth = static_cast<float>(c.depth + slopeX * (x + 0.5 - c.x) + higher - farther);
            if (buffer.test(x, y, depth)) depths[indexOf(x, y)] = depth;
        }
    }
}

/// The part of a row of pixels, from x0 to before x1, that lies inside of all sides. A side takes away what is left of
/// some pixel or what is right of one, so that only the ends have to be looked at.
std::pair<int, int> OcclusionMap::findFilled(double middleY, int x0, int x1) const
{
    for (const Side& side : sides) {
        const double above = side.across * (middleY - side.y);
        const auto isInside = [&](int x) { return !(above - side.along * (x + 0.5 - side.x) < side.reach); };
        if (side.along > 0)
            while (x0 < x1 && !isInside(x1 - 1)) --x1;
        else
            while (x0 < x1 && !isInside(x0)) ++x0;
    }
    return {x0, x1};
}

bool OcclusionMap::isHidden(const Box& box) const
{
    Projected low = {width, height, 0};
    Projected high = {0, 0, 0};
    for (int corner = 0; corner < 8; ++corner) {
        const Vector3<float> point = {(corner & 1) != 0 ? box.maximum.x : box.minimum.x,
                                      (corner & 2) != 0 ? box.maximum.y : box.minimum.y,
                                      (corner & 4) != 0 ? box.maximum.z : box.minimum.z};
        if (!(distanceAhead(point) > nearDistance)) return false;
        const Projected projected = project(point);
        low = {std::min(low.x, projected.x), std::min(low.y, projected.y), 0};
        high = {std::max(high.x, projected.x), std::max(high.y, projected.y), std::max(high.depth, projected.depth)};
    }
    const auto firstPixel = [](double position) { return static_cast<int>(std::max(position - pixelSlack, 0.0)); };
    const auto lastPixel = [](double position, int size) {
        return static_cast<int>(std::min(position + pixelSlack, size - 1.0));
    };
    if (low.x >= width || low.y >= height || high.x <= 0 || high.y <= 0) return false; // not in the picture
    const float limit = roundDown(high.depth * depthSlack);
    const int x0 = firstPixel(low.x);
    const int x1 = lastPixel(high.x, width);
    for (int y = firstPixel(low.y); y <= lastPixel(high.y, height); ++y) {
        bool isOpen = false; // of a whole row, without a branch for each pixel
        for (int x = x0; x <= x1; ++x) isOpen |= depths[indexOf(x, y)] <= limit;
        if (isOpen) return false;
    }
    return true;
}

std::vector<unsigned char> OcclusionMap::makePicture() const
{
    std::vector<unsigned char> pixels;
    for (const float depth : depths) {
        const auto light = static_cast<unsigned char>(std::min(std::sqrt(depth * 4.0f), 1.0f) * 255.0f);
        const unsigned char empty = depth > 0 ? light : 40;
        pixels.insert(pixels.end(), {light, light, empty, 255});
    }
    return pixels;
}
