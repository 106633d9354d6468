#include "drawing_fixture.h"
#include "point_of_view.h"

#include <xum/render/debug_shapes.h>

#include <algorithm>
#include <cmath>
#include <vector>

// Which pixels the lines of debug shapes light. The last pixel of a line belongs to the next line: it may stay dark.

namespace {

using Point = Vector2<float>;

struct Segment {
    Point from;
    Point to;
};

float distanceOf(const Point& p, const Segment& segment)
{
    const Point along = segment.to - segment.from;
    const float squared = dot(along, along);
    const float t = squared == 0 ? 0 : std::clamp(dot(p - segment.from, along) / squared, 0.0f, 1.0f);
    return length(p - segment.from - along * t);
}

/// The twelve edges of a box, from one corner to those that differ in one coordinate.
std::vector<Segment> edgesOf(const PointOfView& view, const Vector3<float>& minimum, const Vector3<float>& maximum)
{
    const auto corner = [&](int bits) {
        return view.project({(bits & 1) != 0 ? maximum.x : minimum.x, (bits & 2) != 0 ? maximum.y : minimum.y,
                             (bits & 4) != 0 ? maximum.z : minimum.z});
    };
    std::vector<Segment> edges;
    for (int bits = 0; bits < 8; ++bits)
        for (const int bit : {1, 2, 4})
            if ((bits & bit) == 0) edges.push_back({corner(bits), corner(bits | bit)});
    return edges;
}

/// Great circles in the three coordinate planes, in many short segments.
std::vector<Segment> circlesOf(const PointOfView& view, const Vector3<float>& center, float radius)
{
    constexpr int steps = 360;
    std::vector<Segment> segments;
    for (int plane = 0; plane < 3; ++plane) {
        const auto point = [&](int step) {
            const double angle = 2 * 3.14159265358979323846 / steps * step;
            const float a = radius * static_cast<float>(std::cos(angle));
            const float b = radius * static_cast<float>(std::sin(angle));
            return view.project(center + (plane == 0   ? Vector3<float>(a, b, 0)
                                          : plane == 1 ? Vector3<float>(0, a, b)
                                                       : Vector3<float>(a, 0, b)));
        };
        for (int step = 0; step < steps; ++step) segments.push_back({point(step), point(step + 1)});
    }
    return segments;
}

} // namespace

class DebugShapePixels : public DrawingTest {
protected:
    static constexpr int canvasSize = 96;

    void makeWorldCanvas()
    {
        makeCanvas(canvasSize, canvasSize, {rgba8, depth32});
        if (program == nullptr)
            program = makeProgram("#version 150\n"
                                  "in vec3 position;\n"
                                  "uniform mat4 matrix;\n"
                                  "void main() { gl_Position = vec4(position, 1.0) * matrix; }\n",
                                  "#version 150\n"
                                  "uniform vec4 color;\n"
                                  "out vec4 outputColor;\n"
                                  "void main() { outputColor = color; }\n");
        device->useProgram(program);
        device->setUniform("matrix", view.getMatrix()).setUniform("color", Vector4<float>(1, 1, 1, 1));
    }

    /// Whether the lit pixels are those along the segments: none is more than a pixel away from one, and beside every
    /// place of a segment there is one, but for its last pixel.
    ::testing::AssertionResult isAlong(const std::vector<Segment>& segments)
    {
        const std::unique_ptr<Image> picture = drawnPicture();
        for (int y = 0; y < canvasSize; ++y)
            for (int x = 0; x < canvasSize; ++x) {
                if (picture->getPixel(x, y) == black) continue;
                const Point middle(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
                const bool isNearOne = std::any_of(segments.begin(), segments.end(), [&](const Segment& segment) {
                    return distanceOf(middle, segment) <= 0.75f;
                });
                if (!isNearOne) return ::testing::AssertionFailure() << '(' << x << ", " << y << ") is lit";
            }
        for (const Segment& segment : segments) {
            const float pixels = length(segment.to - segment.from);
            for (float done = 1; done <= pixels - 1; done += 0.5f) {
                const Point place = segment.from + (segment.to - segment.from) * (done / pixels);
                if (!isLitNear(*picture, place))
                    return ::testing::AssertionFailure() << "nothing is lit at " << place.x << ", " << place.y;
            }
        }
        return ::testing::AssertionSuccess();
    }

    static bool isLitNear(const Image& picture, const Point& place)
    {
        for (int y = static_cast<int>(place.y) - 1; y <= static_cast<int>(place.y) + 1; ++y)
            for (int x = static_cast<int>(place.x) - 1; x <= static_cast<int>(place.x) + 1; ++x) {
                const Point middle(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
                if (length(middle - place) <= 0.8f && picture.getPixel(x, y) != black) return true;
            }
        return false;
    }

    const PointOfView view{{3, -7, 4}, {0, 0, 0.5f}, 40, canvasSize};
    Program* program = nullptr;
};

TEST_F(DebugShapePixels, lineLightsThePixelsFromOneEndToTheOther)
{
    makeCanvas(size, size);
    usePixelProgram(makePixelProgram("outputColor = vec4(1.0, 0.0, 0.0, 1.0);"));
    DebugLine({2.5f, 5.5f, 0}, {12.5f, 5.5f, 0}).draw(device);
    for (int y = 0; y < size; ++y) {
        const std::string row = litPixelsOfRow(y);
        if (y == 5)
            EXPECT_TRUE(row == "..##########...." || row == "..###########...") << row;
        else
            EXPECT_EQ(row, "................") << y;
    }
    EXPECT_EQ(pixelAt(2, 5), red);
}

TEST_F(DebugShapePixels, lineRunsUprightAndAslantToo)
{
    makeCanvas(size, size);
    usePixelProgram(makePixelProgram("outputColor = vec4(1.0, 0.0, 0.0, 1.0);"));
    DebugLine({14.5f, 2.5f, 0}, {14.5f, 10.5f, 0}).draw(device);
    DebugLine({1.5f, 1.5f, 0}, {12.5f, 12.5f, 0}).draw(device);
    Image expected = makeImage(size, size, black);
    for (int i = 2; i <= 10; ++i) expected.getPixels()[i * size + 14] = red;
    for (int i = 1; i <= 12; ++i) expected.getPixels()[i * size + i] = red;
    const std::unique_ptr<Image> drawn = drawnPicture();
    for (const Vector2<int>& end :
         {Vector2<int>(14, 2), Vector2<int>(14, 10), Vector2<int>(1, 1), Vector2<int>(12, 12)})
        expected.getPixels()[end.y * size + end.x] = drawn->getPixel(end.x, end.y);
    EXPECT_TRUE(isDrawn(expected)) << "but for its ends";
}

TEST_F(DebugShapePixels, lineBetweenTwoPointsOfTheWorldIsWhereTheyAreSeen)
{
    makeWorldCanvas();
    const Vector3<float> from(-1.5f, 0.5f, -0.5f);
    const Vector3<float> to(1, -1, 1.5f);
    DebugLine(from, to).draw(device);
    EXPECT_TRUE(isAlong({{view.project(from), view.project(to)}}));
}

TEST_F(DebugShapePixels, boxLightsItsTwelveEdgesAndNothingElse)
{
    makeWorldCanvas();
    const Vector3<float> minimum(-1.5f, -1, -0.5f);
    const Vector3<float> maximum(1, 1.25f, 1.5f);
    DebugBox(minimum, maximum).draw(device);
    EXPECT_TRUE(isAlong(edgesOf(view, minimum, maximum)));
}

TEST_F(DebugShapePixels, boxWithItsCornersExchangedIsTheSame)
{
    makeWorldCanvas();
    const Vector3<float> minimum(-1.5f, -1, -0.5f);
    const Vector3<float> maximum(1, 1.25f, 1.5f);
    DebugBox(maximum, minimum).draw(device);
    EXPECT_TRUE(isAlong(edgesOf(view, minimum, maximum)));
}

TEST_F(DebugShapePixels, sphereLightsThreeGreatCircles)
{
    makeWorldCanvas();
    const Vector3<float> center(0.5f, -0.25f, 0.75f);
    DebugSphere(center, 1.75f, 64).draw(device);
    EXPECT_TRUE(isAlong(circlesOf(view, center, 1.75f)));
}

TEST_F(DebugShapePixels, sphereOfFourSegmentsIsAnOctahedron)
{
    makeWorldCanvas();
    DebugSphere({0, 0, 0.5f}, 2, 4).draw(device);
    std::vector<Segment> sides;
    const Vector3<float> center(0, 0, 0.5f);
    const Vector3<float> axes[] = {{2, 0, 0}, {0, 2, 0}, {0, 0, 2}};
    for (int a = 0; a < 3; ++a)
        for (const float signA : {-1.0f, 1.0f})
            for (const float signB : {-1.0f, 1.0f})
                sides.push_back(
                    {view.project(center + axes[a] * signA), view.project(center + axes[(a + 1) % 3] * signB)});
    EXPECT_TRUE(isAlong(sides));
}

TEST_F(DebugShapePixels, linesAreHiddenByWhatIsInFront)
{
    makeWorldCanvas();
    device->enable(RenderFeature::DepthTest);
    VertexBuffer* wall = makeBuffer();
    wall->setAttribute(VertexAttribute::Position,
                       std::vector<Vector3<float>>{{-9, 0, -9}, {9, 0, -9}, {9, 0, 9}, {-9, 0, 9}});
    device->setUniform("color", colorOf(black));
    wall->drawTriangleFan();
    device->setUniform("color", colorOf(white));
    const Vector3<float> from(0.5f, -1.5f, 0);
    const Vector3<float> middle(0, 0, 0.5f);
    const Vector3<float> to(-0.5f, 1.5f, 1);
    DebugLine(from, to).draw(device);
    EXPECT_TRUE(isAlong({{view.project(from), view.project(middle)}}));
}

TEST_F(DebugShapePixels, drawsTheGoldenPictureOfAllShapes)
{
    makeWorldCanvas();
    device->enable(RenderFeature::DepthTest);
    device->setUniform("color", Vector4<float>(1, 0.8f, 0.2f, 1));
    DebugBox({-1.5f, -1, -0.5f}, {1, 1.25f, 1.5f}).draw(device);
    device->setUniform("color", Vector4<float>(0.3f, 0.9f, 1, 1));
    DebugSphere({0.5f, -0.25f, 0.75f}, 1.25f, 24).draw(device);
    device->setUniform("color", Vector4<float>(1, 0.3f, 0.3f, 1));
    DebugLine({-2, -2, -1}, {2, 1.5f, 2}).draw(device);
    EXPECT_TRUE(isGolden("debug_shapes"));
}
