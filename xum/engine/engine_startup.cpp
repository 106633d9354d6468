#include <xum/engine/engine.h>
#include <xum/engine/engine_implementation.h>
#include <xum/engine/log.h>

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_net.h>
#include <SDL_ttf.h>

#include <new>

namespace {

bool isEditor = false; // of the last initEngine

// IMG_Quit is called neither here nor at shutdown: the image formats stay initialised for the life of the process, and
// IMG_Init reports them again on the next start.
bool startLibraries()
{
    if (SDL_Init(SDL_INIT_TIMER | SDL_INIT_AUDIO | SDL_INIT_VIDEO | SDL_INIT_JOYSTICK) < 0) return false;

    if (SDLNet_Init() < 0) {
        SDL_Quit();
        getLog() << "Could not initialize SDL_Net!" << std::endl;
        return false;
    }

    constexpr int imageFormats = IMG_INIT_JPG | IMG_INIT_PNG;
    if (IMG_Init(imageFormats) != imageFormats) {
        SDLNet_Quit();
        SDL_Quit();
        getLog() << "Could not initialize SDL_Image!" << std::endl;
        return false;
    }

    if (TTF_Init() == -1) {
        SDLNet_Quit();
        SDL_Quit();
        getLog() << "Could not initialize SDL_TTF!" << std::endl;
        return false;
    }
    return true;
}

void setContextAttributes()
{
    SDL_GL_SetAttribute(SDL_GL_RED_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_GREEN_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_BLUE_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_ALPHA_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 2);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
}

} // namespace

Engine* initEngine(bool editor)
{
    isEditor = editor;
    if (!startLibraries()) return nullptr;
    setContextAttributes();
    if (isEditor) getLog() << "Running editor." << std::endl;
    getLog() << "Engine initialized successfully." << std::endl;
    return new (std::nothrow) EngineImplementation;
}

void shutdownEngine(Engine* engine)
{
    delete static_cast<EngineImplementation*>(engine);
    TTF_Quit();
    SDLNet_Quit();
    SDL_Quit();
}
