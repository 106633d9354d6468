#pragma once

#include <xum/lisp/lisp_object.h>

/// What bounds an evaluation: the value stack, on which calls keep their arguments, and the C stack, on which they
/// nest.

/// Reports a message and gives up the outermost expression.
void lisp_abandon(lisp_interpreter* interpreter, const char* message);

/// Reports that one of the two stacks is full. Cold, so that the way there does not slow the usual one down.
[[gnu::cold]] void lisp_abandon_recursion(lisp_interpreter* interpreter);

/// Whether the value stack has that many records left.
inline bool lisp_has_room(const lisp_interpreter* interpreter, std::uint64_t count)
{
    const std::uintptr_t top = reinterpret_cast<std::uintptr_t>(interpreter->stack_top);
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(interpreter->stack_end);
    return count * sizeof(lisp_object) <= end - top; // multiplying is cheaper than dividing the difference
}

/// Takes `count` records from the value stack, each :nil; null, reported once, when it is full. Give them back with
/// lisp_pop_frame.
inline lisp_object* lisp_push_frame(lisp_interpreter* interpreter, std::uint64_t count)
{
    if (!lisp_has_room(interpreter, count)) {
        lisp_abandon_recursion(interpreter);
        return nullptr;
    }
    lisp_object* frame = interpreter->stack_top;
    for (std::uint64_t i = 0; i < count; ++i) lisp_set_nil(interpreter, &frame[i]);
    interpreter->stack_top += count;
    return frame;
}

inline void lisp_pop_frame(lisp_interpreter* interpreter, lisp_object* frame)
{
    interpreter->stack_top = frame;
}

/// Whether the C stack has grown to its limit since the outermost evaluation; `here` is a variable of the caller's.
inline bool lisp_is_stack_deep_at(const lisp_interpreter* interpreter, const char* here)
{
    constexpr std::uint64_t limit = std::uint64_t{512} * 1024;
    const std::uintptr_t origin = reinterpret_cast<std::uintptr_t>(interpreter->stack_origin);
    const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(here);
    return (origin > place ? origin - place : place - origin) > limit;
}

/// The same for who calls this, reported once; false outside of an evaluation.
bool lisp_is_stack_deep(lisp_interpreter* interpreter);
