#include <xum/render/image_header.h>

#include <SDL.h>

#include <cstring>

namespace {

std::uint32_t bigEndian32(const unsigned char* p)
{
    return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | std::uint32_t{p[3]};
}

int bigEndian16(const unsigned char* p)
{
    return p[0] << 8 | p[1];
}

int littleEndian16(const unsigned char* p)
{
    return p[0] | p[1] << 8;
}

std::int32_t littleEndianSigned32(const unsigned char* p)
{
    return static_cast<std::int32_t>(std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
                                     std::uint32_t{p[3]} << 24);
}

std::int64_t magnitude(std::int32_t value)
{
    const std::int64_t wide = value;
    return wide < 0 ? -wide : wide;
}

/// The first bytes of a file, zero beyond its end, and the file's whole length.
struct Header {
    unsigned char bytes[64] = {};
    std::int64_t fileSize = 0;
};

/// A source seen through a buffer, so that many short chunks do not cost a seek each.
class BufferedSource {
public:
    explicit BufferedSource(SDL_RWops* source) : source(source) {}

    /// `count` bytes at the position, at most 16; null where the source holds fewer.
    const unsigned char* at(std::int64_t position, std::int64_t count)
    {
        if (position < start || position + count > start + size) {
            if (SDL_RWseek(source, position, RW_SEEK_SET) < 0) return nullptr;
            start = position;
            size = static_cast<std::int64_t>(SDL_RWread(source, buffer, 1, sizeof buffer));
        }
        return count <= size - (position - start) ? buffer + (position - start) : nullptr;
    }

private:
    SDL_RWops* source;
    std::int64_t start = 0;
    std::int64_t size = 0;
    unsigned char buffer[4096] = {};
};

bool isPng(const Header& header)
{
    return std::memcmp(header.bytes, "\x89PNG\r\n\x1A\n", 8) == 0;
}

/// Deflate packs at most 1032 bytes into one, so the filtered rows bound the length of the file from below.
bool isPngBelievable(const Header& header)
{
    const std::int64_t width = bigEndian32(header.bytes + 16);
    const std::int64_t height = bigEndian32(header.bytes + 20);
    if (isTooLargeToDecode(width, height)) return false;
    constexpr int channelsOfColorType[7] = {1, 0, 3, 1, 2, 0, 4};
    const unsigned colorType = header.bytes[25];
    const std::int64_t channels = colorType < 7 ? channelsOfColorType[colorType] : 0;
    const std::int64_t bits = width * channels * header.bytes[24];
    return (bits / 8) * height / 1032 <= header.fileSize;
}

/// Whether the chunks up to the last one lie inside the file, the first being the header whose size is judged above.
/// The decoder does not notice the end of a file: it goes on with what it read last, possibly for ever.
bool arePngChunksWhole(SDL_RWops* source, std::int64_t fileSize)
{
    BufferedSource file(source);
    std::int64_t position = 8;
    bool isFirst = true;
    while (const unsigned char* chunk = file.at(position, 8)) {
        if (isFirst && std::memcmp(chunk + 4, "IHDR", 4) != 0) return false;
        isFirst = false;
        position += 12 + std::int64_t{bigEndian32(chunk)};
        if (std::memcmp(chunk + 4, "IEND", 4) == 0) return position <= fileSize;
    }
    return false;
}

bool isBmp(const Header& header)
{
    return std::memcmp(header.bytes, "BM", 2) == 0;
}

/// Uncompressed rows lie in the file as they are; run-length encoded ones may be of any length. Such are pixels of
/// eight bits with compression 1 and of four with compression 2.
bool isBmpBelievable(const Header& header)
{
    const unsigned char* info = header.bytes + 14;
    const bool isOldHeader = littleEndianSigned32(info) == 12;
    const std::int64_t width = isOldHeader ? littleEndian16(info + 4) : magnitude(littleEndianSigned32(info + 4));
    const std::int64_t height = isOldHeader ? littleEndian16(info + 6) : magnitude(littleEndianSigned32(info + 8));
    if (isTooLargeToDecode(width, height)) return false;
    const std::int64_t bitsPerPixel = isOldHeader ? littleEndian16(info + 10) : littleEndian16(info + 14);
    const std::int32_t compression = isOldHeader ? 0 : littleEndianSigned32(info + 16);
    const bool isRunLengthEncoded = (compression == 1 && bitsPerPixel == 8) || (compression == 2 && bitsPerPixel == 4);
    return isRunLengthEncoded || width * bitsPerPixel / 8 * height <= header.fileSize;
}

bool isJpeg(const Header& header)
{
    return header.bytes[0] == 0xFF && header.bytes[1] == 0xD8 && header.bytes[2] == 0xFF;
}

/// Whether a marker starts a frame, and with it tells the size: all of C0 to CF but the three that define tables.
bool isFrameMarker(int marker)
{
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// Whether every 8 x 8 block costs at least a bit: in Huffman coding it does, in arithmetic coding (C9 and above) not.
bool isHuffmanCoded(int marker)
{
    return marker < 0xC8;
}

/// Whether nothing belongs to a marker: it is stuffing, a temporary marker or a restart.
bool isBareMarker(int marker)
{
    return marker == 0x00 || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7);
}

/// Without a frame before them, the decoder gives up at the start of a scan and at the end of the image.
bool isLastMarker(int marker)
{
    return marker == 0xD9 || marker == 0xDA;
}

/// Walks to the frame header as the decoder does: bytes between segments are skipped, and so is padding. A file without
/// a frame is left to the decoder, which refuses it.
bool isJpegBelievable(SDL_RWops* source, std::int64_t fileSize)
{
    BufferedSource file(source);
    std::int64_t position = 2;
    while (const unsigned char* segment = file.at(position, 9)) {
        const int marker = segment[1];
        if (segment[0] != 0xFF || marker == 0xFF) {
            ++position;
        } else if (isFrameMarker(marker)) {
            const std::int64_t height = bigEndian16(segment + 5);
            const std::int64_t width = bigEndian16(segment + 7);
            if (isTooLargeToDecode(width, height)) return false;
            return !isHuffmanCoded(marker) || width * height / (64 * 8) <= fileSize;
        } else if (isLastMarker(marker)) {
            return true;
        } else {
            position += isBareMarker(marker) ? 2 : 2 + bigEndian16(segment + 2);
        }
    }
    return true;
}

// The other formats with a size up front are only held against the limit.

bool isGif(const Header& header)
{
    return std::memcmp(header.bytes, "GIF8", 4) == 0;
}

bool isGifBelievable(const Header& header)
{
    return !isTooLargeToDecode(littleEndian16(header.bytes + 6), littleEndian16(header.bytes + 8));
}

bool isPcx(const Header& header)
{
    return header.bytes[0] == 0x0A && header.bytes[1] <= 5 && header.bytes[2] == 1;
}

bool isPcxBelievable(const Header& header)
{
    const int width = littleEndian16(header.bytes + 8) - littleEndian16(header.bytes + 4) + 1;
    const int height = littleEndian16(header.bytes + 10) - littleEndian16(header.bytes + 6) + 1;
    return !isTooLargeToDecode(width, height);
}

/// "P1" to "P6".
bool isPnm(const Header& header)
{
    return header.bytes[0] == 'P' && header.bytes[1] >= '1' && header.bytes[1] <= '6';
}

/// Two decimal numbers behind white space; comments may put them beyond what was read, and then they pass.
bool isPnmBelievable(const Header& header)
{
    std::int64_t numbers[2] = {};
    const unsigned char* at = header.bytes + 2;
    const unsigned char* end = header.bytes + sizeof header.bytes;
    for (std::int64_t& number : numbers) {
        while (at != end && (*at < '0' || *at > '9')) ++at;
        for (; at != end && *at >= '0' && *at <= '9' && number < 1000000000; ++at) number = number * 10 + (*at - '0');
    }
    return !isTooLargeToDecode(numbers[0], numbers[1]);
}

} // namespace

bool isTooLargeToDecode(std::int64_t width, std::int64_t height)
{
    constexpr std::int64_t mostPixels = std::int64_t{1} << 28;
    return width > 0 && height > mostPixels / width;
}

bool isImageHeaderBelievable(SDL_RWops* source)
{
    Header header;
    header.fileSize = SDL_RWsize(source);
    if (header.fileSize < 0) return true; // a pipe: there is no length to hold the header against
    SDL_RWread(source, header.bytes, 1, sizeof header.bytes);
    if (isPng(header)) return isPngBelievable(header) && arePngChunksWhole(source, header.fileSize);
    if (isBmp(header)) return isBmpBelievable(header);
    if (isJpeg(header)) return isJpegBelievable(source, header.fileSize);
    if (isGif(header)) return isGifBelievable(header);
    if (isPcx(header)) return isPcxBelievable(header);
    if (isPnm(header)) return isPnmBelievable(header);
    return true;
}
