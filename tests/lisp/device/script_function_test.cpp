#include "scripting_fixture.h"

#include <xum/lisp/script_host.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

class ScriptFunctionTest : public ScriptingFixture {
protected:
    void SetUp() override
    {
        ScriptingFixture::SetUp();
        makeDevice();
    }

    bool add(const std::string& name, const std::string& signature, ScriptFunction function, void* user = nullptr,
             const std::string& typeVariables = "")
    {
        return registerScriptFunction(device, name, typeVariables, signature, function, user);
    }
};

void doNothing(ScriptCall&, void*) {}

/// Writes all that a call says of its arguments into the string behind `user`.
void describe(ScriptCall& call, void* user)
{
    std::string& text = *static_cast<std::string*>(user);
    text = std::to_string(call.getArgumentCount());
    for (unsigned i = 0; i < call.getArgumentCount() + 1; ++i) { // and one past the end
        text += " [" + std::to_string(static_cast<int>(call.getType(i))) + " " + std::to_string(call.getInteger(i)) +
                " " + std::to_string(call.getFloat(i)) + " " + (call.getBoolean(i) ? "true" : "false") + " \"" +
                std::string(call.getString(i)) + "\" " + std::to_string(static_cast<int>(call.getValue(i).getType())) +
                "]";
    }
}

const std::string nothing = "[0 0 0.000000 false \"\" 0]";

/// Returns its first argument.
void giveBack(ScriptCall& call, void*)
{
    call.returnValue(call.getValue(0));
}

void throwError(ScriptCall&, void* user)
{
    throw std::runtime_error(user != nullptr ? static_cast<const char*>(user) : "thrown");
}

} // namespace

// ---- arguments ----------------------------------------------------------------------------------------------------

TEST_F(ScriptFunctionTest, getsEachTypeOfArgument)
{
    std::string text;
    ASSERT_TRUE(add("describe", "(:any -> :nil)", describe, &text));
    const struct {
        const char* argument;
        const char* expected;
    } cases[] = {
        {":nil", "[0 0 0.000000 false \"\" 0]"},
        {":true", "[1 1 0.000000 true \"\" 1]"},
        {":false", "[1 0 0.000000 false \"\" 1]"},
        {"(byte 200)", "[2 200 0.000000 true \"\" 2]"},
        {"-9223372036854775808", "[3 -9223372036854775808 0.000000 true \"\" 3]"},
        {"2.5", "[4 0 2.500000 false \"\" 4]"},
        {"\"Text\"", "[5 0 0.000000 false \"Text\" 5]"},
        {"\"\"", "[5 0 0.000000 false \"\" 5]"},
        {":key-1", "[6 0 0.000000 false \":key-1\" 6]"},
        {"(read \"name\")", "[7 0 0.000000 false \"name\" 7]"},
        {"(list 1 2)", "[8 0 0.000000 false \"\" 8]"},
        {"(list)", "[8 0 0.000000 false \"\" 8]"},
        {"(array 2 \":integer\")", "[9 0 0.000000 false \"\" 9]"},
        {"(hash-table \":any\" \":any\")", "[9 0 0.000000 false \"\" 9]"},
        {"list", "[9 0 0.000000 false \"\" 9]"},
        {"(macro (x) (list x))", "[9 0 0.000000 false \"\" 9]"},
    };
    for (const auto& c : cases) {
        text.clear();
        EXPECT_EQ(outputOf(std::string("(describe ") + c.argument + ")"), "") << c.argument;
        EXPECT_EQ(text, std::string("1 ") + c.expected + " " + nothing) << c.argument;
    }
}

TEST_F(ScriptFunctionTest, withoutParametersGetsNoArguments)
{
    std::string text;
    ASSERT_TRUE(add("describe", "(:nil)", describe, &text));
    EXPECT_EQ(outputOf("(print (describe))"), ":nil\n");
    EXPECT_EQ(text, "0 " + nothing);
}

TEST_F(ScriptFunctionTest, getsTheArgumentsOfRestParameterOneByOne)
{
    std::string text;
    ASSERT_TRUE(add("describe", "(:integer -> :any& -> :nil)", describe, &text));
    outputOf("(describe 1)");
    EXPECT_EQ(text.substr(0, 2), "1 ");
    outputOf("(describe 1 \"a\" :b)");
    EXPECT_EQ(text,
              "3 [3 1 0.000000 true \"\" 3] [5 0 0.000000 false \"a\" 5] [6 0 0.000000 false \":b\" 6] " + nothing);
}

TEST_F(ScriptFunctionTest, getsLazyArgumentsAsTheyStand)
{
    ASSERT_TRUE(add("quote", "(:any* -> :any)", giveBack));
    EXPECT_EQ(outputOf("(print (quote (1 2 3)))"), "(:list :integer) (3 nodes)\n");
    ScriptValue value;
    ASSERT_TRUE(evaluateScript(device, "(type-of (quote 5))", value));
    EXPECT_EQ(value.getString(), ":integer");
    std::string text;
    ASSERT_TRUE(add("describe", "(:any* -> :nil)", describe, &text));
    EXPECT_EQ(outputOf("(describe some-name)"), "");
    EXPECT_EQ(text, "1 [7 0 0.000000 false \"some-name\" 7] " + nothing);
}

TEST_F(ScriptFunctionTest, takesSixtyFourParametersAndNotOneMore)
{
    std::string parameters;
    std::string arguments;
    for (int i = 0; i < 64; ++i) {
        parameters += ":integer* -> ";
        arguments += " " + std::to_string(i);
    }
    std::string text;
    ASSERT_TRUE(add("many", "(" + parameters + ":nil)", describe, &text));
    EXPECT_EQ(outputOf("(many" + arguments + ")"), "");
    EXPECT_EQ(text.substr(0, 3), "64 ");
    EXPECT_FALSE(add("more", "(:integer -> " + parameters + ":nil)", doNothing));
}

TEST_F(ScriptFunctionTest, getsStringsOfAnyBytesAndSize)
{
    std::string seen;
    const auto remember = [](ScriptCall& call, void* user) {
        *static_cast<std::string*>(user) = std::string(call.getString(0));
    };
    ASSERT_TRUE(add("remember", "(:string -> :nil)", remember, &seen));
    outputOf("(remember \"\xC3\xA4\xFF\x01\")");
    EXPECT_EQ(seen, "\xC3\xA4\xFF\x01");
    outputOf("(define s \"0123456789\") (define f (closure ((n)) (if (= n 0) s (do (set! s (+ s s)) (f (- n 1))))))"
             "(remember (f 17))");
    EXPECT_EQ(seen.size(), 10u << 17);
    EXPECT_EQ(seen.substr(seen.size() - 10), "0123456789");
}

TEST_F(ScriptFunctionTest, isCalledByTheFunctionsOfTheLanguage)
{
    ASSERT_TRUE(add("twice", "(:integer -> :integer)",
                    [](ScriptCall& call, void*) { call.returnInteger(2 * call.getInteger(0)); }));
    ScriptValue value;
    ASSERT_TRUE(evaluateScript(device, "(map twice (list 1 2 3))", value));
    ASSERT_EQ(value.getList().size(), 3u);
    EXPECT_EQ(value.getList()[2].getInteger(), 6);
    EXPECT_EQ(outputOf("(print (map twice (list \"a\")))"),
              "closure: map\n"
              "  error: expected '(:list :a)' but got '(:list :string)' for parameter 1.\n"
              "type bounds:\n  :a -> :integer\n  :b -> :integer\n:nil\n");
}

// ---- results ------------------------------------------------------------------------------------------------------

TEST_F(ScriptFunctionTest, returnsNothingUnlessItSetsValue)
{
    ASSERT_TRUE(add("nothing", "(:integer -> :string)", doNothing));
    EXPECT_EQ(outputOf("(print (nothing 1))"), ":nil\n");
}

TEST_F(ScriptFunctionTest, returnsEachType)
{
    ASSERT_TRUE(add("an-integer", "(:integer)",
                    [](ScriptCall& call, void*) { call.returnInteger(std::numeric_limits<std::int64_t>::min()); }));
    ASSERT_TRUE(add("a-float", "(:float)", [](ScriptCall& call, void*) { call.returnFloat(-0.25); }));
    ASSERT_TRUE(add("a-boolean", "(:boolean)", [](ScriptCall& call, void*) { call.returnBoolean(true); }));
    ASSERT_TRUE(add("a-string", "(:string)", [](ScriptCall& call, void*) { call.returnString("Text"); }));
    ASSERT_TRUE(add("a-keyword", "(:keyword)",
                    [](ScriptCall& call, void*) { call.returnValue(ScriptValue::keyword(":red")); }));
    ASSERT_TRUE(add("a-list", "((:list :integer))", [](ScriptCall& call, void*) {
        call.returnValue(std::vector<ScriptValue>{1, 2});
    }));
    ASSERT_TRUE(add("a-nil", "(:nil)", [](ScriptCall& call, void*) { call.returnValue(ScriptValue()); }));
    EXPECT_EQ(outputOf("(print (an-integer))"), ":integer (-9223372036854775808)\n");
    EXPECT_EQ(outputOf("(print (a-float))"), ":float (-0.250000)\n");
    EXPECT_EQ(outputOf("(print (a-boolean))"), ":boolean (:true)\n");
    EXPECT_EQ(outputOf("(print (a-string))"), ":string (Text)\n");
    EXPECT_EQ(outputOf("(print (a-keyword))"), ":keyword (:red)\n");
    EXPECT_EQ(outputOf("(print (= (a-keyword) :red))"), ":boolean (:true)\n");
    EXPECT_EQ(outputOf("(print (a-list))"), "(:list :integer) (2 nodes)\n");
    EXPECT_EQ(outputOf("(print (a-nil))"), ":nil\n");
}

TEST_F(ScriptFunctionTest, lastReturnedValueCounts)
{
    ASSERT_TRUE(add("several", "(:any)", [](ScriptCall& call, void*) {
        call.returnString("first");
        call.returnInteger(2);
    }));
    EXPECT_EQ(outputOf("(print (several))"), ":integer (2)\n");
}

TEST_F(ScriptFunctionTest, resultOfOtherTypeIsRefused)
{
    ASSERT_TRUE(add("wrong", "(:string)", [](ScriptCall& call, void*) { call.returnInteger(1); }));
    ASSERT_TRUE(add("silent", "(:nil)", [](ScriptCall& call, void*) { call.returnInteger(1); }));
    EXPECT_EQ(outputOf("(print (wrong))"), "error: return type check failed!\n:nil\n");
    EXPECT_EQ(outputOf("(print (silent))"), "error: return type check failed!\n:nil\n");
}

TEST_F(ScriptFunctionTest, resultIsCheckedAgainstTheTypesOfTheArguments)
{
    ASSERT_TRUE(add("same", "(:a -> :a)", giveBack, nullptr, "(:a)"));
    ASSERT_TRUE(add(
        "other", "(:a -> :a)", [](ScriptCall& call, void*) { call.returnString("a string"); }, nullptr, "(:a)"));
    ASSERT_TRUE(add(
        "in-list", "(:a -> (:list :a))",
        [](ScriptCall& call, void*) { call.returnValue(std::vector<ScriptValue>{call.getValue(0)}); }, nullptr,
        "(:a)"));
    EXPECT_EQ(outputOf("(print (same 1))"), ":integer (1)\n");
    EXPECT_EQ(outputOf("(print (other 1))"), "error: return type check failed!\n:nil\n");
    EXPECT_EQ(outputOf("(print (other \"x\"))"), ":string (a string)\n");
    EXPECT_EQ(outputOf("(print (in-list 2.5))"), "(:list :float) (1 nodes)\n");
}

// ---- checks of calls ----------------------------------------------------------------------------------------------

TEST_F(ScriptFunctionTest, wrongNumberOfArgumentsIsReportedAndDoesNotCall)
{
    std::string text = "not called";
    ASSERT_TRUE(add("describe", "(:integer -> :string -> :nil)", describe, &text));
    EXPECT_EQ(outputOf("(print (describe 1))"), "error: wrong number of parameters!\n:nil\n");
    EXPECT_EQ(outputOf("(describe 1 \"a\" 2)"), "error: wrong number of parameters!\n");
    EXPECT_EQ(outputOf("(describe)"), "error: wrong number of parameters!\n");
    EXPECT_EQ(text, "not called");
}

TEST_F(ScriptFunctionTest, mismatchingArgumentsAreReportedAndDoNotCall)
{
    std::string text = "not called";
    ASSERT_TRUE(add("describe", "(:integer -> (:list :string) -> :nil)", describe, &text));
    EXPECT_EQ(outputOf("(print (describe \"a\" 2.5))"),
              "closure: describe\n"
              "  error: expected ':integer' but got ':string' for parameter 0.\n"
              "  error: expected '(:list :string)' but got ':float' for parameter 1.\n"
              ":nil\n");
    EXPECT_EQ(outputOf("(describe 1 (list 1))"),
              "closure: describe\n"
              "  error: expected '(:list :string)' but got '(:list :integer)' for parameter 1.\n");
    EXPECT_EQ(text, "not called");
    EXPECT_EQ(outputOf("(describe 1 (list))"), ""); // an empty list is one of strings
    EXPECT_EQ(text.substr(0, 2), "2 ");
}

TEST_F(ScriptFunctionTest, typeVariablesAreReportedWithTheirBounds)
{
    ASSERT_TRUE(add("equal", "(:a -> :a -> :boolean)", doNothing, nullptr, "(:a)"));
    EXPECT_EQ(outputOf("(equal 1 2.5)"), "closure: equal\n"
                                         "  error: expected ':integer' but got ':float' for parameter 1.\n"
                                         "type bounds:\n"
                                         "  :a -> :integer\n");
}

TEST_F(ScriptFunctionTest, closureArgumentsAreCheckedBySignature)
{
    ASSERT_TRUE(add("take", "((:integer -> :integer) -> :nil)", doNothing));
    EXPECT_EQ(outputOf("(take (closure ((x :integer)) -> :integer x))"), "");
    EXPECT_EQ(outputOf("(take string-size)"),
              "closure: take\n"
              "  error: expected '(:integer -> :integer)' but got '(:string -> :integer)' for parameter 0.\n");
}

TEST_F(ScriptFunctionTest, printsAsItsSignature)
{
    ASSERT_TRUE(add("f", "(:a -> (:list :a)& -> :any* -> :a)", doNothing, nullptr, "(:a)") == false);
    ASSERT_TRUE(add("f", "(:a -> :any* -> (:list :a)& -> :a)", doNothing, nullptr, "(:a)"));
    EXPECT_EQ(outputOf("(print f)"), ":closure (:a -> :any* -> (:list :a)& -> :a)\n");
}

// ---- registration -------------------------------------------------------------------------------------------------

TEST_F(ScriptFunctionTest, letterCaseOfTheNameIsIgnored)
{
    ASSERT_TRUE(add("Do-It", "(:integer)", [](ScriptCall& call, void*) { call.returnInteger(1); }));
    EXPECT_EQ(outputOf("(print (do-it)) (print (DO-IT))"), ":integer (1)\n:integer (1)\n");
    EXPECT_FALSE(add("dO-iT", "(:integer)", doNothing)); // a constant already
}

TEST_F(ScriptFunctionTest, isConstant)
{
    ASSERT_TRUE(add("f", "(:nil)", doNothing));
    EXPECT_EQ(outputOf("(define f 1)"), "error: symbol 'f' is a constant!\n");
    EXPECT_EQ(outputOf("(set! f 1)"), "error: symbol 'f' is a constant!\n");
    EXPECT_FALSE(add("f", "(:nil)", doNothing));
}

TEST_F(ScriptFunctionTest, namesThatAreNoSymbolsAreRefused)
{
    for (const char* name : {"", " ", "a b", "a;b", "a'b", "(f", "f)", "a\"b", ":key", "a:b", "#a", "1", "-1", "+5",
                             "1.5", "0xff", ":nil", ":true"})
        EXPECT_FALSE(add(name, "(:nil)", doNothing)) << name;
    EXPECT_FALSE(add(std::string("a\0b", 3), "(:nil)", doNothing));
    for (const char* name : {"a", "+x", "-", "1+", ".5", "5.", "1e5", "0x", "\xC3\xA4", "%s", ",x"})
        if (std::string(name) != "-") {
            EXPECT_TRUE(add(name, "(:nil)", doNothing)) << name;
        }
}

TEST_F(ScriptFunctionTest, namesOfTheLanguageAreRefused)
{
    for (const char* name : {"+", "list", "IF", "define", "+pi+", "+lisp+", "reload-scripts", "filter"})
        EXPECT_FALSE(add(name, "(:nil)", doNothing)) << name;
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
}

TEST_F(ScriptFunctionTest, constantsOfScriptsAreRefusedAndVariablesReplaced)
{
    outputOf("(define-constant fixed 1) (define variable 1)");
    EXPECT_FALSE(add("fixed", "(:nil)", doNothing));
    EXPECT_TRUE(add("variable", "(:nil)", doNothing));
    EXPECT_EQ(outputOf("(print fixed) (print variable)"), ":integer (1)\n:closure (:nil)\n");
}

TEST_F(ScriptFunctionTest, malformedSignaturesAreRefused)
{
    for (const char* signature : {"",
                                  "()",
                                  ":nil",
                                  "(:nil",
                                  ":nil)",
                                  "(:nil) ",
                                  "(:nil))",
                                  "(:integer :nil)",
                                  "(:integer - > :nil)",
                                  "(:integer -> )",
                                  "(-> :nil)",
                                  "(:unknown -> :nil)",
                                  "(:nil -> :unknown)",
                                  "(:integer& -> :string -> :nil)",
                                  "(:integer& -> :string& -> :nil)",
                                  "(:integer&)",
                                  "(:integer*)",
                                  "(:any*& -> :nil)",
                                  "(integer -> :nil)",
                                  "((:list :a :b) -> :nil)",
                                  "((:hash-table :a) -> :nil)",
                                  "((:integer :a) -> :nil)",
                                  "((:list :unknown) -> :nil)",
                                  "(:)",
                                  "(: -> :nil)"})
        EXPECT_FALSE(add("f", signature, doNothing)) << signature;
    EXPECT_EQ(outputOf("f"), "error: symbol 'f' has no binding!\n");
}

TEST_F(ScriptFunctionTest, deeplyNestedTypesAreRefused)
{
    std::string nested = ":integer";
    for (int i = 0; i < 30; ++i) nested = "(:list " + nested + ")";
    EXPECT_TRUE(add("deep", "(" + nested + " -> :nil)", doNothing));
    EXPECT_FALSE(add("deeper", "(" + std::string(1000000, '(') + " -> :nil)", doNothing));
}

TEST_F(ScriptFunctionTest, signaturesMayNameTypesOfScripts)
{
    EXPECT_FALSE(add("f", "(:thing -> :nil)", doNothing));
    outputOf("(define-type :thing () ())");
    EXPECT_TRUE(add("f", "(:thing -> :nil)", doNothing));
    EXPECT_EQ(outputOf("(f 1)"), "closure: f\n  error: expected ':thing' but got ':integer' for parameter 0.\n");
}

TEST_F(ScriptFunctionTest, missingFunctionOrDeviceIsRefused)
{
    EXPECT_FALSE(add("f", "(:nil)", nullptr));
    EXPECT_FALSE(registerScriptFunction(nullptr, "f", "", "(:nil)", doNothing, nullptr));
    ScriptValue value(5);
    EXPECT_FALSE(evaluateScript(nullptr, "1", value));
    EXPECT_EQ(value.getInteger(), 5);
    setScriptPrint(nullptr, nullptr, nullptr);
}

TEST_F(ScriptFunctionTest, deviceOfTheHostsOwnIsRefused)
{
    class OwnDevice final : public ScriptingDevice {
        void loadBaseScripts() override {}
        bool loadScript(const std::string&) override { return true; }
        bool evaluateScript(const std::string&) override { return true; }
    } own;
    ScriptValue value(5);
    EXPECT_FALSE(registerScriptFunction(&own, "f", "", "(:nil)", doNothing, nullptr));
    EXPECT_FALSE(evaluateScript(&own, "1", value));
    EXPECT_EQ(value.getInteger(), 5);
    setScriptPrint(&own, nullptr, nullptr);
}

TEST_F(ScriptFunctionTest, belongsToOneDevice)
{
    std::string first;
    std::string second;
    ScriptingDevice* other = engine->createScriptingDevice();
    ASSERT_TRUE(registerScriptFunction(device, "f", "", "(:integer -> :nil)", describe, &first));
    ASSERT_TRUE(registerScriptFunction(other, "f", "", "(:integer -> :nil)", describe, &second));
    outputOf(device, "(f 1)");
    outputOf(other, "(f 2)");
    EXPECT_EQ(first, "1 [3 1 0.000000 true \"\" 3] " + nothing);
    EXPECT_EQ(second, "1 [3 2 0.000000 true \"\" 3] " + nothing);
    engine->destroyScriptingDevice(other);
}

TEST_F(ScriptFunctionTest, survivesCollectionsAndReloading)
{
    std::string text;
    ASSERT_TRUE(add("describe", "(:any -> :nil)", describe, &text));
    outputOf("(garbage-collection)");
    outputOf("(reload-scripts)");
    outputOf("(garbage-collection)");
    EXPECT_EQ(outputOf("(describe 1)"), "");
    EXPECT_EQ(text.substr(0, 2), "1 ");
}

TEST_F(ScriptFunctionTest, manyCanBeRegistered)
{
    const auto giveNumber = [](ScriptCall& call, void* user) { call.returnInteger(*static_cast<int*>(user)); };
    std::vector<int> numbers(2000);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = static_cast<int>(i);
        ASSERT_TRUE(add("f-" + std::to_string(i), "(:integer)", giveNumber, &numbers[i]));
    }
    EXPECT_EQ(outputOf("(print (+ (f-0) (f-1999)))"), ":integer (1999)\n");
}

// ---- exceptions ---------------------------------------------------------------------------------------------------

TEST_F(ScriptFunctionTest, exceptionPassesToWhoeverEvaluates)
{
    ASSERT_TRUE(add("fail", "(:nil)", throwError));
    ::testing::internal::CaptureStdout();
    EXPECT_THROW(device->evaluateScript("(do (fail) (display \"not reached\"))"), std::runtime_error);
    ScriptValue value(5);
    EXPECT_THROW(evaluateScript(device, "(list (fail))", value), std::runtime_error);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "error: exception in a function of the host!\nerror: exception in a function of the host!\n");
    EXPECT_EQ(value.getInteger(), 5);
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
}

TEST_F(ScriptFunctionTest, exceptionPassesThroughLoadedScripts)
{
    ASSERT_TRUE(add("fail", "(:nil)", throwError));
    writeScript("failing", "(fail)");
    ::testing::internal::CaptureStdout();
    EXPECT_THROW(device->loadScript("failing"), std::runtime_error);
    writeScript("engine", "(fail)");
    EXPECT_THROW(device->loadBaseScripts(), std::runtime_error);
    ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
}

TEST_F(ScriptFunctionTest, exceptionInTheDepthsLeavesNothingBehind)
{
    ASSERT_TRUE(add("fail", "(:integer -> :nil)", throwError));
    outputOf("(define t (hash-table \":integer\" \":integer\")) (hash-table-put! t 1 1)"
             "(define deep (closure ((n :integer)) (if (= n 0) (fail 1) (+ 1 (deep (- n 1))))))");
    for (int i = 0; i < 500; ++i) {
        ::testing::internal::CaptureStdout();
        EXPECT_THROW(device->evaluateScript("(hash-table-for-each (closure ((k :integer) (v :integer)) (for-each "
                                            "(closure ((x)) (deep 50)) (list 1 2))) t)"),
                     std::runtime_error);
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "error: exception in a function of the host!\n");
    }
    // The tables grow again, and the stacks are empty.
    EXPECT_EQ(outputOf("(define fill (closure ((n :integer)) (if (< n 2000) (do (hash-table-put! t n n) "
                       "(fill (+ n 1))) n))) (print (fill 0)) (print (hash-table-size t))"),
              ":integer (2000)\n:integer (2000)\n");
}

TEST_F(ScriptFunctionTest, exceptionEndsTheText)
{
    ASSERT_TRUE(add("fail", "(:nil)", throwError));
    ::testing::internal::CaptureStdout();
    EXPECT_THROW(device->evaluateScript("(fail) (display \"not reached\")"), std::runtime_error);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "error: exception in a function of the host!\n");
    EXPECT_EQ(outputOf("(display \"reached\")"), "reached\n");
}

TEST_F(ScriptFunctionTest, firstExceptionOfAnEvaluationCounts)
{
    char first[] = "first";
    char second[] = "second";
    ASSERT_TRUE(add("fail-first", "(:nil)", throwError, first));
    ASSERT_TRUE(add("fail-second", "(:nil)", throwError, second));
    ::testing::internal::CaptureStdout();
    try {
        device->evaluateScript("(fail-first) (fail-second)");
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
    ::testing::internal::GetCapturedStdout();
}

TEST_F(ScriptFunctionTest, anythingMayBeThrown)
{
    ASSERT_TRUE(add("fail", "(:nil)", [](ScriptCall&, void*) { throw 42; }));
    ::testing::internal::CaptureStdout();
    EXPECT_THROW(device->evaluateScript("(fail)"), int);
    ::testing::internal::GetCapturedStdout();
}

// ---- functions that call back -------------------------------------------------------------------------------------

TEST_F(ScriptFunctionTest, mayEvaluateScriptsItself)
{
    const auto evaluate = [](ScriptCall& call, void* user) {
        ScriptValue value;
        evaluateScript(static_cast<ScriptingDevice*>(user), std::string(call.getString(0)), value);
        call.returnValue(value);
    };
    ASSERT_TRUE(add("evaluate", "(:string -> :any)", evaluate, device));
    const std::string output =
        outputOf("(define xs (list 1 2 3))"
                 "(print (+ (evaluate \"(do (set! xs :nil) (garbage-collection) (+ 1 2))\") (head (tail xs)) 4))");
    EXPECT_EQ(output.substr(output.find('\n') + 1),
              "closure: tail\n  error: expected '(:list :a)' but got ':nil' for parameter 0.\ntype bounds:\n"
              "closure: head\n  error: expected '(:list :a)' but got ':nil' for parameter 0.\ntype bounds:\n"
              "closure: +\n  error: expected ':integer' but got ':nil' for parameter 1.\ntype bounds:\n"
              "  :a -> :integer\n:nil\n");
}

TEST_F(ScriptFunctionTest, thatCallsBackEndlesslyIsStopped)
{
    const auto evaluate = [](ScriptCall&, void* user) {
        static_cast<ScriptingDevice*>(user)->evaluateScript("(again)");
    };
    ASSERT_TRUE(add("again", "(:nil)", evaluate, device));
    EXPECT_EQ(outputOf("(again)"), "error: recursion too deep!\n");
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
}

TEST_F(ScriptFunctionTest, mayRegisterOthers)
{
    const auto define = [](ScriptCall& call, void* user) {
        call.returnBoolean(registerScriptFunction(
            static_cast<ScriptingDevice*>(user), "made", "", "(:integer)",
            [](ScriptCall& made, void*) { made.returnInteger(5); }, nullptr));
    };
    ASSERT_TRUE(add("make", "(:boolean)", define, device));
    EXPECT_EQ(outputOf("(print (make)) (print (made)) (print (make))"),
              ":boolean (:true)\n:integer (5)\n:boolean (:false)\n");
}
