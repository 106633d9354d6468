#include <xum/lisp/lisp.h>

#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_collector.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_stack.h>
#include <xum/lisp/lisp_type.h>

#include <cstdarg>
#include <cstdio>

// Starting and stopping an interpreter, and what it says.

static constexpr std::uint64_t value_stack_size = 16384;

static lisp_object static_object(lisp_interpreter* interpreter, lisp_kind kind, std::int64_t value)
{
    lisp_object object = {};
    object.type = interpreter->kinds[kind];
    object.payload.integer = value;
    return object;
}

static bool make_static_objects(lisp_interpreter* interpreter)
{
    interpreter->nil = static_object(interpreter, lisp_kind_nil, 0);
    interpreter->boolean_false = static_object(interpreter, lisp_kind_boolean, 0);
    interpreter->boolean_true = static_object(interpreter, lisp_kind_boolean, 1);
    interpreter->root_list = static_object(interpreter, lisp_kind_list, 0);
    interpreter->root_list.type_argument_count = 1;
    interpreter->root_list.type_arguments =
        static_cast<lisp_type_entry*>(lisp_allocate_no_fail(interpreter, sizeof(lisp_type_entry)));
    return interpreter->root_list.type_arguments != nullptr;
}

/* Records that are borrowed for a call or a collection, so that running needs no allocator. */
static bool make_stacks(lisp_interpreter* interpreter, std::uint64_t region_size)
{
    const std::uint64_t most = region_size / 8 / sizeof(lisp_object); // small regions, in tests, have small stacks
    const std::uint64_t records = most < value_stack_size ? most : value_stack_size;
    interpreter->stack = lisp_allocate_elements_no_fail<lisp_object>(interpreter, records);
    interpreter->mark_stack =
        lisp_allocate_elements_no_fail<lisp_object*>(interpreter, lisp_mark_stack_size(region_size));
    lisp_heap* heap = &interpreter->heap;
    heap->marked = lisp_allocate_elements_no_fail<std::uint64_t>(interpreter, heap->bitmap_words);
    heap->kept = lisp_allocate_elements_no_fail<std::uint64_t>(interpreter, heap->bitmap_words);
    if (heap->marked == nullptr || heap->kept == nullptr) return false;
    if (interpreter->stack == nullptr || interpreter->mark_stack == nullptr) return false;
    interpreter->stack_top = interpreter->stack;
    interpreter->stack_end = interpreter->stack + records;
    return true;
}

static bool start(lisp_interpreter* interpreter, std::uint64_t region_size)
{
    constexpr std::uint32_t type_buckets = 100;
    return lisp_names_start(interpreter) &&
           lisp_hash_table_init(&interpreter->types, type_buckets, false, interpreter) &&
           lisp_define_built_in_types(interpreter) && make_static_objects(interpreter) &&
           lisp_environment_start(interpreter) && make_stacks(interpreter, region_size) &&
           lisp_define_builtins(interpreter);
}

bool lisp_start(lisp_interpreter* interpreter, const lisp_output* output, std::uint64_t region_size)
{
    interpreter->output = output;
    interpreter->memory = lisp_mark_and_sweep();
    lisp_set_fatal_handler(output->error);
    if (!lisp_heap_start(&interpreter->heap, interpreter, region_size)) return false;
    if (start(interpreter, region_size)) return true;
    lisp_heap_stop(&interpreter->heap);
    return false;
}

void lisp_stop(lisp_interpreter* interpreter)
{
    lisp_heap_stop(&interpreter->heap);
}

void lisp_print_line(lisp_interpreter* interpreter, const char* text)
{
    interpreter->output->print(interpreter->output->user, text);
}

void lisp_print_format(lisp_interpreter* interpreter, const char* format, ...)
{
    char line[lisp_conversion_size]; // what is formatted may lie in the conversion buffer
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    lisp_print_line(interpreter, line);
}

void lisp_out_of_memory(lisp_interpreter* interpreter)
{
    lisp_abandon(interpreter, "error: out of memory!");
}
