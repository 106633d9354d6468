#include <xum/lisp/lisp_hash_table.h>

#include <xum/lisp/lisp_memory.h>

#include <cstring>

static constexpr std::uint64_t hashed_characters = 32;

std::uint64_t lisp_string_hash(const char* text, std::uint64_t length)
{
    std::uint64_t hash = 5381;
    const std::uint64_t count = length < hashed_characters ? length : hashed_characters;
    for (std::uint64_t i = 0; i < count; ++i)
        hash = hash * 33 + static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<signed char>(text[i])));
    return hash;
}

bool lisp_names_start(lisp_interpreter* interpreter)
{
    interpreter->name_bucket_count = 1024;
    interpreter->names = lisp_allocate_elements_no_fail<lisp_name*>(interpreter, interpreter->name_bucket_count);
    return interpreter->names != nullptr;
}

static lisp_name* find_name(const lisp_interpreter* interpreter, const char* text, std::uint64_t length,
                            std::uint64_t hash)
{
    lisp_name* name = interpreter->names[hash & (interpreter->name_bucket_count - 1)];
    for (; name != nullptr; name = name->next)
        if (name->hash == hash && name->text.length == length && std::memcmp(name->text.characters, text, length) == 0)
            return name;
    return nullptr;
}

lisp_name* lisp_find_name(const lisp_interpreter* interpreter, const char* text, std::uint64_t length)
{
    return find_name(interpreter, text, length, lisp_string_hash(text, length));
}

/* The old buckets stay behind in the byte area: eightfold growth keeps what is lost below what is in use. Without
   memory the chains just grow longer. */
static void grow_names(lisp_interpreter* interpreter)
{
    const std::uint64_t count = interpreter->name_bucket_count * 8;
    lisp_name** buckets = lisp_allocate_elements<lisp_name*>(interpreter, count);
    if (buckets == nullptr) return;
    for (std::uint64_t i = 0; i < interpreter->name_bucket_count; ++i) {
        while (lisp_name* name = interpreter->names[i]) {
            interpreter->names[i] = name->next;
            name->next = buckets[name->hash & (count - 1)];
            buckets[name->hash & (count - 1)] = name;
        }
    }
    interpreter->names = buckets;
    interpreter->name_bucket_count = count;
}

lisp_name* lisp_intern(lisp_interpreter* interpreter, const char* text, std::uint64_t length)
{
    const std::uint64_t hash = lisp_string_hash(text, length);
    if (lisp_name* name = find_name(interpreter, text, length, hash)) return name;

    if (interpreter->name_count > interpreter->name_bucket_count * 2) grow_names(interpreter);
    lisp_name* name = static_cast<lisp_name*>(lisp_allocate(interpreter, sizeof(lisp_name) + length + 1));
    if (name == nullptr) return nullptr;
    char* characters = reinterpret_cast<char*>(name + 1);
    std::memcpy(characters, text, length);
    characters[length] = '\0';
    name->hash = hash;
    name->root_symbol = nullptr;
    name->carrier = nullptr;
    name->text = {length, length, characters};
    lisp_name** bucket = &interpreter->names[hash & (interpreter->name_bucket_count - 1)];
    name->next = *bucket;
    *bucket = name;
    ++interpreter->name_count;
    return name;
}

lisp_name* lisp_intern(lisp_interpreter* interpreter, const char* text)
{
    return lisp_intern(interpreter, text, std::strlen(text));
}

bool lisp_hash_table_init(lisp_hash_table* table, std::uint32_t bucket_count, bool is_growing,
                          lisp_interpreter* interpreter)
{
    table->bucket_count = bucket_count;
    table->is_growing = is_growing;
    table->count = 0;
    table->interpreter = interpreter;
    table->buckets = lisp_allocate_elements<lisp_hash_entry*>(interpreter, bucket_count);
    return table->buckets != nullptr;
}

static lisp_hash_entry** bucket_of(const lisp_hash_table* table, const lisp_name* key)
{
    return &table->buckets[key->hash % table->bucket_count];
}

static void grow(lisp_hash_table* table)
{
    lisp_hash_table larger;
    if (!lisp_hash_table_init(&larger, table->bucket_count * 16, true, table->interpreter)) return;
    for (std::uint32_t i = 0; i < table->bucket_count; ++i) {
        while (lisp_hash_entry* entry = table->buckets[i]) {
            table->buckets[i] = entry->next;
            lisp_hash_entry** bucket = bucket_of(&larger, entry->key);
            entry->next = *bucket;
            *bucket = entry;
        }
    }
    table->bucket_count = larger.bucket_count;
    table->buckets = larger.buckets;
}

bool lisp_hash_table_put(lisp_hash_table* table, lisp_name* key, void* value)
{
    for (lisp_hash_entry* entry = *bucket_of(table, key); entry != nullptr; entry = entry->next) {
        if (entry->key != key) continue;
        entry->value = value;
        return true;
    }
    if (table->is_growing && table->count >= std::uint64_t{table->bucket_count} * 8) grow(table);
    lisp_hash_entry* entry = lisp_allocate_record<lisp_hash_entry>(table->interpreter);
    if (entry == nullptr) return false;
    lisp_hash_entry** bucket = bucket_of(table, key);
    *entry = {*bucket, key, value};
    *bucket = entry;
    ++table->count;
    return true;
}

bool lisp_hash_table_remove(lisp_hash_table* table, const lisp_name* key)
{
    for (lisp_hash_entry** link = bucket_of(table, key); *link != nullptr; link = &(*link)->next) {
        if ((*link)->key != key) continue;
        *link = (*link)->next;
        --table->count;
        return true;
    }
    return false;
}
