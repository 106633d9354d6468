#include "survivable_errors.h"
#include "text_resources.h"

#include <xum/files/config_file.h>
#include <xum/files/program_description.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <regex>
#include <string>
#include <vector>

// Takes each input for a list of names, to be split as the expression that defines it does, and for a description.

namespace {

/// The expression's matcher needs a stack frame a character.
constexpr std::size_t longestList = 4096;

std::vector<std::string> splitByExpression(const std::string& list)
{
    static const std::regex expression("([^,^$]+)(,|$|\\s)+");
    std::vector<std::string> names;
    for (std::sregex_iterator at(list.begin(), list.end(), expression), end; at != end; ++at)
        names.push_back(at->str(1));
    return names;
}

void checkDescription(const std::uint8_t* data, std::size_t size)
{
    TextResources resources(data, size);
    std::unique_ptr<ConfigFile> file;
    try {
        file = std::make_unique<ConfigFile>(&resources, "fuzz");
    } catch (const FatalError&) {
        return;
    }
    const ConfigFile& config = *file;
    const ProgramDescription description(config);
    const char* const kinds[] = {"vertex-shaders", "geometry-shaders", "fragment-shaders", "compute-shaders"};
    for (std::size_t kind = 0; kind < ProgramDescription::shaderKinds; ++kind) {
        const ConfigEntry* entry = config.getEntry(kinds[kind], false);
        abortIf(description.shaders[kind] !=
                    (entry != nullptr ? splitNames(entry->getValue()) : std::vector<std::string>()),
                "a kind has other shaders");
    }
    const auto checkList = [&](const char* name, const std::list<std::string>& list) {
        const ConfigEntry* entry = config.getEntry(name, false);
        const std::vector<std::string> expected =
            entry != nullptr ? splitNames(entry->getValue()) : std::vector<std::string>();
        abortIf(std::vector<std::string>(list.begin(), list.end()) != expected, "a list has other names");
    };
    checkList("inputs", description.inputs);
    checkList("outputs", description.outputs);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    makeErrorsSurvivable();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> names = splitNames(text);
    if (size <= longestList) abortIf(names != splitByExpression(text), "the list is split in another way");
    if (size != 0) checkDescription(data, size);
    return 0;
}
