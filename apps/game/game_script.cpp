#include "game_script.h"

#include "environment.h"
#include "failure.h"
#include "inert_stage.h"

#include <xum/engine/log.h>
#include <xum/lisp/script_host.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

// What scripts of a wrong idea may ask for; the world is small.
constexpr double farthest = 1e6;

float readFloat(const ScriptCall& call, unsigned argument)
{
    const double value = call.getFloat(argument);
    return std::fabs(value) <= farthest ? static_cast<float>(value) : 0.0f;
}

Vector3<float> readVector(const ScriptCall& call, unsigned first)
{
    return {readFloat(call, first), readFloat(call, first + 1), readFloat(call, first + 2)};
}

/// A keyword without its colon, or a text.
std::string readName(const ScriptCall& call, unsigned argument)
{
    const std::string_view name = call.getString(argument);
    return std::string(!name.empty() && name.front() == ':' ? name.substr(1) : name);
}

std::size_t readNumber(const ScriptCall& call, unsigned argument)
{
    const std::int64_t number = call.getInteger(argument);
    return number < 0 ? ~std::size_t{0} : static_cast<std::size_t>(number);
}

int readThing(const ScriptCall& call, unsigned argument)
{
    const std::int64_t number = call.getInteger(argument);
    return number < 0 || number > 1000000000 ? -1 : static_cast<int>(number);
}

struct Function {
    const char* name;
    const char* signature;
    ScriptFunction function;
};

Stage& stageOf(void* user)
{
    return *static_cast<Stage*>(user);
}

const Function functions[] = {
    {"place-count", "(:keyword -> :integer)",
     [](ScriptCall& call, void* stage) {
         call.returnInteger(static_cast<std::int64_t>(stageOf(stage).countPlaces(readName(call, 0))));
     }},
    {"place-x", "(:keyword -> :integer -> :float)",
     [](ScriptCall& call, void* stage) {
         call.returnFloat(stageOf(stage).getPlace(readName(call, 0), readNumber(call, 1)).x);
     }},
    {"place-y", "(:keyword -> :integer -> :float)",
     [](ScriptCall& call, void* stage) {
         call.returnFloat(stageOf(stage).getPlace(readName(call, 0), readNumber(call, 1)).y);
     }},
    {"place-z", "(:keyword -> :integer -> :float)",
     [](ScriptCall& call, void* stage) {
         call.returnFloat(stageOf(stage).getPlace(readName(call, 0), readNumber(call, 1)).z);
     }},
    {"place-turn", "(:keyword -> :integer -> :float)",
     [](ScriptCall& call, void* stage) {
         call.returnFloat(stageOf(stage).getTurn(readName(call, 0), readNumber(call, 1)));
     }},
    {"add-thing", "(:keyword -> :float -> :float -> :float -> :integer)",
     [](ScriptCall& call, void* stage) {
         call.returnInteger(stageOf(stage).addThing(readName(call, 0), readVector(call, 1)));
     }},
    {"move-thing", "(:integer -> :float -> :float -> :float -> :nil)",
     [](ScriptCall& call, void* stage) { stageOf(stage).moveThing(readThing(call, 0), readVector(call, 1)); }},
    {"remove-thing", "(:integer -> :nil)",
     [](ScriptCall& call, void* stage) { stageOf(stage).removeThing(readThing(call, 0)); }},
    {"clear-things", "(:nil)", [](ScriptCall&, void* stage) { stageOf(stage).clearThings(); }},
    {"thing-distance", "(:integer -> :float)",
     [](ScriptCall& call, void* stage) { call.returnFloat(stageOf(stage).getThingDistance(readThing(call, 0))); }},
    {"player-x", "(:float)", [](ScriptCall& call, void* stage) { call.returnFloat(stageOf(stage).getPlayer().x); }},
    {"player-y", "(:float)", [](ScriptCall& call, void* stage) { call.returnFloat(stageOf(stage).getPlayer().y); }},
    {"player-z", "(:float)", [](ScriptCall& call, void* stage) { call.returnFloat(stageOf(stage).getPlayer().z); }},
    {"put-player", "(:float -> :float -> :float -> :float -> :nil)",
     [](ScriptCall& call, void* stage) { stageOf(stage).putPlayer(readVector(call, 0), readFloat(call, 3)); }},
    {"aim-lamp", "(:integer -> :float -> :float -> :float -> :float -> :float -> :float -> :nil)",
     [](ScriptCall& call, void* stage) {
         stageOf(stage).aimLamp(readNumber(call, 0), readVector(call, 1), readVector(call, 4));
     }},
    {"lamp-sees-player?", "(:integer -> :boolean)",
     [](ScriptCall& call, void* stage) { call.returnBoolean(stageOf(stage).doesLampSeePlayer(readNumber(call, 0))); }},
    {"play-sound", "(:string -> :float -> :float -> :float -> :nil)",
     [](ScriptCall& call, void* stage) {
         stageOf(stage).playSound(std::string(call.getString(0)), readVector(call, 1));
     }},
    {"show-text", "(:keyword -> :string -> :nil)",
     [](ScriptCall& call, void* stage) { stageOf(stage).showText(readName(call, 0), call.getString(1)); }},
    {"set-dusk", "(:float -> :nil)", [](ScriptCall& call, void* stage) { stageOf(stage).setDusk(readFloat(call, 0)); }},
    {"sine", "(:float -> :float)", [](ScriptCall& call, void*) { call.returnFloat(std::sin(call.getFloat(0))); }},
    {"cosine", "(:float -> :float)", [](ScriptCall& call, void*) { call.returnFloat(std::cos(call.getFloat(0))); }},
};

} // namespace

GameScript::GameScript(Engine& engine, GameData& data, Stage& stage)
    : engine(engine), stage(stage), scripts(startScripts(engine, data))
{
    if (!scripts) throw Failure(ExitStatus::BrokenData, "not enough memory for scripts");
    setScriptPrint(scripts.get(), keepLine, this);
    registerFunctions(scripts.get(), stage);
    if (!run("(playing?)")) // they were not read, then
        throw Failure(ExitStatus::BrokenData, "the script lisp/game.lisp is wrong: " + problem);
}

void GameScript::registerFunctions(ScriptingDevice* device, Stage& actingStage)
{
    for (const Function& function : functions)
        registerScriptFunction(device, function.name, "", function.signature, function.function, &actingStage);
    const auto milliseconds = [](ScriptCall& call, void* frame) {
        call.returnInteger(*static_cast<const std::uint32_t*>(frame));
    };
    const auto seconds = [](ScriptCall& call, void* frame) {
        call.returnFloat(*static_cast<const std::uint32_t*>(frame) / 1000.0);
    };
    const auto wish = [](ScriptCall&, void* flag) { *static_cast<bool*>(flag) = true; };
    registerScriptFunction(device, "reload-rules", "", "(:nil)", wish, &wantsReload);
    registerScriptFunction(device, "frame-milliseconds", "", "(:integer)", milliseconds, &frameMilliseconds);
    registerScriptFunction(device, "frame-seconds", "", "(:float)", seconds, &frameMilliseconds);
}

bool GameScript::tick(std::uint32_t milliseconds)
{
    frameMilliseconds = milliseconds;
    return run("(tick)");
}

bool GameScript::isPlaying()
{
    ScriptValue playing;
    return evaluateScript(scripts.get(), "(playing?)", playing) && playing.getBoolean();
}

bool GameScript::reload()
{
    if (!tryRules()) return false;
    firstError.clear();
    scripts->evaluateScript("(define kept (game-snapshot))");
    if (!scripts->loadScript("game") && firstError.empty()) firstError = "it cannot be read";
    scripts->evaluateScript("(restore-game kept)");
    problem = firstError;
    return problem.empty();
}

/// On a device of their own: half of new rules with half of the old ones would be neither.
bool GameScript::tryRules()
{
    InertStage inert;
    const char* const boxes = std::getenv("XUM_MESSAGE_BOXES");
    const std::string setting = boxes != nullptr ? boxes : "1";
    setEnvironmentVariable("XUM_MESSAGE_BOXES", "0"); // the engine would stop the game to say that it read nothing
    const OwnedScripts trial(engine.createScriptingDevice(), {&engine});
    setEnvironmentVariable("XUM_MESSAGE_BOXES", setting.c_str());
    if (!trial) return true;
    setScriptPrint(trial.get(), keepLine, this);
    registerFunctions(trial.get(), inert);
    firstError.clear();
    if (!trial->loadScript("game") && firstError.empty()) firstError = "it cannot be read";
    problem = firstError;
    wantsReload = false; // whatever they wished for
    return problem.empty();
}

std::int64_t GameScript::countBytes()
{
    scripts->evaluateScript("(system-info)");
    return bytes;
}

bool GameScript::run(const char* text)
{
    firstError.clear();
    try {
        if (!scripts->evaluateScript(text) && firstError.empty()) firstError = "it cannot be read";
    } catch (const Failure& failure) { // of the stage: a sound that is not there
        firstError = failure.what();
    }
    problem = firstError;
    return problem.empty();
}

/// Scripts go on after an error, and so do their messages: the first one tells most.
void GameScript::keepLine(const char* line, void* user)
{
    auto& script = *static_cast<GameScript*>(user);
    const std::string text = line;
    if (script.firstError.empty() && text.rfind("error: ", 0) == 0) script.firstError = text;
    long long objects = 0;
    long long bytes = 0;
    if (std::sscanf(line, "garbage collector: %lld objects, %lld bytes", &objects, &bytes) == 2)
        script.bytes = bytes;
    else if (text.rfind("xum-lisp (", 0) != 0 && text != script.lastLine) // an error comes again in each frame
        getLog() << "script: " << (script.lastLine = text) << std::endl;
}
