#include <xum/files/config_writer.h>

#include <xum/files/config_item_list.h>
#include <xum/files/config_section.h>
#include <xum/files/file.h>

#include <limits>
#include <vector>

namespace {

constexpr std::size_t indentation = 3; // spaces a level

struct OpenSection {
    const ConfigSection* section;
    std::size_t nextChild;
};

} // namespace

bool ConfigWriter::write(const ConfigSection& root)
{
    std::vector<OpenSection> path = {{&root, 0}};
    if (!writeTag(0, "<", root.name)) return false;
    while (!path.empty()) {
        OpenSection& top = path.back();
        const ConfigSection& section = *top.section;
        if (section.sections && top.nextChild < section.sections->getItems().size()) {
            const ConfigSection* child = section.sections->getItems()[top.nextChild++];
            if (!writeTag(path.size(), "<", child->name)) return false;
            path.push_back({child, 0});
        } else {
            if (!writeEntries(section, path.size()) || !writeTag(path.size() - 1, "</", section.name)) return false;
            path.pop_back();
        }
    }
    return file.flush();
}

bool ConfigWriter::writeEntries(const ConfigSection& section, std::size_t depth)
{
    if (!section.entries) return true;
    for (const ConfigEntry* entry : section.entries->getItems()) {
        const std::string& value = entry->getValue();
        const char* quote = value.find(' ') != std::string::npos ? "\"" : "";
        line.assign(depth * indentation, ' ');
        line.append("<").append(entry->getName()).append(" ").append(quote).append(value).append(quote).append("/>");
        if (!writeLine()) return false;
    }
    return true;
}

bool ConfigWriter::writeTag(std::size_t depth, const char* start, const std::string& name)
{
    line.assign(depth * indentation, ' ');
    line.append(start).append(name).append(">");
    return writeLine();
}

bool ConfigWriter::writeLine()
{
    line.append("\r\n");
    return line.size() <= std::numeric_limits<unsigned>::max() &&
           file.write(line.data(), static_cast<unsigned>(line.size()));
}
