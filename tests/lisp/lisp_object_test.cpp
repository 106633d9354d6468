#include "captured_output.h"
#include "interpreter_fixture.h"

#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

namespace {

class LispObject : public InterpreterTest {
protected:
    /* What creating the object writes to standard output. */
    std::string create(const char* type, const void* source, lisp_object** object)
    {
        CapturedOutput captured;
        *object = lisp_create_object(get(), type, source);
        return captured.getText();
    }

    lisp_object* object = nullptr;
};

bool failToInit(lisp_interpreter*, lisp_object*, const void*)
{
    return false;
}

} // namespace

TEST_F(LispObject, numbersCopyEightBytes)
{
    const std::int64_t integer = -5;
    const double real = 2.5;
    EXPECT_EQ(lisp_create_object(get(), ":integer", &integer)->payload.integer, -5);
    EXPECT_EQ(lisp_create_object(get(), ":float", &real)->payload.real, 2.5);
}

TEST_F(LispObject, textsAreCopied)
{
    std::string text = "text";
    lisp_object* string = lisp_create_object(get(), ":string", text.c_str());
    text[0] = 'n';
    EXPECT_STREQ(string->payload.string->characters, "text");
    EXPECT_EQ(string->payload.string->length, 4u);
    EXPECT_STREQ(lisp_create_object(get(), ":keyword", ":key")->payload.string->characters, ":key");
}

TEST_F(LispObject, withoutASourceThePayloadIsZero)
{
    EXPECT_EQ(lisp_create_object(get(), ":integer", nullptr)->payload.integer, 0);
    EXPECT_EQ(lisp_create_object(get(), ":list", nullptr)->payload.list, nullptr);
}

TEST_F(LispObject, typeArgumentsAreZeroed)
{
    ASSERT_NE(object = lisp_create_object(get(), ":list", nullptr), nullptr);
    ASSERT_EQ(object->type_argument_count, 1);
    EXPECT_EQ(object->type_arguments[0].type, nullptr);
    EXPECT_EQ(lisp_create_object(get(), ":integer", nullptr)->type_arguments, nullptr);
}

TEST_F(LispObject, anUnknownTypeYieldsNothingSilently)
{
    EXPECT_EQ(create(":nosuch", nullptr, &object), "");
    EXPECT_EQ(object, nullptr);
    EXPECT_TRUE(lines.empty());
}

TEST_F(LispObject, aFailingInitGivesTheTypeArgumentsBack)
{
    lisp_define_type(get(), ":fails", ":first :second", nullptr, nullptr, nullptr, nullptr)->init = failToInit;
    EXPECT_EQ(create(":fails", nullptr, &object), "free_bytes()\n");
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(lines, Lines{"error: out of memory!"});
}

TEST_F(LispObject, aFailingInitWithoutTypeArgumentsGivesNothingBack)
{
    lisp_define_type(get(), ":fails", "", nullptr, nullptr, nullptr, nullptr)->init = failToInit;
    EXPECT_EQ(create(":fails", nullptr, &object), "");
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(lines, Lines{"error: out of memory!"});
}

TEST_F(LispObject, withoutASlotTheTypeArgumentsAreGivenBack)
{
    ASSERT_TRUE(start(1 << 20));
    // Room for a type argument, but not for a slot as well.
    while (heap().byte_top - heap().boundary > sizeof(lisp_object)) ASSERT_NE(lisp_allocate(get(), 8), nullptr);
    EXPECT_EQ(create(":list", nullptr, &object), "free_bytes()\n");
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(lines, Lines{"error: out of memory!"});
}

TEST_F(LispObject, copyingAValueLeavesTheStampsAlone)
{
    lisp_object source = {};
    lisp_set_integer(get(), &source, 5);
    source.lock_stamp = 7;
    source.mark_stamp = 8;
    lisp_object target = {};
    target.lock_stamp = 1;
    target.mark_stamp = 2;
    lisp_copy_value(&target, &source);
    EXPECT_EQ(target.payload.integer, 5);
    EXPECT_EQ(target.type, source.type);
    EXPECT_EQ(target.lock_stamp, 1u);
    EXPECT_EQ(target.mark_stamp, 2u);
}

TEST_F(LispObject, stringsEndInAZero)
{
    const lisp_string* string = lisp_make_string(get(), "abcdefg", 7);
    EXPECT_EQ(string->length, 7u);
    EXPECT_EQ(string->characters[7], '\0');
}
