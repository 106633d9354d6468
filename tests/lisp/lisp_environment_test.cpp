#include "interpreter_fixture.h"

#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_object.h>

namespace {

class LispEnvironment : public InterpreterTest {
protected:
    lisp_object* set(lisp_environment* environment, const char* name, std::int64_t value, bool createNew)
    {
        lisp_object object = {};
        lisp_set_integer(get(), &object, value);
        return lisp_set_symbol(get(), environment, lisp_intern(get(), name), &object, false, createNew);
    }

    std::int64_t valueIn(lisp_environment* environment, const char* name)
    {
        return lisp_find_symbol(get(), environment, name)->payload.symbol->value->payload.integer;
    }

    lisp_environment* root() { return &get()->root; }
};

} // namespace

TEST_F(LispEnvironment, aNullEnvironmentIsReportedToTheHost)
{
    EXPECT_EQ(set(nullptr, "x", 1, false), nullptr);
    EXPECT_EQ(errors, Lines{"lisp_set_symbol() -> null environment!"});
    EXPECT_TRUE(lines.empty());
}

TEST_F(LispEnvironment, aNewNameIsEnteredInTheEnvironmentItself)
{
    lisp_environment* inner = lisp_environment_make(get(), root());
    set(inner, "x", 1, false);
    EXPECT_EQ(valueIn(inner, "x"), 1);
    EXPECT_EQ(lisp_find_symbol(get(), root(), "x"), nullptr);
}

TEST_F(LispEnvironment, aKnownNameIsStoredWhereItIs)
{
    lisp_environment* inner = lisp_environment_make(get(), root());
    lisp_object* symbol = set(root(), "x", 1, false);
    EXPECT_EQ(set(inner, "x", 2, false), symbol);
    EXPECT_EQ(valueIn(root(), "x"), 2);
}

TEST_F(LispEnvironment, createNewHidesAKnownName)
{
    lisp_environment* inner = lisp_environment_make(get(), root());
    lisp_object* symbol = set(root(), "x", 1, false);
    EXPECT_NE(set(inner, "x", 2, true), symbol);
    EXPECT_EQ(valueIn(inner, "x"), 2);
    EXPECT_EQ(valueIn(root(), "x"), 1);
}

TEST_F(LispEnvironment, createNewReplacesTheEntryOfItsOwnTable)
{
    lisp_object* symbol = set(root(), "x", 1, false);
    EXPECT_NE(set(root(), "x", 2, true), symbol);
    EXPECT_EQ(valueIn(root(), "x"), 2);
    EXPECT_EQ(evaluate("x").payload.integer, 2);
}

TEST_F(LispEnvironment, constantsAreStoredInto)
{
    evaluate("(define-constant x 1)");
    set(root(), "x", 2, false);
    EXPECT_EQ(valueIn(root(), "x"), 2);
    EXPECT_FALSE(lisp_find_symbol(get(), root(), "x")->payload.symbol->is_constant) << "the flag is stored as well";
}

TEST_F(LispEnvironment, theInnermostBindingIsFound)
{
    lisp_environment* inner = lisp_environment_make(get(), root());
    lisp_environment* innermost = lisp_environment_make(get(), inner);
    set(root(), "x", 1, true);
    set(inner, "x", 2, true);
    EXPECT_EQ(valueIn(innermost, "x"), 2);
    set(innermost, "x", 3, true);
    EXPECT_EQ(valueIn(innermost, "x"), 3);
    EXPECT_EQ(valueIn(inner, "x"), 2);
    EXPECT_EQ(valueIn(root(), "x"), 1);
}

TEST_F(LispEnvironment, wholeNamesAreCompared)
{
    set(root(), "abcdefghijklmnopqrstuvwxyz0123456789-one", 1, false);
    set(root(), "abcdefghijklmnopqrstuvwxyz0123456789-two", 2, false);
    EXPECT_EQ(valueIn(root(), "abcdefghijklmnopqrstuvwxyz0123456789-one"), 1);
    EXPECT_EQ(valueIn(root(), "abcdefghijklmnopqrstuvwxyz0123456789-two"), 2);
    EXPECT_EQ(lisp_find_symbol(get(), root(), "abcdefghijklmnopqrstuvwxyz0123456789"), nullptr);
}

TEST_F(LispEnvironment, withoutMemoryNothingIsBound)
{
    ASSERT_TRUE(start(1 << 20));
    lisp_name* name = lisp_intern(get(), "x");
    leaveBytes(0);
    lisp_object value = {};
    lisp_set_integer(get(), &value, 1);
    for (int i = 0; i < 64; ++i) allocateObject(lisp_kind_integer);
    EXPECT_EQ(lisp_set_symbol(get(), root(), name, &value, false, false), nullptr);
    EXPECT_EQ(lines, Lines{"error: out of memory!"});
    EXPECT_EQ(lisp_find_symbol(root(), name), nullptr);
}
