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

struct Scene {
    VertexBuffer* urn;
    VertexBuffer* ball;
    VertexBuffer* floor;
    float urnSize;
    float urnFoot;

    // The same for the eye and for each light: only the program and the matrix differ.
    void draw(RenderDevice* device, const Matrix4<float>& matrix) const
    {
        device->setUniform("viewProjection", matrix);
        device->setUniform("offset", Vector3<float>()).setUniform("size", 1.0f);
        floor->drawTriangles();
        device->setUniform("offset", Vector3<float>(0, 0, -urnFoot * urnSize)).setUniform("size", urnSize);
        urn->drawTriangles();
        for (int i = 0; i < 7; ++i) {
            const float angle = static_cast<float>(i) * 0.8976f;
            device->setUniform("offset", Vector3<float>(3.2f * std::sin(angle), 3.2f * std::cos(angle), 0.6f));
            device->setUniform("size", 0.6f);
            ball->drawTriangles();
        }
    }
};

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
    urn->calculateFaceNormals();
    urn->calculateVertexNormals();
    const std::unique_ptr<Mesh> ball(createSphereMesh(4, 1));
    const Box box = urn->calculateBoundingBox();
    VertexBuffer* floor = device->createVertexBuffer(false);
    floor->setAttribute(VertexAttribute::Position,
                        std::vector<Vector3<float>>{{-30, -30, 0}, {30, -30, 0}, {30, 30, 0}, {-30, 30, 0}});
    floor->setAttribute(VertexAttribute::Normal, std::vector<Vector3<float>>(4, {0, 0, 1}));
    floor->setIndices({0, 1, 2, 0, 2, 3});
    const Scene scene = {urn->createVertexBuffer(device), ball->createVertexBuffer(device), floor,
                         2.6f / (box.maximum.z - box.minimum.z), box.minimum.z};

    const Vector2<int> size = window->getSize();
    const int mapSize = 1024;
    const TextureFormat floats(TextureFormat::Float, 4);
    RenderTarget* surfaces =
        device->createRenderTarget(size.x, size.y, {floats, floats, TextureFormat(TextureFormat::Depth, 1)});
    RenderTarget* shadowMap = device->createRenderTarget(mapSize, mapSize, {TextureFormat(TextureFormat::Depth, 1)});
    Program* sceneProgram = makeProgram(device, sceneVertexText, sceneFragmentText, {"placeOut", "normalOut"});
    Program* depthProgram = makeProgram(device, sceneVertexText, depthFragmentText);
    Program* ambientProgram = makeProgram(device, screenVertexText, ambientFragmentText);
    Program* lightProgram = makeProgram(device, screenVertexText, lightFragmentText);

    SpotLight lights[3];
    const Vector3<float> colors[] = {{0.75f, 0.55f, 0.30f}, {0.18f, 0.38f, 0.70f}, {0.50f, 0.18f, 0.32f}};
    while (run.update(engine)) {
        device->setBlendMode(BlendMode::None);
        device->enable(RenderFeature::DepthTest);
        device->bindRenderTarget(surfaces, TargetBinding::Draw);
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->clear(true, true, false);
        device->useProgram(sceneProgram);
        scene.draw(device, viewProjection(lookAt({0, -10, 6}, {0, 0, 0.6f}, size)));

        device->bindRenderTarget(nullptr, TargetBinding::Draw);
        device->clear(true, true, false);
        device->disable(RenderFeature::DepthTest);
        device->useProgram(ambientProgram);
        device->bindTexture(0, surfaces->getTexture(1));
        drawFullscreenQuad(device);

        for (int i = 0; i < 3; ++i) {
            SpotLight& light = lights[i];
            const float angle = run.getSeconds() * 0.4f + 2.1f * static_cast<float>(i) + 0.5f;
            light.color = colors[i];
            light.position = {6.5f * std::sin(angle), 6.5f * std::cos(angle), 5.5f};
            light.direction = normalize(Vector3<float>(0, 0, 0.5f) - light.position);
            light.up = {0, 0, 1};

            // One map serves all lights, one after another.
            device->setBlendMode(BlendMode::None);
            device->enable(RenderFeature::DepthTest);
            device->bindRenderTarget(shadowMap, TargetBinding::Draw);
            device->setViewport(0, 0, mapSize, mapSize, mapSize);
            device->clear(false, true, false);
            device->useProgram(depthProgram);
            light.generateShadowMap(device, [&](const Matrix4<float>& matrix) { scene.draw(device, matrix); });

            device->bindRenderTarget(nullptr, TargetBinding::Draw);
            device->setViewport(0, 0, size.x, size.y, size.y);
            device->disable(RenderFeature::DepthTest);
            device->setBlendMode(BlendMode::Additive);
            device->useProgram(lightProgram);
            device->bindTexture(0, surfaces->getTexture(0));
            device->bindTexture(1, surfaces->getTexture(1));
            device->bindTexture(2, shadowMap->getDepthTexture());
            device->setUniform("places", 0).setUniform("normals", 1).setUniform("shadowMap", 2);
            device->setUniform("lightMatrix", light.calculateMatrix());
            device->setUniform("lightColor", light.color).setUniform("lightPosition", light.position);
            device->setUniform("lightDirection", light.direction);
            // The shadow map is as wide as the whole outer angle, so the cone reaches half of it to each side.
            device->setUniform("innerCosine", std::cos(light.innerAngle / 2 / degreesPerRadian));
            device->setUniform("outerCosine", std::cos(light.outerAngle / 2 / degreesPerRadian));
            light.draw(device);
        }
        run.swap(device, window);
    }
    for (Program* program : {sceneProgram, depthProgram, ambientProgram, lightProgram}) device->destroyProgram(program);
    device->destroyRenderTarget(surfaces); // with their textures
    device->destroyRenderTarget(shadowMap);
    for (VertexBuffer* buffer : {scene.urn, scene.ball, scene.floor}) device->destroyVertexBuffer(buffer);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
