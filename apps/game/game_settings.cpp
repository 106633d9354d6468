#include "game_settings.h"

#include "settings_file.h"
#include "user_directory.h"

#include <cstdio>
#include <memory>

namespace {

class Reader {
public:
    Reader(const ConfigSection& section, const std::string& fileName, std::string& problems)
        : section(section), fileName(fileName), problems(problems)
    {}

    void read(const char* name, int smallest, int largest, int& number)
    {
        const ConfigEntry* const entry = section.getEntry(name, false);
        if (entry == nullptr) return;
        int value = 0;
        char rest = 0;
        const bool isNumber = std::sscanf(entry->getValue().c_str(), "%d %c", &value, &rest) == 1;
        if (isNumber && value >= smallest && value <= largest)
            number = value;
        else
            complain(*entry, "is no number from " + std::to_string(smallest) + " to " + std::to_string(largest));
    }

    void read(const char* name, bool& choice)
    {
        const ConfigEntry* const entry = section.getEntry(name, false);
        if (entry == nullptr) return;
        if (entry->getValue() == "yes" || entry->getValue() == "no")
            choice = entry->getValue() == "yes";
        else
            complain(*entry, "is neither yes nor no");
    }

    void read(Action action, KeyBindings& keys)
    {
        const ConfigEntry* const entry = section.getEntry(KeyBindings::getName(action), false);
        if (entry != nullptr && !keys.bind(action, entry->getValue())) complain(*entry, "is no key");
    }

private:
    void complain(const ConfigEntry& entry, const std::string& what)
    {
        problems += fileName + ": <" + entry.getName() + "> '" + entry.getValue() + "' " + what + "\n";
    }

    const ConfigSection& section;
    const std::string& fileName;
    std::string& problems;
};

/// Null, with a note in the settings, for a file that is broken.
std::unique_ptr<ConfigFile> readFile(const std::string& fileName, GameSettings& settings, std::string& outProblems)
{
    std::unique_ptr<ConfigFile> file = readSettingsFile(fileName, outProblems);
    settings.isFileBroken = !outProblems.empty();
    if (settings.isFileBroken) outProblems += "\n";
    return file;
}

void readAll(const ConfigSection& root, const std::string& fileName, GameSettings& settings, std::string& problems)
{
    Reader reader(root, fileName, problems);
    reader.read("width", GameSettings::smallestWindow.x, 16384, settings.windowSize.x);
    reader.read("height", GameSettings::smallestWindow.y, 16384, settings.windowSize.y);
    reader.read("full-screen", settings.isFullscreen);
    reader.read("volume", 0, 100, settings.volume);
    reader.read("mute", settings.isMute);
}

} // namespace

std::string findGameSettingsFile()
{
    const std::string directory = findUserDirectory();
    return directory.empty() ? "" : directory + "game.cfg";
}

GameSettings readGameSettings(const std::string& fileName, KeyBindings& keys, std::string& outProblems)
{
    GameSettings settings;
    const std::unique_ptr<ConfigFile> file = readFile(fileName, settings, outProblems);
    if (!file) return settings;
    readAll(*file->getRootSection(), fileName, settings, outProblems);
    for (const ConfigSection* section : file->getRootSection()->getAllSections()) {
        if (section->getName() != "keys") continue;
        Reader reader(*section, fileName, outProblems);
        for (std::size_t i = 0; i < actionCount; ++i) reader.read(static_cast<Action>(i), keys);
    }
    return settings;
}

GameSettings readWindowSettings(const std::string& fileName)
{
    GameSettings settings;
    std::string problems; // told about when everything is read
    const std::unique_ptr<ConfigFile> file = readFile(fileName, settings, problems);
    if (file) readAll(*file->getRootSection(), fileName, settings, problems);
    return settings;
}

bool writeGameSettings(const GameSettings& settings, const KeyBindings& keys, const std::string& fileName,
                       std::string& outProblem)
{
    auto root = std::make_unique<ConfigSection>("game");
    addEntry(*root, "width", std::to_string(settings.windowSize.x));
    addEntry(*root, "height", std::to_string(settings.windowSize.y));
    addEntry(*root, "full-screen", settings.isFullscreen ? "yes" : "no");
    addEntry(*root, "volume", std::to_string(settings.volume));
    addEntry(*root, "mute", settings.isMute ? "yes" : "no");
    ConfigSection& section = addSection(*root, "keys");
    for (std::size_t i = 0; i < actionCount; ++i) {
        const auto action = static_cast<Action>(i);
        const std::string key = keys.getKeyName(action);
        if (key.find_first_of("\"<>") == std::string::npos) addEntry(section, KeyBindings::getName(action), key);
    }
    return writeSettingsFile(ConfigFile(root.release()), fileName, outProblem);
}
