#include <xum/geometry/depth_buffer.h>

#include "file_contents.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <random>

using Software::DepthBuffer;
using ::testing::ExitedWithCode;

namespace {

void makeWithTiles(int tileWidth, int tileHeight)
{
    enterOwnDirectory();
    const DepthBuffer buffer(64, 64, tileWidth, tileHeight);
    std::exit(0);
}

/// Whether the pixel holds exactly this depth. Leaves it there.
bool holds(DepthBuffer& buffer, int x, int y, float depth)
{
    return !buffer.test(x, y, depth) && buffer.test(x, y, std::nextafter(depth, 2.0f));
}

/// The same rules over plain rows.
class PlainDepthBuffer {
public:
    PlainDepthBuffer(int width, int height)
        : width(width), depths(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {}

    bool test(int x, int y, float depth)
    {
        float& stored = depths[static_cast<std::size_t>(y * width + x)];
        if (!(depth > stored)) return false;
        stored = depth;
        return true;
    }

private:
    int width;
    std::vector<float> depths;
};

} // namespace

TEST(DepthBuffer, hasSoManyTiles)
{
    const DepthBuffer buffer(100, 50, 16, 8);
    EXPECT_EQ(buffer.getWidth(), 100);
    EXPECT_EQ(buffer.getHeight(), 50);
    EXPECT_EQ(buffer.getTilesPerRow(), 7);
    EXPECT_EQ(buffer.getTileCount(), 49);
}

TEST(DepthBuffer, roundsTheNumberOfTilesUp)
{
    for (const int tileSize : {2, 4, 16, 128, 2048}) {
        for (const int tiles : {1, 2, 5}) {
            const int size = tiles * tileSize;
            EXPECT_EQ(DepthBuffer(size, 1, tileSize, 2).getTilesPerRow(), tiles);
            EXPECT_EQ(DepthBuffer(size + 1, 1, tileSize, 2).getTilesPerRow(), tiles + 1);
            EXPECT_EQ(DepthBuffer(size - 1, 1, tileSize, 2).getTilesPerRow(), tiles);
            EXPECT_EQ(DepthBuffer(1, size, 2, tileSize).getTileCount(), tiles);
            EXPECT_EQ(DepthBuffer(1, size + 1, 2, tileSize).getTileCount(), tiles + 1);
        }
    }
}

TEST(DepthBuffer, takesLargerDepthsForNearer)
{
    DepthBuffer buffer(100, 50, 16, 8);
    buffer.clear();
    EXPECT_TRUE(buffer.test(99, 49, 0.5f));
    EXPECT_FALSE(buffer.test(99, 49, 0.5f)) << "equal fails";
    EXPECT_FALSE(buffer.test(99, 49, 0.4f));
    EXPECT_FALSE(buffer.test(99, 49, 0.5f)) << "what fails is not stored";
    EXPECT_TRUE(buffer.test(99, 49, 0.6f));
    EXPECT_FALSE(buffer.test(99, 49, 0.55f));
}

TEST(DepthBuffer, isZeroOnceCleared)
{
    DepthBuffer buffer(20, 20, 8, 4);
    buffer.clear();
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) {
            EXPECT_FALSE(buffer.test(x, y, 0.0f));
            EXPECT_FALSE(buffer.test(x, y, -1.0f));
            EXPECT_TRUE(buffer.test(x, y, std::numeric_limits<float>::denorm_min()));
        }
    }
    buffer.clear();
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x) EXPECT_TRUE(buffer.test(x, y, std::numeric_limits<float>::denorm_min()));
}

TEST(DepthBuffer, noPixelPassesWithoutANumber)
{
    DepthBuffer buffer(4, 4, 2, 2);
    buffer.clear();
    EXPECT_FALSE(buffer.test(1, 1, std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(buffer.test(1, 1, 0.0f));
    EXPECT_TRUE(buffer.test(1, 1, std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(buffer.test(1, 1, std::numeric_limits<float>::infinity()));
}

TEST(DepthBuffer, keepsItsContentsWhenResizedToItsSize)
{
    DepthBuffer buffer(100, 50, 16, 8);
    buffer.clear();
    buffer.test(3, 4, 0.5f);
    buffer.resize(100, 50);
    EXPECT_TRUE(holds(buffer, 3, 4, 0.5f));
}

TEST(DepthBuffer, losesItsContentsWhenResized)
{
    DepthBuffer buffer(100, 50, 16, 8);
    buffer.clear();
    buffer.test(3, 4, 0.5f);
    buffer.resize(50, 100);
    EXPECT_EQ(buffer.getWidth(), 50);
    EXPECT_EQ(buffer.getHeight(), 100);
    EXPECT_EQ(buffer.getTilesPerRow(), 4);
    EXPECT_EQ(buffer.getTileCount(), 4 * 13);
    buffer.clear();
    EXPECT_TRUE(buffer.test(3, 4, 0.1f));
    EXPECT_TRUE(buffer.test(49, 99, 0.1f));
    buffer.resize(50, 99);
    EXPECT_EQ(buffer.getHeight(), 99);
    buffer.clear();
    EXPECT_TRUE(buffer.test(3, 4, 0.1f)) << "one direction suffices";
}

TEST(DepthBuffer, mayHaveNoPixels)
{
    DepthBuffer buffer(0, 0, 16, 16);
    EXPECT_EQ(buffer.getTilesPerRow(), 0);
    EXPECT_EQ(buffer.getTileCount(), 0);
    buffer.clear();
    buffer.resize(-5, 7);
    EXPECT_EQ(buffer.getWidth(), -5);
    EXPECT_EQ(buffer.getTileCount(), 0);
    buffer.clear();
    buffer.resize(7, std::numeric_limits<int>::min());
    EXPECT_EQ(buffer.getTileCount(), 0);
    buffer.resize(1, 1);
    buffer.clear();
    EXPECT_EQ(buffer.getTileCount(), 1);
    EXPECT_TRUE(buffer.test(0, 0, 1));
    buffer.resize(0, 0);
    EXPECT_EQ(buffer.getTileCount(), 0);
}

TEST(DepthBuffer, staysAsItWasWhenThereIsNoMemoryForTheNewSize)
{
    constexpr int most = std::numeric_limits<int>::max();
    DepthBuffer buffer(8, 8, 2, 2);
    buffer.clear();
    buffer.test(7, 7, 0.5f);
    EXPECT_THROW(buffer.resize(most, most), std::bad_alloc);
    EXPECT_THROW(DepthBuffer(most, most, 2048, 2048), std::bad_alloc);
    EXPECT_EQ(buffer.getWidth(), 8);
    EXPECT_EQ(buffer.getHeight(), 8);
    EXPECT_EQ(buffer.getTilesPerRow(), 4);
    EXPECT_TRUE(holds(buffer, 7, 7, 0.5f));
}

TEST(DepthBuffer, sharesItsTilesWithItsCopies)
{
    DepthBuffer buffer(30, 20, 4, 8);
    buffer.clear();
    DepthBuffer copy(buffer);
    EXPECT_EQ(copy.getWidth(), 30);
    EXPECT_EQ(copy.getHeight(), 20);
    EXPECT_EQ(copy.getTilesPerRow(), 8);
    EXPECT_EQ(copy.getTileCount(), 24);
    EXPECT_TRUE(copy.test(29, 19, 0.5f));
    EXPECT_FALSE(buffer.test(29, 19, 0.5f));
    EXPECT_TRUE(buffer.test(0, 0, 0.5f));
    EXPECT_FALSE(copy.test(0, 0, 0.5f));
    copy.clear();
    EXPECT_TRUE(buffer.test(29, 19, 0.5f));
}

TEST(DepthBuffer, outlivesTheBufferItWasCopiedFrom)
{
    auto source = std::make_unique<DepthBuffer>(30, 20, 4, 8);
    source->clear();
    source->test(11, 12, 0.5f);
    DepthBuffer copy(*source);
    DepthBuffer assigned(1, 1, 2, 2);
    assigned = *source;
    source.reset();
    EXPECT_EQ(assigned.getTilesPerRow(), 8);
    EXPECT_FALSE(copy.test(11, 12, 0.5f));
    EXPECT_TRUE(copy.test(11, 12, 0.6f));
    EXPECT_FALSE(assigned.test(11, 12, 0.6f));
}

TEST(DepthBuffer, leavesTheTilesToItsCopiesWhenResized)
{
    DepthBuffer buffer(30, 20, 4, 8);
    buffer.clear();
    DepthBuffer copy(buffer);
    buffer.test(5, 6, 0.5f);
    buffer.resize(40, 40);
    buffer.clear();
    EXPECT_EQ(copy.getWidth(), 30);
    EXPECT_FALSE(copy.test(5, 6, 0.5f));
    EXPECT_TRUE(copy.test(5, 6, 0.7f));
    EXPECT_TRUE(buffer.test(5, 6, 0.1f));
}

TEST(DepthBuffer, tileThatIsNoPowerOfTwoFrom2To2048IsFatal)
{
    const char* const message = "\\[\\[Error\\|invalid shift value for depth buffer tile!\\]\\]";
    for (const int tileSize : {1, 3, 4096}) {
        EXPECT_EXIT(makeWithTiles(tileSize, 16), ExitedWithCode(fatalExitCode), message) << tileSize;
        EXPECT_EXIT(makeWithTiles(16, tileSize), ExitedWithCode(fatalExitCode), message) << tileSize;
        EXPECT_EQ(fileText(ownLogFile()), "ERROR: invalid shift value for depth buffer tile!\n");
    }
    for (const int tileSize : {0, -2, std::numeric_limits<int>::min()})
        EXPECT_EXIT(makeWithTiles(tileSize, 16), ExitedWithCode(fatalExitCode), message) << tileSize;
    EXPECT_EXIT(makeWithTiles(2, 2048), ExitedWithCode(0), "");
}

TEST(DepthBuffer, answersAsPlainRowsDo)
{
    std::mt19937 random(7);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const float depths[] = {-1,   0,    0.1f, 0.2f, 0.25f, 0.3f, 0.4f, std::numeric_limits<float>::quiet_NaN(),
                            0.5f, 0.6f, 0.7f, 0.8f, 0.9f,  1,    2,    1e-30f};
    constexpr int shifts = 11;
    constexpr int testsOfEach = 10000000 / (shifts * shifts) + 1;
    for (int shiftX = 1; shiftX <= shifts; ++shiftX) {
        for (int shiftY = 1; shiftY <= shifts; ++shiftY) {
            const int width = 1 + below(std::min(3 << shiftX, 3000));
            const int height = 1 + below(std::min(3 << shiftY, 1500));
            DepthBuffer buffer(width, height, 1 << shiftX, 1 << shiftY);
            buffer.clear();
            PlainDepthBuffer plain(width, height);
            for (int i = 0; i < testsOfEach; ++i) {
                const int x = below(width);
                const int y = below(height);
                const float depth = depths[below(16)];
                if (buffer.test(x, y, depth) != plain.test(x, y, depth))
                    FAIL() << depth << " at " << x << ", " << y << " of " << width << " x " << height << " in tiles of "
                           << (1 << shiftX) << " x " << (1 << shiftY);
            }
        }
    }
}
