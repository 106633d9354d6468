#include "file_contents.h"
#include "own_directory.h"

#include <xum/engine/log.h>
#include <xum/engine/log_hooks.h>

#include <gtest/gtest.h>

TEST(PrintHook, writesItsTextAndANewlineToStandardOutputAndNotToTheLog)
{
    getLog() << "only this" << std::endl;
    const std::vector<std::string> before = logLines();
    ::testing::internal::CaptureStdout();
    printHook("hello");
    printHook("");
    printHook("100% \xC3\xA4");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "hello\n\n100% \xC3\xA4\n");
    EXPECT_EQ(logLines(), before);
}

TEST(FailureHook, endsTheProcessAsErrorDoes)
{
    const auto fail = [] {
        enterOwnDirectory();
        failureHook("100% broken");
    };
    EXPECT_EXIT(fail(), ::testing::ExitedWithCode(fatalExitCode), "\\[\\[Error\\|100% broken\\]\\]");
    EXPECT_EQ(fileText(ownLogFile()), "ERROR: 100% broken\n");
}
