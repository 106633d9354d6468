#include <xum/render/opengl/opengl_mappings.h>

std::optional<GLenum> depthFunctionToGL(DepthFunction function)
{
    switch (function) {
    case DepthFunction::Less: return GLenum{GL_LESS};
    case DepthFunction::Equal: return GLenum{GL_EQUAL};
    default: return std::nullopt;
    }
}

GLenum compareFunctionToGL(CompareFunction function)
{
    switch (function) {
    case CompareFunction::Never: return GL_NEVER;
    case CompareFunction::Always: return GL_ALWAYS;
    case CompareFunction::Equal: return GL_EQUAL;
    case CompareFunction::NotEqual: return GL_NOTEQUAL;
    case CompareFunction::Less: return GL_LESS;
    case CompareFunction::LessEqual: return GL_LEQUAL;
    case CompareFunction::Greater: return GL_GREATER;
    case CompareFunction::GreaterEqual: return GL_GEQUAL;
    default: return GL_NEVER;
    }
}

GLenum stencilOperationToGL(StencilOperation operation)
{
    switch (operation) {
    case StencilOperation::Keep: return GL_KEEP;
    case StencilOperation::Zero: return GL_ZERO;
    case StencilOperation::Replace: return GL_REPLACE;
    case StencilOperation::Increment: return GL_INCR;
    case StencilOperation::IncrementWrap: return GL_INCR_WRAP;
    case StencilOperation::Decrement: return GL_DECR;
    case StencilOperation::DecrementWrap: return GL_DECR_WRAP;
    case StencilOperation::Invert: return GL_INVERT;
    default: return GL_KEEP;
    }
}

std::optional<GLenum> shaderTypeToGL(ShaderType type)
{
    switch (type) {
    case ShaderType::Vertex: return GLenum{GL_VERTEX_SHADER};
    case ShaderType::Geometry: return GLenum{GL_GEOMETRY_SHADER};
    case ShaderType::Fragment: return GLenum{GL_FRAGMENT_SHADER};
    case ShaderType::Compute: return GLenum{GL_COMPUTE_SHADER};
    default: return std::nullopt;
    }
}

std::optional<GLenum> targetBindingToGL(TargetBinding binding)
{
    switch (binding) {
    case TargetBinding::Draw: return GLenum{GL_DRAW_FRAMEBUFFER};
    case TargetBinding::Read: return GLenum{GL_READ_FRAMEBUFFER};
    case TargetBinding::Both: return GLenum{GL_FRAMEBUFFER};
    default: return std::nullopt;
    }
}

namespace {

struct ColorType {
    GLenum type;
    GLint internalFormats[4]; // by channels
};

constexpr ColorType colorTypes[] = {
    {GL_UNSIGNED_BYTE, {GL_R8, GL_RG8, GL_RGB8, GL_RGBA8}},
    {GL_HALF_FLOAT, {GL_R16F, GL_RG16F, GL_RGB16F, GL_RGBA16F}},
    {GL_FLOAT, {GL_R32F, GL_RG32F, GL_RGB32F, GL_RGBA32F}},
};
static_assert(TextureFormat::UnsignedByte == 0 && TextureFormat::HalfFloat == 1 && TextureFormat::Float == 2);

constexpr GLenum pixelFormats[] = {GL_RED, GL_RG, GL_RGB, GL_RGBA};

} // namespace

std::optional<TextureLayout> textureFormatToGL(const TextureFormat& format)
{
    switch (format.type) {
    case TextureFormat::UnsignedByte:
    case TextureFormat::HalfFloat:
    case TextureFormat::Float: {
        if (format.channels < 1 || format.channels > 4) return std::nullopt;
        const ColorType& color = colorTypes[format.type];
        return TextureLayout{color.internalFormats[format.channels - 1], pixelFormats[format.channels - 1], color.type};
    }
    case TextureFormat::Depth: return TextureLayout{GL_DEPTH_COMPONENT32F, GL_DEPTH_COMPONENT, GL_FLOAT};
    case TextureFormat::DepthStencil: return TextureLayout{GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL, GL_UNSIGNED_INT_24_8};
    default: return std::nullopt;
    }
}
