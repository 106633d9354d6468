#include "own_directory.h"
#include "pack_bytes.h"
#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

class PackCommand : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

void expectRun(const std::string& arguments, int status, const std::string& output, const std::string& errors)
{
    const ProgramRun run = runXum("pack " + arguments);
    EXPECT_EQ(run.status, status) << arguments;
    EXPECT_EQ(run.output, output) << arguments;
    EXPECT_EQ(run.errors, errors) << arguments;
}

constexpr std::uint64_t largest = 0xFFFFFFFFFFFFFFFF;

} // namespace

// ---- list ---------------------------------------------------------------------------------------------------------

TEST_F(PackCommand, listShowsSizeOffsetAndNameAndMarksTheReplaced)
{
    writeFileContents("a.xum", packHeader(4) + packEntry("b/c", 592, 3) + packEntry("a", 600, 0) +
                                   packEntry("b/c", 593, 1) + packEntry("d", largest, 0xFFFFFFFF) + "xyz");
    expectRun("list a.xum", 0, "3\t592\tb/c\treplaced\n0\t600\ta\n1\t593\tb/c\n4294967295\t18446744073709551615\td\n",
              "");
}

TEST_F(PackCommand, namesStayOnTheirLines)
{
    writeFileContents("a.xum", packOf("a\tb\n\x1B[2J\x7F", ""));
    expectRun("list a.xum", 0, "0\t160\ta\\x09b\\x0A\\x1B[2J\\x7F\n", "");
    expectRun("extract a.xum -o a.xum", 1, "", "a.xum: cannot be made: Not a directory\n");
}

TEST_F(PackCommand, directoryThatIsCutOffIsListedAsFarAsItGoes)
{
    writeFileContents("a.xum", packHeader(0xFFFFFFFF) + packEntry("a", 16, 1) + packEntry("b", 16, 1).substr(0, 143));
    const std::string problem =
        "a.xum: the directory is cut off: the header counts 4294967295 entries, the file has 1\n";
    expectRun("list a.xum", 1, "1\t16\ta\n", problem);
    expectRun("check a.xum", 1, "", problem);
    expectRun("extract a.xum -o d", 1, "", problem);
    EXPECT_EQ(fileContents("d/a"), "a") << "the first byte of the directory";
}

TEST_F(PackCommand, whatIsNoArchiveIsNamed)
{
    fs::create_directory("d.xum");
    writeFileContents("empty.xum", "");
    writeFileContents("short.xum", "!XumRes\1\1\1\1\1\1\1\1");
    writeFileContents("begin.xum", "!Xu");
    writeFileContents("other.xum", "!XumReS" + std::string(20, '\0'));
    writeFileContents("three.xum", "abc");
    const std::pair<const char*, const char*> problems[] = {
        {"nosuch.xum", "cannot be opened: No such file or directory"},
        {"d.xum", "is a directory"},
        {"empty.xum", "is no archive: it has 0 bytes, the header alone 16"},
        {"short.xum", "is no archive: it has 15 bytes, the header alone 16"},
        {"begin.xum", "is no archive: it has 3 bytes, the header alone 16"},
        {"other.xum", "is no archive: it does not begin with \"!XumRes\""},
        {"three.xum", "is no archive: it does not begin with \"!XumRes\""},
    };
    for (const auto& [name, problem] : problems) {
        const std::string line = std::string(name) + ": " + problem + "\n";
        for (const char* command : {"list ", "check ", "extract -o e "})
            expectRun(command + std::string(name), 1, "", line);
    }
    EXPECT_FALSE(fs::exists("e"));
}

// ---- check --------------------------------------------------------------------------------------------------------

TEST_F(PackCommand, everyProblemHasItsLine)
{
    const std::string full(128, 'n');
    const std::string names[] = {full,     "",      "a",    "a",   "/b",    "c\\d", "C:e", "../f",
                                 "g/../h", "i../j", "k/..", "./l", "m/./n", "o//p", "q/",  "r/s...t/.u"};
    std::string archive = packHeader(16);
    for (const std::string& name : names) archive += packEntry(name, 16, 1);
    writeFileContents("a.xum", archive);
    const std::string taken = "\": the name holds \"../\", which is taken out of every name that is asked for\n";
    expectRun("check a.xum", 1, "",
              "a.xum: entry 1 \"" + full +
                  "\": the name has no NUL behind it\n"
                  "a.xum: entry 2 \"\": the name is empty\n"
                  "a.xum: entry 3 \"a\": never loaded: entry 4 has the same name\n"
                  "a.xum: entry 5 \"/b\": the name is absolute\n"
                  "a.xum: entry 6 \"c\\d\": the name holds a backslash\n"
                  "a.xum: entry 7 \"C:e\": the name begins with a drive letter\n"
                  "a.xum: entry 8 \"../f" +
                  taken + "a.xum: entry 9 \"g/../h" + taken + "a.xum: entry 10 \"i../j" + taken +
                  "a.xum: entry 11 \"k/..\": the name has \"..\" for a part\n"
                  "a.xum: entry 12 \"./l\": the name has \".\" for a part\n"
                  "a.xum: entry 13 \"m/./n\": the name has \".\" for a part\n"
                  "a.xum: entry 14 \"o//p\": the name has an empty part between its slashes\n"
                  "a.xum: entry 15 \"q/\": the name has an empty part between its slashes\n");
}

TEST_F(PackCommand, dataBehindTheEndAreAProblemWhereverTheyBegin)
{
    const std::string start = "a.xum: entry 1 \"a\": the data, ";
    const std::string end = " on, reach behind the end of the archive at 162\n";
    const auto expectData = [](std::uint64_t offset, std::uint32_t size, const std::string& problem) {
        writeFileContents("a.xum", packHeader(1) + packEntry("a", offset, size) + "xy");
        expectRun("check a.xum", problem.empty() ? 0 : 1, "", problem);
    };
    expectData(160, 2, "");
    expectData(0, 162, ""); // harmless: the header and the directory again
    expectData(162, 0, "");
    expectData(largest, 0, "");
    expectData(160, 3, start + "3 bytes from 160" + end);
    expectData(162, 1, start + "1 bytes from 162" + end);
    expectData(largest, 1, start + "1 bytes from 18446744073709551615" + end); // the sum of both is 0
    expectData(largest - 1, 0xFFFFFFFF, start + "4294967295 bytes from 18446744073709551614" + end);
    expectData(0x8000000000000000, 1, start + "1 bytes from 9223372036854775808" + end);
}

TEST_F(PackCommand, everyArchiveIsChecked)
{
    writeFileContents("good.xum", packOf("a", "1"));
    writeFileContents("bad.xum", packOf("", "1"));
    expectRun("check bad.xum good.xum nosuch.xum", 1, "",
              "bad.xum: entry 1 \"\": the name is empty\n"
              "nosuch.xum: cannot be opened: No such file or directory\n");
    expectRun("check good.xum good.xum", 0, "", "");
}

TEST_F(PackCommand, shorterArchivesAreProblemsAndNothingWorse)
{
    const std::string whole = packHeader(2) + packEntry("a", 304, 2) + packEntry("b", 306, 3) + "12345";
    for (const std::size_t size : {0u, 1u, 6u, 7u, 10u, 11u, 14u, 15u, 16u, 17u, 159u, 160u, 303u, 304u, 305u, 308u}) {
        writeFileContents("a.xum", whole.substr(0, size));
        EXPECT_EQ(runXum("pack check a.xum").status, 1) << size;
        EXPECT_EQ(runXum("pack list a.xum").status, size < 304 ? 1 : 0) << size;
        EXPECT_EQ(runXum("pack extract a.xum -o d --force").status, 1) << size;
        EXPECT_EQ(fs::exists("d/a"), size > 305) << size;
        EXPECT_FALSE(fs::exists("d/b")) << size;
    }
    writeFileContents("a.xum", whole);
    expectRun("check a.xum", 0, "", "");
}

// ---- extract ------------------------------------------------------------------------------------------------------

TEST_F(PackCommand, namedFilesAreExtractedAlone)
{
    writeFileContents("a.xum", packHeader(3) + packEntry("a", 448, 1) + packEntry("b/c", 449, 2) +
                                   packEntry("b/d", 451, 3) + "122333");
    expectRun("extract a.xum b/c -o x/y", 0, "", "");
    EXPECT_EQ(fileContents("x/y/b/c"), "22");
    EXPECT_FALSE(fs::exists("x/y/a") || fs::exists("x/y/b/d"));
    expectRun("extract a.xum b/d b nosuch b/d -o x/y", 1, "", "b: is not in a.xum\nnosuch: is not in a.xum\n");
    EXPECT_EQ(fileContents("x/y/b/d"), "333");
    expectRun("extract a.xum a", 0, "", "");
    EXPECT_EQ(fileContents("a"), "1") << "in the working directory";
}

TEST_F(PackCommand, filesAreOnlyOverwrittenWithForce)
{
    writeFileContents("a.xum", packHeader(2) + packEntry("a", 304, 3) + packEntry("b", 307, 3) + "newtoo");
    fs::create_directory("d");
    writeFileContents("d/a", "older");
    expectRun("extract a.xum -o d", 1, "", "a: exists, and is only overwritten with --force\n");
    EXPECT_EQ(fileContents("d/a"), "older");
    EXPECT_EQ(fileContents("d/b"), "too");
    expectRun("extract a.xum -o d --force", 0, "", "");
    EXPECT_EQ(fileContents("d/a"), "new");

    fs::remove("d/a");
    fs::create_directory("d/a");
    expectRun("extract --force a.xum a -o d", 1, "", "a: cannot be written: there is something else of that name\n");
}

TEST_F(PackCommand, laterOfTwoEntriesIsExtracted)
{
    writeFileContents("a.xum", packHeader(2) + packEntry("a", 304, 1) + packEntry("a", 305, 1) + "12");
    expectRun("extract a.xum -o d", 0, "", "");
    EXPECT_EQ(fileContents("d/a"), "2");
}

TEST_F(PackCommand, namesThatLeadOutOfTheDirectoryAreRefused)
{
    const std::string outside = (fs::current_path() / "outside").string();
    const std::string names[] = {"../up", "a/../../up", outside, "..\\up", "C:up", "",
                                 "..",    "a/..",       "a//b",  "./a",    "a/"};
    std::string archive = packHeader(12);
    for (const std::string& name : names) archive += packEntry(name, 0, 1);
    writeFileContents("a.xum", archive + packEntry("good", 0, 1));
    const ProgramRun run = runXum("pack extract a.xum -o d/e --force");
    EXPECT_EQ(run.status, 1);
    for (const std::string& name : names)
        EXPECT_NE(("\n" + run.errors).find("\n" + name + ": not extracted: the name "), std::string::npos) << name;
    std::string found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator("."))
        found += entry.path().filename().string() + " ";
    EXPECT_EQ(fileContents("d/e/good"), "!");
    for (const char* name : {"up", "outside"})
        EXPECT_EQ(found.find(name + std::string(" ")), std::string::npos) << found;
    EXPECT_EQ(std::distance(fs::directory_iterator("d/e"), fs::directory_iterator()), 1);
}

#ifndef _WIN32
TEST_F(PackCommand, linksDoNotLeadOutOfTheDirectory)
{
    fs::create_directories("d/inside");
    fs::create_directory("outside");
    writeFileContents("outside/kept", "kept");
    fs::create_symlink("../outside", "d/out");
    fs::create_symlink("inside", "d/in");
    fs::create_symlink("../outside/kept", "d/file");
    fs::create_symlink("../outside/new", "d/nowhere");
    writeFileContents("a.xum", packHeader(5) + packEntry("out/a", 0, 1) + packEntry("out/b/c", 0, 1) +
                                   packEntry("in/a", 0, 1) + packEntry("file", 0, 1) + packEntry("nowhere", 0, 1));
    expectRun("extract a.xum -o d", 1, "",
              "out/a: not extracted: a link leads out of the directory\n"
              "out/b/c: not extracted: a link leads out of the directory\n"
              "file: exists, and is only overwritten with --force\n"
              "nowhere: exists, and is only overwritten with --force\n");
    expectRun("extract a.xum file nowhere -o d --force", 0, "", "");
    EXPECT_EQ(fileContents("d/inside/a"), "!");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status("d/file"))) << "the link itself is replaced";
    EXPECT_EQ(fileContents("outside/kept"), "kept");
    EXPECT_EQ(std::distance(fs::directory_iterator("outside"), fs::directory_iterator()), 1);

    fs::create_symlink("d", "link");
    expectRun("extract a.xum in/a -o link --force", 0, "", ""); // the directory itself may lie behind one
}
#endif

TEST_F(PackCommand, damagedEntriesAreNotExtracted)
{
    writeFileContents("a.xum", packHeader(3) + packEntry("a", 448, 3) + packEntry("b", largest, 7) +
                                   packEntry("c", 448, 2) + "12");
    expectRun("extract a.xum -o d", 1, "",
              "a: damaged: of 3 bytes the archive has 2\nb: damaged: of 7 bytes the archive has 0\n");
    EXPECT_FALSE(fs::exists("d/a") || fs::exists("d/b"));
    EXPECT_EQ(fileContents("d/c"), "12");
}

TEST_F(PackCommand, fileAndDirectoryOfOneNameAreReported)
{
    writeFileContents("a.xum", packHeader(2) + packEntry("a", 0, 1) + packEntry("a/b", 0, 1));
    const ProgramRun run = runXum("pack extract a.xum -o d");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors.substr(0, 26), "a/b: cannot be written: No") << run.errors;
    EXPECT_EQ(fileContents("d/a"), "!");
}

// ---- explain ------------------------------------------------------------------------------------------------------

TEST_F(PackCommand, explainShowsWhoAnswersAndWhoIsShadowed)
{
    writeFileContents("a.xum", packHeader(3) + packEntry("t/x", 448, 1) + packEntry("other", 0, 1) +
                                   packEntry("t/x", 449, 2) + "122");
    writeFileContents("b.xum", packOf("t/x", "333"));
    const std::string b = "the archive b.xum, entry 1, 3 bytes from 160 on\n";
    const std::string a = "the archive a.xum, entry 3, 2 bytes from 449 on\n"
                          "shadowed: the archive a.xum, entry 1, 1 bytes from 448 on\n";
    expectRun("explain t/x --archive a.xum --archive b.xum", 0,
              "name in archives: t/x\nanswers: " + b + "shadowed: " + a, "");
    expectRun("explain t/x -a b.xum -a a.xum", 0, "name in archives: t/x\nanswers: " + a + "shadowed: " + b, "");
    fs::create_directories("m");
    fs::create_directories("t");
    writeFileContents("t/x", "four");
    expectRun("explain m/../t/x -a a.xum -a b.xum", 0,
              "name in archives: t/x\nanswers: the file m/../t/x, 4 bytes\nshadowed: " + b + "shadowed: " + a, "");
}

TEST_F(PackCommand, explainOfWhatNobodyHasFails)
{
    writeFileContents("a.xum", packOf("x", ""));
    fs::create_directory("d");
    expectRun("explain m/../t/y -a a.xum", 1, "name in archives: t/y\n",
              "m/../t/y: is neither a file nor in an archive\n");
    expectRun("explain d", 1, "name in archives: d\n", "d: is neither a file nor in an archive\n");
    expectRun("explain X -a a.xum", 1, "name in archives: X\n", "X: is neither a file nor in an archive\n");
}

TEST_F(PackCommand, explainSaysWhatTheEngineMakesOfBadArchives)
{
    writeFileContents("bad.xum", "something else");
    writeFileContents("cut.xum", packHeader(9) + packEntry("x", 159, 5));
    expectRun("explain x -a bad.xum -a nosuch.xum -a cut.xum", 1,
              "name in archives: x\n"
              "answers: the archive cut.xum, entry 1, 5 bytes from 159 on (only 1 are there; the others read as 0)\n",
              "nosuch.xum: cannot be opened: No such file or directory (the engine takes it for an empty archive)\n"
              "bad.xum: is no archive: it does not begin with \"!XumRes\" (the engine ends: \"Invalid header for "
              "resource file!\")\n");
}

// ---- usage --------------------------------------------------------------------------------------------------------

TEST_F(PackCommand, withoutASubcommandTheHelpIsShown)
{
    const ProgramRun run = runXum("pack");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors.find("Usage: xum pack [OPTIONS] [SUBCOMMAND]"), std::string::npos) << run.errors;
}

TEST_F(PackCommand, wrongUsageIsTold)
{
    for (const char* arguments : {"nonsense", "list", "list a b", "check", "extract", "explain", "explain a b"})
        EXPECT_EQ(runXum(std::string("pack ") + arguments).status, 2) << arguments;
}

TEST_F(PackCommand, helpNamesTheExitStatuses)
{
    for (const char* command : {"", "create", "list", "extract", "check", "explain"}) {
        const ProgramRun run = runXum("pack " + std::string(command) + " --help");
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.output.find("Exit status: 0 "), std::string::npos) << run.output;
        EXPECT_NE(run.output.find("Usage: xum pack " + std::string(command)), std::string::npos) << run.output;
    }
}
