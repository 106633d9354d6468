#pragma once

#include "application.h"
#include "game_script.h"
#include "game_stage.h"
#include "player_controls.h"
#include "pushed_events.h"
#include "world.h"

#include <xum/devices/input_device.h>

#include <cmath>
#include <sstream>
#include <string>

/// Plays the game without drawing it: runs from point to point as the game itself would with the same keys and the same
/// motion of the mouse, and writes them down as a session.
class GameTour {
public:
    GameTour()
    {
        pushKeyDown('w');
        pushKeyDown(SDLK_LSHIFT);
        application.getEngine().update();
        controls.setMouseCaught(true);
        session << "# Runs to every ember, and is not caught.\n"
                   "1 key down Return\n1 key down W\n1 key down Left Shift\n2 key up Return\n";
        script.begin();
        camera.yaw = stage.takeTurn().value_or(0.0f);
    }

    ~GameTour()
    {
        pushKeyUp('w');
        pushKeyUp(SDLK_LSHIFT);
        application.getEngine().update();
    }

    /// Straight on; false when it takes too long.
    bool runTo(float x, float y)
    {
        constexpr float near = 0.25f;
        for (int i = 0; i < 900 && !isOver(); ++i) {
            const Vector3<float> feet = stage.getWalker().getFeet();
            if (std::hypot(x - feet.x, y - feet.y) < near) return true;
            doFrame(std::atan2(feet.x - x, y - feet.y) * 180.0f / 3.14159265f);
        }
        return isOver();
    }

    bool isOver() const { return getText("end") != ""; }

    std::string getText(const std::string& slot) const
    {
        const auto found = stage.getTexts().find(slot);
        return found == stage.getTexts().end() ? "" : found->second;
    }

    std::string describe()
    {
        const Vector3<float> feet = stage.getWalker().getFeet();
        std::ostringstream text;
        text << "at " << feet.x << " " << feet.y << " " << feet.z << ", clock " << getText("clock") << ", "
             << getText("score") << ", " << getText("message") << getText("end");
        return text.str();
    }

    /// What was done so far, and a second for looking at the end.
    std::string getSession() const
    {
        return session.str() + std::to_string(frame) + " key up W\n" + std::to_string(frame + 60) +
               " key up Left Shift\n";
    }

private:
    void doFrame(float yaw)
    {
        constexpr float degreesPerPixel = 0.12f;
        const auto pixels = static_cast<int>(std::lround(std::remainder(camera.yaw - yaw, 360.0f) / degreesPerPixel));
        if (pixels != 0) session << frame << " motion 48 30 " << pixels << " 0\n";
        const std::uint32_t milliseconds = frame % 3 == 2 ? 16 : 17;
        const float seconds = static_cast<float>(milliseconds) / 1000.0f;
        controls.look(camera, {pixels, 0}, seconds);
        stage.getWalker().move(stage.getObstacles(), controls.getVelocity(camera), false, seconds);
        script.tick(milliseconds);
        if (const std::optional<float> turn = stage.takeTurn()) camera.yaw = *turn;
        ++frame;
    }

    static Scene makeScene(Engine& engine, GameData& data)
    {
        Scene scene = makeCourtyard();
        addWorld(scene, engine, data);
        return scene;
    }

    Application application = Application("tour", {64, 48});
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Assets assets = Assets(application.getRenderDevice(), data);
    Scene scene = makeScene(application.getEngine(), data);
    Soundscape sounds = Soundscape(nullptr, data, scene, 1);
    SceneRenderer renderer = SceneRenderer(application.getRenderDevice(), assets, scene);
    GameStage stage = GameStage(renderer, sounds, data);
    GameScript script = GameScript(application.getEngine(), data, stage);
    KeyBindings keys = KeyBindings(application.getInput());
    PlayerControls controls = PlayerControls(application.getInput(), keys);
    Viewpoint camera;
    std::ostringstream session;
    int frame = 1;
};
