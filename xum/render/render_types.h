#pragma once

/// @file
/// Values shared by the render device and its resources. Front faces are counter-clockwise. Colours are Vector4<float>,
/// RGBA, 0 to 1.

/// The stage of a program that a shader is for.
enum class ShaderType : int {
    Vertex = 0,   ///< runs for each vertex
    Geometry = 1, ///< runs for each primitive between the other two; may be left out
    Fragment = 2, ///< runs for each pixel
    Compute = 3,  ///< does nothing in a context below OpenGL 4.3, and 3.2 is what the device asks for
};

/// What one pixel of a texture holds; by default 8-bit RGBA.
struct TextureFormat {
    /// What one channel is.
    enum Type : int {
        UnsignedByte = 0, ///< 8 bits a channel
        HalfFloat = 1,    ///< 16-bit float a channel
        Float = 2,        ///< 32-bit float a channel
        Depth = 3,        ///< one 32-bit float depth value; channels is ignored
        DepthStencil = 4, ///< 24-bit depth and 8-bit stencil packed in 32 bits; channels is ignored
    };

    int type = UnsignedByte; ///< one of Type
    int channels = 4;        ///< 1 to 4: red; red-green; RGB; RGBA

    constexpr TextureFormat() = default;
    /// Checked when a texture is made of it.
    constexpr TextureFormat(int type, int channels) : type(type), channels(channels) {}

    /// The type and the channels, also where these are ignored.
    /// @{
    constexpr friend bool operator==(const TextureFormat& a, const TextureFormat& b)
    {
        return a.type == b.type && a.channels == b.channels;
    }
    constexpr friend bool operator!=(const TextureFormat& a, const TextureFormat& b) { return !(a == b); }
    /// @}
};

/// What Texture::setFilter takes.
namespace TextureFilter {
/// How a texture is read between its pixels.
enum Type : int {
    Nearest = 0,     ///< the pixel that is nearest
    Linear = 1,      ///< a mixture of the four around
    Anisotropic = 2, ///< not made: a fatal error
};
}

/// Switches of RenderDevice::enable and disable.
enum class RenderFeature : int {
    ColorWrite = 0,   ///< all channels of all colour attachments; see RenderTarget::setColorWrite for one of these
    DepthWrite = 1,   ///< counts while DepthTest is enabled, and for clears
    DepthTest = 2,    ///< see RenderDevice::setDepthFunction
    StencilWrite = 3, ///< all eight bits
    StencilTest = 4,  ///< see RenderDevice::setStencilFunction
    ScissorTest = 5,  ///< see RenderDevice::setScissor
    ClipPlane = 6,    ///< the first user clip plane; every shader in use must then write gl_ClipDistance[0]
};

/// Which pixels pass the depth test.
enum class DepthFunction : int {
    Less = 0,  ///< those that are nearer than what is stored
    Equal = 1, ///< those of the stored depth, to the last bit: for a second pass over the same triangles
};

/// Which faces are not drawn.
enum class CullMode : int {
    None = 0,  ///< every face is drawn
    Back = 1,  ///< those that are seen clockwise
    Front = 2, ///< those that are seen counter-clockwise
};

/// What is stored of a pixel: the source is what the program puts out, the destination what is there.
enum class BlendMode : int {
    None = 0,     ///< source
    Alpha = 1,    ///< source * source alpha + destination * (1 - source alpha)
    Additive = 2, ///< source * source alpha + destination
};

/// Of the stencil test: (reference & mask) compared with (stored & mask).
enum class CompareFunction : int {
    Never = 0,        ///< no pixel passes
    Always = 1,       ///< every pixel passes
    Equal = 2,        ///< reference = stored
    NotEqual = 3,     ///< reference and stored differ
    Less = 4,         ///< reference < stored
    LessEqual = 5,    ///< reference <= stored
    Greater = 6,      ///< reference > stored
    GreaterEqual = 7, ///< reference >= stored
};

/// What becomes of the stored stencil value.
enum class StencilOperation : int {
    Keep = 0,          ///< it stays
    Zero = 1,          ///< 0
    Replace = 2,       ///< the reference of RenderDevice::setStencilFunction
    Increment = 3,     ///< stops at 255
    IncrementWrap = 4, ///< from 255 to 0
    Decrement = 5,     ///< stops at 0
    DecrementWrap = 6, ///< from 0 to 255
    Invert = 7,        ///< each bit turned round
};

/// Which of the two bindings RenderDevice::bindRenderTarget sets.
enum class TargetBinding : int {
    Draw = 0, ///< where draws and clears go, and where RenderTarget::blit copies to
    Read = 1, ///< where RenderTarget::blit copies from
    Both = 2, ///< the two together
};

/// The vertex attribute locations that meshes, quads and fonts use. A program binds its attribute names to locations in
/// the order of its list, so lists follow this order.
namespace VertexAttribute {
/// For VertexBuffer::setAttribute, with the type that is expected there.
enum : int {
    Position = 0,          ///< Vector3<float>
    TextureCoordinate = 1, ///< Vector2<float>
    Normal = 2,            ///< Vector3<float>
    Color = 3,             ///< Vector4<float>
};
}
