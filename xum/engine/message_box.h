#pragma once

#include <cstdint>

/// The one place that shows a message box.

/// What shows a box: title and text are NUL-terminated; 0 when it was shown.
using MessageBoxFunction = int (*)(std::uint32_t flags, const char* title, const char* text);

/// SDL's box without a parent window. Tests that link the objects put their own in its place.
extern MessageBoxFunction messageBoxFunction;

/// Shows a box with the error icon and waits until it is closed. Where no box can be shown, or the environment says
/// XUM_MESSAGE_BOXES=0, writes "TITLE: TEXT" as one line to standard error.
void showMessageBox(const char* title, const char* text);
