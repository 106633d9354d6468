#include "golden_picture.h"

#include "engine_fixtures.h"
#include "file_contents.h"
#include "own_directory.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

/// In a directory of its own that holds golden/ and results/.
class GoldenPictureTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        enterOwnDirectory();
        fs::create_directory("golden");
    }

    void TearDown() override
    {
        setEnvironment("XUM_UPDATE_GOLDEN", "0");
        fs::current_path(testDirectory());
    }

    static Image makePicture(unsigned char red, int width = 2)
    {
        Image image(width, 2, 0, nullptr, nullptr, false);
        image.getPixels()[1].red = red;
        return image;
    }

    static std::string messageOf(const ::testing::AssertionResult& result) { return result.message(); }
};

} // namespace

TEST_F(GoldenPictureTest, sameGoldenPicturePassesAndLeavesNothing)
{
    makePicture(100).writeToFile("golden/a.bmp");
    EXPECT_TRUE(matchesGoldenPicture("a", makePicture(100)));
    EXPECT_FALSE(fs::exists("results/a-actual.bmp"));
}

TEST_F(GoldenPictureTest, failedGoldenPictureLeavesTheActualOneAndTheDifference)
{
    makePicture(100).writeToFile("golden/a.bmp");
    const ::testing::AssertionResult result = matchesGoldenPicture("a", makePicture(104));
    EXPECT_FALSE(result);
    EXPECT_EQ(messageOf(result), "look at results/a-actual.bmp and results/a-difference.bmp: up to 4 (0 is allowed) "
                                 "and 0.25 on average (0) from golden/a.bmp");
    const std::unique_ptr<Image> actual(loadImage("results/a-actual.bmp"));
    const std::unique_ptr<Image> difference(loadImage("results/a-difference.bmp"));
    ASSERT_TRUE(actual && difference);
    EXPECT_EQ(actual->getPixel(1, 0).red, 104);
    EXPECT_EQ(difference->getPixel(1, 0).red, 32);
}

TEST_F(GoldenPictureTest, passedGoldenPictureRemovesWhatAFailureLeft)
{
    makePicture(100).writeToFile("golden/a.bmp");
    EXPECT_FALSE(matchesGoldenPicture("a", makePicture(104)));
    EXPECT_TRUE(matchesGoldenPicture("a", makePicture(100)));
    EXPECT_TRUE(fs::is_empty("results"));
}

TEST_F(GoldenPictureTest, toleranceOfAGoldenPictureHasAMaximumAndAMean)
{
    makePicture(100).writeToFile("golden/a.bmp");
    EXPECT_TRUE(matchesGoldenPicture("a", makePicture(104), {4, 0.25}));
    EXPECT_FALSE(matchesGoldenPicture("a", makePicture(104), {3, 0.25}));
    EXPECT_FALSE(matchesGoldenPicture("a", makePicture(104), {4, 0.24}));
}

TEST_F(GoldenPictureTest, missingGoldenPictureFails)
{
    const ::testing::AssertionResult result = matchesGoldenPicture("none", makePicture(1));
    EXPECT_FALSE(result);
    EXPECT_EQ(messageOf(result), "look at results/none-actual.bmp: there is no golden picture golden/none.bmp "
                                 "(update-golden makes it)");
    EXPECT_TRUE(fs::exists("results/none-actual.bmp"));
}

TEST_F(GoldenPictureTest, anotherSizeThanTheGoldenPictureFails)
{
    makePicture(100, 3).writeToFile("golden/a.bmp");
    const ::testing::AssertionResult result = matchesGoldenPicture("a", makePicture(100), {255, 255});
    EXPECT_FALSE(result);
    EXPECT_EQ(messageOf(result), "look at results/a-actual.bmp: 2x2 instead of 3x2 pixels");
}

TEST_F(GoldenPictureTest, updateReplacesTheGoldenPicture)
{
    makePicture(100).writeToFile("golden/a.bmp");
    setEnvironment("XUM_UPDATE_GOLDEN", "1");
    EXPECT_TRUE(matchesGoldenPicture("a", makePicture(104)));
    setEnvironment("XUM_UPDATE_GOLDEN", "0");
    EXPECT_TRUE(matchesGoldenPicture("a", makePicture(104)));
}

TEST_F(GoldenPictureTest, updatedGoldenPictureThatCannotBeWrittenFails)
{
    setEnvironment("XUM_UPDATE_GOLDEN", "1");
    EXPECT_EQ(messageOf(matchesGoldenPicture("nowhere/a", makePicture(1))), "cannot write golden/nowhere/a.bmp");
}

TEST_F(GoldenPictureTest, nameOfTheTestMustSayIt)
{
    makePicture(100).writeToFile("golden/a.bmp");
    EXPECT_FALSE(matchesGoldenPicture("a", makePicture(100)));
}

TEST_F(GoldenPictureTest, onlyTheRendererOfTheGoldenPicturesMustMatchExactly)
{
    EXPECT_EQ(toleranceForRenderer("llvmpipe 1").maximum, 64);
    setEnvironment("XUM_UPDATE_GOLDEN", "1");
    EXPECT_EQ(toleranceForRenderer("llvmpipe 1").maximum, 0);
    setEnvironment("XUM_UPDATE_GOLDEN", "0");
    EXPECT_EQ(toleranceForRenderer("llvmpipe 1").maximum, 0);
    EXPECT_EQ(toleranceForRenderer("llvmpipe 1").mean, 0.0);
    EXPECT_EQ(toleranceForRenderer("llvmpipe 2").maximum, 64);
    EXPECT_EQ(toleranceForRenderer("").mean, 0.5);
}
