#pragma once

#include <xum/lisp/lisp_hash_table.h>

/// Bindings of names. A look-up goes from the inside out and compares interned names; of the root it asks the name
/// itself, which knows what the root binds to it.

/// The root: no parent, 1000 buckets. False when memory runs out.
bool lisp_environment_start(lisp_interpreter* interpreter);

/// An environment of a closure inside `parent`. Null when memory runs out.
lisp_environment* lisp_environment_make(lisp_interpreter* interpreter, lisp_environment* parent);

/// The symbol that the name means in the environment: the innermost one; null when there is none.
inline lisp_object* lisp_find_symbol(const lisp_environment* environment, const lisp_name* name)
{
    for (; environment->parent != nullptr; environment = environment->parent)
        if (void* symbol = lisp_hash_table_get(&environment->table, name)) return static_cast<lisp_object*>(symbol);
    return name->root_symbol;
}

/// The value of the symbol that a symbol's name means; null when there is none.
inline const lisp_object* lisp_bound_value(const lisp_environment* environment, const lisp_object* symbol)
{
    const lisp_object* found = lisp_find_symbol(environment, symbol->payload.symbol->name);
    return found != nullptr ? found->payload.symbol->value : nullptr;
}

/// A symbol by its text; null also for a name that nobody has used yet.
lisp_object* lisp_find_symbol(lisp_interpreter* interpreter, const lisp_environment* environment, const char* name);

/// Stores a copy of the value in the symbol that the name means, or, with create_new or where there is none, in a new
/// symbol of this very environment. The symbol; null when memory runs out (reported). A null environment is reported
/// through the host's error callback, "lisp_set_symbol() -> null environment!", and gives null.
lisp_object* lisp_set_symbol(lisp_interpreter* interpreter, lisp_environment* environment, lisp_name* name,
                             const lisp_object* value, bool is_constant, bool create_new);

/// Overwrites the symbol's value record, which is made on the first store. False when memory runs out (reported).
bool lisp_store_value(lisp_interpreter* interpreter, lisp_symbol* symbol, const lisp_object* value);
