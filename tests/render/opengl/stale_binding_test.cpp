#include "gl_fixture.h"

// The device skips binds that it believes to be in place. These are the moments when it could be wrong.

using OpenGLTextureBindings = GLTest;
using OpenGLProgramBindings = GLTest;
using OpenGLBufferBindings = GLTest;

namespace {

GLint boundTexture()
{
    return getInteger(GL_TEXTURE_BINDING_2D);
}

GLint handleOf(Texture* texture)
{
    return static_cast<GLint>(texture->getHandle());
}

GLint magnification(RenderDevice* device, Texture* texture)
{
    device->bindTexture(7, texture);
    return getTextureParameter(GL_TEXTURE_MAG_FILTER);
}

} // namespace

TEST_F(OpenGLTextureBindings, creatingATextureTakesUnitZeroOver)
{
    Texture* a = makeColorTexture(red);
    device->bindTexture(0, a);
    makeTexture(1, 1);
    device->bindTexture(0, a);
    EXPECT_EQ(boundTexture(), handleOf(a));
}

TEST_F(OpenGLTextureBindings, creatingATargetTakesUnitZeroOver)
{
    Texture* a = makeColorTexture(red);
    device->bindTexture(0, a);
    makeTarget({rgba8, depth32});
    device->bindTexture(0, a);
    EXPECT_EQ(boundTexture(), handleOf(a));
}

TEST_F(OpenGLTextureBindings, operationsOfATextureTakeTheActiveUnitOver)
{
    Texture* a = makeColorTexture(red);
    Texture* b = makeColorTexture(green);
    const std::function<void()> operations[] = {
        [b] { b->update(&blue); },
        [b] { b->setClamp(false, false); },
        [b] { b->setFilter(TextureFilter::Linear); },
        [b] { delete b->toImage(false); },
    };
    for (const auto& operate : operations)
        for (const int unit : {0, 3}) {
            device->bindTexture(unit, a);
            operate();
            EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0 + unit);
            EXPECT_EQ(boundTexture(), handleOf(b));
            device->bindTexture(unit, a);
            EXPECT_EQ(boundTexture(), handleOf(a));
        }
}

TEST_F(OpenGLTextureBindings, skippedBindStillMakesTheUnitActive)
{
    Texture* a = makeColorTexture(red);
    Texture* b = makeColorTexture(green);
    device->bindTexture(0, a);
    device->bindTexture(1, b);
    device->bindTexture(0, a);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(boundTexture(), handleOf(a));
    a->setFilter(TextureFilter::Linear);
    EXPECT_EQ(magnification(device, a), GL_LINEAR);
    EXPECT_EQ(magnification(device, b), GL_NEAREST);
}

TEST_F(OpenGLTextureBindings, operationsReachTheirTextureWhateverIsBound)
{
    Texture* a = makeColorTexture(red);
    Texture* b = makeColorTexture(green);
    device->bindTexture(2, b);
    a->setFilter(TextureFilter::Linear);
    device->bindTexture(2, b);
    EXPECT_EQ(imageOf(a, false)->getPixel(0, 0), red);
    device->bindTexture(2, b);
    a->setClamp(false, false);
    EXPECT_EQ(magnification(device, a), GL_LINEAR);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_S), GL_REPEAT);
    EXPECT_EQ(magnification(device, b), GL_NEAREST);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
}

TEST_F(OpenGLTextureBindings, otherUnitsKeepWhatTheyHold)
{
    Texture* a = makeColorTexture(red);
    Texture* b = makeColorTexture(green);
    device->bindTexture(5, a);
    device->bindTexture(0, b);
    b->update(&blue);
    device->bindTexture(5, a);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE5);
    EXPECT_EQ(boundTexture(), handleOf(a));
}

TEST_F(OpenGLTextureBindings, destroyingATextureForgetsAllUnits)
{
    std::vector<Texture*> textures;
    for (int unit = 0; unit < 8; ++unit) {
        textures.push_back(makeColorTexture(red));
        device->bindTexture(unit, textures.back());
    }
    device->destroyTexture(device->createTexture(1, 1, false));
    for (int unit = 0; unit < 8; ++unit) {
        device->bindTexture(unit, textures[static_cast<std::size_t>(unit)]);
        EXPECT_EQ(boundTexture(), handleOf(textures[static_cast<std::size_t>(unit)])) << unit;
    }
}

TEST_F(OpenGLTextureBindings, textureAtTheAddressOfADestroyedOneIsBound)
{
    for (int i = 0; i < 5; ++i) {
        Texture* texture = device->createTexture(1, 1, false);
        for (int unit = 7; unit >= 0; --unit) {
            device->bindTexture(unit, texture);
            EXPECT_EQ(boundTexture(), handleOf(texture));
        }
        device->destroyTexture(texture);
    }
}

TEST_F(OpenGLTextureBindings, textureAtTheAddressOfADestroyedTargetsOneIsBound)
{
    for (int i = 0; i < 5; ++i) {
        RenderTarget* target = device->createRenderTarget(4, 4, {rgba8});
        for (int unit = 7; unit >= 0; --unit) {
            device->bindTexture(unit, target->getTexture(0));
            EXPECT_EQ(boundTexture(), handleOf(target->getTexture(0)));
        }
        device->destroyRenderTarget(target);
        Texture* texture = device->createTexture(4, 4, false);
        for (int unit = 7; unit >= 0; --unit) {
            device->bindTexture(unit, texture);
            EXPECT_EQ(boundTexture(), handleOf(texture));
        }
        device->destroyTexture(texture);
    }
}

TEST_F(OpenGLProgramBindings, creatingAProgramDoesNotReplaceTheCurrentOne)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    Program* current = makeColorProgram(red);
    device->useProgram(current);
    makeColorProgram(green);
    device->useProgram(current);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red);
}

TEST_F(OpenGLProgramBindings, uniformsAreSetInTheCurrentProgramAfterAnotherIsCreated)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    const char* source = "#version 150\nuniform vec4 color;\nout vec4 outputColor;\n"
                         "void main() { outputColor = color; }\n";
    Program* current = makeProgramWithFragment(source);
    device->useProgram(current);
    Program* other = makeProgramWithFragment(source);
    device->setUniform("color", colorOf(red));
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red) << "the current program is in use again";
    device->useProgram(other);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), (Pixel{0, 0, 0, 0})) << "untouched";
    device->useProgram(current);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red);
}

TEST_F(OpenGLProgramBindings, newProgramIsUsedWhenAsked)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeColorProgram(red));
    Program* created = makeColorProgram(green);
    device->useProgram(created);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), green);
}

TEST_F(OpenGLProgramBindings, newProgramDrawsBeforeAnyIsCurrent)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    makeColorProgram(green);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), green) << "OpenGL has it in use";
}

TEST_F(OpenGLProgramBindings, programThatFailedToLinkLeavesTheOneInUse)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    Program* current = makeColorProgram(red);
    device->useProgram(current);
    makeProgramWithFragment("#version 150\nvec4 nowhere();\nout vec4 outputColor;\n"
                            "void main() { outputColor = nowhere(); }\n");
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_OPERATION});
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red);
    device->clear(true, false, false);
    device->useProgram(current);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red);
}

TEST_F(OpenGLProgramBindings, destroyedCurrentProgramStaysInUseUntilTheNext)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    Shader* vertex = makeShader(ShaderType::Vertex, plainVertexSource);
    Shader* fragment = makeShader(ShaderType::Fragment, "#version 150\nuniform vec4 color;\nout vec4 outputColor;\n"
                                                        "void main() { outputColor = color; }\n");
    Program* program = device->createProgram({vertex, fragment}, {"position"}, {"outputColor"});
    device->useProgram(program);
    device->setUniform("color", colorOf(red));
    device->destroyProgram(program);
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red);
    device->setUniform("color", colorOf(blue)); // nothing is current
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), red);
    device->useProgram(makeColorProgram(green));
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), green);
}

TEST_F(OpenGLProgramBindings, destroyingAnotherProgramKeepsTheCurrentOne)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment("#version 150\nuniform vec4 color;\nout vec4 outputColor;\n"
                                               "void main() { outputColor = color; }\n"));
    Program* other = device->createProgram({makeShader(ShaderType::Vertex, plainVertexSource)}, {"position"}, {});
    device->destroyProgram(other);
    device->setUniform("color", colorOf(blue));
    square->drawTriangleFan();
    EXPECT_EQ(pixelAt(8, 8), blue);
}

TEST_F(OpenGLProgramBindings, programAtTheAddressOfADestroyedOneIsUsed)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    Shader* vertex = makeShader(ShaderType::Vertex, plainVertexSource);
    for (const char* color : {"1.0, 0.0, 0.0", "0.0, 1.0, 0.0", "0.0, 0.0, 1.0"}) {
        Shader* fragment = makeShader(ShaderType::Fragment, std::string("#version 150\nout vec4 outputColor;\n"
                                                                        "void main() { outputColor = vec4(") +
                                                                color + ", 1.0); }\n");
        Program* program = device->createProgram({vertex, fragment}, {"position"}, {"outputColor"});
        device->useProgram(program);
        square->drawTriangleFan();
        EXPECT_EQ(countPixels(color[0] == '1' ? red : color[5] == '1' ? green : blue), size * size);
        device->destroyProgram(program);
    }
}

TEST_F(OpenGLBufferBindings, bufferAfterADestroyedOneDraws)
{
    makeTarget();
    usePlainProgram(colorOf(red));
    for (int i = 0; i < 5; ++i) {
        device->clear(true, false, false);
        VertexBuffer* buffer = device->createVertexBuffer(false);
        buffer->setAttribute(0, std::vector<Vector3<float>>{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
        buffer->setIndices({0, 1, 2, 0, 2, 3});
        buffer->drawTriangles();
        EXPECT_EQ(countPixels(red), size * size);
        device->destroyVertexBuffer(buffer);
        EXPECT_EQ(getInteger(GL_VERTEX_ARRAY_BINDING), 0);
        EXPECT_EQ(getInteger(GL_ARRAY_BUFFER_BINDING), 0);
    }
}

TEST_F(OpenGLBufferBindings, olderBufferDrawsAfterTheBoundOneIsDestroyed)
{
    makeTarget();
    usePlainProgram(colorOf(red));
    VertexBuffer* square = makeSquare();
    device->destroyVertexBuffer(device->createVertexBuffer(false));
    square->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLBufferBindings, destroyingABufferThatIsNotBoundLeavesTheBoundOne)
{
    makeTarget();
    usePlainProgram(colorOf(red));
    VertexBuffer* other = device->createVertexBuffer(false);
    other->setAttribute(0, std::vector<Vector3<float>>(3));
    VertexBuffer* square = makeSquare();
    device->destroyVertexBuffer(other);
    square->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLBufferBindings, indicesAreSetInTheirOwnBufferWhateverIsBound)
{
    makeTarget();
    usePlainProgram(colorOf(red));
    VertexBuffer* first = makeSquare();
    VertexBuffer* second = makeSquare(); // bound from now on
    first->setIndices({0, 1, 2, 3});
    second->drawTriangleFan(0, 3);
    EXPECT_EQ(pixelAt(14, 8), red);
    EXPECT_EQ(pixelAt(1, 8), black) << "not indexed";
    device->clear(true, false, false);
    first->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
}
