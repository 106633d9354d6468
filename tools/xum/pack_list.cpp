#include "pack_list.h"

#include "pack_archive.h"
#include "pack_name.h"
#include "printable_text.h"
#include "report.h"

#include <cstdio>

bool listArchive(const std::string& fileName)
{
    const PackArchive archive(fileName);
    for (const PackEntry& entry : archive.getEntries())
        std::printf("%lu\t%llu\t%s%s\n", static_cast<unsigned long>(entry.size),
                    static_cast<unsigned long long>(entry.offset), printable(entry.name).c_str(),
                    entry.replacement != PackEntry::none ? "\treplaced" : "");
    const std::string problem = !archive.getProblem().empty() ? archive.getProblem() : archive.findDirectoryProblem();
    if (!problem.empty()) report(problem);
    return problem.empty();
}

namespace {

std::vector<std::string> findEntryProblems(const PackArchive& archive, const PackEntry& entry)
{
    std::vector<std::string> problems;
    if (entry.fillsItsField) problems.emplace_back("the name has no NUL behind it");
    if (const std::string problem = findNameProblem(entry.name); !problem.empty())
        problems.push_back("the name " + problem);
    if (entry.replacement != PackEntry::none)
        problems.push_back("never loaded: entry " + std::to_string(entry.replacement + 1) + " has the same name");
    if (archive.countPresentBytes(entry) != entry.size)
        problems.push_back("the data, " + std::to_string(entry.size) + " bytes from " + std::to_string(entry.offset) +
                           " on, reach behind the end of the archive at " + std::to_string(archive.getFileSize()));
    return problems;
}

bool checkArchive(const PackArchive& archive)
{
    std::vector<std::string> problems = {archive.getProblem(), archive.findDirectoryProblem()};
    std::erase(problems, "");
    const std::vector<PackEntry>& entries = archive.getEntries();
    for (std::size_t i = 0; i < entries.size(); ++i)
        for (const std::string& problem : findEntryProblems(archive, entries[i]))
            problems.push_back(printable(archive.getFileName()) + ": entry " + std::to_string(i + 1) + " \"" +
                               printable(entries[i].name) + "\": " + problem);
    for (const std::string& problem : problems) report(problem);
    return problems.empty();
}

} // namespace

bool checkArchives(const std::vector<std::string>& fileNames)
{
    bool areGood = true;
    for (const std::string& fileName : fileNames) areGood = checkArchive(PackArchive(fileName)) && areGood;
    return areGood;
}
