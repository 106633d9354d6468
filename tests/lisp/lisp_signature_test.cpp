#include "interpreter_fixture.h"

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_signature.h>
#include <xum/lisp/lisp_type.h>

namespace {

class LispSignature : public InterpreterTest {
protected:
    bool parse(const std::string& text) { return lisp_parse_signature(get(), text.c_str(), &signature); }

    std::string entry(std::size_t index)
    {
        char text[200];
        lisp_write_entry(get(), &signature.entries[index], text, sizeof text);
        return text;
    }

    bool matches(const char* declared, const std::string& value)
    {
        lisp_type_entry type;
        EXPECT_TRUE(lisp_parse_type(get(), declared, &type)) << declared;
        lisp_bindings bindings;
        lisp_closure closure = {};
        closure.variable_count = 2;
        closure.variables[0] = 'a';
        closure.variables[1] = 'b';
        lisp_bindings_init(&bindings, &closure);
        const lisp_object object = evaluate(value);
        return lisp_match_value(&bindings, &type, &object, false);
    }

    lisp_signature signature = {};
};

std::string parameters(int count)
{
    std::string text = "(";
    for (int i = 0; i < count; ++i) text += ":any -> ";
    return text + ":any)";
}

} // namespace

TEST_F(LispSignature, entriesAreCounted)
{
    EXPECT_TRUE(parse("(:nil)"));
    EXPECT_EQ(signature.entry_count, 1);
    EXPECT_TRUE(parse("(:integer -> :string -> :any)"));
    EXPECT_EQ(signature.entry_count, 3);
    EXPECT_EQ(entry(0), ":integer");
    EXPECT_EQ(entry(1), ":string");
    EXPECT_EQ(entry(2), ":any");
}

TEST_F(LispSignature, marks)
{
    ASSERT_TRUE(parse("(:any* -> :integer -> :any&* -> :a)"));
    EXPECT_TRUE(signature.has_rest);
    EXPECT_EQ(signature.lazy, 0b101u);
    ASSERT_TRUE(parse("(:a -> :a& -> :a)"));
    EXPECT_TRUE(signature.has_rest);
    EXPECT_EQ(signature.lazy, 0u);
    ASSERT_TRUE(parse("(:a -> :a)"));
    EXPECT_FALSE(signature.has_rest);
}

TEST_F(LispSignature, nestedEntries)
{
    ASSERT_TRUE(parse("((:a -> :b -> :b) -> (:hash-table :a (:list :b)) -> (:list :keyword))"));
    EXPECT_EQ(signature.entry_count, 3);
    EXPECT_EQ(entry(0), "(:a -> :b -> :b)");
    EXPECT_EQ(entry(1), "(:hash-table :a (:list :b))");
    EXPECT_EQ(entry(2), "(:list :keyword)");
    EXPECT_EQ(signature.entries[0].type, get()->kinds[lisp_kind_closure]);
    EXPECT_EQ(signature.entries[0].count, 3);
}

TEST_F(LispSignature, aListInParenthesesIsOneEntry)
{
    ASSERT_TRUE(parse("((:list :keyword))"));
    EXPECT_EQ(signature.entry_count, 1);
    EXPECT_EQ(entry(0), "(:list :keyword)");
}

TEST_F(LispSignature, malformedTexts)
{
    for (const char* text : {"",
                             "(",
                             ")",
                             "()",
                             ":integer",
                             "(:integer",
                             ":integer)",
                             "(:integer ->)",
                             "(-> :integer)",
                             "(integer)",
                             "(:nosuch)",
                             "(:integer :string)",
                             "(:integer -> -> :any)",
                             "(:list :nosuch)",
                             "(:any& -> :any -> :any)",
                             "(:any&)",
                             "(:any -> :any&)",
                             "(:any -> :any*)",
                             "(:any& -> :any& -> :any)",
                             "(:integer) ",
                             "(:integer)x",
                             "((:integer -> :any)",
                             "((:list :integer :integer))",
                             "((:integer :integer))",
                             "((:hash-table :a))",
                             "(:any& & -> :any)",
                             "(:)",
                             "(:any*& -> :any)"})
        EXPECT_FALSE(parse(text)) << text;
}

TEST_F(LispSignature, atMost64Parameters)
{
    EXPECT_TRUE(parse(parameters(64)));
    EXPECT_EQ(signature.entry_count, 65);
    EXPECT_FALSE(parse(parameters(65)));
    EXPECT_FALSE(parse(parameters(300)));
}

TEST_F(LispSignature, aLazyMarkOnTheLastOf64Parameters)
{
    std::string text = parameters(64);
    text.insert(text.rfind(" -> "), "*");
    ASSERT_TRUE(parse(text));
    EXPECT_EQ(signature.lazy, std::uint64_t{1} << 63);
}

TEST_F(LispSignature, typesNestUpTo32Deep)
{
    const auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i) text += "(:list ";
        return text + ":integer" + std::string(static_cast<std::size_t>(depth), ')');
    };
    lisp_type_entry type;
    EXPECT_TRUE(lisp_parse_type(get(), nested(32).c_str(), &type));
    EXPECT_FALSE(lisp_parse_type(get(), nested(33).c_str(), &type));
    EXPECT_FALSE(lisp_parse_type(get(), nested(10000).c_str(), &type));
    EXPECT_FALSE(lisp_parse_type(get(), std::string(10000, '(').c_str(), &type));
}

TEST_F(LispSignature, lettersAreVariablesAndAnyIsNoType)
{
    lisp_type_entry type;
    ASSERT_TRUE(lisp_parse_type(get(), ":a", &type));
    EXPECT_EQ(type.type, nullptr);
    EXPECT_EQ(type.letter, 'a');
    ASSERT_TRUE(lisp_parse_type(get(), ":any", &type));
    EXPECT_EQ(type.type, nullptr);
    EXPECT_EQ(type.letter, 0);
    EXPECT_FALSE(lisp_parse_type(get(), ":1", &type));
    EXPECT_FALSE(lisp_parse_type(get(), ":A", &type));
}

TEST_F(LispSignature, valuesAndDeclaredTypes)
{
    EXPECT_TRUE(matches(":any", "1"));
    EXPECT_TRUE(matches(":a", "1"));
    EXPECT_TRUE(matches(":integer", "1"));
    EXPECT_FALSE(matches(":integer", "1.0"));
    EXPECT_FALSE(matches(":byte", "1"));
    EXPECT_TRUE(matches("(:list :integer)", "(list 1)"));
    EXPECT_FALSE(matches("(:list :integer)", "(list 1.0)"));
    EXPECT_TRUE(matches("(:list :integer)", "(list)"));
    EXPECT_TRUE(matches("(:list :integer)", "'(1.0)")) << "what is not set matches everything";
    EXPECT_TRUE(matches(":list", "(list 1)"));
    EXPECT_TRUE(matches(":closure", "+"));
    EXPECT_FALSE(matches("(:hash-table :string :integer)", "(hash-table \":string\" \":float\")"));
    EXPECT_TRUE(matches("(:hash-table :string :any)", "(hash-table \":string\" \":float\")"));
    EXPECT_TRUE(matches("(:hash-table :a :b)", "(hash-table \":string\" \":float\")"));
    EXPECT_FALSE(matches("(:hash-table :a :a)", "(hash-table \":string\" \":float\")"));
    EXPECT_FALSE(matches("(:integer -> :any)", "(closure ((x)) x)"));
    EXPECT_TRUE(matches("(:any -> :any)", "(closure ((x :integer)) x)"));
    EXPECT_FALSE(matches("(:any -> :any)", "(closure () 1)"));
}
