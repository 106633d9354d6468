// Spot lights with shadows. The scene is drawn once into textures that hold places and normals; then each
// light draws its shadow map and adds what it lights by one pass over the screen.
#include "camera_view.h"
#include "example_run.h"
#include "text_program.h"

namespace {

const std::string sceneVertexText = R"(#version 150
in vec3 position;
in vec3 normal;
uniform vec3 offset;
uniform float size;
uniform mat4 viewProjection;
out vec3 place;
out vec3 direction;
void main()
{
    place = position * size + offset;
    direction = normal;
    gl_Position = vec4(place, 1.0) * viewProjection;
}
)";
const std::string sceneFragmentText = R"(#version 150
in vec3 place;
in vec3 direction;
out vec4 placeOut;
out vec4 normalOut;
void main()
{
    placeOut = vec4(place, 1.0);
    normalOut = vec4(normalize(direction), 0.0);
}
)";
const std::string depthFragmentText = "#version 150\nvoid main() {}\n"; // a shadow map needs the depth alone

// Light::draw covers the screen: the program knows its pixel and looks up what is there.
const std::string screenVertexText = R"(#version 150
in vec3 position;
void main() { gl_Position = vec4(position, 1.0); }
)";
const std::string lightFragmentText = R"(#version 150
uniform sampler2D places;
uniform sampler2D normals;
uniform sampler2D shadowMap;
uniform mat4 lightMatrix;
uniform vec3 lightColor;
uniform vec3 lightPosition;
uniform vec3 lightDirection;
uniform float innerCosine;
uniform float outerCosine;
out vec4 color;
float shadow(vec3 place, vec3 normal)
{
    vec4 clip = vec4(place + normal * 0.03, 1.0) * lightMatrix; // a little above the surface, which shades itself else
    vec3 map = clip.xyz / clip.w * 0.5 + 0.5;
    vec2 texel = 1.0 / vec2(textureSize(shadowMap, 0));
    float lit = 0.0;
    for (int x = -1; x <= 1; ++x)
        for (int y = -1; y <= 1; ++y) lit += step(map.z - 0.00002, texture(shadowMap, map.xy + texel * vec2(x, y)).r);
    return lit / 9.0;
}
void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    vec4 place = texelFetch(places, pixel, 0);
    vec3 normal = texelFetch(normals, pixel, 0).xyz;
    vec3 way = lightPosition - place.xyz;
    float facing = max(dot(normal, normalize(way)), 0.0);
    float cone = smoothstep(outerCosine, innerCosine, dot(normalize(-way), lightDirection));
    vec3 light = lightColor * facing * cone * shadow(place.xyz, normal);
    color = vec4(light * place.w, 1.0);
}
)";
const std::string ambientFragmentText = R"(#version 150
uniform sampler2D normals;
out vec4 color;
void main() { color = vec4(vec3(0.05, 0.06, 0.09) * (1.5 + texelFetch(normals, ivec2(gl_FragCoord.xy), 0).z), 1.0); }
)";

const int mapSize = 1024;
const float urnSize = 2.4f; // its foot is at z = 0

struct Scene {
    VertexBuffer* floor;
    VertexBuffer* urn;
    VertexBuffer* ball;

    Scene(RenderDevice* device, Mesh& urnMesh) : floor(device->createVertexBuffer(false))
    {
        floor->setAttribute(VertexAttribute::Position,
                            std::vector<Vector3<float>>{{-30, -30, 0}, {30, -30, 0}, {30, 30, 0}, {-30, 30, 0}});
        floor->setAttribute(VertexAttribute::Normal, std::vector<Vector3<float>>(4, {0, 0, 1}));
        floor->setIndices({0, 1, 2, 0, 2, 3});
        urnMesh.calculateFaceNormals();
        urnMesh.calculateVertexNormals();
        urn = urnMesh.createVertexBuffer(device);
        ball = std::unique_ptr<Mesh>(createSphereMesh(4, 0.6f))->createVertexBuffer(device);
    }

    // The same for the eye and for each light: only the program and the matrix differ.
    void draw(RenderDevice* device, const Matrix4<float>& matrix) const
    {
        device->setUniform("viewProjection", matrix).setUniform("size", 1.0f).setUniform("offset", Vector3<float>());
        floor->drawTriangles();
        for (int i = 0; i < 7; ++i) {
            const float angle = static_cast<float>(i) * 0.8976f;
            device->setUniform("offset", Vector3<float>(3.2f * std::sin(angle), 3.2f * std::cos(angle), 0.6f));
            ball->drawTriangles();
        }
        device->setUniform("size", urnSize).setUniform("offset", Vector3<float>());
        urn->drawTriangles();
    }
};

void drawShadowMap(RenderDevice* device, RenderTarget* shadowMap, SpotLight& light, const Scene& scene)
{
    device->bindRenderTarget(shadowMap, TargetBinding::Draw);
    device->setViewport(0, 0, mapSize, mapSize, mapSize);
    device->enable(RenderFeature::DepthTest);
    device->clear(false, true, false);
    light.generateShadowMap(device, [&](const Matrix4<float>& matrix) { scene.draw(device, matrix); });
}

// Begins a pass over the window that adds to what is there.
void beginAdding(RenderDevice* device, const Vector2<int>& size, RenderTarget* surfaces)
{
    device->bindRenderTarget(nullptr, TargetBinding::Draw);
    device->setViewport(0, 0, size.x, size.y, size.y);
    device->disable(RenderFeature::DepthTest);
    device->setBlendMode(BlendMode::Additive);
    device->bindTexture(0, surfaces->getTexture(0));
    device->bindTexture(1, surfaces->getTexture(1));
    device->setUniform("places", 0).setUniform("normals", 1);
}

void addLight(RenderDevice* device, RenderTarget* shadowMap, SpotLight& light)
{
    device->bindTexture(2, shadowMap->getDepthTexture());
    device->setUniform("shadowMap", 2).setUniform("lightMatrix", light.calculateMatrix());
    device->setUniform("lightColor", light.color).setUniform("lightPosition", light.position);
    device->setUniform("lightDirection", light.direction);
    // The shadow map is as wide as the whole outer angle, so the cone reaches half of it to each side.
    device->setUniform("innerCosine", std::cos(light.innerAngle / 2 / degreesPerRadian));
    device->setUniform("outerCosine", std::cos(light.outerAngle / 2 / degreesPerRadian));
    light.draw(device);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window =
        engine != nullptr ? engine->createWindow("Spot lights with shadows", 960, 540, false, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    const std::unique_ptr<Mesh> urn(loadMesh(defaultDataRoot() + "meshes/urn.mesh"));
    if (!urn) return fail("There is no mesh " + defaultDataRoot() + "meshes/urn.mesh");
    const Scene scene(device, *urn);
    const Vector2<int> size = window->getSize();
    const TextureFormat floats(TextureFormat::Float, 4);
    const TextureFormat depth(TextureFormat::Depth, 1);
    RenderTarget* surfaces = device->createRenderTarget(size.x, size.y, {floats, floats, depth});
    RenderTarget* shadowMap = device->createRenderTarget(mapSize, mapSize, {depth}); // of one light after another
    Program* sceneProgram = makeProgram(device, sceneVertexText, sceneFragmentText, {"placeOut", "normalOut"});
    Program* depthProgram = makeProgram(device, sceneVertexText, depthFragmentText);
    Program* ambientProgram = makeProgram(device, screenVertexText, ambientFragmentText);
    Program* lightProgram = makeProgram(device, screenVertexText, lightFragmentText);

    SpotLight lights[3];
    const Vector3<float> colors[] = {{0.75f, 0.55f, 0.30f}, {0.18f, 0.38f, 0.70f}, {0.50f, 0.18f, 0.32f}};
    while (run.update(engine)) {
        device->bindRenderTarget(nullptr, TargetBinding::Draw);
        device->clear(true, true, false);
        device->bindRenderTarget(surfaces, TargetBinding::Draw);
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->setBlendMode(BlendMode::None);
        device->enable(RenderFeature::DepthTest);
        device->clear(true, true, false);
        device->useProgram(sceneProgram);
        scene.draw(device, viewProjection(lookAt({0, -10, 6}, {0, 0, 0.6f}, size)));

        device->useProgram(ambientProgram);
        beginAdding(device, size, surfaces);
        drawFullscreenQuad(device);
        for (int i = 0; i < 3; ++i) {
            SpotLight& light = lights[i];
            const float angle = run.getSeconds() * 0.4f + 2.1f * static_cast<float>(i) + 0.5f;
            light.color = colors[i];
            light.position = {6.5f * std::sin(angle), 6.5f * std::cos(angle), 5.5f};
            light.direction = normalize(Vector3<float>(0, 0, 0.5f) - light.position);
            light.up = {0, 0, 1};
            device->useProgram(depthProgram);
            drawShadowMap(device, shadowMap, light, scene);
            device->useProgram(lightProgram);
            beginAdding(device, size, surfaces);
            addLight(device, shadowMap, light);
        }
        run.swap(device, window);
    }
    for (Program* program : {sceneProgram, depthProgram, ambientProgram, lightProgram}) device->destroyProgram(program);
    for (RenderTarget* target : {surfaces, shadowMap}) device->destroyRenderTarget(target); // with their textures
    for (VertexBuffer* buffer : {scene.floor, scene.urn, scene.ball}) device->destroyVertexBuffer(buffer);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
