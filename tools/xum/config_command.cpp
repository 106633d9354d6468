#include "commands.h"

#include "config_format.h"
#include "config_get.h"
#include "config_text.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

void addCheck(CLI::App& config)
{
    const auto fileNames = std::make_shared<std::vector<std::string>>();
    CLI::App* check = config.add_subcommand("check", "Read configuration files, and report what the engine would end "
                                                     "on as FILE:LINE:COLUMN: MESSAGE");
    check->add_option("FILE", *fileNames, "Files; - is standard input")->required()->type_name("");
    check->footer("An empty file is only warned of, as by the engine.\n"
                  "Exit status: 0 when all files are readable, 1 when one is not, 2 for wrong usage.");
    check->callback([fileNames] {
        bool areReadable = true;
        for (const std::string& fileName : *fileNames) areReadable = readConfig(fileName) && areReadable;
        if (!areReadable) throw CLI::RuntimeError(exitFailure);
    });
}

void addGet(CLI::App& config)
{
    struct Options {
        std::string fileName;
        std::string path;
        bool lists = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* get = config.add_subcommand("get", "Print the value of an entry");
    get->add_option("FILE", options->fileName, "The file; - is standard input")->required()->type_name("");
    CLI::Option* path = get->add_option("PATH", options->path,
                                        "The entry as the engine is asked for it: section names, from below the root "
                                        "section on, and its name, with '/' between them");
    path->type_name("");
    get->add_flag("--list", options->lists,
                  "PATH is a section, the root without one: print its sections as NAME/, "
                  "then its entries as NAME, a tab and the value");
    get->footer("Of several sections with one name a path leads through the first.\n"
                "Exit status: 0 when it is there, 1 when it is not or the file cannot be read, 2 for wrong usage.");
    get->callback([options, path] {
        if (!options->lists && path->count() == 0) throw CLI::RequiredError("PATH");
        const bool isFound = options->lists ? listConfigSection(options->fileName, options->path)
                                            : printConfigValue(options->fileName, options->path);
        if (!isFound) throw CLI::RuntimeError(exitFailure);
    });
}

void addFormat(CLI::App& config)
{
    struct Options {
        std::string fileName;
        bool inPlace = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* format = config.add_subcommand("format", "Print a configuration as the engine writes it");
    format->add_option("FILE", options->fileName, "The file; - is standard input")->required()->type_name("");
    format->add_flag("--in-place", options->inPlace, "Write it into the file instead");
    format->footer("In each section the sections come first, then the entries; of entries with one name only the last "
                   "is left, and a\nclosing tag gets the name of its section. What would not read back as it was, or "
                   "would be lost behind the root\nsection, is refused.\n"
                   "Exit status: 0 when it is written, 1 when the file stays as it is because of a problem, 2 for "
                   "wrong usage.");
    format->callback([options] {
        if (options->inPlace && options->fileName == "-")
            throw CLI::ValidationError("--in-place", "standard input is no file");
        if (!formatConfig(options->fileName, options->inPlace)) throw CLI::RuntimeError(exitFailure);
    });
}

} // namespace

void addConfigCommand(CLI::App& app)
{
    CLI::App* config = app.add_subcommand("config", "Check, query and format configuration files");
    config->require_subcommand(0, 1);
    addCheck(*config);
    addGet(*config);
    addFormat(*config);
    config->footer("Exit status: 0 when all went well, 1 for a file that failed, 2 for wrong usage.");
    config->callback([&app, config] {
        if (!config->get_subcommands().empty()) return;
        report(app.help()); // that of the chosen subcommand, with the program's name
        throw CLI::RuntimeError(exitWrongUsage);
    });
}
