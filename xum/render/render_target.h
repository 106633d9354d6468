#pragma once

#include <xum/engine/export.h>

class Texture;

/// Textures to draw into: up to four colour attachments and one for depth. Made by RenderDevice::createRenderTarget,
/// given back to RenderDevice::destroyRenderTarget, which also destroys the textures. Slot order is ABI.
class XUM_API RenderTarget {
public:
    /// Colour writes, all four channels together, of the draw target's colour attachment with this number. The switch
    /// belongs to the number, not to the target: it stays when another target is bound, and
    /// RenderDevice::enable(ColorWrite) sets all of them.
    virtual void setColorWrite(int attachment, bool enabled) = 0;

    /// The colour texture at that attachment, owned by the target; null when there is none.
    virtual Texture* getTexture(int attachment) = 0;

    /// The depth or depth-stencil texture, owned by the target; null when there is none.
    virtual Texture* getDepthTexture() = 0;

    /// Copies a rectangle from the bound read target to the bound draw target, nearest pixel, the chosen buffers only.
    /// Pixels count from the bottom left. The scissor applies; depth formats must agree.
    virtual void blit(int srcX0, int srcY0, int srcX1, int srcY1, int dstX0, int dstY0, int dstX1, int dstY1,
                      bool color, bool depth, bool stencil) = 0;

protected:
    ~RenderTarget() = default;
};
