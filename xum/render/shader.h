#pragma once

#include <xum/engine/export.h>
#include <xum/render/render_types.h>

/// A compiled shader. Made by RenderDevice::loadShader or createShader, given back to RenderDevice::destroyShader; it
/// may be destroyed as soon as the programs that need it are made. Slot order is ABI.
class XUM_API Shader {
public:
    /// The stage that it was made for.
    virtual ShaderType getType() = 0;

    virtual ~Shader() = default;
};
