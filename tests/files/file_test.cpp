#include <xum/files/file.h>

#include "fatal_error.h"
#include "file_contents.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

namespace {

namespace fs = std::filesystem;

static_assert(FileSeekMode::Begin == 0 && FileSeekMode::End == 1);
static_assert(std::has_virtual_destructor_v<File<std::ifstream>> && std::has_virtual_destructor_v<File<std::ofstream>>);
static_assert(!std::is_copy_constructible_v<InputFile> && !std::is_copy_assignable_v<InputFile>);
static_assert(!std::is_copy_constructible_v<OutputFile> && !std::is_copy_assignable_v<OutputFile>);

std::string everyByte()
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    return bytes + "\r\n\n\r\x1a" + bytes; // what a text mode would change
}

/// The next bytes of a file; the test fails when they are not there.
std::string next(InputFile& file, unsigned size)
{
    std::string bytes(size, '?');
    EXPECT_TRUE(file.read(bytes.data(), size));
    return bytes;
}

bool writeText(OutputFile& file, const std::string& text)
{
    return file.write(text.data(), static_cast<unsigned>(text.size()));
}

template <class Name>
void expectNoFileToRead(const Name& name)
{
    InputFile file(name);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.getSize(), 0u);
    char byte = 'x';
    EXPECT_FALSE(file.read(&byte, 1));
    EXPECT_EQ(byte, 'x');
    EXPECT_FALSE(file.read(&byte, 0));
    std::vector<unsigned char> bytes(1);
    EXPECT_FALSE(file.read(bytes, 1));
    file.setPosition(0, FileSeekMode::Begin);
    file.setPosition(0, FileSeekMode::End);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.getSize(), 0u);
}

template <class Name>
void expectNoFileToWrite(const Name& name)
{
    OutputFile file(name);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.getSize(), 0u);
    EXPECT_FALSE(file.write("x", 1));
    EXPECT_FALSE(file.write("x", 0));
    EXPECT_FALSE(file.write(std::vector<unsigned char>{1}, 1));
    EXPECT_FALSE(file.flush());
    file.setPosition(0, FileSeekMode::Begin);
    EXPECT_FALSE(file.isOpen());
}

/// A file of a host's own, opened in any mode.
class AnyInputFile : public File<std::ifstream> {
public:
    using File::File;

    std::string rest() { return {std::istreambuf_iterator<char>(getStream()), std::istreambuf_iterator<char>()}; }
    std::streamoff position() { return getStream().tellg(); }
};

class AnyOutputFile : public File<std::ofstream> {
public:
    using File::File;

    void write(const std::string& text) { getStream() << text << std::flush; }
    std::streamoff position() { return getStream().tellp(); }
};

class UnbufferedFile : public InputFile {
public:
    explicit UnbufferedFile(const std::string& name) : InputFile(name, Unbuffered()) {}
};

} // namespace

TEST(InputFile, yieldsEveryByteAsItIs)
{
    writeFileContents("bytes", everyByte());
    InputFile file("bytes");
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(next(file, static_cast<unsigned>(everyByte().size())), everyByte());
}

TEST(InputFile, readsOneStretchAfterTheOther)
{
    writeFileContents("letters", "abcdef");
    InputFile file("letters");
    EXPECT_EQ(next(file, 1), "a");
    EXPECT_EQ(next(file, 0), "");
    EXPECT_EQ(next(file, 3), "bcd");
    EXPECT_EQ(next(file, 2), "ef");
}

TEST(InputFile, readsNothingWithoutAPlaceForIt)
{
    writeFileContents("letters", "abc");
    InputFile file("letters");
    EXPECT_TRUE(file.read(nullptr, 0));
    std::vector<unsigned char> none;
    EXPECT_TRUE(file.read(none, 0));
    EXPECT_EQ(next(file, 1), "a");
}

TEST(InputFile, readsUpToTheEndAndNotOneByteMore)
{
    writeFileContents("letters", "abc");
    InputFile file("letters");
    EXPECT_EQ(next(file, 3), "abc");
    EXPECT_TRUE(file.read(nullptr, 0)) << "the end is no failure yet";
    EXPECT_EQ(file.getSize(), 3u);
    char byte = 'x';
    EXPECT_FALSE(file.read(&byte, 1));
    EXPECT_EQ(byte, 'x');
}

TEST(InputFile, shortReadYieldsWhatIsThereAndLeavesTheRest)
{
    writeFileContents("letters", "abc");
    InputFile file("letters");
    char bytes[] = "------";
    EXPECT_FALSE(file.read(bytes, 5));
    EXPECT_STREQ(bytes, "abc---");
}

TEST(InputFile, staysFailedAfterAShortRead)
{
    writeFileContents("letters", "abc");
    InputFile file("letters");
    char bytes[] = "------";
    ASSERT_FALSE(file.read(bytes, 5));
    file.setPosition(0, FileSeekMode::Begin);
    EXPECT_FALSE(file.read(bytes, 1));
    EXPECT_FALSE(file.read(bytes, 0));
    EXPECT_EQ(file.getSize(), 0u);
    EXPECT_TRUE(file.isOpen());
}

TEST(InputFile, anyReadOfAnEmptyFileButThatOfNothingFails)
{
    writeFileContents("empty", "");
    InputFile file("empty");
    EXPECT_TRUE(file.isOpen());
    EXPECT_TRUE(file.read(nullptr, 0));
    char byte = 'x';
    EXPECT_FALSE(file.read(&byte, 1));
}

TEST(InputFile, readsIntoTheStartOfAVectorWhoseSizeStays)
{
    writeFileContents("letters", "abcdef");
    InputFile file("letters");
    std::vector<unsigned char> bytes(4, '-');
    EXPECT_TRUE(file.read(bytes, 2));
    EXPECT_EQ(bytes, (std::vector<unsigned char>{'a', 'b', '-', '-'}));
    EXPECT_TRUE(file.read(bytes, 4));
    EXPECT_EQ(bytes, (std::vector<unsigned char>{'c', 'd', 'e', 'f'}));
}

TEST(InputFile, readsNothingIntoAVectorThatIsTooShort)
{
    writeFileContents("letters", "abcdef");
    InputFile file("letters");
    std::vector<unsigned char> bytes(3, '-');
    EXPECT_FALSE(file.read(bytes, 4));
    EXPECT_EQ(bytes, (std::vector<unsigned char>{'-', '-', '-'}));
    EXPECT_EQ(next(file, 2), "ab") << "neither moved nor failed";
}

TEST(InputFile, sizeOfAnEmptyFileIs0)
{
    writeFileContents("empty", "");
    EXPECT_EQ(InputFile("empty").getSize(), 0u);
}

TEST(InputFile, askingForTheSizeKeepsThePosition)
{
    writeFileContents("letters", "0123456789abcdefghijklmnop");
    InputFile file("letters");
    file.setPosition(10, FileSeekMode::Begin);
    EXPECT_EQ(file.getSize(), 26u);
    EXPECT_EQ(next(file, 3), "abc");
    EXPECT_EQ(file.getSize(), 26u);
    EXPECT_EQ(next(file, 13), "defghijklmnop");
    EXPECT_EQ(file.getSize(), 26u);
}

TEST(InputFile, positionCountsFromTheStartOrFromTheEnd)
{
    writeFileContents("letters", "abcdefgh");
    InputFile file("letters");
    file.setPosition(-4, FileSeekMode::End);
    EXPECT_EQ(next(file, 4), "efgh");
    file.setPosition(1, FileSeekMode::Begin);
    EXPECT_EQ(next(file, 2), "bc");
    file.setPosition(0, FileSeekMode::Begin);
    EXPECT_EQ(next(file, 1), "a");
    file.setPosition(-8, FileSeekMode::End);
    EXPECT_EQ(next(file, 1), "a");
    file.setPosition(0, FileSeekMode::End);
    EXPECT_EQ(next(file, 0), "");
    file.setPosition(8, FileSeekMode::Begin);
    char byte = 'x';
    EXPECT_FALSE(file.read(&byte, 1));
}

TEST(InputFile, positionBehindTheEndFailsOnlyTheRead)
{
    writeFileContents("letters", "abc");
    InputFile file("letters");
    file.setPosition(100, FileSeekMode::Begin);
    EXPECT_EQ(file.getSize(), 3u);
    file.setPosition(5, FileSeekMode::End);
    EXPECT_EQ(file.getSize(), 3u);
    file.setPosition(2, FileSeekMode::Begin);
    EXPECT_EQ(next(file, 1), "c");
    file.setPosition(100, FileSeekMode::Begin);
    char byte = 'x';
    EXPECT_FALSE(file.read(&byte, 1));
}

TEST(InputFile, positionBeforeTheStartFailsForGood)
{
    writeFileContents("letters", "abc");
    for (const FileSeekMode::Type mode : {FileSeekMode::Begin, FileSeekMode::End}) {
        InputFile file("letters");
        file.setPosition(-4, mode);
        file.setPosition(0, FileSeekMode::Begin);
        char byte = 'x';
        EXPECT_FALSE(file.read(&byte, 1));
        EXPECT_EQ(byte, 'x');
        EXPECT_TRUE(file.isOpen());
    }
}

TEST(InputFile, anotherSeekModeIsFatal)
{
    for (const int mode : {2, 7, -1}) {
        const auto seek = [mode] {
            writeFileContents("letters", "abc");
            InputFile file("letters");
            file.setPosition(0, static_cast<FileSeekMode::Type>(mode));
        };
        expectFatalError(seek, "File::setPosition() -> invalid seek mode!");
    }
}

TEST(InputFile, anotherSeekModeIsFatalAlsoWhenTheFileIsNotOpen)
{
    const auto seek = [] { InputFile("missing").setPosition(0, static_cast<FileSeekMode::Type>(7)); };
    expectFatalError(seek, "File::setPosition() -> invalid seek mode!");
}

TEST(InputFile, thatDoesNotExistIsNotOpen)
{
    expectNoFileToRead(std::string("missing"));
    expectNoFileToRead(std::string("missing-directory/file"));
    expectNoFileToRead(std::string());
    expectNoFileToRead(std::wstring(L"missing"));
    expectNoFileToRead(std::wstring());
    EXPECT_FALSE(fs::exists("missing"));
}

TEST(InputFile, thatDoesNotExistIsNotReported)
{
    const auto open = [] {
        enterOwnDirectory();
        InputFile file("missing");
        char byte = 0;
        file.read(&byte, 1);
        OutputFile("missing-directory/file").write(&byte, 1);
        std::exit(!fs::exists("log.txt") && shownMessageBoxes().empty() ? 0 : 1);
    };
    EXPECT_EXIT(open(), ::testing::ExitedWithCode(0), "");
}

TEST(InputFile, thatIsADirectoryIsNotOpen)
{
    fs::create_directory("directory");
    expectNoFileToRead(std::string("directory"));
    expectNoFileToRead(std::string("directory/"));
    expectNoFileToRead(std::string("."));
    expectNoFileToRead(std::wstring(L"directory"));
}

TEST(InputFile, whoseNameHoldsANulIsNotOpen)
{
    writeFileContents("name", "contents");
    expectNoFileToRead(std::string("name\0tail", 9));
    expectNoFileToRead(std::string("name\0", 5));
    expectNoFileToRead(std::string("\0name", 5));
    expectNoFileToRead(std::wstring(L"name\0tail", 9));
    expectNoFileToRead(std::wstring(L"name\0", 5));
}

TEST(InputFile, mayHaveAWideName)
{
    writeFileContents("plain", "contents");
    InputFile file(std::wstring(L"plain"));
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(next(file, 8), "contents");

    std::ofstream(fs::path(u8"z\u00FCrich-\u20AC-\U0001F600")) << "money";
    InputFile foreign(std::wstring(L"z\u00FCrich-\u20AC-\U0001F600"));
    ASSERT_TRUE(foreign.isOpen());
    EXPECT_EQ(next(foreign, 5), "money");
}

TEST(InputFile, behindALinkIsReadAndADirectoryBehindOneIsNot)
{
    writeFileContents("target", "contents");
    fs::create_directory("target-directory");
    std::error_code failure;
    fs::create_symlink("target", "link", failure);
    fs::create_directory_symlink("target-directory", "directory-link", failure);
    if (failure) GTEST_SKIP() << "no links here";
    InputFile file("link");
    EXPECT_EQ(next(file, 8), "contents");
    expectNoFileToRead(std::string("directory-link"));
}

TEST(InputFile, seesChangesOfTheFileAtOnceWhenUnbuffered)
{
    writeFileContents("changing", "abcdef");
    UnbufferedFile file("changing");
    EXPECT_EQ(next(file, 2), "ab");
    writeFileContents("changing", "ABCDEF");
    EXPECT_EQ(next(file, 3), "CDE");
    file.setPosition(-1, FileSeekMode::End);
    EXPECT_EQ(file.getSize(), 6u);
    EXPECT_EQ(next(file, 1), "F");
    EXPECT_FALSE(UnbufferedFile(std::string("name\0tail", 9)).isOpen());
}

#ifndef _WIN32

TEST(InputFile, mayBeLargerThan4GiB)
{
    const std::uint64_t size = (std::uint64_t{5} << 30) + 3;
    writeFileContents("huge", "first");
    fs::resize_file("huge", size); // a hole: it takes no place on the disk
    {
        std::fstream stream("huge", std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(-4, std::ios::end);
        stream << "last";
    }
    InputFile file("huge");
    EXPECT_EQ(file.getSize(), size);
    EXPECT_EQ(next(file, 5), "first");
    file.setPosition(-4, FileSeekMode::End);
    EXPECT_EQ(file.getSize(), size);
    EXPECT_EQ(next(file, 4), "last");
    file.setPosition(static_cast<std::int64_t>(size) - 2, FileSeekMode::Begin);
    EXPECT_EQ(next(file, 2), "st");
    fs::remove("huge");
}

#endif

TEST(OutputFile, writesEveryByteAsItIs)
{
    {
        OutputFile file("bytes");
        EXPECT_TRUE(file.isOpen());
        EXPECT_TRUE(writeText(file, everyByte()));
    }
    EXPECT_EQ(fileContents("bytes"), everyByte());
}

TEST(OutputFile, writesOneStretchAfterTheOther)
{
    {
        OutputFile file("letters");
        EXPECT_TRUE(writeText(file, "ab"));
        EXPECT_TRUE(file.write(nullptr, 0));
        EXPECT_TRUE(writeText(file, "cd"));
    }
    EXPECT_EQ(fileContents("letters"), "abcd");
}

TEST(OutputFile, emptiesAnExistingFile)
{
    writeFileContents("old", "something");
    {
        OutputFile file("old");
        EXPECT_EQ(file.getSize(), 0u);
        EXPECT_EQ(fs::file_size("old"), 0u) << "at once";
    }
    EXPECT_EQ(fs::file_size("old"), 0u);
    writeFileContents("old", "something");
    const OutputFile wide(std::wstring(L"old"));
    EXPECT_EQ(fs::file_size("old"), 0u);
}

TEST(OutputFile, writesTheStartOfAVector)
{
    {
        OutputFile file("letters");
        const std::vector<unsigned char> bytes = {'a', 'b', 'c', 0xFF};
        EXPECT_TRUE(file.write(bytes, 2));
        EXPECT_TRUE(file.write(bytes, 4));
        EXPECT_TRUE(file.write(std::vector<unsigned char>(), 0));
    }
    EXPECT_EQ(fileContents("letters"), "ababc\xFF");
}

TEST(OutputFile, writesNothingOfAVectorThatIsTooShort)
{
    {
        OutputFile file("letters");
        EXPECT_FALSE(file.write(std::vector<unsigned char>{'a', 'b'}, 3));
        EXPECT_TRUE(writeText(file, "c")) << "that was no failure of the file";
    }
    EXPECT_EQ(fileContents("letters"), "c");
}

TEST(OutputFile, sizeCountsWhatIsStillBufferedAndThePositionStays)
{
    {
        OutputFile file("letters");
        EXPECT_TRUE(writeText(file, "abcdef"));
        EXPECT_EQ(file.getSize(), 6u);
        file.setPosition(2, FileSeekMode::Begin);
        EXPECT_EQ(file.getSize(), 6u);
        EXPECT_TRUE(writeText(file, "CD"));
        EXPECT_EQ(file.getSize(), 6u);
        file.setPosition(-1, FileSeekMode::End);
        EXPECT_TRUE(writeText(file, "Fgh"));
        EXPECT_EQ(file.getSize(), 8u);
    }
    EXPECT_EQ(fileContents("letters"), "abCDeFgh");
}

TEST(OutputFile, flushHandsEverythingOn)
{
    OutputFile file("letters");
    EXPECT_TRUE(file.flush());
    EXPECT_TRUE(writeText(file, "abc"));
    EXPECT_TRUE(file.flush());
    EXPECT_EQ(fileContents("letters"), "abc");
}

TEST(OutputFile, anotherSeekModeIsFatal)
{
    const auto seek = [] { OutputFile("letters").setPosition(0, static_cast<FileSeekMode::Type>(2)); };
    expectFatalError(seek, "File::setPosition() -> invalid seek mode!");
}

TEST(OutputFile, thatCannotBeMadeIsNotOpen)
{
    fs::create_directory("directory");
    expectNoFileToWrite(std::string("missing-directory/file"));
    expectNoFileToWrite(std::string("directory"));
    expectNoFileToWrite(std::string("."));
    expectNoFileToWrite(std::string());
    expectNoFileToWrite(std::wstring(L"missing-directory/file"));
    expectNoFileToWrite(std::wstring(L"directory"));
    expectNoFileToWrite(std::wstring());
}

TEST(OutputFile, whoseNameHoldsANulIsNotMade)
{
    expectNoFileToWrite(std::string("cut-name\0tail", 13));
    expectNoFileToWrite(std::wstring(L"cut-name\0tail", 13));
    EXPECT_FALSE(fs::exists("cut-name"));
}

TEST(OutputFile, mayHaveAWideName)
{
    {
        OutputFile file(std::wstring(L"m\u00E4rchen-\u4F60-\U0001F98A.txt"));
        ASSERT_TRUE(file.isOpen());
        EXPECT_TRUE(writeText(file, "once"));
    }
    EXPECT_EQ(fs::file_size(fs::path(u8"m\u00E4rchen-\u4F60-\U0001F98A.txt")), 4u);
}

#ifndef _WIN32

TEST(OutputFile, wideNameStandsAsUtf8OnTheDisk)
{
    OutputFile(std::wstring(L"w-\u00E4-\u20AC-\U0001F600")).write("x", 1);
    EXPECT_EQ(fileContents("w-\xC3\xA4-\xE2\x82\xAC-\xF0\x9F\x98\x80"), "x");
}

TEST(OutputFile, wideNameThatIsNoTextIsNotMade)
{
    for (const std::int32_t code : {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x110000, 0x7FFFFFFF, -1, -0x7FFFFFFF - 1}) {
        const std::wstring name = std::wstring(L"odd-") + static_cast<wchar_t>(code);
        expectNoFileToWrite(name);
        expectNoFileToRead(name);
    }
    for (const auto& entry : fs::directory_iterator("."))
        EXPECT_NE(entry.path().filename().string().substr(0, 4), "odd-");
}

TEST(OutputFile, fullDiskShowsWhenTheBufferIsHandedOn)
{
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    OutputFile file("/dev/full");
    ASSERT_TRUE(file.isOpen());
    EXPECT_TRUE(writeText(file, "abc"));
    EXPECT_FALSE(file.flush());
    EXPECT_FALSE(writeText(file, "d")) << "a failure lasts";
    EXPECT_FALSE(file.write(nullptr, 0));
    EXPECT_FALSE(file.flush());
    EXPECT_EQ(file.getSize(), 0u);
    EXPECT_TRUE(file.isOpen());
}

TEST(OutputFile, fullDiskShowsAtOnceWhenThereIsMoreThanABufferful)
{
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    OutputFile file("/dev/full");
    EXPECT_FALSE(writeText(file, std::string(1 << 20, 'x')));
}

#endif

TEST(File, alwaysHasTheFlagOfItsOwnDirection)
{
    writeFileContents("letters", "abc");
    EXPECT_EQ(AnyInputFile(std::string("letters"), std::ios::openmode()).rest(), "abc");
    EXPECT_EQ(AnyInputFile(std::string("letters"), std::ios::binary).rest(), "abc");
    EXPECT_EQ(AnyInputFile(std::wstring(L"letters"), std::ios::binary).rest(), "abc");
    EXPECT_EQ(AnyInputFile(std::string("letters"), std::ios::out).rest(), "abc") << "for both, and not emptied";

    AnyOutputFile(std::string("letters"), std::ios::app).write("def");
    EXPECT_EQ(fileContents("letters"), "abcdef");
    AnyOutputFile(std::wstring(L"letters"), std::ios::app).write("g");
    EXPECT_EQ(fileContents("letters"), "abcdefg");
    AnyOutputFile(std::string("letters"), std::ios::in).write("AB");
    EXPECT_EQ(fileContents("letters"), "ABcdefg");
    AnyOutputFile(std::string("letters"), std::ios::binary).write("new");
    EXPECT_EQ(fileContents("letters"), "new");
}

TEST(File, startsAtTheEndInTheModeForThat)
{
    writeFileContents("letters", "0123456789abcdef");
    AnyInputFile input(std::string("letters"), std::ios::binary | std::ios::ate);
    EXPECT_EQ(input.position(), 16);
    EXPECT_EQ(input.getSize(), 16u);
    EXPECT_EQ(input.position(), 16);
    input.setPosition(10, FileSeekMode::Begin);
    EXPECT_EQ(input.getSize(), 16u);
    EXPECT_EQ(input.position(), 10);
    EXPECT_EQ(input.rest(), "abcdef");

    AnyOutputFile output(std::wstring(L"letters"), std::ios::binary | std::ios::in | std::ios::ate);
    EXPECT_EQ(output.position(), 16);
    EXPECT_EQ(output.getSize(), 16u);
    output.write("g");
    output.setPosition(1, FileSeekMode::Begin);
    EXPECT_EQ(output.getSize(), 17u);
    EXPECT_EQ(output.position(), 1);
    output.write("-");
    EXPECT_EQ(fileContents("letters"), "0-23456789abcdefg");
}

TEST(File, handsItsStreamToDerivedClasses)
{
    writeFileContents("letters", "abcdef");
    AnyInputFile file(std::string("letters"), std::ios::binary);
    file.setPosition(2, FileSeekMode::Begin);
    EXPECT_EQ(file.position(), 2);
    EXPECT_EQ(file.rest(), "cdef");
}

TEST(File, isDestroyedThroughItsBase)
{
    {
        const std::unique_ptr<File<std::ofstream>> file = std::make_unique<OutputFile>("letters");
        static_cast<OutputFile&>(*file).write("abc", 3);
    }
    EXPECT_EQ(fileContents("letters"), "abc") << "closed, and nothing left in the buffer";
}
