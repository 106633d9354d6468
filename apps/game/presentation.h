#pragma once

#include "game_texts.h"
#include "heads_up_display.h"
#include "post_pass.h"
#include "scene_renderer.h"
#include "soundscape.h"

#include <cstdint>
#include <optional>

/// What is drawn besides the scene.
struct Layers {
    bool effects = true; ///< the pass over the finished picture
    bool debugShapes = false;
    bool text = true;
};

/// How the scene is seen in one frame.
struct Frame {
    Viewpoint camera;
    DrawStyle style = DrawStyle::Solids;
    float milliseconds = 0;           ///< that a frame takes, for the display
    float brightness = 1;             ///< of the effects: 0 is black
    const GameTexts* texts = nullptr; ///< null: nothing is being played
    std::optional<std::int64_t> scriptBytesPerMinute = {};
};

/// The whole picture: the scene and what comes on top of it.
class Presentation {
public:
    /// Keeps the references. Throws Failure, naming the file, when a font is missing or broken.
    Presentation(RenderDevice& device, const Assets& assets, GameData& data, SceneRenderer& renderer,
                 const Soundscape& sounds);

    /// Clears the target (null is the window) of `size` pixels and draws the frame. Nothing happens without a pixel.
    void draw(RenderTarget* target, const Vector2<int>& size, const Frame& frame);

    SceneRenderer& getRenderer() { return renderer; }
    Layers& getLayers() { return layers; }

    /// Of the last frame, all layers together.
    std::size_t countDraws() const { return draws.get(); }

private:
    void drawScene(RenderTarget* target, const Vector2<int>& size, const Frame& frame);
    Readings read(const Frame& frame) const;

    RenderDevice& device;
    const Assets& assets;
    SceneRenderer& renderer;
    std::vector<SoundPlace> soundPlaces;
    PostPass postPass;
    HeadsUpDisplay display;
    Layers layers;
    DrawCounter draws;
};
