#pragma once

/// @file
/// Whether a configuration can be read, without ending the program over it.

#include <xum/engine/export.h>

#include <string>

/// Whether a ConfigFile can be made of a text, for hosts that would rather tell the user than end: a broken file is a
/// fatal error. False for an empty text, too, which has no root section. Then `outProblem` becomes
/// "LINE:COLUMN: MESSAGE", counted from 1, columns in characters of UTF-8.
XUM_API bool checkConfigText(const std::string& text, std::string& outProblem);
