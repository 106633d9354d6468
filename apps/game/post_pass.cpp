#include "post_pass.h"

#include <xum/render/quad.h>
#include <xum/render/render_target.h>

namespace {

constexpr int pictureUnit = 0;

} // namespace

RenderTarget* PostPass::getTarget(const Vector2<int>& size)
{
    if (size == targetSize) return target.get();
    target.reset(); // first, so that there are never two
    target.reset(device.createRenderTarget(size.x, size.y, {TextureFormat(), TextureFormat(TextureFormat::Depth, 1)}));
    targetSize = size;
    return target.get();
}

void PostPass::draw(float brightness, DrawCounter& draws)
{
    device.useProgram(program);
    device.bindTexture(pictureUnit, target->getTexture(0));
    device.setUniform("surface", pictureUnit).setUniform("brightness", brightness);
    device.disable(RenderFeature::DepthTest);
    drawFullscreenQuad(&device);
    draws.add();
    device.enable(RenderFeature::DepthTest);
}
