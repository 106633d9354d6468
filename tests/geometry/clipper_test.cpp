#include <xum/geometry/clipper.h>
#include <xum/geometry/frustum.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>
#include <random>
#include <utility>
#include <vector>

namespace {

using V3 = Vector3<float>;

constexpr float margin = 0.01f;
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

const Plane<float> rightOfZero({1, 0, 0}, 0);
const Plane<float> leftOfFour({-1, 0, 0}, -4);
const Plane<float> aboveZero({0, 1, 0}, 0);

static_assert(Clipper::margin == margin && std::is_same_v<decltype(Clipper::margin), const float>);

void expectNear(const V3& actual, const V3& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-5f);
    EXPECT_NEAR(actual.y, expected.y, 1e-5f);
    EXPECT_NEAR(actual.z, expected.z, 1e-5f);
}

void expectLoop(const std::vector<Vertex>& actual, const std::vector<Vertex>& expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        SCOPED_TRACE(i);
        expectNear(actual[i].position, expected[i].position);
        EXPECT_NEAR(actual[i].textureCoordinate.x, expected[i].textureCoordinate.x, 1e-5f);
        EXPECT_NEAR(actual[i].textureCoordinate.y, expected[i].textureCoordinate.y, 1e-5f);
    }
}

bool areSameBytes(const std::vector<Vertex>& a, const std::vector<Vertex>& b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Vertex)) == 0);
}

Polygon polygonOf(const std::vector<V3>& positions)
{
    std::vector<Vertex> vertices;
    vertices.reserve(positions.size());
    for (const V3& position : positions) vertices.emplace_back(position, Vector2<float>(position.x, position.y));
    return Polygon(vertices);
}

std::vector<Vertex> clip(const std::vector<Plane<float>>& planes, const std::vector<V3>& positions)
{
    const Polygon polygon = polygonOf(positions);
    return Clipper(planes).clipPolygon(&polygon);
}

/// A square from 0 to 4 whose texture goes once across it.
const Polygon square({Vertex({0, 0, 0}, {0, 0}), Vertex({4, 0, 0}, {1, 0}), Vertex({4, 4, 0}, {1, 1}),
                      Vertex({0, 4, 0}, {0, 1})});

/// What clipLine gave, with outputs that were 77 before.
struct Line {
    bool isVisible;
    V3 start = {77, 77, 77};
    V3 end = {77, 77, 77};
};

Line clipLine(const std::vector<Plane<float>>& planes, const V3& start, const V3& end)
{
    Line line;
    line.isVisible = Clipper(planes).clipLine(line.start, line.end, start, end);
    return line;
}

// An independent computation in the plane, without walking along edges: the corners of what is left are among the
// corners of the polygon, the crossings of its sides with the lines, and the crossings of the lines.

using Real = long double;

struct Point {
    Real x;
    Real y;
};

/// x * normalX + y * normalY >= distance
struct HalfPlane {
    Real normalX;
    Real normalY;
    Real distance;

    Real over(const Point& point) const { return normalX * point.x + normalY * point.y - distance; }
};

Real turn(const Point& a, const Point& b, const Point& c)
{
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// The corners of the smallest convex polygon around the points, counter-clockwise.
std::vector<Point> hullOf(std::vector<Point> points)
{
    std::sort(points.begin(), points.end(),
              [](const Point& a, const Point& b) { return std::pair(a.x, a.y) < std::pair(b.x, b.y); });
    std::vector<Point> hull;
    for (int side = 0; side < 2; ++side) {
        const std::size_t start = hull.size();
        for (const Point& point : points) {
            while (hull.size() >= start + 2 && turn(hull[hull.size() - 2], hull.back(), point) <= 0) hull.pop_back();
            hull.push_back(point);
        }
        if (!hull.empty()) hull.pop_back();
        std::reverse(points.begin(), points.end());
    }
    return hull;
}

Real areaOf(const std::vector<Point>& loop)
{
    Real twice = 0;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const Point& next = loop[(i + 1) % loop.size()];
        twice += loop[i].x * next.y - loop[i].y * next.x;
    }
    return std::abs(twice) / 2;
}

Real areaInside(std::vector<HalfPlane> bounds, const std::vector<Point>& polygon)
{
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point& a = polygon[i];
        const Point& b = polygon[(i + 1) % polygon.size()];
        const Real normalX = a.y - b.y;
        const Real normalY = b.x - a.x;
        bounds.push_back({normalX, normalY, normalX * a.x + normalY * a.y});
    }
    std::vector<Point> corners;
    for (std::size_t i = 0; i < bounds.size(); ++i)
        for (std::size_t k = 0; k < i; ++k) {
            const HalfPlane& a = bounds[i];
            const HalfPlane& b = bounds[k];
            const Real determinant = a.normalX * b.normalY - a.normalY * b.normalX;
            if (std::abs(determinant) < 1e-9L) continue;
            const Point crossing = {(a.distance * b.normalY - a.normalY * b.distance) / determinant,
                                    (a.normalX * b.distance - a.distance * b.normalX) / determinant};
            if (std::all_of(bounds.begin(), bounds.end(),
                            [&crossing](const HalfPlane& bound) { return bound.over(crossing) >= -1e-9L; }))
                corners.push_back(crossing);
        }
    return areaOf(hullOf(corners));
}

class RandomGeometry {
public:
    explicit RandomGeometry(unsigned seed) : engine(seed) {}

    /// From 0 to count - 1. Not by a distribution: each library has its own.
    unsigned pick(unsigned count) { return static_cast<unsigned>(engine() % count); }

    float between(float least, float most)
    {
        return least + (most - least) * static_cast<float>(static_cast<double>(engine()) / 4294967295.0);
    }

    V3 point(float size)
    {
        const float x = between(-size, size);
        const float y = between(-size, size);
        return {x, y, between(-size, size)};
    }

    Plane<float> plane(float size)
    {
        V3 normal;
        while (length(normal) < 0.1f) normal = point(1);
        return {normalize(normal), between(-size, size)};
    }

    std::vector<Plane<float>> planes(unsigned most, float size)
    {
        std::vector<Plane<float>> planes(1 + pick(most));
        for (Plane<float>& bound : planes) bound = plane(size);
        return planes;
    }

    /// Convex, counter-clockwise, with at least three corners.
    std::vector<Point> convexLoop()
    {
        for (;;) {
            std::vector<Point> points(3 + pick(8));
            for (Point& point : points) point = {between(-10, 10), between(-10, 10)};
            points = hullOf(points);
            if (points.size() >= 3 && areaOf(points) > 0.1L) return points;
        }
    }

    /// The same with more corners, up to 60.
    std::vector<Point> roundLoop()
    {
        std::vector<Point> points(10 + pick(51));
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(points.size());
            points[i] = {static_cast<float>(9 * std::cos(angle)), static_cast<float>(9 * std::sin(angle))};
        }
        return points;
    }

private:
    std::mt19937 engine;
};

} // namespace

TEST(ClipperLine, isCopiedWithoutPlanes)
{
    const Line line = clipLine({}, {1, 2, 3}, {-4, -5, -6});
    EXPECT_TRUE(line.isVisible);
    EXPECT_EQ(line.start, V3(1, 2, 3));
    EXPECT_EQ(line.end, V3(-4, -5, -6));
}

TEST(ClipperLine, insideAllPlanesKeepsItsEnds)
{
    // With the ends computed anew, the second would become (2.5, 2, 0).
    const Line line = clipLine({rightOfZero, leftOfFour, aboveZero}, {0.5f, 16777216, 0}, {2.5f, 1.5f, 0});
    EXPECT_TRUE(line.isVisible);
    EXPECT_EQ(line.start, V3(0.5f, 16777216, 0));
    EXPECT_EQ(line.end, V3(2.5f, 1.5f, 0));
}

TEST(ClipperLine, outsideOnePlaneIsInvisible)
{
    EXPECT_FALSE(clipLine({rightOfZero}, {-1, 0, 0}, {-2, 0, 0}).isVisible);
    EXPECT_FALSE(clipLine({rightOfZero}, {-1, 0, 0}, {std::nextafter(margin, 0.0f), 0, 0}).isVisible);
    EXPECT_FALSE(clipLine({leftOfFour, rightOfZero}, {-1, 0, 0}, {0, 9, 0}).isVisible) << "less than the margin";
}

TEST(ClipperLine, leavesItsOutputsAloneWhenItIsInvisible)
{
    const Line line = clipLine({rightOfZero}, {-1, 0, 0}, {-2, 0, 0});
    EXPECT_EQ(line.start, V3(77, 77, 77));
    EXPECT_EQ(line.end, V3(77, 77, 77));
    const Line clippedBefore = clipLine({rightOfZero, leftOfFour, aboveZero}, {-1, -1, 0}, {5, -1, 0});
    EXPECT_FALSE(clippedBefore.isVisible);
    EXPECT_EQ(clippedBefore.start, V3(77, 77, 77));
    EXPECT_EQ(clippedBefore.end, V3(77, 77, 77));
}

TEST(ClipperLine, endsInFrontOfThePlaneByTheMargin)
{
    const Line entering = clipLine({rightOfZero}, {-1, 2, 3}, {1, 2, 5});
    EXPECT_TRUE(entering.isVisible);
    expectNear(entering.start, {0.01f, 2, 4.01f});
    EXPECT_EQ(entering.end, V3(1, 2, 5));
    const Line leaving = clipLine({rightOfZero}, {1, 2, 5}, {-1, 2, 3});
    EXPECT_TRUE(leaving.isVisible);
    EXPECT_EQ(leaving.start, V3(1, 2, 5));
    expectNear(leaving.end, {0.01f, 2, 4.01f});
}

TEST(ClipperLine, isCutAtBothEnds)
{
    const Line line = clipLine({rightOfZero, leftOfFour}, {-1, 0, 0}, {5, 0, 0});
    EXPECT_TRUE(line.isVisible);
    expectNear(line.start, {0.01f, 0, 0});
    expectNear(line.end, {3.99f, 0, 0});
}

TEST(ClipperLine, entersLastAndLeavesFirst)
{
    const Plane<float> rightOfOne({1, 0, 0}, 1);
    const Plane<float> leftOfThree({-1, 0, 0}, -3);
    for (const bool isReverse : {false, true}) {
        std::vector<Plane<float>> planes = {rightOfZero, leftOfFour, rightOfOne, leftOfThree};
        if (isReverse) std::reverse(planes.begin(), planes.end());
        const Line line = clipLine(planes, {-1, 0, 0}, {5, 0, 0});
        EXPECT_TRUE(line.isVisible);
        expectNear(line.start, {1.01f, 0, 0});
        expectNear(line.end, {2.99f, 0, 0});
    }
}

TEST(ClipperLine, mayStartOrEndExactlyAtTheMargin)
{
    // Neither inside nor outside: the line counts as clipped, but nothing is cut away.
    const Line startsThere = clipLine({rightOfZero}, {margin, 1, 0}, {2, 3, 0});
    EXPECT_TRUE(startsThere.isVisible);
    EXPECT_EQ(startsThere.start, V3(margin, 1, 0));
    expectNear(startsThere.end, {2, 3, 0});
    const Line endsThere = clipLine({rightOfZero}, {2, 3, 0}, {margin, 1, 0});
    EXPECT_TRUE(endsThere.isVisible);
    EXPECT_EQ(endsThere.start, V3(2, 3, 0));
    expectNear(endsThere.end, {margin, 1, 0});
}

TEST(ClipperLine, isAPointWhereItGoesFromTheMarginOutwards)
{
    const Line leaving = clipLine({rightOfZero}, {margin, 1, 0}, {-2, 3, 0});
    EXPECT_TRUE(leaving.isVisible);
    EXPECT_EQ(leaving.start, V3(margin, 1, 0));
    EXPECT_EQ(leaving.end, V3(margin, 1, 0));
    const Line entering = clipLine({rightOfZero}, {-2, 3, 0}, {margin, 1, 0});
    EXPECT_TRUE(entering.isVisible);
    expectNear(entering.start, {margin, 1, 0});
    expectNear(entering.end, {margin, 1, 0});
}

TEST(ClipperLine, mayLieAtTheMarginAltogether)
{
    const Line alone = clipLine({rightOfZero}, {margin, 1, 0}, {margin, 3, 0});
    EXPECT_TRUE(alone.isVisible);
    EXPECT_EQ(alone.start, V3(margin, 1, 0));
    EXPECT_EQ(alone.end, V3(margin, 3, 0));
    for (const bool isFirst : {false, true}) {
        const Plane<float> belowTwo({0, -1, 0}, -2);
        const std::vector<Plane<float>> planes = isFirst ? std::vector<Plane<float>>{rightOfZero, belowTwo}
                                                         : std::vector<Plane<float>>{belowTwo, rightOfZero};
        const Line cut = clipLine(planes, {margin, 1, 0}, {margin, 3, 0});
        EXPECT_TRUE(cut.isVisible);
        expectNear(cut.start, {margin, 1, 0});
        expectNear(cut.end, {margin, 1.99f, 0});
    }
}

TEST(ClipperLine, hasBothEndsComputedAnewWhenItIsClipped)
{
    // 1.5 - 16777216 is rounded, so the way from start to end and back again loses a half.
    const Line line = clipLine({rightOfZero}, {margin, 16777216, 0}, {1, 1.5f, 0});
    EXPECT_TRUE(line.isVisible);
    EXPECT_EQ(line.start.y, 16777216.0f);
    EXPECT_EQ(line.end.y, 16777216.0f + (1.5f - 16777216.0f));
    EXPECT_NE(line.end.y, 1.5f);
}

TEST(ClipperLine, outsideACornerIsVisibleWithReversedEnds)
{
    const Line line = clipLine({rightOfZero, aboveZero}, {-2, 1, 0}, {1, -2, 0});
    EXPECT_TRUE(line.isVisible);
    expectNear(line.start, {0.01f, -1.01f, 0});
    expectNear(line.end, {-1.01f, 0.01f, 0});
}

TEST(ClipperLine, measuresTheMarginInUnitsOfTheNormal)
{
    const Line line = clipLine({Plane<float>({10, 0, 0}, 0)}, {-1, 0, 0}, {1, 0, 0});
    EXPECT_TRUE(line.isVisible);
    expectNear(line.start, {0.001f, 0, 0});
}

TEST(ClipperLine, mayOverwriteItsInputs)
{
    const Clipper clipper({rightOfZero, leftOfFour});
    V3 start(-1, 1, 0);
    V3 end(5, 7, 0);
    EXPECT_TRUE(clipper.clipLine(start, end, start, end));
    expectNear(start, {0.01f, 2.01f, 0});
    expectNear(end, {3.99f, 5.99f, 0});
    start = {-1, 1, 0};
    end = {5, 7, 0};
    EXPECT_TRUE(clipper.clipLine(end, start, start, end));
    expectNear(end, {0.01f, 2.01f, 0});
    expectNear(start, {3.99f, 5.99f, 0});
    start = {1, 1, 0};
    end = {2, 7, 0};
    EXPECT_TRUE(clipper.clipLine(end, start, start, end));
    EXPECT_EQ(end, V3(1, 1, 0));
    EXPECT_EQ(start, V3(2, 7, 0));
}

TEST(ClipperLine, withEndsThatAreNoNumbersIsCutByNothing)
{
    const Line line = clipLine({rightOfZero}, {notANumber, 1, 0}, {notANumber, 3, 0});
    EXPECT_TRUE(line.isVisible);
    EXPECT_EQ(line.start.y, 1.0f);
    EXPECT_EQ(line.end.y, 3.0f);
    // A crossing that is no number moves no end.
    const Line leaving = clipLine({rightOfZero}, {notANumber, 1, 0}, {-1, -1, 0});
    EXPECT_TRUE(leaving.isVisible);
    EXPECT_EQ(leaving.start.y, 1.0f);
    EXPECT_EQ(leaving.end.y, -1.0f);
    const Line entering = clipLine({rightOfZero}, {-1, -1, 0}, {notANumber, 1, 0});
    EXPECT_TRUE(entering.isVisible);
    EXPECT_EQ(entering.start.y, -1.0f);
    EXPECT_EQ(entering.end.y, 1.0f);
}

TEST(ClipperLine, isAsComputedWithMorePrecision)
{
    RandomGeometry random(1);
    int visible = 0;
    int reversed = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::vector<Plane<float>> planes = random.planes(5, 5);
        const V3 start = random.point(10);
        const V3 end = random.point(10);
        long double enter = 0;
        long double leave = 1;
        bool isVisible = true;
        bool isClear = true; // away from the margins, where rounding decides, and from grazing planes
        for (const Plane<float>& plane : planes) {
            const auto over = [&plane](const V3& point) {
                return static_cast<long double>(plane.normal.x) * point.x +
                       static_cast<long double>(plane.normal.y) * point.y +
                       static_cast<long double>(plane.normal.z) * point.z - plane.distance - 0.01L;
            };
            const long double startOver = over(start);
            const long double endOver = over(end);
            if (std::abs(startOver) < 1e-4L || std::abs(endOver) < 1e-4L) isClear = false;
            if (startOver < 0 && endOver < 0) isVisible = false;
            if (startOver < 0 && endOver > 0) enter = std::max(enter, startOver / (startOver - endOver));
            if (startOver > 0 && endOver < 0) leave = std::min(leave, startOver / (startOver - endOver));
            if ((startOver < 0) != (endOver < 0) && std::abs(startOver - endOver) < 0.1L) isClear = false;
        }
        if (!isClear) continue;
        const Line line = clipLine(planes, start, end);
        ASSERT_EQ(line.isVisible, isVisible) << i;
        if (!isVisible) continue;
        ++visible;
        if (enter > leave) ++reversed;
        const V3 expectedStart = start + (end - start) * static_cast<float>(enter);
        const V3 expectedEnd = start + (end - start) * static_cast<float>(leave);
        ASSERT_LT(length(line.start - expectedStart), 1e-3f) << i;
        ASSERT_LT(length(line.end - expectedEnd), 1e-3f) << i;
    }
    EXPECT_GT(visible, 10000);
    EXPECT_GT(reversed, 1000);
}

TEST(ClipperPolygon, isNothingForNullAndWithoutVertices)
{
    const Polygon empty({});
    for (const std::vector<Plane<float>>& planes :
         {std::vector<Plane<float>>{}, {rightOfZero}, {rightOfZero, aboveZero}}) {
        EXPECT_TRUE(Clipper(planes).clipPolygon(nullptr).empty());
        EXPECT_TRUE(Clipper(planes).clipPolygon(&empty).empty());
    }
}

TEST(ClipperPolygon, isCopiedWithoutPlanes)
{
    for (std::size_t count = 1; count <= 4; ++count) {
        const Polygon polygon(
            std::vector<Vertex>(square.vertices.begin(), square.vertices.begin() + static_cast<std::ptrdiff_t>(count)));
        EXPECT_TRUE(areSameBytes(Clipper({}).clipPolygon(&polygon), polygon.vertices)) << count;
    }
}

TEST(ClipperPolygon, insideKeepsItsVerticesInOrder)
{
    const Polygon triangle(
        {Vertex({1, 1, 0}, {0.1f, 0.2f}), Vertex({3, 1, 0}, {0.3f, 0.4f}), Vertex({2, 3, 1}, {0.5f, 0.6f})});
    const std::vector<Vertex> clipped = Clipper({rightOfZero, leftOfFour, aboveZero}).clipPolygon(&triangle);
    EXPECT_TRUE(areSameBytes(clipped, triangle.vertices));
}

TEST(ClipperPolygon, behindOnePlaneIsNothing)
{
    EXPECT_TRUE(clip({rightOfZero}, {{-1, 0, 0}, {-2, 0, 0}, {-1, 1, 0}}).empty());
    EXPECT_TRUE(clip({leftOfFour, rightOfZero, aboveZero}, {{-1, 0, 0}, {-2, 0, 0}, {-1, 1, 0}}).empty());
    EXPECT_TRUE(clip({rightOfZero}, {{0, 0, 0}, {0, 1, 0}, {0.009f, 1, 0}}).empty()) << "less than the margin";
}

TEST(ClipperPolygon, isCutInFrontOfThePlaneByTheMargin)
{
    const Plane<float> rightOfOne({1, 0, 0}, 1);
    expectLoop(Clipper({rightOfOne}).clipPolygon(&square),
               {Vertex({1.01f, 0, 0}, {0.2525f, 0}), Vertex({4, 0, 0}, {1, 0}), Vertex({4, 4, 0}, {1, 1}),
                Vertex({1.01f, 4, 0}, {0.2525f, 1})});
    const Plane<float> leftOfOne({-1, 0, 0}, -1);
    expectLoop(Clipper({leftOfOne}).clipPolygon(&square),
               {Vertex({0, 0, 0}, {0, 0}), Vertex({0.99f, 0, 0}, {0.2475f, 0}), Vertex({0.99f, 4, 0}, {0.2475f, 1}),
                Vertex({0, 4, 0}, {0, 1})});
}

TEST(ClipperPolygon, keepsTheOrderOfManyVertices)
{
    for (const int count : {15, 16, 17, 31, 32, 33, 100, 1000}) {
        // Along the x axis and back again above it; the second half of the way is cut off, then most of the first.
        std::vector<V3> positions;
        std::vector<V3> expected;
        positions.reserve(static_cast<std::size_t>(count) * 2);
        for (int i = 0; i < count; ++i) positions.emplace_back(static_cast<float>(i + 1), 0.0f, 0.0f);
        expected = positions;
        for (int i = count; i > 0; --i) positions.emplace_back(static_cast<float>(i), 100.0f, 0.0f);
        const Plane<float> below({0, -1, 0}, -50);
        std::vector<Vertex> clipped = clip({below}, positions);
        ASSERT_EQ(clipped.size(), static_cast<std::size_t>(count + 2)) << count;
        for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(clipped[i].position, expected[i]) << count;
        expectNear(clipped[expected.size()].position, {static_cast<float>(count), 49.99f, 0});
        expectNear(clipped.back().position, {1, 49.99f, 0});
        clipped = clip({below, Plane<float>({-1, 0, 0}, -2.5f)}, positions);
        expectLoop(clipped, {Vertex({1, 0, 0}, {1, 0}), Vertex({2, 0, 0}, {2, 0}), Vertex({2.49f, 0, 0}, {2.49f, 0}),
                             Vertex({2.49f, 49.99f, 0}, {2.49f, 49.99f}), Vertex({1, 49.99f, 0}, {1, 49.99f})});
    }
}

TEST(ClipperPolygon, mayHaveMoreVerticesThanBefore)
{
    for (const int teeth : {2, 8, 15, 16, 20, 500}) {
        // No convex one: every edge of this zigzag crosses the plane.
        std::vector<V3> positions;
        std::vector<V3> expected;
        for (int i = 0; i < teeth; ++i) {
            const auto x = static_cast<float>(2 * i);
            positions.emplace_back(x, 1.01f, 0.0f);
            positions.emplace_back(x + 1, -0.99f, 0.0f);
            expected.emplace_back(x, 1.01f, 0.0f);
            expected.emplace_back(x + 0.5f, 0.01f, 0.0f);
            expected.emplace_back(x + 1.5f, 0.01f, 0.0f);
        }
        expected.back().x = static_cast<float>(teeth) - 0.5f; // back to the start
        const std::vector<Vertex> clipped = clip({aboveZero, Plane<float>({0, 1, 0}, -5)}, positions);
        ASSERT_EQ(clipped.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_LT(length(clipped[i].position - expected[i]), 1e-3f) << teeth << " " << i;
    }
}

TEST(ClipperPolygon, isCutByOnePlaneAfterTheOther)
{
    expectLoop(Clipper({Plane<float>({1, 0, 0}, 1), Plane<float>({0, 1, 0}, 3)}).clipPolygon(&square),
               {Vertex({4, 3.01f, 0}, {1, 0.7525f}), Vertex({4, 4, 0}, {1, 1}), Vertex({1.01f, 4, 0}, {0.2525f, 1}),
                Vertex({1.01f, 3.01f, 0}, {0.2525f, 0.7525f})});
}

TEST(ClipperPolygon, hasThreeOrFourVerticesOfACutTriangle)
{
    expectLoop(
        clip({rightOfZero}, {{-1, 0, 0}, {1, 0, 0}, {-1, 2, 0}}),
        {Vertex({0.01f, 0, 0}, {0.01f, 0}), Vertex({1, 0, 0}, {1, 0}), Vertex({0.01f, 0.99f, 0}, {0.01f, 0.99f})});
    EXPECT_EQ(clip({rightOfZero}, {{1, 0, 0}, {-1, 0, 0}, {1, 2, 0}}).size(), 4U);
}

TEST(ClipperPolygon, keepsVerticesExactlyAtTheMargin)
{
    const std::vector<V3> touching = {{margin, 0, 0}, {1, 0, 0}, {margin, 2, 0}};
    EXPECT_TRUE(areSameBytes(clip({rightOfZero}, touching), polygonOf(touching).vertices));
    const std::vector<V3> below = {{std::nextafter(margin, 0.0f), 0, 0}, {1, 0, 0}, {1, 2, 0}};
    EXPECT_EQ(clip({rightOfZero}, below).size(), 4U);
}

TEST(ClipperPolygon, touchingTheMarginWithOneVertexIsThisPointThreeTimes)
{
    expectLoop(clip({rightOfZero}, {{margin, 1, 0}, {-1, 0, 0}, {-1, 2, 0}}),
               {Vertex({margin, 1, 0}, {margin, 1}), Vertex({margin, 1, 0}, {margin, 1}),
                Vertex({margin, 1, 0}, {margin, 1})});
}

TEST(ClipperPolygon, ofTwoSurvivingVerticesIsReturnedAtOnce)
{
    const std::vector<V3> sliver = {{1, -1, 0}, {2, -2, 0}};
    EXPECT_TRUE(areSameBytes(clip({rightOfZero}, sliver), polygonOf(sliver).vertices));
    EXPECT_TRUE(areSameBytes(clip({rightOfZero, aboveZero}, sliver), polygonOf(sliver).vertices))
        << "the second plane is not looked at";
    EXPECT_TRUE(clip({aboveZero, rightOfZero}, sliver).empty());
    EXPECT_EQ(clip({aboveZero}, {{1, -1, 0}, {2, 2, 0}}).size(), 3U) << "both crossings and the vertex inside";
}

TEST(ClipperPolygon, ofOneVertexIsKeptOrNothing)
{
    EXPECT_EQ(clip({rightOfZero}, {{1, -1, 0}}).size(), 1U);
    EXPECT_EQ(clip({rightOfZero, aboveZero}, {{1, -1, 0}}).size(), 1U);
    EXPECT_TRUE(clip({aboveZero, rightOfZero}, {{1, -1, 0}}).empty());
}

TEST(ClipperPolygon, losesVerticesThatAreNoNumbers)
{
    EXPECT_TRUE(clip({rightOfZero}, {{notANumber, 0, 0}, {notANumber, 1, 0}, {notANumber, 2, 0}}).empty());
    const std::vector<Vertex> clipped = clip({rightOfZero}, {{1, 0, 0}, {notANumber, 1, 0}, {1, 2, 0}});
    EXPECT_EQ(clipped.size(), 4U);
}

TEST(ClipperPolygon, leavesThePolygonAsItIs)
{
    Polygon polygon = square;
    polygon.tag = 5;
    EXPECT_EQ(Clipper({Plane<float>({1, 0, 0}, 1)}).clipPolygon(&polygon).size(), 4U);
    EXPECT_TRUE(areSameBytes(polygon.vertices, square.vertices));
    EXPECT_EQ(polygon.tag, 5);
}

TEST(ClipperPolygon, hasTheAreaThatIsInside)
{
    RandomGeometry random(2);
    int cut = 0;
    for (int i = 0; i < 3000; ++i) {
        const std::vector<Point> loop = i % 20 == 0 ? random.roundLoop() : random.convexLoop();
        const unsigned axis = random.pick(3); // the polygon lies across it
        const auto embed = [axis](float x, float y, float z) {
            return axis == 0 ? V3(x, y, z) : axis == 1 ? V3(y, z, x) : V3(z, x, y);
        };
        std::vector<V3> positions;
        positions.reserve(loop.size());
        for (const Point& point : loop)
            positions.push_back(embed(static_cast<float>(point.x), static_cast<float>(point.y), 3));
        std::vector<Plane<float>> planes;
        std::vector<HalfPlane> bounds;
        for (unsigned k = random.pick(4) + 1; k > 0; --k) {
            Plane<float> bound = random.plane(4);
            while (std::abs(bound.normal.z) > 0.95f) bound = random.plane(4); // almost parallel: all is rounding
            planes.emplace_back(embed(bound.normal.x, bound.normal.y, bound.normal.z), bound.distance);
            bounds.push_back({bound.normal.x, bound.normal.y,
                              static_cast<Real>(bound.distance) + 0.01L - 3.0L * static_cast<Real>(bound.normal.z)});
        }
        std::vector<Point> left;
        for (const Vertex& vertex : clip(planes, positions)) {
            const V3& p = vertex.position;
            left.push_back(axis == 0 ? Point{p.x, p.y} : axis == 1 ? Point{p.z, p.x} : Point{p.y, p.z});
        }
        const Real expected = areaInside(bounds, loop);
        if (expected > 0.01L && expected < areaOf(loop) - 0.01L) ++cut;
        ASSERT_NEAR(static_cast<double>(areaOf(left)), static_cast<double>(expected), 1e-3) << i;
    }
    EXPECT_GT(cut, 500);
}

TEST(ClipperPolygon, liesInsideEveryPlaneAndKeepsItsTextureInPlace)
{
    RandomGeometry random(3);
    int kept = 0;
    for (int i = 0; i < 20000; ++i) {
        // In a plane of its own in space; the texture coordinate follows from the position.
        const V3 corner = random.point(5);
        const V3 across = random.point(1);
        const V3 upwards = random.point(1);
        std::vector<Vertex> vertices;
        for (const Point& point : random.convexLoop()) {
            const auto x = static_cast<float>(point.x);
            const auto y = static_cast<float>(point.y);
            vertices.emplace_back(corner + across * x + upwards * y, Vector2<float>(x, y));
        }
        const Polygon polygon(vertices);
        const std::vector<Plane<float>> planes = random.planes(6, 5);
        const std::vector<Vertex> clipped = Clipper(planes).clipPolygon(&polygon);
        ASSERT_TRUE(clipped.empty() || clipped.size() >= 3) << i;
        if (!clipped.empty()) ++kept;
        for (const Vertex& vertex : clipped) {
            for (const Plane<float>& plane : planes) ASSERT_GE(plane.signedDistance(vertex.position), margin - 1e-4f);
            const V3 expected = corner + across * vertex.textureCoordinate.x + upwards * vertex.textureCoordinate.y;
            ASSERT_LT(length(vertex.position - expected), 1e-3f) << i;
        }
    }
    EXPECT_GT(kept, 3000);
}

TEST(Clipper, canBeCopied)
{
    const Clipper clipper({Plane<float>({1, 0, 0}, 1)});
    Clipper copy(clipper);
    EXPECT_EQ(copy.clipPolygon(&square).size(), 4U);
    copy = Clipper({Plane<float>({1, 0, 0}, 100)});
    EXPECT_TRUE(copy.clipPolygon(&square).empty());
    EXPECT_EQ(clipper.clipPolygon(&square).size(), 4U);
}

TEST(Clipper, keepsItsPlanesWhenTheFrustumChanges)
{
    Frustum frustum;
    frustum.setFromViewVectors({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 90, 90, 1);
    const Clipper clipper(frustum.getPlanes());
    frustum.setFromViewVectors({0, 0, 0}, {-1, 0, 0}, {0, -1, 0}, {0, 0, 1}, 90, 90, 1);
    V3 start(0, 5, 0);
    V3 end(0, 6, 0);
    EXPECT_TRUE(clipper.clipLine(start, end, start, end));
    EXPECT_FALSE(Clipper(frustum.getPlanes()).clipLine(start, end, start, end));
}
