#include "mesh_bytes.h"
#include "mesh_import.h"
#include "mesh_model.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

class MeshGltf : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

/// A glTF text in parts, with one buffer in which each accessor has a view of its own.
struct Gltf {
    std::string scenes = R"("scene":0,"scenes":[{"nodes":[0]}],)";
    std::string nodes = R"({"mesh":0})";
    std::string primitives;
    std::string more; // members with a comma behind each
    std::string version = "2.0";
    std::string views;
    std::string accessors;
    std::string buffer;
    int accessorCount = 0;
    int viewCount = 0;

    int addView(const std::string& bytes, const std::string& members = "")
    {
        views += (views.empty() ? "" : ",") + std::string(R"({"buffer":0,"byteOffset":)") +
                 std::to_string(buffer.size()) + R"(,"byteLength":)" + std::to_string(bytes.size()) + members + "}";
        buffer += bytes;
        buffer.resize((buffer.size() + 3) / 4 * 4, '\xEE');
        return viewCount++;
    }

    /// Component types: 5120 and 5121 are signed and unsigned bytes, 5122 and 5123 two bytes, 5125 four without sign,
    /// 5126 floats.
    int addAccessor(int componentType, const char* type, int count, const std::string& members)
    {
        accessors += (accessors.empty() ? "" : ",") + std::string(R"({"componentType":)") +
                     std::to_string(componentType) + R"(,"type":")" + type + R"(","count":)" + std::to_string(count) +
                     members + "}";
        return accessorCount++;
    }

    int add(const std::string& bytes, int componentType, const char* type, int count, const std::string& members = "")
    {
        return addAccessor(componentType, type, count, R"(,"bufferView":)" + std::to_string(addView(bytes)) + members);
    }

    std::string getText(const std::string& uri) const
    {
        return R"({"asset":{"version":")" + version + R"("},)" + more + scenes + R"("nodes":[)" + nodes +
               R"(],"meshes":[{"primitives":[)" + primitives + R"(]}],"accessors":[)" + accessors +
               R"(],"bufferViews":[)" + views + R"(],"buffers":[{)" + uri + R"("byteLength":)" +
               std::to_string(buffer.size()) + "}]}";
    }

    void write() const
    {
        writeFileContents("a.bin", buffer);
        writeFileContents("a.gltf", getText(R"("uri":"a.bin",)"));
    }

    std::string getBinary() const
    {
        std::string json = getText("");
        json.resize((json.size() + 3) / 4 * 4, ' ');
        const std::string parts = littleEndian(json.size(), 4) + "JSON" + json + littleEndian(buffer.size(), 4) +
                                  std::string("BIN\0", 4) + buffer;
        return "glTF" + littleEndian(2, 4) + littleEndian(12 + parts.size(), 4) + parts;
    }

    std::string import(const std::string& options = "--up z", const std::string& notes = "") const
    {
        write();
        return importedBytes("a.gltf", options, notes);
    }

    void expectRefusal(const std::string& reason, const std::string& notes = "") const
    {
        SCOPED_TRACE(reason);
        write();
        ::expectRefusal("a.gltf", notes + "a.gltf: " + reason + "\n");
    }
};

const std::vector<float> threePositions = {1, 2, 3, 4, 5, 6, 7, 8, 10};
const std::vector<float> fourPositions = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};

Gltf modelOf(const std::vector<float>& positions, const std::string& members = "")
{
    Gltf model;
    model.add(floatBytes(positions), 5126, "VEC3", static_cast<int>(positions.size() / 3));
    model.primitives = R"({"attributes":{"POSITION":0})" + members + "}";
    return model;
}

Gltf modelWithNodes(const std::string& nodes)
{
    Gltf model = modelOf(threePositions);
    model.nodes = nodes;
    return model;
}

std::string meshOfThree()
{
    return meshOf(threePositions, {}, {0, 1, 2});
}

} // namespace

// ---- what it becomes ----------------------------------------------------------------------------------------------

TEST_F(MeshGltf, triangleBecomesAMesh)
{
    EXPECT_EQ(modelOf(threePositions).import(), meshOfThree());
    EXPECT_EQ(modelOf(threePositions).import(""), meshOf({1, -3, 2, 4, -6, 5, 7, -10, 8}, {}, {0, 1, 2}));
    EXPECT_EQ(modelOf(threePositions).import("--scale 2"), meshOf({2, -6, 4, 8, -12, 10, 14, -20, 16}, {}, {0, 1, 2}));
}

TEST_F(MeshGltf, binaryFileIsToldByItsContents)
{
    for (const char* name : {"a.glb", "a.gltf", "A.GLB"}) {
        writeFileContents(name, modelOf(threePositions).getBinary());
        EXPECT_EQ(importedBytes(name, "--up z"), meshOfThree());
    }
}

TEST_F(MeshGltf, bufferMayBeInTheTextOrBelowTheDirectory)
{
    const Gltf model = modelOf({0, 0, 0, 0, 0, 0, 0, 0, 0});
    writeFileContents(
        "b.gltf", model.getText(R"("uri":"data:application/octet-stream;base64,)" + std::string(48, 'A') + R"(",)"));
    EXPECT_EQ(importedBytes("b.gltf"), meshOf(std::vector<float>(9), {}, {0, 1, 2}));

    std::filesystem::create_directories("d/e f");
    std::ofstream(std::filesystem::path(u8"d/e f/\u00E4.bin"), std::ios::binary) << modelOf(threePositions).buffer;
    writeFileContents("d/c.gltf", model.getText("\"uri\":\"e%20f/\xC3\xA4.bin\","));
    EXPECT_EQ(importedBytes("d/c.gltf", "--up z"), meshOfThree());
}

TEST_F(MeshGltf, indexesMayHaveAnyUnsignedType)
{
    for (const int type : {5121, 5123, 5125}) {
        Gltf model = modelOf(threePositions, R"(,"indices":1)");
        model.add(integerBytes({2, 0, 1, 1, 0, 2}, type == 5121 ? 1 : type == 5123 ? 2 : 4), type, "SCALAR", 6);
        EXPECT_EQ(model.import(), meshOf({7, 8, 10, 1, 2, 3, 4, 5, 6}, {}, {0, 1, 2, 2, 1, 0})) << type;
    }
}

TEST_F(MeshGltf, textureCoordinatesRunDownwardsAsTheyDoHere)
{
    Gltf model;
    model.add(floatBytes(threePositions), 5126, "VEC3", 3);
    model.add(floatBytes({0, 0.25, 1, 0, 0.5, 1}), 5126, "VEC2", 3);
    model.primitives = R"({"attributes":{"POSITION":0,"TEXCOORD_0":1}})";
    EXPECT_EQ(model.import(), meshOf(threePositions, {0, 0.25, 1, 0, 0.5, 1}, {0, 1, 2}));
    EXPECT_EQ(model.import("--up z --no-texture-coordinates"), meshOfThree());
}

TEST_F(MeshGltf, integersAreNumbersOrPartsOfOne)
{
    struct Case {
        int type;
        int size;
        float largest;
    };
    for (const auto& [type, size, largest] :
         {Case{5120, 1, 127}, Case{5121, 1, 255}, Case{5122, 2, 32767}, Case{5123, 2, 65535}}) {
        const bool isSigned = type == 5120 || type == 5122;
        const int top = static_cast<int>(largest);
        const int bottom = isSigned ? -top - 1 : 0;
        const std::string bytes = integerBytes({0, top, 1, bottom, 0, top, 2, 3, 4}, size);
        for (const bool isNormalized : {false, true}) {
            Gltf model;
            model.add(bytes, type, "VEC3", 3, isNormalized ? R"(,"normalized":true)" : "");
            model.primitives = R"({"attributes":{"POSITION":0}})";
            const float one = isNormalized ? largest : 1;
            const float least = isNormalized && isSigned ? -1 : static_cast<float>(bottom);
            EXPECT_EQ(
                model.import(),
                meshOf({0, largest / one, 1 / one, least, 0, largest / one, 2 / one, 3 / one, 4 / one}, {}, {0, 1, 2}))
                << type << isNormalized;
        }
    }
}

TEST_F(MeshGltf, elementsMayLieApartAndBehindAnOffset)
{
    Gltf model;
    model.addView("????" + floatBytes({1, 2, 3, -1, 4, 5, 6, -1, 7, 8, 10}), R"(,"byteStride":16)");
    model.addAccessor(5126, "VEC3", 3, R"(,"bufferView":0,"byteOffset":4)");
    model.primitives = R"({"attributes":{"POSITION":0}})";
    EXPECT_EQ(model.import(), meshOfThree());
}

TEST_F(MeshGltf, sparseAccessorReplacesElements)
{
    for (const bool hasBase : {true, false}) {
        Gltf model;
        const int base = model.addView(floatBytes(threePositions));
        const int indexes = model.addView("??" + integerBytes({0, 2}, 2));
        const int values = model.addView(floatBytes({9, 9, 9, 5, 5, 5}));
        model.addAccessor(5126, "VEC3", 3,
                          (hasBase ? R"(,"bufferView":)" + std::to_string(base) : "") +
                              R"(,"sparse":{"count":2,"indices":{"bufferView":)" + std::to_string(indexes) +
                              R"(,"byteOffset":2,"componentType":5123},"values":{"bufferView":)" +
                              std::to_string(values) + "}}");
        model.primitives = R"({"attributes":{"POSITION":0}})";
        EXPECT_EQ(model.import(), hasBase ? meshOf({9, 9, 9, 4, 5, 6, 5, 5, 5}, {}, {0, 1, 2})
                                          : meshOf({9, 9, 9, 0, 0, 0, 5, 5, 5}, {}, {0, 1, 2}));
    }
}

TEST_F(MeshGltf, stripsAndFansBecomeTriangles)
{
    EXPECT_EQ(modelOf(fourPositions, R"(,"mode":5)").import(), meshOf(fourPositions, {}, {0, 1, 2, 1, 3, 2}));
    EXPECT_EQ(modelOf(fourPositions, R"(,"mode":6)").import(),
              meshOf({1, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0}, {}, {0, 1, 2, 1, 3, 2}));
}

TEST_F(MeshGltf, pointsLinesAndLeftoversAreNotedAndLeftOut)
{
    Gltf model = modelOf(fourPositions);
    model.primitives = R"({"attributes":{"POSITION":0},"mode":0},{"attributes":{"POSITION":0},"mode":3},)"
                       R"({"attributes":{}},{"attributes":{"POSITION":0},"targets":[{"POSITION":0}]})";
    model.nodes = R"({"mesh":0,"children":[1]},{"mesh":0})"; // twice, but told once
    EXPECT_EQ(model.import("--up z", "a.gltf: note: mesh 0, primitive 0: points and lines are left out\n"
                                     "a.gltf: note: mesh 0, primitive 1: points and lines are left out\n"
                                     "a.gltf: note: mesh 0, primitive 2: has no positions, and is left out\n"
                                     "a.gltf: note: mesh 0, primitive 3: its morph targets are left out\n"
                                     "a.gltf: note: mesh 0, primitive 3: the last corners are no whole triangle, and "
                                     "are left out\n"),
              meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}, {}, {0, 1, 2, 3, 4, 5}));
}

TEST_F(MeshGltf, primitivesWithTheSameAttributesShareVertices)
{
    Gltf model = modelOf(fourPositions);
    model.add(integerBytes({0, 1, 2}, 1), 5121, "SCALAR", 3);
    model.add(integerBytes({1, 3, 2}, 1), 5121, "SCALAR", 3);
    model.primitives = R"({"attributes":{"POSITION":0},"indices":1,"material":0},{"attributes":{"POSITION":0},)"
                       R"("indices":2})";
    model.more = R"("materials":[{}],)";
    EXPECT_EQ(model.import(), meshOf(fourPositions, {}, {0, 1, 2, 1, 3, 2}));
}

TEST_F(MeshGltf, primitiveWithoutTextureCoordinatesGetsZeros)
{
    Gltf model = modelOf(threePositions);
    model.add(floatBytes({1, 1, 1, 1, 1, 1}), 5126, "VEC2", 3);
    model.primitives += R"(,{"attributes":{"POSITION":0,"TEXCOORD_0":1}})";
    EXPECT_EQ(model.import("--up z", "a.gltf: note: vertices without a texture coordinate get 0 0: 3\n"),
              meshOf({1, 2, 3, 4, 5, 6, 7, 8, 10, 1, 2, 3, 4, 5, 6, 7, 8, 10}, {0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1},
                     {0, 1, 2, 3, 4, 5}));
}

// ---- nodes --------------------------------------------------------------------------------------------------------

TEST_F(MeshGltf, nodesMoveTurnAndScaleWhatIsBelow)
{
    // A quarter turn around z: x becomes y, y becomes -x. First scaled, then turned, then moved.
    constexpr char turn[] = R"("rotation":[0,0,0.70710678118654757,0.70710678118654757])";
    EXPECT_EQ(modelWithNodes(R"({"mesh":0,"translation":[10,20,30]})").import(),
              meshOf({11, 22, 33, 14, 25, 36, 17, 28, 40}, {}, {0, 1, 2}));
    EXPECT_EQ(modelWithNodes(R"({"mesh":0,"scale":[2,3,4]})").import(),
              meshOf({2, 6, 12, 8, 15, 24, 14, 24, 40}, {}, {0, 1, 2}));
    EXPECT_EQ(
        modelWithNodes(R"({"mesh":0,"translation":[100,0,0],"scale":[2,1,1],)" + std::string(turn) + "}").import(),
        meshOf({98, 2, 3, 95, 8, 6, 92, 14, 10}, {}, {0, 1, 2}));
    EXPECT_EQ(modelWithNodes(R"({"mesh":0,"matrix":[0,1,0,0, -1,0,0,0, 0,0,1,0, 10,20,30,1]})").import(),
              meshOf({8, 21, 33, 5, 24, 36, 2, 27, 40}, {}, {0, 1, 2}));
    EXPECT_EQ(modelWithNodes(R"({"scale":[2,2,2],"children":[1]},{"mesh":0,"translation":[1,0,0]})").import(),
              meshOf({4, 4, 6, 10, 10, 12, 16, 16, 20}, {}, {0, 1, 2}));
}

TEST_F(MeshGltf, mirrorKeepsFrontsInFront)
{
    EXPECT_EQ(modelWithNodes(R"({"mesh":0,"scale":[-1,1,1]})").import(),
              meshOf({-1, 2, 3, -4, 5, 6, -7, 8, 10}, {}, {0, 2, 1}));
    EXPECT_EQ(modelWithNodes(R"({"mesh":0,"scale":[-1,-1,1]})").import(),
              meshOf({-1, -2, 3, -4, -5, 6, -7, -8, 10}, {}, {0, 1, 2}));
}

TEST_F(MeshGltf, nodesComeBeforeTheirChildrenInTheirOrder)
{
    Gltf model = modelWithNodes(R"({"mesh":0,"children":[2,1]},{"mesh":0,"scale":[2,2,2]},)"
                                R"({"mesh":0,"scale":[3,3,3],"children":[3]},{"mesh":0,"scale":[2,2,2]},{"mesh":0})");
    model.scenes = R"("scene":1,"scenes":[{"nodes":[4]},{"nodes":[0]}],)";
    const std::string bytes = model.import();
    std::vector<float> expected;
    for (const float scale : {1.0f, 3.0f, 6.0f, 2.0f})
        for (const float value : threePositions) expected.push_back(scale * value);
    EXPECT_EQ(bytes, meshOf(expected, {}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST_F(MeshGltf, withoutADefaultSceneTheFirstCounts)
{
    Gltf model = modelWithNodes(R"({"mesh":0,"scale":[2,2,2]},{"mesh":0,"children":[0]})");
    model.scenes = R"("scenes":[{"nodes":[0]},{"nodes":[1]}],)";
    EXPECT_EQ(model.import(), meshOf({2, 4, 6, 8, 10, 12, 14, 16, 20}, {}, {0, 1, 2}));
    model.scenes = ""; // all nodes that have no parent
    EXPECT_EQ(model.import(),
              meshOf({1, 2, 3, 4, 5, 6, 7, 8, 10, 2, 4, 6, 8, 10, 12, 14, 16, 20}, {}, {0, 1, 2, 3, 4, 5}));
}

TEST_F(MeshGltf, skinIsLeftOutWithItsNode)
{
    Gltf model = modelWithNodes(R"({"mesh":0,"skin":0,"scale":[2,2,2]},{})");
    model.more = R"("skins":[{"joints":[1]}],)";
    EXPECT_EQ(model.import("--up z", "a.gltf: note: mesh 0: its skin is left out\n"), meshOfThree());
}

TEST_F(MeshGltf, extensionsOfSurfacesDoNotMatter)
{
    Gltf model = modelOf(threePositions);
    model.more = R"("extensionsRequired":["KHR_materials_unlit","KHR_texture_transform","KHR_mesh_quantization"],)";
    EXPECT_EQ(model.import(), meshOfThree());
}

TEST_F(MeshGltf, picturesStayClosed)
{
    Gltf model = modelOf(threePositions);
    model.more = R"("images":[{"uri":"nosuch.png"},{"uri":"../outside.png"},)"
                 R"({"uri":"data:image/png;base64,AAAA"},{"bufferView":0,"mimeType":"image/png"}],)";
    EXPECT_EQ(model.import(), meshOfThree());
}

// ---- refusals -----------------------------------------------------------------------------------------------------

TEST_F(MeshGltf, otherVersionsAreRefused)
{
    Gltf model = modelOf(threePositions);
    model.version = "1.1";
    model.expectRefusal("is glTF 1.1, which cannot be read: only glTF 2 can");
    writeFileContents("a.glb", "glTF" + littleEndian(1, 4) + std::string(30, ' '));
    expectRefusal("a.glb", "a.glb: is glTF 1.0, which cannot be read: only glTF 2 can\n");
}

TEST_F(MeshGltf, extensionsOfShapesAreRefused)
{
    Gltf model = modelOf(threePositions);
    model.more = R"("extensionsRequired":["KHR_draco_mesh_compression"],)";
    model.expectRefusal("needs the extension \"KHR_draco_mesh_compression\", which is not known here");
}

TEST_F(MeshGltf, filesOutsideOfTheDirectoryAreNotOpened)
{
    std::filesystem::create_directory("d");
    const Gltf model = modelOf(threePositions);
    writeFileContents("outside.bin", model.buffer);
    const std::string absolute = (std::filesystem::current_path() / "outside.bin").generic_string();
    const auto expect = [&model](const std::string& uri, const std::string& reason) {
        writeFileContents("d/a.gltf", model.getText("\"uri\":\"" + uri + "\","));
        expectRefusal("d/a.gltf", "d/a.gltf: " + reason + "\n");
    };
    const std::string outside = "which may lie outside of its directory";
    expect("../outside.bin", "refers to \"../outside.bin\", " + outside);
    expect("%2E%2E/outside.bin", "refers to \"../outside.bin\", " + outside);
    expect(absolute, "refers to \"" + absolute + "\", " + outside);
    expect("outside.bin", "cannot be read: File not found : outside.bin"); // it lies in the working directory
}

TEST_F(MeshGltf, sceneAndNodesThatAreNotThereAreRefused)
{
    Gltf model = modelOf(threePositions);
    model.scenes = R"("scene":1,"scenes":[{"nodes":[0]}],)";
    model.expectRefusal("the default scene: is not there");
    model.scenes = R"("scenes":[{"nodes":[1]}],)";
    model.expectRefusal("node 1: is not there");
    modelWithNodes(R"({"children":[-3]})").expectRefusal("node -3: is not there");
    modelWithNodes(R"({"mesh":1})").expectRefusal("mesh 1: is not there");
    modelWithNodes(R"({"children":[1]},{"children":[0]})").expectRefusal("node 0: has more than one parent");
    modelWithNodes("{}").expectRefusal("has no triangles");
}

TEST_F(MeshGltf, attributesThatDoNotFitAreRefused)
{
    modelOf(threePositions, R"(,"mode":7)").expectRefusal("mesh 0, primitive 0: has the unknown mode 7");
    modelOf(fourPositions, R"(,"mode":1)")
        .expectRefusal("has no triangles", "a.gltf: note: mesh 0, primitive 0: points and lines are left out\n");
    Gltf model = modelOf(threePositions);
    model.primitives = R"({"attributes":{"POSITION":7}})";
    model.expectRefusal("mesh 0, primitive 0: accessor 7: is not there");
    model.primitives = R"({"attributes":{"POSITION":0,"TEXCOORD_0":0}})";
    model.expectRefusal("mesh 0, primitive 0: accessor 0: has a type that does not fit");
    model.primitives = R"({"attributes":{"POSITION":0,"TEXCOORD_0":1}})";
    model.add(floatBytes({1, 1}), 5126, "VEC2", 1);
    model.expectRefusal("mesh 0, primitive 0: has 1 texture coordinates for 3 positions");
    model.primitives = R"({"attributes":{"POSITION":0},"indices":2})";
    model.add(floatBytes({0, 1, 2}), 5126, "SCALAR", 3);
    model.expectRefusal("mesh 0, primitive 0: accessor 2: has a type that does not fit");
}

TEST_F(MeshGltf, indexesOutOfRangeAreRefused)
{
    for (const int index : {3, -1}) {
        Gltf model = modelOf(threePositions, R"(,"indices":1)");
        model.add(integerBytes({0, 1, index}), 5125, "SCALAR", 3);
        model.expectRefusal("mesh 0, primitive 0: has index " + std::string(index == 3 ? "3" : "4294967295") +
                            ", but 3 positions");
    }
    Gltf model = modelOf(threePositions, R"(,"indices":1)");
    model.add(integerBytes({0, 1, -1}, 1), 5120, "SCALAR", 3);
    model.expectRefusal("mesh 0, primitive 0: has index -1, but 3 positions");
}

TEST_F(MeshGltf, accessorsThatReachBeyondTheirBufferAreRefused)
{
    const std::string bytes = floatBytes(threePositions);
    const auto expect = [](Gltf model, const std::string& accessor, int count, const std::string& reason) {
        model.addAccessor(5126, "VEC3", count, accessor);
        model.primitives = R"({"attributes":{"POSITION":0}})";
        model.expectRefusal("mesh 0, primitive 0: accessor 0: " + reason);
    };
    Gltf model;
    model.addView(bytes);
    const std::string beyond = "reaches beyond its buffer";
    expect(model, R"(,"bufferView":0)", 4, beyond);
    expect(model, R"(,"bufferView":0,"byteOffset":4)", 3, beyond);
    expect(model, R"(,"bufferView":0,"byteOffset":18446744073709551612)", 1, beyond);
    expect(model, R"(,"bufferView":0)", 2147483647, beyond);
    expect(model, R"(,"bufferView":1)", 3, "has buffer view 1, which is not there");
    expect(model, "", 16777217, "has no data");
    model.views = R"({"buffer":1,"byteLength":36})";
    expect(model, R"(,"bufferView":0)", 3, "has buffer 1, which is not there");
    model.views = R"({"buffer":0,"byteOffset":4,"byteLength":36})";
    expect(model, R"(,"bufferView":0)", 1, beyond);
    model.views = R"({"buffer":0,"byteOffset":40,"byteLength":1})";
    expect(model, R"(,"bufferView":0)", 1, beyond);
}

TEST_F(MeshGltf, sparseAccessorsThatAreDamagedAreRefused)
{
    const auto expect = [](const std::string& indexes, const std::string& values, int count, int index,
                           const std::string& reason) {
        Gltf model;
        model.addView(floatBytes(threePositions));
        model.addView(integerBytes({index}));
        model.addAccessor(5126, "VEC3", 3,
                          R"(,"bufferView":0,"sparse":{"count":)" + std::to_string(count) + R"(,"indices":{)" +
                              indexes + R"(},"values":{)" + values + "}}");
        model.primitives = R"({"attributes":{"POSITION":0}})";
        model.expectRefusal("mesh 0, primitive 0: accessor 0: " + reason);
    };
    const std::string indexes = R"("bufferView":1,"componentType":5125)";
    const std::string values = R"("bufferView":0)";
    expect(indexes, values, 1, 3, "replaces an element that is not there");
    expect(indexes, values, -1, 0, "is sparse in a way that cannot be");
    expect(R"("bufferView":1,"componentType":5126)", values, 1, 0, "is sparse in a way that cannot be");
    expect(R"("bufferView":1,"componentType":5125,"byteOffset":-4)", values, 1, 0, "is sparse in a way that cannot be");
    expect(indexes, values, 2, 0, "reaches beyond its buffer");
    expect(indexes, R"("bufferView":0,"byteOffset":28)", 1, 0, "reaches beyond its buffer");
    expect(indexes, R"("bufferView":5)", 1, 0, "has buffer view 5, which is not there");
}

TEST_F(MeshGltf, numbersThatAreNotFiniteAreRefused)
{
    const float infinity = std::numeric_limits<float>::infinity();
    modelOf({0, 0, infinity, 1, 0, 0, 0, 1, 0}).expectRefusal("has a position that is not finite");
    Gltf model = modelOf(threePositions);
    model.add(floatBytes({0, 0, -infinity, 0, 0, 0}), 5126, "VEC2", 3);
    model.primitives = R"({"attributes":{"POSITION":0,"TEXCOORD_0":1}})";
    model.expectRefusal("has a texture coordinate that is not finite");
    EXPECT_EQ(model.import("--up z --no-texture-coordinates"), meshOfThree());
}

TEST_F(MeshGltf, whatIsNoGltfIsRefused)
{
    const auto expect = [](const std::string& text, const std::string& reason) {
        writeFileContents("a.gltf", text);
        expectRefusal("a.gltf", "a.gltf: " + reason + "\n");
    };
    expect("", "cannot be read: JSON string too short.");
    expect(R"({"asset":{}})", "cannot be read: \"asset\" object not found in .gltf or not an object type");
    expect("glTF", "cannot be read: Too short data size for glTF Binary.");
    std::string binary = modelOf(threePositions).getBinary();
    binary.pop_back();
    binary.replace(8, 4, littleEndian(binary.size(), 4));
    expect(binary, "ends within its data");
    const std::string deep(201, '[');
    expect(R"({"asset":{"version":"2.0"},"extras":)" + deep + std::string(201, ']') + "}",
           "has more than 200 objects inside each other");
    writeFileContents("a.gltf", "[1, 2, " + std::string(1000, '3'));
    const ProgramRun run = runXum("mesh import a.gltf refused.mesh");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors.substr(0, 23), "a.gltf: cannot be read:");
    EXPECT_LT(run.errors.size(), 250u);
}

// ---- damage -------------------------------------------------------------------------------------------------------

namespace {

void readDamaged(const std::string& damaged)
{
    Model model;
    try {
        readGltfModel(damaged, "", model);
    } catch (const std::exception&) { // the loader has some of its own, which importMesh reports
        return;
    }
    for (const int index : model.getIndexes())
        ASSERT_LT(static_cast<std::size_t>(index), model.getPositions().size()) << damaged;
}

std::string wholeModel()
{
    Gltf model = modelOf(fourPositions, R"(,"indices":1,"material":0)");
    model.add(integerBytes({0, 1, 2, 3, 2, 1}, 2), 5123, "SCALAR", 6);
    model.add(floatBytes({0, 0, 1, 0, 0, 1, 1, 1}), 5126, "VEC2", 4);
    model.addAccessor(5126, "VEC3", 4,
                      R"(,"sparse":{"count":1,"indices":{"bufferView":1,"componentType":5123},)"
                      R"("values":{"bufferView":0}})");
    model.primitives +=
        R"(,{"attributes":{"POSITION":3,"TEXCOORD_0":2,"NORMAL":0},"mode":5,"targets":[{"POSITION":0}]})";
    model.nodes =
        R"({"children":[1],"rotation":[0,0,1,0]},{"mesh":0,"skin":0,"matrix":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1]})";
    model.more =
        R"("materials":[{"name":"a"}],"images":[{"bufferView":0,"mimeType":"image/png"}],"textures":[{}],)"
        R"("skins":[{"joints":[1],"inverseBindMatrices":0}],"cameras":[{"type":"perspective","perspective":)"
        R"({"yfov":1,"znear":1}}],"animations":[{"channels":[{"sampler":0,"target":{"node":0,"path":"scale"}}],)"
        R"("samplers":[{"input":0,"output":1}]}],"extras":{"a":[1,2,{"b":null}]},)";
    return model.getBinary();
}

} // namespace

TEST_F(MeshGltf, everyShorterFileIsReadOrRefused)
{
    const std::string whole = wholeModel();
    Model model;
    readGltfModel(whole, "", model);
    EXPECT_EQ(model.getIndexes().size(), 12u);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        std::string shorter = whole.substr(0, size);
        readDamaged(shorter);
        if (size < 20) continue;
        shorter.replace(8, 4, littleEndian(size, 4)); // a header that agrees
        readDamaged(shorter);
    }
}

TEST_F(MeshGltf, damagedFilesAreReadOrRefused)
{
    const std::string whole = wholeModel();
    const std::size_t json = whole.find("BIN") - 4;
    std::mt19937 random(3);
    for (int round = 0; round < 4000; ++round) {
        std::string damaged = whole;
        for (auto i = 1 + random() % 4; i > 0; --i) {
            const std::size_t at = random() % (round % 4 == 0 ? damaged.size() : json);
            if (round % 4 == 1)
                damaged[at] = static_cast<char>(random());
            else if (damaged[at] >= '0' && damaged[at] <= '9')
                damaged[at] = "0123456789-.e"[random() % 13];
            else if (round % 8 == 2)
                damaged[at] = "{}[]:,\"0-nt"[random() % 11];
            else
                ++i; // seeks a number
        }
        readDamaged(damaged);
    }
}
