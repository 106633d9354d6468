#include "game_session.h"

#include "failure.h"
#include "flight.h"
#include "frame_times.h"
#include "game_script.h"
#include "game_settings.h"
#include "game_stage.h"
#include "input_session.h"
#include "picture.h"
#include "player_controls.h"
#include "title.h"
#include "view_switches.h"

#include <xum/devices/input_device.h>
#include <xum/engine/window.h>
#include <xum/render/image.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

constexpr std::uint32_t longestFrame = 100; // milliseconds: a pause must not throw anybody far away
constexpr std::uint32_t sessionFrame = 17;  // of a session, in turn with 16
constexpr std::chrono::microseconds recordedFrame(16667);
constexpr std::chrono::milliseconds minimizedPause(20);
constexpr std::uint32_t noticeDuration = 4000; // milliseconds
const char* const name = "Twelve Embers";

class GameSession {
public:
    GameSession(Application& application, Presentation& presentation, Soundscape& sounds, GameData& data,
                const Options& options)
        : application(application), presentation(presentation), sounds(sounds), options(options),
          input(application.getInput()), keys(input), controls(input, keys), switches(input),
          stage(presentation.getRenderer(), sounds, data), script(application.getEngine(), data, stage)
    {
        readSettings();
        if (options.playsSession()) player = std::make_unique<SessionPlayer>(options.sessionFile);
        if (!options.recordFile.empty()) recorder = std::make_unique<SessionRecorder>(options.recordFile);
        presentation.getLayers() = options.layers;
        presentation.getLayers().text = false; // H shows the readings
        presentation.getRenderer().setCulling(options.culls);
        showTitle();
    }

    void run()
    {
        for (std::uint64_t frame = 0; !isEnding; ++frame) {
            if (recorder) recorder->setFrame(frame);
            if (player) player->pushEvents(frame, application.getWindow().getHandle());
            if (!application.getEngine().update() || !handleWindowEvents()) break;
            const std::uint32_t milliseconds = countMilliseconds(frame);
            if (isMinimized && !player && !recorder)
                std::this_thread::sleep_for(minimizedPause); // nobody plays, and the swap may not wait for the screen
            else
                doFrame(milliseconds);
            if (player && player->isOver()) break;
            if (recorder) std::this_thread::sleep_until(nextRecordedFrame += recordedFrame);
        }
        finish();
    }

private:
    enum class State : int { Title, Playing, Over };

    /// Since the last frame. A session always takes the same steps, whatever the machine needs.
    std::uint32_t countMilliseconds(std::uint64_t frame)
    {
        if (player || recorder) return frame % 3 == 2 ? sessionFrame - 1 : sessionFrame;
        const uint64 time = application.getEngine().getTime();
        const auto elapsed = static_cast<std::uint32_t>(std::min<uint64>(time - lastTime, longestFrame));
        lastTime = time;
        return elapsed;
    }

    bool handleWindowEvents()
    {
        for (EngineEvent* event = application.getEngine().getEvents(); event != nullptr; event = event->getNext()) {
            switch (event->getType()) {
            case EngineEventType::WindowClosed: return false;
            case EngineEventType::WindowMinimized: isMinimized = true; break;
            case EngineEventType::WindowRestored: isMinimized = false; break;
            default: break;
            }
        }
        return true;
    }

    void doFrame(std::uint32_t milliseconds)
    {
        const float seconds = static_cast<float>(milliseconds) / 1000.0f;
        clock += milliseconds;
        frameTimes.add(static_cast<float>(milliseconds));
        handleKeys();
        switch (state) {
        case State::Title: camera = cameraOnFixedPath(static_cast<float>(clock) / 1000.0f); break;
        case State::Playing: play(milliseconds, seconds); break;
        case State::Over: break;
        }
        forgetNotice(milliseconds);
        stage.show();
        sounds.update(camera, clock);
        if (options.isFast) return;
        draw(nullptr);
        application.getRenderDevice().swap(&application.getWindow());
        if (title.countFrame(clock))
            application.getWindow().setTitle(title.getTitle(presentation.getRenderer().getVisibility()));
    }

    void play(std::uint32_t milliseconds, float seconds)
    {
        controls.look(camera, getMouseMotion(), seconds);
        stage.getWalker().move(stage.getObstacles(), controls.getVelocity(camera), controls.wantsToJump(), seconds);
        if (!script.tick(milliseconds)) notify(script.getProblem());
        if (script.takeReloadWish()) reloadScripts();
        if (const std::optional<float> turn = stage.takeTurn()) {
            camera.yaw = *turn;
            camera.pitch = 0;
        }
        camera.position = stage.getWalker().getEye();
        countBytes(milliseconds);
        if (stage.getTexts().count("end") == 0) return;
        state = State::Over;
        stage.showText("hint", "Press " + keys.getKeyName(Action::Confirm));
    }

    /// Once a second: to ask costs a little, too.
    void countBytes(std::uint32_t milliseconds)
    {
        sinceCount += milliseconds;
        if (sinceCount < 1000) return;
        const std::int64_t now = script.countBytes();
        if (lastBytes > 0) bytesPerMinute = (now - lastBytes) * 60000 / sinceCount;
        lastBytes = now;
        sinceCount = 0;
    }

    /// Says something that the rules did not say, for a while; what is wrong goes to the terminal, too, but not again
    /// in each frame.
    void notify(const std::string& words, bool isProblem = true)
    {
        constexpr std::size_t longest = 120;
        if (isProblem && words != lastProblem) std::fprintf(stderr, "xum-game: %s\n", words.c_str());
        if (isProblem) lastProblem = words;
        stage.showText("notice", words.size() > longest ? words.substr(0, longest) + "..." : words);
        noticeTime = noticeDuration;
    }

    void forgetNotice(std::uint32_t milliseconds)
    {
        if (noticeTime == 0) return;
        noticeTime -= std::min(noticeTime, milliseconds);
        if (noticeTime == 0) stage.showText("notice", "");
    }

    Vector2<int> getMouseMotion()
    {
        Vector2<int> motion;
        if (player)
            player->takeMotion(motion.x, motion.y);
        else if (controls.isMouseCaught())
            motion = input.getMouseMovement();
        return motion;
    }

    void showTitle()
    {
        state = State::Title;
        bytesPerMinute.reset();
        stage.clear();
        presentation.getRenderer().setLamp(true);
        stage.showText("title", name);
        const auto key = [&](Action action) { return keys.getKeyName(action); };
        stage.showText("hint", "Press " + key(Action::Confirm) + " to play, " + key(Action::Back) + " to leave");
        stage.showText("help", key(Action::Forwards) + " " + key(Action::Left) + " " + key(Action::Backwards) + " " +
                                   key(Action::Right) + " and the mouse, or a joystick: go and look      " +
                                   key(Action::Run) + ": run      " + key(Action::Jump) + ": jump");
        catchMouse(false);
    }

    void begin()
    {
        stage.clear();
        if (!script.begin()) notify(script.getProblem());
        if (!script.isPlaying()) { // it did not get that far
            const std::string problem = script.getProblem();
            showTitle();
            if (!problem.empty()) notify(problem);
            return;
        }
        camera.yaw = stage.takeTurn().value_or(0.0f);
        camera.pitch = 0;
        state = State::Playing;
        sinceCount = 0;
        lastBytes = 0;
        bytesPerMinute.reset();
        catchMouse(true);
    }

    void catchMouse(bool isCaught)
    {
        controls.setMouseCaught(isCaught);
        input.getMouseMovement(); // what came before does not count
    }

    void handleKeys()
    {
        switches.handle(presentation);
        if (keys.isPressed(Action::Confirm)) {
            if (state == State::Title)
                begin();
            else if (state == State::Over)
                showTitle();
        }
        if (keys.isPressed(Action::Back)) {
            if (state == State::Title)
                isEnding = true;
            else
                showTitle();
        }
        if (keys.isPressed(Action::CatchMouse)) catchMouse(!controls.isMouseCaught());
        if (keys.isPressed(Action::ReloadScripts)) reloadScripts();
        if (keys.isPressed(Action::Fullscreen)) {
            settings.isFullscreen = !settings.isFullscreen;
            application.getWindow().setFullscreen(settings.isFullscreen);
        }
        if (keys.isPressed(Action::Mute)) volume.switchMute();
        if (keys.isPressed(Action::Louder)) volume.change(Volume::step);
        if (keys.isPressed(Action::Quieter)) volume.change(-Volume::step);
        sounds.setVolume(volume.get());
        if (pictureKey.isThrown(input)) savePicture(findFreePictureName());
    }

    void reloadScripts()
    {
        if (script.reload())
            notify("The rules were loaded anew", false);
        else
            notify(script.getProblem());
    }

    void savePicture(const std::string& fileName)
    {
        try {
            writePictureNow(fileName, application.getWindow().getSize());
            std::printf("wrote %s\n", fileName.c_str());
            std::fflush(stdout);
        } catch (const Failure& failure) {
            std::fprintf(stderr, "xum-game: %s\n", failure.what()); // no reason to stop playing
        }
    }

    void writePictureNow(const std::string& fileName, const Vector2<int>& size)
    {
        const auto picture = takePicture(application.getRenderDevice(), size,
                                         [&](RenderTarget* target) { presentation.draw(target, size, makeFrame()); });
        writePicture(*picture, fileName);
    }

    void draw(RenderTarget* target) { presentation.draw(target, application.getWindow().getSize(), makeFrame()); }

    Frame makeFrame()
    {
        Frame frame;
        frame.camera = camera;
        frame.style = switches.getStyle();
        frame.milliseconds = frameTimes.getAverage();
        frame.texts = &stage.getTexts();
        frame.scriptBytesPerMinute = bytesPerMinute;
        return frame;
    }

    void readSettings()
    {
        if (options.playsSession() && options.settingsFile.empty()) {
            volume = options.volume;
            return;
        }
        settingsFile = !options.settingsFile.empty() ? options.settingsFile : findGameSettingsFile();
        std::string problems;
        settings = readGameSettings(settingsFile, keys, problems);
        if (!problems.empty()) std::fprintf(stderr, "xum-game: %s", problems.c_str());
        if (settingsFile.empty() && !player)
            std::fprintf(stderr, "xum-game: there is no directory to keep the settings in\n");
        volume = options.isVolumeGiven ? options.volume : Volume(settings.volume, settings.isMute);
        if (settings.isFullscreen && !player) application.getWindow().setFullscreen(true);
    }

    void finish()
    {
        if (player) {
            if (!options.pictureFile.empty()) writePictureNow(options.pictureFile, options.size);
            const auto text = [&](const char* slot) {
                const auto found = stage.getTexts().find(slot);
                return found == stage.getTexts().end() ? std::string("-") : found->second;
            };
            std::printf("clock %s, %s, end: %s\n", text("clock").c_str(), text("score").c_str(), text("end").c_str());
        }
        if (settingsFile.empty() || settings.isFileBroken) return;
        const Vector2<int> size = application.getWindow().getSize();
        const bool isUsable = size.x >= GameSettings::smallestWindow.x && size.y >= GameSettings::smallestWindow.y;
        if (!settings.isFullscreen && isUsable) settings.windowSize = size;
        settings.volume = volume.getPercent();
        settings.isMute = volume.isMuted();
        std::string problem;
        if (!writeGameSettings(settings, keys, settingsFile, problem))
            std::fprintf(stderr, "xum-game: the settings are not kept: %s\n", problem.c_str());
    }

    Application& application;
    Presentation& presentation;
    Soundscape& sounds;
    const Options& options;
    InputDevice& input;
    KeyBindings keys;
    PlayerControls controls;
    ViewSwitches switches;
    Switch pictureKey = Switch('p');
    GameStage stage;
    GameScript script;
    GameSettings settings;
    std::string settingsFile;
    Volume volume;
    std::unique_ptr<SessionPlayer> player;
    std::unique_ptr<SessionRecorder> recorder;
    State state = State::Title;
    Viewpoint camera;
    FrameTimes frameTimes;
    FrameRateTitle title = FrameRateTitle(name);
    std::uint64_t clock = 0; ///< milliseconds of frames
    uint64 lastTime = 0;
    std::uint32_t sinceCount = 0;
    std::int64_t lastBytes = 0;
    std::optional<std::int64_t> bytesPerMinute;
    std::uint32_t noticeTime = 0; ///< milliseconds for which it is still shown
    std::string lastProblem;
    std::chrono::steady_clock::time_point nextRecordedFrame = std::chrono::steady_clock::now();
    bool isMinimized = false;
    bool isEnding = false;
};

} // namespace

void playGame(Application& application, Presentation& presentation, Soundscape& sounds, GameData& data,
              const Options& options)
{
    try {
        GameSession(application, presentation, sounds, data, options).run();
    } catch (const Failure&) {
        throw;
    } catch (const std::runtime_error& problem) {
        throw Failure(ExitStatus::BrokenData, problem.what());
    }
}
