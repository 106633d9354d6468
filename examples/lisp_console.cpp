// The script language, line by line: what is typed is evaluated, what comes of it is printed. Two functions are the
// host's own: (roll SIDES) throws a die, (quit) ends.
#include <xum/xum.h>

#include <cstdlib>
#include <iostream>

namespace {

std::string describe(const ScriptValue& value)
{
    switch (value.getType()) {
    case ScriptValueType::Nil: return ":nil";
    case ScriptValueType::Boolean: return value.getBoolean() ? ":true" : ":false";
    case ScriptValueType::Byte:
    case ScriptValueType::Integer: return std::to_string(value.getInteger());
    case ScriptValueType::Float: return std::to_string(value.getFloat());
    case ScriptValueType::String: return "\"" + value.getString() + "\"";
    case ScriptValueType::List: {
        std::string text;
        for (const ScriptValue& element : value.getList()) text += (text.empty() ? "" : " ") + describe(element);
        return "(" + text + ")";
    }
    case ScriptValueType::Other: return "something that hosts do not see";
    default: return value.getString(); // a keyword or a symbol
    }
}

// The interpreter has checked the arguments by the signature below: there is one integer.
void roll(ScriptCall& call, void*)
{
    const std::int64_t sides = call.getInteger(0);
    call.returnInteger(sides < 1 ? 0 : 1 + randomByte() % sides);
}

void quit(ScriptCall&, void* goesOn)
{
    *static_cast<bool*>(goesOn) = false;
}

} // namespace

int main()
{
    Engine* engine = initEngine(false);
    if (engine == nullptr) return EXIT_FAILURE; // log.txt says why
    ScriptingDevice* scripts = engine->createScriptingDevice();
    bool goesOn = true;
    registerScriptFunction(scripts, "roll", "", "(:integer -> :integer)", roll, nullptr);
    registerScriptFunction(scripts, "quit", "", "(:nil)", quit, &goesOn);

    // What scripts display, and what is wrong with them, comes here line by line.
    setScriptPrint(
        scripts, [](const char* line, void*) { std::cout << "; " << line << '\n'; }, nullptr);

    std::string line;
    while (goesOn && std::cout << "> " << std::flush && std::getline(std::cin, line)) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        ScriptValue value;
        if (evaluateScript(scripts, line, value))
            std::cout << describe(value) << '\n';
        else
            std::cout << "cannot read that\n";
    }
    engine->destroyScriptingDevice(scripts);
    shutdownEngine(engine);
}
