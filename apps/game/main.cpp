#include "application.h"
#include "assets.h"
#include "environment.h"
#include "failure.h"
#include "options.h"
#include "game_session.h"
#include "game_settings.h"
#include "path_name.h"
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
    if (options.isUnattended() || options.playsSession())
        setEnvironmentVariable("XUM_MESSAGE_BOXES", "0"); // nobody is there to close a box
    const bool keepsSettings = !options.isUnattended() && !options.explores;
    Vector2<int> size = options.size;
    if (keepsSettings && !options.isSizeGiven && !(options.playsSession() && options.settingsFile.empty()))
        size =
            readWindowSettings(options.settingsFile.empty() ? findGameSettingsFile() : options.settingsFile).windowSize;
    Application application("xum-game", size);
    GameData data(application.getEngine(), options.source);
    const Assets assets(application.getRenderDevice(), data);
    Scene scene = options.mapFile.empty() ? makeCourtyard() : makeEmptyScene();
    if (options.mapFile.empty())
        addWorld(scene, application.getEngine(), data);
    else
        addOwnMap(scene, data, options.mapFile);
    Soundscape sounds(application.getAudioDevice(), data, scene, options.volume.get());
    SceneRenderer renderer(application.getRenderDevice(), assets, scene);
    Presentation presentation(application.getRenderDevice(), assets, data, renderer, sounds);
    if (options.isUnattended())
        runUnattended(application, presentation, sounds, options);
    else if (options.explores)
        play(application, presentation, sounds, options);
    else
        playGame(application, presentation, sounds, data, options);
}

} // namespace

int main(int argc, char** argv)
{
    readNarrowNamesAsTheSystemDoes();
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
