#pragma once

#include <xum/lisp/lisp.h>

/// Macros: a body that is copied with substitutions and evaluated in place of the call.

struct lisp_macro {
    bool has_rest; // the last parameter takes all remaining arguments
    std::uint32_t parameter_count;
    lisp_name** parameters;
    lisp_list* body;
};

/// The `macro` form. What is wrong is reported, and the result stays :nil.
void lisp_make_macro(lisp_interpreter* interpreter, const lisp_list* parameters, lisp_list* body, lisp_object* result);

/// Expands a call, a list whose first element means the macro, into a list. False after a report.
bool lisp_expand_macro(lisp_interpreter* interpreter, lisp_environment* environment, lisp_macro* macro,
                       const lisp_list* call, lisp_object* result);
