#pragma once

#include <xum/lisp/lisp.h>

/// The registry of types. A type's name is its identity towards scripts; inside, types are compared as records.

struct lisp_type_parameter {
    lisp_type_parameter* next;
    lisp_string* name;
};

struct lisp_type {
    lisp_type* next; // newest first
    const char* name;
    std::uint8_t parameter_count;
    lisp_type_parameter* parameters;
    bool is_self_evaluating;
    bool (*init)(lisp_interpreter* interpreter, lisp_object* object, const void* source);
    void (*evaluate)(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                     const lisp_object* object);
    void (*release)(lisp_interpreter* interpreter, lisp_object* object);
    // Closures, kept outside of the slot heap; null where the type has no such converter.
    lisp_object* from_string;
    lisp_object* to_string;
    lisp_object* to_hash;

    lisp_kind kind;
    lisp_string* name_string;
    lisp_type_entry as_argument;      // this type as the argument of another, its own arguments unset
    lisp_type_entry* unset_arguments; // parameter_count entries that stand for ":any"
};

/// Enters a type under its name. `parameters` are keywords separated by single blanks. Absent converters take the
/// defaults; a converter object is copied. Null for a name of 128 characters or more, for more than 255 parameters,
/// and, reported, when memory runs out.
lisp_type* lisp_define_type(lisp_interpreter* interpreter, const char* name, const char* parameters,
                            void (*release)(lisp_interpreter* interpreter, lisp_object* object),
                            const lisp_object* from_string, const lisp_object* to_string, const lisp_object* to_hash);

/// Null for an unknown name.
lisp_type* lisp_find_type(lisp_interpreter* interpreter, const char* name);

/// At least four characters, none of the reserved words, and a keyword by its spelling.
bool lisp_is_type_name(const char* name, std::uint64_t length);

/// The fifteen built-in types with their converters, in their order; see lisp_value_types.cpp. False when memory runs
/// out.
bool lisp_define_built_in_types(lisp_interpreter* interpreter);

/// ":integer", "(:list :a)", "(:a -> :b)". Cut to `size`, always ended by a zero. The length that was written.
std::size_t lisp_write_entry(const lisp_interpreter* interpreter, const lisp_type_entry* entry, char* out,
                             std::size_t size);

/// The same for a value's type with its arguments; a closure is written as its signature.
std::size_t lisp_write_value_type(const lisp_interpreter* interpreter, const lisp_object* object, char* out,
                                  std::size_t size);
