#include "console_fixture.h"
#include "file_contents.h"

#include <filesystem>

// The console, and each function that it adds to the language. Those of lisp/editor-commands.lisp have tests of their
// own.

namespace {

namespace fs = std::filesystem;
using EditorConsole = ConsoleFixture;
using Numbers = std::vector<double>;

} // namespace

// ---- the console ----------------------------------------------------------------------------------------------------

TEST_F(EditorConsole, beginsWithItsCommands)
{
    ASSERT_EQ(console->getLines().size(), 1u);
    EXPECT_EQ(console->getLines()[0], "Loaded lisp/editor-commands.lisp");
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(EditorConsole, showsWhatWasTypedPrintedAndGiven)
{
    console->run("(do (display \"hello\") (+ 1 2))");
    const std::vector<std::string> lines(console->getLines().begin() + 1, console->getLines().end());
    EXPECT_EQ(lines, (std::vector<std::string>{"> (do (display \"hello\") (+ 1 2))", "hello", "3"}));
}

TEST_F(EditorConsole, valuesAreShownAsTheLanguageWritesThem)
{
    EXPECT_EQ(run(":nil"), "");
    EXPECT_EQ(run(":true"), ":true");
    EXPECT_EQ(run("(< 2 1)"), ":false");
    EXPECT_EQ(run("2.5"), "2.5");
    EXPECT_EQ(run("\"a b\""), "\"a b\"");
    EXPECT_EQ(run(":red"), ":red");
    EXPECT_EQ(run("(list 1 2.5 (list \"x\"))"), "(1 2.5 (\"x\"))");
    EXPECT_EQ(run("(closure () 1)"), "something else");
}

TEST_F(EditorConsole, errorsAreLines)
{
    EXPECT_EQ(run("(no-such-thing)"),
              "error: symbol 'no-such-thing' has no binding!|error: expected :closure (got :nil)!");
    EXPECT_EQ(run("(brush-count"), "This is no whole expression");
    EXPECT_EQ(run("(move-brush 0)"), "error: wrong number of parameters!");
    EXPECT_EQ(run("(raise-terrain 0.0 0.0 2 1.0)"),
              "closure: raise-terrain|  error: expected ':float' but got ':integer' for parameter 2.");
    EXPECT_EQ(map().brushes.size(), 0u);
}

TEST_F(EditorConsole, rememberWhatWasTypedOnce)
{
    run("(brush-count)");
    run("(brush-count)");
    run("1");
    EXPECT_EQ(console->getTyped(), (std::deque<std::string>{"(brush-count)", "1"}));
}

TEST_F(EditorConsole, forgetsTheOldestOfAThousandLines)
{
    for (int i = 0; i < 600; ++i) console->run(std::to_string(i));
    EXPECT_EQ(console->getLines().size(), 1000u);
    EXPECT_EQ(console->countLines(), 1201u);
    EXPECT_EQ(console->getLines().back(), "599");
    EXPECT_EQ(console->getTyped().size(), 600u);
}

TEST_F(EditorConsole, allThatOneTextDoesIsOneStep)
{
    run("(do (add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\") (add-object \"lamp\" 0.0 0.0 0.0))");
    run("(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\")");
    EXPECT_EQ(map().brushes.size(), 2u);
    editor.undo();
    EXPECT_EQ(map().brushes.size(), 1u);
    editor.undo();
    EXPECT_EQ(map().brushes.size(), 0u);
    EXPECT_EQ(map().entities.size(), 0u);
}

TEST_F(EditorConsole, commandsAreLoadedAgain)
{
    fs::copy(XUM_DATA_DIRECTORY "/lisp", "lisp", fs::copy_options::recursive);
    makeConsole("./");
    writeFileContents("lisp/editor-commands.lisp", "(define my-number 42)");
    console->reload();
    EXPECT_EQ(console->getLines().back(), "Loaded lisp/editor-commands.lisp");
    EXPECT_EQ(run("my-number"), "42");
    writeFileContents("lisp/editor-commands.lisp", "(define my-other 43) (");
    console->reload();
    EXPECT_EQ(console->getLines().back(), "lisp/editor-commands.lisp cannot be read to its end");
    EXPECT_EQ(run("my-other"), "43");
}

TEST_F(EditorConsole, missingScriptIsNamedAndTheEditorGoesOn)
{
    for (const char* name : {"base/base", "engine", "editor", "game", "editor-commands"}) {
        fs::remove_all("lisp");
        fs::copy(XUM_DATA_DIRECTORY "/lisp", "lisp", fs::copy_options::recursive);
        const std::string script = std::string("lisp/") + name + ".lisp";
        fs::remove(script);
        makeConsole("./");
        EXPECT_EQ(console->getLines(),
                  (std::deque<std::string>{"There are no scripts: cannot read the file ./" + script}));
        EXPECT_EQ(run("(brush-count)"), "");
        console->reload();
    }
    EXPECT_TRUE(shownMessageBoxes().empty());
}

// ---- brushes --------------------------------------------------------------------------------------------------------

TEST_F(EditorConsole, boxesAreAddedAndCounted)
{
    EXPECT_EQ(run("(brush-count)"), "0");
    EXPECT_EQ(run("(add-box 1.0 2.0 3.0 4.0 5.0 6.0 \"wood.png\")"), "0");
    EXPECT_EQ(run("(add-box 1.0 2.0 3.0 1.0 5.0 6.0 \"wood.png\")"), "-1");
    EXPECT_EQ(run("(brush-count)"), "1");
    EXPECT_EQ(boundsOf(map(), 0), (Numbers{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(map().brushes[0]->brush.sides[0].texture, "wood.png");
    EXPECT_EQ(run("(brush-box 0)"), "(1 2 3 4 5 6)");
    EXPECT_EQ(run("(brush-box 1)"), "()");
    EXPECT_EQ(run("(brush-box -1)"), "()");
}

TEST_F(EditorConsole, brushesMoveAreCopiedResizedAndRemoved)
{
    run("(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\")");
    EXPECT_EQ(run("(move-brush 0 1.0 2.0 -0.5)"), ":true");
    EXPECT_EQ(boundsOf(map(), 0), (Numbers{1, 2, -0.5, 2, 3, 0.5}));
    EXPECT_EQ(run("(move-brush 1 1.0 2.0 -0.5)"), ":false");
    EXPECT_EQ(run("(copy-brush 0 3.0 0.0 0.0)"), "1");
    EXPECT_EQ(boundsOf(map(), 1), (Numbers{4, 2, -0.5, 5, 3, 0.5}));
    EXPECT_EQ(run("(copy-brush 2 3.0 0.0 0.0)"), "-1");
    EXPECT_EQ(run("(resize-brush 1 0.0 0.0 0.0 2.0 2.0 2.0)"), ":true");
    EXPECT_EQ(boundsOf(map(), 1), (Numbers{0, 0, 0, 2, 2, 2}));
    EXPECT_EQ(run("(resize-brush 1 0.0 0.0 0.0 2.0 2.0 0.0)"), ":false");
    EXPECT_EQ(run("(remove-brush 0)"), ":true");
    EXPECT_EQ(boundsOf(map(), 0), (Numbers{0, 0, 0, 2, 2, 2}));
    EXPECT_EQ(run("(remove-brush 1)"), ":false");
    EXPECT_EQ(run("(remove-brush -1)"), ":false");
}

TEST_F(EditorConsole, brushesAreTextured)
{
    run("(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\")");
    EXPECT_EQ(run("(texture-brush 0 \"b\")"), ":true");
    EXPECT_EQ(run("(texture-side 0 5 \"c\")"), ":true");
    EXPECT_EQ(run("(texture-side 0 6 \"c\")"), ":false");
    EXPECT_EQ(run("(texture-brush 1 \"b\")"), ":false");
    EXPECT_EQ(map().brushes[0]->brush.sides[0].texture, "b");
    EXPECT_EQ(map().brushes[0]->brush.sides[5].texture, "c");
    EXPECT_EQ(run("(repeat-texture 0 0.25)"), ":true");
    EXPECT_EQ(run("(repeat-texture 0 0.0)"), ":false");
    EXPECT_EQ(map().brushes[0]->brush.scale, 0.25);
    EXPECT_EQ(run("(set-solid 0 :false)"), ":true");
    EXPECT_FALSE(map().brushes[0]->brush.isSolid);
    EXPECT_EQ(run("(set-solid 1 :false)"), ":false");
}

// ---- objects and selection ------------------------------------------------------------------------------------------

TEST_F(EditorConsole, objectsAreAddedChangedAndRemoved)
{
    EXPECT_EQ(run("(object-count)"), "0");
    EXPECT_EQ(run("(add-object \"lamp\" 1.0 2.0 3.0)"), "0");
    EXPECT_EQ(run("(add-object \"\" 1.0 2.0 3.0)"), "-1");
    EXPECT_EQ(run("(object-count)"), "1");
    EXPECT_EQ(run("(move-object 0 0.5 0.0 0.0)"), ":true");
    EXPECT_EQ(run("(object-entry 0 \"position\")"), "\"1.5 2 3\"");
    EXPECT_EQ(run("(object-entry 0 \"color\")"), "\"\"");
    EXPECT_EQ(run("(object-entry 1 \"color\")"), "\"\"");
    EXPECT_EQ(run("(set-object 0 \"color\" \"red\")"), ":true");
    EXPECT_EQ(run("(set-object 0 \"bad name\" \"red\")"), ":false");
    EXPECT_EQ(run("(object-entry 0 \"color\")"), "\"red\"");
    EXPECT_EQ(run("(move-object 1 0.5 0.0 0.0)"), ":false");
    EXPECT_EQ(run("(remove-object 1)"), ":false");
    EXPECT_EQ(run("(remove-object 0)"), ":true");
    EXPECT_EQ(run("(object-count)"), "0");
}

TEST_F(EditorConsole, selectionIsAskedForAndSet)
{
    run("(do (add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\") (add-object \"lamp\" 1.0 2.0 3.0))");
    EXPECT_EQ(run("(selected-brush)"), "-1");
    EXPECT_EQ(run("(selected-object)"), "-1");
    EXPECT_EQ(run("(select-brush 0)"), ":true");
    EXPECT_EQ(run("(selected-brush)"), "0");
    EXPECT_EQ(run("(select-object 0)"), ":true");
    EXPECT_EQ(run("(selected-object)"), "0");
    EXPECT_EQ(run("(selected-brush)"), "-1");
    EXPECT_EQ(run("(select-brush 1)"), ":false");
    EXPECT_EQ(run("(selected-object)"), "-1");
    run("(select-object 0)");
    run("(select-nothing)");
    EXPECT_EQ(run("(selected-object)"), "-1");
}

// ---- terrain --------------------------------------------------------------------------------------------------------

TEST_F(EditorConsole, terrainIsMadeAndShaped)
{
    EXPECT_EQ(run("(raise-terrain 0.0 0.0 2.0 3.0)"), ":false");
    EXPECT_EQ(run("(terrain-height 0.0 0.0)"), "0");
    EXPECT_EQ(run("(make-terrain 2 3 4 \"grass.jpg\")"), ":true");
    EXPECT_EQ(map().terrains.at(0)->countRows(), 7);
    EXPECT_EQ(run("(raise-terrain 0.0 0.0 2.0 3.0)"), ":true");
    EXPECT_EQ(run("(terrain-height 0.0 0.0)"), "3");
    EXPECT_EQ(run("(terrain-height 4.0 0.0)"), "0");
    EXPECT_EQ(run("(raise-terrain 0.0 0.0 2.0 -1.0)"), ":true");
    EXPECT_EQ(run("(terrain-height 0.0 0.0)"), "2");
    EXPECT_EQ(run("(flatten-terrain 4.0 0.0 2.0 7.0)"), ":true");
    EXPECT_EQ(run("(terrain-height 4.0 0.0)"), "7");
    EXPECT_EQ(run("(smooth-terrain 0.0 0.0 2.0)"), ":true");
    EXPECT_EQ(run("(terrain-height 0.0 0.0)"), "1.8") << "the mean of 2, 7, 0, 0 and 0";
}

TEST_F(EditorConsole, sizesOfTerrainHaveLimits)
{
    run("(make-terrain 1000000000000 -1 99999 \"grass.jpg\")");
    EXPECT_EQ(map().terrains.at(0)->width, 256);
    EXPECT_EQ(map().terrains.at(0)->height, 1);
    EXPECT_EQ(map().terrains.at(0)->spacing, 1000);
}

// ---- the map --------------------------------------------------------------------------------------------------------

TEST_F(EditorConsole, mapsAreSavedAndOpened)
{
    EXPECT_EQ(run("(save-map \"\")"), ":false") << "it has no name";
    run("(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\")");
    EXPECT_EQ(run("(set-title \"My map\")"), ":true");
    EXPECT_EQ(run("(set-title \"<\")"), ":false");
    EXPECT_EQ(run("(map-name)"), "\"\"");
    EXPECT_EQ(run("(map-changed?)"), ":true");
    EXPECT_EQ(run("(save-map \"a.cfg\")"), ":true");
    EXPECT_EQ(run("(map-name)"), "\"a.cfg\"");
    EXPECT_EQ(run("(map-changed?)"), ":false");
    EXPECT_EQ(run("(new-map)"), ":true");
    EXPECT_EQ(run("(brush-count)"), "0");
    EXPECT_EQ(run("(open-map \"a.cfg\")"), ":true");
    EXPECT_EQ(run("(brush-count)"), "1");
    EXPECT_EQ(map().title, "My map");
    EXPECT_EQ(run("(open-map \"none.cfg\")"), ":false");
    EXPECT_EQ(editor.getMessage(), "there is no file none.cfg");
    EXPECT_EQ(run("(compile-map)"), ":true");
    EXPECT_TRUE(fs::exists("a.map"));
}

TEST_F(EditorConsole, scriptsLoseNothingThatIsUnsaved)
{
    run("(save-map \"a.cfg\")");
    run("(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\")");
    EXPECT_EQ(run("(new-map)"), ":false");
    EXPECT_EQ(editor.getMessage(), "There are unsaved changes: (save-map \"\") or (revert-map) comes first");
    EXPECT_EQ(run("(open-map \"a.cfg\")"), ":false");
    EXPECT_EQ(map().brushes.size(), 1u);
    EXPECT_EQ(run("(revert-map)"), "");
    EXPECT_EQ(map().brushes.size(), 0u);
    EXPECT_EQ(run("(new-map)"), ":true");
}

TEST_F(EditorConsole, editsAreUndoneAndDoneAgain)
{
    run("(add-box 0.0 0.0 0.0 1.0 1.0 1.0 \"a\")");
    run("(undo-edit)");
    EXPECT_EQ(run("(brush-count)"), "0");
    run("(redo-edit)");
    EXPECT_EQ(run("(brush-count)"), "1");
}

TEST_F(EditorConsole, gridMessageAndCameraAreSet)
{
    EXPECT_EQ(run("(set-grid 0.25)"), ":true");
    EXPECT_EQ(run("(get-grid)"), "0.25");
    EXPECT_EQ(run("(set-grid -1.0)"), ":false");
    EXPECT_EQ(run("(set-grid 1001.0)"), ":false");
    EXPECT_EQ(editor.grid, 0.25);
    EXPECT_EQ(run("(say \"hello\")"), "");
    EXPECT_EQ(editor.getMessage(), "hello");
    EXPECT_EQ(run("(set-camera 1.0 2.0 3.0 40.0 -50.0)"), ":true");
    EXPECT_EQ(viewport->getCamera().position, Vector3<float>(1, 2, 3));
    EXPECT_EQ(viewport->getCamera().yaw, 40);
    EXPECT_EQ(viewport->getCamera().pitch, -50);
}

TEST_F(EditorConsole, cameraLooksAtTheSelection)
{
    run("(do (add-box 100.0 0.0 0.0 101.0 1.0 1.0 \"a\") (select-brush 0))");
    run("(look-at-selection)");
    const Viewpoint camera = viewport->getCamera();
    const Vector3<float> way = Vector3<float>(100.5f, 0.5f, 0.5f) - camera.position;
    EXPECT_NEAR(dot(normalize(way), camera.getForward()), 1, 1e-5);
    EXPECT_LT(length(way), 10);
}
