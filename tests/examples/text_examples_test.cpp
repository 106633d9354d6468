#include "example.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <filesystem>

// The examples that print.

namespace {

namespace fs = std::filesystem;

class TextExamples : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
    void TearDown() override { fs::current_path(testDirectory()); }
};

} // namespace

TEST_F(TextExamples, configFileMakesSettingsAndCountsItsRuns)
{
    ASSERT_EQ(runExample("config_file").status, 0);
    const ProgramRun run = runExample("config_file");
    EXPECT_EQ(run.status, 0) << run.errors;
    const std::string written = "<settings>\r\n"
                                "   <window>\r\n"
                                "      <width 1024/>\r\n"
                                "      <title \"My first game\"/>\r\n"
                                "   </window>\r\n"
                                "   <visit>\r\n"
                                "      <number 1/>\r\n"
                                "   </visit>\r\n"
                                "   <visit>\r\n"
                                "      <number 2/>\r\n"
                                "   </visit>\r\n"
                                "   <runs 2/>\r\n"
                                "</settings>\r\n";
    EXPECT_EQ(fileContents("settings.cfg"), written);
    EXPECT_EQ(run.output, "title: My first game\nheight: not set\nvisit 1\nvisit 2\n" + fileText("settings.cfg"));
}

TEST_F(TextExamples, configFileTellsWhereAFileIsBroken)
{
    writeFileContents("own.cfg", "<settings>\n   <runs>\n</settings>\n");
    const ProgramRun run = runExample("config_file", "own.cfg");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors.rfind("own.cfg:", 0), 0u) << run.errors;
    EXPECT_EQ(fileContents("own.cfg"), "<settings>\n   <runs>\n</settings>\n");
}

TEST_F(TextExamples, configFileSaysThatItCannotWrite)
{
    const ProgramRun run = runExample("config_file", "nosuch/settings.cfg");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "Cannot write nosuch/settings.cfg\n");
}

TEST_F(TextExamples, clipboardAndFilesListsItsNotes)
{
    const ProgramRun run = runExample("clipboard_and_files");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "notes/monday.txt, 8 bytes\nnotes/old/sunday.txt, 4 bytes\nnotes/tuesday.txt, 4 bytes\n");
    EXPECT_TRUE(fs::exists("notes/picture.bmp"));
}

TEST_F(TextExamples, clipboardAndFilesListsADirectory)
{
    fs::create_directory("own");
    writeFileContents("own/a.txt", "12345");
    writeFileContents("own/b.bmp", "1");
    EXPECT_EQ(runExample("clipboard_and_files", "own").output, "own/a.txt, 5 bytes\nown/b.bmp, 1 bytes\n");
    EXPECT_EQ(runExample("clipboard_and_files", "own .bmp").output, "own/b.bmp, 1 bytes\n");
    EXPECT_EQ(runExample("clipboard_and_files", "nosuch").output, "nothing\n");
}

TEST_F(TextExamples, networkPlaysAlone)
{
    const ProgramRun run = runExample("network");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "not connected: playing alone\n");
}

TEST_F(TextExamples, savedGameLoadsWhatItSaved)
{
    const std::string monsters = "Position(28, 7, 0)\nFixed(18773)\nPosition(23, 12, 0)\nFixed(11344)\n"
                                 "Position(27, 25, 0)\nFixed(20480)\n";
    EXPECT_EQ(runExample("saved_game").output, monsters);
    const std::string file = fileContents("game.save");
    EXPECT_EQ(file.size(), 8u + 3 * 16);
    EXPECT_EQ(file.substr(0, 8), std::string("SAVE\3\0\0\0", 8));
    EXPECT_EQ(runExample("saved_game", "game.save").output, monsters);
}

TEST_F(TextExamples, savedGameRefusesWhatIsNone)
{
    ASSERT_EQ(runExample("saved_game").status, 0);
    const std::string file = fileContents("game.save");
    const std::string broken[] = {"",
                                  "SAVE",
                                  "EVAS" + file.substr(4),
                                  file.substr(0, file.size() - 1),
                                  file + "x",
                                  std::string("SAVE\377\377\377\377", 8)};
    for (const std::string& text : broken) {
        writeFileContents("own.save", text);
        const ProgramRun run = runExample("saved_game", "own.save");
        EXPECT_EQ(run.status, 1) << text.size();
        EXPECT_EQ(run.errors, "There is no saved game in own.save\n");
        EXPECT_EQ(run.output, "");
    }
}

TEST_F(TextExamples, lispConsoleEvaluatesLineByLine)
{
    writeFileContents("typed.txt", "(+ 1 2)\n"
                                   "\n"
                                   "\"text\"\n"
                                   "(list 1 :red 2.5 :true)\n"
                                   "(display \"hi\")\n"
                                   "(define die (roll 6))\n"
                                   "(and (>= die 1) (<= die 6))\n"
                                   "(roll 0)\n"
                                   ")\n"
                                   "(closure () 1)\n");
    const ProgramRun run = runExample("lisp_console", "<typed.txt");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "> 3\n"
                          "> > \"text\"\n"
                          "> (1 :red 2.500000 :true)\n"
                          "> ; hi\n"
                          ":nil\n"
                          "> 5\n"
                          "> :true\n"
                          "> 0\n"
                          "> ; error: invalid keyword/symbol name!\n"
                          "cannot read that\n"
                          "> something that hosts do not see\n"
                          "> ");
}

TEST_F(TextExamples, lispConsoleEndsWhenItIsTold)
{
    writeFileContents("typed.txt", "(quit)\n(+ 1 2)\n");
    EXPECT_EQ(runExample("lisp_console", "<typed.txt").output, "> :nil\n");
}
