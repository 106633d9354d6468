#include "hostile_interpreter.h"

#include "captured_output.h"
#include "heap_check.h"

#include <xum/lisp/lisp_reader.h>

#include <gtest/gtest.h>

namespace {

void rememberFatal(const char* text)
{
    HostileInterpreter::fatalMessages().push_back(text);
}

} // namespace

std::vector<std::string>& HostileInterpreter::fatalMessages()
{
    static std::vector<std::string> messages;
    return messages;
}

HostileInterpreter::HostileInterpreter(std::uint64_t regionSize)
    : interpreter(std::make_unique<lisp_interpreter>()), output{print, rememberFatal, this}
{
    if (!lisp_start(interpreter.get(), &output, regionSize)) ADD_FAILURE() << "the region is too small";
}

HostileInterpreter::~HostileInterpreter()
{
    lisp_stop(interpreter.get());
}

void HostileInterpreter::print(void* user, const char* text)
{
    auto* self = static_cast<HostileInterpreter*>(user);
    if (++self->lineCount > 1000) return;
    self->printed += text;
    self->printed += '\n';
}

std::string HostileInterpreter::run(const std::string& text)
{
    printed.clear();
    lineCount = 0;
    const CapturedOutput collections;
    interpreter->memory->unlock_all(&interpreter->heap);
    const bool isRead = lisp_read_all(interpreter.get(), text.c_str(), &interpreter->root, 0, nullptr);
    if (lineCount > 1000) printed += "(and " + std::to_string(lineCount - 1000) + " lines)\n";
    return printed + (isRead ? "" : "(unreadable)");
}

std::string HostileInterpreter::checkHeap()
{
    return lisp_check_heap(interpreter.get());
}

bool HostileInterpreter::isHealthy()
{
    const std::string problem = checkHeap();
    EXPECT_EQ(problem, "");
    EXPECT_FALSE(interpreter->is_abandoned);
    EXPECT_EQ(interpreter->stack_origin, nullptr);
    EXPECT_EQ(interpreter->stack_top, interpreter->stack);
    EXPECT_EQ(interpreter->activation, nullptr);
    EXPECT_EQ(interpreter->tables_in_use, 0u);
    EXPECT_EQ(run("+lisp+"), "");
    return problem.empty() && !::testing::Test::HasFailure();
}
