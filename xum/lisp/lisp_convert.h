#pragma once

#include <xum/lisp/lisp.h>

/// Between values and text. Built-in types are converted directly; the closures in their type records call these too.

/// Parses decimal or hexadecimal text. Reports "error: hex value too large!" and "error: integer under/overflow!"; a
/// spelling that does not print back the same way (leading zeros, "-0") is an overflow, too.
bool lisp_parse_integer(lisp_interpreter* interpreter, const char* text, std::uint64_t length, std::int64_t* out);

/// The same without a report.
bool lisp_is_integer_text(const char* text, std::uint64_t length, std::int64_t* out);

/// What sscanf reads with "%lf" from a text with a zero behind it. False when that is nothing.
bool lisp_parse_float(const char* text, std::uint64_t length, double* out);

/// Converts text to a value of a built-in type. False, leaving the result, when the type has no such converter or the
/// text does not fit.
bool lisp_value_from_text(lisp_interpreter* interpreter, lisp_kind kind, const char* text, std::uint64_t length,
                          lisp_object* result);

/// The text of a value of a built-in type: what to-string gives. The text lies in the value itself or in the conversion
/// buffer and is good until the next conversion. False where the type yields nothing.
bool lisp_text_of_value(lisp_interpreter* interpreter, const lisp_object* value, const char** text,
                        std::uint64_t* length);

/// The hash of a value, with the converters of a user's type as well. False where the type yields nothing.
bool lisp_hash_of_value(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* value,
                        std::uint64_t* hash);

/// to-string and from-string as scripts see them. The result stays :nil where the type yields nothing.
void lisp_value_to_string(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* value,
                          lisp_object* result);
void lisp_value_from_string(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_type* type,
                            const lisp_object* text, lisp_object* result);

/// The same value: booleans, bytes and integers by value, floats as IEEE says, strings, keywords and symbols by their
/// bytes, anything else when it is the same record. Values of different types differ.
bool lisp_values_are_equal(const lisp_object* a, const lisp_object* b);

/// Whether the type's to-string is the default one: its name and an address.
bool lisp_has_default_to_string(const lisp_type* type);
