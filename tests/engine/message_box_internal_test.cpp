#include "file_contents.h"
#include "own_directory.h"

#include <xum/engine/log.h>
#include <xum/engine/message_box.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::vector<std::string> shown;
std::string lastLogLine;
int result = 0;

int recordBox(std::uint32_t flags, const char* title, const char* text)
{
    shown.push_back(std::to_string(flags) + " " + title + ": " + text);
    const std::vector<std::string> lines = logLines();
    lastLogLine = lines.empty() ? "" : lines.back();
    return result;
}

class MessageBoxFunctionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        shown.clear();
        result = 0;
        messageBoxFunction = recordBox;
    }

    void TearDown() override { messageBoxFunction = original; }

private:
    MessageBoxFunction original = messageBoxFunction;
};

} // namespace

TEST_F(MessageBoxFunctionTest, isAskedOnceForEachBox)
{
    showMessageBox("A title", "a text");
    EXPECT_EQ(shown, (std::vector<std::string>{"16 A title: a text"}));
}

TEST_F(MessageBoxFunctionTest, isAskedAfterTheLogLineWasFlushed)
{
    warning("x");
    EXPECT_EQ(shown, (std::vector<std::string>{"16 Warning: x"}));
    EXPECT_EQ(lastLogLine, "WARNING: x");
}

TEST_F(MessageBoxFunctionTest, isAskedAfterTheLogLineOfAnErrorWasFlushed)
{
    const auto report = [] {
        enterOwnDirectory();
        messageBoxFunction = [](std::uint32_t, const char*, const char*) {
            std::fputs(fileText("log.txt").c_str(), stderr);
            return 0;
        };
        error("x");
    };
    EXPECT_EXIT(report(), ::testing::ExitedWithCode(fatalExitCode), "^ERROR: x\n$");
}

TEST_F(MessageBoxFunctionTest, resultDecidesWhatGoesToStandardError)
{
    for (const int answer : {0, -1, 1}) {
        SCOPED_TRACE(answer);
        result = answer;
        ::testing::internal::CaptureStderr();
        showMessageBox("A title", "a text");
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), answer == 0 ? "" : "A title: a text\n");
    }
}
