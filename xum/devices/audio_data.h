#pragma once

#include <utility>
#include <vector>

struct Mix_Chunk;
struct _Mix_Music;

/// Owns one decoded chunk of SDL_mixer's.
class Sample {
public:
    explicit Sample(Mix_Chunk* chunk) : chunk(chunk) {}
    ~Sample();

    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    Mix_Chunk* getChunk() const { return chunk; }

private:
    Mix_Chunk* chunk;
};

/// Owns one piece of music of SDL_mixer's and the bytes that it is decoded from while it plays; none of a file's.
class Stream {
public:
    explicit Stream(std::vector<unsigned char> data) : data(std::move(data)) {}
    ~Stream();

    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    const std::vector<unsigned char>& getData() const { return data; }
    _Mix_Music* getMusic() const { return music; }

    /// Once, right after it was made.
    void setMusic(_Mix_Music* loaded) { music = loaded; }

private:
    std::vector<unsigned char> data;
    _Mix_Music* music = nullptr;
};
