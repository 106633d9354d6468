#pragma once

#include "script_text.h"

#include <xum/lisp/lisp.h>

#include <string>
#include <vector>

/// The interpreter that the scripts of one run of the program share. What scripts print goes to standard output; fatal
/// messages go to standard error and end the program with status 1. One at a time.
class LispSession {
public:
    /// Throws std::runtime_error when there is no memory for the heap.
    LispSession();
    ~LispSession();
    LispSession(const LispSession&) = delete;
    LispSession& operator=(const LispSession&) = delete;

    enum class Printing { Nothing, LastValue, EachValue };

    /// Reads and evaluates all expressions. False, with a report of where and why, when one cannot be read; what stands
    /// before it stays evaluated. An interruption ends the run and is reported.
    bool run(const ScriptText& script, Printing printing);

    /// Where `load` looks: in the directory ("" for the working directory), then among the scripts of the engine's
    /// data.
    void setLoadPath(std::string directory);

    /// Whether more lines are needed before the text can be run.
    enum class Completeness { Empty, Open, Complete };
    static Completeness findCompleteness(const std::string& text);

    /// What the root environment binds, sorted.
    std::vector<std::string> listNames() const;

    /// The signature of the closure that the root environment binds to the name; empty when there is none.
    std::string findSignature(const std::string& name);

    lisp_interpreter& getInterpreter() { return interpreter; }

private:
    bool readExpression(const ScriptText& script, lisp_object* result, std::int64_t& next);

    lisp_interpreter interpreter;
    lisp_output output;
};
