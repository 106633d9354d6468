#include "file_contents.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <xum/engine/log.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

// The log belongs to a process and is opened once. Each test therefore reports in a process of its own, in a directory
// of its own, and looks at what that process left behind.

namespace {

using ::testing::ExitedWithCode;

bool isThereALog()
{
    return std::filesystem::exists("log.txt");
}

void sayGoodbye()
{
    std::fputs("goodbye", stderr);
}

} // namespace

TEST(Log, isCreatedByTheFirstReportAndNotBefore)
{
    const auto report = [] {
        enterOwnDirectory();
        if (isThereALog()) std::exit(1);
        getLog();
        std::exit(isThereALog() ? 0 : 2);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "");
}

TEST(Log, warningCreatesTheLogWithItsLine)
{
    const auto report = [] {
        enterOwnDirectory();
        warning("x");
        std::exit(0);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "\\[\\[Warning\\|x\\]\\]");
    EXPECT_EQ(fileText(ownLogFile()), "WARNING: x\n");
}

TEST(Log, errorWritesItsLineShowsABoxAndEndsTheProcess)
{
    const auto report = [] {
        enterOwnDirectory();
        getLog() << "before" << std::endl;
        error("x");
    };
    EXPECT_EXIT(report(), ExitedWithCode(fatalExitCode), "\\[\\[Error\\|x\\]\\]");
    EXPECT_EQ(fileText(ownLogFile()), "before\nERROR: x\n");
}

TEST(Log, errorEndsTheProcessThroughItsExitHandlers)
{
    const auto report = [] {
        enterOwnDirectory();
        std::atexit(sayGoodbye);
        getLog() << "not yet flushed";
        error("x");
    };
    EXPECT_EXIT(report(), ExitedWithCode(fatalExitCode), "goodbye");
    EXPECT_EQ(fileText(ownLogFile()), "not yet flushedERROR: x\n");
}

TEST(Log, nextRunReplacesTheLog)
{
    writeFileContents(ownLogFile(), "the log of an earlier run, longer than what this one writes\n");
    const auto report = [] {
        enterOwnDirectory();
        warning("new");
        std::exit(0);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "WARNING: new\n");
}

TEST(Log, reportsOfOneRunFollowEachOther)
{
    const auto report = [] {
        enterOwnDirectory();
        warning("one");
        getLog() << "two" << std::endl;
        warning("three");
        std::exit(&getLog() == &getLog() ? 0 : 1);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "WARNING: one\ntwo\nWARNING: three\n");
}

TEST(Log, lineIsFlushedSoThatItSurvivesASuddenEnd)
{
    const auto report = [] {
        enterOwnDirectory();
        warning("x");
        std::_Exit(0); // nothing is flushed here
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "WARNING: x\n");
}

TEST(Log, isClosedWhenTheProcessExits)
{
    const auto report = [] {
        enterOwnDirectory();
        getLog() << "a line that nobody flushed";
        std::exit(0);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "a line that nobody flushed");
}

TEST(Log, staysInTheDirectoryOfTheFirstReport)
{
    const auto report = [] {
        enterOwnDirectory();
        warning("one");
        std::filesystem::create_directory("elsewhere");
        std::filesystem::current_path("elsewhere");
        warning("two");
        std::exit(isThereALog() ? 1 : 0);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "WARNING: one\nWARNING: two\n");
}

TEST(Log, thatCannotBeOpenedLosesWhatIsWritten)
{
    std::filesystem::create_directory(ownLogFile());
    const auto report = [] {
        enterOwnDirectory();
        if (getLog().is_open() || !getLog().fail()) std::exit(1);
        warning("lost");
        std::filesystem::remove("log.txt");
        warning("lost too"); // the stream is not opened a second time
        std::exit(getLog().fail() && !isThereALog() && shownMessageBoxes().size() == 2 ? 0 : 2);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "\\[\\[Warning\\|lost\\]\\]");
}

TEST(Log, errorWithoutALogStillEndsTheProcess)
{
    std::filesystem::create_directory(ownLogFile());
    const auto report = [] {
        enterOwnDirectory();
        error("x");
    };
    EXPECT_EXIT(report(), ExitedWithCode(fatalExitCode), "\\[\\[Error\\|x\\]\\]");
}

TEST(Log, takesEveryByteOfAMessageAndTheBoxWhatComesBeforeANul)
{
    const auto report = [] {
        enterOwnDirectory();
        warning(std::string("a\0b\xFF", 4));
        warning("");
        std::exit(0);
    };
    EXPECT_EXIT(report(), ExitedWithCode(0), "\\[\\[Warning\\|a\\]\\]");
    EXPECT_EQ(fileText(ownLogFile()), std::string("WARNING: a\0b\xFF\nWARNING: \n", 24));
}
