#pragma once

#include <xum/lisp/lisp.h>

/// Evaluation writes into a record that the caller has; what fails leaves :nil there.

/// The value of the object in the environment. A null interpreter, object or environment is reported through the host's
/// error callback, "eval() -> funny parameters...", and leaves the result alone.
void lisp_eval(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
               const lisp_object* object);

/// The evaluate operations of the types.
void lisp_evaluate_to_itself(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                             const lisp_object* object);
void lisp_evaluate_symbol(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                          const lisp_object* object);
void lisp_evaluate_list(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                        const lisp_object* object);

/// Applies a closure to values: checks them as a call does, with the same messages, and calls it. The arguments are
/// copied first.
void lisp_apply(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
                const lisp_object* arguments, std::uint32_t count, lisp_object* result);

/// Takes `count` records from the value stack, each :nil; null, reported once, when it is full. Give them back with
/// lisp_pop_frame.
lisp_object* lisp_push_frame(lisp_interpreter* interpreter, std::uint64_t count);
void lisp_pop_frame(lisp_interpreter* interpreter, lisp_object* frame);

/// Reports a message and gives up the outermost expression.
void lisp_abandon(lisp_interpreter* interpreter, const char* message);

/// Whether the C stack has grown to its limit since the outermost evaluation; reported once.
bool lisp_is_stack_deep(lisp_interpreter* interpreter);
