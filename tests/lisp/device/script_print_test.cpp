#include "scripting_fixture.h"

#include <xum/lisp/script_host.h>

#include <stdexcept>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class ScriptPrintTest : public ScriptingFixture {
protected:
    void SetUp() override
    {
        ScriptingFixture::SetUp();
        makeDevice();
    }

    Lines lines;
};

void collect(const char* line, void* user)
{
    static_cast<Lines*>(user)->push_back(line);
}

} // namespace

TEST_F(ScriptPrintTest, functionGetsEachLineWithoutItsEnd)
{
    setScriptPrint(device, collect, &lines);
    EXPECT_EQ(outputOf("(display \"one\") (print 2) (display \"\") (unknown)"), "");
    EXPECT_EQ(lines, (Lines{"one", ":integer (2)", "", "error: symbol 'unknown' has no binding!",
                            "error: expected :closure (got :nil)!"}));
}

TEST_F(ScriptPrintTest, nullSendsLinesToStandardOutputAgain)
{
    setScriptPrint(device, collect, &lines);
    setScriptPrint(device, nullptr, &lines);
    EXPECT_EQ(outputOf("(display \"one\")"), "one\n");
    EXPECT_TRUE(lines.empty());
}

TEST_F(ScriptPrintTest, collectionsAndMissingFilesStayOnStandardOutput)
{
    setScriptPrint(device, collect, &lines);
    EXPECT_EQ(outputOf("(garbage-collection)").find("full gc: "), 0u);
    EXPECT_EQ(outputOf("(load \"nowhere\")"), "error: file 'nowhere' not found!\n");
    EXPECT_TRUE(lines.empty());
}

TEST_F(ScriptPrintTest, devicesPrintToFunctionsOfTheirOwn)
{
    ScriptingDevice* other = engine->createScriptingDevice();
    setScriptPrint(other, collect, &lines);
    EXPECT_EQ(outputOf("(display \"one\")"), "one\n");
    EXPECT_EQ(outputOf(other, "(display \"two\")"), "");
    EXPECT_EQ(lines, Lines{"two"});
    engine->destroyScriptingDevice(other);
}

TEST_F(ScriptPrintTest, functionMayBeReplacedWhileAScriptRuns)
{
    const auto stop = [](ScriptCall&, void* user) {
        setScriptPrint(static_cast<ScriptingDevice*>(user), nullptr, nullptr);
    };
    ASSERT_TRUE(registerScriptFunction(device, "stop", "", "(:nil)", stop, device));
    setScriptPrint(device, collect, &lines);
    EXPECT_EQ(outputOf("(display \"one\") (stop) (display \"two\")"), "two\n");
    EXPECT_EQ(lines, Lines{"one"});
}

TEST_F(ScriptPrintTest, exceptionPassesToWhoeverEvaluates)
{
    const auto fail = [](const char* line, void*) { throw std::runtime_error(line); };
    setScriptPrint(device, fail, nullptr);
    try {
        device->evaluateScript("(do (display \"first\") (display \"second\"))");
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
    EXPECT_THROW(device->evaluateScript("1 2"), std::runtime_error); // printed by the reader
    setScriptPrint(device, nullptr, nullptr);
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
    EXPECT_EQ(outputOf("(garbage-collection)").find("full gc: "), 0u);
}
