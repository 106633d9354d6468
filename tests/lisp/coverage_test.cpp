#include "transcript.h"

#include <file_contents.h>

#include <xum/lisp/lisp_builtins.h>

#include <gtest/gtest.h>

#include <regex>
#include <set>

// What no transcript shows: a built-in without a call, a message without a line.

namespace {

/* The names behind an opening parenthesis. */
std::set<std::string> namesOfCalls(const std::vector<Transcript>& transcripts)
{
    static const std::regex call("\\(([^\\s()\"';]+)");
    std::set<std::string> names;
    for (const Transcript& transcript : transcripts)
        for (const std::string& script : transcript.scripts)
            for (std::sregex_iterator match(script.begin(), script.end(), call), end; match != end; ++match)
                names.insert((*match)[1]);
    return names;
}

std::string allSources()
{
    std::string sources;
    for (const auto& entry : std::filesystem::directory_iterator(XUM_TEST_LISP_SOURCES))
        if (entry.path().extension() == ".cpp") sources += fileContents(entry.path().string());
    return sources;
}

bool isMessage(const std::string& literal)
{
    for (const char* beginning : {"error: ", "  error: ", "warning: ", "fatal: ", "closure: ", "type bounds:",
                                  "full gc: ", "garbage collector: ", "tokenize() -> ", "eval() -> ",
                                  "lisp_set_symbol() -> ", "named_parameter ", "free_bytes()"})
        if (literal.starts_with(beginning)) return true;
    return false;
}

/* Up to what a format or the end of the line puts there. */
std::set<std::string> messagesOf(const std::string& sources)
{
    static const std::regex literal("\"((?:[^\"\\\\\n]|\\\\.)*)\"");
    std::set<std::string> messages;
    for (std::sregex_iterator match(sources.begin(), sources.end(), literal), end; match != end; ++match) {
        const std::string text = (*match)[1];
        if (isMessage(text)) messages.insert(text.substr(0, text.find_first_of("%\\")));
    }
    return messages;
}

/* What a script cannot bring about, and the tests that do. */
const std::set<std::string> saidElsewhere = {
#ifdef _WIN32
    "error: could not read from file!", // nowhere: a directory is not there to read
#endif
    "error: setting closure parameters!",          // LispClosure in lisp_closure_test.cpp
    "error: macros must evaluate to a list!",      // nowhere: the copy of a body is always a list
    "error: exception in a function of the host!", // the tests of the scripting device
    "eval() -> funny parameters...",               // LispEvaluator in lisp_evaluator_test.cpp
    "fatal: out of no-fail memory!",               // LispMemory in lisp_memory_test.cpp
    "free_bytes()",                                // LispMemory in lisp_memory_test.cpp
    "lisp_set_symbol() -> null environment!",      // LispEnvironment in lisp_environment_test.cpp
};

} // namespace

TEST(Transcripts, callEveryBuiltIn)
{
    const std::set<std::string> called = namesOfCalls(allTranscripts());
    std::size_t count = 0;
    const lisp_native_descriptor* builtIns = lisp_builtins(&count);
    EXPECT_EQ(count, 66u);
    for (std::size_t i = 0; i < count; ++i)
        EXPECT_TRUE(called.contains(builtIns[i].name)) << builtIns[i].name << " is called in no script";
}

TEST(Transcripts, showEveryMessage)
{
    std::string output;
    for (const Transcript& transcript : allTranscripts()) output += transcript.expected;
    const std::set<std::string> messages = messagesOf(allSources());
    EXPECT_GT(messages.size(), 40u);
    for (const std::string& message : messages) {
        const bool isShown = output.find(message) != std::string::npos;
        EXPECT_NE(isShown, saidElsewhere.contains(message)) << message;
    }
}
