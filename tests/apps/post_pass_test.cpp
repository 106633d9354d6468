#include "post_pass.h"

#include "application.h"
#include "assets.h"
#include "picture.h"

#include <xum/render/image.h>
#include <xum/render/quad.h>
#include <xum/render/render_target.h>
#include <xum/render/texture.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int side = 15; // odd: there is a pixel in the middle

class PostPassTest : public ::testing::Test {
protected:
    /// A picture of one colour after the pass.
    std::unique_ptr<Image> show(const Vector4<float>& color, float brightness)
    {
        RenderDevice& device = application.getRenderDevice();
        return takePicture(device, {side, side}, [&](RenderTarget* target) {
            device.bindRenderTarget(pass.getTarget({side, side}), TargetBinding::Both);
            device.setViewport(0, 0, side, side, side);
            device.clear(true, true, false);
            device.useProgram(assets.getFlatProgram());
            device.setUniform("world", Matrix4<float>())
                .setUniform("viewProjection", Matrix4<float>())
                .setUniform("flatColor", color);
            drawFullscreenQuad(&device);
            device.bindRenderTarget(target, TargetBinding::Both);
            pass.draw(brightness, draws);
        });
    }

    Application application = Application("post pass", {side, side});
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Assets assets = Assets(application.getRenderDevice(), data);
    PostPass pass = PostPass(application.getRenderDevice(), assets.getFilmProgram());
    DrawCounter draws;
};

/// In the middle: a third of the way from the value itself to an S-shaped curve.
int withContrast(int value)
{
    const float seen = static_cast<float>(value) / 255;
    return static_cast<int>(std::lround(255 * (0.65f * seen + 0.35f * seen * seen * (3 - 2 * seen))));
}

} // namespace

TEST_F(PostPassTest, middleHasMoreContrast)
{
    const auto picture = show({64 / 255.0f, 128 / 255.0f, 192 / 255.0f, 1}, 1);
    const Pixel middle = picture->getPixel(side / 2, side / 2);
    EXPECT_NEAR(middle.red, withContrast(64), 1);
    EXPECT_NEAR(middle.green, withContrast(128), 1);
    EXPECT_NEAR(middle.blue, withContrast(192), 1);
    EXPECT_LT(middle.red, 64);
    EXPECT_GT(middle.blue, 192);
}

TEST_F(PostPassTest, cornersAreDarkerAndAllAlike)
{
    const auto picture = show({1, 1, 1, 1}, 1);
    EXPECT_EQ(picture->getPixel(side / 2, side / 2), (Pixel{255, 255, 255, 255}));
    const Pixel corner = picture->getPixel(0, 0);
    EXPECT_NEAR(corner.red, 194, 1); // 255 * (1 - 0.55 * 2 * (7 / 15)^2)
    EXPECT_EQ(picture->getPixel(side - 1, 0), corner);
    EXPECT_EQ(picture->getPixel(0, side - 1), corner);
    EXPECT_EQ(picture->getPixel(side - 1, side - 1), corner);
}

TEST_F(PostPassTest, brightnessFadesToBlack)
{
    EXPECT_NEAR(show({1, 1, 1, 1}, 0.5f)->getPixel(side / 2, side / 2).red, 128, 1);
    EXPECT_EQ(show({1, 1, 1, 1}, 0)->getPixel(side / 2, side / 2), (Pixel{0, 0, 0, 255}));
}

TEST_F(PostPassTest, pictureStaysUpright)
{
    RenderDevice& device = application.getRenderDevice();
    const auto picture = takePicture(device, {side, side}, [&](RenderTarget* target) {
        device.bindRenderTarget(pass.getTarget({side, side}), TargetBinding::Both);
        device.setViewport(0, 0, side, side, side);
        device.clear(true, true, false);
        device.useProgram(assets.getFlatProgram());
        device.setUniform("world", Matrix4<float>())
            .setUniform("viewProjection", Matrix4<float>())
            .setUniform("flatColor", Vector4<float>(1, 1, 1, 1));
        drawQuad(&device, -1, 0, 1, 1); // the upper left quarter
        device.bindRenderTarget(target, TargetBinding::Both);
        pass.draw(1, draws);
    });
    EXPECT_GT(picture->getPixel(2, 2).red, 200);
    EXPECT_EQ(picture->getPixel(side - 3, 2).red, 0);
    EXPECT_EQ(picture->getPixel(2, side - 3).red, 0);
}

TEST_F(PostPassTest, targetIsMadeAnewForEachSize)
{
    RenderTarget* const first = pass.getTarget({20, 10});
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->getTexture(0)->getWidth(), 20);
    EXPECT_EQ(first->getTexture(0)->getHeight(), 10);
    EXPECT_NE(first->getDepthTexture(), nullptr);
    EXPECT_EQ(pass.getTarget({20, 10}), first);
    RenderTarget* const second = pass.getTarget({10, 20});
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->getTexture(0)->getWidth(), 10);
    EXPECT_EQ(second->getTexture(0)->getHeight(), 20);
}

TEST_F(PostPassTest, isOneDraw)
{
    show({1, 1, 1, 1}, 1);
    EXPECT_EQ(draws.get(), 1u);
}
