#pragma once

#include "file_contents.h"
#include "resource_archive.h"

#include <xum/render/image.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The bytes of a picture file.
inline std::string bitmapOf(int width, const std::vector<Pixel>& pixels)
{
    const int height = static_cast<int>(pixels.size()) / width;
    const auto* data = reinterpret_cast<const unsigned char*>(pixels.data());
    Image(width, height, 0, nullptr, data, false).writeToFile("made.bmp");
    return fileContents("made.bmp");
}

/// The bytes of a sound file, in the form that the mixer plays: 44100 hertz, 16 bits, stereo.
inline std::string soundOf(const std::vector<std::int16_t>& values)
{
    using archive::littleEndian;
    std::string data;
    for (const std::int16_t value : values) data += littleEndian(static_cast<std::uint16_t>(value), 2);
    const std::string format = littleEndian(1, 2) + littleEndian(2, 2) + littleEndian(44100, 4) +
                               littleEndian(44100 * 4, 4) + littleEndian(4, 2) + littleEndian(16, 2);
    return "RIFF" + littleEndian(36 + data.size(), 4) + "WAVEfmt " + littleEndian(16, 4) + format + "data" +
           littleEndian(data.size(), 4) + data;
}
