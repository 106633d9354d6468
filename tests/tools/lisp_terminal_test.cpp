#include "file_contents.h"
#include "own_directory.h"
#include "pseudo_terminal.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

// The shell with a terminal.

namespace {

class LispTerminal : public testing::Test {
protected:
    LispTerminal()
    {
        setenv("TERM", "vt100", 1);
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1); // libedit keeps the name of an added command for ever
        setenv("HOME", ownDirectory().c_str(), 1);
        unsetenv("XDG_STATE_HOME");
        if (XUM_HAS_LINE_EDITING == 0) canEdit = false;
    }

    std::string historyFile() const { return (ownDirectory() / ".local/state/xum/history").string(); }

    bool canEdit = true;
};

const std::string prompt = "lisp> ";
const std::string controlC = "\x03";
const std::string controlD = "\x04";
const std::string controlP = "\x10"; // the line before

/// What is shown runs ahead by a moment of what is waited for or evaluated; Ctrl-C within that moment is not noticed.
bool interrupt(PseudoTerminal& terminal, const std::string& answer)
{
    for (int i = 0; i < 30; ++i) {
        terminal.type(controlC);
        if (terminal.waitFor(answer, 1000)) return true;
    }
    return false;
}

bool abandonLine(PseudoTerminal& terminal)
{
    return interrupt(terminal, "^C\r\n" + prompt);
}

} // namespace

#define ASSERT_SHOWN(terminal, text) ASSERT_TRUE((terminal).waitFor(text)) << (terminal).getShown()

TEST_F(LispTerminal, greetingIsOneLineAndPromptsShowWhatIsOpen)
{
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, "xum-lisp 0.0.1. :help lists what there is, :quit or Ctrl-D ends.\r\n");
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(+ 1\n");
    ASSERT_SHOWN(terminal, "....> ");
    terminal.type("2)\n");
    ASSERT_SHOWN(terminal, ":integer (3)");
    ASSERT_SHOWN(terminal, prompt);
    terminal.type(":quit\n");
    EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(LispTerminal, endOfInputEndsTheShellWithoutAFailure)
{
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("1 2\n");
    ASSERT_SHOWN(terminal, "<stdin>:1:3: several atoms stand side by side");
    ASSERT_SHOWN(terminal, prompt);
    terminal.type(controlD);
    EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(LispTerminal, placesAreCountedFromTheInputThatIsSeen)
{
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("1\n2\n(f\n007)\n");
    ASSERT_SHOWN(terminal, "<stdin>:2:1: an integer under- or overflows");
}

TEST_F(LispTerminal, namesAreCompletedByTheTabulator)
{
    if (!canEdit) GTEST_SKIP() << "built without line editing";
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(define my-long-name 42)\n");
    ASSERT_SHOWN(terminal, ":integer (42)");
    terminal.type("my-lo\t\n");
    ASSERT_SHOWN(terminal, ":integer (42)");
    terminal.type("(STRING-T\t2 \"abc\")\n");
    ASSERT_SHOWN(terminal, ":string (ab)");
    terminal.type("hash-table-\t");
    ASSERT_SHOWN(terminal, "hash-table-for-each");
    ASSERT_SHOWN(terminal, "hash-table-size");
    ASSERT_SHOWN(terminal, prompt);
    ASSERT_TRUE(abandonLine(terminal)) << terminal.getShown();
    terminal.type(":q\t\n");
    EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(LispTerminal, interruptionAbandonsTheInput)
{
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    if (!canEdit) GTEST_SKIP() << "built without line editing";
    terminal.type("(display\n");
    ASSERT_SHOWN(terminal, "....> ");
    terminal.type("\"never\"");
    ASSERT_TRUE(abandonLine(terminal)) << terminal.getShown();
    terminal.type("nosuch\n");
    ASSERT_SHOWN(terminal, "error: symbol 'nosuch' has no binding!");
    ASSERT_SHOWN(terminal, prompt);
    terminal.type(controlD);
    EXPECT_EQ(terminal.waitForEnd(), 0);
    EXPECT_EQ(terminal.getShown().find("never\r\n"), std::string::npos) << terminal.getShown();
}

TEST_F(LispTerminal, interruptionGivesUpTheRunningEvaluation)
{
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(define f (closure () (f)))\n");
    ASSERT_SHOWN(terminal, ":closure (:any)");
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(display \"begin\") (f) (display \"not reached\")\n");
    ASSERT_SHOWN(terminal, "begin\r\n");
    ASSERT_SHOWN(terminal, ":nil");
    ASSERT_TRUE(interrupt(terminal, "interrupted")) << terminal.getShown();
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(+ 20 3)\n");
    ASSERT_SHOWN(terminal, ":integer (23)");
    EXPECT_EQ(terminal.getShown().find("not reached\r\n"), std::string::npos) << terminal.getShown();
}

TEST_F(LispTerminal, linesAreRememberedForTheNextRun)
{
    if (!canEdit) GTEST_SKIP() << "built without line editing";
    {
        PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
        ASSERT_SHOWN(terminal, prompt);
        terminal.type("(+ 40 2)\n");
        ASSERT_SHOWN(terminal, ":integer (42)");
        ASSERT_SHOWN(terminal, prompt);
        terminal.type(controlD);
        EXPECT_EQ(terminal.waitForEnd(), 0);
    }
    EXPECT_TRUE(std::filesystem::exists(historyFile()));
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type(controlP + "\n");
    ASSERT_SHOWN(terminal, ":integer (42)");
}

TEST_F(LispTerminal, historyLiesInTheStateDirectoryThatIsNamed)
{
    if (!canEdit) GTEST_SKIP() << "built without line editing";
    const std::filesystem::path state = ownDirectory() / "state";
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(+ 40 2)\n");
    ASSERT_SHOWN(terminal, ":integer (42)");
    EXPECT_TRUE(std::filesystem::exists(state / "xum" / "history"));
    EXPECT_FALSE(std::filesystem::exists(historyFile()));
}

TEST_F(LispTerminal, placeThatCannotBeWrittenIsNoHindrance)
{
    setenv("XDG_STATE_HOME", "/dev/null", 1);
    PseudoTerminal terminal(XUM_PROGRAM, {"lisp"});
    ASSERT_SHOWN(terminal, prompt);
    terminal.type("(+ 40 2)\n");
    ASSERT_SHOWN(terminal, ":integer (42)");
    ASSERT_SHOWN(terminal, prompt);
    terminal.type(controlD);
    EXPECT_EQ(terminal.waitForEnd(), 0);
}
