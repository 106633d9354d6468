#include "lit_scene_fixture.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

// Spot lights and their shadows. Rays say what has to be lit.

namespace {

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

class SpotLightPixels : public LitSceneTest {};

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
    EXPECT_GT(pixelOf(*picture, view, {-1.25f, 0, 1.5f}).red, 100) << "the top of the box";
    EXPECT_GT(pixelOf(*picture, view, {-0.5f, -0.3f, 0.8f}).red, 100) << "its side towards the light";
    EXPECT_GT(pixelOf(*picture, view, {0, -1.5f, 0}).red, 100) << "the floor before both";
    EXPECT_EQ(pixelOf(*picture, view, {-3, 0.5f, 0}), black) << "behind the box";
    const Vector3<float> away = lit_scene::sphereCenter - light.position;
    const Vector3<float> shadowOfTheSphere = light.position + away * (light.position.z / -away.z);
    EXPECT_EQ(pixelOf(*picture, view, shadowOfTheSphere - Vector3<float>(0.6f, 0, 0)), black)
        << "not hidden by the sphere";
    EXPECT_EQ(pixelOf(*picture, view, {5, 3, 0}), black) << "beyond the cone";
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

TEST_F(SpotLightPixels, lightSeesWhatACameraInItsPlaceSees)
{
    SpotLight light = makeLight({3.5f, -4, 6}, {0, 0, 0.25f}, {1, 1, 1});
    const PointOfView camera(light.position, {0, 0, 0.25f}, light.outerAngle, canvasSize);
    device->enable(RenderFeature::DepthTest);
    device->setCullMode(CullMode::Back);
    const auto drawColors = [this](const Matrix4<float>& matrix) {
        makeCanvas(canvasSize, canvasSize, {rgba8, depth32});
        device->useProgram(colorProgram);
        drawScene(matrix);
        return drawnPicture();
    };
    const std::unique_ptr<Image> seenByCamera = drawColors(camera.getMatrix());
    std::unique_ptr<Image> seenByLight;
    light.generateShadowMap(device, [&](const Matrix4<float>& matrix) { seenByLight = drawColors(matrix); });
    int different = 0;
    for (int i = 0; i < canvasSize * canvasSize; ++i)
        if (seenByLight->getPixels()[i] != seenByCamera->getPixels()[i]) ++different;
    EXPECT_LT(different, 20) << "but for edges";
    EXPECT_EQ(pixelOf(*seenByLight, camera, lit_scene::sphereCenter), lit_scene::sphereColor);
    EXPECT_EQ(pixelOf(*seenByLight, camera, {-1.25f, 0, 1.5f}), lit_scene::boxColor);
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
