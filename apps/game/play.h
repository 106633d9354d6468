#pragma once

#include "application.h"
#include "options.h"
#include "scene_renderer.h"
#include "soundscape.h"

/// The frame loop with a player: returns when the player quits.
void play(Application& application, SceneRenderer& renderer, Soundscape& sounds, const Options& options);

/// The frame loop without one: a fixed number of frames on a fixed path, then the picture. Throws Failure when it
/// cannot be written.
void runUnattended(Application& application, SceneRenderer& renderer, Soundscape& sounds, const Options& options);
