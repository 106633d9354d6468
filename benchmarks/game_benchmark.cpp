#include "headless.h"
#include "null_render_device.h"
#include "played_game.h"

#include "failure.h"

#include <GL/glew.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

// A frame of the game in parts: the rules in their script, what the engine and the game do beside them, and drawing,
// once with OpenGL and once into a device that does nothing, so that the game's own part of it is left.

namespace {

std::unique_ptr<PlayedGame> game;

/// Makes what can be loaded with the window's device, but draws nothing.
class QuietDevice final : public NullRenderDevice {
public:
    explicit QuietDevice(RenderDevice& device) : device(device) {}

    RenderTarget* createRenderTarget(int width, int height, const std::list<TextureFormat>& formats) override
    {
        return device.createRenderTarget(width, height, formats);
    }
    void destroyRenderTarget(RenderTarget* target) override { device.destroyRenderTarget(target); }
    Texture* createTexture(int width, int height, bool hasMipmaps) override
    {
        return device.createTexture(width, height, hasMipmaps);
    }
    void destroyTexture(Texture* texture) override { device.destroyTexture(texture); }

private:
    RenderDevice& device;
};

/// A part by itself, frame by frame along the walk.
void measurePart(benchmark::State& state, void (PlayedGame::*part)())
{
    game->begin();
    game->tick(); // switches the watchers' lamps on
    std::size_t frame = 0;
    for (auto _ : state) {
        game->goTo(frame++);
        (game.get()->*part)();
    }
}

/// The rules go on from frame to frame: each walk is a hunt of its own.
void measureScript(benchmark::State& state)
{
    std::size_t frame = 0;
    for (auto _ : state) {
        if (frame % PlayedGame::frameCount == 0 || game->isOver()) {
            state.PauseTiming();
            game->begin();
            state.ResumeTiming();
        }
        game->goTo(frame++);
        game->tick();
    }
    state.counters["bytes"] = game->countScriptBytes();
}

void measureWalking(benchmark::State& state)
{
    game->begin();
    std::size_t frame = 0;
    for (auto _ : state) {
        game->goTo(frame++);
        game->control();
        game->walk();
    }
}

void measureFrame(benchmark::State& state)
{
    game->begin();
    for (auto _ : state) {
        if (game->countFramesSoFar() == PlayedGame::frameCount || game->isOver()) {
            state.PauseTiming();
            game->begin();
            state.ResumeTiming();
        }
        game->doFrame();
    }
}

// ---- drawing ----------------------------------------------------------------

constexpr std::size_t frameAtStart = 1;
constexpr std::size_t frameInCourtyard = 320;

void playUntil(std::size_t frame)
{
    game->begin();
    for (std::size_t i = 0; i < frame; ++i) game->doFrame();
}

double countTriangles(const Vector2<int>& size)
{
    GLuint query = 0;
    GLuint triangles = 0;
    glGenQueries(1, &query);
    glBeginQuery(GL_PRIMITIVES_GENERATED, query);
    game->presentation.draw(nullptr, size, game->makeFrame());
    glEndQuery(GL_PRIMITIVES_GENERATED);
    glGetQueryObjectuiv(query, GL_QUERY_RESULT, &triangles);
    glDeleteQueries(1, &query);
    return triangles;
}

void measureDrawing(benchmark::State& state, std::size_t frame, const Vector2<int>& size)
{
    playUntil(frame);
    const double triangles = countTriangles(size);
    glFinish();
    for (auto _ : state) {
        game->presentation.draw(nullptr, size, game->makeFrame());
        glFinish();
    }
    state.counters["draws"] = static_cast<double>(game->presentation.countDraws());
    state.counters["triangles"] = triangles;
}

/// As the real stage stands at the moment.
void copyStage(GameStage& stage)
{
    for (std::size_t i = 0; i < stage.countPlaces("item"); ++i) stage.addThing("ember", stage.getPlace("item", i));
    for (std::size_t i = 0; i < SceneRenderer::lampCount; ++i) {
        const SpotLight& light = game->renderer.getLamp(i).getLight();
        stage.addThing("watcher", light.position);
        stage.aimLamp(i, light.position, light.position + light.direction);
    }
    stage.show();
}

void measureQuietDrawing(benchmark::State& state, std::size_t frame)
{
    QuietDevice device(game->application.getRenderDevice());
    SceneRenderer renderer(device, game->assets, game->scene);
    Presentation presentation(device, game->assets, game->data, renderer, game->sounds);
    presentation.getLayers().text = false;
    GameStage stage(renderer, game->sounds, game->data);
    playUntil(frame);
    copyStage(stage);
    for (auto _ : state) presentation.draw(nullptr, PlayedGame::windowSize, game->makeFrame());
    state.counters["draws"] = static_cast<double>(presentation.countDraws());
}

// ---- the list ---------------------------------------------------------------

template <class Measure>
void add(const std::string& name, benchmark::TimeUnit unit, Measure measure)
{
    benchmark::RegisterBenchmark(name.c_str(), measure)->Unit(unit);
}

void addPart(const std::string& name, void (PlayedGame::*part)())
{
    add(name, benchmark::kMicrosecond, [part](benchmark::State& state) { measurePart(state, part); });
}

void addDrawing(const std::string& place, std::size_t frame)
{
    for (const Vector2<int>& size : {PlayedGame::windowSize, Vector2<int>(320, 200)})
        add("draw/" + place + "/" + std::to_string(size.x) + "x" + std::to_string(size.y), benchmark::kMillisecond,
            [frame, size](benchmark::State& state) { measureDrawing(state, frame, size); });
    add("draw/" + place + "/no_opengl", benchmark::kMicrosecond,
        [frame](benchmark::State& state) { measureQuietDrawing(state, frame); });
}

void addAll()
{
    add("script", benchmark::kMicrosecond, measureScript);
    addPart("engine_update", &PlayedGame::updateEngine);
    addPart("controls", &PlayedGame::control);
    add("controls_and_walking", benchmark::kMicrosecond, measureWalking);
    addPart("things_shown", &PlayedGame::show);
    addPart("sounds", &PlayedGame::listen);
    addPart("culling", &PlayedGame::seeView);
    addPart("culling_and_occlusion", &PlayedGame::seeWhatIsDrawn);
    addPart("culling_of_lamps", &PlayedGame::seeLampViews);
    add("script_and_engine", benchmark::kMicrosecond, measureFrame);
    addDrawing("start", frameAtStart);
    addDrawing("courtyard", frameInCourtyard);
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    try {
        game = std::make_unique<PlayedGame>();
        addAll();
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
        game.reset();
    } catch (const Failure& failure) {
        std::fprintf(stderr, "game_benchmark: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
