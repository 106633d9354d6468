#include "bsp_readers.h"
#include "bsp_trees.h"
#include "golden_bytes.h"

#include <gtest/gtest.h>

namespace {

const Plane<float> acrossX({1, 0, 0}, 5);

/// The tree of files/two_leaves.bsp.
class TwoLeaves {
public:
    BSPMesh& getMesh() { return *mesh; }

private:
    HostContents contents;
    Brush* first = contents.addBrush({Plane<float>({0, 0, 1}, 4)}, 200);
    Brush* second = contents.addBrush({}, 7);
    Polygon* polygon =
        contents.addPolygon({Vertex({9, 1, 0}, {0, 0}), Vertex({9, 2, 0}, {1, 0}), Vertex({9, 2, 3}, {1, 0.25f})});
    BSPNode* front = makeLeaf(true, {first, second}, {polygon});
    std::unique_ptr<BSPMesh> mesh =
        makeMesh(new BSPNode({{1, 0, 0}, 8}, front, makeLeaf(false, {first})), {1, -2, 0.5f});
};

} // namespace

TEST(BSPMeshWriting, givesTheGoldenBytes)
{
    TwoLeaves tree;
    EXPECT_EQ(bytesOfMesh(tree.getMesh()), twoLeavesBytes);
    EXPECT_EQ(fileContents(XUM_TEST_FILES "two_leaves.bsp"), twoLeavesBytes);
    EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf())), emptyLeafBytes);
}

TEST(BSPMeshWriting, givesTheGoldenBytesToAFile)
{
    TwoLeaves tree;
    {
        FileSerializer out("written.bsp");
        EXPECT_TRUE(tree.getMesh().serialize(out));
    }
    EXPECT_EQ(fileContents("written.bsp"), twoLeavesBytes);
}

TEST(BSPMeshWriting, leavesOutWordsTagsAndLinks)
{
    TwoLeaves tree;
    BaseList<BSPMesh> list;
    list.append(&tree.getMesh());
    BSPNode& root = *tree.getMesh().getBSP()->getRoot();
    root.word = 1;
    BSPNodeContentLeaf& leaf = *root.getNode()->front->getLeaf();
    leaf.brushes[0]->words[0] = 2;
    leaf.brushes[0]->words[1] = 3;
    leaf.polygons[0]->tag = 4;
    EXPECT_EQ(bytesOfMesh(tree.getMesh()), twoLeavesBytes);
}

TEST(BSPMeshWriting, takesAFewBytesForSmallTrees)
{
    HostContents contents;
    Brush* const brush = contents.addBrush({acrossX});
    EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf())).size(), 26U);
    EXPECT_EQ(bytesOfMesh(*makeMesh(new BSPNode(acrossX, makeLeaf(), makeLeaf()))).size(), 53U);
    EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf(false, {brush}))).size(), 26U + 25U + 4U);
    EXPECT_EQ(bytesOfMesh(*makeMesh(new BSPNode(acrossX, makeLeaf(false, {brush}), makeLeaf(false, {brush})))).size(),
              86U);
    for (std::size_t count = 0; count < 5; ++count) {
        Polygon* const polygon = contents.addPolygon(std::vector<Vertex>(count));
        EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf(false, {}, {polygon}))).size(), 26U + 4U + 20U * count);
    }
}

TEST(BSPMeshWriting, writesAnEmptyLeafAsItsFlagItsKindAndTwoZeros)
{
    const std::string head(16, '\0');
    EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf(false))), head + bytesOf("01 00 00000000 00000000"));
    EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf(true))), head + bytesOf("01 01 00000000 00000000"));
}

TEST(BSPMeshWriting, numbersBrushesAsTheyAreMetFrontBeforeBack)
{
    HostContents contents;
    Brush* const a = contents.addBrush({}, 1);
    Brush* const b = contents.addBrush({}, 2);
    Brush* const c = contents.addBrush({}, 3);
    // The front subtree comes first whole, then the back one; c is met first, then a, then b.
    BSPNode* const front = new BSPNode(acrossX, makeLeaf(), makeLeaf(false, {c, a, c}));
    const auto mesh = makeMesh(new BSPNode(acrossX, front, makeLeaf(false, {b, a})));
    const std::string plane = bytesOf("00 0000803f 00000000 00000000 0000a040");
    EXPECT_EQ(bytesOfMesh(*mesh), std::string(12, '\0') +
                                      bytesOf("03000000 00000000 00000000 03" // c
                                              "01000000 00000000 01"          // a
                                              "02000000 00000000 02") +       // b
                                      plane +
                                      plane + bytesOf("01 00 00000000 00000000") +
                                      bytesOf("01 00 03000000 00000000 01000000 00000000 00000000") +
                                      bytesOf("01 00 02000000 02000000 01000000 00000000"));
}

TEST(BSPMeshWriting, writesMissingNodesAsEmptyLeaves)
{
    EXPECT_EQ(bytesOfMesh(*makeMesh(nullptr)), emptyLeafBytes);
    EXPECT_EQ(bytesOfMesh(BSPMesh({}, nullptr)), emptyLeafBytes);
    EXPECT_EQ(bytesOfMesh(*makeMesh(new BSPNode(acrossX, nullptr, makeLeaf(true)))),
              bytesOfMesh(*makeMesh(new BSPNode(acrossX, makeLeaf(false), makeLeaf(true)))));
}

TEST(BSPMeshWriting, leavesOutMissingBrushesAndPolygons)
{
    HostContents contents;
    Brush* const brush = contents.addBrush({acrossX}, 9);
    Polygon* const polygon = contents.addPolygon(std::vector<Vertex>(3));
    EXPECT_EQ(bytesOfMesh(*makeMesh(makeLeaf(true, {nullptr, brush, nullptr}, {nullptr, polygon}))),
              bytesOfMesh(*makeMesh(makeLeaf(true, {brush}, {polygon}))));
}

TEST(BSPMeshWriting, givesTheSameBytesForACopyOfWhatIsShared)
{
    TwoLeaves tree;
    const std::string first = bytesOfMesh(tree.getMesh());
    EXPECT_EQ(bytesOfMesh(tree.getMesh()), first);
    const std::unique_ptr<BSPMesh> copy(tree.getMesh().clone());
    EXPECT_EQ(bytesOfMesh(*copy).size(), first.size() + 25) << "the shared brush has become two";
}

TEST(BSPMeshWriting, failsWhenTheSerializerHasFailed)
{
    MemorySerializer out;
    out.isBroken = true;
    EXPECT_FALSE(makeMesh(makeLeaf())->serialize(out));

    FileSerializer missing("no/such/directory/mesh.bsp");
    EXPECT_FALSE(missing.failed());
    EXPECT_FALSE(makeMesh(makeLeaf())->serialize(missing));
}

TEST(BSPMeshWriting, asksForTheFailureOnceAtTheEnd)
{
    class Counting final : public Serializer {
    public:
        bool failed() override
        {
            ++questions;
            bytesAtQuestion = bytes;
            return false;
        }
        void write(const char* data, int size) override
        {
            EXPECT_NE(data, nullptr);
            EXPECT_GT(size, 0);
            bytes += static_cast<std::size_t>(size);
        }

        int questions = 0;
        std::size_t bytes = 0;
        std::size_t bytesAtQuestion = 0;
    };
    Counting out;
    TwoLeaves tree;
    EXPECT_TRUE(tree.getMesh().serialize(out));
    EXPECT_EQ(out.questions, 1);
    EXPECT_EQ(out.bytesAtQuestion, twoLeavesBytes.size());
}
