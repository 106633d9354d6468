#include "file_contents.h"
#include "made_maps.h"
#include "own_directory.h"

#include <map_files.h>

#include <xum/geometry/compiled_map.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <random>

namespace {

namespace fs = std::filesystem;

class EditorMapFiles : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }

    static MapDocument load(const std::string& name)
    {
        std::string problem;
        const std::optional<MapDocument> document = loadMap(name, problem);
        EXPECT_TRUE(document) << problem;
        return document.value_or(makeEmptyDocument());
    }

    static void save(const MapDocument& document, const std::string& name)
    {
        std::string problem;
        EXPECT_TRUE(saveMap(document, name, problem)) << problem;
    }

    static std::string problemOf(const std::string& text)
    {
        writeFileContents("a.cfg", text);
        std::string problem;
        EXPECT_FALSE(loadMap("a.cfg", problem));
        return problem;
    }

    /// Saved, loaded and saved again it is the same, byte for byte.
    static void expectToStay(const MapDocument& document)
    {
        save(document, "first.cfg");
        save(load("first.cfg"), "second.cfg");
        EXPECT_EQ(fileContents("second.cfg"), fileContents("first.cfg"));
        EXPECT_EQ(formatMap(toSource(load("first.cfg"))), formatMap(toSource(document)));
    }
};

} // namespace

TEST_F(EditorMapFiles, mapsOfTheDemoStayTheSameByteForByte)
{
    int count = 0;
    for (const auto& entry : fs::directory_iterator(XUM_DATA_DIRECTORY "/maps")) {
        if (entry.path().extension() != ".cfg") continue;
        SCOPED_TRACE(entry.path());
        const MapDocument document = load(entry.path().string());
        EXPECT_FALSE(document.brushes.empty());
        expectToStay(document);
        ++count;
    }
    EXPECT_GT(count, 0);
}

TEST_F(EditorMapFiles, compiledDemoIsTheSameAfterSaving)
{
    const MapDocument document = load(XUM_DATA_DIRECTORY "/maps/gatehouse.cfg");
    save(document, "saved.cfg");
    std::string problem;
    ASSERT_TRUE(compileMapFile(load("saved.cfg"), "saved.map", problem)) << problem;
    EXPECT_EQ(fileContents("saved.map"), fileContents(XUM_DATA_DIRECTORY "/maps/gatehouse.map"));
}

TEST_F(EditorMapFiles, everythingThatAMapCanHoldStays)
{
    MapDocument document = documentWithLand();
    setTitle(document, "A title with 'signs' & \xC3\xA4");
    document.meshOrigins.push_back({0.1f, -2, 1e6f});
    addBox(document, {{0.1, 0.2, 0.3}, {1.7, 2.9, 3.333333333333333}}, "a b.png", 0.3);
    setSideTexture(document, 0, 3, "");
    setSolid(document, 0, false);
    addBrush(document, makeWedge(), 1);
    BrushSource tilted = makeWedge();
    tilted.kind = 200;
    for (SideSource& side : tilted.sides) side.distance += 1.0 / 3;
    addBrush(document, tilted);
    addEntity(document, "lamp", {0.1, 1.0 / 3, -5});
    setEntityEntry(document, 0, "note", "what /is/ 'this' = ?");
    expectToStay(document);
}

TEST_F(EditorMapFiles, emptyMapStays)
{
    expectToStay(makeEmptyDocument());
    EXPECT_EQ(fileContents("first.cfg"), "<map>\r\n</map>\r\n");
}

// What the edits take must come back from a file, whatever it is.
TEST_F(EditorMapFiles, everyStorableTextStays)
{
    std::mt19937 random(7);
    const std::string alphabet = "ab \t/\\'=;#&%[](){}\xC3\xA4-_.\"<>\n\r";
    int stored = 0;
    for (int round = 0; round < 300; ++round) {
        MapDocument document = documentWithUnitBox();
        addEntity(document, "lamp", {});
        const auto text = [&] {
            std::string made;
            for (std::size_t size = random() % 6; size > 0; --size) made += alphabet[random() % alphabet.size()];
            return made;
        };
        const std::string name = text();
        const std::string value = text();
        stored += setEntityEntry(document, 0, name, value) ? 1 : 0;
        setTitle(document, text());
        setTexture(document, 0, text());
        setSideTexture(document, 0, 0, text());
        SCOPED_TRACE(testing::PrintToString(name) + " " + testing::PrintToString(value));
        expectToStay(document);
        if (HasFailure()) return;
    }
    EXPECT_GT(stored, 30);
}

TEST_F(EditorMapFiles, compiledMapIsOneOfTheEngine)
{
    MapDocument document = documentWithUnitBox();
    setTitle(document, "Box");
    std::string problem;
    ASSERT_TRUE(compileMapFile(document, "a.map", problem)) << problem;
    const std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile("a.map"));
    ASSERT_TRUE(map);
    EXPECT_EQ(map->getFirst(), "Box");
    EXPECT_EQ(map->getBSPMeshes().getCount(), 1u);
}

// ---- what cannot be read --------------------------------------------------------------------------------------------

TEST_F(EditorMapFiles, brokenFilesAreToldWithTheirPlace)
{
    EXPECT_EQ(problemOf(""), "a.cfg: 1:1: the text is empty");
    EXPECT_EQ(problemOf("<map>\n  <mesh"),
              "a.cfg: 2:3: tokenize() -> end of file reached before finding a closing tag!");
    EXPECT_EQ(problemOf("\x7F\x45LF\x02"), "a.cfg: 1:1: tokenize() -> expecting '<' got '\x7F'!");
    EXPECT_EQ(problemOf("<program></program>"), "a.cfg: this is no map: it begins with <program>");
    EXPECT_EQ(problemOf("<map><mesh></mesh></map>"), "a.cfg: mesh 1: has no <brush>");
    EXPECT_EQ(problemOf("<map><entity></entity></map>"), "a.cfg: entity 1: has no <class>");
}

TEST_F(EditorMapFiles, missingFilesAndDirectoriesAreTold)
{
    std::string problem;
    EXPECT_FALSE(loadMap("none.cfg", problem));
    EXPECT_EQ(problem, "there is no file none.cfg");
    fs::create_directory("d.cfg");
    EXPECT_FALSE(loadMap("d.cfg", problem));
    EXPECT_EQ(problem, "there is no file d.cfg");
}

TEST_F(EditorMapFiles, hugeFileIsNotRead)
{
    writeFileContents("a.cfg", "<map>");
    fs::resize_file("a.cfg", (std::uintmax_t{1} << 28) + 1); // it takes no room on the disk
    std::string problem;
    EXPECT_FALSE(loadMap("a.cfg", problem));
    EXPECT_EQ(problem, "a.cfg is too large for a map");
}

TEST_F(EditorMapFiles, everyShorterFileIsAMapOrATold)
{
    MapDocument document = documentWithLand();
    addBrush(document, makeWedge());
    addEntity(document, "lamp", {});
    save(document, "whole.cfg");
    const std::string whole = fileContents("whole.cfg");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        std::string problem;
        const bool isMap = readMap(whole.substr(0, size), problem).has_value();
        EXPECT_EQ(isMap, whole.substr(0, size).find("</map>") != std::string::npos) << size;
        EXPECT_EQ(isMap, problem.empty()) << size;
    }
}

// ---- what cannot be written -----------------------------------------------------------------------------------------

TEST_F(EditorMapFiles, failedSaveIsToldAndKeepsTheOldFile)
{
    writeFileContents("a.cfg", "old");
    fs::create_directory("a.cfg.new");
    fs::create_directory("d.cfg");
    std::string problem;
    EXPECT_FALSE(saveMap(documentWithUnitBox(), "a.cfg", problem));
    EXPECT_EQ(problem, "cannot write a.cfg: cannot make a.cfg.new beside it");
    EXPECT_EQ(fileContents("a.cfg"), "old");
    EXPECT_FALSE(saveMap(documentWithUnitBox(), "d.cfg", problem));
    EXPECT_EQ(problem, "cannot write d.cfg: it is a directory");
    EXPECT_FALSE(saveMap(documentWithUnitBox(), "a.cfg/b.cfg", problem));
    EXPECT_EQ(problem, "cannot write a.cfg/b.cfg: there is no directory a.cfg");
}

#ifndef _WIN32
TEST_F(EditorMapFiles, fullDiskIsToldAndKeepsTheOldFile)
{
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full here";
    for (const char* name : {"a.cfg", "a.map"}) {
        writeFileContents(name, "old");
        fs::create_symlink("/dev/full", std::string(name) + ".new");
    }
    std::string problem;
    EXPECT_FALSE(saveMap(documentWithUnitBox(), "a.cfg", problem));
    EXPECT_EQ(problem, "cannot write a.cfg: the disk may be full");
    EXPECT_FALSE(compileMapFile(documentWithUnitBox(), "a.map", problem));
    EXPECT_EQ(problem, "cannot write a.map: the disk may be full");
    EXPECT_EQ(fileContents("a.cfg"), "old");
    EXPECT_EQ(fileContents("a.map"), "old");
}
#endif

TEST_F(EditorMapFiles, mapThatWouldNotComeBackIsNotSaved)
{
    writeFileContents("a.cfg", "old");
    MapDocument document = makeEmptyDocument();
    document.title = "a > b";
    std::string problem;
    EXPECT_FALSE(saveMap(document, "a.cfg", problem));
    EXPECT_EQ(problem, "cannot write a.cfg: it would not be read as the same map");
    EXPECT_EQ(fileContents("a.cfg"), "old");
    EXPECT_FALSE(fs::exists("a.cfg.new"));
}

TEST_F(EditorMapFiles, brushThatDoesNotCompileIsNamed)
{
    MapDocument document = documentWithUnitBox();
    BrushSource open = makeWedge();
    open.sides.pop_back();
    addBrush(document, open);
    save(document, "a.cfg");
    writeFileContents("a.map", "old");
    std::string problem;
    EXPECT_FALSE(compileMapFile(load("a.cfg"), "a.map", problem));
    EXPECT_EQ(problem, "brush 1: its planes leave it open");
    EXPECT_EQ(fileContents("a.map"), "old");
}

// ---- autosaves ------------------------------------------------------------------------------------------------------

TEST_F(EditorMapFiles, autosaveCountsWhenItIsNotOlderThanItsMap)
{
    EXPECT_EQ(autosaveNameOf("maps/a.cfg"), "maps/a.cfg.autosave");
    EXPECT_FALSE(hasYoungerAutosave("a.cfg"));
    writeFileContents("a.cfg.autosave", "");
    EXPECT_TRUE(hasYoungerAutosave("a.cfg")) << "the map was never saved";
    writeFileContents("a.cfg", "");
    const auto now = fs::last_write_time("a.cfg");
    fs::last_write_time("a.cfg.autosave", now - std::chrono::seconds(1));
    EXPECT_FALSE(hasYoungerAutosave("a.cfg"));
    fs::last_write_time("a.cfg.autosave", now);
    EXPECT_TRUE(hasYoungerAutosave("a.cfg"));
    fs::last_write_time("a.cfg.autosave", now + std::chrono::seconds(1));
    EXPECT_TRUE(hasYoungerAutosave("a.cfg"));
}
