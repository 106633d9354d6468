#include "disk_audio.h"

#include "file_contents.h"
#include "own_directory.h"

#include <SDL_mixer.h>

#include <atomic>
#include <cstring>
#include <filesystem>

namespace {

std::atomic<int> madeChunks = 0;

void countChunk(void* /*data*/, Uint8* /*samples*/, int /*size*/)
{
    ++madeChunks;
}

} // namespace

void DiskAudioFixture::SetUp()
{
    const char* setting = SDL_getenv("SDL_AUDIODRIVER");
    driver = setting != nullptr ? setting : "";
    fileName = (ownDirectory() / "played.raw").string();
    setEnvironment("SDL_AUDIODRIVER", "disk");
    setEnvironment("SDL_DISKAUDIOFILE", fileName.c_str());
    setEnvironment("SDL_DISKAUDIODELAY", "1"); // milliseconds a chunk
    engine = initEngine(false);
    ASSERT_NE(engine, nullptr);
#ifdef _WIN32
    fileName = (ownDirectory() / "1").string(); // SDL forgets the name when it reads the delay, and takes that for it
    enterOwnDirectory();
#endif
    audio = engine->createAudioDevice();
    std::filesystem::current_path(testDirectory());
    ASSERT_NE(audio, nullptr);
    Mix_SetPostMix(countChunk, nullptr);
}

void DiskAudioFixture::TearDown()
{
    if (audio != nullptr) engine->destroyAudioDevice(audio);
    shutdownEngine(engine);
    setEnvironment("SDL_AUDIODRIVER", driver.c_str());
}

void DiskAudioFixture::waitForChunks(int count)
{
    const int start = madeChunks;
    while (madeChunks - start < count) SDL_Delay(1);
}

bool DiskAudioFixture::waitForSilence()
{
    constexpr int longest = 20000; // milliseconds
    for (int waited = 0; waited < longest; ++waited) {
        if (Mix_Playing(-1) == 0 && !audio->isMusicPlaying()) {
            waitForChunks(2); // the last ones are still on their way
            return true;
        }
        SDL_Delay(1);
    }
    return false;
}

void DiskAudioFixture::playToTheEnd(Sample* sample, const std::function<void(AudioSource&)>& prepare)
{
    AudioSource* source = audio->acquireSource();
    ASSERT_NE(source, nullptr);
    if (prepare) prepare(*source);
    source->play(sample, 0.0f);
    EXPECT_TRUE(waitForSilence());
    audio->update(0.0f);
}

Sample* DiskAudioFixture::constantSample(int frames, short left, short right)
{
    return audio->loadSampleFromMemory(constantWave(frames, left, right));
}

std::vector<Frame> DiskAudioFixture::endAndListen()
{
    engine->destroyAudioDevice(audio);
    audio = nullptr;
    const std::string bytes = fileContents(fileName);
    std::vector<Frame> frames(bytes.size() / sizeof(Frame));
    std::memcpy(static_cast<void*>(frames.data()), bytes.data(), frames.size() * sizeof(Frame));
    return frames;
}
