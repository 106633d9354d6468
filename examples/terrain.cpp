// A landscape: a flat grid that a function shapes and that is smoothed afterwards, drawn solid and as its grid of
// lines.
#include "camera_view.h"
#include "example_run.h"
#include "text_program.h"

namespace {

// A terrain has no normals: the program takes them from how the surface goes on to the neighbouring pixels.
const std::string vertexText = R"(#version 150
in vec3 position;
uniform mat4 viewProjection;
uniform float lift;
out vec3 place;
void main()
{
    place = position;
    gl_Position = vec4(position + vec3(0.0, 0.0, lift), 1.0) * viewProjection;
}
)";
const std::string fragmentText = R"(#version 150
in vec3 place;
uniform vec3 eye;
uniform vec4 lines; // alpha 0: the solid land
out vec4 color;
void main()
{
    const vec3 haze = vec3(0.72, 0.80, 0.88);
    vec3 normal = normalize(cross(dFdx(place), dFdy(place)));
    vec3 ground = mix(vec3(0.30, 0.42, 0.18), vec3(0.55, 0.50, 0.32), smoothstep(1.0, 5.0, place.z));
    ground = mix(ground, vec3(0.45, 0.42, 0.40), smoothstep(0.85, 0.65, normal.z));
    ground = mix(ground, vec3(0.95, 0.96, 1.00), smoothstep(7.5, 9.0, place.z));
    ground = mix(vec3(0.76, 0.70, 0.52), ground, smoothstep(-0.6, 0.4, place.z));
    vec3 light = vec3(0.30, 0.34, 0.42) + vec3(0.95, 0.86, 0.70) * max(dot(normal, vec3(-0.62, -0.32, 0.72)), 0.0);
    float distanceFade = 1.0 - exp(-length(place - eye) * 0.008);
    color = lines.a > 0.0 ? lines : vec4(mix(ground * light, haze, distanceFade), 1.0);
}
)";
const std::string skyText = R"(#version 150
uniform float height;
out vec4 color;
void main() { color = vec4(mix(vec3(0.80, 0.86, 0.90), vec3(0.30, 0.50, 0.75), gl_FragCoord.y / height), 1.0); }
)";

// Called once for each vertex; x and y count columns and rows. The place may move sideways, too.
Vector3<float> shape(int x, int y, const Vector3<float>& position)
{
    const float hills = 2.6f * std::sin(position.x * 0.16f) * std::cos(position.y * 0.13f) + 0.02f * position.y;
    const float peak =
        11 * std::exp(-((position.x - 9) * (position.x - 9) + (position.y - 16) * (position.y - 16)) / 90);
    const float roughness = static_cast<float>(randomByte(x * 31 + y * 57)) / 255 - 0.5f; // the same in each run
    return {position.x, position.y, hills + peak + roughness * (0.6f + peak * 0.25f)};
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Terrain", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    Terrain terrain(50, 50, 1); // 101 x 101 vertices around the origin, 1 apart
    terrain.modify(shape, 1);   // smoothed once
    const Box& box = terrain.getBoundingBox();
    std::cout << terrain.getPositions().size() << " vertices, heights from " << std::lround(box.minimum.z) << " to "
              << std::lround(box.maximum.z) << '\n';
    VertexBuffer* land = terrain.createVertexBuffer(device);
    VertexBuffer* grid = terrain.createDebugVertexBuffer(device); // lines

    Program* program = makeProgram(device, vertexText, fragmentText);
    Program* skyProgram = makeProgram(
        device, "#version 150\nin vec3 position;\nvoid main() { gl_Position = vec4(position, 1.0); }", skyText);
    while (run.update(engine)) {
        const Vector2<int> size = window->getSize();
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->setCullMode(CullMode::None);
        device->setBlendMode(BlendMode::Alpha);
        device->disable(RenderFeature::DepthTest);
        device->clear(true, true, false);
        device->useProgram(skyProgram);
        device->setUniform("height", static_cast<float>(size.y));
        drawFullscreenQuad(device);

        const float angle = run.getSeconds() * 0.1f;
        const Vector3<float> eye(44 * std::sin(angle), -44 * std::cos(angle), 15);
        device->enable(RenderFeature::DepthTest);
        device->useProgram(program);
        device->setUniform("viewProjection", viewProjection(lookAt(eye, {0, 4, 1}, size))).setUniform("eye", eye);
        device->setUniform("lines", Vector4<float>()).setUniform("lift", 0.0f);
        land->drawTriangles();
        // Just above the land, or the two would fight for the pixels.
        device->setUniform("lines", Vector4<float>(0.1f, 0.15f, 0.1f, 0.25f)).setUniform("lift", 0.03f);
        grid->drawLines();
        run.swap(device, window);
    }
    device->destroyVertexBuffer(land);
    device->destroyVertexBuffer(grid);
    device->destroyProgram(program);
    device->destroyProgram(skyProgram);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
