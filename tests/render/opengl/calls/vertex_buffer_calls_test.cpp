#include "gl_fixture.h"

#include "gl_call_recorder.h"

using GLCall::describe;
using GLCall::recordedDuring;

using Calls = std::vector<std::string>;

class OpenGLVertexBufferCalls : public GLTest {
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (device == nullptr) return;
        makeTarget();
        usePlainProgram(colorOf(red));
    }

    static GLint boundVertexArray() { return getInteger(GL_VERTEX_ARRAY_BINDING); }

    static GLint bufferAt(GLuint location)
    {
        GLint name = -1;
        glGetVertexAttribiv(location, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &name);
        return name;
    }
};

TEST_F(OpenGLVertexBufferCalls, drawingTheSameBufferAgainBindsNothing)
{
    VertexBuffer* square = makeSquare();
    const GLint name = boundVertexArray();
    VertexBuffer* other = makeSquare();
    const GLint otherName = boundVertexArray();
    const std::string draw = describe("glDrawArrays", GL_TRIANGLE_FAN, 0, 4);

    EXPECT_EQ(recordedDuring([&] { square->drawTriangleFan(); }), (Calls{describe("glBindVertexArray", name), draw}));
    EXPECT_EQ(recordedDuring([&] { square->drawTriangleFan(); }), (Calls{draw}));
    EXPECT_EQ(recordedDuring([&] { other->drawTriangleFan(); }),
              (Calls{describe("glBindVertexArray", otherName), draw}));
    EXPECT_EQ(recordedDuring([&] { other->drawTriangleFan(); }), (Calls{draw}));
}

TEST_F(OpenGLVertexBufferCalls, newBufferIsBound)
{
    VertexBuffer* square = makeSquare();
    EXPECT_EQ(recordedDuring([&] { square->drawTriangleFan(); }),
              (Calls{describe("glDrawArrays", GL_TRIANGLE_FAN, 0, 4)}));
}

TEST_F(OpenGLVertexBufferCalls, drawsHandModeFirstAndCountOn)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, std::vector<Vector3<float>>(12));
    const struct {
        void (VertexBuffer::*draw)(int first, int count);
        GLenum mode;
    } rows[] = {{&VertexBuffer::drawLines, GL_LINES},
                {&VertexBuffer::drawTriangles, GL_TRIANGLES},
                {&VertexBuffer::drawTriangleFan, GL_TRIANGLE_FAN}};
    const struct {
        int first, count, drawn;
    } ranges[] = {{0, -1, 12}, {0, 5, 5}, {3, 6, 6}, {3, -1, 9}, {12, -1, 0}, {100, -1, 0}, {3, 100, 100}, {0, 0, 0}};
    for (const auto& row : rows)
        for (const auto& range : ranges)
            EXPECT_EQ(recordedDuring([&] { (buffer->*row.draw)(range.first, range.count); }),
                      (Calls{describe("glDrawArrays", row.mode, range.first, range.drawn)}))
                << "explicit counts are not changed";
}

TEST_F(OpenGLVertexBufferCalls, indexedDrawsStartAtFourBytesForEachIndex)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(0, std::vector<Vector3<float>>(3));
    buffer->setIndices(std::vector<unsigned int>(6));
    const auto drawn = [](GLenum mode, int count, int offset) {
        return Calls{describe("glDrawElements", mode, count, GL_UNSIGNED_INT, offset)};
    };
    EXPECT_EQ(recordedDuring([&] { buffer->drawLines(); }), drawn(GL_LINES, 6, 0));
    EXPECT_EQ(recordedDuring([&] { buffer->drawTriangles(); }), drawn(GL_TRIANGLES, 6, 0));
    EXPECT_EQ(recordedDuring([&] { buffer->drawTriangleFan(); }), drawn(GL_TRIANGLE_FAN, 6, 0));
    EXPECT_EQ(recordedDuring([&] { buffer->drawTriangles(3, 3); }), drawn(GL_TRIANGLES, 3, 12));
    EXPECT_EQ(recordedDuring([&] { buffer->drawTriangles(3, -1); }), drawn(GL_TRIANGLES, 3, 12));
    EXPECT_EQ(recordedDuring([&] { buffer->drawTriangles(6, -1); }), drawn(GL_TRIANGLES, 0, 24));
    buffer->setIndices({});
    EXPECT_EQ(recordedDuring([&] { buffer->drawTriangles(); }), drawn(GL_TRIANGLES, 0, 0));
}

TEST_F(OpenGLVertexBufferCalls, attributeIsUploadedIntoANewBufferBeforeTheOldOneIsDeleted)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(1, std::vector<Vector2<float>>(3));
    const GLint oldName = bufferAt(1);
    const Calls calls = recordedDuring([&] { buffer->setAttribute(1, std::vector<Vector4<float>>(5)); });
    const GLint newName = bufferAt(1);
    EXPECT_NE(newName, oldName);
    ASSERT_EQ(calls.size(), 6u);
    EXPECT_EQ(calls[0], describe("glGenBuffers", 1, GLCall::pointer));
    EXPECT_EQ(calls[1], describe("glBindBuffer", GL_ARRAY_BUFFER, newName));
    EXPECT_EQ(calls[2], describe("glDeleteBuffers", 1, GLCall::pointer));
    EXPECT_EQ(calls[3], describe("glBufferData", GL_ARRAY_BUFFER, 80, GLCall::pointer, GL_STATIC_DRAW));
    EXPECT_EQ(calls[4], describe("glEnableVertexAttribArray", 1));
    EXPECT_EQ(calls[5], describe("glVertexAttribPointer", 1, 4, GL_FLOAT, GL_FALSE, 0, GLCall::null));
    EXPECT_EQ(glIsBuffer(static_cast<GLuint>(oldName)), GL_FALSE);
}

TEST_F(OpenGLVertexBufferCalls, listIsWrittenIntoTheMappedBuffer)
{
    VertexBuffer* buffer = makeBuffer(true);
    const Calls calls = recordedDuring([&] { buffer->setAttributeFrom(2, std::list<Vector3<float>>(4)); });
    EXPECT_EQ(calls, (Calls{describe("glGenBuffers", 1, GLCall::pointer),
                            describe("glBindBuffer", GL_ARRAY_BUFFER, bufferAt(2)),
                            describe("glBufferData", GL_ARRAY_BUFFER, 48, GLCall::null, GL_DYNAMIC_DRAW),
                            describe("glMapBuffer", GL_ARRAY_BUFFER, GL_WRITE_ONLY),
                            describe("glUnmapBuffer", GL_ARRAY_BUFFER), describe("glEnableVertexAttribArray", 2),
                            describe("glVertexAttribPointer", 2, 3, GL_FLOAT, GL_FALSE, 0, GLCall::null)}));
}

TEST_F(OpenGLVertexBufferCalls, emptyListIsNotMapped)
{
    VertexBuffer* buffer = makeBuffer();
    EXPECT_EQ(recordedDuring([&] { buffer->setAttributeFrom(2, std::list<Vector3<float>>()); }, "glMapBuffer"),
              Calls());
}

TEST_F(OpenGLVertexBufferCalls, indicesKeepTheirBuffer)
{
    VertexBuffer* buffer = makeBuffer();
    Calls calls = recordedDuring([&] { buffer->setIndices({1, 2, 3}); });
    const GLint name = getInteger(GL_ELEMENT_ARRAY_BUFFER_BINDING);
    const std::string bind = describe("glBindBuffer", GL_ELEMENT_ARRAY_BUFFER, name);
    EXPECT_EQ(calls, (Calls{describe("glGenBuffers", 1, GLCall::pointer), bind,
                            describe("glBufferData", GL_ELEMENT_ARRAY_BUFFER, 12, GLCall::pointer, GL_STATIC_DRAW)}));
    calls = recordedDuring([&] { buffer->setIndices({1}); });
    EXPECT_EQ(calls,
              (Calls{bind, describe("glBufferData", GL_ELEMENT_ARRAY_BUFFER, 4, GLCall::pointer, GL_STATIC_DRAW)}));
}

TEST_F(OpenGLVertexBufferCalls, everyOperationBindsTheVertexArrayFirst)
{
    VertexBuffer* buffer = makeSquare();
    const std::string bind = describe("glBindVertexArray", boundVertexArray());
    const std::function<void()> operations[] = {
        [&] { buffer->setAttribute(1, std::vector<Vector2<float>>(4)); },
        [&] { buffer->setAttributeFrom(1, std::list<Vector2<float>>(4)); },
        [&] { buffer->drawLines(); },
        [&] {
            buffer->setIndices({0, 1, 2});
        },
        [&] { buffer->drawTriangles(); },
    };
    for (const auto& operate : operations) {
        makeBuffer(); // bound now
        const Calls calls = recordedDuring(operate);
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(calls[0], bind);
        EXPECT_EQ(recordedDuring(operate, "glBindVertexArray"), Calls()) << "bound already";
    }
}

TEST_F(OpenGLVertexBufferCalls, ignoredLocationsIssueNothing)
{
    VertexBuffer* buffer = makeBuffer();
    makeBuffer();
    EXPECT_EQ(recordedDuring([&] {
                  buffer->setAttribute(-1, std::vector<Vector2<float>>(4));
                  buffer->setAttribute(16, std::vector<Vector3<float>>(4));
                  buffer->setAttributeFrom(16, std::list<Vector4<float>>(4));
              }),
              Calls());
}

TEST_F(OpenGLVertexBufferCalls, destructionOfTheBoundBufferForgetsIt)
{
    VertexBuffer* square = makeSquare();
    const GLint name = boundVertexArray();
    VertexBuffer* destroyed = device->createVertexBuffer(false);
    device->destroyVertexBuffer(destroyed);
    EXPECT_EQ(recordedDuring([&] { square->drawTriangleFan(); }),
              (Calls{describe("glBindVertexArray", name), describe("glDrawArrays", GL_TRIANGLE_FAN, 0, 4)}));
}
