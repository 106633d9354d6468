#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_call.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_stack.h>
#include <xum/lisp/lisp_type.h>

// Lists are immutable, so a list made from another one shares its cells where it can.

static const lisp_cell* first_cell(const lisp_object* list)
{
    return lisp_list_count(list) != 0 ? list->payload.list->first : nullptr;
}

/* The type that all elements have; null when they differ or there are none. */
static lisp_type* common_type(const lisp_list* list)
{
    lisp_type* type = list->count != 0 ? list->first->element->type : nullptr;
    const lisp_cell* cell = list->first;
    for (std::uint64_t i = 0; i < list->count; ++i, cell = cell->next)
        if (cell->element->type != type) return nullptr;
    return type;
}

static bool have_only_leaves(const lisp_list* list)
{
    const lisp_cell* cell = list->first;
    for (std::uint64_t i = 0; i < list->count; ++i, cell = cell->next)
        if (!lisp_is_leaf(cell->element)) return false;
    return true;
}

/* A list whose cells are filled. */
static void set_filled_list(lisp_interpreter* interpreter, lisp_object* result, lisp_list* list)
{
    lisp_type* common = common_type(list);
    list->has_only_leaves = common != nullptr ? lisp_is_leaf(list->first->element) : have_only_leaves(list);
    lisp_set_list(interpreter, result, list, common);
}

static lisp_type* element_type(const lisp_object* list)
{
    return list->type_argument_count == 1 ? list->type_arguments[0].type : nullptr;
}

LISP_NATIVE(lisp_native_list)
{
    lisp_list* list = lisp_make_list(interpreter, count);
    if (list == nullptr) return;
    lisp_cell* cell = list->first;
    for (std::uint32_t i = 0; i < count; ++i, cell = cell->next) {
        cell->element = lisp_copy_to_slot(interpreter, &arguments[i]);
        if (cell->element == nullptr) return;
    }
    set_filled_list(interpreter, result, list);
}

LISP_NATIVE(lisp_native_cons)
{
    const lisp_object* rest = &arguments[1];
    lisp_list* list = lisp_make_list(interpreter, 1);
    lisp_object* element = list != nullptr ? lisp_copy_to_slot(interpreter, &arguments[0]) : nullptr;
    if (element == nullptr) return;
    list->first->element = element;
    const std::uint64_t rest_count = lisp_list_count(rest);
    list->has_only_leaves = lisp_is_leaf(element) && (rest_count == 0 || rest->payload.list->has_only_leaves);
    if (rest_count != 0) {
        list->first->next = rest->payload.list->first;
        list->last = rest->payload.list->last;
        list->count = rest_count + 1;
    }
    const bool is_uniform = rest_count == 0 || element_type(rest) == element->type;
    lisp_set_list(interpreter, result, list, is_uniform ? element->type : nullptr);
}

LISP_NATIVE(lisp_native_head)
{
    if (const lisp_cell* cell = first_cell(&arguments[0]))
        lisp_copy_value(result, cell->element);
    else
        lisp_print_line(interpreter, "error: empty list!");
}

LISP_NATIVE(lisp_native_tail)
{
    const lisp_cell* cell = first_cell(&arguments[0]);
    if (cell == nullptr) {
        lisp_print_line(interpreter, "error: empty list!");
        return;
    }
    lisp_list* list = lisp_make_list(interpreter, 0);
    if (list == nullptr) return;
    list->count = arguments[0].payload.list->count - 1;
    list->first = list->count != 0 ? cell->next : nullptr;
    list->last = list->count != 0 ? arguments[0].payload.list->last : nullptr;
    list->has_only_leaves = arguments[0].payload.list->has_only_leaves;
    lisp_set_list(interpreter, result, list, element_type(&arguments[0]));
}

LISP_NATIVE(lisp_native_list_size)
{
    lisp_set_integer(interpreter, result, static_cast<std::int64_t>(lisp_list_count(&arguments[0])));
}

/* The elements are immutable records, so the new cells may point to the same ones. */
LISP_NATIVE(lisp_native_list_reverse)
{
    const std::uint64_t size = lisp_list_count(&arguments[0]);
    lisp_list* list = lisp_make_list(interpreter, size);
    if (list == nullptr) return;
    const lisp_cell* source = first_cell(&arguments[0]);
    for (std::uint64_t i = size; i != 0; --i, source = source->next) list->first[i - 1].element = source->element;
    list->has_only_leaves = size != 0 && arguments[0].payload.list->has_only_leaves;
    lisp_set_list(interpreter, result, list, element_type(&arguments[0]));
}

/* Calls the closure for each element, with its index in front or not. The frame that it is called in is used again for
   every element; elements of a list that never was checked are checked here. */
struct element_caller {
    lisp_interpreter* interpreter;
    lisp_environment* environment;
    lisp_closure* closure;
    bool has_index;
    lisp_object* frame;
};

static bool start_calls(element_caller* caller, lisp_interpreter* interpreter, lisp_environment* environment,
                        const lisp_object* closure, bool has_index)
{
    caller->interpreter = interpreter;
    caller->environment = environment;
    caller->closure = closure->payload.closure;
    caller->has_index = has_index;
    caller->frame = lisp_push_frame(interpreter, 3);
    return caller->frame != nullptr;
}

static void call_with_element(element_caller* caller, std::uint64_t index, const lisp_object* element,
                              lisp_object* value)
{
    lisp_interpreter* interpreter = caller->interpreter;
    lisp_object* arguments = caller->frame;
    std::uint32_t count = 0;
    if (caller->has_index) lisp_set_integer(interpreter, &arguments[count++], static_cast<std::int64_t>(index));
    lisp_copy_value(&arguments[count++], element);
    lisp_set_nil(interpreter, value);
    if (!lisp_check_argument_count(interpreter, caller->closure, count)) return;
    if (!lisp_check_arguments(interpreter, caller->closure, arguments, count)) return;
    lisp_call(interpreter, caller->environment, caller->closure, arguments, count, value);
}

static void map(lisp_interpreter* interpreter, lisp_environment* environment, lisp_object* arguments, bool has_index,
                lisp_object* result)
{
    const std::uint64_t size = lisp_list_count(&arguments[1]);
    lisp_list* list = lisp_make_list(interpreter, size);
    element_caller caller;
    if (list == nullptr || !start_calls(&caller, interpreter, environment, &arguments[0], has_index)) return;
    lisp_object* value = &caller.frame[2];
    const lisp_cell* source = first_cell(&arguments[1]);
    bool is_whole = true;
    for (std::uint64_t i = 0; is_whole && i < size; ++i, source = source->next) {
        call_with_element(&caller, i, source->element, value);
        // The elements made so far are young enough to be safe from a collection in a later call.
        list->first[i].element = interpreter->is_abandoned ? nullptr : lisp_copy_to_slot(interpreter, value);
        is_whole = list->first[i].element != nullptr;
    }
    lisp_pop_frame(interpreter, caller.frame);
    if (is_whole) set_filled_list(interpreter, result, list);
}

static void for_each(lisp_interpreter* interpreter, lisp_environment* environment, lisp_object* arguments,
                     bool has_index)
{
    const std::uint64_t size = lisp_list_count(&arguments[1]);
    element_caller caller;
    if (!start_calls(&caller, interpreter, environment, &arguments[0], has_index)) return;
    const lisp_cell* source = first_cell(&arguments[1]);
    for (std::uint64_t i = 0; i < size && !interpreter->is_abandoned; ++i, source = source->next)
        call_with_element(&caller, i, source->element, &caller.frame[2]);
    lisp_pop_frame(interpreter, caller.frame);
}

LISP_NATIVE(lisp_native_map)
{
    map(interpreter, environment, arguments, false, result);
}

LISP_NATIVE(lisp_native_map_with_index)
{
    map(interpreter, environment, arguments, true, result);
}

LISP_NATIVE(lisp_native_for_each)
{
    for_each(interpreter, environment, arguments, false);
}

LISP_NATIVE(lisp_native_for_each_with_index)
{
    for_each(interpreter, environment, arguments, true);
}
