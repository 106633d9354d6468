#include <xum/geometry/mesh.h>

#include "allocation_counter.h"
#include "byte_text.h"
#include "file_contents.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#ifndef _WIN32
#    include <csignal>
#    include <sys/stat.h>
#endif

using Indexes = std::vector<int>;
using Points = std::vector<Vector3<float>>;
using TexturePoints = std::vector<Vector2<float>>;

namespace {

/// A square of two triangles in 136 bytes.
const std::string squareBytes = bytesOf("21 58 75 6d 4d 65 73 68"    // 0: !XumMesh
                                        "00000000"                   // 8: nothing
                                        "04000000 04000000 06000000" // 12: positions, texture coordinates, indexes
                                        "00000000 00000000"          // 24: nothing
                                        "0000803f 00000040 00004040" // 32: 1, 2, 3
                                        "00008040 00000040 00004040" // 44: 4, 2, 3
                                        "00008040 0000a040 00004040" // 56: 4, 5, 3
                                        "0000803f 0000a040 000000bf" // 68: 1, 5, -0.5
                                        "00000000 00000000"          // 80: 0, 0
                                        "0000803f 00000000"          // 88: 1, 0
                                        "0000803f 0000803f"          // 96: 1, 1
                                        "0000803e 0000003f"          // 104: 0.25, 0.5
                                        "00000000 01000000 02000000" // 112: 0, 1, 2
                                        "02000000 03000000 00000000" // 124: 2, 3, 0
);

/// A mesh without anything.
const std::string emptyBytes = bytesOf("21 58 75 6d 4d 65 73 68 00000000 00000000 00000000 00000000 00000000 00000000");

std::unique_ptr<Mesh> load(const std::string& bytes)
{
    const std::string file = (ownDirectory() / "mesh").string();
    writeFileContents(file, bytes);
    return std::unique_ptr<Mesh>(loadMesh(file));
}

/// The count block of a file, and nothing behind it.
std::string headerFor(std::uint32_t positions, std::uint32_t textureCoordinates, std::uint32_t indexes)
{
    return emptyBytes.substr(0, 12) + bytesOf(positions) + bytesOf(textureCoordinates) + bytesOf(indexes) +
           emptyBytes.substr(24);
}

/// What a file is to give by the table of the format: zeros behind its end, nothing for counts that are beyond belief.
struct Expected {
    bool isMesh = false;
    Points positions;
    TexturePoints textureCoordinates;
    Indexes indexes;

    explicit Expected(const std::string& bytes)
    {
        if (bytes.compare(0, 8, "!XumMesh") != 0) return;
        const auto countAt = [&bytes](std::size_t place) {
            std::int32_t count = 0;
            if (place < bytes.size())
                std::memcpy(&count, &bytes[place], std::min<std::size_t>(4, bytes.size() - place));
            return static_cast<std::int64_t>(count);
        };
        const std::int64_t counts[] = {countAt(12), countAt(16), countAt(20)};
        for (const std::int64_t count : counts)
            if (count < 0) return;
        const std::int64_t size = counts[0] * 12 + counts[1] * 8 + counts[2] * 4;
        const std::int64_t remaining = std::max<std::int64_t>(static_cast<std::int64_t>(bytes.size()) - 32, 0);
        if (size > remaining && size > std::int64_t{64} << 20) return;
        isMesh = true;
        std::size_t place = 32;
        take(positions, counts[0], bytes, place);
        take(textureCoordinates, counts[1], bytes, place);
        take(indexes, counts[2], bytes, place);
    }

private:
    template <class Value>
    static void take(std::vector<Value>& values, std::int64_t count, const std::string& bytes, std::size_t& place)
    {
        values.resize(static_cast<std::size_t>(count));
        const std::size_t size = values.size() * sizeof(Value);
        if (size != 0 && place < bytes.size())
            std::memcpy(static_cast<void*>(values.data()), &bytes[place], std::min(size, bytes.size() - place));
        place += size;
    }
};

template <class Value>
bool haveTheSameBits(const std::vector<Value>& a, const std::vector<Value>& b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Value)) == 0);
}

void expectAsByTheTable(const std::string& bytes, const std::string& what)
{
    const std::unique_ptr<Mesh> mesh = load(bytes);
    const Expected expected(bytes);
    ASSERT_EQ(mesh != nullptr, expected.isMesh) << what;
    if (!mesh) return;
    EXPECT_TRUE(haveTheSameBits(mesh->getPositions(), expected.positions)) << what;
    EXPECT_TRUE(haveTheSameBits(mesh->getTextureCoordinates(), expected.textureCoordinates)) << what;
    EXPECT_EQ(mesh->getIndexes(), expected.indexes) << what;
    EXPECT_TRUE(mesh->getFaceNormals().empty() && mesh->getVertexNormals().empty());
    // Whatever the indexes are.
    mesh->calculateFaceNormals();
    mesh->calculateVertexNormals();
    mesh->calculateBoundingBox();
}

} // namespace

TEST(MeshFile, isReadFieldByField)
{
    ASSERT_EQ(squareBytes.size(), 136u);
    const std::unique_ptr<Mesh> mesh = load(squareBytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions(), (Points{{1, 2, 3}, {4, 2, 3}, {4, 5, 3}, {1, 5, -0.5f}}));
    EXPECT_EQ(mesh->getTextureCoordinates(), (TexturePoints{{0, 0}, {1, 0}, {1, 1}, {0.25f, 0.5f}}));
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0}));
}

TEST(MeshFile, givesAMeshWithoutNormals)
{
    const std::unique_ptr<Mesh> mesh = load(squareBytes);
    EXPECT_TRUE(mesh->getFaceNormals().empty());
    EXPECT_TRUE(mesh->getVertexNormals().empty());
    mesh->calculateFaceNormals();
    EXPECT_EQ(mesh->getFaceNormals()[0], Vector3<float>(0, 0, 1));
}

TEST(MeshFile, mayHaveNoTextureCoordinates)
{
    std::string bytes = withBytes(squareBytes, 16, bytesOf("00000000"));
    bytes.erase(80, 32);
    const std::unique_ptr<Mesh> mesh = load(bytes);
    EXPECT_EQ(mesh->getPositions().size(), 4u);
    EXPECT_TRUE(mesh->getTextureCoordinates().empty());
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0}));
}

TEST(MeshFile, withAllCountsZeroIsAnEmptyMesh)
{
    const std::unique_ptr<Mesh> mesh = load(emptyBytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_TRUE(mesh->getPositions().empty());
    EXPECT_TRUE(mesh->getTextureCoordinates().empty());
    EXPECT_TRUE(mesh->getIndexes().empty());
    EXPECT_EQ(mesh->calculateBoundingBox(), Box());
}

TEST(MeshFile, reservedValuesAreIgnored)
{
    std::string bytes = squareBytes;
    for (const std::size_t place : {8u, 24u, 28u}) bytes = withBytes(bytes, place, bytesOf("ffffff7f"));
    const std::unique_ptr<Mesh> mesh = load(bytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions()[0], Vector3<float>(1, 2, 3));
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0}));
}

TEST(MeshFile, whatFollowsTheIndexesIsIgnored)
{
    const std::unique_ptr<Mesh> mesh = load(squareBytes + "and more");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0}));
}

TEST(MeshFile, countsThatDoNotFitTogetherAreKept)
{
    // One texture coordinate for four positions, and five indexes.
    std::string bytes = withBytes(squareBytes, 16, bytesOf("01000000 05000000"));
    bytes.erase(88, 24);
    const std::unique_ptr<Mesh> mesh = load(bytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions().size(), 4u);
    EXPECT_EQ(mesh->getTextureCoordinates(), TexturePoints(1));
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3}));
}

TEST(MeshFile, indexesThatNameNoPositionAreKept)
{
    const std::unique_ptr<Mesh> mesh = load(withBytes(squareBytes, 112, bytesOf("ffffffff 04000000 ffffff7f")));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getIndexes(), (Indexes{-1, 4, 2147483647, 2, 3, 0}));
}

TEST(MeshFile, thatIsMissingIsNull)
{
    EXPECT_EQ(loadMesh((ownDirectory() / "missing").string()), nullptr);
    EXPECT_EQ(loadMesh(""), nullptr);
    EXPECT_EQ(loadMesh(ownDirectory().string()), nullptr) << "a directory";
}

TEST(MeshFile, withAnotherMagicIsNull)
{
    for (std::size_t i = 0; i < 8; ++i) {
        std::string bytes = squareBytes;
        bytes[i] = static_cast<char>(bytes[i] ^ 0x20);
        EXPECT_EQ(load(bytes), nullptr) << i;
    }
    EXPECT_EQ(load(""), nullptr);
}

TEST(MeshFile, refusedIsNotReported)
{
    const std::size_t boxes = shownMessageBoxes().size();
    const std::size_t lines = logLines().size();
    EXPECT_EQ(load("no mesh at all, but longer than the header is"), nullptr);
    EXPECT_EQ(load(headerFor(0x7FFFFFFF, 0, 0)), nullptr);
    EXPECT_EQ(loadMesh((ownDirectory() / "missing").string()), nullptr);
    EXPECT_EQ(shownMessageBoxes().size(), boxes);
    EXPECT_EQ(logLines().size(), lines);
}

TEST(MeshFile, hasZerosWhereItEndsEarly)
{
    const std::unique_ptr<Mesh> mesh = load(squareBytes.substr(0, 50)); // in the second position's y
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions(), (Points{{1, 2, 3}, {4, 0, 0}, {}, {}}));
    EXPECT_EQ(mesh->getTextureCoordinates(), TexturePoints(4));
    EXPECT_EQ(mesh->getIndexes(), Indexes(6));
    const std::unique_ptr<Mesh> whole = load(squareBytes.substr(0, 135));
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0})) << "the missing byte was a zero";
    const std::unique_ptr<Mesh> bare = load(squareBytes.substr(0, 8));
    ASSERT_NE(bare, nullptr) << "the magic suffices";
    EXPECT_TRUE(bare->getPositions().empty());
}

TEST(MeshFile, cutAnywhereIsReadAsByTheTable)
{
    for (std::size_t size = 0; size < squareBytes.size(); ++size)
        expectAsByTheTable(squareBytes.substr(0, size), std::to_string(size));
    // Counts that need more than one byte.
    const std::string large = headerFor(0x0302, 0x0104, 0x0405) + std::string(20000, '\x3f');
    for (std::size_t size = 8; size < 70; ++size) expectAsByTheTable(large.substr(0, size), std::to_string(size));
    expectAsByTheTable(large, "all");
}

TEST(MeshFile, changedAnywhereIsReadAsByTheTable)
{
    for (std::size_t place = 0; place < squareBytes.size(); ++place) {
        for (const int change : {0x00, 0xFF, 0x7F, 0x80, -1}) {
            std::string bytes = squareBytes;
            bytes[place] = static_cast<char>(change < 0 ? bytes[place] + 1 : change);
            expectAsByTheTable(bytes, std::to_string(place) + ", " + std::to_string(change));
        }
    }
}

TEST(MeshFile, withCountsThatItCannotHaveIsNull)
{
    const std::uint32_t counts[] = {0x80000000, 0xFFFFFFFF, 0x7FFFFFFF, 0x10000000, 20000000};
    for (const std::uint32_t count : counts) {
        EXPECT_EQ(load(headerFor(count, 0, 0)), nullptr) << count;
        EXPECT_EQ(load(headerFor(0, count, 0)), nullptr) << count;
        EXPECT_EQ(load(headerFor(0, 0, count)), nullptr) << count;
        EXPECT_EQ(load(headerFor(count, count, count)), nullptr) << count;
        EXPECT_EQ(load(headerFor(1, 1, count) + std::string(100, 'x')), nullptr) << count;
    }
    EXPECT_EQ(load(headerFor(0xFFFFFFFF, 1, 4)), nullptr) << "the sum is no excuse";
}

TEST(MeshFile, mayAskForALittleMoreThanItHas)
{
    // 64 MiB in all.
    const std::unique_ptr<Mesh> mesh = load(headerFor(5592405, 0, 1) + bytesOf("0000803f"));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions().size(), 5592405u);
    EXPECT_EQ(mesh->getPositions()[0], Vector3<float>(1, 0, 0));
    EXPECT_EQ(mesh->getPositions().back(), Vector3<float>());
    EXPECT_EQ(mesh->getIndexes(), Indexes(1));
    EXPECT_EQ(load(headerFor(5592405, 0, 2)), nullptr);
}

TEST(MeshFile, mayBeAsLargeAsItIs)
{
    const std::string file = (ownDirectory() / "large").string();
    writeFileContents(file, headerFor(5592405, 0, 100));
    std::filesystem::resize_file(file, 32 + 5592405 * 12 + 100 * 4);
    const std::unique_ptr<Mesh> mesh(loadMesh(file));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions().size(), 5592405u);
    EXPECT_EQ(mesh->getIndexes(), Indexes(100));
    std::filesystem::resize_file(file, 32 + 5592405 * 12 + 100 * 4 - 1);
    EXPECT_EQ(loadMesh(file), nullptr);
    std::filesystem::remove(file);
}

TEST(MeshFile, isNullWhenMemoryRunsOut)
{
    const std::string file = (ownDirectory() / "mesh").string();
    writeFileContents(file, squareBytes);
    std::unique_ptr<Mesh> mesh;
    int failures = -1;
    for (; !mesh; ++failures) {
        ASSERT_LT(failures, 100);
        const FailingAllocations failing(failures + 1);
        mesh.reset(loadMesh(file));
    }
    EXPECT_GT(failures, 3) << "the mesh and three arrays";
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0}));
}

#ifndef _WIN32

namespace {

/// What a pipe gives that ends behind these bytes: its size cannot be told.
std::unique_ptr<Mesh> loadThroughPipe(const std::string& bytes)
{
    const std::string pipe = (ownDirectory() / "pipe").string();
    std::filesystem::remove(pipe);
    if (mkfifo(pipe.c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    std::signal(SIGPIPE, SIG_IGN); // the reader may stop early
    std::thread writer([&] { writeFileContents(pipe, bytes); });
    std::unique_ptr<Mesh> mesh(loadMesh(pipe));
    writer.join();
    return mesh;
}

} // namespace

TEST(MeshFile, mayBeAPipe)
{
    const std::unique_ptr<Mesh> mesh = loadThroughPipe(squareBytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions(), (Points{{1, 2, 3}, {4, 2, 3}, {4, 5, 3}, {1, 5, -0.5f}}));
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 1, 2, 2, 3, 0}));
    const std::unique_ptr<Mesh> cut = loadThroughPipe(squareBytes.substr(0, 50));
    ASSERT_NE(cut, nullptr);
    EXPECT_EQ(cut->getPositions(), (Points{{1, 2, 3}, {4, 0, 0}, {}, {}}));
}

TEST(MeshFile, mayBeALargePipe)
{
    std::string bytes = headerFor(5592405, 3, 1);
    const std::string position = bytesOf("0000803f 00000040 00004040");
    for (int i = 0; i < 5592405; ++i) bytes += position;
    bytes += bytesOf("0000803e 0000003f 0000803f 00000000 00000040 00004040 2a000000");
    const std::unique_ptr<Mesh> mesh = loadThroughPipe(bytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions(), Points(5592405, Vector3<float>(1, 2, 3)));
    EXPECT_EQ(mesh->getTextureCoordinates(), (TexturePoints{{0.25f, 0.5f}, {1, 0}, {2, 3}}));
    EXPECT_EQ(mesh->getIndexes(), Indexes{42});
}

TEST(MeshFile, pipeThatEndsBeforeItsCountsIsNull)
{
    EXPECT_EQ(loadThroughPipe(headerFor(0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF)), nullptr);
    EXPECT_EQ(loadThroughPipe(headerFor(0, 0, 0x7FFFFFFF) + std::string(100000, 'x')), nullptr);
    EXPECT_EQ(loadThroughPipe(headerFor(0xFFFFFFFF, 0, 0)), nullptr);
}

#endif
