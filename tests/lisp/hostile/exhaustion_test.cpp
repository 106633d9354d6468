#include "hostile_interpreter.h"

#include "file_contents.h"

#include <xum/lisp/lisp_collector.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_object.h>

#include <gtest/gtest.h>

#include <string>

// Each kind of allocation repeated until the region is full.

namespace {

const std::string outOfMemory = "error: out of memory!\n";

struct Attempt {
    const char* name;
    const char* definitions;
    const char* step; ///< repeated without end; n counts up
};

void PrintTo(const Attempt& attempt, std::ostream* out)
{
    *out << attempt.name;
}

class HostileExhaustion : public ::testing::TestWithParam<Attempt> {};

const Attempt attempts[] = {
    {"doubledString", "(define s \"0123456789\")", "(set! s (+ s s))"},
    {"longerString", "(define s \"0123456789\")", "(set! s (+ s \"0123456789\"))"},
    {"reversedStrings", "(define s \"0123456789012345678901234567890123456789\")", "(string-reverse s)"},
    {"partsOfStrings", "(define s \"0123456789012345678901234567890123456789\")",
     "(do (string-take 20 s) (string-drop 20 s))"},
    {"numbersAsText", "(define s 0)", "(set! s (to-string n))"},
    {"consedList", "(define xs (list))", "(set! xs (cons n xs))"},
    {"lists", "(define xs (list))", "(list n n n)"},
    {"tails", "(define xs (list 1 2 3))", "(tail xs)"},
    {"reversedLists", "(define xs (list 1 2 3))", "(list-reverse xs)"},
    {"mappedLists", "(define xs (list 1 2 3))", "(map to-string xs)"},
    {"listsOfTypes", "(define xs (list))", "(do (type-list) (type-parameters :hash-table))"},
    {"nestedLists", "(define xs (list))", "(set! xs (list xs xs))"},
    {"arraysOfIntegers", "(define a 0)", "(set! a (array 1000 \":integer\"))"},
    {"arraysOfBooleans", "(define a 0)", "(set! a (array 1000 \":boolean\"))"},
    {"arraysOfObjects", "(define a 0)", "(set! a (array 10 \":any\"))"},
    {"filledArray", "(define a (array 200000 \":any\"))", "(array-set! a n n)"},
    {"largerArrays", "(define a 1)", "(do (set! a (* a 2)) (array a \":byte\"))"},
    {"tables", "(define t 0)", "(set! t (hash-table \":any\" \":any\"))"},
    {"filledTable", "(define t (hash-table \":any\" \":any\"))", "(hash-table-put! t n n)"},
    {"tableOfLists", "(define t (hash-table \":any\" \":any\"))", "(hash-table-put! t (list n) (list n))"},
    {"closures", "(define c 0)", "(set! c (closure ((x) (y)) (+ x y)))"},
    {"calledClosures", "(define c 0)", "((closure ((x) (y)) (+ x y)) 1 2)"},
    {"closuresWithTypes", "(define c 0)", "(set! c (closure ((x (:list :a))) -> :a => ((:a :integer)) (head x)))"},
    {"macros", "(define m 0)", "(set! m (macro (x y) (+ ,x ,y)))"},
    {"expansions", "(define m (macro (x) (+ ,x 1)))", "(m 2)"},
    {"evaluatingExpansions", "(define m (macro (x) (+ , (+ 1 2) 1)))", "(m 2)"},
    {"splicingExpansions", "(define m (macro (x :rest) (+ ,@ x)))", "(m 1 2 3)"},
    {"symbols", "(define s 0)", "(from-string :symbol (+ \"symbol-\" (to-string n)))"},
    {"keywords", "(define s 0)", "(from-string :keyword (+ \":keyword-\" (to-string n)))"},
    {"types", "(define s 0)", "(define-type (from-string :keyword (+ \":type-\" (to-string n))) (:one :two) ())"},
    {"variables", "(define d (read \"define\"))",
     "(eval (cons d (cons (from-string :symbol (+ \"variable-\" (to-string n))) (list n))))"},
    {"variablesOfClosure", "(define d (read \"define\")) (define c (closure ((x)) (eval x)))",
     "(c (cons d (cons (from-string :symbol (+ \"variable-\" (to-string n))) (list n))))"},
    {"lazyArguments", "(define c (closure ((x :lazy)) 1))", "(c (1 2 3))"},
    {"restArguments", "(define c (closure ((x :rest)) 1))", "(c 1 2 3)"},
    {"readLists", "(define s 0)", "(read \"(1 2 (3 4) five)\")"},
    {"readSymbols", "(define s 0)", "(read (+ \"symbol-\" (to-string n)))"},
    {"loadedScripts", "(define *load-path* (list \"\"))", "(load \"small\")"},
};

} // namespace

TEST_P(HostileExhaustion, endsWithItsMessage)
{
    writeFileContents("small.lisp", "(list 1 2 3)");
    HostileInterpreter lisp(2u << 20);
    std::string definitions = lisp.run(GetParam().definitions);
    if (definitions.find("*load-path*") != std::string::npos) definitions.clear(); // a warning
    ASSERT_EQ(definitions, "");
    ASSERT_EQ(
        lisp.run("(define repeat (closure ((n :integer)) (do " + std::string(GetParam().step) + " (repeat (+ n 1)))))"),
        "");
    const std::string output = lisp.run("(repeat 0)"); // what was being made may have a line of its own
    EXPECT_NE(output.find(outOfMemory), std::string::npos) << output;
    EXPECT_LT(output.size(), 100u) << output;
    EXPECT_TRUE(lisp.isHealthy());

    // What needs memory reports, what needs none works, and a collection frees what it can.
    for (const char* next : {"repeat", "(+ 1 2)", "(garbage-collection)", "(repeat 0)", "(print +pi+)", "5"}) {
        const std::string report = lisp.run(next);
        const bool isKnown = report.empty() || report.find("error: ") == 0 || report.find(":float (3.141593)") == 0 ||
                             report.find("(unreadable)") != std::string::npos;
        EXPECT_TRUE(isKnown) << next << ": " << report;
        EXPECT_TRUE(lisp.isHealthy()) << next;
    }
    EXPECT_TRUE(HostileInterpreter::fatalMessages().empty());
}

INSTANTIATE_TEST_SUITE_P(Of, HostileExhaustion, ::testing::ValuesIn(attempts),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(HostileMemory, slotsComeBackByCollections)
{
    HostileInterpreter lisp(8u << 20);
    // Two arrays have room for more numbers than the region has slots.
    lisp.run("(define a (array 100000 \":any\")) (define b (array 100000 \":any\"))"
             "(define fill (closure ((c) (n :integer)) (if (= n 100000) 0 (do (array-set! c n n) (fill c (+ n 1))))))");
    ASSERT_EQ(lisp.run("(fill a 0)"), "");
    EXPECT_EQ(lisp.run("(fill b 0)"), outOfMemory);
    EXPECT_EQ(lisp.run("b"), ""); // no list, which would need memory to be read
    EXPECT_TRUE(lisp.isHealthy());
    for (const char* name : {"b", "fill"}) // as a host's function may; a parameter of fill holds the array as well
        lisp_set_nil(lisp.get(), lisp_find_symbol(lisp.get(), &lisp.get()->root, name)->payload.symbol->value);
    lisp.get()->memory->unlock_all(&lisp.get()->heap);
    ::testing::internal::CaptureStdout();
    lisp_collect_garbage(&lisp.get()->heap, &lisp.get()->root);
    ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(lisp.run("(print (array-get a 99999))"), ":integer (99999)\n");
    EXPECT_EQ(lisp.run("(print (array-size (array 100000 \":any\")))"), ":integer (100000)\n");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileMemory, millionSymbolsAreReadAndUsed)
{
    HostileInterpreter lisp(lisp_region_size);
    lisp.run("(define d (read \"define\")) (define repeat (closure ((n :integer)) (if (= n 300000) (eval (read \"(+ s0 "
             "s299999)\")) (do "
             "(eval (cons d (cons (from-string :symbol (+ \"s\" (to-string n))) (list n)))) (repeat (+ n 1))))))"
             "(define read-on (closure ((n :integer)) (if (= n 1000000) n (do (read (+ \"t\" (to-string n))) "
             "(read-on (+ n 1))))))");
    EXPECT_EQ(lisp.run("(print (repeat 0))"), ":integer (299999)\n");
    EXPECT_EQ(lisp.run("(print (read-on 0))"), ":integer (1000000)\n");
    EXPECT_EQ(lisp.run("t999999"), "error: symbol 't999999' has no binding!\n");
    EXPECT_EQ(lisp.run("(garbage-collection)"), "");
    EXPECT_EQ(lisp.run("(print (repeat 300000))"), ":integer (299999)\n");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileMemory, wholeRegionIsFilledWithOneString)
{
    HostileInterpreter lisp(lisp_region_size);
    lisp.run("(define s \"0123456789012345678901234567890123456789\")"
             "(define repeat (closure () (do (set! s (+ s s)) (repeat))))");
    EXPECT_EQ(lisp.run("(repeat)"), outOfMemory);
    EXPECT_EQ(lisp.run("(print (< 100000000 (string-size s)))"), ":boolean (:true)\n");
    EXPECT_EQ(lisp.run("(print (+ s s))"), outOfMemory);
    EXPECT_EQ(lisp.run("(print s)").size(), std::string(":string ()\n").size() + 1024);
    EXPECT_EQ(lisp.run("(display s)").size(), 10000u);
    EXPECT_EQ(lisp.run("(print (from-string :float s))"), ":float (inf)\n");
    EXPECT_EQ(lisp.run("(print (from-string :integer s))"), "error: integer under/overflow!\n:nil\n");
    EXPECT_EQ(lisp.run("(print (= s s))"), ":boolean (:true)\n");
    EXPECT_TRUE(lisp.isHealthy());
    EXPECT_TRUE(HostileInterpreter::fatalMessages().empty());
}

TEST(HostileMemory, wholeRegionIsFilledWithOneList)
{
    HostileInterpreter lisp(lisp_region_size);
    lisp.run("(define xs (list)) (define repeat (closure ((n :integer)) (do (set! xs (cons n xs)) (repeat (+ n 1)))))");
    EXPECT_EQ(lisp.run("(repeat 0)"), outOfMemory);
    EXPECT_TRUE(lisp.isHealthy());
    EXPECT_EQ(lisp.run("xs"), "");
    EXPECT_TRUE(HostileInterpreter::fatalMessages().empty());
}

TEST(HostileMemory, absurdSizesAreFatal)
{
    HostileInterpreter::fatalMessages().clear();
    HostileInterpreter lisp;
    EXPECT_EQ(lisp.run("(array 0x7fffffffffffffff \":integer\")"), outOfMemory);
    EXPECT_EQ(lisp.run("(array 0x7fffffffffffffff \":byte\")"), outOfMemory);
    EXPECT_EQ(lisp.run("(array 0x7fffffffffffffff \":boolean\")"), outOfMemory);
    EXPECT_EQ(lisp.run("(array 536870912 \":any\")"), outOfMemory);
    EXPECT_EQ(HostileInterpreter::fatalMessages(), std::vector<std::string>(4, "fatal: invalid allocate size!"));
    EXPECT_EQ(lisp.run("(array 536870911 \":any\") (array 4294967295 \":byte\") (array 34359738360 \":boolean\")"),
              outOfMemory + outOfMemory + outOfMemory); // fits the request, not the region
    EXPECT_EQ(HostileInterpreter::fatalMessages().size(), 4u);
    HostileInterpreter::fatalMessages().clear();
    EXPECT_TRUE(lisp.isHealthy());
}
