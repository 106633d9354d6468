#include <xum/lisp/lisp_evaluator.h>

#include <xum/lisp/lisp_arguments.h>
#include <xum/lisp/lisp_call.h>
#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_macro.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

/*
 * A call evaluates its arguments into a frame on the value stack, checks them, and either calls the native function or
 * copies them into the closure's own environment. Nothing has to be restored behind a call, so the last expression of a
 * body, the branch that `if` takes, the last operand of `do` and a macro's expansion are evaluated by going round the
 * loop instead of recursing: a recursion in tail position may run for ever.
 *
 * What may be left to do behind such a jump is the return check of the closures on the way. A check without type
 * variables is remembered, once for each closure, and made at the end.
 */

static constexpr std::uint32_t pending_limit = 4;

struct return_checks {
    lisp_closure* closures[pending_limit];
    std::uint32_t count;
};

void lisp_evaluate_to_itself(lisp_interpreter* /*interpreter*/, lisp_object* result, lisp_environment* /*environment*/,
                             const lisp_object* object)
{
    lisp_copy_value(result, object);
}

static void report_unbound(lisp_interpreter* interpreter, const lisp_object* symbol)
{
    lisp_print_format(interpreter, "error: symbol '%s' has no binding!", symbol->payload.symbol->name->text.characters);
}

void lisp_evaluate_symbol(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                          const lisp_object* object)
{
    const lisp_object* value = lisp_bound_value(environment, object);
    if (value != nullptr) {
        lisp_copy_value(result, value);
        return;
    }
    lisp_set_nil(interpreter, result);
    if (!interpreter->is_abandoned) report_unbound(interpreter, object);
}

static inline void evaluate(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                            const lisp_object* object)
{
    switch (object->type->kind) {
    case lisp_kind_symbol: lisp_evaluate_symbol(interpreter, result, environment, object); break;
    case lisp_kind_list: lisp_evaluate_list(interpreter, result, environment, object); break;
    default: object->type->evaluate(interpreter, result, environment, object); break;
    }
}

void lisp_eval(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
               const lisp_object* object)
{
    if (interpreter == nullptr) {
        lisp_fatal("eval() -> funny parameters...");
        return;
    }
    if (object == nullptr || environment == nullptr) {
        interpreter->output->error("eval() -> funny parameters...");
        return;
    }
    evaluate(interpreter, result, environment, object);
}

/* The head's value: a closure or macro record stays where it is whatever the arguments rebind. */
static bool find_head(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* head,
                      lisp_kind* kind, lisp_payload* payload)
{
    lisp_object* frame = nullptr;
    const lisp_object* value;
    if (head->type->kind == lisp_kind_symbol) {
        value = lisp_bound_value(environment, head);
        if (value == nullptr) {
            report_unbound(interpreter, head);
            value = &interpreter->nil;
        }
    } else {
        frame = lisp_push_frame(interpreter, 1);
        if (frame == nullptr) return false;
        evaluate(interpreter, frame, environment, head);
        value = frame;
    }
    *kind = value->type->kind;
    *payload = value->payload;
    const bool is_callable = *kind == lisp_kind_closure || *kind == lisp_kind_macro;
    if (!is_callable && !interpreter->is_abandoned)
        lisp_print_format(interpreter, "error: expected :closure (got %s)!", value->type->name);
    if (frame != nullptr) lisp_pop_frame(interpreter, frame);
    return is_callable;
}

/* Two integers are what a call of arithmetic nearly always has; the function itself would do the same. */
static inline bool compute(lisp_interpreter* interpreter, lisp_special special, const lisp_object* arguments,
                           lisp_object* result)
{
    const lisp_type* integer = interpreter->kinds[lisp_kind_integer];
    if (special < lisp_special_add || arguments[0].type != integer || arguments[1].type != integer) return false;
    const std::int64_t first = arguments[0].payload.integer;
    const std::int64_t second = arguments[1].payload.integer;
    const std::uint64_t a = static_cast<std::uint64_t>(first); // wraps, where signed arithmetic must not
    const std::uint64_t b = static_cast<std::uint64_t>(second);
    std::uint64_t value = 0;
    switch (special) {
    case lisp_special_add: value = a + b; break;
    case lisp_special_subtract: value = a - b; break;
    case lisp_special_multiply: value = a * b; break;
    case lisp_special_less: lisp_set_boolean(interpreter, result, first < second); return true;
    default: lisp_set_boolean(interpreter, result, first == second); return true;
    }
    lisp_copy_value(result, &arguments[0]);
    result->payload.integer = static_cast<std::int64_t>(value);
    return true;
}

static bool remember_return_check(return_checks* checks, lisp_closure* closure)
{
    if (closure->returns_anything) return true;
    if (!closure->has_plain_return) return false;
    for (std::uint32_t i = 0; i < checks->count; ++i)
        if (checks->closures[i] == closure) return true;
    if (checks->count == pending_limit) return false;
    checks->closures[checks->count++] = closure;
    return true;
}

/* What to go on with in place of the call, or null when the result is there. */
struct continuation {
    const lisp_object* expression;
    lisp_environment* environment;
};

static const lisp_object* element_at(const lisp_list* list, std::uint64_t index)
{
    const lisp_cell* cell = list->first;
    for (; index != 0; --index) cell = cell->next;
    return cell->element;
}

static continuation call_if(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
                            const lisp_list* list)
{
    lisp_object* frame = lisp_push_frame(interpreter, 3);
    if (frame == nullptr) return {};
    evaluate(interpreter, frame, environment, element_at(list, 1));
    const bool is_boolean = frame->type->kind == lisp_kind_boolean;
    const bool is_true = frame->payload.integer != 0;
    if (!is_boolean && !interpreter->is_abandoned) {
        lisp_copy_value(&frame[1], element_at(list, 2));
        lisp_copy_value(&frame[2], element_at(list, 3));
        lisp_check_arguments(interpreter, closure, frame, 3);
    }
    lisp_pop_frame(interpreter, frame);
    if (!is_boolean || interpreter->is_abandoned) return {};
    return {element_at(list, is_true ? 2 : 3), environment};
}

static continuation evaluate_in_order(lisp_interpreter* interpreter, lisp_environment* environment,
                                      const lisp_cell* cell, std::uint64_t count, lisp_object* result)
{
    if (count == 0) return {};
    for (; count > 1; --count, cell = cell->next) evaluate(interpreter, result, environment, cell->element);
    return {cell->element, environment};
}

/* A closure whose return type depends on its arguments: they are checked again for it before the parameters are bound,
   and the body is evaluated by recursion. Out of line: its bindings are large. */
#ifdef __GNUC__
__attribute__((noinline))
#endif
static void
call_with_bindings(lisp_interpreter* interpreter, lisp_closure* closure, lisp_object* frame, std::uint32_t count,
                   lisp_object* result)
{
    lisp_bindings bindings;
    lisp_bind_types(closure, frame, count, &bindings);
    const bool is_bound = lisp_bind_parameters(interpreter, closure, frame, count);
    lisp_pop_frame(interpreter, frame);
    if (!is_bound) return;
    lisp_evaluate_body(interpreter, closure, result);
    lisp_check_return(interpreter, closure, &bindings, result);
}

static continuation call_closure(lisp_interpreter* interpreter, lisp_environment* environment, lisp_closure* closure,
                                 const lisp_list* list, return_checks* checks, lisp_object* result)
{
    const std::uint64_t count = list->count - 1;
    if (!lisp_check_argument_count(interpreter, closure, count)) return {};
    if (closure->special == lisp_special_if) return call_if(interpreter, environment, closure, list);
    if (closure->special == lisp_special_do)
        return evaluate_in_order(interpreter, environment, list->first->next, count, result);

    lisp_object* frame = lisp_evaluate_arguments(interpreter, environment, closure, list);
    if (frame == nullptr) return {};
    if (count == 2 && compute(interpreter, closure->special, frame, result)) {
        lisp_pop_frame(interpreter, frame);
        return {};
    }
    const std::uint32_t argument_count = static_cast<std::uint32_t>(count);
    if (!lisp_check_arguments(interpreter, closure, frame, argument_count)) {
        lisp_pop_frame(interpreter, frame);
        return {};
    }
    if (closure->native != nullptr) {
        closure->native(interpreter, environment, closure, frame, argument_count, result);
        if (!closure->is_trusted) lisp_check_native_return(interpreter, closure, frame, argument_count, result);
        lisp_pop_frame(interpreter, frame);
        return {};
    }
    if (!remember_return_check(checks, closure)) {
        call_with_bindings(interpreter, closure, frame, argument_count, result);
        return {};
    }
    const bool is_bound = lisp_bind_parameters(interpreter, closure, frame, argument_count);
    lisp_pop_frame(interpreter, frame);
    if (!is_bound || closure->body == nullptr) return {};
    interpreter->activation->environment = closure->environment; // the body may bind names there
    return evaluate_in_order(interpreter, closure->environment, closure->body->first, closure->body->count, result);
}

static void run(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                const lisp_object* expression)
{
    return_checks checks;
    checks.count = 0;
    lisp_object expansion; // a macro's, kept here for the collector
    lisp_activation activation = {interpreter->activation, nullptr, environment, expression};
    interpreter->activation = &activation;
    for (;;) {
        lisp_set_nil(interpreter, result);
        if (interpreter->is_abandoned) break;
        const lisp_list* list = expression->payload.list;
        if (list == nullptr || list->count == 0) {
            lisp_print_line(interpreter, "error: empty list evaluated!");
            break;
        }
        if (list->is_quoted) {
            lisp_copy_value(result, expression);
            break;
        }
        lisp_kind kind;
        lisp_payload head;
        if (!find_head(interpreter, environment, list->first->element, &kind, &head)) break;
        continuation next;
        if (kind == lisp_kind_macro) {
            if (!lisp_expand_macro(interpreter, environment, head.macro, list, result)) break;
            lisp_copy_value(&expansion, result);
            next = {&expansion, environment};
        } else {
            activation.closure = head.closure;
            next = call_closure(interpreter, environment, head.closure, list, &checks, result);
        }
        if (next.expression == nullptr) break;
        expression = next.expression;
        environment = next.environment;
        activation.expression = expression;
        activation.environment = environment;
        if (expression->type->kind != lisp_kind_list) {
            evaluate(interpreter, result, environment, expression);
            break;
        }
    }
    interpreter->activation = activation.previous;
    for (std::uint32_t i = 0; i < checks.count; ++i)
        lisp_check_return(interpreter, checks.closures[i], nullptr, result);
}

/* The outermost evaluation: where the C stack is measured from. */
#ifdef __GNUC__
__attribute__((noinline))
#endif
static void
run_outermost(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
              const lisp_object* expression)
{
    const char here = 0;
    lisp_object* stack_top = interpreter->stack_top;
    interpreter->stack_origin = &here;
    interpreter->is_abandoned = false;
    run(interpreter, result, environment, expression);
    if (interpreter->is_abandoned) lisp_set_nil(interpreter, result);
    interpreter->is_abandoned = false;
    interpreter->stack_origin = nullptr;
    interpreter->stack_top = stack_top;
}

/* A call of arithmetic with two arguments inside of another call, without what only other calls need: what it works on
   is held by the outer call, and the function is a constant. False when the list is no such call. */
static bool call_arithmetic(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                            const lisp_list* list)
{
    if (list == nullptr || list->count != 3 || list->is_quoted || interpreter->is_abandoned) return false;
    const lisp_cell* head = list->first;
    if (head->element->type->kind != lisp_kind_symbol) return false;
    const lisp_object* value = lisp_bound_value(environment, head->element);
    if (value == nullptr || value->type->kind != lisp_kind_closure) return false;
    const lisp_closure* closure = value->payload.closure;
    if (closure->special < lisp_special_add || !lisp_has_room(interpreter, 2)) return false;

    lisp_object* frame = interpreter->stack_top;
    lisp_evaluate_argument(interpreter, environment, head->next->element, &frame[0]);
    lisp_evaluate_argument(interpreter, environment, head->next->next->element, &frame[1]);
    if (!compute(interpreter, closure->special, frame, result)) {
        lisp_set_nil(interpreter, result);
        if (!interpreter->is_abandoned && lisp_check_arguments(interpreter, closure, frame, 2))
            closure->native(interpreter, environment, closure, frame, 2, result);
    }
    interpreter->stack_top = frame;
    return true;
}

void lisp_evaluate_list(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                        const lisp_object* object)
{
    const char here = 0;
    if (interpreter->stack_origin == nullptr) {
        run_outermost(interpreter, result, environment, object);
    } else if (lisp_is_stack_deep_at(interpreter, &here)) {
        lisp_abandon_recursion(interpreter);
        lisp_set_nil(interpreter, result);
    } else if (!call_arithmetic(interpreter, result, environment, object->payload.list)) {
        run(interpreter, result, environment, object);
    }
}
