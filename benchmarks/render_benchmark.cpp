#include "headless.h"
#include "plain_gl.h"

#include <xum/engine/engine.h>
#include <xum/engine/window.h>
#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <GL/glew.h>
#include <SDL.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// Draws, uniforms, buffers and textures through the render device beside plain OpenGL in a context of its own: the same
// shaders, the same vertices, the same states.

namespace {

constexpr int drawCount = 10000;
constexpr int verticesPerDraw = 12;
constexpr int width = 640;
constexpr int height = 480;

const char* const vertexShaderText =
    "#version 150\n"
    "in vec3 position; in vec2 coordinate; out vec2 t; out vec4 c;\n"
    "uniform mat4 modelMatrix; uniform mat4 viewMatrix; uniform vec4 tint; uniform vec3 lightPosition;\n"
    "uniform float time;\n"
    "void main() { t = coordinate; c = tint + vec4(lightPosition * time, 0.0);\n"
    "gl_Position = vec4(position, 1.0) * modelMatrix * viewMatrix; }";

const char* const fragmentShaderText = "#version 150\n"
                                       "in vec2 t; in vec4 c; out vec4 o; uniform sampler2D diffuse;\n"
                                       "void main() { o = texture(diffuse, t) * c; }";

using Positions = std::vector<Vector3<float>>;
using Coordinates = std::vector<Vector2<float>>;

/// Four triangles, each about two pixels wide, anywhere on the screen.
std::vector<Positions> makeShapes()
{
    std::uint32_t seed = 12345;
    const auto random = [&seed](float limit) {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<float>(seed >> 8) / static_cast<float>(1 << 24) * limit;
    };
    std::vector<Positions> shapes(drawCount);
    for (Positions& shape : shapes) {
        const float x = random(1.8f) - 0.9f;
        const float y = random(1.8f) - 0.9f;
        for (int i = 0; i < verticesPerDraw; ++i) shape.emplace_back(x + random(0.006f), y + random(0.006f), 0.0f);
    }
    return shapes;
}

const Coordinates coordinates(verticesPerDraw);

Matrix4<float> movedMatrix(int draw)
{
    return Matrix4<float>::translation({static_cast<float>(draw % 8) * 0.001f, 0.0f, 0.0f});
}

// ---- plain OpenGL -----------------------------------------------------------

struct PlainScene {
    SDL_Window* window = nullptr;
    SDL_GLContext context = nullptr;
    GLuint program = 0;
    GLuint texture = 0;
    std::vector<GLuint> vertexArrays = std::vector<GLuint>(drawCount);
    std::vector<GLuint> indexedVertexArrays = std::vector<GLuint>(drawCount);

    void makeCurrent() const { SDL_GL_MakeCurrent(window, context); }
    GLint location(const char* name) const { return glGetUniformLocation(program, name); }
};

PlainScene plain;

template <class Element>
GLuint uploadPlain(GLuint location, const std::vector<Element>& values, GLenum usage)
{
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    fillPlain(location, buffer, values, usage);
    return buffer;
}

std::vector<unsigned int> ascendingIndices()
{
    std::vector<unsigned int> indices(verticesPerDraw);
    for (unsigned i = 0; i < verticesPerDraw; ++i) indices[i] = i;
    return indices;
}

void uploadPlainShape(GLuint vertexArray, const Positions& shape, bool isIndexed)
{
    glBindVertexArray(vertexArray);
    uploadPlain(0, shape, GL_STATIC_DRAW);
    uploadPlain(1, coordinates, GL_STATIC_DRAW);
    if (!isIndexed) return;
    const std::vector<unsigned int> indices = ascendingIndices();
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(unsigned int)),
                 indices.data(), GL_STATIC_DRAW);
}

void makePlainScene(const std::vector<Positions>& shapes)
{
    plain.window = SDL_CreateWindow("plain", 0, 0, width, height, SDL_WINDOW_OPENGL);
    plain.context = SDL_GL_CreateContext(plain.window);
    plain.makeCurrent();
    plain.program = glCreateProgram();
    glAttachShader(plain.program, compilePlain(GL_VERTEX_SHADER, vertexShaderText));
    glAttachShader(plain.program, compilePlain(GL_FRAGMENT_SHADER, fragmentShaderText));
    glBindAttribLocation(plain.program, 0, "position");
    glBindAttribLocation(plain.program, 1, "coordinate");
    glLinkProgram(plain.program);
    glUseProgram(plain.program);
    glGenTextures(1, &plain.texture);
    glBindTexture(GL_TEXTURE_2D, plain.texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    const std::vector<std::uint32_t> white(16, 0xFFFFFFFFu);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, white.data());
    glGenVertexArrays(drawCount, plain.vertexArrays.data());
    glGenVertexArrays(drawCount, plain.indexedVertexArrays.data());
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        uploadPlainShape(plain.vertexArrays[i], shapes[i], false);
        uploadPlainShape(plain.indexedVertexArrays[i], shapes[i], true);
    }
}

// ---- the engine -------------------------------------------------------------

struct EngineScene {
    Engine* engine = nullptr;
    Window* window = nullptr;
    RenderDevice* device = nullptr;
    Program* program = nullptr;
    Texture* texture = nullptr;
    std::vector<VertexBuffer*> buffers;
    std::vector<VertexBuffer*> indexedBuffers;

    void makeCurrent() const { device->makeCurrent(window); }
};

EngineScene ours;

Shader* compileOurs(ShaderType type, const char* text)
{
    return ours.device->createShader(type, "benchmark", {text, text + std::strlen(text) + 1});
}

VertexBuffer* makeBuffer(const Positions& shape, bool isIndexed)
{
    VertexBuffer* buffer = ours.device->createVertexBuffer(false);
    buffer->setAttribute(0, shape);
    buffer->setAttribute(1, coordinates);
    if (isIndexed) buffer->setIndices(ascendingIndices());
    return buffer;
}

bool makeEngineScene(const std::vector<Positions>& shapes)
{
    ours.engine = initEngine(false);
    if (ours.engine == nullptr) return false;
    ours.window = ours.engine->createWindow("engine", width, height, false, false);
    ours.device = ours.engine->createRenderDevice(ours.window, "OpenGL");
    if (ours.device == nullptr) return false;
    Shader* vertexShader = compileOurs(ShaderType::Vertex, vertexShaderText);
    Shader* fragmentShader = compileOurs(ShaderType::Fragment, fragmentShaderText);
    ours.program = ours.device->createProgram({vertexShader, fragmentShader}, {"position", "coordinate"}, {"o"});
    ours.device->destroyShader(vertexShader);
    ours.device->destroyShader(fragmentShader);
    ours.texture = ours.device->createTexture(4, 4, false);
    const std::vector<std::uint32_t> white(16, 0xFFFFFFFFu);
    ours.texture->update(white.data());
    for (const Positions& shape : shapes) {
        ours.buffers.push_back(makeBuffer(shape, false));
        ours.indexedBuffers.push_back(makeBuffer(shape, true));
    }
    return true;
}

void destroyEngineScene()
{
    ours.makeCurrent();
    for (VertexBuffer* buffer : ours.buffers) ours.device->destroyVertexBuffer(buffer);
    for (VertexBuffer* buffer : ours.indexedBuffers) ours.device->destroyVertexBuffer(buffer);
    ours.device->destroyTexture(ours.texture);
    ours.device->destroyProgram(ours.program);
    ours.engine->destroyRenderDevice(ours.device);
    ours.engine->destroyWindow(ours.window);
    shutdownEngine(ours.engine);
}

// ---- draws ------------------------------------------------------------------

enum class Uniforms { None, Model, Five };

void resetPlain()
{
    plain.makeCurrent();
    const Matrix4<float> identity;
    for (const char* name : {"modelMatrix", "viewMatrix"})
        glUniformMatrix4fv(plain.location(name), 1, GL_FALSE, identity.elements);
    glUniform4f(plain.location("tint"), 1.0f, 1.0f, 1.0f, 1.0f);
    glUniform3f(plain.location("lightPosition"), 0.0f, 0.0f, 0.0f);
    glUniform1f(plain.location("time"), 0.0f);
    glUniform1i(plain.location("diffuse"), 0);
}

void resetOurs()
{
    ours.makeCurrent();
    ours.device->useProgram(ours.program);
    ours.device->bindTexture(0, ours.texture);
    ours.device->setUniform("modelMatrix", Matrix4<float>())
        .setUniform("viewMatrix", Matrix4<float>())
        .setUniform("tint", Vector4<float>(1.0f, 1.0f, 1.0f, 1.0f))
        .setUniform("lightPosition", Vector3<float>())
        .setUniform("time", 0.0f)
        .setUniform("diffuse", 0);
}

/// Two pictures that differ would not cost the same.
std::size_t countLitPixels()
{
    std::vector<std::uint32_t> screen(width * height);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, screen.data());
    return static_cast<std::size_t>(
        std::count_if(screen.begin(), screen.end(), [](std::uint32_t pixel) { return (pixel & 0xFFFFFFu) != 0; }));
}

void setPlainUniforms(Uniforms uniforms, int draw)
{
    if (uniforms == Uniforms::None) return;
    const Matrix4<float> matrix = movedMatrix(draw);
    const float offset = matrix(0, 3);
    glUniformMatrix4fv(plain.location("modelMatrix"), 1, GL_FALSE, matrix.elements);
    if (uniforms == Uniforms::Model) return;
    glUniformMatrix4fv(plain.location("viewMatrix"), 1, GL_FALSE, matrix.elements);
    glUniform4f(plain.location("tint"), 1.0f, 1.0f, 1.0f, offset);
    glUniform3f(plain.location("lightPosition"), 1.0f, 1.0f, offset);
    glUniform1f(plain.location("time"), offset);
}

void setOurUniforms(Uniforms uniforms, int draw)
{
    if (uniforms == Uniforms::None) return;
    const Matrix4<float> matrix = movedMatrix(draw);
    const float offset = matrix(0, 3);
    ours.device->setUniform("modelMatrix", matrix);
    if (uniforms == Uniforms::Model) return;
    ours.device->setUniform("viewMatrix", matrix)
        .setUniform("tint", Vector4<float>(1.0f, 1.0f, 1.0f, offset))
        .setUniform("lightPosition", Vector3<float>(1.0f, 1.0f, offset))
        .setUniform("time", offset);
}

void drawPlain(benchmark::State& state, Uniforms uniforms, bool isIndexed)
{
    resetPlain();
    const std::vector<GLuint>& vertexArrays = isIndexed ? plain.indexedVertexArrays : plain.vertexArrays;
    for (auto _ : state) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        for (int i = 0; i < drawCount; ++i) {
            setPlainUniforms(uniforms, i);
            glBindVertexArray(vertexArrays[static_cast<std::size_t>(i)]);
            if (isIndexed)
                glDrawElements(GL_TRIANGLES, verticesPerDraw, GL_UNSIGNED_INT, nullptr);
            else
                glDrawArrays(GL_TRIANGLES, 0, verticesPerDraw);
        }
        glFinish();
    }
    state.counters["lit_pixels"] = static_cast<double>(countLitPixels());
}

void drawOurs(benchmark::State& state, Uniforms uniforms, bool isIndexed)
{
    resetOurs();
    const std::vector<VertexBuffer*>& buffers = isIndexed ? ours.indexedBuffers : ours.buffers;
    for (auto _ : state) {
        ours.device->clear(true, true, false);
        for (int i = 0; i < drawCount; ++i) {
            setOurUniforms(uniforms, i);
            buffers[static_cast<std::size_t>(i)]->drawTriangles();
        }
        glFinish();
    }
    state.counters["lit_pixels"] = static_cast<double>(countLitPixels());
}

void drawSamePlain(benchmark::State& state)
{
    resetPlain();
    glBindVertexArray(plain.vertexArrays[0]);
    for (auto _ : state) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        for (int i = 0; i < drawCount; ++i) glDrawArrays(GL_TRIANGLES, 0, verticesPerDraw);
        glFinish();
    }
}

void drawSameOurs(benchmark::State& state)
{
    resetOurs();
    for (auto _ : state) {
        ours.device->clear(true, true, false);
        for (int i = 0; i < drawCount; ++i) ours.buffers[0]->drawTriangles();
        glFinish();
    }
}

// ---- uniforms ---------------------------------------------------------------

void matrixUniformPlain(benchmark::State& state)
{
    resetPlain();
    Matrix4<float> matrix;
    for (auto _ : state) {
        matrix(0, 3) += 1.0f;
        glUniformMatrix4fv(plain.location("modelMatrix"), 1, GL_FALSE, matrix.elements);
    }
}

void matrixUniformOurs(benchmark::State& state)
{
    resetOurs();
    Matrix4<float> matrix;
    for (auto _ : state) {
        matrix(0, 3) += 1.0f;
        ours.device->setUniform("modelMatrix", matrix);
    }
}

void floatUniformPlain(benchmark::State& state)
{
    resetPlain();
    float value = 0.0f;
    for (auto _ : state) glUniform1f(plain.location("time"), value += 1.0f);
}

void floatUniformOurs(benchmark::State& state)
{
    resetOurs();
    float value = 0.0f;
    for (auto _ : state) ours.device->setUniform("time", value += 1.0f);
}

// ---- buffers and textures ---------------------------------------------------

const Positions quad = {{0.0f, 0.0f, 0.0f},     {0.001f, 0.0f, 0.0f}, {0.001f, 0.001f, 0.0f},
                        {0.001f, 0.001f, 0.0f}, {0.0f, 0.001f, 0.0f}, {0.0f, 0.0f, 0.0f}};
constexpr int quadsPerFrame = 100;

void temporaryQuadPlain(benchmark::State& state)
{
    resetPlain();
    for (auto _ : state) {
        glClear(GL_COLOR_BUFFER_BIT);
        for (int i = 0; i < quadsPerFrame; ++i) {
            GLuint vertexArray = 0;
            glGenVertexArrays(1, &vertexArray);
            glBindVertexArray(vertexArray);
            const GLuint buffer = uploadPlain(0, quad, GL_DYNAMIC_DRAW);
            glDrawArrays(GL_TRIANGLE_FAN, 0, static_cast<GLsizei>(quad.size()));
            glDeleteBuffers(1, &buffer);
            glDeleteVertexArrays(1, &vertexArray);
        }
        glFinish();
    }
}

void temporaryQuadOurs(benchmark::State& state)
{
    resetOurs();
    for (auto _ : state) {
        ours.device->clear(true, false, false);
        for (int i = 0; i < quadsPerFrame; ++i) {
            VertexBuffer* buffer = ours.device->createVertexBuffer(true);
            buffer->setAttribute(0, quad);
            buffer->drawTriangleFan();
            ours.device->destroyVertexBuffer(buffer);
        }
        glFinish();
    }
}

constexpr int textureSize = 1024;
const std::vector<std::uint32_t> texturePixels(textureSize* textureSize, 0x80FF40FFu);

void updateTexturePlain(benchmark::State& state, bool mipmaps)
{
    plain.makeCurrent();
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (auto _ : state) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, textureSize, textureSize, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     texturePixels.data());
        if (mipmaps) glGenerateMipmap(GL_TEXTURE_2D);
        glFinish();
    }
    glDeleteTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, plain.texture);
}

void updateTextureOurs(benchmark::State& state, bool mipmaps)
{
    ours.makeCurrent();
    Texture* texture = ours.device->createTexture(textureSize, textureSize, mipmaps);
    for (auto _ : state) {
        texture->update(texturePixels.data());
        glFinish();
    }
    ours.device->destroyTexture(texture);
}

// ---- the list ---------------------------------------------------------------

template <class Plain, class Ours>
void registerPair(const std::string& name, benchmark::TimeUnit unit, Plain plainCalls, Ours engineCalls)
{
    benchmark::RegisterBenchmark((name + "/plain").c_str(), plainCalls)->Unit(unit);
    benchmark::RegisterBenchmark((name + "/engine").c_str(), engineCalls)->Unit(unit);
}

void registerDraws(const std::string& name, Uniforms uniforms, bool isIndexed)
{
    registerPair(
        name, benchmark::kMillisecond, [=](benchmark::State& state) { drawPlain(state, uniforms, isIndexed); },
        [=](benchmark::State& state) { drawOurs(state, uniforms, isIndexed); });
}

void registerTextureUpdate(const std::string& name, bool mipmaps)
{
    registerPair(
        name, benchmark::kMicrosecond, [=](benchmark::State& state) { updateTexturePlain(state, mipmaps); },
        [=](benchmark::State& state) { updateTextureOurs(state, mipmaps); });
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    const std::vector<Positions> shapes = makeShapes();
    if (!makeEngineScene(shapes)) {
        std::fprintf(stderr, "There is no OpenGL context: %s\n", SDL_GetError());
        return EXIT_FAILURE;
    }
    makePlainScene(shapes);

    registerDraws("draw_10000", Uniforms::None, false);
    registerDraws("draw_10000_matrix", Uniforms::Model, false);
    registerDraws("draw_10000_indexed_matrix", Uniforms::Model, true);
    registerDraws("draw_10000_five_uniforms", Uniforms::Five, false);
    registerPair("draw_10000_same_buffer", benchmark::kMillisecond, drawSamePlain, drawSameOurs);
    registerPair("uniform_matrix", benchmark::kNanosecond, matrixUniformPlain, matrixUniformOurs);
    registerPair("uniform_float", benchmark::kNanosecond, floatUniformPlain, floatUniformOurs);
    registerPair("temporary_quad_100", benchmark::kMicrosecond, temporaryQuadPlain, temporaryQuadOurs);
    registerTextureUpdate("texture_update_1024", false);
    registerTextureUpdate("texture_update_1024_mipmaps", true);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    destroyEngineScene();
}
