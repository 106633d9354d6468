#pragma once

/// @file
/// Pictures in main memory, and how they are read from files.

#include <xum/engine/export.h>

#include <memory>
#include <string>
#include <vector>

struct SDL_PixelFormat;

/// One point of a picture: opaque black by default.
struct Pixel {
    /// 0, dark, to 255; not multiplied by alpha.
    /// @{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    /// @}
    unsigned char alpha = 255; ///< 0, invisible, to 255, opaque

    /// All four channels, also those of an invisible pixel.
    /// @{
    constexpr friend bool operator==(const Pixel& a, const Pixel& b)
    {
        return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
    }
    constexpr friend bool operator!=(const Pixel& a, const Pixel& b) { return !(a == b); }
    /// @}
};

static_assert(sizeof(Pixel) == 4);

/// A picture in main memory: 8-bit RGBA, top row first, rows without padding. Whoever receives an Image* owns it and
/// deletes it.
class XUM_API Image {
public:
    /// Without a format, `data` holds width * height RGBA pixels without padding and hasAlpha stays as given. With one,
    /// it holds `height` rows, each `pitch` bytes after the one before, of pixels in that format, and hasAlpha becomes
    /// true if any alpha is below 255. A negative size, or one whose pixels cannot be counted, gives an empty image;
    /// null data leaves all pixels opaque black. Throws std::bad_alloc when memory runs out.
    Image(int width, int height, int pitch, const SDL_PixelFormat* format, const unsigned char* data, bool hasAlpha);

    /// As clone(), but throws std::bad_alloc when memory runs out.
    Image(const Image& other);
    Image& operator=(const Image&) = delete;
    virtual ~Image();

    /// In pixels; 0 for an empty image.
    /// @{
    int getWidth() const { return width; }
    int getHeight() const { return height; }
    /// @}

    /// Whether some pixel's alpha is below 255, or the creator said so.
    bool hasAlpha() const { return alpha; }

    /// width * height pixels, row by row from the top; owned by the image.
    /// @{
    Pixel* getPixels() { return pixels.get(); }
    const Pixel* getPixels() const { return pixels.get(); }
    /// @}

    /// (0, 0) is the top left; outside the image an opaque black pixel.
    const Pixel& getPixel(int x, int y) const;

    /// A new image of the rectangle with the top left corner (x, y); its alpha flag is counted anew. Pixels outside
    /// this image are opaque black. Null when memory runs out.
    Image* getSub(int x, int y, int width, int height) const;

    /// A new image with the same pixels and alpha flag. Null when memory runs out.
    Image* clone() const;

    /// Writes a 32-bit BMP. The name must contain ".bmp" (anywhere, lower case), else it is a warning and false:
    /// "Image::writeToFile() -> Only 'BMP' supported for now!". False also when writing fails.
    bool writeToFile(const std::string& fileName) const;

private:
    struct FreePixels {
        void operator()(Pixel* pixels) const;
    };

    /// Pixels yet without a value.
    Image(int width, int height, bool hasAlpha);

    int width;
    int height;
    bool alpha;
    std::unique_ptr<Pixel[], FreePixels> pixels;
};

/// Decodes a picture file (PNG, JPEG, BMP and what else SDL_image reads). Null, without a message, when it cannot be
/// read or has more than 2^28 pixels. Kept on purpose: a picture that decodes to fewer than 24 bits a pixel, a palette
/// or grey one, is a fatal error: "Only 24 and 32 bit images are supported!".
XUM_API Image* loadImage(const std::string& fileName);

/// loadImage from the bytes of a file.
XUM_API Image* loadImageFromMemory(const std::vector<unsigned char>& data);
