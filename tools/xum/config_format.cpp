#include "config_format.h"

#include "config_text.h"
#include "printable_text.h"
#include "replacement_file.h"
#include "report.h"

#include <xum/files/config_place.h>
#include <xum/files/config_token.h>
#include <xum/files/config_writer.h>
#include <xum/files/file.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#ifdef _WIN32
#    include <fcntl.h>
#    include <io.h>
#endif

// ---- the engine's writing -----------------------------------------------------------------------------------------

namespace {

/// The engine writes into files only.
class ScratchDirectory {
public:
    ScratchDirectory()
    {
        std::random_device random;
        do path = std::filesystem::temp_directory_path() / ("xum-config-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path));
    }

    ~ScratchDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    std::filesystem::path getFile() const { return path / "config"; }

private:
    std::filesystem::path path;
};

/// Without a value when there is no room for it.
std::optional<std::string> writeText(const ConfigSection& root)
{
    const ScratchDirectory directory;
    OutputFile file(directory.getFile().native());
    if (!ConfigWriter(file).write(root)) return {};
    std::ifstream written(directory.getFile(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(written), std::istreambuf_iterator<char>());
}

} // namespace

// ---- reading back -------------------------------------------------------------------------------------------------

namespace {

/// Indentation makes the text grow with the square of the depth.
constexpr std::size_t greatestDepth = 1000;

/// Whether one tag of the written text is what it was made from.
bool readsBack(const std::string& tag, ConfigToken::Kind kind, const std::string& name, const std::string& value)
{
    if (tag.find('>') != tag.size() - 1) return false;
    try {
        const ConfigToken token(tag, 0);
        return token.getKind() == kind && token.getName() == name &&
               (kind != ConfigToken::Kind::Entry || token.getValue() == value);
    } catch (const ConfigSyntaxError&) {
        return false;
    }
}

bool readsBack(const ConfigEntry& entry)
{
    const std::string& value = entry.getValue();
    const char* quote = value.find(' ') != std::string::npos ? "\"" : "";
    return readsBack("<" + entry.getName() + " " + quote + value + quote + "/>", ConfigToken::Kind::Entry,
                     entry.getName(), value);
}

bool readsBack(const ConfigSection& section)
{
    return readsBack("<" + section.getName() + ">", ConfigToken::Kind::Section, section.getName(), "");
}

/// A line for each part that would be another one when it is read again.
std::vector<std::string> findUnwritable(const ConfigSection& root)
{
    struct Pending {
        const ConfigSection* section;
        std::string path; // of its entries, with the slash
        std::size_t depth;
    };
    std::vector<std::string> problems;
    std::vector<Pending> pending = {{&root, "", 1}};
    while (!pending.empty()) {
        const Pending at = std::move(pending.back());
        pending.pop_back();
        if (at.depth > greatestDepth)
            return {"the nesting of more than " + std::to_string(greatestDepth) + " sections"};
        if (!readsBack(*at.section))
            problems.push_back("the section name \"" + printable(at.section->getName()) + "\"");
        std::list<const ConfigEntry*> entries;
        at.section->getEntries(entries);
        for (const ConfigEntry* entry : entries)
            if (!readsBack(*entry))
                problems.push_back("the value of \"" + printable(at.path + entry->getName()) + "\"");
        std::vector<ConfigSection*> sections = at.section->getAllSections();
        std::reverse(sections.begin(), sections.end()); // the last one pending comes first
        for (const ConfigSection* section : sections)
            pending.push_back({section, at.path + section->getName() + "/", at.depth + 1});
    }
    return problems;
}

/// The first tag behind the root section, which is never read; the text's size when there is none. The text must be
/// readable.
std::size_t findRest(const std::string& text)
{
    std::size_t depth = 0;
    std::size_t begin = text.find('<');
    do {
        const std::size_t end = text.find('>', begin) + 1;
        const ConfigToken::Kind kind = ConfigToken(std::string_view(text).substr(begin, end - begin), begin).getKind();
        if (depth == 0 || kind == ConfigToken::Kind::Section) // the first tag opens the root section, whatever it is
            ++depth;
        else if (kind == ConfigToken::Kind::Close)
            --depth;
        begin = std::min(text.find('<', end), text.size());
    } while (depth != 0);
    return begin;
}

bool isFormattable(const ConfigText& config)
{
    const std::size_t rest = findRest(config.text);
    if (rest != config.text.size())
        report(config.name + ":" + describePlace(config.text, rest) +
               ": what follows the root section is never read, and would be lost");
    const std::vector<std::string> problems = findUnwritable(*config.root);
    for (const std::string& problem : problems) report(config.name + ": " + problem + " cannot be written");
    return rest == config.text.size() && problems.empty();
}

bool replaceFile(const std::string& fileName, const std::string& text)
{
    ReplacementFile file(behindLinks(fileName));
    if (file.write(text.data(), text.size()) && file.finish()) return true;
    report(printable(fileName) + ": " + file.getProblem());
    return false;
}

} // namespace

bool formatConfig(const std::string& fileName, bool inPlace)
{
    const std::optional<ConfigText> config = readConfig(fileName);
    if (!config) return false;
    if (!config->root) return true; // an empty file stays one
    if (!isFormattable(*config)) return false;
    const std::optional<std::string> text = writeText(*config->root);
    if (!text) {
        report(config->name + ": there is no room for the text in the directory for temporary files");
        return false;
    }
    if (inPlace) return *text == config->text || replaceFile(fileName, *text);
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY); // the lines have their ends already
#endif
    std::fwrite(text->data(), 1, text->size(), stdout);
    return true;
}
