#include "file_contents.h"
#include "own_directory.h"

#include <game_launcher.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace {

namespace fs = std::filesystem;

class LaunchedGame : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }

    /// A game that is a script of the shell.
    static std::string makeGame(const std::string& script)
    {
        writeFileContents("game.sh", "#!/bin/sh\n" + script + "\n");
        fs::permissions("game.sh", fs::perms::owner_all);
        return fs::absolute("game.sh").string();
    }

    /// What is told when it has ended.
    static std::string waitFor(GameLauncher& game)
    {
        std::string message;
        while (!game.hasEnded(message)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return message;
    }
};

} // namespace

TEST_F(LaunchedGame, liesBesideTheEditor)
{
    std::string problem;
    GameLauncher game("");
    if (game.start({"--no-such-option"}, problem))
        EXPECT_EQ(waitFor(game), "The game has ended with status 2");
    else
        EXPECT_NE(problem.find("xum-game"), std::string::npos) << problem;
}

#ifdef _WIN32

TEST_F(LaunchedGame, getsItsArgumentsOneByOne)
{
    std::string problem;
    GameLauncher game("");
    ASSERT_TRUE(game.start({"--data", "with a blank\\", "--help"}, problem)) << problem;
    EXPECT_EQ(waitFor(game), "The game has ended") << "--help is an argument of its own";
}

TEST_F(LaunchedGame, programThatIsMissingIsTold)
{
    std::string problem;
    EXPECT_FALSE(GameLauncher("./none.exe").start({}, problem));
    EXPECT_EQ(problem, "The game ./none.exe does not start: No such file or directory");
}

#else // where a script is a program, too

TEST_F(LaunchedGame, getsItsArgumentsOneByOne)
{
    GameLauncher game(makeGame("for a in \"$@\"; do echo \"[$a]\"; done > arguments.txt"));
    std::string problem;
    ASSERT_TRUE(game.start({"--data", "a b/", "--map", "c\"d'.map", ""}, problem)) << problem;
    EXPECT_EQ(waitFor(game), "The game has ended");
    EXPECT_EQ(fileContents("arguments.txt"), "[--data]\n[a b/]\n[--map]\n[c\"d'.map]\n[]\n");
}

TEST_F(LaunchedGame, endIsToldOnce)
{
    GameLauncher game(makeGame("exit 0"));
    std::string message;
    EXPECT_FALSE(game.hasEnded(message)) << "none was started";
    ASSERT_TRUE(game.start({}, message));
    EXPECT_EQ(waitFor(game), "The game has ended");
    EXPECT_FALSE(game.hasEnded(message));
}

TEST_F(LaunchedGame, failureIsTold)
{
    std::string problem;
    GameLauncher failing(makeGame("exit 3"));
    ASSERT_TRUE(failing.start({}, problem));
    EXPECT_EQ(waitFor(failing), "The game has ended with status 3");
    GameLauncher crashing(makeGame("kill -SEGV $$"));
    ASSERT_TRUE(crashing.start({}, problem));
    EXPECT_EQ(waitFor(crashing), "The game has crashed");
}

TEST_F(LaunchedGame, oneRunsAtATime)
{
    GameLauncher game(makeGame("while [ ! -e stop ]; do sleep 0.01; done"));
    std::string problem;
    ASSERT_TRUE(game.start({}, problem));
    EXPECT_FALSE(game.start({}, problem));
    EXPECT_EQ(problem, "The game is still running");
    writeFileContents("stop", "");
    EXPECT_EQ(waitFor(game), "The game has ended");
    EXPECT_TRUE(game.start({}, problem));
    EXPECT_EQ(waitFor(game), "The game has ended");
}

TEST_F(LaunchedGame, programThatIsMissingIsTold)
{
    std::string problem;
    EXPECT_FALSE(GameLauncher("./none").start({}, problem));
    EXPECT_EQ(problem, "The game ./none does not start: No such file or directory");
    writeFileContents("text", "");
    EXPECT_FALSE(GameLauncher("./text").start({}, problem));
    EXPECT_EQ(problem, "The game ./text does not start: Permission denied");
}

#endif
