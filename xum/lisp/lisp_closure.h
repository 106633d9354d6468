#pragma once

#include <xum/lisp/lisp.h>
#include <xum/lisp/lisp_signature.h>

/// Closures: native ones and those written in Lisp.

/// A native function. The arguments, all of them one after another also where the last parameter is a rest parameter,
/// are checked records on the value stack; the result holds :nil and is to be overwritten, or left where there is
/// nothing to return.
using lisp_native = void (*)(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_closure* self,
                             lisp_object* arguments, std::uint32_t count, lisp_object* result);

struct lisp_closure_parameter {
    lisp_name* name;
    lisp_object* symbol; // what the closure's own environment binds to the name; null before the first call
};

/// How an argument is checked against a parameter without looking at the entry.
enum lisp_check_form : std::uint8_t {
    lisp_check_nothing,
    lisp_check_type,     // the same type record
    lisp_check_variable, // the number of a type variable
    lisp_check_entry,    // whatever the entry says
};

struct lisp_check {
    lisp_check_form form;
    std::uint8_t variable;
    const lisp_type* type;
};

/// The natives that the evaluator knows: `if` and `do`, whose last operand it evaluates in place of the call, and those
/// that it computes itself when they have two integers.
enum lisp_special : std::uint8_t {
    lisp_special_none,
    lisp_special_if,
    lisp_special_do,
    lisp_special_add,
    lisp_special_subtract,
    lisp_special_multiply,
    lisp_special_less,
    lisp_special_equal,
};

struct lisp_closure {
    lisp_name* name; // null until a definition names it
    lisp_native native;
    void* user; // of a host's native
    lisp_closure_parameter* parameters;
    lisp_list* body;
    lisp_environment* environment; // of a Lisp closure; its parent is where the closure was made
    lisp_string* signature;        // as printed
    lisp_signature signature_entries;
    lisp_check* checks; // one a parameter
    std::uint32_t least_arguments;
    std::uint32_t most_arguments;
    bool has_plain_checks;    // none of them needs bindings
    bool has_variable_checks; // nothing but type variables: arguments of one type always match
    bool returns_anything;    // nothing to check behind the call
    bool has_plain_return;    // the return entry holds no type variable
    bool is_trusted;          // a native of our own keeps its return type
    lisp_special special;
    std::uint8_t variable_count;
    char variables[27];
    lisp_list* bounds;         // of the type variables; kept, not consulted
    std::uint64_t trace_round; // of the collector's last visit
};

/// What a native closure is made from.
struct lisp_native_descriptor {
    const char* name;
    const char* variables; // "(:a :b)" or empty
    const char* signature;
    lisp_native native;
};

/// Null when the signature is malformed or memory runs out.
lisp_closure* lisp_make_native_closure(lisp_interpreter* interpreter, const lisp_native_descriptor* descriptor,
                                       void* user);

void lisp_set_closure(lisp_interpreter* interpreter, lisp_object* result, lisp_closure* closure);

/// The `closure` form: the list of parameters and the `count` expressions behind it, unevaluated. What is wrong is
/// reported, and the result stays :nil.
void lisp_make_closure(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_list* parameters,
                       const lisp_object* items, std::uint32_t count, lisp_object* result);
