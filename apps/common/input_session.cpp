#include "input_session.h"

#include <SDL.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const std::string& place, const std::string& problem)
{
    throw std::runtime_error(place + ": " + problem);
}

std::string readRest(std::istringstream& words)
{
    std::string rest;
    std::getline(words >> std::ws, rest);
    return rest;
}

/// How many numbers follow an action; -1 for text.
int countNumbers(const std::string& action)
{
    if (action == "key down" || action == "key up" || action == "text") return -1;
    if (action == "motion") return 4;
    if (action == "window") return 2;
    if (action == "button down" || action == "button up" || action == "wheel") return 1;
    if (action == "quit") return 0;
    return -2;
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

} // namespace

SessionPlayer::SessionPlayer(const std::string& fileName)
{
    std::ifstream file(fileName);
    if (!file) fail(fileName, "cannot be read");
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.find_first_not_of(" \t") == std::string::npos || line[line.find_first_not_of(" \t")] == '#') continue;
        readStep(line, fileName + ":" + std::to_string(number));
    }
    if (file.bad()) fail(fileName, "cannot be read");
}

void SessionPlayer::readStep(const std::string& line, const std::string& place)
{
    std::istringstream words(line);
    Step step;
    if (!(words >> step.frame >> step.action)) fail(place, "a step is a frame and what happens");
    if (!steps.empty() && step.frame < steps.back().frame) fail(place, "frames do not go back");
    if (step.action == "key" || step.action == "button") {
        std::string direction;
        words >> direction;
        step.action += " " + direction;
    }
    const int count = countNumbers(step.action);
    if (count == -2) fail(place, "'" + step.action + "' is not known");
    if (count == -1) step.text = readRest(words);
    for (int i = 0; i < count; ++i)
        if (!(words >> step.numbers[i]))
            fail(place, "'" + step.action + "' needs " + std::to_string(count) + " numbers");
    if (count >= 0 && !readRest(words).empty()) fail(place, "'" + step.action + "' has too much behind it");
    if (step.action.compare(0, 3, "key") == 0 && SDL_GetKeyFromName(step.text.c_str()) == SDLK_UNKNOWN)
        fail(place, "there is no key '" + step.text + "'");
    steps.push_back(std::move(step));
}

void SessionPlayer::pushEvents(std::uint64_t frame, SDL_Window* window)
{
    for (; next < steps.size() && steps[next].frame <= frame; ++next) push(steps[next], window);
}

void SessionPlayer::push(const Step& step, SDL_Window* window)
{
    SDL_Event event = {};
    const Uint32 windowId = SDL_GetWindowID(window);
    if (step.action.compare(0, 3, "key") == 0) {
        pushKey(step, window);
        return;
    }
    if (step.action == "text") {
        event.type = SDL_TEXTINPUT;
        event.text.windowID = windowId;
        // In pieces that fit; none splits a character.
        for (std::size_t at = 0; at < step.text.size();) {
            std::size_t size = std::min<std::size_t>(step.text.size() - at, SDL_TEXTINPUTEVENT_TEXT_SIZE - 1);
            while (at + size < step.text.size() && (static_cast<unsigned char>(step.text[at + size]) & 0xC0) == 0x80)
                --size;
            if (size == 0) break;
            std::memset(event.text.text, 0, sizeof event.text.text);
            std::memcpy(event.text.text, step.text.data() + at, size);
            SDL_PushEvent(&event);
            at += size;
        }
        return;
    }
    if (step.action == "motion") {
        x = step.numbers[0];
        y = step.numbers[1];
        motionX += step.numbers[2];
        motionY += step.numbers[3];
        event.type = SDL_MOUSEMOTION;
        event.motion.windowID = windowId;
        event.motion.state = buttons;
        event.motion.x = x;
        event.motion.y = y;
        event.motion.xrel = step.numbers[2];
        event.motion.yrel = step.numbers[3];
    } else if (step.action == "button down" || step.action == "button up") {
        const bool isDown = step.action == "button down";
        const unsigned button = static_cast<unsigned>(std::clamp(step.numbers[0], 1, 5));
        const unsigned buttonBit = 1U << (button - 1);
        buttons = isDown ? buttons | buttonBit : buttons & ~buttonBit;
        event.type = isDown ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        event.button.windowID = windowId;
        event.button.button = static_cast<Uint8>(button);
        event.button.state = isDown ? SDL_PRESSED : SDL_RELEASED;
        event.button.clicks = 1;
        event.button.x = x;
        event.button.y = y;
    } else if (step.action == "wheel") {
        event.type = SDL_MOUSEWHEEL;
        event.wheel.windowID = windowId;
        event.wheel.y = step.numbers[0];
    } else if (step.action == "window") {
        SDL_SetWindowSize(window, std::clamp(step.numbers[0], 1, 16384), std::clamp(step.numbers[1], 1, 16384));
        return;
    } else {
        event.type = SDL_QUIT;
    }
    SDL_PushEvent(&event);
}

void SessionPlayer::pushKey(const Step& step, SDL_Window* window)
{
    const bool isDown = step.action == "key down";
    SDL_Event event = {};
    event.type = isDown ? SDL_KEYDOWN : SDL_KEYUP;
    event.key.windowID = SDL_GetWindowID(window);
    event.key.state = isDown ? SDL_PRESSED : SDL_RELEASED;
    event.key.keysym.sym = SDL_GetKeyFromName(step.text.c_str());
    event.key.keysym.scancode = SDL_GetScancodeFromKey(event.key.keysym.sym);
    const unsigned modifier = modifierOf(event.key.keysym.sym);
    modifiers = isDown ? modifiers | modifier : modifiers & ~modifier;
    event.key.keysym.mod = static_cast<Uint16>(modifiers);
    SDL_SetModState(static_cast<SDL_Keymod>(modifiers)); // who handles events asks for it there
    SDL_PushEvent(&event);
}

void SessionPlayer::takeMotion(int& outX, int& outY)
{
    outX = motionX;
    outY = motionY;
    motionX = 0;
    motionY = 0;
}

SessionRecorder::SessionRecorder(const std::string& fileName) : file(fileName)
{
    if (!file) fail(fileName, "cannot be written");
    SDL_AddEventWatch(watch, this);
}

SessionRecorder::~SessionRecorder()
{
    SDL_DelEventWatch(watch, this);
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
    case SDL_TEXTINPUT: line << "text " << event.text.text; break;
    case SDL_MOUSEMOTION:
        line << "motion " << event.motion.x << ' ' << event.motion.y << ' ' << event.motion.xrel << ' '
             << event.motion.yrel;
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
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
