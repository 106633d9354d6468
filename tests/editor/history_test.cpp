#include <history.h>

#include <gtest/gtest.h>

namespace {

MapDocument titled(const std::string& title)
{
    MapDocument document = makeEmptyDocument();
    document.title = title;
    return document;
}

/// A document with its history, edited by its title.
struct Edited {
    MapDocument document = titled("0");
    History history;

    void edit(const std::string& title, int tag = 0)
    {
        history.keep(document, tag);
        document.title = title;
    }

    std::string undo() { return history.undo(document) ? document.title : "nothing"; }
    std::string redo() { return history.redo(document) ? document.title : "nothing"; }
};

} // namespace

TEST(History, goesBackAndForth)
{
    Edited edited;
    edited.edit("1");
    edited.edit("2");
    EXPECT_EQ(edited.undo(), "1");
    EXPECT_EQ(edited.undo(), "0");
    EXPECT_EQ(edited.undo(), "nothing");
    EXPECT_EQ(edited.document.title, "0");
    EXPECT_EQ(edited.redo(), "1");
    EXPECT_EQ(edited.redo(), "2");
    EXPECT_EQ(edited.redo(), "nothing");
    EXPECT_EQ(edited.document.title, "2");
}

TEST(History, knowsWhetherThereIsAnything)
{
    Edited edited;
    EXPECT_FALSE(edited.history.canUndo());
    edited.edit("1");
    EXPECT_TRUE(edited.history.canUndo());
    EXPECT_FALSE(edited.history.canRedo());
    edited.undo();
    EXPECT_FALSE(edited.history.canUndo());
    EXPECT_TRUE(edited.history.canRedo());
}

TEST(History, newEditForgetsWhatWasUndone)
{
    Edited edited;
    edited.edit("1");
    edited.undo();
    edited.edit("2");
    EXPECT_EQ(edited.redo(), "nothing");
    EXPECT_EQ(edited.undo(), "0");
}

TEST(History, editsWithOneTagAreOneStep)
{
    Edited edited;
    edited.edit("1", 5);
    edited.edit("2", 5);
    edited.edit("3", 5);
    edited.edit("4", 6);
    EXPECT_EQ(edited.undo(), "3");
    EXPECT_EQ(edited.undo(), "0");
}

TEST(History, editsWithoutATagAreStepsOfTheirOwn)
{
    Edited edited;
    edited.edit("1");
    edited.edit("2");
    EXPECT_EQ(edited.undo(), "1");
}

TEST(History, endOfAStepPartsEqualTags)
{
    Edited edited;
    edited.edit("1", 5);
    edited.history.endStep();
    edited.edit("2", 5);
    EXPECT_EQ(edited.undo(), "1");
}

TEST(History, undoingPartsEqualTags)
{
    Edited edited;
    edited.edit("1", 5);
    edited.undo();
    edited.edit("2", 5);
    EXPECT_EQ(edited.undo(), "0");
}

TEST(History, thousandStepsAreKept)
{
    Edited edited;
    for (int i = 1; i <= 1200; ++i) edited.edit(std::to_string(i));
    int count = 0;
    while (edited.undo() != "nothing") ++count;
    EXPECT_EQ(count, 1000);
    EXPECT_EQ(edited.document.title, "200");
    count = 0;
    while (edited.redo() != "nothing") ++count;
    EXPECT_EQ(count, 1000);
    EXPECT_EQ(edited.document.title, "1200");
}

TEST(History, clearedOneKnowsNothing)
{
    Edited edited;
    edited.edit("1");
    edited.edit("2");
    edited.undo();
    edited.history.clear();
    EXPECT_EQ(edited.undo(), "nothing");
    EXPECT_EQ(edited.redo(), "nothing");
}
