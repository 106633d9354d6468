#include "file_contents.h"
#include "own_directory.h"

#include <editor_functions.h>
#include <input_session.h>

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

// docs/editor.md against the editor.

namespace {

std::string manual()
{
    return fileContents(XUM_EDITOR_MANUAL);
}

/// The names of what is called in the first column of the table with that head.
std::set<std::string> namesInTable(const std::string& head)
{
    std::set<std::string> names;
    std::istringstream text(manual().substr(manual().find("| " + head + " | |")));
    std::string line;
    for (int number = 0; std::getline(text, line) && !line.empty(); ++number) {
        const std::string column = line.substr(0, line.find(" |", 1));
        for (std::size_t at = column.find("`("); at != std::string::npos; at = column.find("`(", at + 1))
            names.insert(column.substr(at + 2, column.find_first_of(" )", at + 2) - at - 2));
    }
    return names;
}

} // namespace

TEST(EditorManual, listsEachFunction)
{
    std::set<std::string> functions = {"set-camera", "look-at-selection"};
    for (const EditorFunction& function : getEditorFunctions()) functions.insert(function.name);
    EXPECT_EQ(namesInTable("function"), functions);
}

TEST(EditorManual, listsEachCommand)
{
    EXPECT_EQ(namesInTable("command"),
              (std::set<std::string>{"slab", "wall", "wall-along-y", "room", "stairs", "row-of-lamps", "keep",
                                     "keep-range", "move-kept", "copy-kept", "texture-kept", "remove-kept"}));
}

TEST(EditorManual, sessionIsOne)
{
    enterOwnDirectory();
    const std::string start = "```session\n";
    const std::size_t from = manual().find(start) + start.size();
    writeFileContents("s.txt", manual().substr(from, manual().find("```", from) - from));
    EXPECT_FALSE(SessionPlayer("s.txt").isOver());
}
