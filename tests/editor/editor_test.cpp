#include "editor_fixture.h"
#include "file_contents.h"

namespace {

using Numbers = std::vector<double>;

} // namespace

// ---- edits ----------------------------------------------------------------------------------------------------------

TEST_F(EditorWithABox, editsAreUndoneAndDoneAgain)
{
    addUnitBox(5);
    editor.undo();
    EXPECT_EQ(countBrushes(), 1u);
    EXPECT_EQ(editor.getMessage(), "Undone");
    editor.redo();
    EXPECT_EQ(countBrushes(), 2u);
    EXPECT_EQ(editor.getMessage(), "Done again");
    editor.redo();
    EXPECT_EQ(editor.getMessage(), "There is nothing to do again");
    editor.undo();
    editor.undo();
    editor.undo();
    EXPECT_EQ(countBrushes(), 0u);
    EXPECT_EQ(editor.getMessage(), "There is nothing to undo");
}

TEST_F(EditorWithABox, editThatChangesNothingIsNoStep)
{
    const std::uint64_t version = editor.getVersion();
    editor.edit([](MapDocument& map) { removeBrush(map, 7); });
    EXPECT_EQ(editor.getVersion(), version);
    editor.undo();
    EXPECT_EQ(countBrushes(), 0u) << "the box was the last step";
}

TEST_F(EditorWithABox, everyChangeHasAnotherVersion)
{
    std::uint64_t version = editor.getVersion();
    const auto expectAnother = [&] {
        EXPECT_NE(editor.getVersion(), version);
        version = editor.getVersion();
    };
    addUnitBox(5);
    expectAnother();
    editor.undo();
    expectAnother();
    editor.redo();
    expectAnother();
    editor.selectBrush(0);
    expectAnother();
    editor.newMap();
    expectAnother();
}

TEST_F(EditorWithABox, editsOfOneStepAreUndoneTogether)
{
    editor.beginStep();
    addUnitBox(2);
    addUnitBox(4);
    editor.endStep();
    editor.beginStep();
    addUnitBox(6);
    editor.endStep();
    addUnitBox(8);
    for (const std::size_t count : {4u, 3u, 1u, 0u}) {
        editor.undo();
        EXPECT_EQ(countBrushes(), count);
    }
}

TEST_F(EditorWithABox, dragOfManyMovesIsOneStep)
{
    editor.selectBrush(0);
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(editor.moveSelection({0.5, 0, 0}, 1));
    editor.endStep();
    EXPECT_TRUE(editor.moveSelection({0, 1, 0}, 1));
    EXPECT_EQ(bounds(0), (Numbers{5, 1, 0, 6, 2, 1}));
    editor.undo();
    EXPECT_EQ(bounds(0), (Numbers{5, 0, 0, 6, 1, 1}));
    editor.undo();
    EXPECT_EQ(bounds(0), (Numbers{0, 0, 0, 1, 1, 1}));
}

// ---- selection ------------------------------------------------------------------------------------------------------

TEST_F(EditorWithABox, onlyWhatIsThereIsSelected)
{
    editor.selectBrush(0);
    EXPECT_TRUE(editor.hasBrush());
    EXPECT_FALSE(editor.hasEntity());
    EXPECT_EQ(numbersOf(editor.getSelectionBounds()), (Numbers{0, 0, 0, 1, 1, 1}));
    editor.selectBrush(1);
    EXPECT_FALSE(editor.hasBrush());
    editor.selectEntity(0);
    EXPECT_FALSE(editor.hasEntity());
    Hit land;
    land.kind = Hit::Kind::Terrain;
    editor.select(land);
    EXPECT_EQ(editor.getSelection().kind, Hit::Kind::Nothing);
    EXPECT_EQ(numbersOf(editor.getSelectionBounds()), (Numbers{0, 0, 0, 0, 0, 0}));
}

TEST_F(EditorWithABox, entityHasASizeForTheEye)
{
    addLamp();
    editor.selectEntity(0);
    const Numbers corners = numbersOf(editor.getSelectionBounds());
    const Numbers expected = {0.7, 1.7, 2.7, 1.3, 2.3, 3.3};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(corners[i], expected[i]);
}

TEST_F(EditorWithABox, selectionFollowsItsPartWhenOthersGo)
{
    addUnitBox(2);
    addUnitBox(4);
    editor.selectBrush(2);
    editor.edit([](MapDocument& map) { removeBrush(map, 0); });
    EXPECT_EQ(editor.getSelection().number, 1u);
    EXPECT_EQ(numbersOf(editor.getSelectionBounds())[0], 4);
    editor.undo();
    EXPECT_EQ(editor.getSelection().number, 2u);
    editor.edit([](MapDocument& map) { removeBrush(map, 2); });
    EXPECT_FALSE(editor.hasBrush()) << "it is gone itself";
    editor.undo();
    EXPECT_FALSE(editor.hasBrush());
}

TEST_F(EditorWithABox, selectionStaysWhenItsPartChanges)
{
    addUnitBox(2);
    editor.selectBrush(1);
    editor.moveSelection({0, 3, 0});
    EXPECT_EQ(editor.getSelection().number, 1u);
    editor.edit([](MapDocument& map) { removeBrush(map, 0); });
    EXPECT_EQ(editor.getSelection().number, 0u);
    EXPECT_EQ(numbersOf(editor.getSelectionBounds())[1], 3);
}

TEST_F(EditorWithABox, selectionIsDeleted)
{
    addLamp();
    editor.selectBrush(0);
    editor.deleteSelection();
    EXPECT_EQ(countBrushes(), 0u);
    EXPECT_EQ(editor.getSelection().kind, Hit::Kind::Nothing);
    editor.selectEntity(0);
    editor.deleteSelection();
    EXPECT_TRUE(editor.getDocument().entities.empty());
    editor.deleteSelection();
    editor.undo();
    EXPECT_EQ(editor.getDocument().entities.size(), 1u) << "deleting nothing is no step";
}

TEST_F(EditorWithABox, nothingMovesWithoutASelection)
{
    EXPECT_FALSE(editor.moveSelection({1, 0, 0}));
    editor.selectBrush(0);
    EXPECT_FALSE(editor.moveSelection({1e7, 0, 0}));
    EXPECT_EQ(bounds(0), (Numbers{0, 0, 0, 1, 1, 1}));
}

// ---- copies ---------------------------------------------------------------------------------------------------------

TEST_F(EditorWithABox, copyOfABrushIsAMap)
{
    editor.selectBrush(0);
    EXPECT_EQ(editor.copySelection(), "<map>\n"
                                      "   <mesh>\n"
                                      "      <brush>\n"
                                      "         <box \"0 0 0 1 1 1\"/>\n"
                                      "         <texture \"brick.png\"/>\n"
                                      "      </brush>\n"
                                      "   </mesh>\n"
                                      "</map>\n");
    editor.selectNothing();
    EXPECT_EQ(editor.copySelection(), "");
}

TEST_F(EditorWithABox, pastedBrushIsOneGridStepAsideAndSelected)
{
    editor.grid = 0.25;
    editor.selectBrush(0);
    const std::string text = editor.copySelection();
    EXPECT_TRUE(editor.paste(text));
    EXPECT_EQ(bounds(1), (Numbers{0.25, 0.25, 0, 1.25, 1.25, 1}));
    EXPECT_EQ(editor.getSelection().number, 1u);
    editor.grid = 0;
    EXPECT_TRUE(editor.paste(text));
    EXPECT_EQ(bounds(2)[0], 0.5);
    editor.undo();
    EXPECT_EQ(countBrushes(), 2u) << "pasting is one step";
}

TEST_F(EditorWithABox, pastedPartsKeepTheirPlaceInAnotherMap)
{
    addLamp();
    editor.selectBrush(0);
    const std::string brush = editor.copySelection();
    editor.selectEntity(0);
    const std::string lamp = editor.copySelection();
    writeFileContents("other.cfg",
                      "<map><mesh><origin \"100 0 0\"/><brush><box \"0 0 0 1 1 1\"/></brush></mesh></map>");
    ASSERT_TRUE(editor.open("other.cfg"));
    EXPECT_TRUE(editor.paste(brush));
    EXPECT_EQ(bounds(1), (Numbers{0.5, 0.5, 0, 1.5, 1.5, 1}));
    EXPECT_TRUE(editor.paste(lamp));
    EXPECT_EQ(getPosition(editor.getDocument(), *editor.getDocument().entities[0]), Vector3<double>(1.5, 2.5, 3));
    editor.selectEntity(0);
    EXPECT_NE(editor.copySelection().find("<position \"1.5 2.5 3\"/>"), std::string::npos);
}

TEST_F(EditorWithABox, duplicateIsACopyAside)
{
    editor.selectBrush(0);
    editor.duplicateSelection();
    EXPECT_EQ(bounds(1), (Numbers{0.5, 0.5, 0, 1.5, 1.5, 1}));
}

TEST_F(EditorWithABox, otherTextsAreNotPasted)
{
    EXPECT_FALSE(editor.paste("hello"));
    EXPECT_EQ(editor.getMessage(), "Nothing that was copied from a map: 1:1: tokenize() -> expecting '<' got 'h'!");
    EXPECT_FALSE(editor.paste(""));
    EXPECT_EQ(editor.getMessage(), "Nothing that was copied from a map: 1:1: the text is empty");
    EXPECT_FALSE(editor.paste("<map></map>"));
    EXPECT_EQ(editor.getMessage(), "There is nothing to paste, or no room for it");
    EXPECT_FALSE(editor.paste("<map><mesh><brush><box \"0 0 0 1e6 1 1\"/></brush></mesh></map>"));
    EXPECT_EQ(countBrushes(), 1u);
}
