#pragma once

/// @file
/// What a host adds to the script language: functions of its own, values in both directions, and where output goes.

#include <xum/engine/export.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class ScriptingDevice;
class ScriptCall;

/// The types of the script language as hosts see them.
enum class ScriptValueType : int {
    Nil,     ///< :nil, which is no value
    Boolean, ///< :true or :false
    Byte,    ///< 0 to 255
    Integer, ///< 64 bits with a sign
    Float,   ///< 64 bits
    String,  ///< any bytes
    Keyword, ///< a name that stands for itself, with its colon: ":red"
    Symbol,  ///< a name that stands for something else
    List,    ///< elements, of different types as well
    Other,   ///< an array, a hash table, a closure, a macro, or a type that a script defined: not visible to hosts
};

/// A copy of a script value. Lists that nest deeper than 200 come out as Other at that depth, and so does each list
/// with which the copy would have more than 1,000,000 elements altogether.
class XUM_API ScriptValue {
public:
    /// :nil.
    ScriptValue() = default;

    /// Of the type that belongs to what is given. A C string ends with NUL and is not null.
    /// @{
    ScriptValue(bool value) : type(ScriptValueType::Boolean), integer(value ? 1 : 0) {}
    ScriptValue(int value) : type(ScriptValueType::Integer), integer(value) {}
    ScriptValue(std::int64_t value) : type(ScriptValueType::Integer), integer(value) {}
    ScriptValue(double value) : type(ScriptValueType::Float), real(value) {}
    ScriptValue(const char* value) : type(ScriptValueType::String), text(value) {}
    ScriptValue(std::string value) : type(ScriptValueType::String), text(std::move(value)) {}
    ScriptValue(std::vector<ScriptValue> values) : type(ScriptValueType::List), elements(std::move(values)) {}
    /// @}

    /// A keyword, with its colon: ":red".
    static ScriptValue keyword(std::string name);

    /// Says which of the other queries has something to tell.
    ScriptValueType getType() const { return type; }

    /// Of a Boolean (0 or 1), Byte or Integer; 0 for anything else.
    std::int64_t getInteger() const { return integer; }

    /// Whether getInteger gives another number than 0.
    bool getBoolean() const { return integer != 0; }

    /// Of a Float; 0 for anything else.
    double getFloat() const { return real; }

    /// Of a String, or the name of a Keyword or Symbol; empty for anything else.
    const std::string& getString() const { return text; }

    /// Of a List; empty for anything else.
    const std::vector<ScriptValue>& getList() const { return elements; }

private:
    friend class ScriptValueAccess;

    ScriptValueType type = ScriptValueType::Nil;
    std::int64_t integer = 0;
    double real = 0.0;
    std::string text;
    std::vector<ScriptValue> elements;
};

/// A call of a host's function: its checked arguments, counted from 0, and the value that it returns, :nil until one is
/// set. Good during the call only. Asking for what an argument is not gives 0, false or an empty text.
class XUM_API ScriptCall {
public:
    /// All arguments, those of a rest parameter included.
    unsigned getArgumentCount() const;

    /// Nil for an argument that there is not.
    ScriptValueType getType(unsigned argument) const;

    /// Of a boolean (0 or 1), byte or integer.
    std::int64_t getInteger(unsigned argument) const;

    /// Of a float alone: whole numbers are not converted.
    double getFloat(unsigned argument) const;

    /// Whether getInteger gives another number than 0.
    bool getBoolean(unsigned argument) const;

    /// Of a string, keyword or symbol. The characters belong to the interpreter.
    std::string_view getString(unsigned argument) const;

    /// A copy of any argument, the way to lists.
    ScriptValue getValue(unsigned argument) const;

    /// Set the value of the call; of several the last one counts. Texts are copied. A value that no script can have
    /// becomes :nil: a Symbol, an Other, a keyword that is none, lists nested more than 200 deep.
    /// @{
    void returnInteger(std::int64_t value);
    void returnFloat(double value);
    void returnBoolean(bool value);
    void returnString(std::string_view value);
    void returnValue(const ScriptValue& value);
    /// @}

    struct State; // the library's side of a call

    /// For the library, which alone has a State; that must live as long.
    explicit ScriptCall(State& state) : state(state) {}

private:
    State& state;
};

/// A host's function. An exception that it throws ends the evaluation and passes on to whoever started it.
using ScriptFunction = void (*)(ScriptCall& call, void* user);

/// Adds a function to the language, as a constant of the root environment. Its arguments and its result are checked by
/// the signature, such as "(:integer -> :string& -> :boolean)" with type variables "", or "(:a -> (:list :a))" with
/// "(:a)". Letter case of the name is ignored, as in scripts. False when the name is no symbol or is a constant
/// already, when the signature is malformed or names an unknown type, and without memory.
XUM_API bool registerScriptFunction(ScriptingDevice* device, const std::string& name, const std::string& typeVariables,
                                    const std::string& signature, ScriptFunction function, void* user);

/// ScriptingDevice::evaluateScript with the value of the text's last expression.
XUM_API bool evaluateScript(ScriptingDevice* device, const std::string& text, ScriptValue& outValue);

/// Gets each line that scripts print, without its end. An exception that it throws ends the evaluation and passes on to
/// whoever started it.
using ScriptPrintFunction = void (*)(const char* line, void* user);

/// Sends the output of scripts to a function of the host's; null sends it to standard output again. The reports of
/// collections and of files that were not found stay on standard output.
XUM_API void setScriptPrint(ScriptingDevice* device, ScriptPrintFunction function, void* user);
