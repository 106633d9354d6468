#pragma once

#include <xum/lisp/lisp.h>

/// Marks what the symbols of the environment reach, keeps what is locked and what locked objects and running
/// evaluations reach, frees every other slot, and prints one line about it to standard output.
void lisp_collect_garbage(lisp_heap* heap, lisp_environment* roots);

/// The number of places of the work list for a region of that size.
std::uint64_t lisp_mark_stack_size(std::uint64_t region_size);
