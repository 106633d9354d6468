#include <xum/lisp/lisp.h>
#include <xum/lisp/lisp_token.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

class LispToken : public ::testing::Test {
protected:
    std::uint32_t tokenize(const std::string& text) { return lisp_tokenize(tokens.get(), text.c_str()); }

    std::vector<std::string> texts() const
    {
        std::vector<std::string> out;
        for (std::uint32_t i = 0; i < tokens->count; ++i) out.push_back(tokens->tokens[i].text);
        return out;
    }

    std::unique_ptr<lisp_tokens> tokens = std::make_unique<lisp_tokens>();
};

using Texts = std::vector<std::string>;

lisp_kind classify(const char* text)
{
    return lisp_classify(text, std::strlen(text));
}

} // namespace

TEST_F(LispToken, readingStopsBehindTheFirstListAndItsWhitespace)
{
    EXPECT_EQ(tokenize("(a b) (c)"), 4u);
    EXPECT_EQ(texts(), (Texts{"(", "a", "b", ")"}));
    EXPECT_EQ(tokens->consumed, 6u);
}

TEST_F(LispToken, readingStopsAtTheEndBehindTrailingWhitespace)
{
    EXPECT_EQ(tokenize(" (a) \n\t\r\n"), 3u);
    EXPECT_EQ(tokens->consumed, 9u);
    EXPECT_EQ(tokenize("atom  "), 1u);
    EXPECT_EQ(tokens->consumed, 6u);
}

TEST_F(LispToken, atomsDoNotEndAnExpression)
{
    EXPECT_EQ(tokenize("1 2 (a) b"), 5u);
    EXPECT_EQ(tokens->consumed, 8u);
}

TEST_F(LispToken, aStrayParenthesisEndsAnExpression)
{
    EXPECT_EQ(tokenize(") (a)"), 1u);
    EXPECT_EQ(tokens->consumed, 2u);
}

TEST_F(LispToken, delimitersNeedNoWhitespace)
{
    EXPECT_EQ(tokenize("(f\"a\"\"b\"c(d)e)"), 10u);
    EXPECT_EQ(texts(), (Texts{"(", "f", "a", "b", "c", "(", "d", ")", "e", ")"}));
}

TEST_F(LispToken, flagsOfTokens)
{
    ASSERT_EQ(tokenize("('a \"b\" #c '\"#\" '(d))"), 9u);
    EXPECT_TRUE(tokens->tokens[1].is_quoted);
    EXPECT_FALSE(tokens->tokens[1].is_string);
    EXPECT_TRUE(tokens->tokens[2].is_string);
    EXPECT_FALSE(tokens->tokens[2].is_quoted);
    EXPECT_TRUE(tokens->tokens[3].is_hash);
    EXPECT_TRUE(tokens->tokens[4].is_string);
    EXPECT_TRUE(tokens->tokens[4].is_quoted);
    EXPECT_FALSE(tokens->tokens[4].is_hash) << "a string's first character is no mark";
    EXPECT_TRUE(tokens->tokens[5].is_quoted);
    EXPECT_FALSE(tokens->tokens[6].is_quoted);
}

TEST_F(LispToken, everythingButStringsIsFolded)
{
    tokenize("(ABC :Key 0xFF \"ABC\" \xC3\x84)");
    EXPECT_EQ(texts(), (Texts{"(", "abc", ":key", "0xff", "ABC", "\xC3\x84", ")"}));
}

TEST_F(LispToken, lengthsAreKept)
{
    tokenize("(a bcd \"\")");
    EXPECT_EQ(tokens->tokens[0].length, 1);
    EXPECT_EQ(tokens->tokens[2].length, 3);
    EXPECT_EQ(tokens->tokens[3].length, 0);
}

TEST_F(LispToken, whyTextIsUnreadable)
{
    const struct {
        std::string text;
        lisp_read_problem problem;
    } cases[] = {
        {"", lisp_read_nothing},
        {" \n", lisp_read_nothing},
        {"(a", lisp_read_open_list},
        {"(a (b)", lisp_read_open_list},
        {"\"a", lisp_read_open_string},
        {"(\"a\nb\")", lisp_read_open_string},
        {"(\"a\rb\")", lisp_read_open_string},
        {"\"a\\\"", lisp_read_open_string},
        {std::string(128, 'a'), lisp_read_long_token},
        {"\"" + std::string(128, 'a') + "\"", lisp_read_long_token},
        {"'('(a))", lisp_read_nested_quote},
        {"'(a (b '(c)))", lisp_read_nested_quote},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(tokenize(one.text), 0u) << one.text;
        EXPECT_EQ(tokens->problem, one.problem) << one.text;
    }
}

TEST_F(LispToken, tokensHaveAtMost127Characters)
{
    EXPECT_EQ(tokenize(std::string(127, 'a')), 1u);
    EXPECT_EQ(tokens->tokens[0].length, 127);
}

TEST_F(LispToken, anExpressionHasAtMost1000Tokens)
{
    std::string text = "(";
    for (int i = 0; i < 998; ++i) text += "a ";
    EXPECT_EQ(tokenize(text + ")"), 1000u);
    EXPECT_EQ(tokenize(text + "a)"), 0u);
    EXPECT_EQ(tokens->problem, lisp_read_many_tokens);
}

TEST_F(LispToken, quotedListsStandSideBySide)
{
    EXPECT_EQ(tokenize("(f '(a) '(b 'c))"), 10u);
}

TEST_F(LispToken, spellingsAndTheirTypes)
{
    const struct {
        const char* text;
        lisp_kind kind;
    } cases[] = {
        {"", lisp_kind_other},       {":true", lisp_kind_boolean},  {":false", lisp_kind_boolean},
        {":nil", lisp_kind_nil},     {":truex", lisp_kind_keyword}, {":", lisp_kind_other},
        {":a-1", lisp_kind_keyword}, {":a_1", lisp_kind_other},     {"::a", lisp_kind_other},
        {"0x1f", lisp_kind_integer}, {"0x", lisp_kind_symbol},      {"0xg", lisp_kind_symbol},
        {"+0x1", lisp_kind_symbol},  {"12", lisp_kind_integer},     {"-12", lisp_kind_integer},
        {"+12", lisp_kind_integer},  {"007", lisp_kind_integer},    {"-", lisp_kind_symbol},
        {"+", lisp_kind_symbol},     {"1.5", lisp_kind_float},      {"-1.5", lisp_kind_float},
        {"+1.5", lisp_kind_float},   {"00.5", lisp_kind_float},     {".5", lisp_kind_symbol},
        {"5.", lisp_kind_symbol},    {".", lisp_kind_symbol},       {"-.5", lisp_kind_symbol},
        {"1.2.3", lisp_kind_symbol}, {"1e5", lisp_kind_symbol},     {"1-2", lisp_kind_symbol},
        {"abc", lisp_kind_symbol},   {"*a*", lisp_kind_symbol},     {",@", lisp_kind_symbol},
        {"a:b", lisp_kind_other},    {"a;b", lisp_kind_other},      {"a'b", lisp_kind_other},
        {"#a", lisp_kind_other},     {"a b", lisp_kind_other},      {"a(b", lisp_kind_other},
        {"(", lisp_kind_other},      {")", lisp_kind_other},
    };
    for (const auto& one : cases) EXPECT_EQ(classify(one.text), one.kind) << one.text;
}
