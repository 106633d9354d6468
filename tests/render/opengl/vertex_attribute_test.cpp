#include "gl_fixture.h"

// What the attributes of a vertex buffer hold and where they go. The draws stand in vertex_buffer_draw_test.cpp.

using OpenGLVertexAttribute = GLTest;

namespace {

GLint getAttribute(GLuint location, GLenum parameter)
{
    GLint value = -12345;
    glGetVertexAttribiv(location, parameter, &value);
    return value;
}

GLint getArrayBuffer(GLenum parameter)
{
    GLint value = -12345;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, parameter, &value);
    return value;
}

/// Of the attribute buffer that was filled last, which stays bound.
std::vector<float> contents()
{
    std::vector<float> values(static_cast<std::size_t>(getArrayBuffer(GL_BUFFER_SIZE)) / sizeof(float));
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(values.size() * sizeof(float)), values.data());
    return values;
}

const std::vector<Vector2<float>> twos = {{1, 2}, {3, 4}, {5, 6}};
const std::vector<Vector3<float>> threes = {{1, 2, 3}, {4, 5, 6}};
const std::vector<Vector4<float>> fours = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};

template <class Element>
std::list<Element> listOf(const std::vector<Element>& values)
{
    return {values.begin(), values.end()};
}

void expectAttribute(GLuint location, GLint components)
{
    EXPECT_EQ(getAttribute(location, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_TRUE);
    EXPECT_EQ(getAttribute(location, GL_VERTEX_ATTRIB_ARRAY_SIZE), components);
    EXPECT_EQ(getAttribute(location, GL_VERTEX_ATTRIB_ARRAY_TYPE), GL_FLOAT);
    EXPECT_EQ(getAttribute(location, GL_VERTEX_ATTRIB_ARRAY_NORMALIZED), GL_FALSE);
    EXPECT_EQ(getAttribute(location, GL_VERTEX_ATTRIB_ARRAY_STRIDE), 0);
    EXPECT_EQ(getAttribute(location, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING), getInteger(GL_ARRAY_BUFFER_BINDING));
    void* offset = &offset;
    glGetVertexAttribPointerv(location, GL_VERTEX_ATTRIB_ARRAY_POINTER, &offset);
    EXPECT_EQ(offset, nullptr);
}

} // namespace

TEST_F(OpenGLVertexAttribute, vectorsAreUploadedInOrder)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(1, twos);
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    expectAttribute(1, 2);
    buffer->setAttribute(0, threes);
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    expectAttribute(0, 3);
    buffer->setAttribute(3, fours);
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    expectAttribute(3, 4);
}

TEST_F(OpenGLVertexAttribute, listsAreUploadedInOrder)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttributeFrom(1, listOf(twos));
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    expectAttribute(1, 2);
    buffer->setAttributeFrom(0, listOf(threes));
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    expectAttribute(0, 3);
    buffer->setAttributeFrom(3, listOf(fours));
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    expectAttribute(3, 4);
}

TEST_F(OpenGLVertexAttribute, filledListsAreNotLeftMapped)
{
    makeBuffer()->setAttributeFrom(0, listOf(threes));
    EXPECT_EQ(getArrayBuffer(GL_BUFFER_MAPPED), GL_FALSE);
}

TEST_F(OpenGLVertexAttribute, emptyVectorAndEmptyListGiveAnEmptyAttribute)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, std::vector<Vector3<float>>());
    EXPECT_EQ(contents(), std::vector<float>());
    expectAttribute(0, 3);
    buffer->setAttributeFrom(1, std::list<Vector2<float>>());
    EXPECT_EQ(contents(), std::vector<float>());
    expectAttribute(1, 2);
    buffer->setAttributeFrom(3, std::list<Vector4<float>>());
    expectAttribute(3, 4);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "an empty store is not mapped";
}

TEST_F(OpenGLVertexAttribute, dynamicChoosesTheUsageHint)
{
    for (const bool dynamic : {false, true}) {
        const GLint usage = dynamic ? GL_DYNAMIC_DRAW : GL_STATIC_DRAW;
        VertexBuffer* buffer = makeBuffer(dynamic);
        buffer->setAttribute(0, threes);
        EXPECT_EQ(getArrayBuffer(GL_BUFFER_USAGE), usage);
        buffer->setAttributeFrom(1, listOf(twos));
        EXPECT_EQ(getArrayBuffer(GL_BUFFER_USAGE), usage);
        buffer->setIndices({0, 1});
        GLint indexUsage = -1;
        glGetBufferParameteriv(GL_ELEMENT_ARRAY_BUFFER, GL_BUFFER_USAGE, &indexUsage);
        EXPECT_EQ(indexUsage, usage);
    }
}

TEST_F(OpenGLVertexAttribute, indicesAre32BitNumbers)
{
    makeBuffer()->setIndices({7, 70000, 4000000000u});
    GLint bytes = -1;
    glGetBufferParameteriv(GL_ELEMENT_ARRAY_BUFFER, GL_BUFFER_SIZE, &bytes);
    ASSERT_EQ(bytes, 12);
    unsigned int values[3] = {};
    glGetBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, sizeof values, values);
    EXPECT_EQ(values[0], 7u);
    EXPECT_EQ(values[1], 70000u);
    EXPECT_EQ(values[2], 4000000000u);
}

TEST_F(OpenGLVertexAttribute, settingIndicesAgainReplacesThemInTheSameBuffer)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setIndices({1, 2, 3});
    const GLint name = getInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING);
    buffer->setIndices({4});
    EXPECT_EQ(getInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING), name);
    GLint bytes = -1;
    glGetBufferParameteriv(GL_ELEMENT_ARRAY_BUFFER, GL_BUFFER_SIZE, &bytes);
    EXPECT_EQ(bytes, 4);
}

TEST_F(OpenGLVertexAttribute, settingALocationAgainDeletesTheOldData)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, threes);
    const GLuint vectorName = static_cast<GLuint>(getAttribute(0, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING));
    buffer->setAttributeFrom(0, listOf(fours));
    const GLuint listName = static_cast<GLuint>(getAttribute(0, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING));
    EXPECT_NE(vectorName, listName);
    EXPECT_EQ(glIsBuffer(vectorName), GL_FALSE);
    expectAttribute(0, 4);
    buffer->setAttribute(0, twos);
    EXPECT_EQ(glIsBuffer(listName), GL_FALSE);
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    expectAttribute(0, 2);
}

TEST_F(OpenGLVertexAttribute, locationsMayBeSetInAnyOrder)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(15, twos);
    expectAttribute(15, 2);
    buffer->setAttribute(4, fours);
    expectAttribute(4, 4);
    EXPECT_EQ(getAttribute(15, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_TRUE);
    EXPECT_EQ(getAttribute(0, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_FALSE);
    EXPECT_EQ(getAttribute(14, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_FALSE);
}

TEST_F(OpenGLVertexAttribute, locationOutOfRangeIsIgnored)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, threes);
    const GLint bound = getInteger(GL_ARRAY_BUFFER_BINDING);
    for (const int location : {-1, 16, 1000000, -2147483647 - 1}) {
        buffer->setAttribute(location, twos);
        buffer->setAttribute(location, threes);
        buffer->setAttribute(location, fours);
        buffer->setAttributeFrom(location, listOf(twos));
        buffer->setAttributeFrom(location, listOf(threes));
        buffer->setAttributeFrom(location, listOf(fours));
    }
    EXPECT_EQ(getInteger(GL_ARRAY_BUFFER_BINDING), bound);
    EXPECT_EQ(contents(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TEST_F(OpenGLVertexAttribute, eachBufferHasItsOwn)
{
    VertexBuffer* first = makeBuffer();
    first->setAttribute(1, twos);
    makeBuffer();
    EXPECT_EQ(getAttribute(1, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_FALSE);
    first->setAttribute(0, threes); // binds it again
    EXPECT_EQ(getAttribute(1, GL_VERTEX_ATTRIB_ARRAY_ENABLED), GL_TRUE);
}

TEST_F(OpenGLVertexAttribute, destructionDeletesAllNames)
{
    VertexBuffer* buffer = device->createVertexBuffer(false);
    const GLuint vertexArray = static_cast<GLuint>(getInteger(GL_VERTEX_ARRAY_BINDING));
    ASSERT_NE(vertexArray, 0u);
    buffer->setAttribute(0, threes);
    buffer->setAttribute(5, threes);
    buffer->setIndices({0});
    const GLuint names[] = {static_cast<GLuint>(getAttribute(0, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING)),
                            static_cast<GLuint>(getAttribute(5, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING)),
                            static_cast<GLuint>(getInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING))};
    for (const GLuint name : names) EXPECT_EQ(glIsBuffer(name), GL_TRUE);
    device->destroyVertexBuffer(buffer);
    EXPECT_EQ(glIsVertexArray(vertexArray), GL_FALSE);
    for (const GLuint name : names) EXPECT_EQ(glIsBuffer(name), GL_FALSE);
}

TEST_F(OpenGLVertexAttribute, shadersSeeTextureCoordinateNormalAndColorAtTheirLocations)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    square->setAttribute(VertexAttribute::TextureCoordinate, std::vector<Vector2<float>>(4, {0.2f, 0.4f}));
    square->setAttribute(VertexAttribute::Normal, std::vector<Vector3<float>>(4, {0.6f, 0.8f, 1.0f}));
    square->setAttributeFrom(VertexAttribute::Color, std::list<Vector4<float>>(4, {1.0f, 0.8f, 0.6f, 0.4f}));
    const auto drawn = [&](const std::string& value) {
        device->useProgram(makeProgram(attributeVertexSource, "#version 150\n"
                                                              "in vec4 passedTextureCoordinate;\n"
                                                              "in vec4 passedNormal;\n"
                                                              "in vec4 passedColor;\n"
                                                              "out vec4 outputColor;\n"
                                                              "void main() { outputColor = " +
                                                                  value + "; }\n"));
        square->drawTriangleFan();
        return pixelAt(8, 8);
    };
    EXPECT_EQ(drawn("passedTextureCoordinate"), (Pixel{51, 102, 0, 255})) << "missing components are 0, 0, 1";
    EXPECT_EQ(drawn("passedNormal"), (Pixel{153, 204, 255, 255}));
    EXPECT_EQ(drawn("passedColor"), (Pixel{255, 204, 153, 102}));
}

TEST_F(OpenGLVertexAttribute, valuesAreInterpolatedBetweenVertices)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    square->setAttribute(VertexAttribute::Color,
                         std::vector<Vector4<float>>{{0, 0, 0, 1}, {1, 0, 0, 1}, {1, 0, 0, 1}, {0, 0, 0, 1}});
    device->useProgram(makeProgram(attributeVertexSource, "#version 150\nin vec4 passedColor;\nout vec4 outputColor;\n"
                                                          "void main() { outputColor = passedColor; }\n"));
    square->drawTriangleFan();
    EXPECT_NEAR(pixelAt(0, 8).red, 255 * 1 / 32, 1);
    EXPECT_NEAR(pixelAt(15, 8).red, 255 * 31 / 32, 1);
}
