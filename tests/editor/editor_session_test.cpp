#include "editor_program.h"

#include <map_files.h>

#include <thread>

// Whole runs of the editor, from what the hands do to the saved map. The sessions are for a window of 960 by 600
// pixels.

namespace {

const std::string inTheWindow = " --size 960x600";

class EditorSession : public EditorProgram {
protected:
    static void playOnMap(const std::string& session, const std::string& more = "")
    {
        const ProgramRun run = playFile(session, "map.cfg" + inTheWindow + more);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
    }

    static void playOnMapText(const std::string& session)
    {
        const ProgramRun run = play(session, "map.cfg" + inTheWindow);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
    }

    static std::string expected(const std::string& name) { return fileContents(XUM_SESSION_DIRECTORY "/" + name); }
};

const TerrainSource& terrainOf(const std::optional<MapDocument>& document)
{
    return *document.value().terrains.at(0);
}

} // namespace

// ---- making maps ----------------------------------------------------------------------------------------------------

TEST_F(EditorSession, boxesAreDrawnMovedResizedAndTextured)
{
    playOnMap("draw.txt");
    EXPECT_EQ(fileContents("map.cfg"), expected("draw.cfg"));
}

TEST_F(EditorSession, fieldsOnTheRightTakeWhatIsTypedHoweverTheyAreLeft)
{
    playOnMap("fields.txt");
    EXPECT_EQ(fileContents("other.cfg"), expected("fields.cfg"));
    EXPECT_FALSE(fs::exists("map.cfg")) << "it was saved under another name";
}

TEST_F(EditorSession, boxIsCopiedIntoANewMap)
{
    playOnMap("copy.txt");
    EXPECT_EQ(fileContents("map.cfg"), expected("copy.cfg"));
}

// The numbers of other mathematics libraries may differ in their last digits.
TEST_F(EditorSession, landIsRaisedSmoothedFlattenedAndLowered)
{
    playOnMap("terrain.txt");
    std::string problem;
    const std::optional<MapDocument> saved = loadMap("map.cfg", problem);
    const std::optional<MapDocument> wanted = loadMap(XUM_SESSION_DIRECTORY "/terrain.cfg", problem);
    ASSERT_TRUE(saved && wanted) << problem;
    ASSERT_EQ(terrainOf(saved).heights.size(), 13u * 13u);
    for (std::size_t i = 0; i < 13 * 13; ++i)
        EXPECT_NEAR(terrainOf(saved).heights[i], terrainOf(wanted).heights[i], 1e-4) << i;
}

TEST_F(EditorSession, sameSessionMakesTheSameMapAndPicture)
{
    playOnMap("terrain.txt", " --screenshot a.bmp");
    const std::string first = fileContents("map.cfg");
    fs::remove("map.cfg");
    playOnMap("terrain.txt", " --screenshot b.bmp");
    EXPECT_EQ(fileContents("map.cfg"), first);
    EXPECT_EQ(fileContents("b.bmp"), fileContents("a.bmp"));
}

/// Boxes, and a camera that looks at the front of the one at (0, 0, 0). The mouse is on it, the button is not yet down.
const std::string boxInFront = "2 key down `\n3 key up `\n"
                               "5 text (do (add-box 9.0 9.0 9.0 10.0 10.0 10.0 \"\") "
                               "(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"\") (set-camera 0.5 -5.0 0.5 0.0 0.0))\n"
                               "6 key down Return\n7 key up Return\n10 key down Escape\n11 key up Escape\n"
                               "13 motion 460 221 0 0\n";
const std::string saveAtLast = "40 key down Left Ctrl\n40 key down S\n41 key up S\n41 key up Left Ctrl\n44 wheel 0\n";

TEST_F(EditorSession, boxIsLiftedWithAltOrCtrl)
{
    for (const std::string key : {"Left Alt", "Right Ctrl"}) {
        fs::remove("map.cfg");
        playOnMapText(boxInFront + "14 key down " + key +
                      "\n15 button down 1\n16 motion 460 200 0 0\n17 motion 460 150 0 "
                      "0\n20 button up 1\n21 key up " +
                      key + "\n" + saveAtLast);
        EXPECT_NE(fileContents("map.cfg").find("<box \"0 0 1 1 1 2\"/>"), std::string::npos) << fileContents("map.cfg");
    }
}

TEST_F(EditorSession, undoingDuringADragEndsTheDrag)
{
    playOnMapText(boxInFront +
                  "14 key down Left Alt\n15 button down 1\n16 motion 460 200 0 0\n17 motion 460 150 0 0\n"
                  "18 key up Left Alt\n20 key down Left Ctrl\n20 key down Z\n21 key up Z\n"
                  "21 key up Left Ctrl\n22 motion 460 100 0 0\n24 button up 1\n" +
                  saveAtLast);
    EXPECT_NE(fileContents("map.cfg").find("<box \"0 0 0 1 1 1\"/>"), std::string::npos) << fileContents("map.cfg");
}

TEST_F(EditorSession, deletingDuringADragLeavesOtherBrushesAlone)
{
    playOnMapText(boxInFront +
                  "14 key down Left Shift\n15 button down 1\n16 motion 460 200 0 0\n17 motion 480 150 0 0\n"
                  "18 key up Left Shift\n20 key down Delete\n21 key up Delete\n22 motion 460 100 0 0\n"
                  "24 button up 1\n" +
                  saveAtLast);
    EXPECT_EQ(fileContents("map.cfg"), "<map>\r\n   <mesh>\r\n      <brush>\r\n         <box \"9 9 9 10 10 10\"/>\r\n"
                                       "         <scale 0.5/>\r\n      </brush>\r\n   </mesh>\r\n</map>\r\n");
}

TEST_F(EditorSession, clickWithTheBoxToolDrawsNothing)
{
    const std::string click = "2 key down 2\n3 key up 2\n5 motion 460 300 0 0\n7 button down 1\n9 button up 1\n";
    playOnMapText(click + saveAtLast);
    EXPECT_EQ(fileContents("map.cfg"), "<map>\r\n</map>\r\n");
}

TEST_F(EditorSession, escapeEndsABoxThatIsBeingDrawn)
{
    playOnMapText("2 key down 2\n3 key up 2\n5 motion 460 300 0 0\n7 button down 1\n9 motion 500 330 0 0\n"
                  "11 key down Escape\n12 key up Escape\n14 motion 520 330 0 0\n16 button up 1\n" +
                  saveAtLast);
    EXPECT_EQ(fileContents("map.cfg"), "<map>\r\n</map>\r\n");
}

// ---- nothing is lost ------------------------------------------------------------------------------------------------

TEST_F(EditorSession, closedWindowAsksAndSaves)
{
    playOnMap("question_save.txt");
    EXPECT_EQ(fileContents("map.cfg"), expected("question.cfg")) << "both boxes: the first answer was to go on";
    EXPECT_FALSE(fs::exists("map.cfg.autosave"));
    EXPECT_FALSE(fs::exists("after.cfg")) << "the editor has ended";
}

TEST_F(EditorSession, closedWindowAsksAndLeavesTheMapAsItWas)
{
    writeFileContents("map.cfg", "<map>\r\n</map>\r\n");
    playOnMap("question_discard.txt");
    EXPECT_EQ(fileContents("map.cfg"), "<map>\r\n</map>\r\n");
    EXPECT_FALSE(fs::exists("map.cfg.autosave"));
    EXPECT_FALSE(fs::exists("after.cfg"));
}

TEST_F(EditorSession, closedWindowDoesNotAskWithoutChanges)
{
    const ProgramRun run = play("2 quit\n4 key down F12\n", "map.cfg");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_FALSE(fs::exists("screenshot-001.bmp")) << "the editor has ended before";
}

TEST_F(EditorSession, unsavedMapOfASessionThatEndsIsInItsAutosave)
{
    // The console saves before it runs a text, so the second one saves what the first one did.
    const ProgramRun run = play("2 key down `\n3 key up `\n5 text (add-object \"lamp\" 1.0 2.0 3.0)\n"
                                "6 key down Return\n7 key up Return\n10 text (brush-count)\n11 key down Return\n",
                                "map.cfg" + inTheWindow);
    EXPECT_EQ(run.status, 0) << run.errors;
    std::string problem;
    const std::optional<MapDocument> saved = loadMap("map.cfg.autosave", problem);
    ASSERT_TRUE(saved) << problem;
    EXPECT_EQ(saved->entities.size(), 1u);
    EXPECT_FALSE(fs::exists("map.cfg"));
}

TEST_F(EditorSession, mapIsAutosavedWhenItIsTime)
{
    writeFileContents("settings.cfg", "<editor><autosave-seconds 1/></editor>");
    const std::string placeLamp = "2 key down 4\n3 key up 4\n5 motion 460 300 0 0\n7 button down 1\n8 button up 1\n";
    const std::string arguments = "map.cfg --settings settings.cfg" + inTheWindow;
    EXPECT_EQ(play(placeLamp + "50 wheel 0\n", arguments).status, 0);
    EXPECT_FALSE(fs::exists("map.cfg.autosave")) << "after 51/60 of a second";
    EXPECT_EQ(play(placeLamp + "65 wheel 0\n", arguments).status, 0);
    std::string problem;
    const std::optional<MapDocument> saved = loadMap("map.cfg.autosave", problem);
    ASSERT_TRUE(saved) << problem;
    EXPECT_EQ(saved->entities.size(), 1u);
}

TEST_F(EditorSession, autosaveIsOfferedTheNextTime)
{
    writeFileContents("map.cfg", "<map>\r\n</map>\r\n");
    writeFileContents("map.cfg.autosave", fileContents(XUM_SESSION_DIRECTORY "/question.cfg"));
    const std::string chooseFirst = "5 motion 320 319 0 0\n6 button down 1\n7 button up 1\n";
    const std::string save = "10 key down Left Ctrl\n10 key down S\n11 key up S\n11 key up Left Ctrl\n14 wheel 0\n";
    playOnMapText(chooseFirst + save);
    EXPECT_EQ(fileContents("map.cfg"), expected("question.cfg"));
    EXPECT_FALSE(fs::exists("map.cfg.autosave"));
}

TEST_F(EditorSession, autosaveOfAMapWithoutANameIsOfferedToo)
{
    writeFileContents("settings.cfg", "<editor></editor>");
    writeFileContents("unnamed.cfg.autosave", fileContents(XUM_SESSION_DIRECTORY "/question.cfg"));
    const ProgramRun run = play("5 motion 280 319 0 0\n6 button down 1\n7 button up 1\n10 key down `\n11 key up `\n"
                                "14 text (save-map \"found.cfg\")\n15 key down Return\n17 wheel 0\n",
                                "--settings settings.cfg" + inTheWindow);
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(fileContents("found.cfg"), expected("question.cfg"));
    EXPECT_FALSE(fs::exists("unnamed.cfg.autosave"));
}

TEST_F(EditorSession, directoryThatCannotBeWrittenToLosesNothing)
{
    writeFileContents("map.cfg", "<map>\r\n</map>\r\n");
    fs::create_directory("map.cfg.new"); // even the administrator cannot write there
    fs::create_directory("map.cfg.autosave.new");
    playOnMap("draw.txt");
    EXPECT_EQ(fileContents("map.cfg"), "<map>\r\n</map>\r\n");
}

TEST_F(EditorSession, keysOfOneFrameCountWithTheirModifiers)
{
    const std::string save = "5 key down Left Ctrl\n5 key down S\n5 key up S\n5 key up Left Ctrl\n8 wheel 0\n";
    EXPECT_EQ(play(save, "map.cfg" + inTheWindow).status, 0);
    EXPECT_TRUE(fs::exists("map.cfg"));
}

TEST_F(EditorSession, escapeIsAnAnswerToQuestions)
{
    const std::string addLamp = "2 key down `\n3 key up `\n5 text (add-object \"lamp\" 1.0 2.0 3.0)\n"
                                "6 key down Return\n7 key up Return\n10 key down Escape\n11 key up Escape\n";
    EXPECT_EQ(play(addLamp + "13 quit\n16 key down Escape\n17 key up Escape\n20 key down F12\n22 wheel 0\n",
                   "map.cfg" + inTheWindow)
                  .status,
              0);
    EXPECT_TRUE(fs::exists("screenshot-001.bmp")) << "the editor goes on";
}

TEST_F(EditorSession, mapThatDisappearsIsWrittenAgain)
{
    writeFileContents("map.cfg", "<map>\r\n</map>\r\n");
    const std::string session = "2 key down `\n3 key up `\n5 text (save-map \"gone/map.cfg\")\n6 key down Return\n"
                                "7 key up Return\n10 text (save-map \"\")\n11 key down Return\n13 wheel 0\n";
    EXPECT_EQ(play(session, "map.cfg" + inTheWindow).status, 0);
    EXPECT_TRUE(fs::exists("map.cfg"));
}

// ---- playing --------------------------------------------------------------------------------------------------------

#ifndef _WIN32
TEST_F(EditorSession, oneKeySavesCompilesAndStartsTheGame)
{
    writeFileContents("game.sh", "#!/bin/sh\nfor a in \"$@\"; do echo \"$a\"; done > arguments.new\n"
                                 "mv arguments.new arguments.txt\n");
    fs::permissions("game.sh", fs::perms::owner_all);
    const ProgramRun run = play("2 key down `\n3 key up `\n5 text (slab 0.0 0.0 0.0 4.0 4.0 \"paving.png\")\n"
                                "6 key down Return\n7 key up Return\n10 key down Escape\n11 key up Escape\n"
                                "13 key down F5\n14 key up F5\n16 wheel 0\n",
                                "map.cfg --game ./game.sh" + inTheWindow);
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_NE(fileContents("map.cfg"), "");
    EXPECT_EQ(fileContents("map.map").substr(0, 7), "!XumMap");
    while (!fs::exists("arguments.txt")) std::this_thread::yield(); // the game goes on by itself
    EXPECT_EQ(fileContents("arguments.txt"),
              "--data\n" XUM_DATA_DIRECTORY "/\n--map\n" + fs::absolute("map.map").string() + "\n");
}

TEST_F(EditorSession, playingANewMapAsksForItsNameFirst)
{
    writeFileContents("game.sh", "#!/bin/sh\ntouch started\n");
    fs::permissions("game.sh", fs::perms::owner_all);
    const ProgramRun run = play("2 key down F5\n3 key up F5\n6 motion 368 322 0 0\n7 button down 1\n8 button up 1\n"
                                "12 wheel 0\n",
                                "--game ./game.sh" + inTheWindow);
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_TRUE(fs::exists("map.cfg"));
    EXPECT_TRUE(fs::exists("map.map"));
    while (!fs::exists("started")) std::this_thread::yield();
}
#endif
