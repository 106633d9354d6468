#include "panels.h"

#include <xum/render/texture.h>

#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>

// The panel on the left: tools, and what they work with.

namespace {

constexpr float fieldWidth = 110;
constexpr float shelfPicture = 50; // pixels; three fit beside a scroll bar

const char* const entityClasses[] = {"lamp", "urn", "item", "start", "guard", "exit"};

bool numberField(const char* label, double& number)
{
    ImGui::SetNextItemWidth(fieldWidth);
    return ImGui::InputDouble(label, &number, 0, 0, "%.3f");
}

bool slider(const char* label, double& number, float smallest, float largest)
{
    auto shown = static_cast<float>(number);
    ImGui::SetNextItemWidth(fieldWidth);
    if (!ImGui::SliderFloat(label, &shown, smallest, largest, "%.1f", ImGuiSliderFlags_AlwaysClamp)) return false;
    number = shown;
    return true;
}

} // namespace

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
    if (numberField("grid", editor.grid)) editor.grid = std::clamp(editor.grid, 0.0, 1000.0);
    ImGui::Separator();
    switch (editor.tool) {
    case Editor::Tool::Select: ImGui::TextWrapped("Drag to move, with Alt up and down, with Shift one side."); break;
    case Editor::Tool::Box:
        ImGui::TextWrapped("Drag from corner to corner.");
        if (numberField("height", editor.boxHeight))
            editor.boxHeight = std::clamp(editor.boxHeight, smallestBrush, 1000.0);
        break;
    case Editor::Tool::Terrain: showTerrainTools(); break;
    case Editor::Tool::Object:
        ImGui::TextWrapped("Click where it is to be.");
        ImGui::SetNextItemWidth(fieldWidth);
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
    double scale = editor.textureScale;
    if (numberField("repeats", scale) && scale > 0.001 && scale < 1000) editor.textureScale = scale;
    int shown = 0;
    for (const std::string& name : textures.getNames()) {
        Texture* const texture = textures.get(name);
        if (texture == nullptr) continue;
        if (shown++ % 3 != 0) ImGui::SameLine();
        ImGui::PushID(name.c_str());
        const auto handle = static_cast<std::uintptr_t>(texture->getHandle());
        if (ImGui::ImageButton(reinterpret_cast<ImTextureID>(handle), {shelfPicture, shelfPicture})) applyTexture(name);
        if (ImGui::IsItemHovered()) ImGui::SetTooltip("%s (with Shift: for the side that was clicked)", name.c_str());
        ImGui::PopID();
    }
}

void Panels::applyTexture(const std::string& name)
{
    editor.texture = name;
    if (!editor.hasBrush()) return;
    const Hit chosen = editor.getSelection();
    const bool isOneSide = ImGui::GetIO().KeyShift;
    editor.edit([&](MapDocument& map) {
        if (isOneSide)
            setSideTexture(map, chosen.number, chosen.side, name);
        else
            setTexture(map, chosen.number, name);
    });
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
    slider("radius", brush.radius, 1, 60);
    slider("strength", brush.strength, 0.1f, 20);
    ImGui::Separator();
    ImGui::Text("New terrain:");
    ImGui::SetNextItemWidth(-1);
    ImGui::InputInt3("##size", terrainSize);
    ImGui::TextWrapped("cells to each side in x and y, and their size");
    if (!ImGui::Button("Make it")) return;
    editor.edit(
        [&](MapDocument& map) { setFlatTerrain(map, terrainSize[0], terrainSize[1], terrainSize[2], "grass.jpg"); });
}
