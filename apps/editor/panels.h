#pragma once

#include "script_console.h"
#include "settings.h"
#include "texture_shelf.h"

#include <string>

class SystemDevice;

/// What the user asked the program for, beyond the map.
struct Requests {
    bool play = false;
    bool picture = false;
    bool fullscreen = false;
    bool quit = false; ///< for good: what is unsaved has been asked about
};

/// The menus, panels and dialogs around the picture of the map.
class Panels {
public:
    Panels(Editor& editor, Viewport& viewport, ScriptConsole& console, TextureShelf& textures, SystemDevice& system,
           Settings& settings);

    /// Shows everything, for a window of that size. What is left for the map is the area.
    void show(const Vector2<int>& windowSize);
    const ScreenArea& getArea() const { return area; }

    Requests takeRequests();

    /// Opens a map, asking first about unsaved changes and about a younger autosave.
    void open(const std::string& fileName);

    /// Asks about unsaved changes first.
    void quit();

private:
    enum class Next : int { Nothing, Quit, NewMap, OpenDialog, OpenFile };

    void handleKeys();
    void showMenu();
    void showTools();
    void showTextures();
    void showTerrainTools();
    void showProperties();
    void showBrush();
    void showEntity();
    void showConsole();
    void showStatus();
    void showDialogs();
    void showUnsavedQuestion();
    void showAutosaveQuestion();
    void showOpenDialog();
    void showSaveDialog();
    void showSettings();

    void doWhenSaved(Next action);
    void doNext();
    void openNow(const std::string& fileName);
    void save();
    void listMaps();
    void copy();
    void paste();

    Editor& editor;
    Viewport& viewport;
    ScriptConsole& console;
    TextureShelf& textures;
    SystemDevice& system;
    Settings& settings;
    Requests requests;
    ScreenArea area;
    Vector2<float> size;
    Next next = Next::Nothing;
    std::string nextFile;
    std::string dialog; ///< the one that is to be opened in this frame
    std::string directory;
    std::vector<std::string> maps; ///< in that directory
    std::string saveName;
    std::string typed;
    std::string newEntryName;
    std::size_t typedNumber = 0; ///< how far back in what was typed
    std::size_t shownLines = 0;
    int terrainSize[3] = {16, 16, 2};
    bool focusConsole = false;
};
