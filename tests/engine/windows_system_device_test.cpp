#include "listed_files.h"

#include <xum/files/file.h>

#ifndef NOMINMAX // GCC's library defines it
#    define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// Narrow names are in the code page of the process. These tests take letters of Western Europe's.
class WindowsSystemDevice : public SystemDeviceFixture {
protected:
    void SetUp() override
    {
        SystemDeviceFixture::SetUp();
        if (GetACP() != 1252) GTEST_SKIP() << "the code page is " << GetACP();
    }
};

const std::string narrowName = "gr\xF6\xDF"
                               "e";
const std::wstring wideName = L"gr\u00F6\u00DFe";

void makeFile(const fs::path& path, const std::string& text)
{
    OutputFile file(path.wstring());
    file.write(text.data(), static_cast<unsigned>(text.size()));
}

std::string contentsOf(const std::string& name)
{
    InputFile file(name);
    std::string text(100, ' ');
    file.read(text.data(), static_cast<unsigned>(text.size()));
    return text.substr(0, text.find(' '));
}

} // namespace

TEST_F(WindowsSystemDevice, directoryGetsTheNameThatTheCodePageSays)
{
    EXPECT_TRUE(device->createDirectory(narrowName));
    EXPECT_TRUE(fs::is_directory(fs::path(wideName)));
    EXPECT_FALSE(device->createDirectory(narrowName)) << "it exists";
    EXPECT_TRUE(device->createDirectory(narrowName + "/" + narrowName));
    EXPECT_TRUE(fs::is_directory(fs::path(wideName) / wideName));
}

TEST_F(WindowsSystemDevice, listedNamesCanBeHandedBack)
{
    fs::create_directory(fs::path(wideName));
    makeFile(fs::path(wideName) / L"\u00E4\u20AC.txt", "contents");
    std::vector<std::string> found;
    device->listFiles("", "", true, [&](const std::string& directory, const std::string& name) {
        found.push_back(directory + name);
    });
    ASSERT_EQ(found, std::vector<std::string>{narrowName + "/\xE4\x80.txt"});
    EXPECT_EQ(contentsOf(found[0]), "contents");
}

TEST_F(WindowsSystemDevice, filterIsComparedInTheCodePage)
{
    makeFile(L"\u00E4.txt", "");
    makeFile(L"\u00C4.txt", "");
    makeFile(L"a.txt", "");
    EXPECT_EQ(listed("", "\xE4"), "|\xE4.txt") << "letter case counts in the filter, though not on the disk";
}

TEST_F(WindowsSystemDevice, namesOutsideTheCodePageAreListedAllTheSame)
{
    makeFile(L"\u65E5\u672C.txt", "");
    makeFile(L"z.txt", "");
    const std::string files = listed("");
    EXPECT_NE(files.find("|z.txt"), std::string::npos) << files;
    EXPECT_NE(files.find(".txt |z.txt"), std::string::npos) << files << ": under some name";
}

TEST_F(WindowsSystemDevice, backslashesSeparateToo)
{
    makeFiles({"data/maps/a.txt"});
    EXPECT_TRUE(device->createDirectory("data\\made"));
    EXPECT_TRUE(fs::is_directory("data/made"));
    EXPECT_EQ(listed("data\\maps/"), "data\\maps/|a.txt");
}

TEST_F(WindowsSystemDevice, forbiddenNamesAreNoDirectories)
{
    EXPECT_FALSE(device->createDirectory("what?"));
    EXPECT_FALSE(device->createDirectory("a*"));
}

TEST_F(WindowsSystemDevice, hiddenFilesAreListed)
{
    makeFiles({"data/hidden.txt"});
    ASSERT_TRUE(SetFileAttributesW(L"data/hidden.txt", FILE_ATTRIBUTE_HIDDEN));
    EXPECT_EQ(listed("data/"), "data/|hidden.txt");
}

TEST_F(WindowsSystemDevice, pathsLongerThanTheSystemSearchesReportNothing)
{
    EXPECT_EQ(listed(std::string(40000, 'x') + "/"), "");
    EXPECT_FALSE(device->createDirectory(std::string(40000, 'x')));
}

TEST_F(WindowsSystemDevice, wildcardsInADirectoryNameFindNothing)
{
    makeFiles({"data/maps/a.txt"});
    EXPECT_EQ(listed("dat?/"), "");
    EXPECT_EQ(listed("da*/maps/"), "");
}

TEST_F(WindowsSystemDevice, clipboardTextIsUtf8)
{
    const std::string text = "gr\xC3\xB6\xC3\x9F"
                             "e \xE6\x97\xA5";
    device->setClipboardText(text);
    ASSERT_TRUE(device->hasClipboardText());
    EXPECT_EQ(device->getClipboardText(), text);
}
