#include "play.h"

#include "failure.h"
#include "flight.h"
#include "frame_times.h"
#include "picture.h"
#include "title.h"
#include "view_switches.h"
#include "walker.h"

#include <xum/devices/input_device.h>
#include <xum/engine/window.h>
#include <xum/render/image.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <thread>

namespace {

constexpr float fadeInSeconds = 0.8f;

void applyOptions(Presentation& presentation, const Options& options)
{
    SceneRenderer& renderer = presentation.getRenderer();
    renderer.setCulling(options.culls);
    renderer.setOcclusionView(options.showsOcclusion);
    renderer.setLamp(options.hasLamp);
    presentation.getLayers() = options.layers;
}

/// A player's session.
class Session {
public:
    Session(Application& application, Presentation& presentation, Soundscape& sounds, const Options& options)
        : application(application), presentation(presentation), renderer(presentation.getRenderer()), sounds(sounds),
          input(application.getInput()), flight(input), obstacles(renderer.getScene()),
          camera(options.view.value_or(cameraOnFixedPath(0.0f))), switches(input), volume(options.volume),
          escape(input.getKeyFromName("Escape")), fullscreenKey(input.getKeyFromName("F11")),
          louderKey(input.getKeyFromName("PageUp")), quieterKey(input.getKeyFromName("PageDown"))
    {
        applyOptions(presentation, options);
        switches.setWireframe(options.startsAsWireframe);
        if (options.startsWalking) switchWalking();
    }

    void run()
    {
        Engine& engine = application.getEngine();
        uint64 lastTime = 0;
        while (engine.update() && !input.wasPressed(escape)) {
            if (!handleWindowEvents()) return;
            const uint64 time = engine.getTime();
            handleSwitches();
            const float elapsed = static_cast<float>(time - lastTime);
            if (lastTime > 0) frameTimes.add(elapsed);
            // A long pause, such as a window being dragged, must not throw the camera far away.
            moveCamera(std::min(elapsed / 1000.0f, 0.1f));
            lastTime = time;
            renderer.getLamp().setTime(static_cast<float>(time) / 1000.0f);
            sounds.update(camera, time);
            drawFrame(time);
        }
    }

private:
    /// False when the window is closed.
    bool handleWindowEvents()
    {
        for (EngineEvent* event = application.getEngine().getEvents(); event != nullptr; event = event->getNext()) {
            if (event->getType() == EngineEventType::WindowClosed) return false;
            if (event->getType() == EngineEventType::WindowMinimized) isMinimized = true;
            if (event->getType() == EngineEventType::WindowRestored) isMinimized = false;
        }
        return true;
    }

    void moveCamera(float seconds)
    {
        if (!walker) {
            flight.move(camera, seconds);
            return;
        }
        flight.look(camera, seconds);
        walker->move(obstacles, flight.getWalkingVelocity(camera), flight.wantsToJump(), seconds);
        camera.position = walker->getEye();
    }

    void switchWalking()
    {
        if (walker)
            walker.reset();
        else
            walker.emplace(camera.position - Vector3<float>(0, 0, Walker::eyeHeight));
    }

    void handleSwitches()
    {
        if (walkingKey.isThrown(input)) switchWalking();
        if (mouseKey.isThrown(input)) flight.setMouseCaught(!flight.isMouseCaught());
        if (fullscreenKey.isThrown(input)) {
            isFullscreen = !isFullscreen;
            application.getWindow().setFullscreen(isFullscreen);
        }
        switches.handle(presentation);
        if (wireframeButton.isThrown(input)) switches.switchWireframe();
        if (pictureKey.isThrown(input)) savePicture();
        handleVolumeKeys();
    }

    void handleVolumeKeys()
    {
        if (muteKey.isThrown(input)) volume.switchMute();
        if (louderKey.isThrown(input)) volume.change(Volume::step);
        if (quieterKey.isThrown(input)) volume.change(-Volume::step);
        sounds.setVolume(volume.get());
    }

    void savePicture()
    {
        try {
            const std::string fileName = findFreePictureName();
            const Vector2<int> size = application.getWindow().getSize();
            const auto picture = takePicture(application.getRenderDevice(), size, [&](RenderTarget* target) {
                presentation.draw(target, size, makeFrame(1));
            });
            writePicture(*picture, fileName);
            std::printf("wrote %s\n", fileName.c_str());
            std::fflush(stdout);
        } catch (const Failure& failure) {
            std::fprintf(stderr, "xum-game: %s\n", failure.what()); // no reason to stop playing
        }
    }

    void drawFrame(uint64 time)
    {
        Window& window = application.getWindow();
        if (isMinimized) { // nobody looks, and the swap may not wait for the screen
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            return;
        }
        const float brightness = std::min(static_cast<float>(time) / 1000.0f / fadeInSeconds, 1.0f);
        presentation.draw(nullptr, window.getSize(), makeFrame(brightness));
        application.getRenderDevice().swap(&window);
        if (title.countFrame(time)) window.setTitle(title.getTitle(renderer.getVisibility()));
    }

    Frame makeFrame(float brightness) const
    {
        return {camera, switches.getStyle(), frameTimes.getAverage(), brightness, nullptr, std::nullopt};
    }

    Application& application;
    Presentation& presentation;
    SceneRenderer& renderer;
    Soundscape& sounds;
    InputDevice& input;
    PilotedFlight flight;
    Obstacles obstacles;
    std::optional<Walker> walker; ///< none: the player flies
    Viewpoint camera;
    FrameTimes frameTimes;
    FrameRateTitle title = FrameRateTitle("xum-game");
    ViewSwitches switches;
    Volume volume;
    bool isFullscreen = false;
    bool isMinimized = false;
    int escape;
    Switch fullscreenKey;
    Switch walkingKey = Switch('g');
    Switch mouseKey = Switch('m');
    Switch pictureKey = Switch('p');
    Switch wireframeButton = Switch(KeyCode::JoystickButton3);
    Switch muteKey = Switch('n');
    Switch louderKey;
    Switch quieterKey;
};

} // namespace

void play(Application& application, Presentation& presentation, Soundscape& sounds, const Options& options)
{
    Session(application, presentation, sounds, options).run();
}

void runUnattended(Application& application, Presentation& presentation, Soundscape& sounds, const Options& options)
{
    constexpr float frameTime = 1.0f / 60.0f;
    applyOptions(presentation, options);
    Window& window = application.getWindow();
    RenderDevice& device = application.getRenderDevice();
    Frame shown;
    shown.style = options.startsAsWireframe ? DrawStyle::Edges : DrawStyle::Solids;
    shown.milliseconds = frameTime * 1000.0f; // as the path counts them, not as this machine needs
    for (int frame = 0; frame < options.frames; ++frame) {
        if (!application.getEngine().update()) throw Failure(ExitStatus::PictureNotWritten, "stopped before the end");
        const float seconds = static_cast<float>(frame) * frameTime;
        shown.camera = options.view.value_or(cameraOnFixedPath(seconds));
        presentation.getRenderer().getLamp().setTime(seconds);
        sounds.update(shown.camera, application.getEngine().getTime());
        presentation.draw(nullptr, window.getSize(), shown);
        device.swap(&window);
    }
    // As large as asked for, whatever the screen made of the window.
    const auto picture = takePicture(device, options.size,
                                     [&](RenderTarget* target) { presentation.draw(target, options.size, shown); });
    writePicture(*picture, options.pictureFile);
    std::printf("drew %d frames, wrote %s\n", options.frames, options.pictureFile.c_str());
}
