#include "listed_files.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;

class PosixSystemDevice : public SystemDeviceFixture {};

std::ptrdiff_t openFileCount()
{
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

} // namespace

TEST_F(PosixSystemDevice, namesOfDirectoriesAreBytes)
{
    EXPECT_TRUE(device->createDirectory("gr\xC3\xB6\xC3\x9F"
                                        "e"));
    EXPECT_TRUE(fs::is_directory("gr\xC3\xB6\xC3\x9F"
                                 "e"));
    EXPECT_TRUE(device->createDirectory("not UTF-8 \xFF"));
    EXPECT_TRUE(fs::is_directory("not UTF-8 \xFF"));
}

TEST_F(PosixSystemDevice, directoryIsMadeWithAllRightsThatTheMaskLeaves)
{
    const mode_t mask = umask(027);
    EXPECT_TRUE(device->createDirectory("made"));
    umask(mask);
    struct stat status = {};
    ASSERT_EQ(stat("made", &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0750u);
}

TEST_F(PosixSystemDevice, danglingLinkIsInTheWayOfADirectory)
{
    fs::create_symlink("missing", "link");
    EXPECT_FALSE(device->createDirectory("link"));
}

TEST_F(PosixSystemDevice, filesComeInTheByteOrderOfTheirNames)
{
    makeFiles({"data/b", "data/a", "data/B", "data/a.b", "data/a-b", "data/_", "data/10", "data/9", "data/\xC3\xA4",
               "data/\xFF", "data/~"});
    EXPECT_EQ(listed("data/"), "data/|10 data/|9 data/|B data/|_ data/|a data/|a-b data/|a.b data/|b data/|~ "
                               "data/|\xC3\xA4 data/|\xFF");
}

TEST_F(PosixSystemDevice, directoryIsWalkedWhereItsNameFallsInTheOrder)
{
    makeFiles({"data/a", "data/m/1", "data/m/2", "data/m.txt", "data/l", "data/z"});
    EXPECT_EQ(listed("data/", "", true), "data/|a data/|l data/m/|1 data/m/|2 data/|m.txt data/|z");
}

TEST_F(PosixSystemDevice, namesThatStartWithADotAreOrdinary)
{
    makeFiles({"data/.hidden", "data/..twice", "data/...", "data/.directory/inner"});
    EXPECT_EQ(listed("data/", "", true), "data/|... data/|..twice data/.directory/|inner data/|.hidden");
}

TEST_F(PosixSystemDevice, linkToAFileIsAFile)
{
    makeFiles({"target"});
    fs::create_directory("data");
    fs::create_symlink("../target", "data/link");
    EXPECT_EQ(listed("data/"), "data/|link");
}

TEST_F(PosixSystemDevice, danglingLinkIsSkipped)
{
    makeFiles({"data/a"});
    fs::create_symlink("missing", "data/dangling");
    fs::create_symlink("circle", "data/circle");
    EXPECT_EQ(listed("data/", "", true), "data/|a");
}

TEST_F(PosixSystemDevice, linkToADirectoryIsWalked)
{
    makeFiles({"data/a", "other/b", "data/sub/c"});
    fs::create_symlink("../other", "data/link");
    fs::create_symlink("sub", "data/twice"); // beside, not above: not a circle
    EXPECT_EQ(listed("data/"), "data/|a");
    EXPECT_EQ(listed("data/", "", true), "data/|a data/link/|b data/sub/|c data/twice/|c");
}

TEST_F(PosixSystemDevice, linkToADirectoryAboveItselfIsNotEntered)
{
    makeFiles({"data/a", "data/sub/b"});
    fs::create_symlink(".", "data/here");
    fs::create_symlink("..", "data/sub/parent");
    fs::create_directory_symlink(fs::absolute("data"), "data/sub/absolute");
    EXPECT_EQ(listed("data/", "", true), "data/|a data/sub/|b");
}

TEST_F(PosixSystemDevice, linkAboveTheFirstDirectoryLeadsBackOnlyOnce)
{
    makeFiles({"data/a"});
    fs::create_symlink("..", "data/parent");
    EXPECT_EQ(listed("data/", "", true), "data/|a"); // the parent holds nothing but data, which is on the way
    makeFiles({"b"});
    EXPECT_EQ(listed("data/", "", true), "data/|a data/parent/|b");
}

TEST_F(PosixSystemDevice, firstDirectoryMayBeReachedThroughALink)
{
    makeFiles({"data/a", "data/sub/b"});
    fs::create_symlink("data", "link");
    fs::create_symlink("../../link", "data/sub/circle");
    EXPECT_EQ(listed("link/", "", true), "link/|a link/sub/|b");
}

TEST_F(PosixSystemDevice, pipesSocketsAndDevicesAreNotReported)
{
    makeFiles({"data/a"});
    ASSERT_EQ(mkfifo("data/pipe", 0600), 0);
    fs::create_symlink("/dev/null", "data/device");
    const int socketHandle = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(socketHandle, 0);
    sockaddr_un address = {AF_UNIX, "data/socket"};
    EXPECT_EQ(bind(socketHandle, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(socketHandle);
    EXPECT_TRUE(fs::exists("data/socket"));
    EXPECT_EQ(listed("data/", "", true), "data/|a");
}

TEST_F(PosixSystemDevice, filterIsComparedByteByByte)
{
    makeFiles({"data/gr\xC3\xB6\xC3\x9F"
               "e.txt",
               "data/gross.txt",
               "data/\xFF"
               "bad"});
    EXPECT_EQ(listed("data/", "\xC3\xB6"), "data/|gr\xC3\xB6\xC3\x9F"
                                           "e.txt");
    EXPECT_EQ(listed("data/", "\x9F"), "data/|gr\xC3\xB6\xC3\x9F"
                                       "e.txt");
    EXPECT_EQ(listed("data/", "\xFF"), "data/|\xFF"
                                       "bad");
}

TEST_F(PosixSystemDevice, doubledSlashStaysAsItIs)
{
    makeFiles({"data/a", "data/sub/b"});
    EXPECT_EQ(listed("data//", "", true), "data//|a data//sub/|b");
}

TEST_F(PosixSystemDevice, absoluteDirectoriesAreReportedAsGiven)
{
    makeFiles({"data/a"});
    const std::string directory = fs::absolute("data").string();
    EXPECT_EQ(listed(directory), directory + "/|a");
}

TEST_F(PosixSystemDevice, deeplyNestedDirectoriesAreWalked)
{
    std::string directory = "data/";
    for (int i = 0; i < 500; ++i) directory += "d/";
    fs::create_directories(directory);
    writeFileContents(directory + "a", "");
    EXPECT_EQ(listed("data/", "", true), directory + "|a");
}

TEST_F(PosixSystemDevice, noDirectoryIsOpenWhileTheCallbackRuns)
{
    makeFiles({"data/a", "data/sub/b"});
    const std::ptrdiff_t before = openFileCount();
    device->listFiles("data/", "", true,
                      [&](const std::string&, const std::string&) { EXPECT_EQ(openFileCount(), before); });
    EXPECT_THROW(device->listFiles("data/", "", true,
                                   [](const std::string&, const std::string&) { throw std::runtime_error("no"); }),
                 std::runtime_error);
    EXPECT_EQ(openFileCount(), before);
}
