#include "map_solids.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double worldLimit = 4e6;  // half the side of what an unbounded solid is cut from
constexpr double sameNormal = 1e-6; // 1 - cosine of the angle between planes that may be the same

SolidPlane flip(const SolidPlane& plane)
{
    return {-plane.normal, -plane.distance};
}

bool isOn(const Point& point, const SolidPlane& plane)
{
    return std::fabs(plane.signedDistance(point)) <= onPlane;
}

/// Two directions in the plane, at right angles; their cross product is the normal.
void findAxes(const Point& normal, Point& right, Point& up)
{
    const Point helper = std::fabs(normal.z) < 0.9 ? Point(0, 0, 1) : Point(0, 1, 0);
    right = normalize(cross(helper, normal));
    up = cross(normal, right);
}

/// Sorts the corners of a convex face around its middle, counter-clockwise seen from the front.
Loop sortAround(Loop points, const SolidPlane& plane)
{
    Point right;
    Point up;
    findAxes(plane.normal, right, up);
    Point middle;
    for (const Point& point : points) middle += point;
    middle /= static_cast<double>(points.size());
    const auto angleOf = [&](const Point& point) {
        return std::atan2(dot(point - middle, up), dot(point - middle, right));
    };
    std::sort(points.begin(), points.end(), [&](const Point& a, const Point& b) { return angleOf(a) < angleOf(b); });
    return points;
}

/// Without corners that lie on top of each other. Empty for what is so narrow that it could count as on a plane across
/// it.
Loop tidy(const Loop& loop)
{
    Loop distinct;
    for (const Point& point : loop)
        if (distinct.empty() || length(point - distinct.back()) > onPlane) distinct.push_back(point);
    while (distinct.size() > 1 && length(distinct.front() - distinct.back()) <= onPlane) distinct.pop_back();
    if (distinct.size() < 3) return {};
    Point doubleArea;
    double perimeter = 0;
    for (std::size_t i = 0; i < distinct.size(); ++i) {
        const Point& next = distinct[(i + 1) % distinct.size()];
        doubleArea += cross(distinct[i] - distinct[0], next - distinct[0]);
        perimeter += length(next - distinct[i]);
    }
    return length(doubleArea) > 2 * onPlane * perimeter ? distinct : Loop();
}

} // namespace

SideOfPlane classify(const Loop& loop, const SolidPlane& plane)
{
    bool isInFront = false;
    bool isBehind = false;
    for (const Point& point : loop) {
        const double distance = plane.signedDistance(point);
        isInFront = isInFront || distance > onPlane;
        isBehind = isBehind || distance < -onPlane;
    }
    if (isInFront) return isBehind ? SideOfPlane::Both : SideOfPlane::Front;
    return isBehind ? SideOfPlane::Back : SideOfPlane::On;
}

Loop clipToFront(const Loop& loop, const SolidPlane& plane)
{
    Loop kept;
    kept.reserve(loop.size() + 2);
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const Point& from = loop[i];
        const Point& to = loop[(i + 1) % loop.size()];
        const double fromDistance = plane.signedDistance(from);
        const double toDistance = plane.signedDistance(to);
        if (fromDistance >= -onPlane) kept.push_back(from);
        const bool crosses =
            (fromDistance > onPlane && toDistance < -onPlane) || (fromDistance < -onPlane && toDistance > onPlane);
        if (crosses) kept.push_back(from + (to - from) * (fromDistance / (fromDistance - toDistance)));
    }
    return tidy(kept);
}

Loop clipToBack(const Loop& loop, const SolidPlane& plane)
{
    return clipToFront(loop, flip(plane));
}

Loop makeSquare(const SolidPlane& plane, double halfSide)
{
    Point right;
    Point up;
    findAxes(plane.normal, right, up);
    right *= halfSide;
    up *= halfSide;
    const Point foot = plane.normal * plane.distance;
    return {foot - right - up, foot + right - up, foot + right + up, foot - right + up};
}

ConvexSolid::ConvexSolid(const std::vector<SolidPlane>& planes)
{
    for (std::size_t i = 0; i < planes.size(); ++i) {
        Loop loop = makeSquare(planes[i], worldLimit);
        // Planes of nearly one direction come last: whether they are the same shows only on a loop of the final size.
        std::vector<std::size_t> similar;
        for (std::size_t k = 0; k < planes.size() && !loop.empty(); ++k) {
            if (k == i) continue;
            if (dot(planes[i].normal, planes[k].normal) > 1 - sameNormal)
                similar.push_back(k);
            else
                loop = clipToBack(loop, planes[k]);
        }
        for (const std::size_t k : similar) {
            const bool isSame = ::classify(loop, planes[k]) == SideOfPlane::On;
            if (!isSame)
                loop = clipToBack(loop, planes[k]);
            else if (k < i)
                loop.clear();
        }
        if (!loop.empty()) faces.push_back({planes[i], loop, i});
    }
}

ConvexSolid::ConvexSolid(const Point& minimum, const Point& maximum)
    : ConvexSolid({{{-1, 0, 0}, -minimum.x},
                   {{1, 0, 0}, maximum.x},
                   {{0, -1, 0}, -minimum.y},
                   {{0, 1, 0}, maximum.y},
                   {{0, 0, -1}, -minimum.z},
                   {{0, 0, 1}, maximum.z}})
{}

bool ConvexSolid::isBounded() const
{
    for (const Face& face : faces)
        for (const Point& point : face.loop)
            if (std::max({std::fabs(point.x), std::fabs(point.y), std::fabs(point.z)}) > worldLimit / 2) return false;
    return true;
}

SideOfPlane ConvexSolid::classify(const SolidPlane& plane) const
{
    bool isInFront = false;
    bool isBehind = false;
    for (const Face& face : faces) {
        const SideOfPlane side = ::classify(face.loop, plane);
        isInFront = isInFront || side == SideOfPlane::Front || side == SideOfPlane::Both;
        isBehind = isBehind || side == SideOfPlane::Back || side == SideOfPlane::Both;
    }
    if (isInFront) return isBehind ? SideOfPlane::Both : SideOfPlane::Front;
    return isBehind ? SideOfPlane::Back : SideOfPlane::On;
}

Point ConvexSolid::calculateMiddle() const
{
    Point sum;
    double count = 0;
    for (const Face& face : faces) {
        for (const Point& point : face.loop) sum += point;
        count += static_cast<double>(face.loop.size());
    }
    return count > 0 ? sum / count : sum;
}

Point ConvexSolid::calculateMinimum() const
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Point minimum = {infinity, infinity, infinity};
    for (const Face& face : faces)
        for (const Point& point : face.loop)
            minimum = {std::min(minimum.x, point.x), std::min(minimum.y, point.y), std::min(minimum.z, point.z)};
    return minimum;
}

Point ConvexSolid::calculateMaximum() const
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Point maximum = {-infinity, -infinity, -infinity};
    for (const Face& face : faces)
        for (const Point& point : face.loop)
            maximum = {std::max(maximum.x, point.x), std::max(maximum.y, point.y), std::max(maximum.z, point.z)};
    return maximum;
}

ConvexSolid ConvexSolid::cut(const SolidPlane& plane, bool keepFront) const
{
    const SolidPlane toKeep = keepFront ? plane : flip(plane); // in front of this
    ConvexSolid kept;
    Loop rim;
    for (const Face& face : faces) {
        const Loop loop = clipToFront(face.loop, toKeep);
        if (loop.empty() || ::classify(loop, toKeep) == SideOfPlane::On) continue;
        kept.faces.push_back({face.plane, loop, face.number});
        for (const Point& point : loop)
            if (isOn(point, plane)) rim.push_back(point);
    }
    if (kept.faces.empty()) return {};
    // The new face closes the rim; where the plane only touched the solid there is none to close.
    if (rim.size() >= 3) {
        const SolidPlane outwards = flip(toKeep);
        const Loop cap = tidy(sortAround(rim, outwards));
        if (!cap.empty()) kept.faces.push_back({outwards, cap, noNumber});
    }
    if (kept.isEmpty()) return {};
    return kept;
}
