#include "picture.h"

#include "application.h"
#include "flight.h"
#include "scene_renderer.h"
#include "world.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <cstring>

// Leaving out what is not seen must not change a single pixel.

namespace {

class Culling : public ::testing::Test {
protected:
    const Vector2<int> size = {96, 54};
    Application application = Application("culling", {96, 54});
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Assets assets = Assets(application.getRenderDevice(), data);
    Scene scene = [this] {
        Scene made = makeCourtyard();
        addWorld(made, application.getEngine(), data);
        return made;
    }();
    SceneRenderer renderer = SceneRenderer(application.getRenderDevice(), assets, scene);

    std::vector<Pixel> draw(const Viewpoint& camera)
    {
        const auto picture = takePicture(application.getRenderDevice(), size, [&](RenderTarget* target) {
            renderer.draw(target, size, camera, DrawStyle::Solids);
        });
        std::vector<Pixel> pixels;
        for (int y = 0; y < size.y; ++y)
            for (int x = 0; x < size.x; ++x) pixels.push_back(picture->getPixel(x, y));
        return pixels;
    }

    void expectSamePicture(const Viewpoint& camera)
    {
        renderer.setCulling(false);
        const std::vector<Pixel> all = draw(camera);
        renderer.setCulling(true);
        EXPECT_TRUE(draw(camera) == all) << camera.position.x << " " << camera.position.y << " " << camera.position.z
                                         << " " << camera.yaw << " " << camera.pitch;
    }
};

} // namespace

TEST_F(Culling, changesNoPixelOnTheFixedPath)
{
    for (int i = 0; i < 20; ++i) {
        const float seconds = 2.0f * static_cast<float>(i);
        renderer.getLamp().setTime(seconds); // what throws shadows is culled as well
        expectSamePicture(cameraOnFixedPath(seconds));
    }
}

TEST_F(Culling, changesNoPixelInTheGatehouse)
{
    for (const Vector3<float>& place : {Vector3<float>(6, 24, 2), Vector3<float>(0, 25, 6.2f),
                                        Vector3<float>(-8, 26, 10.4f), Vector3<float>(3.8f, 25, 1.9f)})
        for (int turn = 0; turn < 6; ++turn)
            expectSamePicture({place, 60.0f * static_cast<float>(turn), 15.0f * static_cast<float>(turn % 3 - 1)});
}

TEST_F(Culling, changesNoPixelCloseToAndInsideOfWalls)
{
    for (int i = 0; i < 24; ++i) // through the wall of a tower, step by step
        expectSamePicture({{6.5f, 19.5f + 0.1f * static_cast<float>(i), 1.8f}, 15.0f * static_cast<float>(i), 5});
}

TEST_F(Culling, hidesWhatIsBehindWalls)
{
    draw({{6, 24, 2}, 0, 0});
    EXPECT_GT(renderer.getVisibility().hidden, 20u);
    draw({{0, -20, 1.6f}, 0, 0});
    EXPECT_GT(renderer.getVisibility().hidden, 20u);
}

TEST_F(Culling, occlusionViewChangesOnlyItsCorner)
{
    const Viewpoint camera = cameraOnFixedPath(0);
    const std::vector<Pixel> before = draw(camera);
    renderer.setOcclusionView(true);
    const std::vector<Pixel> after = draw(camera);
    renderer.setCulling(false);
    EXPECT_TRUE(draw(camera) == after); // the view works without culling as well
    int changed = 0;
    for (int y = 0; y < size.y; ++y) {
        for (int x = 0; x < size.x; ++x) {
            const auto i = static_cast<std::size_t>(y * size.x + x);
            const bool isInCorner = x < size.x / 3 && y >= size.y - size.y / 3;
            EXPECT_TRUE(isInCorner || before[i] == after[i]) << x << " " << y;
            if (!(before[i] == after[i])) ++changed;
        }
    }
    EXPECT_GT(changed, size.x * size.y / 12);
}

TEST_F(Culling, leavesOutMostOfTheLevelWhereItIsBehind)
{
    draw({{0, 10, 2}, 180, 0});
    EXPECT_GT(renderer.getVisibility().culled, renderer.getVisibility().drawn);
    EXPECT_GT(renderer.getVisibility().drawn, 0u);
}
