#pragma once

#include "visibility.h"

#include <xum/engine/export.h>

#include <string>

/// The window's title with the number of frames per second, counted anew twice a second, and how much is drawn.
class FrameRateTitle {
public:
    explicit FrameRateTitle(std::string name) : name(std::move(name)) {}

    /// Counts a frame at a time of the engine clock. True when there is a new title to show.
    bool countFrame(uint64 milliseconds);

    std::string getTitle(const Visibility& visibility) const;

private:
    std::string name;
    uint64 countedSince = 0;
    unsigned int frameCount = 0;
    unsigned int framesPerSecond = 0;
};
