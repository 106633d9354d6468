#include "compare_pictures.h"
#include "data_archive.h"
#include "golden_picture.h"
#include "own_directory.h"
#include "run_program.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

// Runs the game as its users do.

namespace {

namespace fs = std::filesystem;

const std::string goldenArguments = "--frames 30 --size 480x270";

ProgramRun runGame(const std::string& arguments)
{
    return runProgram(XUM_GAME_PROGRAM, arguments);
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// A copy of the data that a test may damage; its directory is data/.
class GameWithItsOwnData : public ::testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all("data");
        fs::copy(XUM_DATA_DIRECTORY, "data", fs::copy_options::recursive);
    }

    static void expectBrokenData(const std::string& message)
    {
        const ProgramRun run = runGame("--frames 1 --size 32x32 --data data --screenshot none.bmp");
        EXPECT_EQ(run.status, 3);
        EXPECT_TRUE(contains(run.errors, message)) << run.errors;
        EXPECT_FALSE(fs::exists("none.bmp"));
    }
};

} // namespace

TEST(Game, drawsTheGoldenPicture)
{
    const ProgramRun run = runGame(goldenArguments + " --screenshot actual.bmp");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "drew 30 frames, wrote actual.bmp\n");
    const std::unique_ptr<Image> actual(loadImage("actual.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game", *actual, otherRenderer));
}

TEST(Game, drawsTheGoldenPictureOfTheSceneAlone)
{
    const ProgramRun run = runGame(goldenArguments + " --no-lamp --no-effects --no-text --screenshot scene.bmp");
    ASSERT_EQ(run.status, 0) << run.errors;
    const std::unique_ptr<Image> actual(loadImage("scene.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game-scene", *actual, otherRenderer));
}

TEST(Game, unattendedRunDrawsTheSamePictureEachTime)
{
    ASSERT_EQ(runGame("--frames 3 --size 64x48 --screenshot a.bmp").status, 0);
    ASSERT_EQ(runGame("--frames 3 --size 64x48 --screenshot b.bmp").status, 0);
    EXPECT_EQ(fileContents("a.bmp").size(), fileContents("b.bmp").size());
    EXPECT_EQ(comparePictures("a.bmp", "b.bmp", "difference.bmp").maximum, 0);
}

TEST(Game, cameraOfAnUnattendedRunMoves)
{
    ASSERT_EQ(runGame("--frames 1 --size 64x48 --screenshot a.bmp").status, 0);
    ASSERT_EQ(runGame("--frames 60 --size 64x48 --screenshot b.bmp").status, 0);
    EXPECT_GT(comparePictures("a.bmp", "b.bmp", "difference.bmp").mean, 1);
}

TEST(Game, viewIsWhereAnUnattendedRunStays)
{
    const std::string still = "--size 64x48 --no-lamp --no-text ";
    const std::string gatehouse = still + "--view=0,-18,3,180,-10";
    ASSERT_EQ(runGame("--frames 1 --screenshot a.bmp " + gatehouse).status, 0);
    ASSERT_EQ(runGame("--frames 40 --screenshot b.bmp " + gatehouse).status, 0);
    ASSERT_EQ(runGame("--frames 1 --screenshot c.bmp " + still).status, 0);
    EXPECT_EQ(comparePictures("a.bmp", "b.bmp", "difference.bmp").maximum, 0);
    EXPECT_GT(comparePictures("a.bmp", "c.bmp", "difference.bmp").mean, 10);
}

TEST(Game, pictureIsTheSameWithoutCulling)
{
    ASSERT_EQ(runGame("--frames 5 --size 160x90 --no-text --screenshot a.bmp").status, 0);
    ASSERT_EQ(runGame("--frames 5 --size 160x90 --no-text --screenshot b.bmp --no-culling").status, 0);
    EXPECT_EQ(fileContents("a.bmp"), fileContents("b.bmp"));
    ASSERT_EQ(runGame("--frames 5 --size 160x90 --no-text --screenshot c.bmp --occlusion").status, 0);
    EXPECT_NE(fileContents("a.bmp"), fileContents("c.bmp"));
}

TEST(Game, wireframeDrawsOtherThanSolids)
{
    ASSERT_EQ(runGame("--frames 1 --size 64x48 --screenshot a.bmp").status, 0);
    ASSERT_EQ(runGame("--frames 1 --size 64x48 --screenshot b.bmp --wireframe").status, 0);
    EXPECT_GT(comparePictures("a.bmp", "b.bmp", "difference.bmp").mean, 10);
}

TEST(Game, layersAreSwitchedByOptions)
{
    const std::string all = "--frames 1 --size 320x240 --boxes --screenshot ";
    ASSERT_EQ(runGame(all + "a.bmp").status, 0);
    ASSERT_EQ(runGame(all + "b.bmp --no-effects").status, 0);
    ASSERT_EQ(runGame(all + "c.bmp --no-text").status, 0);
    ASSERT_EQ(runGame("--frames 1 --size 320x240 --screenshot d.bmp").status, 0);
    for (const char* other : {"b.bmp", "c.bmp", "d.bmp"})
        EXPECT_GT(comparePictures("a.bmp", other, "difference.bmp").mean, 1) << other;
}

TEST(Game, lampMovesWithTheFrames)
{
    const std::string fountain = " --no-text --size 64x48 --view=0,-12,5,0,-20";
    ASSERT_EQ(runGame("--frames 1 --screenshot a.bmp --no-lamp" + fountain).status, 0);
    ASSERT_EQ(runGame("--frames 1 --screenshot b.bmp" + fountain).status, 0);
    ASSERT_EQ(runGame("--frames 60 --screenshot c.bmp" + fountain).status, 0);
    EXPECT_GT(comparePictures("a.bmp", "b.bmp", "difference.bmp").mean, 2);
    EXPECT_GT(comparePictures("b.bmp", "c.bmp", "difference.bmp").mean, 1);
}

TEST(Game, unattendedRunWithoutAFileNameWritesXumGameBmp)
{
    ASSERT_EQ(runGame("--frames 1 --size 16x16").status, 0);
    EXPECT_TRUE(fs::exists("xum-game.bmp"));
}

TEST(Game, smallestWindowWorks)
{
    ASSERT_EQ(runGame("--frames 2 --size 1x1 --screenshot one.bmp").status, 0);
    EXPECT_TRUE(comparePictures("one.bmp", "one.bmp", "difference.bmp").areComparable);
}

TEST(Game, helpNamesOptionsKeysAndExitStatuses)
{
    const ProgramRun run = runGame("--help");
    EXPECT_EQ(run.status, 0);
    for (const char* part : {"--frames",
                             "--screenshot",
                             "--size",
                             "--data",
                             "--archive",
                             "--volume",
                             "--mute",
                             "--view",
                             "--no-culling",
                             "--occlusion",
                             "--no-lamp",
                             "--no-effects",
                             "--no-text",
                             "--boxes",
                             "--walk",
                             "  G ",
                             "  C ",
                             "  O ",
                             "  L ",
                             "  B ",
                             "  F ",
                             "  H ",
                             "Escape",
                             "Page Up",
                             "XUM_MESSAGE_BOXES=0",
                             "Exit status",
                             "  2    wrong arguments",
                             "  5    the picture"})
        EXPECT_TRUE(contains(run.output, part)) << part;
}

TEST(Game, wrongArgumentsAreRefused)
{
    for (const char* arguments : {"--nonsense",
                                  "--frames",
                                  "--view",
                                  "--view 1,2,3",
                                  "--view 1,2,3,4,5,6",
                                  "--view 0,0,0,0,90",
                                  "--view nan,0,0,0,0",
                                  "--frames 0",
                                  "--frames many",
                                  "--frames 1 --size 12",
                                  "--frames 1 --size 0x5",
                                  "--frames 1 --size 10x20x30",
                                  "--frames 1 --size 9000x5",
                                  "--frames 1 --screenshot a.png",
                                  "--frames 1 --screenshot .bmp",
                                  "--screenshot a.bmp",
                                  "leftover",
                                  "--volume loud",
                                  "--volume 101",
                                  "--volume -1",
                                  "--archive",
                                  "--archive \"\"",
                                  "--archive a --data b"}) {
        const ProgramRun run = runGame(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_FALSE(run.errors.empty()) << arguments;
    }
}

TEST(Game, wrongArgumentIsNamed)
{
    EXPECT_TRUE(contains(runGame("--frames 1 --size 12").errors, "--size: '12' is not a size such as 1024x768"));
    EXPECT_TRUE(contains(runGame("--frames 1 --screenshot a.png").errors,
                         "--screenshot: 'a.png' is not a file name that ends with .bmp"));
}

TEST(Game, missingDataDirectoryIsNamed)
{
    const ProgramRun run = runGame("--frames 1 --data nowhere");
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(contains(run.errors, "xum-game: there is no data directory nowhere/ (choose another with --data)\n"))
        << run.errors;
}

TEST(Game, unwritablePictureIsNamed)
{
    const ProgramRun run = runGame("--frames 1 --size 16x16 --screenshot nowhere/a.bmp");
    EXPECT_EQ(run.status, 5);
    EXPECT_TRUE(contains(run.errors, "xum-game: cannot write the picture nowhere/a.bmp\n")) << run.errors;
}

TEST(Game, directoryInPlaceOfThePictureIsRefused)
{
    fs::create_directory("directory.bmp");
    EXPECT_EQ(runGame("--frames 1 --size 16x16 --screenshot directory.bmp").status, 5);
}

#ifndef _WIN32
TEST(Game, windowWithoutOpenGLIsRefused)
{
    const ProgramRun run = runProgram("/usr/bin/env", "SDL_VIDEODRIVER=dummy \"" XUM_GAME_PROGRAM "\" --frames 1");
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(contains(run.errors, "xum-game: no window with OpenGL can be opened\n")) << run.errors;
}

TEST(Game, unknownVideoDriverIsRefused)
{
    const ProgramRun run = runProgram("/usr/bin/env", "SDL_VIDEODRIVER=nosuch \"" XUM_GAME_PROGRAM "\" --frames 1");
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(contains(run.errors, "xum-game: the engine does not start: no usable video driver\n")) << run.errors;
}

TEST(Game, playsOnWithoutSound)
{
    const ProgramRun run =
        runProgram("/usr/bin/env", "SDL_AUDIODRIVER=nosuch \"" XUM_GAME_PROGRAM "\" --frames 1 --size 16x16");
    EXPECT_EQ(run.status, 0) << run.errors;
}

TEST(Game, fullDiskIsRefused)
{
    if (!fs::exists("/dev/full")) GTEST_SKIP();
    fs::create_symlink("/dev/full", "full.bmp");
    EXPECT_EQ(runGame("--frames 1 --size 16x16 --screenshot full.bmp").status, 5);
}
#endif

TEST_F(GameWithItsOwnData, dataDirectoryComesWithOrWithoutASlash)
{
    EXPECT_EQ(runGame("--frames 1 --size 16x16 --data data").status, 0);
    EXPECT_EQ(runGame("--frames 1 --size 16x16 --data data/").status, 0);
}

TEST_F(GameWithItsOwnData, missingShaderIsNamed)
{
    fs::remove("data/shaders/sky.vert");
    expectBrokenData("xum-game: cannot read the file data/shaders/sky.vert\n");
}

TEST_F(GameWithItsOwnData, directoryInPlaceOfAShaderIsNamed)
{
    fs::remove("data/shaders/sky.vert");
    fs::create_directory("data/shaders/sky.vert");
    expectBrokenData("xum-game: cannot read the file data/shaders/sky.vert\n");
}

TEST_F(GameWithItsOwnData, shaderThatDoesNotCompileIsNamedWithTheCompilersWords)
{
    writeFileContents("data/shaders/flat.frag", "#version 150\nout vec4 color;\nvoid main() { color = nonsense; }\n");
    expectBrokenData("xum-game: the shaders data/shaders/flat.vert, data/shaders/flat.frag do not compile");
    EXPECT_TRUE(contains(fileText("run-errors.txt"), "Warning: flat.frag\n"));
    EXPECT_TRUE(contains(fileText("run-errors.txt"), "nonsense"));
}

TEST_F(GameWithItsOwnData, emptyShaderIsNoticed)
{
    writeFileContents("data/shaders/solid.vert", "");
    expectBrokenData("data/shaders/solid.vert, data/shaders/solid.frag, data/shaders/display.frag do not compile");
}

TEST_F(GameWithItsOwnData, shadersThatDoNotFitTogetherAreNoticed)
{
    writeFileContents("data/shaders/display.frag", "#version 150\nvec3 toScreen(vec3 light) { return light; }\n");
    expectBrokenData("do not compile or do not fit together; log.txt says why\n");
}

TEST_F(GameWithItsOwnData, missingTextureIsNamed)
{
    fs::remove("data/textures/brick.png");
    expectBrokenData("xum-game: cannot read the file data/textures/brick.png\n");
}

TEST_F(GameWithItsOwnData, truncatedPngIsNamed)
{
    fs::resize_file("data/textures/brick.png", 1000);
    expectBrokenData("xum-game: cannot decode the picture data/textures/brick.png\n");
}

TEST_F(GameWithItsOwnData, headlessJpegIsNamed)
{
    fs::resize_file("data/textures/grass.jpg", 40);
    expectBrokenData("xum-game: cannot decode the picture data/textures/grass.jpg\n");
}

TEST_F(GameWithItsOwnData, textInPlaceOfAPictureIsNamed)
{
    writeFileContents("data/textures/wood.png", "a board");
    expectBrokenData("xum-game: cannot decode the picture data/textures/wood.png\n");
}

TEST_F(GameWithItsOwnData, missingDescriptionOfAProgramIsNamed)
{
    fs::remove("data/programs/flat.cfg");
    expectBrokenData("xum-game: cannot read the file data/programs/flat.cfg\n");
}

TEST_F(GameWithItsOwnData, shaderThatADescriptionNamesMustBeThere)
{
    writeFileContents("data/programs/sky.cfg",
                      "<program><vertex-shaders sky.vert/><fragment-shaders moon.frag/></program>");
    expectBrokenData("xum-game: cannot read the file data/shaders/moon.frag\n");
}

TEST_F(GameWithItsOwnData, descriptionWithoutShadersIsNamed)
{
    writeFileContents("data/programs/sky.cfg", "<program><outputs color/></program>");
    expectBrokenData("xum-game: no shaders are named in data/programs/sky.cfg\n");
}

TEST_F(GameWithItsOwnData, descriptionThatCannotBeReadStopsTheEngine)
{
    writeFileContents("data/programs/sky.cfg", "<program>");
    const ProgramRun run = runGame("--frames 1 --data data");
    EXPECT_EQ(run.status, fatalExitCode);
    EXPECT_EQ(run.errors, "Error: readSection() -> section needs at least 2 tokens!\n");
    EXPECT_TRUE(contains(fileText("log.txt"), "Reading the program data/programs/sky.cfg\nERROR: readSection()"));
}

TEST_F(GameWithItsOwnData, missingSoundsAreNamed)
{
    for (const char* name : {"samples/fountain.wav", "samples/flame.wav", "samples/blackbird.wav", "samples/finch.wav",
                             "streams/courtyard.ogg"}) {
        fs::rename("data/" + std::string(name), "away");
        expectBrokenData("xum-game: cannot read the file data/" + std::string(name) + "\n");
        fs::rename("away", "data/" + std::string(name));
    }
}

TEST_F(GameWithItsOwnData, missingPartsOfTheWorldAreNamed)
{
    for (const char* name : {"maps/gatehouse.map", "lisp/landscape.lisp", "lisp/base/base.lisp", "meshes/urn.mesh",
                             "fonts/hud.png", "fonts/hud.ttf"}) {
        fs::rename("data/" + std::string(name), "away");
        expectBrokenData("xum-game: cannot read the file data/" + std::string(name) + "\n");
        fs::rename("away", "data/" + std::string(name));
    }
}

TEST_F(GameWithItsOwnData, wrongScriptOfTheLandIsNamed)
{
    writeFileContents("data/lisp/landscape.lisp", "(define ground-height nowhere)");
    expectBrokenData(
        "xum-game: the script data/lisp/landscape.lisp is wrong: error: symbol 'nowhere' has no binding!\n");
}

TEST_F(GameWithItsOwnData, textInPlaceOfTheMapIsNamed)
{
    writeFileContents("data/maps/gatehouse.map", "a drawing");
    expectBrokenData("xum-game: the map data/maps/gatehouse.map is no compiled map\n");
}

TEST_F(GameWithItsOwnData, textInPlaceOfAFontIsNamed)
{
    writeFileContents("data/fonts/hud.ttf", "Courtyard");
    expectBrokenData("xum-game: cannot read the font data/fonts/hud.ttf\n");
}

TEST_F(GameWithItsOwnData, textInPlaceOfTheBitmapFontIsNamed)
{
    writeFileContents("data/fonts/hud.png", "Courtyard");
    expectBrokenData("xum-game: cannot decode the picture data/fonts/hud.png\n");
}

TEST_F(GameWithItsOwnData, textInPlaceOfASampleIsNamed)
{
    writeFileContents("data/samples/flame.wav", "crackle");
    expectBrokenData("xum-game: cannot decode the sound data/samples/flame.wav\n");
}

TEST_F(GameWithItsOwnData, truncatedMusicIsNamed)
{
    fs::resize_file("data/streams/courtyard.ogg", 100);
    expectBrokenData("xum-game: cannot decode the sound data/streams/courtyard.ogg\n");
}

namespace {

/// Everything in an archive, in a directory where nothing else lies.
class GameWithAnArchive : public ::testing::Test {
protected:
    void SetUp() override
    {
        enterOwnDirectory();
        writeDataArchive("courtyard.xum", XUM_DATA_DIRECTORY);
    }

    void TearDown() override { fs::current_path(testDirectory()); }

    static void expectFailure(const std::string& archive, const std::string& message)
    {
        const ProgramRun run = runGame("--frames 1 --size 32x32 --screenshot none.bmp --archive " + archive);
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.errors.substr(0, run.errors.find('\n') + 1), message);
        EXPECT_FALSE(fs::exists("none.bmp"));
    }
};

} // namespace

#ifndef _WIN32
TEST_F(GameWithAnArchive, archiveAloneDrawsTheGoldenPicture)
{
    const ProgramRun run =
        runProgram("/usr/bin/env", "XUM_DATA_ROOT=/nowhere \"" XUM_GAME_PROGRAM "\" " + goldenArguments +
                                       " --archive courtyard.xum --screenshot actual.bmp");
    ASSERT_EQ(run.status, 0) << run.errors;
    const std::unique_ptr<Image> actual(loadImage("actual.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game", *actual, otherRenderer));
}
#endif

TEST_F(GameWithAnArchive, plainFileBelowTheWorkingDirectoryWins)
{
    fs::create_directory("textures");
    writeFileContents("textures/wood.png", "a board");
    expectFailure("courtyard.xum", "xum-game: cannot decode the picture textures/wood.png\n");
}

TEST_F(GameWithAnArchive, missingFileIsNamedWithTheArchive)
{
    for (const char* name : {"fonts/hud.png", "fonts/hud.ttf", "maps/gatehouse.map", "lisp/landscape.lisp",
                             "lisp/game.lisp", "meshes/urn.mesh", "programs/sky.cfg", "shaders/display.frag",
                             "textures/leaves.jpg", "samples/finch.wav", "streams/courtyard.ogg"}) {
        writeDataArchive("partly.xum", XUM_DATA_DIRECTORY, name);
        expectFailure("partly.xum",
                      "xum-game: cannot read the file " + std::string(name) + " from the archive partly.xum\n");
    }
}

TEST_F(GameWithAnArchive, missingArchiveIsNamed)
{
    expectFailure("nowhere.xum", "xum-game: cannot read the archive nowhere.xum\n");
    expectFailure(".", "xum-game: cannot read the archive .\n");
}

TEST_F(GameWithAnArchive, otherFileIsNoArchive)
{
    writeFileContents("text.xum", "!XumRex");
    expectFailure("text.xum", "xum-game: text.xum is no archive\n");
    writeFileContents("empty.xum", "");
    expectFailure("empty.xum", "xum-game: empty.xum is no archive\n");
}

TEST_F(GameWithAnArchive, truncatedArchiveIsNoticed)
{
    fs::resize_file("courtyard.xum", 15);
    expectFailure("courtyard.xum",
                  "xum-game: cannot read the file programs/solid.cfg from the archive courtyard.xum\n");
}
