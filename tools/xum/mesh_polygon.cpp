#include "mesh_polygon.h"

#include <cmath>
#include <cstddef>

namespace {

using Point = Vector2<double>;

/// Twice the area, above 0 when the corners run counter-clockwise.
double area(const Point& a, const Point& b, const Point& c)
{
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// Seen along the axis on which the polygon looks largest, and from its front. Sums over all corners stand in for the
/// normal, since any three of them may lie on a line or stand in.
std::vector<Point> flatten(const std::vector<Vector3<float>>& corners)
{
    double normal[3] = {};
    const auto coordinates = [&corners](std::size_t i) {
        const Vector3<float>& corner = corners[i % corners.size()];
        return std::array<double, 3>{corner.x, corner.y, corner.z};
    };
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto a = coordinates(i);
        const auto b = coordinates(i + 1);
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t u = (k + 1) % 3;
            const std::size_t v = (k + 2) % 3;
            normal[k] += (a[u] - b[u]) * (a[v] + b[v]);
        }
    }
    std::size_t axis = 0;
    for (std::size_t k = 1; k < 3; ++k)
        if (std::fabs(normal[k]) > std::fabs(normal[axis])) axis = k;

    std::vector<Point> points;
    points.reserve(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto corner = coordinates(i);
        const Point point = {corner[(axis + 1) % 3], corner[(axis + 2) % 3]};
        points.push_back(normal[axis] < 0 ? Point{point.y, point.x} : point);
    }
    return points;
}

class EarClipper {
public:
    explicit EarClipper(const std::vector<Point>& points) : points(points)
    {
        for (std::size_t i = 0; i < points.size(); ++i) left.push_back(static_cast<int>(i));
    }

    std::vector<std::array<int, 3>> clip()
    {
        std::vector<std::array<int, 3>> triangles;
        std::size_t at = 0;
        std::size_t misses = 0;
        while (left.size() >= 3) {
            const std::array<std::size_t, 3> ear = {at % left.size(), (at + 1) % left.size(), (at + 2) % left.size()};
            if (misses < left.size() && !isEar(ear)) { // after a whole round without an ear any will do
                ++misses;
                ++at;
                continue;
            }
            misses = 0;
            triangles.push_back({left[ear[0]], left[ear[1]], left[ear[2]]});
            left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear[1]));
            at = ear[0] - (ear[1] < ear[0] ? 1 : 0);
        }
        return triangles;
    }

private:
    const Point& pointAt(std::size_t i) const { return points[static_cast<std::size_t>(left[i])]; }

    bool isEar(const std::array<std::size_t, 3>& ear) const
    {
        const Point& a = pointAt(ear[0]);
        const Point& b = pointAt(ear[1]);
        const Point& c = pointAt(ear[2]);
        if (!(area(a, b, c) > 0)) return false;
        for (std::size_t i = 0; i < left.size(); ++i) {
            const Point& p = pointAt(i);
            if (p == a || p == b || p == c) continue; // seams run twice through one place
            if (area(a, b, p) >= 0 && area(b, c, p) >= 0 && area(c, a, p) >= 0) return false;
        }
        return true;
    }

    const std::vector<Point>& points;
    std::vector<int> left;
};

} // namespace

std::vector<std::array<int, 3>> triangulate(const std::vector<Vector3<float>>& corners)
{
    if (corners.size() < 3) return {};
    if (corners.size() == 3) return {{0, 1, 2}};
    return EarClipper(flatten(corners)).clip();
}
