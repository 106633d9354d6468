#pragma once

#include "application.h"
#include "options.h"
#include "presentation.h"
#include "soundscape.h"

/// The frame loop with a player: returns when the player quits.
void play(Application& application, Presentation& presentation, Soundscape& sounds, const Options& options);

/// The frame loop without one: a fixed number of frames on a fixed path, then the picture. Throws Failure when it
/// cannot be written.
void runUnattended(Application& application, Presentation& presentation, Soundscape& sounds, const Options& options);
