#pragma once

#include <xum/lisp/lisp.h>

/// djb2 over at most the first 32 characters, taken as signed: h * 33 + c, from 5381.
std::uint64_t lisp_string_hash(const char* text, std::uint64_t length);

/// The record of a text; made on its first use. Null when memory runs out.
lisp_name* lisp_intern(lisp_interpreter* interpreter, const char* text, std::uint64_t length);
lisp_name* lisp_intern(lisp_interpreter* interpreter, const char* text);

/// The record of a text that was interned before, else null.
lisp_name* lisp_find_name(const lisp_interpreter* interpreter, const char* text, std::uint64_t length);

/// Lays out the table of names; failing is fatal.
bool lisp_names_start(lisp_interpreter* interpreter);

/// False when memory runs out. A growing table takes more buckets as it fills; the order within a bucket is newest
/// first.
bool lisp_hash_table_init(lisp_hash_table* table, std::uint32_t bucket_count, bool is_growing,
                          lisp_interpreter* interpreter);

/// Replaces the value of an equal key, else adds an entry at the head of its bucket. False when memory runs out.
bool lisp_hash_table_put(lisp_hash_table* table, lisp_name* key, void* value);

/// Null when there is no such key.
inline void* lisp_hash_table_get(const lisp_hash_table* table, const lisp_name* key)
{
    const std::uint64_t bucket = table->bucket_count == 1 ? 0 : key->hash % table->bucket_count;
    for (const lisp_hash_entry* entry = table->buckets[bucket]; entry != nullptr; entry = entry->next)
        if (entry->key == key) return entry->value;
    return nullptr;
}

/// False when there was no such key.
bool lisp_hash_table_remove(lisp_hash_table* table, const lisp_name* key);
