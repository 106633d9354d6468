#include "own_directory.h"
#include "pack_manual.h"
#include "program.h"

#include <xum/files/resource_archive_format.h>

#include <gtest/gtest.h>

#include <filesystem>

// The archive part of docs/file_formats.md against the library and xum.

namespace {

class PackManual : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

} // namespace

TEST_F(PackManual, exampleIsTheArchiveThatIsMade)
{
    const std::vector<std::string> examples = fileFormatBlocks("bytes");
    ASSERT_EQ(examples.size(), 1u);
    std::filesystem::create_directories("d/a");
    writeFileContents("d/a/b.txt", "Hello");
    EXPECT_EQ(runXum("pack create a.xum d").status, 0);
    EXPECT_EQ(fileContents("a.xum"), bytesOf(examples[0]));
}

TEST_F(PackManual, tablesAgreeWithTheLibrary)
{
    namespace format = ResourceArchiveFormat;
    const std::vector<std::string> header = fileFormatRows("| offset | size | header |");
    const std::vector<std::string> entry = fileFormatRows("| offset | size | directory entry |");
    ASSERT_EQ(header.size(), 6u);
    ASSERT_EQ(entry.size(), 4u);
    const auto begin = [](std::size_t offset, std::size_t size) {
        return "| " + std::to_string(offset) + " | " + std::to_string(size);
    };
    EXPECT_EQ(header[0],
              begin(0, format::magic.size()) + " | magic, the characters `" + std::string(format::magic) + "` |");
    EXPECT_EQ(header[2], begin(format::countOffset, 4) + " | number of entries in the directory |");
    EXPECT_EQ(header[4], begin(format::headerSize, format::entrySize) + " each | directory |");
    EXPECT_EQ(entry[0], begin(0, format::nameSize) + " | name, ended by a NUL |");
    EXPECT_EQ(entry[1], begin(format::offsetOffset, 8) + " | offset of the data from the start of the archive |");
    EXPECT_EQ(entry[2], begin(format::sizeOffset, 4) + " | size of the data |");
    EXPECT_EQ(entry[3].substr(0, 11), begin(format::entrySize - 4, 4) + " |");
}
