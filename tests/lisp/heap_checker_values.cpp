#include "heap_checker.h"

#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>

#include <bit>
#include <cstring>

bool HeapChecker::isInByteArea(const void* address, std::uint64_t size) const
{
    const std::uintptr_t at = reinterpret_cast<std::uintptr_t>(address);
    const std::uintptr_t slots = reinterpret_cast<std::uintptr_t>(heap.slots);
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(heap.region) + heap.region_size;
    return at >= slots + heap.byte_top && at <= end && size <= end - at && at % 8 == 0;
}

bool HeapChecker::isUsedSlot(const lisp_object* object) const
{
    const std::uintptr_t at = reinterpret_cast<std::uintptr_t>(object);
    const std::uintptr_t slots = reinterpret_cast<std::uintptr_t>(heap.slots);
    if (at < slots || at - slots >= heap.boundary || (at - slots) % sizeof(lisp_object) != 0) return false;
    return lisp_slot_is_used(&heap, (at - slots) / sizeof(lisp_object));
}

bool HeapChecker::checkObject(const lisp_object* object)
{
    if (!types.contains(object->type)) return fail("an object of no registered type");
    if (object->lock_stamp > heap.lock_epoch) return fail("a lock stamp of the future");
    if (object->mark_stamp > heap.mark_epoch) return fail("a mark stamp of the future");
    return checkTypeArguments(object) && checkPayload(object);
}

bool HeapChecker::checkTypeArguments(const lisp_object* object)
{
    const std::string name = object->type->name;
    const std::uint8_t count = object->type_argument_count;
    if (count != object->type->parameter_count) return fail("wrong number of type arguments of " + name);
    if (count == 0) return true;
    if (!isInByteArea(object->type_arguments, count * sizeof(lisp_type_entry))) return fail("bad arguments of " + name);
    for (std::uint8_t i = 0; i < count; ++i) {
        const lisp_type* type = object->type_arguments[i].type;
        if (type != nullptr && !types.contains(type)) return fail("an unknown type as an argument of " + name);
    }
    return true;
}

bool HeapChecker::checkPayload(const lisp_object* object)
{
    switch (object->type->kind) {
    case lisp_kind_boolean: return object->payload.integer >> 1 == 0 || fail("a boolean of neither value");
    case lisp_kind_byte: return object->payload.integer >> 8 == 0 || fail("a byte out of its range");
    case lisp_kind_keyword:
    case lisp_kind_string: return checkString(object->payload.string);
    case lisp_kind_symbol: return checkSymbol(object->payload.symbol);
    case lisp_kind_list: return object->payload.list == nullptr || checkList(object->payload.list);
    case lisp_kind_array: return checkArray(object->payload.array);
    case lisp_kind_hash_table: return checkTable(object->payload.table);
    case lisp_kind_closure: return checkClosure(object->payload.closure);
    case lisp_kind_macro: return checkMacro(object->payload.macro);
    default: return true;
    }
}

bool HeapChecker::checkString(const lisp_string* string)
{
    if (!isInByteArea(string, sizeof *string)) return fail("a string outside of the byte area");
    if (string->length > string->capacity) return fail("a string longer than its capacity");
    if (!isInByteArea(string->characters, string->length + 1)) return fail("characters outside of the byte area");
    return string->characters[string->length] == '\0' || fail("a string without its zero");
}

bool HeapChecker::checkSymbol(const lisp_symbol* symbol)
{
    if (!isInByteArea(symbol, sizeof *symbol)) return fail("a symbol outside of the byte area");
    const lisp_string& text = symbol->name->text;
    if (lisp_find_name(interpreter, text.characters, text.length) != symbol->name)
        return fail("a symbol whose name is not interned");
    if (symbol->is_constant && symbol->value == nullptr) return fail("a constant without a value");
    return symbol->value == nullptr || isUsedSlot(symbol->value) || fail("a symbol whose value is not alive");
}

bool HeapChecker::checkList(const lisp_list* list)
{
    if (!isInByteArea(list, sizeof *list)) return fail("a list outside of the byte area");
    if (list->count == 0) return (list->first == nullptr && list->last == nullptr) || fail("an empty list with cells");
    const lisp_cell* cell = list->first;
    for (std::uint64_t i = 0; i < list->count; ++i, cell = cell->next) {
        if (!isInByteArea(cell, sizeof *cell)) return fail("a list with fewer cells than its count");
        if (!isUsedSlot(cell->element)) return fail("a list with an element that is not alive");
        if (list->has_only_leaves && !lisp_is_leaf(cell->element)) return fail("a list of leaves that holds another");
        if (i + 1 == list->count && cell != list->last) return fail("a list whose last cell is another one");
    }
    return true;
}

bool HeapChecker::checkArray(const lisp_array* array)
{
    if (!isInByteArea(array, sizeof *array)) return fail("an array outside of the byte area");
    const std::uint64_t sizes[] = {(array->count + 7) / 8, array->count, array->count * 8, array->count * 8,
                                   array->count * 8};
    if (array->element_kind > lisp_element_object) return fail("an array of an unknown kind");
    if (!isInByteArea(array->elements, sizes[array->element_kind])) return fail("elements outside of the byte area");
    if (array->element_kind != lisp_element_object) return true;
    for (std::uint64_t i = 0; i < array->count; ++i) {
        const lisp_object* element = static_cast<lisp_object* const*>(array->elements)[i];
        if (element != nullptr && !isUsedSlot(element)) return fail("an array with an element that is not alive");
    }
    return true;
}

/* Keys and values lie in no slot. What one that is a table holds is checked with that table's own objects, or a table
   that holds itself would have no end. */
bool HeapChecker::checkTableRecord(const lisp_object* record)
{
    if (!types.contains(record->type)) return fail("a key or value of no registered type");
    if (!checkTypeArguments(record)) return false;
    if (record->type->kind == lisp_kind_hash_table) return isInByteArea(record->payload.table, sizeof(lisp_table));
    return checkPayload(record);
}

bool HeapChecker::checkTableEntry(const lisp_table* table, const lisp_table_entry* entry, std::uint64_t bucket)
{
    if (!isInByteArea(entry, sizeof *entry)) return fail("a table entry outside of the byte area");
    if ((entry->hash & (table->bucket_count - 1)) != bucket) return fail("a table entry in a wrong bucket");
    if (!checkTableRecord(&entry->key) || !checkTableRecord(&entry->value)) return false;
    std::uint64_t hash = 0;
    if (entry->key.type->kind != lisp_kind_other &&
        (!lisp_hash_of_value(interpreter, &interpreter->root, &entry->key, &hash) || hash != entry->hash))
        return fail("a key whose hash has changed");
    for (const lisp_table_entry* other = entry->next; other != nullptr; other = other->next)
        if (other->hash == entry->hash && lisp_values_are_equal(&other->key, &entry->key))
            return fail("a key that is there twice");
    return true;
}

bool HeapChecker::checkTable(const lisp_table* table)
{
    if (!isInByteArea(table, sizeof *table)) return fail("a table outside of the byte area");
    if (!std::has_single_bit(table->bucket_count)) return fail("a number of buckets that is no power of two");
    if (!isInByteArea(table->buckets, table->bucket_count * sizeof(void*))) return fail("buckets outside of the area");
    std::uint64_t count = 0;
    for (std::uint64_t i = 0; i < table->bucket_count; ++i) {
        for (const lisp_table_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next) {
            ++count;
            if (!checkTableEntry(table, entry, i)) return false;
        }
    }
    return count == table->count || fail("a table with another number of entries than its count");
}

bool HeapChecker::checkClosure(const lisp_closure* closure)
{
    if (!isInByteArea(closure, sizeof *closure)) return fail("a closure outside of the byte area");
    if (!checkString(closure->signature)) return false;
    const lisp_signature& signature = closure->signature_entries;
    if (signature.entry_count == 0) return fail("a closure without a return entry");
    if (!isInByteArea(signature.entries, signature.entry_count * sizeof(lisp_type_entry)))
        return fail("entries outside of the byte area");
    if (signature.has_rest && signature.entry_count < 2) return fail("a rest flag without a parameter");
    if (closure->variable_count > 26) return fail("more type variables than letters");
    return closure->native != nullptr || checkLispClosure(closure);
}

bool HeapChecker::checkLispClosure(const lisp_closure* closure)
{
    if (!checkEnvironment(closure->environment)) return false;
    if (closure->environment->parent == nullptr) return fail("a closure that binds its parameters in the root");
    if (closure->body == nullptr) return fail("a closure without a body");
    if (!checkList(closure->body)) return false;
    if (closure->bounds != nullptr && !checkList(closure->bounds)) return false;
    for (std::uint32_t i = 0; i + 1 < closure->signature_entries.entry_count; ++i) {
        const lisp_closure_parameter& parameter = closure->parameters[i];
        if (parameter.symbol == nullptr) continue;
        if (lisp_hash_table_get(&closure->environment->table, parameter.name) != parameter.symbol)
            return fail("a parameter that is not the one of its environment");
    }
    return true;
}

bool HeapChecker::checkMacro(const lisp_macro* macro)
{
    if (!isInByteArea(macro, sizeof *macro)) return fail("a macro outside of the byte area");
    if (macro->has_rest && macro->parameter_count == 0) return fail("a rest flag without a parameter");
    for (std::uint32_t i = 0; i < macro->parameter_count; ++i)
        if (!isInByteArea(macro->parameters[i], sizeof(lisp_name))) return fail("a macro parameter without a name");
    return macro->body == nullptr || checkList(macro->body);
}

bool HeapChecker::checkEnvironment(const lisp_environment* environment)
{
    const bool isRoot = environment == &interpreter->root;
    if (!isRoot && !isInByteArea(environment, sizeof *environment)) return fail("an environment outside of the area");
    if (isRoot != (environment->parent == nullptr)) return fail("an environment that does not end at the root");
    const lisp_hash_table& table = environment->table;
    if (!isInByteArea(table.buckets, table.bucket_count * sizeof(void*))) return fail("buckets outside of the area");
    std::uint64_t count = 0;
    for (std::uint32_t i = 0; i < table.bucket_count; ++i) {
        for (const lisp_hash_entry* entry = table.buckets[i]; entry != nullptr; entry = entry->next) {
            ++count;
            const lisp_object* symbol = static_cast<const lisp_object*>(entry->value);
            if (entry->key->hash % table.bucket_count != i) return fail("a binding in a wrong bucket");
            if (!isUsedSlot(symbol)) return fail("a bound symbol that is not alive");
            if (symbol->type != interpreter->kinds[lisp_kind_symbol]) return fail("a binding that is no symbol");
            if (symbol->payload.symbol->name != entry->key) return fail("a binding of another name");
        }
    }
    if (count != table.count) return fail("an environment with another number of bindings than its count");
    return isRoot || checkEnvironment(environment->parent);
}
