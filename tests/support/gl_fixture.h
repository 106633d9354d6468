#pragma once

#include <xum/engine/engine.h>
#include <xum/engine/window.h>
#include <xum/render/image.h>
#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/render_target.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// Shown by failed expectations.
void PrintTo(const Pixel& pixel, std::ostream* stream);
void PrintTo(const TextureFormat& format, std::ostream* stream);

constexpr TextureFormat rgba8{TextureFormat::UnsignedByte, 4};
constexpr TextureFormat depth32{TextureFormat::Depth, 0};
constexpr TextureFormat depthStencil{TextureFormat::DepthStencil, 0};

constexpr Pixel black{0, 0, 0, 255};
constexpr Pixel white{255, 255, 255, 255};
constexpr Pixel red{255, 0, 0, 255};
constexpr Pixel green{0, 255, 0, 255};
constexpr Pixel blue{0, 0, 255, 255};

/// The same colours for uniforms.
Vector4<float> colorOf(const Pixel& pixel);

bool isNear(const Pixel& a, const Pixel& b, int tolerance = 1);

GLint getInteger(GLenum parameter);

/// Of the texture that is bound on the active unit.
GLint getTextureParameter(GLenum parameter);
GLint getTextureLevelParameter(GLenum parameter);

/// A test with an engine, a small window and an OpenGL device on it. What the make functions make is destroyed through
/// the device at the end, and a test that leaves an OpenGL error behind fails. Nothing here binds, deletes or sets
/// anything behind the device's back: it only reads from OpenGL directly.
class GLTest : public ::testing::Test {
protected:
    static constexpr int size = 16; // of the targets, in both directions

    void SetUp() override;
    void TearDown() override;

    /// Destroys all resources and the device and makes a new device on the window.
    void renewDevice();

    /// A target of size x size, bound, covered by the viewport and cleared.
    RenderTarget* makeTarget(const std::list<TextureFormat>& formats = {rgba8});

    Shader* makeShader(ShaderType type, const std::string& source);

    /// Attributes: position, textureCoordinate, normal, color at their usual locations.
    Program* makeProgram(const std::string& vertexSource, const std::string& fragmentSource,
                         const std::list<std::string>& outputs = {"outputColor"});

    /// A program with the vertex shader of the plain program.
    Program* makeProgramWithFragment(const std::string& fragmentSource,
                                     const std::list<std::string>& outputs = {"outputColor"});

    /// A program that gives every pixel this colour.
    Program* makeColorProgram(const Pixel& color);

    VertexBuffer* makeBuffer(bool dynamic = false);
    Texture* makeTexture(int width, int height, bool mipmaps = false);

    /// A 1 x 1 texture of this colour.
    Texture* makeColorTexture(const Pixel& color);

    /// A counter-clockwise fan over the whole viewport.
    VertexBuffer* makeSquare(float depth = 0.0f);

    /// Makes the plain program current: it moves positions by `offset` and gives every pixel `color`.
    void usePlainProgram(const Vector4<float>& color);

    /// Covers the whole viewport with that colour, at a depth in -1 (near) to 1. Uses the plain program.
    void drawSquare(const Vector4<float>& color, float depth = 0.0f);

    /// Of the bound read target, which is size pixels high; y counts from the top.
    Pixel pixelAt(int x, int y);
    float depthAt(int x, int y);
    int stencilAt(int x, int y);

    /// Of the size x size pixels of the bound read target.
    int countPixels(const Pixel& color);

    /// One character for each pixel of that row: '#' where it is not black.
    std::string litPixelsOfRow(int y);

    /// All values of level 0, four a pixel, the bottom row first. Binds the texture to unit 0.
    std::vector<float> floatsOf(Texture* texture);

    std::unique_ptr<Image> imageOf(Texture* texture, bool flip);

    /// Destroys at the end; the last one first.
    void atEnd(std::function<void()> destroy) { cleanUps.push_back(std::move(destroy)); }

    Engine* engine = nullptr;
    Window* window = nullptr;
    RenderDevice* device = nullptr;

private:
    void makeDevice();
    void destroyDevice();

    std::vector<std::function<void()>> cleanUps;
    Program* plainProgram = nullptr;
    VertexBuffer* square = nullptr;
};

/// The plain program's vertex shader.
extern const std::string plainVertexSource;

/// Passes textureCoordinate, normal and color on as they are.
extern const std::string attributeVertexSource;
