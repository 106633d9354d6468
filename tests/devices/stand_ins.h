#pragma once

#include <string>
#include <vector>

/// Functions of SDL that the test program defines itself, which the dynamic linker prefers: what they tell cannot be
/// brought about without hardware. Each otherwise does what SDL's own does.

/// From now on the joystick of this number does not open; -1 for none.
void refuseToOpenJoystick(int number);

/// The calls that change the mouse mode or take its motion, in order, as "NAME(ARGUMENTS)".
std::vector<std::string>& mouseCalls();

/// Moves the mouse: SDL_GetRelativeMouseState tells the motion since it was asked last.
void moveMouseBy(int x, int y);
