#pragma once

#include "application.h"
#include "game_script.h"
#include "game_stage.h"
#include "key_bindings.h"
#include "player_controls.h"
#include "presentation.h"
#include "walker.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The game while it is played, always in the same way: somebody walks from the start into the courtyard and looks
/// around, sixty frames a second. The parts of a frame can be done each by itself.
class PlayedGame {
public:
    static constexpr std::size_t frameCount = 600; // of the walk: ten seconds
    static constexpr Vector2<int> windowSize = {1024, 768};

    /// What a frame starts from.
    struct Step {
        Viewpoint camera;
        Walker walker;
    };

    /// Walks once. Throws Failure when the game cannot start.
    PlayedGame();

    /// A new hunt, from the first frame on.
    void begin();

    // The parts of a frame, in this order.
    void updateEngine();
    void control();
    void walk();
    void tick();
    void show();
    void listen();
    void see(); ///< as the renderer does: what is in the view and not hidden, and what the watchers' lamps light

    // What seeing consists of; the second one includes the first.
    void seeView();
    void seeWhatIsDrawn();
    void seeLampViews();

    /// All parts of a frame. Drawing comes on top.
    void doFrame();

    bool isOver() const { return stage.getTexts().count("end") > 0; }

    /// Puts the player where a frame of the walk starts.
    void goTo(std::size_t frame);

    std::size_t countFramesSoFar() const { return frame; }

    Frame makeFrame() const;

    /// That a frame takes from the script memory for good, on average over a walk.
    double countScriptBytes();

    Application application = Application("game benchmark", windowSize);
    GameData data;
    Assets assets = Assets(application.getRenderDevice(), data);
    Scene scene = makeScene();
    Soundscape sounds = Soundscape(application.getAudioDevice(), data, scene, 1);
    SceneRenderer renderer = SceneRenderer(application.getRenderDevice(), assets, scene);
    Presentation presentation = Presentation(application.getRenderDevice(), assets, data, renderer, sounds);
    KeyBindings keys = KeyBindings(application.getInput());
    PlayerControls controls = PlayerControls(application.getInput(), keys);
    GameStage stage = GameStage(renderer, sounds, data);
    GameScript script = GameScript(application.getEngine(), data, stage);
    Viewpoint camera;

    // What see() needs besides: the renderer keeps its own to itself.
    Occluders occluders = Occluders(scene);
    OcclusionMap occlusion;

private:
    Scene makeScene();
    std::uint32_t getMilliseconds() const { return frame % 3 == 2 ? 16 : 17; }
    float getSeconds() const { return static_cast<float>(getMilliseconds()) / 1000.0f; }

    Vector3<float> velocity;
    Visibility visibility;
    std::vector<Step> steps;
    std::size_t frame = 0;
    std::uint64_t clock = 0; ///< milliseconds
};
