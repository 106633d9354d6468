#pragma once

/// One number for every key, mouse button, wheel step, joystick axis direction and joystick button.
///
/// Keyboard keys are SDL keycodes with bit 30 (SDLK_SCANCODE_MASK) cleared: 'a' is 97, F1 is 58. Kept on purpose: a
/// scancode-based key shares its number with a character, so F1 and ':' are one key here. Queries clear the bit
/// themselves: an SDL keycode may be passed as it is. Codes outside 0 to 528 (keys of some national layouts) are never
/// down.
namespace KeyCode {
/// Numbers of what is no keyboard key, and the ends of the ranges.
enum : int {
    None = 0,                    ///< also receives mouse buttons above 5 and joystick buttons above 3
    KeyboardLast = 511,          ///< the last number that is meant for the keyboard
    MouseLeft = 512,             ///< SDL's button 1
    MouseRight = 513,            ///< SDL's button 3
    MouseMiddle = 514,           ///< SDL's button 2
    MouseExtra1 = 515,           ///< SDL's button 4: "back", as a rule
    MouseExtra2 = 516,           ///< SDL's button 5: "forward", as a rule
    WheelLeft = 517,             ///< a wheel step is pressed and released in one frame, never held
    WheelRight = 518,            ///< as WheelLeft
    WheelDown = 519,             ///< towards the user
    WheelUp = 520,               ///< away from the user
    JoystickAxis0Negative = 521, ///< axes 0, 2, 4 and so on beyond the dead zone: to the left, as a rule
    JoystickAxis0Positive = 522, ///< to the right, as a rule
    JoystickAxis1Negative = 523, ///< axes 1, 3, 5 and so on: upwards, as a rule
    JoystickAxis1Positive = 524, ///< downwards, as a rule
    JoystickButton0 = 525,       ///< SDL's button 0 of every opened joystick, as the next three
    JoystickButton1 = 526,       ///< SDL's button 1
    JoystickButton2 = 527,       ///< SDL's button 2
    JoystickButton3 = 528,       ///< SDL's button 3
    Count = 529,                 ///< how many codes there are
    ScancodeMask = 0x40000000,   ///< the bit that is cleared
};
}
