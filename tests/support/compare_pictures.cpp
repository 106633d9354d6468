#include "compare_pictures.h"

#include <xum/render/image.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace {

unsigned char amplified(int difference)
{
    return static_cast<unsigned char>(std::min(difference * 8, 255));
}

} // namespace

PictureDifference comparePictures(const Image& a, const Image& b)
{
    PictureDifference result;
    if (a.getWidth() != b.getWidth() || a.getHeight() != b.getHeight()) return result;
    result.areComparable = true;
    result.picture = std::make_shared<Image>(a.getWidth(), a.getHeight(), 0, nullptr, nullptr, false);
    const std::size_t count = static_cast<std::size_t>(a.getWidth()) * static_cast<std::size_t>(a.getHeight());
    double total = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Pixel& p = a.getPixels()[i];
        const Pixel& q = b.getPixels()[i];
        const int red = std::abs(p.red - q.red);
        const int green = std::abs(p.green - q.green);
        const int blue = std::abs(p.blue - q.blue);
        const int alpha = std::abs(p.alpha - q.alpha);
        result.maximum = std::max({result.maximum, red, green, blue, alpha});
        total += red + green + blue + alpha;
        result.picture->getPixels()[i] = {amplified(std::max(red, alpha)), amplified(std::max(green, alpha)),
                                          amplified(std::max(blue, alpha)), 255};
    }
    result.mean = count == 0 ? 0 : total / static_cast<double>(4 * count);
    return result;
}

PictureDifference comparePictures(const std::string& actual, const std::string& expected,
                                  const std::string& differenceFile)
{
    const std::unique_ptr<Image> a(loadImage(actual));
    const std::unique_ptr<Image> b(loadImage(expected));
    if (!a || !b) return {};
    PictureDifference difference = comparePictures(*a, *b);
    if (difference.areComparable) difference.picture->writeToFile(differenceFile);
    return difference;
}
