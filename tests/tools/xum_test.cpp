#include "program.h"

#include <gtest/gtest.h>

TEST(Xum, versionIsPrinted)
{
    const ProgramRun run = runXum("--version");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "xum " XUM_PROGRAM_VERSION "\n");
    EXPECT_EQ(run.errors, "");
}

TEST(Xum, helpListsSubcommandsAndExitStatuses)
{
    for (const char* option : {"--help", "-h"}) {
        const ProgramRun run = runXum(option);
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.output.find("\n  lisp "), std::string::npos) << run.output;
        EXPECT_NE(run.output.find("Exit status: 0 when all went well, 1 for a script or a file that failed, 2 for "
                                  "wrong usage."),
                  std::string::npos)
            << run.output;
    }
}

TEST(Xum, noSubcommandIsWrongUsageAndShowsTheHelp)
{
    const ProgramRun run = runXum("");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors.find("Usage: xum"), std::string::npos) << run.errors;
}

TEST(Xum, unknownSubcommandsAndOptionsAreNamed)
{
    for (const char* word : {"nonsense", "--nonsense", "lisp --nonsense", "lisp check a --nonsense"}) {
        const ProgramRun run = runXum(word);
        EXPECT_EQ(run.status, 2) << word;
        EXPECT_NE(run.errors.find("nonsense"), std::string::npos) << run.errors;
    }
}

#ifdef __linux__
TEST(Xum, outputThatCannotBeWrittenIsAFailure)
{
    EXPECT_EQ(std::system("\"" XUM_PROGRAM "\" lisp -e 1 >/dev/full 2>errors.txt") >> 8, 1);
    EXPECT_EQ(fileContents("errors.txt"), "xum: cannot write to the standard output\n");
}
#endif
