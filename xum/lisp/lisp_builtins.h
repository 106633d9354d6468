#pragma once

#include <xum/lisp/lisp_closure.h>

/// The library that every interpreter starts with: 66 native closures, all constants, and five variables. The order of
/// the table is part of the language: it is the order of registration.

/// False when memory runs out.
bool lisp_define_builtins(lisp_interpreter* interpreter);

/// The table, for tools and tests.
const lisp_native_descriptor* lisp_builtins(std::size_t* count);

/// Binds a native closure to a constant symbol of the root environment. The closure, or null when its signature is
/// malformed or memory runs out.
lisp_closure* lisp_define_native(lisp_interpreter* interpreter, const lisp_native_descriptor* descriptor, void* user);

// Every native has the parameters of lisp_native; hardly one needs all of them.
#define LISP_NATIVE(name)                                                                                              \
    void name([[maybe_unused]] lisp_interpreter* interpreter, [[maybe_unused]] lisp_environment* environment,          \
              [[maybe_unused]] const lisp_closure* self, [[maybe_unused]] lisp_object* arguments,                      \
              [[maybe_unused]] std::uint32_t count, [[maybe_unused]] lisp_object* result)

// lisp_builtins_core.cpp
LISP_NATIVE(lisp_native_read);
LISP_NATIVE(lisp_native_eval);
LISP_NATIVE(lisp_native_load);
LISP_NATIVE(lisp_native_define);
LISP_NATIVE(lisp_native_define_constant);
LISP_NATIVE(lisp_native_get);
LISP_NATIVE(lisp_native_set);
LISP_NATIVE(lisp_native_do);
LISP_NATIVE(lisp_native_print);
LISP_NATIVE(lisp_native_display);
LISP_NATIVE(lisp_native_macro);
LISP_NATIVE(lisp_native_macro_expand);
LISP_NATIVE(lisp_native_closure);
LISP_NATIVE(lisp_native_if);
LISP_NATIVE(lisp_native_placeholder);
LISP_NATIVE(lisp_native_garbage_collection);
LISP_NATIVE(lisp_native_full_garbage_collection);
LISP_NATIVE(lisp_native_system_info);

// lisp_builtins_types.cpp
LISP_NATIVE(lisp_native_define_type);
LISP_NATIVE(lisp_native_type_list);
LISP_NATIVE(lisp_native_type_parameters);
LISP_NATIVE(lisp_native_type_of);
LISP_NATIVE(lisp_native_from_string);
LISP_NATIVE(lisp_native_to_string);
LISP_NATIVE(lisp_native_to_hash);
LISP_NATIVE(lisp_native_byte);

// lisp_builtins_lists.cpp
LISP_NATIVE(lisp_native_list);
LISP_NATIVE(lisp_native_cons);
LISP_NATIVE(lisp_native_head);
LISP_NATIVE(lisp_native_tail);
LISP_NATIVE(lisp_native_list_size);
LISP_NATIVE(lisp_native_list_reverse);
LISP_NATIVE(lisp_native_map);
LISP_NATIVE(lisp_native_map_with_index);
LISP_NATIVE(lisp_native_for_each);
LISP_NATIVE(lisp_native_for_each_with_index);

// lisp_builtins_strings.cpp
LISP_NATIVE(lisp_native_string_size);
LISP_NATIVE(lisp_native_string_take);
LISP_NATIVE(lisp_native_string_drop);
LISP_NATIVE(lisp_native_string_reverse);

// lisp_builtins_tables.cpp
LISP_NATIVE(lisp_native_array);
LISP_NATIVE(lisp_native_array_size);
LISP_NATIVE(lisp_native_array_get);
LISP_NATIVE(lisp_native_array_set);
LISP_NATIVE(lisp_native_hash_table);
LISP_NATIVE(lisp_native_hash_table_size);
LISP_NATIVE(lisp_native_hash_table_for_each);
LISP_NATIVE(lisp_native_hash_table_contains);
LISP_NATIVE(lisp_native_hash_table_get);
LISP_NATIVE(lisp_native_hash_table_put);
LISP_NATIVE(lisp_native_hash_table_remove);

// lisp_builtins_numbers.cpp
LISP_NATIVE(lisp_native_equal);
LISP_NATIVE(lisp_native_less);
LISP_NATIVE(lisp_native_bit_get);
LISP_NATIVE(lisp_native_bit_set);
LISP_NATIVE(lisp_native_bit_or);
LISP_NATIVE(lisp_native_bit_and);
LISP_NATIVE(lisp_native_bit_not);
LISP_NATIVE(lisp_native_bit_xor);
LISP_NATIVE(lisp_native_bit_shift);
LISP_NATIVE(lisp_native_add);
LISP_NATIVE(lisp_native_subtract);
LISP_NATIVE(lisp_native_multiply);
LISP_NATIVE(lisp_native_divide);
