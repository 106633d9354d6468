#include "file_contents.h"
#include "own_directory.h"

#include <settings.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class EditorSettings : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }

    static Settings readText(const std::string& text)
    {
        writeFileContents("settings.cfg", text);
        std::string problem = "?";
        const Settings settings = readSettings("settings.cfg", problem);
        EXPECT_EQ(problem, "") << text;
        return settings;
    }
};

const Settings defaults;

} // namespace

TEST_F(EditorSettings, comeBackFromTheirFile)
{
    Settings settings;
    settings.windowSize = {1000, 700};
    settings.grid = 0.125;
    settings.cameraSpeed = 12.5;
    settings.mouseSpeed = 0.35;
    settings.autosaveSeconds = 0;
    settings.recentFiles = {"maps/a b.cfg", "c.cfg"};
    std::string problem;
    ASSERT_TRUE(writeSettings(settings, "settings.cfg", problem)) << problem;
    const Settings again = readSettings("settings.cfg", problem);
    EXPECT_EQ(problem, "");
    EXPECT_EQ(again.windowSize, settings.windowSize);
    EXPECT_EQ(again.grid, settings.grid);
    EXPECT_EQ(again.cameraSpeed, settings.cameraSpeed);
    EXPECT_EQ(again.mouseSpeed, settings.mouseSpeed);
    EXPECT_EQ(again.autosaveSeconds, 0);
    EXPECT_EQ(again.recentFiles, settings.recentFiles);
}

TEST_F(EditorSettings, fileIsAConfiguration)
{
    Settings settings;
    settings.recentFiles = {"a b.cfg"};
    std::string problem;
    ASSERT_TRUE(writeSettings(settings, "settings.cfg", problem));
    EXPECT_EQ(fileContents("settings.cfg"), "<editor>\r\n"
                                            "   <recent>\r\n"
                                            "      <name \"a b.cfg\"/>\r\n"
                                            "   </recent>\r\n"
                                            "   <width 1280/>\r\n"
                                            "   <height 800/>\r\n"
                                            "   <grid 0.5/>\r\n"
                                            "   <camera-speed 8/>\r\n"
                                            "   <mouse-speed 0.2/>\r\n"
                                            "   <autosave-seconds 60/>\r\n"
                                            "</editor>\r\n");
}

TEST_F(EditorSettings, missingFileMeansDefaults)
{
    std::string problem = "?";
    EXPECT_EQ(readSettings("none.cfg", problem).windowSize, defaults.windowSize);
    EXPECT_EQ(problem, "");
    EXPECT_EQ(readSettings("", problem).windowSize, defaults.windowSize);
    fs::create_directory("directory.cfg");
    EXPECT_EQ(readSettings("directory.cfg", problem).windowSize, defaults.windowSize);
    EXPECT_EQ(problem, "");
}

TEST_F(EditorSettings, brokenFileMeansDefaultsAndAMessage)
{
    writeFileContents("settings.cfg", "<editor>\n<width 1000/>\n<grid 1 2/>");
    std::string problem;
    EXPECT_EQ(readSettings("settings.cfg", problem).windowSize, defaults.windowSize);
    EXPECT_EQ(problem, "the settings in settings.cfg are broken: "
                       "3:1: Token::Token(grid) -> invalid number of spaces inside entry!");
    writeFileContents("settings.cfg", "");
    readSettings("settings.cfg", problem);
    EXPECT_EQ(problem, "the settings in settings.cfg are broken: 1:1: the text is empty");
}

TEST_F(EditorSettings, valuesOutOfRangeAndWithoutSenseAreDefaults)
{
    for (const char* text : {"<e><width 319/><height 239/></e>", "<e><width 16385/><height 99999999999/></e>",
                             "<e><width x/><height 500x/></e>", "<e><width nan/><height inf/></e>"})
        EXPECT_EQ(readText(text).windowSize, defaults.windowSize) << text;
    for (const char* grid : {"-1", "1001", "nan", "x"})
        EXPECT_EQ(readText("<e><grid " + std::string(grid) + "/></e>").grid, defaults.grid);
    for (const char* speed : {"0", "1001"})
        EXPECT_EQ(readText("<e><camera-speed " + std::string(speed) + "/></e>").cameraSpeed, defaults.cameraSpeed);
    for (const char* speed : {"0", "11"})
        EXPECT_EQ(readText("<e><mouse-speed " + std::string(speed) + "/></e>").mouseSpeed, defaults.mouseSpeed);
    for (const char* seconds : {"-1", "86401"})
        EXPECT_EQ(readText("<e><autosave-seconds " + std::string(seconds) + "/></e>").autosaveSeconds,
                  defaults.autosaveSeconds);
}

TEST_F(EditorSettings, limitsThemselvesAreFine)
{
    const Settings settings = readText("<e><width 320/><height 16384/><grid 0/><camera-speed 1000/>"
                                       "<mouse-speed 0.01/><autosave-seconds 86400/></e>");
    EXPECT_EQ(settings.windowSize, Vector2<int>(320, 16384));
    EXPECT_EQ(settings.grid, 0);
    EXPECT_EQ(settings.cameraSpeed, 1000);
    EXPECT_EQ(settings.mouseSpeed, 0.01);
    EXPECT_EQ(settings.autosaveSeconds, 86400);
}

TEST_F(EditorSettings, recentFilesAreEightTheLastOneFirst)
{
    Settings settings;
    for (int i = 1; i <= 10; ++i) addRecentFile(settings, std::to_string(i));
    EXPECT_EQ(settings.recentFiles, (std::vector<std::string>{"10", "9", "8", "7", "6", "5", "4", "3"}));
    addRecentFile(settings, "7");
    EXPECT_EQ(settings.recentFiles, (std::vector<std::string>{"7", "10", "9", "8", "6", "5", "4", "3"}));
    std::string text = "<e>";
    for (int i = 0; i < 20; ++i) text += "<recent><name x/></recent>";
    EXPECT_EQ(readText(text + "</e>").recentFiles.size(), 8u);
}

TEST_F(EditorSettings, namesThatCouldNotBeReadBackAreLeftOut)
{
    Settings settings;
    settings.recentFiles = {"a\"b.cfg", "good.cfg", "c<d>.cfg", "e\nf.cfg"};
    std::string problem;
    ASSERT_TRUE(writeSettings(settings, "settings.cfg", problem));
    EXPECT_EQ(readSettings("settings.cfg", problem).recentFiles, (std::vector<std::string>{"good.cfg"}));
}

TEST_F(EditorSettings, failureToWriteIsToldAndKeepsTheOldOnes)
{
    std::string problem;
    EXPECT_FALSE(writeSettings(defaults, "nowhere/settings.cfg", problem));
    EXPECT_EQ(problem, "cannot write nowhere/settings.cfg: there is no directory nowhere");
    writeFileContents("settings.cfg", "<e><grid 2/></e>");
    fs::create_directory("settings.cfg.new");
    EXPECT_FALSE(writeSettings(defaults, "settings.cfg", problem));
    EXPECT_EQ(problem, "cannot write settings.cfg: cannot make settings.cfg.new beside it");
    EXPECT_EQ(fileContents("settings.cfg"), "<e><grid 2/></e>");
}
