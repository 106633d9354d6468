#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Puts together headers of picture files, honest and not.
using Bytes = std::vector<unsigned char>;

inline void append(Bytes& bytes, std::string_view text)
{
    bytes.insert(bytes.end(), text.begin(), text.end());
}

inline void appendBigEndian(Bytes& bytes, std::uint32_t value, int size)
{
    for (int i = size - 1; i >= 0; --i) bytes.push_back(static_cast<unsigned char>(value >> 8 * i & 255));
}

inline void appendLittleEndian(Bytes& bytes, std::uint32_t value, int size)
{
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<unsigned char>(value >> 8 * i & 255));
}

inline std::uint32_t crc32(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t remainder = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < count; ++i) {
        remainder ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) remainder = remainder >> 1 ^ ((remainder & 1) != 0 ? 0xEDB88320u : 0u);
    }
    return ~remainder;
}

inline void appendPngChunk(Bytes& png, std::string_view kind, const Bytes& data)
{
    appendBigEndian(png, static_cast<std::uint32_t>(data.size()), 4);
    const std::size_t start = png.size();
    append(png, kind);
    png.insert(png.end(), data.begin(), data.end());
    appendBigEndian(png, crc32(png.data() + start, png.size() - start), 4);
}

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n";

inline Bytes pngHeaderData(std::uint32_t width, std::uint32_t height, int bitDepth, int colorType)
{
    Bytes data;
    appendBigEndian(data, width, 4);
    appendBigEndian(data, height, 4);
    data.push_back(static_cast<unsigned char>(bitDepth));
    data.push_back(static_cast<unsigned char>(colorType));
    append(data, std::string_view("\0\0\0", 3));
    return data;
}

/// A PNG without a picture: the header, a few bytes of data and the end.
inline Bytes pngOfSize(std::uint32_t width, std::uint32_t height, int bitDepth = 8, int colorType = 6)
{
    Bytes png;
    append(png, pngSignature);
    appendPngChunk(png, "IHDR", pngHeaderData(width, height, bitDepth, colorType));
    appendPngChunk(png, "IDAT", {0x78, 0x9c, 0x63, 0x00, 0x00});
    appendPngChunk(png, "IEND", {});
    return png;
}

/// A BMP of 57 bytes: the header and one pixel.
inline Bytes bmpOfSize(std::uint32_t width, std::uint32_t height, int bits = 24, std::uint32_t compression = 0)
{
    Bytes bmp;
    append(bmp, "BM");
    for (const std::uint32_t value : {57u, 0u, 54u, 40u, width, height}) appendLittleEndian(bmp, value, 4);
    appendLittleEndian(bmp, 1, 2);
    appendLittleEndian(bmp, static_cast<std::uint32_t>(bits), 2);
    appendLittleEndian(bmp, compression, 4);
    bmp.resize(57);
    return bmp;
}

/// A BMP with the old header of twelve bytes, whose sizes have sixteen bits.
inline Bytes oldBmpOfSize(std::uint32_t width, std::uint32_t height, int bits = 24)
{
    Bytes bmp;
    append(bmp, "BM");
    for (const std::uint32_t value : {57u, 0u, 26u, 12u}) appendLittleEndian(bmp, value, 4);
    for (const std::uint32_t value : {width, height, 1u, static_cast<std::uint32_t>(bits)})
        appendLittleEndian(bmp, value, 2);
    bmp.resize(57);
    return bmp;
}

inline void appendMarker(Bytes& jpeg, int marker)
{
    jpeg.push_back(0xFF);
    jpeg.push_back(static_cast<unsigned char>(marker));
}

inline void appendJpegSegment(Bytes& jpeg, int marker, std::size_t size)
{
    appendMarker(jpeg, marker);
    appendBigEndian(jpeg, static_cast<std::uint32_t>(size + 2), 2);
    jpeg.resize(jpeg.size() + size);
}

/// Frame header of three components, start of scan and end.
inline void appendJpegFrame(Bytes& jpeg, std::uint32_t width, std::uint32_t height, int frameMarker = 0xC0)
{
    appendMarker(jpeg, frameMarker);
    appendBigEndian(jpeg, 17, 2);
    jpeg.push_back(8);
    appendBigEndian(jpeg, height, 2);
    appendBigEndian(jpeg, width, 2);
    append(jpeg, std::string_view("\3\1\x11\0\2\x11\0\3\x11\0", 10));
    appendMarker(jpeg, 0xDA);
    appendBigEndian(jpeg, 12, 2);
    append(jpeg, std::string_view("\3\1\0\2\0\3\0\0\x3f\0", 10));
    appendMarker(jpeg, 0xD9);
}

inline Bytes jpegStart()
{
    Bytes jpeg;
    appendMarker(jpeg, 0xD8);
    return jpeg;
}

inline Bytes jpegOfSize(std::uint32_t width, std::uint32_t height, int frameMarker = 0xC0)
{
    Bytes jpeg = jpegStart();
    appendJpegFrame(jpeg, width, height, frameMarker);
    return jpeg;
}
