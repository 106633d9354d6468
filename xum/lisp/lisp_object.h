#pragma once

#include <xum/lisp/lisp.h>

#include <cstring>

/// Making and copying objects. What makes something reports "error: out of memory!" itself and gives null or false.

/// Copies type, flag, type arguments and value, never the two stamps: the copy keeps its own age, or a collection in
/// the middle of an expression would free a fresh result.
inline void lisp_copy_value(lisp_object* target, const lisp_object* source)
{
    std::memcpy(static_cast<void*>(target), source, offsetof(lisp_object, lock_stamp));
}

inline void lisp_set_nil(lisp_interpreter* interpreter, lisp_object* result)
{
    lisp_copy_value(result, &interpreter->nil);
}

/// An object of the named type, built from `source` by the type's init; null for an unknown name, too.
lisp_object* lisp_create_object(lisp_interpreter* interpreter, const char* type_name, const void* source);

/// A new slot that holds a copy of the value.
lisp_object* lisp_copy_to_slot(lisp_interpreter* interpreter, const lisp_object* value);

/// An unbound symbol of that name that is entered nowhere.
lisp_object* lisp_make_symbol(lisp_interpreter* interpreter, lisp_name* name);

/// Zeroed, with room for `length` characters.
lisp_string* lisp_make_string(lisp_interpreter* interpreter, std::uint64_t length);
lisp_string* lisp_make_string(lisp_interpreter* interpreter, const char* text, std::uint64_t length);

/// A list record with `count` cells in one block, whose elements are still null.
lisp_list* lisp_make_list(lisp_interpreter* interpreter, std::uint64_t count);

/// Whether the value can never reach another object.
bool lisp_is_leaf(const lisp_object* object);

/// Results: each fills a record that the caller has.
void lisp_set_integer(lisp_interpreter* interpreter, lisp_object* result, std::int64_t value);
void lisp_set_float(lisp_interpreter* interpreter, lisp_object* result, double value);
void lisp_set_byte(lisp_interpreter* interpreter, lisp_object* result, std::uint8_t value);
void lisp_set_string(lisp_interpreter* interpreter, lisp_object* result, lisp_string* string);
bool lisp_set_text(lisp_interpreter* interpreter, lisp_object* result, const char* text, std::uint64_t length);
void lisp_set_keyword(lisp_interpreter* interpreter, lisp_object* result, lisp_string* name);
void lisp_set_symbol_value(lisp_interpreter* interpreter, lisp_object* result, lisp_symbol* symbol);

/// A list whose element type is given, or unset where `element` is null.
void lisp_set_list(lisp_interpreter* interpreter, lisp_object* result, lisp_list* list, lisp_type* element);

inline void lisp_set_boolean(lisp_interpreter* interpreter, lisp_object* result, bool value)
{
    lisp_copy_value(result, value ? &interpreter->boolean_true : &interpreter->boolean_false);
}

/// The number of elements of a list value.
inline std::uint64_t lisp_list_count(const lisp_object* object)
{
    return object->payload.list != nullptr ? object->payload.list->count : 0;
}
