#include "drawing_fixture.h"
#include "lit_scene.h"
#include "point_of_view.h"

#include <xum/geometry/mesh.h>
#include <xum/render/light.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

// A scene that spot lights shine upon. It is first drawn into textures of positions, normals and colours; then each
// light is added by a pass over the screen that looks its shadow map up. Rays say what has to be lit.

namespace {

constexpr int canvasSize = 96;
constexpr int shadowMapSize = 256;
constexpr float pi = 3.14159265f;

/// Of half a whole angle in degrees.
float cosineOfHalf(float angle)
{
    return std::cos(angle / 360.0f * pi);
}

/// A SpotLight's cone: bright up to half the inner angle, dark from half the outer one on.
float smoothStep(float from, float to, float value)
{
    const float t = std::clamp((value - from) / (to - from), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

SpotLight makeLight(const Vector3<float>& position, const Vector3<float>& target, const Vector3<float>& color)
{
    SpotLight light;
    light.position = position;
    light.direction = target - position;
    light.up = {0, 0, 1};
    light.color = color;
    light.innerAngle = 40;
    light.innerCosine = cosineOfHalf(40);
    light.outerAngle = 50;
    light.outerCosine = cosineOfHalf(50);
    return light;
}

/// How brightly the light shines on what is met; shadows apart.
float brightnessOf(const SpotLight& light, const lit_scene::Hit& hit)
{
    const Vector3<float> fromLight = PointOfView::normalized(hit.point - light.position);
    const float cone =
        smoothStep(light.outerCosine, light.innerCosine, dot(fromLight, PointOfView::normalized(light.direction)));
    return std::max(0.0f, -dot(fromLight, hit.normal)) * cone;
}

} // namespace

class SpotLightPixels : public DrawingTest {
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        makeScene();
        makePrograms();
        drawSurfaces();
        shadowMap = device->createRenderTarget(shadowMapSize, shadowMapSize, {depth32});
        atEnd([this] { device->destroyRenderTarget(shadowMap); });
        makeCanvas(canvasSize, canvasSize);
    }

    void makeScene()
    {
        const float s = lit_scene::floorSize;
        floor = makeBuffer();
        floor->setAttribute(VertexAttribute::Position,
                            std::vector<Vector3<float>>{{-s, -s, 0}, {s, -s, 0}, {s, s, 0}, {-s, s, 0}});
        floor->setAttribute(VertexAttribute::Normal, std::vector<Vector3<float>>(4, {0, 0, 1}));
        makeBox();
        const std::unique_ptr<Mesh> mesh(createSphereMesh(4, lit_scene::sphereRadius));
        sphere = mesh->createVertexBuffer(device);
        atEnd([this] { device->destroyVertexBuffer(sphere); });
    }

    /// Six sides of two triangles, counter-clockwise from outside.
    void makeBox()
    {
        std::vector<Vector3<float>> positions;
        std::vector<Vector3<float>> normals;
        const Vector3<float> middle = (lit_scene::box.minimum + lit_scene::box.maximum) / 2;
        const Vector3<float> half = (lit_scene::box.maximum - lit_scene::box.minimum) / 2;
        const Vector3<float> axes[] = {{half.x, 0, 0}, {0, half.y, 0}, {0, 0, half.z}};
        for (int side = 0; side < 6; ++side) {
            const Vector3<float> out = axes[side / 2] * (side % 2 == 0 ? 1.0f : -1.0f);
            const Vector3<float> a = axes[(side / 2 + 1) % 3];
            const Vector3<float> b = axes[(side / 2 + 2) % 3] * (side % 2 == 0 ? 1.0f : -1.0f);
            for (const Vector3<float>& corner : {-a - b, a - b, a + b, a + b, b - a, -a - b}) {
                positions.push_back(middle + out + corner);
                normals.push_back(PointOfView::normalized(out));
            }
        }
        box = makeBuffer();
        box->setAttribute(VertexAttribute::Position, positions);
        box->setAttribute(VertexAttribute::Normal, normals);
    }

    void makePrograms()
    {
        const std::string vertexSource = R"(#version 150
in vec3 position;
in vec3 normal;
uniform vec3 offset;
uniform mat4 matrix;
out vec3 worldPosition;
out vec3 worldNormal;
void main()
{
    worldPosition = position + offset;
    worldNormal = normal;
    gl_Position = vec4(worldPosition, 1.0) * matrix;
}
)";
        depthProgram = makeProgram(vertexSource, "#version 150\nvoid main() {}\n", {});
        surfaceProgram = makeProgram(vertexSource, R"(#version 150
in vec3 worldPosition;
in vec3 worldNormal;
uniform vec4 color;
out vec4 outputPosition;
out vec4 outputNormal;
out vec4 outputColor;
void main()
{
    outputPosition = vec4(worldPosition, 1.0);
    outputNormal = vec4(normalize(worldNormal), 0.0);
    outputColor = color;
}
)",
                                     {"outputPosition", "outputNormal", "outputColor"});
        lightProgram = makeProgram(plainVertexSource, R"(#version 150
uniform sampler2D positions;
uniform sampler2D normals;
uniform sampler2D colors;
uniform sampler2D shadowMap;
uniform mat4 lightMatrix;
uniform vec3 lightPosition;
uniform vec3 lightDirection;
uniform vec3 lightColor;
uniform float innerCosine;
uniform float outerCosine;
out vec4 outputColor;
void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    vec4 position = texelFetch(positions, pixel, 0);
    vec4 inLight = vec4(position.xyz, 1.0) * lightMatrix;
    vec3 inMap = inLight.xyz / inLight.w * 0.5 + 0.5;
    float isSeen = step(inMap.z - 0.0002, texture(shadowMap, inMap.xy).r);
    vec3 fromLight = normalize(position.xyz - lightPosition);
    float cone = smoothstep(outerCosine, innerCosine, dot(fromLight, lightDirection));
    float brightness = max(0.0, -dot(fromLight, texelFetch(normals, pixel, 0).xyz)) * cone * isSeen;
    outputColor = vec4(texelFetch(colors, pixel, 0).rgb * lightColor * brightness, position.w);
}
)");
    }

    /// Everything, with the current program and its matrix.
    void drawScene(const Matrix4<float>& matrix)
    {
        device->setUniform("matrix", matrix);
        device->setUniform("offset", Vector3<float>()).setUniform("color", colorOf(lit_scene::floorColor));
        floor->drawTriangleFan();
        device->setUniform("color", colorOf(lit_scene::boxColor));
        box->drawTriangles();
        device->setUniform("color", colorOf(lit_scene::sphereColor));
        device->setUniform("offset", lit_scene::sphereCenter);
        sphere->drawTriangles();
    }

    void drawSurfaces()
    {
        constexpr TextureFormat floats{TextureFormat::Float, 4};
        makeCanvas(canvasSize, canvasSize, {floats, floats, rgba8, depth32});
        surfaces = canvas;
        device->enable(RenderFeature::DepthTest);
        device->useProgram(surfaceProgram);
        drawScene(view.getMatrix());
        device->disable(RenderFeature::DepthTest);
    }

    /// Draws the light's shadow map and adds the light to the canvas.
    void shine(SpotLight& light)
    {
        Matrix4<float> matrix;
        device->bindRenderTarget(shadowMap, TargetBinding::Both);
        device->setViewport(0, 0, shadowMapSize, shadowMapSize, shadowMapSize);
        device->clear(false, true, false);
        device->enable(RenderFeature::DepthTest);
        device->useProgram(depthProgram);
        light.generateShadowMap(device, [&](const Matrix4<float>& viewProjection) {
            matrix = viewProjection;
            drawScene(viewProjection);
        });
        device->disable(RenderFeature::DepthTest);

        device->bindRenderTarget(canvas, TargetBinding::Both);
        device->setViewport(0, 0, canvasSize, canvasSize, canvasSize);
        device->useProgram(lightProgram);
        device->setUniform("offset", Vector3<float>());
        device->setUniform("positions", 0).setUniform("normals", 1).setUniform("colors", 2).setUniform("shadowMap", 3);
        device->setUniform("lightMatrix", matrix).setUniform("lightPosition", light.position);
        device->setUniform("lightDirection", PointOfView::normalized(light.direction));
        device->setUniform("lightColor", light.color);
        device->setUniform("innerCosine", light.innerCosine).setUniform("outerCosine", light.outerCosine);
        for (int unit = 0; unit < 3; ++unit) device->bindTexture(unit, surfaces->getTexture(unit));
        device->bindTexture(3, shadowMap->getDepthTexture());
        device->setBlendMode(BlendMode::Additive);
        light.draw(device);
        device->setBlendMode(BlendMode::None);
    }

    Pixel pixelOf(const Image& picture, const Vector3<float>& point) const
    {
        const Vector2<float> place = view.project(point);
        return picture.getPixel(static_cast<int>(place.x), static_cast<int>(place.y));
    }

    const PointOfView view{{0.5f, -7, 9}, {0, 0.25f, 0}, 42, canvasSize};
    VertexBuffer* floor = nullptr;
    VertexBuffer* box = nullptr;
    VertexBuffer* sphere = nullptr;
    Program* depthProgram = nullptr;
    Program* surfaceProgram = nullptr;
    Program* lightProgram = nullptr;
    RenderTarget* surfaces = nullptr;
    RenderTarget* shadowMap = nullptr;
};

namespace {

/// What rays say of one place of the picture.
struct Expectation {
    enum Kind { Unsure, Dark, InShadow, Lit };
    Kind kind = Unsure;
    Pixel color;
};

Expectation expectationAt(const PointOfView& view, const SpotLight& light, const Vector2<float>& place)
{
    const std::optional<lit_scene::Hit> hit = lit_scene::trace(view.getPosition(), view.getRay(place));
    if (!hit) return {Expectation::Dark, black};
    const float brightness = brightnessOf(light, *hit);
    if (brightness == 0) return {Expectation::Dark, black};
    if (!lit_scene::isSeenFrom(hit->point, light.position)) return {Expectation::InShadow, black};
    const auto shade = [&](unsigned char channel, float lightChannel) {
        return static_cast<unsigned char>(std::lround(static_cast<float>(channel) * lightChannel * brightness));
    };
    return {Expectation::Lit,
            {shade(hit->color.red, light.color.x), shade(hit->color.green, light.color.y),
             shade(hit->color.blue, light.color.z), 255}};
}

/// That of a whole pixel: unsure where its surroundings differ in kind.
Expectation expectationOf(const PointOfView& view, const SpotLight& light, int x, int y)
{
    const Vector2<float> middle(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
    const Expectation expected = expectationAt(view, light, middle);
    for (const float dy : {-1.5f, 0.0f, 1.5f})
        for (const float dx : {-1.5f, 0.0f, 1.5f}) {
            const Expectation beside = expectationAt(view, light, middle + Vector2<float>(dx, dy));
            if (beside.kind != expected.kind || !isNear(beside.color, expected.color, 60)) return {};
        }
    return expected;
}

} // namespace

TEST_F(SpotLightPixels, everyPixelIsLitAsRaysSay)
{
    SpotLight light = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {1, 0.9f, 0.8f});
    shine(light);
    const std::unique_ptr<Image> picture = drawnPicture();
    int counts[4] = {};
    for (int y = 0; y < canvasSize; ++y)
        for (int x = 0; x < canvasSize; ++x) {
            const Expectation expected = expectationOf(view, light, x, y);
            ++counts[expected.kind];
            if (expected.kind == Expectation::Unsure) continue;
            EXPECT_PRED2([](const Pixel& a, const Pixel& b) { return isNear(a, b, 8); }, picture->getPixel(x, y),
                         expected.color)
                << "at " << x << ", " << y;
        }
    EXPECT_GT(counts[Expectation::Dark], 1000);
    EXPECT_GT(counts[Expectation::InShadow], 200);
    EXPECT_GT(counts[Expectation::Lit], 2000);
    EXPECT_LT(counts[Expectation::Unsure], canvasSize * canvasSize / 4);
}

TEST_F(SpotLightPixels, shadowsFallAwayFromTheLight)
{
    SpotLight light = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {1, 1, 1});
    shine(light);
    const std::unique_ptr<Image> picture = drawnPicture();
    EXPECT_GT(pixelOf(*picture, {-1.25f, 0, 1.5f}).red, 100) << "the top of the box";
    EXPECT_GT(pixelOf(*picture, {-0.5f, -0.3f, 0.8f}).red, 100) << "its side towards the light";
    EXPECT_GT(pixelOf(*picture, {0, -1.5f, 0}).red, 100) << "the floor before both";
    EXPECT_EQ(pixelOf(*picture, {-3, 0.5f, 0}), black) << "behind the box";
    const Vector3<float> away = lit_scene::sphereCenter - light.position;
    const Vector3<float> shadowOfTheSphere = light.position + away * (light.position.z / -away.z);
    EXPECT_EQ(pixelOf(*picture, shadowOfTheSphere - Vector3<float>(0.6f, 0, 0)), black) << "not hidden by the sphere";
    EXPECT_EQ(pixelOf(*picture, {5, 3, 0}), black) << "beyond the cone";
}

TEST_F(SpotLightPixels, turnedUpVectorTurnsTheMapButNotTheLight)
{
    SpotLight light = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {1, 1, 1});
    shine(light);
    const std::unique_ptr<Image> upright = drawnPicture();
    device->clear(true, false, false);
    light.up = {1, 1, 0.2f};
    shine(light);
    const std::unique_ptr<Image> turned = drawnPicture();
    int different = 0;
    for (int i = 0; i < canvasSize * canvasSize; ++i)
        if (!isNear(upright->getPixels()[i], turned->getPixels()[i], 8)) ++different;
    EXPECT_LT(different, 150) << "but for the edges of shadows";
    EXPECT_EQ(turned->getPixel(0, 0), black);
}

TEST_F(SpotLightPixels, widerOfTheTwoAnglesIsMapped)
{
    SpotLight light = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {1, 1, 1});
    shine(light);
    const std::unique_ptr<Image> outer = drawnPicture();
    device->clear(true, false, false);
    std::swap(light.innerAngle, light.outerAngle); // the shader goes by the cosines
    shine(light);
    EXPECT_TRUE(isDrawn(*outer));
}

TEST_F(SpotLightPixels, lightsAddUp)
{
    SpotLight first = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {0.5f, 0, 0});
    SpotLight second = makeLight({-4, -3, 5}, {0, 0, 0.25f}, {0, 0, 0.5f});
    shine(first);
    const std::unique_ptr<Image> red = drawnPicture();
    device->clear(true, false, false);
    shine(second);
    const std::unique_ptr<Image> blue = drawnPicture();
    Image both = makeImage(canvasSize, canvasSize, black);
    for (int i = 0; i < canvasSize * canvasSize; ++i)
        both.getPixels()[i] = {red->getPixels()[i].red, 0, blue->getPixels()[i].blue, 255};
    shine(first);
    EXPECT_TRUE(isDrawn(both));
}

TEST_F(SpotLightPixels, screenPassOfALightCoversEachPixelOnce)
{
    Light light;
    usePlainProgram({0.2f, 0.4f, 0.6f, 1});
    device->setBlendMode(BlendMode::Additive);
    light.draw(device);
    EXPECT_TRUE(isDrawn(makeImage(canvasSize, canvasSize, {51, 102, 153, 255})));
}

TEST_F(SpotLightPixels, drawsTheGoldenPictureOfTwoLights)
{
    SpotLight warm = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {1, 0.85f, 0.6f});
    SpotLight cold = makeLight({-5, -2, 5}, {0.5f, 0, 0.25f}, {0.2f, 0.3f, 0.6f});
    fillCanvas({10, 10, 20, 255});
    shine(warm);
    shine(cold);
    EXPECT_TRUE(isGolden("spot_lights"));
}
