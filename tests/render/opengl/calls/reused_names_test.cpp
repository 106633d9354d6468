#include "gl_fixture.h"

#include <map>

// Drivers may give the name of a deleted vertex array or buffer out again at once. The one that the tests run on does
// not, so that the driver's functions are replaced by ones that do.

namespace {

/// The lowest free name stands for each object of the driver.
class Names {
public:
    GLuint add(GLuint object)
    {
        GLuint name = 1;
        while (objects.contains(name)) ++name;
        objects[name] = object;
        return name;
    }

    GLuint remove(GLuint name)
    {
        const GLuint object = objects.at(name);
        objects.erase(name);
        return object;
    }

    GLuint objectOf(GLuint name) const { return name == 0 ? 0 : objects.at(name); }

    void clear() { objects.clear(); }

private:
    std::map<GLuint, GLuint> objects;
};

Names vertexArrays, buffers;

PFNGLGENVERTEXARRAYSPROC generateVertexArrays;
PFNGLBINDVERTEXARRAYPROC bindVertexArray;
PFNGLDELETEVERTEXARRAYSPROC deleteVertexArrays;
PFNGLGENBUFFERSPROC generateBuffers;
PFNGLBINDBUFFERPROC bindBuffer;
PFNGLDELETEBUFFERSPROC deleteBuffers;

template <class Generate>
void generate(Names& names, Generate* generateObjects, GLsizei count, GLuint* result)
{
    generateObjects(count, result);
    for (GLsizei i = 0; i < count; ++i) result[i] = names.add(result[i]);
}

template <class Delete>
void remove(Names& names, Delete* deleteObjects, GLsizei count, const GLuint* removed)
{
    for (GLsizei i = 0; i < count; ++i) {
        const GLuint object = names.remove(removed[i]);
        deleteObjects(1, &object);
    }
}

class ReusedNames : public GLTest {
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (device == nullptr) return;
        generateVertexArrays = __glewGenVertexArrays;
        bindVertexArray = __glewBindVertexArray;
        deleteVertexArrays = __glewDeleteVertexArrays;
        generateBuffers = __glewGenBuffers;
        bindBuffer = __glewBindBuffer;
        deleteBuffers = __glewDeleteBuffers;
        __glewGenVertexArrays = [](GLsizei count, GLuint* names) {
            generate(vertexArrays, generateVertexArrays, count, names);
        };
        __glewBindVertexArray = [](GLuint name) { bindVertexArray(vertexArrays.objectOf(name)); };
        __glewDeleteVertexArrays = [](GLsizei count, const GLuint* names) {
            remove(vertexArrays, deleteVertexArrays, count, names);
        };
        __glewGenBuffers = [](GLsizei count, GLuint* names) { generate(buffers, generateBuffers, count, names); };
        __glewBindBuffer = [](GLenum target, GLuint name) { bindBuffer(target, buffers.objectOf(name)); };
        __glewDeleteBuffers = [](GLsizei count, const GLuint* names) { remove(buffers, deleteBuffers, count, names); };
        makeTarget();
    }

    void TearDown() override
    {
        GLTest::TearDown();
        if (generateVertexArrays == nullptr) return;
        __glewGenVertexArrays = generateVertexArrays;
        __glewBindVertexArray = bindVertexArray;
        __glewDeleteVertexArrays = deleteVertexArrays;
        __glewGenBuffers = generateBuffers;
        __glewBindBuffer = bindBuffer;
        __glewDeleteBuffers = deleteBuffers;
        vertexArrays.clear();
        buffers.clear();
    }

    static std::vector<Vector3<float>> corners() { return {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}}; }
};

} // namespace

TEST_F(ReusedNames, bufferThatIsGivenTheNameOfADestroyedOneDraws)
{
    for (int i = 0; i < 3; ++i) {
        device->clear(true, false, false);
        usePlainProgram(colorOf(red));
        VertexBuffer* buffer = device->createVertexBuffer(false);
        buffer->setAttribute(0, corners());
        buffer->setIndices({0, 1, 2, 3});
        buffer->drawTriangleFan();
        EXPECT_EQ(countPixels(red), size * size);
        device->destroyVertexBuffer(buffer);
    }
}

TEST_F(ReusedNames, listThatIsGivenTheNameOfADestroyedBufferIsWritten)
{
    usePlainProgram(colorOf(red));
    const std::vector<Vector3<float>> values = corners();
    for (int i = 0; i < 3; ++i) {
        device->clear(true, false, false);
        VertexBuffer* buffer = device->createVertexBuffer(false);
        buffer->setAttributeFrom(0, std::list<Vector3<float>>(values.begin(), values.end()));
        buffer->drawTriangleFan();
        EXPECT_EQ(countPixels(red), size * size);
        device->destroyVertexBuffer(buffer);
    }
}

TEST_F(ReusedNames, attributesMayBeReplacedAgainAndAgain)
{
    usePlainProgram(colorOf(red));
    VertexBuffer* buffer = makeBuffer();
    for (int i = 0; i < 5; ++i) {
        device->clear(true, false, false);
        buffer->setAttribute(0, corners());
        buffer->setAttribute(1, std::vector<Vector2<float>>(4));
        buffer->drawTriangleFan();
        EXPECT_EQ(countPixels(red), size * size);
    }
}

TEST_F(ReusedNames, onlyTheDestroyedBufferIsForgotten)
{
    usePlainProgram(colorOf(red));
    VertexBuffer* first = makeSquare();
    VertexBuffer* destroyed = device->createVertexBuffer(false);
    destroyed->setAttribute(0, std::vector<Vector3<float>>(3));
    first->setAttribute(1, std::vector<Vector2<float>>(4));
    device->destroyVertexBuffer(destroyed);
    VertexBuffer* next = makeSquare(); // has the names of the destroyed one
    for (VertexBuffer* buffer : {first, next, first}) {
        device->clear(true, false, false);
        buffer->drawTriangleFan();
        EXPECT_EQ(countPixels(red), size * size);
    }
}
