#include "bsp_trees.h"
#include "slots.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace {

const Plane<float> acrossX({1, 0, 0}, 5);
const Plane<float> acrossY({0, 1, 0}, 2);

static_assert(std::is_abstract_v<BSPNodeContent> && std::has_virtual_destructor_v<BSPNodeContent>);
static_assert(!std::is_copy_constructible_v<BSPNode> && !std::is_copy_assignable_v<BSPNode>);
static_assert(!std::is_copy_constructible_v<BSPNodeContentNode> && !std::is_copy_assignable_v<BSPNodeContentNode>);
static_assert(!std::is_copy_constructible_v<BSPNodeContentLeaf> && !std::is_copy_assignable_v<BSPNodeContentLeaf>);
static_assert(!std::is_copy_assignable_v<BSP>);

/// Whether a point lies on the side of every plane that the way to a leaf takes. Looks at the way from below.
bool isOnItsWay(const BSPNode* node, const BSPNode* leaf, const Vector3<float>& point, bool& isBelow)
{
    isBelow = node == leaf;
    const BSPNodeContentNode* const inner = node->getNode();
    if (inner == nullptr) return isBelow;
    const long double distance = static_cast<long double>(inner->plane.normal.x) * point.x +
                                 static_cast<long double>(inner->plane.normal.y) * point.y +
                                 static_cast<long double>(inner->plane.normal.z) * point.z - inner->plane.distance;
    bool isRight = isOnItsWay(inner->front, leaf, point, isBelow);
    if (isBelow) return isRight && distance >= 0;
    isRight = isOnItsWay(inner->back, leaf, point, isBelow);
    return isBelow && isRight && distance < 0;
}

/// The leaves, those in front first.
void listLeaves(BSPNode* node, std::vector<BSPNode*>& leaves)
{
    if (node->isLeaf()) {
        leaves.push_back(node);
        return;
    }
    listLeaves(node->getNode()->front, leaves);
    listLeaves(node->getNode()->back, leaves);
}

} // namespace

TEST(Vertex, liesInMemoryAsPositionThenTextureCoordinate)
{
    const Vertex vertex({1, 2, 3}, {4, 5});
    const float expected[] = {1, 2, 3, 4, 5};
    static_assert(sizeof vertex == sizeof expected);
    EXPECT_EQ(std::memcmp(&vertex, expected, sizeof expected), 0);
}

TEST(Polygon, hasItsVerticesInOrderAndNoTag)
{
    const Polygon polygon({Vertex({1, 2, 3}, {4, 5}), Vertex({6, 7, 8}, {9, 10})});
    ASSERT_EQ(polygon.vertices.size(), 2U);
    EXPECT_EQ(polygon.vertices[0].position, Vector3<float>(1, 2, 3));
    EXPECT_EQ(polygon.vertices[1].textureCoordinate, Vector2<float>(9, 10));
    EXPECT_EQ(polygon.tag, -1);
    static_assert(std::is_same_v<decltype(Polygon::tag), std::int32_t>);
}

TEST(Polygon, isCopiedWithItsTag)
{
    Polygon polygon({Vertex({1, 2, 3}, {4, 5})});
    polygon.tag = 77;
    const Polygon copy(polygon);
    EXPECT_EQ(copy.tag, 77);
    EXPECT_TRUE(areSameBytes(copy.vertices, polygon.vertices));
}

TEST(Brush, hasItsPlanesInOrderItsKindAndTwoZeroWords)
{
    const Brush brush({acrossX, acrossY}, 255);
    EXPECT_EQ(brush.planes, (std::vector<Plane<float>>{acrossX, acrossY}));
    EXPECT_EQ(brush.kind, 255);
    EXPECT_EQ(brush.words[0], 0U);
    EXPECT_EQ(brush.words[1], 0U);
    static_assert(sizeof brush.words == 8);
}

TEST(Brush, isCopiedWithItsWords)
{
    Brush brush({acrossX}, 9);
    brush.words[0] = 0xFFFFFFFF;
    brush.words[1] = 3;
    const Brush copy(brush);
    EXPECT_EQ(copy.planes, brush.planes);
    EXPECT_EQ(copy.kind, 9);
    EXPECT_EQ(copy.words[0], 0xFFFFFFFF);
    EXPECT_EQ(copy.words[1], 3U);
}

TEST(BSPNodeContent, hasItsDestructorFirstAndCloneSecond)
{
    // The destructor is slot 0 and takes two places.
    EXPECT_EQ(slotOf(&BSPNodeContent::clone), 2);
    EXPECT_EQ(slotOf(&BSPNodeContentNode::clone), 2);
    EXPECT_EQ(slotOf(&BSPNodeContentLeaf::clone), 2);
}

TEST(BSPNode, ofAPlaneIsAnInnerNode)
{
    BSPNode* const front = makeLeaf();
    BSPNode* const back = makeLeaf();
    BSPNode node(acrossX, front, back);
    EXPECT_FALSE(node.isLeaf());
    EXPECT_EQ(node.word, 0U);
    EXPECT_EQ(node.getLeaf(), nullptr);
    ASSERT_NE(node.getNode(), nullptr);
    EXPECT_EQ(node.getContent(), node.getNode());
    EXPECT_EQ(node.getNode()->plane, acrossX);
    EXPECT_EQ(node.getNode()->front, front);
    EXPECT_EQ(node.getNode()->back, back);
}

TEST(BSPNode, isALeafWhateverTheKind)
{
    HostContents contents;
    const std::vector<Brush*> brushes = {contents.addBrush(), contents.addBrush(), contents.addBrush()};
    const std::vector<Polygon*> polygons = {contents.addPolygon(), contents.addPolygon()};
    for (const bool kind : {false, true}) {
        BSPNode node(kind, brushes, polygons);
        EXPECT_TRUE(node.isLeaf());
        EXPECT_EQ(node.word, 0U);
        EXPECT_EQ(node.getNode(), nullptr);
        ASSERT_NE(node.getLeaf(), nullptr);
        EXPECT_EQ(node.getContent(), node.getLeaf());
        EXPECT_EQ(node.getLeaf()->kind, kind);
        EXPECT_EQ(node.getLeaf()->brushes, brushes);
        EXPECT_EQ(node.getLeaf()->polygons, polygons);
    }
}

TEST(BSPNode, leavesBrushesAndPolygonsAloneWhenItIsDestroyed)
{
    HostContents contents;
    Brush* const brush = contents.addBrush({acrossX}, 5);
    Polygon* const polygon = contents.addPolygon({Vertex({1, 2, 3}, {4, 5})});
    {
        const BSP tree(new BSPNode(acrossX, makeLeaf(true, {brush, brush}, {polygon}), makeLeaf(false, {brush})));
    }
    EXPECT_EQ(brush->planes, std::vector<Plane<float>>{acrossX});
    EXPECT_EQ(brush->kind, 5);
    EXPECT_EQ(polygon->vertices.size(), 1U);
}

TEST(BSPNode, canBeDestroyedWithoutChildren)
{
    delete new BSPNode(acrossX, nullptr, nullptr);
    delete new BSPNode(acrossX, makeLeaf(), nullptr);
    delete new BSPNode(acrossX, nullptr, makeLeaf());
    delete new BSPNode(acrossX, new BSPNode(acrossX, nullptr, makeLeaf()), new BSPNode(acrossX, makeLeaf(), nullptr));
}

TEST(BSP, locatesEveryPointInALeafThatIsTheRoot)
{
    const BSP tree(makeLeaf());
    EXPECT_EQ(tree.locatePoint({0, 0, 0}), tree.getRoot());
    EXPECT_EQ(tree.locatePoint({1e30f, -1e30f, 7}), tree.getRoot());
}

TEST(BSP, locatesAPointBehindAPlaneInTheBackChild)
{
    BSPNode* const front = makeLeaf();
    BSPNode* const back = makeLeaf();
    const BSP tree(new BSPNode(acrossX, front, back));
    EXPECT_EQ(tree.locatePoint({6, 0, 0}), front);
    EXPECT_EQ(tree.locatePoint({4, 0, 0}), back);
    EXPECT_EQ(tree.locatePoint({std::nextafter(5.0f, 0.0f), 100, 100}), back);
}

TEST(BSP, locatesAPointOnAPlaneInTheFrontChild)
{
    BSPNode* const front = makeLeaf();
    const BSP tree(new BSPNode(acrossX, front, makeLeaf()));
    EXPECT_EQ(tree.locatePoint({5, -3, 8}), front);

    BSPNode* const frontOfMinusZero = makeLeaf();
    const BSP other(new BSPNode({{-1, 0, 0}, 0}, frontOfMinusZero, makeLeaf()));
    EXPECT_EQ(other.locatePoint({0, 0, 0}), frontOfMinusZero);
}

TEST(BSP, locatesAPointThatIsNoNumberBehindEveryPlane)
{
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    BSPNode* const last = makeLeaf();
    const BSP tree(new BSPNode(acrossX, makeLeaf(), new BSPNode(acrossY, makeLeaf(), last)));
    EXPECT_EQ(tree.locatePoint({nan, nan, nan}), last);
    EXPECT_EQ(tree.locatePoint({6, nan, 0}), last) << "0 * NaN counts, too";
}

TEST(BSP, locatesNothingWhereAChildIsMissing)
{
    BSPNode* const back = makeLeaf();
    const BSP tree(new BSPNode(acrossX, nullptr, back));
    EXPECT_EQ(tree.locatePoint({6, 0, 0}), nullptr);
    EXPECT_EQ(tree.locatePoint({4, 0, 0}), back);
    EXPECT_EQ(BSP(nullptr).locatePoint({0, 0, 0}), nullptr);
}

TEST(BSP, locatesPointsOnTheRightSideOfEveryPlaneOnTheWay)
{
    RandomTrees random(1);
    for (int i = 0; i < 100; ++i) {
        HostContents contents;
        const BSP tree(random.makeTree(contents, 1 + i));
        for (int k = 0; k < 500; ++k) {
            const Vector3<float> point = random.makePoint();
            const BSPNode* const leaf = tree.locatePoint(point);
            ASSERT_NE(leaf, nullptr);
            ASSERT_TRUE(leaf->isLeaf());
            bool isInTree = false;
            ASSERT_TRUE(isOnItsWay(tree.getRoot(), leaf, point, isInTree)) << "tree " << i << ", point " << k;
            ASSERT_TRUE(isInTree);
        }
    }
}

TEST(BSP, listsTheRootAloneWhenItIsALeaf)
{
    BSP tree(makeLeaf());
    EXPECT_EQ(tree.calculateLeafArray(), std::vector<BSPNode*>{tree.getRoot()});
}

TEST(BSP, listsAllLeavesInFrontOfAPlaneBeforeThoseBehindIt)
{
    BSPNode* const leaves[] = {makeLeaf(), makeLeaf(), makeLeaf(), makeLeaf(), makeLeaf()};
    BSPNode* const front = new BSPNode(acrossX, leaves[0], new BSPNode(acrossY, leaves[1], leaves[2]));
    BSP tree(new BSPNode(acrossX, front, new BSPNode(acrossX, leaves[3], leaves[4])));
    EXPECT_EQ(tree.calculateLeafArray(), std::vector<BSPNode*>(std::begin(leaves), std::end(leaves)));
}

TEST(BSP, leavesMissingNodesOutOfTheList)
{
    BSPNode* const leaf = makeLeaf();
    BSP tree(new BSPNode(acrossX, new BSPNode(acrossX, nullptr, nullptr), new BSPNode(acrossX, nullptr, leaf)));
    EXPECT_EQ(tree.calculateLeafArray(), std::vector<BSPNode*>{leaf});
    EXPECT_TRUE(BSP(nullptr).calculateLeafArray().empty());
}

TEST(BSP, listsEveryLeafOfAnyTreeOnce)
{
    RandomTrees random(2);
    for (int i = 0; i < 200; ++i) {
        HostContents contents;
        BSP tree(random.makeTree(contents, i));
        std::vector<BSPNode*> expected;
        listLeaves(tree.getRoot(), expected);
        ASSERT_EQ(expected.size(), static_cast<std::size_t>(i + 1));
        EXPECT_EQ(tree.calculateLeafArray(), expected) << i;
    }
}

TEST(BSPMesh, hasAnOriginAndATreeAndIsInNoList)
{
    BSP* const tree = new BSP(makeLeaf());
    BSPMesh mesh({1, 2, 3}, tree);
    EXPECT_EQ(mesh.getOrigin(), Vector3<float>(1, 2, 3));
    EXPECT_EQ(mesh.getBSP(), tree);
    EXPECT_EQ(mesh.getList(), nullptr);
    EXPECT_EQ(mesh.getPrev(), nullptr);
    EXPECT_EQ(mesh.getNext(), nullptr);
    mesh.setOrigin({4, 5, 6});
    EXPECT_EQ(mesh.getOrigin(), Vector3<float>(4, 5, 6));
}

TEST(BSPMesh, leavesItsListWhenItIsDeletedThroughTheNode)
{
    BaseList<BSPMesh> list(true);
    BaseListNode<BSPMesh>* const mesh = new BSPMesh({}, new BSP(makeLeaf()));
    list.append(new BSPMesh({}, new BSP(makeLeaf())));
    mesh->appendTo(&list);
    EXPECT_EQ(list.getCount(), 2U);
    delete mesh;
    EXPECT_EQ(list.getCount(), 1U);
    static_assert(std::has_virtual_destructor_v<BSPMesh>);
}
