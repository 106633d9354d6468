#include <xum/lisp/script_host_values.h>

#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_token.h>
#include <xum/lisp/lisp_type.h>

// Values are copied recursively; the depth is bounded, since a script can nest lists without end. So is the number of
// elements altogether, since lists that share their elements can stand for any number of them in little memory.
static constexpr int nestingLimit = 200;
static constexpr std::uint64_t elementLimit = 1000000;

/// Reaches into what hosts only read.
class ScriptValueAccess {
public:
    static ScriptValue make(ScriptValueType type) { return named(type, {}); }

    static ScriptValue named(ScriptValueType type, std::string text)
    {
        ScriptValue value;
        value.type = type;
        value.text = std::move(text);
        return value;
    }

    static ScriptValue counted(ScriptValueType type, std::int64_t integer)
    {
        ScriptValue value;
        value.type = type;
        value.integer = integer;
        return value;
    }
};

ScriptValue ScriptValue::keyword(std::string name)
{
    return ScriptValueAccess::named(ScriptValueType::Keyword, std::move(name));
}

ScriptValueType scriptTypeOf(const lisp_object& object)
{
    switch (object.type->kind) {
    case lisp_kind_nil: return ScriptValueType::Nil;
    case lisp_kind_boolean: return ScriptValueType::Boolean;
    case lisp_kind_byte: return ScriptValueType::Byte;
    case lisp_kind_integer: return ScriptValueType::Integer;
    case lisp_kind_float: return ScriptValueType::Float;
    case lisp_kind_string: return ScriptValueType::String;
    case lisp_kind_keyword: return ScriptValueType::Keyword;
    case lisp_kind_symbol: return ScriptValueType::Symbol;
    case lisp_kind_list: return ScriptValueType::List;
    default: return ScriptValueType::Other;
    }
}

static std::string_view textOf(const lisp_object& object)
{
    switch (object.type->kind) {
    case lisp_kind_string:
    case lisp_kind_keyword: return {object.payload.string->characters, object.payload.string->length};
    case lisp_kind_symbol: {
        const lisp_string& text = object.payload.symbol->name->text;
        return {text.characters, text.length};
    }
    default: return {};
    }
}

static ScriptValue valueOf(const lisp_object& object, int depth, std::uint64_t& elementsLeft)
{
    const ScriptValueType type = scriptTypeOf(object);
    switch (type) {
    case ScriptValueType::Boolean:
    case ScriptValueType::Byte:
    case ScriptValueType::Integer: return ScriptValueAccess::counted(type, object.payload.integer);
    case ScriptValueType::Float: return ScriptValue(object.payload.real);
    case ScriptValueType::String:
    case ScriptValueType::Keyword:
    case ScriptValueType::Symbol: return ScriptValueAccess::named(type, std::string(textOf(object)));
    case ScriptValueType::List: {
        const std::uint64_t count = lisp_list_count(&object);
        if (depth == nestingLimit || count > elementsLeft) return ScriptValueAccess::make(ScriptValueType::Other);
        elementsLeft -= count;
        std::vector<ScriptValue> elements;
        const lisp_cell* cell = count != 0 ? object.payload.list->first : nullptr;
        elements.reserve(count);
        for (std::uint64_t i = 0; i < count; ++i, cell = cell->next)
            elements.push_back(valueOf(*cell->element, depth + 1, elementsLeft));
        return ScriptValue(std::move(elements));
    }
    default: return ScriptValueAccess::make(type);
    }
}

ScriptValue scriptValueOf(const lisp_object& object)
{
    std::uint64_t elementsLeft = elementLimit;
    return valueOf(object, 0, elementsLeft);
}

static bool setValue(lisp_interpreter* interpreter, const ScriptValue& value, int depth, lisp_object* result);

static bool setList(lisp_interpreter* interpreter, const ScriptValue& value, int depth, lisp_object* result)
{
    if (depth == nestingLimit) return false;
    lisp_list* list = lisp_make_list(interpreter, value.getList().size());
    if (list == nullptr) return false;
    lisp_cell* cell = list->first;
    lisp_type* common = nullptr;
    bool isUniform = true;
    for (const ScriptValue& element : value.getList()) {
        lisp_object object;
        lisp_set_nil(interpreter, &object);
        if (!setValue(interpreter, element, depth + 1, &object)) return false;
        cell->element = lisp_copy_to_slot(interpreter, &object);
        if (cell->element == nullptr) return false;
        isUniform = isUniform && (cell == list->first || common == object.type);
        common = object.type;
        cell = cell->next;
    }
    lisp_set_list(interpreter, result, list, isUniform ? common : nullptr);
    return true;
}

static bool setKeyword(lisp_interpreter* interpreter, const std::string& text, lisp_object* result)
{
    if (!lisp_is_keyword_text(text.data(), text.size())) return false;
    lisp_name* name = lisp_intern(interpreter, text.data(), text.size());
    if (name == nullptr) return false;
    lisp_set_keyword(interpreter, result, &name->text);
    return true;
}

static bool setValue(lisp_interpreter* interpreter, const ScriptValue& value, int depth, lisp_object* result)
{
    switch (value.getType()) {
    case ScriptValueType::Nil: lisp_set_nil(interpreter, result); return true;
    case ScriptValueType::Boolean: lisp_set_boolean(interpreter, result, value.getBoolean()); return true;
    case ScriptValueType::Byte:
        lisp_set_byte(interpreter, result, static_cast<std::uint8_t>(value.getInteger()));
        return true;
    case ScriptValueType::Integer: lisp_set_integer(interpreter, result, value.getInteger()); return true;
    case ScriptValueType::Float: lisp_set_float(interpreter, result, value.getFloat()); return true;
    case ScriptValueType::String:
        return lisp_set_text(interpreter, result, value.getString().data(), value.getString().size());
    case ScriptValueType::Keyword: return setKeyword(interpreter, value.getString(), result);
    case ScriptValueType::List: return setList(interpreter, value, depth, result);
    default: return false;
    }
}

bool setScriptValue(lisp_interpreter* interpreter, const ScriptValue& value, lisp_object* result)
{
    if (setValue(interpreter, value, 0, result)) return true;
    lisp_set_nil(interpreter, result);
    return false;
}

// ---- calls --------------------------------------------------------------------------------------------------------

unsigned ScriptCall::getArgumentCount() const
{
    return state.count;
}

ScriptValueType ScriptCall::getType(unsigned argument) const
{
    return argument < state.count ? scriptTypeOf(state.arguments[argument]) : ScriptValueType::Nil;
}

std::int64_t ScriptCall::getInteger(unsigned argument) const
{
    switch (getType(argument)) {
    case ScriptValueType::Boolean:
    case ScriptValueType::Byte:
    case ScriptValueType::Integer: return state.arguments[argument].payload.integer;
    default: return 0;
    }
}

double ScriptCall::getFloat(unsigned argument) const
{
    return getType(argument) == ScriptValueType::Float ? state.arguments[argument].payload.real : 0.0;
}

bool ScriptCall::getBoolean(unsigned argument) const
{
    return getInteger(argument) != 0;
}

std::string_view ScriptCall::getString(unsigned argument) const
{
    return argument < state.count ? textOf(state.arguments[argument]) : std::string_view();
}

ScriptValue ScriptCall::getValue(unsigned argument) const
{
    return argument < state.count ? scriptValueOf(state.arguments[argument]) : ScriptValue();
}

void ScriptCall::returnInteger(std::int64_t value)
{
    lisp_set_integer(state.interpreter, state.result, value);
}

void ScriptCall::returnFloat(double value)
{
    lisp_set_float(state.interpreter, state.result, value);
}

void ScriptCall::returnBoolean(bool value)
{
    lisp_set_boolean(state.interpreter, state.result, value);
}

void ScriptCall::returnString(std::string_view value)
{
    lisp_set_text(state.interpreter, state.result, value.data(), value.size());
}

void ScriptCall::returnValue(const ScriptValue& value)
{
    setScriptValue(state.interpreter, value, state.result);
}
