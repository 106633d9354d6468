#pragma once

#include <xum/lisp/lisp.h>

#include <string>

/// Looks at everything that an interpreter keeps in its region, outside of any evaluation. The first violation of an
/// invariant in words; empty when all hold.
std::string lisp_check_heap(lisp_interpreter* interpreter);
