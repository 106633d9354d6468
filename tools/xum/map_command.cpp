#include "commands.h"

#include "config_text.h"
#include "map_compiler.h"
#include "map_facts.h"
#include "map_file.h"
#include "map_info.h"
#include "printable_text.h"
#include "progress_line.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <memory>

namespace {

std::string countOf(std::uint64_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// What was made, in one line.
std::string summarize(const CompiledLevel& level, std::chrono::duration<double> time)
{
    const CompiledMap& map = *level.map;
    std::uint64_t leaves = 0;
    std::uint64_t depth = 0;
    for (const BSPMesh* mesh = map.getBSPMeshes().getFirst(); mesh != nullptr; mesh = mesh->getNext()) {
        const MeshFacts facts = findFacts(*mesh);
        leaves += facts.solidLeaves + facts.emptyLeaves;
        depth = std::max(depth, facts.depth);
    }
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.2f s", time.count());
    return countOf(map.getBSPMeshes().getCount(), "mesh", "meshes") + ", " +
           countOf(level.brushes.size(), "brush", "brushes") + ", " +
           countOf(level.polygons.size(), "polygon", "polygons") + ", " + countOf(leaves, "leaf", "leaves") +
           ", depth " + std::to_string(depth) + ", " + seconds;
}

CompiledLevel compileText(const ConfigText& text)
{
    ProgressLine line;
    return compileMap(readMapSource(*text.root),
                      [&line](const std::string& what, double part) { line.show("compiling " + what, part); });
}

bool compileFile(const std::string& input, const std::string& output)
{
    const auto start = std::chrono::steady_clock::now();
    const std::optional<ConfigText> text = readConfig(input);
    if (!text) return false; // which is reported
    if (!text->root) {
        report(text->name + ": is no level");
        return false;
    }
    try {
        const CompiledLevel level = compileText(*text);
        if (const std::string problem = writeMapFile(output, *level.map); !problem.empty()) {
            report(printable(output) + ": " + problem);
            return false;
        }
        std::printf("%s: %s\n", printable(output).c_str(),
                    summarize(level, std::chrono::steady_clock::now() - start).c_str());
        return true;
    } catch (const MapProblem& problem) {
        report(text->name + ": " + printable(problem.what()));
        return false;
    }
}

void addCompile(CLI::App& map)
{
    struct Options {
        std::string input;
        std::string output;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* compile = map.add_subcommand("compile", "Make a compiled map from a description of a level");
    compile->add_option("IN", options->input, "The description; - is standard input")->required()->type_name("");
    compile->add_option("OUT", options->output, "The map to write; an old one is replaced")->required()->type_name("");
    compile->footer("docs/file_formats.md describes the language. The same description makes the same map, byte for "
                    "byte.\nExit status: 0 when the map is written, 1 when it cannot be made (an old map stays), 2 for "
                    "wrong usage.");
    compile->callback([options] {
        if (!compileFile(options->input, options->output)) throw CLI::RuntimeError(exitFailure);
    });
}

void addInfo(CLI::App& map)
{
    const auto fileName = std::make_shared<std::string>();
    CLI::App* info = map.add_subcommand("info", "Print what a compiled map holds, and report all that is wrong with it "
                                                "as FILE: REASON");
    info->add_option("FILE", *fileName, "The map")->required()->type_name("");
    info->footer("Exit status: 0 when nothing is wrong, 1 when something is, 2 for wrong usage.");
    info->callback([fileName] {
        if (!printMapInfo(*fileName)) throw CLI::RuntimeError(exitFailure);
    });
}

} // namespace

void addMapCommand(CLI::App& app)
{
    CLI::App* map = app.add_subcommand("map", "Compile and check levels");
    map->require_subcommand(0, 1);
    addCompile(*map);
    addInfo(*map);
    map->footer("Exit status: 0 when all went well, 1 for a file that failed, 2 for wrong usage.");
    map->callback([&app, map] {
        if (!map->get_subcommands().empty()) return;
        report(app.help()); // that of the chosen subcommand, with the program's name
        throw CLI::RuntimeError(exitWrongUsage);
    });
}
