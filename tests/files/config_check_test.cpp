#include <xum/files/config_check.h>

#include <gtest/gtest.h>

#include <string>

namespace {

/// What is wrong with a text; empty when nothing is.
std::string problemOf(const std::string& text)
{
    std::string problem = "left alone";
    if (!checkConfigText(text, problem)) return problem;
    EXPECT_EQ(problem, "left alone") << text;
    return "";
}

} // namespace

TEST(ConfigCheck, whatAConfigFileReadsIsFine)
{
    for (const char* text :
         {"<a></a>", "<a><b 1/></a>", " \r\n<a>\t<b><c \"x y\"/></b></a>\n", "<a></a><b x/>", "<a x/><b/ 1/></a>"})
        EXPECT_EQ(problemOf(text), "") << text;
}

TEST(ConfigCheck, eachMessageHasItsPlace)
{
    EXPECT_EQ(problemOf("<a></a> b"), "1:9: tokenize() -> expecting '<' got 'b'!");
    EXPECT_EQ(problemOf("<a></a"), "1:4: tokenize() -> end of file reached before finding a closing tag!");
    EXPECT_EQ(problemOf("<a>"), "1:1: readSection() -> section needs at least 2 tokens!");
    EXPECT_EQ(problemOf("<a><b>"), "1:4: readSection() -> section needs at least 2 tokens!");
    EXPECT_EQ(problemOf("<a><b x/>"), "1:1: readSection() -> empty token list while parsing!");
    EXPECT_EQ(problemOf("<a><b></b>"), "1:1: readSection() -> empty token list while parsing!");
    EXPECT_EQ(problemOf(" \n "), "2:2: readSection() -> section needs at least 2 tokens!");
    EXPECT_EQ(problemOf("<a><b 1 2/></a>"), "1:4: Token::Token(b) -> invalid number of spaces inside entry!");
    EXPECT_EQ(problemOf("<a><b \"1/></a>"), "1:4: Token::Token(b) -> mismatched quotes!");
}

TEST(ConfigCheck, emptyTextHasNoRootSection)
{
    EXPECT_EQ(problemOf(""), "1:1: the text is empty");
}

TEST(ConfigCheck, linesAndColumnsCountFromOne)
{
    EXPECT_EQ(problemOf("<a>\n   <b x/>\n</a>\n\n x"), "5:2: tokenize() -> expecting '<' got 'x'!");
    EXPECT_EQ(problemOf("<a>\r\n<b x/>\r\n  <c x y/>\r\n</a>"),
              "3:3: Token::Token(c) -> invalid number of spaces inside entry!");
}

TEST(ConfigCheck, columnsCountCharactersNotBytes)
{
    EXPECT_EQ(problemOf("<a><b \xC3\xA4\xE2\x82\xAC/> x</a>"), "1:12: tokenize() -> expecting '<' got 'x'!");
}

TEST(ConfigCheck, nullCharactersAreNoEnd)
{
    EXPECT_EQ(problemOf(std::string("<a></a>\0", 8)),
              "1:8: tokenize() -> expecting '<' got '" + std::string(1, '\0') + "'!");
}

TEST(ConfigCheck, deepTextsTakeNoStack)
{
    std::string text;
    for (int i = 0; i < 200000; ++i) text += "<a>";
    EXPECT_EQ(problemOf(text + "<b x/>"), "1:599998: readSection() -> empty token list while parsing!");
    text += "<b x/>";
    for (int i = 0; i < 200000; ++i) text += "</a>";
    EXPECT_EQ(problemOf(text), "");
}
