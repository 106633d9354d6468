#include "program.h"

#include <gtest/gtest.h>

// The shell without a terminal; lisp_terminal_test.cpp has the other.

namespace {

void expectSession(const std::string& input, int status, const std::string& output, const std::string& errors)
{
    const ProgramRun run = runXumWithInput("lisp", input);
    EXPECT_EQ(run.status, status) << input;
    EXPECT_EQ(run.output, output) << input;
    EXPECT_EQ(run.errors, errors) << input;
}

} // namespace

TEST(LispShell, eachValueIsPrintedWithoutPromptOrGreeting)
{
    expectSession("(+ 1 2)\n\"text\"\n(define x :red)\n", 0, ":integer (3)\n:string (text)\n:keyword (:red)\n", "");
}

TEST(LispShell, expressionsTakeAsManyLinesAsTheyNeed)
{
    expectSession("(+ 1 ; one\n\n  2\n)\n", 0, ":integer (3)\n", "");
    expectSession("(+ 1 1) (+ 2\n2) (+ 3 3)", 0, ":integer (2)\n:integer (4)\n:integer (6)\n", "");
}

TEST(LispShell, lineWithoutAnEndIsEvaluatedToo)
{
    expectSession("5", 0, ":integer (5)\n", "");
}

TEST(LispShell, carriageReturnsAreBlanks)
{
    expectSession("(+ 1\r\n2)\r\n:help +pi+\r\n", 0,
                  ":integer (3)\n+pi+\n    the ratio of a circle's circumference to its diameter\n", "");
}

TEST(LispShell, emptyInputAndCommentsPrintNothing)
{
    expectSession("", 0, "", "");
    expectSession("\n  \n; only a comment\n\t\n", 0, "", "");
}

TEST(LispShell, unreadableExpressionIsPlacedAndTheShellGoesOn)
{
    expectSession("1\n2 a\n(+ 1 2)\n", 1, ":integer (1)\nerror: invalid input!\n:integer (3)\n",
                  "<stdin>:2:3: several atoms stand side by side\n");
    expectSession("\"open\n5\n", 1, ":integer (5)\n",
                  "<stdin>:1:1: a string is not closed before the end of its line\n");
    expectSession("(f\n 'a\n \"open\n5\n", 1, ":integer (5)\n",
                  "<stdin>:3:2: a string is not closed before the end of its line\n");
    expectSession("'\n5\n", 1, ":integer (5)\n",
                  "xum: tokenize() -> empty token!\n<stdin>:1:1: an apostrophe has nothing behind it\n");
    expectSession(std::string("a\0b\n5\n", 6), 1, ":integer (5)\n", "<stdin>:1: is no text (it holds a zero byte)\n");
}

TEST(LispShell, listThatIsNeverClosedIsReportedAtTheEnd)
{
    expectSession("5\n(+ 1\n2\n", 1, ":integer (5)\n",
                  "<stdin>:4:1: a list is not closed before the end of the text (the expression begins in line 2)\n");
}

TEST(LispShell, quitEndsIt)
{
    expectSession("1\n:quit\n2\n", 0, ":integer (1)\n", "");
    expectSession("  :Quit \n2\n", 0, "", "");
}

TEST(LispShell, commandsInsideAnOpenListAreKeywords)
{
    expectSession("(print\n:quit\n)\n", 0, ":keyword (:quit)\n:nil\n", "");
}

TEST(LispShell, helpShowsSignatureAndText)
{
    expectSession(":help string-take\n:help STRING-TAKE\n", 0,
                  "string-take (:integer -> :string -> :string)\n    the first bytes of a string, at most so many\n"
                  "string-take (:integer -> :string -> :string)\n    the first bytes of a string, at most so many\n",
                  "");
    expectSession("(define f (closure ((x :integer)) x))\n:help f\n:help nosuch\n", 0,
                  ":closure (:integer -> :any)\nf (:integer -> :any)\nThere is no function of the name nosuch\n", "");
}

TEST(LispShell, helpListsNamesAndCommands)
{
    const ProgramRun run = runXumWithInput("lisp", ":help\n");
    for (const char* line : {"read ", "system-info ", "+pi+ ", ":help NAME ", ":quit "})
        EXPECT_NE(("\n" + run.output).find(std::string("\n") + line), std::string::npos) << line;
}

TEST(LispShell, valuesOfEarlierLinesCanBeCollected)
{
    const ProgramRun run = runXumWithInput("lisp", "(define x (list 1 2))\n(garbage-collection)\n(head (tail x))\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.output.find("\n:nil\n:integer (2)\n"), std::string::npos) << run.output;
}

TEST(LispShell, scriptsAreLoadedFromTheWorkingDirectory)
{
    writeFileContents("greeting.lisp", "(display \"hello\")");
    expectSession("(load \"greeting\")\n", 0, "hello\n:boolean (:true)\n", "");
}
