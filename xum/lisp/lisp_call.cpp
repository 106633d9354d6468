#include <xum/lisp/lisp_call.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

static std::uint32_t parameter_count(const lisp_closure* closure)
{
    return closure->signature_entries.entry_count - 1u;
}

/* The parameter that an argument belongs to: a rest parameter, always the last, takes all from its place on. */
static std::uint32_t parameter_of(const lisp_closure* closure, std::uint32_t argument)
{
    const std::uint32_t last = parameter_count(closure) - 1;
    return argument < last ? argument : last;
}

static bool is_rest(const lisp_closure* closure, std::uint32_t argument)
{
    return closure->signature_entries.has_rest && argument >= parameter_count(closure) - 1;
}

void lisp_report_argument_count(lisp_interpreter* interpreter)
{
    if (!interpreter->is_abandoned) lisp_print_line(interpreter, "error: wrong number of parameters!");
}

static void write_declared(const lisp_interpreter* interpreter, const lisp_bindings* bindings,
                           const lisp_type_entry* entry, char* out, std::size_t size)
{
    const bool is_variable = entry->type == nullptr && entry->letter != 0;
    const lisp_type* bound = is_variable ? lisp_bound_type(bindings, entry->letter) : nullptr;
    const lisp_type_entry outer = {const_cast<lisp_type*>(bound), 0, 0, nullptr};
    lisp_write_entry(interpreter, bound != nullptr ? &outer : entry, out, size);
}

/* Goes through the arguments once more, now with words. */
#ifdef __GNUC__
__attribute__((noinline))
#endif
static void
report_mismatches(lisp_interpreter* interpreter, const lisp_closure* closure, const lisp_object* arguments,
                  std::uint32_t count)
{
    if (interpreter->is_abandoned) return;
    char declared[4096];
    char actual[4096];
    lisp_bindings bindings;
    lisp_bindings_init(&bindings, closure);
    lisp_print_format(interpreter, "closure: %s", closure->name != nullptr ? closure->name->text.characters : "");
    for (std::uint32_t i = 0; i < count; ++i) {
        const lisp_type_entry* entry = &closure->signature_entries.entries[parameter_of(closure, i)];
        if (lisp_match_value(&bindings, entry, &arguments[i], is_rest(closure, i))) continue;
        write_declared(interpreter, &bindings, entry, declared, sizeof declared);
        lisp_write_value_type(interpreter, &arguments[i], actual, sizeof actual);
        lisp_print_format(interpreter, "  error: expected '%s' but got '%s' for parameter %u.", declared, actual, i);
    }
    if (closure->variable_count == 0) return;
    lisp_print_line(interpreter, "type bounds:");
    for (std::uint32_t i = 0; i < closure->variable_count; ++i)
        if (bindings.types[i] != nullptr)
            lisp_print_format(interpreter, "  :%c -> %s", closure->variables[i], bindings.types[i]->name);
}

static bool check_entries(const lisp_closure* closure, const lisp_object* arguments, std::uint32_t count,
                          lisp_bindings* bindings)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t parameter = parameter_of(closure, i);
        const lisp_type_entry* entry = &closure->signature_entries.entries[parameter];
        if (!lisp_match_value(bindings, entry, &arguments[i], is_rest(closure, i))) return false;
    }
    return true;
}

static bool check_plainly(const lisp_closure* closure, const lisp_object* arguments, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        const lisp_check* check = &closure->checks[parameter_of(closure, i)];
        if (check->form == lisp_check_type && check->type != arguments[i].type) return false;
    }
    return true;
}

/* The usual shape of arithmetic and comparison: only variables, none of them at a rest parameter. All arguments of one
   type always match, so one comparison each is enough. */
static bool have_one_type(const lisp_object* arguments, std::uint32_t count)
{
    for (std::uint32_t i = 1; i < count; ++i)
        if (arguments[i].type != arguments[0].type) return false;
    return true;
}

bool lisp_check_arguments(lisp_interpreter* interpreter, const lisp_closure* closure, const lisp_object* arguments,
                          std::uint32_t count)
{
    if (closure->has_plain_checks) {
        if (check_plainly(closure, arguments, count)) return true;
    } else if (closure->has_variable_checks && have_one_type(arguments, count)) {
        return true;
    } else {
        lisp_bindings bindings;
        lisp_bindings_init(&bindings, closure);
        if (check_entries(closure, arguments, count, &bindings)) return true;
    }
    report_mismatches(interpreter, closure, arguments, count);
    return false;
}

void lisp_bind_types(const lisp_closure* closure, const lisp_object* arguments, std::uint32_t count,
                     lisp_bindings* bindings)
{
    lisp_bindings_init(bindings, closure);
    check_entries(closure, arguments, count, bindings);
}

static bool make_rest_list(lisp_interpreter* interpreter, const lisp_object* arguments, std::uint32_t count,
                           lisp_object* out)
{
    if (count == 0) {
        lisp_copy_value(out, &interpreter->root_list);
        return true;
    }
    lisp_list* list = lisp_make_list(interpreter, count);
    if (list == nullptr) return false;
    list->has_only_leaves = true;
    lisp_cell* cell = list->first;
    for (std::uint32_t i = 0; i < count; ++i, cell = cell->next) {
        cell->element = lisp_copy_to_slot(interpreter, &arguments[i]);
        if (cell->element == nullptr) return false;
        list->has_only_leaves = list->has_only_leaves && lisp_is_leaf(cell->element);
    }
    lisp_set_list(interpreter, out, list, nullptr);
    return true;
}

/* The first call makes the symbol that every later one writes into. */
static bool bind_parameter(lisp_interpreter* interpreter, lisp_closure* closure, lisp_closure_parameter* parameter,
                           const lisp_object* value)
{
    if (parameter->symbol == nullptr) {
        void* known = lisp_hash_table_get(&closure->environment->table, parameter->name);
        parameter->symbol = static_cast<lisp_object*>(known);
        if (known == nullptr)
            parameter->symbol = lisp_set_symbol(interpreter, closure->environment, parameter->name, value, false, true);
        if (parameter->symbol == nullptr) return false;
    }
    lisp_symbol* symbol = parameter->symbol->payload.symbol;
    symbol->is_constant = false;
    return lisp_store_value(interpreter, symbol, value);
}

bool lisp_bind_parameters(lisp_interpreter* interpreter, lisp_closure* closure, const lisp_object* arguments,
                          std::uint32_t count)
{
    const std::uint32_t parameters = parameter_count(closure);
    const std::uint32_t single = parameters - (closure->signature_entries.has_rest ? 1 : 0);
    for (std::uint32_t i = 0; i < single; ++i)
        if (!bind_parameter(interpreter, closure, &closure->parameters[i], &arguments[i])) return false;
    if (single == parameters) return true;
    lisp_object rest;
    return make_rest_list(interpreter, arguments + single, count - single, &rest) &&
           bind_parameter(interpreter, closure, &closure->parameters[single], &rest);
}

void lisp_evaluate_body(lisp_interpreter* interpreter, lisp_closure* closure, lisp_object* result)
{
    lisp_set_nil(interpreter, result);
    if (closure->body == nullptr) return;
    lisp_activation activation = {interpreter->activation, closure, closure->environment, nullptr};
    interpreter->activation = &activation;
    const lisp_cell* cell = closure->body->first;
    for (std::uint64_t i = 0; i < closure->body->count && !interpreter->is_abandoned; ++i, cell = cell->next)
        lisp_eval(interpreter, result, closure->environment, cell->element);
    interpreter->activation = activation.previous;
    if (interpreter->is_abandoned) lisp_set_nil(interpreter, result);
}

void lisp_check_return(lisp_interpreter* interpreter, const lisp_closure* closure, lisp_bindings* bindings,
                       lisp_object* result)
{
    if (closure->returns_anything || result->type->kind == lisp_kind_nil || interpreter->is_abandoned) return;
    const lisp_type_entry* entry = &closure->signature_entries.entries[closure->signature_entries.entry_count - 1];
    if (entry->type == result->type && entry->count == 0) return;
    lisp_bindings none;
    if (bindings == nullptr) {
        lisp_bindings_init(&none, closure);
        bindings = &none;
    }
    if (lisp_match_value(bindings, entry, result, false)) return;
    lisp_print_line(interpreter, "error: return type check failed!");
    lisp_set_nil(interpreter, result);
}

void lisp_check_native_return(lisp_interpreter* interpreter, const lisp_closure* closure, const lisp_object* arguments,
                              std::uint32_t count, lisp_object* result)
{
    lisp_bindings bindings;
    lisp_bind_types(closure, arguments, count, &bindings);
    lisp_check_return(interpreter, closure, &bindings, result);
}

void lisp_call(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
               lisp_object* arguments, std::uint32_t count, lisp_object* result)
{
    if (lisp_is_stack_deep(interpreter)) return; // natives that call closures may call each other without end
    if (closure->native != nullptr) {
        closure->native(interpreter, environment, closure, arguments, count, result);
        if (!closure->is_trusted) lisp_check_native_return(interpreter, closure, arguments, count, result);
        return;
    }
    if (closure->has_plain_return) {
        if (!lisp_bind_parameters(interpreter, closure, arguments, count)) return;
        lisp_evaluate_body(interpreter, closure, result);
        lisp_check_return(interpreter, closure, nullptr, result);
        return;
    }
    lisp_bindings bindings;
    lisp_bind_types(closure, arguments, count, &bindings);
    if (!lisp_bind_parameters(interpreter, closure, arguments, count)) return;
    lisp_evaluate_body(interpreter, closure, result);
    lisp_check_return(interpreter, closure, &bindings, result);
}

void lisp_apply(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
                const lisp_object* arguments, std::uint32_t count, lisp_object* result)
{
    lisp_set_nil(interpreter, result);
    if (interpreter->is_abandoned || !lisp_check_argument_count(interpreter, closure, count)) return;
    lisp_object* frame = lisp_push_frame(interpreter, count);
    if (frame == nullptr) return;
    for (std::uint32_t i = 0; i < count; ++i) lisp_copy_value(&frame[i], &arguments[i]);
    if (lisp_check_arguments(interpreter, closure, frame, count))
        lisp_call(interpreter, environment, closure, frame, count, result);
    lisp_pop_frame(interpreter, frame);
    if (interpreter->is_abandoned) lisp_set_nil(interpreter, result);
}

bool lisp_quote_list(lisp_interpreter* interpreter, lisp_object* list)
{
    if (list->payload.list == nullptr || list->payload.list->is_quoted) return true;
    lisp_list* quoted = lisp_allocate_record<lisp_list>(interpreter);
    if (quoted == nullptr) {
        lisp_out_of_memory(interpreter);
        return false;
    }
    *quoted = *list->payload.list;
    quoted->is_quoted = true;
    list->payload.list = quoted;
    return true;
}
