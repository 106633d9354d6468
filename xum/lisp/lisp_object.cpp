#include <xum/lisp/lisp_object.h>

#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_type.h>

static lisp_object* out_of_memory(lisp_interpreter* interpreter)
{
    lisp_out_of_memory(interpreter);
    return nullptr;
}

lisp_object* lisp_create_object(lisp_interpreter* interpreter, const char* type_name, const void* source)
{
    lisp_type* type = lisp_find_type(interpreter, type_name);
    if (type == nullptr) return nullptr;
    lisp_type_entry* arguments = nullptr;
    if (type->parameter_count != 0) { // an empty request would be fatal
        arguments = lisp_allocate_elements<lisp_type_entry>(interpreter, type->parameter_count);
        if (arguments == nullptr) return out_of_memory(interpreter);
    }
    const lisp_object_descriptor descriptor = {type, 0, type->parameter_count, arguments};
    lisp_object* object = interpreter->memory->allocate_object(&interpreter->heap, &descriptor);
    const bool is_made = object != nullptr && (type->init == nullptr || type->init(interpreter, object, source));
    if (is_made) return object;
    if (arguments != nullptr) interpreter->memory->free_bytes(&interpreter->heap, arguments);
    return out_of_memory(interpreter);
}

lisp_object* lisp_copy_to_slot(lisp_interpreter* interpreter, const lisp_object* value)
{
    const lisp_object_descriptor descriptor = {value->type, value->flag, value->type_argument_count,
                                               value->type_arguments};
    lisp_object* object = lisp_allocate_object(&interpreter->heap, &descriptor);
    if (object == nullptr) return out_of_memory(interpreter);
    object->payload = value->payload;
    return object;
}

lisp_object* lisp_make_symbol(lisp_interpreter* interpreter, lisp_name* name)
{
    lisp_symbol* symbol = lisp_allocate_record<lisp_symbol>(interpreter);
    if (symbol == nullptr) return out_of_memory(interpreter);
    *symbol = {name, false, false, nullptr};
    lisp_object value = {};
    lisp_set_symbol_value(interpreter, &value, symbol);
    return lisp_copy_to_slot(interpreter, &value);
}

lisp_string* lisp_make_string(lisp_interpreter* interpreter, std::uint64_t length)
{
    const std::uint64_t most = 0xFFFFFFFFu; // a longer one is refused by the allocator, not wrapped here
    lisp_string* string = static_cast<lisp_string*>(
        lisp_allocate(interpreter, length > most ? most + 1 : sizeof(lisp_string) + length + 1));
    if (string == nullptr) {
        lisp_out_of_memory(interpreter);
        return nullptr;
    }
    char* characters = reinterpret_cast<char*>(string + 1);
    characters[length] = '\0';
    *string = {length, length, characters};
    return string;
}

lisp_string* lisp_make_string(lisp_interpreter* interpreter, const char* text, std::uint64_t length)
{
    lisp_string* string = lisp_make_string(interpreter, length);
    if (string != nullptr) std::memcpy(string->characters, text, length);
    return string;
}

lisp_list* lisp_make_list(lisp_interpreter* interpreter, std::uint64_t count)
{
    const std::uint64_t most = 0xFFFFFFFFu / sizeof(lisp_cell);
    lisp_list* list =
        count > most
            ? static_cast<lisp_list*>(lisp_allocate_array(interpreter, count, sizeof(lisp_cell)))
            : static_cast<lisp_list*>(lisp_allocate(interpreter, sizeof(lisp_list) + count * sizeof(lisp_cell)));
    if (list == nullptr) {
        lisp_out_of_memory(interpreter);
        return nullptr;
    }
    lisp_cell* cells = reinterpret_cast<lisp_cell*>(list + 1);
    for (std::uint64_t i = 0; i < count; ++i) cells[i] = {i + 1 < count ? &cells[i + 1] : nullptr, nullptr};
    *list = {false, false, count != 0 ? cells : nullptr, count != 0 ? &cells[count - 1] : nullptr, count};
    return list;
}

bool lisp_is_leaf(const lisp_object* object)
{
    switch (object->type->kind) {
    case lisp_kind_nil:
    case lisp_kind_keyword:
    case lisp_kind_boolean:
    case lisp_kind_byte:
    case lisp_kind_integer:
    case lisp_kind_float:
    case lisp_kind_string: return true;
    default: return false;
    }
}

static void set_plain(lisp_interpreter* interpreter, lisp_object* result, lisp_kind kind, lisp_payload payload)
{
    result->type = interpreter->kinds[kind];
    result->flag = 0;
    result->type_argument_count = 0;
    result->type_arguments = nullptr;
    result->payload = payload;
}

void lisp_set_integer(lisp_interpreter* interpreter, lisp_object* result, std::int64_t value)
{
    lisp_payload payload;
    payload.integer = value;
    set_plain(interpreter, result, lisp_kind_integer, payload);
}

void lisp_set_float(lisp_interpreter* interpreter, lisp_object* result, double value)
{
    lisp_payload payload;
    payload.real = value;
    set_plain(interpreter, result, lisp_kind_float, payload);
}

void lisp_set_byte(lisp_interpreter* interpreter, lisp_object* result, std::uint8_t value)
{
    lisp_payload payload;
    payload.integer = value;
    set_plain(interpreter, result, lisp_kind_byte, payload);
}

void lisp_set_string(lisp_interpreter* interpreter, lisp_object* result, lisp_string* string)
{
    lisp_payload payload;
    payload.string = string;
    set_plain(interpreter, result, lisp_kind_string, payload);
}

bool lisp_set_text(lisp_interpreter* interpreter, lisp_object* result, const char* text, std::uint64_t length)
{
    lisp_string* string = lisp_make_string(interpreter, text, length);
    if (string == nullptr) return false;
    lisp_set_string(interpreter, result, string);
    return true;
}

void lisp_set_keyword(lisp_interpreter* interpreter, lisp_object* result, lisp_string* name)
{
    lisp_payload payload;
    payload.string = name;
    set_plain(interpreter, result, lisp_kind_keyword, payload);
}

void lisp_set_symbol_value(lisp_interpreter* interpreter, lisp_object* result, lisp_symbol* symbol)
{
    lisp_payload payload;
    payload.symbol = symbol;
    set_plain(interpreter, result, lisp_kind_symbol, payload);
}

void lisp_set_list(lisp_interpreter* interpreter, lisp_object* result, lisp_list* list, lisp_type* element)
{
    lisp_payload payload;
    payload.list = list;
    set_plain(interpreter, result, lisp_kind_list, payload);
    result->type_argument_count = 1;
    result->type_arguments =
        element != nullptr ? &element->as_argument : interpreter->kinds[lisp_kind_list]->unset_arguments;
}
