#include "interpreter_fixture.h"

#include <xum/lisp/lisp_loader.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>
#include <xum/lisp/lisp_type.h>

namespace {

class LispReader : public InterpreterTest {
protected:
    std::int64_t read(const char* text, std::int64_t offset = 0)
    {
        return lisp_read(get(), &result, &get()->root, text, offset);
    }

    std::string stripped(std::string text)
    {
        lisp_strip_comments(text.data());
        return text.c_str();
    }

    lisp_object result = {};
};

} // namespace

TEST_F(LispReader, theOffsetBehindAnExpression)
{
    EXPECT_EQ(read("(a) (b)"), 4);
    EXPECT_EQ(read("(a) (b)", 4), -1);
    EXPECT_EQ(read("(a)"), -1);
    EXPECT_EQ(read("(a)\n\n"), -1);
    EXPECT_EQ(read("5 "), -1);
}

TEST_F(LispReader, failureIsZeroAndNil)
{
    for (const char* text : {"", "  ", "(a", "a:b", "1 2", "(a:b)", ")", "007", "\"a"}) {
        lisp_set_integer(get(), &result, 1);
        EXPECT_EQ(read(text), 0) << text;
        EXPECT_EQ(result.type, get()->kinds[lisp_kind_nil]) << text;
    }
}

TEST_F(LispReader, aZeroEndsTheText)
{
    EXPECT_EQ(read("5\0 6"), -1);
    EXPECT_EQ(result.payload.integer, 5);
}

TEST_F(LispReader, boundSymbolsAreSharedNotCopied)
{
    evaluate("(define x 1)");
    read("x");
    const lisp_symbol* alone = result.payload.symbol;
    read("(x x)");
    EXPECT_EQ(result.payload.list->first->element->payload.symbol, alone);
    EXPECT_EQ(result.payload.list->first->element, result.payload.list->last->element);
    EXPECT_NE(alone->value, nullptr);
}

TEST_F(LispReader, theQuotedFlagOfASymbolIsStored)
{
    read("'x");
    EXPECT_TRUE(result.payload.symbol->is_quoted);
    read("x");
    EXPECT_FALSE(result.payload.symbol->is_quoted);
    read("(y 'z)");
    EXPECT_FALSE(result.payload.list->first->element->payload.symbol->is_quoted);
    EXPECT_TRUE(result.payload.list->last->element->payload.symbol->is_quoted);
}

TEST_F(LispReader, theQuotedFlagOfAListIsStored)
{
    read("'(a)");
    EXPECT_TRUE(result.payload.list->is_quoted);
    read("(a '(b) (c))");
    EXPECT_FALSE(result.payload.list->is_quoted);
    const lisp_cell* second = result.payload.list->first->next;
    EXPECT_TRUE(second->element->payload.list->is_quoted);
    EXPECT_FALSE(second->next->element->payload.list->is_quoted);
}

TEST_F(LispReader, cellsOfAListAreOneBlock)
{
    read("(a b c)");
    const lisp_list* list = result.payload.list;
    EXPECT_EQ(list->count, 3u);
    EXPECT_EQ(list->first->next, list->first + 1);
    EXPECT_EQ(list->last, list->first + 2);
    EXPECT_EQ(list->last->next, nullptr);
}

TEST_F(LispReader, theLastValueOfAText)
{
    lisp_object last = {};
    EXPECT_TRUE(lisp_read_all(get(), "1 (+ 1 1)\n", &get()->root, 2, &last));
    EXPECT_EQ(last.payload.integer, 2);
    EXPECT_FALSE(lisp_read_all(get(), "(+ 1 2) (", &get()->root, 0, &last));
    EXPECT_EQ(last.payload.integer, 3) << "what stands before a failure stays evaluated";
}

TEST_F(LispReader, commentsGoWithTheirLineFeed)
{
    EXPECT_EQ(stripped("a ; b\nc"), "a c");
    EXPECT_EQ(stripped("a;b\n;c\n;d"), "a");
    EXPECT_EQ(stripped("12;x\n34"), "1234");
    EXPECT_EQ(stripped("\"a;b\"\nc"), "\"ac");
    EXPECT_EQ(stripped(";"), "");
    EXPECT_EQ(stripped("a;b\r\nc"), "ac");
    EXPECT_EQ(stripped(""), "");
    EXPECT_EQ(stripped("none"), "none");
}

TEST_F(LispReader, toolsLearnWhyAnExpressionCannotBeRead)
{
    const struct {
        const char* text;
        const char* reason;
        std::uint64_t at;
    } cases[] = {
        {"(a", "a list is not closed before the end of the text", 2},
        {"(f \"a\nb\")", "a string is not closed before the end of its line", 3},
        {"'(a '(b))", "a quoted list stands inside a quoted list", 4},
        {"  ", "there is no expression", 2},
        {")", "a parenthesis closes no list", 0},
        {"1 2", "several atoms stand side by side", 2},
        {"(f a:b)", "invalid keyword or symbol name", 3},
        {"(f 'x \"y\" 007)", "an integer under- or overflows", 10},
    };
    for (const auto& one : cases) {
        const lisp_check_result result = lisp_check_expression(one.text, 0);
        EXPECT_EQ(result.next, 0) << one.text;
        EXPECT_STREQ(result.reason, one.reason) << one.text;
        EXPECT_EQ(result.at, one.at) << one.text;
    }
    EXPECT_EQ(lisp_check_expression("(a) (b)", 0).next, 4);
    EXPECT_EQ(lisp_check_expression("(a) (b)", 4).next, -1);
    EXPECT_EQ(lisp_check_expression("(a)", 0).reason, nullptr);
}
