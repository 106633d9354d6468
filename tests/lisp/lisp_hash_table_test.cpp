#include "interpreter_fixture.h"

#include <xum/lisp/lisp_hash_table.h>

namespace {

std::uint64_t hashOf(const std::string& text)
{
    return lisp_string_hash(text.data(), text.size());
}

class LispHashTable : public InterpreterTest {
protected:
    lisp_name* name(const std::string& text) { return lisp_intern(get(), text.data(), text.size()); }
};

} // namespace

TEST(LispStringHash, beginsAt5381)
{
    EXPECT_EQ(hashOf(""), 5381u);
}

TEST(LispStringHash, multipliesBy33AndAddsTheCharacter)
{
    EXPECT_EQ(hashOf("a"), 5381u * 33 + 97);
    EXPECT_EQ(hashOf("ab"), (5381u * 33 + 97) * 33 + 98);
}

TEST(LispStringHash, subtractsCharactersBeyondAscii)
{
    EXPECT_EQ(hashOf("\xFF"), 5381u * 33 - 1);
    EXPECT_EQ(hashOf("\x80"), 5381u * 33 - 128);
}

TEST(LispStringHash, takesTheFirst32Characters)
{
    const std::string text = "abcdefghijklmnopqrstuvwxyz012345";
    ASSERT_EQ(text.size(), 32u);
    EXPECT_EQ(hashOf(text), hashOf(text + "more"));
    EXPECT_NE(hashOf(text), hashOf(text.substr(0, 31)));
}

TEST_F(LispHashTable, oneNameRecordForAText)
{
    EXPECT_EQ(name("some-text"), name("some-text"));
    EXPECT_NE(name("some-text"), name("some-texts"));
    EXPECT_EQ(lisp_find_name(get(), "some-text", 9), name("some-text"));
    EXPECT_EQ(lisp_find_name(get(), "never-used", 10), nullptr);
}

TEST_F(LispHashTable, namesOfOneHashAreToldApart)
{
    const std::string text = "abcdefghijklmnopqrstuvwxyz012345";
    EXPECT_EQ(name(text + "one")->hash, name(text + "two")->hash);
    EXPECT_NE(name(text + "one"), name(text + "two"));
}

TEST_F(LispHashTable, manyNamesAreFoundAgain)
{
    std::vector<lisp_name*> names;
    for (int i = 0; i < 5000; ++i) names.push_back(name("name-" + std::to_string(i)));
    EXPECT_GT(get()->name_bucket_count, 1024u);
    for (int i = 0; i < 5000; ++i) EXPECT_EQ(name("name-" + std::to_string(i)), names[static_cast<std::size_t>(i)]);
}

TEST_F(LispHashTable, keepsWhatWasPut)
{
    lisp_hash_table table;
    int values[3] = {};
    ASSERT_TRUE(lisp_hash_table_init(&table, 100, false, get()));
    EXPECT_EQ(table.bucket_count, 100u);
    EXPECT_TRUE(lisp_hash_table_put(&table, name("a"), &values[0]));
    EXPECT_TRUE(lisp_hash_table_put(&table, name("b"), &values[1]));
    EXPECT_EQ(table.count, 2u);
    EXPECT_EQ(lisp_hash_table_get(&table, name("a")), &values[0]);
    EXPECT_EQ(lisp_hash_table_get(&table, name("b")), &values[1]);
    EXPECT_EQ(lisp_hash_table_get(&table, name("c")), nullptr);
}

TEST_F(LispHashTable, replacesTheValueOfAnEqualKey)
{
    lisp_hash_table table;
    int values[2] = {};
    ASSERT_TRUE(lisp_hash_table_init(&table, 100, false, get()));
    lisp_hash_table_put(&table, name("a"), &values[0]);
    lisp_hash_table_put(&table, name("a"), &values[1]);
    EXPECT_EQ(table.count, 1u);
    EXPECT_EQ(lisp_hash_table_get(&table, name("a")), &values[1]);
}

TEST_F(LispHashTable, removes)
{
    lisp_hash_table table;
    int value = 0;
    ASSERT_TRUE(lisp_hash_table_init(&table, 1, false, get()));
    for (const char* key : {"a", "b", "c"}) lisp_hash_table_put(&table, name(key), &value);
    EXPECT_TRUE(lisp_hash_table_remove(&table, name("b")));
    EXPECT_FALSE(lisp_hash_table_remove(&table, name("b")));
    EXPECT_EQ(table.count, 2u);
    EXPECT_EQ(lisp_hash_table_get(&table, name("b")), nullptr);
    EXPECT_EQ(lisp_hash_table_get(&table, name("a")), &value);
    EXPECT_EQ(lisp_hash_table_get(&table, name("c")), &value);
}

TEST_F(LispHashTable, aNewEntryStandsAtTheHeadOfItsBucket)
{
    lisp_hash_table table;
    int value = 0;
    ASSERT_TRUE(lisp_hash_table_init(&table, 1, false, get()));
    lisp_hash_table_put(&table, name("a"), &value);
    lisp_hash_table_put(&table, name("b"), &value);
    lisp_hash_table_put(&table, name("a"), &value);
    EXPECT_EQ(table.buckets[0]->key, name("b"));
    EXPECT_EQ(table.buckets[0]->next->key, name("a"));
}

TEST_F(LispHashTable, bucketsOfTheRegistriesAreFixed)
{
    EXPECT_EQ(get()->root.table.bucket_count, 1000u);
    EXPECT_EQ(get()->types.bucket_count, 100u);
    for (int i = 0; i < 3000; ++i) evaluate("(define name-" + std::to_string(i) + " 1)");
    EXPECT_EQ(get()->root.table.bucket_count, 1000u);
    EXPECT_EQ(get()->root.table.count, 3000u + 66u + 5u);
}

TEST_F(LispHashTable, aClosuresTableGrows)
{
    std::string body;
    for (int i = 0; i < 150; ++i) body += "(define n" + std::to_string(i) + " " + std::to_string(i) + ")";
    evaluate("(define f (closure () " + body + " (+ n0 n149)))");
    EXPECT_EQ(evaluate("(f)").payload.integer, 149);
}
