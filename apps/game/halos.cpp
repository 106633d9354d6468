#include "halos.h"

#include <xum/render/program.h>
#include <xum/render/quad.h>
#include <xum/render/render_device.h>

namespace {

constexpr float growth = 0.014f; // of the reach, with each unit of distance: what is far away is still seen
constexpr float strength = 0.8f;

} // namespace

void drawHalos(RenderDevice& device, Program* program, const Matrix4<float>& viewProjection, const Viewpoint& camera,
               const std::vector<Thing>& things, DrawCounter& draws)
{
    device.useProgram(program);
    device.setUniform("viewProjection", viewProjection);
    device.setBlendMode(BlendMode::Additive);
    device.disable(RenderFeature::DepthWrite); // one behind another is seen as well
    for (const Thing& thing : things) {
        if (thing.halo <= 0) continue;
        const Vector3<float> centre = (thing.bounds.minimum + thing.bounds.maximum) * 0.5f;
        const float reach = thing.halo + growth * length(centre - camera.position);
        device.setUniform("centre", centre)
            .setUniform("right", camera.getRight() * reach)
            .setUniform("up", camera.getUp() * reach)
            .setUniform("glowColor", thing.material.tint * strength);
        drawFullscreenQuad(&device);
        draws.add();
    }
    device.enable(RenderFeature::DepthWrite);
    device.setBlendMode(BlendMode::None);
}
