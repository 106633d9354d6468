#pragma once

#include "application.h"
#include "dark_scene.h"
#include "picture.h"
#include "presentation.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

/// A test that draws a floor under a lamp, with sounds that nobody hears.
class PresentationTest : public ::testing::Test {
protected:
    /// All colours of the pixels, row by row.
    std::vector<Pixel> draw(Presentation& presentation, const Vector2<int>& size)
    {
        const auto picture = takePicture(application.getRenderDevice(), size,
                                         [&](RenderTarget* target) { presentation.draw(target, size, frame); });
        return pixelsOf(*picture, size);
    }

    static std::vector<Pixel> pixelsOf(const Image& picture, const Vector2<int>& size)
    {
        std::vector<Pixel> pixels;
        for (int y = 0; y < size.y; ++y)
            for (int x = 0; x < size.x; ++x) pixels.push_back(picture.getPixel(x, y));
        return pixels;
    }

    Frame frame = {{{0, -8, 5}, 0, -20}, DrawStyle::Solids, 12.5f, 1};
    Application application = Application("presentation", {64, 48});
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Assets assets = Assets(application.getRenderDevice(), data);
    Scene scene = makeFloorWithBoard();
    Soundscape sounds = Soundscape(nullptr, data, scene, 1);
    SceneRenderer renderer = SceneRenderer(application.getRenderDevice(), assets, scene);
    Presentation presentation = Presentation(application.getRenderDevice(), assets, data, renderer, sounds);
};
