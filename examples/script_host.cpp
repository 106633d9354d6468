// Scripts in a host: functions that the host adds, values in both directions, where output goes, and reloading.
// Usage: script_host [SCRIPT.lisp] [--frames N]; without a script it runs its own, without N ten frames.
#include <xum/xum.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

// What a frame does is the script's affair. Each begins with (sail); (status) tells how things stand.
const std::string ownScript = R"(
    (define speed 0.5)
    (define frames 0)
    (define sail (closure () (do
        (set! frames (+ frames 1))
        (move-ship! speed)
        (if (= frames 3) (request-reload) :nil)
        (if (= (ship-x) 2.0) (say "The ship is at" (ship-x) "after" frames "frames") :nil))))
    (define status (closure () (list :sailing (ship-x) frames))))";

struct Game {
    double shipX = 0.0;
    bool wantsReload = false;
    std::string scriptDirectory;
};

void print(const ScriptValue& value)
{
    switch (value.getType()) {
    case ScriptValueType::Boolean:
    case ScriptValueType::Byte:
    case ScriptValueType::Integer: std::cout << ' ' << value.getInteger(); break;
    case ScriptValueType::Float: std::cout << ' ' << value.getFloat(); break;
    case ScriptValueType::List:
        for (const ScriptValue& element : value.getList()) print(element);
        break;
    default: std::cout << ' ' << value.getString();
    }
}

Game& gameOf(void* user)
{
    return *static_cast<Game*>(user);
}

// The signature has been checked when a function is called: there is a float. What scripts see keeps its types, so
// numbers with a point stay floats.
void addFunctions(ScriptingDevice* scripts, Game* game)
{
    const auto moveShip = [](ScriptCall& call, void* user) { gameOf(user).shipX += call.getFloat(0); };
    const auto shipX = [](ScriptCall& call, void* user) { call.returnFloat(gameOf(user).shipX); };
    const auto requestReload = [](ScriptCall&, void* user) { gameOf(user).wantsReload = true; };
    const auto scriptDirectory = [](ScriptCall& call, void* user) { call.returnString(gameOf(user).scriptDirectory); };
    const auto say = [](ScriptCall& call, void*) {
        std::cout << "said:";
        for (unsigned i = 0; i < call.getArgumentCount(); ++i) print(call.getValue(i));
        std::cout << '\n';
    };
    registerScriptFunction(scripts, "move-ship!", "", "(:float -> :nil)", moveShip, game);
    registerScriptFunction(scripts, "ship-x", "", "(:float)", shipX, game);
    registerScriptFunction(scripts, "request-reload", "", "(:nil)", requestReload, game);
    registerScriptFunction(scripts, "script-directory", "", "(:string)", scriptDirectory, game);
    registerScriptFunction(scripts, "say", "", "(:any& -> :nil)", say, nullptr);
}

// Loading a script once more replaces what it defined; each name that was there is warned of.
bool loadGame(ScriptingDevice* scripts, const std::filesystem::path& script)
{
    return script.empty() ? scripts->evaluateScript(ownScript) : scripts->loadScript(script.stem().string());
}

int main(int argc, char** argv)
{
    std::filesystem::path script;
    int framesLeft = 10;
    for (int i = 1; i < argc; ++i) {
        if (std::string(argv[i]) == "--frames" && i + 1 < argc)
            framesLeft = std::atoi(argv[++i]);
        else
            script = argv[i];
    }

    Engine* engine = initEngine(false);
    if (engine == nullptr) return EXIT_FAILURE; // log.txt says why
    ScriptingDevice* scripts = engine->createScriptingDevice();
    setScriptPrint(
        scripts, [](const char* line, void*) { std::cout << "script: " << line << '\n'; }, nullptr);

    Game game;
    game.scriptDirectory = script.has_parent_path() ? script.parent_path().generic_string() + "/" : "./";
    addFunctions(scripts, &game);
    // A text costs memory of its scripts for good, so what runs often is short: a call.
    scripts->evaluateScript("(set! *load-path* (cons (script-directory) *load-path*))");
    bool isLoaded = loadGame(scripts, script);

    while (isLoaded && framesLeft-- > 0 && engine->update()) {
        scripts->evaluateScript("(sail)");
        if (!game.wantsReload) continue;
        game.wantsReload = false;
        std::cout << "reloading\n";
        isLoaded = loadGame(scripts, script);
    }

    ScriptValue status;
    if (isLoaded && evaluateScript(scripts, "(status)", status)) {
        std::cout << "status:";
        print(status);
        std::cout << '\n';
    } else {
        std::cerr << "Cannot run the script " << script.string() << '\n';
    }
    engine->destroyScriptingDevice(scripts);
    shutdownEngine(engine);
    return isLoaded ? EXIT_SUCCESS : EXIT_FAILURE;
}
