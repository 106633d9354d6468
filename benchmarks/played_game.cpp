#include "played_game.h"

#include "world.h"

#include <SDL.h>

#include <cmath>

namespace {

// As the renderer sees.
constexpr float verticalFieldOfView = 50.0f;
constexpr float nearDistance = 0.2f;

void holdKey(SDL_Keycode key)
{
    SDL_Event event = {};
    event.type = SDL_KEYDOWN;
    event.key.state = SDL_PRESSED;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

Vector2<float> getViewExtents()
{
    return calculateViewExtents(verticalFieldOfView, PlayedGame::windowSize);
}

} // namespace

PlayedGame::PlayedGame() : data(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""})
{
    presentation.getLayers().text = false; // as it is until somebody asks for the readings
    holdKey(SDLK_w);
    holdKey(SDLK_LSHIFT);
    controls.setMouseCaught(true);
    updateEngine();
    begin();
    while (steps.size() < frameCount) {
        steps.push_back({camera, stage.getWalker()});
        doFrame();
    }
    begin();
}

Scene PlayedGame::makeScene()
{
    Scene made = makeCourtyard();
    addWorld(made, application.getEngine(), data);
    return made;
}

void PlayedGame::begin()
{
    stage.clear();
    script.begin();
    camera.yaw = stage.takeTurn().value_or(0.0f);
    camera.pitch = 0;
    camera.position = stage.getWalker().getEye();
    frame = 0;
}

void PlayedGame::updateEngine()
{
    application.getEngine().update();
}

void PlayedGame::control()
{
    // To the left and to the right in turn.
    const auto motion = static_cast<int>(std::lround(8.0 * std::cos(static_cast<double>(frame) * 0.05)));
    controls.look(camera, {motion, 0}, getSeconds());
    velocity = controls.getVelocity(camera);
}

void PlayedGame::walk()
{
    stage.getWalker().move(stage.getObstacles(), velocity, controls.wantsToJump(), getSeconds());
}

void PlayedGame::tick()
{
    script.tick(getMilliseconds());
    if (const std::optional<float> turn = stage.takeTurn()) camera.yaw = *turn;
    camera.position = stage.getWalker().getEye();
}

void PlayedGame::show()
{
    stage.show();
}

void PlayedGame::listen()
{
    clock += getMilliseconds();
    sounds.update(camera, clock);
}

void PlayedGame::see()
{
    seeWhatIsDrawn();
    seeLampViews();
}

void PlayedGame::seeView()
{
    visibility = seeWithin(scene, ViewVolume(camera, getViewExtents(), nearDistance));
}

void PlayedGame::seeWhatIsDrawn()
{
    seeView();
    const Vector2<float> extents = getViewExtents();
    occlusion.begin(camera, extents, nearDistance);
    occluders.addTo(occlusion, camera.position, nearDistance * length(Vector3<float>(extents.x, extents.y, 1)));
    hide(visibility, scene, occlusion);
}

void PlayedGame::seeLampViews()
{
    for (std::size_t i = 0; i < SceneRenderer::lampCount; ++i)
        if (renderer.isLampShining(i)) seeWithin(scene, renderer.getLamp(i).getVolume());
}

void PlayedGame::doFrame()
{
    updateEngine();
    control();
    walk();
    tick();
    show();
    listen();
    see();
    ++frame;
}

void PlayedGame::goTo(std::size_t wanted)
{
    frame = wanted % steps.size();
    camera = steps[frame].camera;
    stage.getWalker() = steps[frame].walker;
}

Frame PlayedGame::makeFrame() const
{
    Frame made;
    made.camera = camera;
    made.milliseconds = 16;
    made.texts = &stage.getTexts();
    return made;
}

double PlayedGame::countScriptBytes()
{
    begin();
    const std::int64_t first = script.countBytes();
    const std::int64_t second = script.countBytes(); // to ask takes some, too
    for (std::size_t i = 0; i < frameCount; ++i) {
        goTo(i);
        tick();
    }
    const std::int64_t last = script.countBytes();
    return static_cast<double>(last - second - (second - first)) / static_cast<double>(frameCount);
}
