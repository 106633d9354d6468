#pragma once

/// @file
/// Pseudo-random bytes from one fixed table of 256 with one process-wide cursor: every run draws the same sequence,
/// which repeats after 256 draws. Not locked; nothing reseeds it, and nothing inside the library draws from it.

#include <xum/engine/export.h>

/// The next byte of the table; advances the cursor.
XUM_API unsigned char randomByte();

/// The table entry at `index & 255`; does not move the cursor.
XUM_API unsigned char randomByte(int index);

/// The next byte / 255: 0 to 1, both included. Advances the cursor.
XUM_API float randomFloat();

/// The next byte / 255 * 2 - 1: -1 to 1, both included. Advances the cursor.
XUM_API float randomDirection();
