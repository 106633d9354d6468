#pragma once

#include <vector>

struct SDL_RWops;

// SDL_mixer and SDL trust what a sound file says about itself: some broken WAV files make them divide by zero, read
// beyond a chunk or write beyond a buffer whose size overflowed. What is wrong is found here before they see it.
// Formats other than WAV and OGG pass. All of these leave the source anywhere.

/// Whether decoding a whole file can end well: its rate is one that sounds have, and what comes out is less than two
/// gibibytes. The mixer must be open.
bool isSampleBelievable(SDL_RWops* source);

/// Whether decoding a file while it plays can end well: its rate is one that sounds have, it has channels, and the
/// loops that a WAV counts are there.
bool isStreamBelievable(SDL_RWops* source);

/// Whether a WAV has chunks with texts. SDL_mixer reads beyond the end of such chunks, whole ones, too.
bool hasTexts(SDL_RWops* source);

/// Gives those chunks another name, under which they are skipped. Nothing here asks for the texts.
void hideTexts(std::vector<unsigned char>& wave);
