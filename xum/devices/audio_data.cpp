#include <xum/devices/audio_data.h>

#include <SDL_mixer.h>

Sample::~Sample()
{
    Mix_FreeChunk(chunk);
}

Stream::~Stream()
{
    Mix_FreeMusic(music); // the mixer reads the bytes until then
}
