#pragma once

#include <xum/lisp/lisp.h>

/// Writes the object as one line behind the prefix: its type and, for atoms, its text. Elements are not written.
void lisp_print(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* object,
                const char* prefix);
