#include "panels.h"

#include <SDL_scancode.h>
#include <imgui.h>
#include <imgui_stdlib.h>

#include <utility>

// The panel on the right: the map, and what is selected.

namespace {

constexpr int fieldTag = 1 << 30; // what is typed into one field is one step; drags count from 1
constexpr ImU32 clickedColor = IM_COL32(255, 217, 102, 255);

} // namespace

/// A field for a text. True with the new text when the user has done with it, be it by Enter, by Tab or by a click
/// elsewhere; Escape takes the text back.
bool Panels::editText(const char* label, const std::string& text, std::string& outText)
{
    std::string shown = text;
    ImGui::InputText(label, &shown);
    if (ImGui::IsItemActive()) liveTexts[label] = shown;
    if (!ImGui::IsItemDeactivated()) return false;
    // A field that loses the keys to another one before its turn no longer knows what was typed.
    const std::string live = std::exchange(liveTexts[label], text);
    outText = shown != text ? shown : live;
    return outText != text && !ImGui::IsKeyPressed(SDL_SCANCODE_ESCAPE);
}

void Panels::showProperties()
{
    const MapDocument& document = editor.getDocument();
    std::string title;
    if (editText("title", document.title, title)) {
        bool isSet = false;
        editor.edit([&](MapDocument& map) { isSet = setTitle(map, title); });
        if (!isSet) editor.say("A title has no quotes and no brackets");
    }
    const auto count = [](std::size_t number, const char* one, const char* more) {
        return std::to_string(number) + (number == 1 ? one : more);
    };
    const std::string parts = count(document.brushes.size(), " brush", " brushes") + ", " +
                              count(document.entities.size(), " object", " objects");
    ImGui::Text("%s%s", parts.c_str(), document.terrains.empty() ? "" : ", terrain");
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
    const auto placed = editor.getDocument().brushes[number]; // stays while it is changed
    const bool isBox = asBox(placed->brush).has_value();
    ImGui::Text("Brush %zu%s", number, isBox ? "" : ", not a box");

    Bounds bounds = editor.getSelectionBounds();
    const auto corner = [&](const char* name, Vector3<double>& which) {
        if (ImGui::InputScalarN(name, ImGuiDataType_Double, &which.x, 3, nullptr, nullptr, "%.6g"))
            editor.edit([&](MapDocument& map) { resizeBrush(map, number, bounds); }, fieldTag);
        if (ImGui::IsItemDeactivated()) editor.endStep();
    };
    ImGui::BeginDisabled(!isBox);
    corner("from", bounds.minimum);
    corner("to", bounds.maximum);
    ImGui::EndDisabled();

    double scale = placed->brush.scale;
    if (ImGui::InputDouble("repeats##brush", &scale, 0, 0, "%.6g"))
        editor.edit([&](MapDocument& map) { setTextureScale(map, number, scale); }, fieldTag);
    if (ImGui::IsItemDeactivated()) editor.endStep();
    bool isSolid = placed->brush.isSolid;
    if (ImGui::Checkbox("solid", &isSolid)) editor.edit([&](MapDocument& map) { setSolid(map, number, isSolid); });
    showSides(number, placed->brush);
}

void Panels::showSides(std::size_t number, const BrushSource& brush)
{
    const bool isBox = asBox(brush).has_value();
    for (std::size_t side = 0; side < brush.sides.size(); ++side) {
        const bool isClicked = side == editor.getSelection().side;
        const std::string name = isBox ? boxSides[side].name : "side " + std::to_string(side);
        std::string texture;
        if (isClicked) ImGui::PushStyleColor(ImGuiCol_Text, clickedColor);
        if (editText(name.c_str(), brush.sides[side].texture, texture))
            editor.edit([&](MapDocument& map) { setSideTexture(map, number, side, texture); });
        if (isClicked) ImGui::PopStyleColor();
    }
}

void Panels::showEntity()
{
    const std::size_t number = editor.getSelection().number;
    const auto entity = editor.getDocument().entities[number]; // stays while it is changed
    ImGui::Text("Object %zu", number);
    const auto set = [&](const std::string& name, const std::string& value) {
        bool isSet = false;
        editor.edit([&](MapDocument& map) { isSet = setEntityEntry(map, number, name, value); });
        return isSet;
    };
    for (const auto& [name, value] : *entity) {
        std::string changed;
        if (editText(name.c_str(), value, changed) && !set(name, changed))
            editor.say("A value has no quotes and no brackets, and a class is not empty");
    }
    ImGui::Separator();
    ImGui::SetNextItemWidth(-90);
    ImGui::InputTextWithHint("##name", "name", &newEntryName);
    ImGui::SameLine();
    if (!ImGui::Button("Add entry") || newEntryName.empty()) return;
    if (!set(newEntryName, "0")) editor.say("A name has no spaces, quotes, slashes or brackets");
    newEntryName.clear();
}
