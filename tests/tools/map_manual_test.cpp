#include "file_contents.h"
#include "map_levels.h"
#include "own_directory.h"
#include "pack_manual.h"

#include <map_check.h>
#include <map_file.h>

#include <gtest/gtest.h>

// The level part of docs/file_formats.md against the tools and the library.

namespace {

class MapManual : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

/// The only block of that mark.
std::string blockOf(const std::string& mark)
{
    const std::vector<std::string> blocks = fileFormatBlocks(mark);
    EXPECT_EQ(blocks.size(), 1u);
    return blocks.at(0);
}

/// The names that a table lists for a section of a description.
std::vector<std::string> namesIn(const std::string& section)
{
    std::vector<std::string> names;
    std::string current;
    for (const std::string& row : fileFormatRows("| in | name | |")) {
        const std::string first = row.substr(2, row.find(" |", 1) - 2);
        if (row[2] != '|') current = first;
        if (current != section) continue;
        const std::size_t nameColumn = row.find('|', 2);
        const std::string cell = row.substr(nameColumn, row.find('|', nameColumn + 1) - nameColumn);
        for (const std::string& name : quotedIn(cell)) names.push_back(name);
    }
    return names;
}

} // namespace

TEST_F(MapManual, wholeMapIsAsTheEngineWritesIt)
{
    writeFileContents("a.map", bytesOf(blockOf("map-bytes")));
    std::string problem;
    const std::unique_ptr<CompiledMap> map = readMapFile("a.map", problem);
    ASSERT_NE(map, nullptr) << problem;
    EXPECT_EQ(map->getFirst(), "a");
    EXPECT_EQ(map->getSecond(), "b");
    ASSERT_EQ(map->getBSPMeshes().getCount(), 1u);
    const BSPNode& root = *map->getBSPMeshes().getFirst()->getBSP()->getRoot();
    ASSERT_TRUE(root.isLeaf());
    EXPECT_FALSE(root.getLeaf()->kind);
    EXPECT_TRUE(map->writeToFile("b.map"));
    EXPECT_EQ(fileContents("b.map"), fileContents("a.map"));
}

TEST_F(MapManual, exampleIsALevel)
{
    const CompiledLevel level = compileText(blockOf("map"));
    EXPECT_EQ(level.map->getFirst(), "A small yard");
    EXPECT_TRUE(isSolidAt(level, {2, 2, -0.5f}));
    EXPECT_TRUE(isSolidAt(level, {7, 4, 2.9f}));
    EXPECT_FALSE(isSolidAt(level, {7, 4, 3.1f}));
    EXPECT_FALSE(isSolidAt(level, {12, 4, 0.25f})) << "water";
    MapProblems problems;
    checkMesh(*level.map->getBSPMeshes().getFirst(), "mesh", problems);
    checkTextureLists(*level.map, problems);
    EXPECT_EQ(problems.getLines(), std::vector<std::string>());
}

TEST_F(MapManual, secondTextIsAsShown)
{
    std::string text = compileText(blockOf("map")).map->getSecond();
    std::erase(text, '\r');
    EXPECT_EQ(text, blockOf("map-text"));
}

TEST_F(MapManual, everyListedNameIsKnown)
{
    const std::string box = "<box \"0 0 0 1 1 1\"/>";
    EXPECT_EQ(namesIn("`brush`"), (std::vector<std::string>{"box", "plane", "texture", "left", "right", "front", "back",
                                                            "bottom", "top", "scale", "kind", "solid"}));
    for (const std::string& name : namesIn("`brush`")) {
        if (name == "box" || name == "plane") continue;
        const std::string value = name == "solid" ? "yes" : "1";
        EXPECT_EQ(problemOf("<map><mesh><brush>" + box + "<" + name + " " + value + "/></brush></mesh></map>"), "");
    }
}
