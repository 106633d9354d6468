#include "example.h"
#include "shrunk_picture.h"
#include "test_directory.h"

#include <gtest/gtest.h>

#include <SDL.h>

#include <filesystem>
#include <ostream>
#include <vector>

// Every example that draws, for some frames off the screen.

namespace {

namespace fs = std::filesystem;

struct Drawing {
    const char* name;
    const char* output; ///< all that ten frames print
};

void PrintTo(const Drawing& drawing, std::ostream* stream)
{
    *stream << drawing.name;
}

const Drawing drawings[] = {
    {"archive", "brick.png: 71793 bytes\nbronze.png: 35894 bytes\ngrass.jpg: 56828 bytes\nleaves.jpg: 18291 bytes\n"
                "limestone.png: 57994 bytes\npaving.png: 71863 bytes\nroof.jpg: 13942 bytes\nwater.png: 59053 bytes\n"
                "wood.png: 57994 bytes\n"},
    {"bitmap_text", "\"measure() says how wide this is\" is 750 pixels wide at scale 2\n"},
    {"bsp_walk", "Gatehouse: 2608 leaves\nthe camera is in leaf 188, which is open\n"},
    {"camera_and_frustum", ""},
    {"console", "> help\ncolor help quit time version \n> version\nxum-engine 0.1 (build 0001)\n"
                "> color 0.75 0.42 0.25\ndone\n> jump\nThere is no command jump\n"},
    {"debug_shapes", "the urn fits a sphere of radius 70 hundredths\n"},
    {"mesh", "623 vertices, 1104 triangles\n18 vertices, 32 triangles\n66 vertices, 128 triangles\n"
             "258 vertices, 512 triangles\n"},
    {"post_process", ""},
    {"software_occlusion", "30 of 91 balls are hidden\n"},
    {"sound", "playing\n"},
    {"spot_shadow", ""},
    {"terrain", "10201 vertices, heights from -4 to 11\n"},
    {"textured_quad", ""},
    {"truetype_text", "7 lines fit a window of 960 pixels\n"},
    {"window_and_events", "the window has 960 x 540 pixels\n"},
};

class DrawingExamples : public ::testing::TestWithParam<Drawing> {};

/// Changes a variable of the environment for one test.
class Environment {
public:
    Environment(const char* name, const std::string& value) : name(name)
    {
        if (const char* before = SDL_getenv(name)) old = before;
        SDL_setenv(name, value.c_str(), 1);
    }
    ~Environment() // here an empty value is as good as none
    {
        SDL_setenv(name, old.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name;
    std::string old;
};

} // namespace

TEST_P(DrawingExamples, drawsTheGoldenPicture)
{
    fs::remove("picture.bmp");
    const ProgramRun run = runExample(GetParam().name, "--frames 10 --screenshot picture.bmp");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, GetParam().output);
    EXPECT_EQ(problemsOfLog(), "");
#ifdef _WIN32
    if (std::string(GetParam().name) == "window_and_events") GTEST_SKIP() << "it shows where the pointer is";
#endif
    expectGoldenExample(GetParam().name, 960, 540);
}

TEST_P(DrawingExamples, refusesArgumentsThatItDoesNotUnderstand)
{
    for (const char* arguments :
         {"--frames", "--frames 0", "--frames x", "--screenshot a.bmp", "--frames 1 --nosuch"}) {
        const ProgramRun run = runExample(GetParam().name, arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_EQ(run.errors.rfind("Usage: ", 0), 0u) << run.errors;
    }
}

TEST_P(DrawingExamples, saysInOneLineThatThereIsNoOpenGL)
{
    const Environment environment("SDL_VIDEODRIVER", "dummy");
    const ProgramRun run = runExample(GetParam().name, "--frames 1");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("No window with OpenGL 3.2 here\n"), std::string::npos) << run.errors;
}

INSTANTIATE_TEST_SUITE_P(All, DrawingExamples, ::testing::ValuesIn(drawings),
                         [](const auto& example) { return std::string(example.param.name); });

TEST(DrawingExamples, aPictureThatCannotBeWrittenIsAFailure)
{
    const ProgramRun run = runExample("textured_quad", "--frames 1 --screenshot nosuch/picture.bmp");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("Cannot write the picture nosuch/picture.bmp\n"), std::string::npos) << run.errors;
}

TEST(DrawingExamples, soundPlaysSilentlyWithoutADevice)
{
    const Environment driver("SDL_AUDIODRIVER", "disk"); // plays into a file, which cannot be opened
    const Environment file("SDL_DISKAUDIOFILE", "nosuch/sound.raw");
    const ProgramRun run = runExample("sound", "--frames 3");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "there is no sound device: playing silently\n");
}

TEST(DrawingExamples, sayWhichOfTheirDataIsMissing)
{
    const Environment environment("XUM_DATA_ROOT", "nosuch/");
    const std::string root = (testDirectory() / "nosuch/").generic_string();
    const std::string urn = "There is no mesh " + root + "meshes/urn.mesh\n";
    const std::pair<const char*, std::string> cases[] = {
        {"archive", "There is no file " + root + "textures/brick.png\n"},
        {"bitmap_text", "Cannot load the font " + root + "fonts/hud.png\n"},
        {"bsp_walk", "There is no map in " + root + "maps/gatehouse.map\n"},
        {"debug_shapes", urn},
        {"mesh", urn},
        {"spot_shadow", urn},
        {"textured_quad", "Cannot load the picture " + root + "textures/brick.png\n"},
        {"truetype_text", "Cannot load the font " + root + "fonts/hud.ttf\n"},
    };
    for (const auto& [name, message] : cases) {
        const ProgramRun run = runExample(name, "--frames 1");
        EXPECT_EQ(run.status, 1) << name;
        EXPECT_NE(run.errors.find(message), std::string::npos) << name << ": " << run.errors;
    }
}

#if defined(XUM_PROGRAM) && !defined(_WIN32) // where the directory has no drive, and so is none to the library
TEST(DrawingExamples, archiveReadsWhatWasPacked)
{
    const ProgramRun packing = runProgram(XUM_PROGRAM, "pack create game.xum \"" XUM_DATA_DIRECTORY "\"");
    ASSERT_EQ(packing.status, 0) << packing.errors;
    const Environment environment("XUM_DATA_ROOT", "nosuch/"); // there is nothing but the archive
    const ProgramRun run = runExample("archive", "game.xum --frames 2");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, drawings[0].output);
}
#endif
