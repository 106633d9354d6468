#pragma once

#include <xum/lisp/lisp.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// An interpreter whose lines are collected instead of written. Its fatal handler and error callback return.
class InterpreterTest : public ::testing::Test {
protected:
    InterpreterTest();
    ~InterpreterTest() override;

    bool start(std::uint64_t regionSize);

    /// The value of the last expression of a text that can be read.
    lisp_object evaluate(const std::string& text);

    /// Takes bytes until that many are left for records, beside slots for some objects.
    void leaveBytes(std::uint64_t count);

    lisp_interpreter* get() { return interpreter.get(); }
    lisp_heap& heap() { return interpreter->heap; }

    /// A slot that holds nothing but its type.
    lisp_object* allocateObject(lisp_kind kind);

    std::vector<std::string> lines;
    static std::vector<std::string> errors; // of the error callback and of the fatal handler

private:
    static void print(void* user, const char* text);
    static void error(const char* text) { errors.push_back(text); }

    lisp_output output = {print, error, &lines};
    std::unique_ptr<lisp_interpreter> interpreter;
};

using Lines = std::vector<std::string>;
