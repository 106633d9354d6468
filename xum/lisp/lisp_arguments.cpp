#include <xum/lisp/lisp_arguments.h>

#include <xum/lisp/lisp_call.h>

static bool take_lazily(lisp_interpreter* interpreter, const lisp_closure* closure, const lisp_object* element,
                        lisp_object* argument)
{
    lisp_copy_value(argument, element);
    interpreter->stack_top = argument + 1;
    const bool is_to_be_quoted = closure->native == nullptr && element->type->kind == lisp_kind_list;
    return !is_to_be_quoted || lisp_quote_list(interpreter, argument);
}

bool lisp_evaluate_arguments_lazily(lisp_interpreter* interpreter, lisp_environment* environment,
                                    const lisp_closure* closure, const lisp_cell* cell, lisp_object* frame,
                                    std::uint32_t count)
{
    const std::uint64_t lazy = closure->signature_entries.lazy;
    const std::uint32_t last_parameter = closure->signature_entries.entry_count - 2u;
    for (std::uint32_t i = 0; i < count; ++i, cell = cell->next) {
        const std::uint32_t parameter = i < last_parameter ? i : last_parameter;
        if ((lazy >> parameter & 1) == 0)
            lisp_evaluate_argument(interpreter, environment, cell->element, &frame[i]);
        else if (!take_lazily(interpreter, closure, cell->element, &frame[i]))
            return false;
    }
    return true;
}
