#pragma once

#include <xum/devices/input_device.h>

#include <vector>

/// The process-wide input state: key table, axis directions, dead zone, recording and text. The engine's pump feeds it,
/// InputDevice reads it. It exists without any device and nothing resets it.

// Feeding.

/// Starts a frame: forgets which keys were pressed and released, keeps which are held.
void beginFrame();

/// A code is an SDL keycode or a KeyCode; one outside the key table is ignored.
void press(int code);
void release(int code);

/// Even axis numbers act as axis 0, odd ones as axis 1.
void moveJoystickAxis(int axis, int value);

/// Appends the bytes below 0x80 of a NUL-terminated UTF-8 text; the 33rd character drops the oldest.
void appendText(const char* utf8);

// Reading; see InputDevice.

bool wasKeyPressed(int key);
bool wasKeyReleased(int key);
bool isKeyDown(int key);
bool wasAnyKeyPressed();
void setDeadZone(int deadZone);
void startRecordingInput();
void takeRecordedInput(std::vector<InputEvent>& out);
void clearTypedText();
void takeTypedText(std::vector<unsigned int>& out);
