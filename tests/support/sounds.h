#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What is played at one moment.
struct Frame {
    short left = 0;
    short right = 0;

    bool operator==(const Frame&) const = default;
};

/// The frames without their repeats, as "LEFT RIGHT" joined by commas; "0 0" first and last is left out.
std::string heard(const std::vector<Frame>& frames);

/// How many frames are not silent.
std::ptrdiff_t loudFrames(const std::vector<Frame>& frames);

/// One chunk of a WAV, padded to an even length.
std::string waveChunk(const std::string& name, const std::string& data);

/// The content of a format chunk.
std::string waveFormat(int encoding, int channels, std::uint32_t rate, int bits);

/// A WAV of these chunks.
std::vector<unsigned char> wave(const std::string& chunks);

/// A WAV of 44,100 hertz, 16 bits and two channels: what the mixer plays unchanged.
std::vector<unsigned char> waveOfFrames(const std::vector<Frame>& frames);

/// The same whose frames are all equal.
std::vector<unsigned char> constantWave(int frames, short left, short right);

/// The bytes of a file beside the tests of the devices.
std::vector<unsigned char> soundFile(const std::string& name);

std::string soundFileName(const std::string& name);

/// As a file in the working directory, whose name is returned.
std::string writeSound(const std::string& name, const std::vector<unsigned char>& data);
