#include "gl_fixture.h"

#include "message_boxes.h"

#include <algorithm>
#include <cstdlib>

#ifndef _WIN32
// Mesa keeps memory of drivers that are unloaded before the report is made, which no suppression can name.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}
#endif

const std::string plainVertexSource = R"(#version 150
in vec3 position;
uniform vec3 offset;
void main() { gl_Position = vec4(position + offset, 1.0); }
)";

const std::string attributeVertexSource = R"(#version 150
in vec3 position;
in vec4 textureCoordinate;
in vec4 normal;
in vec4 color;
out vec4 passedTextureCoordinate;
out vec4 passedNormal;
out vec4 passedColor;
void main()
{
    passedTextureCoordinate = textureCoordinate;
    passedNormal = normal;
    passedColor = color;
    gl_Position = vec4(position, 1.0);
}
)";

void PrintTo(const Pixel& pixel, std::ostream* stream)
{
    *stream << '(' << int{pixel.red} << ", " << int{pixel.green} << ", " << int{pixel.blue} << ", " << int{pixel.alpha}
            << ')';
}

void PrintTo(const TextureFormat& format, std::ostream* stream)
{
    *stream << '{' << format.type << ", " << format.channels << '}';
}

Vector4<float> colorOf(const Pixel& pixel)
{
    const auto toFloat = [](unsigned char value) { return static_cast<float>(value) / 255.0f; };
    return {toFloat(pixel.red), toFloat(pixel.green), toFloat(pixel.blue), toFloat(pixel.alpha)};
}

bool isNear(const Pixel& a, const Pixel& b, int tolerance)
{
    return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
           std::abs(a.blue - b.blue) <= tolerance && std::abs(a.alpha - b.alpha) <= tolerance;
}

GLint getInteger(GLenum parameter)
{
    GLint value = -12345;
    glGetIntegerv(parameter, &value);
    return value;
}

GLint getTextureParameter(GLenum parameter)
{
    GLint value = -12345;
    glGetTexParameteriv(GL_TEXTURE_2D, parameter, &value);
    return value;
}

GLint getTextureLevelParameter(GLenum parameter)
{
    GLint value = -12345;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, parameter, &value);
    return value;
}

void GLTest::SetUp()
{
    shownMessageBoxes().clear();
    engine = initEngine(false);
    ASSERT_NE(engine, nullptr);
    window = engine->createWindow("Test", 64, 48, false, false);
    ASSERT_NE(window, nullptr);
    makeDevice();
}

void GLTest::TearDown()
{
    if (engine == nullptr) return;
    destroyDevice();
    engine->destroyWindow(window);
    shutdownEngine(engine);
}

void GLTest::renewDevice()
{
    destroyDevice();
    makeDevice();
}

void GLTest::makeDevice()
{
    device = engine->createRenderDevice(window, "OpenGL");
    ASSERT_NE(device, nullptr) << "no OpenGL context could be made";
    ASSERT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "left behind by the creation of the device";
}

void GLTest::destroyDevice()
{
    if (device == nullptr) return;
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "left behind by the test";
    for (; !cleanUps.empty(); cleanUps.pop_back()) cleanUps.back()();
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "left behind by the destruction of resources";
    engine->destroyRenderDevice(device);
    device = nullptr;
    plainProgram = nullptr;
    square = nullptr;
}

RenderTarget* GLTest::makeTarget(const std::list<TextureFormat>& formats)
{
    RenderTarget* target = device->createRenderTarget(size, size, formats);
    atEnd([this, target] { device->destroyRenderTarget(target); });
    device->setViewport(0, 0, size, size, size);
    device->clear(true, true, true);
    return target;
}

Shader* GLTest::makeShader(ShaderType type, const std::string& source)
{
    std::vector<char> text(source.begin(), source.end());
    text.push_back('\0');
    Shader* shader = device->createShader(type, "test shader", text);
    atEnd([this, shader] { device->destroyShader(shader); });
    return shader;
}

Program* GLTest::makeProgram(const std::string& vertexSource, const std::string& fragmentSource,
                             const std::list<std::string>& outputs)
{
    Program* program = device->createProgram(
        {makeShader(ShaderType::Vertex, vertexSource), makeShader(ShaderType::Fragment, fragmentSource)},
        {"position", "textureCoordinate", "normal", "color"}, outputs);
    atEnd([this, program] { device->destroyProgram(program); });
    return program;
}

Program* GLTest::makeProgramWithFragment(const std::string& fragmentSource, const std::list<std::string>& outputs)
{
    return makeProgram(plainVertexSource, fragmentSource, outputs);
}

Program* GLTest::makeColorProgram(const Pixel& color)
{
    const Vector4<float> value = colorOf(color);
    return makeProgramWithFragment("#version 150\nout vec4 outputColor;\nvoid main() { outputColor = vec4(" +
                                   std::to_string(value.x) + ", " + std::to_string(value.y) + ", " +
                                   std::to_string(value.z) + ", " + std::to_string(value.w) + "); }\n");
}

VertexBuffer* GLTest::makeBuffer(bool dynamic)
{
    VertexBuffer* buffer = device->createVertexBuffer(dynamic);
    atEnd([this, buffer] { device->destroyVertexBuffer(buffer); });
    return buffer;
}

Texture* GLTest::makeTexture(int width, int height, bool mipmaps)
{
    Texture* texture = device->createTexture(width, height, mipmaps);
    atEnd([this, texture] { device->destroyTexture(texture); });
    return texture;
}

Texture* GLTest::makeColorTexture(const Pixel& color)
{
    Texture* texture = makeTexture(1, 1);
    texture->update(&color);
    return texture;
}

VertexBuffer* GLTest::makeSquare(float depth)
{
    VertexBuffer* buffer = makeBuffer();
    buffer->setAttribute(VertexAttribute::Position,
                         std::vector<Vector3<float>>{{-1, -1, depth}, {1, -1, depth}, {1, 1, depth}, {-1, 1, depth}});
    return buffer;
}

void GLTest::usePlainProgram(const Vector4<float>& color)
{
    if (plainProgram == nullptr)
        plainProgram = makeProgramWithFragment(
            "#version 150\nuniform vec4 color;\nout vec4 outputColor;\nvoid main() { outputColor = color; }\n");
    device->useProgram(plainProgram);
    device->setUniform("color", color).setUniform("offset", Vector3<float>());
}

void GLTest::drawSquare(const Vector4<float>& color, float depth)
{
    usePlainProgram(color);
    device->setUniform("offset", Vector3<float>(0, 0, depth));
    if (square == nullptr) square = makeSquare();
    square->drawTriangleFan();
}

Pixel GLTest::pixelAt(int x, int y)
{
    Pixel pixel{1, 2, 3, 4};
    glReadPixels(x, size - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &pixel);
    return pixel;
}

float GLTest::depthAt(int x, int y)
{
    float depth = -1;
    glReadPixels(x, size - 1 - y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    return depth;
}

int GLTest::stencilAt(int x, int y)
{
    unsigned char stencil = 77;
    glReadPixels(x, size - 1 - y, 1, 1, GL_STENCIL_INDEX, GL_UNSIGNED_BYTE, &stencil);
    return stencil;
}

int GLTest::countPixels(const Pixel& color)
{
    std::vector<Pixel> pixels(size * size, Pixel{1, 2, 3, 4});
    glReadPixels(0, 0, size, size, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return static_cast<int>(std::count(pixels.begin(), pixels.end(), color));
}

std::string GLTest::litPixelsOfRow(int y)
{
    std::string row;
    for (int x = 0; x < size; ++x) row += pixelAt(x, y) == black ? '.' : '#';
    return row;
}

std::vector<float> GLTest::floatsOf(Texture* texture)
{
    device->bindTexture(0, texture);
    std::vector<float> values(static_cast<std::size_t>(texture->getWidth() * texture->getHeight()) * 4, -12345.0f);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, values.data());
    return values;
}

std::unique_ptr<Image> GLTest::imageOf(Texture* texture, bool flip)
{
    return std::unique_ptr<Image>(texture->toImage(flip));
}
