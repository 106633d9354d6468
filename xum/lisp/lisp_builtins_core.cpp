#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_loader.h>
#include <xum/lisp/lisp_macro.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_printer.h>
#include <xum/lisp/lisp_reader.h>
#include <xum/lisp/lisp_type.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

// Reading, evaluating, definitions, output, and what asks the interpreter about itself.

LISP_NATIVE(lisp_native_read)
{
    constexpr std::uint64_t read_limit = 1023;
    char text[read_limit + 1];
    const lisp_string* source = arguments[0].payload.string;
    const std::uint64_t length = std::min(source->length, read_limit);
    std::memcpy(text, source->characters, length);
    text[length] = '\0';
    lisp_object* frame = lisp_push_frame(interpreter, 1);
    if (frame == nullptr) return;
    if (lisp_read(interpreter, frame, environment, text, 0) == -1) lisp_copy_value(result, frame);
    lisp_pop_frame(interpreter, frame);
}

LISP_NATIVE(lisp_native_eval)
{
    lisp_eval(interpreter, result, environment, &arguments[0]);
}

LISP_NATIVE(lisp_native_load)
{
    lisp_set_boolean(interpreter, result, lisp_load(interpreter, environment, arguments[0].payload.string->characters));
}

static void report_constant(lisp_interpreter* interpreter, const lisp_name* name)
{
    lisp_print_format(interpreter, "error: symbol '%s' is a constant!", name->text.characters);
}

static void report_unbound(lisp_interpreter* interpreter, const lisp_name* name)
{
    lisp_print_format(interpreter, "error: symbol '%s' has no binding!", name->text.characters);
}

/* A longer name would not fit the messages. */
static lisp_name* cut_name(lisp_interpreter* interpreter, lisp_name* name)
{
    constexpr std::uint64_t name_limit = 9900;
    return name->text.length <= name_limit ? name : lisp_intern(interpreter, name->text.characters, name_limit);
}

static void define(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* arguments,
                   bool is_constant, lisp_object* result)
{
    lisp_name* name = cut_name(interpreter, arguments[0].payload.symbol->name);
    if (name == nullptr) {
        lisp_out_of_memory(interpreter);
        return;
    }
    const lisp_object* known = lisp_find_symbol(environment, name);
    if (known != nullptr && known->payload.symbol->is_constant) {
        report_constant(interpreter, name);
        return;
    }
    if (known != nullptr)
        lisp_print_format(interpreter, "warning: symbol '%s' was already defined.", name->text.characters);
    const lisp_object* value = &arguments[1];
    if (value->type->kind == lisp_kind_closure && value->payload.closure->name == nullptr)
        value->payload.closure->name = name;
    if (lisp_set_symbol(interpreter, environment, name, value, is_constant, false) != nullptr)
        lisp_copy_value(result, value);
}

LISP_NATIVE(lisp_native_define)
{
    define(interpreter, environment, arguments, false, result);
}

LISP_NATIVE(lisp_native_define_constant)
{
    define(interpreter, environment, arguments, true, result);
}

LISP_NATIVE(lisp_native_get)
{
    const lisp_name* name = arguments[0].payload.symbol->name;
    const lisp_object* symbol = lisp_find_symbol(environment, name);
    if (symbol == nullptr || symbol->payload.symbol->value == nullptr)
        report_unbound(interpreter, name);
    else
        lisp_copy_value(result, symbol->payload.symbol->value);
}

LISP_NATIVE(lisp_native_set)
{
    const lisp_name* name = arguments[0].payload.symbol->name;
    const lisp_object* symbol = lisp_find_symbol(environment, name);
    if (symbol == nullptr)
        report_unbound(interpreter, name);
    else if (symbol->payload.symbol->is_constant)
        report_constant(interpreter, name);
    else if (lisp_store_value(interpreter, symbol->payload.symbol, &arguments[1]))
        lisp_copy_value(result, &arguments[1]);
}

/* The evaluator runs `do` and `if` itself; these are reached when a native such as map calls them. */
LISP_NATIVE(lisp_native_do)
{
    for (std::uint32_t i = 0; i < count; ++i) lisp_eval(interpreter, result, environment, &arguments[i]);
}

LISP_NATIVE(lisp_native_if)
{
    lisp_eval(interpreter, result, environment, &arguments[arguments[0].payload.integer != 0 ? 1 : 2]);
}

LISP_NATIVE(lisp_native_print)
{
    lisp_print(interpreter, environment, &arguments[0], "");
}

LISP_NATIVE(lisp_native_display)
{
    const lisp_string* string = arguments[0].payload.string;
    if (string->length < lisp_conversion_size)
        lisp_print_line(interpreter, string->characters);
    else
        lisp_print_format(interpreter, "%s", string->characters);
}

LISP_NATIVE(lisp_native_macro)
{
    lisp_make_macro(interpreter, arguments[0].payload.list, arguments[1].payload.list, result);
}

LISP_NATIVE(lisp_native_macro_expand)
{
    const lisp_list* call = arguments[0].payload.list;
    if (call == nullptr || call->count == 0) return;
    lisp_object* frame = lisp_push_frame(interpreter, 1);
    if (frame == nullptr) return;
    lisp_eval(interpreter, frame, environment, call->first->element);
    if (frame->type->kind == lisp_kind_macro) {
        lisp_macro* macro = frame->payload.macro;
        if (lisp_expand_macro(interpreter, environment, macro, call, frame))
            lisp_print(interpreter, environment, frame, "");
    }
    lisp_pop_frame(interpreter, frame);
}

LISP_NATIVE(lisp_native_closure)
{
    lisp_make_closure(interpreter, environment, arguments[0].payload.list, arguments + 1, count - 1, result);
}

LISP_NATIVE(lisp_native_placeholder) {}

LISP_NATIVE(lisp_native_garbage_collection)
{
    interpreter->memory->garbage_collection(&interpreter->heap, &interpreter->root);
}

LISP_NATIVE(lisp_native_full_garbage_collection)
{
    interpreter->memory->full_garbage_collection(&interpreter->heap, &interpreter->root);
}

LISP_NATIVE(lisp_native_system_info)
{
    lisp_print_format(interpreter, "%s (%s)", "xum-lisp", "0.0.1");
    lisp_print_format(interpreter, "garbage collector: %d objects, %d bytes",
                      static_cast<int>(interpreter->heap.live_objects),
                      static_cast<int>(interpreter->heap.allocated_bytes));
}
