#include <xum/files/file_opening.h>

#include "file_contents.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#ifndef _WIN32
#    include <sys/stat.h>
#endif

namespace {

/// A text of one wide character, or of the two that stand for it where they have 16 bits.
std::wstring wide(std::uint32_t code)
{
    if (sizeof(wchar_t) > 2 || code < 0x10000) return {static_cast<wchar_t>(code)};
    code -= 0x10000;
    return {static_cast<wchar_t>(0xD800 + (code >> 10)), static_cast<wchar_t>(0xDC00 + (code & 0x3FF))};
}

void expectUtf8(const std::wstring& name, const std::string& bytes)
{
    std::string out = "left over";
    EXPECT_TRUE(wideToUtf8(name, out));
    EXPECT_EQ(out, bytes);
}

void expectNoText(const std::wstring& odd)
{
    std::string out = "left over";
    EXPECT_FALSE(wideToUtf8(L"\u00E4b" + odd + L"c", out));
    EXPECT_EQ(out, "\xC3\xA4"
                   "b")
        << "as far as it goes";
}

} // namespace

TEST(WideToUtf8, takesOneToFourBytesForACharacter)
{
    expectUtf8(L"", "");
    expectUtf8(wide(0x01), "\x01");
    expectUtf8(wide(0x7F), "\x7F");
    expectUtf8(wide(0x80), "\xC2\x80");
    expectUtf8(wide(0x7FF), "\xDF\xBF");
    expectUtf8(wide(0x800), "\xE0\xA0\x80");
    expectUtf8(wide(0xD7FF), "\xED\x9F\xBF");
    expectUtf8(wide(0xE000), "\xEE\x80\x80");
    expectUtf8(wide(0xFFFF), "\xEF\xBF\xBF");
    expectUtf8(wide(0x10000), "\xF0\x90\x80\x80");
    expectUtf8(wide(0x10FFFF), "\xF4\x8F\xBF\xBF");
    expectUtf8(L"a" + wide(0xE4) + L"/" + wide(0x20AC) + wide(0x1F600) + L"z",
               "a\xC3\xA4/\xE2\x82\xAC\xF0\x9F\x98\x80z");
}

TEST(WideToUtf8, refusesWhatIsNoCharacter)
{
    expectNoText(std::wstring(1, L'\0'));
    for (const std::uint32_t half : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu}) expectNoText(wide(half));
    if (sizeof(wchar_t) == 2) return;
    expectNoText(wide(0xD83D) + wide(0xDE00)); // halves of a pair mean nothing where there are no pairs
    for (const std::uint32_t code : {0x110000u, 0x7FFFFFFFu, 0x80000000u, 0x80000041u, 0xFFFFFFFFu})
        expectNoText(std::wstring(1, static_cast<wchar_t>(code)));
}

TEST(OpenFile, leavesAStreamFailedForWhatCannotBeOpened)
{
    std::filesystem::create_directory("directory");
    writeFileContents("name", "contents");
    for (const std::string& name : {std::string("directory"), std::string("missing"), std::string("name\0tail", 9)}) {
        std::ifstream input;
        openFile(input, name, std::ios::in | std::ios::binary);
        EXPECT_FALSE(input.is_open());
        EXPECT_TRUE(input.fail());
        EXPECT_FALSE(input.bad());
    }
    for (const std::string& name : {std::string("directory"), std::string("name\0tail", 9)}) {
        std::ofstream output;
        openFile(output, name, std::ios::out | std::ios::binary);
        EXPECT_FALSE(output.is_open());
        EXPECT_TRUE(output.fail());
        EXPECT_FALSE(output.bad());
    }
    EXPECT_EQ(fileContents("name"), "contents");
}

TEST(OpenFile, takesWideNamesOfEveryKind)
{
    const std::wstring name = L"n\u00E4me-" + wide(0x1F600);
    std::ofstream output;
    openFile(output, name, std::ios::out | std::ios::binary);
    ASSERT_TRUE(output.good());
    output << "a\r\n";
    output.close();
    std::ifstream input;
    openFile(input, name, std::ios::in | std::ios::binary);
    ASSERT_TRUE(input.good());
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(input), {}), "a\r\n");
}

TEST(MayBeReadable, isFalseOnlyWhereThereIsCertainlyNoFile)
{
    std::filesystem::create_directory("directory");
    writeFileContents("name", "contents");
    writeFileContents("empty", "");
    EXPECT_TRUE(mayBeReadable("name"));
    EXPECT_TRUE(mayBeReadable("empty"));
#ifndef _WIN32 // where nobody asks
    EXPECT_FALSE(mayBeReadable("missing"));
    EXPECT_FALSE(mayBeReadable("missing-directory/name"));
    EXPECT_FALSE(mayBeReadable("name/name"));
    EXPECT_FALSE(mayBeReadable("directory"));
    EXPECT_FALSE(mayBeReadable("."));
    EXPECT_FALSE(mayBeReadable(""));
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_FALSE(mayBeReadable("pipe")) << "to open it would wait for a writer";
#endif
}
