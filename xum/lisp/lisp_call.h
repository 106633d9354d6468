#pragma once

#include <xum/lisp/lisp_closure.h>

/// The steps of a call: counting, checking, binding, returning.

/// "error: wrong number of parameters!"
void lisp_report_argument_count(lisp_interpreter* interpreter);

/// False after a report when the closure does not take as many arguments.
inline bool lisp_check_argument_count(lisp_interpreter* interpreter, const lisp_closure* closure, std::uint64_t count)
{
    if (count >= closure->least_arguments && count <= closure->most_arguments) return true;
    lisp_report_argument_count(interpreter);
    return false;
}

/// Checks the arguments against the closure's parameters. False after a report: a line that names the closure, one for
/// each argument that does not match, and what the type variables were bound to.
bool lisp_check_arguments(lisp_interpreter* interpreter, const lisp_closure* closure, const lisp_object* arguments,
                          std::uint32_t count);

/// Binds the type variables to those of checked arguments.
void lisp_bind_types(const lisp_closure* closure, const lisp_object* arguments, std::uint32_t count,
                     lisp_bindings* bindings);

/// Copies the arguments into the closure's own environment, where they stay behind the call. A rest parameter gets a
/// list. False when memory runs out.
bool lisp_bind_parameters(lisp_interpreter* interpreter, lisp_closure* closure, const lisp_object* arguments,
                          std::uint32_t count);

/// Evaluates the expressions of the body one after another into the result.
void lisp_evaluate_body(lisp_interpreter* interpreter, lisp_closure* closure, lisp_object* result);

/// Checks the result against the return type, reports "error: return type check failed!" and puts :nil in its place.
/// :nil passes everything. Without bindings the return type holds no variable.
void lisp_check_return(lisp_interpreter* interpreter, const lisp_closure* closure, lisp_bindings* bindings,
                       lisp_object* result);

/// The same for a host's native, whose arguments are still there.
void lisp_check_native_return(lisp_interpreter* interpreter, const lisp_closure* closure, const lisp_object* arguments,
                              std::uint32_t count, lisp_object* result);

/// Calls a closure with checked arguments, which lie on the value stack.
void lisp_call(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
               lisp_object* arguments, std::uint32_t count, lisp_object* result);

/// Applies a closure to values: checks them as a call does, with the same messages, and calls it. The arguments are
/// copied first.
void lisp_apply(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
                const lisp_object* arguments, std::uint32_t count, lisp_object* result);

/// Gives the list value a record of its own, with the same cells, that is marked quoted. False when memory runs out.
bool lisp_quote_list(lisp_interpreter* interpreter, lisp_object* list);
