#include "interruption.h"

#include <xum/lisp/lisp.h>

#include <csignal>

namespace {

lisp_interpreter* interrupted = nullptr;
volatile std::sig_atomic_t wasInterrupted = 0;

void handleInterruption(int number)
{
    wasInterrupted = 1;
    // Outside of an evaluation the mark would hide the first message of the next one.
    if (interrupted != nullptr && interrupted->stack_origin != nullptr) interrupted->is_abandoned = true;
#ifdef _WIN32
    std::signal(number, handleInterruption); // it was reset
#else
    static_cast<void>(number);
#endif
}

void setHandler(void (*handler)(int))
{
#ifdef _WIN32
    std::signal(SIGINT, handler);
#else
    // Unlike signal's, this one is not followed by the system's going on with a read that was waiting.
    struct sigaction action = {};
    action.sa_handler = handler;
    sigaction(SIGINT, &action, nullptr);
#endif
}

} // namespace

Interruption::Interruption(lisp_interpreter& interpreter)
{
    interrupted = &interpreter;
    setHandler(handleInterruption);
}

Interruption::~Interruption()
{
    setHandler(SIG_DFL);
    interrupted = nullptr;
}

bool isInterrupted()
{
    return wasInterrupted != 0;
}

bool takeInterruption()
{
    const bool was = isInterrupted();
    wasInterrupted = 0;
    return was;
}
