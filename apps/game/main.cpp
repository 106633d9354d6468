#include "application.h"
#include "assets.h"
#include "environment.h"
#include "failure.h"
#include "options.h"
#include "play.h"
#include "presentation.h"
#include "scene.h"
#include "scene_renderer.h"
#include "soundscape.h"
#include "world.h"

#include <cstdio>

namespace {

void run(const Options& options)
{
    if (options.isUnattended()) setEnvironmentVariable("XUM_MESSAGE_BOXES", "0"); // nobody is there to close a box
    Application application("xum-game", options.size);
    GameData data(application.getEngine(), options.source);
    const Assets assets(application.getRenderDevice(), data);
    Scene scene = makeCourtyard();
    addWorld(scene, application.getEngine(), data);
    Soundscape sounds(application.getAudioDevice(), data, scene, options.volume.get());
    SceneRenderer renderer(application.getRenderDevice(), assets, scene);
    Presentation presentation(application.getRenderDevice(), assets, data, renderer, sounds);
    if (options.isUnattended())
        runUnattended(application, presentation, sounds, options);
    else
        play(application, presentation, sounds, options);
}

} // namespace

int main(int argc, char** argv)
{
    int status = static_cast<int>(ExitStatus::Success);
    const std::optional<Options> options = readOptions(argc, argv, status);
    if (!options) return status;
    try {
        run(*options);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "xum-game: %s\n", failure.what());
        status = static_cast<int>(failure.getStatus());
    }
    return status;
}
