#include <xum/geometry/terrain.h>

#include <xum/files/serializer.h>

#include "allocation_counter.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <random>

using Points = std::vector<Vector3<float>>;
using Indexes = std::vector<int>;

namespace {

Vector3<float> unchanged(int, int, const Vector3<float>& position)
{
    return position;
}

std::vector<float> heightsOf(const Terrain& terrain)
{
    std::vector<float> heights;
    for (const Vector3<float>& position : terrain.getPositions()) heights.push_back(position.z);
    return heights;
}

/// Gives vertex (x, y) the height, and smooths.
void raise(Terrain& terrain, int x, int y, float height, int smoothPasses)
{
    terrain.modify(
        [=](int column, int row, const Vector3<float>& position) {
            return Vector3<float>(position.x, position.y, column == x && row == y ? height : position.z);
        },
        smoothPasses);
}

/// One vertex after the other, by the plain rule.
void smoothPlainly(Points& positions, int width, int height)
{
    const Points before = positions;
    const int columns = 2 * width + 1;
    const auto at = [&](int x, int y) { return before[static_cast<std::size_t>(columns * y + x)].z; };
    for (int y = 0; y <= 2 * height; ++y) {
        for (int x = 0; x <= 2 * width; ++x) {
            std::vector<float> around = {at(x, y)};
            if (x > 0) around.push_back(at(x - 1, y));
            if (x < 2 * width) around.push_back(at(x + 1, y));
            if (y > 0) around.push_back(at(x, y - 1));
            if (y < 2 * height) around.push_back(at(x, y + 1));
            float sum = 0;
            for (const float z : around) sum += z;
            positions[static_cast<std::size_t>(columns * y + x)].z = sum / static_cast<float>(around.size());
        }
    }
}

class CountingSerializer final : public Serializer {
public:
    bool failed() override { return hasFailed; }
    void write(const char*, int) override { ++writes; }

    bool hasFailed = false;
    int writes = 0;
};

} // namespace

TEST(Terrain, isAFlatGridAroundTheOrigin)
{
    const Terrain terrain(1, 1, 10);
    EXPECT_EQ(terrain.getWidth(), 1);
    EXPECT_EQ(terrain.getHeight(), 1);
    EXPECT_EQ(terrain.getSpacing(), 10);
    EXPECT_EQ(terrain.getPositions(), (Points{{-10, -10, 0},
                                              {0, -10, 0},
                                              {10, -10, 0},
                                              {-10, 0, 0},
                                              {0, 0, 0},
                                              {10, 0, 0},
                                              {-10, 10, 0},
                                              {0, 10, 0},
                                              {10, 10, 0}}));
    EXPECT_EQ(terrain.getBoundingBox(), Box({-10, -10, 0}, {10, 10, 0}));
    EXPECT_EQ(terrain.getIndexes(), (Indexes{0, 1, 4, 4, 3, 0, 1, 2, 5, 5, 4, 1, 3, 4, 7, 7, 6, 3, 4, 5, 8, 8, 7, 4}));
    EXPECT_EQ(terrain.getTextureCoordinates(),
              (std::vector<Vector2<float>>{
                  {0, 0}, {0.5f, 0}, {1, 0}, {0, 0.5f}, {0.5f, 0.5f}, {1, 0.5f}, {0, 1}, {0.5f, 1}, {1, 1}}));
}

TEST(Terrain, hasTwiceItsWidthAndHeightOfCells)
{
    const Terrain terrain(2, 1, 3);
    ASSERT_EQ(terrain.getPositions().size(), 15u);
    EXPECT_EQ(terrain.getPositions()[0], Vector3<float>(-6, -3, 0));
    EXPECT_EQ(terrain.getPositions()[4], Vector3<float>(6, -3, 0));
    EXPECT_EQ(terrain.getPositions()[5], Vector3<float>(-6, 0, 0));
    EXPECT_EQ(terrain.getPositions()[14], Vector3<float>(6, 3, 0));
    EXPECT_EQ(terrain.getTextureCoordinates()[1], Vector2<float>(0.25f, 0));
    EXPECT_EQ(terrain.getTextureCoordinates()[5], Vector2<float>(0, 0.5f));
    ASSERT_EQ(terrain.getIndexes().size(), 48u);
    EXPECT_EQ(Indexes(terrain.getIndexes().begin(), terrain.getIndexes().begin() + 6), (Indexes{0, 1, 6, 6, 5, 0}));
    EXPECT_EQ(Indexes(terrain.getIndexes().begin() + 24, terrain.getIndexes().begin() + 30),
              (Indexes{5, 6, 11, 11, 10, 5}));
}

TEST(Terrain, facesUp)
{
    const Terrain terrain(3, 2, 5);
    const Points& positions = terrain.getPositions();
    const Indexes& indexes = terrain.getIndexes();
    for (std::size_t i = 0; i < indexes.size(); i += 3) {
        const Vector3<float> a = positions[static_cast<std::size_t>(indexes[i])];
        const Vector3<float> b = positions[static_cast<std::size_t>(indexes[i + 1])];
        const Vector3<float> c = positions[static_cast<std::size_t>(indexes[i + 2])];
        EXPECT_EQ(cross(b - a, c - a), Vector3<float>(0, 0, 25));
    }
}

TEST(Terrain, mayHaveAnySpacing)
{
    EXPECT_EQ(Terrain(1, 1, 0).getBoundingBox(), Box({0, 0, 0}, {0, 0, 0}));
    const Terrain turned(1, 1, -4);
    EXPECT_EQ(turned.getPositions()[0], Vector3<float>(4, 4, 0));
    EXPECT_EQ(turned.getBoundingBox(), Box({-4, -4, 0}, {4, 4, 0}));
    const Terrain huge(2, 0, 2000000000);
    EXPECT_EQ(huge.getPositions()[0].x, -4e9f) << "no overflow";
    EXPECT_EQ(huge.getPositions()[3].x, 2e9f);
}

TEST(Terrain, placesAreRoundedOnce)
{
    const Terrain terrain(1, 0, 16777217); // the first integer that no float can hold
    EXPECT_EQ(terrain.getPositions()[0].x, static_cast<float>(-16777217));
    EXPECT_EQ(terrain.getPositions()[1].x, 0.0f);
    EXPECT_EQ(terrain.getPositions()[2].x, static_cast<float>(16777217));
}

TEST(Terrain, ofOneVertexHasNoCellsAndNoTextureCoordinate)
{
    const Terrain terrain(0, 0, 8);
    EXPECT_EQ(terrain.getPositions(), Points(1));
    EXPECT_TRUE(terrain.getIndexes().empty());
    ASSERT_EQ(terrain.getTextureCoordinates().size(), 1u);
    EXPECT_TRUE(std::isnan(terrain.getTextureCoordinates()[0].x));
    EXPECT_TRUE(std::isnan(terrain.getTextureCoordinates()[0].y));
    EXPECT_EQ(terrain.getBoundingBox(), Box({0, 0, 0}, {0, 0, 0}));
}

TEST(Terrain, mayBeALine)
{
    const Terrain row(2, 0, 1);
    EXPECT_EQ(row.getPositions(), (Points{{-2, 0, 0}, {-1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}}));
    EXPECT_TRUE(row.getIndexes().empty());
    EXPECT_EQ(row.getTextureCoordinates()[1].x, 0.25f);
    EXPECT_TRUE(std::isnan(row.getTextureCoordinates()[1].y));
    const Terrain column(0, 1, 1);
    EXPECT_EQ(column.getPositions(), (Points{{0, -1, 0}, {0, 0, 0}, {0, 1, 0}}));
    EXPECT_TRUE(column.getIndexes().empty());
}

TEST(Terrain, ofANegativeSizeHasNoVertices)
{
    const std::array<int, 2> sizes[] = {{-1, 3}, {3, -1}, {-1, -1}, {std::numeric_limits<int>::min(), 1000000}};
    for (const auto& [width, height] : sizes) {
        Terrain terrain(width, height, 5);
        EXPECT_EQ(terrain.getWidth(), width);
        EXPECT_TRUE(terrain.getPositions().empty());
        EXPECT_TRUE(terrain.getTextureCoordinates().empty());
        EXPECT_TRUE(terrain.getIndexes().empty());
        EXPECT_EQ(terrain.getBoundingBox(), Box());
        int calls = 0;
        terrain.modify(
            [&calls](int, int, const Vector3<float>& position) {
                ++calls;
                return position;
            },
            3);
        EXPECT_EQ(calls, 0);
    }
}

TEST(Terrain, withMoreVerticesThanAnIntCountsIsOutOfMemory)
{
    EXPECT_THROW(Terrain(100000, 100000, 1), std::bad_alloc);
    EXPECT_THROW(Terrain(0, 1073741824, 1), std::bad_alloc) << "2147483649";
    EXPECT_THROW(Terrain(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), 1), std::bad_alloc);
    EXPECT_THROW(Terrain(0, std::numeric_limits<int>::max(), 1), std::bad_alloc);
}

TEST(Terrain, modifyVisitsEachVertexOnceRowByRow)
{
    struct Call {
        int x;
        int y;
        Vector3<float> position;
    };
    std::vector<Call> calls;
    Terrain terrain(1, 2, 10);
    const Points before = terrain.getPositions();
    terrain.modify(
        [&calls](int x, int y, const Vector3<float>& position) {
            calls.push_back({x, y, position});
            return position;
        },
        0);
    ASSERT_EQ(calls.size(), 15u);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i].x, static_cast<int>(i) % 3);
        EXPECT_EQ(calls[i].y, static_cast<int>(i) / 3);
        EXPECT_EQ(calls[i].position, before[i]);
    }
    EXPECT_EQ(terrain.getPositions(), before);
}

TEST(Terrain, modifyReplacesAllThreeComponentsAndTheBox)
{
    Terrain terrain(1, 0, 1);
    terrain.modify(
        [](int x, int, const Vector3<float>& position) {
            return Vector3<float>(position.x * 2, static_cast<float>(x) - 7, static_cast<float>(x * x));
        },
        0);
    EXPECT_EQ(terrain.getPositions(), (Points{{-2, -7, 0}, {0, -6, 1}, {2, -5, 4}}));
    EXPECT_EQ(terrain.getBoundingBox(), Box({-2, -7, 0}, {2, -5, 4}));
    terrain.modify([](int, int, const Vector3<float>&) { return Vector3<float>(1, 1, 1); }, 0);
    EXPECT_EQ(terrain.getBoundingBox(), Box({1, 1, 1}, {1, 1, 1})) << "it shrinks, too";
}

TEST(Terrain, modifyGoesOnFromWhatWasModifiedBefore)
{
    Terrain terrain(1, 1, 1);
    for (int i = 0; i < 3; ++i)
        terrain.modify([](int, int, const Vector3<float>& position) { return position + Vector3<float>(0, 0, 2); }, 0);
    EXPECT_EQ(heightsOf(terrain), std::vector<float>(9, 6));
}

TEST(Terrain, modifyByAnEmptyFunctionThrows)
{
    Terrain terrain(1, 1, 1);
    EXPECT_THROW(terrain.modify({}, 1), std::bad_function_call);
    EXPECT_EQ(terrain.getPositions(), Terrain(1, 1, 1).getPositions());
}

TEST(Terrain, whatTheFunctionThrowsPassesThrough)
{
    Terrain terrain(1, 1, 1);
    const auto give = [](int x, int y, const Vector3<float>& position) {
        if (x == 1 && y == 1) throw 7;
        return position;
    };
    EXPECT_THROW(terrain.modify(give, 1), int);
}

TEST(Terrain, boundingBoxFitsAlsoWhenTheFunctionThrows)
{
    Terrain terrain(1, 1, 1);
    const auto give = [](int x, int y, const Vector3<float>& position) {
        if (x == 1 && y == 1) throw 7;
        return Vector3<float>(position.x, position.y, 99);
    };
    EXPECT_THROW(terrain.modify(give, 1), int);
    EXPECT_EQ(heightsOf(terrain), (std::vector<float>{99, 99, 99, 99, 0, 0, 0, 0, 0})) << "nothing is smoothed";
    EXPECT_EQ(terrain.getBoundingBox(), Box({-1, -1, 0}, {1, 1, 99}));
}

TEST(Terrain, smoothingSpreadsAHillToItsNeighbours)
{
    Terrain terrain(2, 2, 1);
    raise(terrain, 2, 2, 10, 1);
    EXPECT_EQ(heightsOf(terrain), (std::vector<float>{0, 0, 0, 0, 0, //
                                                      0, 0, 2, 0, 0, //
                                                      0, 2, 2, 2, 0, //
                                                      0, 0, 2, 0, 0, //
                                                      0, 0, 0, 0, 0}));
    EXPECT_EQ(terrain.getBoundingBox(), Box({-2, -2, 0}, {2, 2, 2})) << "of the smoothed heights";
}

TEST(Terrain, smoothingTakesTheMeanOfFewerAtTheBorder)
{
    Terrain terrain(1, 1, 10);
    raise(terrain, 1, 1, 60, 1);
    EXPECT_EQ(heightsOf(terrain), (std::vector<float>{0, 15, 0, 15, 12, 15, 0, 15, 0}));
    terrain.modify(unchanged, 1);
    EXPECT_EQ(heightsOf(terrain), (std::vector<float>{10, 6.75f, 10, 6.75f, 14.4f, 6.75f, 10, 6.75f, 10}));
}

TEST(Terrain, smoothsACornerOverThree)
{
    Terrain terrain(1, 1, 10);
    raise(terrain, 0, 0, 12, 1);
    EXPECT_EQ(heightsOf(terrain), (std::vector<float>{4, 3, 0, 3, 0, 0, 0, 0, 0}));
    Terrain other(1, 1, 10);
    raise(other, 2, 2, 12, 1);
    EXPECT_EQ(heightsOf(other), (std::vector<float>{0, 0, 0, 0, 0, 3, 0, 3, 4}));
}

TEST(Terrain, smoothingSeveralTimesIsTheSameInOneCall)
{
    Terrain inOne(3, 2, 1);
    Terrain inThree(3, 2, 1);
    raise(inOne, 1, 4, 100, 3);
    raise(inThree, 1, 4, 100, 1);
    inThree.modify(unchanged, 2);
    EXPECT_EQ(inOne.getPositions(), inThree.getPositions());
}

TEST(Terrain, noPassesAndFewerDoNotSmooth)
{
    for (const int passes : {0, -1, std::numeric_limits<int>::min()}) {
        Terrain terrain(1, 1, 10);
        raise(terrain, 1, 1, 60, passes);
        EXPECT_EQ(heightsOf(terrain), (std::vector<float>{0, 0, 0, 0, 60, 0, 0, 0, 0}));
    }
}

TEST(Terrain, smoothingGoesByTheGridEvenWhereVerticesWereMoved)
{
    Terrain terrain(1, 1, 1);
    terrain.modify(
        [](int x, int y, const Vector3<float>&) {
            return Vector3<float>(static_cast<float>(-100 * x), static_cast<float>(y * y),
                                  x == 1 && y == 1 ? 60.0f : 0);
        },
        1);
    EXPECT_EQ(heightsOf(terrain), (std::vector<float>{0, 15, 0, 15, 12, 15, 0, 15, 0}));
    EXPECT_EQ(terrain.getPositions()[5], Vector3<float>(-200, 1, 15));
    EXPECT_EQ(terrain.getBoundingBox(), Box({-200, 0, 0}, {0, 4, 15}));
}

TEST(Terrain, smoothsALineAlongItself)
{
    Terrain row(1, 0, 1);
    raise(row, 0, 0, 6, 1);
    EXPECT_EQ(heightsOf(row), (std::vector<float>{3, 2, 0}));
    Terrain column(0, 1, 1);
    raise(column, 0, 1, 6, 1);
    EXPECT_EQ(heightsOf(column), (std::vector<float>{3, 2, 3}));
    Terrain point(0, 0, 1);
    raise(point, 0, 0, 6, 5);
    EXPECT_EQ(heightsOf(point), (std::vector<float>{6}));
}

TEST(Terrain, smoothedHeightsHaveTheBitsOfThePlainRule)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> height(-1000, 1000);
    const std::array<int, 2> sizes[] = {{0, 0}, {0, 1}, {0, 9}, {1, 0}, {9, 0},  {1, 1},  {1, 7},
                                        {7, 1}, {2, 3}, {5, 4}, {8, 8}, {16, 2}, {3, 21}, {20, 33}};
    for (const auto& [columns, rows] : sizes) {
        for (const int passes : {1, 2, 7}) {
            Terrain terrain(columns, rows, 3);
            Points expected = terrain.getPositions();
            for (Vector3<float>& position : expected)
                position = {height(random), height(random),
                            std::ldexp(height(random), static_cast<int>(random() % 20))};
            std::size_t i = 0;
            terrain.modify([&](int, int, const Vector3<float>&) { return expected[i++]; }, passes);
            for (int pass = 0; pass < passes; ++pass) smoothPlainly(expected, columns, rows);
            ASSERT_EQ(std::memcmp(terrain.getPositions().data(), expected.data(), expected.size() * sizeof expected[0]),
                      0)
                << columns << " x " << rows << ", " << passes << " passes";
            EXPECT_EQ(terrain.getBoundingBox(), Box::around(expected));
        }
    }
}

TEST(Terrain, spreadsWhatIsNoNumber)
{
    Terrain terrain(2, 2, 1);
    raise(terrain, 0, 0, std::numeric_limits<float>::quiet_NaN(), 1);
    const std::vector<float> heights = heightsOf(terrain);
    for (std::size_t i = 0; i < heights.size(); ++i) EXPECT_EQ(std::isnan(heights[i]), i == 0 || i == 1 || i == 5);
    EXPECT_EQ(terrain.getBoundingBox(), Box({-2, -2, 0}, {2, 2, 0}));
}

TEST(Terrain, cloneHasEverything)
{
    Terrain terrain(2, 1, 3);
    raise(terrain, 1, 1, 5, 1);
    const std::unique_ptr<Terrain> clone(terrain.clone());
    EXPECT_EQ(clone->getWidth(), 2);
    EXPECT_EQ(clone->getHeight(), 1);
    EXPECT_EQ(clone->getSpacing(), 3);
    EXPECT_EQ(clone->getPositions(), terrain.getPositions());
    EXPECT_EQ(clone->getTextureCoordinates(), terrain.getTextureCoordinates());
    EXPECT_EQ(clone->getIndexes(), terrain.getIndexes());
    EXPECT_EQ(clone->getBoundingBox(), terrain.getBoundingBox());
    EXPECT_EQ(clone->getList(), nullptr);
    raise(*clone, 1, 1, 50, 0);
    EXPECT_NE(clone->getPositions(), terrain.getPositions()) << "they share nothing";
    EXPECT_NE(clone->getBoundingBox(), terrain.getBoundingBox());
}

TEST(Terrain, cloneCarriesTheLinksWithoutBeingInTheList)
{
    BaseList<Terrain> list;
    Terrain first(0, 0, 1);
    Terrain second(1, 0, 1);
    Terrain third(0, 1, 1);
    EXPECT_EQ(first.getList(), nullptr) << "a new one is in no list";
    for (Terrain* terrain : {&first, &second, &third}) list.append(terrain);
    Terrain* clone = second.clone();
    EXPECT_EQ(clone->getList(), &list);
    EXPECT_EQ(clone->getPrev(), &first);
    EXPECT_EQ(clone->getNext(), &third);
    EXPECT_EQ(list.getCount(), 3u);
    EXPECT_EQ(first.getNext(), &second);
    EXPECT_EQ(third.getPrev(), &second);
    delete clone;
    EXPECT_EQ(list.getCount(), 2u) << "it took the place of what it was made from";
    EXPECT_EQ(first.getNext(), &third);
    EXPECT_EQ(third.getPrev(), &first);
    second.unlink(); // while the neighbours that it still names exist
}

TEST(Terrain, listThatOwnsItDeletesIt)
{
    BaseList<Terrain> list(true);
    list.append(new Terrain(1, 1, 1));
    list.append(new Terrain(2, 2, 2));
    EXPECT_EQ(list.getCount(), 2u);
    delete list.getFirst();
    EXPECT_EQ(list.getCount(), 1u);
    EXPECT_EQ(list.getFirst()->getWidth(), 2);
}

TEST(Terrain, cloneIsNullWhenMemoryRunsOut)
{
    const Terrain terrain(1, 1, 1);
    std::unique_ptr<Terrain> clone;
    int failures = -1;
    for (; !clone; ++failures) {
        ASSERT_LT(failures, 100);
        const FailingAllocations failing(failures + 1);
        clone.reset(terrain.clone());
    }
    EXPECT_EQ(failures, 4) << "itself and three arrays";
}

TEST(Terrain, serializesToNothing)
{
    const Terrain terrain(1, 1, 1);
    CountingSerializer out;
    EXPECT_TRUE(terrain.serialize(out));
    out.hasFailed = true;
    EXPECT_FALSE(terrain.serialize(out));
    EXPECT_EQ(out.writes, 0);
}
