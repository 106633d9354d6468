#include "interpreter_fixture.h"

#include "heap_check.h"

#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>

std::vector<std::string> InterpreterTest::errors;

InterpreterTest::InterpreterTest()
{
    errors.clear();
    start(lisp_region_size);
}

InterpreterTest::~InterpreterTest()
{
    if (interpreter->heap.region == nullptr) return;
    EXPECT_EQ(lisp_check_heap(interpreter.get()), "");
    lisp_stop(interpreter.get());
}

bool InterpreterTest::start(std::uint64_t regionSize)
{
    if (interpreter != nullptr) lisp_stop(interpreter.get());
    interpreter = std::make_unique<lisp_interpreter>();
    return lisp_start(interpreter.get(), &output, regionSize);
}

lisp_object InterpreterTest::evaluate(const std::string& text)
{
    lisp_object value = {};
    interpreter->memory->unlock_all(&interpreter->heap);
    EXPECT_TRUE(lisp_read_all(interpreter.get(), text.c_str(), &interpreter->root, 0, &value)) << text;
    return value;
}

void InterpreterTest::leaveBytes(std::uint64_t count)
{
    constexpr std::uint64_t slots = 64;
    const std::uint64_t kept = heap().boundary + slots * sizeof(lisp_object) + count;
    while (heap().byte_top > kept) {
        const std::uint64_t most = 0xFFFFFFF8u;
        const std::uint64_t rest = (heap().byte_top - kept + 7) / 8 * 8;
        ASSERT_NE(lisp_allocate(interpreter.get(), rest < most ? rest : most), nullptr);
    }
}

lisp_object* InterpreterTest::allocateObject(lisp_kind kind)
{
    const lisp_object_descriptor descriptor = {interpreter->kinds[kind], 0, 0, nullptr};
    return interpreter->memory->allocate_object(&interpreter->heap, &descriptor);
}

void InterpreterTest::print(void* user, const char* text)
{
    static_cast<Lines*>(user)->push_back(text);
}
