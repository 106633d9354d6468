#include "pack_explain.h"

#include "pack_archive.h"
#include "printable_text.h"
#include "report.h"

#include <xum/files/file_opening.h>
#include <xum/files/resource_path.h>

#include <algorithm>
#include <cstdio>

namespace {

/// Nothing when there is no such file.
std::vector<std::string> findPlainFile(const std::string& name)
{
    if (!mayBeReadable(name)) return {};
    InputFile file(name);
    if (!file.isOpen()) return {};
    return {"the file " + printable(name) + ", " + std::to_string(file.getSize()) + " bytes"};
}

/// The entries of that name, the one that counts first.
std::vector<std::string> findEntries(const PackArchive& archive, const std::string& key)
{
    const std::vector<PackEntry>& entries = archive.getEntries();
    std::vector<std::string> found;
    for (std::size_t i = entries.size(); i-- > 0;) {
        const PackEntry& entry = entries[i];
        if (entry.name != key) continue;
        std::string line = "the archive " + printable(archive.getFileName()) + ", entry " + std::to_string(i + 1) +
                           ", " + std::to_string(entry.size) + " bytes from " + std::to_string(entry.offset) + " on";
        const std::uint64_t present = archive.countPresentBytes(entry);
        if (present != entry.size) line += " (only " + std::to_string(present) + " are there; the others read as 0)";
        found.push_back(line);
    }
    return found;
}

} // namespace

bool explainLoad(const std::string& name, const std::vector<std::string>& archiveNames)
{
    const std::string key = normalizeResourceName(name);
    std::vector<std::string> found = findPlainFile(name);
    bool areReadable = true;
    for (std::size_t i = archiveNames.size(); i-- > 0;) {
        const PackArchive archive(archiveNames[i]);
        if (!archive.getProblem().empty()) {
            report(archive.getProblem() + (archive.isFatal()
                                               ? " (the engine ends: \"Invalid header for resource file!\")"
                                               : " (the engine takes it for an empty archive)"));
            areReadable = false;
        }
        for (const std::string& line : findEntries(archive, key)) found.push_back(line);
    }
    std::printf("name in archives: %s\n", printable(key).c_str());
    for (std::size_t i = 0; i < found.size(); ++i)
        std::printf("%s %s\n", i == 0 ? "answers:" : "shadowed:", found[i].c_str());
    if (found.empty()) report(printable(name) + ": is neither a file nor in an archive");
    return areReadable && !found.empty();
}
