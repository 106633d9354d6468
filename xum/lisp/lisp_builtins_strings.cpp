#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_object.h>

#include <algorithm>

// Strings are immutable; the string itself is the result where nothing changes.

LISP_NATIVE(lisp_native_string_size)
{
    lisp_set_integer(interpreter, result, static_cast<std::int64_t>(arguments[0].payload.string->length));
}

/* How many characters a count means: none when it is negative, all when it is past the end. */
static std::uint64_t clamped(std::int64_t count, const lisp_string* string)
{
    if (count < 0) return 0;
    return std::min(static_cast<std::uint64_t>(count), string->length);
}

LISP_NATIVE(lisp_native_string_take)
{
    const lisp_string* string = arguments[1].payload.string;
    const std::uint64_t length = clamped(arguments[0].payload.integer, string);
    if (length == string->length)
        lisp_copy_value(result, &arguments[1]);
    else
        lisp_set_text(interpreter, result, string->characters, length);
}

LISP_NATIVE(lisp_native_string_drop)
{
    const lisp_string* string = arguments[1].payload.string;
    const std::uint64_t dropped = clamped(arguments[0].payload.integer, string);
    if (dropped == 0)
        lisp_copy_value(result, &arguments[1]);
    else
        lisp_set_text(interpreter, result, string->characters + dropped, string->length - dropped);
}

LISP_NATIVE(lisp_native_string_reverse)
{
    const lisp_string* string = arguments[0].payload.string;
    lisp_string* reversed = lisp_make_string(interpreter, string->length);
    if (reversed == nullptr) return;
    std::reverse_copy(string->characters, string->characters + string->length, reversed->characters);
    lisp_set_string(interpreter, result, reversed);
}
