#include "program.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

void expectRun(const std::string& arguments, int status, const std::string& output, const std::string& errors)
{
    const ProgramRun run = runXum(arguments);
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.output, output);
    EXPECT_EQ(run.errors, errors);
}

void setDataRoot(const std::string& directory)
{
#ifdef _WIN32
    _putenv_s("XUM_DATA_ROOT", directory.c_str());
#else
    setenv("XUM_DATA_ROOT", directory.c_str(), 1);
#endif
}

} // namespace

// ---- scripts ------------------------------------------------------------------------------------------------------

TEST(LispCommand, scriptIsRunWithoutItsComments)
{
    writeFileContents("a.lisp", "; first\n(display \"one\") ; (display \"two\")\n;;\n(display \"three\")\n");
    expectRun("lisp a.lisp", 0, "one\nthree\n", "");
}

TEST(LispCommand, commentTakesItsLineFeedAsInLoadedScripts)
{
    writeFileContents("a.lisp", "(print (+ 1 12;x\n34))");
    expectRun("lisp a.lisp", 0, ":integer (1235)\n", "");
}

TEST(LispCommand, scriptsShareOneInterpreterAndRunInOrder)
{
    writeFileContents("a.lisp", "(define x 1)");
    writeFileContents("b.lisp", "(print x)");
    expectRun("lisp a.lisp b.lisp", 0, ":integer (1)\n", "");
}

TEST(LispCommand, valuesOfEarlierScriptsAreCollectableInLaterOnes)
{
    writeFileContents("a.lisp", "(define f (closure () 7)) (list 1 2 3 4 5 6 7 8)");
    writeFileContents("b.lisp", "(garbage-collection) (print (f))");
    const ProgramRun together = runXum("lisp a.lisp b.lisp");
    EXPECT_NE(together.output.find(":integer (7)\n"), std::string::npos) << together.output;

    // In one script everything is still locked, so more objects stay.
    writeFileContents("c.lisp", fileContents("a.lisp") + fileContents("b.lisp"));
    const auto live = [](const std::string& output) { return std::atoi(output.c_str() + output.find(": ") + 2); };
    const auto liveObjects = [&live](const std::string& output) {
        return live(output.substr(output.find("garbage collector")));
    };
    writeFileContents("d.lisp", "(system-info)");
    EXPECT_LT(liveObjects(runXum("lisp a.lisp b.lisp d.lisp").output),
              liveObjects(runXum("lisp c.lisp d.lisp").output));
}

TEST(LispCommand, failedEvaluationIsNoFailure)
{
    writeFileContents("a.lisp", "(nosuch) (display \"on\")");
    expectRun("lisp a.lisp", 0, "error: symbol 'nosuch' has no binding!\nerror: expected :closure (got :nil)!\non\n",
              "");
}

TEST(LispCommand, unreadableScriptSaysWhereAndEndsTheRun)
{
    writeFileContents("a.lisp", "(display \"one\")\n(f ;x\n  007)\n(display \"two\")");
    writeFileContents("b.lisp", "(display \"three\")");
    expectRun("lisp a.lisp b.lisp", 1,
              "one\nerror: integer under/overflow!\nerror: out of memory!\nerror: could not create root list!\n",
              "a.lisp:3:3: an integer under- or overflows\n");
}

TEST(LispCommand, emptyScriptCannotBeRead)
{
    writeFileContents("empty.lisp", "");
    writeFileContents("comments.lisp", "; nothing\n; else\n");
    expectRun("lisp empty.lisp", 1, "", "empty.lisp:1:1: there is no expression\n");
    expectRun("lisp comments.lisp", 1, "", "comments.lisp:3:1: there is no expression\n");
}

TEST(LispCommand, filesThatAreNoScriptsAreNamed)
{
    expectRun("lisp nosuch.lisp", 1, "", "nosuch.lisp: cannot be opened: No such file or directory\n");
    std::filesystem::create_directory("directory.lisp");
    expectRun("lisp directory.lisp", 1, "", "directory.lisp: is a directory\n");
    writeFileContents("binary.lisp", std::string("(display \"a\")\0(display \"b\")", 28));
    expectRun("lisp binary.lisp", 1, "", "binary.lisp: is no text (it holds a zero byte)\n");
    writeFileContents("huge.lisp", "1");
    std::filesystem::resize_file("huge.lisp", (64u << 20) + 1);
    expectRun("lisp huge.lisp", 1, "", "huge.lisp: is too large for a script (more than 64 MiB)\n");
}

#ifdef __linux__
TEST(LispCommand, unreadableFilesAreNamed)
{
    expectRun("lisp /proc/self/mem", 1, "", "/proc/self/mem: cannot be read: Input/output error\n");
    expectRun("lisp /dev/zero", 1, "", "/dev/zero: is too large for a script (more than 64 MiB)\n");
}
#endif

TEST(LispCommand, fatalMessagesGoToStandardErrorAndEndTheProgram)
{
    writeFileContents("a.lisp", "(display \"one\") (read \"'\") (display \"two\")");
    expectRun("lisp a.lisp", 1, "one\n", "xum: tokenize() -> empty token!\n");
    writeFileContents("b.lisp", "(closure ((x :integer :rest)) x)");
    expectRun("lisp b.lisp", 1, "", "xum: named_parameter for closure! TODO!\n");
    writeFileContents("c.lisp", "(array 0x7fffffffffffffff \":integer\")");
    expectRun("lisp c.lisp", 1, "", "xum: fatal: invalid allocate size!\n");
}

TEST(LispCommand, emptyTokenOfTheScriptItselfIsPlaced)
{
    writeFileContents("a.lisp", "(display \"one\")\n '\n");
    expectRun("lisp a.lisp", 1, "one\n",
              "xum: tokenize() -> empty token!\na.lisp:2:2: an apostrophe has nothing behind it\n");
}

// ---- where scripts are loaded from --------------------------------------------------------------------------------

TEST(LispCommand, scriptsAreLoadedFromTheDirectoryOfTheRunningOne)
{
    std::filesystem::create_directories("scripts/parts");
    writeFileContents("scripts/a.lisp", "(load \"parts/b\") (print x)");
    writeFileContents("scripts/parts/b.lisp", "(define x 5)");
    writeFileContents("c.lisp", "(load \"d\")");
    writeFileContents("d.lisp", "(display \"d\")");
    expectRun("lisp scripts/a.lisp c.lisp", 0, ":integer (5)\nd\n", "");
}

TEST(LispCommand, scriptsAreLoadedFromTheDataRootNext)
{
    std::filesystem::create_directories("data/lisp");
    std::filesystem::create_directories("scripts");
    setDataRoot("data");
    writeFileContents("data/lisp/both.lisp", "(display \"of the data\")");
    writeFileContents("data/lisp/one.lisp", "(display \"one\")");
    writeFileContents("scripts/both.lisp", "(display \"beside\")");
    writeFileContents("scripts/a.lisp", "(load \"one\") (load \"both\") (load \"nosuch\")");
    expectRun("lisp scripts/a.lisp", 0, "one\nbeside\nerror: file 'nosuch' not found!\n", "");
}

#ifdef __linux__
TEST(LispCommand, dataOfTheEngineIsFoundWhenTheProgramIsFoundThroughThePath)
{
    unsetenv("XUM_DATA_ROOT");
    const std::filesystem::path program = XUM_PROGRAM;
    setenv("PATH", (program.parent_path().string() + ":" + std::getenv("PATH")).c_str(), 1);
    const ProgramRun run = runProgram(program.filename().string(), "lisp -e '(load \"base/base\")'");
    EXPECT_EQ(run.output, ":boolean (:true)\n");
}
#endif

// ---- texts and standard input -------------------------------------------------------------------------------------

TEST(LispCommand, valueOfTheLastExpressionOfATextIsPrinted)
{
    expectRun("lisp -e \"1 (+ 1 2)\"", 1, "error: invalid input!\n", "-e:1:3: several atoms stand side by side\n");
    expectRun("lisp -e \"(define x 1) (+ x 2)\"", 0, ":integer (3)\n", "");
    expectRun("lisp -e 5 -e \":red ; a colour\"", 0, ":integer (5)\n:keyword (:red)\n", "");
    expectRun("lisp -e \"\"", 1, "", "-e:1:1: there is no expression\n");
}

TEST(LispCommand, textsAreEvaluatedBehindTheScripts)
{
    writeFileContents("a.lisp", "(define x 4)");
    expectRun("lisp -e x a.lisp", 0, ":integer (4)\n", "");
    expectRun("lisp a.lisp -e x", 0, ":integer (4)\n", "");
}

TEST(LispCommand, dashIsAScriptOnStandardInput)
{
    writeFileContents("a.lisp", "(define x 4)");
    const ProgramRun run = runXumWithInput("lisp a.lisp -", "x\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "") << "a script's values are not printed";

    const ProgramRun bad = runXumWithInput("lisp -", "(display \"in\")\n)");
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.output, "in\nerror: invalid keyword/symbol name!\n");
    EXPECT_EQ(bad.errors, "<stdin>:2:1: a parenthesis closes no list\n");
}

TEST(LispCommand, helpNamesOptionsAndExitStatuses)
{
    const ProgramRun run = runXum("lisp --help");
    EXPECT_EQ(run.status, 0);
    for (const char* part : {"FILE", "-e TEXT", "check", "*load-path*", "Without arguments: a shell",
                             "Exit status: 0 when everything was read and evaluated", "2 for wrong usage"})
        EXPECT_NE(run.output.find(part), std::string::npos) << part << " in\n" << run.output;
}
