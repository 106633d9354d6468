#include "memory_file.h"
#include "survivable_errors.h"
#include "text_resources.h"

#include <xum/files/config_file.h>
#include <xum/files/config_reader.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Reads each input as a configuration. One that is whole must be found again by every look-up, in a copy, and, when
// its texts allow it, in what is written of it.

namespace {

const MemoryFile* writtenFile = nullptr;

std::vector<const ConfigEntry*> entriesOf(const ConfigSection& section)
{
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    return {entries.begin(), entries.end()};
}

bool areEqual(const ConfigSection& a, const ConfigSection& b)
{
    const auto isSameEntry = [](const ConfigEntry* x, const ConfigEntry* y) {
        return x->getName() == y->getName() && x->getValue() == y->getValue();
    };
    const std::vector<const ConfigEntry*> entriesA = entriesOf(a);
    const std::vector<const ConfigEntry*> entriesB = entriesOf(b);
    const std::vector<ConfigSection*> sectionsA = a.getAllSections();
    const std::vector<ConfigSection*> sectionsB = b.getAllSections();
    return a.getName() == b.getName() &&
           std::equal(entriesA.begin(), entriesA.end(), entriesB.begin(), entriesB.end(), isSameEntry) &&
           std::equal(sectionsA.begin(), sectionsA.end(), sectionsB.begin(), sectionsB.end(),
                      [](const ConfigSection* x, const ConfigSection* y) { return areEqual(*x, *y); });
}

bool holdsQuotes(const ConfigSection& section)
{
    for (const ConfigEntry* entry : entriesOf(section))
        if (entry->getValue().find('"') != std::string::npos) return true;
    for (const ConfigSection* child : section.getAllSections())
        if (holdsQuotes(*child)) return true;
    return false;
}

/// Names with a '/' are taken apart by every look-up.
bool isFindable(const std::string& name)
{
    return name.find('/') == std::string::npos;
}

void checkSections(const ConfigSection& section)
{
    const std::vector<ConfigSection*> all = section.getAllSections();
    const std::size_t checked = std::min<std::size_t>(all.size(), 50);
    for (std::size_t i = 0; i < checked; ++i) {
        const std::string& name = all[i]->getName();
        if (!isFindable(name)) continue;
        std::list<ConfigSection*> expected;
        std::copy_if(all.begin(), all.end(), std::back_inserter(expected),
                     [&](const ConfigSection* other) { return other->getName() == name; });
        abortIf(section.getSections(name) != expected, "other sections were found");
        const std::vector<const ConfigEntry*> entries = entriesOf(*expected.front());
        if (!entries.empty() && isFindable(entries.back()->getName()))
            abortIf(section.getEntry(name + "/" + entries.back()->getName(), true) != entries.back(),
                    "another entry was found one level down");
    }
    for (const ConfigSection* child : all) checkSections(*child);
}

void checkEntries(const ConfigSection& section)
{
    std::vector<std::string> names;
    for (const ConfigEntry* entry : entriesOf(section)) {
        names.push_back(entry->getName());
        if (isFindable(names.back()))
            abortIf(section.getEntry(names.back(), false) != entry, "another entry was found");
    }
    std::sort(names.begin(), names.end());
    abortIf(std::adjacent_find(names.begin(), names.end()) != names.end(), "two entries have one name");
    for (const ConfigSection* child : section.getAllSections()) checkEntries(*child);
}

/// Whether a look-up of any path ends well or in a fatal error: nothing else may happen.
void lookUp(const ConfigFile& config, const std::string& path)
{
    try {
        const ConfigEntry* entry = config.getEntry(path, path.size() % 2 == 0);
        abortIf(entry != nullptr && path.substr(path.rfind('/') + 1) != entry->getName(), "an entry has another name");
    } catch (const FatalError&) {
    }
    try {
        abortIf(config.getSections(path).empty(), "no sections were found, without an error");
    } catch (const FatalError&) {
    }
}

/// Whether "<NAME>" opens a section of that name. It does for all but a root section, which whatever tag comes first
/// opens: "</a>" one that is named "a".
bool isSectionName(const std::string& name)
{
    return name.empty() || (name.front() != '/' && name.back() != '/');
}

void checkWriting(const ConfigFile& config)
{
    const std::string& name = writtenFile->getName();
    abortIf(!config.write(name), "it was not written");
    const ConfigSection& root = *config.getRootSection();
    if (holdsQuotes(root) || !isSectionName(root.getName())) return;
    abortIf(!areEqual(*ConfigFile(name).getRootSection(), root), "it was read back as something else");
    const std::vector<std::uint8_t> once = writtenFile->read();
    abortIf(!ConfigFile(name).write(name) || writtenFile->read() != once, "it was written as something else");
}

void check(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<ConfigSection> root;
    try {
        root = ConfigReader(text).read();
        abortIf(!root, "there is no root section");
    } catch (const ConfigSyntaxError& problem) {
        abortIf(problem.message.empty() || problem.position > size, "the error is nowhere in the text");
    }
    TextResources resources(data, size);
    std::unique_ptr<ConfigFile> file;
    try {
        file = std::make_unique<ConfigFile>(&resources, "fuzz");
    } catch (const FatalError&) {
    }
    abortIf(static_cast<bool>(file) != static_cast<bool>(root), "only one of two readings succeeds");
    if (!file) return;
    const ConfigFile& config = *file;
    abortIf(!areEqual(*config.getRootSection(), *root), "two readings differ");
    abortIf(!areEqual(ConfigSection(*root), *root), "the copy differs");
    checkEntries(*root);
    checkSections(*root);
    lookUp(config, std::string(text.substr(size - size / 4)));
    checkWriting(config);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    makeErrorsSurvivable();
    writtenFile = new MemoryFile;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size != 0) check(data, size); // nothing at all is no error, but makes no root section either
    return 0;
}
