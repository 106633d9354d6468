#include <xum/engine/event_translator.h>

#include <xum/devices/input_state.h>
#include <xum/devices/key_codes.h>

#include <SDL.h>

namespace {

int mouseButtonCode(Uint8 button)
{
    switch (button) {
    case SDL_BUTTON_LEFT: return KeyCode::MouseLeft;
    case SDL_BUTTON_RIGHT: return KeyCode::MouseRight;
    case SDL_BUTTON_MIDDLE: return KeyCode::MouseMiddle;
    case SDL_BUTTON_X1: return KeyCode::MouseExtra1;
    case SDL_BUTTON_X2: return KeyCode::MouseExtra2;
    default: return KeyCode::None;
    }
}

int joystickButtonCode(Uint8 button)
{
    return button < 4 ? KeyCode::JoystickButton0 + button : KeyCode::None;
}

void pressAndRelease(int code)
{
    press(code);
    release(code);
}

// Signs are compared, not negated: the smallest amount has no negative.
void translateWheelAmount(Sint32 amount, bool flipped, int negativeCode, int positiveCode)
{
    if (amount == 0) return;
    pressAndRelease((amount < 0) != flipped ? negativeCode : positiveCode);
}

void translateWheel(const SDL_MouseWheelEvent& wheel)
{
    const bool flipped = wheel.direction == SDL_MOUSEWHEEL_FLIPPED;
    translateWheelAmount(wheel.x, flipped, KeyCode::WheelLeft, KeyCode::WheelRight);
    translateWheelAmount(wheel.y, flipped, KeyCode::WheelDown, KeyCode::WheelUp);
}

bool translateWindowEvent(const SDL_WindowEvent& event, EngineEventType::Type& outType)
{
    switch (event.event) {
    case SDL_WINDOWEVENT_RESTORED: outType = EngineEventType::WindowRestored; return true;
    case SDL_WINDOWEVENT_MINIMIZED: outType = EngineEventType::WindowMinimized; return true;
    case SDL_WINDOWEVENT_CLOSE: outType = EngineEventType::WindowClosed; return true;
    default: return false;
    }
}

} // namespace

bool translateEvent(const SDL_Event& event, EngineEventType::Type& outType)
{
    switch (event.type) {
    case SDL_KEYDOWN: press(event.key.keysym.sym); break; // repeats press again
    case SDL_KEYUP: release(event.key.keysym.sym); break;
    case SDL_TEXTINPUT: appendText(event.text.text); break;
    case SDL_MOUSEBUTTONDOWN: press(mouseButtonCode(event.button.button)); break;
    case SDL_MOUSEBUTTONUP: release(mouseButtonCode(event.button.button)); break;
    case SDL_MOUSEWHEEL: translateWheel(event.wheel); break;
    case SDL_JOYAXISMOTION: moveJoystickAxis(event.jaxis.axis, event.jaxis.value); break;
    case SDL_JOYBUTTONDOWN: press(joystickButtonCode(event.jbutton.button)); break;
    case SDL_JOYBUTTONUP: release(joystickButtonCode(event.jbutton.button)); break;
    case SDL_WINDOWEVENT: return translateWindowEvent(event.window, outType);
    default: break;
    }
    return false;
}
