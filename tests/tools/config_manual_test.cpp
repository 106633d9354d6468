#include "own_directory.h"
#include "pack_manual.h"
#include "program.h"

#include <xum/files/config_file.h>
#include <xum/files/config_reader.h>
#include <xum/files/program_description.h>

#include <gtest/gtest.h>

// The configuration part of docs/file_formats.md against the library.

namespace {

class ConfigManual : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

/// A tag in the words of the manual, or the message that refuses it.
std::string meaningOf(const std::string& tag)
{
    try {
        const ConfigToken token(tag, 0);
        const std::string name = "`" + std::string(token.getName()) + "`";
        switch (token.getKind()) {
        case ConfigToken::Kind::Section: return "opens the section " + name;
        case ConfigToken::Kind::Entry:
            return "entry " + name + " with the value `" + std::string(token.getValue()) + "`";
        case ConfigToken::Kind::Close: return "closes, with the name " + name;
        case ConfigToken::Kind::Invalid: break;
        }
        return "nothing";
    } catch (const ConfigSyntaxError& problem) {
        return "`" + problem.message + "`";
    }
}

std::string messageOf(const std::string& text)
{
    try {
        ConfigReader(text).read();
        return "none";
    } catch (const ConfigSyntaxError& problem) {
        return problem.message;
    }
}

std::string withoutCarriageReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

} // namespace

TEST_F(ConfigManual, examplesAreTextsAsTheEngineWritesThem)
{
    const std::vector<std::string> examples = fileFormatBlocks("config");
    ASSERT_EQ(examples.size(), 2u);
    for (const std::string& example : examples) {
        writeFileContents("a.cfg", example);
        EXPECT_TRUE(ConfigFile("a.cfg").write("b.cfg"));
        EXPECT_EQ(withoutCarriageReturns(fileContents("b.cfg")), example);
        EXPECT_EQ(runXum("config format a.cfg").status, 0);
        EXPECT_EQ(fileContents("run-output.txt"), fileContents("b.cfg"));
    }
    writeFileContents("a.cfg", examples[0]);
    EXPECT_EQ(ConfigFile("a.cfg").getEntry("window/width", true)->getValue(), "1024");
}

TEST_F(ConfigManual, everyTagMeansWhatIsSaid)
{
    const std::vector<std::string> rows = fileFormatRows("| tag | meaning |");
    EXPECT_EQ(rows.size(), 20u);
    for (const std::string& row : rows) {
        const std::string tag = quotedIn(row).at(0);
        EXPECT_EQ(row, "| `" + tag + "` | " + meaningOf(tag) + " |");
    }
}

TEST_F(ConfigManual, everyTextHasItsMessage)
{
    const std::vector<std::string> rows = fileFormatRows("| text | message |");
    EXPECT_EQ(rows.size(), 6u);
    for (const std::string& row : rows) {
        const std::vector<std::string> quoted = quotedIn(row);
        ASSERT_EQ(quoted.size(), 2u) << row;
        EXPECT_EQ(messageOf(quoted[0]), quoted[1]);
    }
}

TEST_F(ConfigManual, listsAreSplitAsShown)
{
    const std::vector<std::string> rows = fileFormatRows("| list | names |");
    EXPECT_EQ(rows.size(), 7u);
    for (const std::string& row : rows) {
        std::vector<std::string> quoted = quotedIn(row);
        const std::string list = quoted.at(0);
        quoted.erase(quoted.begin());
        EXPECT_EQ(splitNames(list), quoted) << list;
    }
}

TEST_F(ConfigManual, programDescriptionIsReadAsShown)
{
    writeFileContents("a.cfg", fileFormatBlocks("config").at(1));
    const ProgramDescription program{ConfigFile("a.cfg")};
    EXPECT_EQ(program.shaders[0], std::vector<std::string>{"basic.vert"});
    EXPECT_EQ(program.shaders[2], (std::vector<std::string>{"basic.frag", "fog.frag"}));
    EXPECT_EQ(program.inputs, (std::list<std::string>{"position", "textureCoordinate", "normal"}));
    EXPECT_EQ(program.outputs, (std::list<std::string>{"colour", "depth"}));
}
