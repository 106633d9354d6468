#include "run_program.h"

#include <gtest/gtest.h>

TEST(Examples, helloEngineDrawsSomeFramesAndEnds)
{
    const ProgramRun run = runProgram(XUM_HELLO_ENGINE, "--frames 5");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(fileContents("log.txt").find("WARNING"), std::string::npos);
}

TEST(Examples, texturedQuadDrawsSomeFramesAndEnds)
{
    for (const char* picture : {"brick.png", "grass.jpg"}) {
        const ProgramRun run = runProgram(XUM_TEXTURED_QUAD, "\"" XUM_DATA_DIRECTORY "/textures/" +
                                                                 std::string(picture) + "\" --frames 5");
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(fileContents("log.txt").find("WARNING"), std::string::npos);
    }
}

TEST(Examples, texturedQuadFindsAPictureOfItsOwn)
{
    EXPECT_EQ(runProgram(XUM_TEXTURED_QUAD, "--frames 1").status, 0);
}

TEST(Examples, texturedQuadNamesAPictureThatItCannotLoad)
{
    const ProgramRun run = runProgram(XUM_TEXTURED_QUAD, "nosuch.png --frames 1");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("Cannot load the picture nosuch.png\n"), std::string::npos) << run.errors;
}

TEST(Examples, theReadmeShowsTheFirstProgramAsItIs)
{
    const std::string program = fileContents(XUM_SOURCE_DIRECTORY "/examples/hello_engine.cpp");
    ASSERT_FALSE(program.empty());
    EXPECT_NE(fileContents(XUM_SOURCE_DIRECTORY "/README.md").find("```cpp\n" + program + "```"), std::string::npos);
}
