#pragma once

#include "application.h"
#include "game_data.h"
#include "options.h"
#include "presentation.h"
#include "soundscape.h"

/// The game, from the title to the end, until the player quits. Settings are read at the start and written back, with
/// a session to play only when a file for them is named. Throws Failure when it cannot go on.
void playGame(Application& application, Presentation& presentation, Soundscape& sounds, GameData& data,
              const Options& options);
