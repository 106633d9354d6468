#include "bsp_readers.h"
#include "bsp_trees.h"
#include "golden_bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using AtEnd = MemoryDeserializer::AtEnd;

/// Where files/two_leaves.bsp has counts, and how many of the elements it has.
struct Count {
    const char* name;
    std::size_t place;
    std::uint32_t value;
};

constexpr Count counts[] = {
    {"brushes", 12, 2},          {"planes of brush 0", 20, 1}, {"planes of brush 1", 45, 0},
    {"brushes in front", 69, 2}, {"polygons in front", 81, 1}, {"vertices", 85, 3},
    {"brushes behind", 151, 1},  {"polygons behind", 159, 0},
};

/// Where it has numbers of brushes.
constexpr std::size_t recordNumbers[] = {16, 41};
constexpr std::size_t usedNumbers[] = {73, 77, 155};

/// What comes of the first bytes of files/two_leaves.bsp, from one length to the next one given. A file that ends where
/// a count would be has none of those elements; where the elements of a count are missing it is damaged.
struct Prefix {
    std::size_t length;
    const char* tree;
};

constexpr Prefix prefixes[] = {
    {0, "false"},                          // nothing, or a part of the origin
    {13, "null"},                          // brushes, but no room for them
    {42, "false"},                         // both brushes, and no tree
    {51, "(false false)"},                 // a plane, whole or in part
    {69, "(true false)"},                  //
    {70, "null"},                          // brushes of the leaf
    {81, "(true b200 b7 false)"},          //
    {82, "null"},                          // polygons of the leaf
    {149, "(true b200 b7 p3 false)"},      //
    {152, "null"},                         // brushes of the other leaf
    {159, "(true b200 b7 p3 false b200)"}, //
};

const char* treeOfPrefix(std::size_t length)
{
    const char* tree = "";
    for (const Prefix& prefix : prefixes)
        if (prefix.length <= length) tree = prefix.tree;
    return tree;
}

void expectBothRefuse(const std::string& bytes, const std::string& what)
{
    EXPECT_EQ(describeMesh(readFromFile(bytes).get()), "null") << what;
    EXPECT_EQ(describeMesh(readFromMemory(bytes).get()), "null") << what;
    EXPECT_EQ(describeMesh(readFromMemory(bytes, AtEnd::givesNothing).get()), "null") << what;
}

void expectBothGive(const std::string& tree, const std::string& bytes)
{
    EXPECT_EQ(describeMesh(readFromFile(bytes).get()), tree);
    EXPECT_EQ(describeMesh(readFromMemory(bytes).get()), tree);
}

/// Whatever was read can be used like any other mesh.
void useMesh(BSPMesh& mesh, const std::string& what)
{
    BSP& tree = *mesh.getBSP();
    ASSERT_NE(tree.locatePoint({1, 2, 3}), nullptr) << what;
    for (const BSPNode* leaf : tree.calculateLeafArray())
        for (const Brush* brush : leaf->getLeaf()->brushes) ASSERT_NE(brush, nullptr) << what;
    const std::string bytes = bytesOfMesh(mesh);
    const std::unique_ptr<BSPMesh> again = readFromMemory(bytes);
    ASSERT_NE(again, nullptr) << what;
    EXPECT_EQ(bytesOfMesh(*again), bytes) << what;
    const std::unique_ptr<BSPMesh> copy(mesh.clone());
    EXPECT_EQ(describeMesh(copy.get()), describeMesh(&mesh)) << what;
}

} // namespace

TEST(BSPMeshReading, hasTheGoldenBytes)
{
    for (const bool isFile : {true, false}) {
        const auto mesh = isFile ? readFromFile(twoLeavesBytes) : readFromMemory(twoLeavesBytes);
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->getOrigin(), Vector3<float>(1, -2, 0.5f));
        EXPECT_EQ(describeMesh(mesh.get()), "(true b200 b7 p3 false b200)");
        const BSPNodeContentNode& node = *mesh->getBSP()->getRoot()->getNode();
        EXPECT_EQ(node.plane, Plane<float>({1, 0, 0}, 8));
        const BSPNodeContentLeaf& front = *node.front->getLeaf();
        EXPECT_EQ(front.brushes[0]->planes, (std::vector<Plane<float>>{Plane<float>({0, 0, 1}, 4)}));
        EXPECT_TRUE(front.brushes[1]->planes.empty());
        const std::vector<Vertex> expected = {Vertex({9, 1, 0}, {0, 0}), Vertex({9, 2, 0}, {1, 0}),
                                              Vertex({9, 2, 3}, {1, 0.25f})};
        EXPECT_TRUE(areSameBytes(front.polygons[0]->vertices, expected));
    }
}

TEST(BSPMeshReading, takesExactlyTheBytesOfTheMesh)
{
    MemoryDeserializer in(twoLeavesBytes + emptyLeafBytes + "more");
    const std::unique_ptr<BSPMesh> first(BSPMesh::deserialize(in));
    EXPECT_EQ(in.getPosition(), 163U);
    EXPECT_EQ(in.getAsked(), 163U);
    const std::unique_ptr<BSPMesh> second(BSPMesh::deserialize(in));
    EXPECT_EQ(in.getPosition(), 163U + 26U);
    EXPECT_EQ(describeMesh(first.get()), "(true b200 b7 p3 false b200)");
    EXPECT_EQ(describeMesh(second.get()), "false");

    writeFileContents("two.bsp", twoLeavesBytes + emptyLeafBytes + "more");
    FileDeserializer file("two.bsp");
    const std::unique_ptr<BSPMesh> third(BSPMesh::deserialize(file));
    EXPECT_EQ(file.getRemaining(), 26U + 4U);
    const std::unique_ptr<BSPMesh> fourth(BSPMesh::deserialize(file));
    EXPECT_EQ(file.getRemaining(), 4U);
    EXPECT_EQ(describeMesh(fourth.get()), "false");
}

TEST(BSPMeshReading, makesAMeshInNoList)
{
    const auto mesh = readFromMemory(twoLeavesBytes);
    EXPECT_EQ(mesh->getList(), nullptr);
    EXPECT_EQ(mesh->getPrev(), nullptr);
    EXPECT_EQ(mesh->getNext(), nullptr);
}

TEST(BSPMeshReading, sharesBrushesAgainAsTheyWereShared)
{
    const auto mesh = readFromMemory(twoLeavesBytes);
    const BSPNodeContentNode& node = *mesh->getBSP()->getRoot()->getNode();
    EXPECT_EQ(node.front->getLeaf()->brushes[0], node.back->getLeaf()->brushes[0]);
    EXPECT_EQ(bytesOfMesh(*mesh), twoLeavesBytes);
}

TEST(BSPMeshReading, startsWithoutWordsAndTags)
{
    const auto mesh = readFromMemory(twoLeavesBytes);
    const BSPNode& root = *mesh->getBSP()->getRoot();
    EXPECT_EQ(root.word, 0U);
    const BSPNodeContentLeaf& front = *root.getNode()->front->getLeaf();
    EXPECT_EQ(front.brushes[0]->words[0], 0U);
    EXPECT_EQ(front.brushes[0]->words[1], 0U);
    EXPECT_EQ(front.polygons[0]->tag, -1);
}

TEST(BSPMeshReading, placesBrushesByTheNumbersOfTheirRecords)
{
    // The second record first, as a writer that walks a hash table may have it.
    const std::string swapped = twoLeavesBytes.substr(0, 16) + twoLeavesBytes.substr(41, 9) +
                                twoLeavesBytes.substr(16, 25) + twoLeavesBytes.substr(50);
    expectBothGive("(true b200 b7 p3 false b200)", swapped);
    EXPECT_EQ(bytesOfMesh(*readFromFile(swapped)), twoLeavesBytes);
}

TEST(BSPMeshReading, keepsAllBrushKindsAndTakesAnyOtherKindThanZeroForTrue)
{
    for (int value = 0; value < 256; ++value) {
        const std::string byte(1, static_cast<char>(value));
        const auto mesh = readFromMemory(withBytes(withBytes(twoLeavesBytes, 40, byte), 68, byte));
        ASSERT_NE(mesh, nullptr);
        const BSPNodeContentLeaf& leaf = *mesh->getBSP()->getRoot()->getNode()->front->getLeaf();
        EXPECT_EQ(leaf.brushes[0]->kind, value);
        EXPECT_EQ(leaf.kind, value != 0);
        EXPECT_EQ(bytesOfMesh(*mesh)[40], byte[0]);
        EXPECT_EQ(bytesOfMesh(*mesh)[68], value != 0 ? 1 : 0) << "a kind of 7 becomes 1";
    }
}

TEST(BSPMeshReading, takesAnyOtherFlagThanZeroForALeaf)
{
    for (const char* flag : {"01", "02", "80", "ff"}) {
        const std::string bytes = withBytes(emptyLeafBytes, 16, bytesOf(flag));
        expectBothGive("false", bytes);
        EXPECT_EQ(bytesOfMesh(*readFromMemory(bytes)), emptyLeafBytes);
    }
}

TEST(BSPMeshReading, keepsNumbersThatAreNone)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::string numbers = bytesOf(std::numeric_limits<float>::quiet_NaN()) + bytesOf(-infinity) +
                                bytesOf(infinity) + bytesOf(-0.0f) + bytesOf("0100807f");
    std::string bytes = withBytes(twoLeavesBytes, 129, numbers);
    bytes = withBytes(bytes, 24, numbers.substr(0, 16));
    bytes = withBytes(bytes, 51, numbers.substr(4, 16));
    bytes = withBytes(bytes, 0, numbers.substr(8, 12));
    EXPECT_EQ(bytesOfMesh(*readFromFile(bytes)), bytes);
    EXPECT_EQ(bytesOfMesh(*readFromMemory(bytes)), bytes);
}

TEST(BSPMeshReading, givesTheTreeUpToTheEndOfAFileOrNull)
{
    for (std::size_t length = 0; length <= twoLeavesBytes.size(); ++length) {
        const auto mesh = readFromFile(twoLeavesBytes.substr(0, length));
        EXPECT_EQ(describeMesh(mesh.get()), treeOfPrefix(length)) << length;
        if (mesh) useMesh(*mesh, "first " + std::to_string(length));
    }
}

TEST(BSPMeshReading, hasZerosWhereAFileEndsInTheOriginOrAPlane)
{
    EXPECT_EQ(readFromFile("")->getOrigin(), Vector3<float>());
    EXPECT_EQ(readFromFile(twoLeavesBytes.substr(0, 4))->getOrigin(), Vector3<float>(1, 0, 0));
    EXPECT_EQ(readFromFile(twoLeavesBytes.substr(0, 8))->getOrigin(), Vector3<float>(1, -2, 0));
    EXPECT_EQ(readFromFile(twoLeavesBytes.substr(0, 51))->getBSP()->getRoot()->getNode()->plane, Plane<float>());
    EXPECT_EQ(readFromFile(twoLeavesBytes.substr(0, 55))->getBSP()->getRoot()->getNode()->plane,
              Plane<float>({1, 0, 0}, 0));
}

TEST(BSPMeshReading, givesNullForEveryShorterPieceOfAHostsData)
{
    for (const AtEnd atEnd : {AtEnd::givesTheRest, AtEnd::givesNothing})
        for (const std::string& whole : {twoLeavesBytes, emptyLeafBytes})
            for (std::size_t length = 0; length < whole.size(); ++length)
                EXPECT_EQ(readFromMemory(whole.substr(0, length), atEnd), nullptr) << length;
}

TEST(BSPMeshReading, givesNullForCountsThatTheDataCannotHave)
{
    for (const Count& count : counts) {
        ASSERT_EQ(twoLeavesBytes.substr(count.place, 4), bytesOf(count.value)) << count.name;
        for (const std::uint32_t absurd : {0x80000000U, 0xFFFFFFFFU, 0x7FFFFFFFU, 0x01000001U, 0x01000000U, 1000U})
            expectBothRefuse(withBytes(twoLeavesBytes, count.place, bytesOf(absurd)), count.name);
    }
}

TEST(BSPMeshReading, needsRoomInAFileForAllElementsOfACount)
{
    const std::string leaf = std::string(16, '\0') + bytesOf("01 00");
    const std::string oneBrush = std::string(12, '\0') + bytesOf("01000000 00000000 00000000 09") + bytesOf("01 00");
    const auto withZeros = [](const std::string& start, std::size_t count) { return start + std::string(count, '\0'); };
    EXPECT_EQ(describeMesh(readFromFile(withZeros(oneBrush + bytesOf(4U), 15)).get()), "null");
    EXPECT_EQ(describeMesh(readFromFile(withZeros(oneBrush + bytesOf(4U), 16)).get()), "false b9 b9 b9 b9");
    const std::string polygons = leaf + bytesOf(0U);
    EXPECT_EQ(describeMesh(readFromFile(withZeros(polygons + bytesOf(4U), 15)).get()), "null");
    EXPECT_EQ(describeMesh(readFromFile(withZeros(polygons + bytesOf(4U), 16)).get()), "false p0 p0 p0 p0");
    EXPECT_EQ(describeMesh(readFromFile(withZeros(polygons + bytesOf(1U) + bytesOf(2U), 39)).get()), "null");
    EXPECT_EQ(describeMesh(readFromFile(withZeros(polygons + bytesOf(1U) + bytesOf(2U), 40)).get()), "false p2");
    const std::string planes = std::string(12, '\0') + bytesOf("01000000 00000000 02000000");
    EXPECT_EQ(describeMesh(readFromFile(withZeros(planes, 31)).get()), "null");
    EXPECT_EQ(describeMesh(readFromFile(withZeros(planes, 32)).get()), "false");
}

TEST(BSPMeshReading, takesManySmallBrushes)
{
    HostContents contents;
    std::vector<Brush*> brushes(1000);
    for (std::size_t i = 0; i < brushes.size(); ++i) brushes[i] = contents.addBrush({}, static_cast<unsigned char>(i));
    // Most of the file are records of the smallest size, with nothing but the count of a leaf behind them.
    std::string bytes = bytesOfMesh(*makeMesh(makeLeaf(false, brushes)));
    bytes.resize(16 + 9 * brushes.size());
    EXPECT_EQ(describeMesh(readFromFile(bytes).get()), "false");
    bytes += bytesOf("01 01 01000000 e7030000 00000000");
    EXPECT_EQ(describeMesh(readFromFile(bytes).get()), "true b231");
    EXPECT_EQ(describeMesh(readFromMemory(bytes).get()), "true b231");
}

TEST(BSPMeshReading, believesNoMoreThanSixteenMillionOfAnythingFromAHost)
{
    class Endless final : public Deserializer {
    public:
        explicit Endless(const std::string& bytes) : start(bytes) {}
        bool failed() override { return false; }
        void read(char* data, int size) override
        {
            std::memset(data, 0, static_cast<std::size_t>(size));
            start.read(data, size); // then there are zeros for ever
            asked += size;
        }

        int asked = 0;

    private:
        MemoryDeserializer start;
    };
    for (const Count& count : counts) {
        Endless in(withBytes(twoLeavesBytes, count.place, bytesOf(0x01000001U)));
        EXPECT_EQ(BSPMesh::deserialize(in), nullptr) << count.name;
        EXPECT_EQ(in.asked, static_cast<int>(count.place) + 4) << count.name << " are not read";
    }
}

TEST(BSPMeshReading, givesNullForBrushesThatDoNotExist)
{
    for (const std::size_t place : usedNumbers)
        for (const std::uint32_t number : {2U, 3U, 0x80000000U, 0xFFFFFFFFU})
            expectBothRefuse(withBytes(twoLeavesBytes, place, bytesOf(number)), std::to_string(place));
    expectBothRefuse(bytesOf("00000000 00000000 00000000 00000000 01 00 01000000 00000000 00000000"), "no brushes");
}

TEST(BSPMeshReading, givesNullForRecordsThatLeaveAHole)
{
    for (const std::size_t place : recordNumbers)
        for (const std::uint32_t number : {2U, 0x80000000U, 0xFFFFFFFFU})
            expectBothRefuse(withBytes(twoLeavesBytes, place, bytesOf(number)), std::to_string(place));
    expectBothRefuse(withBytes(twoLeavesBytes, 16, bytesOf(1U)), "number 1 twice");
    expectBothRefuse(withBytes(twoLeavesBytes, 41, bytesOf(0U)), "number 0 twice");
}

TEST(BSPMeshReading, asksAHostForLittleMoreThanThereIs)
{
    for (const Count& count : counts)
        for (const std::uint32_t absurd : {0x01000000U, 0x01000001U, 0xFFFFFFFFU}) {
            MemoryDeserializer in(withBytes(twoLeavesBytes, count.place, bytesOf(absurd)));
            EXPECT_EQ(BSPMesh::deserialize(in), nullptr) << count.name;
            EXPECT_LT(in.getAsked(), 100000U) << count.name;
        }
}

TEST(BSPMeshReading, givesNullWhenTheDeserializerHasFailed)
{
    MemoryDeserializer in(twoLeavesBytes);
    in.isBroken = true;
    EXPECT_EQ(BSPMesh::deserialize(in), nullptr);

#ifdef __linux__
    FileDeserializer unreadable("/proc/self/mem"); // can be opened, but there is nothing at its start
    EXPECT_EQ(BSPMesh::deserialize(unreadable), nullptr);
    EXPECT_TRUE(unreadable.failed());
#endif
}

TEST(BSPMeshReading, givesAnEmptyLeafForAFileThatIsNotThere)
{
    FileDeserializer missing("missing.bsp");
    const std::unique_ptr<BSPMesh> mesh(BSPMesh::deserialize(missing));
    EXPECT_FALSE(missing.failed()) << "the end of the data is no failure";
    EXPECT_EQ(describeMesh(mesh.get()), "false");
}

TEST(BSPMeshReading, givesNullOrAMeshForAnyChangedByte)
{
    for (std::size_t place = 0; place < twoLeavesBytes.size(); ++place)
        for (const char byte : {'\0', '\xFF', static_cast<char>(twoLeavesBytes[place] + 1)}) {
            const std::string changed = withBytes(twoLeavesBytes, place, std::string(1, byte));
            const std::string what = "byte " + std::to_string(place);
            const auto fromFile = readFromFile(changed);
            if (fromFile) useMesh(*fromFile, what);
            const auto fromMemory = readFromMemory(changed);
            if (fromMemory) useMesh(*fromMemory, what);
            // A host's data are believed where they are whole; both ways must then agree.
            EXPECT_EQ(describeMesh(fromMemory ? fromMemory.get() : fromFile.get()), describeMesh(fromFile.get()))
                << what;
        }
}

TEST(BSPMeshReading, givesNullOrAMeshForAnyData)
{
    std::mt19937 random(4);
    for (int i = 0; i < 400; ++i) {
        std::string bytes = i % 2 == 0 ? twoLeavesBytes : std::string(random() % 200, '\0');
        for (unsigned k = 0; k < 1 + random() % 8 && !bytes.empty(); ++k)
            bytes[random() % bytes.size()] = static_cast<char>(random() % 4 == 0 ? random() : random() % 3);
        bytes.resize(bytes.size() - std::min<std::size_t>(bytes.size(), random() % 30));
        for (const bool isFile : {true, false}) {
            const auto mesh = isFile ? readFromFile(bytes) : readFromMemory(bytes);
            if (mesh) useMesh(*mesh, "data " + std::to_string(i));
        }
    }
}

TEST(BSPMeshReading, givesTheTreeThatWasWritten)
{
    RandomTrees random(5);
    for (int i = 0; i < 150; ++i) {
        HostContents contents;
        const auto mesh = makeMesh(random.makeTree(contents, i), random.makePoint());
        const std::string bytes = bytesOfMesh(*mesh);
        for (const bool isFile : {true, false}) {
            const auto read = isFile ? readFromFile(bytes) : readFromMemory(bytes);
            ASSERT_NE(read, nullptr) << i;
            EXPECT_EQ(read->getOrigin(), mesh->getOrigin());
            EXPECT_EQ(differenceOfTrees(mesh->getBSP()->getRoot(), read->getBSP()->getRoot()), "") << i;
            EXPECT_EQ(bytesOfMesh(*read), bytes) << i;
        }
    }
}

TEST(BSPMeshReading, takesLongListsFromAHostInPieces)
{
    // More than are asked for at once, and no multiple of it.
    constexpr std::size_t count = 10001;
    HostContents contents;
    std::vector<Plane<float>> planes(count);
    std::vector<Vertex> vertices(count);
    for (std::size_t i = 0; i < count; ++i) {
        planes[i].distance = static_cast<float>(i);
        vertices[i].textureCoordinate.y = static_cast<float>(i);
    }
    const std::vector<Brush*> brushes(count, contents.addBrush(planes));
    const auto mesh = makeMesh(makeLeaf(true, brushes, {contents.addPolygon(vertices)}));
    const std::string bytes = bytesOfMesh(*mesh);
    const auto read = readFromMemory(bytes);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(differenceOfTrees(mesh->getBSP()->getRoot(), read->getBSP()->getRoot()), "");
    for (std::size_t missing = 20; missing < bytes.size(); missing += 4999)
        EXPECT_EQ(readFromMemory(bytes.substr(0, bytes.size() - missing)), nullptr) << missing;
}
