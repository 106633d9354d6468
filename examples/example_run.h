#pragma once

#include <xum/xum.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

/// For main to return: says in one line why it cannot go on.
inline int fail(const std::string& problem)
{
    std::cerr << problem << '\n';
    return EXIT_FAILURE;
}

/// How an example runs: until its window is closed or, with "--frames N", off the screen for N frames of a sixtieth of
/// a second each. "--screenshot FILE.bmp" then writes what the last of them shows.
class ExampleRun {
public:
    /// `parameter` names a further argument, which may be left out; null when there is none. Arguments that are not
    /// understood end the program.
    ExampleRun(int argc, char** argv, const char* parameter = nullptr)
    {
        for (int i = 1; i < argc; ++i) {
            const std::string name = argv[i];
            if (name == "--frames" && i + 1 < argc && std::atoi(argv[i + 1]) > 0)
                framesLeft = std::atoi(argv[++i]);
            else if (name == "--screenshot" && i + 1 < argc)
                screenshot = argv[++i];
            else if (parameter != nullptr && argument.empty() && name.rfind("--", 0) != 0)
                argument = name;
            else
                endWithUsage(argv[0], parameter);
        }
        isEndless = framesLeft == 0;
        if (isEndless && !screenshot.empty()) endWithUsage(argv[0], parameter);
        if (!isEndless) stayOffTheScreen();
    }

    /// Empty when it was left out.
    const std::string& getArgument() const { return argument; }

    /// Nobody sits in front of it.
    bool isUnattended() const { return !isEndless; }

    /// Engine::update; false also behind the last frame.
    bool update(Engine* engine)
    {
        if (!isEndless && framesLeft == 0) return false;
        if (!engine->update()) return false;
        seconds = isEndless ? static_cast<float>(engine->getTime()) / 1000.0f : seconds + 1.0f / 60.0f;
        --framesLeft;
        return true;
    }

    /// Since the start. Unattended, each frame takes equally long, so that the pictures are always the same.
    float getSeconds() const { return seconds; }

    /// RenderDevice::swap. The picture is taken just before.
    void swap(RenderDevice* device, Window* window)
    {
        if (!isEndless && framesLeft == 0 && !screenshot.empty()) takePicture(device, window->getSize());
        device->swap(window);
    }

private:
    [[noreturn]] static void endWithUsage(const char* program, const char* parameter)
    {
        std::cerr << "Usage: " << program << (parameter != nullptr ? std::string(" [") + parameter + "]" : "")
                  << " [--frames N [--screenshot FILE.bmp]]\n";
        std::exit(2);
    }

    /// Unless the environment says otherwise.
    static void stayOffTheScreen()
    {
#ifndef _WIN32
        setenv("SDL_VIDEODRIVER", "offscreen", 0);
        setenv("SDL_AUDIODRIVER", "dummy", 0);
        setenv("XUM_MESSAGE_BOXES", "0", 0);
#endif
    }

    /// A window cannot be read, a texture can: the frame is copied into one.
    void takePicture(RenderDevice* device, const Vector2<int>& size) const
    {
        RenderTarget* target = device->createRenderTarget(size.x, size.y, {TextureFormat()});
        device->bindRenderTarget(nullptr, TargetBinding::Read);
        target->blit(0, 0, size.x, size.y, 0, 0, size.x, size.y, true, false, false);
        const std::unique_ptr<Image> picture(target->getTexture(0)->toImage(true)); // its bottom row comes first
        device->bindRenderTarget(nullptr, TargetBinding::Both);
        device->destroyRenderTarget(target);
        for (int i = 0; i < size.x * size.y; ++i) picture->getPixels()[i].alpha = 255; // what blending left there
        if (!picture->writeToFile(screenshot)) {
            std::cerr << "Cannot write the picture " << screenshot << '\n';
            std::exit(EXIT_FAILURE);
        }
    }

    std::string argument;
    std::string screenshot;
    int framesLeft = 0;
    bool isEndless = true;
    float seconds = 0;
};
