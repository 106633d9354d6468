// Drawing in two steps: the scene goes into a texture, passes over the screen make it glow. What is brighter than white
// is blurred, once sideways and once upwards, and added.
#include "camera_view.h"
#include "example_run.h"
#include "text_program.h"

namespace {

const std::string sceneVertexText = R"(#version 150
in vec3 position;
in vec3 normal;
uniform vec3 offset;
uniform mat4 viewProjection;
out vec3 direction;
void main()
{
    direction = normal;
    gl_Position = vec4(position + offset, 1.0) * viewProjection;
}
)";
const std::string sceneFragmentText = R"(#version 150
in vec3 direction;
uniform vec3 surface;
out vec4 color;
void main() { color = vec4(surface * (0.15 + 0.85 * max(dot(normalize(direction), vec3(-0.4, -0.5, 0.77)), 0.0)), 1.0); }
)";

const std::string screenVertexText = R"(#version 150
in vec3 position;
out vec2 place;
void main()
{
    place = position.xy * 0.5 + 0.5; // what was rendered has its bottom row at v = 0
    gl_Position = vec4(position, 1.0);
}
)";
const std::string blurText = R"(#version 150
in vec2 place;
uniform sampler2D picture;
uniform vec2 stride;
uniform float threshold;
out vec4 color;
void main()
{
    vec3 sum = vec3(0.0);
    float weights = 0.0;
    for (int i = -12; i <= 12; ++i) {
        float weight = exp(-float(i * i) / 40.0);
        sum += max(texture(picture, place + stride * float(i)).rgb - threshold, 0.0) * weight;
        weights += weight;
    }
    color = vec4(sum / weights, 1.0);
}
)";
const std::string finishText = R"(#version 150
in vec2 place;
uniform sampler2D picture;
uniform sampler2D glow;
out vec4 color;
void main()
{
    vec3 light = texture(picture, place).rgb + 1.6 * texture(glow, place).rgb;
    float vignette = 1.0 - 0.5 * dot(place - 0.5, place - 0.5) * 2.0;
    color = vec4(pow((1.0 - exp(-light * 1.3)) * vignette, vec3(1.0 / 1.8)), 1.0);
}
)";

// Draws into a target, or the window for null, what the program makes of the pixels that it looks up.
void beginPass(RenderDevice* device, RenderTarget* target, const Vector2<int>& size, Program* program)
{
    device->bindRenderTarget(target, TargetBinding::Draw);
    device->setViewport(0, 0, size.x, size.y, size.y);
    device->disable(RenderFeature::DepthTest);
    device->useProgram(program);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Post process", 960, 540, false, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    // Half floats hold what is brighter than 1. The glow is soft: a quarter of the size will do.
    const Vector2<int> size = window->getSize();
    const Vector2<int> small(size.x / 4, size.y / 4);
    const TextureFormat bright(TextureFormat::HalfFloat, 4);
    RenderTarget* scene = device->createRenderTarget(size.x, size.y, {bright, TextureFormat(TextureFormat::Depth, 1)});
    RenderTarget* sideways = device->createRenderTarget(small.x, small.y, {bright});
    RenderTarget* glow = device->createRenderTarget(small.x, small.y, {bright});
    for (RenderTarget* target : {scene, sideways, glow}) target->getTexture(0)->setFilter(TextureFilter::Linear);

    const std::unique_ptr<Mesh> mesh(createSphereMesh(4, 0.55f));
    VertexBuffer* ball = mesh->createVertexBuffer(device);
    Program* sceneProgram = makeProgram(device, sceneVertexText, sceneFragmentText);
    Program* blur = makeProgram(device, screenVertexText, blurText);
    Program* finish = makeProgram(device, screenVertexText, finishText);
    while (run.update(engine)) {
        device->bindRenderTarget(scene, TargetBinding::Draw);
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->enable(RenderFeature::DepthTest);
        device->clear(true, true, false);
        device->useProgram(sceneProgram);
        device->setUniform("viewProjection", viewProjection(lookAt({-5, -9, 3}, {-0.8f, 0, 0}, size)));
        for (int i = 0; i < 60; ++i) { // a double helix; every fifth ball shines
            const int pair = i / 2;
            const float along = static_cast<float>(pair) - 14.5f;
            const float angle = along * 0.42f + run.getSeconds() + (i % 2 == 0 ? 0.0f : 3.1416f);
            const bool shines = i % 5 == 0;
            const float hue = static_cast<float>(i) / 60;
            const Vector3<float> color(0.9f - 0.7f * hue, 0.35f + 0.3f * hue, 0.2f + 0.8f * hue);
            device->setUniform("offset", Vector3<float>(along * 0.6f, 2 * std::cos(angle), 2 * std::sin(angle)));
            device->setUniform("surface", color * (shines ? 6.0f : 0.8f));
            ball->drawTriangles();
        }

        beginPass(device, sideways, small, blur);
        device->bindTexture(0, scene->getTexture(0));
        device->setUniform("stride", Vector2<float>(1.0f / static_cast<float>(small.x), 0))
            .setUniform("threshold", 1.0f);
        drawFullscreenQuad(device);
        beginPass(device, glow, small, blur);
        device->bindTexture(0, sideways->getTexture(0));
        device->setUniform("stride", Vector2<float>(0, 1.0f / static_cast<float>(small.y)))
            .setUniform("threshold", 0.0f);
        drawFullscreenQuad(device);

        beginPass(device, nullptr, size, finish);
        device->bindTexture(0, scene->getTexture(0));
        device->bindTexture(1, glow->getTexture(0));
        device->setUniform("picture", 0).setUniform("glow", 1);
        drawFullscreenQuad(device);
        run.swap(device, window);
    }
    for (Program* program : {sceneProgram, blur, finish}) device->destroyProgram(program);
    for (RenderTarget* target : {scene, sideways, glow}) device->destroyRenderTarget(target); // with their textures
    device->destroyVertexBuffer(ball);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
