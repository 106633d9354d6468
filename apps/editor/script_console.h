#pragma once

#include "editor_functions.h"
#include "base_scripts.h"
#include "viewport.h"

#include <deque>
#include <string>
#include <vector>

/// The script language in the editor: what scripts can do to the map, and a place to type it. The commands that are
/// made of those functions are in lisp/editor-commands.lisp.
class ScriptConsole {
public:
    /// Problems, such as a missing script, are lines of the console.
    ScriptConsole(Engine& engine, GameData& data, Editor& editor, Viewport& viewport);
    ~ScriptConsole();
    ScriptConsole(const ScriptConsole&) = delete;
    ScriptConsole& operator=(const ScriptConsole&) = delete;

    /// Evaluates a text and notes it with what it prints and gives.
    void run(const std::string& text);

    /// Loads lisp/editor-commands.lisp once more.
    void reload();

    const std::deque<std::string>& getLines() const { return lines; }

    /// All that there ever were: the first ones are forgotten after some time.
    std::size_t countLines() const { return lineCount; }

    /// What was typed, the last one at the end.
    const std::deque<std::string>& getTyped() const { return typed; }

    /// What a function of the language is called with.
    struct Binding {
        Editor* editor;
        const EditorFunction* function;
    };

private:
    static void keepLine(const char* line, void* console);
    void print(const std::string& line);
    void registerFunctions();

    Editor& editor;
    Viewport& viewport;
    std::deque<std::string> lines;
    std::size_t lineCount = 0;
    std::deque<std::string> typed;
    std::vector<Binding> bindings; ///< they live longer than the language
    OwnedScripts scripts;
};
