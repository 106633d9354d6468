#include "debug_view.h"

#include "level.h"

#include <xum/render/light.h>
#include <xum/render/render_device.h>

#include <algorithm>

namespace {

constexpr Vector4<float> thingColor = {0.35f, 1.0f, 0.45f, 0.35f};
constexpr Vector4<float> leafColor = {0.35f, 0.6f, 1.0f, 0.35f};
constexpr Vector4<float> soundColor = {1.0f, 0.85f, 0.1f, 0.9f};
constexpr Vector4<float> lightColor = {1.0f, 0.35f, 0.9f, 1.0f};

constexpr float soundScale = 1.0f / 40.0f; // of the range: in full size the spheres would be everywhere
constexpr int sphereSegments = 16;
constexpr float lightLength = 20.0f;

DebugShapes showThings(const Scene& scene, const Visibility& visibility)
{
    DebugShapes group = {thingColor, {}};
    for (std::size_t i = 0; i < scene.things.size(); ++i) {
        const Box& bounds = scene.things[i].bounds;
        if (visibility.things[i]) group.shapes.push_back(std::make_unique<DebugBox>(bounds.minimum, bounds.maximum));
    }
    return group;
}

DebugShapes showLeaves(const Level& level, const Visibility& visibility)
{
    DebugShapes group = {leafColor, {}};
    auto first = visibility.faces.begin();
    for (const Level::Leaf& leaf : level.getLeaves()) {
        const auto end = first + static_cast<std::ptrdiff_t>(leaf.faces.size());
        if (std::find(first, end, true) != end)
            group.shapes.push_back(std::make_unique<DebugBox>(leaf.bounds.minimum, leaf.bounds.maximum));
        first = end;
    }
    return group;
}

DebugShapes showSounds(const std::vector<SoundPlace>& sounds)
{
    DebugShapes group = {soundColor, {}};
    for (const SoundPlace& sound : sounds)
        group.shapes.push_back(std::make_unique<DebugSphere>(sound.position, sound.range * soundScale, sphereSegments));
    return group;
}

DebugShapes showLight(const SpotLight& light)
{
    DebugShapes group = {lightColor, {}};
    const Vector3<float> end = light.position + normalize(light.direction) * lightLength;
    group.shapes.push_back(std::make_unique<DebugLine>(light.position, end));
    return group;
}

} // namespace

std::vector<DebugShapes> collectDebugShapes(const Scene& scene, const Visibility& visibility,
                                            const std::vector<SoundPlace>& sounds, const SpotLight* light)
{
    std::vector<DebugShapes> groups;
    groups.push_back(showThings(scene, visibility));
    if (scene.level) groups.push_back(showLeaves(*scene.level, visibility));
    groups.push_back(showSounds(sounds));
    if (light != nullptr) groups.push_back(showLight(*light));
    return groups;
}

void drawDebugShapes(RenderDevice& device, Program* program, const Matrix4<float>& viewProjection,
                     const std::vector<DebugShapes>& groups, DrawCounter& draws)
{
    device.useProgram(program);
    device.setUniform("world", Matrix4<float>()).setUniform("viewProjection", viewProjection);
    device.setBlendMode(BlendMode::Alpha);
    device.disable(RenderFeature::DepthTest);
    for (const DebugShapes& group : groups) {
        device.setUniform("flatColor", group.color);
        for (const auto& shape : group.shapes) shape->draw(&device);
        draws.add(group.shapes.size());
    }
    device.enable(RenderFeature::DepthTest);
    device.setBlendMode(BlendMode::None);
}
