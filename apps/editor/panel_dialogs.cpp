#include "panels.h"

#include "map_files.h"

#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <filesystem>

// The dialogs of the panels: each waits for an answer.

void Panels::showDialogs()
{
    if (!dialog.empty()) {
        if (dialog == "Open") {
            if (directory.empty() && !editor.getFileName().empty())
                directory = std::filesystem::path(editor.getFileName()).parent_path().generic_string();
            listMaps();
        }
        if (dialog == "Save as") saveName = editor.getFileName().empty() ? "map.cfg" : editor.getFileName();
        ImGui::OpenPopup(dialog.c_str());
        dialog.clear();
    }
    const auto begin = [this](const char* name) {
        ImGui::SetNextWindowPos({size.x / 2, size.y / 2}, ImGuiCond_Always, {0.5f, 0.5f});
        return ImGui::BeginPopupModal(name, nullptr, ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoMove);
    };
    const auto show = [&](const char* name, void (Panels::*contents)()) {
        if (!begin(name)) return;
        (this->*contents)();
        ImGui::EndPopup();
    };
    show("Unsaved changes", &Panels::showUnsavedQuestion);
    show("Unsaved changes of last time", &Panels::showAutosaveQuestion);
    show("Open", &Panels::showOpenDialog);
    show("Save as", &Panels::showSaveDialog);
    show("Settings", &Panels::showSettings);
}

void Panels::showUnsavedQuestion()
{
    ImGui::Text("%s has changes that are not saved.",
                editor.getFileName().empty() ? "The new map" : editor.getFileName().c_str());
    if (ImGui::Button("Save")) {
        ImGui::CloseCurrentPopup();
        if (editor.getFileName().empty())
            dialog = "Save as"; // which goes on
        else if (editor.save())
            doNext();
        else
            next = Next::Nothing; // the message says why; nothing is lost
    }
    ImGui::SameLine();
    if (ImGui::Button("Do not save")) {
        ImGui::CloseCurrentPopup();
        doNext();
    }
    ImGui::SameLine();
    if (ImGui::Button("Cancel")) {
        next = Next::Nothing;
        ImGui::CloseCurrentPopup();
    }
}

void Panels::showAutosaveQuestion()
{
    ImGui::Text("There are changes of %s that were never saved.", nextFile.c_str());
    if (ImGui::Button("Open them")) {
        if (editor.openAutosave(nextFile)) addRecentFile(settings, nextFile);
        ImGui::CloseCurrentPopup();
    }
    ImGui::SameLine();
    if (ImGui::Button("Open the map as it was saved")) {
        openNow(nextFile);
        ImGui::CloseCurrentPopup();
    }
    ImGui::SameLine();
    if (ImGui::Button("Cancel")) ImGui::CloseCurrentPopup();
}

void Panels::showOpenDialog()
{
    if (ImGui::InputText("directory", &directory, ImGuiInputTextFlags_EnterReturnsTrue)) listMaps();
    ImGui::BeginChild("maps", {420, 260}, true);
    const std::string start = directory.empty() || directory.back() == '/' ? directory : directory + "/";
    for (const std::string& name : maps) {
        if (!ImGui::Selectable(name.c_str())) continue;
        ImGui::CloseCurrentPopup();
        open(start + name);
    }
    if (maps.empty()) ImGui::TextUnformatted("There is no .cfg file here.");
    ImGui::EndChild();
    if (ImGui::Button("List")) listMaps();
    ImGui::SameLine();
    if (ImGui::Button("Cancel")) ImGui::CloseCurrentPopup();
}

void Panels::showSaveDialog()
{
    const bool isEntered = ImGui::InputText("file", &saveName, ImGuiInputTextFlags_EnterReturnsTrue);
    if (ImGui::Button("Save") || isEntered) {
        std::string name = saveName;
        if (std::filesystem::path(name).extension() != ".cfg") name += ".cfg";
        ImGui::CloseCurrentPopup();
        if (editor.saveAs(name)) {
            addRecentFile(settings, name);
            doNext();
        } else {
            next = Next::Nothing;
        }
    }
    ImGui::SameLine();
    if (ImGui::Button("Cancel")) {
        next = Next::Nothing;
        ImGui::CloseCurrentPopup();
    }
}

void Panels::showSettings()
{
    ImGui::InputDouble("flying, units a second", &settings.cameraSpeed, 1, 10, "%.1f");
    ImGui::InputDouble("looking, degrees a pixel", &settings.mouseSpeed, 0.05, 0.1, "%.2f");
    ImGui::InputInt("seconds between autosaves, 0: none", &settings.autosaveSeconds, 10, 60);
    settings.cameraSpeed = std::clamp(settings.cameraSpeed, 0.1, 1000.0);
    settings.mouseSpeed = std::clamp(settings.mouseSpeed, 0.01, 10.0);
    settings.autosaveSeconds = std::clamp(settings.autosaveSeconds, 0, 86400);
    if (ImGui::Button("Close")) ImGui::CloseCurrentPopup();
}
