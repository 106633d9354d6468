#pragma once

#include <xum/render/render_types.h>

#include <GL/glew.h>

#include <optional>

/// The engine's enumerations as OpenGL's. No value where the engine's is unknown and to be ignored. Needs no context.

std::optional<GLenum> depthFunctionToGL(DepthFunction function);

/// Never for an unknown one.
GLenum compareFunctionToGL(CompareFunction function);

/// Keep for an unknown one.
GLenum stencilOperationToGL(StencilOperation operation);

std::optional<GLenum> shaderTypeToGL(ShaderType type);

std::optional<GLenum> targetBindingToGL(TargetBinding binding);

/// The arguments of glTexImage2D.
struct TextureLayout {
    GLint internalFormat;
    GLenum format;
    GLenum type;
};

/// No value for an unknown type, and for a colour type with other than 1 to 4 channels.
std::optional<TextureLayout> textureFormatToGL(const TextureFormat& format);
