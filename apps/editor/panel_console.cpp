#include "panels.h"

#include <imgui.h>
#include <imgui_stdlib.h>

// Below the picture: the console, and what the editor says.

void Panels::showConsole()
{
    ImGui::BeginChild("lines", {0, -ImGui::GetFrameHeightWithSpacing()});
    for (const std::string& line : console.getLines()) ImGui::TextUnformatted(line.c_str());
    if (shownLines != console.countLines()) ImGui::SetScrollHereY(1);
    shownLines = console.countLines();
    ImGui::EndChild();

    if (focusConsole) ImGui::SetKeyboardFocusHere();
    focusConsole = false;
    ImGui::SetNextItemWidth(-1);
    const bool isEntered = ImGui::InputTextWithHint(
        "##input", "(room 0.0 0.0 0.0 8.0 6.0 3.0 \"brick.png\")", &typed,
        ImGuiInputTextFlags_EnterReturnsTrue | ImGuiInputTextFlags_CallbackHistory, recallTyped, this);
    if (!isEntered || typed.empty()) return;
    editor.autosave(); // a script may never end
    console.run(typed);
    typed.clear();
    typedNumber = 0;
    focusConsole = true;
}

/// Up and down go through what was typed before.
int Panels::recallTyped(ImGuiInputTextCallbackData* data)
{
    auto& panels = *static_cast<Panels*>(data->UserData);
    const auto& history = panels.console.getTyped();
    if (data->EventKey == ImGuiKey_UpArrow && panels.typedNumber < history.size()) ++panels.typedNumber;
    if (data->EventKey == ImGuiKey_DownArrow && panels.typedNumber > 0) --panels.typedNumber;
    data->DeleteChars(0, data->BufTextLen);
    if (panels.typedNumber > 0) data->InsertChars(0, history[history.size() - panels.typedNumber].c_str());
    return 0;
}

void Panels::showStatus()
{
    const std::string name = editor.getFileName().empty() ? "unnamed" : editor.getFileName();
    ImGui::Text("%s%s   grid %g   %s", name.c_str(), editor.hasUnsavedChanges() ? " *" : "", editor.grid,
                editor.getMessage().c_str());
}
