#include "walker.h"

#include "engine_fixtures.h"
#include "level.h"
#include "world.h"

#include <xum/geometry/terrain.h>

#include <cmath>
#include <random>

namespace {

const Material stone = {TextureName::Limestone};

/// A closed room, 8 x 8 x 3 inside, whose floor is at height 0. Its walls are thin.
Scene makeRoom()
{
    Scene scene;
    scene.things = {place(SolidKind::Box, stone, {0, 0, -0.1f}, {8.2f, 8.2f, 0.1f}),
                    place(SolidKind::Box, stone, {0, 0, 3}, {8.2f, 8.2f, 0.1f})};
    for (float side : {-4.05f, 4.05f}) {
        scene.things.push_back(place(SolidKind::Box, stone, {side, 0, -0.1f}, {0.1f, 8.2f, 3.2f}));
        scene.things.push_back(place(SolidKind::Box, stone, {0, side, -0.1f}, {8.2f, 0.1f, 3.2f}));
    }
    return scene;
}

void walk(Walker& walker, const Obstacles& obstacles, const Vector3<float>& velocity, float seconds,
          float framesPerSecond = 60)
{
    const int frames = static_cast<int>(seconds * framesPerSecond);
    for (int i = 0; i < frames; ++i) walker.move(obstacles, velocity, false, 1 / framesPerSecond);
}

void expectNear(const Vector3<float>& actual, const Vector3<float>& expected, float tolerance = 0.02f)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

} // namespace

TEST(Walker, fallsOntoTheFloorAndStaysThere)
{
    const Obstacles room(makeRoom());
    Walker walker({1, 1, 1});
    EXPECT_FALSE(walker.isOnGround());
    walk(walker, room, {}, 0.25f);
    EXPECT_NEAR(walker.getFeet().z, 1 - 9.81f * 0.25f * 0.25f / 2, 0.05f);
    walk(walker, room, {}, 1);
    EXPECT_TRUE(walker.isOnGround());
    expectNear(walker.getFeet(), {1, 1, 0});
    expectNear(walker.getEye(), {1, 1, Walker::eyeHeight});
}

TEST(Walker, walksAsFastAsItIsTold)
{
    const Obstacles room(makeRoom());
    Walker walker({-3, 0, 0.01f});
    walk(walker, room, {2, 0, 0}, 2);
    expectNear(walker.getFeet(), {1, 0, 0});
}

TEST(Walker, upwardPartOfAVelocityDoesNotCount)
{
    const Obstacles room(makeRoom());
    Walker walker({0, 0, 0.01f});
    walk(walker, room, {0, 0, 5}, 1);
    expectNear(walker.getFeet(), {0, 0, 0});
}

TEST(Walker, stopsAtAWallAndSlidesAlongIt)
{
    const Obstacles room(makeRoom());
    Walker walker({0, 0, 0.01f});
    walk(walker, room, {6, 0, 0}, 2);
    expectNear(walker.getFeet(), {3.7f, 0, 0});
    walk(walker, room, {6, 1, 0}, 2);
    expectNear(walker.getFeet(), {3.7f, 2, 0}, 0.05f);
    walk(walker, room, {6, 6, 0}, 2);
    expectNear(walker.getFeet(), {3.7f, 3.7f, 0}); // the corner
}

TEST(Walker, noSpeedAndNoFrameRateLeadsThroughAWall)
{
    const Obstacles room(makeRoom());
    for (const float framesPerSecond : {200.0f, 60.0f, 10.0f, 1.0f}) {
        for (const float speed : {1.0f, 6.0f, 100.0f, 10000.0f}) {
            for (int turn = 0; turn < 24; ++turn) {
                const float angle = 0.26f * static_cast<float>(turn);
                Walker walker({0, 0, 0.5f});
                walk(walker, room, {speed * std::cos(angle), speed * std::sin(angle), 0}, 3, framesPerSecond);
                EXPECT_LT(std::fabs(walker.getFeet().x), 3.71f);
                EXPECT_LT(std::fabs(walker.getFeet().y), 3.71f);
                EXPECT_NEAR(walker.getFeet().z, 0, 0.02f);
            }
        }
    }
}

TEST(Walker, climbsAStepAndComesDownWithoutFalling)
{
    Scene scene = makeRoom();
    scene.things.push_back(place(SolidKind::Box, stone, {0, 0, 0}, {2, 8, 0.4f}));
    const Obstacles room(scene);
    Walker walker({-3, 0, 0.01f});
    walk(walker, room, {2, 0, 0}, 1.5f);
    expectNear(walker.getFeet(), {0, 0, 0.4f});
    for (int i = 0; i < 90; ++i) {
        walker.move(room, {2, 0, 0}, false, 1.0f / 60);
        EXPECT_TRUE(walker.isOnGround());
    }
    expectNear(walker.getFeet(), {3, 0, 0});
}

TEST(Walker, doesNotClimbWhatIsTooHighButJumpsOntoIt)
{
    Scene scene = makeRoom();
    scene.things.push_back(place(SolidKind::Box, stone, {0, 0, 0}, {2, 8, 0.7f}));
    const Obstacles room(scene);
    Walker walker({-3, 0, 0.01f});
    walk(walker, room, {2, 0, 0}, 2);
    expectNear(walker.getFeet(), {-1.3f, 0, 0});
    walker.move(room, {2, 0, 0}, true, 1.0f / 60);
    walk(walker, room, {2, 0, 0}, 1);
    EXPECT_NEAR(walker.getFeet().z, 0.7f, 0.02f);
}

TEST(Walker, jumpsOnlyFromTheGroundAndNotThroughTheCeiling)
{
    Scene scene = makeRoom();
    scene.things.push_back(place(SolidKind::Box, stone, {0, 0, 2.2f}, {8, 8, 0.1f}));
    const Obstacles room(scene);
    Walker walker({0, 0, 0.01f});
    walk(walker, room, {}, 0.2f);
    float highest = 0;
    for (int i = 0; i < 200; ++i) {
        walker.move(room, {}, true, 1.0f / 60);
        highest = std::max(highest, walker.getFeet().z);
    }
    EXPECT_GT(highest, 0.35f);
    EXPECT_LT(highest, 0.41f); // its head is at 1.8
}

TEST(Walker, roundThingsPushAside)
{
    Scene scene = makeRoom();
    scene.things.push_back(place(SolidKind::Cylinder, stone, {0, 0, 0}, {1, 1, 3}));
    const Obstacles room(scene);
    Walker walker({-3, 0.6f, 0.01f});
    walk(walker, room, {2, 0, 0}, 4);
    EXPECT_GT(walker.getFeet().x, 3);
    EXPECT_GT(walker.getFeet().y, 0.7f);
}

TEST(Walker, followsTheLandUpAndDown)
{
    Scene scene;
    auto land = std::make_shared<Terrain>(5, 5, 4);
    land->modify([](int, int, const Vector3<float>& p) { return Vector3<float>(p.x, p.y, 3 + std::fabs(p.x) / 4); }, 0);
    scene.land = land;
    const Obstacles obstacles(scene);
    Walker walker({-8, 1, 5});
    walk(walker, obstacles, {}, 0.1f);
    for (int i = 0; i < 300; ++i) {
        walker.move(obstacles, {3, 0, 0}, false, 1.0f / 60);
        ASSERT_NEAR(walker.getFeet().z, 3 + std::fabs(walker.getFeet().x) / 4, 0.03f) << i;
    }
    EXPECT_NEAR(walker.getFeet().x, 7, 0.1f);
}

TEST(Walker, fallsOverTheRimOfTheLand)
{
    Scene scene;
    scene.land = std::make_shared<Terrain>(1, 1, 4); // from -4 to 4
    const Obstacles obstacles(scene);
    Walker walker({3, 0, 0});
    walk(walker, obstacles, {2, 0, 0}, 2);
    EXPECT_NEAR(walker.getFeet().x, 7, 0.1f);
    EXPECT_LT(walker.getFeet().z, -5);
}

TEST(Walker, landLiesWhereItsPointsAre)
{
    Scene scene;
    auto land = std::make_shared<Terrain>(1, 1, 4);
    land->modify([](int column, int,
                    const Vector3<float>& p) { return p + Vector3<float>(100, 50, static_cast<float>(column)); },
                 0);
    scene.land = land;
    const Obstacles obstacles(scene);
    EXPECT_FLOAT_EQ(obstacles.getGroundHeight(96, 50), 0);
    EXPECT_FLOAT_EQ(obstacles.getGroundHeight(98, 47), 0.5f);
    EXPECT_FLOAT_EQ(obstacles.getGroundHeight(104, 54), 2);
    EXPECT_LT(obstacles.getGroundHeight(0, 0), -1e5f);
    EXPECT_LT(obstacles.getGroundHeight(100, 54.1f), -1e5f);
}

TEST(Walker, whoStartsInsideCanLeave)
{
    Scene scene = makeRoom();
    scene.things.push_back(place(SolidKind::Box, stone, {0, 0, 0}, {2, 2, 2}));
    const Obstacles room(scene);
    Walker walker({0.9f, 0, 0.1f});
    walk(walker, room, {2, 0, 0}, 1);
    EXPECT_GT(walker.getFeet().x, 1.3f);
}

TEST(Walker, tenThousandRandomWalksStayInTheRoom)
{
    Scene scene = makeRoom();
    scene.things.push_back(place(SolidKind::Box, stone, {1, 1, 0}, {1.3f, 1.3f, 1.3f}, 25));
    scene.things.push_back(place(SolidKind::Cylinder, stone, {-2, 1, 0}, {1, 1, 3}));
    scene.things.push_back(place(SolidKind::Sphere, stone, {-1, -2, 0}, {1.5f, 1.5f, 1.5f}));
    scene.things.push_back(place(SolidKind::Pyramid, stone, {2.5f, -2, 0}, {2, 2, 1}, 10));
    scene.things.push_back(place(SolidKind::Cone, stone, {0.5f, -3, 0}, {1, 1, 2}));
    const Obstacles room(scene);
    std::minstd_rand chance(1);
    const auto number = [&](float reach) { return (static_cast<float>(chance() % 2001) / 1000.0f - 1) * reach; };
    for (int i = 0; i < 10000; ++i) {
        Walker walker({-3.5f, -3.5f, 0.01f});
        for (int frame = 0; frame < 12; ++frame) {
            const float seconds = chance() % 2 == 0 ? 1.0f / 60 : 0.1f;
            walker.move(room, {number(30), number(30), 0}, chance() % 4 == 0, seconds);
            const Vector3<float>& feet = walker.getFeet();
            ASSERT_TRUE(std::isfinite(feet.x + feet.y + feet.z));
            ASSERT_LT(std::fabs(feet.x), 3.72f) << i;
            ASSERT_LT(std::fabs(feet.y), 3.72f) << i;
            ASSERT_GT(feet.z, -0.02f) << i;
            ASSERT_LT(feet.z, 1.22f) << i;
        }
    }
}

namespace {

class Gatehouse : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        GameData data(*engine, {XUM_DATA_DIRECTORY "/", ""});
        scene = makeCourtyard();
        addWorld(scene, *engine, data);
    }

    /// Straight on towards a point, as fast as one walks.
    static void walkTo(Walker& walker, const Obstacles& obstacles, float x, float y, float framesPerSecond)
    {
        for (int i = 0; i < 40 * static_cast<int>(framesPerSecond); ++i) {
            const Vector3<float> way(x - walker.getFeet().x, y - walker.getFeet().y, 0);
            if (length(way) < 0.15f) return;
            walker.move(obstacles, normalize(way) * std::min(2.5f, length(way) * framesPerSecond), false,
                        1 / framesPerSecond);
        }
        ADD_FAILURE() << "does not get to " << x << " " << y << " but to " << walker.getFeet().x << " "
                      << walker.getFeet().y << " " << walker.getFeet().z;
    }

    Scene scene;
};

} // namespace

TEST_F(Gatehouse, oneCanWalkInUpAllStairsAndOverTheBridge)
{
    const Obstacles obstacles(scene);
    for (const float framesPerSecond : {60.0f, 10.0f}) {
        Walker walker({0, -20, 0.1f});
        const auto go = [&](float x, float y) { walkTo(walker, obstacles, x, y, framesPerSecond); };
        go(0, -9);                                     // through the entrance of the courtyard
        go(-7.3f, -9), go(-7.3f, 12.3f), go(0, 12.3f); // around fountain and pavilion
        go(0, 25);                                     // through the north gate into the passage
        EXPECT_NEAR(walker.getFeet().z, 0.04f, 0.05f);
        go(5, 25), go(8.6f, 25); // through the door of the east tower
        EXPECT_NEAR(walker.getFeet().z, 0.3f, 0.02f);
        go(8.6f, 22.1f), go(10.2f, 22.1f), go(10.2f, 28); // up the stairs
        EXPECT_NEAR(walker.getFeet().z, 4.5f, 0.02f);
        go(8.6f, 28), go(8.6f, 25), go(0, 25); // over the bridge
        EXPECT_NEAR(walker.getFeet().z, 4.5f, 0.02f);
        go(-8.8f, 25), go(-9, 23.35f), go(-10.4f, 23.35f), go(-10.4f, 22.25f); // into the west tower
        EXPECT_NEAR(walker.getFeet().z, 4.5f, 0.02f);
        go(-4.4f, 22.25f); // up to its platform
        EXPECT_NEAR(walker.getFeet().z, 8.7f, 0.02f);
        go(-4.4f, 25);
        walk(walker, obstacles, {-6, 0, 0}, 3, framesPerSecond); // the battlements hold
        EXPECT_NEAR(walker.getFeet().z, 8.7f, 0.02f);
    }
}

TEST_F(Gatehouse, wallsAndBattlementsHold)
{
    const Obstacles obstacles(scene);
    Walker room({7.5f, 25, 0.4f});
    walk(room, obstacles, {0, 6, 0}, 3);
    EXPECT_NEAR(room.getFeet().y, 28.4f - 0.3f, 0.05f);
    Walker platform({-6, 26, 8.8f});
    walk(platform, obstacles, {0, 6, 0}, 3);
    EXPECT_LT(platform.getFeet().y, 29);
    EXPECT_NEAR(platform.getFeet().z, 8.7f, 0.05f);
}

TEST_F(Gatehouse, randomWalksNeverEnterAWall)
{
    const Obstacles obstacles(scene);
    const Vector3<float> starts[] = {{6, 25, 0.4f}, {-6, 25, 4.6f}, {0, 25, 4.6f}, {6, 26, 8.8f}, {0, 20, 0.1f}};
    std::minstd_rand chance(3);
    for (int i = 0; i < 1000; ++i) {
        Walker walker(starts[i % 5]);
        const float angle = static_cast<float>(chance() % 628) / 100;
        const Vector3<float> velocity = Vector3<float>(std::cos(angle), std::sin(angle), 0) * 8.0f;
        Vector3<float> before = walker.getFeet();
        for (int frame = 0; frame < 15; ++frame) {
            walker.move(obstacles, velocity, chance() % 8 == 0, 0.05f);
            const Vector3<float> after = walker.getFeet();
            ASSERT_TRUE(std::isfinite(after.x + after.y + after.z));
            const Vector3<float> middle = (before + after) * 0.5f + Vector3<float>(0, 0, 0.9f);
            ASSERT_FALSE(obstacles.isSolid(after + Vector3<float>(0, 0, 0.9f))) << i << " " << frame;
            // On a step up or down the straight line between two frames may cut its edge, but nothing thicker.
            ASSERT_TRUE(!obstacles.isSolid(middle) || std::fabs(after.z - before.z) > 0.1f) << i << " " << frame;
            before = after;
        }
    }
}

TEST_F(Gatehouse, landIsWhereItIsDrawn)
{
    const Obstacles obstacles(scene);
    for (const Vector3<float>& position : scene.land->getPositions())
        EXPECT_NEAR(obstacles.getGroundHeight(position.x, position.y), position.z, 1e-4f);
    const auto& indexes = scene.land->getIndexes();
    for (std::size_t i = 0; i + 2 < indexes.size(); i += 3) {
        const auto corner = [&](std::size_t n) {
            return scene.land->getPositions()[static_cast<std::size_t>(indexes[i + n])];
        };
        const Vector3<float> middle = (corner(0) + corner(1) + corner(2)) / 3.0f;
        ASSERT_NEAR(obstacles.getGroundHeight(middle.x, middle.y), middle.z, 1e-3f);
    }
    EXPECT_LT(Obstacles(Scene()).getGroundHeight(0, 0), -1e5f);
}

TEST_F(Gatehouse, nobodyLeavesTheLand)
{
    Walker walker({0, -60, 5});
    walk(walker, Obstacles(scene), {100, 0, 0}, 5);
    EXPECT_FLOAT_EQ(walker.getFeet().x, 116);
}
