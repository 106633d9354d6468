#include "program_loading.h"

#include "failure.h"
#include "program_check.h"
#include "text_as_file.h"

#include <xum/files/cache.h>
#include <xum/files/config_check.h>
#include <xum/files/config_file.h>

#include <sstream>

namespace {

[[noreturn]] void fail(const std::string& problem)
{
    throw Failure(ExitStatus::BrokenData, problem);
}

std::string readText(GameData& data, const std::string& fileName)
{
    const std::vector<unsigned char> bytes = data.read(fileName);
    return {bytes.begin(), bytes.end()};
}

void requireShaders(GameData& data, const std::string& fileName)
{
    const std::string text = readText(data, fileName);
    std::string problem;
    if (!checkConfigText(text, problem)) fail("the file " + fileName + " is broken: " + problem);
    TextAsFile file(text);
    const ConfigFile description(&file, fileName);
    for (const char* kind : {"vertex-shaders", "fragment-shaders"}) {
        const ConfigEntry* const entry = description.getEntry(kind, false);
        if (entry == nullptr) fail("the program " + fileName + " names no " + kind);
        std::istringstream names(entry->getValue());
        for (std::string name; std::getline(names >> std::ws, name, ',');)
            data.read(data.getFileName(data.getCache().getShaderDirectory(), name));
    }
}

} // namespace

Program* loadProgram(RenderDevice& device, GameData& data, const std::string& name)
{
    Cache& cache = data.getCache();
    const std::string fileName = data.getFileName(cache.getProgramDirectory(), name);
    requireShaders(data, fileName);
    Program* const program = cache.getProgram(&device, cache.getId(name), false);
    if (!canDraw(device, program))
        fail("the shaders of " + fileName + " do not compile or do not fit together; log.txt says why");
    return program;
}
