#include "audio_stand_ins.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <dlfcn.h>

#include <initializer_list>
#include <utility>

namespace {

SDL_AudioSpec output = {};
int depth = 0; // of calls: inside one, SDL_mixer calls its own functions

template <class Function>
Function* realFunction(Function* /*ours*/, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// While it lives, calls are SDL_mixer's own.
class Call {
public:
    Call() { ++depth; }
    ~Call() { --depth; }

    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
};

void record(const std::string& name, std::initializer_list<int> arguments = {})
{
    if (depth > 0) return;
    std::string text;
    for (const int argument : arguments) text += (text.empty() ? "" : ", ") + std::to_string(argument);
    mixerCalls().push_back(name + "(" + text + ")");
}

} // namespace

std::vector<std::string>& mixerCalls()
{
    static std::vector<std::string> calls;
    return calls;
}

std::vector<std::string> takeMixerCalls()
{
    return std::exchange(mixerCalls(), {});
}

MixerAnswers& mixerAnswers()
{
    static MixerAnswers answers;
    return answers;
}

std::vector<Frame> playChunks(int count)
{
    const Call call;
    std::vector<Frame> frames(static_cast<std::size_t>(count) * output.samples);
    for (int i = 0; i < count; ++i) {
        Frame* chunk = frames.data() + static_cast<std::size_t>(i) * output.samples;
        output.callback(output.userdata, reinterpret_cast<Uint8*>(chunk), static_cast<int>(output.size));
    }
    return frames;
}

extern "C" {

// The mixer gives this device back to SDL, which ignores a number that it never gave out.
DECLSPEC SDL_AudioDeviceID SDLCALL SDL_OpenAudioDevice(const char* /*device*/, int /*isCapture*/,
                                                       const SDL_AudioSpec* desired, SDL_AudioSpec* obtained,
                                                       int /*allowedChanges*/)
{
    output = *desired;
    output.size = static_cast<Uint32>(output.samples * sizeof(Frame));
    output.silence = 0;
    *obtained = output;
    return 77;
}

DECLSPEC Uint32 SDLCALL SDL_GetTicks()
{
    const MixerAnswers& answers = mixerAnswers();
    return answers.isClockDriven ? answers.ticks : realFunction(SDL_GetTicks, "SDL_GetTicks")();
}

DECLSPEC int SDLCALL Mix_Init(int flags)
{
    record("Mix_Init", {flags});
    const Call call;
    const ForcedAnswer& forced = mixerAnswers().init;
    return forced.isForced ? forced.answer : realFunction(Mix_Init, "Mix_Init")(flags);
}

DECLSPEC void SDLCALL Mix_Quit()
{
    record("Mix_Quit");
    const Call call;
    realFunction(Mix_Quit, "Mix_Quit")();
}

DECLSPEC int SDLCALL Mix_OpenAudio(int frequency, Uint16 format, int channels, int chunkSize)
{
    record("Mix_OpenAudio", {frequency, format, channels, chunkSize});
    const Call call;
    const ForcedAnswer& forced = mixerAnswers().openAudio;
    if (forced.isForced) return forced.answer;
    return realFunction(Mix_OpenAudio, "Mix_OpenAudio")(frequency, format, channels, chunkSize);
}

DECLSPEC void SDLCALL Mix_CloseAudio()
{
    record("Mix_CloseAudio");
    const Call call;
    realFunction(Mix_CloseAudio, "Mix_CloseAudio")();
}

DECLSPEC int SDLCALL Mix_AllocateChannels(int count)
{
    record("Mix_AllocateChannels", {count});
    const Call call;
    const int result = realFunction(Mix_AllocateChannels, "Mix_AllocateChannels")(count);
    const ForcedAnswer& forced = mixerAnswers().allocateChannels;
    return forced.isForced ? forced.answer : result;
}

DECLSPEC int SDLCALL Mix_Volume(int channel, int volume)
{
    record("Mix_Volume", {channel, volume});
    const Call call;
    return realFunction(Mix_Volume, "Mix_Volume")(channel, volume);
}

DECLSPEC int SDLCALL Mix_PlayChannelTimed(int channel, Mix_Chunk* chunk, int loops, int ticks)
{
    record("Mix_PlayChannelTimed", {channel, loops, ticks});
    const Call call;
    return realFunction(Mix_PlayChannelTimed, "Mix_PlayChannelTimed")(channel, chunk, loops, ticks);
}

DECLSPEC int SDLCALL Mix_FadeInChannelTimed(int channel, Mix_Chunk* chunk, int loops, int ms, int ticks)
{
    record("Mix_FadeInChannelTimed", {channel, loops, ms, ticks});
    const Call call;
    return realFunction(Mix_FadeInChannelTimed, "Mix_FadeInChannelTimed")(channel, chunk, loops, ms, ticks);
}

DECLSPEC int SDLCALL Mix_HaltChannel(int channel)
{
    record("Mix_HaltChannel", {channel});
    const Call call;
    return realFunction(Mix_HaltChannel, "Mix_HaltChannel")(channel);
}

DECLSPEC int SDLCALL Mix_FadeOutChannel(int channel, int ms)
{
    record("Mix_FadeOutChannel", {channel, ms});
    const Call call;
    return realFunction(Mix_FadeOutChannel, "Mix_FadeOutChannel")(channel, ms);
}

DECLSPEC int SDLCALL Mix_PlayMusic(Mix_Music* music, int loops)
{
    record("Mix_PlayMusic", {loops});
    const Call call;
    return realFunction(Mix_PlayMusic, "Mix_PlayMusic")(music, loops);
}

DECLSPEC int SDLCALL Mix_FadeInMusic(Mix_Music* music, int loops, int ms)
{
    record("Mix_FadeInMusic", {loops, ms});
    const Call call;
    return realFunction(Mix_FadeInMusic, "Mix_FadeInMusic")(music, loops, ms);
}

DECLSPEC int SDLCALL Mix_HaltMusic()
{
    record("Mix_HaltMusic");
    const Call call;
    return realFunction(Mix_HaltMusic, "Mix_HaltMusic")();
}

DECLSPEC int SDLCALL Mix_FadeOutMusic(int ms)
{
    record("Mix_FadeOutMusic", {ms});
    const Call call;
    return realFunction(Mix_FadeOutMusic, "Mix_FadeOutMusic")(ms);
}

DECLSPEC int SDLCALL Mix_VolumeMusic(int volume)
{
    record("Mix_VolumeMusic", {volume});
    const Call call;
    return realFunction(Mix_VolumeMusic, "Mix_VolumeMusic")(volume);
}

DECLSPEC void SDLCALL Mix_FreeChunk(Mix_Chunk* chunk)
{
    record("Mix_FreeChunk");
    const Call call;
    realFunction(Mix_FreeChunk, "Mix_FreeChunk")(chunk);
}

DECLSPEC void SDLCALL Mix_FreeMusic(Mix_Music* music)
{
    record("Mix_FreeMusic");
    const Call call;
    realFunction(Mix_FreeMusic, "Mix_FreeMusic")(music);
}

DECLSPEC Mix_Music* SDLCALL Mix_LoadMUS(const char* fileName)
{
    record("Mix_LoadMUS");
    const Call call;
    return realFunction(Mix_LoadMUS, "Mix_LoadMUS")(fileName);
}

DECLSPEC Mix_Music* SDLCALL Mix_LoadMUS_RW(SDL_RWops* source, int closesSource)
{
    record("Mix_LoadMUS_RW", {closesSource});
    const Call call;
    return realFunction(Mix_LoadMUS_RW, "Mix_LoadMUS_RW")(source, closesSource);
}

DECLSPEC Mix_Chunk* SDLCALL Mix_LoadWAV_RW(SDL_RWops* source, int closesSource)
{
    record("Mix_LoadWAV_RW", {closesSource});
    const Call call;
    return realFunction(Mix_LoadWAV_RW, "Mix_LoadWAV_RW")(source, closesSource);
}
}
