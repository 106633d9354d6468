#include "editor_program.h"
#include "golden_picture.h"

#include <xum/render/image.h>

#include <memory>

// The program as its users start it.

namespace {

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// A copy of the data that a test may damage.
class EditorWithItsOwnData : public EditorProgram {
protected:
    void SetUp() override
    {
        EditorProgram::SetUp();
        fs::copy(XUM_DATA_DIRECTORY, "data", fs::copy_options::recursive);
    }

    static void expectToFail(const std::string& message)
    {
        const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "--data data --play " + sessionOf("0 wheel 0\n"));
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.errors, "xum-editor: " + message + "\n");
    }
};

} // namespace

// ---- arguments ------------------------------------------------------------------------------------------------------

TEST_F(EditorProgram, helpNamesOptionsKeysAndExitStatuses)
{
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "--help");
    EXPECT_EQ(run.status, 0);
    for (const char* part : {"MAP",
                             "--data DIR",
                             "--settings FILE",
                             "--game PROGRAM",
                             "--size WxH",
                             "--play SESSION",
                             "--screenshot FILE.bmp",
                             "--record SESSION",
                             "Ctrl+N, O",
                             "Ctrl+S",
                             "Ctrl+Q",
                             "Ctrl+Z",
                             "Ctrl+C, X, V, D",
                             "Delete",
                             "Escape",
                             "1 2 3 4",
                             "[ and ]",
                             "  F  ",
                             "F5",
                             "F9",
                             "F11",
                             "F12",
                             "`",
                             "right mouse button",
                             "Shift one side",
                             "  0  ",
                             "  2  ",
                             "  3  ",
                             "  4  ",
                             "  5  ",
                             "XUM_MESSAGE_BOXES=0",
                             "docs/editor.md"})
        EXPECT_TRUE(contains(run.output, part)) << part << "\n" << run.output;
}

TEST_F(EditorProgram, wrongArgumentsAreTold)
{
    for (const char* arguments : {"--nonsense", "a.cfg b.cfg", "--size 0x5", "--size 5", "--size 5x5x5",
                                  "--size 99999x5", "--screenshot a.bmp", "--play s.txt --record r.txt", "--play"}) {
        const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_FALSE(run.errors.empty()) << arguments;
    }
}

TEST_F(EditorProgram, sessionThatCannotBePlayedIsTold)
{
    const ProgramRun missing = runProgram(XUM_EDITOR_PROGRAM, "--play none.txt --data " XUM_DATA_DIRECTORY);
    EXPECT_EQ(missing.status, 3);
    EXPECT_EQ(missing.errors, "xum-editor: none.txt: cannot be read\n");
    const ProgramRun broken = play("1 jump\n");
    EXPECT_EQ(broken.status, 3);
    EXPECT_EQ(broken.errors, "xum-editor: session.txt:1: 'jump' is not known\n");
}

TEST_F(EditorProgram, recordThatCannotBeWrittenIsTold)
{
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "--record none/r.txt --data " XUM_DATA_DIRECTORY);
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.errors, "xum-editor: none/r.txt: cannot be written\n");
}

// ---- data -----------------------------------------------------------------------------------------------------------

TEST_F(EditorProgram, missingDataDirectoryIsNamed)
{
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "--data nowhere --play " + sessionOf("0 wheel 0\n"));
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.errors, "xum-editor: there is no data directory nowhere/ (choose another with --data)\n");
}

TEST_F(EditorWithItsOwnData, missingProgramIsNamed)
{
    fs::remove("data/programs/editor.cfg");
    expectToFail("cannot read the file data/programs/editor.cfg");
}

TEST_F(EditorWithItsOwnData, missingShaderIsNamed)
{
    fs::remove("data/shaders/editor.frag");
    expectToFail("cannot read the file data/shaders/editor.frag");
}

TEST_F(EditorWithItsOwnData, shaderThatDoesNotCompileIsNamed)
{
    writeFileContents("data/shaders/editor.frag", "#version 150\nnonsense");
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "--data data --play " + sessionOf("0 wheel 0\n"));
    EXPECT_EQ(run.status, 3);
    EXPECT_TRUE(contains(run.errors, "xum-editor: the shaders of data/programs/editor.cfg do not compile or do not fit "
                                     "together; log.txt says why\n"))
        << run.errors;
}

TEST_F(EditorWithItsOwnData, brokenProgramIsNamed)
{
    writeFileContents("data/programs/flat.cfg", "<program>");
    expectToFail("the file data/programs/flat.cfg is broken: 1:1: readSection() -> section needs at least 2 tokens!");
    writeFileContents("data/programs/flat.cfg", "<program></program>");
    expectToFail("the program data/programs/flat.cfg names no vertex-shaders");
}

TEST_F(EditorWithItsOwnData, editorGoesOnWithoutFontTexturesAndScripts)
{
    fs::remove_all("data/fonts");
    fs::remove_all("data/lisp");
    fs::remove_all("data/textures");
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "data/maps/gatehouse.cfg --data data --size 640x480 --play " +
                                                              sessionOf("5 wheel 0\n") + " --screenshot a.bmp");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(fs::exists("a.bmp"));
}

TEST_F(EditorWithItsOwnData, texturesThatAreNoPicturesDoNotEndIt)
{
    writeFileContents("data/textures/brick.png", "no picture");
    writeFileContents("data/textures/notes.txt", "");
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "data/maps/gatehouse.cfg --data data --size 640x480 --play " +
                                                              sessionOf("5 wheel 0\n"));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
}

// ---- pictures and windows -------------------------------------------------------------------------------------------

TEST_F(EditorWithItsOwnData, drawsTheGoldenPicture)
{
    // New textures of the demo change no picture here.
    fs::remove_all("data/textures");
    fs::create_directory("data/textures");
    for (const std::string name : {"brick.png", "grass.jpg", "limestone.png", "paving.png", "wood.png"})
        fs::copy(XUM_DATA_DIRECTORY "/textures/" + name, "data/textures/" + name);
    fs::copy(XUM_SESSION_DIRECTORY "/picture.cfg", "picture.cfg");
    const ProgramRun run = runProgram(XUM_EDITOR_PROGRAM, "picture.cfg --data data --size 960x600 --screenshot "
                                                          "actual.bmp --play " XUM_SESSION_DIRECTORY "/picture.txt");
    ASSERT_EQ(run.status, 0) << run.errors;
    const std::unique_ptr<Image> actual(loadImage("actual.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("editor", *actual, otherRenderer));
}

TEST_F(EditorProgram, smallWindowsWork)
{
    fs::copy(XUM_DATA_DIRECTORY "/maps/gatehouse.cfg", "a.cfg");
    for (const char* size : {"1x1", "1x600", "600x1", "200x150", "3000x40"}) {
        const ProgramRun run = play("0 motion 1 1 0 0\n1 button down 1\n2 button up 1\n3 key down F9\n6 wheel 1\n",
                                    "a.cfg --screenshot a.bmp --size " + std::string(size));
        EXPECT_EQ(run.status, 0) << size << run.errors;
        const std::unique_ptr<Image> picture(loadImage("a.bmp"));
        ASSERT_TRUE(picture) << size;
        EXPECT_EQ(std::to_string(picture->getWidth()) + "x" + std::to_string(picture->getHeight()), size);
    }
}

TEST_F(EditorProgram, windowMayChangeItsSizeAtAnyTime)
{
    fs::copy(XUM_DATA_DIRECTORY "/maps/gatehouse.cfg", "a.cfg");
    const ProgramRun run = play("0 motion 300 200 0 0\n2 button down 1\n3 window 1 1\n4 motion 0 0 0 0\n6 window 900 "
                                "700\n8 button up 1\n9 window 321 123\n12 wheel 0\n",
                                "a.cfg --screenshot a.bmp --size 640x480");
    EXPECT_EQ(run.status, 0) << run.errors;
    const std::unique_ptr<Image> picture(loadImage("a.bmp"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->getWidth(), 321);
    EXPECT_EQ(picture->getHeight(), 123);
}

TEST_F(EditorProgram, pictureThatCannotBeWrittenIsTold)
{
    const ProgramRun run = play("0 wheel 0\n", "--screenshot none/a.bmp");
    EXPECT_EQ(run.status, 5);
    EXPECT_EQ(run.errors, "xum-editor: cannot write the picture none/a.bmp\n");
}

TEST_F(EditorProgram, picturesOfTheUserGetTheNextFreeNumber)
{
    const std::string twice = "1 key down F12\n2 key up F12\n4 key down F12\n5 key up F12\n";
    writeFileContents("screenshot-001.bmp", "mine");
    EXPECT_EQ(play(twice).status, 0);
    EXPECT_EQ(fileContents("screenshot-001.bmp"), "mine");
    EXPECT_TRUE(fs::exists("screenshot-002.bmp"));
    EXPECT_TRUE(fs::exists("screenshot-003.bmp"));
    EXPECT_FALSE(fs::exists("screenshot-004.bmp"));
}

// ---- maps and settings ----------------------------------------------------------------------------------------------

TEST_F(EditorProgram, mapThatIsNotThereIsANewOneAndNotWritten)
{
    EXPECT_EQ(play("3 wheel 0\n", "new.cfg").status, 0);
    EXPECT_FALSE(fs::exists("new.cfg"));
}

TEST_F(EditorProgram, hostileMapsNeverEndIt)
{
    std::string deep = "<map>";
    for (int i = 0; i < 100000; ++i) deep += "<a>";
    for (int i = 0; i < 100000; ++i) deep += "</a>";
    const std::string hostile[] = {"",
                                   "<map>",
                                   "hello",
                                   std::string(1000, '\0'),
                                   "<program></program>",
                                   "<map><mesh><brush><box \"0 0 0 1 1 nan\"/></brush></mesh></map>",
                                   "<map><terrain><size \"256 256\"/><heights 0/></terrain></map>",
                                   deep + "<x 1/></map>",
                                   "<map><mesh><origin \"1e6 1e6 1e6\"/><brush><box \"-1e6 -1e6 -1e6 1e6 1e6 1e6\"/>"
                                   "</brush></mesh><entity><class \"" +
                                       std::string(100000, 'x') + "\"/></entity></map>"};
    for (const std::string& text : hostile) {
        writeFileContents("a.cfg", text);
        const ProgramRun run = play("3 wheel 0\n", "a.cfg");
        EXPECT_EQ(run.status, 0) << text.substr(0, 80) << run.errors;
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(fileContents("a.cfg"), text);
    }
}

TEST_F(EditorProgram, brokenSettingsAreToldAndDoNotEndIt)
{
    writeFileContents("settings.cfg", "<editor>");
    const ProgramRun run = play("3 wheel 0\n", "--settings settings.cfg");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "xum-editor: the settings in settings.cfg are broken: 1:1: readSection() -> section needs at "
                          "least 2 tokens!; it uses its own\n");
    EXPECT_EQ(fileContents("settings.cfg"), "<editor>") << "a session that is played changes no settings";
}
