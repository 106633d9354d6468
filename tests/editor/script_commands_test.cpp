#include "console_fixture.h"

#include <fstream>
#include <regex>
#include <set>

// The commands of lisp/editor-commands.lisp.

namespace {

using Numbers = std::vector<double>;

class EditorCommands : public ConsoleFixture {
protected:
    /// The corners of all brushes.
    std::vector<Numbers> boxes() const
    {
        std::vector<Numbers> corners;
        for (std::size_t i = 0; i < map().brushes.size(); ++i) corners.push_back(boundsOf(map(), i));
        return corners;
    }

    /// Unit boxes at x = 0, 2, 4 ...
    void addRow(int count)
    {
        for (int i = 0; i < count; ++i)
            editor.edit([&](MapDocument& changed) { addBox(changed, {{2.0 * i, 0, 0}, {2.0 * i + 1, 1, 1}}, "a", 1); });
    }

    std::string firstCoordinates() const
    {
        std::string text;
        for (const Numbers& box : boxes()) text += std::to_string(static_cast<int>(box[0])) + " ";
        return text;
    }
};

} // namespace

TEST_F(EditorCommands, slabAndWallsAreBoxes)
{
    EXPECT_EQ(run("(slab 1.0 2.0 3.0 6.0 4.0 \"paving.png\")"), "0");
    EXPECT_EQ(run("(wall 1.0 2.0 3.0 6.0 3.0 \"brick.png\")"), "1");
    EXPECT_EQ(run("(wall-along-y 1.0 2.0 3.0 6.0 3.0 \"brick.png\")"), "2");
    EXPECT_EQ(boxes(), (std::vector<Numbers>{{1, 2, 2.75, 7, 6, 3}, {1, 2, 3, 7, 2.4, 6}, {1, 2, 3, 1.4, 8, 6}}));
    EXPECT_EQ(map().brushes[0]->brush.sides[0].texture, "paving.png");
}

TEST_F(EditorCommands, roomHasAFloorFourWallsAndADoor)
{
    EXPECT_EQ(run("(room 0.0 0.0 0.0 8.0 6.0 3.0 \"brick.png\")"), "");
    EXPECT_EQ(boxes(), (std::vector<Numbers>{{0, 0, -0.25, 8, 6, 0},
                                             {0, 0, 0, 3.2, 0.4, 3},
                                             {4.8, 0, 0, 8, 0.4, 3},
                                             {3.2, 0, 2.2, 4.8, 0.4, 3},
                                             {0, 5.6, 0, 8, 6, 3},
                                             {0, 0.4, 0, 0.4, 5.6, 3},
                                             {7.6, 0.4, 0, 8, 5.6, 3}}));
    editor.undo();
    EXPECT_TRUE(map().brushes.empty()) << "it is one step";
}

TEST_F(EditorCommands, stairsGoUp)
{
    run("(stairs 0.0 0.0 0.0 3 \"limestone.png\")");
    EXPECT_EQ(boxes(), (std::vector<Numbers>{
                           {0, 0, 0, 1.5, 0.3, 0.3}, {0, 0.3, 0.3, 1.5, 0.6, 0.6}, {0, 0.6, 0.6, 1.5, 0.9, 0.9}}));
    run("(stairs 0.0 0.0 0.0 0 \"limestone.png\")");
    EXPECT_EQ(map().brushes.size(), 3u);
}

TEST_F(EditorCommands, lampsHangInARow)
{
    run("(row-of-lamps 1.0 2.0 2.5 4.0 3)");
    ASSERT_EQ(map().entities.size(), 3u);
    EXPECT_EQ(getEntry(*map().entities[0], "position"), "1 2 2.5");
    EXPECT_EQ(getEntry(*map().entities[2], "position"), "9 2 2.5");
    EXPECT_EQ(getEntry(*map().entities[2], "class"), "lamp");
}

TEST_F(EditorCommands, brushesAreKept)
{
    addRow(5);
    EXPECT_EQ(run("(keep)"), "0") << "nothing is selected";
    editor.selectBrush(3);
    EXPECT_EQ(run("(keep)"), "1");
    EXPECT_EQ(run("(keep)"), "1") << "once";
    EXPECT_EQ(run("(keep-range 0 1)"), "3");
    EXPECT_EQ(run("(keep-range 3 99)"), "4") << "as far as there are any";
    EXPECT_EQ(run("(keep-range 3 2)"), "4");
}

TEST_F(EditorCommands, whatIsKeptMovesTogether)
{
    addRow(3);
    run("(do (keep-range 1 2) (move-kept 100.0 0.0 0.0))");
    EXPECT_EQ(firstCoordinates(), "0 102 104 ");
}

TEST_F(EditorCommands, whatIsKeptIsCopiedAndTheCopiesAreKept)
{
    addRow(2);
    run("(do (keep-range 0 1) (copy-kept 100.0 0.0 0.0))");
    EXPECT_EQ(firstCoordinates(), "0 2 102 100 ");
    run("(move-kept 100.0 0.0 0.0)");
    EXPECT_EQ(firstCoordinates(), "0 2 202 200 ");
}

TEST_F(EditorCommands, whatIsKeptIsTextured)
{
    addRow(3);
    run("(do (keep-range 0 1) (texture-kept \"wood.png\"))");
    EXPECT_EQ(map().brushes[1]->brush.sides[4].texture, "wood.png");
    EXPECT_EQ(map().brushes[2]->brush.sides[4].texture, "a");
}

TEST_F(EditorCommands, whatIsKeptIsRemovedAndNothingElse)
{
    addRow(6);
    run("(do (keep-range 4 4) (keep-range 0 1) (keep-range 3 3))");
    EXPECT_EQ(run("(remove-kept)"), "");
    EXPECT_EQ(firstCoordinates(), "4 10 ");
    EXPECT_EQ(run("(list-size selection)"), "0");
}

// A new command comes with a test.
TEST_F(EditorCommands, everyCommandHasATest)
{
    std::ifstream script(XUM_DATA_DIRECTORY "/lisp/editor-commands.lisp");
    const std::regex definition("^\\(define ([^ ]+) ");
    std::set<std::string> names;
    for (std::string line; std::getline(script, line);) {
        std::smatch match;
        if (std::regex_search(line, match, definition)) names.insert(match[1]);
    }
    const std::set<std::string> helpers = {"move-each", "copy-each", "copy-instead", "texture-each", "remove-one"};
    for (const std::string& helper : helpers) names.erase(helper);
    EXPECT_EQ(names, (std::set<std::string>{"slab", "wall", "wall-along-y", "room", "stairs", "row-of-lamps", "keep",
                                            "keep-range", "move-kept", "copy-kept", "texture-kept", "remove-kept"}));
}
