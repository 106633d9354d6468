#include <xum/files/file_serializer.h>

#include "file_contents.h"
#include "slots.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <type_traits>

namespace {

// Objects are made and deleted by those who know their class: the two operations are the whole table.
static_assert(!std::has_virtual_destructor_v<Serializer> && !std::has_virtual_destructor_v<Deserializer>);
static_assert(sizeof(Serializer) == sizeof(void*) && sizeof(Deserializer) == sizeof(void*));

void writeText(Serializer& serializer, const std::string& text)
{
    serializer.write(text.data(), static_cast<int>(text.size()));
}

template <class Name>
void expectOnlyAWriteToFail(const Name& name)
{
    FileSerializer serializer(name);
    EXPECT_FALSE(serializer.failed()) << "nothing was lost yet";
    writeText(serializer, "x");
    EXPECT_TRUE(serializer.failed());
    writeText(serializer, "x");
    EXPECT_TRUE(serializer.failed());
}

template <class Name>
void expectNothingToRead(const Name& name)
{
    FileDeserializer deserializer(name);
    EXPECT_FALSE(deserializer.failed());
    char bytes[] = "----";
    deserializer.read(bytes, 4);
    EXPECT_STREQ(bytes, "----");
    EXPECT_FALSE(deserializer.failed()) << "not in the narrow sense";
}

} // namespace

TEST(SerializerSlots, areInTheirOrder)
{
    EXPECT_EQ(slotOf(&Serializer::failed), 0);
    EXPECT_EQ(slotOf(&Serializer::write), 1);
    EXPECT_EQ(slotOf(&Deserializer::failed), 0);
    EXPECT_EQ(slotOf(&Deserializer::read), 1);
}

TEST(FileSerializer, writesEveryByteAsItIs)
{
    const std::string bytes("\0\r\n\n\x1a\xFF", 6);
    {
        FileSerializer serializer(std::string("bytes"));
        writeText(serializer, bytes);
        writeText(serializer, bytes);
        EXPECT_FALSE(serializer.failed());
    }
    EXPECT_EQ(fileContents("bytes"), bytes + bytes);
}

TEST(FileSerializer, emptiesAnExistingFile)
{
    writeFileContents("old", "something");
    FileSerializer(std::string("old")).write("new", 3);
    EXPECT_EQ(fileContents("old"), "new");
    FileSerializer(std::wstring(L"old")).write("n", 1);
    EXPECT_EQ(fileContents("old"), "n");
}

TEST(FileSerializer, ignoresSizesBelow1)
{
    {
        FileSerializer serializer(std::string("letters"));
        serializer.write("abc", 0);
        serializer.write("abc", -1);
        serializer.write(nullptr, 0);
        serializer.write("abc", 2);
        EXPECT_FALSE(serializer.failed());
    }
    EXPECT_EQ(fileContents("letters"), "ab");
}

TEST(FileSerializer, failedOpenIsReportedOnceSomethingWasWritten)
{
    std::filesystem::create_directory("directory");
    expectOnlyAWriteToFail(std::string("missing-directory/file"));
    expectOnlyAWriteToFail(std::wstring(L"missing-directory/file"));
    expectOnlyAWriteToFail(std::string("directory"));
    expectOnlyAWriteToFail(std::string());
    expectOnlyAWriteToFail(std::string("cut-name\0tail", 13));
    expectOnlyAWriteToFail(std::wstring(L"cut-name\0tail", 13));
    EXPECT_FALSE(std::filesystem::exists("cut-name"));
}

TEST(FileSerializer, failedOpenIsReportedAlsoAfterAWriteOfNothing)
{
    FileSerializer serializer(std::string("missing-directory/file"));
    serializer.write("", 0);
    EXPECT_TRUE(serializer.failed());
}

TEST(FileSerializer, mayHaveAWideName)
{
    FileSerializer(std::wstring(L"m\u00E4sh-\u4F60")).write("abc", 3);
    EXPECT_EQ(std::filesystem::file_size(std::filesystem::path(u8"m\u00E4sh-\u4F60")), 3u);

    FileDeserializer deserializer(std::wstring(L"m\u00E4sh-\u4F60"));
    char bytes[] = "----";
    deserializer.read(bytes, 3);
    EXPECT_STREQ(bytes, "abc-");
}

TEST(FileDeserializer, readsEveryByteAsItIs)
{
    const std::string bytes("\0\r\n\n\x1a\xFF", 6);
    writeFileContents("bytes", bytes);
    FileDeserializer deserializer(std::string("bytes"));
    std::string read(6, '-');
    deserializer.read(read.data(), 2);
    deserializer.read(read.data() + 2, 4);
    EXPECT_EQ(read, bytes);
    EXPECT_FALSE(deserializer.failed());
}

TEST(FileDeserializer, leavesWhatTheFileHasNotAndDoesNotCallItAFailure)
{
    writeFileContents("letters", "abc");
    FileDeserializer deserializer(std::string("letters"));
    char bytes[] = "-----";
    deserializer.read(bytes, 5);
    EXPECT_STREQ(bytes, "abc--");
    EXPECT_FALSE(deserializer.failed());
    deserializer.read(bytes, 5);
    EXPECT_STREQ(bytes, "abc--") << "every later read does nothing";
    EXPECT_FALSE(deserializer.failed());
}

TEST(FileDeserializer, ignoresSizesBelow1)
{
    writeFileContents("letters", "abc");
    FileDeserializer deserializer(std::string("letters"));
    char bytes[] = "-----";
    deserializer.read(bytes, 0);
    deserializer.read(bytes, -1);
    deserializer.read(nullptr, 0);
    EXPECT_STREQ(bytes, "-----");
    deserializer.read(bytes, 2);
    EXPECT_STREQ(bytes, "ab---");
}

TEST(FileDeserializer, readsNothingOfWhatCannotBeOpened)
{
    std::filesystem::create_directory("directory");
    writeFileContents("name", "contents");
    expectNothingToRead(std::string("missing"));
    expectNothingToRead(std::wstring(L"missing"));
    expectNothingToRead(std::string("directory"));
    expectNothingToRead(std::string());
    expectNothingToRead(std::string("name\0tail", 9));
    expectNothingToRead(std::wstring(L"name\0tail", 9));
}

#ifndef _WIN32

TEST(FileSerializer, reportsADiskThatIsFull)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    FileSerializer serializer(std::string("/dev/full"));
    writeText(serializer, std::string(1 << 20, 'x'));
    EXPECT_TRUE(serializer.failed());
    serializer.write("x", 1);
    EXPECT_TRUE(serializer.failed());
}

TEST(FileDeserializer, reportsAFileThatCannotBeRead)
{
    if (!std::filesystem::exists("/proc/self/mem")) GTEST_SKIP() << "no such file here";
    FileDeserializer deserializer(std::string("/proc/self/mem")); // its first byte is no memory of this process
    EXPECT_FALSE(deserializer.failed());
    char bytes[] = "----";
    deserializer.read(bytes, 4);
    EXPECT_STREQ(bytes, "----");
    EXPECT_TRUE(deserializer.failed());
}

#endif
