#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>
#include <xum/render/render_types.h>

#include <list>
#include <string>
#include <vector>

class Program;
class RenderTarget;
class Shader;
class Texture;
class VertexBuffer;
class Window;

/// The one door to the graphics hardware. Made by Engine::createRenderDevice, given back to
/// Engine::destroyRenderDevice.
///
/// Resources are made by the device and handed back to its matching destroy operation, all of them before the device
/// itself; every destroy operation accepts null. The device remembers what is bound and skips redundant binds, so
/// nobody else may bind or delete on its context. State is sticky: who changes what it does not own sets it back.
///
/// The "Software" device is inert: its creators return null and its operations do nothing. Code that draws tolerates
/// null buffers, textures, shaders and programs. Unknown enumeration values are ignored unless stated otherwise.
/// Slot order is ABI.
class XUM_API RenderDevice {
public:
    virtual ~RenderDevice() = default;

    /// Makes the device's context current for the window.
    virtual void makeCurrent(Window* window) = 0;

    /// An off-screen target with one texture of width x height for each format: Depth or DepthStencil becomes the depth
    /// texture, the others are colour attachments 0 to 3 in their order (a fifth is left out, with a log line). It is
    /// left bound for drawing and reading; the viewport does not change and nothing is cleared. An unknown format is a
    /// fatal error: "Invalid texture format!". An incomplete target is warned of: "FBO not complete!".
    virtual RenderTarget* createRenderTarget(int width, int height, const std::list<TextureFormat>& formats) = 0;
    /// With its textures. Where it is bound the window takes its place.
    virtual void destroyRenderTarget(RenderTarget* target) = 0;

    /// Compiles the text of a file. Compile problems are warned of, with the name and the compiler's log, and an empty
    /// shader comes back; so it does, without a warning, when the file cannot be read. Null for an unknown type.
    virtual Shader* loadShader(ShaderType type, const std::string& fileName) = 0;

    /// Compiles `source` up to its first NUL; `name` only labels the compile messages.
    virtual Shader* createShader(ShaderType type, const std::string& name, const std::vector<char>& source) = 0;

    /// The programs that were linked from it stay whole.
    virtual void destroyShader(Shader* shader) = 0;

    /// Links shaders into a program; null ones are skipped. The first attribute name is bound to location 0, the next
    /// to 1 and so on. Outputs are bound to colour numbers by position, or, if every one is written "name(N)" with one
    /// digit, to N; a mixture is a fatal error: "If custom outputs for a program are used, all outputs must be
    /// custom!". Link problems are warned of. The new program is not current for this device.
    virtual Program* createProgram(const std::list<Shader*>& shaders, const std::list<std::string>& attributes,
                                   const std::list<std::string>& outputs) = 0;

    /// If it is the current one there is none afterwards: uniforms are ignored until the next useProgram.
    virtual void destroyProgram(Program* program) = 0;

    /// An empty texture of 8-bit RGBA, left bound to unit 0. Null, with a log line, for a negative size and for one
    /// above what the hardware can have (at least 1024, 16384 is usual).
    virtual Texture* createTexture(int width, int height, bool mipmaps) = 0;

    /// Also forgets what is bound to every unit.
    virtual void destroyTexture(Texture* texture) = 0;

    /// dynamic: the contents will change often.
    virtual VertexBuffer* createVertexBuffer(bool dynamic) = 0;

    /// What was drawn from it before stays drawn.
    virtual void destroyVertexBuffer(VertexBuffer* buffer) = 0;

    /// The drawing rectangle in pixels from the top left of a target that is screenHeight pixels high.
    virtual void setViewport(int x, int y, int width, int height, int screenHeight) = 0;

    /// The rectangle outside which nothing is drawn while ScissorTest is enabled; given like the viewport.
    virtual void setScissor(int x, int y, int width, int height, int screenHeight) = 0;

    /// Clears buffers of the draw target: colour to opaque black, depth to 1, stencil to 0. Write switches and the
    /// scissor apply.
    virtual void clear(bool color, bool depth, bool stencil) = 0;

    /// For every draw target, until it is switched again. At the start the three kinds of writes are enabled alone.
    /// @{
    virtual void enable(RenderFeature feature) = 0;
    virtual void disable(RenderFeature feature) = 0;
    /// @}

    /// Null binds the window.
    virtual void bindRenderTarget(RenderTarget* target, TargetBinding binding) = 0;

    /// Makes the program current for draws and uniforms. Null is ignored.
    virtual void useProgram(Program* program) = 0;

    /// Units 0 to 7; another unit and null are ignored. The unit becomes the active one.
    virtual void bindTexture(int unit, Texture* texture) = 0;

    /// Less at the start. Counts while DepthTest is enabled.
    virtual void setDepthFunction(DepthFunction function) = 0;

    /// None at the start.
    virtual void setCullMode(CullMode mode) = 0;

    /// None at the start. One mode for all colour attachments.
    virtual void setBlendMode(BlendMode mode) = 0;

    /// Always, with 0 and 255, at the start. Counts while StencilTest is enabled. An unknown function acts as Never.
    virtual void setStencilFunction(CompareFunction function, unsigned char reference, unsigned char mask) = 0;

    /// What happens to the stored value where the stencil test fails, where only the depth test fails, and where both
    /// pass; at the start Keep, Keep and Replace. An unknown operation acts as Keep.
    virtual void setStencilOperation(StencilOperation stencilFail, StencilOperation depthFail,
                                     StencilOperation depthPass) = 0;

    /// Sets a uniform of the current program, looked up by name each time. Unknown names, and all names without a
    /// current program, are ignored. Matrices go over row by row: shaders multiply with the vector on the left. The int
    /// form also sets sampler units. Returns this device, so that calls chain.
    /// @{
    virtual RenderDevice& setUniform(const std::string& name, const Matrix4<float>& value) = 0;
    virtual RenderDevice& setUniform(const std::string& name, const Matrix3<float>& value) = 0;
    virtual RenderDevice& setUniform(const std::string& name, const Vector4<float>& value) = 0;
    virtual RenderDevice& setUniform(const std::string& name, const Vector3<float>& value) = 0;
    virtual RenderDevice& setUniform(const std::string& name, const Vector2<float>& value) = 0;
    virtual RenderDevice& setUniform(const std::string& name, float value) = 0;
    virtual RenderDevice& setUniform(const std::string& name, int value) = 0;
    /// @}

    /// Presents the frame.
    virtual void swap(Window* window) = 0;
};
