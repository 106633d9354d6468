#include "gl_fixture.h"

// The three draw operations, with and without indices. Each test draws shapes that light one place each.

class OpenGLDraw : public GLTest {
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (device != nullptr) makeTarget();
    }

    /// Four triangles side by side, from the left; twelve vertices.
    static std::vector<Vector3<float>> fourTriangles()
    {
        std::vector<Vector3<float>> vertices;
        for (float left : {-1.0f, -0.5f, 0.0f, 0.5f}) {
            vertices.push_back({left, -1, 0});
            vertices.push_back({left + 0.5f, -1, 0});
            vertices.push_back({left, 1, 0});
        }
        return vertices;
    }

    /// Four lines one above the other, from the bottom; eight vertices. Each goes through the centres of a row.
    static std::vector<Vector3<float>> fourLines()
    {
        std::vector<Vector3<float>> vertices;
        for (const int row : {2, 6, 10, 14}) {
            const float y = (static_cast<float>(row) + 0.5f) / 8.0f - 1.0f;
            vertices.push_back({-1, y, 0});
            vertices.push_back({1, y, 0});
        }
        return vertices;
    }

    static std::vector<Vector3<float>> squareCorners() { return {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}}; }

    /// '#' for each of the four triangles that appeared.
    std::string triangles(VertexBuffer* buffer, int first = 0, int count = -1)
    {
        startDrawing();
        buffer->drawTriangles(first, count);
        std::string lit;
        for (const int x : {0, 4, 8, 12}) lit += pixelAt(x, 15) == red ? '#' : '.';
        return lit;
    }

    /// '#' for each of the four lines that appeared.
    std::string lines(VertexBuffer* buffer, int first = 0, int count = -1)
    {
        startDrawing();
        buffer->drawLines(first, count);
        std::string lit;
        for (const int row : {2, 6, 10, 14}) lit += pixelAt(8, size - 1 - row) == red ? '#' : '.';
        return lit;
    }

    /// '#' for the sides bottom, right, top, left of the viewport that a fan covered.
    std::string sides(VertexBuffer* buffer, int first = 0, int count = -1)
    {
        startDrawing();
        buffer->drawTriangleFan(first, count);
        std::string lit;
        for (const Vector2<int> place : {Vector2<int>(8, 14), {14, 8}, {8, 1}, {1, 8}})
            lit += pixelAt(place.x, place.y) == red ? '#' : '.';
        return lit;
    }

    void startDrawing()
    {
        device->clear(true, false, false);
        usePlainProgram(colorOf(red));
    }
};

TEST_F(OpenGLDraw, trianglesAreDrawnByDefaultAll)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    startDrawing();
    buffer->drawTriangles();
    EXPECT_EQ(litPixelsOfRow(15), "################");
    EXPECT_EQ(triangles(buffer), "####");
}

TEST_F(OpenGLDraw, trianglesOfARange)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    EXPECT_EQ(triangles(buffer, 0, 3), "#...");
    EXPECT_EQ(triangles(buffer, 3, 6), ".##.");
    EXPECT_EQ(triangles(buffer, 9, 3), "...#");
    EXPECT_EQ(triangles(buffer, 0, 5), "#...") << "an unfinished triangle is left out";
    EXPECT_EQ(triangles(buffer, 3, 0), "....");
}

TEST_F(OpenGLDraw, allFromALaterFirstEndsWithTheData)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    EXPECT_EQ(triangles(buffer, 3, -1), ".###");
    EXPECT_EQ(triangles(buffer, 9, -1), "...#");
    EXPECT_EQ(triangles(buffer, 12, -1), "....");
    EXPECT_EQ(triangles(buffer, 100, -1), "....");
}

TEST_F(OpenGLDraw, indexedTriangles)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    buffer->setIndices({9, 10, 11, 0, 1, 2});
    EXPECT_EQ(triangles(buffer), "#..#");
    EXPECT_EQ(triangles(buffer, 0, -1), "#..#");
    EXPECT_EQ(triangles(buffer, 3, 3), "#...") << "the second triangle of the index list";
    EXPECT_EQ(triangles(buffer, 0, 3), "...#");
    EXPECT_EQ(triangles(buffer, 3, -1), "#...");
    EXPECT_EQ(triangles(buffer, 6, -1), "....");
}

TEST_F(OpenGLDraw, replacedIndicesAreUsed)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    buffer->setIndices({0, 1, 2});
    EXPECT_EQ(triangles(buffer), "#...");
    buffer->setIndices({3, 4, 5, 6, 7, 8});
    EXPECT_EQ(triangles(buffer), ".##.");
}

TEST_F(OpenGLDraw, emptyIndicesDrawNothing)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    buffer->setIndices({});
    EXPECT_EQ(triangles(buffer), "....");
    EXPECT_EQ(lines(buffer), "....");
    EXPECT_EQ(sides(buffer), "....");
    buffer->setIndices({0, 1, 2});
    EXPECT_EQ(triangles(buffer), "#...");
    buffer->setIndices({});
    EXPECT_EQ(triangles(buffer), "....");
}

TEST_F(OpenGLDraw, linesArePairsOfVertices)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourLines());
    EXPECT_EQ(lines(buffer), "####");
    startDrawing();
    buffer->drawLines();
    EXPECT_EQ(pixelAt(8, size - 1 - 4), black) << "nothing joins one line to the next";
    EXPECT_EQ(pixelAt(0, size - 1 - 4), black);
    EXPECT_EQ(lines(buffer, 2, 4), ".##.");
    EXPECT_EQ(lines(buffer, 0, 2), "#...");
    EXPECT_EQ(lines(buffer, 2, -1), ".###");
    EXPECT_EQ(lines(buffer, 0, 3), "#...");
}

TEST_F(OpenGLDraw, indexedLines)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourLines());
    buffer->setIndices({6, 7, 0, 1});
    EXPECT_EQ(lines(buffer), "#..#");
    EXPECT_EQ(lines(buffer, 2, 2), "#...");
    EXPECT_EQ(lines(buffer, 2, -1), "#...");
}

TEST_F(OpenGLDraw, fanTurnsAroundItsFirstVertex)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, squareCorners());
    EXPECT_EQ(sides(buffer), "####");
    startDrawing();
    buffer->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
    EXPECT_EQ(sides(buffer, 0, 3), "##..");
    EXPECT_EQ(sides(buffer, 1, 3), ".##.");
    EXPECT_EQ(sides(buffer, 1, -1), ".##.");
    EXPECT_EQ(sides(buffer, 0, 2), "....");
}

TEST_F(OpenGLDraw, indexedFan)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, squareCorners());
    buffer->setIndices({0, 2, 3, 1, 2, 3});
    EXPECT_EQ(sides(buffer, 0, 3), "..##");
    EXPECT_EQ(sides(buffer, 3, 3), ".##.");
    EXPECT_EQ(sides(buffer, 3, -1), ".##.");
    buffer->setIndices({0, 1, 2, 3});
    EXPECT_EQ(sides(buffer), "####");
}

TEST_F(OpenGLDraw, newBufferDrawsNothing)
{
    VertexBuffer* buffer = makeBuffer();
    EXPECT_EQ(triangles(buffer), "....");
    EXPECT_EQ(lines(buffer), "....");
    EXPECT_EQ(sides(buffer), "....");
}

TEST_F(OpenGLDraw, vertexCountComesFromAListOfPositionsToo)
{
    const std::vector<Vector3<float>> vertices = fourTriangles();
    VertexBuffer* buffer = makeBuffer(true);
    buffer->setAttributeFrom(0, std::list<Vector3<float>>(vertices.begin(), vertices.end()));
    EXPECT_EQ(triangles(buffer), "####");
}

TEST_F(OpenGLDraw, positionsOfTwoComponentsLeaveTheVertexCountAtZero)
{
    const std::vector<Vector2<float>> corner = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (const bool fromList : {false, true}) {
        VertexBuffer* buffer = makeBuffer();
        if (fromList)
            buffer->setAttributeFrom(0, std::list<Vector2<float>>(corner.begin(), corner.end()));
        else
            buffer->setAttribute(0, corner);
        EXPECT_EQ(sides(buffer, 0, -1), "....");
        EXPECT_EQ(sides(buffer, 0, 4), "####") << "an explicit count draws";
        buffer->setIndices({0, 1, 2});
        EXPECT_EQ(sides(buffer, 0, -1), "##..") << "and so do indices";
    }
}

TEST_F(OpenGLDraw, positionsOfFourComponentsLeaveTheVertexCountAtZero)
{
    const std::vector<Vector4<float>> corner = {{-1, -1, 0, 1}, {1, -1, 0, 1}, {1, 1, 0, 1}, {-1, 1, 0, 1}};
    for (const bool fromList : {false, true}) {
        VertexBuffer* buffer = makeBuffer();
        if (fromList)
            buffer->setAttributeFrom(0, std::list<Vector4<float>>(corner.begin(), corner.end()));
        else
            buffer->setAttribute(0, corner);
        EXPECT_EQ(sides(buffer, 0, -1), "....");
        EXPECT_EQ(sides(buffer, 0, 4), "####");
    }
}

TEST_F(OpenGLDraw, otherLocationsLeaveTheVertexCount)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    buffer->setAttribute(VertexAttribute::Normal, std::vector<Vector3<float>>(3));
    buffer->setAttributeFrom(VertexAttribute::Normal, std::list<Vector3<float>>(2));
    EXPECT_EQ(lines(buffer, 0, 0), "....");
    EXPECT_EQ(triangles(buffer, 9, -1), "...#") << "still twelve vertices";
}

TEST_F(OpenGLDraw, replacedPositionsSetTheVertexCountAnew)
{
    VertexBuffer* buffer = makeBuffer();
    std::vector<Vector3<float>> vertices = fourTriangles();
    buffer->setAttribute(0, std::vector<Vector3<float>>(vertices.begin(), vertices.begin() + 3));
    EXPECT_EQ(triangles(buffer), "#...");
    buffer->setAttribute(0, vertices);
    EXPECT_EQ(triangles(buffer), "####");
    buffer->setAttributeFrom(0, std::list<Vector3<float>>(vertices.begin() + 3, vertices.begin() + 9));
    EXPECT_EQ(triangles(buffer), ".##.");
    buffer->setAttribute(0, std::vector<Vector3<float>>());
    EXPECT_EQ(triangles(buffer), "....");
}

TEST_F(OpenGLDraw, positionsReplacedByAnotherSizeKeepTheOldVertexCount)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, std::vector<Vector3<float>>(3));
    buffer->setAttribute(0, std::vector<Vector2<float>>{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}});
    EXPECT_EQ(sides(buffer, 0, -1), "##..") << "three vertices as before, of the new data";
    buffer->setAttributeFrom(0, std::list<Vector4<float>>{{1, -1, 0, 1}, {1, 1, 0, 1}, {-1, 1, 0, 1}, {-1, -1, 0, 1}});
    EXPECT_EQ(sides(buffer, 0, -1), ".##.");
}

TEST_F(OpenGLDraw, positionsAtAnIgnoredLocationLeaveTheVertexCount)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, fourTriangles());
    buffer->setAttribute(16, std::vector<Vector3<float>>(3));
    buffer->setAttribute(-1, std::vector<Vector3<float>>(3));
    EXPECT_EQ(triangles(buffer), "####");
}

TEST_F(OpenGLDraw, twoBuffersKeepTheirIndicesApart)
{
    VertexBuffer* first = makeBuffer();
    first->setAttribute(0, fourTriangles());
    VertexBuffer* second = makeBuffer();
    second->setAttribute(0, fourTriangles());
    first->setIndices({0, 1, 2});
    second->setIndices({9, 10, 11});
    EXPECT_EQ(triangles(first), "#...");
    EXPECT_EQ(triangles(second), "...#");
    EXPECT_EQ(triangles(first), "#...");
}

TEST_F(OpenGLDraw, aNegativeStartDrawsNothing)
{
    VertexBuffer* buffer = device->createVertexBuffer(false);
    buffer->setAttribute(0, fourTriangles());
    EXPECT_EQ(triangles(buffer, -3), triangles(buffer, 0, 0));
    EXPECT_EQ(triangles(buffer, -3, 6), triangles(buffer, 0, 0));
    buffer->setIndices({0, 1, 2});
    EXPECT_EQ(triangles(buffer, -1, 3), triangles(buffer, 0, 0));
    device->destroyVertexBuffer(buffer);
}
