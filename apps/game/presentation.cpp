#include "presentation.h"

#include "debug_view.h"

Presentation::Presentation(RenderDevice& device, const Assets& assets, GameData& data, SceneRenderer& renderer,
                           const Soundscape& sounds)
    : device(device), assets(assets), renderer(renderer), soundPlaces(sounds.getPlaces()),
      postPass(device, assets.getFilmProgram()), display(device, assets, data)
{}

void Presentation::draw(RenderTarget* target, const Vector2<int>& size, const Frame& frame)
{
    if (size.x <= 0 || size.y <= 0) return; // a minimised window
    draws.reset();
    RenderTarget* const picture = layers.effects ? postPass.getTarget(size) : nullptr;
    drawScene(picture != nullptr ? picture : target, size, frame);
    if (picture != nullptr) {
        device.bindRenderTarget(target, TargetBinding::Both);
        postPass.draw(frame.brightness, draws);
    }
    if (frame.texts != nullptr) display.drawGame(size, *frame.texts, draws);
    if (!layers.text) return;
    const std::string place = nameOfPlace(renderer.getScene(), frame.camera.position);
    if (frame.texts != nullptr)
        display.drawOverGame(size, read(frame), place, *frame.texts, draws);
    else
        display.draw(size, read(frame), place, draws);
}

void Presentation::drawScene(RenderTarget* target, const Vector2<int>& size, const Frame& frame)
{
    renderer.draw(target, size, frame.camera, frame.style);
    draws.add(renderer.countDraws());
    if (!layers.debugShapes) return;
    const SpotLight* const light = renderer.isLampShining() ? &renderer.getLamp().getLight() : nullptr;
    drawDebugShapes(device, assets.getFlatProgram(), renderer.getViewProjection(),
                    collectDebugShapes(renderer.getScene(), renderer.getVisibility(), soundPlaces, light), draws);
}

/// The draws are those up to here: the text's own are yet to come.
Readings Presentation::read(const Frame& frame) const
{
    const Scene& scene = renderer.getScene();
    const Visibility& visibility = renderer.getVisibility();
    Readings readings;
    readings.frameMilliseconds = frame.milliseconds;
    readings.position = frame.camera.position;
    if (scene.level) readings.leaf = scene.level->locate(frame.camera.position);
    readings.draws = draws.get();
    readings.drawn = visibility.drawn;
    readings.culled = visibility.culled;
    readings.hidden = visibility.hidden;
    readings.scriptBytesPerMinute = frame.scriptBytesPerMinute;
    return readings;
}
