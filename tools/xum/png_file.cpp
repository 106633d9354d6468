#include "png_file.h"

#include "replacement_file.h"

#include <SDL.h>
#include <SDL_image.h>

#include <memory>

namespace {

struct FreeStream {
    void operator()(SDL_RWops* stream) const { SDL_FreeRW(stream); }
};

std::size_t SDLCALL writeThrough(SDL_RWops* stream, const void* data, std::size_t size, std::size_t count)
{
    auto& file = *static_cast<ReplacementFile*>(stream->hidden.unknown.data1);
    return file.write(data, size * count) ? count : 0;
}

} // namespace

std::string writePNGFile(const std::string& fileName, SDL_Surface& picture)
{
    ReplacementFile file(behindLinks(fileName));
    const std::unique_ptr<SDL_RWops, FreeStream> stream(SDL_AllocRW());
    if (!stream) return std::string("cannot be written: ") + SDL_GetError();
    stream->type = SDL_RWOPS_UNKNOWN;
    stream->hidden.unknown.data1 = &file;
    stream->write = writeThrough; // all that the encoder asks for
    const bool isEncoded = IMG_SavePNG_RW(&picture, stream.get(), 0) == 0;
    if (!file.getProblem().empty()) return file.getProblem();
    if (!isEncoded) return std::string("cannot be written: ") + SDL_GetError();
    return file.finish() ? "" : file.getProblem();
}
