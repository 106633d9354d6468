#include "headless.h"

#include <xum/render/image.h>

#include <SDL.h>
#include <SDL_image.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

// Decoding, cutting and writing pictures of 1024 x 1024 beside SDL's calls, which the engine's go through.

namespace {

constexpr int size = 1024;

std::filesystem::path scratch(const char* name)
{
    return std::filesystem::temp_directory_path() / (std::string("xum-image-benchmark-") + name);
}

/// Gradients, edges and some noise, so that the filters and the decompressor have ordinary work.
std::vector<unsigned char> makePixels(int channels)
{
    std::vector<unsigned char> pixels;
    pixels.reserve(static_cast<std::size_t>(size * size * channels));
    std::uint32_t noise = 12345;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const bool isBrick = ((x / 64 + (y / 32 & 1)) ^ (y / 32)) & 1;
            pixels.push_back(
                static_cast<unsigned char>((isBrick ? 150 + x / 32 : 60 + y / 32) + (noise >> 29 == 0 ? 1 : 0)));
            pixels.push_back(static_cast<unsigned char>(100 + 50 * std::sin(x * 0.02) * std::cos(y * 0.015)));
            pixels.push_back(static_cast<unsigned char>((y / 4) ^ (noise >> 28 == 0 ? 1 : 0)));
            if (channels == 4) pixels.push_back(x > 900 ? 200 : 255);
        }
    }
    return pixels;
}

SDL_Surface* wrap(std::vector<unsigned char>& pixels, int channels)
{
    return SDL_CreateRGBSurfaceFrom(pixels.data(), size, size, channels * 8, size * channels, 0xFFu, 0xFF00u, 0xFF0000u,
                                    channels == 4 ? 0xFF000000u : 0u);
}

std::vector<unsigned char> encode(int channels, bool asJpeg)
{
    std::vector<unsigned char> pixels = makePixels(channels);
    SDL_Surface* surface = wrap(pixels, channels);
    const std::string file = scratch("source").string();
    if ((asJpeg ? IMG_SaveJPG(surface, file.c_str(), 90) : IMG_SavePNG(surface, file.c_str())) != 0) std::abort();
    SDL_FreeSurface(surface);
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void decodePlain(benchmark::State& state, const std::vector<unsigned char>& file)
{
    for (auto _ : state) {
        SDL_Surface* surface = IMG_Load_RW(SDL_RWFromConstMem(file.data(), static_cast<int>(file.size())), 1);
        if (surface == nullptr) state.SkipWithError("not decoded");
        SDL_FreeSurface(surface);
    }
}

void decodeEngine(benchmark::State& state, const std::vector<unsigned char>& file)
{
    for (auto _ : state) {
        const std::unique_ptr<Image> image(loadImageFromMemory(file));
        if (!image || image->getWidth() != size) state.SkipWithError("not decoded");
    }
}

void writePlain(benchmark::State& state)
{
    std::vector<unsigned char> pixels = makePixels(4);
    const std::string file = scratch("plain.bmp").string();
    for (auto _ : state) {
        SDL_Surface* surface = wrap(pixels, 4);
        if (SDL_SaveBMP_RW(surface, SDL_RWFromFile(file.c_str(), "wb"), 1) != 0) state.SkipWithError("not written");
        SDL_FreeSurface(surface);
    }
}

void writeEngine(benchmark::State& state)
{
    const std::vector<unsigned char> pixels = makePixels(4);
    const Image image(size, size, 0, nullptr, pixels.data(), true);
    const std::string file = scratch("engine.bmp").string();
    for (auto _ : state)
        if (!image.writeToFile(file)) state.SkipWithError("not written");
}

constexpr int subSize = 512;
constexpr int subStart = 100;

/// Copies the rows and looks at every alpha.
void subPlain(benchmark::State& state)
{
    const std::vector<unsigned char> pixels = makePixels(4);
    for (auto _ : state) {
        std::vector<std::uint32_t> sub(subSize * subSize);
        std::uint32_t all = 0xFFFFFFFFu;
        for (int y = 0; y < subSize; ++y) {
            std::uint32_t* row = &sub[static_cast<std::size_t>(y * subSize)];
            std::memcpy(row, &pixels[static_cast<std::size_t>(((y + subStart) * size + subStart) * 4)], subSize * 4);
            for (int x = 0; x < subSize; ++x) all &= row[x];
        }
        benchmark::DoNotOptimize(all);
        benchmark::DoNotOptimize(sub.data());
    }
}

void subEngine(benchmark::State& state)
{
    const std::vector<unsigned char> pixels = makePixels(4);
    const Image image(size, size, 0, nullptr, pixels.data(), true);
    for (auto _ : state) {
        const std::unique_ptr<Image> sub(image.getSub(subStart, subStart, subSize, subSize));
        benchmark::DoNotOptimize(sub->hasAlpha());
    }
}

template <class Plain, class Engine>
void registerPair(const std::string& name, Plain plain, Engine engine)
{
    benchmark::RegisterBenchmark((name + "/plain").c_str(), plain)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((name + "/engine").c_str(), engine)->Unit(benchmark::kMicrosecond);
}

void registerDecoding(const std::string& name, int channels, bool asJpeg)
{
    const std::vector<unsigned char> file = encode(channels, asJpeg);
    registerPair(
        name, [file](benchmark::State& state) { decodePlain(state, file); },
        [file](benchmark::State& state) { decodeEngine(state, file); });
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    SDL_Init(0);
    registerDecoding("decode_png_rgba", 4, false);
    registerDecoding("decode_png_rgb", 3, false);
    registerDecoding("decode_jpeg", 3, true);
    registerPair("write_bmp", writePlain, writeEngine);
    registerPair("sub_image_512", subPlain, subEngine);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    SDL_Quit();
    for (const char* name : {"source", "plain.bmp", "engine.bmp"}) std::filesystem::remove(scratch(name));
}
