#pragma once

#include <xum/lisp/lisp.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

constexpr std::uint64_t smallRegion = 4u << 20;

/// An interpreter that attempts are made on. It uses the library's own entry points, as the scripting device does, with
/// a region of any size; fatal conditions return.
class HostileInterpreter {
public:
    explicit HostileInterpreter(std::uint64_t regionSize = smallRegion);
    ~HostileInterpreter();

    HostileInterpreter(const HostileInterpreter&) = delete;
    HostileInterpreter& operator=(const HostileInterpreter&) = delete;

    /// Evaluates a text as a script of its own. What it prints, with "(unreadable)" behind it when it is that; lines
    /// past the first 1000 are counted only. Reports of collections are left out.
    std::string run(const std::string& text);

    /// The first violation of an invariant of the heap, or empty.
    std::string checkHeap();

    /// Sums up that nothing is broken: the heap holds, nothing stays abandoned or on a stack, and a value evaluates.
    bool isHealthy();

    lisp_interpreter* get() { return interpreter.get(); }

    /// Since the start of the process.
    static std::vector<std::string>& fatalMessages();

private:
    static void print(void* user, const char* text);

    std::unique_ptr<lisp_interpreter> interpreter;
    lisp_output output;
    std::string printed;
    std::uint64_t lineCount = 0;
};
