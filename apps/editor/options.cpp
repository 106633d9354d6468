#include "options.h"

#include "failure.h"

#include <xum/files/data_root.h>

#include <CLI/CLI.hpp>

#include <cstdio>

namespace {

const char* const footer =
    "Keys: Ctrl+N O S Shift+S  new, open, save, save as; Ctrl+Z Y  undo, redo; Ctrl+C X V D  copy, cut, paste,\n"
    "duplicate; Delete; 1 2 3 4  select, box, terrain, object; [ ]  grid; F  look at the selection; F5  compile and\n"
    "play; F9  settings; F12  picture; ^ or `  console. In the picture of the map: right button and W A S D Q E to fly;\n"
    "dragging moves, with Alt up and down, with Shift one side.";

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
    parser.footer(footer);
    parser.add_option("map", options.mapFile, "The map to open, a .cfg file")->type_name("MAP");
    parser.add_option("--data", options.dataDirectory,
                      "The directory that holds shaders/, textures/ and so on (" + options.dataDirectory + ")")
        ->type_name("DIR");
    parser.add_option("--settings", options.settingsFile, "Where settings are kept instead of the user's own directory")
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
