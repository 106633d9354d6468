#pragma once

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/script_host.h>

/// Between the interpreter's records and what hosts see.

struct ScriptCall::State {
    lisp_interpreter* interpreter;
    const lisp_object* arguments;
    unsigned count;
    lisp_object* result;
};

ScriptValueType scriptTypeOf(const lisp_object& object);
ScriptValue scriptValueOf(const lisp_object& object);

/// Fills the result; false, leaving :nil, when memory runs out or the value has no counterpart.
bool setScriptValue(lisp_interpreter* interpreter, const ScriptValue& value, lisp_object* result);

/// The native function of all closures that hosts register.
void callHostFunction(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_closure* self,
                      lisp_object* arguments, std::uint32_t count, lisp_object* result);
