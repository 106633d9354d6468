#pragma once

#include <xum/lisp/lisp_stack.h>

/// Evaluation writes into a record that the caller has, in a frame for example; what fails leaves :nil there.

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
