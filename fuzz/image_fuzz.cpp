#include <xum/engine/log.h>
#include <xum/engine/message_box.h>
#include <xum/render/image.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

namespace {

/// Whether the bytes begin as a PNG, BMP or JPEG does. Other formats go straight to decoders that are not ours: some
/// ask for absurd amounts of memory, the one that looks for "<svg" leaks. What they do wrong would hide what we do.
bool isJudgedByTheLibrary(std::string_view bytes)
{
    const auto startsWith = [&](std::string_view start) { return bytes.substr(0, start.size()) == start; };
    const bool isOurs = startsWith("\x89PNG") || startsWith("BM") || startsWith("\xFF\xD8");
    return isOurs && bytes.find("<svg") == std::string_view::npos;
}

/// Thrown where the library is about to end the process: a picture of fewer than 24 bits a pixel is a fatal error, and
/// a fuzzer must outlive it. error() shows a message box before it exits; the box throws, and all on the way is
/// released.
struct FatalError {};

int throwFatalError(std::uint32_t, const char*, const char*)
{
    throw FatalError();
}

/// Reads every pixel, so that a sanitizer sees any that was not made.
void check(const Image& image)
{
    const std::size_t count = static_cast<std::size_t>(image.getWidth()) * static_cast<std::size_t>(image.getHeight());
    bool isTranslucent = false;
    for (std::size_t i = 0; i < count; ++i) isTranslucent = isTranslucent || image.getPixels()[i].alpha < 255;
    if (isTranslucent != image.hasAlpha()) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    getLog().setstate(std::ios::badbit); // nobody reads it, and millions of lines would fill the disk
    messageBoxFunction = throwFatalError;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (!isJudgedByTheLibrary({reinterpret_cast<const char*>(data), size})) return 0;
    try {
        const std::unique_ptr<Image> image(loadImageFromMemory(std::vector<unsigned char>(data, data + size)));
        if (image) check(*image);
    } catch (const FatalError&) {
    }
    return 0;
}
