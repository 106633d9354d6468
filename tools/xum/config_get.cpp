#include "config_get.h"

#include "config_text.h"
#include "printable_text.h"
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <list>
#include <string_view>

namespace {

/// The first one of that name, as the engine chooses; null when there is none.
const ConfigSection* findSection(const ConfigSection& parent, std::string_view name)
{
    for (const ConfigSection* section : parent.getAllSections())
        if (section->getName() == name) return section;
    return nullptr;
}

const ConfigEntry* findEntry(const ConfigSection& section, std::string_view name)
{
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries)
        if (entry->getName() == name) return entry;
    return nullptr;
}

/// Goes down from the root through the sections of a path; null, and a report, when one is missing.
const ConfigSection* followPath(const ConfigText& config, std::string_view path)
{
    const ConfigSection* section = config.root.get();
    for (std::size_t begin = 0; section != nullptr && begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        section = findSection(*section, path.substr(begin, end - begin));
        if (section == nullptr)
            report(config.name + ": there is no section \"" + printable(path.substr(0, end)) + "\"");
        begin = end + 1;
    }
    return section;
}

bool reportNoRoot(const ConfigText& config)
{
    report(config.name + ": there is no root section");
    return false;
}

void printSection(const ConfigSection& section)
{
    for (const ConfigSection* child : section.getAllSections())
        std::printf("%s/\n", printable(child->getName()).c_str());
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries)
        std::printf("%s\t%s\n", printable(entry->getName()).c_str(), printable(entry->getValue()).c_str());
}

} // namespace

bool printConfigValue(const std::string& fileName, const std::string& path)
{
    const std::optional<ConfigText> config = readConfig(fileName);
    if (!config) return false;
    if (!config->root) return reportNoRoot(*config);
    const std::size_t slash = path.rfind('/');
    const bool hasSections = slash != std::string::npos;
    const ConfigSection* section =
        hasSections ? followPath(*config, std::string_view(path).substr(0, slash)) : config->root.get();
    if (section == nullptr) return false;
    const std::string name = hasSections ? path.substr(slash + 1) : path;
    if (const ConfigEntry* entry = findEntry(*section, name)) {
        std::fwrite(entry->getValue().data(), 1, entry->getValue().size(), stdout);
        std::fputc('\n', stdout);
        return true;
    }
    report(config->name + ": there is no entry \"" + printable(path) + "\"" +
           (findSection(*section, name) != nullptr ? ", but a section: --list shows what it holds" : ""));
    return false;
}

bool listConfigSection(const std::string& fileName, const std::string& path)
{
    const std::optional<ConfigText> config = readConfig(fileName);
    if (!config) return false;
    if (!config->root) return reportNoRoot(*config);
    const ConfigSection* section = path.empty() ? config->root.get() : followPath(*config, path);
    if (section != nullptr) printSection(*section);
    return section != nullptr;
}
