#include "sounds.h"

#include "file_contents.h"

#include <algorithm>

namespace {

std::string littleEndian(std::uint32_t number, int bytes)
{
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
    return text;
}

} // namespace

std::string heard(const std::vector<Frame>& frames)
{
    std::vector<Frame> changes = frames;
    changes.erase(std::unique(changes.begin(), changes.end()), changes.end());
    if (!changes.empty() && changes.front() == Frame()) changes.erase(changes.begin());
    if (!changes.empty() && changes.back() == Frame()) changes.pop_back();
    std::string text;
    for (const Frame& frame : changes) {
        if (!text.empty()) text += ", ";
        text += std::to_string(frame.left) + " " + std::to_string(frame.right);
    }
    return text;
}

std::ptrdiff_t loudFrames(const std::vector<Frame>& frames)
{
    return std::count_if(frames.begin(), frames.end(), [](const Frame& frame) { return frame != Frame(); });
}

std::string waveChunk(const std::string& name, const std::string& data)
{
    const std::string padding(data.size() % 2, '\0');
    return name + littleEndian(static_cast<std::uint32_t>(data.size()), 4) + data + padding;
}

std::string waveFormat(int encoding, int channels, std::uint32_t rate, int bits)
{
    const std::uint32_t block = static_cast<std::uint32_t>(channels * bits / 8);
    return littleEndian(static_cast<std::uint32_t>(encoding), 2) +
           littleEndian(static_cast<std::uint32_t>(channels), 2) + littleEndian(rate, 4) +
           littleEndian(rate * block, 4) + littleEndian(block, 2) + littleEndian(static_cast<std::uint32_t>(bits), 2);
}

std::vector<unsigned char> wave(const std::string& chunks)
{
    const std::string bytes = waveChunk("RIFF", "WAVE" + chunks);
    return {bytes.begin(), bytes.end()};
}

std::vector<unsigned char> waveOfFrames(const std::vector<Frame>& frames)
{
    std::string data;
    for (const Frame& frame : frames)
        data += littleEndian(static_cast<std::uint16_t>(frame.left), 2) +
                littleEndian(static_cast<std::uint16_t>(frame.right), 2);
    return wave(waveChunk("fmt ", waveFormat(1, 2, 44100, 16)) + waveChunk("data", data));
}

std::vector<unsigned char> constantWave(int frames, short left, short right)
{
    return waveOfFrames(std::vector<Frame>(static_cast<std::size_t>(frames), Frame{left, right}));
}

std::vector<unsigned char> soundFile(const std::string& name)
{
    const std::string bytes = fileContents(soundFileName(name));
    return {bytes.begin(), bytes.end()};
}

std::string soundFileName(const std::string& name)
{
    return XUM_TEST_FILES + name;
}

std::string writeSound(const std::string& name, const std::vector<unsigned char>& data)
{
    writeFileContents(name, {data.begin(), data.end()});
    return name;
}
