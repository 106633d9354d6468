#include "file_contents.h"
#include "gl_fixture.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <algorithm>
#include <limits>

// Creation, filters, clamping, updating and reading back. The formats stand in texture_format_test.cpp, what a texture
// looks like in a shader in texture_sampling_test.cpp.

using OpenGLTexture = GLTest;

namespace {

/// 3 x 2 pixels, all different and opaque; a few channels tell rows and columns apart.
std::vector<Pixel> sixPixels()
{
    return {{10, 0, 0, 255},  {20, 0, 1, 255},  {30, 0, 2, 255},   // the first row
            {10, 99, 0, 255}, {20, 99, 1, 255}, {30, 99, 2, 255}}; // the second row
}

std::vector<Pixel> pixelsOf(const Image& image)
{
    return {image.getPixels(), image.getPixels() + image.getWidth() * image.getHeight()};
}

struct Filters {
    GLint magnification, minification;

    friend bool operator==(const Filters& a, const Filters& b)
    {
        return a.magnification == b.magnification && a.minification == b.minification;
    }
};

Filters currentFilters()
{
    return {getTextureParameter(GL_TEXTURE_MAG_FILTER), getTextureParameter(GL_TEXTURE_MIN_FILTER)};
}

} // namespace

TEST_F(OpenGLTexture, reportsWhatItWasMadeWith)
{
    Texture* texture = makeTexture(5, 3);
    EXPECT_EQ(texture->getWidth(), 5);
    EXPECT_EQ(texture->getHeight(), 3);
    EXPECT_EQ(texture->getFormat(), rgba8);
    EXPECT_NE(texture->getHandle(), 0u);
    EXPECT_EQ(glIsTexture(texture->getHandle()), GL_TRUE);
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_WIDTH), 5);
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_HEIGHT), 3);
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA8);
}

TEST_F(OpenGLTexture, handlesDiffer)
{
    EXPECT_NE(makeTexture(1, 1)->getHandle(), makeTexture(1, 1)->getHandle());
}

TEST_F(OpenGLTexture, newOneStaysBoundToUnitZero)
{
    Texture* first = makeTexture(1, 1);
    device->bindTexture(3, first);
    Texture* second = makeTexture(1, 1);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(getInteger(GL_TEXTURE_BINDING_2D), static_cast<GLint>(second->getHandle()));
}

TEST_F(OpenGLTexture, newOneFiltersNearestAndClampsBothCoordinates)
{
    makeTexture(4, 4, false);
    EXPECT_EQ(currentFilters(), (Filters{GL_NEAREST, GL_NEAREST}));
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_T), GL_CLAMP_TO_EDGE);
    makeTexture(4, 4, true);
    EXPECT_EQ(currentFilters(), (Filters{GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST}));
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_T), GL_CLAMP_TO_EDGE);
}

TEST_F(OpenGLTexture, filtersWithoutMipmapsStayOnTheFirstLevel)
{
    Texture* texture = makeTexture(4, 4, false);
    texture->setFilter(TextureFilter::Linear);
    EXPECT_EQ(currentFilters(), (Filters{GL_LINEAR, GL_LINEAR}));
    texture->setFilter(TextureFilter::Nearest);
    EXPECT_EQ(currentFilters(), (Filters{GL_NEAREST, GL_NEAREST}));
}

TEST_F(OpenGLTexture, filtersWithMipmapsGoThroughThem)
{
    Texture* texture = makeTexture(4, 4, true);
    texture->setFilter(TextureFilter::Linear);
    EXPECT_EQ(currentFilters(), (Filters{GL_LINEAR, GL_LINEAR_MIPMAP_LINEAR}));
    texture->setFilter(TextureFilter::Nearest);
    EXPECT_EQ(currentFilters(), (Filters{GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST}));
}

TEST_F(OpenGLTexture, unknownFilterIsIgnored)
{
    Texture* texture = makeTexture(4, 4);
    texture->setFilter(TextureFilter::Linear);
    texture->setFilter(static_cast<TextureFilter::Type>(3));
    texture->setFilter(static_cast<TextureFilter::Type>(-1));
    EXPECT_EQ(currentFilters(), (Filters{GL_LINEAR, GL_LINEAR}));
}

TEST_F(OpenGLTexture, anisotropicFilterIsFatal)
{
    Texture* texture = makeTexture(4, 4);
    EXPECT_EXIT(texture->setFilter(TextureFilter::Anisotropic), ::testing::ExitedWithCode(fatalExitCode),
                "\\[\\[Error\\|Texture::setFilter\\(\\) -> Anisotropic not implemented!\\]\\]");
}

TEST_F(OpenGLTexture, clampIsChosenForEachCoordinate)
{
    Texture* texture = makeTexture(4, 4);
    for (const bool clampS : {true, false})
        for (const bool clampT : {true, false}) {
            texture->setClamp(clampS, clampT);
            EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_S), clampS ? GL_CLAMP_TO_EDGE : GL_REPEAT);
            EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_T), clampT ? GL_CLAMP_TO_EDGE : GL_REPEAT);
        }
}

TEST_F(OpenGLTexture, imageHasTheRowsAsTheyWereSent)
{
    Texture* texture = makeTexture(3, 2);
    texture->update(sixPixels().data());
    const auto image = imageOf(texture, false);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getWidth(), 3);
    EXPECT_EQ(image->getHeight(), 2);
    EXPECT_EQ(pixelsOf(*image), sixPixels());
}

TEST_F(OpenGLTexture, flippedImageHasTheRowsInReverse)
{
    Texture* texture = makeTexture(3, 2);
    texture->update(sixPixels().data());
    std::vector<Pixel> expected = sixPixels();
    std::rotate(expected.begin(), expected.begin() + 3, expected.end());
    EXPECT_EQ(pixelsOf(*imageOf(texture, true)), expected);
}

TEST_F(OpenGLTexture, flippedImageOfOddHeightKeepsTheMiddleRow)
{
    const std::vector<Pixel> pixels = {red, green, blue};
    Texture* texture = makeTexture(1, 3);
    texture->update(pixels.data());
    EXPECT_EQ(pixelsOf(*imageOf(texture, true)), (std::vector<Pixel>{blue, green, red}));
}

TEST_F(OpenGLTexture, flippedImageOfARenderedTargetIsUpright)
{
    RenderTarget* target = makeTarget();
    device->setViewport(0, 0, size, size / 2, size); // the upper half
    drawSquare(colorOf(red));
    const auto image = imageOf(target->getTexture(0), true);
    EXPECT_EQ(image->getPixel(0, 0), red);
    EXPECT_EQ(image->getPixel(size - 1, size / 2 - 1), red);
    EXPECT_EQ(image->getPixel(0, size / 2), black);
    EXPECT_EQ(imageOf(target->getTexture(0), false)->getPixel(0, 0), black);
}

TEST_F(OpenGLTexture, imageHasAlphaWhenAPixelIsNotOpaque)
{
    std::vector<Pixel> pixels = sixPixels();
    Texture* texture = makeTexture(3, 2);
    texture->update(pixels.data());
    EXPECT_FALSE(imageOf(texture, false)->hasAlpha());
    EXPECT_FALSE(imageOf(texture, true)->hasAlpha());
    pixels[4].alpha = 254;
    texture->update(pixels.data());
    EXPECT_TRUE(imageOf(texture, false)->hasAlpha());
    EXPECT_TRUE(imageOf(texture, true)->hasAlpha());
}

TEST_F(OpenGLTexture, imageOfATargetWithoutAlphaIsOpaque)
{
    RenderTarget* target = makeTarget({{TextureFormat::UnsignedByte, 3}});
    drawSquare({1, 0, 0, 0});
    const auto image = imageOf(target->getTexture(0), true);
    EXPECT_EQ(image->getPixel(0, 0), red);
    EXPECT_FALSE(image->hasAlpha());
}

TEST_F(OpenGLTexture, imageOfAFloatTargetIsLimitedToBytes)
{
    RenderTarget* target = makeTarget({{TextureFormat::Float, 4}});
    drawSquare({2, -1, 0.2f, 1});
    EXPECT_EQ(imageOf(target->getTexture(0), true)->getPixel(0, 0), (Pixel{255, 0, 51, 255}));
}

TEST_F(OpenGLTexture, imageOfADepthTextureIsZero)
{
    RenderTarget* target = makeTarget({rgba8, depth32});
    const auto image = imageOf(target->getDepthTexture(), true);
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_OPERATION}) << "OpenGL does not read depth as colours";
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getWidth(), size);
    EXPECT_EQ(image->getHeight(), size);
    EXPECT_EQ(image->getPixel(0, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(image->getPixel(size - 1, size - 1), (Pixel{0, 0, 0, 0}));
}

TEST_F(OpenGLTexture, imageIsMadeAnewEachTime)
{
    Texture* texture = makeColorTexture(red);
    const auto first = imageOf(texture, false);
    texture->update(&blue);
    EXPECT_EQ(first->getPixel(0, 0), red);
    EXPECT_EQ(imageOf(texture, false)->getPixel(0, 0), blue);
}

TEST_F(OpenGLTexture, updateRebuildsTheMipmaps)
{
    const std::vector<Pixel> stripes = {black, white, black, white, black, white, black, white,
                                        black, white, black, white, black, white, black, white};
    Texture* texture = makeTexture(4, 4, true);
    texture->update(stripes.data());
    Pixel smallest{1, 2, 3, 4};
    glGetTexImage(GL_TEXTURE_2D, 2, GL_RGBA, GL_UNSIGNED_BYTE, &smallest);
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b, 2); }, smallest, (Pixel{128, 128, 128, 255}));

    texture->update(std::vector<Pixel>(16, red).data());
    glGetTexImage(GL_TEXTURE_2D, 2, GL_RGBA, GL_UNSIGNED_BYTE, &smallest);
    EXPECT_EQ(smallest, red);
}

TEST_F(OpenGLTexture, updateWithoutMipmapsMakesNone)
{
    Texture* texture = makeTexture(4, 4, false);
    texture->update(std::vector<Pixel>(16, red).data());
    GLint width = -1;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 1, GL_TEXTURE_WIDTH, &width);
    EXPECT_EQ(width, 0);
}

TEST_F(OpenGLTexture, updateMakesAnyFormatRgbaBytesButReportsTheFormatItWasMadeWith)
{
    const TextureFormat format{TextureFormat::Float, 2};
    RenderTarget* target = makeTarget({format});
    Texture* texture = target->getTexture(0);
    texture->update(std::vector<Pixel>(size * size, Pixel{1, 2, 3, 4}).data());
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA8);
    EXPECT_EQ(texture->getFormat(), format);
    EXPECT_EQ(imageOf(texture, false)->getPixel(7, 7), (Pixel{1, 2, 3, 4}));
}

TEST_F(OpenGLTexture, updateWithNullOnlyAllocates)
{
    Texture* texture = makeTexture(3, 2, true);
    texture->update(nullptr);
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_WIDTH), 3);
    texture->update(sixPixels().data());
    EXPECT_EQ(pixelsOf(*imageOf(texture, false)), sixPixels());
}

TEST_F(OpenGLTexture, updateGoesToTheActiveUnit)
{
    Texture* first = makeColorTexture(red);
    Texture* second = makeColorTexture(green);
    device->bindTexture(2, first);
    second->update(&blue);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE2);
    EXPECT_EQ(getInteger(GL_TEXTURE_BINDING_2D), static_cast<GLint>(second->getHandle()));
    EXPECT_EQ(imageOf(first, false)->getPixel(0, 0), red);
    EXPECT_EQ(imageOf(second, false)->getPixel(0, 0), blue);
}

TEST_F(OpenGLTexture, emptyOneGivesAnEmptyImage)
{
    Texture* texture = makeTexture(0, 0);
    for (const bool flip : {false, true}) {
        const auto image = imageOf(texture, flip);
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->getWidth(), 0);
        EXPECT_EQ(image->getHeight(), 0);
        EXPECT_FALSE(image->hasAlpha());
    }
}

TEST_F(OpenGLTexture, destructionDeletesItsName)
{
    Texture* texture = device->createTexture(1, 1, false);
    const GLuint name = texture->getHandle();
    device->destroyTexture(texture);
    EXPECT_EQ(glIsTexture(name), GL_FALSE);
}

TEST_F(OpenGLTexture, impossibleSizesGiveNull)
{
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    for (const int size : {-1, largest + 1, 100000000, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(device->createTexture(size, 1, false), nullptr) << size;
        EXPECT_EQ(device->createTexture(1, size, true), nullptr) << size;
        EXPECT_NE(logLines().back().find("Texture::Texture() -> impossible size (1 x " + std::to_string(size) + ")!"),
                  std::string::npos);
    }
    Texture* longest = device->createTexture(largest, 1, false);
    ASSERT_NE(longest, nullptr);
    device->destroyTexture(longest);
}

TEST_F(OpenGLTexture, ofAnImpossibleTargetHoldsNothing)
{
    RenderTarget* target = device->createRenderTarget(1, 100000000, {TextureFormat()});
    ASSERT_NE(target, nullptr);
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "FBO not complete!");
    const unsigned char pixels[4] = {};
    target->getTexture(0)->update(pixels);
    EXPECT_EQ(target->getTexture(0)->toImage(false), nullptr);
    device->destroyRenderTarget(target);
    shownMessageBoxes().clear();
}
