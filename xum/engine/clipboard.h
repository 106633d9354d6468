#pragma once

#include <string>

/// SDL's clipboard, shared by the system devices of all platforms. In a file of its own because the Windows device must
/// not see both SDL and windows.h names.

bool clipboardHasText();

/// Empty when there is none.
std::string clipboardText();

void setClipboardTextTo(const std::string& text);
