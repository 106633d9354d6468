#include "spot_lamp.h"

#include "application.h"
#include "dark_scene.h"
#include "picture.h"
#include "scene_renderer.h"
#include "world.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <cmath>

// A dark world in which the lamp alone shines.

namespace {

constexpr int side = 65; // odd: there is a pixel in the middle

class Lamp : public ::testing::Test {
protected:
    Application application = Application("lamp", {side, side});
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Assets assets = Assets(application.getRenderDevice(), data);

    Scene makeWorld()
    {
        Scene scene = makeCourtyard();
        addWorld(scene, application.getEngine(), data);
        darken(scene);
        return scene;
    }

    std::unique_ptr<Image> draw(SceneRenderer& renderer, const Viewpoint& camera)
    {
        return takePicture(application.getRenderDevice(), {side, side}, [&](RenderTarget* target) {
            renderer.draw(target, {side, side}, camera, DrawStyle::Solids);
        });
    }

    /// Seen from the lamp itself.
    Pixel middlePixel(SceneRenderer& renderer, const Vector3<float>& from, const Vector3<float>& towards)
    {
        renderer.getLamp().shine(from, towards);
        Viewpoint camera;
        camera.position = from + normalize(towards - from) * 0.5f; // not in the ball that the light comes from
        camera.lookAt(towards);
        return draw(renderer, camera)->getPixel(side / 2, side / 2);
    }
};

bool isDark(const Pixel& pixel)
{
    return pixel.red == 0 && pixel.green == 0 && pixel.blue == 0;
}

} // namespace

TEST_F(Lamp, isAtTheSamePlaceAtTheSameTimeAndElsewhereLater)
{
    SpotLamp lamp(application.getRenderDevice());
    const Vector3<float> start = lamp.getLight().position;
    lamp.setTime(2);
    const Vector3<float> later = lamp.getLight().position;
    EXPECT_GT(length(later - start), 3);
    lamp.setTime(5);
    lamp.setTime(2);
    EXPECT_EQ(lamp.getLight().position, later);
    lamp.setTime(0);
    EXPECT_EQ(lamp.getLight().position, start);
}

TEST_F(Lamp, shinesIntoTheCourtyardAtAnyTime)
{
    SpotLamp lamp(application.getRenderDevice());
    for (int i = 0; i < 100; ++i) {
        lamp.setTime(0.7f * static_cast<float>(i));
        const Vector3<float>& position = lamp.getLight().position;
        const Vector3<float>& direction = lamp.getLight().direction;
        EXPECT_NEAR(length(direction), 1, 1e-5f);
        ASSERT_LT(direction.z, -0.2f);
        const Vector3<float> ground = position + direction * (position.z / -direction.z);
        EXPECT_LT(length(ground), 12) << i;
    }
}

TEST_F(Lamp, cosinesAreThoseOfHalfTheAngles)
{
    SpotLamp lamp(application.getRenderDevice());
    const SpotLight& light = lamp.getLight();
    EXPECT_LT(light.innerAngle, light.outerAngle);
    EXPECT_NEAR(light.innerCosine, std::cos(light.innerAngle * 3.14159265f / 360), 1e-6f);
    EXPECT_NEAR(light.outerCosine, std::cos(light.outerAngle * 3.14159265f / 360), 1e-6f);
}

TEST_F(Lamp, lightsACircleWithTheShadowOfWhatIsInBetween)
{
    SceneRenderer renderer(application.getRenderDevice(), assets, makeFloorWithBoard());
    renderer.getLamp().shine({0, 0, 10}, {0, 0, 0}); // the board's shadow is from 2.5 to 3.5: 3 from the middle
    Viewpoint camera = {{0, 0, 4}, 0, -89.99f};      // below the board; a side of the picture shows 3.73
    EXPECT_FALSE(isDark(draw(renderer, camera)->getPixel(side / 2, side / 2)));
    const auto pixelAt = [&](float x, float y) {
        camera.position = {x, y, 4};
        return draw(renderer, camera)->getPixel(side / 2, side / 2);
    };
    EXPECT_FALSE(isDark(pixelAt(2.2f, 0)));
    EXPECT_TRUE(isDark(pixelAt(3, 0)));
    EXPECT_FALSE(isDark(pixelAt(3.8f, 0)));
    EXPECT_FALSE(isDark(pixelAt(-3, 0)));
    EXPECT_FALSE(isDark(pixelAt(0, 3)));
    const float edge = 10 * std::tan(renderer.getLamp().getLight().outerAngle * 3.14159265f / 360);
    EXPECT_FALSE(isDark(pixelAt(0, edge - 0.7f)));
    EXPECT_TRUE(isDark(pixelAt(0, edge + 0.1f)));
    EXPECT_TRUE(isDark(pixelAt(0, -edge - 0.1f)));
}

TEST_F(Lamp, floorIsLitWithoutGapsAlsoAtASlant)
{
    SceneRenderer renderer(application.getRenderDevice(), assets, makeFloorWithBoard());
    renderer.getLamp().shine({-6, 0, 2}, {6, 0, 0});
    for (int i = 0; i < 60; ++i) {
        const Viewpoint camera = {{-1.5f + 0.1f * static_cast<float>(i), 0.05f * static_cast<float>(i % 7), 4}, 0, -89};
        EXPECT_FALSE(isDark(draw(renderer, camera)->getPixel(side / 2, side / 2))) << i;
    }
}

TEST_F(Lamp, lightsLandLevelAndMeshes)
{
    SceneRenderer renderer(application.getRenderDevice(), assets, makeWorld());
    const std::pair<Vector3<float>, Vector3<float>> views[] = {
        {{40, -60, 20}, {50, -70, 0}},               // a meadow
        {{6.9f, 18, 3}, {6.9f, 22, 2}},              // the gatehouse's front
        {{-3.4f, -10, 1.5f}, {-3.4f, -13.2f, 0.7f}}, // an urn
    };
    for (const auto& [from, towards] : views) {
        renderer.setLamp(true);
        const Pixel lit = middlePixel(renderer, from, towards);
        EXPECT_GT(lit.red + lit.green + lit.blue, 100) << from.x;
        renderer.setLamp(false);
        EXPECT_TRUE(isDark(middlePixel(renderer, from, towards))) << from.x;
    }
}

TEST_F(Lamp, isSeenItselfWhileItShines)
{
    SceneRenderer renderer(application.getRenderDevice(), assets, makeFloorWithBoard());
    renderer.getLamp().shine({0, 5, 3}, {0, 0, 0});
    const Viewpoint camera = {{0, 0, 3}, 0, 0};
    EXPECT_GT(draw(renderer, camera)->getPixel(side / 2, side / 2).blue, 200);
    renderer.setLamp(false);
    EXPECT_TRUE(isDark(draw(renderer, camera)->getPixel(side / 2, side / 2)));
}

TEST_F(Lamp, itsMapTakesDrawsOfItsOwn)
{
    SceneRenderer renderer(application.getRenderDevice(), assets, makeFloorWithBoard());
    renderer.setCulling(false);
    const Viewpoint camera = {{0, 0, 4}, 0, 0};
    renderer.setLamp(false);
    draw(renderer, camera);
    EXPECT_EQ(renderer.countDraws(), 3u); // sky, floor and board
    renderer.setLamp(true);
    draw(renderer, camera);
    EXPECT_EQ(renderer.countDraws(), 6u); // both into the map, and the ball
    renderer.setCulling(true);
    renderer.getLamp().shine({0, 0, 10}, {0, 0, 20}); // where nothing is
    draw(renderer, {{0, 0, 4}, 0, 89});
    EXPECT_EQ(renderer.countDraws(), 2u); // the sky and the ball
}
