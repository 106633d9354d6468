#include <xum/lisp/lisp_macro.h>

#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

#include <cstring>

// ---- making -------------------------------------------------------------------------------------------------------

static bool is_keyword_named(const lisp_object* object, const char* name)
{
    return object->type->kind == lisp_kind_keyword && std::strcmp(object->payload.string->characters, name) == 0;
}

/* The number of parameters, without a ":rest" at the end; false after a report. */
static bool check_parameters(lisp_interpreter* interpreter, const lisp_list* list, lisp_macro* macro)
{
    const std::uint64_t count = list != nullptr ? list->count : 0;
    const lisp_cell* cell = count != 0 ? list->first : nullptr;
    for (std::uint64_t i = 0; i < count; ++i, cell = cell->next) {
        const lisp_object* parameter = cell->element;
        if (parameter->type->kind == lisp_kind_symbol) {
            ++macro->parameter_count;
        } else if (i + 1 == count && i != 0 && is_keyword_named(parameter, ":rest")) {
            macro->has_rest = true;
        } else {
            const bool is_mark = parameter->type->kind == lisp_kind_keyword;
            lisp_print_line(interpreter, is_mark ? "error: only :rest is allowed as the last parameter!"
                                                 : "error: only symbols are allowed as parameters!");
            return false;
        }
    }
    return true;
}

void lisp_make_macro(lisp_interpreter* interpreter, const lisp_list* parameters, lisp_list* body, lisp_object* result)
{
    lisp_macro made = {false, 0, nullptr, body};
    if (!check_parameters(interpreter, parameters, &made)) return;
    lisp_macro* macro = lisp_allocate_record<lisp_macro>(interpreter);
    if (macro != nullptr && made.parameter_count != 0)
        made.parameters = lisp_allocate_elements<lisp_name*>(interpreter, made.parameter_count);
    if (macro == nullptr || (made.parameter_count != 0 && made.parameters == nullptr)) {
        lisp_out_of_memory(interpreter);
        return;
    }
    const lisp_cell* cell = made.parameter_count != 0 ? parameters->first : nullptr;
    for (std::uint32_t i = 0; i < made.parameter_count; ++i, cell = cell->next)
        made.parameters[i] = cell->element->payload.symbol->name;
    *macro = made;
    lisp_set_nil(interpreter, result);
    result->type = interpreter->kinds[lisp_kind_macro];
    result->payload.macro = macro;
}

// ---- expanding ----------------------------------------------------------------------------------------------------

/* An expansion in progress. The arguments lie in a frame on the value stack; the environment that embedded evaluations
   see, the parameters in front of the caller's bindings, is made when the first of them needs it. */
struct expander {
    lisp_interpreter* interpreter;
    lisp_environment* caller;
    const lisp_macro* macro;
    lisp_object* arguments; // one a parameter
    lisp_environment* own;
    const lisp_list* top;
};

/* A list that is being built at its end. */
struct list_builder {
    lisp_interpreter* interpreter;
    lisp_list* list;
};

static bool append(list_builder* builder, lisp_object* element)
{
    lisp_cell* cell = lisp_allocate_record<lisp_cell>(builder->interpreter);
    if (cell == nullptr || element == nullptr) {
        if (cell == nullptr) lisp_out_of_memory(builder->interpreter);
        return false;
    }
    *cell = {nullptr, element};
    lisp_list* list = builder->list;
    if (list->last != nullptr)
        list->last->next = cell;
    else
        list->first = cell;
    list->last = cell;
    ++list->count;
    return true;
}

static bool report(const expander* e, const char* message)
{
    if (!e->interpreter->is_abandoned) lisp_print_line(e->interpreter, message);
    return false;
}

static const lisp_object* argument_named(const expander* e, const lisp_name* name)
{
    for (std::uint32_t i = e->macro->parameter_count; i != 0; --i)
        if (e->macro->parameters[i - 1] == name) return &e->arguments[i - 1];
    return nullptr;
}

static const lisp_object* value_named(const expander* e, const lisp_name* name)
{
    if (const lisp_object* argument = argument_named(e, name)) return argument;
    const lisp_object* symbol = lisp_find_symbol(e->caller, name);
    return symbol != nullptr ? symbol->payload.symbol->value : nullptr;
}

static lisp_environment* own_environment(expander* e)
{
    if (e->own != nullptr) return e->own;
    e->own = lisp_environment_make(e->interpreter, e->caller);
    if (e->own == nullptr) {
        lisp_out_of_memory(e->interpreter);
        return nullptr;
    }
    for (std::uint32_t i = 0; i < e->macro->parameter_count; ++i)
        if (lisp_set_symbol(e->interpreter, e->own, e->macro->parameters[i], &e->arguments[i], false, true) == nullptr)
            return nullptr;
    return e->own;
}

/* Evaluates the list behind ',' or ',,@'. The value lies in a frame that the caller pops. */
static lisp_object* evaluate_next(expander* e, const lisp_object* list)
{
    lisp_environment* environment = own_environment(e);
    lisp_object* value = environment != nullptr ? lisp_push_frame(e->interpreter, 1) : nullptr;
    if (value == nullptr) return nullptr;
    lisp_activation activation = {e->interpreter->activation, nullptr, environment, list};
    e->interpreter->activation = &activation;
    lisp_eval(e->interpreter, value, environment, list);
    e->interpreter->activation = activation.previous;
    return value;
}

/* Copies the elements: the list may be given up, and collected, before the expansion is whole. */
static bool splice(list_builder* builder, const lisp_object* list)
{
    const std::uint64_t count = lisp_list_count(list);
    const lisp_cell* cell = count != 0 ? list->payload.list->first : nullptr;
    for (std::uint64_t i = 0; i < count; ++i, cell = cell->next)
        if (!append(builder, lisp_copy_to_slot(builder->interpreter, cell->element))) return false;
    return true;
}

/* ',' and ',,@' take the element behind them, a list, and evaluate it. */
static bool insert_evaluated(expander* e, list_builder* builder, const lisp_cell* next, bool is_first, bool splices)
{
    if (is_first) return report(e, "error: evaluation with ',' or ',,@' cannot be at the start of the macro!");
    if (next == nullptr || next->element->type->kind != lisp_kind_list)
        return report(e, "error: expected list after ',' or ',,@'!");
    lisp_object* value = evaluate_next(e, next->element);
    if (value == nullptr) return false;
    bool is_done = !e->interpreter->is_abandoned;
    if (is_done && splices && value->type->kind != lisp_kind_list)
        is_done = report(e, "error: expected list as result of ',,@'!");
    else if (is_done)
        is_done = splices ? splice(builder, value) : append(builder, lisp_copy_to_slot(e->interpreter, value));
    lisp_pop_frame(e->interpreter, value);
    return is_done;
}

/* ',@' takes the element behind it, the name of a list. */
static bool insert_spliced(expander* e, list_builder* builder, const lisp_cell* next, bool is_first)
{
    if (is_first) return report(e, "error: substitution with ',@' cannot be at the start of the macro!");
    if (next == nullptr || next->element->type->kind != lisp_kind_symbol)
        return report(e, "error: substitution with ',@' must be a list!");
    const lisp_object* value = value_named(e, next->element->payload.symbol->name);
    if (value == nullptr) return report(e, "error: symbol not found!");
    if (value->type->kind != lisp_kind_list) return report(e, "error: substitution with ',@' must be a list!");
    return splice(builder, value);
}

static bool insert_named(expander* e, list_builder* builder, const char* name)
{
    if (*name == ',' || *name == '@') return report(e, "error: invalid macro substitution!");
    const lisp_name* interned = lisp_find_name(e->interpreter, name, std::strlen(name));
    const lisp_object* value = interned != nullptr ? value_named(e, interned) : nullptr;
    if (value == nullptr) return report(e, "error: symbol not found!");
    return append(builder, lisp_copy_to_slot(e->interpreter, value));
}

/* What the marker stands for; it may take the next element as well. */
static bool substitute(expander* e, list_builder* builder, const char* marker, const lisp_cell** cell, bool is_first)
{
    const lisp_cell* next = (*cell)->next;
    const bool evaluates = std::strcmp(marker, ",") == 0;
    const bool splices_evaluated = std::strcmp(marker, ",,@") == 0;
    const bool splices = std::strcmp(marker, ",@") == 0;
    if (!evaluates && !splices_evaluated && !splices) return insert_named(e, builder, marker + 1);
    *cell = next;
    return splices ? insert_spliced(e, builder, next, is_first)
                   : insert_evaluated(e, builder, next, is_first, splices_evaluated);
}

static const char* marker_of(const lisp_object* object)
{
    if (object->type->kind != lisp_kind_symbol) return nullptr;
    const char* name = object->payload.symbol->name->text.characters;
    return name[0] == ',' ? name : nullptr;
}

static bool copy_list(expander* e, const lisp_list* source, lisp_object* result);

/* Atoms are shared with the body: nobody writes into them. */
static lisp_object* copy_element(expander* e, lisp_object* element)
{
    if (element->type->kind != lisp_kind_list || lisp_list_count(element) == 0) return element;
    lisp_object copy;
    lisp_set_nil(e->interpreter, &copy);
    if (!copy_list(e, element->payload.list, &copy)) return nullptr;
    copy.payload.list->is_quoted = element->payload.list->is_quoted;
    return lisp_copy_to_slot(e->interpreter, &copy);
}

/* Sublists nest as deep as the reader or a script made them: the depth guard of evaluation watches this recursion, too.
 */
static bool copy_list(expander* e, const lisp_list* source, lisp_object* result)
{
    if (lisp_is_stack_deep(e->interpreter)) return false;
    list_builder builder = {e->interpreter, lisp_make_list(e->interpreter, 0)};
    if (builder.list == nullptr) return false;
    const lisp_cell* cell = source->first;
    const lisp_cell* end = source->last->next;
    bool is_first = source == e->top;
    while (cell != nullptr && cell != end) {
        if (const char* marker = marker_of(cell->element)) {
            if (!substitute(e, &builder, marker, &cell, is_first)) return false;
        } else {
            lisp_object* copy = copy_element(e, cell->element);
            if (copy == nullptr || !append(&builder, copy)) return false;
        }
        is_first = false;
        cell = cell->next;
    }
    lisp_set_list(e->interpreter, result, builder.list, nullptr);
    return true;
}

/* A symbol that the caller has bound stands for its value, everything else for itself. */
static void take_argument(const expander* e, const lisp_object* element, lisp_object* argument)
{
    const lisp_object* value = nullptr;
    if (element->type->kind == lisp_kind_symbol) {
        const lisp_object* symbol = lisp_find_symbol(e->caller, element->payload.symbol->name);
        value = symbol != nullptr ? symbol->payload.symbol->value : nullptr;
    }
    lisp_copy_value(argument, value != nullptr ? value : element);
}

static bool take_rest(const expander* e, const lisp_cell* cell, std::uint64_t count, lisp_object* argument)
{
    if (count == 0) {
        lisp_copy_value(argument, &e->interpreter->root_list);
        return true;
    }
    list_builder builder = {e->interpreter, lisp_make_list(e->interpreter, 0)};
    if (builder.list == nullptr) return false;
    for (std::uint64_t i = 0; i < count; ++i, cell = cell->next) {
        lisp_object value;
        take_argument(e, cell->element, &value);
        if (!append(&builder, lisp_copy_to_slot(e->interpreter, &value))) return false;
    }
    lisp_set_list(e->interpreter, argument, builder.list, nullptr);
    return true;
}

static bool take_arguments(const expander* e, const lisp_list* call)
{
    const std::uint32_t parameters = e->macro->parameter_count;
    const std::uint32_t single = parameters - (e->macro->has_rest ? 1 : 0);
    const lisp_cell* cell = call->first->next;
    for (std::uint32_t i = 0; i < single; ++i, cell = cell->next) take_argument(e, cell->element, &e->arguments[i]);
    return single == parameters || take_rest(e, cell, call->count - 1 - single, &e->arguments[single]);
}

static bool expand(expander* e, const lisp_list* call, lisp_object* result)
{
    if (!take_arguments(e, call)) return false;
    if (e->macro->body == nullptr || e->macro->body->count == 0) {
        lisp_copy_value(result, &e->interpreter->root_list);
        return true;
    }
    if (!copy_list(e, e->macro->body, result)) return false;
    return result->type->kind == lisp_kind_list || report(e, "error: macros must evaluate to a list!");
}

bool lisp_expand_macro(lisp_interpreter* interpreter, lisp_environment* environment, lisp_macro* macro,
                       const lisp_list* call, lisp_object* result)
{
    const std::uint64_t count = call->count - 1;
    const bool fits = macro->has_rest ? count + 1 >= macro->parameter_count : count == macro->parameter_count;
    if (!fits) {
        lisp_print_line(interpreter, "error: wrong number of parameters for macro!");
        return false;
    }
    // In front of the arguments the macro itself, so that a collection keeps its body.
    lisp_object* frame = lisp_push_frame(interpreter, macro->parameter_count + std::uint64_t{1});
    if (frame == nullptr) return false;
    frame->type = interpreter->kinds[lisp_kind_macro];
    frame->payload.macro = macro;
    expander e = {interpreter, environment, macro, frame + 1, nullptr, macro->body};
    const bool is_expanded = expand(&e, call, result);
    lisp_pop_frame(interpreter, frame);
    if (!is_expanded) lisp_set_nil(interpreter, result);
    return is_expanded;
}
