#include "editor_fixture.h"
#include "file_contents.h"

#include <map_files.h>

#include <filesystem>

// What the editor opens, saves and keeps.

namespace fs = std::filesystem;

// ---- files ----------------------------------------------------------------------------------------------------------

TEST_F(EditorWithABox, savedMapHasNoUnsavedChangesUntilTheNextEdit)
{
    EXPECT_TRUE(editor.hasUnsavedChanges());
    EXPECT_FALSE(editor.save());
    EXPECT_EQ(editor.getMessage(), "The map has no name yet");
    EXPECT_TRUE(editor.saveAs("a.cfg"));
    EXPECT_EQ(editor.getMessage(), "Saved a.cfg");
    EXPECT_FALSE(editor.hasUnsavedChanges());
    addUnitBox(2);
    EXPECT_TRUE(editor.hasUnsavedChanges());
    editor.undo();
    EXPECT_FALSE(editor.hasUnsavedChanges()) << "it is what was saved";
    editor.undo();
    EXPECT_TRUE(editor.hasUnsavedChanges()) << "undone past the save";
    editor.redo();
    EXPECT_FALSE(editor.hasUnsavedChanges());
}

TEST_F(EditorWithABox, failedSaveLeavesChangesUnsavedAndTheNameAsItWas)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    addUnitBox(2);
    EXPECT_FALSE(editor.saveAs("none/b.cfg"));
    EXPECT_EQ(editor.getMessage(), "cannot write none/b.cfg: there is no directory none");
    EXPECT_TRUE(editor.hasUnsavedChanges());
    EXPECT_EQ(editor.getFileName(), "a.cfg");
}

TEST_F(EditorWithABox, openedMapReplacesEverything)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    editor.newMap();
    EXPECT_EQ(editor.getFileName(), "");
    EXPECT_EQ(countBrushes(), 0u);
    EXPECT_FALSE(editor.canUndo());
    ASSERT_TRUE(editor.open("a.cfg"));
    EXPECT_EQ(countBrushes(), 1u);
    EXPECT_EQ(editor.getFileName(), "a.cfg");
    EXPECT_FALSE(editor.hasUnsavedChanges());
    EXPECT_FALSE(editor.canUndo());
}

TEST_F(EditorWithABox, mapThatCannotBeOpenedLeavesTheOtherOne)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    addUnitBox(2);
    writeFileContents("broken.cfg", "<map>");
    EXPECT_FALSE(editor.open("broken.cfg"));
    EXPECT_EQ(editor.getMessage(), "broken.cfg: 1:1: readSection() -> section needs at least 2 tokens!");
    EXPECT_EQ(countBrushes(), 2u);
    EXPECT_EQ(editor.getFileName(), "a.cfg");
    EXPECT_TRUE(editor.canUndo());
}

TEST_F(EditorWithABox, fileThatDisappearsIsSavedAgain)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    EXPECT_FALSE(editor.needsSaving());
    fs::remove("a.cfg");
    EXPECT_TRUE(editor.needsSaving());
    EXPECT_TRUE(editor.save());
    EXPECT_TRUE(fs::exists("a.cfg"));
}

TEST_F(EditorWithABox, newMapWithANameIsNotWrittenBeforeItIsSaved)
{
    editor.newMap("b.cfg");
    EXPECT_EQ(editor.getMessage(), "A new map, b.cfg");
    EXPECT_FALSE(editor.hasUnsavedChanges());
    EXPECT_TRUE(editor.needsSaving());
    EXPECT_FALSE(fs::exists("b.cfg"));
    EXPECT_TRUE(editor.save());
    EXPECT_TRUE(fs::exists("b.cfg"));
}

TEST_F(EditorWithABox, revertedMapIsWhatWasSavedAndCanBeUndone)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    addUnitBox(2);
    addUnitBox(4);
    editor.revert();
    EXPECT_EQ(countBrushes(), 1u);
    EXPECT_FALSE(editor.hasUnsavedChanges());
    editor.undo();
    EXPECT_EQ(countBrushes(), 3u);
    EXPECT_TRUE(editor.hasUnsavedChanges());
}

TEST_F(EditorWithABox, mapIsCompiledBesideItsFile)
{
    std::string name;
    EXPECT_FALSE(editor.compile(name));
    EXPECT_EQ(editor.getMessage(), "The map has no name yet: save it first");
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    EXPECT_TRUE(editor.compile(name));
    EXPECT_EQ(name, "a.map");
    EXPECT_EQ(editor.getMessage(), "Compiled a.map");
    EXPECT_TRUE(fs::exists("a.map"));
    fs::create_directory("b.map");
    ASSERT_TRUE(editor.saveAs("b.cfg"));
    EXPECT_FALSE(editor.compile(name));
    EXPECT_EQ(editor.getMessage(), "cannot write b.map: it is a directory");
}

// ---- autosaves ------------------------------------------------------------------------------------------------------

TEST_F(EditorWithABox, autosaveIsBesideTheMapUntilItIsSaved)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    editor.autosave();
    EXPECT_FALSE(fs::exists("a.cfg.autosave")) << "there is nothing unsaved";
    addUnitBox(2);
    editor.autosave();
    ASSERT_TRUE(fs::exists("a.cfg.autosave"));
    fs::remove("a.cfg.autosave");
    editor.autosave();
    EXPECT_FALSE(fs::exists("a.cfg.autosave")) << "nothing has changed since";
    addUnitBox(4);
    editor.autosave();
    EXPECT_TRUE(editor.save());
    EXPECT_FALSE(fs::exists("a.cfg.autosave"));
}

TEST_F(EditorWithABox, autosaveIsOpenedAsUnsavedChanges)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    addUnitBox(2);
    editor.autosave();
    Editor other;
    ASSERT_TRUE(other.openAutosave("a.cfg"));
    EXPECT_EQ(other.getDocument().brushes.size(), 2u);
    EXPECT_EQ(other.getFileName(), "a.cfg");
    EXPECT_EQ(other.getMessage(), "Opened what was not saved of a.cfg");
    EXPECT_TRUE(other.hasUnsavedChanges());
    other.revert();
    EXPECT_EQ(other.getDocument().brushes.size(), 1u);
    EXPECT_FALSE(other.hasUnsavedChanges());
}

TEST_F(EditorWithABox, emptyAutosaveIsAnUnsavedChange)
{
    ASSERT_TRUE(editor.saveAs("a.cfg"));
    editor.selectBrush(0);
    editor.deleteSelection();
    editor.autosave();
    Editor other;
    ASSERT_TRUE(other.openAutosave("a.cfg"));
    EXPECT_TRUE(other.hasUnsavedChanges());
}

TEST_F(EditorWithABox, mapWithoutANameIsAutosavedInItsDirectory)
{
    fs::create_directory("own");
    editor.setAutosaveDirectory("own/");
    EXPECT_EQ(editor.getUnnamedFile(), "own/unnamed.cfg");
    editor.autosave();
    EXPECT_TRUE(hasYoungerAutosave("own/unnamed.cfg"));
    Editor other;
    other.setAutosaveDirectory("own/");
    ASSERT_TRUE(other.openAutosave(other.getUnnamedFile()));
    EXPECT_EQ(other.getFileName(), "") << "it still has no name";
    EXPECT_EQ(other.getDocument().brushes.size(), 1u);
    EXPECT_TRUE(other.saveAs("named.cfg"));
    EXPECT_FALSE(hasYoungerAutosave("own/unnamed.cfg")) << "saved elsewhere";
}

TEST_F(EditorWithABox, failedAutosaveIsToldAndTriedAgain)
{
    editor.setAutosaveDirectory("none/");
    editor.autosave();
    EXPECT_EQ(editor.getMessage(), "No autosave: cannot write none/unnamed.cfg.autosave: there is no directory none");
    fs::create_directory("none");
    editor.autosave();
    EXPECT_TRUE(fs::exists("none/unnamed.cfg.autosave"));
}

TEST_F(EditorWithABox, brokenAutosaveIsTold)
{
    writeFileContents("a.cfg.autosave", "<map");
    EXPECT_FALSE(editor.openAutosave("a.cfg"));
    EXPECT_EQ(editor.getMessage(),
              "a.cfg.autosave: 1:1: tokenize() -> end of file reached before finding a closing tag!");
    EXPECT_EQ(countBrushes(), 1u);
}
