#pragma once

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

/// An argument that is not lazy. While it is being evaluated its record is on the stack, where a collection sees it.
/// Inline: nothing runs more often.
inline void lisp_evaluate_argument(lisp_interpreter* interpreter, lisp_environment* environment,
                                   const lisp_object* element, lisp_object* argument)
{
    const lisp_type* type = element->type;
    if (type->kind == lisp_kind_symbol) {
        const lisp_object* value = lisp_bound_value(environment, element);
        if (value != nullptr)
            lisp_copy_value(argument, value);
        else
            lisp_evaluate_symbol(interpreter, argument, environment, element); // reports
    } else if (type->is_self_evaluating) {
        lisp_copy_value(argument, element);
    } else {
        lisp_set_nil(interpreter, argument);
        interpreter->stack_top = argument + 1;
        if (type->kind == lisp_kind_list)
            lisp_evaluate_list(interpreter, argument, environment, element);
        else
            type->evaluate(interpreter, argument, environment, element);
    }
    interpreter->stack_top = argument + 1;
}

/// The same for all arguments of a closure that takes some of them as they are. False when memory runs out.
bool lisp_evaluate_arguments_lazily(lisp_interpreter* interpreter, lisp_environment* environment,
                                    const lisp_closure* closure, const lisp_cell* cell, lisp_object* frame,
                                    std::uint32_t count);

/// Evaluates the arguments of a call, the elements of the list behind its head, into a new frame. Null when the
/// evaluation was given up.
inline lisp_object* lisp_evaluate_arguments(lisp_interpreter* interpreter, lisp_environment* environment,
                                            const lisp_closure* closure, const lisp_list* list)
{
    lisp_object* frame = interpreter->stack_top;
    if (!lisp_has_room(interpreter, list->count - 1)) {
        lisp_abandon_recursion(interpreter);
        return nullptr;
    }
    const std::uint32_t count = static_cast<std::uint32_t>(list->count - 1);
    const lisp_cell* cell = list->first->next;
    bool is_done = true;
    if (closure->signature_entries.lazy == 0) {
        for (std::uint32_t i = 0; i < count; ++i, cell = cell->next)
            lisp_evaluate_argument(interpreter, environment, cell->element, &frame[i]);
    } else {
        is_done = lisp_evaluate_arguments_lazily(interpreter, environment, closure, cell, frame, count);
    }
    if (is_done && !interpreter->is_abandoned) return frame;
    interpreter->stack_top = frame;
    return nullptr;
}
