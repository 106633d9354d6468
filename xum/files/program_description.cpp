#include <xum/files/program_description.h>

#include <xum/files/config_file.h>

#include <algorithm>

namespace {

bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::vector<std::string> readList(const ConfigFile& config, const char* name)
{
    const ConfigEntry* entry = config.getEntry(name, false);
    return entry != nullptr ? splitNames(entry->getValue()) : std::vector<std::string>();
}

std::list<std::string> readNames(const ConfigFile& config, const char* name)
{
    const std::vector<std::string> names = readList(config, name);
    return {names.begin(), names.end()};
}

} // namespace

ProgramDescription::ProgramDescription(const ConfigFile& config)
    : shaders{readList(config, "vertex-shaders"), readList(config, "geometry-shaders"),
              readList(config, "fragment-shaders"), readList(config, "compute-shaders")},
      inputs(readNames(config, "inputs")), outputs(readNames(config, "outputs"))
{}

// By hand, because the library's matcher needs a stack frame a character and brings the process down on long lists.
std::vector<std::string> splitNames(const std::string& list)
{
    constexpr char separators[] = ",^$";
    std::vector<std::string> names;
    std::size_t start = 0;
    while (start < list.size()) {
        const std::size_t stop = std::min(list.find_first_of(separators, start), list.size());
        if (stop == start) {
            ++start;
            continue;
        }
        std::size_t end = stop;
        if (stop < list.size() && list[stop] != ',') { // a name must end: at a comma, at the end or before a space
            end = stop - 1;
            while (end > start && !isSpace(list[end])) --end;
            if (end == start) {
                start = stop;
                continue;
            }
        }
        names.push_back(list.substr(start, end - start));
        start = end;
        while (start < list.size() && (list[start] == ',' || isSpace(list[start]))) ++start;
    }
    return names;
}
