#include "file_contents.h"
#include "own_directory.h"

#include <replaced_file.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

class ReplacedFile : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }

    /// What went wrong; empty when nothing did.
    static std::string replace(const std::string& name, const std::string& contents, bool isWhole = true)
    {
        std::string problem;
        const bool isDone = replaceFile(
            name,
            [&](const std::string& otherName) {
                writeFileContents(otherName, contents);
                return isWhole;
            },
            problem);
        EXPECT_EQ(isDone, problem.empty());
        return problem;
    }

    static std::size_t countFiles()
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator("."), fs::directory_iterator()));
    }
};

} // namespace

TEST_F(ReplacedFile, newFileIsWritten)
{
    EXPECT_EQ(replace("a.txt", "new"), "");
    EXPECT_EQ(fileContents("a.txt"), "new");
    EXPECT_EQ(countFiles(), 1u);
}

TEST_F(ReplacedFile, oldFileStaysUntilTheNewOneIsWhole)
{
    writeFileContents("a.txt", "old");
    std::string problem;
    std::string seen;
    EXPECT_TRUE(replaceFile(
        "a.txt",
        [&](const std::string& otherName) {
            writeFileContents(otherName, "new");
            seen = otherName + ": " + fileContents("a.txt");
            return true;
        },
        problem));
    EXPECT_EQ(seen, "a.txt.new: old");
    EXPECT_EQ(fileContents("a.txt"), "new");
    EXPECT_EQ(countFiles(), 1u);
}

TEST_F(ReplacedFile, oldFileStaysWhenTheNewOneIsNotWhole)
{
    writeFileContents("a.txt", "old");
    EXPECT_EQ(replace("a.txt", "ne", false), "cannot write a.txt: the disk may be full");
    EXPECT_EQ(fileContents("a.txt"), "old");
    EXPECT_EQ(countFiles(), 1u) << "nothing is left behind";
}

TEST_F(ReplacedFile, placesThatNoFileCanBeInAreTold)
{
    fs::create_directory("a");
    writeFileContents("b", "");
    EXPECT_EQ(replace("a", "x"), "cannot write a: it is a directory");
    EXPECT_EQ(replace("c/x.txt", "x"), "cannot write c/x.txt: there is no directory c");
    EXPECT_EQ(replace("b/x.txt", "x"), "cannot write b/x.txt: there is no directory b");
    EXPECT_TRUE(fs::is_directory("a"));
}

TEST_F(ReplacedFile, otherNameInUseIsToldAndStays)
{
    writeFileContents("a.txt", "old");
    fs::create_directory("a.txt.new");
    EXPECT_EQ(replace("a.txt", "new"), "cannot write a.txt: cannot make a.txt.new beside it");
    EXPECT_EQ(fileContents("a.txt"), "old");
    EXPECT_TRUE(fs::is_directory("a.txt.new"));
}

#ifndef _WIN32
TEST_F(ReplacedFile, devicesAreNotReplaced)
{
    EXPECT_EQ(replace("/dev/null", "x"), "cannot write /dev/null: it is no plain file");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(ReplacedFile, linkStaysAndItsTargetIsReplaced)
{
    fs::create_directory("there");
    writeFileContents("there/a.txt", "old");
    fs::create_symlink("there/a.txt", "link.txt");
    EXPECT_EQ(replace("link.txt", "new"), "");
    EXPECT_TRUE(fs::is_symlink("link.txt"));
    EXPECT_EQ(fileContents("there/a.txt"), "new");
}

TEST_F(ReplacedFile, permissionsStay)
{
    writeFileContents("a.txt", "old");
    fs::permissions("a.txt", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(replace("a.txt", "new"), "");
    EXPECT_EQ(fs::status("a.txt").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(ReplacedFile, fullDiskIsToldAndTheOldFileStays)
{
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full here";
    writeFileContents("a.txt", "old");
    fs::create_symlink("/dev/full", "a.txt.new");
    std::string problem;
    EXPECT_FALSE(replaceFile(
        "a.txt",
        [](const std::string& otherName) {
            std::ofstream file(otherName);
            file << "new" << std::flush;
            return file.good();
        },
        problem));
    EXPECT_EQ(problem, "cannot write a.txt: the disk may be full");
    EXPECT_EQ(fileContents("a.txt"), "old");
}
#endif
