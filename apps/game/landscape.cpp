#include "landscape.h"

#include "base_scripts.h"
#include "failure.h"

#include <xum/lisp/script_host.h>

#include <cmath>

namespace {

constexpr int halfSize = 40; // cells
constexpr int spacing = 3;
constexpr int smoothPasses = 2;
constexpr double highest = 10000; // no number at all is no height either

/// The first error; a wrong script goes on, and so do its messages. What else it prints is nobody's concern.
void keepFirstError(const char* line, void* user)
{
    auto& error = *static_cast<std::string*>(user);
    if (error.empty() && std::string(line).rfind("error: ", 0) == 0) error = line;
}

void addMathematics(ScriptingDevice* scripts)
{
    const auto sine = [](ScriptCall& call, void*) { call.returnFloat(std::sin(call.getFloat(0))); };
    const auto squareRoot = [](ScriptCall& call, void*) { call.returnFloat(std::sqrt(call.getFloat(0))); };
    registerScriptFunction(scripts, "sine", "", "(:float -> :float)", sine, nullptr);
    registerScriptFunction(scripts, "square-root", "", "(:float -> :float)", squareRoot, nullptr);
}

} // namespace

std::unique_ptr<Terrain> makeLandscape(Engine& engine, GameData& data)
{
    const std::string fileName = data.getFileName(scriptDirectory, "landscape.lisp");
    data.provideFile(fileName);
    const OwnedScripts scripts = startScripts(engine, data);
    if (!scripts) throw Failure(ExitStatus::BrokenData, "not enough memory for scripts");

    std::string error;
    setScriptPrint(scripts.get(), keepFirstError, &error);
    addMathematics(scripts.get());
    const auto fail = [&] {
        throw Failure(ExitStatus::BrokenData,
                      "the script " + fileName + " is wrong: " + (error.empty() ? "it cannot be read" : error));
    };
    if (!scripts->loadScript("landscape") || !error.empty()) fail();

    const auto shape = [&](int, int, const Vector3<float>& position) {
        if (!error.empty()) return position; // nothing is thrown through the engine
        const std::string call = "(ground-height " + std::to_string(static_cast<int>(position.x)) + ".0 " +
                                 std::to_string(static_cast<int>(position.y)) + ".0)";
        ScriptValue height;
        const bool isRead = evaluateScript(scripts.get(), call, height);
        const bool isHeight =
            isRead && height.getType() == ScriptValueType::Float && std::fabs(height.getFloat()) < highest;
        if (error.empty() && !isHeight) error = call + " gives no height";
        return Vector3<float>(position.x, position.y, static_cast<float>(height.getFloat()));
    };
    auto terrain = std::make_unique<Terrain>(halfSize, halfSize, spacing);
    terrain->modify(shape, smoothPasses);
    if (!error.empty()) fail();
    return terrain;
}
