#include "settings.h"

#include "settings_file.h"
#include "user_directory.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr std::size_t mostRecentFiles = 8;

std::string format(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

void read(const ConfigSection& section, const char* name, double smallest, double largest, double& number)
{
    const ConfigEntry* const entry = section.getEntry(name, false);
    double value = 0;
    char rest = 0;
    if (entry == nullptr || std::sscanf(entry->getValue().c_str(), "%lf %c", &value, &rest) != 1) return;
    if (value >= smallest && value <= largest) number = value;
}

void read(const ConfigSection& section, const char* name, int smallest, int largest, int& number)
{
    double value = number;
    read(section, name, static_cast<double>(smallest), static_cast<double>(largest), value);
    number = static_cast<int>(value); // what stands behind a point is not looked at
}

} // namespace

std::string findSettingsFile()
{
    const std::string directory = findUserDirectory();
    return directory.empty() ? "" : directory + "editor.cfg";
}

Settings readSettings(const std::string& fileName, std::string& outProblem)
{
    Settings settings;
    const std::unique_ptr<ConfigFile> file = readSettingsFile(fileName, outProblem);
    if (!file) return settings;
    const ConfigSection& root = *file->getRootSection();
    read(root, "width", 320, 16384, settings.windowSize.x);
    read(root, "height", 240, 16384, settings.windowSize.y);
    read(root, "grid", 0, 1000, settings.grid);
    read(root, "camera-speed", 0.1, 1000, settings.cameraSpeed);
    read(root, "mouse-speed", 0.01, 10, settings.mouseSpeed);
    read(root, "autosave-seconds", 0, 86400, settings.autosaveSeconds);
    for (const ConfigSection* section : root.getAllSections()) {
        const ConfigEntry* const name = section->getEntry("name", false);
        if (section->getName() == "recent" && name != nullptr && settings.recentFiles.size() < mostRecentFiles)
            settings.recentFiles.push_back(name->getValue());
    }
    return settings;
}

bool writeSettings(const Settings& settings, const std::string& fileName, std::string& outProblem)
{
    auto root = std::make_unique<ConfigSection>("editor");
    addEntry(*root, "width", std::to_string(settings.windowSize.x));
    addEntry(*root, "height", std::to_string(settings.windowSize.y));
    addEntry(*root, "grid", format(settings.grid));
    addEntry(*root, "camera-speed", format(settings.cameraSpeed));
    addEntry(*root, "mouse-speed", format(settings.mouseSpeed));
    addEntry(*root, "autosave-seconds", std::to_string(settings.autosaveSeconds));
    for (const std::string& name : settings.recentFiles) {
        if (name.find_first_of("\"<>\r\n") != std::string::npos) continue; // could not be read back
        addEntry(addSection(*root, "recent"), "name", name);
    }
    return writeSettingsFile(ConfigFile(root.release()), fileName, outProblem);
}

void addRecentFile(Settings& settings, const std::string& fileName)
{
    std::vector<std::string>& files = settings.recentFiles;
    files.erase(std::remove(files.begin(), files.end(), fileName), files.end());
    files.insert(files.begin(), fileName);
    if (files.size() > mostRecentFiles) files.resize(mostRecentFiles);
}
