#include "scripting_fixture.h"

#include <xum/lisp/script_host.h>

#include <limits>
#include <vector>

namespace {

class ScriptValueTest : public ScriptingFixture {
protected:
    void SetUp() override
    {
        ScriptingFixture::SetUp();
        makeDevice();
        registerScriptFunction(device, "take", "", "(:any -> :any)", takeAndGive, this);
    }

    /// Of the text's last expression.
    ScriptValue valueOf(const std::string& text)
    {
        ScriptValue value("untouched");
        ::testing::internal::CaptureStdout();
        isRead = evaluateScript(device, text, value);
        output = ::testing::internal::GetCapturedStdout();
        return value;
    }

    /// What "(take ...)" has got.
    ScriptValue taken;
    /// What "(take ...)" returns.
    ScriptValue given;
    bool isRead = false;
    std::string output;

private:
    static void takeAndGive(ScriptCall& call, void* user)
    {
        auto* test = static_cast<ScriptValueTest*>(user);
        test->taken = call.getValue(0);
        call.returnValue(test->given);
    }
};

/// How many lists lie in one another, up to what is no list or an empty one.
int depthOf(const ScriptValue& value, ScriptValueType& innermost)
{
    const ScriptValue* at = &value;
    int depth = 0;
    while (at->getType() == ScriptValueType::List && !at->getList().empty()) {
        at = &at->getList()[0];
        ++depth;
    }
    innermost = at->getType();
    return depth;
}

} // namespace

TEST_F(ScriptValueTest, isWhatItWasMadeFrom)
{
    EXPECT_EQ(ScriptValue().getType(), ScriptValueType::Nil);
    EXPECT_EQ(ScriptValue(true).getType(), ScriptValueType::Boolean);
    EXPECT_TRUE(ScriptValue(true).getBoolean());
    EXPECT_EQ(ScriptValue(true).getInteger(), 1);
    EXPECT_EQ(ScriptValue(-5).getType(), ScriptValueType::Integer);
    EXPECT_EQ(ScriptValue(-5).getInteger(), -5);
    EXPECT_EQ(ScriptValue(std::int64_t{1} << 40).getInteger(), std::int64_t{1} << 40);
    EXPECT_EQ(ScriptValue(2.5).getType(), ScriptValueType::Float);
    EXPECT_EQ(ScriptValue(2.5).getFloat(), 2.5);
    EXPECT_EQ(ScriptValue("text").getType(), ScriptValueType::String);
    EXPECT_EQ(ScriptValue(std::string("text")).getString(), "text");
    EXPECT_EQ(ScriptValue::keyword(":red").getType(), ScriptValueType::Keyword);
    EXPECT_EQ(ScriptValue::keyword(":red").getString(), ":red");
    const ScriptValue list(std::vector<ScriptValue>{1, "a"});
    EXPECT_EQ(list.getType(), ScriptValueType::List);
    ASSERT_EQ(list.getList().size(), 2u);
    EXPECT_EQ(list.getList()[1].getString(), "a");
}

TEST_F(ScriptValueTest, givesNothingOfOtherTypes)
{
    const ScriptValue integer(5);
    EXPECT_EQ(integer.getFloat(), 0.0);
    EXPECT_EQ(integer.getString(), "");
    EXPECT_TRUE(integer.getList().empty());
    const ScriptValue real(5.0);
    EXPECT_EQ(real.getInteger(), 0);
    EXPECT_FALSE(real.getBoolean());
    EXPECT_EQ(ScriptValue("5").getInteger(), 0);
}

// ---- from scripts -------------------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, ofTextIsThatOfItsLastExpression)
{
    EXPECT_EQ(valueOf("1 ").getInteger(), 1);
    EXPECT_EQ(valueOf("(+ 1 2) (+ 3 4)").getInteger(), 7);
    EXPECT_TRUE(isRead);
    EXPECT_EQ(valueOf("(display \"a\")").getType(), ScriptValueType::Nil);
    EXPECT_EQ(output, "a\n");
    EXPECT_EQ(valueOf("(unknown)").getType(), ScriptValueType::Nil);
    EXPECT_TRUE(isRead);
}

TEST_F(ScriptValueTest, ofUnreadableTextIsThatOfTheExpressionBeforeTheFailure)
{
    EXPECT_EQ(valueOf("(+ 1 2) (").getInteger(), 3);
    EXPECT_FALSE(isRead);
    EXPECT_EQ(valueOf("").getType(), ScriptValueType::Nil);
    EXPECT_FALSE(isRead);
}

TEST_F(ScriptValueTest, hasEachTypeOfScripts)
{
    const struct {
        const char* text;
        ScriptValueType type;
        std::int64_t integer;
        double real;
        const char* characters;
    } cases[] = {
        {":nil", ScriptValueType::Nil, 0, 0, ""},
        {":true", ScriptValueType::Boolean, 1, 0, ""},
        {":false", ScriptValueType::Boolean, 0, 0, ""},
        {"(byte 255)", ScriptValueType::Byte, 255, 0, ""},
        {"0xffffffffffffffff", ScriptValueType::Integer, -1, 0, ""},
        {"9223372036854775807", ScriptValueType::Integer, std::numeric_limits<std::int64_t>::max(), 0, ""},
        {"-0.5", ScriptValueType::Float, 0, -0.5, ""},
        {"\"Some Text\"", ScriptValueType::String, 0, 0, "Some Text"},
        {":Red-1", ScriptValueType::Keyword, 0, 0, ":red-1"},
        {"(type-of :nil)", ScriptValueType::Keyword, 0, 0, ":nil"},
        {"(read \"Name\")", ScriptValueType::Symbol, 0, 0, "name"},
        {"(array 2 \":integer\")", ScriptValueType::Other, 0, 0, ""},
        {"(hash-table \":any\" \":any\")", ScriptValueType::Other, 0, 0, ""},
        {"list", ScriptValueType::Other, 0, 0, ""},
        {"(closure () 1)", ScriptValueType::Other, 0, 0, ""},
        {"(macro (x) (list x))", ScriptValueType::Other, 0, 0, ""},
        {"(list)", ScriptValueType::List, 0, 0, ""},
    };
    for (const auto& c : cases) {
        const ScriptValue value = valueOf(c.text);
        EXPECT_EQ(value.getType(), c.type) << c.text;
        EXPECT_EQ(value.getInteger(), c.integer) << c.text;
        EXPECT_EQ(value.getFloat(), c.real) << c.text;
        EXPECT_EQ(value.getString(), c.characters) << c.text;
        EXPECT_TRUE(value.getList().empty()) << c.text;
    }
}

TEST_F(ScriptValueTest, copiesLists)
{
    const ScriptValue value = valueOf("(list 1 \"two\" (list :three (list)) list)");
    ASSERT_EQ(value.getList().size(), 4u);
    EXPECT_EQ(value.getList()[0].getInteger(), 1);
    EXPECT_EQ(value.getList()[1].getString(), "two");
    ASSERT_EQ(value.getList()[2].getList().size(), 2u);
    EXPECT_EQ(value.getList()[2].getList()[0].getString(), ":three");
    EXPECT_TRUE(value.getList()[2].getList()[1].getList().empty());
    EXPECT_EQ(value.getList()[3].getType(), ScriptValueType::Other);
    engine->destroyScriptingDevice(device);
    device = nullptr;
    EXPECT_EQ(value.getList()[1].getString(), "two"); // it does not belong to the device
}

TEST_F(ScriptValueTest, listsNestTwoHundredDeep)
{
    outputOf("(define nest (closure ((n) (x)) (if (= n 0) x (nest (- n 1) (list x)))))");
    ScriptValueType innermost = ScriptValueType::Nil;
    EXPECT_EQ(depthOf(valueOf("(nest 200 5)"), innermost), 200);
    EXPECT_EQ(innermost, ScriptValueType::Integer);
    EXPECT_EQ(depthOf(valueOf("(nest 201 5)"), innermost), 200);
    EXPECT_EQ(innermost, ScriptValueType::Other);
    EXPECT_EQ(depthOf(valueOf("(nest 100000 5)"), innermost), 200);
    EXPECT_EQ(innermost, ScriptValueType::Other);
    valueOf("(take (nest 100000 5))");
    EXPECT_EQ(depthOf(taken, innermost), 200);
}

TEST_F(ScriptValueTest, listsThatShareTheirElementsDoNotGrowWithoutEnd)
{
    // 2^60 elements when it is written out.
    outputOf("(define doubled (closure ((n) (x)) (if (= n 0) x (doubled (- n 1) (list x x)))))");
    const ScriptValue value = valueOf("(doubled 60 5)");
    EXPECT_TRUE(isRead);
    EXPECT_EQ(value.getType(), ScriptValueType::List);
    valueOf("(take (doubled 60 5))");
    EXPECT_EQ(taken.getType(), ScriptValueType::List);
}

TEST_F(ScriptValueTest, longListsAreCopiedWhole)
{
    outputOf("(define count-down (closure ((n) (xs)) (if (= n 0) xs (count-down (- n 1) (cons n xs)))))");
    const ScriptValue value = valueOf("(count-down 300000 (list))");
    ASSERT_EQ(value.getList().size(), 300000u);
    EXPECT_EQ(value.getList().back().getInteger(), 300000);
}

// ---- to scripts ---------------------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, becomesScriptValueOfItsType)
{
    const struct {
        ScriptValue value;
        const char* printed;
    } cases[] = {
        {ScriptValue(), ":nil\n"},
        {true, ":boolean (:true)\n"},
        {false, ":boolean (:false)\n"},
        {std::numeric_limits<std::int64_t>::max(), ":integer (9223372036854775807)\n"},
        {-0.5, ":float (-0.500000)\n"},
        {"Text", ":string (Text)\n"},
        {"", ":string ()\n"},
        {ScriptValue::keyword(":Red"), ":keyword (:Red)\n"},
        {std::vector<ScriptValue>{}, "(:list :any) (0 nodes)\n"},
        {std::vector<ScriptValue>{1, 2, 3}, "(:list :integer) (3 nodes)\n"},
        {std::vector<ScriptValue>{1, "a"}, "(:list :any) (2 nodes)\n"},
        {std::vector<ScriptValue>{1, "a", 2}, "(:list :any) (3 nodes)\n"},
        {std::vector<ScriptValue>{ScriptValue(std::vector<ScriptValue>{1})}, "(:list (:list :any)) (1 nodes)\n"},
    };
    for (const auto& c : cases) {
        given = c.value;
        EXPECT_EQ(outputOf("(print (take 1))"), c.printed);
    }
}

TEST_F(ScriptValueTest, comesBackAsItWasGiven)
{
    for (const char* text : {"(byte 7)", "(list 1 2.5 \"a\" :b (list) (list :nil :true (byte 1)))", ":nil"}) {
        given = valueOf(text);
        const ScriptValue value = valueOf("(take 1)");
        EXPECT_EQ(value.getType(), given.getType()) << text;
        EXPECT_EQ(value.getInteger(), given.getInteger()) << text;
        EXPECT_EQ(value.getList().size(), given.getList().size()) << text;
    }
}

TEST_F(ScriptValueTest, stringMayHoldZeroBytes)
{
    given = ScriptValue(std::string("a\0b", 3));
    EXPECT_EQ(valueOf("(string-size (take 1))").getInteger(), 3);
    EXPECT_EQ(valueOf("(take 1)").getString(), std::string("a\0b", 3));
    EXPECT_EQ(outputOf("(display (take 1))"), "a\n"); // a line is a C string
}

TEST_F(ScriptValueTest, whatScriptsCannotHoldBecomesNil)
{
    for (const char* name : {"", "red", ":", ":a b", ":a_b", "::a"}) {
        given = ScriptValue::keyword(name);
        EXPECT_EQ(outputOf("(print (take 1))"), ":nil\n") << name;
    }
    given = valueOf("list"); // Other
    EXPECT_EQ(outputOf("(print (take 1))"), ":nil\n");
    given = valueOf("(list 1 (list list))"); // Other inside
    EXPECT_EQ(outputOf("(print (take 1))"), ":nil\n");
}

TEST_F(ScriptValueTest, symbolsAreNotGivenToScripts)
{
    given = valueOf("(read \"name\")");
    ASSERT_EQ(given.getType(), ScriptValueType::Symbol);
    EXPECT_EQ(outputOf("(print (take 1))"), ":nil\n");
}

TEST_F(ScriptValueTest, listsOfHostsNestTwoHundredDeep)
{
    given = ScriptValue(5);
    for (int i = 0; i < 200; ++i) given = ScriptValue(std::vector<ScriptValue>{given});
    ScriptValueType innermost = ScriptValueType::Nil;
    EXPECT_EQ(depthOf(valueOf("(take 1)"), innermost), 200);
    EXPECT_EQ(innermost, ScriptValueType::Integer);
    given = ScriptValue(std::vector<ScriptValue>{given});
    EXPECT_EQ(valueOf("(take 1)").getType(), ScriptValueType::Nil);
}

TEST_F(ScriptValueTest, listsOfHostsSurviveCollections)
{
    given = ScriptValue(std::vector<ScriptValue>{1, "two", ScriptValue(std::vector<ScriptValue>{3})});
    outputOf("(define kept (take 1))");
    outputOf("(garbage-collection)");
    outputOf("(define filling '(1 2 3 4 5 6 7 8 9 10))");
    const ScriptValue value = valueOf("kept");
    ASSERT_EQ(value.getList().size(), 3u);
    EXPECT_EQ(value.getList()[1].getString(), "two");
    EXPECT_EQ(value.getList()[2].getList()[0].getInteger(), 3);
}
