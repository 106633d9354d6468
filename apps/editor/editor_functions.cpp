#include "editor_functions.h"

#include <algorithm>

// The functions in the order in which docs/editor.md lists them. Numbers of brushes and objects count from 0.

namespace {

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

/// -1 for what does not exist.
std::int64_t toInteger(bool exists, std::size_t number)
{
    return exists ? static_cast<std::int64_t>(number) : -1;
}

/// Makes an edit and returns whether it was possible.
template <class Change>
void editAndTell(Editor& editor, ScriptCall& call, Change change)
{
    bool isDone = false;
    editor.edit([&](MapDocument& map) { isDone = change(map); });
    call.returnBoolean(isDone);
}

// ---- brushes --------------------------------------------------------------------------------------------------------

const EditorFunction brushFunctions[] = {
    {"brush-count", "(:integer)",
     [](Editor& editor, ScriptCall& call) {
         call.returnInteger(toInteger(true, editor.getDocument().brushes.size()));
     }},
    {"add-box", "(:float -> :float -> :float -> :float -> :float -> :float -> :string -> :integer)",
     [](Editor& editor, ScriptCall& call) {
         bool isAdded = false;
         editor.edit([&](MapDocument& map) {
             isAdded = addBox(map, {readVector(call, 0), readVector(call, 3)}, readText(call, 6), editor.textureScale);
         });
         call.returnInteger(toInteger(isAdded, editor.getDocument().brushes.size() - 1));
     }},
    {"remove-brush", "(:integer -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call, [&](MapDocument& map) { return removeBrush(map, readNumber(call, 0)); });
     }},
    {"move-brush", "(:integer -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call,
                     [&](MapDocument& map) { return moveBrush(map, readNumber(call, 0), readVector(call, 1)); });
     }},
    {"copy-brush", "(:integer -> :float -> :float -> :float -> :integer)",
     [](Editor& editor, ScriptCall& call) {
         bool isAdded = false;
         editor.edit(
             [&](MapDocument& map) { isAdded = duplicateBrush(map, readNumber(call, 0), readVector(call, 1)); });
         call.returnInteger(toInteger(isAdded, editor.getDocument().brushes.size() - 1));
     }},
    {"resize-brush", "(:integer -> :float -> :float -> :float -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call, [&](MapDocument& map) {
             return resizeBrush(map, readNumber(call, 0), {readVector(call, 1), readVector(call, 4)});
         });
     }},
    {"brush-box", "(:integer -> (:list :float))",
     [](Editor& editor, ScriptCall& call) {
         const std::size_t number = readNumber(call, 0);
         std::vector<ScriptValue> corners;
         if (number < editor.getDocument().brushes.size()) {
             const auto [from, to] = getBounds(editor.getDocument(), *editor.getDocument().brushes[number]);
             corners = {from.x, from.y, from.z, to.x, to.y, to.z};
         }
         call.returnValue(corners);
     }},
    {"texture-brush", "(:integer -> :string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call,
                     [&](MapDocument& map) { return setTexture(map, readNumber(call, 0), readText(call, 1)); });
     }},
    {"texture-side", "(:integer -> :integer -> :string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call, [&](MapDocument& map) {
             return setSideTexture(map, readNumber(call, 0), readNumber(call, 1), readText(call, 2));
         });
     }},
    {"repeat-texture", "(:integer -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call,
                     [&](MapDocument& map) { return setTextureScale(map, readNumber(call, 0), call.getFloat(1)); });
     }},
    {"set-solid", "(:integer -> :boolean -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call,
                     [&](MapDocument& map) { return setSolid(map, readNumber(call, 0), call.getBoolean(1)); });
     }},
};

// ---- objects --------------------------------------------------------------------------------------------------------

const EditorFunction objectFunctions[] = {
    {"object-count", "(:integer)",
     [](Editor& editor, ScriptCall& call) {
         call.returnInteger(toInteger(true, editor.getDocument().entities.size()));
     }},
    {"add-object", "(:string -> :float -> :float -> :float -> :integer)",
     [](Editor& editor, ScriptCall& call) {
         bool isAdded = false;
         editor.edit([&](MapDocument& map) { isAdded = addEntity(map, readText(call, 0), readVector(call, 1)); });
         call.returnInteger(toInteger(isAdded, editor.getDocument().entities.size() - 1));
     }},
    {"remove-object", "(:integer -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call, [&](MapDocument& map) { return removeEntity(map, readNumber(call, 0)); });
     }},
    {"move-object", "(:integer -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call,
                     [&](MapDocument& map) { return moveEntity(map, readNumber(call, 0), readVector(call, 1)); });
     }},
    {"set-object", "(:integer -> :string -> :string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call, [&](MapDocument& map) {
             return setEntityEntry(map, readNumber(call, 0), readText(call, 1), readText(call, 2));
         });
     }},
    {"object-entry", "(:integer -> :string -> :string)",
     [](Editor& editor, ScriptCall& call) {
         const auto& entities = editor.getDocument().entities;
         const std::size_t number = readNumber(call, 0);
         call.returnString(number < entities.size() ? getEntry(*entities[number], readText(call, 1)) : "");
     }},
};

// ---- what is selected -----------------------------------------------------------------------------------------------

const EditorFunction selectionFunctions[] = {
    {"selected-brush", "(:integer)",
     [](Editor& editor, ScriptCall& call) {
         call.returnInteger(toInteger(editor.hasBrush(), editor.getSelection().number));
     }},
    {"selected-object", "(:integer)",
     [](Editor& editor, ScriptCall& call) {
         call.returnInteger(toInteger(editor.hasEntity(), editor.getSelection().number));
     }},
    {"select-brush", "(:integer -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editor.selectBrush(readNumber(call, 0));
         call.returnBoolean(editor.hasBrush());
     }},
    {"select-object", "(:integer -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editor.selectEntity(readNumber(call, 0));
         call.returnBoolean(editor.hasEntity());
     }},
    {"select-nothing", "(:nil)", [](Editor& editor, ScriptCall&) { editor.selectNothing(); }},
};

// ---- terrain --------------------------------------------------------------------------------------------------------

void shapeForASecond(Editor& editor, ScriptCall& call, TerrainChange change, double radius, double strength,
                     double height = 0)
{
    const TerrainBrush brush = {change, radius, strength};
    const Vector3<double> at = {call.getFloat(0), call.getFloat(1), height};
    editAndTell(editor, call, [&](MapDocument& map) { return shapeTerrain(map, brush, at, 1); });
}

const EditorFunction terrainFunctions[] = {
    {"make-terrain", "(:integer -> :integer -> :integer -> :string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         const auto size = [&](unsigned argument) {
             return static_cast<int>(std::clamp<std::int64_t>(call.getInteger(argument), 1, 1000));
         };
         editAndTell(editor, call, [&](MapDocument& map) {
             return setFlatTerrain(map, size(0), size(1), size(2), readText(call, 3));
         });
     }},
    {"raise-terrain", "(:float -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         shapeForASecond(editor, call, TerrainChange::Raise, call.getFloat(2), call.getFloat(3));
     }},
    {"smooth-terrain", "(:float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         shapeForASecond(editor, call, TerrainChange::Smooth, call.getFloat(2), 1);
     }},
    {"flatten-terrain", "(:float -> :float -> :float -> :float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         shapeForASecond(editor, call, TerrainChange::Flatten, call.getFloat(2), 1, call.getFloat(3));
     }},
    {"terrain-height", "(:float -> :float -> :float)",
     [](Editor& editor, ScriptCall& call) {
         call.returnFloat(findHeight(editor.getDocument(), call.getFloat(0), call.getFloat(1)).value_or(0));
     }},
};

// ---- the map --------------------------------------------------------------------------------------------------------

/// Scripts do not answer questions: what would lose something is not done.
bool refuseToLose(Editor& editor)
{
    if (!editor.hasUnsavedChanges()) return false;
    editor.say("There are unsaved changes: (save-map \"\") or (revert-map) comes first");
    return true;
}

const EditorFunction mapFunctions[] = {
    {"new-map", "(:boolean)",
     [](Editor& editor, ScriptCall& call) {
         const bool isRefused = refuseToLose(editor);
         if (!isRefused) editor.newMap();
         call.returnBoolean(!isRefused);
     }},
    {"open-map", "(:string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         call.returnBoolean(!refuseToLose(editor) && editor.open(readText(call, 0)));
     }},
    {"save-map", "(:string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         const std::string name = readText(call, 0);
         call.returnBoolean(name.empty() ? editor.save() : editor.saveAs(name));
     }},
    {"revert-map", "(:nil)", [](Editor& editor, ScriptCall&) { editor.revert(); }},
    {"map-name", "(:string)", [](Editor& editor, ScriptCall& call) { call.returnString(editor.getFileName()); }},
    {"map-changed?", "(:boolean)",
     [](Editor& editor, ScriptCall& call) { call.returnBoolean(editor.hasUnsavedChanges()); }},
    {"set-title", "(:string -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         editAndTell(editor, call, [&](MapDocument& map) { return setTitle(map, readText(call, 0)); });
     }},
    {"compile-map", "(:boolean)",
     [](Editor& editor, ScriptCall& call) {
         std::string fileName;
         call.returnBoolean(editor.compile(fileName));
     }},
    {"undo-edit", "(:nil)", [](Editor& editor, ScriptCall&) { editor.undo(); }},
    {"redo-edit", "(:nil)", [](Editor& editor, ScriptCall&) { editor.redo(); }},
    {"get-grid", "(:float)", [](Editor& editor, ScriptCall& call) { call.returnFloat(editor.grid); }},
    {"set-grid", "(:float -> :boolean)",
     [](Editor& editor, ScriptCall& call) {
         const double grid = call.getFloat(0);
         const bool isGrid = grid >= 0 && grid <= 1000;
         if (isGrid) editor.grid = grid;
         call.returnBoolean(isGrid);
     }},
    {"say", "(:string -> :nil)", [](Editor& editor, ScriptCall& call) { editor.say(readText(call, 0)); }},
};

template <std::size_t count>
void append(std::vector<EditorFunction>& all, const EditorFunction (&functions)[count])
{
    all.insert(all.end(), std::begin(functions), std::end(functions));
}

} // namespace

const std::vector<EditorFunction>& getEditorFunctions()
{
    static const std::vector<EditorFunction> functions = [] {
        std::vector<EditorFunction> all;
        append(all, brushFunctions);
        append(all, objectFunctions);
        append(all, selectionFunctions);
        append(all, terrainFunctions);
        append(all, mapFunctions);
        return all;
    }();
    return functions;
}
