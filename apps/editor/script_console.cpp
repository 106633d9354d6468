#include "script_console.h"

#include "environment.h"

#include <xum/lisp/script_host.h>
#include <xum/lisp/scripting_device.h>

#include <sstream>

namespace {

constexpr std::size_t mostLines = 1000;

Vector3<double> readVector(const ScriptCall& call, unsigned first)
{
    return {call.getFloat(first), call.getFloat(first + 1), call.getFloat(first + 2)};
}

std::string readText(const ScriptCall& call, unsigned argument)
{
    return std::string(call.getString(argument));
}

/// A number that scripts may have made negative; such a thing does not exist.
std::size_t readNumber(const ScriptCall& call, unsigned argument)
{
    const std::int64_t number = call.getInteger(argument);
    return number < 0 ? ~std::size_t{0} : static_cast<std::size_t>(number);
}

struct Function {
    const char* name;
    const char* signature;
    void (*function)(Editor& editor, ScriptCall& call);
};

const Function functions[] = {
    {"brush-count", "(:integer)",
     [](Editor& editor, ScriptCall& call) {
         call.returnInteger(static_cast<std::int64_t>(editor.getDocument().brushes.size()));
     }},
    {"add-box", "(:float -> :float -> :float -> :float -> :float -> :float -> :string -> :integer)",
     [](Editor& editor, ScriptCall& call) {
         bool isAdded = false;
         editor.edit([&](MapDocument& map) {
             isAdded = addBox(map, {readVector(call, 0), readVector(call, 3)}, readText(call, 6), editor.textureScale);
         });
         call.returnInteger(isAdded ? static_cast<std::int64_t>(editor.getDocument().brushes.size()) - 1 : -1);
     }},
    {"remove-brush", "(:integer -> :nil)",
     [](Editor& editor, ScriptCall& call) {
         editor.edit([&](MapDocument& map) { removeBrush(map, readNumber(call, 0)); });
     }},
    {"move-brush", "(:integer -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         bool isMoved = false;
         editor.edit([&](MapDocument& map) { isMoved = moveBrush(map, readNumber(call, 0), readVector(call, 1)); });
         call.returnBoolean(isMoved);
     }},
    {"resize-brush", "(:integer -> :float -> :float -> :float -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         bool isBox = false;
         editor.edit([&](MapDocument& map) {
             isBox = resizeBrush(map, readNumber(call, 0), {readVector(call, 1), readVector(call, 4)});
         });
         call.returnBoolean(isBox);
     }},
    {"texture-brush", "(:integer -> :string -> :nil)",
     [](Editor& editor, ScriptCall& call) {
         editor.edit([&](MapDocument& map) { setTexture(map, readNumber(call, 0), readText(call, 1)); });
     }},
    {"texture-side", "(:integer -> :integer -> :string -> :nil)",
     [](Editor& editor, ScriptCall& call) {
         editor.edit([&](MapDocument& map) {
             setSideTexture(map, readNumber(call, 0), readNumber(call, 1), readText(call, 2));
         });
     }},
    {"object-count", "(:integer)",
     [](Editor& editor, ScriptCall& call) {
         call.returnInteger(static_cast<std::int64_t>(editor.getDocument().entities.size()));
     }},
    {"add-object", "(:string -> :float -> :float -> :float -> :integer)",
     [](Editor& editor, ScriptCall& call) {
         editor.edit([&](MapDocument& map) { addEntity(map, readText(call, 0), readVector(call, 1)); });
         call.returnInteger(static_cast<std::int64_t>(editor.getDocument().entities.size()) - 1);
     }},
    {"remove-object", "(:integer -> :nil)",
     [](Editor& editor, ScriptCall& call) {
         editor.edit([&](MapDocument& map) { removeEntity(map, readNumber(call, 0)); });
     }},
    {"set-object", "(:integer -> :string -> :string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         bool isSet = false;
         editor.edit([&](MapDocument& map) {
             isSet = setEntityEntry(map, readNumber(call, 0), readText(call, 1), readText(call, 2));
         });
         call.returnBoolean(isSet);
     }},
    {"make-terrain", "(:integer -> :integer -> :integer -> :string -> :nil)",
     [](Editor& editor, ScriptCall& call) {
         const auto size = [&](unsigned argument) {
             const std::int64_t number = call.getInteger(argument);
             return static_cast<int>(number < 1 ? 1 : number > 1000 ? 1000 : number);
         };
         editor.edit([&](MapDocument& map) { setFlatTerrain(map, size(0), size(1), size(2), readText(call, 3)); });
     }},
    {"raise-terrain", "(:float -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         bool isChanged = false;
         const TerrainBrush brush = {TerrainChange::Raise, call.getFloat(2), call.getFloat(3)};
         editor.edit([&](MapDocument& map) {
             isChanged = shapeTerrain(map, brush, {call.getFloat(0), call.getFloat(1), 0}, 1);
         });
         call.returnBoolean(isChanged);
     }},
    {"smooth-terrain", "(:float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         bool isChanged = false;
         const TerrainBrush brush = {TerrainChange::Smooth, call.getFloat(2), 1};
         editor.edit([&](MapDocument& map) {
             isChanged = shapeTerrain(map, brush, {call.getFloat(0), call.getFloat(1), 0}, 1);
         });
         call.returnBoolean(isChanged);
     }},
    {"terrain-height", "(:float -> :float -> :float)",
     [](Editor& editor, ScriptCall& call) {
         call.returnFloat(findHeight(editor.getDocument(), call.getFloat(0), call.getFloat(1)).value_or(0));
     }},
    {"new-map", "(:nil)", [](Editor& editor, ScriptCall&) { editor.newMap(); }},
    {"open-map", "(:string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         if (editor.hasUnsavedChanges()) {
             editor.say("There are unsaved changes: (save-map \"\") or (new-map) comes first");
             call.returnBoolean(false);
             return;
         }
         call.returnBoolean(editor.open(readText(call, 0)));
     }},
    {"save-map", "(:string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         const std::string name = readText(call, 0);
         call.returnBoolean(name.empty() ? editor.save() : editor.saveAs(name));
     }},
    {"compile-map", "(:boolean)",
     [](Editor& editor, ScriptCall& call) {
         std::string fileName;
         call.returnBoolean(editor.compile(fileName));
     }},
    {"undo-edit", "(:nil)", [](Editor& editor, ScriptCall&) { editor.undo(); }},
    {"redo-edit", "(:nil)", [](Editor& editor, ScriptCall&) { editor.redo(); }},
    {"set-grid", "(:float -> :nil)",
     [](Editor& editor, ScriptCall& call) {
         const double grid = call.getFloat(0);
         if (grid >= 0 && grid <= 1000) editor.grid = grid;
     }},
    {"say", "(:string -> :nil)", [](Editor& editor, ScriptCall& call) { editor.say(readText(call, 0)); }},
};

/// What a registered function is called with.
struct Binding {
    Editor* editor;
    const Function* function;
};

void callFunction(ScriptCall& call, void* user)
{
    const auto& binding = *static_cast<const Binding*>(user);
    binding.function->function(*binding.editor, call);
}

void setCamera(ScriptCall& call, void* user)
{
    Viewpoint camera;
    const auto read = [&](unsigned argument) { return static_cast<float>(call.getFloat(argument)); };
    camera.position = {read(0), read(1), read(2)};
    camera.yaw = read(3);
    camera.pitch = read(4);
    const float sum = camera.position.x + camera.position.y + camera.position.z + camera.yaw + camera.pitch;
    if (sum - sum == 0) static_cast<Viewport*>(user)->setCamera(camera);
}

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
        for (std::size_t i = 0; i < value.getList().size(); ++i) text << (i > 0 ? " " : "") << describe(value.getList()[i]);
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
    setEnvironmentVariable("XUM_DATA_ROOT", data.getLocalRoot().c_str()); // there the engine looks for its scripts
    scripts.reset(engine.createScriptingDevice());
    if (!scripts) {
        print("There is not enough memory for scripts");
        return;
    }
    setScriptPrint(scripts.get(), keepLine, this);
    registerFunctions();
    reload();
}

void ScriptConsole::registerFunctions()
{
    static std::vector<Binding> bindings; // they live as long as the language does
    bindings.clear();
    for (const Function& function : functions) bindings.push_back({&editor, &function});
    for (Binding& binding : bindings) {
        const Function& function = *binding.function;
        if (!registerScriptFunction(scripts.get(), function.name, "", function.signature, callFunction, &binding))
            print(std::string("The function ") + function.name + " cannot be added to the language");
    }
    registerScriptFunction(scripts.get(), "set-camera", "", "(:float -> :float -> :float -> :float -> :float -> :nil)", setCamera,
                           &viewport);
}

void ScriptConsole::reload()
{
    if (scripts && !scripts->loadScript("editor-commands")) print("lisp/editor-commands.lisp cannot be read");
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
    lines.push_back(line);
    if (lines.size() > mostLines) lines.pop_front();
}
