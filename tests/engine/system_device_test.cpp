#include "listed_files.h"

#include "file_contents.h"

#include <filesystem>
#include <stdexcept>
#include <string>

// What holds on every platform; posix_system_device_test.cpp has the rest.

namespace {

namespace fs = std::filesystem;

class SystemDeviceTest : public SystemDeviceFixture {};

} // namespace

TEST_F(SystemDeviceTest, createDirectoryMakesOneLevel)
{
    EXPECT_TRUE(device->createDirectory("made"));
    EXPECT_TRUE(fs::is_directory("made"));
    EXPECT_TRUE(device->createDirectory("made/inner"));
    EXPECT_TRUE(fs::is_directory("made/inner"));
}

TEST_F(SystemDeviceTest, createDirectoryFailsForWhatExists)
{
    EXPECT_TRUE(device->createDirectory("made"));
    EXPECT_FALSE(device->createDirectory("made"));
    writeFileContents("file", "");
    EXPECT_FALSE(device->createDirectory("file"));
    EXPECT_FALSE(device->createDirectory("."));
}

TEST_F(SystemDeviceTest, createDirectoryFailsWithoutItsParent)
{
    EXPECT_FALSE(device->createDirectory("missing/inner"));
    EXPECT_FALSE(fs::exists("missing"));
    writeFileContents("file", "");
    EXPECT_FALSE(device->createDirectory("file/inner"));
}

TEST_F(SystemDeviceTest, createDirectoryFailsForTheEmptyName)
{
    EXPECT_FALSE(device->createDirectory(""));
}

TEST_F(SystemDeviceTest, createDirectoryAcceptsATrailingSlash)
{
    EXPECT_TRUE(device->createDirectory("made/"));
    EXPECT_TRUE(fs::is_directory("made"));
}

TEST_F(SystemDeviceTest, createDirectoryRefusesANameWithANul)
{
    EXPECT_FALSE(device->createDirectory(std::string("ma\0de", 5)));
    EXPECT_FALSE(fs::exists("ma"));
}

TEST_F(SystemDeviceTest, listingIsOfTheDirectoryOnlyAndNeverOfDirectories)
{
    makeFiles({"data/b.txt", "data/a.txt", "data/maps/c.txt", "other.txt"});
    EXPECT_EQ(listed("data/"), "data/|a.txt data/|b.txt");
}

TEST_F(SystemDeviceTest, recursiveListingReportsEachFileWithItsDirectory)
{
    makeFiles({"data/a.txt", "data/maps/c.txt", "data/maps/deep/d.txt", "data/z.txt"});
    fs::create_directories("data/empty");
    EXPECT_EQ(listed("data/", "", true), "data/|a.txt data/maps/|c.txt data/maps/deep/|d.txt data/|z.txt");
}

TEST_F(SystemDeviceTest, filterIsFoundAnywhereInTheFileName)
{
    makeFiles({"data/a.png", "data/a.png.bak", "data/.png", "data/apng", "data/b.jpg"});
    EXPECT_EQ(listed("data/", ".png"), "data/|.png data/|a.png data/|a.png.bak");
    EXPECT_EQ(listed("data/", "a"), "data/|a.png data/|a.png.bak data/|apng");
    EXPECT_EQ(listed("data/", "nothing like it"), "");
    EXPECT_EQ(listed("data/", "data"), "") << "the directory is not part of the name";
}

TEST_F(SystemDeviceTest, filterMindsLetterCaseAndKnowsNoWildcards)
{
    makeFiles({"data/a.png", "data/star.p"});
    EXPECT_EQ(listed("data/", ".PNG"), "");
    EXPECT_EQ(listed("data/", "*"), "");
    EXPECT_EQ(listed("data/", "*.p"), "");
}

TEST_F(SystemDeviceTest, filterDoesNotApplyToDirectories)
{
    makeFiles({"data/maps/a.png", "data/png/b.txt", "data/png/c.png"});
    EXPECT_EQ(listed("data/", "png", true), "data/maps/|a.png data/png/|c.png");
}

TEST_F(SystemDeviceTest, missingSlashIsAdded)
{
    makeFiles({"data/a.txt", "data/maps/b.txt"});
    EXPECT_EQ(listed("data", "", true), "data/|a.txt data/maps/|b.txt");
}

TEST_F(SystemDeviceTest, emptyDirectoryNameMeansTheWorkingDirectory)
{
    makeFiles({"a.txt", "maps/b.txt"});
    EXPECT_EQ(listed("", "", false), "|a.txt");
    EXPECT_EQ(listed("", "", true), "|a.txt maps/|b.txt");
    EXPECT_EQ(listed("./", "", true), "./|a.txt ./maps/|b.txt");
}

TEST_F(SystemDeviceTest, whatCannotBeSearchedReportsNothing)
{
    makeFiles({"file"});
    fs::create_directory("empty");
    EXPECT_EQ(listed("missing/", "", true), "");
    EXPECT_EQ(listed("file/", "", true), "");
    EXPECT_EQ(listed("file", "", true), "");
    EXPECT_EQ(listed("empty/", "", true), "");
}

TEST_F(SystemDeviceTest, nameWithANulIsNoDirectory)
{
    makeFiles({"data/a.txt"});
    EXPECT_EQ(listed(std::string("data\0", 5), "", true), "");
    EXPECT_EQ(listed(std::string("data/\0/", 7), "", true), "");
    EXPECT_EQ(listed("data/", std::string("a.txt\0", 6)), "") << "no name holds such a filter";
}

TEST_F(SystemDeviceTest, callbackMayDeleteFilesAndDirectories)
{
    makeFiles({"data/a.txt", "data/b.txt", "data/c/d.txt", "data/e.txt"});
    std::string reported;
    device->listFiles("data/", "", true, [&](const std::string& directory, const std::string& name) {
        reported += directory + name + " ";
        fs::remove_all("data");
    });
    EXPECT_EQ(reported, "data/a.txt data/b.txt data/e.txt ") << "the directory was read before the first call";
    EXPECT_FALSE(fs::exists("data"));
}

TEST_F(SystemDeviceTest, callbackMayCreateFiles)
{
    makeFiles({"data/a.txt", "data/b.txt"});
    std::string reported;
    device->listFiles("data/", "", true, [&](const std::string& directory, const std::string& name) {
        reported += name + " ";
        writeFileContents(directory + "z" + name, "");
    });
    EXPECT_EQ(reported, "a.txt b.txt ");
    EXPECT_EQ(listed("data/"), "data/|a.txt data/|b.txt data/|za.txt data/|zb.txt");
}

TEST_F(SystemDeviceTest, callbackMayListAgain)
{
    makeFiles({"data/a.txt", "data/b.txt"});
    std::string inner;
    device->listFiles("data/", "", false,
                      [&](const std::string& directory, const std::string&) { inner += listed(directory) + ";"; });
    EXPECT_EQ(inner, "data/|a.txt data/|b.txt;data/|a.txt data/|b.txt;");
}

TEST_F(SystemDeviceTest, whatTheCallbackThrowsPassesThrough)
{
    makeFiles({"data/a.txt", "data/maps/b.txt"});
    const auto refuse = [](const std::string&, const std::string& name) {
        if (name == "b.txt") throw std::runtime_error("refused " + name);
    };
    try {
        device->listFiles("data/", "", true, refuse);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& refusal) {
        EXPECT_STREQ(refusal.what(), "refused b.txt");
    }
    EXPECT_EQ(listed("data/"), "data/|a.txt");
}

TEST_F(SystemDeviceTest, emptyCallbackFailsWhenItIsCalled)
{
    makeFiles({"data/a.txt"});
    device->listFiles("data/", "no such file", true, nullptr);
    EXPECT_THROW(device->listFiles("data/", "", true, nullptr), std::bad_function_call);
}
