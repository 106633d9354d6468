#include <xum/files/read_file.h>

#include "file_contents.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

const std::vector<char> before = {'o', 'l', 'd'};

void expectRefused(const std::string& fileName)
{
    std::vector<char> bytes = before;
    EXPECT_FALSE(readFile(fileName, bytes));
    EXPECT_EQ(bytes, before);
}

void expectRead(const std::string& fileName, const std::string& contents)
{
    std::vector<char> bytes = before;
    EXPECT_TRUE(readFile(fileName, bytes));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), contents);
}

} // namespace

TEST(ReadFile, yieldsEveryByteOfAFile)
{
    std::string allBytes;
    for (int i = 0; i < 256; ++i) allBytes += static_cast<char>(i);
    const std::string contents = allBytes + "\r\n\n\x1a" + allBytes; // what a text mode would change
    writeFileContents("bytes", contents);
    expectRead("bytes", contents);
}

TEST(ReadFile, yieldsNothingOfAnEmptyFile)
{
    writeFileContents("empty", "");
    expectRead("empty", "");
}

TEST(ReadFile, readsMoreThanABufferful)
{
    std::string contents;
    for (int i = 0; i < 300000; ++i) contents += static_cast<char>('a' + i % 23);
    writeFileContents("large", contents);
    expectRead("large", contents);
}

TEST(ReadFile, refusesAMissingFile)
{
    expectRefused("missing");
    expectRefused("missing-directory/file");
    expectRefused("");
}

TEST(ReadFile, refusesADirectory)
{
    std::filesystem::create_directory("directory");
    expectRefused("directory");
    expectRefused(".");
}

TEST(ReadFile, refusesANameThatHoldsANul)
{
    writeFileContents("name", "contents");
    expectRefused(std::string("name\0tail", 9));
    expectRefused(std::string("\0", 1));
}

#ifndef _WIN32

TEST(ReadFile, refusesAFileThatMayNotBeRead)
{
    writeFileContents("secret", "contents");
    std::filesystem::permissions("secret", std::filesystem::perms::none);
    if (!fileContents("secret").empty()) GTEST_SKIP() << "this user may read everything";
    expectRefused("secret");
}

TEST(ReadFile, refusesMoreBytesThanAnIntCounts)
{
    writeFileContents("huge", "");
    std::filesystem::resize_file("huge", std::uintmax_t{1} << 31); // a hole: it takes no place on the disk
    expectRefused("huge");
    std::filesystem::remove("huge");
}

TEST(ReadFile, refusesWhatFailsWhileItIsRead)
{
    if (!std::filesystem::exists("/proc/self/mem")) GTEST_SKIP() << "no such file here";
    expectRefused("/proc/self/mem"); // opens, but its first byte is no memory of this process
}

#endif
