#include "hostile_interpreter.h"

#include <gtest/gtest.h>

#include <string>

// Values that hold themselves, and scripts that take away what they are working on and collect.

namespace {

/// Takes the places of what a collection has freed.
const std::string fill =
    "(map (closure ((x)) (list x (+ x 1))) '(1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 "
    "22 23 24 25 26 27 28 29 30 31 32 33 34 35 36 37 38 39 40))";
const std::string collect = "(do (garbage-collection) " + fill + ")";

struct Attempt {
    const char* name;
    std::string definitions; ///< scripts of their own, one a line
    std::string script;
    std::string output;
};

void PrintTo(const Attempt& attempt, std::ostream* out)
{
    *out << attempt.name;
}

class HostileSelfReference : public ::testing::TestWithParam<Attempt> {};

const Attempt attempts[] = {
    {"arrayInItself", "(define a (array 3 \":any\"))\n(array-set! a 0 a)\n(array-set! a 1 (list a a))",
     collect + "(print a) (print (array-get a 0)) (print (= a (array-get (array-get a 0) 0)))",
     "(:array :any) (3 elements)\n(:array :any) (3 elements)\n:boolean (:true)\n"},
    {"tableAsItsOwnKeyAndValue",
     "(define t (hash-table \":any\" \":any\"))\n(hash-table-put! t t t)\n(hash-table-put! t (list t) (list t))",
     collect + collect + "(print (hash-table-size t)) (print (= t (hash-table-get t t)))",
     ":integer (2)\n:boolean (:true)\n"},
    {"listInArrayInItself", "(define a (array 1 \":any\"))\n(define xs (list a))\n(array-set! a 0 xs)",
     collect + "(print (= xs (array-get (head xs) 0)))", ":boolean (:true)\n"},
    {"closureInItsOwnEnvironment", "(define f (closure ((x)) (do (define self f) (set! x f) x)))",
     "(print (f 1))" + collect + "(print (f 1))",
     ":closure (:any -> :any)\nwarning: symbol 'self' was already defined.\n:closure (:any -> :any)\n"},
    {"closureRedefinedWhileItRuns",
     "(define f (closure ((x)) (do (set! f (closure ((y)) (display \"new\"))) " + collect +
         " (display \"old\") (f 1) (+ x 1))))",
     "(print (f 41))", "old\nnew\n:integer (42)\n"},
    {"closureForgottenWhileItsArgumentsAreEvaluated", "(define f (closure ((x) (y)) (list x y)))",
     "(print (f (do (set! f :nil) " + collect + ") (list 1 2)))", "(:list (:list :any)) (2 nodes)\n"},
    {"closureForgottenInItsOwnBody",
     "(define f (closure ((xs)) (do (set! f :nil) (set! xs (tail xs)) " + collect +
         " (for-each display xs) (display \"end\"))))",
     "(f (list \"a\" \"b\" \"c\"))", "b\nc\nend\n"},
    {"listReboundInsideItsLoop", "(define xs (list (list \"a\") (list \"b\") (list \"c\")))",
     "(for-each (closure ((x)) (do (set! xs :nil) " + collect + " (display (head x)))) xs)", "a\nb\nc\n"},
    {"listReboundInsideItsMap", "(define xs (list (list \"a\") (list \"b\") (list \"c\")))",
     "(for-each display (map (closure ((x)) (do (set! xs :nil) " + collect + " (head x))) xs))", "a\nb\nc\n"},
    {"loopClosureForgottenInItself", "(define f (closure ((x)) (do (set! f :nil) " + collect + " (display x))))",
     "(for-each f (list \"a\" \"b\"))", "a\nb\n"},
    {"tableReboundInsideItsLoop",
     "(define t (hash-table \":integer\" \":any\"))\n(hash-table-put! t 1 (list \"a\"))\n"
     "(hash-table-put! t 2 (list \"b\"))",
     "(hash-table-for-each (closure ((k :integer) (v)) (do (set! t :nil) " + collect + " (display (head v)))) t)",
     "a\nb\n"},
    {"tableEmptiedAndFilledInsideItsLoop",
     "(define t (hash-table \":integer\" \":any\"))\n(hash-table-put! t 1 (list \"a\"))\n"
     "(hash-table-put! t 2 (list \"b\"))\n"
     "(define put (closure ((n)) (if (= n 100) 0 (do (hash-table-put! t n n) (put (+ n 1))))))",
     "(define f (closure ((k :integer) (v)) (do (hash-table-remove! t 1) (hash-table-remove! t 2) (put 3) " + collect +
         " 1))) (hash-table-for-each f t) (print (hash-table-size t))",
     ":integer (97)\n"},
    {"arrayElementReplacedWhileItIsUsed",
     "(define a (array 1 \":any\"))\n(array-set! a 0 (closure ((x)) (do (array-set! a 0 :nil) " + collect +
         " (display x))))",
     "((array-get a 0) \"alive\")", "alive\n"},
    {"macroRedefinedWhileItExpands",
     "(define m (macro (x) (list , (do (set! m (macro (y) (display \"new\"))) " + collect + " 1) ,x 3)))",
     "(print (m 2)) (m 1)", "(:list :integer) (3 nodes)\nnew\n"},
    {"macroForgottenByItsExpansion", "(define m (macro (x) (do (set! m :nil) " + collect + " (display ,x))))",
     "(m \"alive\")", "alive\n"},
    {"expressionThatForgetsItsOwnSource",
     "(define x (read \"(do (set! x :nil) " + std::string("(garbage-collection)") +
         " (map list '(1 2 3 4 5 6 7 8 9)) (display name) (list 1 2))\"))\n"
         "(define name \"alive\")",
     "(print (eval x))", "alive\n(:list :integer) (2 nodes)\n"},
    {"argumentsEvaluatedBeforeTheCollection", "(define xs (list 1 2 3))",
     "(print (list-size (head (list (list-reverse xs) (do (set! xs :nil) " + collect + ")))))", ":integer (3)\n"},
    {"defaultConverterReplacedByCollector",
     "(define f (closure ((s)) (do (garbage-collection) \"text\")))\n(define-type :thing () (:nil f))\n(set! f :nil)",
     collect + "(print (list-size (type-list)))", ":integer (16)\n"},
    {"parameterReboundBelow",
     "(define f (closure ((xs) (n)) (if (= n 0) xs (do (f (list n n) (- n 1)) " + collect + " xs))))",
     "(print (f (list 1 2 3) 5))", "(:list :integer) (2 nodes)\n"},
};

} // namespace

TEST_P(HostileSelfReference, staysWhole)
{
    HostileInterpreter lisp(32u << 20);
    std::string definitions = GetParam().definitions + "\n";
    for (std::size_t end; (end = definitions.find('\n')) != std::string::npos; definitions.erase(0, end + 1))
        ASSERT_EQ(lisp.run(definitions.substr(0, end)), "");
    EXPECT_EQ(lisp.run(GetParam().script), GetParam().output);
    EXPECT_TRUE(lisp.isHealthy());
    EXPECT_EQ(lisp.run("(garbage-collection) " + fill), "");
    EXPECT_TRUE(lisp.isHealthy());
}

INSTANTIATE_TEST_SUITE_P(Of, HostileSelfReference, ::testing::ValuesIn(attempts),
                         [](const auto& tested) { return std::string(tested.param.name); });
