#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

/// Records the calls that the library makes to OpenGL and to SDL's functions for OpenGL contexts, as text such as
/// "glUseProgram(3)". Of OpenGL those that bind, upload, draw, or set uniforms and targets; queries and plain state are
/// left out. Only for programs that link gl_call_recorder.cpp, which answers in the place of these functions and then
/// passes the call on.

namespace GLCall {

inline std::string textOf(const char* value)
{
    return '"' + std::string(value) + '"';
}

inline std::string textOf(const void* value)
{
    return value != nullptr ? "pointer" : "null";
}

/// The number itself is what counts.
inline std::string textOf(const int* value)
{
    return value != nullptr ? '*' + std::to_string(*value) : "null";
}

template <class Value>
requires std::is_arithmetic_v<Value> std::string textOf(Value value)
{
    return std::to_string(+value);
}

inline const void* const null = nullptr;
inline const void* const pointer = &null; ///< Stands for any pointer that is not null.

/// How a call is written: describe("glUseProgram", 3).
template <class... Arguments>
std::string describe(const char* name, Arguments... arguments)
{
    std::string text;
    ((text += (text.empty() ? "" : ", ") + textOf(arguments)), ...);
    return name + ('(' + text + ')');
}

/// The calls that happen during `act`, in order.
std::vector<std::string> recordedDuring(const std::function<void()>& act);

/// Only those of them that start with that name.
std::vector<std::string> recordedDuring(const std::function<void()>& act, const std::string& name);

/// Whether SDL makes no contexts from now on.
void refuseContexts(bool refuse);

} // namespace GLCall
