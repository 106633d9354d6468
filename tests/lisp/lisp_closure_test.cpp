#include "interpreter_fixture.h"

#include <xum/lisp/lisp_call.h>
#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>
#include <xum/lisp/lisp_type.h>

#include <set>

using LispClosure = InterpreterTest;

TEST_F(LispClosure, aMakerWithoutMemorySaysWhatItCouldNotDo)
{
    // One byte count after the other, so that every allocation is once the one that fails.
    std::set<std::string> said;
    for (std::uint64_t bytes = 0; bytes < 1200; bytes += 8) {
        ASSERT_TRUE(start(1 << 20));
        lisp_object expression = {};
        lisp_object result = {};
        ASSERT_EQ(lisp_read(get(), &expression, &get()->root, "(closure ((x :integer) (y)) (+ x y))", 0), -1);
        lines.clear();
        leaveBytes(bytes);
        for (int i = 0; i < 64; ++i) allocateObject(lisp_kind_integer);
        lisp_eval(get(), &result, &get()->root, &expression);
        if (lines.empty()) break;
        EXPECT_EQ(lines.size(), 1u) << lines.front();
        EXPECT_EQ(result.type, get()->kinds[lisp_kind_nil]);
        said.insert(lines.front());
    }
    EXPECT_TRUE(lines.empty()) << "at last there was enough";
    EXPECT_EQ(said, (std::set<std::string>{"error: out of memory!", "error: setting closure parameters!"}));
}

TEST_F(LispClosure, nativesAreMadeFromADescriptor)
{
    const lisp_native native = [](auto* interpreter, auto*, auto*, auto* arguments, auto, auto* result) {
        lisp_set_integer(interpreter, result, arguments[0].payload.integer * 2);
    };
    const lisp_native_descriptor descriptor = {"double", "", "(:integer -> :integer)", native};
    lisp_object* object = lisp_create_object(get(), ":closure", &descriptor);
    ASSERT_NE(object, nullptr);
    EXPECT_STREQ(object->payload.closure->name->text.characters, "double");
    lisp_object argument = {};
    lisp_object result = {};
    lisp_set_integer(get(), &argument, 21);
    lisp_apply(get(), &get()->root, object->payload.closure, &argument, 1, &result);
    EXPECT_EQ(result.payload.integer, 42);
}

TEST_F(LispClosure, typeVariablesStandInTheOrderOfTheText)
{
    const lisp_closure* closure =
        evaluate("(closure ((x :b) (y (:list :a)) (z :b) (f (:c -> :a))) -> :d x)").payload.closure;
    ASSERT_EQ(closure->variable_count, 4);
    EXPECT_EQ(std::string(closure->variables, 4), "bacd");
}

TEST_F(LispClosure, anUndeclaredLetterSharesOneSlot)
{
    lisp_closure closure = {};
    closure.variable_count = 1;
    closure.variables[0] = 'a';
    lisp_bindings bindings;
    lisp_bindings_init(&bindings, &closure);
    lisp_type_entry first;
    lisp_type_entry second;
    ASSERT_TRUE(lisp_parse_type(get(), ":x", &first));
    ASSERT_TRUE(lisp_parse_type(get(), ":y", &second));
    const lisp_object integer = evaluate("1");
    const lisp_object text = evaluate("\"text\"");
    EXPECT_TRUE(lisp_match_value(&bindings, &first, &integer, false));
    EXPECT_FALSE(lisp_match_value(&bindings, &second, &text, false));
    EXPECT_TRUE(lisp_match_value(&bindings, &second, &integer, false));
}
