// Settings in a file: made when there are none, checked, read, changed and written back.
//
//     config_file [FILE]
#include <xum/xum.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

void addEntry(ConfigSection* section, const std::string& name, const std::string& value)
{
    auto* entry = new ConfigEntry(name);
    entry->setValue(value); // any text, but for '"' and '>'
    section->addEntry(entry);
}

bool writeDefaults(const std::string& name)
{
    auto* root = new ConfigSection("settings");
    auto* window = new ConfigSection("window");
    addEntry(window, "width", "1024");
    addEntry(window, "title", "My first game");
    root->addSection(window); // owns it from now on
    addEntry(root, "runs", "0");
    return ConfigFile(root).write(name);
}

std::string readText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

// Files need no engine.
int main(int argc, char** argv)
{
    const std::string name = argc > 1 ? argv[1] : "settings.cfg";
    if (!std::ifstream(name) && !writeDefaults(name)) {
        std::cerr << "Cannot write " << name << '\n';
        return EXIT_FAILURE;
    }

    // A ConfigFile of a broken text ends the program. What users edit is checked before, and they are told where.
    std::string problem;
    if (!checkConfigText(readText(name), problem)) {
        std::cerr << name << ':' << problem << '\n';
        return EXIT_FAILURE;
    }

    ConfigFile settings(name);
    std::cout << "title: " << settings.getEntry("window/title", true)->getValue() << '\n'; // required: else it is fatal
    const ConfigEntry* const height = settings.getEntry("window/height", false);           // null when there is none
    std::cout << "height: " << (height != nullptr ? height->getValue() : "not set") << '\n';

    ConfigEntry* runs = settings.getEntry("runs", true);
    runs->setValue(std::to_string(std::atoi(runs->getValue().c_str()) + 1));
    auto* visit = new ConfigSection("visit"); // sections may share a name: a list
    addEntry(visit, "number", runs->getValue());
    settings.getRootSection()->addSection(visit);
    for (const ConfigSection* section : settings.getSections("visit"))
        std::cout << "visit " << section->getEntry("number", true)->getValue() << '\n';

    if (!settings.write(name)) {
        std::cerr << "Cannot write " << name << '\n';
        return EXIT_FAILURE;
    }
    std::cout << readText(name);
}
