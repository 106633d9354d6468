#include "engine_fixtures.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <xum/engine/log.h>

#include <gtest/gtest.h>

namespace {

/// A test that starts without shown boxes and with boxes that can be shown.
class MessageBox : public ::testing::Test {
protected:
    void SetUp() override
    {
        shownMessageBoxes().clear();
        setMessageBoxResult(0);
        setEnvironment("XUM_MESSAGE_BOXES", "");
    }

    void TearDown() override { SetUp(); }

    static std::string standardErrorOfWarning(const std::string& message)
    {
        ::testing::internal::CaptureStderr();
        warning(message);
        return ::testing::internal::GetCapturedStderr();
    }
};

} // namespace

TEST_F(MessageBox, ofAWarningHasTheErrorIconAndNoParent)
{
    EXPECT_EQ(standardErrorOfWarning("something odd"), "[[Warning|something odd]]\n");
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    const ShownMessageBox& box = shownMessageBoxes().front();
    EXPECT_EQ(box.flags, Uint32{SDL_MESSAGEBOX_ERROR});
    EXPECT_EQ(box.title, "Warning");
    EXPECT_EQ(box.text, "something odd");
    EXPECT_EQ(box.parent, nullptr);
}

TEST_F(MessageBox, ofAnErrorHasTheErrorIconAndNoParent)
{
    const auto report = [] {
        enterOwnDirectory();
        std::atexit([] {
            const ShownMessageBox& box = shownMessageBoxes().back();
            std::fprintf(stderr, "%zu box, flags %x, %s parent", shownMessageBoxes().size(), unsigned{box.flags},
                         box.parent == nullptr ? "no" : "a");
        });
        error("something bad");
    };
    EXPECT_EXIT(report(), ::testing::ExitedWithCode(fatalExitCode),
                "\\[\\[Error\\|something bad\\]\\]\n1 box, flags 10, no parent");
}

TEST_F(MessageBox, thatCannotBeShownIsWrittenToStandardError)
{
    setMessageBoxResult(-1);
    EXPECT_EQ(standardErrorOfWarning("x"), "[[Warning|x]]\nWarning: x\n");
}

TEST_F(MessageBox, ofAnErrorThatCannotBeShownIsWrittenToStandardError)
{
    const auto report = [] {
        enterOwnDirectory();
        setMessageBoxResult(-1);
        error("x");
    };
    EXPECT_EXIT(report(), ::testing::ExitedWithCode(fatalExitCode), "\\]\nError: x\n");
}

TEST_F(MessageBox, isNotAttemptedWhereTheEnvironmentForbidsIt)
{
    setEnvironment("XUM_MESSAGE_BOXES", "0");
    EXPECT_EQ(standardErrorOfWarning("x"), "Warning: x\n");
    EXPECT_TRUE(shownMessageBoxes().empty());
    const auto report = [] {
        enterOwnDirectory();
        error("y");
    };
    EXPECT_EXIT(report(), ::testing::ExitedWithCode(fatalExitCode), "^Error: y\n$");
}

TEST_F(MessageBox, isShownForEveryOtherSettingOfTheEnvironment)
{
    for (const char* setting : {"", "1", "00", "no"}) {
        SCOPED_TRACE(setting);
        setEnvironment("XUM_MESSAGE_BOXES", setting);
        EXPECT_EQ(standardErrorOfWarning("x"), "[[Warning|x]]\n");
    }
}
