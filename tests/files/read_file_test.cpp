#include <xum/files/read_file.h>

#include <xum/files/file.h>

#include "allocation_counter.h"
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

TEST(ReadBytes, readsTheNextBytes)
{
    writeFileContents("letters", "abcdef");
    InputFile file("letters");
    char bytes[] = "------";
    EXPECT_TRUE(readBytes(file, bytes, 2));
    EXPECT_STREQ(bytes, "ab----");
    EXPECT_TRUE(readBytes(file, bytes, 0));
    EXPECT_TRUE(readBytes(file, bytes, 4));
    EXPECT_STREQ(bytes, "cdef--");
    EXPECT_TRUE(readBytes(file, nullptr, 0)) << "the end is no failure yet";
}

TEST(ReadBytes, readsWhatThereIsOfTooMany)
{
    writeFileContents("letters", "abc");
    InputFile file("letters");
    char bytes[] = "------";
    EXPECT_FALSE(readBytes(file, bytes, 5));
    EXPECT_STREQ(bytes, "abc---");
    EXPECT_FALSE(readBytes(file, bytes, 1));
    EXPECT_FALSE(readBytes(file, bytes, 0)) << "a failure lasts";
}

TEST(ResizeIfPossible, keepsTheBytesWhereThereIsNoMemory)
{
    std::vector<unsigned char> bytes = {1, 2, 3};
    {
        const FailingAllocations failing;
        EXPECT_FALSE(resizeIfPossible(bytes, 1000));
    }
    EXPECT_EQ(bytes, (std::vector<unsigned char>{1, 2, 3}));
    EXPECT_FALSE(resizeIfPossible(bytes, std::uint64_t{bytes.max_size()} + 1));
    EXPECT_FALSE(resizeIfPossible(bytes, ~std::uint64_t{0}));
    EXPECT_EQ(bytes, (std::vector<unsigned char>{1, 2, 3}));
    EXPECT_TRUE(resizeIfPossible(bytes, 5));
    EXPECT_EQ(bytes, (std::vector<unsigned char>{1, 2, 3, 0, 0}));
    EXPECT_TRUE(resizeIfPossible(bytes, 0));
    EXPECT_TRUE(bytes.empty());
}

#ifndef _WIN32

TEST(ReadBytes, readsMoreThanOneReadAsksFor)
{
    const std::size_t size = (std::size_t{1} << 30) + 5;
    writeFileContents("huge", "first");
    std::filesystem::resize_file("huge", size); // a hole: it takes no place on the disk
    {
        std::fstream stream("huge", std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(-7, std::ios::end); // across the border of the first part
        stream << "thelast";
    }
    const auto bytes = std::make_unique<char[]>(size);
    InputFile file("huge");
    EXPECT_TRUE(readBytes(file, bytes.get(), size));
    EXPECT_EQ(std::string(bytes.get(), 6), std::string("first\0", 6));
    EXPECT_EQ(std::string(bytes.get() + size - 8, 8), std::string("\0thelast", 8));
    std::filesystem::remove("huge");
}

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
