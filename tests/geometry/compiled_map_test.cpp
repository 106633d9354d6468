#include "bsp_readers.h"
#include "bsp_trees.h"
#include "file_contents.h"
#include "golden_bytes.h"

#include <xum/geometry/compiled_map.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#ifndef _WIN32
#    include <sys/stat.h>

#    include <thread>
#endif

namespace {

static_assert(!std::is_copy_constructible_v<CompiledMap> && !std::is_copy_assignable_v<CompiledMap>);

using namespace std::string_literals;

const std::string emptyMapBytes = bytesOf("21 58 75 6d 4d 61 70 00 00000000 00000000 00000000 00000000");

std::unique_ptr<CompiledMap> readMap(const std::string& bytes)
{
    writeFileContents("read.map", bytes);
    return std::unique_ptr<CompiledMap>(CompiledMap::readFromFile("read.map"));
}

/// Both texts, and each mesh. "null" for no map.
std::string describeMap(const CompiledMap* map)
{
    if (map == nullptr) return "null";
    std::string text = "'" + map->getFirst() + "' '" + map->getSecond() + "'";
    for (const BSPMesh* mesh = map->getBSPMeshes().getFirst(); mesh != nullptr; mesh = mesh->getNext())
        text += " " + describeMesh(mesh);
    return text;
}

std::string bytesOfMap(const CompiledMap& map)
{
    EXPECT_TRUE(map.writeToFile("written.map"));
    return fileContents("written.map");
}

/// What comes of the first bytes of files/level.map, from one length to the next one given.
struct Prefix {
    std::size_t length;
    std::string map;
};

const Prefix prefixes[] = {
    {0, "null"},
    {7, "'' ''"},                              // all of the magic
    {13, "'\0\0\0\0\0' ''"s},                  // a length, and none of the text
    {17, "'L\0\0\0\0' ''"s},                   //
    {18, "'Le\0\0\0' ''"s},                    //
    {19, "'Lev\0\0' ''"s},                     //
    {20, "'Leve\0' ''"s},                      //
    {21, "'Level' ''"},                        //
    {22, "'Level' '\0\0\0'"s},                 //
    {26, "'Level' 's\0\0'"s},                  //
    {27, "'Level' 'sk\0'"s},                   //
    {28, "'Level' 'sky'"},                     //
    {29, "null"},                              // two meshes, but no room for them
    {84, "'Level' 'sky' (false false) false"}, // room for two, of which the second is not there
    {101, "'Level' 'sky' (true false) false"},
    {102, "null"},
    {113, "'Level' 'sky' (true b200 b7 false) false"},
    {114, "null"},
    {181, "'Level' 'sky' (true b200 b7 p3 false) false"},
    {184, "null"},
    {191, "'Level' 'sky' (true b200 b7 p3 false b200) false"},
};

class NotingMesh final : public BSPMesh {
public:
    explicit NotingMesh(std::string& notes) : BSPMesh({}, new BSP(makeLeaf())), notes(notes) {}
    ~NotingMesh() override { notes += "mesh "; }

private:
    std::string& notes;
};

class NotingTerrain final : public Terrain {
public:
    explicit NotingTerrain(std::string& notes) : Terrain(1, 1, 1), notes(notes) {}
    ~NotingTerrain() override { notes += "terrain "; }

private:
    std::string& notes;
};

class NotingObject final : public MapGridObject {
public:
    NotingObject(std::string& notes, MapGridCell* cell) : MapGridObject(cell), notes(notes) {}
    ~NotingObject() override { notes += "object "; }

private:
    std::string& notes;
};

} // namespace

TEST(CompiledMap, startsWithItsTextsAndEmptyListsThatOwnTheirElements)
{
    CompiledMap map("first", "second");
    EXPECT_EQ(map.getFirst(), "first");
    EXPECT_EQ(map.getSecond(), "second");
    EXPECT_EQ(map.getBSPMeshes().getCount(), 0U);
    EXPECT_TRUE(map.getBSPMeshes().isOwner());
    EXPECT_EQ(map.getTerrains().getCount(), 0U);
    EXPECT_TRUE(map.getTerrains().isOwner());
    EXPECT_EQ(map.getGrid().getSize(), 256);
    EXPECT_EQ(map.getGrid().getCell(255, 255)->getCount(), 0U);
}

TEST(CompiledMap, destroysTheGridThenTheTerrainsThenTheMeshes)
{
    std::string notes;
    {
        CompiledMap map("", "");
        map.getBSPMeshes().append(new NotingMesh(notes));
        map.getTerrains().append(new NotingTerrain(notes));
        map.getBSPMeshes().append(new NotingMesh(notes));
        new NotingObject(notes, map.getGrid().getCell(1, 2));
    }
    EXPECT_EQ(notes, "object terrain mesh mesh ");
}

TEST(CompiledMap, takesMeshesOutOfOtherLists)
{
    BaseList<BSPMesh> list;
    auto* const mesh = new BSPMesh({}, new BSP(makeLeaf()));
    list.append(mesh);
    CompiledMap map("", "");
    map.getBSPMeshes().append(mesh);
    EXPECT_EQ(list.getCount(), 0U);
    EXPECT_EQ(map.getBSPMeshes().getFirst(), mesh);
}

TEST(CompiledMapFile, hasTheGoldenBytes)
{
    EXPECT_EQ(fileContents(XUM_TEST_FILES "level.map"), levelBytes);
    const std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile(XUM_TEST_FILES "level.map"));
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(describeMap(map.get()), "'Level' 'sky' (true b200 b7 p3 false b200) false");
    EXPECT_EQ(map->getBSPMeshes().getCount(), 2U);
    EXPECT_EQ(map->getBSPMeshes().getFirst()->getOrigin(), Vector3<float>(1, -2, 0.5f));
    EXPECT_EQ(map->getTerrains().getCount(), 0U);
    EXPECT_EQ(bytesOfMap(*map), levelBytes);
}

TEST(CompiledMapFile, ofAMapWithoutMeshesIsAHeaderAndTwoTexts)
{
    EXPECT_EQ(bytesOfMap(CompiledMap("", "")), emptyMapBytes);
    EXPECT_EQ(bytesOfMap(CompiledMap("abc", "de")), bytesOf("21 58 75 6d 4d 61 70 00 00000000"
                                                            "03000000 61 62 63 02000000 64 65 00000000"));
    for (const std::size_t firstLength : {0U, 1U, 300U, 70000U})
        for (const std::size_t secondLength : {0U, 2U, 5000U}) {
            const std::string first(firstLength, 'x');
            const std::string second(secondLength, 'y');
            const std::string bytes = bytesOfMap(CompiledMap(first, second));
            EXPECT_EQ(bytes.size(), 24 + firstLength + secondLength);
            const auto map = readMap(bytes);
            ASSERT_NE(map, nullptr);
            EXPECT_EQ(map->getFirst(), first);
            EXPECT_EQ(map->getSecond(), second);
            EXPECT_EQ(map->getBSPMeshes().getCount(), 0U);
        }
}

TEST(CompiledMapFile, keepsAllBytesOfTheTexts)
{
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    const auto map = readMap(bytesOfMap(CompiledMap(all, "\r\n\0\x1A"s)));
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->getFirst(), all);
    EXPECT_EQ(map->getSecond(), "\r\n\0\x1A"s);
}

TEST(CompiledMapFile, holdsMeshesInTheOrderOfTheirListAndNothingElse)
{
    std::string notes;
    CompiledMap map("a", "b");
    map.getTerrains().append(new Terrain(2, 2, 1));
    new NotingObject(notes, map.getGrid().getCell(0, 0));
    const std::string empty = bytesOfMap(map);
    EXPECT_EQ(empty.size(), 26U);
    std::string meshes;
    for (int i = 0; i < 5; ++i) {
        auto* const mesh = new BSPMesh({static_cast<float>(i), 0, 0}, new BSP(makeLeaf(i % 2 != 0)));
        map.getBSPMeshes().append(mesh);
        meshes += bytesOfMesh(*mesh);
    }
    const std::string bytes = bytesOfMap(map);
    EXPECT_EQ(bytes, empty.substr(0, 22) + bytesOf(5U) + meshes);
    const auto read = readMap(bytes);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(describeMap(read.get()), "'a' 'b' false true false true false");
    float x = 0;
    for (const BSPMesh* mesh = read->getBSPMeshes().getFirst(); mesh != nullptr; mesh = mesh->getNext(), ++x) {
        EXPECT_EQ(mesh->getOrigin(), Vector3<float>(x, 0, 0));
        EXPECT_EQ(mesh->getList(), &read->getBSPMeshes());
    }
    EXPECT_EQ(read->getTerrains().getCount(), 0U);
}

TEST(CompiledMapFile, isRefusedForADifferenceInAnyOfTheFirstSevenBytes)
{
    for (std::size_t place = 0; place < 7; ++place)
        for (int bit = 0; bit < 8; ++bit) {
            std::string bytes = levelBytes;
            bytes[place] = static_cast<char>(bytes[place] ^ 1 << bit);
            EXPECT_EQ(readMap(bytes), nullptr) << place;
        }
}

TEST(CompiledMapFile, isAcceptedWhateverFollowsTheMagicInTheHeader)
{
    for (std::size_t place = 7; place < 12; ++place)
        for (const int value : {0, 1, 127, 128, 255}) {
            const auto map = readMap(withBytes(levelBytes, place, std::string(1, static_cast<char>(value))));
            ASSERT_EQ(describeMap(map.get()), "'Level' 'sky' (true b200 b7 p3 false b200) false") << place;
        }
}

TEST(CompiledMapFile, givesTheMapUpToItsEndOrNull)
{
    for (std::size_t length = 0; length <= levelBytes.size(); ++length) {
        std::string expected;
        for (const Prefix& prefix : prefixes)
            if (prefix.length <= length) expected = prefix.map;
        EXPECT_EQ(describeMap(readMap(levelBytes.substr(0, length)).get()), expected) << length;
    }
}

TEST(CompiledMapFile, isRefusedForLengthsAndCountsThatItCannotHave)
{
    for (const std::size_t place : {12U, 21U})
        for (const std::uint32_t length : {0x80000000U, 0xFFFFFFFFU, 0x7FFFFFFFU, 0x04000001U})
            EXPECT_EQ(readMap(withBytes(levelBytes, place, bytesOf(length))), nullptr) << place << " " << length;
    for (const std::uint32_t count : {8U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ(readMap(withBytes(levelBytes, 28, bytesOf(count))), nullptr) << count;
    EXPECT_EQ(readMap(withBytes(emptyMapBytes, 20, bytesOf(1U))), nullptr);
}

TEST(CompiledMapFile, mayLackUpToSixtyFourMegabytesOfAText)
{
    const auto map = readMap(withBytes(levelBytes, 12, bytesOf(0x04000000U)));
    ASSERT_NE(map, nullptr);
    const std::string rest = levelBytes.substr(16);
    EXPECT_EQ(map->getFirst().size(), 64U << 20);
    EXPECT_EQ(map->getFirst().substr(0, rest.size()), rest);
    EXPECT_EQ(map->getFirst().find_first_not_of('\0', rest.size()), std::string::npos);
    EXPECT_EQ(map->getSecond(), "");
}

TEST(CompiledMapFile, isRefusedWhenAMeshIs)
{
    // The first mesh is whole, the second has a brush that does not exist.
    const std::string second = bytesOf("00000000 00000000 00000000 00000000 01 00 01000000 00000000 00000000");
    EXPECT_EQ(readMap(levelBytes.substr(0, 32 + 163) + second), nullptr);
    EXPECT_EQ(readMap(withBytes(levelBytes, 32 + 155, bytesOf(2U))), nullptr);
}

TEST(CompiledMapFile, mayBeLongerThanItsMeshes)
{
    EXPECT_EQ(describeMap(readMap(levelBytes + "more").get()), "'Level' 'sky' (true b200 b7 p3 false b200) false");
    EXPECT_EQ(describeMap(readMap(withBytes(levelBytes, 28, bytesOf(1U))).get()),
              "'Level' 'sky' (true b200 b7 p3 false b200)");
    EXPECT_EQ(describeMap(readMap(withBytes(levelBytes, 28, bytesOf(0U))).get()), "'Level' 'sky'");
}

TEST(CompiledMapFile, givesNullWithoutAMessageForWhatIsNoFile)
{
    EXPECT_EQ(CompiledMap::readFromFile("missing.map"), nullptr);
    EXPECT_EQ(CompiledMap::readFromFile(""), nullptr);
    EXPECT_EQ(CompiledMap::readFromFile("."), nullptr);
    EXPECT_EQ(readMap(""), nullptr);
    EXPECT_EQ(fileText("log.txt"), "");
}

TEST(CompiledMapFile, cannotBeWrittenWhereNoFileCanBe)
{
    CompiledMap map("a", "b");
    EXPECT_FALSE(map.writeToFile("no/such/directory/some.map"));
    EXPECT_FALSE(map.writeToFile("."));
    EXPECT_FALSE(map.writeToFile(""));
    map.getBSPMeshes().append(new BSPMesh({}, new BSP(makeLeaf())));
    EXPECT_FALSE(map.writeToFile("no/such/directory/some.map"));
    EXPECT_EQ(fileText("log.txt"), "");
}

#ifdef __linux__
TEST(CompiledMapFile, cannotBeWrittenToAFullDisk)
{
    EXPECT_FALSE(CompiledMap("a", "b").writeToFile("/dev/full")) << "it fails when the last bytes are handed on";
    EXPECT_FALSE(CompiledMap(std::string(1 << 20, 'a'), "b").writeToFile("/dev/full"));
    CompiledMap map("a", "b");
    HostContents contents;
    map.getBSPMeshes().append(
        makeMesh(makeLeaf(true, {}, {contents.addPolygon(std::vector<Vertex>(100000))})).release());
    EXPECT_FALSE(map.writeToFile("/dev/full"));
}
#endif

#ifndef _WIN32
TEST(CompiledMapFile, canComeThroughAPipe)
{
    ASSERT_EQ(mkfifo("map.pipe", 0600), 0);
    const auto readThroughPipe = [](const std::string& bytes) {
        std::thread writer([&bytes] { writeFileContents("map.pipe", bytes); });
        std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile("map.pipe"));
        writer.join();
        return map;
    };
    EXPECT_EQ(describeMap(readThroughPipe(levelBytes).get()), "'Level' 'sky' (true b200 b7 p3 false b200) false");
    EXPECT_EQ(readThroughPipe(levelBytes.substr(0, 200)), nullptr);
    EXPECT_EQ(readThroughPipe(withBytes(levelBytes, 12, bytesOf(0x04000001U))), nullptr) << "who knows what comes";
    EXPECT_EQ(readThroughPipe(withBytes(levelBytes, 28, bytesOf(0xFFFFFFFFU))), nullptr);
}
#endif

TEST(CompiledMapFile, replacesWhatThePathHeld)
{
    writeFileContents("written.map", std::string(1000, 'x'));
    EXPECT_EQ(bytesOfMap(CompiledMap("", "")), emptyMapBytes);
}

TEST(CompiledMapFile, givesNullOrAMapForAnyChangedByte)
{
    // What is in meshes is no concern of the map; the tests of meshes change all of their bytes.
    for (std::size_t place = 0; place < levelBytes.size(); place += place < 80 ? 1 : 7)
        for (const char byte : {'\0', '\xFF', static_cast<char>(levelBytes[place] + 1)}) {
            const auto map = readMap(withBytes(levelBytes, place, std::string(1, byte)));
            if (!map || map->getFirst().size() + map->getSecond().size() > 100000) continue; // those take long to write
            const std::string bytes = bytesOfMap(*map);
            const auto again = readMap(bytes);
            ASSERT_NE(again, nullptr) << place;
            EXPECT_EQ(bytesOfMap(*again), bytes) << place;
        }
}

TEST(CompiledMapFile, givesTheMapThatWasWritten)
{
    RandomTrees random(6);
    for (int i = 0; i < 20; ++i) {
        HostContents contents;
        CompiledMap map(std::string(random.pick(100), 'a'), std::string(random.pick(100), 'b'));
        const std::size_t count = random.pick(8);
        for (std::size_t k = 0; k < count; ++k)
            map.getBSPMeshes().append(
                makeMesh(random.makeTree(contents, static_cast<int>(random.pick(60))), random.makePoint()).release());
        const std::string bytes = bytesOfMap(map);
        const auto read = readMap(bytes);
        ASSERT_NE(read, nullptr) << i;
        EXPECT_EQ(read->getFirst(), map.getFirst());
        EXPECT_EQ(read->getSecond(), map.getSecond());
        ASSERT_EQ(read->getBSPMeshes().getCount(), count);
        const BSPMesh* other = read->getBSPMeshes().getFirst();
        for (const BSPMesh* mesh = map.getBSPMeshes().getFirst(); mesh != nullptr; mesh = mesh->getNext()) {
            EXPECT_EQ(mesh->getOrigin(), other->getOrigin());
            EXPECT_EQ(differenceOfTrees(mesh->getBSP()->getRoot(), other->getBSP()->getRoot()), "") << i;
            other = other->getNext();
        }
        EXPECT_EQ(bytesOfMap(*read), bytes) << i;
    }
}
