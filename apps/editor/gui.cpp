#include "gui.h"

#include <xum/engine/window.h>

#include <SDL.h>
#include <backends/imgui_impl_opengl3.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <filesystem>
#include <system_error>

namespace {

constexpr float fontSize = 15;

void setStyle()
{
    ImGui::StyleColorsDark();
    ImGuiStyle& style = ImGui::GetStyle();
    style.WindowRounding = 0;
    style.WindowBorderSize = 0;
    style.FrameRounding = 2;
    style.Colors[ImGuiCol_WindowBg] = {0.11f, 0.12f, 0.13f, 1.0f};
}

int numberOf(int button)
{
    if (button == SDL_BUTTON_LEFT) return 0;
    if (button == SDL_BUTTON_RIGHT) return 1;
    return button == SDL_BUTTON_MIDDLE ? 2 : -1;
}

} // namespace

Gui::Gui(Window& window, const std::string& fontFile) : context(ImGui::CreateContext())
{
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr; // the panels have their places
    std::error_code failure;
    if (std::filesystem::is_regular_file(fontFile, failure)) io.Fonts->AddFontFromFileTTF(fontFile.c_str(), fontSize);
    setStyle();
    ImGui_ImplSDL2_InitForOpenGL(window.getHandle(), SDL_GL_GetCurrentContext());
    ImGui_ImplOpenGL3_Init("#version 150");
    SDL_AddEventWatch(watch, this);
}

Gui::~Gui()
{
    SDL_DelEventWatch(watch, this);
    ImGui_ImplOpenGL3_Shutdown();
    ImGui_ImplSDL2_Shutdown();
    ImGui::DestroyContext(context);
}

int Gui::watch(void* gui, SDL_Event* event)
{
    static_cast<Gui*>(gui)->handle(*event);
    return 0;
}

void Gui::handle(const SDL_Event& event)
{
    ImGui_ImplSDL2_ProcessEvent(&event);
    if (event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) {
        const auto key = static_cast<std::size_t>(event.key.keysym.scancode);
        if (key < keys.size()) keys[key] = event.type == SDL_KEYDOWN;
        if (key < keys.size() && keys[key]) pressedKeys[key] = true;
        if (event.type == SDL_KEYDOWN) modifiers = event.key.keysym.mod;
    }
    if (event.type == SDL_MOUSEMOTION) mouse = {static_cast<float>(event.motion.x), static_cast<float>(event.motion.y)};
    if (event.type != SDL_MOUSEBUTTONDOWN && event.type != SDL_MOUSEBUTTONUP) return;
    mouse = {static_cast<float>(event.button.x), static_cast<float>(event.button.y)};
    const int number = numberOf(event.button.button);
    if (number < 0) return;
    buttons[number] = event.type == SDL_MOUSEBUTTONDOWN;
    pressed[number] = pressed[number] || buttons[number];
}

void Gui::begin(float seconds)
{
    ImGui_ImplOpenGL3_NewFrame();
    ImGui_ImplSDL2_NewFrame();
    // As the events tell it: the system's own idea of time and mouse is no part of a recorded session.
    ImGuiIO& io = ImGui::GetIO();
    io.DeltaTime = seconds > 0 ? seconds : 1.0f / 1000.0f;
    io.MousePos = {mouse.x, mouse.y};
    for (int i = 0; i < 3; ++i) {
        io.MouseDown[i] = buttons[i] || pressed[i];
        pressed[i] = false;
    }
    for (std::size_t key = 0; key < keys.size(); ++key) io.KeysDown[key] = keys[key] || pressedKeys[key];
    // A slow frame may have all of Ctrl+S in it, Ctrl going up included.
    const unsigned held = pressedKeys.any() ? modifiers : static_cast<unsigned>(SDL_GetModState());
    io.KeyCtrl = (held & KMOD_CTRL) != 0;
    io.KeyShift = (held & KMOD_SHIFT) != 0;
    io.KeyAlt = (held & KMOD_ALT) != 0;
    pressedKeys.reset();
    ImGui::NewFrame();
}

void Gui::draw()
{
    ImGui::Render();
    ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
}

bool Gui::wantsMouse() const
{
    return ImGui::GetIO().WantCaptureMouse;
}

bool Gui::wantsKeyboard() const
{
    return ImGui::GetIO().WantCaptureKeyboard || ImGui::GetIO().WantTextInput;
}
