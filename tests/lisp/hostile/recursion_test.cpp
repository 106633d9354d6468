#include "hostile_interpreter.h"

#include "file_contents.h"

#include <gtest/gtest.h>

#include <string>

// Whatever calls itself without end is stopped once, with one line, and yields :nil.

namespace {

const std::string tooDeep = "error: recursion too deep!\n";

struct Attempt {
    const char* name;
    const char* definitions;
    const char* call;
};

void PrintTo(const Attempt& attempt, std::ostream* out)
{
    *out << attempt.name;
}

class HostileRecursion : public ::testing::TestWithParam<Attempt> {};

const Attempt attempts[] = {
    {"closureCallingItself", "(define f (closure ((n)) (+ 1 (f n))))", "(f 1)"},
    {"closureCallingItselfTwice", "(define f (closure ((n)) (+ (f n) (f n))))", "(f 1)"},
    {"closureCallingItselfManyTimesInOrder", "(define f (closure ((n)) (do (f n) (f n) (f n) 1)))", "(f 1)"},
    {"closuresCallingEachOther", "(define f (closure ((n)) (+ 1 (g n)))) (define g (closure ((n)) (+ 1 (f n))))",
     "(f 1)"},
    {"closureAsItsOwnHead", "(define f (closure () ((f))))", "(f)"},
    {"closureAsItsOwnCondition", "(define f (closure () (if (f) 1 2)))", "(f)"},
    {"closureWithVariableReturnType", "(define f (closure ((n :a)) -> :a (f n)))", "(f 1)"},
    {"closureWithRestParameter", "(define f (closure ((xs :rest)) (list (f 1 2 3))))", "(f)"},
    {"closureWithLazyParameter", "(define f (closure ((x :lazy)) (list (f (1 2 3)))))", "(f (1))"},
    {"evaluationOfEvaluation", "(define x (read \"(list (eval x))\"))", "(eval x)"},
    {"mapInMap", "(define f (closure ((x)) (map f (list x))))", "(f 1)"},
    {"forEachInForEach", "(define f (closure ((x)) (for-each f (list x x))))", "(f 1)"},
    {"forEachWithIndexInItself", "(define f (closure ((i :integer) (x)) (for-each-with-index f (list x))))", "(f 1 1)"},
    {"tableLoopInTableLoop",
     "(define t (hash-table \":any\" \":any\")) (hash-table-put! t 1 1) (hash-table-put! t 2 2)"
     "(define f (closure ((k) (v)) (hash-table-for-each f t)))",
     "(f 1 1)"},
    {"macroInItsOwnArguments", "(define m (macro (x) (list (m ,x))))", "(m 1)"},
    {"macroEvaluatingItself", "(define m (macro (x) (list , (m 1))))", "(m 1)"},
    {"macroSplicingItself", "(define m (macro (x) (list ,,@ (m 1))))", "(m 1)"},
    {"macroThatExpandsTwice", "(define m (macro (x) (+ (m 1) (m 1))))", "(m 1)"},
    {"macroExpansionOfItself", "(define m (macro (x) (list , (macro-expand (m 1)))))", "(macro-expand (m 1))"},
    {"readingInReading", "(define f (closure () (list (eval (read \"(f)\")))))", "(f)"},
    {"definitionOfItself", "(define f (closure () (define x (f))))", "(f)"},
    {"typeOfItself", "(define f (closure () (define-type :thing () ((f)))))", "(f)"},
};

} // namespace

TEST_P(HostileRecursion, isStoppedWithOneLine)
{
    HostileInterpreter lisp(32u << 20);
    ASSERT_EQ(lisp.run(GetParam().definitions), "");
    const std::string call = GetParam().call;
    EXPECT_EQ(lisp.run(call), tooDeep);
    EXPECT_TRUE(lisp.isHealthy());
    EXPECT_EQ(lisp.run("(print " + call + ") (display \"next\")"), tooDeep + "next\n"); // the whole expression ends
    EXPECT_EQ(lisp.run("(garbage-collection)"), "");
    EXPECT_EQ(lisp.run("(print (+ 1 2))"), ":integer (3)\n");
    EXPECT_TRUE(lisp.isHealthy());
}

INSTANTIATE_TEST_SUITE_P(Of, HostileRecursion, ::testing::ValuesIn(attempts),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(HostileEndlessWork, scriptThatLoadsItselfIsStopped)
{
    HostileInterpreter lisp;
    writeFileContents("endless.lisp", "(set! count (+ count 1)) (load \"endless\") (display \"not reached\")");
    lisp.run("(define count 0) (define *load-path* (list \"\"))");
    EXPECT_EQ(lisp.run("(load \"endless\")"), tooDeep);
    EXPECT_EQ(lisp.run("(print (< 10 count))"), ":boolean (:true)\n");
    writeFileContents("endless.lisp", "(display \"ended\")");
    EXPECT_EQ(lisp.run("(print (load \"endless\"))"), "ended\n:boolean (:true)\n");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileEndlessWork, macroThatExpandsToItselfEndsWithTheMemory)
{
    HostileInterpreter lisp;
    lisp.run("(define m (macro () (m)))");
    EXPECT_EQ(lisp.run("(m)"), "error: out of memory!\n");
    EXPECT_TRUE(lisp.isHealthy());
    lisp.run("1");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileEndlessWork, callWithMoreArgumentsThanTheStackHolds)
{
    HostileInterpreter lisp(64u << 20);
    lisp.run("(define xs (list)) (define grow (closure ((n)) (if (= n 0) 0 (do (set! xs (cons n xs)) (grow (- n 1))))))"
             "(grow 20000) (define call (macro (f ys) (,f ,@ ys)))");
    EXPECT_EQ(lisp.run("(print (call list xs))"), tooDeep);
    EXPECT_EQ(lisp.run("(print (call + xs))"), tooDeep);
    EXPECT_EQ(lisp.run("(print (call if xs))"), "error: wrong number of parameters!\n:nil\n");
    EXPECT_EQ(lisp.run("(print (call do xs))"), ":integer (20000)\n");
    EXPECT_EQ(lisp.run("(define m (macro (a :rest) (list ,@ a)))"), "");
    EXPECT_EQ(lisp.run("(print (call m xs))"), tooDeep);
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileEndlessWork, recursionInTailPositionRunsOn)
{
    HostileInterpreter lisp;
    lisp.run("(define f (closure ((n :integer)) -> :integer (if (= n 0) 0 (do 1 (g (- n 1))))))"
             "(define g (closure ((n :integer)) -> :integer (if (< n 1) 0 (f n))))");
    EXPECT_EQ(lisp.run("(print (f 300000))"), ":integer (0)\n");
    EXPECT_TRUE(lisp.isHealthy());
}
