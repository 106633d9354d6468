#include "own_directory.h"
#include "pack_bytes.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <vector>

#ifndef _WIN32
#    include <sys/stat.h>
#endif

namespace fs = std::filesystem;

namespace {

class PackCreate : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

void writeFile(const fs::path& path, const std::string& contents)
{
    fs::create_directories(path.parent_path());
    writeFileContents(path.string(), contents);
}

void expectCreation(const std::string& arguments, int status, const std::string& errors)
{
    const ProgramRun run = runXum("pack create " + arguments);
    EXPECT_EQ(run.status, status) << arguments;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, errors) << arguments;
}

/// The names in a directory, sorted; hidden ones, too.
std::vector<std::string> namesIn(const fs::path& directory)
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// Size, name and contents of everything below a directory, in one text.
std::string treeOf(const fs::path& directory)
{
    std::vector<std::string> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory))
        if (entry.is_regular_file())
            files.push_back(entry.path().lexically_relative(directory).generic_string() + "\n" +
                            fileContents(entry.path().string()) + "\n");
    std::sort(files.begin(), files.end());
    std::string all;
    for (const std::string& file : files) all += file;
    return all;
}

} // namespace

// ---- the archive --------------------------------------------------------------------------------------------------

TEST_F(PackCreate, archiveIsHeaderDirectoryAndData)
{
    writeFile("d/b/two.txt", "22");
    writeFile("d/a.txt", "one\n");
    writeFile("d/c", "");
    expectCreation("a.xum d", 0, "");
    EXPECT_EQ(fileContents("a.xum"), packHeader(3) + packEntry("a.txt", 448, 4) + packEntry("b/two.txt", 452, 2) +
                                         packEntry("c", 454, 0) + "one\n22");
}

TEST_F(PackCreate, namesAreSortedBytewise)
{
    // Directory by directory "a" would come before "a-" and "a.b", and "c" before "B".
    for (const char* name : {"d/a/x", "d/a-", "d/a.b", "d/B", "d/c"}) writeFile(name, "");
    std::ofstream(fs::path(u8"d/\u00E4"));
    expectCreation("a.xum d", 0, "");
    EXPECT_EQ(runXum("pack list a.xum").output, "0\t880\tB\n0\t880\ta-\n0\t880\ta.b\n0\t880\ta/x\n0\t880\tc\n"
                                                "0\t880\t\xC3\xA4\n");
}

TEST_F(PackCreate, sameFilesMakeTheSameArchive)
{
    writeFile("d/a", "1");
    writeFile("d/b/c", "2");
    writeFile("e/b/c", "2");
    writeFile("e/a", "1");
    fs::last_write_time("e/a", fs::file_time_type::clock::now() - std::chrono::hours(1000));
    expectCreation("a.xum d", 0, "");
    expectCreation("b.xum e/../e/", 0, "");
    expectCreation("c.xum d", 0, "");
    EXPECT_EQ(fileContents("a.xum"), fileContents("b.xum"));
    EXPECT_EQ(fileContents("a.xum"), fileContents("c.xum"));
}

TEST_F(PackCreate, emptyDirectoryMakesAnArchiveWithoutEntries)
{
    fs::create_directories("d/empty/emptier");
    expectCreation("a.xum d", 0, "");
    EXPECT_EQ(fileContents("a.xum"), packHeader(0));
}

TEST_F(PackCreate, workingDirectoryCanBePacked)
{
    writeFile("d/a", "1");
    fs::current_path("d");
    EXPECT_EQ(std::system("\"" XUM_PROGRAM "\" pack create ../a.xum ."), 0);
    EXPECT_EQ(fileContents("../a.xum"), packOf("a", "1"));
}

TEST_F(PackCreate, packedFilesAreExtractedAsTheyWere)
{
    std::string large;
    for (unsigned i = 0; i < 3000001; ++i) large += static_cast<char>(i * 2654435761u >> 24);
    writeFile("d/large", large);
    writeFile("d/some/where/deep/down.txt", std::string("\0\r\n\xFF", 4));
    writeFile("d/some/empty", "");
    writeFile("d/a name with blanks", "b");
    writeFile("d/...", "c");
    writeFile("d/" + std::string(127, 'n'), "d");
    expectCreation("a.xum d", 0, "");
    const ProgramRun check = runXum("pack check a.xum");
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.errors, "");
    EXPECT_EQ(runXum("pack extract a.xum -o e").status, 0);
    EXPECT_EQ(treeOf("e"), treeOf("d"));
    EXPECT_NE(treeOf("e").find(large), std::string::npos);
    EXPECT_EQ(namesIn("e"), namesIn("d"));
}

// ---- what cannot be packed ----------------------------------------------------------------------------------------

TEST_F(PackCreate, nameThatIsTooLongIsNamedBeforeAnythingIsWritten)
{
    const std::string name = "long/" + std::string(123, 'n');
    writeFile("d/" + name, "");
    writeFile("d/a", "");
    writeFileContents("a.xum", "old");
    expectCreation("a.xum d", 1, "d/" + name + ": the name \"" + name + "\" has more than 127 bytes\n");
    EXPECT_EQ(fileContents("a.xum"), "old");
    expectCreation("b.xum d", 1, "d/" + name + ": the name \"" + name + "\" has more than 127 bytes\n");
    EXPECT_FALSE(fs::exists("b.xum"));
}

TEST_F(PackCreate, fileOf4GiBIsTooLargeAndOneByteLessIsNot)
{
    writeFile("d/large", "");
    fs::resize_file("d/large", 4294967296);
    expectCreation("a.xum d", 1, "d/large: is too large for an archive (4 GiB or more)\n");
    EXPECT_EQ(namesIn("."), (std::vector<std::string>{"d", "run-errors.txt", "run-output.txt"}));
}

TEST_F(PackCreate, archiveAmongItsOwnFilesIsRefused)
{
    writeFile("d/e/a", "");
    expectCreation("d/a.xum d", 1, "d/a.xum: lies among the files to pack\n");
    expectCreation("d/e/a.xum d", 1, "d/e/a.xum: lies among the files to pack\n");
    EXPECT_EQ(namesIn("d/e"), std::vector<std::string>{"a"});
    expectCreation("a.xum d/e", 0, "");
    expectCreation("d/a.xum d/e", 0, "");
    fs::remove("d/a.xum");
    expectCreation("a.xum nosuch", 1, "nosuch: cannot be read: No such file or directory\n");
    expectCreation("b.xum d/e/a", 1, "d/e/a: is no directory\n");
    expectCreation("nosuch/b.xum d", 1, "nosuch/b.xum: cannot be written: No such file or directory\n");
    expectCreation("d/e d/e/../..", 1, "d/e: lies among the files to pack\n");
}

#ifndef _WIN32
TEST_F(PackCreate, namesThatNoLoadAsksForAreRefused)
{
    // "x../y" is asked for as "y".
    writeFile("d/x../y", "");
    writeFile("d/a\\b", "");
    writeFile("d/c:d", "");
    writeFile("d/line\nfeed", "");
    expectCreation("a.xum d", 1,
                   "d/a\\b: the name \"a\\b\" holds a backslash\n"
                   "d/c:d: the name \"c:d\" begins with a drive letter\n"
                   "d/x../y: the name \"x../y\" holds \"../\", which is taken out of every name that is asked for\n");
    EXPECT_FALSE(fs::exists("a.xum"));
}

TEST_F(PackCreate, linksAreFollowed)
{
    writeFile("other/file", "1");
    fs::create_directory("d");
    fs::create_symlink("../other/file", "d/a");
    fs::create_symlink("../other", "d/b");
    fs::create_symlink("d", "e");
    expectCreation("a.xum e", 0, "");
    EXPECT_EQ(fileContents("a.xum"), packHeader(2) + packEntry("a", 304, 1) + packEntry("b/file", 305, 1) + "11");
}

TEST_F(PackCreate, linksInACircleAreLeftOut)
{
    writeFile("d/e/f/file", "1");
    fs::create_symlink("..", "d/e/up");
    fs::create_symlink(".", "d/e/here");
    fs::create_symlink("../../e/f", "d/e/f/again");
    expectCreation("a.xum d", 0,
                   "d/e/f/again: left out: a link to a directory around it\n"
                   "d/e/here: left out: a link to a directory around it\n"
                   "d/e/up: left out: a link to a directory around it\n");
    EXPECT_EQ(fileContents("a.xum"), packOf("e/f/file", "1"));
}

TEST_F(PackCreate, linksThatLeadNowhereAreRefused)
{
    writeFile("d/a", "1");
    fs::create_symlink("nosuch", "d/b");
    fs::create_symlink("c", "d/c");
    expectCreation("a.xum d", 1,
                   "d/b: cannot be read: No such file or directory\n"
                   "d/c: cannot be read: Too many levels of symbolic links\n");
    EXPECT_FALSE(fs::exists("a.xum"));
}

TEST_F(PackCreate, archiveBehindALinkAmongTheFilesIsRefused)
{
    writeFile("d/a", "1");
    writeFileContents("a.xum", "old");
    fs::create_symlink("../a.xum", "d/b");
    expectCreation("a.xum d", 1, "d/b: is the archive itself\n");
    fs::remove("d/b");
    fs::create_hard_link("a.xum", "d/b");
    expectCreation("a.xum d", 1, "d/b: is the archive itself\n");
    fs::remove("d/b");
    fs::create_directory("d/c");
    fs::create_symlink("d/c/a.xum", "c.xum");
    writeFileContents("d/c/a.xum", "old");
    expectCreation("c.xum d", 1, fs::current_path().string() + "/d/c/a.xum: lies among the files to pack\n");
    EXPECT_EQ(fileContents("a.xum") + fileContents("c.xum"), "oldold");
}

TEST_F(PackCreate, archiveBehindALinkIsReplacedWhereItLies)
{
    writeFile("d/a", "1");
    writeFile("e/a.xum", "old");
    fs::create_symlink("e/a.xum", "a.xum");
    expectCreation("a.xum d", 0, "");
    EXPECT_TRUE(fs::is_symlink("a.xum"));
    EXPECT_EQ(fileContents("e/a.xum"), packOf("a", "1"));
}

TEST_F(PackCreate, whatIsNoFileIsNamedAndLeftOut)
{
    writeFile("d/a", "1");
    ASSERT_EQ(mkfifo("d/pipe", 0600), 0);
    expectCreation("a.xum d", 0, "d/pipe: left out: neither a file nor a directory\n");
    EXPECT_EQ(fileContents("a.xum"), packOf("a", "1"));
}

TEST_F(PackCreate, whatIsNoFileIsNotReplaced)
{
    writeFile("d/a", "1");
    fs::create_directory("e");
    expectCreation("e d", 1, "e: cannot be written: there is something else of that name\n");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    expectCreation("pipe d", 1, "pipe: cannot be written: there is something else of that name\n");
}

// ---- failed writing -----------------------------------------------------------------------------------------------

TEST_F(PackCreate, failedWriteKeepsTheOldArchiveAndLeavesNothingBehind)
{
    writeFile("d/a", std::string(100000, 'a'));
    writeFileContents("a.xum", "old");
    const ProgramRun run = runProgram("sh", "-c \"trap '' XFSZ; ulimit -f 8; '" XUM_PROGRAM "' pack create a.xum d\"");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "a.xum: cannot be written: File too large\n");
    EXPECT_EQ(fileContents("a.xum"), "old");
    EXPECT_EQ(namesIn("."), (std::vector<std::string>{"a.xum", "d", "run-errors.txt", "run-output.txt"}));
}

TEST_F(PackCreate, packingThatIsEndedKeepsTheOldArchiveAndLeavesNothingBehind)
{
    writeFile("d/a", "");
    fs::resize_file("d/a", 4294967295); // of holes: not there at all, but long to write
    writeFileContents("a.xum", "old");
    const ProgramRun run = runProgram(
        "sh", "-c \"'" XUM_PROGRAM "' pack create a.xum d & "
              "until ls -a | grep -q '^[.]xum-' || ! kill -0 \\$!; do sleep 0.01; done; kill -TERM \\$!; wait \\$!\"");
    ASSERT_EQ(run.status, 1) << run.errors;
    EXPECT_EQ(run.errors, "a.xum: cannot be written: interrupted\n");
    EXPECT_EQ(fileContents("a.xum"), "old");
    EXPECT_EQ(namesIn("."), (std::vector<std::string>{"a.xum", "d", "run-errors.txt", "run-output.txt"}));
}

TEST_F(PackCreate, permissionsOfTheOldArchiveStay)
{
    writeFile("d/a", "1");
    writeFileContents("a.xum", "old");
    fs::permissions("a.xum", fs::perms(0640));
    expectCreation("a.xum d", 0, "");
    EXPECT_EQ(fs::status("a.xum").permissions(), fs::perms(0640));
}
#endif

TEST_F(PackCreate, wrongUsageIsToldFromFailure)
{
    EXPECT_EQ(runXum("pack create").status, 2);
    EXPECT_EQ(runXum("pack create a.xum").status, 2);
    EXPECT_EQ(runXum("pack create a.xum d e").status, 2);
}
