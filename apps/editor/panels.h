#pragma once

#include "layout.h"
#include "script_console.h"
#include "settings.h"
#include "texture_shelf.h"

#include <map>
#include <string>

class SystemDevice;
struct ImGuiInputTextCallbackData;

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
    const ScreenArea& getArea() const { return layout.map; }

    Requests takeRequests();

    /// Opens a map, asking first about unsaved changes and about a younger autosave.
    void open(const std::string& fileName);

    /// Asks about changes of a map without a name that were never saved, if there are any.
    void offerUnnamed();

    /// Asks about unsaved changes first.
    void quit();

private:
    enum class Next : int { Nothing, Quit, NewMap, OpenFile, Play };

    void handleKeys();
    void handleControlKeys();

    // ---- menus
    void showMenu();
    void showMapMenu();
    void showEditMenu();
    void showViewMenu();
    void showGameMenu();

    // ---- the panel on the left
    void showTools();
    void showTextures();
    void applyTexture(const std::string& name);
    void showTerrainTools();

    // ---- the panel on the right
    void showProperties();
    void showBrush();
    void showSides(std::size_t number, const BrushSource& brush);
    void showEntity();
    bool editText(const char* label, const std::string& text, std::string& outText);

    // ---- below
    void showConsole();
    static int recallTyped(ImGuiInputTextCallbackData* data);
    void showStatus();

    // ---- dialogs
    void openDialog();
    void showDialogs();
    void showUnsavedQuestion();
    void showAutosaveQuestion();
    void showReplaceQuestion();
    void showOpenDialog();
    void showSaveDialog();
    void showSettings();

    // ---- actions
    void doWhenSaved(Next action);
    void doNext();
    void openNow(const std::string& fileName);
    void save();
    void saveAs(const std::string& fileName);
    void play();
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
    Layout layout;
    Vector2<float> size;
    Next next = Next::Nothing; ///< when the question that is open now is answered
    std::string nextFile;
    std::string dialog; ///< the one that is to be opened in this frame
    std::string directory;
    std::vector<std::string> maps; ///< in that directory
    std::string saveName;
    std::string typed;
    std::map<std::string, std::string> liveTexts; ///< of fields that are being edited, by their labels
    std::string newEntryName;
    std::size_t typedNumber = 0; ///< how far back in what was typed
    std::size_t shownLines = 0;
    int terrainSize[3] = {16, 16, 2};
    bool focusConsole = false;
};
