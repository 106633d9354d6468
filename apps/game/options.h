#pragma once

#include "game_data.h"
#include "presentation.h"
#include "viewpoint.h"
#include "volume.h"

#include <xum/geometry/vector.h>

#include <optional>
#include <string>

/// The command line.
struct Options {
    int frames = 0; ///< above 0: draw so many frames unattended, then write the picture
    std::string pictureFile = "xum-game.bmp";
    DataSource source;
    Vector2<int> size = {1024, 768};
    bool startsAsWireframe = false;
    bool culls = true;
    bool startsWalking = false;
    bool showsOcclusion = false;
    bool hasLamp = true;
    Layers layers;
    Volume volume;
    std::optional<Viewpoint> view; ///< where the player starts, and all that an unattended run sees

    bool explores = false;    ///< no game: fly and walk through the world
    bool isSizeGiven = false; ///< on the command line, where it wins over the settings
    bool isVolumeGiven = false;
    std::string mapFile;      ///< of somebody's own; empty: the game's world
    std::string settingsFile; ///< empty: the user's own
    std::string sessionFile;  ///< to be played; empty: none
    std::string recordFile;   ///< where to write a session; empty: nowhere
    bool isFast = false;      ///< a session is not drawn before its end

    bool playsSession() const { return !sessionFile.empty(); }
    bool isUnattended() const { return frames > 0; }
};

/// Reads the command line. When there is nothing to play (--help or a wrong argument) it has written what
/// the user should see, and returns nothing and the exit status in `outStatus`.
std::optional<Options> readOptions(int argumentCount, const char* const* arguments, int& outStatus);
