#include "bsp_trees.h"
#include "golden_bytes.h"
#include "memory_serializers.h"
#include "small_stack.h"

#include <xum/files/file_serializer.h>

#include <gtest/gtest.h>

// A file of a few megabytes can ask for a million levels, so nothing may take a step of the stack for each level.

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t levels = 200000; // they make the stack's frames and the heap's blocks larger
#else
constexpr std::size_t levels = 1000000;
#endif

enum class Shape { frontChain, backChain, zigzag };

bool goesOnInFront(Shape shape, std::size_t level)
{
    return shape == Shape::frontChain || (shape == Shape::zigzag && level % 2 == 0);
}

/// A tree in which the point (1, 0, 0) lies in the only leaf of kind true, below all the others.
BSPNode* makeChain(Shape shape)
{
    BSPNode* node = makeLeaf(true);
    for (std::size_t level = levels; level-- > 0;)
        node = goesOnInFront(shape, level) ? new BSPNode({{1, 0, 0}, 0}, node, makeLeaf())
                                           : new BSPNode({{-1, 0, 0}, 0}, makeLeaf(), node);
    return node;
}

std::string bytesOfChain(Shape shape)
{
    const std::string leaf = bytesOf("01 00 00000000 00000000");
    const std::string front = bytesOf("00 0000803f 00000000 00000000 00000000");
    const std::string back = bytesOf("00 000080bf 00000000 00000000 00000000");
    std::string bytes(16, '\0');
    for (std::size_t level = 0; level < levels; ++level) bytes += goesOnInFront(shape, level) ? front : back + leaf;
    bytes += bytesOf("01 01 00000000 00000000");
    for (std::size_t level = levels; level-- > 0;)
        if (goesOnInFront(shape, level)) bytes += leaf;
    return bytes;
}

void expectDeepLeaf(BSPMesh& mesh, Shape shape)
{
    BSP& tree = *mesh.getBSP();
    const BSPNode* const leaf = tree.locatePoint({1, 0, 0});
    ASSERT_NE(leaf, nullptr);
    ASSERT_TRUE(leaf->isLeaf());
    EXPECT_TRUE(leaf->getLeaf()->kind);
    const std::vector<BSPNode*> leaves = tree.calculateLeafArray();
    ASSERT_EQ(leaves.size(), levels + 1);
    std::size_t before = 0; // leaves in front of a plane that the way goes behind
    for (std::size_t level = 0; level < levels; ++level) before += goesOnInFront(shape, level) ? 0U : 1U;
    EXPECT_EQ(leaves[before], leaf);
}

void buildCloneWriteAndRead(Shape shape)
{
    const std::string bytes = bytesOfChain(shape);
    {
        auto mesh = makeMesh(makeChain(shape));
        expectDeepLeaf(*mesh, shape);
        std::unique_ptr<BSPMesh> copy(mesh->clone());
        ASSERT_NE(copy, nullptr);
        mesh.reset();
        expectDeepLeaf(*copy, shape);

        MemorySerializer out;
        EXPECT_TRUE(copy->serialize(out));
        EXPECT_TRUE(out.bytes == bytes);
        FileSerializer file("deep.bsp");
        EXPECT_TRUE(copy->serialize(file));
    }
    {
        FileDeserializer file("deep.bsp");
        const std::unique_ptr<BSPMesh> read(BSPMesh::deserialize(file));
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(file.getRemaining(), 0U);
        expectDeepLeaf(*read, shape);
    }
    MemoryDeserializer memory(bytes);
    const std::unique_ptr<BSPMesh> read(BSPMesh::deserialize(memory));
    ASSERT_NE(read, nullptr);
    expectDeepLeaf(*read, shape);
}

} // namespace

TEST(DeepBSP, isHandledWhereEachChildIsInFront)
{
    runOnSmallStack([] { buildCloneWriteAndRead(Shape::frontChain); });
}

TEST(DeepBSP, isHandledWhereEachChildIsBehind)
{
    runOnSmallStack([] { buildCloneWriteAndRead(Shape::backChain); });
}

TEST(DeepBSP, isHandledWhereSidesChange)
{
    runOnSmallStack([] { buildCloneWriteAndRead(Shape::zigzag); });
}

TEST(DeepBSP, isClonedAndDestroyedThroughTheContentAlone)
{
    runOnSmallStack([] {
        for (const Shape shape : {Shape::frontChain, Shape::backChain, Shape::zigzag}) {
            const std::unique_ptr<BSPNode> root(makeChain(shape));
            const std::unique_ptr<BSPNodeContent> copy(root->getContent()->clone());
            EXPECT_NE(copy, nullptr);
        }
    });
}

TEST(DeepBSP, isDestroyedWithoutOtherChildren)
{
    runOnSmallStack([] {
        for (const bool isFront : {true, false}) {
            BSPNode* node = nullptr;
            for (std::size_t level = 0; level < levels; ++level)
                node = isFront ? new BSPNode({}, node, nullptr) : new BSPNode({}, nullptr, node);
            delete node;
        }
    });
}

TEST(DeepBSP, endsWhereAFileOfNothingButInnerNodesEnds)
{
    runOnSmallStack([] {
        const std::string bytes(16 + 17 * levels, '\0');
        {
            FileSerializer file("zeros.bsp");
            file.write(bytes.data(), static_cast<int>(bytes.size()));
        }
        FileDeserializer file("zeros.bsp");
        const std::unique_ptr<BSPMesh> mesh(BSPMesh::deserialize(file));
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->getBSP()->calculateLeafArray().size(), levels + 1);

        MemoryDeserializer memory(bytes);
        EXPECT_EQ(BSPMesh::deserialize(memory), nullptr) << "what was read is given up";
    });
}
