#include "options.h"

#include "failure.h"

#include <xum/files/data_root.h>

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdio>

namespace {

constexpr int largestSide = 8192;

const char* const footer = R"(
The game: gather the embers before night falls, and stay out of the watchers' light.

Keys of the game, which the settings file can change:
  W A S D        forwards, left, backwards, right
  mouse, arrows  look around
  Left Shift     run
  Space          jump
  Return         begin, and go on after the end
  Escape         back to the title, then quit
  M              the mouse looks around, or is free again
  F5             load the rules in lisp/game.lisp anew; the game goes on
  N              no sound, or sound again
  Page Up, Down  louder, quieter
  F11            full screen or window
A joystick plays too: its axes turn and walk, button 1 jumps, 2 is Escape, 3 runs, 4 is Return.

Keys of --explore, where these differ:
  W A S D, E Q   fly, up and down with E and Q, faster with Shift
  G              walk, or fly again; who walks goes through doors and up stairs, and jumps with E
  Escape         quit
A joystick flies too: buttons 1 and 2 go up and down, button 3 is faster, button 4 shows edges.

Keys of both:
  Tab            solids or edges only
  C              leave out what is outside of the view or hidden, or draw all; the title tells how much
  O              show the coarse depth picture by which hidden things are found, or do not
  L              the lamp above the courtyard shines, or does not
  B              show boxes around things and leaves, where sounds come from, and the lamp's direction, or do not
  F              the picture as if on film, or as it is
  H              the text over the picture, or none
  P              write a picture, screenshot-001.bmp and so on, into the working directory

Environment:
  XUM_DATA_ROOT        the data directory where neither --data nor --archive is given
  XUM_MESSAGE_BOXES=0  messages go to standard error instead of boxes; always so with --frames and --play
  XDG_CONFIG_HOME      where the settings are kept, in xum-engine/game.cfg; else in .config of HOME, or in APPDATA

Exit status:
  0    success
  2    wrong arguments
  3    the data directory, the archive, or a file in it is missing or broken; so may be the session or the map
  4    no window or no OpenGL 3.2
  5    the picture could not be written
  255  the engine stopped the program, log.txt says why)";

std::string checkSize(const std::string& text)
{
    int width = 0;
    int height = 0;
    char rest = 0;
    const bool isSize = std::sscanf(text.c_str(), "%5dx%5d%c", &width, &height, &rest) == 2;
    if (isSize && width >= 1 && width <= largestSide && height >= 1 && height <= largestSide) return {};
    return "'" + text + "' is not a size such as 1024x768, with sides from 1 to " + std::to_string(largestSide);
}

std::string checkPictureFile(const std::string& name)
{
    const std::string ending = ".bmp";
    const bool isBmp =
        name.size() > ending.size() && name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
    return isBmp ? "" : "'" + name + "' is not a file name that ends with .bmp";
}

bool readView(const std::string& text, Viewpoint& view)
{
    char rest = 0;
    const int count = std::sscanf(text.c_str(), "%f,%f,%f,%f,%f%c", &view.position.x, &view.position.y,
                                  &view.position.z, &view.yaw, &view.pitch, &rest);
    const float sum = view.position.x + view.position.y + view.position.z + view.yaw + view.pitch;
    return count == 5 && std::isfinite(sum) && std::fabs(view.pitch) <= 89.0f;
}

std::string checkView(const std::string& text)
{
    Viewpoint view;
    if (readView(text, view)) return {};
    return "'" + text + "' is not a place and two angles such as 0,-20,2,90,-10";
}

std::string checkName(const std::string& name)
{
    return name.empty() ? "an empty name" : "";
}

std::string asDirectory(std::string name)
{
    if (name.empty() || name.back() != '/') name += '/';
    return name;
}

} // namespace

std::optional<Options> readOptions(int argumentCount, const char* const* arguments, int& outStatus)
{
    Options options;
    std::string size = "1024x768";
    std::string dataDirectory = defaultDataRoot();
    std::string view;
    int volume = 100;
    bool startsMute = false;

    CLI::App parser("Twelve Embers, a small game drawn with xum-engine.", "xum-game");
    parser.allow_windows_style_options(false); // a name may begin with '/'
    parser.footer(footer);
    CLI::Option* frames = parser.add_option("--frames", options.frames,
                                            "Unattended: fly a fixed path for so many frames of 1/60 second, then "
                                            "write the picture of the last one");
    frames->type_name("N")->check(CLI::Range(1, 1000000));
    CLI::Option* const picture =
        parser.add_option("--screenshot", options.pictureFile,
                          "The picture that --frames, and --play at its end, writes (" + options.pictureFile + ")");
    picture->type_name("FILE")->check(checkPictureFile);
    CLI::Option* const sizeOption =
        parser.add_option("--size", size, "The window's size in pixels (" + size + ", or as it was last time)");
    sizeOption->type_name("WxH")->check(checkSize);
    CLI::Option* data = parser.add_option(
        "--data", dataDirectory, "The directory that holds shaders/, textures/ and so on (" + dataDirectory + ")");
    data->type_name("DIR")->check(checkName);
    parser
        .add_option("--archive", options.source.archive,
                    "Read from an archive instead, as `xum pack create` makes it of that directory; a plain file, such "
                    "as textures/wood.png below the working directory, wins")
        ->type_name("FILE")
        ->check(checkName)
        ->excludes(data);
    parser
        .add_option("--view", view,
                    "Start at X,Y,Z and look to the left of north and up by so many degrees; unattended, stay there")
        ->type_name("X,Y,Z,YAW,PITCH")
        ->check(checkView);
    CLI::Option* const volumeOption = parser.add_option("--volume", volume, "How loud everything is, in percent (100)")
                                          ->type_name("N")
                                          ->check(CLI::Range(0, 100));
    CLI::Option* const muteOption = parser.add_flag("--mute", startsMute, "Start without sound");
    bool drawsAll = false;
    parser.add_flag("--no-culling", drawsAll, "Draw what cannot be seen, too; the picture is the same");
    parser.add_flag("--occlusion", options.showsOcclusion,
                    "Show the coarse depth picture by which hidden things are found in a corner");
    bool isDark = false;
    parser.add_flag("--no-lamp", isDark, "Start without the lamp that circles above the courtyard");
    bool isPlain = false;
    parser.add_flag("--no-effects", isPlain, "Start with the picture as it is, not as if on film");
    bool hasNoText = false;
    parser.add_flag("--no-text", hasNoText, "Start without the text over the picture");
    parser.add_flag("--boxes", options.layers.debugShapes,
                    "Start with boxes around things and leaves, where sounds come from, and the lamp's direction");
    parser.add_flag("--walk", options.startsWalking, "Start on foot");
    parser.add_flag("--wireframe", options.startsAsWireframe, "Start with edges only");
    parser.add_flag("--explore", options.explores,
                    "No game: fly and walk through the world; so do --view, --walk and --wireframe");
    parser.add_option("--map", options.mapFile, "Play on a compiled map of your own, as `xum map compile` makes it")
        ->type_name("FILE.map")
        ->check(checkName);
    parser
        .add_option("--settings", options.settingsFile,
                    "Where the window, the volume and the keys are kept instead of the user's own directory")
        ->type_name("FILE")
        ->check(checkName);
    CLI::Option* const session =
        parser.add_option("--play", options.sessionFile, "Unattended: do what a recorded session did, then end");
    session->type_name("SESSION")->check(checkName)->excludes(frames);
    parser.add_flag("--fast", options.isFast, "With --play: draw only the picture at its end")->needs(session);
    parser.add_option("--record", options.recordFile, "Write down what is done, for --play")
        ->type_name("SESSION")
        ->check(checkName)
        ->excludes(frames)
        ->excludes(session);

    try {
        parser.parse(argumentCount, arguments);
        if (picture->count() > 0 && frames->count() + session->count() == 0)
            throw CLI::RequiresError("--screenshot", "--frames or --play");
    } catch (const CLI::ParseError& stop) {
        const bool isHelp = stop.get_exit_code() == 0;
        outStatus = static_cast<int>(isHelp ? ExitStatus::Success : ExitStatus::WrongArguments);
        parser.exit(stop);
        return std::nullopt;
    }
    std::sscanf(size.c_str(), "%5dx%5d", &options.size.x, &options.size.y);
    if (!view.empty()) readView(view, options.view.emplace());
    options.source.directory = asDirectory(dataDirectory);
    options.culls = !drawsAll;
    options.hasLamp = !isDark;
    options.layers.effects = !isPlain;
    options.layers.text = !hasNoText;
    options.volume = Volume(volume, startsMute);
    options.isSizeGiven = sizeOption->count() > 0;
    options.isVolumeGiven = volumeOption->count() + muteOption->count() > 0;
    options.explores = options.explores || options.view || options.startsWalking || options.startsAsWireframe;
    return options;
}
