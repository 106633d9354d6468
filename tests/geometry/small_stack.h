#pragma once

#include <functional>

#ifndef _WIN32
#    include <pthread.h>

#    include <stdexcept>
#endif

/// Runs a function where there is no room for deep recursion: on a thread with a stack of 256 KiB. On Windows it runs
/// on the stack of the caller.
inline void runOnSmallStack(std::function<void()> function)
{
#ifdef _WIN32
    function();
#else
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    const int failure = pthread_create(&thread, &attributes, run, &function);
    pthread_attr_destroy(&attributes);
    if (failure != 0) throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
#endif
}
