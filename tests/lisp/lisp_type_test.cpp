#include "interpreter_fixture.h"

#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_printer.h>
#include <xum/lisp/lisp_signature.h>
#include <xum/lisp/lisp_type.h>

#include <cstring>

namespace {

class LispType : public InterpreterTest {
protected:
    lisp_type* define(const std::string& name, const std::string& parameters)
    {
        return lisp_define_type(get(), name.c_str(), parameters.c_str(), nullptr, nullptr, nullptr, nullptr);
    }

    std::string writeEntry(const char* text, std::size_t size)
    {
        lisp_type_entry entry;
        EXPECT_TRUE(lisp_parse_type(get(), text, &entry));
        std::string out(100, '#');
        const std::size_t length = lisp_write_entry(get(), &entry, out.data(), size);
        EXPECT_EQ(length, std::strlen(out.c_str()));
        return out.c_str();
    }
};

std::string manyParameters(int count)
{
    std::string text = ":p0";
    for (int i = 1; i < count; ++i) text += " :p" + std::to_string(i);
    return text;
}

bool isTypeName(const char* name)
{
    return lisp_is_type_name(name, std::strlen(name));
}

} // namespace

TEST_F(LispType, parametersKeepTheirOrder)
{
    const lisp_type* type = define(":pair", ":key :value");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->parameter_count, 2);
    EXPECT_STREQ(type->parameters->name->characters, ":key");
    EXPECT_STREQ(type->parameters->next->name->characters, ":value");
    EXPECT_EQ(type->parameters->next->next, nullptr);
}

TEST_F(LispType, aNewTypeIsRegisteredAtTheHeadOfTheList)
{
    const lisp_type* before = get()->newest_type;
    const lisp_type* type = define(":plain", "");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(get()->newest_type, type);
    EXPECT_EQ(type->next, before);
    EXPECT_EQ(lisp_find_type(get(), ":plain"), type);
    EXPECT_EQ(type->parameter_count, 0);
    EXPECT_TRUE(type->is_self_evaluating);
    EXPECT_STREQ(type->name, ":plain");
}

TEST_F(LispType, anUnknownNameIsNoType)
{
    EXPECT_EQ(lisp_find_type(get(), ":nosuch"), nullptr);
    EXPECT_EQ(lisp_find_type(get(), ":any"), nullptr);
    EXPECT_EQ(lisp_find_type(get(), ":Integer"), nullptr);
    EXPECT_EQ(lisp_find_type(get(), "print"), nullptr) << "a name of something else";
}

TEST_F(LispType, namesAreShorterThan128Characters)
{
    EXPECT_NE(define(":" + std::string(126, 'a'), ""), nullptr);
    EXPECT_EQ(define(":" + std::string(127, 'a'), ""), nullptr);
}

TEST_F(LispType, atMost255Parameters)
{
    EXPECT_EQ(define(":too-many", manyParameters(256)), nullptr);
    const lisp_type* type = define(":many", manyParameters(255));
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->parameter_count, 255);
}

TEST_F(LispType, theBuiltInTypesInTheirOrder)
{
    const char* const names[] = {":nil",        ":list",    ":keyword", ":symbol", ":boolean",
                                 ":byte",       ":integer", ":float",   ":string", ":array",
                                 ":hash-table", ":closure", ":macro",   ":stream", ":thread"};
    const lisp_type* type = get()->newest_type;
    for (std::size_t i = lisp_built_in_type_count; i-- != 0; type = type->next) {
        EXPECT_STREQ(type->name, names[i]);
        EXPECT_EQ(type, get()->kinds[i]);
        const bool isEvaluated = type->kind == lisp_kind_list || type->kind == lisp_kind_symbol;
        EXPECT_EQ(type->is_self_evaluating, !isEvaluated) << type->name;
    }
    EXPECT_EQ(type, nullptr);
}

TEST_F(LispType, theNamesOfTypesOfScripts)
{
    EXPECT_TRUE(isTypeName(":abc"));
    EXPECT_TRUE(isTypeName(":a-1"));
    EXPECT_FALSE(isTypeName(":ab"));
    EXPECT_FALSE(isTypeName("abcd"));
    EXPECT_FALSE(isTypeName(":a_b"));
    EXPECT_FALSE(isTypeName("::ab"));
    for (const char* reserved : {":any", ":lazy", ":rest", ":optional", ":key"}) EXPECT_FALSE(isTypeName(reserved));
    EXPECT_TRUE(isTypeName(":anything"));
    EXPECT_TRUE(isTypeName(":keys"));
}

TEST_F(LispType, entriesAreWrittenAsTheyAreSpelled)
{
    for (const char* text : {":integer", ":any", ":a", "(:list :a)", "(:hash-table :any (:list :float))",
                             "(:a -> :b -> :b)", "(:any)", "(:list (:integer -> :any))"})
        EXPECT_EQ(writeEntry(text, 100), text);
}

TEST_F(LispType, entriesAreCutToTheSize)
{
    EXPECT_EQ(writeEntry("(:list :integer)", 17), "(:list :integer)");
    EXPECT_EQ(writeEntry("(:list :integer)", 16), "(:list :integer");
    EXPECT_EQ(writeEntry("(:list :integer)", 8), "(:list ");
    EXPECT_EQ(writeEntry("(:list :integer)", 1), "");
}

TEST_F(LispType, valuesOfATypeWithoutConvertersShowItsNameAndAnAddress)
{
    define(":plain", "");
    lisp_object* value = lisp_create_object(get(), ":plain", nullptr);
    ASSERT_NE(value, nullptr);
    lisp_print(get(), &get()->root, value, "> ");
    EXPECT_EQ(lines, Lines{"> :plain (0)"});
    std::uint64_t hash = 0;
    EXPECT_TRUE(lisp_hash_of_value(get(), &get()->root, value, &hash));
}

TEST_F(LispType, valuesOfATypeWithConvertersUseThem)
{
    evaluate("(define-type :thing () (:nil (closure ((x)) \"as text\") (closure ((x)) 42)))");
    lisp_object* value = lisp_create_object(get(), ":thing", nullptr);
    ASSERT_NE(value, nullptr);
    lisp_print(get(), &get()->root, value, "");
    EXPECT_EQ(lines, Lines{":thing (as text)"});
    std::uint64_t hash = 0;
    EXPECT_TRUE(lisp_hash_of_value(get(), &get()->root, value, &hash));
    EXPECT_EQ(hash, 42u);
    lisp_object text = {};
    lisp_value_to_string(get(), &get()->root, value, &text);
    EXPECT_STREQ(text.payload.string->characters, "as text");
}

TEST_F(LispType, theDefaultHashIsThatOfTheConvertersText)
{
    evaluate("(define-type :thing () (:nil (closure ((x)) \"as text\")))");
    lisp_object* value = lisp_create_object(get(), ":thing", nullptr);
    std::uint64_t hash = 0;
    ASSERT_TRUE(lisp_hash_of_value(get(), &get()->root, value, &hash));
    EXPECT_EQ(static_cast<std::int64_t>(hash), evaluate("(to-hash \"as text\")").payload.integer);
}

TEST_F(LispType, aConverterThatYieldsNothingPrintsNothing)
{
    evaluate("(define-type :thing () (:nil (closure ((x)) :nil) (closure ((x)) \"no number\")))");
    lisp_object* value = lisp_create_object(get(), ":thing", nullptr);
    lisp_print(get(), &get()->root, value, "");
    EXPECT_TRUE(lines.empty());
    std::uint64_t hash = 0;
    EXPECT_FALSE(lisp_hash_of_value(get(), &get()->root, value, &hash));
}
