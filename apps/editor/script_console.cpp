#include "script_console.h"

#include "failure.h"

#include <xum/lisp/scripting_device.h>

#include <cmath>
#include <sstream>

namespace {

constexpr std::size_t mostLines = 1000;

void callFunction(ScriptCall& call, void* user)
{
    const auto& binding = *static_cast<const ScriptConsole::Binding*>(user);
    binding.function->function(*binding.editor, call);
}

void setCamera(ScriptCall& call, void* user)
{
    Viewpoint camera;
    const auto read = [&](unsigned argument) { return static_cast<float>(call.getFloat(argument)); };
    camera.position = {read(0), read(1), read(2)};
    camera.yaw = read(3);
    camera.pitch = read(4);
    const bool isFinite =
        std::isfinite(camera.position.x + camera.position.y + camera.position.z + camera.yaw + camera.pitch);
    if (isFinite) static_cast<Viewport*>(user)->setCamera(camera);
    call.returnBoolean(isFinite);
}

void lookAtSelection(ScriptCall&, void* user)
{
    static_cast<Viewport*>(user)->showSelection();
}

/// As the language writes it.
std::string describe(const ScriptValue& value)
{
    std::ostringstream text;
    switch (value.getType()) {
    case ScriptValueType::Nil: return ":nil";
    case ScriptValueType::Boolean: return value.getBoolean() ? ":true" : ":false";
    case ScriptValueType::Byte:
    case ScriptValueType::Integer: return std::to_string(value.getInteger());
    case ScriptValueType::Float: text << value.getFloat(); return text.str();
    case ScriptValueType::String: return '"' + value.getString() + '"';
    case ScriptValueType::Keyword:
    case ScriptValueType::Symbol: return value.getString();
    case ScriptValueType::List:
        text << '(';
        for (std::size_t i = 0; i < value.getList().size(); ++i)
            text << (i > 0 ? " " : "") << describe(value.getList()[i]);
        text << ')';
        return text.str();
    case ScriptValueType::Other: break;
    }
    return "something else";
}

} // namespace

ScriptConsole::ScriptConsole(Engine& engine, GameData& data, Editor& editor, Viewport& viewport)
    : editor(editor), viewport(viewport), scripts(nullptr, {&engine})
{
    try {
        data.read(data.getFileName(scriptDirectory, "editor-commands.lisp"));
        scripts = startScripts(engine, data);
    } catch (const Failure& failure) {
        print(std::string("There are no scripts: ") + failure.what());
        return;
    }
    if (!scripts) {
        print("There are no scripts: not enough memory");
        return;
    }
    setScriptPrint(scripts.get(), keepLine, this);
    registerFunctions();
    reload();
}

ScriptConsole::~ScriptConsole() = default;

void ScriptConsole::registerFunctions()
{
    const auto add = [this](const char* name, const char* signature, ScriptFunction function, void* user) {
        if (!registerScriptFunction(scripts.get(), name, "", signature, function, user))
            print(std::string("The function ") + name + " cannot be added to the language");
    };
    for (const EditorFunction& function : getEditorFunctions()) bindings.push_back({&editor, &function});
    for (Binding& binding : bindings) add(binding.function->name, binding.function->signature, callFunction, &binding);
    add("set-camera", "(:float -> :float -> :float -> :float -> :float -> :boolean)", setCamera, &viewport);
    add("look-at-selection", "(:nil)", lookAtSelection, &viewport);
}

void ScriptConsole::reload()
{
    if (!scripts) return;
    if (scripts->loadScript("editor-commands"))
        print("Loaded lisp/editor-commands.lisp");
    else
        print("lisp/editor-commands.lisp cannot be read to its end");
}

void ScriptConsole::run(const std::string& text)
{
    print("> " + text);
    if (typed.empty() || typed.back() != text) typed.push_back(text);
    if (typed.size() > mostLines) typed.pop_front();
    if (!scripts) return;
    ScriptValue value;
    editor.beginStep();
    if (!evaluateScript(scripts.get(), text, value))
        print("This is no whole expression");
    else if (value.getType() != ScriptValueType::Nil)
        print(describe(value));
    editor.endStep();
}

void ScriptConsole::keepLine(const char* line, void* console)
{
    static_cast<ScriptConsole*>(console)->print(line);
}

void ScriptConsole::print(const std::string& line)
{
    ++lineCount;
    lines.push_back(line);
    if (lines.size() > mostLines) lines.pop_front();
}
