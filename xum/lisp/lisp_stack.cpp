#include <xum/lisp/lisp_stack.h>

void lisp_abandon(lisp_interpreter* interpreter, const char* message)
{
    if (interpreter->is_abandoned) return;
    lisp_print_line(interpreter, message);
    if (interpreter->stack_origin != nullptr) interpreter->is_abandoned = true;
}

void lisp_abandon_recursion(lisp_interpreter* interpreter)
{
    lisp_abandon(interpreter, "error: recursion too deep!");
}

bool lisp_is_stack_deep(lisp_interpreter* interpreter)
{
    const char here = 0;
    if (interpreter->stack_origin == nullptr || !lisp_is_stack_deep_at(interpreter, &here)) return false;
    lisp_abandon_recursion(interpreter);
    return true;
}
