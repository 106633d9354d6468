#pragma once

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// The picture that files/make_images.py writes in every format.
namespace picture {

constexpr int width = 5;
constexpr int height = 3;

inline Pixel color(int x, int y)
{
    const auto byte = [](int value) { return static_cast<unsigned char>(value); };
    return {byte(10 + 40 * x), byte(5 + 80 * y), byte(100 + 10 * x * y), 255};
}

/// The one translucent pixel, of the files that have any.
inline Pixel translucentColor(int x, int y)
{
    Pixel pixel = color(x, y);
    if (x == 2 && y == 1) pixel.alpha = 64;
    return pixel;
}

} // namespace picture

using OwnedImage = std::unique_ptr<Image>;

inline std::string testFile(const std::string& name)
{
    return XUM_TEST_FILES + name;
}

/// All pixels in their order.
inline std::vector<Pixel> pixelsOf(const Image& image)
{
    const auto count = static_cast<std::size_t>(image.getWidth()) * static_cast<std::size_t>(image.getHeight());
    return {image.getPixels(), image.getPixels() + count};
}

/// An image of width x height whose pixel (x, y) is `pixelAt(x, y)`.
template <class Function>
OwnedImage makeImage(int width, int height, Function pixelAt, bool hasAlpha = false)
{
    auto image = std::make_unique<Image>(width, height, 0, nullptr, nullptr, hasAlpha);
    Pixel* next = image->getPixels();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) *next++ = pixelAt(x, y);
    return image;
}

/// The stored picture, with the alpha flag that belongs to it.
inline OwnedImage makePicture()
{
    return makeImage(picture::width, picture::height, picture::translucentColor, true);
}

inline void PrintTo(const Pixel& pixel, std::ostream* stream)
{
    *stream << "(" << int{pixel.red} << ", " << int{pixel.green} << ", " << int{pixel.blue} << ", " << int{pixel.alpha}
            << ")";
}
