#pragma once

#include <xum/lisp/lisp.h>

/// Finds the named script on the load path that the environment means, strips its comments and evaluates it in the root
/// environment. True when every expression was read.
bool lisp_load(lisp_interpreter* interpreter, lisp_environment* environment, const char* name);

/// Removes comments in place: from each semicolon to the line feed behind it, both included, also inside strings.
void lisp_strip_comments(char* text);
