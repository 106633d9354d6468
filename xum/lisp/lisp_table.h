#pragma once

#include <xum/lisp/lisp.h>

/// The payload of a `:hash-table`: a table from values to values. New entries stand at the head of their bucket.

struct lisp_table_entry {
    lisp_table_entry* next;
    std::uint64_t hash;
    bool is_removed; // from the table; a loop that is still at it goes on from here
    lisp_object key; // both are records of their own, in no slot
    lisp_object value;
};

struct lisp_table {
    std::uint64_t bucket_count;
    lisp_table_entry** buckets;
    std::uint64_t count;
    std::uint64_t trace_round; // of the collector's last visit
    lisp_table* next_to_trace;
};

/// Null, reported, when memory runs out.
lisp_table* lisp_table_make(lisp_interpreter* interpreter);

/// Null when there is no equal key, and for a key whose type has no hash.
lisp_table_entry* lisp_table_find(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_table* table,
                                  const lisp_object* key);

enum lisp_put_result { lisp_put_nothing, lisp_put_replaced, lisp_put_added };

/// Nothing is put when the key's type has no hash or memory runs out.
lisp_put_result lisp_table_put(lisp_interpreter* interpreter, lisp_environment* environment, lisp_table* table,
                               const lisp_object* key, const lisp_object* value);

/// A removed entry stays readable.
bool lisp_table_remove(lisp_interpreter* interpreter, lisp_environment* environment, lisp_table* table,
                       const lisp_object* key);
