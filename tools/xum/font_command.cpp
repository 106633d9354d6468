#include "commands.h"

#include "font_bake.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

constexpr char bakeText[] =
    "The picture holds white letters with their shape in the alpha, in equal cells for the codes up to 127, row by "
    "row; "
    "the\nlast one stays empty. The line that is printed loads it. ImageFont draws letters as wide as they are, 4 "
    "pixels "
    "apart; its\nspace is 5 pixels narrower than a cell, its line 1 pixel higher. So more padding makes wider spaces "
    "and "
    "lines, and\nfonts whose letters are equally wide look best.\n"
    "Exit status: 0 when the picture is written, 1 when it cannot be made (an old one stays), 2 for wrong usage.";

void addBake(CLI::App& font)
{
    const auto order = std::make_shared<FontBake>();
    CLI::App* bake = font.add_subcommand("bake", "Make the picture of a bitmap font, for loadImageFont");
    bake->add_option("FONT", order->font, "A TrueType or OpenType font")->required()->type_name("");
    bake->add_option("SIZE", order->size, "In points, which are pixels here: 1 to 512")
        ->required()
        ->type_name("")
        ->check(CLI::Range(1, 512).description(""));
    bake->add_option("PICTURE", order->picture, "The PNG file to write; an old one is replaced")
        ->required()
        ->type_name("");
    bake->add_option("--columns", order->columns, "How many cells are in a row, 1 to 128; 16 without this")
        ->type_name("COUNT")
        ->check(CLI::Range(1, 128).description(""));
    bake->add_option("--first", order->firstCharacter, "The code of the first cell, 0 to 126; 32 without this")
        ->type_name("CODE")
        ->check(CLI::Range(0, 126).description(""));
    bake->add_option("--padding", order->padding,
                     "Empty pixels around the largest letter in a cell, on each side, 0 to 64; 1 without this")
        ->type_name("PIXELS")
        ->check(CLI::Range(0, 64).description(""));
    bake->add_flag("--mono", order->isMono, "Letters of whole pixels, without soft edges");
    bake->footer(bakeText);
    bake->callback([order] {
        if (!bakeFont(*order)) throw CLI::RuntimeError(exitFailure);
    });
}

} // namespace

void addFontCommand(CLI::App& app)
{
    CLI::App* font = app.add_subcommand("font", "Make bitmap fonts");
    font->require_subcommand(0, 1);
    addBake(*font);
    font->footer("Exit status: 0 when all went well, 1 for a file that failed, 2 for wrong usage.");
    font->callback([&app, font] {
        if (!font->get_subcommands().empty()) return;
        report(app.help()); // that of the chosen subcommand, with the program's name
        throw CLI::RuntimeError(exitWrongUsage);
    });
}
