#include <xum/files/config_token.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Kind = ConfigToken::Kind;

constexpr std::size_t somewhere = 17;

template <class Act>
void expectError(const Act& act, const std::string& message, std::size_t position)
{
    try {
        act();
        ADD_FAILURE() << "no error";
    } catch (const ConfigSyntaxError& problem) {
        EXPECT_EQ(problem.message, message);
        EXPECT_EQ(problem.position, position);
    }
}

void expectRefused(const std::string& tag, const std::string& message)
{
    SCOPED_TRACE(tag);
    expectError([&] { ConfigToken(tag, somewhere); }, message, somewhere);
}

void expectNamed(const std::string& tag, Kind kind, const std::string& name)
{
    SCOPED_TRACE(tag);
    const ConfigToken token(tag, somewhere);
    EXPECT_EQ(token.getKind(), kind);
    EXPECT_EQ(token.getName(), name);
    EXPECT_EQ(token.getPosition(), somewhere);
    expectError([&] { static_cast<void>(token.getValue()); }, "Token::getValue() for invalid token called!", somewhere);
}

void expectEntry(const std::string& tag, const std::string& name, const std::string& value)
{
    SCOPED_TRACE(tag);
    const ConfigToken token(tag, somewhere);
    EXPECT_EQ(token.getKind(), Kind::Entry);
    EXPECT_EQ(token.getName(), name);
    EXPECT_EQ(token.getValue(), value);
    EXPECT_EQ(token.getPosition(), somewhere);
}

} // namespace

TEST(ConfigToken, kindsAreNumbered)
{
    EXPECT_EQ(static_cast<int>(Kind::Section), 1);
    EXPECT_EQ(static_cast<int>(Kind::Entry), 2);
    EXPECT_EQ(static_cast<int>(Kind::Close), 3);
}

TEST(ConfigToken, opensASectionOfAnyName)
{
    expectNamed("<a>", Kind::Section, "a");
    expectNamed("<>", Kind::Section, "");
    expectNamed("<a b>", Kind::Section, "a b");
    expectNamed("<a/ >", Kind::Section, "a/ ");
    expectNamed("<a/b>", Kind::Section, "a/b");
    expectNamed("< a>", Kind::Section, " a");
    expectNamed("< /a>", Kind::Section, " /a");
    expectNamed("<a\r\n\t>", Kind::Section, "a\r\n\t");
    expectNamed("<a \"x>", Kind::Section, "a \"x");
    expectNamed("<a \"x\" y z>", Kind::Section, "a \"x\" y z");
    expectNamed("<<>", Kind::Section, "<");
    expectNamed("<!-- c -->", Kind::Section, "!-- c --");
    expectNamed("<?xml?>", Kind::Section, "?xml?");
}

TEST(ConfigToken, closesUnderAnyName)
{
    expectNamed("</a>", Kind::Close, "a");
    expectNamed("</>", Kind::Close, "");
    expectNamed("<//>", Kind::Close, "/");
    expectNamed("</a b/>", Kind::Close, "a b/");
    expectNamed("</a b c/>", Kind::Close, "a b c/");
    expectNamed("</\"/>", Kind::Close, "\"/");
    expectNamed("</ >", Kind::Close, " ");
}

TEST(ConfigToken, isAnEntryWithAValue)
{
    expectEntry("<a b/>", "a", "b");
    expectEntry("<a \"b c\"/>", "a", "b c");
    expectEntry("<a />", "a", "");
    expectEntry("<a \"\"/>", "a", "");
    expectEntry("<a \" \"/>", "a", " ");
    expectEntry("<a b/c/>", "a", "b/c");
    expectEntry("<a b//>", "a", "b/");
    expectEntry("<a //>", "a", "/");
    expectEntry("<a <</>", "a", "<<");
    expectEntry("< a/>", "", "a");
    expectEntry("< />", "", "");
    expectEntry("< \"\"/>", "", "");
}

TEST(ConfigToken, onlyTheSpaceSeparates)
{
    expectEntry("<a b\tc/>", "a", "b\tc");
    expectEntry("<a b\r\nc/>", "a", "b\r\nc");
    expectEntry("<a\t b/>", "a\t", "b");
    expectEntry("<a\n \"b c\"/>", "a\n", "b c");
    expectEntry("<a\xA0 b\xC2\xA0/>", "a\xA0", "b\xC2\xA0");
    expectRefused("<a\tb/>", "Token::Token(a\tb/>) -> invalid number of spaces inside entry!");
    expectRefused("<a\r\nb/>", "Token::Token(a\r\nb/>) -> invalid number of spaces inside entry!");
}

TEST(ConfigToken, quotesCountOnlyAsFirstAndLastCharacterOfTheValue)
{
    expectEntry("<a b\"c\"/>", "a", "b\"c\"");
    expectEntry("<a b\"c d\"/>", "a", "b\"c d\"");
    expectEntry("<a \"b\"c/>", "a", "\"b\"c");
    expectEntry("<a \"b c\"d/>", "a", "\"b c\"d");
    expectEntry("<a \"b\"c\"d\"/>", "a", "b\"c\"d");
    expectEntry("<a \"b c\"d\" e\"/>", "a", "b c\"d\" e");
    expectEntry("<a \"\"\"\"/>", "a", "\"\"");
    expectEntry("<a\"x\" b/>", "a\"x\"", "b");
    expectEntry("<a\"x\" \"b c\"/>", "a\"x\"", "b c");
    expectEntry("<a\"x y\" b/>", "a\"x y\"", "b");
    expectEntry("<\"\" \"\"/>", "\"\"", "");
    expectEntry("<a 'b'/>", "a", "'b'");
}

TEST(ConfigToken, hasExactlyOneSpaceOutsideQuotes)
{
    expectRefused("<a b c/>", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<a  b/>", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<a b />", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<a  />", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<a \"b\" c/>", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<a b \"c\"/>", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<a \"b\" />", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("< a b/>", "Token::Token() -> invalid number of spaces inside entry!");
    expectRefused("<ab/>", "Token::Token(ab/>) -> invalid number of spaces inside entry!");
    expectRefused("<a/>", "Token::Token(a/>) -> invalid number of spaces inside entry!");
    expectRefused("<</>", "Token::Token(</>) -> invalid number of spaces inside entry!");
    expectRefused("<\"a b\"/>", "Token::Token(\"a b\"/>) -> invalid number of spaces inside entry!");
}

TEST(ConfigToken, closesItsQuotes)
{
    expectRefused("<a \"b/>", "Token::Token(a) -> mismatched quotes!");
    expectRefused("<a \"b c/>", "Token::Token(a) -> mismatched quotes!");
    expectRefused("<a \"/>", "Token::Token(a) -> mismatched quotes!");
    expectRefused("<a b\"/>", "Token::Token(a) -> mismatched quotes!");
    expectRefused("<a \"\"\"/>", "Token::Token(a) -> mismatched quotes!");
    expectRefused("<a\"x\" \"/>", "Token::Token(a\"x\") -> mismatched quotes!");
    expectRefused("< \"/>", "Token::Token() -> mismatched quotes!");
}

TEST(ConfigToken, countsItsSpacesBeforeItsQuotes)
{
    expectRefused("<a\" b/>", "Token::Token(a\" b/>) -> invalid number of spaces inside entry!");
    expectRefused("<a b \"c/>", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<\"/>", "Token::Token(\"/>) -> invalid number of spaces inside entry!");
}

TEST(ConfigToken, ofLessThanTwoCharactersIsInvalid)
{
    expectRefused("", "Token::Token() -> invalid token ''!");
    expectRefused("<", "Token::Token() -> invalid token '<'!");
    expectRefused(">", "Token::Token() -> invalid token '>'!");
}

TEST(ConfigToken, withoutATagHasNeitherNameNorValue)
{
    const ConfigToken token;
    EXPECT_EQ(token.getKind(), Kind::Invalid);
    expectError([&] { static_cast<void>(token.getName()); }, "Token::getName() for invalid token called!", 0);
    expectError([&] { static_cast<void>(token.getValue()); }, "Token::getValue() for invalid token called!", 0);
}
