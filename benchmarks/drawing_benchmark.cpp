#include "headless.h"
#include "null_render_device.h"
#include "plain_drawing.h"
#include "plain_gl.h"

#include <xum/engine/engine.h>
#include <xum/engine/window.h>
#include <xum/render/debug_shapes.h>
#include <xum/render/image.h>
#include <xum/render/image_font.h>
#include <xum/render/program.h>
#include <xum/render/quad.h>
#include <xum/render/texture.h>

#include <GL/glew.h>
#include <SDL.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// Text, debug shapes and quads, drawn by the engine's helpers beside plain code that makes the same vertices: once into
// a small window through OpenGL, and once into a device that does nothing ("vertices"), so that the rest is left.

namespace {

constexpr int size = 64; // of the window: most of a long text lies outside, and pixels cost little
constexpr int longLength = 10000;
constexpr int shortLength = 100;
constexpr int shapesPerFrame = 100;

const Vector4<float> violet = {0.5f, 0.25f, 1, 0.75f};

const char* const vertexShaderText = "#version 150\n"
                                     "in vec3 position; in vec2 coordinate; in vec4 color; out vec2 t; out vec4 c;\n"
                                     "uniform vec4 tint; uniform vec4 place;\n"
                                     "void main() { t = coordinate; c = tint + color;\n"
                                     "gl_Position = vec4(position.xy * place.xy + place.zw, position.z, 1.0); }";

const Vector4<float> pixels = {2.0f / size, -2.0f / size, -1, 1}; // positions from the upper left
const Vector4<float> wholeScreen = {1, 1, 0, 0};                  // positions from -1 to 1

const char* const fragmentShaderText = "#version 150\n"
                                       "in vec2 t; in vec4 c; out vec4 o; uniform sampler2D font;\n"
                                       "void main() { o = texture(font, t) * c; }";

/// Letters, and a space now and then.
std::string makeText(int length)
{
    std::uint32_t seed = 12345;
    std::string text;
    for (int i = 0; i < length; ++i) {
        seed = seed * 1664525u + 1013904223u;
        text += seed >> 24 < 40 ? ' ' : static_cast<char>('!' + (seed >> 8) % 94);
    }
    return text;
}

const std::string longText = makeText(longLength);
const std::string shortText = longText.substr(0, shortLength);

std::unique_ptr<Image> makePicture()
{
    constexpr int width = plain::Font::pictureWidth;
    constexpr int height = plain::Font::pictureHeight;
    auto picture = std::make_unique<Image>(width, height, 0, nullptr, nullptr, true);
    for (int i = 0; i < width * height; ++i)
        picture->getPixels()[i] = {255, 255, 255, static_cast<unsigned char>(i % 3 == 0 ? 0 : 255)};
    return picture;
}

enum class Style { Plain, Colored, Outlined };

void makeVertices(plain::Vertices& outVertices, const plain::Font& font, Style style, int y, const std::string& text)
{
    switch (style) {
    case Style::Plain: return font.makeText(outVertices, 0, y, text);
    case Style::Colored: return font.makeColoredText(outVertices, 0, y, text, violet);
    case Style::Outlined: return font.makeOutlinedText(outVertices, 0, y, text, violet);
    }
}

void drawText(RenderDevice* device, ImageFont* font, Style style, int y, const std::string& text)
{
    switch (style) {
    case Style::Plain: return font->draw(device, 0, y, text, false, false);
    case Style::Colored: return font->drawColored(device, 0, y, text, violet, false, false);
    case Style::Outlined: return font->drawOutlined(device, 0, y, text, violet, false, false);
    }
}

/// The text as one, or in a hundred pieces over each other's lines.
void forEachPart(bool isOne, const std::function<void(int, const std::string&)>& act)
{
    if (isOne) return act(8, longText);
    for (int i = 0; i < longLength / shortLength; ++i) act(i % (size - 16), shortText);
}

// ---- plain OpenGL -----------------------------------------------------------

struct PlainScene {
    SDL_Window* window = nullptr;
    SDL_GLContext context = nullptr;
    GLuint program = 0;
    GLuint vertexArray = 0;
    GLuint coloredVertexArray = 0;
    GLuint buffers[3] = {};
    plain::Font font;
    plain::Vertices vertices;
    plain::Points points;

    void makeCurrent() const { SDL_GL_MakeCurrent(window, context); }
    void setPlace(const Vector4<float>& place) const
    {
        glUniform4f(glGetUniformLocation(program, "place"), place.x, place.y, place.z, place.w);
    }
};

PlainScene scene;

void makePlainScene(const Image& picture)
{
    scene.window = SDL_CreateWindow("plain", 0, 0, size, size, SDL_WINDOW_OPENGL);
    scene.context = SDL_GL_CreateContext(scene.window);
    scene.makeCurrent();
    scene.program = glCreateProgram();
    glAttachShader(scene.program, compilePlain(GL_VERTEX_SHADER, vertexShaderText));
    glAttachShader(scene.program, compilePlain(GL_FRAGMENT_SHADER, fragmentShaderText));
    glBindAttribLocation(scene.program, 0, "position");
    glBindAttribLocation(scene.program, 1, "coordinate");
    glBindAttribLocation(scene.program, 3, "color");
    glLinkProgram(scene.program);
    glUseProgram(scene.program);
    glUniform4f(glGetUniformLocation(scene.program, "tint"), 0.25f, 0.25f, 0.25f, 0.25f);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (const GLenum filter : {GLenum{GL_TEXTURE_MIN_FILTER}, GLenum{GL_TEXTURE_MAG_FILTER}})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    for (const GLenum wrap : {GLenum{GL_TEXTURE_WRAP_S}, GLenum{GL_TEXTURE_WRAP_T}})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, picture.getWidth(), picture.getHeight(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 picture.getPixels());
    glGenVertexArrays(1, &scene.vertexArray);
    glGenVertexArrays(1, &scene.coloredVertexArray);
    glGenBuffers(3, scene.buffers);
}

void drawPlainText(Style style, int y, const std::string& text)
{
    makeVertices(scene.vertices, scene.font, style, y, text);
    glBindVertexArray(style == Style::Plain ? scene.vertexArray : scene.coloredVertexArray);
    fillPlain(0, scene.buffers[0], scene.vertices.positions, GL_DYNAMIC_DRAW);
    fillPlain(1, scene.buffers[1], scene.vertices.coordinates, GL_DYNAMIC_DRAW);
    if (style != Style::Plain) fillPlain(3, scene.buffers[2], scene.vertices.colors, GL_DYNAMIC_DRAW);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(scene.vertices.positions.size()));
}

/// Through a buffer of its own.
void drawPlainPoints(GLenum mode, const plain::Points& points, GLenum usage)
{
    GLuint vertexArray = 0;
    GLuint buffer = 0;
    glGenVertexArrays(1, &vertexArray);
    glBindVertexArray(vertexArray);
    glGenBuffers(1, &buffer);
    fillPlain(0, buffer, points, usage);
    glDrawArrays(mode, 0, static_cast<GLsizei>(points.size()));
    glDeleteBuffers(1, &buffer);
    glDeleteVertexArrays(1, &vertexArray);
}

void drawPlainQuad(float x, float y, float width, float height)
{
    scene.points.assign({{x, y, 0}, {x + width, y, 0}, {x + width, y + height, 0}, {x, y + height, 0}});
    drawPlainPoints(GL_TRIANGLE_FAN, scene.points, GL_DYNAMIC_DRAW);
}

// ---- the engine -------------------------------------------------------------

struct EngineScene {
    Engine* engine = nullptr;
    Window* window = nullptr;
    RenderDevice* device = nullptr;
    Program* program = nullptr;
    ImageFont* font = nullptr;
    NullRenderDevice nullDevice;
    ImageFont* nullFont = nullptr; ///< of the null device

    void makeCurrent() const { device->makeCurrent(window); }
};

EngineScene ours;

Shader* compileOurs(ShaderType type, const char* text)
{
    return ours.device->createShader(type, "benchmark", {text, text + std::strlen(text) + 1});
}

ImageFont* loadFont(RenderDevice* device, const std::string& fileName)
{
    using F = plain::Font;
    return loadImageFont(device, fileName, F::cellWidth, F::cellHeight, F::columns, F::firstCharacter, false);
}

bool makeEngineScene(const Image& picture)
{
    ours.engine = initEngine(false);
    if (ours.engine == nullptr) return false;
    ours.window = ours.engine->createWindow("engine", size, size, false, false);
    ours.device = ours.engine->createRenderDevice(ours.window, "OpenGL");
    if (ours.device == nullptr) return false;
    Shader* vertexShader = compileOurs(ShaderType::Vertex, vertexShaderText);
    Shader* fragmentShader = compileOurs(ShaderType::Fragment, fragmentShaderText);
    ours.program = ours.device->createProgram({vertexShader, fragmentShader},
                                              {"position", "coordinate", "normal", "color"}, {"o"});
    ours.device->destroyShader(vertexShader);
    ours.device->destroyShader(fragmentShader);
    ours.device->useProgram(ours.program);
    ours.device->setUniform("tint", Vector4<float>(0.25f, 0.25f, 0.25f, 0.25f));
    const std::string fileName = "drawing_benchmark_font.bmp";
    if (!picture.writeToFile(fileName)) return false;
    ours.font = loadFont(ours.device, fileName);
    ours.nullFont = loadFont(&ours.nullDevice, fileName);
    std::remove(fileName.c_str());
    return ours.font != nullptr && ours.nullFont != nullptr;
}

void destroyEngineScene()
{
    ours.makeCurrent();
    destroyImageFont(&ours.nullDevice, ours.nullFont);
    destroyImageFont(ours.device, ours.font);
    ours.device->destroyProgram(ours.program);
    ours.engine->destroyRenderDevice(ours.device);
    ours.engine->destroyWindow(ours.window);
    shutdownEngine(ours.engine);
}

// ---- the same answers -------------------------------------------------------

template <class Vector>
bool areNear(const std::vector<Vector>& a, const std::vector<Vector>& b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](const Vector& p, const Vector& q) { return length(p - q) < 1e-4f; });
}

bool isSameText(Style style)
{
    NullVertexBuffer& drawn = ours.nullDevice.buffer;
    drawn.colors.clear();
    drawText(&ours.nullDevice, ours.nullFont, style, 8, longText);
    plain::Vertices expected;
    makeVertices(expected, scene.font, style, 8, longText);
    return areNear(drawn.positions, expected.positions) && areNear(drawn.coordinates, expected.coordinates) &&
           areNear(drawn.colors, expected.colors);
}

bool isSameShape(DebugObject& shape, const plain::Points& expected)
{
    shape.draw(&ours.nullDevice);
    return areNear(ours.nullDevice.buffer.positions, expected);
}

DebugSphere makeSphere(int segments)
{
    return {{32, 32, 0}, 20, segments};
}

const Vector3<float> boxMinimum = {10, 20, -0.5f};
const Vector3<float> boxMaximum = {50, 40, 0.5f};

/// Times of different work could not be compared.
bool isSameWork()
{
    ours.nullDevice.buffer.keeps = true;
    bool isSame = ours.nullFont->measure(longText, 1, 0) == scene.font.measure(longText, 0);
    for (const Style style : {Style::Plain, Style::Colored, Style::Outlined}) isSame = isSameText(style) && isSame;
    for (const int segments : {16, 64}) {
        DebugSphere sphere = makeSphere(segments);
        plain::makeSphere(scene.points, sphere.center, sphere.radius, segments);
        isSame = isSameShape(sphere, scene.points) && isSame;
    }
    DebugBox box(boxMinimum, boxMaximum);
    plain::makeBox(scene.points, boxMinimum, boxMaximum);
    isSame = isSameShape(box, scene.points) && isSame;
    ours.nullDevice.buffer.keeps = false;
    return isSame;
}

/// Of the window that was drawn into last.
double countLitPixels()
{
    std::vector<std::uint32_t> screen(size * size);
    glReadPixels(0, 0, size, size, GL_RGBA, GL_UNSIGNED_BYTE, screen.data());
    return static_cast<double>(
        std::count_if(screen.begin(), screen.end(), [](std::uint32_t pixel) { return (pixel & 0xFFFFFFu) != 0; }));
}

// ---- the list ---------------------------------------------------------------

using Work = std::function<void()>;

/// What is done without OpenGL.
void registerVertices(const std::string& name, const Work& plainWork, const Work& engineWork)
{
    const auto measure = [](const Work& work) {
        return [work](benchmark::State& state) {
            for (auto _ : state) {
                work();
                benchmark::ClobberMemory();
            }
        };
    };
    benchmark::RegisterBenchmark((name + "/plain").c_str(), measure(plainWork))->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((name + "/engine").c_str(), measure(engineWork))->Unit(benchmark::kMicrosecond);
}

/// What is done with it, in pixels unless told otherwise.
void registerDraws(const std::string& name, const Work& plainWork, const Work& engineWork,
                   const Vector4<float>& place = pixels)
{
    const auto drawPlain = [=](benchmark::State& state) {
        scene.makeCurrent();
        scene.setPlace(place);
        for (auto _ : state) {
            glClear(GL_COLOR_BUFFER_BIT);
            plainWork();
            glFinish();
        }
        state.counters["lit_pixels"] = countLitPixels();
    };
    const auto drawOurs = [=](benchmark::State& state) {
        ours.makeCurrent();
        ours.device->useProgram(ours.program);
        ours.device->setUniform("place", place);
        for (auto _ : state) {
            ours.device->clear(true, false, false);
            engineWork();
            glFinish();
        }
        state.counters["lit_pixels"] = countLitPixels();
    };
    benchmark::RegisterBenchmark((name + "/plain").c_str(), drawPlain)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((name + "/engine").c_str(), drawOurs)->Unit(benchmark::kMicrosecond);
}

void registerText(const std::string& name, Style style, bool isOne)
{
    registerVertices(
        "vertices_" + name,
        [=] {
            forEachPart(isOne, [=](int y, const std::string& text) {
                makeVertices(scene.vertices, scene.font, style, y, text);
                benchmark::DoNotOptimize(scene.vertices.positions.data());
            });
        },
        [=] {
            forEachPart(isOne, [=](int y, const std::string& text) {
                drawText(&ours.nullDevice, ours.nullFont, style, y, text);
            });
        });
    registerDraws(
        name, [=] { forEachPart(isOne, [=](int y, const std::string& text) { drawPlainText(style, y, text); }); },
        [=] {
            forEachPart(isOne,
                        [=](int y, const std::string& text) { drawText(ours.device, ours.font, style, y, text); });
        });
}

/// A hundred times over.
Work repeated(const Work& work)
{
    return [work] {
        for (int i = 0; i < shapesPerFrame; ++i) work();
    };
}

void registerShape(const std::string& name, const std::shared_ptr<DebugObject>& shape, const Work& makePoints)
{
    registerVertices("vertices_" + name, repeated([makePoints] {
                         makePoints();
                         benchmark::DoNotOptimize(scene.points.data());
                     }),
                     repeated([shape] { shape->draw(&ours.nullDevice); }));
    registerDraws(name, repeated([makePoints] {
                      makePoints();
                      drawPlainPoints(GL_LINES, scene.points, GL_STATIC_DRAW);
                  }),
                  repeated([shape] { shape->draw(ours.device); }));
}

void registerAll()
{
    registerVertices(
        "measure_10000", [] { benchmark::DoNotOptimize(scene.font.measure(longText, 0)); },
        [] { benchmark::DoNotOptimize(ours.nullFont->measure(longText, 1, 0)); });
    for (const bool isOne : {true, false}) {
        const std::string name = isOne ? "text_10000" : "text_100x100";
        registerText(name, Style::Plain, isOne);
        registerText(name + "_colored", Style::Colored, isOne);
        registerText(name + "_outlined", Style::Outlined, isOne);
    }
    for (const int segments : {16, 64}) {
        const DebugSphere sphere = makeSphere(segments);
        registerShape("sphere_" + std::to_string(segments) + "_x100", std::make_shared<DebugSphere>(sphere),
                      [=] { plain::makeSphere(scene.points, sphere.center, sphere.radius, segments); });
    }
    registerShape("box_x100", std::make_shared<DebugBox>(boxMinimum, boxMaximum),
                  [] { plain::makeBox(scene.points, boxMinimum, boxMaximum); });
    registerDraws("quad_x100", repeated([] { drawPlainQuad(8, 16, 4, 4); }),
                  repeated([] { drawQuad(ours.device, 8, 16, 4, 4); }));
    registerDraws("fullscreen_quad_x100", repeated([] { drawPlainQuad(-1, -1, 2, 2); }),
                  repeated([] { drawFullscreenQuad(ours.device); }), wholeScreen);
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    const std::unique_ptr<Image> picture = makePicture();
    if (!makeEngineScene(*picture)) {
        std::fprintf(stderr, "There is no OpenGL context, or no place for a picture: %s\n", SDL_GetError());
        return EXIT_FAILURE;
    }
    makePlainScene(*picture);
    if (!isSameWork()) {
        std::fprintf(stderr, "The engine and the plain code differ in what they draw.\n");
        return EXIT_FAILURE;
    }
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    destroyEngineScene();
}
