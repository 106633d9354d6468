#include "bsp_trees.h"
#include "memory_serializers.h"

#include <gtest/gtest.h>

namespace {

const Plane<float> acrossX({1, 0, 0}, 5);

/// Every value of a tree that a clone takes over, set to something else than it starts with.
class BSPClone : public ::testing::Test {
protected:
    BSPClone()
    {
        shared->words[0] = 11;
        shared->words[1] = 12;
        polygon->tag = 13;
        root->word = 14;
        front->word = 15;
        back->word = 16;
    }

    static std::size_t countBytes(const BSPMesh& mesh)
    {
        MemorySerializer out;
        EXPECT_TRUE(mesh.serialize(out));
        return out.bytes.size();
    }

    HostContents contents;
    Brush* shared = contents.addBrush({acrossX}, 200);
    Polygon* polygon = contents.addPolygon({Vertex({1, 2, 3}, {4, 5})});
    BSPNode* front = makeLeaf(true, {shared}, {polygon});
    BSPNode* back = makeLeaf(false, {shared});
    BSPNode* root = new BSPNode(acrossX, front, back);
    std::unique_ptr<BSPMesh> mesh = makeMesh(root, {7, 8, 9});
};

} // namespace

TEST_F(BSPClone, isInNoListAndAtTheSameOrigin)
{
    BaseList<BSPMesh> list;
    list.append(mesh.get());
    const std::unique_ptr<BSPMesh> copy(mesh->clone());
    EXPECT_EQ(copy->getOrigin(), Vector3<float>(7, 8, 9));
    EXPECT_EQ(copy->getList(), nullptr);
    EXPECT_EQ(copy->getPrev(), nullptr);
    EXPECT_EQ(copy->getNext(), nullptr);
    EXPECT_EQ(list.getCount(), 1U);
}

TEST_F(BSPClone, hasFlagsPlanesKindsVerticesWordsAndTags)
{
    const std::unique_ptr<BSPMesh> copy(mesh->clone());
    const BSPNode& top = *copy->getBSP()->getRoot();
    ASSERT_FALSE(top.isLeaf());
    EXPECT_EQ(top.word, 14U);
    EXPECT_EQ(top.getNode()->plane, acrossX);
    EXPECT_EQ(top.getNode()->front->word, 15U);
    EXPECT_EQ(top.getNode()->back->word, 16U);
    const BSPNodeContentLeaf& first = *top.getNode()->front->getLeaf();
    EXPECT_TRUE(first.kind);
    EXPECT_FALSE(top.getNode()->back->getLeaf()->kind);
    ASSERT_EQ(first.brushes.size(), 1U);
    EXPECT_EQ(first.brushes[0]->planes, std::vector<Plane<float>>{acrossX});
    EXPECT_EQ(first.brushes[0]->kind, 200);
    EXPECT_EQ(first.brushes[0]->words[0], 11U);
    EXPECT_EQ(first.brushes[0]->words[1], 12U);
    ASSERT_EQ(first.polygons.size(), 1U);
    EXPECT_EQ(first.polygons[0]->tag, 13);
    EXPECT_TRUE(areSameBytes(first.polygons[0]->vertices, polygon->vertices));
}

TEST_F(BSPClone, sharesNothingWithItsOriginal)
{
    const std::unique_ptr<BSPMesh> copy(mesh->clone());
    EXPECT_NE(copy->getBSP(), mesh->getBSP());
    EXPECT_NE(copy->getBSP()->getRoot(), root);
    EXPECT_NE(copy->getBSP()->getRoot()->getContent(), root->getContent());
    const BSPNodeContentNode& node = *copy->getBSP()->getRoot()->getNode();
    EXPECT_NE(node.front, front);
    EXPECT_NE(node.back, back);
    EXPECT_NE(node.front->getLeaf()->brushes[0], shared);
    EXPECT_NE(node.front->getLeaf()->polygons[0], polygon);
}

TEST_F(BSPClone, outlivesItsOriginalAndTheBrushesOfTheHost)
{
    std::unique_ptr<BSPMesh> copy;
    {
        HostContents shortLived;
        const auto original = makeMesh(
            makeLeaf(true, {shortLived.addBrush({acrossX}, 3)}, {shortLived.addPolygon({Vertex({1, 2, 3}, {4, 5})})}));
        copy.reset(original->clone());
    }
    EXPECT_EQ(describeMesh(copy.get()), "true b3 p1");
    EXPECT_EQ(copy->getBSP()->getRoot()->getLeaf()->brushes[0]->planes, std::vector<Plane<float>>{acrossX});
}

TEST_F(BSPClone, hasOneBrushForEachReferenceToASharedOne)
{
    const auto plain = makeMesh(new BSPNode(acrossX, makeLeaf(false, {shared}), makeLeaf(false, {shared})));
    const std::unique_ptr<BSPMesh> copy(plain->clone());
    const BSPNodeContentNode& node = *copy->getBSP()->getRoot()->getNode();
    EXPECT_NE(node.front->getLeaf()->brushes[0], node.back->getLeaf()->brushes[0]);
    EXPECT_EQ(countBytes(*plain), 86U);
    EXPECT_EQ(countBytes(*copy), 111U);

    const auto twice = makeMesh(makeLeaf(false, {shared, shared}));
    const std::unique_ptr<BSPMesh> copyOfTwice(twice->clone());
    const std::vector<Brush*>& brushes = copyOfTwice->getBSP()->getRoot()->getLeaf()->brushes;
    ASSERT_EQ(brushes.size(), 2U);
    EXPECT_NE(brushes[0], brushes[1]);
}

TEST_F(BSPClone, canBeClonedAgain)
{
    const std::unique_ptr<BSPMesh> copy(mesh->clone());
    const std::unique_ptr<BSPMesh> copyOfCopy(copy->clone());
    mesh.reset();
    EXPECT_EQ(differenceOfTrees(copy->getBSP()->getRoot(), copyOfCopy->getBSP()->getRoot()), "");
    EXPECT_EQ(copyOfCopy->getBSP()->getRoot()->word, 14U);
}

TEST_F(BSPClone, isTheSameThroughTheCopyConstructorOfATree)
{
    const BSP copy(*mesh->getBSP());
    EXPECT_EQ(describeTree(copy.getRoot()), "(true b200 p1 false b200)");
    EXPECT_EQ(copy.getRoot()->word, 14U);
    EXPECT_NE(copy.getRoot(), root);
}

TEST_F(BSPClone, hasNoNodesWhereTheOriginalHasNone)
{
    const BSP none(nullptr);
    EXPECT_EQ(BSP(none).getRoot(), nullptr);
    const auto tree = makeMesh(new BSPNode(acrossX, nullptr, new BSPNode(acrossX, makeLeaf(true), nullptr)));
    const std::unique_ptr<BSPMesh> copy(tree->clone());
    EXPECT_EQ(describeMesh(copy.get()), "(null (true null))");

    const BSPMesh bare({1, 2, 3}, nullptr);
    const std::unique_ptr<BSPMesh> copyOfBare(bare.clone());
    EXPECT_EQ(copyOfBare->getBSP(), nullptr);
    EXPECT_EQ(copyOfBare->getOrigin(), Vector3<float>(1, 2, 3));
}

TEST_F(BSPClone, keepsMissingBrushesAndPolygonsInTheirPlaces)
{
    const auto tree = makeMesh(makeLeaf(false, {nullptr, shared}, {polygon, nullptr}));
    const std::unique_ptr<BSPMesh> copy(tree->clone());
    const BSPNodeContentLeaf& leaf = *copy->getBSP()->getRoot()->getLeaf();
    ASSERT_EQ(leaf.brushes.size(), 2U);
    EXPECT_EQ(leaf.brushes[0], nullptr);
    EXPECT_EQ(leaf.brushes[1]->kind, 200);
    ASSERT_EQ(leaf.polygons.size(), 2U);
    EXPECT_EQ(leaf.polygons[1], nullptr);
}

TEST_F(BSPClone, ofALeafsContentBelongsToTheCaller)
{
    const BSPNodeContent* const content = front->getContent();
    const std::unique_ptr<BSPNodeContent> copy(content->clone());
    const auto& leaf = dynamic_cast<const BSPNodeContentLeaf&>(*copy);
    EXPECT_TRUE(leaf.kind);
    ASSERT_EQ(leaf.brushes.size(), 1U);
    ASSERT_EQ(leaf.polygons.size(), 1U);
    const std::unique_ptr<Brush> brush(leaf.brushes[0]);
    const std::unique_ptr<Polygon> itsPolygon(leaf.polygons[0]);
    EXPECT_NE(brush.get(), shared);
    EXPECT_EQ(brush->words[1], 12U);
    EXPECT_NE(itsPolygon.get(), polygon);
    EXPECT_EQ(itsPolygon->tag, 13);
}

TEST_F(BSPClone, ofAnInnerNodesContentHasTheWholeSubtree)
{
    const BSPNodeContent* const content = root->getContent();
    const std::unique_ptr<BSPNodeContent> copy(content->clone());
    const auto& node = dynamic_cast<const BSPNodeContentNode&>(*copy);
    EXPECT_EQ(node.plane, acrossX);
    EXPECT_NE(node.front, front);
    EXPECT_EQ(describeTree(node.front), "true b200 p1");
    EXPECT_EQ(describeTree(node.back), "false b200");
    EXPECT_EQ(node.front->word, 15U);
    EXPECT_EQ(node.back->word, 16U);
    const std::unique_ptr<Brush> first(node.front->getLeaf()->brushes[0]);
    const std::unique_ptr<Brush> second(node.back->getLeaf()->brushes[0]);
    const std::unique_ptr<Polygon> itsPolygon(node.front->getLeaf()->polygons[0]);
    EXPECT_NE(first, second);
}

TEST_F(BSPClone, isTheSameTreeForTreesOfAnyShape)
{
    RandomTrees random(3);
    for (int i = 0; i < 100; ++i) {
        HostContents own;
        const auto original = makeMesh(random.makeTree(own, i));
        const std::unique_ptr<BSPMesh> once(original->clone()); // shares no brushes any more
        const std::unique_ptr<BSPMesh> twice(once->clone());
        EXPECT_EQ(differenceOfTrees(once->getBSP()->getRoot(), twice->getBSP()->getRoot()), "") << i;
        EXPECT_EQ(describeMesh(once.get()), describeMesh(original.get())) << i;
    }
}
