#include "example.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(Examples, helloEngineDrawsSomeFramesAndEnds)
{
    const ProgramRun run = runExample("hello_engine", "--frames 5");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(fileText("log.txt").find("WARNING"), std::string::npos);
}

TEST(Examples, texturedQuadDrawsSomeFramesAndEnds)
{
    for (const char* picture : {"brick.png", "grass.jpg"}) {
        const ProgramRun run =
            runExample("textured_quad", "\"" XUM_DATA_DIRECTORY "/textures/" + std::string(picture) + "\" --frames 5");
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(fileText("log.txt").find("WARNING"), std::string::npos);
    }
}

TEST(Examples, texturedQuadFindsAPictureOfItsOwn)
{
    EXPECT_EQ(runExample("textured_quad", "--frames 1").status, 0);
}

TEST(Examples, texturedQuadNamesAPictureThatItCannotLoad)
{
    const ProgramRun run = runExample("textured_quad", "nosuch.png --frames 1");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("Cannot load the picture nosuch.png\n"), std::string::npos) << run.errors;
}

TEST(Examples, theReadmeShowsTheFirstProgramAsItIs)
{
    const std::string program = fileContents(XUM_SOURCE_DIRECTORY "/examples/hello_engine.cpp");
    ASSERT_FALSE(program.empty());
    EXPECT_NE(fileContents(XUM_SOURCE_DIRECTORY "/README.md").find("```cpp\n" + program + "```"), std::string::npos);
}

TEST(Examples, scriptHostRunsItsOwnScriptAndReloadsIt)
{
    const ProgramRun run = runExample("script_host", "--frames 5");
    EXPECT_EQ(run.status, 0) << run.errors;
    // The third frame asks for a reload, which counts from 0 again; the ship stays where it is.
    EXPECT_EQ(run.output, "reloading\n"
                          "script: warning: symbol 'speed' was already defined.\n"
                          "script: warning: symbol 'frames' was already defined.\n"
                          "script: warning: symbol 'sail' was already defined.\n"
                          "script: warning: symbol 'status' was already defined.\n"
                          "said: The ship is at 2 after 1 frames\n"
                          "status: :sailing 2.5 2\n");
}

TEST(Examples, scriptHostRunsAScriptFile)
{
    std::filesystem::create_directory("scripts");
    writeFileContents("scripts/fleet.lisp", "; how far a fleet is\n"
                                            "(define sail (closure () (do (move-ship! 1.5) (display \"on\"))))\n"
                                            "(define status (closure () (list \"at\" (ship-x) :true '(1 (2)))))\n");
    const ProgramRun run = runExample("script_host", "scripts/fleet.lisp --frames 2");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "script: on\nscript: on\nstatus: at 3 1 1 2\n");
}

TEST(Examples, scriptHostNamesAScriptThatItCannotRun)
{
    const ProgramRun run = runExample("script_host", "nosuch.lisp --frames 1");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("Cannot run the script nosuch.lisp\n"), std::string::npos) << run.errors;
}
