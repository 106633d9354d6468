#include "input_session.h"

#include <SDL.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace {

constexpr int largestWindow = 16384;
constexpr int farthest = 1000000; // pixels, and notches of the wheel

[[noreturn]] void fail(const std::string& place, const std::string& problem)
{
    throw std::runtime_error(place + ": " + problem);
}

std::string withoutBlanksInFront(const std::string& text)
{
    const std::size_t start = text.find_first_not_of(" \t");
    return start == std::string::npos ? "" : text.substr(start);
}

unsigned modifierOf(SDL_Keycode key)
{
    switch (key) {
    case SDLK_LCTRL: return KMOD_LCTRL;
    case SDLK_RCTRL: return KMOD_RCTRL;
    case SDLK_LSHIFT: return KMOD_LSHIFT;
    case SDLK_RSHIFT: return KMOD_RSHIFT;
    case SDLK_LALT: return KMOD_LALT;
    case SDLK_RALT: return KMOD_RALT;
    default: return KMOD_NONE;
    }
}

/// In pieces that fit into events; none splits a character.
void pushText(const std::string& text, unsigned windowId)
{
    for (std::size_t at = 0; at < text.size();) {
        std::size_t size = std::min<std::size_t>(text.size() - at, SDL_TEXTINPUTEVENT_TEXT_SIZE - 1);
        const auto isInside = [&](std::size_t i) {
            return i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
        };
        while (size > 1 && isInside(at + size)) --size;
        SDL_Event event = {};
        event.type = SDL_TEXTINPUT;
        event.text.windowID = windowId;
        std::memcpy(event.text.text, text.data() + at, size);
        SDL_PushEvent(&event);
        at += size;
    }
}

} // namespace

// ---- playing --------------------------------------------------------------------------------------------------------

const SessionPlayer::Form SessionPlayer::forms[] = {
    {"key down", Action::KeyDown, 0, 0, 0},
    {"key up", Action::KeyUp, 0, 0, 0},
    {"text", Action::Text, 0, 0, 0},
    {"motion", Action::Motion, 4, -farthest, farthest},
    {"button down", Action::ButtonDown, 1, 1, 5},
    {"button up", Action::ButtonUp, 1, 1, 5},
    {"wheel", Action::Wheel, 1, -farthest, farthest},
    {"window", Action::Window, 2, 1, largestWindow},
    {"quit", Action::Quit, 0, 0, 0},
};

SessionPlayer::SessionPlayer(const std::string& fileName)
{
    std::ifstream file(fileName, std::ios::binary);
    if (!file) fail(fileName, "cannot be read");
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string step = withoutBlanksInFront(line);
        if (!step.empty() && step[0] != '#') readStep(step, fileName + ":" + std::to_string(number));
    }
    if (file.bad()) fail(fileName, "cannot be read"); // as a directory
}

void SessionPlayer::readStep(const std::string& line, const std::string& place)
{
    Step step;
    const char* const end = line.data() + line.size();
    const auto [stop, problem] = std::from_chars(line.data(), end, step.frame);
    if (problem != std::errc() || stop == end || (*stop != ' ' && *stop != '\t'))
        fail(place, "a step is a frame and what happens");
    if (!steps.empty() && step.frame < steps.back().frame) fail(place, "frames do not go back");

    const std::string what = withoutBlanksInFront(std::string(stop, end));
    const Form* const form = findForm(what);
    if (form == nullptr) fail(place, "'" + what + "' is not known");
    step.action = form->action;
    const std::string rest = what.substr(std::strlen(form->name));
    switch (step.action) {
    case Action::KeyDown:
    case Action::KeyUp:
        step.text = withoutBlanksInFront(rest);
        if (SDL_GetKeyFromName(step.text.c_str()) == SDLK_UNKNOWN) fail(place, "there is no key '" + step.text + "'");
        break;
    case Action::Text:
        if (rest.size() < 2) fail(place, "'text' needs a text");
        step.text = rest.substr(1);
        break;
    default: readNumbers(*form, rest, place, step);
    }
    steps.push_back(std::move(step));
}

const SessionPlayer::Form* SessionPlayer::findForm(const std::string& text)
{
    const auto begins = [&](const Form& form) {
        const std::size_t size = std::strlen(form.name);
        return text.compare(0, size, form.name) == 0 && (text.size() == size || text[size] == ' ');
    };
    const Form* const found = std::find_if(std::begin(forms), std::end(forms), begins);
    return found == std::end(forms) ? nullptr : found;
}

void SessionPlayer::readNumbers(const Form& form, const std::string& text, const std::string& place, Step& step)
{
    const std::string quoted = std::string("'") + form.name + "'";
    std::istringstream words(text);
    for (int i = 0; i < form.numberCount; ++i) {
        int& number = step.numbers[i];
        if (!(words >> number)) fail(place, quoted + " needs whole numbers, " + std::to_string(form.numberCount));
        if (number < form.smallest || number > form.largest)
            fail(place, quoted + " needs numbers from " + std::to_string(form.smallest) + " to " +
                            std::to_string(form.largest));
    }
    std::string rest;
    if (words >> rest) fail(place, quoted + " has too much behind it");
}

void SessionPlayer::pushEvents(std::uint64_t frame, SDL_Window* window)
{
    for (; next < steps.size() && steps[next].frame <= frame; ++next) push(steps[next], window);
}

void SessionPlayer::push(const Step& step, SDL_Window* window)
{
    const Uint32 windowId = SDL_GetWindowID(window);
    SDL_Event event = {};
    switch (step.action) {
    case Action::KeyDown:
    case Action::KeyUp: pushKey(step, windowId); break;
    case Action::Text: pushText(step.text, windowId); break;
    case Action::Motion: pushMotion(step, windowId); break;
    case Action::ButtonDown:
    case Action::ButtonUp: pushButton(step, windowId); break;
    case Action::Window: SDL_SetWindowSize(window, step.numbers[0], step.numbers[1]); break;
    case Action::Wheel:
        event.type = SDL_MOUSEWHEEL;
        event.wheel.windowID = windowId;
        event.wheel.y = step.numbers[0];
        SDL_PushEvent(&event);
        break;
    case Action::Quit:
        event.type = SDL_QUIT;
        SDL_PushEvent(&event);
        break;
    }
}

void SessionPlayer::pushKey(const Step& step, unsigned windowId)
{
    const bool isDown = step.action == Action::KeyDown;
    SDL_Event event = {};
    event.type = isDown ? SDL_KEYDOWN : SDL_KEYUP;
    event.key.windowID = windowId;
    event.key.state = isDown ? SDL_PRESSED : SDL_RELEASED;
    event.key.keysym.sym = SDL_GetKeyFromName(step.text.c_str());
    event.key.keysym.scancode = SDL_GetScancodeFromKey(event.key.keysym.sym);
    const unsigned modifier = modifierOf(event.key.keysym.sym);
    modifiers = isDown ? modifiers | modifier : modifiers & ~modifier;
    event.key.keysym.mod = static_cast<Uint16>(modifiers);
    SDL_SetModState(static_cast<SDL_Keymod>(modifiers)); // who handles events asks for it there
    SDL_PushEvent(&event);
}

void SessionPlayer::pushMotion(const Step& step, unsigned windowId)
{
    x = step.numbers[0];
    y = step.numbers[1];
    motionX += step.numbers[2];
    motionY += step.numbers[3];
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.windowID = windowId;
    event.motion.state = buttons;
    event.motion.x = x;
    event.motion.y = y;
    event.motion.xrel = step.numbers[2];
    event.motion.yrel = step.numbers[3];
    SDL_PushEvent(&event);
}

void SessionPlayer::pushButton(const Step& step, unsigned windowId)
{
    const bool isDown = step.action == Action::ButtonDown;
    const auto button = static_cast<Uint8>(step.numbers[0]);
    const unsigned buttonBit = 1U << (button - 1U);
    buttons = isDown ? buttons | buttonBit : buttons & ~buttonBit;
    SDL_Event event = {};
    event.type = isDown ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    event.button.windowID = windowId;
    event.button.button = button;
    event.button.state = isDown ? SDL_PRESSED : SDL_RELEASED;
    event.button.clicks = 1;
    event.button.x = x;
    event.button.y = y;
    SDL_PushEvent(&event);
}

void SessionPlayer::takeMotion(int& outX, int& outY)
{
    outX = motionX;
    outY = motionY;
    motionX = 0;
    motionY = 0;
}

// ---- recording ------------------------------------------------------------------------------------------------------

SessionRecorder::SessionRecorder(const std::string& fileName) : file(fileName, std::ios::binary)
{
    if (!file) fail(fileName, "cannot be written");
    SDL_AddEventWatch(watch, this);
}

SessionRecorder::~SessionRecorder()
{
    SDL_DelEventWatch(watch, this);
}

void SessionRecorder::writeWindowSize(int width, int height)
{
    file << frame << " window " << width << ' ' << height << std::endl;
}

int SessionRecorder::watch(void* recorder, SDL_Event* event)
{
    static_cast<SessionRecorder*>(recorder)->write(*event);
    return 0;
}

void SessionRecorder::write(const SDL_Event& event)
{
    std::ostringstream line;
    switch (event.type) {
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        if (event.key.repeat != 0 || *SDL_GetKeyName(event.key.keysym.sym) == '\0') return;
        line << (event.type == SDL_KEYDOWN ? "key down " : "key up ") << SDL_GetKeyName(event.key.keysym.sym);
        break;
    case SDL_TEXTINPUT:
        if (event.text.text[0] == '\0') return;
        line << "text " << event.text.text;
        break;
    case SDL_MOUSEMOTION:
        line << "motion " << event.motion.x << ' ' << event.motion.y << ' ' << event.motion.xrel << ' '
             << event.motion.yrel;
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        if (event.button.button < 1 || event.button.button > 5) return;
        line << (event.type == SDL_MOUSEBUTTONDOWN ? "button down " : "button up ") << int{event.button.button};
        break;
    case SDL_MOUSEWHEEL: line << "wheel " << event.wheel.y; break;
    case SDL_WINDOWEVENT:
        if (event.window.event != SDL_WINDOWEVENT_SIZE_CHANGED) return;
        line << "window " << event.window.data1 << ' ' << event.window.data2;
        break;
    case SDL_QUIT: line << "quit"; break;
    default: return;
    }
    file << frame << ' ' << line.str() << std::endl; // flushed: a crash is what one wants to play again
}
