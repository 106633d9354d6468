#pragma once

#include <xum/lisp/lisp.h>

/// Signature texts: "(:a -> (:list :a)& -> :any* -> :a)". Entries separated by " -> ", the last one the return type;
/// the marks "&" (rest: the last parameter takes all remaining arguments as a list) and "*" (lazy: the argument is
/// passed unevaluated) stand behind a parameter's type.

constexpr std::uint32_t lisp_parameter_limit = 64;
constexpr std::uint32_t lisp_type_depth_limit = 32;

struct lisp_signature {
    std::uint8_t entry_count; // the parameters and the return type
    lisp_type_entry* entries;
    bool has_rest;
    std::uint64_t lazy; // one bit a parameter
};

/// Parses a signature. False when it is malformed, names an unknown type, has a rest mark before the last parameter or
/// more than 64 parameters, none of which is reported, or when memory runs out, which is.
bool lisp_parse_signature(lisp_interpreter* interpreter, const char* text, lisp_signature* out);

/// Parses one type, "(:array :integer)". As above.
bool lisp_parse_type(lisp_interpreter* interpreter, const char* text, lisp_type_entry* out);

/// The bindings of a call's type variables: a slot each, and one that undeclared letters share.
struct lisp_bindings {
    const char* letters; // of the closure
    std::uint32_t count;
    const lisp_type* types[27]; // null: not bound; [count] is the shared slot
    bool is_lenient[27];
};

void lisp_bindings_init(lisp_bindings* bindings, const lisp_closure* closure);

/// What a letter is bound to, or null.
const lisp_type* lisp_bound_type(const lisp_bindings* bindings, char letter);

/// Checks one value against a declared entry. `lenient`: at or behind a rest parameter, where a differing binding is
/// dropped instead of failing.
bool lisp_match_value(lisp_bindings* bindings, const lisp_type_entry* declared, const lisp_object* actual,
                      bool lenient);

/// The check behind it, for a type and its arguments. Strict: inside a closure's signature, where nothing is lenient.
bool lisp_match_type(lisp_bindings* bindings, const lisp_type_entry* declared, const lisp_type_entry* actual,
                     bool lenient, bool strict);
