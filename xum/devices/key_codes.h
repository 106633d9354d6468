#pragma once

/// One number for every key, mouse button, wheel step, joystick axis direction and joystick button.
///
/// Keyboard keys are SDL keycodes with bit 30 (SDLK_SCANCODE_MASK) cleared: 'a' is 97, F1 is 58. Kept on purpose: a
/// scancode-based key shares its number with a character, so F1 and ':' are one key here. Queries clear the bit
/// themselves: an SDL keycode may be passed as it is. Codes outside 0 to 528 (keys of some national layouts) are never
/// down.
namespace KeyCode {
enum : int {
    None = 0, ///< also receives mouse buttons above 5 and joystick buttons above 3
    KeyboardLast = 511,
    MouseLeft = 512,
    MouseRight = 513,
    MouseMiddle = 514,
    MouseExtra1 = 515,
    MouseExtra2 = 516,
    WheelLeft = 517, ///< a wheel step is pressed and released in one frame, never held
    WheelRight = 518,
    WheelDown = 519,
    WheelUp = 520,
    JoystickAxis0Negative = 521, ///< axes 0, 2, 4 and so on beyond the dead zone
    JoystickAxis0Positive = 522,
    JoystickAxis1Negative = 523, ///< axes 1, 3, 5 and so on
    JoystickAxis1Positive = 524,
    JoystickButton0 = 525,
    JoystickButton1 = 526,
    JoystickButton2 = 527,
    JoystickButton3 = 528,
    Count = 529,
    ScancodeMask = 0x40000000, ///< the bit that is cleared
};
}
