#include <script_text.h>

#include <xum/lisp/lisp_loader.h>

#include <gtest/gtest.h>

namespace {

/// "line:column" of every character of the stripped text and of its end.
std::string places(const std::string& original)
{
    const ScriptText script("", original);
    std::string all;
    for (std::size_t i = 0; i <= script.getText().size(); ++i)
        all += (i == 0 ? "" : " ") + script.describePlace(i).substr(1);
    return all;
}

} // namespace

TEST(ScriptText, commentsAreRemovedAsByLoad)
{
    for (const char* text : {"", ";", ";\n", "a", "a;", "a;b", "a;b\n", "a;b\nc", ";;a\n;b\nc;d;e\n\nf", "\"a;b\"\nc",
                             "a\n;b", "a;b\r\nc", "\n\n;\n"}) {
        std::string stripped = text;
        lisp_strip_comments(stripped.data());
        EXPECT_EQ(ScriptText("", text).getText(), stripped.c_str()) << text;
    }
}

TEST(ScriptText, placesAreThoseOfTheOriginal)
{
    EXPECT_EQ(places(""), "1:1");
    EXPECT_EQ(places("ab\nc"), "1:1 1:2 1:3 2:1 2:2");
    EXPECT_EQ(places("a;x\nb"), "1:1 2:1 2:2");
    EXPECT_EQ(places(";x\n;y\na"), "3:1 3:2") << "of stretches without a character the last counts";
    EXPECT_EQ(places("a ;x\n;y\n\n b;z"), "1:1 1:2 3:1 4:1 4:2 4:5");
    EXPECT_EQ(places("a;x"), "1:1 1:4");
}

TEST(ScriptText, columnsCountCharactersInsteadOfBytes)
{
    EXPECT_EQ(places("\xC3\xA4"
                     "b"),
              "1:1 1:2 1:2 1:3");
}

TEST(ScriptText, offsetBehindTheTextMeansItsEnd)
{
    EXPECT_EQ(ScriptText("a", "bc\nd").describePlace(1000), "a:2:2");
}

TEST(ScriptText, linesMayBeCountedFromAnyNumber)
{
    EXPECT_EQ(ScriptText("a", "b\nc", 17).describePlace(2), "a:18:1");
}

TEST(ScriptText, readProblemNamesTheFollowingExpression)
{
    const ScriptText script("a", "(f) ; one\n(g)");
    std::int64_t next = 0;
    EXPECT_EQ(findReadProblem(script, 0, next), "");
    EXPECT_EQ(next, 4);
    EXPECT_EQ(findReadProblem(script, next, next), "");
    EXPECT_EQ(next, -1);
}
