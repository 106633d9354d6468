#include "panels.h"

#include "map_files.h"

#include <xum/engine/system_device.h>

#include <SDL.h>
#include <imgui.h>

#include <algorithm>

namespace {

constexpr ImGuiWindowFlags fixedWindow = ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoResize |
                                         ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoSavedSettings |
                                         ImGuiWindowFlags_NoBringToFrontOnFocus;

bool isPressed(SDL_Scancode key)
{
    return ImGui::IsKeyPressed(key, false);
}

/// False, and nothing to end, when there is no room for it.
bool beginPanel(const char* name, const ScreenArea& area, ImGuiWindowFlags flags = 0)
{
    if (area.isEmpty()) return false;
    ImGui::SetNextWindowPos({static_cast<float>(area.x), static_cast<float>(area.y)});
    ImGui::SetNextWindowSize({static_cast<float>(area.width), static_cast<float>(area.height)});
    ImGui::Begin(name, nullptr, fixedWindow | flags);
    return true;
}

} // namespace

Panels::Panels(Editor& editor, Viewport& viewport, ScriptConsole& console, TextureShelf& textures, SystemDevice& system,
               Settings& settings)
    : editor(editor), viewport(viewport), console(console), textures(textures), system(system), settings(settings)
{}

Requests Panels::takeRequests()
{
    const Requests taken = requests;
    requests = {};
    return taken;
}

void Panels::show(const Vector2<int>& windowSize)
{
    size = {static_cast<float>(windowSize.x), static_cast<float>(windowSize.y)};
    layout = calculateLayout(windowSize, static_cast<int>(ImGui::GetFrameHeight()));
    handleKeys();
    showMenu();
    const auto panel = [this](const char* name, const ScreenArea& area, void (Panels::*contents)(), int flags = 0) {
        if (!beginPanel(name, area, flags)) return;
        (this->*contents)();
        ImGui::End();
    };
    panel("Tools", layout.tools, &Panels::showTools);
    panel("Properties", layout.properties, &Panels::showProperties);
    panel("Console", layout.console, &Panels::showConsole);
    panel("##status", layout.status, &Panels::showStatus, ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoScrollbar);
    showDialogs();
}

// ---- keys -----------------------------------------------------------------------------------------------------------

void Panels::handleKeys()
{
    const bool isAsking = ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
    if (ImGui::GetIO().WantTextInput || isAsking || !dialog.empty()) return;
    if (ImGui::GetIO().KeyCtrl) {
        handleControlKeys();
        return;
    }
    if (isPressed(SDL_SCANCODE_1)) editor.tool = Editor::Tool::Select;
    if (isPressed(SDL_SCANCODE_2)) editor.tool = Editor::Tool::Box;
    if (isPressed(SDL_SCANCODE_3)) editor.tool = Editor::Tool::Terrain;
    if (isPressed(SDL_SCANCODE_4)) editor.tool = Editor::Tool::Object;
    if (isPressed(SDL_SCANCODE_LEFTBRACKET)) editor.grid = std::max(editor.grid / 2, 0.125);
    if (isPressed(SDL_SCANCODE_RIGHTBRACKET)) editor.grid = std::min(std::max(editor.grid, 0.0625) * 2, 16.0);
    if (isPressed(SDL_SCANCODE_DELETE)) editor.deleteSelection();
    if (isPressed(SDL_SCANCODE_F)) viewport.showSelection();
    if (isPressed(SDL_SCANCODE_F5)) play();
    if (isPressed(SDL_SCANCODE_F9)) dialog = "Settings";
    if (isPressed(SDL_SCANCODE_F11)) requests.fullscreen = true;
    if (isPressed(SDL_SCANCODE_F12)) requests.picture = true;
    if (isPressed(SDL_SCANCODE_GRAVE)) focusConsole = true;
    if (isPressed(SDL_SCANCODE_ESCAPE)) editor.selectNothing();
}

void Panels::handleControlKeys()
{
    const bool isShift = ImGui::GetIO().KeyShift;
    if (isPressed(SDL_SCANCODE_N)) doWhenSaved(Next::NewMap);
    if (isPressed(SDL_SCANCODE_O)) dialog = "Open";
    if (isPressed(SDL_SCANCODE_S) && isShift) dialog = "Save as";
    if (isPressed(SDL_SCANCODE_S) && !isShift) save();
    if (isPressed(SDL_SCANCODE_Z) && !isShift) editor.undo();
    if (isPressed(SDL_SCANCODE_Y) || (isPressed(SDL_SCANCODE_Z) && isShift)) editor.redo();
    if (isPressed(SDL_SCANCODE_C) || isPressed(SDL_SCANCODE_X)) copy();
    if (isPressed(SDL_SCANCODE_X)) editor.deleteSelection();
    if (isPressed(SDL_SCANCODE_V)) paste();
    if (isPressed(SDL_SCANCODE_D)) editor.duplicateSelection();
    if (isPressed(SDL_SCANCODE_Q)) quit();
}

// ---- menus ----------------------------------------------------------------------------------------------------------

void Panels::showMenu()
{
    if (!ImGui::BeginMainMenuBar()) return;
    const auto menu = [this](const char* name, void (Panels::*contents)()) {
        if (!ImGui::BeginMenu(name)) return;
        (this->*contents)();
        ImGui::EndMenu();
    };
    menu("Map", &Panels::showMapMenu);
    menu("Edit", &Panels::showEditMenu);
    menu("View", &Panels::showViewMenu);
    menu("Game", &Panels::showGameMenu);
    ImGui::EndMainMenuBar();
}

void Panels::showMapMenu()
{
    if (ImGui::MenuItem("New", "Ctrl+N")) doWhenSaved(Next::NewMap);
    if (ImGui::MenuItem("Open ...", "Ctrl+O")) dialog = "Open";
    if (ImGui::BeginMenu("Open recent", !settings.recentFiles.empty())) {
        const std::vector<std::string> files = settings.recentFiles; // opening changes their order
        for (const std::string& name : files)
            if (ImGui::MenuItem(name.c_str())) open(name);
        ImGui::EndMenu();
    }
    ImGui::Separator();
    if (ImGui::MenuItem("Save", "Ctrl+S")) save();
    if (ImGui::MenuItem("Save as ...", "Ctrl+Shift+S")) dialog = "Save as";
    ImGui::Separator();
    if (ImGui::MenuItem("Quit", "Ctrl+Q")) quit();
}

void Panels::showEditMenu()
{
    const bool hasSelection = editor.hasBrush() || editor.hasEntity();
    if (ImGui::MenuItem("Undo", "Ctrl+Z", false, editor.canUndo())) editor.undo();
    if (ImGui::MenuItem("Redo", "Ctrl+Y", false, editor.canRedo())) editor.redo();
    ImGui::Separator();
    if (ImGui::MenuItem("Cut", "Ctrl+X", false, hasSelection)) {
        copy();
        editor.deleteSelection();
    }
    if (ImGui::MenuItem("Copy", "Ctrl+C", false, hasSelection)) copy();
    if (ImGui::MenuItem("Paste", "Ctrl+V", false, system.hasClipboardText())) paste();
    if (ImGui::MenuItem("Duplicate", "Ctrl+D", false, hasSelection)) editor.duplicateSelection();
    if (ImGui::MenuItem("Delete", "Del", false, hasSelection)) editor.deleteSelection();
    ImGui::Separator();
    if (ImGui::MenuItem("Settings ...", "F9")) dialog = "Settings";
}

void Panels::showViewMenu()
{
    if (ImGui::MenuItem("Look at the selection", "F")) viewport.showSelection();
    if (ImGui::MenuItem("Full screen", "F11")) requests.fullscreen = true;
    if (ImGui::MenuItem("Picture", "F12")) requests.picture = true;
}

void Panels::showGameMenu()
{
    if (ImGui::MenuItem("Compile and play", "F5")) play();
    if (ImGui::MenuItem("Load the commands again")) console.reload();
}

// ---- actions --------------------------------------------------------------------------------------------------------

void Panels::open(const std::string& fileName)
{
    nextFile = fileName;
    doWhenSaved(Next::OpenFile);
}

void Panels::offerUnnamed()
{
    if (!hasYoungerAutosave(editor.getUnnamedFile())) return;
    nextFile = editor.getUnnamedFile();
    dialog = "Unsaved changes of last time";
}

void Panels::quit()
{
    doWhenSaved(Next::Quit);
}

void Panels::doWhenSaved(Next action)
{
    next = action;
    if (editor.hasUnsavedChanges())
        dialog = "Unsaved changes";
    else
        doNext();
}

void Panels::doNext()
{
    const Next action = next;
    next = Next::Nothing;
    switch (action) {
    case Next::Nothing: break;
    case Next::Quit: requests.quit = true; break;
    case Next::NewMap: editor.newMap(); break;
    case Next::OpenFile:
        if (hasYoungerAutosave(nextFile))
            dialog = "Unsaved changes of last time";
        else
            openNow(nextFile);
        break;
    case Next::Play: requests.play = true; break;
    }
}

void Panels::openNow(const std::string& fileName)
{
    if (editor.open(fileName)) addRecentFile(settings, fileName);
}

void Panels::save()
{
    if (editor.getFileName().empty())
        dialog = "Save as";
    else
        saveAs(editor.getFileName());
}

/// And what was to be done next; not when it is not saved: the message says why, and nothing is lost.
void Panels::saveAs(const std::string& fileName)
{
    if (editor.saveAs(fileName)) {
        addRecentFile(settings, fileName);
        doNext();
    }
    next = Next::Nothing;
}

void Panels::play()
{
    next = Next::Play;
    if (editor.needsSaving())
        save();
    else
        doNext();
}

void Panels::copy()
{
    const std::string text = editor.copySelection();
    if (!text.empty()) system.setClipboardText(text);
}

void Panels::paste()
{
    editor.paste(system.getClipboardText());
}

void Panels::listMaps()
{
    constexpr std::size_t endingSize = 4;
    maps.clear();
    system.listFiles(directory, ".cfg", false, [this](const std::string&, const std::string& name) {
        if (name.size() > endingSize && name.compare(name.size() - endingSize, endingSize, ".cfg") == 0)
            maps.push_back(name);
    });
}
