#include <xum/lisp/lisp_printer.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

#include <algorithm>
#include <cstdio>

static constexpr int printed_text_limit = 1024;

static int printed_length(std::uint64_t length)
{
    return static_cast<int>(std::min<std::uint64_t>(length, printed_text_limit));
}

static void print_count(lisp_interpreter* interpreter, const lisp_object* object, const char* prefix,
                        std::uint64_t count, const char* what)
{
    char type[1024];
    lisp_write_value_type(interpreter, object, type, sizeof type);
    lisp_print_format(interpreter, "%s%s (%d %s)", prefix, type, static_cast<int>(count), what);
}

/* The text lies in the conversion buffer or in the value: it is copied before the line is built in that same buffer. */
static void print_text(lisp_interpreter* interpreter, const lisp_object* object, const char* prefix, const char* text,
                       std::uint64_t length)
{
    char line[2 * printed_text_limit];
    const int size = printed_length(length);
    if (lisp_has_default_to_string(object->type))
        std::snprintf(line, sizeof line, "%s%.*s", prefix, size, text);
    else
        std::snprintf(line, sizeof line, "%s%s (%.*s)", prefix, object->type->name, size, text);
    lisp_print_line(interpreter, line);
}

static void print_converted(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* object,
                            const char* prefix)
{
    const char* text = nullptr;
    std::uint64_t length = 0;
    if (object->type->kind != lisp_kind_other || object->type->to_string == nullptr) {
        if (lisp_text_of_value(interpreter, object, &text, &length))
            print_text(interpreter, object, prefix, text, length);
        return;
    }
    lisp_object converted = {};
    lisp_set_nil(interpreter, &converted);
    lisp_value_to_string(interpreter, environment, object, &converted);
    if (converted.type->kind != lisp_kind_string) return;
    const lisp_string* string = converted.payload.string;
    print_text(interpreter, object, prefix, string->characters, string->length);
}

void lisp_print(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* object,
                const char* prefix)
{
    switch (object->type->kind) {
    case lisp_kind_nil: lisp_print_format(interpreter, "%s:nil", prefix); break;
    case lisp_kind_list: print_count(interpreter, object, prefix, lisp_list_count(object), "nodes"); break;
    case lisp_kind_array: {
        const lisp_array* array = object->payload.array;
        print_count(interpreter, object, prefix, array != nullptr ? array->count : 0, "elements");
        break;
    }
    case lisp_kind_closure:
        lisp_print_format(interpreter, "%s:closure %s", prefix, object->payload.closure->signature->characters);
        break;
    default: print_converted(interpreter, environment, object, prefix); break;
    }
}
