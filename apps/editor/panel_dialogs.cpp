#include "panels.h"

#include "path_name.h"

#include <SDL_scancode.h>
#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

// The dialogs of the panels: each waits for an answer.

namespace {

bool button(const char* name)
{
    if (!ImGui::Button(name)) return false;
    ImGui::CloseCurrentPopup();
    return true;
}

std::string withEnding(const std::string& name)
{
    return std::filesystem::path(name).extension() == ".cfg" ? name : name + ".cfg";
}

} // namespace

void Panels::showDialogs()
{
    if (!dialog.empty()) openDialog();
    const auto show = [&](const char* name, void (Panels::*contents)()) {
        ImGui::SetNextWindowPos({size.x / 2, size.y / 2}, ImGuiCond_Always, {0.5f, 0.5f});
        if (!ImGui::BeginPopupModal(name, nullptr, ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoMove)) return;
        (this->*contents)();
        if (ImGui::IsKeyPressed(SDL_SCANCODE_ESCAPE, false)) {
            next = Next::Nothing;
            ImGui::CloseCurrentPopup();
        }
        ImGui::EndPopup();
    };
    show("Unsaved changes", &Panels::showUnsavedQuestion);
    show("Unsaved changes of last time", &Panels::showAutosaveQuestion);
    show("Another map", &Panels::showReplaceQuestion);
    show("Open", &Panels::showOpenDialog);
    show("Save as", &Panels::showSaveDialog);
    show("Settings", &Panels::showSettings);
}

void Panels::openDialog()
{
    if (dialog == "Open") {
        if (directory.empty() && !editor.getFileName().empty())
            directory = nameOf(std::filesystem::path(editor.getFileName()).parent_path());
        listMaps();
    }
    if (dialog == "Save as") saveName = editor.getFileName().empty() ? "map.cfg" : editor.getFileName();
    ImGui::OpenPopup(dialog.c_str());
    dialog.clear();
}

void Panels::showUnsavedQuestion()
{
    ImGui::Text("%s has changes that are not saved.",
                editor.getFileName().empty() ? "The new map" : editor.getFileName().c_str());
    if (button("Save")) save();
    ImGui::SameLine();
    if (button("Do not save")) {
        editor.removeAutosave();
        doNext();
    }
    ImGui::SameLine();
    if (button("Cancel")) next = Next::Nothing;
}

void Panels::showAutosaveQuestion()
{
    const bool isNamed = nextFile != editor.getUnnamedFile();
    ImGui::Text("There are changes of %s that were never saved.", isNamed ? nextFile.c_str() : "a map without a name");
    if (button("Open them") && editor.openAutosave(nextFile) && isNamed) addRecentFile(settings, nextFile);
    ImGui::SameLine();
    std::error_code failure;
    const bool isThere = std::filesystem::exists(nextFile, failure);
    if (isThere && button("Open the map as it was saved")) openNow(nextFile);
    if (isNamed && !isThere && button("Begin anew")) editor.newMap(nextFile);
    if (isNamed) ImGui::SameLine();
    if (button(isNamed ? "Cancel" : "Leave them")) next = Next::Nothing;
}

void Panels::showReplaceQuestion()
{
    ImGui::Text("There is already a file %s.", saveName.c_str());
    if (button("Replace it")) saveAs(saveName);
    ImGui::SameLine();
    if (button("Cancel")) next = Next::Nothing;
}

void Panels::showOpenDialog()
{
    if (ImGui::InputText("directory", &directory, ImGuiInputTextFlags_EnterReturnsTrue)) listMaps();
    ImGui::BeginChild("maps", {420, std::clamp(size.y - 160, 40.0f, 260.0f)}, true);
    const std::string start = directory.empty() || directory.back() == '/' ? directory : directory + "/";
    std::string chosen;
    for (const std::string& name : maps)
        if (ImGui::Selectable(name.c_str())) chosen = start + name;
    if (maps.empty()) ImGui::TextUnformatted("There is no .cfg file here.");
    ImGui::EndChild();
    if (ImGui::Button("List")) listMaps();
    ImGui::SameLine();
    button("Cancel");
    if (chosen.empty()) return;
    ImGui::CloseCurrentPopup();
    open(chosen);
}

void Panels::showSaveDialog()
{
    const bool isEntered = ImGui::InputText("file", &saveName, ImGuiInputTextFlags_EnterReturnsTrue);
    if (isEntered) ImGui::CloseCurrentPopup();
    if (button("Save") || isEntered) {
        saveName = withEnding(saveName);
        std::error_code failure;
        if (saveName != editor.getFileName() && std::filesystem::exists(saveName, failure))
            dialog = "Another map";
        else
            saveAs(saveName);
    }
    ImGui::SameLine();
    if (button("Cancel")) next = Next::Nothing;
}

void Panels::showSettings()
{
    ImGui::InputDouble("flying, units a second", &settings.cameraSpeed, 1, 10, "%.1f");
    ImGui::InputDouble("looking, degrees a pixel", &settings.mouseSpeed, 0.05, 0.1, "%.2f");
    ImGui::InputInt("seconds between autosaves, 0: none", &settings.autosaveSeconds, 10, 60);
    settings.cameraSpeed = std::clamp(settings.cameraSpeed, 0.1, 1000.0);
    settings.mouseSpeed = std::clamp(settings.mouseSpeed, 0.01, 10.0);
    settings.autosaveSeconds = std::clamp(settings.autosaveSeconds, 0, 86400);
    button("Close");
}
