#include "interpreter_fixture.h"

#include <regex>

// Bytes never come back, and slots only by a collection: what a script does a thousand times a frame must take none.

namespace {

class LispSteadyCost : public InterpreterTest {
protected:
    LispSteadyCost()
    {
        evaluate("(define repeat (closure ((n :integer) (body :closure))"
                 "    (if (= n 0) :nil (do (body) (repeat (- n 1) body)))))");
    }

    /* The two numbers that system-info shows. */
    std::pair<std::int64_t, std::int64_t> numbers()
    {
        lines.clear();
        evaluate("(system-info)");
        std::smatch match;
        const bool isLine =
            std::regex_match(lines.at(1), match, std::regex("garbage collector: (\\d+) objects, (\\d+) bytes"));
        EXPECT_TRUE(isLine) << lines.at(1);
        return {std::stoll(match[1]), std::stoll(match[2])};
    }

    /* What 99,990 rounds take: slots and bytes. */
    std::pair<std::int64_t, std::int64_t> cost(const std::string& definitions, const std::string& expression)
    {
        if (!definitions.empty()) evaluate(definitions);
        evaluate("(define run (closure () " + expression + "))");
        evaluate("(define short (closure () (repeat 10 run)))");
        evaluate("(define long (closure () (repeat 100000 run)))");
        evaluate("(short)");
        evaluate("(long)");
        // The difference of a short and a long run: what the texts of the readings themselves take goes away.
        const auto first = numbers();
        evaluate("(short)");
        const auto second = numbers();
        evaluate("(long)");
        const auto third = numbers();
        return {third.first - second.first - (second.first - first.first),
                third.second - second.second - (second.second - first.second)};
    }

    void expectNoCost(const std::string& definitions, const std::string& expression)
    {
        const auto [slots, bytes] = cost(definitions, expression);
        EXPECT_EQ(slots, 0) << expression;
        EXPECT_EQ(bytes, 0) << expression;
    }
};

} // namespace

TEST_F(LispSteadyCost, ofDataIsSeen)
{
    const auto [slots, bytes] = cost("", "(list 1)");
    EXPECT_EQ(slots, 99990);
    EXPECT_GT(bytes, 99990 * 16);
}

TEST_F(LispSteadyCost, ofANativeWithTwoIntegers)
{
    expectNoCost("", "(+ 1 2)");
    expectNoCost("(define x 1)", "(bit-and x 2)");
}

TEST_F(LispSteadyCost, ofALispClosureWithTwoParameters)
{
    expectNoCost("(define f (closure ((a :integer) (b :integer)) -> :integer (+ a b)))", "(f 1 2)");
}

TEST_F(LispSteadyCost, ofIf)
{
    expectNoCost("", "(if (< 1 2) 1 2)");
}

TEST_F(LispSteadyCost, ofDo)
{
    expectNoCost("", "(do 1 2 (do 3))");
}

TEST_F(LispSteadyCost, ofSet)
{
    expectNoCost("(define x 1)", "(set! x (+ x 1))");
}

TEST_F(LispSteadyCost, ofForEach)
{
    expectNoCost("(define xs (list 1 2 3)) (define g (closure ((n)) n))", "(for-each g xs)");
    expectNoCost("(define h (closure ((i :integer) (n)) n))", "(for-each-with-index h xs)");
}

TEST_F(LispSteadyCost, ofArraysAndTables)
{
    expectNoCost("(define a (array 3 \":integer\"))", "(array-set! a 1 (+ 1 (array-get a 1)))");
    expectNoCost("(define t (hash-table \":integer\" \":integer\")) (hash-table-put! t 5 1)",
                 "(hash-table-put! t 5 (+ 1 (hash-table-get t 5)))");
}

TEST_F(LispSteadyCost, ofTypesAndHashes)
{
    expectNoCost("", "(type-of 1)");
    expectNoCost("", "(to-hash 12345)");
    expectNoCost("", "(to-hash \"text\")");
    expectNoCost("", "(to-string :key)");
    expectNoCost("", "(= \"a\" \"b\")");
}

TEST_F(LispSteadyCost, ofLists)
{
    expectNoCost("(define xs (list 1 2 3))", "(head xs)");
    expectNoCost("", "(list-size xs)");
}

TEST_F(LispSteadyCost, ofGetAndEval)
{
    expectNoCost("(define x 1)", "(get x)");
    expectNoCost("", "(eval x)");
}
