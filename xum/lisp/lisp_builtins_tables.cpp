#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_call.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_stack.h>
#include <xum/lisp/lisp_table.h>
#include <xum/lisp/lisp_type.h>

#include <cstdio>
#include <cstring>

// Arrays and hash tables: the two kinds of values that scripts change in place.

static constexpr std::size_t type_text_size = 2048;

/* Sets the type arguments from a type's text; reports a text that names no type. */
static bool set_type(lisp_interpreter* interpreter, const char* text, bool fits, lisp_object* value)
{
    lisp_type_entry entry;
    // A text with an arrow or nothing in it makes a signature of the whole.
    if (!fits || !lisp_parse_type(interpreter, text, &entry) || entry.type != value->type) {
        if (!interpreter->is_abandoned) lisp_print_line(interpreter, "error: type not found!");
        return false;
    }
    value->type_argument_count = entry.count;
    value->type_arguments = entry.arguments;
    return true;
}

// ---- arrays -------------------------------------------------------------------------------------------------------

static lisp_element_kind element_kind(const char* type)
{
    if (std::strcmp(type, ":boolean") == 0) return lisp_element_boolean;
    if (std::strcmp(type, ":byte") == 0) return lisp_element_byte;
    if (std::strcmp(type, ":integer") == 0) return lisp_element_integer;
    return std::strcmp(type, ":float") == 0 ? lisp_element_float : lisp_element_object;
}

static void* allocate_elements(lisp_interpreter* interpreter, lisp_element_kind kind, std::uint64_t count)
{
    switch (kind) {
    case lisp_element_boolean: return lisp_allocate(interpreter, count / 8 + (count % 8 != 0 ? 1 : 0));
    case lisp_element_byte: return lisp_allocate_array(interpreter, count, 1);
    default: return lisp_allocate_array(interpreter, count, 8);
    }
}

LISP_NATIVE(lisp_native_array)
{
    if (arguments[0].payload.integer <= 0) {
        lisp_print_line(interpreter, "error: invalid array size (must be > 0)!");
        return;
    }
    const char* element = arguments[1].payload.string->characters;
    char text[type_text_size];
    const int length = std::snprintf(text, sizeof text, "(:array %s)", element);
    lisp_object value;
    lisp_set_nil(interpreter, &value);
    value.type = interpreter->kinds[lisp_kind_array];
    if (!set_type(interpreter, text, length < static_cast<int>(sizeof text), &value)) return;

    const std::uint64_t size = static_cast<std::uint64_t>(arguments[0].payload.integer);
    const lisp_element_kind kind = element_kind(element);
    lisp_array* array = lisp_allocate_record<lisp_array>(interpreter);
    void* elements = array != nullptr ? allocate_elements(interpreter, kind, size) : nullptr;
    if (elements == nullptr) {
        lisp_out_of_memory(interpreter);
        return;
    }
    *array = {size, kind, elements};
    value.payload.array = array;
    lisp_copy_value(result, &value);
}

LISP_NATIVE(lisp_native_array_size)
{
    lisp_set_integer(interpreter, result, static_cast<std::int64_t>(arguments[0].payload.array->count));
}

/* False after a report. */
static bool find_index(lisp_interpreter* interpreter, const lisp_object* arguments, std::uint64_t* index)
{
    const std::int64_t wanted = arguments[1].payload.integer;
    *index = static_cast<std::uint64_t>(wanted);
    if (wanted >= 0 && *index < arguments[0].payload.array->count) return true;
    lisp_print_line(interpreter, "error: array index out of bounds!");
    return false;
}

LISP_NATIVE(lisp_native_array_get)
{
    std::uint64_t index = 0;
    if (!find_index(interpreter, arguments, &index)) return;
    const lisp_array* array = arguments[0].payload.array;
    switch (array->element_kind) {
    case lisp_element_boolean: {
        const std::uint8_t* bits = static_cast<const std::uint8_t*>(array->elements);
        lisp_set_boolean(interpreter, result, (bits[index / 8] >> (index % 8) & 1) != 0);
        break;
    }
    case lisp_element_byte:
        lisp_set_byte(interpreter, result, static_cast<const std::uint8_t*>(array->elements)[index]);
        break;
    case lisp_element_integer:
        lisp_set_integer(interpreter, result, static_cast<const std::int64_t*>(array->elements)[index]);
        break;
    case lisp_element_float:
        lisp_set_float(interpreter, result, static_cast<const double*>(array->elements)[index]);
        break;
    case lisp_element_object: {
        const lisp_object* element = static_cast<lisp_object* const*>(array->elements)[index];
        if (element != nullptr) lisp_copy_value(result, element);
        break;
    }
    }
}

/* The array's element type decides how it is stored; the signature has checked that the value has that type. */
static bool fits_elements(const lisp_array* array, const lisp_object* value)
{
    switch (array->element_kind) {
    case lisp_element_boolean: return value->type->kind == lisp_kind_boolean;
    case lisp_element_byte: return value->type->kind == lisp_kind_byte;
    case lisp_element_integer: return value->type->kind == lisp_kind_integer;
    case lisp_element_float: return value->type->kind == lisp_kind_float;
    default: return true;
    }
}

LISP_NATIVE(lisp_native_array_set)
{
    std::uint64_t index = 0;
    if (!find_index(interpreter, arguments, &index)) return;
    lisp_array* array = arguments[0].payload.array;
    const lisp_object* value = &arguments[2];
    if (!fits_elements(array, value)) return;
    switch (array->element_kind) {
    case lisp_element_boolean: {
        std::uint8_t* bits = static_cast<std::uint8_t*>(array->elements);
        const unsigned bit = 1u << (index % 8);
        const unsigned old = bits[index / 8];
        bits[index / 8] = static_cast<std::uint8_t>(value->payload.integer != 0 ? old | bit : old & ~bit);
        break;
    }
    case lisp_element_byte:
        static_cast<std::uint8_t*>(array->elements)[index] = static_cast<std::uint8_t>(value->payload.integer);
        break;
    case lisp_element_integer: static_cast<std::int64_t*>(array->elements)[index] = value->payload.integer; break;
    case lisp_element_float: static_cast<double*>(array->elements)[index] = value->payload.real; break;
    case lisp_element_object: {
        lisp_object** elements = static_cast<lisp_object**>(array->elements);
        if (elements[index] != nullptr)
            lisp_copy_value(elements[index], value);
        else
            elements[index] = lisp_copy_to_slot(interpreter, value);
        break;
    }
    }
}

// ---- hash tables --------------------------------------------------------------------------------------------------

LISP_NATIVE(lisp_native_hash_table)
{
    char text[type_text_size];
    const int length = std::snprintf(text, sizeof text, "(:hash-table %s %s)", arguments[0].payload.string->characters,
                                     arguments[1].payload.string->characters);
    lisp_object value;
    lisp_set_nil(interpreter, &value);
    value.type = interpreter->kinds[lisp_kind_hash_table];
    if (!set_type(interpreter, text, length < static_cast<int>(sizeof text), &value)) return;
    value.payload.table = lisp_table_make(interpreter);
    if (value.payload.table != nullptr) lisp_copy_value(result, &value);
}

LISP_NATIVE(lisp_native_hash_table_size)
{
    lisp_set_integer(interpreter, result, static_cast<std::int64_t>(arguments[0].payload.table->count));
}

/* The called closure may put and remove: removed entries stay readable and lead on, but what they held may be gone, and
   no table grows while a loop is running. */
LISP_NATIVE(lisp_native_hash_table_for_each)
{
    const lisp_table* table = arguments[1].payload.table;
    lisp_object* frame = lisp_push_frame(interpreter, 2);
    if (frame == nullptr) return;
    ++interpreter->tables_in_use;
    for (std::uint64_t i = 0; i < table->bucket_count; ++i) {
        for (const lisp_table_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next) {
            if (entry->is_removed || interpreter->is_abandoned) continue;
            lisp_copy_value(&frame[0], &entry->key);
            lisp_copy_value(&frame[1], &entry->value);
            lisp_apply(interpreter, environment, arguments[0].payload.closure, frame, 2, result);
        }
    }
    --interpreter->tables_in_use;
    lisp_pop_frame(interpreter, frame);
    lisp_set_nil(interpreter, result);
}

LISP_NATIVE(lisp_native_hash_table_contains)
{
    const lisp_table_entry* entry =
        lisp_table_find(interpreter, environment, arguments[0].payload.table, &arguments[1]);
    lisp_set_boolean(interpreter, result, entry != nullptr);
}

LISP_NATIVE(lisp_native_hash_table_get)
{
    const lisp_table_entry* entry =
        lisp_table_find(interpreter, environment, arguments[0].payload.table, &arguments[1]);
    if (entry != nullptr) lisp_copy_value(result, &entry->value);
}

LISP_NATIVE(lisp_native_hash_table_put)
{
    const lisp_put_result put =
        lisp_table_put(interpreter, environment, arguments[0].payload.table, &arguments[1], &arguments[2]);
    if (put != lisp_put_nothing) lisp_set_boolean(interpreter, result, put == lisp_put_added);
}

LISP_NATIVE(lisp_native_hash_table_remove)
{
    lisp_set_boolean(interpreter, result,
                     lisp_table_remove(interpreter, environment, arguments[0].payload.table, &arguments[1]));
}
