#pragma once

/// @file
/// Where the game's data lie unless a host says otherwise.

#include <xum/engine/export.h>

#include <string>

/// The directory that holds "shaders/", "textures/" and the other data directories, absolute and with a trailing '/'.
/// In this order: the environment variable XUM_DATA_ROOT; the directory compiled into the library, if it exists; the
/// one at the same place relative to the library's own file, if it exists, so that an installation can be moved; else
/// the compiled-in one.
XUM_API std::string defaultDataRoot();
