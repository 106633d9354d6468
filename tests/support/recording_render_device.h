#pragma once

#include <xum/render/render_device.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

class RecordingRenderDevice;

/// What a RecordingRenderDevice makes. It keeps what was put into it. A test fails that uses one that was handed back.
class RecordingVertexBuffer final : public VertexBuffer {
public:
    RecordingVertexBuffer(const RecordingRenderDevice& device, bool dynamic) : dynamic(dynamic), device(&device) {}

    void setAttribute(int location, const std::vector<Vector4<float>>& values) override;
    void setAttribute(int location, const std::vector<Vector3<float>>& values) override;
    void setAttribute(int location, const std::vector<Vector2<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector4<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector3<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector2<float>>& values) override;
    void setIndices(const std::vector<unsigned int>& values) override;
    void drawLines(int first, int count) override;
    void drawTriangles(int first, int count) override;
    void drawTriangleFan(int first, int count) override;

    const bool dynamic;

    /// Each call with its numbers and the count of its values: "setAttribute 0 Vector3 x 6", "setIndices 24",
    /// "drawLines 0 -1".
    std::vector<std::string> calls;

    /// What a location was last filled with is in one of them.
    std::map<int, std::vector<Vector4<float>>> fours;
    std::map<int, std::vector<Vector3<float>>> threes;
    std::map<int, std::vector<Vector2<float>>> twos;

    std::optional<std::vector<unsigned int>> indices;

    /// What unit 0 had when it was drawn last.
    const Texture* drawnTexture = nullptr;

private:
    friend class RecordingRenderDevice;

    bool isRecorded() const;
    template <class Values>
    void keep(const char* call, int location, const Values& values);
    void keepDraw(const char* call, int first, int count);

    const RecordingRenderDevice* device;
    bool isHandedBack = false;
};

/// The other thing that a RecordingRenderDevice makes.
class RecordingTexture final : public Texture {
public:
    RecordingTexture(RecordingRenderDevice& device, unsigned int number, int width, int height, bool mipmaps)
        : number(number), width(width), height(height), mipmaps(mipmaps), device(&device)
    {}

    unsigned int getHandle() override { return number; }
    const TextureFormat& getFormat() override { return format; }
    int getWidth() override { return width; }
    int getHeight() override { return height; }
    void setFilter(TextureFilter::Type newFilter) override;
    void setClamp(bool newClampS, bool newClampT) override;
    void update(const void* rgbaPixels) override;
    Image* toImage(bool flipVertically) override;

    const unsigned int number; ///< 1 for the first one that the device made, then 2 and so on
    const int width;
    const int height;
    const bool mipmaps;
    const TextureFormat format;
    TextureFilter::Type filter = TextureFilter::Nearest;
    bool clampS = true;
    bool clampT = true;
    std::vector<unsigned char> pixels; ///< of the last update; none when it was null

private:
    friend class RecordingRenderDevice;

    template <class... Values>
    void record(const char* call, const Values&... values) const;

    RecordingRenderDevice* device;
    bool isHandedBack = false;
};

/// A device without hardware that records, so that what draws can be tested without OpenGL. It makes vertex buffers and
/// textures and no other resource. Its destruction fails the test when one of them was not handed back.
class RecordingRenderDevice final : public RenderDevice {
public:
    ~RecordingRenderDevice() override;

    void makeCurrent(Window* window) override;
    RenderTarget* createRenderTarget(int width, int height, const std::list<TextureFormat>& formats) override;
    void destroyRenderTarget(RenderTarget* target) override;
    Shader* loadShader(ShaderType type, const std::string& fileName) override;
    Shader* createShader(ShaderType type, const std::string& name, const std::vector<char>& source) override;
    void destroyShader(Shader* shader) override;
    Program* createProgram(const std::list<Shader*>& shaders, const std::list<std::string>& attributes,
                           const std::list<std::string>& outputs) override;
    void destroyProgram(Program* program) override;
    Texture* createTexture(int width, int height, bool mipmaps) override;
    void destroyTexture(Texture* texture) override;
    VertexBuffer* createVertexBuffer(bool dynamic) override;
    void destroyVertexBuffer(VertexBuffer* buffer) override;
    void setViewport(int x, int y, int width, int height, int screenHeight) override;
    void setScissor(int x, int y, int width, int height, int screenHeight) override;
    void clear(bool color, bool depth, bool stencil) override;
    void enable(RenderFeature feature) override;
    void disable(RenderFeature feature) override;
    void bindRenderTarget(RenderTarget* target, TargetBinding binding) override;
    void useProgram(Program* program) override;
    void bindTexture(int unit, Texture* texture) override;
    void setDepthFunction(DepthFunction function) override;
    void setCullMode(CullMode mode) override;
    void setBlendMode(BlendMode mode) override;
    void setStencilFunction(CompareFunction function, unsigned char reference, unsigned char mask) override;
    void setStencilOperation(StencilOperation stencilFail, StencilOperation depthFail,
                             StencilOperation depthPass) override;
    RenderDevice& setUniform(const std::string& name, const Matrix4<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Matrix3<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Vector4<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Vector3<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Vector2<float>& value) override;
    RenderDevice& setUniform(const std::string& name, float value) override;
    RenderDevice& setUniform(const std::string& name, int value) override;
    void swap(Window* window) override;

    /// Each call as its name and its numbers, "createVertexBuffer 0" for example; pointers are left out, but a bound
    /// texture is told by its number: "bindTexture 0 texture 1", "bindTexture 0 null". The calls of textures are among
    /// them, "texture 1 update" for example, those of buffers are not. Handing a buffer or a texture back is not, as it
    /// must not need memory.
    std::vector<std::string> calls;

    /// Those that were not handed back, and those that were, in the order in which they were made or handed back.
    std::list<RecordingVertexBuffer> buffers;
    std::list<RecordingVertexBuffer> formerBuffers;
    std::list<RecordingTexture> textures;
    std::list<RecordingTexture> formerTextures;

    /// False: null is the answer to each creator, as of an inert device.
    bool makesResources = true;

    /// False: neither the device nor what it made writes anything down. Then it needs no memory, and what is counted is
    /// the library's.
    bool isRecording = true;

private:
    friend class RecordingVertexBuffer;
    friend class RecordingTexture;

    template <class... Values>
    void record(const char* call, const Values&... values);
    template <class Values>
    RenderDevice& recordUniform(const std::string& name, const char* type, const Values& value);
    template <class Resource, class Interface>
    static void handBack(std::list<Resource>& living, std::list<Resource>& former, Interface* resource);

    unsigned int textureCount = 0;
    const Texture* firstUnit = nullptr;
};
