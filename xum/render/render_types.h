#pragma once

/// Values shared by the render device and its resources. Front faces are counter-clockwise. Colours are Vector4<float>,
/// RGBA, 0 to 1.

enum class ShaderType : int { Vertex = 0, Geometry = 1, Fragment = 2, Compute = 3 };

/// What one pixel of a texture holds; by default 8-bit RGBA.
struct TextureFormat {
    enum Type : int {
        UnsignedByte = 0, ///< 8 bits a channel
        HalfFloat = 1,    ///< 16-bit float a channel
        Float = 2,        ///< 32-bit float a channel
        Depth = 3,        ///< one 32-bit float depth value; channels is ignored
        DepthStencil = 4, ///< 24-bit depth and 8-bit stencil packed in 32 bits; channels is ignored
    };

    int type = UnsignedByte;
    int channels = 4; ///< 1 to 4: red; red-green; RGB; RGBA

    constexpr TextureFormat() = default;
    constexpr TextureFormat(int type, int channels) : type(type), channels(channels) {}

    constexpr friend bool operator==(const TextureFormat& a, const TextureFormat& b)
    {
        return a.type == b.type && a.channels == b.channels;
    }
    constexpr friend bool operator!=(const TextureFormat& a, const TextureFormat& b) { return !(a == b); }
};

namespace TextureFilter {
enum Type : int { Nearest = 0, Linear = 1, Anisotropic = 2 };
}

/// Switches of RenderDevice::enable and disable.
enum class RenderFeature : int {
    ColorWrite = 0,
    DepthWrite = 1,
    DepthTest = 2,
    StencilWrite = 3,
    StencilTest = 4,
    ScissorTest = 5,
    ClipPlane = 6, ///< the first user clip plane; every shader in use must then write gl_ClipDistance[0]
};

enum class DepthFunction : int { Less = 0, Equal = 1 };

/// Which faces are not drawn.
enum class CullMode : int { None = 0, Back = 1, Front = 2 };

enum class BlendMode : int {
    None = 0,     ///< source
    Alpha = 1,    ///< source * source alpha + destination * (1 - source alpha)
    Additive = 2, ///< source * source alpha + destination
};

/// Of the stencil test: (reference & mask) compared with (stored & mask).
enum class CompareFunction : int {
    Never = 0,
    Always = 1,
    Equal = 2,
    NotEqual = 3,
    Less = 4,
    LessEqual = 5,
    Greater = 6,
    GreaterEqual = 7,
};

enum class StencilOperation : int {
    Keep = 0,
    Zero = 1,
    Replace = 2,
    Increment = 3, ///< stops at 255
    IncrementWrap = 4,
    Decrement = 5, ///< stops at 0
    DecrementWrap = 6,
    Invert = 7,
};

/// Which of the two bindings RenderDevice::bindRenderTarget sets.
enum class TargetBinding : int { Draw = 0, Read = 1, Both = 2 };

/// The vertex attribute locations that meshes, quads and fonts use. A program binds its attribute names to locations in
/// the order of its list, so lists follow this order.
namespace VertexAttribute {
enum : int {
    Position = 0,          ///< Vector3<float>
    TextureCoordinate = 1, ///< Vector2<float>
    Normal = 2,            ///< Vector3<float>
    Color = 3,             ///< Vector4<float>
};
}
