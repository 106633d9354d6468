#include "map_levels.h"

#include <map_check.h>
#include <map_solids.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <set>

// Levels made by chance, against what can be said of them without a compiler.

namespace {

using Random = std::mt19937;

int chance(Random& random, int least, int most)
{
    return std::uniform_int_distribution<int>(least, most)(random);
}

std::string textOf(const Vector3<double>& v)
{
    std::ostringstream text;
    text.precision(17);
    text << v.x << ' ' << v.y << ' ' << v.z;
    return text.str();
}

struct RandomBox {
    int minimum[3];
    int maximum[3];
    bool isSolid;
};

/// On a coarse grid, so that many touch or share planes.
RandomBox makeBox(Random& random, int size)
{
    RandomBox box = {};
    for (int axis = 0; axis < 3; ++axis) {
        box.minimum[axis] = chance(random, 0, size - 1);
        box.maximum[axis] = chance(random, box.minimum[axis] + 1, size);
    }
    box.isSolid = chance(random, 0, 4) != 0;
    return box;
}

std::string textOf(const RandomBox& box)
{
    std::ostringstream numbers;
    for (const int value : box.minimum) numbers << value << ' ';
    for (const int value : box.maximum) numbers << value << ' ';
    return boxBrush(numbers.str(), box.isSolid ? "<texture a/>" : "<solid no/>");
}

/// A convex solid as its planes.
struct RandomSolid {
    std::vector<SolidPlane> planes;

    /// Less than 0 inside; not the distance, but never more than that.
    double measure(const Vector3<double>& point) const
    {
        double largest = -1e9;
        for (const SolidPlane& plane : planes) largest = std::max(largest, plane.signedDistance(point));
        return largest;
    }
};

/// A box that some planes cut corners off, in few directions or in any.
RandomSolid makeSolid(Random& random)
{
    RandomSolid solid;
    Vector3<double> middle;
    const RandomBox box = makeBox(random, 12);
    const double minimum[3] = {1.0 * box.minimum[0], 1.0 * box.minimum[1], 1.0 * box.minimum[2]};
    const double maximum[3] = {1.0 * box.maximum[0], 1.0 * box.maximum[1], 1.0 * box.maximum[2]};
    middle = {(minimum[0] + maximum[0]) / 2, (minimum[1] + maximum[1]) / 2, (minimum[2] + maximum[2]) / 2};
    for (int axis = 0; axis < 3; ++axis) {
        const Vector3<double> normal = {axis == 0 ? 1.0 : 0.0, axis == 1 ? 1.0 : 0.0, axis == 2 ? 1.0 : 0.0};
        solid.planes.emplace_back(normal, maximum[axis]);
        solid.planes.emplace_back(-normal, -minimum[axis]);
    }
    const bool isFree = chance(random, 0, 1) == 0;
    for (int cuts = chance(random, 0, 3); cuts > 0; --cuts) {
        Vector3<double> normal;
        while (length(normal) < 0.5) {
            const int most = isFree ? 1000 : 2;
            normal = {1.0 * chance(random, -most, most), 1.0 * chance(random, -most, most),
                      1.0 * chance(random, -most, most)};
        }
        normal = normalize(normal);
        solid.planes.emplace_back(normal, dot(normal, middle) + chance(random, 0, 3) * 0.25);
    }
    return solid;
}

std::string textOf(const RandomSolid& solid)
{
    std::ostringstream text;
    text.precision(17);
    text << "<brush><texture a/>";
    for (const SolidPlane& plane : solid.planes)
        text << "<plane><normal \"" << textOf(plane.normal) << "\"/><distance " << plane.distance << "/></plane>";
    text << "</brush>";
    return text.str();
}

Vector3<float> randomPoint(Random& random, float size)
{
    std::uniform_real_distribution<float> coordinate(-2, size + 2);
    return {coordinate(random), coordinate(random), coordinate(random)};
}

bool isInside(const RandomBox& box, const double (&point)[3])
{
    for (int axis = 0; axis < 3; ++axis)
        if (point[axis] < box.minimum[axis] || point[axis] > box.maximum[axis]) return false;
    return true;
}

/// The area between solid and empty cells of size 1.
int countVisibleArea(const std::vector<RandomBox>& boxes, int size)
{
    const auto isSolid = [&](int x, int y, int z) {
        const double point[3] = {x + 0.5, y + 0.5, z + 0.5};
        return std::any_of(boxes.begin(), boxes.end(),
                           [&](const RandomBox& box) { return box.isSolid && isInside(box, point); });
    };
    int area = 0;
    for (int x = -1; x <= size; ++x)
        for (int y = -1; y <= size; ++y)
            for (int z = -1; z <= size; ++z)
                area += (isSolid(x, y, z) != isSolid(x + 1, y, z)) + (isSolid(x, y, z) != isSolid(x, y + 1, z)) +
                        (isSolid(x, y, z) != isSolid(x, y, z + 1));
    return area;
}

/// The part of the world that a leaf is, where all planes lie across axes.
struct BoxRegion {
    double minimum[3] = {-1e6, -1e6, -1e6};
    double maximum[3] = {1e6, 1e6, 1e6};

    explicit BoxRegion(const std::vector<TreeStep>& way)
    {
        for (const TreeStep& step : way) {
            const Plane<float>& plane = step.node->plane;
            const double normal[3] = {plane.normal.x, plane.normal.y, plane.normal.z};
            for (int axis = 0; axis < 3; ++axis) {
                if (normal[axis] == 0) continue;
                const double place = plane.distance / normal[axis];
                if ((normal[axis] > 0) == step.isBehind)
                    maximum[axis] = std::min(maximum[axis], place);
                else
                    minimum[axis] = std::max(minimum[axis], place);
            }
        }
    }

    bool overlaps(const RandomBox& box) const
    {
        for (int axis = 0; axis < 3; ++axis)
            if (minimum[axis] >= box.maximum[axis] || maximum[axis] <= box.minimum[axis]) return false;
        return true;
    }
};

/// What holds in every level.
void expectSoundLevel(const CompiledLevel& level, const std::function<bool(const Vector3<double>&)>& isSolid)
{
    MapProblems problems;
    checkMesh(*level.map->getBSPMeshes().getFirst(), "mesh", problems);
    checkTextureLists(*level.map, problems);
    EXPECT_EQ(problems.getLines(), std::vector<std::string>());
    for (const BSPNode* leaf : treeOf(level).calculateLeafArray()) {
        EXPECT_TRUE(leaf->getLeaf()->polygons.empty() || !leaf->getLeaf()->kind);
        for (const Polygon* polygon : leaf->getLeaf()->polygons) {
            const Vector3<double> area = areaVectorOf(*polygon);
            if (length(area) < 1e-2) continue; // the point before it may lie beside it
            const Vector3<double> before = middleOf(*polygon) + normalize(area) * 2e-3;
            const Vector3<double> behind = middleOf(*polygon) - normalize(area) * 2e-3;
            EXPECT_EQ(treeOf(level).locatePoint(
                          {static_cast<float>(before.x), static_cast<float>(before.y), static_cast<float>(before.z)}),
                      leaf);
            EXPECT_FALSE(isSolid(before));
            EXPECT_TRUE(isSolid(behind));
        }
    }
}

} // namespace

TEST(MapProperties, boxesOfChanceAreAsTheGridSays)
{
    Random random(1);
    constexpr int size = 8;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        std::vector<RandomBox> boxes;
        std::string text;
        for (int count = chance(random, 1, 14); count > 0; --count) {
            boxes.push_back(makeBox(random, size));
            text += textOf(boxes.back());
        }
        const CompiledLevel level = compileBrushes(text);
        EXPECT_NEAR(areaOf(level), countVisibleArea(boxes, size), 1e-3);
        const auto isSolid = [&](const Vector3<double>& at) {
            const double point[3] = {at.x, at.y, at.z};
            return std::any_of(boxes.begin(), boxes.end(),
                               [&](const RandomBox& box) { return box.isSolid && isInside(box, point); });
        };
        expectSoundLevel(level, isSolid);
        walkLeaves(treeOf(level).getRoot(), [&](const BSPNodeContentLeaf& leaf, const std::vector<TreeStep>& way) {
            const BoxRegion region(way);
            for (std::size_t i = 0; i < boxes.size(); ++i) {
                const bool isListed =
                    std::find(leaf.brushes.begin(), leaf.brushes.end(), &level.brushes[i]) != leaf.brushes.end();
                EXPECT_EQ(isListed, region.overlaps(boxes[i]));
            }
        });
        if (::testing::Test::HasFailure()) FAIL() << text;
    }
}

TEST(MapProperties, kindsOfLeavesSayWhatIsInsideASolid)
{
    Random random(2);
    int solidPoints = 0;
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(round);
        std::vector<RandomSolid> solids;
        std::string text;
        for (int count = chance(random, 1, 12); count > 0; --count) {
            solids.push_back(makeSolid(random));
            text += textOf(solids.back());
        }
        const CompiledLevel level = compileBrushes(text);
        expectSoundLevel(level, [&](const Vector3<double>& point) {
            return std::any_of(solids.begin(), solids.end(),
                               [&](const RandomSolid& solid) { return solid.measure(point) < 0; });
        });
        for (int i = 0; i < 10000; ++i) {
            const Vector3<float> point = randomPoint(random, 12);
            std::set<const Brush*> around;
            bool isNearSurface = false;
            for (std::size_t k = 0; k < solids.size(); ++k) {
                const double measure = solids[k].measure(toDouble(point));
                isNearSurface = isNearSurface || std::fabs(measure) < 1e-3;
                if (measure < 0) around.insert(&level.brushes[k]);
            }
            if (isNearSurface) continue;
            const BSPNodeContentLeaf& leaf = *treeOf(level).locatePoint(point)->getLeaf();
            solidPoints += leaf.kind ? 1 : 0;
            ASSERT_EQ(leaf.kind, !around.empty()) << textOf(toDouble(point)) << '\n' << text;
            const std::set<const Brush*> listed(leaf.brushes.begin(), leaf.brushes.end());
            ASSERT_TRUE(std::includes(listed.begin(), listed.end(), around.begin(), around.end()))
                << textOf(toDouble(point)) << '\n'
                << text;
        }
        if (::testing::Test::HasFailure()) FAIL() << text;
    }
    EXPECT_GT(solidPoints, 15000);
}

TEST(MapProperties, levelIsTheSameFarFromTheOrigin)
{
    Random random(3);
    std::string near;
    std::string far;
    for (int i = 0; i < 20; ++i) {
        RandomBox box = makeBox(random, 16);
        box.isSolid = true;
        near += textOf(box);
        for (int axis = 0; axis < 3; ++axis) {
            box.minimum[axis] += 60000;
            box.maximum[axis] += 60000;
        }
        far += textOf(box);
    }
    const CompiledLevel nearLevel = compileBrushes(near);
    const CompiledLevel farLevel = compileBrushes(far);
    EXPECT_NEAR(areaOf(nearLevel), areaOf(farLevel), 1e-3);
    EXPECT_EQ(polygonsOf(nearLevel).size(), polygonsOf(farLevel).size());
    MapProblems problems;
    checkMesh(*farLevel.map->getBSPMeshes().getFirst(), "mesh", problems);
    EXPECT_EQ(problems.getLines(), std::vector<std::string>());
}

TEST(MapProperties, brushesByTheHundredAreNoProblem)
{
    Random random(4);
    std::string text;
    for (int i = 0; i < 250; ++i) text += textOf(makeSolid(random));
    const CompiledLevel level = compileBrushes(text);
    MapProblems problems;
    checkMesh(*level.map->getBSPMeshes().getFirst(), "mesh", problems);
    checkTextureLists(*level.map, problems);
    EXPECT_EQ(problems.getLines(), std::vector<std::string>());
    EXPECT_EQ(level.brushes.size(), 250u);
}
