#include "own_directory.h"
#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

class ConfigCommand : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

void expectRun(const std::string& arguments, int status, const std::string& output, const std::string& errors)
{
    const ProgramRun run = runXum("config " + arguments);
    EXPECT_EQ(run.status, status) << arguments;
    EXPECT_EQ(output.find('\r') == std::string::npos ? run.output : fileContents("run-output.txt"), output)
        << arguments;
    EXPECT_EQ(run.errors, errors) << arguments;
}

void expectCheck(const std::string& text, const std::string& problem)
{
    writeFileContents("a.cfg", text);
    expectRun("check a.cfg", problem.empty() ? 0 : 1, "", problem.empty() ? "" : "a.cfg:" + problem + "\n");
}

void expectFormat(const std::string& text, const std::string& formatted)
{
    writeFileContents("a.cfg", text);
    expectRun("format a.cfg", 0, formatted, "");
    expectRun("format --in-place a.cfg", 0, "", "");
    EXPECT_EQ(fileContents("a.cfg"), formatted);
}

void expectNoFormat(const std::string& text, const std::string& problem)
{
    writeFileContents("a.cfg", text);
    expectRun("format a.cfg", 1, "", "a.cfg:" + problem + "\n");
    expectRun("format a.cfg --in-place", 1, "", "a.cfg:" + problem + "\n");
    EXPECT_EQ(fileContents("a.cfg"), text);
}

const std::string example = "<config>\n <renderer OpenGL/><window>\n\t<width 1024/><title \"My window\"/></window>\n"
                            "<window><width 5/></window><empty/ ></x></config>";

} // namespace

// ---- check --------------------------------------------------------------------------------------------------------

TEST_F(ConfigCommand, readableFilesAreSilent)
{
    expectCheck(example, "");
    expectCheck("</a></b>", "");
}

TEST_F(ConfigCommand, eachProblemHasTheEnginesMessageAndItsPlace)
{
    expectCheck(" ", "1:2: readSection() -> section needs at least 2 tokens!");
    expectCheck("<a>\n <b>\n", "2:2: readSection() -> section needs at least 2 tokens!");
    expectCheck("<a>\n <b x/>\n", "1:1: readSection() -> empty token list while parsing!");
    expectCheck("<a>\r\n  # x\r\n</a>", "2:3: tokenize() -> expecting '<' got '#'!");
    expectCheck("<a></a>\n\n<b", "3:1: tokenize() -> end of file reached before finding a closing tag!");
    expectCheck("<a>\n\t<b/>\n</a>", "2:2: Token::Token(b/>) -> invalid number of spaces inside entry!");
    expectCheck("<a><b c d/></a>", "1:4: Token::Token(b) -> invalid number of spaces inside entry!");
    expectCheck("<a><b \"c/></a>", "1:4: Token::Token(b) -> mismatched quotes!");
    expectCheck("\xEF\xBB\xBF<a></a>", "1:1: tokenize() -> expecting '<' got '\xEF'!");
}

TEST_F(ConfigCommand, columnsCountCharacters)
{
    expectCheck("<\xC3\xA4\xC3\xB6></a> x", "1:10: tokenize() -> expecting '<' got 'x'!");
}

TEST_F(ConfigCommand, messagesStayOnTheirLines)
{
    expectCheck("<a><b\n\tc/></a>", "1:4: Token::Token(b\\x0A\\x09c/>) -> invalid number of spaces inside entry!");
    expectCheck(std::string("\0", 1), "1:1: tokenize() -> expecting '<' got '\\x00'!");
}

TEST_F(ConfigCommand, everyFileIsChecked)
{
    writeFileContents("good.cfg", "<a></a>");
    writeFileContents("bad.cfg", "<a>");
    writeFileContents("worse.cfg", "x y z");
    writeFileContents("empty.cfg", "");
    expectRun("check bad.cfg good.cfg nosuch.cfg empty.cfg . worse.cfg", 1, "",
              "bad.cfg:1:1: readSection() -> section needs at least 2 tokens!\n"
              "nosuch.cfg: cannot be opened: No such file or directory\n"
              "WARNING: empty config file (empty.cfg)!\n"
              ".: is a directory\n"
              "worse.cfg:1:1: tokenize() -> expecting '<' got 'x'!\n");
    expectRun("check good.cfg empty.cfg", 0, "", "WARNING: empty config file (empty.cfg)!\n");
}

TEST_F(ConfigCommand, standardInputIsChecked)
{
    const ProgramRun run = runXumWithInput("config check -", "<a>\n<b>");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "<stdin>:2:1: readSection() -> section needs at least 2 tokens!\n");
    EXPECT_EQ(runXumWithInput("config check -", "").errors, "WARNING: empty config file (<stdin>)!\n");
}

TEST_F(ConfigCommand, deepTextsAreChecked)
{
    std::string text;
    for (int i = 0; i < 300000; ++i) text += "<a>";
    expectCheck(text, "1:899998: readSection() -> section needs at least 2 tokens!");
    for (int i = 0; i < 300000; ++i) text += "</>";
    expectCheck(text, "");
}

// ---- get ----------------------------------------------------------------------------------------------------------

TEST_F(ConfigCommand, valueOfAnEntryIsPrinted)
{
    writeFileContents("a.cfg", example);
    expectRun("get a.cfg renderer", 0, "OpenGL\n", "");
    expectRun("get a.cfg window/title", 0, "My window\n", "");
    expectRun("get a.cfg window/width", 0, "1024\n", "");
    writeFileContents("a.cfg", "<a><s><e 1/><e /></s>< x/><>< y/></><t a\tb\n/></a>");
    expectRun("get a.cfg s/e", 0, "\n", "");
    expectRun("get a.cfg t", 0, "a\tb\n\n", "");
    expectRun("get a.cfg \"\"", 0, "x\n", "");
    expectRun("get a.cfg /", 0, "y\n", "");
}

TEST_F(ConfigCommand, missingEntriesAndSectionsAreNamed)
{
    writeFileContents("a.cfg", example);
    expectRun("get a.cfg nosuch", 1, "", "a.cfg: there is no entry \"nosuch\"\n");
    expectRun("get a.cfg window/nosuch", 1, "", "a.cfg: there is no entry \"window/nosuch\"\n");
    expectRun("get a.cfg window/a/b/c", 1, "", "a.cfg: there is no section \"window/a\"\n");
    expectRun("get a.cfg config/renderer", 1, "", "a.cfg: there is no section \"config\"\n");
    expectRun("get a.cfg window", 1, "",
              "a.cfg: there is no entry \"window\", but a section: --list shows what it holds\n");
    expectRun("get nosuch.cfg a", 1, "", "nosuch.cfg: cannot be opened: No such file or directory\n");
    writeFileContents("empty.cfg", "");
    for (const char* arguments : {"get empty.cfg a", "get --list empty.cfg"})
        expectRun(arguments, 1, "", "WARNING: empty config file (empty.cfg)!\nempty.cfg: there is no root section\n");
}

TEST_F(ConfigCommand, sectionsAreListed)
{
    writeFileContents("a.cfg", example);
    expectRun("get --list a.cfg", 0, "window/\nwindow/\nempty/ /\nrenderer\tOpenGL\n", "");
    expectRun("get a.cfg window --list", 0, "width\t1024\ntitle\tMy window\n", "");
    expectRun("get a.cfg window/width --list", 1, "", "a.cfg: there is no section \"window/width\"\n");
    writeFileContents("a.cfg", "<a><b c\td\ne/></a>");
    expectRun("get --list a.cfg", 0, "b\tc\\x09d\\x0Ae\n", "");
}

// ---- format -------------------------------------------------------------------------------------------------------

TEST_F(ConfigCommand, textIsFormattedAsTheEngineWritesIt)
{
    expectFormat("<config><renderer OpenGL/><window><width 1024/>\n<title \"My window\"/></window></config>",
                 "<config>\r\n   <window>\r\n      <width 1024/>\r\n      <title \"My window\"/>\r\n   </window>\r\n"
                 "   <renderer OpenGL/>\r\n</config>\r\n");
    expectFormat("<a><b \"c\"/><d /><d \" \"/><e \"f\"g/></wrong>", "<a>\r\n   <b c/>\r\n   <d \" \"/>\r\n"
                                                                    "   <e \"f\"g/>\r\n</a>\r\n");
}

TEST_F(ConfigCommand, formattedTextStaysAsItIs)
{
    writeFileContents("a.cfg", example);
    expectRun("format a.cfg --in-place", 0, "", "");
    const std::string once = fileContents("a.cfg");
    expectFormat(once, once);
    fs::last_write_time("a.cfg", fs::last_write_time("a.cfg") - std::chrono::hours(1));
    const fs::file_time_type time = fs::last_write_time("a.cfg");
    expectRun("format a.cfg --in-place", 0, "", "");
    EXPECT_EQ(fs::last_write_time("a.cfg"), time) << "not even touched";
}

TEST_F(ConfigCommand, whatWouldNotReadBackIsRefused)
{
    expectNoFormat("<a><b><c x\"y z\"/></b></a>", " the value of \"b/c\" cannot be written");
    expectNoFormat("<a><c \"\"x\"\"/></a>", " the value of \"c\" cannot be written");
    expectNoFormat("</x></x></x>", "1:9: what follows the root section is never read, and would be lost");
    expectNoFormat("<//x></y>", " the section name \"/x\" cannot be written");
}

TEST_F(ConfigCommand, whatIsNeverReadIsNotLost)
{
    expectNoFormat("<a>\n<b></b></b>\n<c d/>\n</a>",
                   "3:1: what follows the root section is never read, and would be lost");
}

TEST_F(ConfigCommand, severalProblemsAreAllReported)
{
    writeFileContents("a.cfg", "</ //><a \"\"\"\"/><b><c \"\"\"\"/></b><d \"\"\"\"/></x><y>");
    expectRun("format a.cfg", 1, "",
              "a.cfg:1:45: what follows the root section is never read, and would be lost\n"
              "a.cfg: the section name \" //\" cannot be written\n"
              "a.cfg: the value of \"a\" cannot be written\na.cfg: the value of \"d\" cannot be written\n"
              "a.cfg: the value of \"b/c\" cannot be written\n");
}

TEST_F(ConfigCommand, nestingIsFormattedTo1000Levels)
{
    std::string text;
    for (int i = 0; i < 1000; ++i) text += "<a>";
    for (int i = 0; i < 1000; ++i) text += "</a>";
    writeFileContents("a.cfg", text);
    const ProgramRun run = runXum("config format a.cfg");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.output.find("\n" + std::string(2997, ' ') + "<a>"), std::string::npos);
    expectNoFormat("<b>" + text + "</b>", " the nesting of more than 1000 sections cannot be written");
}

TEST_F(ConfigCommand, brokenAndEmptyFilesStayAsTheyAre)
{
    expectNoFormat("<a>", "1:1: readSection() -> section needs at least 2 tokens!");
    writeFileContents("a.cfg", "");
    expectRun("format a.cfg", 0, "", "WARNING: empty config file (a.cfg)!\n");
    expectRun("format a.cfg --in-place", 0, "", "WARNING: empty config file (a.cfg)!\n");
    EXPECT_TRUE(fs::exists("a.cfg"));
}

TEST_F(ConfigCommand, standardInputIsFormatted)
{
    const ProgramRun run = runXumWithInput("config format -", "<a><b c/></a>");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(fileContents("run-output.txt"), "<a>\r\n   <b c/>\r\n</a>\r\n");
    const ProgramRun inPlace = runXumWithInput("config format --in-place -", "<a><b c/></a>");
    EXPECT_EQ(inPlace.status, 2);
    EXPECT_EQ(inPlace.output, "");
}

#ifndef _WIN32
TEST_F(ConfigCommand, permissionsAndLinksStay)
{
    fs::create_directory("d");
    writeFileContents("d/a.cfg", "<a></a>");
    fs::permissions("d/a.cfg", fs::perms(0600));
    fs::create_symlink("d/a.cfg", "a.cfg");
    expectRun("format --in-place a.cfg", 0, "", "");
    EXPECT_TRUE(fs::is_symlink("a.cfg"));
    EXPECT_EQ(fileContents("d/a.cfg"), "<a>\r\n</a>\r\n");
    EXPECT_EQ(fs::status("d/a.cfg").permissions(), fs::perms(0600));
}

TEST_F(ConfigCommand, failedWriteKeepsTheFile)
{
    const std::string text = "<a><b " + std::string(20000, 'x') + "/></a>";
    fs::create_directory("d");
    fs::create_directory("temporary");
    writeFileContents("d/a.cfg", text);
    const ProgramRun run = runProgram("sh", "-c \"trap '' XFSZ; ulimit -f 8; TMPDIR=temporary '" XUM_PROGRAM
                                            "' config format --in-place d/a.cfg\"");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "d/a.cfg: there is no room for the text in the directory for temporary files\n");
    EXPECT_EQ(fileContents("d/a.cfg"), text);
    EXPECT_EQ(std::distance(fs::directory_iterator("d"), fs::directory_iterator()), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator("temporary"), fs::directory_iterator()), 0) << "nothing is left";
}
#endif

// ---- usage --------------------------------------------------------------------------------------------------------

TEST_F(ConfigCommand, withoutASubcommandTheHelpIsShown)
{
    const ProgramRun run = runXum("config");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors.find("Usage: xum config [OPTIONS] [SUBCOMMAND]"), std::string::npos) << run.errors;
}

TEST_F(ConfigCommand, wrongUsageIsTold)
{
    for (const char* arguments : {"nonsense", "check", "get", "get a.cfg", "get a b c", "format", "format a b"})
        EXPECT_EQ(runXum(std::string("config ") + arguments).status, 2) << arguments;
}

TEST_F(ConfigCommand, helpNamesTheExitStatuses)
{
    for (const char* command : {"", "check", "get", "format"}) {
        const ProgramRun run = runXum("config " + std::string(command) + " --help");
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.output.find("Exit status: 0 "), std::string::npos) << run.output;
        EXPECT_NE(run.output.find("Usage: xum config " + std::string(command)), std::string::npos) << run.output;
    }
}
