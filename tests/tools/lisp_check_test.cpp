#include "program.h"

#include <gtest/gtest.h>

namespace {

void expectCheck(const std::string& script, const std::string& problem)
{
    writeFileContents("a.lisp", script);
    const ProgramRun run = runXum("lisp check a.lisp");
    EXPECT_EQ(run.status, problem.empty() ? 0 : 1) << script;
    EXPECT_EQ(run.output, "") << script;
    EXPECT_EQ(run.errors, problem.empty() ? "" : "a.lisp:" + problem + "\n") << script;
}

} // namespace

TEST(LispCheck, readableScriptsAreNotEvaluated)
{
    expectCheck("(display \"not shown\")\n(nosuch 'a '(1 2) \"b\" 0xff 1.5 :key)\n; done\n", "");
}

TEST(LispCheck, eachReasonIsGivenWithItsPlace)
{
    expectCheck("", "1:1: there is no expression");
    expectCheck("(f)\n(g\n(h)\n",
                "4:1: a list is not closed before the end of the text (the expression begins in line 2)");
    expectCheck("(f \"open\n\")", "1:4: a string is not closed before the end of its line");
    expectCheck("(f\n" + std::string(128, 'x') + ")", "2:1: a token has more than 127 characters");
    expectCheck("(f '(1\n  '(2)))", "2:3: a quoted list stands inside a quoted list");
    expectCheck("(f)\n ' x", "2:2: an apostrophe has nothing behind it");
    expectCheck("(f)\n)", "2:1: a parenthesis closes no list");
    expectCheck("1\n 2", "2:2: several atoms stand side by side");
    expectCheck("(f\n\ta:b)", "2:2: invalid keyword or symbol name");
    expectCheck("(f 9223372036854775808)", "1:4: an integer under- or overflows");
    expectCheck("(f 0x12345678123456781)", "1:4: an integer under- or overflows");
    std::string many = "(f";
    for (int i = 0; i < 997; ++i) many += " x";
    expectCheck(many + ")", "");
    expectCheck(many + " x\n)", "2:1: an expression has more than 1000 tokens");
}

TEST(LispCheck, placesAreThoseOfTheTextWithItsComments)
{
    expectCheck("; one\n; two\n(f) ; three\n;; four\n (g a:b)", "5:5: invalid keyword or symbol name");
    expectCheck("(f 12;joined\n34 a:b)", "2:4: invalid keyword or symbol name");
    expectCheck("(f) (f \"a;b\")\n)", "1:8: a string is not closed before the end of its line");
}

TEST(LispCheck, columnsCountCharacters)
{
    expectCheck("(f \"\xC3\xA4\xC3\xB6\" a:b)", "1:9: invalid keyword or symbol name");
}

TEST(LispCheck, everyFileIsCheckedUpToItsFirstProblem)
{
    writeFileContents("good.lisp", "(f)");
    writeFileContents("bad.lisp", "a:b\n");
    writeFileContents("worse.lisp", ") ) )");
    const ProgramRun run = runXum("lisp check bad.lisp good.lisp nosuch.lisp worse.lisp");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "bad.lisp:1:1: invalid keyword or symbol name\n"
                          "nosuch.lisp: cannot be opened: No such file or directory\n"
                          "worse.lisp:1:1: a parenthesis closes no list\n");
    EXPECT_EQ(runXum("lisp check good.lisp good.lisp").status, 0);
}

TEST(LispCheck, standardInputCanBeChecked)
{
    const ProgramRun run = runXumWithInput("lisp check -", "(f)\n'");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "<stdin>:2:1: an apostrophe has nothing behind it\n");
}

TEST(LispCheck, withoutFilesIsWrongUsage)
{
    const ProgramRun run = runXum("lisp check");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.errors.find("FILE is required"), std::string::npos) << run.errors;
}

TEST(LispCheck, helpNamesTheExitStatuses)
{
    const ProgramRun run = runXum("lisp check --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.output.find("FILE:LINE:COLUMN: REASON"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("Exit status: 0 when all scripts are readable, 1 when one is not"), std::string::npos)
        << run.output;
}
