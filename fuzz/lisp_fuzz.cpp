#include "heap_check.h"

#include <xum/lisp/lisp.h>
#include <xum/lisp/lisp_reader.h>

#include <sys/time.h>

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

// Evaluates each input as a script in a fresh interpreter of a small region, and checks its heap.

namespace {

constexpr std::uint64_t regionSize = 1u << 20;

lisp_interpreter* running = nullptr;

/// A script may run for ever without taking memory, by calls in tail position. Each of its expressions is given up
/// after a while, as if it had reached a limit.
void giveUp(int)
{
    if (running != nullptr && running->stack_origin != nullptr) running->is_abandoned = true;
}

void startTimer()
{
    struct sigaction action = {};
    action.sa_handler = giveUp;
    action.sa_flags = SA_RESTART;
    sigaction(SIGVTALRM, &action, nullptr);
    const itimerval interval = {{0, 50000}, {0, 50000}};
    setitimer(ITIMER_VIRTUAL, &interval, nullptr);
}

void print(void*, const char*) {}

/// What ends the process of a host; here the interpreter must be able to go on.
void returnFromFatal(const char*) {}

void abortIf(bool isWrong, const char* what)
{
    if (!isWrong) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

void check(lisp_interpreter* interpreter)
{
    abortIf(interpreter->stack_top != interpreter->stack, "the value stack is not empty");
    abortIf(interpreter->activation != nullptr, "an activation is left");
    abortIf(interpreter->stack_origin != nullptr, "an evaluation is left");
    abortIf(interpreter->tables_in_use != 0, "a table is in use");
    const std::string problem = lisp_check_heap(interpreter);
    abortIf(!problem.empty(), problem.c_str());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    startTimer();
    // Collections report to standard output.
    return std::freopen("/dev/null", "w", stdout) == nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const lisp_output output = {print, returnFromFatal, nullptr};
    const auto interpreter = std::make_unique<lisp_interpreter>();
    abortIf(!lisp_start(interpreter.get(), &output, regionSize), "the region is too small");
    running = interpreter.get();
    interpreter->memory->unlock_all(&interpreter->heap);
    lisp_read_all(interpreter.get(), text.c_str(), &interpreter->root, 0, nullptr);
    check(interpreter.get());
    interpreter->memory->unlock_all(&interpreter->heap);
    interpreter->memory->garbage_collection(&interpreter->heap, &interpreter->root);
    check(interpreter.get());
    running = nullptr;
    lisp_stop(interpreter.get());
    return 0;
}
