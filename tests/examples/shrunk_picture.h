#pragma once

#include "golden_picture.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

/// Each pixel is the mean of a square of pixels: a golden picture is to be small.
inline std::unique_ptr<Image> shrink(const Image& image, int factor)
{
    const int width = image.getWidth() / factor;
    const int height = image.getHeight() / factor;
    auto small = std::make_unique<Image>(width, height, 0, nullptr, nullptr, false);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int sums[3] = {};
            for (int i = 0; i < factor * factor; ++i) {
                const Pixel& pixel = image.getPixel(x * factor + i % factor, y * factor + i / factor);
                sums[0] += pixel.red;
                sums[1] += pixel.green;
                sums[2] += pixel.blue;
            }
            const auto mean = [&](int channel) { return static_cast<unsigned char>(sums[channel] / factor / factor); };
            small->getPixels()[y * width + x] = {mean(0), mean(1), mean(2), 255};
        }
    }
    return small;
}

/// What another renderer makes of the pixels on edges, of which each pixel of the small picture sums up a hundred.
constexpr PictureTolerance shrunkTolerance{24, 0.25};

/// Of picture.bmp, which an example has written.
inline void expectGoldenExample(const std::string& name, int width, int height)
{
    const std::unique_ptr<Image> picture(loadImage("picture.bmp"));
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->getWidth(), width);
    ASSERT_EQ(picture->getHeight(), height);
    EXPECT_TRUE(matchesGoldenPicture("example_" + name, *shrink(*picture, 10), shrunkTolerance));
}
