#include "commands.h"

#include "pack_create.h"
#include "pack_explain.h"
#include "pack_extract.h"
#include "pack_list.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

void addCreate(CLI::App& pack)
{
    struct Options {
        std::string archive;
        std::string directory;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* create = pack.add_subcommand("create", "Pack all files of a directory");
    create->add_option("ARCHIVE", options->archive, "The archive to write, outside of DIR; an old one is replaced")
        ->required()
        ->type_name("");
    create->add_option("DIR", options->directory, "Its files get their names from here on, with '/'")
        ->required()
        ->type_name("");
    create->footer("Links count as what they lead to. Empty directories are forgotten; what is neither a file nor a "
                   "directory is\nreported and left out. The same files make the same archive, byte for byte.\n"
                   "Exit status: 0 when the archive is written, 1 when a file cannot be packed (an old archive stays), "
                   "2 for wrong\nusage.");
    create->callback([options] {
        if (!createArchive(options->archive, options->directory)) throw CLI::RuntimeError(exitFailure);
    });
}

void addList(CLI::App& pack)
{
    const auto archive = std::make_shared<std::string>();
    CLI::App* list = pack.add_subcommand("list", "Print SIZE, OFFSET and NAME of each entry, separated by tabs");
    list->add_option("ARCHIVE", *archive, "The archive")->required()->type_name("");
    list->footer("The entries come in the order of the archive. A fourth column \"replaced\" marks one that is never "
                 "loaded, because\na later one has the same name.\n"
                 "Exit status: 0 for a whole directory, 1 for one that is cut off and for no archive, 2 for wrong "
                 "usage.");
    list->callback([archive] {
        if (!listArchive(*archive)) throw CLI::RuntimeError(exitFailure);
    });
}

void addExtract(CLI::App& pack)
{
    const auto order = std::make_shared<ExtractionOrder>();
    CLI::App* extract = pack.add_subcommand("extract", "Write files of an archive into a directory");
    extract->add_option("ARCHIVE", order->archive, "The archive")->required()->type_name("");
    extract->add_option("NAME", order->names, "Names as list prints them; all files when there is none")->type_name("");
    extract->add_option("-o,--output", order->directory, "Write into DIR instead of the working directory")
        ->type_name("DIR");
    extract->add_flag("--force", order->overwrites, "Overwrite files that exist");
    extract->footer("Nothing is ever written outside of the directory: names that lead out of it are refused.\n"
                    "Exit status: 0 when all is extracted, 1 when a file is not, 2 for wrong usage.");
    extract->callback([order] {
        if (!extractArchive(*order)) throw CLI::RuntimeError(exitFailure);
    });
}

void addCheck(CLI::App& pack)
{
    const auto archives = std::make_shared<std::vector<std::string>>();
    CLI::App* check = pack.add_subcommand("check", "Report all that is wrong with archives as ARCHIVE: REASON");
    check->add_option("ARCHIVE", *archives, "Archives")->required()->type_name("");
    check->footer("A problem is what a load cannot read, what no load can ask for, and a name that is dangerous to "
                  "extract.\nExit status: 0 when nothing is wrong, 1 when something is, 2 for wrong usage.");
    check->callback([archives] {
        if (!checkArchives(*archives)) throw CLI::RuntimeError(exitFailure);
    });
}

void addExplain(CLI::App& pack)
{
    struct Options {
        std::string name;
        std::vector<std::string> archives;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* explain = pack.add_subcommand("explain", "Say which file or archive answers a load of a name");
    explain->add_option("NAME", options->name, "The name, as the engine is asked for it")->required()->type_name("");
    explain
        ->add_option("-a,--archive", options->archives,
                     "An archive, in the order in which the game adds them; may "
                     "be given again")
        ->type_name("ARCHIVE")
        ->allow_extra_args(false);
    explain->footer("A plain file wins, sought from the working directory; then the archives are asked, the last one "
                    "first, for the name\nwithout each \"DIRECTORY/../\". What would have answered otherwise is "
                    "listed behind the answer.\n"
                    "Exit status: 0 when there is an answer, 1 when nobody has the name or an archive cannot be read, "
                    "2 for wrong usage.");
    explain->callback([options] {
        if (!explainLoad(options->name, options->archives)) throw CLI::RuntimeError(exitFailure);
    });
}

} // namespace

void addPackCommand(CLI::App& app)
{
    CLI::App* pack = app.add_subcommand("pack", "Make, list, extract and check archives of game data");
    pack->require_subcommand(0, 1);
    addCreate(*pack);
    addList(*pack);
    addExtract(*pack);
    addCheck(*pack);
    addExplain(*pack);
    pack->footer("Exit status: 0 when all went well, 1 for a file or an archive that failed, 2 for wrong usage.");
    pack->callback([&app, pack] {
        if (!pack->get_subcommands().empty()) return;
        report(app.help()); // that of the chosen subcommand, with the program's name
        throw CLI::RuntimeError(exitWrongUsage);
    });
}
