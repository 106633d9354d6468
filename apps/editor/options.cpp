#include "options.h"

#include "failure.h"

#include <xum/files/data_root.h>

#include <CLI/CLI.hpp>

#include <cstdio>

namespace {

const char* const footer = R"(Keys:
  Ctrl+N, O             new map, open a map
  Ctrl+S, Ctrl+Shift+S  save, save under another name
  Ctrl+Q                quit
  Ctrl+Z, Ctrl+Y        undo, redo (also Ctrl+Shift+Z)
  Ctrl+C, X, V, D       copy, cut, paste, duplicate what is selected
  Delete                delete it
  Escape                select nothing; ends what is being dragged
  1 2 3 4               tools: select, box, terrain, object
  [ and ]               finer and coarser grid
  F                     look at what is selected
  F5                    save, compile and play
  F9                    settings
  F11                   full screen and back
  F12                   a picture, screenshot-001.bmp and so on
  ` (left of 1)         type a command of the script language

In the picture of the map the right mouse button looks around, W A S D, Q and E
fly, with Shift fast, and the wheel goes forwards and back. With the tool to
select, dragging moves, with Alt or Ctrl up and down, with Shift one side of a
box.

Exit status:
  0    all is well
  2    wrong arguments
  3    broken or missing data, or a session that cannot be played or recorded
  4    no video driver, no window or no OpenGL 3.2
  5    the picture of a session cannot be written

With XUM_MESSAGE_BOXES=0 in the environment messages go to standard error.
docs/editor.md tells more.)";

std::string checkSize(const std::string& text)
{
    int width = 0;
    int height = 0;
    char rest = 0;
    const bool isSize = std::sscanf(text.c_str(), "%5dx%5d%c", &width, &height, &rest) == 2;
    if (isSize && width >= 1 && height >= 1 && width <= 16384 && height <= 16384) return {};
    return "'" + text + "' is not a size such as 1280x800";
}

} // namespace

std::optional<EditorOptions> readOptions(int argumentCount, const char* const* arguments, int& outStatus)
{
    EditorOptions options;
    options.dataDirectory = defaultDataRoot();
    std::string size;
    CLI::App parser("Make and change maps for xum-engine.", "xum-editor");
    parser.allow_windows_style_options(false); // a name may begin with '/'
    parser.footer(footer);
    parser.add_option("map", options.mapFile, "The map to open, a .cfg file")->type_name("MAP");
    parser
        .add_option("--data", options.dataDirectory,
                    "The directory that holds shaders/, textures/ and so on (" + options.dataDirectory + ")")
        ->type_name("DIR");
    parser
        .add_option("--settings", options.settingsFile, "Where settings are kept instead of the user's own directory")
        ->type_name("FILE");
    parser.add_option("--game", options.gameProgram, "The game that F5 starts (the one beside the editor)")
        ->type_name("PROGRAM");
    parser.add_option("--size", size, "The window's size in pixels")->type_name("WxH")->check(checkSize);
    CLI::Option* const play =
        parser.add_option("--play", options.playFile, "Unattended: do what a recorded session did, then end")
            ->type_name("SESSION");
    parser.add_option("--screenshot", options.pictureFile, "The picture of the last frame that --play writes")
        ->type_name("FILE.bmp")
        ->needs(play);
    parser.add_option("--record", options.recordFile, "Write down what is done, for --play")
        ->type_name("SESSION")
        ->excludes(play);
    try {
        parser.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& stop) {
        const bool isHelp = stop.get_exit_code() == 0;
        outStatus = static_cast<int>(isHelp ? ExitStatus::Success : ExitStatus::WrongArguments);
        parser.exit(stop);
        return std::nullopt;
    }
    if (!size.empty()) {
        options.size.emplace();
        std::sscanf(size.c_str(), "%5dx%5d", &options.size->x, &options.size->y);
    }
    if (options.dataDirectory.empty() || options.dataDirectory.back() != '/') options.dataDirectory += '/';
    return options;
}
