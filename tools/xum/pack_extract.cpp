#include "pack_extract.h"

#include "pack_archive.h"
#include "pack_name.h"
#include "pack_progress.h"
#include "printable_text.h"
#include "replacement_file.h"
#include "report.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path pathOf(const std::string& name)
{
    return {std::u8string(name.begin(), name.end())};
}

bool isWithin(const fs::path& path, const fs::path& directory)
{
    return std::mismatch(directory.begin(), directory.end(), path.begin(), path.end()).first == directory.end();
}

/// Those that loads find, each once. Names that are not there are reported.
std::vector<const PackEntry*> chooseEntries(const PackArchive& archive, const std::vector<std::string>& names,
                                            bool& isComplete)
{
    std::set<std::string> missing(names.begin(), names.end());
    std::vector<const PackEntry*> chosen;
    for (const PackEntry& entry : archive.getEntries()) {
        if (entry.replacement != PackEntry::none) continue;
        if (names.empty() || missing.erase(entry.name) != 0) chosen.push_back(&entry);
    }
    for (const std::string& name : missing) report(printable(name) + ": is not in " + printable(archive.getFileName()));
    isComplete = missing.empty();
    return chosen;
}

std::uint64_t totalSize(const PackArchive& archive, const std::vector<const PackEntry*>& entries)
{
    std::uint64_t total = 0;
    for (const PackEntry* entry : entries) total += archive.countPresentBytes(*entry);
    return total;
}

class Extraction {
public:
    Extraction(PackArchive& archive, bool overwrites, std::uint64_t size)
        : archive(archive), overwrites(overwrites), progress("extracting", size)
    {}

    bool extractInto(const fs::path& directory, const std::vector<const PackEntry*>& entries)
    {
        std::error_code failure;
        fs::create_directories(directory, failure);
        if (!failure) root = fs::canonical(directory, failure);
        if (failure) {
            report(printable(directory.string()) + ": cannot be made: " + failure.message());
            return false;
        }
        bool isWhole = true;
        for (const PackEntry* entry : entries) {
            const std::string problem = extract(*entry);
            if (problem.empty()) continue;
            progress.clear();
            report(printable(entry->name) + ": " + problem);
            isWhole = false;
            if (ReplacementFile::isEndRequested()) break;
        }
        return isWhole;
    }

private:
    /// Empty, or why there is no such file now.
    std::string extract(const PackEntry& entry)
    {
        if (const std::string problem = findNameProblem(entry.name); !problem.empty())
            return "not extracted: the name " + problem;
        if (archive.countPresentBytes(entry) != entry.size)
            return "damaged: of " + std::to_string(entry.size) + " bytes the archive has " +
                   std::to_string(archive.countPresentBytes(entry));
        const fs::path place = root / pathOf(entry.name);
        std::error_code failure;
        // What is there so far may hold links.
        const fs::path directory = fs::weakly_canonical(place.parent_path(), failure);
        if (!failure && !isWithin(directory, root)) return "not extracted: a link leads out of the directory";
        if (!failure) fs::create_directories(directory, failure);
        if (failure) return "cannot be written: " + failure.message();
        if (!overwrites && fs::exists(fs::symlink_status(place, failure)))
            return "exists, and is only overwritten with --force";
        return copy(entry, place);
    }

    std::string copy(const PackEntry& entry, const fs::path& place)
    {
        ReplacementFile out(place);
        const bool isRead = archive.readData(entry, [this, &out](const char* data, std::size_t size) {
            progress.add(size);
            return out.write(data, size);
        });
        if (!isRead) return "cannot be read from the archive";
        return out.finish() ? "" : out.getProblem();
    }

    PackArchive& archive;
    bool overwrites;
    PackProgress progress;
    fs::path root; // of all that is written, without links
};

} // namespace

bool extractArchive(const ExtractionOrder& order)
{
    PackArchive archive(order.archive);
    const std::string problem = !archive.getProblem().empty() ? archive.getProblem() : archive.findDirectoryProblem();
    if (!problem.empty()) report(problem);
    bool isComplete = false;
    const std::vector<const PackEntry*> entries = chooseEntries(archive, order.names, isComplete);
    isComplete = isComplete && problem.empty();
    if (entries.empty()) return isComplete;
    Extraction extraction(archive, order.overwrites, totalSize(archive, entries));
    return extraction.extractInto(order.directory, entries) && isComplete;
}
