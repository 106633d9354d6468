#include "own_directory.h"
#include "program.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

class MapCommand : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

const std::string level = "<map>\n<title \"My level\"/>\n<mesh><origin \"0.5 -2 1e3\"/>"
                          "<brush><box \"0 0 0 64 64 64\"/><texture a/></brush>"
                          "<brush><box \"64 0 0 100 64 64.25\"/><texture a/></brush></mesh></map>";

/// Without the time, which nobody can foresee.
std::string withoutTime(const std::string& summary)
{
    const std::size_t comma = summary.rfind(", ");
    EXPECT_EQ(summary.substr(summary.size() - 3), " s\n");
    return summary.substr(0, comma);
}

void expectFailure(const std::string& arguments, const std::string& errors)
{
    const ProgramRun run = runXum("map " + arguments);
    EXPECT_EQ(run.status, 1) << arguments;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, errors) << arguments;
}

void expectNoMap(const std::string& description, const std::string& errors)
{
    writeFileContents("a.cfg", description);
    writeFileContents("old.map", "old");
    expectFailure("compile a.cfg old.map", errors);
    EXPECT_EQ(fileContents("old.map"), "old");
}

template <class Value>
std::string bytesOf(Value value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

std::string header(std::uint32_t meshes)
{
    return "!XumMap" + std::string(13, '\0') + bytesOf(meshes); // with two empty texts
}

} // namespace

// ---- compile ------------------------------------------------------------------------------------------------------

TEST_F(MapCommand, levelIsCompiledAndDescribed)
{
    writeFileContents("a.cfg", level);
    const ProgramRun run = runXum("map compile a.cfg a.map");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(withoutTime(run.output), "a.map: 1 mesh, 2 brushes, 11 polygons, 12 leaves, depth 6");
    const ProgramRun info = runXum("map info a.map");
    EXPECT_EQ(info.status, 0);
    EXPECT_EQ(info.errors, "");
    EXPECT_EQ(info.output, "title: My level\n"
                           "second text: 126 bytes\n"
                           "meshes: 1\n"
                           "mesh 1:\n"
                           "   origin: 0.5 -2 1000\n"
                           "   nodes: 11\n"
                           "   leaves: 12 (2 solid, 10 empty)\n"
                           "   depth: 6\n"
                           "   polygons: 11\n"
                           "   vertices: 44\n"
                           "   brushes: 2\n"
                           "   references to brushes: 2\n"
                           "   bounds: 0 0 0 to 100 64 64.25\n");
}

TEST_F(MapCommand, sameDescriptionMakesTheSameMap)
{
    writeFileContents("a.cfg", level);
    EXPECT_EQ(runXum("map compile a.cfg a.map").status, 0);
    EXPECT_EQ(runXumWithInput("map compile - b.map", level).status, 0);
    EXPECT_GT(fileContents("a.map").size(), 500u);
    EXPECT_EQ(fileContents("a.map"), fileContents("b.map"));
    writeFileContents("b.map", "old");
    EXPECT_EQ(runXum("map compile a.cfg b.map").status, 0);
    EXPECT_EQ(fileContents("a.map"), fileContents("b.map"));
}

TEST_F(MapCommand, brokenDescriptionIsReportedAndMakesNoMap)
{
    expectNoMap("<map>\n <mesh>\n", "a.cfg:2:2: readSection() -> section needs at least 2 tokens!\n");
    expectNoMap("<map>\n# walls\n</map>", "a.cfg:2:1: tokenize() -> expecting '<' got '#'!\n");
    expectNoMap("", "WARNING: empty config file (a.cfg)!\na.cfg: is no level\n");
    expectNoMap("<map><mesh></mesh></map>", "a.cfg: mesh 1: has no <brush>\n");
    expectNoMap("<map><x\ty z/></map>", "a.cfg: the map: <x\\x09y> is not known here\n");
    expectNoMap("<map><mesh><brush><box \"0 0 0 1 1 1e-9\"/></brush></mesh></map>",
                "a.cfg: mesh 1, brush 1: there is no room behind all its planes\n");
    expectFailure("compile nosuch.cfg a.map", "nosuch.cfg: cannot be opened: No such file or directory\n");
    EXPECT_FALSE(fs::exists("a.map"));
}

TEST_F(MapCommand, placeThatCannotBeWrittenIsReported)
{
    writeFileContents("a.cfg", level);
    fs::create_directory("d");
    expectFailure("compile a.cfg d", "d: cannot be written: there is something else of that name\n");
    expectFailure("compile a.cfg nosuch/a.map", "nosuch/a.map: cannot be written: No such file or directory\n");
    EXPECT_EQ(std::distance(fs::directory_iterator("d"), fs::directory_iterator()), 0);
}

// ---- info ---------------------------------------------------------------------------------------------------------

TEST_F(MapCommand, whatIsNoMapIsReported)
{
    writeFileContents("a.map", "!XumMaX" + std::string(50, '\0'));
    expectFailure("info a.map", "a.map: is no compiled map: it does not begin with !XumMap\n");
    writeFileContents("a.map", "");
    expectFailure("info a.map", "a.map: is no compiled map: it does not begin with !XumMap\n");
    expectFailure("info nosuch.map", "nosuch.map: cannot be read: No such file or directory\n");
    expectFailure("info .", ".: is a directory\n");
}

TEST_F(MapCommand, damagedMapsAreReported)
{
    const auto expectDamage = [](const std::string& bytes, const std::string& problem) {
        writeFileContents("a.map", bytes);
        expectFailure("info a.map", "a.map: is damaged: " + problem + "\n");
    };
    expectDamage("!XumMap", "it ends within its header and texts");
    expectDamage("!XumMap" + std::string(5, '\0') + bytesOf(0xFFFFFFFFu), "it ends within its header and texts");
    expectDamage(header(1), "mesh 1 of 1 is cut off");
    expectDamage(header(0xFFFFFFFFu), "mesh 1 of 4294967295 is cut off");
    const std::string emptyMesh = std::string(16, '\0') + '\1' + std::string(9, '\0');
    expectDamage(header(2) + emptyMesh, "mesh 2 of 2 is cut off");
    expectDamage(header(1) + emptyMesh + "abc", "there are 3 bytes behind the last mesh");
    const std::string wrongBrush = std::string(16, '\0') + '\1' + '\0' + bytesOf(1u) + bytesOf(7u) + bytesOf(0u);
    expectDamage(header(1) + wrongBrush, "mesh 1 of 1 cannot be read");
    writeFileContents("a.map", header(1) + emptyMesh);
    EXPECT_EQ(runXum("map info a.map").status, 0);
}

TEST_F(MapCommand, mapWithProblemsIsDescribedNevertheless)
{
    // A leaf with one polygon, which has one vertex.
    writeFileContents("a.map", header(1) + std::string(16, '\0') + '\1' + '\1' + bytesOf(0u) + bytesOf(1u) +
                                   bytesOf(1u) + std::string(20, '\0'));
    const ProgramRun run = runXum("map info a.map");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "a.map: mesh 1, leaf 1, polygon 1: has less than 3 vertices\n");
    EXPECT_EQ(run.output, "title: \nsecond text: 0 bytes\nmeshes: 1\nmesh 1:\n   origin: 0 0 0\n   nodes: 0\n"
                          "   leaves: 1 (1 solid, 0 empty)\n   depth: 0\n   polygons: 1\n   vertices: 1\n"
                          "   brushes: 0\n   references to brushes: 0\n   bounds: 0 0 0 to 0 0 0\n");
}

TEST_F(MapCommand, treesOfAMillionLevelsAreDescribed)
{
    constexpr std::uint32_t levels = 1000000;
    const std::string inner = '\0' + bytesOf(1.0f) + std::string(12, '\0');
    const std::string leaf = '\1' + std::string(9, '\0');
    std::string bytes = header(1) + std::string(16, '\0');
    for (std::uint32_t i = 0; i < levels; ++i) bytes += i % 2 == 0 ? inner : inner + leaf;
    bytes += leaf;
    for (std::uint32_t i = 0; i < levels; i += 2) bytes += leaf;
    writeFileContents("a.map", bytes);
    const ProgramRun run = runXum("map info a.map");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_NE(run.output.find("   leaves: 1000001 (0 solid, 1000001 empty)\n   depth: 1000000\n"), std::string::npos)
        << run.output;
}

// ---- usage --------------------------------------------------------------------------------------------------------

TEST_F(MapCommand, wrongUsageIsTold)
{
    for (const char* const arguments : {"", "compile", "compile a.cfg", "compile a b c", "info", "info a b", "draw"}) {
        const ProgramRun run = runXum("map " + std::string(arguments));
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_EQ(run.output, "");
        EXPECT_NE(run.errors, "");
    }
    for (const char* const arguments : {"--help", "compile --help", "info --help"}) {
        const ProgramRun run = runXum("map " + std::string(arguments));
        EXPECT_EQ(run.status, 0) << arguments;
        EXPECT_NE(run.output.find("Exit status: 0"), std::string::npos);
    }
}
