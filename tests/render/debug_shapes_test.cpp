#include "allocation_counter.h"
#include "print_vectors.h"
#include "recording_render_device.h"

#include <xum/render/debug_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <functional>
#include <list>
#include <new>
#include <type_traits>
#include <utility>

using Calls = std::vector<std::string>;
using Points = std::vector<Vector3<float>>;

namespace {

constexpr double pi = 3.14159265358979323846;

/// The end points that a shape draws through one static buffer of its own, without any change of state.
Points drawnPoints(DebugObject& shape)
{
    RecordingRenderDevice device;
    shape.draw(&device);
    EXPECT_EQ(device.calls, Calls{"createVertexBuffer 0"});
    EXPECT_TRUE(device.buffers.empty());
    EXPECT_EQ(device.formerBuffers.size(), 1u);
    if (device.formerBuffers.empty()) return {};
    const RecordingVertexBuffer& buffer = device.formerBuffers.front();
    const Points points = buffer.threes.at(0);
    EXPECT_EQ(buffer.calls, (Calls{"setAttributeFrom 0 Vector3 x " + std::to_string(points.size()), "drawLines 0 -1"}));
    return points;
}

using Place = std::array<float, 3>;
using Segments = std::vector<std::pair<Place, Place>>;

/// In no order, and without direction.
Segments sorted(Segments segments)
{
    for (auto& [from, to] : segments)
        if (to < from) std::swap(from, to);
    std::sort(segments.begin(), segments.end());
    return segments;
}

Segments segmentsOf(const Points& points)
{
    const auto place = [](const Vector3<float>& point) { return Place{point.x, point.y, point.z}; };
    Segments segments;
    for (std::size_t i = 0; i + 1 < points.size(); i += 2)
        segments.emplace_back(place(points[i]), place(points[i + 1]));
    return sorted(segments);
}

/// One of the three circles of a sphere: its points without the one that they start from.
Points circleOf(const Points& points, int circle, int segments)
{
    const auto size = 2 * static_cast<std::size_t>(segments + 1);
    EXPECT_EQ(points.size(), 3 * size);
    Points ends;
    for (std::size_t i = 0; i < size; i += 2)
        ends.push_back(points.at(static_cast<std::size_t>(circle) * size + i + 1));
    return ends;
}

/// At a step of a circle of the radius around the origin, by its numbers: what is right, in double precision.
Vector3<float> circlePoint(int circle, int step, int segments, double radius)
{
    const double angle = step * 2 * pi / segments;
    const auto s = static_cast<float>(std::sin(angle) * radius);
    const auto c = static_cast<float>(std::cos(angle) * radius);
    switch (circle) {
    case 0: return {c, s, 0};
    case 1: return {0, -s, c};
    default: return {-s, 0, c};
    }
}

void expectCircles(const DebugSphere& sphere, float tolerance = 1e-5f)
{
    DebugSphere copy = sphere;
    const Points points = drawnPoints(copy);
    for (int circle = 0; circle < 3; ++circle) {
        const Points ends = circleOf(points, circle, sphere.segments);
        for (int step = 0; step <= sphere.segments; ++step) {
            const Vector3<float> expected =
                sphere.center + circlePoint(circle, step, sphere.segments, static_cast<double>(sphere.radius));
            EXPECT_LT(length(ends[static_cast<std::size_t>(step)] - expected), tolerance)
                << circle << ", " << step << ": " << ::testing::PrintToString(ends[static_cast<std::size_t>(step)]);
        }
    }
}

/// Opens what a shape of a host can use.
class HostShape final : public DebugObject {
public:
    void draw(RenderDevice* device) override { withVertexBuffer(device, action); }

    std::function<void(VertexBuffer*)> action;
};

} // namespace

TEST(DebugLine, isOneSegment)
{
    DebugLine line({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(drawnPoints(line), (Points{{1, 2, 3}, {4, 5, 6}}));
}

TEST(DebugLine, drawsWhatItsEndsAreNow)
{
    DebugLine line({1, 2, 3}, {4, 5, 6});
    line.from = line.to;
    EXPECT_EQ(drawnPoints(line), Points(2, {4, 5, 6}));
}

TEST(DebugBox, hasEachOfItsTwelveEdgesOnce)
{
    DebugBox box({1, 2, 3}, {4, 6, 8});
    const Points points = drawnPoints(box);
    EXPECT_EQ(points.size(), 24u);
    Segments expected;
    for (const float z : {3.0f, 8.0f}) {
        expected.push_back({{1, 2, z}, {4, 2, z}});
        expected.push_back({{4, 2, z}, {4, 6, z}});
        expected.push_back({{4, 6, z}, {1, 6, z}});
        expected.push_back({{1, 6, z}, {1, 2, z}});
    }
    for (const float x : {1.0f, 4.0f})
        for (const float y : {2.0f, 6.0f}) expected.push_back({{x, y, 3}, {x, y, 8}});
    EXPECT_EQ(segmentsOf(points), sorted(expected));
}

TEST(DebugBox, isTheSameBetweenExchangedCorners)
{
    DebugBox box({1, 2, 3}, {4, 6, 8});
    DebugBox turned({4, 6, 8}, {1, 2, 3});
    DebugBox mixed({4, 2, 8}, {1, 6, 3});
    EXPECT_EQ(segmentsOf(drawnPoints(turned)), segmentsOf(drawnPoints(box)));
    EXPECT_EQ(segmentsOf(drawnPoints(mixed)), segmentsOf(drawnPoints(box)));
}

TEST(DebugBox, isTwelveSegmentsWithoutASize)
{
    DebugBox box({1, 1, 1}, {1, 1, 1});
    EXPECT_EQ(drawnPoints(box), Points(24, {1, 1, 1}));
}

TEST(DebugBox, appendsOneSegment)
{
    std::list<Vector3<float>> points = {{9, 9, 9}};
    DebugBox::drawHelper(points, {1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(points, (std::list<Vector3<float>>{{9, 9, 9}, {1, 2, 3}, {4, 5, 6}}));
}

TEST(DebugSphere, ofSixteenStepsIsThreeTimesSeventeenSegments)
{
    DebugSphere sphere({0, 0, 0}, 1, 16);
    EXPECT_EQ(drawnPoints(sphere).size(), 3 * 17 * 2u);
}

TEST(DebugSphere, hasACircleInEachCoordinatePlane)
{
    expectCircles({{0, 0, 0}, 1, 16});
    expectCircles({{0, 0, 0}, 2.5f, 64});
}

TEST(DebugSphere, liesAroundItsCenter)
{
    expectCircles({{10, -20, 30}, 3, 12});
}

TEST(DebugSphere, mayHaveAnyNumberOfSteps)
{
    for (const int segments : {1, 2, 3, 7, 11, 360, 1000}) expectCircles({{0, 0, 0}, 1, segments});
}

TEST(DebugSphere, startsEachCircleAtItsAngleOfZero)
{
    DebugSphere sphere({10, 20, 30}, 4, 8);
    const Points points = drawnPoints(sphere);
    ASSERT_EQ(points.size(), 3 * 18u);
    EXPECT_EQ(points[0], (Vector3<float>{14, 20, 30}));
    EXPECT_EQ(points[18], (Vector3<float>{10, 20, 34}));
    EXPECT_EQ(points[36], (Vector3<float>{10, 20, 34}));
    for (const std::size_t first : {0u, 18u, 36u}) EXPECT_EQ(points[first + 1], points[first]) << "of no length";
}

TEST(DebugSphere, drawsEachSegmentFromTheEndOfTheOneBefore)
{
    DebugSphere sphere({1, 2, 3}, 4, 8);
    const Points points = drawnPoints(sphere);
    for (std::size_t i = 2; i < points.size(); i += 2) {
        const bool startsACircle = i % 18 == 0;
        EXPECT_TRUE(startsACircle || points[i] == points[i - 1]) << i;
    }
}

TEST(DebugSphere, closesItsCircles)
{
    for (const int segments : {3, 7, 16, 1000}) {
        DebugSphere sphere({0, 0, 0}, 1, segments);
        const Points points = drawnPoints(sphere);
        for (int circle = 0; circle < 3; ++circle) {
            const Points ends = circleOf(points, circle, segments);
            EXPECT_LT(length(ends.back() - ends.front()), 1e-5f) << circle;
        }
    }
}

TEST(DebugSphere, isMirroredByANegativeRadius)
{
    expectCircles({{1, 2, 3}, -2, 16});
}

TEST(DebugSphere, ofNoRadiusIsAPoint)
{
    DebugSphere sphere({1, 2, 3}, 0, 4);
    EXPECT_EQ(drawnPoints(sphere), Points(30, {1, 2, 3}));
}

TEST(DebugSphere, drawsNothingWithoutAStep)
{
    for (const int segments : {0, -1, -16, INT_MIN}) {
        RecordingRenderDevice device;
        DebugSphere sphere({0, 0, 0}, 1, segments);
        sphere.draw(&device);
        EXPECT_EQ(device.calls, Calls()) << segments;
        std::list<Vector3<float>> points;
        sphere.drawHelper(points, {1, 0, 0}, [](float, float, const Vector3<float>& start) { return start; });
        EXPECT_TRUE(points.empty()) << segments;
    }
}

TEST(DebugSphere, takesNoMoreThan65536Steps)
{
    for (const int segments : {65536, 65537, INT_MAX}) {
        DebugSphere sphere({0, 0, 0}, 1, segments);
        EXPECT_EQ(drawnPoints(sphere).size(), 3 * 65537 * 2u) << segments;
        EXPECT_EQ(sphere.segments, segments);
    }
    DebugSphere fewer({0, 0, 0}, 1, 65535);
    EXPECT_EQ(drawnPoints(fewer).size(), 3 * 65536 * 2u);
}

TEST(DebugSphere, asksForThePointsOfACircleBySineAndCosine)
{
    const DebugSphere sphere({100, 200, 300}, 5, 4);
    std::list<Vector3<float>> points = {{9, 9, 9}};
    std::vector<std::array<float, 2>> asked;
    sphere.drawHelper(points, {1, 2, 3}, [&](float sine, float cosine, const Vector3<float>& start) {
        EXPECT_EQ(start, (Vector3<float>{1, 2, 3}));
        asked.push_back({sine, cosine});
        return Vector3<float>(static_cast<float>(asked.size()), 0, 0);
    });
    const float expected[][2] = {{0, 1}, {1, 0}, {0, -1}, {-1, 0}, {0, 1}};
    ASSERT_EQ(asked.size(), std::size(expected));
    for (std::size_t i = 0; i < asked.size(); ++i) {
        EXPECT_NEAR(asked[i][0], expected[i][0], 1e-6f) << i;
        EXPECT_NEAR(asked[i][1], expected[i][1], 1e-6f) << i;
    }
    EXPECT_EQ(points, (std::list<Vector3<float>>{{9, 9, 9},
                                                 {101, 202, 303},
                                                 {101, 200, 300},
                                                 {101, 200, 300},
                                                 {102, 200, 300},
                                                 {102, 200, 300},
                                                 {103, 200, 300},
                                                 {103, 200, 300},
                                                 {104, 200, 300},
                                                 {104, 200, 300},
                                                 {105, 200, 300}}));
}

TEST(DebugSphere, cannotAskAnEmptyFunction)
{
    const DebugSphere sphere({0, 0, 0}, 1, 4);
    std::list<Vector3<float>> points;
    EXPECT_THROW(sphere.drawHelper(points, {1, 0, 0}, {}), std::bad_function_call);
}

TEST(DebugObject, givesTheActionAStaticBufferThatGoesBackAfterwards)
{
    RecordingRenderDevice device;
    HostShape shape;
    int calls = 0;
    shape.action = [&](VertexBuffer* buffer) {
        ++calls;
        ASSERT_EQ(device.buffers.size(), 1u);
        EXPECT_EQ(buffer, &device.buffers.front());
        EXPECT_FALSE(device.buffers.front().dynamic);
    };
    shape.draw(&device);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(device.buffers.empty());
    EXPECT_EQ(device.formerBuffers.size(), 1u);
}

TEST(DebugObject, cannotUseAnEmptyAction)
{
    RecordingRenderDevice device;
    HostShape shape;
    EXPECT_THROW(shape.draw(&device), std::bad_function_call);
    EXPECT_TRUE(device.buffers.empty()) << "its buffer went back";
    device.makesResources = false;
    EXPECT_THROW(shape.draw(&device), std::bad_function_call);
    EXPECT_THROW(shape.draw(nullptr), std::bad_function_call);
}

TEST(DebugObject, handsTheBufferBackWhenTheActionThrows)
{
    RecordingRenderDevice device;
    HostShape shape;
    shape.action = [](VertexBuffer*) { throw 17; };
    EXPECT_THROW(shape.draw(&device), int);
    EXPECT_TRUE(device.buffers.empty());
    EXPECT_EQ(device.formerBuffers.size(), 1u);
}

TEST(DebugObject, doesNothingOnADeviceThatMakesNoBuffers)
{
    RecordingRenderDevice device;
    device.makesResources = false;
    HostShape shape;
    shape.action = [](VertexBuffer*) { ADD_FAILURE() << "there is no buffer"; };
    DebugLine line({1, 2, 3}, {4, 5, 6});
    DebugBox box({1, 2, 3}, {4, 5, 6});
    DebugSphere sphere({1, 2, 3}, 4, 5);
    for (DebugObject* object : std::initializer_list<DebugObject*>{&shape, &line, &box, &sphere}) {
        object->draw(&device);
        object->draw(nullptr);
    }
    EXPECT_EQ(device.calls, Calls(4, "createVertexBuffer 0"));
}

TEST(DebugObject, handsTheBufferBackWhenMemoryRunsOut)
{
    RecordingRenderDevice device;
    device.isRecording = false;
    DebugSphere sphere({1, 2, 3}, 4, 5);
    int failures = 0;
    for (bool hasDrawn = false; !hasDrawn; ++failures) {
        ASSERT_LT(failures, 1000);
        try {
            const FailingAllocations failing(failures);
            sphere.draw(&device);
            hasDrawn = true;
        } catch (const std::bad_alloc&) {
        }
        EXPECT_TRUE(device.buffers.empty());
    }
    EXPECT_GT(failures, 36);
}

TEST(DebugObject, isCopied)
{
    static_assert(std::is_abstract_v<DebugObject> && std::has_virtual_destructor_v<DebugObject>);
    static_assert(std::is_copy_assignable_v<DebugObject> && std::is_copy_assignable_v<HostShape>);
    static_assert(std::is_copy_constructible_v<HostShape>);

    const DebugLine line({1, 2, 3}, {4, 5, 6});
    DebugLine otherLine({}, {});
    otherLine = line;
    EXPECT_EQ(drawnPoints(otherLine), (Points{{1, 2, 3}, {4, 5, 6}}));
    DebugLine copiedLine(line);
    EXPECT_EQ(drawnPoints(copiedLine), drawnPoints(otherLine));

    DebugBox box({1, 2, 3}, {4, 6, 8});
    DebugBox otherBox({}, {});
    otherBox = box;
    EXPECT_EQ(drawnPoints(otherBox), drawnPoints(box));
    DebugBox copiedBox(box);
    EXPECT_EQ(drawnPoints(copiedBox), drawnPoints(box));

    DebugSphere sphere({1, 2, 3}, 4, 5);
    DebugSphere otherSphere({}, 0, 0);
    otherSphere = sphere;
    EXPECT_EQ(drawnPoints(otherSphere), drawnPoints(sphere));
    DebugSphere copiedSphere(sphere);
    EXPECT_EQ(drawnPoints(copiedSphere), drawnPoints(sphere));
}
