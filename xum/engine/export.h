#pragma once

/// @file
/// What each public header begins with: the mark of what is exported, and the type of the clock.

#include <cstdint>

/// @def XUM_API
/// Marks what the library exports; hosts have no use for it.
/// XUM_BUILDING is set while the library itself is compiled; XUM_STATIC where its objects are linked straight into a
/// program, as the tests of internals do.
#if defined(XUM_STATIC)
#    define XUM_API
#elif defined(_WIN32)
#    if defined(XUM_BUILDING)
#        define XUM_API __declspec(dllexport)
#    else
#        define XUM_API __declspec(dllimport)
#    endif
#else
#    define XUM_API __attribute__((visibility("default")))
#endif

/// The type of the engine clock: milliseconds since the first Engine::update.
using uint64 = std::uint64_t;
