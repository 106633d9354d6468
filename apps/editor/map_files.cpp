#include "map_files.h"

#include "map_compiler.h"
#include "replaced_file.h"
#include "text_as_file.h"

#include <xum/files/config_check.h>
#include <xum/files/config_file.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <utility>

namespace {

constexpr std::uintmax_t largestFile = 1u << 28; // a map of a million brushes

void formatSection(std::ostream& out, const ConfigSection& section, const std::string& indentation)
{
    out << indentation << '<' << section.getName() << ">\n";
    for (const ConfigSection* child : section.getAllSections()) formatSection(out, *child, indentation + "   ");
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries)
        out << indentation << "   <" << entry->getName() << " \"" << entry->getValue() << "\"/>\n";
    out << indentation << "</" << section.getName() << ">\n";
}

bool readText(const std::string& fileName, std::string& outText, std::string& outProblem)
{
    std::error_code failure;
    if (!std::filesystem::is_regular_file(fileName, failure)) {
        outProblem = "there is no file " + fileName;
        return false;
    }
    if (std::filesystem::file_size(fileName, failure) > largestFile || failure) {
        outProblem = fileName + " is too large for a map";
        return false;
    }
    std::ifstream file(fileName, std::ios::binary);
    if (file.is_open()) outText.assign(std::istreambuf_iterator<char>(file), {});
    if (file.bad() || !file.is_open()) outProblem = "cannot read " + fileName;
    return outProblem.empty();
}

} // namespace

std::optional<MapDocument> loadMap(const std::string& fileName, std::string& outProblem)
{
    std::string text;
    outProblem.clear();
    if (!readText(fileName, text, outProblem)) return std::nullopt;
    std::optional<MapSource> source = readMap(text, outProblem);
    if (!source) {
        outProblem = fileName + ": " + outProblem;
        return std::nullopt;
    }
    return toDocument(std::move(*source));
}

bool saveMap(const MapDocument& document, const std::string& fileName, std::string& outProblem)
{
    const MapSource source = toSource(document);
    const ConfigFile file(makeMapSection(source).release());
    bool isOther = false;
    const auto write = [&](const std::string& otherName) {
        std::string problem;
        if (!file.write(otherName)) return false;
        const std::optional<MapDocument> written = loadMap(otherName, problem);
        isOther = !written || formatMap(toSource(*written)) != formatMap(source);
        return !isOther;
    };
    if (replaceFile(fileName, write, outProblem)) return true;
    if (isOther) outProblem = "cannot write " + fileName + ": it would not be read as the same map";
    return false;
}

bool compileMapFile(const MapDocument& document, const std::string& fileName, std::string& outProblem)
{
    try {
        const CompiledLevel level = compileMap(toSource(document), [](const std::string&, double) {});
        const auto write = [&](const std::string& otherName) { return level.map->writeToFile(otherName); };
        return replaceFile(fileName, write, outProblem);
    } catch (const MapProblem& problem) {
        outProblem = problem.what();
        return false;
    }
}

std::string autosaveNameOf(const std::string& fileName)
{
    return fileName + ".autosave";
}

bool hasYoungerAutosave(const std::string& fileName)
{
    std::error_code failure;
    const auto saved = std::filesystem::last_write_time(autosaveNameOf(fileName), failure);
    if (failure) return false;
    const auto map = std::filesystem::last_write_time(fileName, failure);
    return failure || saved >= map; // of the same moment: the map's own time may be rounded
}

std::string formatMap(const MapSource& source)
{
    std::ostringstream text;
    formatSection(text, *makeMapSection(source), "");
    return text.str();
}

std::optional<MapSource> readMap(const std::string& text, std::string& outProblem)
{
    if (!checkConfigText(text, outProblem)) return std::nullopt;
    TextAsFile file(text);
    const ConfigFile config(&file, "map");
    if (config.getRootSection()->getName() != "map") {
        outProblem = "this is no map: it begins with <" + config.getRootSection()->getName() + ">";
        return std::nullopt;
    }
    try {
        return readMapSource(*config.getRootSection());
    } catch (const MapProblem& problem) {
        outProblem = problem.what();
        return std::nullopt;
    }
}
