#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

#include <cstring>

// Types, and conversions between values and text.

/* The parameters as one text of keywords; false when an element is no keyword. */
static bool write_parameters(const lisp_list* list, char* out, std::size_t size)
{
    std::size_t length = 0;
    const std::uint64_t count = list != nullptr ? list->count : 0;
    const lisp_cell* cell = count != 0 ? list->first : nullptr;
    out[0] = '\0';
    for (std::uint64_t i = 0; i < count; ++i, cell = cell->next) {
        if (cell->element->type->kind != lisp_kind_keyword) return false;
        const lisp_string* name = cell->element->payload.string;
        if (length + name->length + 2 > size) return false;
        if (i != 0) out[length++] = ' ';
        std::memcpy(out + length, name->characters, name->length + 1);
        length += name->length;
    }
    return true;
}

/* Up to three expressions: closures, or :nil for the default. They stay on the frame. False after a report. */
static bool evaluate_converters(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_list* list,
                                lisp_object* converters)
{
    const std::uint64_t count = list != nullptr ? list->count : 0;
    const lisp_cell* cell = count != 0 ? list->first : nullptr;
    for (std::uint64_t i = 0; i < count && i < 3; ++i, cell = cell->next) {
        lisp_eval(interpreter, &converters[i], environment, cell->element);
        if (interpreter->is_abandoned) return false;
        const lisp_kind kind = converters[i].type->kind;
        if (kind == lisp_kind_closure || kind == lisp_kind_nil) continue;
        lisp_print_format(interpreter, "error: expected :closure (got %s)!", converters[i].type->name);
        return false;
    }
    return true;
}

static const lisp_object* closure_or_null(const lisp_object* converter)
{
    return converter->type->kind == lisp_kind_closure ? converter : nullptr;
}

static void report_parameter_list(lisp_interpreter* interpreter, const lisp_closure* self, const lisp_object* list)
{
    char actual[512];
    lisp_write_value_type(interpreter, list, actual, sizeof actual);
    lisp_print_format(interpreter, "closure: %s", self->name->text.characters);
    lisp_print_format(interpreter, "  error: expected '(:list :keyword)' but got '%s' for parameter 1.", actual);
}

LISP_NATIVE(lisp_native_define_type)
{
    const lisp_string* name = arguments[0].payload.string;
    char parameters[8192];
    if (!lisp_is_type_name(name->characters, name->length)) {
        lisp_print_format(interpreter, "error: '%s' is an invalid type name!", name->characters);
    } else if (lisp_find_type(interpreter, name->characters) != nullptr) {
        lisp_print_format(interpreter, "error: type '%s' already defined!", name->characters);
    } else if (!write_parameters(arguments[1].payload.list, parameters, sizeof parameters)) {
        report_parameter_list(interpreter, self, &arguments[1]);
    } else if (lisp_object* converters = lisp_push_frame(interpreter, 3)) {
        // Evaluating them may have defined the very type.
        const bool is_ready = evaluate_converters(interpreter, environment, arguments[2].payload.list, converters);
        if (is_ready && lisp_find_type(interpreter, name->characters) != nullptr)
            lisp_print_format(interpreter, "error: type '%s' already defined!", name->characters);
        else if (is_ready)
            lisp_define_type(interpreter, name->characters, parameters, nullptr, closure_or_null(&converters[0]),
                             closure_or_null(&converters[1]), closure_or_null(&converters[2]));
        lisp_pop_frame(interpreter, converters);
    }
}

static void set_keyword_element(lisp_interpreter* interpreter, lisp_cell* cell, lisp_string* name)
{
    lisp_object keyword = {};
    lisp_set_keyword(interpreter, &keyword, name);
    cell->element = lisp_copy_to_slot(interpreter, &keyword);
}

LISP_NATIVE(lisp_native_type_list)
{
    lisp_list* list = lisp_make_list(interpreter, interpreter->types.count);
    if (list == nullptr) return;
    lisp_cell* cell = list->first;
    for (const lisp_type* type = interpreter->newest_type; type != nullptr; type = type->next, cell = cell->next) {
        set_keyword_element(interpreter, cell, type->name_string);
        if (cell->element == nullptr) return;
    }
    lisp_set_list(interpreter, result, list, interpreter->kinds[lisp_kind_keyword]);
}

LISP_NATIVE(lisp_native_type_parameters)
{
    const lisp_type* type = lisp_find_type(interpreter, arguments[0].payload.string->characters);
    if (type == nullptr) {
        lisp_print_line(interpreter, "error: type not found!");
        return;
    }
    lisp_list* list = lisp_make_list(interpreter, type->parameter_count);
    if (list == nullptr) return;
    lisp_cell* cell = list->first;
    for (const lisp_type_parameter* p = type->parameters; p != nullptr; p = p->next, cell = cell->next) {
        set_keyword_element(interpreter, cell, p->name);
        if (cell->element == nullptr) return;
    }
    lisp_set_list(interpreter, result, list, interpreter->kinds[lisp_kind_keyword]);
}

LISP_NATIVE(lisp_native_type_of)
{
    lisp_set_keyword(interpreter, result, arguments[0].type->name_string);
}

LISP_NATIVE(lisp_native_from_string)
{
    const char* name = arguments[0].payload.string->characters;
    const lisp_type* type = lisp_find_type(interpreter, name);
    if (type == nullptr)
        lisp_print_format(interpreter, "error: type '%s' not found, use (type-list) for available types!\n", name);
    else
        lisp_value_from_string(interpreter, environment, type, &arguments[1], result);
}

LISP_NATIVE(lisp_native_to_string)
{
    lisp_value_to_string(interpreter, environment, &arguments[0], result);
}

LISP_NATIVE(lisp_native_to_hash)
{
    std::uint64_t hash = 0;
    if (lisp_hash_of_value(interpreter, environment, &arguments[0], &hash))
        lisp_set_integer(interpreter, result, static_cast<std::int64_t>(hash));
}

LISP_NATIVE(lisp_native_byte)
{
    const std::int64_t value = arguments[0].payload.integer;
    if (value < 0 || value > 255)
        lisp_print_line(interpreter, "error: invalid number for byte!");
    else
        lisp_set_byte(interpreter, result, static_cast<std::uint8_t>(value));
}
