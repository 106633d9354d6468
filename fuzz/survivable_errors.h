#pragma once

#include <xum/engine/log.h>
#include <xum/engine/message_box.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Thrown where the library is about to end the process, which a fuzzer must outlive. error() shows a message box
/// before it exits; the box throws, and all on the way is released.
struct FatalError {};

/// To be called once, before the first input.
inline void makeErrorsSurvivable()
{
    getLog().setstate(std::ios::badbit); // nobody reads it, and millions of lines would fill the disk
    messageBoxFunction = [](std::uint32_t, const char*, const char*) -> int { throw FatalError(); };
}

/// Ends the process as a sanitizer does: the fuzzer keeps the input.
inline void abortIf(bool isWrong, const char* what)
{
    if (!isWrong) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}
