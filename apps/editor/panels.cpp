#include "panels.h"

#include "map_files.h"

#include <xum/engine/system_device.h>
#include <xum/render/texture.h>

#include <SDL.h>
#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>

namespace {

constexpr float toolsWidth = 230;
constexpr float propertiesWidth = 270;
constexpr float consoleHeight = 170;
constexpr float statusHeight = 26;

constexpr ImGuiWindowFlags fixedWindow = ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoResize |
                                         ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoSavedSettings |
                                         ImGuiWindowFlags_NoBringToFrontOnFocus;

const char* const entityClasses[] = {"lamp", "urn", "item", "start", "guard", "exit"};

bool isPressed(SDL_Scancode key)
{
    return ImGui::IsKeyPressed(key, false);
}

} // namespace

Panels::Panels(Editor& editor, Viewport& viewport, ScriptConsole& console, TextureShelf& textures,
               SystemDevice& system, Settings& settings)
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
    handleKeys();
    showMenu();
    const float menuHeight = ImGui::GetFrameHeight();
    const float middleHeight = std::max(size.y - menuHeight - consoleHeight - statusHeight, 0.0f);

    const auto place = [](float x, float y, float width, float height) {
        ImGui::SetNextWindowPos({x, y});
        ImGui::SetNextWindowSize({width, height});
    };
    place(0, menuHeight, toolsWidth, middleHeight);
    if (ImGui::Begin("Tools", nullptr, fixedWindow)) showTools();
    ImGui::End();
    place(size.x - propertiesWidth, menuHeight, propertiesWidth, middleHeight);
    if (ImGui::Begin("Properties", nullptr, fixedWindow)) showProperties();
    ImGui::End();
    place(0, menuHeight + middleHeight, size.x, consoleHeight);
    if (ImGui::Begin("Console", nullptr, fixedWindow)) showConsole();
    ImGui::End();
    place(0, size.y - statusHeight, size.x, statusHeight);
    if (ImGui::Begin("##status", nullptr, fixedWindow | ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoScrollbar))
        showStatus();
    ImGui::End();
    showDialogs();

    area.x = static_cast<int>(toolsWidth);
    area.y = static_cast<int>(menuHeight);
    area.width = std::max(static_cast<int>(size.x - toolsWidth - propertiesWidth), 0);
    area.height = static_cast<int>(middleHeight);
    area.screenHeight = windowSize.y;
}

void Panels::handleKeys()
{
    const ImGuiIO& io = ImGui::GetIO();
    if (io.WantTextInput) return;
    if (io.KeyCtrl) {
        if (isPressed(SDL_SCANCODE_N)) doWhenSaved(Next::NewMap);
        if (isPressed(SDL_SCANCODE_O)) doWhenSaved(Next::OpenDialog);
        if (isPressed(SDL_SCANCODE_S) && io.KeyShift) dialog = "Save as";
        if (isPressed(SDL_SCANCODE_S) && !io.KeyShift) save();
        if (isPressed(SDL_SCANCODE_Z)) editor.undo();
        if (isPressed(SDL_SCANCODE_Y)) editor.redo();
        if (isPressed(SDL_SCANCODE_C) || isPressed(SDL_SCANCODE_X)) copy();
        if (isPressed(SDL_SCANCODE_X)) editor.deleteSelection();
        if (isPressed(SDL_SCANCODE_V)) paste();
        if (isPressed(SDL_SCANCODE_D)) editor.duplicateSelection();
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
    if (isPressed(SDL_SCANCODE_F5)) requests.play = true;
    if (isPressed(SDL_SCANCODE_F9)) dialog = "Settings";
    if (isPressed(SDL_SCANCODE_F11)) requests.fullscreen = true;
    if (isPressed(SDL_SCANCODE_F12)) requests.picture = true;
    if (isPressed(SDL_SCANCODE_GRAVE)) focusConsole = true;
    if (isPressed(SDL_SCANCODE_ESCAPE)) editor.selectNothing();
}

void Panels::showMenu()
{
    if (!ImGui::BeginMainMenuBar()) return;
    if (ImGui::BeginMenu("Map")) {
        if (ImGui::MenuItem("New", "Ctrl+N")) doWhenSaved(Next::NewMap);
        if (ImGui::MenuItem("Open ...", "Ctrl+O")) doWhenSaved(Next::OpenDialog);
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
        if (ImGui::MenuItem("Quit")) quit();
        ImGui::EndMenu();
    }
    if (ImGui::BeginMenu("Edit")) {
        const bool hasSelection = editor.hasBrush() || editor.hasEntity();
        if (ImGui::MenuItem("Undo", "Ctrl+Z", false, editor.canUndo())) editor.undo();
        if (ImGui::MenuItem("Redo", "Ctrl+Y", false, editor.canRedo())) editor.redo();
        ImGui::Separator();
        if (ImGui::MenuItem("Copy", "Ctrl+C", false, hasSelection)) copy();
        if (ImGui::MenuItem("Paste", "Ctrl+V", false, system.hasClipboardText())) paste();
        if (ImGui::MenuItem("Duplicate", "Ctrl+D", false, hasSelection)) editor.duplicateSelection();
        if (ImGui::MenuItem("Delete", "Del", false, hasSelection)) editor.deleteSelection();
        ImGui::Separator();
        if (ImGui::MenuItem("Settings ...", "F9")) dialog = "Settings";
        ImGui::EndMenu();
    }
    if (ImGui::BeginMenu("View")) {
        if (ImGui::MenuItem("Look at the selection", "F")) viewport.showSelection();
        if (ImGui::MenuItem("Full screen", "F11")) requests.fullscreen = true;
        if (ImGui::MenuItem("Picture", "F12")) requests.picture = true;
        ImGui::EndMenu();
    }
    if (ImGui::BeginMenu("Game")) {
        if (ImGui::MenuItem("Compile and play", "F5")) requests.play = true;
        if (ImGui::MenuItem("Load the commands again")) console.reload();
        ImGui::EndMenu();
    }
    ImGui::EndMainMenuBar();
}

void Panels::showTools()
{
    const auto tool = [this](const char* name, Editor::Tool which) {
        if (ImGui::RadioButton(name, editor.tool == which)) editor.tool = which;
    };
    tool("Select (1)", Editor::Tool::Select);
    tool("Box (2)", Editor::Tool::Box);
    tool("Terrain (3)", Editor::Tool::Terrain);
    tool("Object (4)", Editor::Tool::Object);
    ImGui::Separator();
    ImGui::SetNextItemWidth(110);
    if (ImGui::InputDouble("grid", &editor.grid, 0, 0, "%.3f")) editor.grid = std::clamp(editor.grid, 0.0, 1000.0);
    ImGui::Separator();
    switch (editor.tool) {
    case Editor::Tool::Select: ImGui::TextWrapped("Drag to move, with Alt up and down, with Shift one side."); break;
    case Editor::Tool::Box:
        ImGui::SetNextItemWidth(110);
        if (ImGui::InputDouble("height", &editor.boxHeight, 0, 0, "%.3f"))
            editor.boxHeight = std::clamp(editor.boxHeight, smallestBrush, 1000.0);
        break;
    case Editor::Tool::Terrain: showTerrainTools(); break;
    case Editor::Tool::Object:
        ImGui::SetNextItemWidth(110);
        ImGui::InputText("class", &editor.entityClass);
        for (const char* name : entityClasses)
            if (ImGui::Selectable(name, editor.entityClass == name)) editor.entityClass = name;
        break;
    }
    if (editor.tool == Editor::Tool::Select || editor.tool == Editor::Tool::Box) showTextures();
}

void Panels::showTextures()
{
    ImGui::Separator();
    ImGui::Text("Texture: %s", editor.texture.c_str());
    ImGui::SetNextItemWidth(110);
    double scale = editor.textureScale;
    if (ImGui::InputDouble("repeats", &scale, 0, 0, "%.3f") && scale > 0.001 && scale < 1000) editor.textureScale = scale;
    int shown = 0;
    for (const std::string& name : textures.getNames()) {
        Texture* const texture = textures.get(name);
        if (texture == nullptr) continue;
        if (shown++ % 3 != 0) ImGui::SameLine();
        ImGui::PushID(name.c_str());
        const auto handle = static_cast<std::uintptr_t>(texture->getHandle());
        if (ImGui::ImageButton(reinterpret_cast<ImTextureID>(handle), {56, 56})) {
            editor.texture = name;
            if (editor.hasBrush()) {
                const Hit chosen = editor.getSelection();
                const bool isOneSide = ImGui::GetIO().KeyShift;
                editor.edit([&](MapDocument& map) {
                    if (isOneSide)
                        setSideTexture(map, chosen.number, chosen.side, name);
                    else
                        setTexture(map, chosen.number, name);
                });
            }
        }
        if (ImGui::IsItemHovered()) ImGui::SetTooltip("%s (with Shift: for the side that was clicked)", name.c_str());
        ImGui::PopID();
    }
}

void Panels::showTerrainTools()
{
    TerrainBrush& brush = editor.terrainBrush;
    const auto change = [&](const char* name, TerrainChange which) {
        if (ImGui::RadioButton(name, brush.change == which)) brush.change = which;
    };
    change("raise", TerrainChange::Raise);
    change("lower", TerrainChange::Lower);
    change("smooth", TerrainChange::Smooth);
    change("flatten", TerrainChange::Flatten);
    auto radius = static_cast<float>(brush.radius);
    auto strength = static_cast<float>(brush.strength);
    ImGui::SetNextItemWidth(120);
    if (ImGui::SliderFloat("radius", &radius, 1, 60, "%.1f")) brush.radius = std::clamp(radius, 0.5f, 500.0f);
    ImGui::SetNextItemWidth(120);
    if (ImGui::SliderFloat("strength", &strength, 0.1f, 20, "%.1f")) brush.strength = std::clamp(strength, 0.01f, 100.0f);
    ImGui::Separator();
    ImGui::Text("New terrain:");
    ImGui::SetNextItemWidth(140);
    ImGui::InputInt3("##size", terrainSize);
    ImGui::TextWrapped("cells to each side in x and y, and their size");
    if (ImGui::Button("Make it")) {
        editor.edit([&](MapDocument& map) {
            setFlatTerrain(map, terrainSize[0], terrainSize[1], terrainSize[2], "grass.jpg");
        });
    }
}

void Panels::showProperties()
{
    const MapDocument& document = editor.getDocument();
    std::string title = document.title;
    if (ImGui::InputText("title", &title) && isStorable(title))
        editor.edit([&](MapDocument& map) { map.title = title; }, 1000001);
    if (ImGui::IsItemDeactivated()) editor.endStep();
    ImGui::Text("%zu brushes, %zu objects%s", document.brushes.size(), document.entities.size(),
                document.terrains.empty() ? "" : ", terrain");
    ImGui::Separator();
    if (editor.hasBrush())
        showBrush();
    else if (editor.hasEntity())
        showEntity();
    else
        ImGui::TextWrapped("Nothing is selected.");
}

void Panels::showBrush()
{
    const std::size_t number = editor.getSelection().number;
    const auto placed = editor.getDocument().brushes[number];
    const bool isBox = asBox(placed->brush).has_value();
    ImGui::Text("Brush %zu%s", number, isBox ? "" : ", not a box");
    Bounds bounds = editor.getSelectionBounds();
    bool isChanged = false;
    const auto row = [&](const char* name, Vector3<double>& corner) {
        isChanged = ImGui::InputScalarN(name, ImGuiDataType_Double, &corner.x, 3, nullptr, nullptr, "%.4g",
                                        ImGuiInputTextFlags_EnterReturnsTrue) ||
                    isChanged;
    };
    if (!isBox) ImGui::BeginDisabled();
    row("from", bounds.minimum);
    row("to", bounds.maximum);
    if (!isBox) ImGui::EndDisabled();
    if (isChanged) editor.edit([&](MapDocument& map) { resizeBrush(map, number, bounds); });

    double scale = placed->brush.scale;
    if (ImGui::InputDouble("repeats##brush", &scale, 0, 0, "%.4g", ImGuiInputTextFlags_EnterReturnsTrue))
        editor.edit([&](MapDocument& map) { setTextureScale(map, number, scale); });
    bool isSolid = placed->brush.isSolid;
    if (ImGui::Checkbox("solid", &isSolid)) editor.edit([&](MapDocument& map) { setSolid(map, number, isSolid); });

    for (std::size_t side = 0; side < placed->brush.sides.size(); ++side) {
        const bool isClicked = side == editor.getSelection().side;
        std::string texture = placed->brush.sides[side].texture;
        const std::string name = isBox ? boxSides[side].name : "side " + std::to_string(side);
        if (isClicked) ImGui::PushStyleColor(ImGuiCol_Text, {1, 0.85f, 0.4f, 1});
        if (ImGui::InputText(name.c_str(), &texture, ImGuiInputTextFlags_EnterReturnsTrue))
            editor.edit([&](MapDocument& map) { setSideTexture(map, number, side, texture); });
        if (isClicked) ImGui::PopStyleColor();
    }
}

void Panels::showEntity()
{
    const std::size_t number = editor.getSelection().number;
    const auto entity = editor.getDocument().entities[number];
    ImGui::Text("Object %zu", number);
    for (const auto& [name, value] : *entity) {
        std::string changed = value;
        if (ImGui::InputText(name.c_str(), &changed, ImGuiInputTextFlags_EnterReturnsTrue)) {
            bool isSet = false;
            const std::string& entry = name;
            editor.edit([&](MapDocument& map) { isSet = setEntityEntry(map, number, entry, changed); });
            if (!isSet) editor.say("A value has no quotes and no brackets, and a class is not empty");
        }
    }
    ImGui::Separator();
    ImGui::InputText("##name", &newEntryName);
    ImGui::SameLine();
    if (ImGui::Button("Add entry") && !newEntryName.empty()) {
        bool isSet = false;
        editor.edit([&](MapDocument& map) { isSet = setEntityEntry(map, number, newEntryName, "0"); });
        if (!isSet) editor.say("A name has no spaces, quotes or brackets");
        newEntryName.clear();
    }
}

void Panels::showConsole()
{
    const float lineHeight = ImGui::GetFrameHeightWithSpacing();
    ImGui::BeginChild("lines", {0, -lineHeight - statusHeight});
    for (const std::string& line : console.getLines()) ImGui::TextUnformatted(line.c_str());
    if (shownLines != console.getLines().size()) ImGui::SetScrollHereY(1);
    shownLines = console.getLines().size();
    ImGui::EndChild();

    if (focusConsole) ImGui::SetKeyboardFocusHere();
    focusConsole = false;
    ImGui::SetNextItemWidth(-1);
    const auto recall = [](ImGuiInputTextCallbackData* data) {
        auto& panels = *static_cast<Panels*>(data->UserData);
        const auto& history = panels.console.getTyped();
        if (data->EventKey == ImGuiKey_UpArrow && panels.typedNumber < history.size()) ++panels.typedNumber;
        if (data->EventKey == ImGuiKey_DownArrow && panels.typedNumber > 0) --panels.typedNumber;
        data->DeleteChars(0, data->BufTextLen);
        if (panels.typedNumber > 0)
            data->InsertChars(0, history[history.size() - panels.typedNumber].c_str());
        return 0;
    };
    if (ImGui::InputTextWithHint("##input", "(room 0.0 0.0 0.0 8.0 6.0 3.0 \"brick.png\")", &typed,
                                 ImGuiInputTextFlags_EnterReturnsTrue | ImGuiInputTextFlags_CallbackHistory, recall,
                                 this) &&
        !typed.empty()) {
        console.run(typed);
        typed.clear();
        typedNumber = 0;
        focusConsole = true;
    }
}

void Panels::showStatus()
{
    const std::string name = editor.getFileName().empty() ? "unnamed" : editor.getFileName();
    ImGui::Text("%s%s   grid %g   %s", name.c_str(), editor.hasUnsavedChanges() ? " *" : "", editor.grid,
                editor.getMessage().c_str());
}

// ---- actions --------------------------------------------------------------------------------------------------------

void Panels::open(const std::string& fileName)
{
    nextFile = fileName;
    doWhenSaved(Next::OpenFile);
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
    case Next::OpenDialog: dialog = "Open"; break;
    case Next::OpenFile:
        if (hasYoungerAutosave(nextFile))
            dialog = "Unsaved changes of last time";
        else
            openNow(nextFile);
        break;
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
    else if (editor.save())
        addRecentFile(settings, editor.getFileName());
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
    maps.clear();
    system.listFiles(directory, ".cfg", false, [this](const std::string&, const std::string& name) {
        if (name.size() > 4 && name.compare(name.size() - 4, 4, ".cfg") == 0) maps.push_back(name);
    });
}
