#include "settings_file.h"

#include "replaced_file.h"
#include "text_as_file.h"

#include <xum/files/config_check.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

std::unique_ptr<ConfigFile> readSettingsFile(const std::string& fileName, std::string& outProblem)
{
    outProblem.clear();
    std::error_code failure;
    if (fileName.empty() || !std::filesystem::is_regular_file(fileName, failure)) return nullptr;
    std::ifstream file(fileName, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    if (!checkConfigText(text, outProblem)) {
        outProblem = "the settings in " + fileName + " are broken: " + outProblem;
        return nullptr;
    }
    TextAsFile source(text);
    return std::make_unique<ConfigFile>(&source, fileName);
}

bool writeSettingsFile(const ConfigFile& file, const std::string& fileName, std::string& outProblem)
{
    const auto write = [&](const std::string& otherName) { return file.write(otherName); };
    return replaceFile(fileName, write, outProblem);
}

void addEntry(ConfigSection& section, const std::string& name, const std::string& value)
{
    auto* const entry = new ConfigEntry(name);
    entry->setValue(value);
    section.addEntry(entry);
}

ConfigSection& addSection(ConfigSection& section, const std::string& name)
{
    auto* const added = new ConfigSection(name);
    section.addSection(added);
    return *added;
}
