#include "compare_pictures.h"

#include <xum/render/image.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>

namespace {

unsigned char amplified(int difference)
{
    return static_cast<unsigned char>(std::min(difference * 8, 255));
}

} // namespace

PictureDifference comparePictures(const std::string& actual, const std::string& expected,
                                  const std::string& differenceFile)
{
    PictureDifference result;
    const std::unique_ptr<Image> a(loadImage(actual));
    const std::unique_ptr<Image> b(loadImage(expected));
    if (!a || !b || a->getWidth() != b->getWidth() || a->getHeight() != b->getHeight()) return result;
    result.areComparable = true;

    Image difference(a->getWidth(), a->getHeight(), 0, nullptr, nullptr, false);
    const std::size_t count = static_cast<std::size_t>(a->getWidth()) * static_cast<std::size_t>(a->getHeight());
    double total = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Pixel& p = a->getPixels()[i];
        const Pixel& q = b->getPixels()[i];
        const int red = std::abs(p.red - q.red);
        const int green = std::abs(p.green - q.green);
        const int blue = std::abs(p.blue - q.blue);
        result.maximum = std::max({result.maximum, red, green, blue});
        total += red + green + blue;
        difference.getPixels()[i] = {amplified(red), amplified(green), amplified(blue), 255};
    }
    result.mean = count == 0 ? 0 : total / static_cast<double>(3 * count);
    difference.writeToFile(differenceFile);
    return result;
}
