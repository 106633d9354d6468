#include <xum/files/config_reader.h>

#include "allocation_counter.h"
#include "config_reference.h"
#include "config_tree.h"

#include <gtest/gtest.h>

#include <new>
#include <ostream>
#include <random>
#include <string>
#include <vector>

void PrintTo(const ConfigOutcome& outcome, std::ostream* stream)
{
    *stream << ::testing::PrintToString(outcome.tree) << ", " << ::testing::PrintToString(outcome.message) << " at "
            << outcome.position;
}

namespace {

const std::string tooFewTags = "readSection() -> section needs at least 2 tokens!";
const std::string notClosed = "readSection() -> empty token list while parsing!";
const std::string noClosingTag = "tokenize() -> end of file reached before finding a closing tag!";

ConfigOutcome outcomeOf(const std::string& text)
{
    try {
        return {describe(*ConfigReader(text).read()), "", 0};
    } catch (const ConfigSyntaxError& problem) {
        return {"", problem.message, problem.position};
    }
}

ConfigOutcome refused(const std::string& message, std::size_t position)
{
    return {"", message, position};
}

ConfigOutcome tree(const std::string& description)
{
    return {description, "", 0};
}

struct Row {
    std::string text;
    ConfigOutcome outcome;
};

void expectRows(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.text));
        EXPECT_EQ(outcomeOf(row.text), row.outcome);
        EXPECT_EQ(readByTheRules(row.text), row.outcome) << "the rules are written down wrongly";
    }
}

std::string repeated(const std::string& text, std::size_t count)
{
    std::string out;
    out.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) out += text;
    return out;
}

/// A text of random pieces, up to a number of them.
std::string randomText(std::mt19937& random, const std::vector<std::string>& pieces, unsigned most)
{
    std::string text;
    for (auto count = random() % (most + 1); count > 0; --count) text += pieces[random() % pieces.size()];
    return text;
}

struct Counts {
    int trees = 0;
    int refusals = 0;
};

/// Reads random texts, as the rules say. Returns how they fared.
Counts expectAsTheRulesSay(unsigned seed, int texts, const std::vector<std::string>& pieces, unsigned most)
{
    std::mt19937 random(seed);
    Counts counts;
    for (int i = 0; i < texts; ++i) {
        const std::string text = randomText(random, pieces, most);
        const ConfigOutcome outcome = outcomeOf(text);
        const ConfigOutcome expected = readByTheRules(text);
        if (!(outcome == expected)) {
            EXPECT_EQ(outcome, expected) << ::testing::PrintToString(text);
            return counts;
        }
        ++(outcome.message.empty() ? counts.trees : counts.refusals);
    }
    return counts;
}

} // namespace

TEST(ConfigReader, readsEveryFormOfAnEntry)
{
    expectRows({
        {"<r><a b/></r>", tree("r{a=b;}")},
        {"<r><a \"b c\"/></r>", tree("r{a=b c;}")},
        {"<r><a /></r>", tree("r{a=;}")},
        {"<r><a \"\"/></r>", tree("r{a=;}")},
        {"<r><a \" \"/></r>", tree("r{a= ;}")},
        {"<r><a b/c/></r>", tree("r{a=b/c;}")},
        {"<r><a b//></r>", tree("r{a=b/;}")},
        {"<r><a b\tc/></r>", tree("r{a=b\tc;}")},
        {"<r>< a/></r>", tree("r{=a;}")},
        {"<r>< /></r>", tree("r{=;}")},
        {"<r><a b\"c\"/></r>", tree("r{a=b\"c\";}")},
        {"<r><a b\"c d\"/></r>", tree("r{a=b\"c d\";}")},
        {"<r><a \"b\"c/></r>", tree("r{a=\"b\"c;}")},
        {"<r><a \"b\"c\"d\"/></r>", tree("r{a=b\"c\"d;}")},
        {"<r><a\"x\" b/></r>", tree("r{a\"x\"=b;}")},
        {"<r><a \xC3\xA4\xFF/></r>", tree("r{a=\xC3\xA4\xFF;}")},
        {std::string("<r><a b\0c/></r>", 15), tree(std::string("r{a=b\0c;}", 9))},
    });
}

TEST(ConfigReader, refusesEntriesWithAnotherNumberOfSpacesThanOne)
{
    const auto fail = [](const std::string& name) {
        return refused("Token::Token(" + name + ") -> invalid number of spaces inside entry!", 3);
    };
    expectRows({
        {"<r><a b c/></r>", fail("a")},
        {"<r><a  b/></r>", fail("a")},
        {"<r><a \"b\" c/></r>", fail("a")},
        {"<r><a b \"c\"/></r>", fail("a")},
        {"<r>< a b/></r>", fail("")},
        {"<r><ab/></r>", fail("ab/>")},
        {"<r><a\tb/></r>", fail("a\tb/>")},
        {"<r><a/></r>", fail("a/>")},
        {"<r><\"a b\"/></r>", fail("\"a b\"/>")},
        {"<r><a\" b/></r>", fail("a\" b/>")}, // the count is checked before the quotes
    });
}

TEST(ConfigReader, refusesQuotesThatAreNotClosed)
{
    const ConfigOutcome failure = refused("Token::Token(a) -> mismatched quotes!", 3);
    expectRows({
        {"<r><a \"b/></r>", failure},
        {"<r><a \"b c/></r>", failure},
        {"<r><a \"/></r>", failure},
        {"<r><a \"x/>y\"/></r>", failure},
    });
}

TEST(ConfigReader, endsATagAtItsFirstBracketAlsoWithinQuotes)
{
    expectRows({
        {"<r><a \"x>y\"/></r>", refused("tokenize() -> expecting '<' got 'y'!", 9)},
        {"<r><a \"x></a></r>", tree("r{a \"x{}}")},
        {"<r><a \"x><b y/></a></r>", tree("r{a \"x{b=y;}}")},
    });
}

TEST(ConfigReader, takesAnyTextForTheNameOfASection)
{
    expectRows({
        {"<r><a b></a b></r>", tree("r{a b{}}")},
        {"<r><></></r>", tree("r{{}}")},
        {"<r><a/ ></a></r>", tree("r{a/ {}}")},
        {"<r><?xml?></a></r>", tree("r{?xml?{}}")},
    });
}

TEST(ConfigReader, knowsNoComments)
{
    expectRows({
        {"<r><!-- c --></r>", refused(notClosed, 0)},
        {"<r><!-- c --><a b/></r></r>", tree("r{!-- c --{a=b;}}")},
        {"<!-- c --><r></r>", refused(notClosed, 0)},
        {"# c\n<a></a>", refused("tokenize() -> expecting '<' got '#'!", 0)},
        {"<a>\n  ; c\n</a>", refused("tokenize() -> expecting '<' got ';'!", 6)},
    });
}

TEST(ConfigReader, closesTheInnermostSectionUnderAnyName)
{
    expectRows({
        {"<a></a>", tree("a{}")},
        {"<a></b>", tree("a{}")},
        {"<a></>", tree("a{}")},
        {"<a><//>", tree("a{}")},
        {"<a></a b/>", tree("a{}")},
        {"<a><b></x></x>", tree("a{b{}}")},
        {"<a><b><c></a></b><d></c></d>", tree("a{b{c{}}d{}}")},
    });
}

TEST(ConfigReader, takesTheFirstTagForTheRootWhateverItsKind)
{
    expectRows({
        {"<a b/></c>", tree("a{}")},
        {"<a b/><c d/></e>", tree("a{c=d;}")},
        {"<a \"b c\"/><d></d></a>", tree("a{d{}}")},
        {"</x></y>", tree("x{}")},
        {"</x><y z/></x>", tree("x{y=z;}")},
    });
}

TEST(ConfigReader, refusesASectionThatStartsWithTheLastTag)
{
    expectRows({
        {"", refused(tooFewTags, 0)},
        {" \t\r\n ", refused(tooFewTags, 5)},
        {"<a>", refused(tooFewTags, 0)},
        {" <a> ", refused(tooFewTags, 1)},
        {"<a b/>", refused(tooFewTags, 0)},
        {"</a>", refused(tooFewTags, 0)},
        {"<a><b>", refused(tooFewTags, 3)},
        {"<a><b x/><c>", refused(tooFewTags, 9)},
        {"<a><b></b><c>\n", refused(tooFewTags, 10)},
    });
}

TEST(ConfigReader, refusesASectionThatIsNotClosed)
{
    expectRows({
        {"<a><b x/>", refused(notClosed, 0)},
        {"<a><b></b>", refused(notClosed, 0)},
        {"<a><b></a>", refused(notClosed, 0)},
        {"<a><b><c/ ></c></b>", refused(notClosed, 0)},
        {"<a><b></b><c><d x/>", refused(notClosed, 10)},
        {" <a>\n <b>\n  <c></c>\n", refused(notClosed, 6)},
    });
}

TEST(ConfigReader, ignoresWhatFollowsTheRootAsLongAsItIsTags)
{
    expectRows({
        {"<a></a></a><x>", tree("a{}")},
        {"<a></a><b x/></b></b></b>", tree("a{}")},
        {"<a></a><a><b>", tree("a{}")},
        {"<a></a> \t\r\n", tree("a{}")},
        {"<a></a>junk", refused("tokenize() -> expecting '<' got 'j'!", 7)},
        {"<a></a></a> junk", refused("tokenize() -> expecting '<' got 'j'!", 12)},
        {"<a></a><b/>", refused("Token::Token(b/>) -> invalid number of spaces inside entry!", 7)},
        {"<a></a><b \"/>", refused("Token::Token(b) -> mismatched quotes!", 7)},
        {"<a></a><b", refused(noClosingTag, 7)},
    });
}

TEST(ConfigReader, refusesATagThatDoesNotEnd)
{
    expectRows({
        {"<a></a", refused(noClosingTag, 3)},
        {"<", refused(noClosingTag, 0)},
        {"<a b=\"c\" <d <e", refused(noClosingTag, 0)},
        {"<a>\r\n<", refused(noClosingTag, 5)},
    });
}

TEST(ConfigReader, skipsNothingButSpaceTabAndLineEndsBetweenTags)
{
    expectRows({
        {" \t\r\n<a>\n\n\r\r<b c/>\t \t</a>\n ", tree("a{b=c;}")},
        {"<a>\v</a>", refused("tokenize() -> expecting '<' got '\v'!", 3)},
        {"<a>\f</a>", refused("tokenize() -> expecting '<' got '\f'!", 3)},
        {"<a>></a>", refused("tokenize() -> expecting '<' got '>'!", 3)},
        {"<a>\xA0</a>", refused("tokenize() -> expecting '<' got '\xA0'!", 3)},
        {"\xEF\xBB\xBF<a></a>", refused("tokenize() -> expecting '<' got '\xEF'!", 0)},
        {std::string("<a></a>\0", 8), refused(std::string("tokenize() -> expecting '<' got '\0'!", 36), 7)},
        {"junk", refused("tokenize() -> expecting '<' got 'j'!", 0)},
    });
}

TEST(ConfigReader, namesABrokenTagBeforeASectionThatIsNotClosed)
{
    expectRows({
        {"<a><b></b><c x y/>", refused("Token::Token(c) -> invalid number of spaces inside entry!", 10)},
        {"<a><b c", refused(noClosingTag, 3)},
        {"<a>x", refused("tokenize() -> expecting '<' got 'x'!", 3)},
        {"<a><b/><c \"/>x", refused("Token::Token(b/>) -> invalid number of spaces inside entry!", 3)},
        {"<a/>", refused("Token::Token(a/>) -> invalid number of spaces inside entry!", 0)},
    });
}

TEST(ConfigReader, keepsTheLaterOfTwoEntriesInThePlaceOfTheEarlier)
{
    expectRows({
        {"<a><e 1/><e 2/></a>", tree("a{e=2;}")},
        {"<a><e 1/><f 2/><e 3/><g 4/><f 5/></a>", tree("a{e=3;f=5;g=4;}")},
        {"<a><e 1/><b><e 2/></b></a>", tree("a{b{e=2;}e=1;}")},
    });
}

TEST(ConfigReader, keepsSectionsOfOneName)
{
    expectRows({{"<a><b 1/><b></b><c></c><b><d 2/></b></a>", tree("a{b{}c{}b{d=2;}b=1;}")}});
}

TEST(ConfigReader, agreesWithTheRulesOnRandomCharacters)
{
    const Counts counts = expectAsTheRulesSay(1, 20000, {"<", ">", "/", "\"", " ", "a", "b", "\n", "\t"}, 24);
    EXPECT_GT(counts.refusals, 10000);
    const Counts tagged = expectAsTheRulesSay(2, 20000, {"<", "<a", "/", "\"", " ", "a", ">", ">", "/>", "</"}, 16);
    EXPECT_GT(tagged.trees, 20);
}

TEST(ConfigReader, agreesWithTheRulesOnRandomTags)
{
    const Counts counts = expectAsTheRulesSay(
        3, 20000, {"<a>", "<b>", "</a>", "</b>", "</>", "<a b/>", "<b \"a b\"/>", "<b />", " ", "\n"}, 16);
    EXPECT_GT(counts.trees, 2000);
    EXPECT_GT(counts.refusals, 2000);
    const Counts odd = expectAsTheRulesSay(
        4, 20000, {"<a>", "</a>", "</a>", "<a b/>", "<a \"b\"/>", "<a \"", "<", "\"", " ", "b\"/>", "/>", ">", "\t"},
        10);
    EXPECT_GT(odd.trees, 200);
    EXPECT_GT(odd.refusals, 2000);
}

TEST(ConfigReader, agreesWithTheRulesOnRandomBytes)
{
    std::vector<std::string> bytes;
    bytes.reserve(1000);
    for (int i = 0; i < 256; ++i) bytes.emplace_back(1, static_cast<char>(i));
    for (int i = 0; i < 200; ++i) bytes.emplace_back(std::string("<>/ \"").substr(static_cast<unsigned>(i % 5), 1));
    for (int i = 0; i < 300; ++i) bytes.emplace_back(i % 2 != 0 ? "<a>" : "</>");
    expectAsTheRulesSay(5, 20000, bytes, 40);
}

TEST(ConfigReader, agreesWithTheRulesOnEveryPrefix)
{
    const std::string text = "<a>\r\n <b \"c d\"/>\n <e><f /> <b g//></e>\t<\"h i\" j/>\n</a>\n<k>";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::string prefix = text.substr(0, length);
        EXPECT_EQ(outcomeOf(prefix), readByTheRules(prefix)) << prefix;
    }
}

TEST(ConfigReader, readsAMillionLevels)
{
    constexpr std::size_t levels = 1000000;
    const std::string text = repeated("<a>", levels) + "<e x/>" + repeated("</a>", levels);
    const std::unique_ptr<ConfigSection> root = ConfigReader(text).read();
    const ConfigSection* section = root.get();
    for (std::size_t i = 1; i < levels; ++i) {
        ASSERT_EQ(section->getAllSections().size(), 1u);
        section = section->getAllSections().front();
    }
    EXPECT_EQ(describe(*section), "a{e=x;}");
}

TEST(ConfigReader, refusesAMillionLevelsThatAreNotClosed)
{
    constexpr std::size_t levels = 1000000;
    EXPECT_EQ(outcomeOf(repeated("<a>", levels)), refused(tooFewTags, 3 * (levels - 1)));
    EXPECT_EQ(outcomeOf(repeated("<a>", levels) + repeated("</a>", levels - 1)), refused(notClosed, 0));
    EXPECT_EQ(outcomeOf(repeated("<a>", levels) + "<b/>"),
              refused("Token::Token(b/>) -> invalid number of spaces inside entry!", 3 * levels));
}

TEST(ConfigReader, throwsWheneverMemoryRunsOut)
{
    std::string text = "<a>";
    for (int i = 0; i < 20; ++i) {
        const std::string name = "a name that needs memory of its own " + std::to_string(i);
        text += "<" + name + "><b x/><b y/></" + name + "><c" + std::to_string(i) + " " + std::string(40, 'v') + "/>";
    }
    text += "</a>";
    const ConfigOutcome expected = outcomeOf(text);
    int failures = 0;
    for (bool isRead = false; !isRead; ++failures) {
        std::unique_ptr<ConfigSection> root;
        try {
            const FailingAllocations failing(failures);
            root = ConfigReader(text).read();
            isRead = true;
        } catch (const std::bad_alloc&) {
            ASSERT_LT(failures, 10000);
        }
        if (root) {
            EXPECT_EQ(describe(*root), expected.tree);
        }
    }
    EXPECT_GT(failures, 100);
}
