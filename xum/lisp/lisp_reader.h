#pragma once

#include <xum/lisp/lisp.h>
#include <xum/lisp/lisp_token.h>

/// From text to objects, one top-level expression at a time.

/// Reads the expression that begins at `offset` of a NUL-terminated text into the result. The offset behind it, -1 when
/// it ended the text, 0 on failure: what is wrong with an atom or a list is reported, an unreadable expression is not.
std::int64_t lisp_read(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                       const char* text, std::int64_t offset);

/// Reads and evaluates expression after expression. True when all were read; what stands before a failure stays
/// evaluated. `last`, where it is not null, gets the value of the last expression.
bool lisp_read_all(lisp_interpreter* interpreter, const char* text, lisp_environment* environment, std::int64_t offset,
                   lisp_object* last);

/// Why and where lisp_read would give 0 for the expression at `offset`, without reading it into objects; for tools.
struct lisp_check_result {
    std::int64_t next;  // as of lisp_read
    const char* reason; // null when the expression can be read
    std::uint64_t at;   // offset of the problem
};
lisp_check_result lisp_check_expression(const char* text, std::int64_t offset);
