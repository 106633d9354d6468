#include "allocation_counter.h"
#include "bsp_readers.h"
#include "bsp_trees.h"
#include "golden_bytes.h"

#include <xum/geometry/compiled_map.h>

#include <gtest/gtest.h>

#include <functional>
#include <new>

// What the library asks memory for, and what it does without.

namespace {

/// Where the files have counts and lengths.
constexpr std::size_t placesInMesh[] = {12, 20, 45, 69, 81, 85, 151, 159};
constexpr std::size_t placesInMap[] = {12, 21, 28};

constexpr std::uint32_t absurdCounts[] = {1000U, 0x00FFFFFFU, 0x01000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU};

constexpr std::size_t streamBuffer = 1U << 16; // file streams have one of their own

/// Runs an action with room for one allocation more each time until it succeeds; how often it failed.
int countFailures(const std::function<bool()>& action)
{
    for (int successes = 0;; ++successes) {
        bool isDone;
        {
            const FailingAllocations none(successes);
            isDone = action();
        }
        if (isDone) return successes;
    }
}

/// Takes no memory.
class CountingSerializer final : public Serializer {
public:
    bool failed() override { return false; }
    void write(const char*, int size) override { bytes += static_cast<std::size_t>(size); }

    std::size_t bytes = 0;
};

std::unique_ptr<BSPMesh> readGoldenMesh()
{
    return readFromMemory(twoLeavesBytes);
}

} // namespace

TEST(BSPMemory, isNotAskedForMuchByAbsurdCountsInAFile)
{
    for (const std::size_t place : placesInMesh)
        for (const std::uint32_t count : absurdCounts) {
            writeFileContents("mesh.bsp", withBytes(twoLeavesBytes, place, bytesOf(count)));
            takeLargestAllocation();
            FileDeserializer in("mesh.bsp");
            EXPECT_EQ(BSPMesh::deserialize(in), nullptr) << place;
            EXPECT_LE(takeLargestAllocation(), streamBuffer) << place << " " << count;
        }
}

TEST(BSPMemory, isNotAskedForMuchByAbsurdCountsOfAHost)
{
    for (const std::size_t place : placesInMesh)
        for (const std::uint32_t count : absurdCounts) {
            MemoryDeserializer in(withBytes(twoLeavesBytes, place, bytesOf(count)));
            takeLargestAllocation();
            EXPECT_EQ(BSPMesh::deserialize(in), nullptr) << place;
            EXPECT_LE(takeLargestAllocation(), 1U << 17) << place << " " << count;
        }
}

TEST(BSPMemory, isAskedForAtMostSixtyFourMegabytesByAbsurdLengthsInAMap)
{
    constexpr std::size_t cells = sizeof(MapGridCell) * 65536 + 64;
    for (const std::size_t place : placesInMap)
        for (const std::uint32_t count : {0x01000001U, 0x04000001U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            writeFileContents("level.map", withBytes(levelBytes, place, bytesOf(count)));
            takeLargestAllocation();
            delete CompiledMap::readFromFile("level.map");
            EXPECT_LE(takeLargestAllocation(), count <= 0x04000000U && place != 28 ? count + 16U : cells)
                << place << " " << count;
        }
}

TEST(BSPMemory, thatRunsOutGivesNoClone)
{
    const auto mesh = readGoldenMesh();
    std::unique_ptr<BSPMesh> copy;
    EXPECT_GT(countFailures([&] {
                  copy.reset(mesh->clone());
                  return copy != nullptr;
              }),
              10);
    EXPECT_EQ(describeMesh(copy.get()), describeMesh(mesh.get()));
    EXPECT_EQ(bytesOfMesh(*mesh), twoLeavesBytes);
}

TEST(BSPMemory, thatRunsOutLeavesNothingOfACopiedTree)
{
    const auto mesh = readGoldenMesh();
    int failures = 0;
    for (;; ++failures) {
        const FailingAllocations none(failures);
        try {
            const BSP copy(*mesh->getBSP());
            break;
        } catch (const std::bad_alloc&) {
        }
    }
    EXPECT_GT(failures, 10);
}

TEST(BSPMemory, thatRunsOutGivesNoMesh)
{
    MemoryDeserializer in(twoLeavesBytes); // takes no memory to read
    std::unique_ptr<BSPMesh> mesh;
    EXPECT_GT(countFailures([&] {
                  in.rewind();
                  mesh.reset(BSPMesh::deserialize(in));
                  return mesh != nullptr;
              }),
              10);
    EXPECT_EQ(describeMesh(mesh.get()), "(true b200 b7 p3 false b200)");
}

TEST(BSPMemory, thatRunsOutIsAFailureToWriteAMesh)
{
    const auto mesh = readGoldenMesh();
    CountingSerializer out;
    EXPECT_GT(countFailures([&] {
                  out.bytes = 0;
                  return mesh->serialize(out);
              }),
              3);
    EXPECT_EQ(out.bytes, twoLeavesBytes.size());
}

TEST(BSPMemory, thatRunsOutGivesNoMap)
{
    const std::string file = XUM_TEST_FILES "level.map";
    std::unique_ptr<CompiledMap> map;
    EXPECT_GT(countFailures([&] {
                  map.reset(CompiledMap::readFromFile(file));
                  return map != nullptr;
              }),
              10);
    EXPECT_EQ(map->getFirst(), "Level");
    EXPECT_EQ(map->getBSPMeshes().getCount(), 2U);
}

TEST(BSPMemory, thatRunsOutIsAFailureToWriteAMap)
{
    const std::string file = XUM_TEST_FILES "level.map";
    const std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile(file));
    const std::string written = "a_name_that_is_too_long_for_a_string_without_memory_of_its_own.map";
    EXPECT_GT(countFailures([&] { return map->writeToFile(written); }), 3);
    EXPECT_EQ(fileContents(written), levelBytes);
}

TEST(BSPMemory, isNotNeededToLocateAPointOrToDestroyATree)
{
    auto mesh = readGoldenMesh();
    const std::size_t before = allocationCount();
    EXPECT_NE(mesh->getBSP()->locatePoint({1, 2, 3}), nullptr);
    mesh.reset();
    EXPECT_EQ(allocationCount(), before);
}
