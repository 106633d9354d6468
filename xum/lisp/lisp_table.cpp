#include <xum/lisp/lisp_table.h>

#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>

static constexpr std::uint64_t first_bucket_count = 16;

lisp_table* lisp_table_make(lisp_interpreter* interpreter)
{
    lisp_table* table = lisp_allocate_record<lisp_table>(interpreter);
    lisp_table_entry** buckets = lisp_allocate_elements<lisp_table_entry*>(interpreter, first_bucket_count);
    if (table == nullptr || buckets == nullptr) {
        lisp_out_of_memory(interpreter);
        return nullptr;
    }
    *table = {first_bucket_count, buckets, 0, 0, nullptr};
    return table;
}

static lisp_table_entry** bucket_of(const lisp_table* table, std::uint64_t hash)
{
    return &table->buckets[hash & (table->bucket_count - 1)];
}

static lisp_table_entry** find_link(const lisp_table* table, std::uint64_t hash, const lisp_object* key)
{
    lisp_table_entry** link = bucket_of(table, hash);
    while (*link != nullptr && ((*link)->hash != hash || !lisp_values_are_equal(&(*link)->key, key)))
        link = &(*link)->next;
    return link;
}

lisp_table_entry* lisp_table_find(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_table* table,
                                  const lisp_object* key)
{
    std::uint64_t hash = 0;
    if (!lisp_hash_of_value(interpreter, environment, key, &hash)) return nullptr;
    return *find_link(table, hash, key);
}

/* Old buckets stay behind in the byte area. The order within a bucket is kept by moving the entries from its end. */
static void append_reversed(lisp_table* table, lisp_table_entry* entry)
{
    lisp_table_entry* reversed = nullptr;
    while (entry != nullptr) {
        lisp_table_entry* next = entry->next;
        entry->next = reversed;
        reversed = entry;
        entry = next;
    }
    while (reversed != nullptr) {
        lisp_table_entry* next = reversed->next;
        lisp_table_entry** bucket = bucket_of(table, reversed->hash);
        reversed->next = *bucket;
        *bucket = reversed;
        reversed = next;
    }
}

/* Without memory the chains just grow longer. */
static void grow(lisp_interpreter* interpreter, lisp_table* table)
{
    const std::uint64_t count = table->bucket_count * 4;
    lisp_table_entry** buckets = lisp_allocate_elements<lisp_table_entry*>(interpreter, count);
    if (buckets == nullptr) return;
    lisp_table larger = {count, buckets, table->count, table->trace_round, nullptr};
    for (std::uint64_t i = 0; i < table->bucket_count; ++i) append_reversed(&larger, table->buckets[i]);
    *table = larger;
}

lisp_put_result lisp_table_put(lisp_interpreter* interpreter, lisp_environment* environment, lisp_table* table,
                               const lisp_object* key, const lisp_object* value)
{
    std::uint64_t hash = 0;
    if (!lisp_hash_of_value(interpreter, environment, key, &hash)) return lisp_put_nothing;
    if (lisp_table_entry* known = *find_link(table, hash, key)) {
        lisp_copy_value(&known->value, value);
        return lisp_put_replaced;
    }
    // A loop over the table that is running holds places in its buckets.
    if (table->count >= table->bucket_count && interpreter->tables_in_use == 0) grow(interpreter, table);
    lisp_table_entry* entry = lisp_allocate_record<lisp_table_entry>(interpreter);
    if (entry == nullptr) {
        lisp_out_of_memory(interpreter);
        return lisp_put_nothing;
    }
    lisp_table_entry** bucket = bucket_of(table, hash);
    *entry = {*bucket, hash, false, *key, *value};
    *bucket = entry;
    ++table->count;
    return lisp_put_added;
}

bool lisp_table_remove(lisp_interpreter* interpreter, lisp_environment* environment, lisp_table* table,
                       const lisp_object* key)
{
    std::uint64_t hash = 0;
    if (!lisp_hash_of_value(interpreter, environment, key, &hash)) return false;
    lisp_table_entry** link = find_link(table, hash, key);
    if (*link == nullptr) return false;
    (*link)->is_removed = true;
    *link = (*link)->next;
    --table->count;
    return true;
}
