#include "game_settings.h"

#include "engine_fixtures.h"
#include "file_contents.h"

#include <path_name.h>

#include <filesystem>

namespace {

const std::string fileName = "settings-test.cfg";

class Settings : public InputFixture {
protected:
    void SetUp() override
    {
        InputFixture::SetUp();
        std::filesystem::remove(fileName);
    }

    GameSettings read(const std::string& text)
    {
        writeFileContents(fileName, text);
        return readGameSettings(fileName, keys(), problems);
    }

    KeyBindings& keys()
    {
        if (!bindings) bindings = std::make_unique<KeyBindings>(*input);
        return *bindings;
    }

    std::unique_ptr<KeyBindings> bindings;
    std::string problems;
};

} // namespace

TEST_F(Settings, missingFileMeansDefaults)
{
    for (const char* missing : {"nowhere.cfg", "", "."}) {
        const GameSettings settings = readGameSettings(missing, keys(), problems);
        EXPECT_EQ(settings.windowSize, (Vector2<int>{1024, 768}));
        EXPECT_FALSE(settings.isFullscreen);
        EXPECT_EQ(settings.volume, 100);
        EXPECT_FALSE(settings.isMute);
        EXPECT_FALSE(settings.isFileBroken);
        EXPECT_EQ(problems, "");
    }
}

TEST_F(Settings, allOfThemAreRead)
{
    const GameSettings settings = read("<game><width 800/><height 600/><full-screen yes/><volume 35/><mute yes/>"
                                       "<keys><jump \"Right Ctrl\"/></keys></game>");
    EXPECT_EQ(settings.windowSize, (Vector2<int>{800, 600}));
    EXPECT_TRUE(settings.isFullscreen);
    EXPECT_EQ(settings.volume, 35);
    EXPECT_TRUE(settings.isMute);
    EXPECT_EQ(keys().getKeyName(Action::Jump), "Right Ctrl");
    EXPECT_EQ(problems, "");
    EXPECT_EQ(readWindowSettings(fileName).windowSize, (Vector2<int>{800, 600}));
}

TEST_F(Settings, whatMakesNoSenseIsNamedAndKeepsItsDefault)
{
    const struct {
        const char* entry;
        const char* problem;
    } cases[] = {
        {"<width 159/>", "<width> '159' is no number from 160 to 16384\n"},
        {"<width 16385/>", "<width> '16385' is no number from 160 to 16384\n"},
        {"<height tall/>", "<height> 'tall' is no number from 120 to 16384\n"},
        {"<volume 101/>", "<volume> '101' is no number from 0 to 100\n"},
        {"<volume -1/>", "<volume> '-1' is no number from 0 to 100\n"},
        {"<volume 50percent/>", "<volume> '50percent' is no number from 0 to 100\n"},
        {"<mute perhaps/>", "<mute> 'perhaps' is neither yes nor no\n"},
        {"<full-screen YES/>", "<full-screen> 'YES' is neither yes nor no\n"},
        {"<keys><jump Hop/></keys>", "<jump> 'Hop' is no key\n"},
    };
    for (const auto& [entry, problem] : cases) {
        const GameSettings settings = read("<game>" + std::string(entry) + "</game>");
        EXPECT_EQ(problems, fileName + ": " + problem);
        EXPECT_EQ(settings.windowSize, (Vector2<int>{1024, 768})) << entry;
        EXPECT_EQ(settings.volume, 100) << entry;
        EXPECT_FALSE(settings.isMute || settings.isFullscreen || settings.isFileBroken) << entry;
        EXPECT_EQ(keys().getKeyName(Action::Jump), "Space");
    }
}

TEST_F(Settings, unknownNamesAreNoProblem)
{
    EXPECT_EQ(read("<game><color red/><volume 20/><keys><fly X/></keys><more></more></game>").volume, 20);
    EXPECT_EQ(problems, "");
}

TEST_F(Settings, brokenFileIsOneProblem)
{
    for (const char* broken : {"", "<game>", "volume 20", "<game><volume/></game>"}) {
        const GameSettings settings = read(broken);
        EXPECT_TRUE(settings.isFileBroken) << broken;
        EXPECT_EQ(problems.rfind("the settings in " + fileName + " are broken: 1:", 0), 0u) << problems;
        EXPECT_EQ(problems.find('\n'), problems.size() - 1);
    }
}

TEST_F(Settings, whatIsWrittenIsRead)
{
    GameSettings written;
    written.windowSize = {640, 480};
    written.isFullscreen = true;
    written.volume = 5;
    written.isMute = true;
    EXPECT_TRUE(keys().bind(Action::Left, "Keypad 4"));
    EXPECT_TRUE(writeGameSettings(written, keys(), fileName, problems)) << problems;
    KeyBindings others(*input);
    const GameSettings settings = readGameSettings(fileName, others, problems);
    EXPECT_EQ(problems, "");
    EXPECT_EQ(settings.windowSize, (Vector2<int>{640, 480}));
    EXPECT_TRUE(settings.isFullscreen);
    EXPECT_EQ(settings.volume, 5);
    EXPECT_TRUE(settings.isMute);
    EXPECT_EQ(others.getKeyName(Action::Left), "Keypad 4");
    EXPECT_EQ(others.getKeyName(Action::Right), "D");
}

TEST_F(Settings, fileHasALineForEach)
{
    EXPECT_TRUE(writeGameSettings({}, keys(), fileName, problems));
    const std::string text = fileContents(fileName);
    EXPECT_EQ(text.substr(0, text.find("<width")), "<game>\r\n   <keys>\r\n"
                                                   "      <forwards W/>\r\n"
                                                   "      <backwards S/>\r\n"
                                                   "      <left A/>\r\n"
                                                   "      <right D/>\r\n"
                                                   "      <jump Space/>\r\n"
                                                   "      <run \"Left Shift\"/>\r\n"
                                                   "      <turn-left Left/>\r\n"
                                                   "      <turn-right Right/>\r\n"
                                                   "      <look-up Up/>\r\n"
                                                   "      <look-down Down/>\r\n"
                                                   "      <confirm Return/>\r\n"
                                                   "      <back Escape/>\r\n"
                                                   "      <mute N/>\r\n"
                                                   "      <louder PageUp/>\r\n"
                                                   "      <quieter PageDown/>\r\n"
                                                   "      <full-screen F11/>\r\n"
                                                   "      <catch-mouse M/>\r\n"
                                                   "      <reload-scripts F5/>\r\n"
                                                   "   </keys>\r\n   ");
    EXPECT_EQ(text.substr(text.find("<width")), "<width 1024/>\r\n   <height 768/>\r\n   <full-screen no/>\r\n"
                                                "   <volume 100/>\r\n   <mute no/>\r\n</game>\r\n");
}

TEST_F(Settings, keysWhoseNamesTheFormatCannotHoldAreLeftOut)
{
    for (const char* key : {"\"", "<", ">", "/"}) {
        EXPECT_TRUE(keys().bind(Action::Jump, key));
        EXPECT_TRUE(writeGameSettings({}, keys(), fileName, problems));
        KeyBindings others(*input);
        readGameSettings(fileName, others, problems);
        EXPECT_EQ(problems, "") << key;
        EXPECT_EQ(others.getKeyName(Action::Jump), std::string(key) == "/" ? "/" : "Space") << key;
    }
}

TEST_F(Settings, unwritableFileIsNamed)
{
    EXPECT_FALSE(writeGameSettings({}, keys(), "nowhere/game.cfg", problems));
    EXPECT_EQ(problems, "cannot write nowhere/game.cfg: there is no directory nowhere");
    EXPECT_FALSE(writeGameSettings({}, keys(), ".", problems));
    EXPECT_EQ(problems, "cannot write .: it is a directory");
}

#ifndef _WIN32
TEST_F(Settings, fileLiesInTheUsersDirectoryWhichIsMade)
{
    const std::string here = std::filesystem::current_path().generic_string();
    setEnvironment("XDG_CONFIG_HOME", (here + "/user").c_str());
    EXPECT_EQ(findGameSettingsFile(), here + "/user/xum-engine/game.cfg");
    EXPECT_TRUE(std::filesystem::is_directory("user/xum-engine"));
    setEnvironment("XDG_CONFIG_HOME", "relative");
    setEnvironment("HOME", (here + "/home").c_str());
    EXPECT_EQ(findGameSettingsFile(), here + "/home/.config/xum-engine/game.cfg");
    writeFileContents("occupied", "");
    setEnvironment("XDG_CONFIG_HOME", (here + "/occupied").c_str());
    EXPECT_EQ(findGameSettingsFile(), "");
    setEnvironment("XDG_CONFIG_HOME", "");
    setEnvironment("HOME", "");
    EXPECT_EQ(findGameSettingsFile(), "");
}
#else
TEST_F(Settings, fileLiesInTheUsersDirectoryWhateverLettersItsNameHas)
{
    readNarrowNamesAsTheSystemDoes();
    const std::filesystem::path directory = std::filesystem::current_path() / L"J\u00F6rg \u20AC";
    std::filesystem::create_directory(directory);
    setEnvironment("APPDATA", nameOf(directory).c_str());
    EXPECT_EQ(findGameSettingsFile(), nameOf(directory) + "/xum-engine/game.cfg");
    EXPECT_TRUE(std::filesystem::is_directory(directory / "xum-engine"));
    ASSERT_TRUE(writeGameSettings({}, keys(), findGameSettingsFile(), problems)) << problems;
    EXPECT_TRUE(std::filesystem::is_regular_file(directory / "xum-engine" / "game.cfg"));
    setEnvironment("APPDATA", "");
    EXPECT_EQ(findGameSettingsFile(), "");
}
#endif
