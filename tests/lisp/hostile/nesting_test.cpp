#include "hostile_interpreter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::size_t million = 1000000;

std::string repeated(const std::string& text, std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

/// x becomes a value that lies in `count` others.
void nest(HostileInterpreter& lisp, const std::string& step, std::size_t count)
{
    EXPECT_EQ(
        lisp.run("(define x 5) (define nest (closure ((n)) (if (= n 0) 0 (do (set! x " + step + ") (nest (- n 1))))))"),
        "");
    EXPECT_EQ(lisp.run("(nest " + std::to_string(count) + ")"), "");
}

/// Does all that can be done with a value to the nested one.
void useNested(HostileInterpreter& lisp, const std::string& printedType)
{
    EXPECT_EQ(lisp.run("(garbage-collection)"), "");
    EXPECT_EQ(lisp.run("(print x)").substr(0, printedType.size()), printedType);
    EXPECT_EQ(lisp.run("(print (< 0 (string-size (to-string x))))"), ":boolean (:true)\n");
    EXPECT_EQ(lisp.run("(print (= (to-hash x) (to-hash x)))"), ":boolean (:true)\n");
    EXPECT_EQ(lisp.run("(print (= x x))"), ":boolean (:true)\n");
    EXPECT_EQ(lisp.run("(define t (hash-table \":any\" \":any\")) (hash-table-put! t x x)"
                       "(print (hash-table-contains? t x))"),
              ":boolean (:true)\n");
    EXPECT_EQ(lisp.run("(define a (array 1 \":any\")) (array-set! a 0 x) (define m (macro (y) (list ,y)))"), "");
    EXPECT_EQ(lisp.run("(set! x :nil) (garbage-collection)"), "");
    EXPECT_EQ(lisp.run("(set! t :nil) (set! a :nil)"), "");
    EXPECT_EQ(lisp.run("(garbage-collection)"), "");
    EXPECT_TRUE(lisp.isHealthy());
}

} // namespace

// ---- texts --------------------------------------------------------------------------------------------------------

TEST(HostileNesting, millionParenthesesInTextAreUnreadable)
{
    HostileInterpreter lisp;
    EXPECT_EQ(lisp.run(std::string(million, '(')), "(unreadable)");
    EXPECT_EQ(lisp.run(std::string(million, '(') + std::string(million, ')')), "(unreadable)");
    EXPECT_EQ(lisp.run("'" + std::string(million, '(')), "(unreadable)");
    EXPECT_EQ(lisp.run(std::string(million, ')')), "error: invalid keyword/symbol name!\n(unreadable)");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileNesting, deepestReadableListIsRead)
{
    HostileInterpreter lisp;
    const std::string deepest = std::string(500, '(') + std::string(500, ')');
    EXPECT_EQ(lisp.run(deepest), "error: empty list evaluated!\nerror: expected :closure (got :nil)!\n" +
                                     repeated("error: expected :closure (got :nil)!\n", 498));
    EXPECT_EQ(lisp.run("'" + deepest), "");
    EXPECT_EQ(lisp.run("(" + deepest + ")"), "(unreadable)");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileNesting, millionExpressionsAreEvaluated)
{
    HostileInterpreter lisp(lisp_region_size);
    const std::string output = lisp.run(repeated("()", million));
    EXPECT_NE(output.find("(and 999000 lines)\n"), std::string::npos);
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileNesting, millionsOfOtherCharactersAreRefused)
{
    HostileInterpreter lisp;
    for (const char c : {'\'', '"', ';', ',', ':', '#', '\\', 'x', '0', '-', '\xFF', '\x01'})
        EXPECT_EQ(lisp.run(std::string(million, c)), "(unreadable)") << c;
    EXPECT_EQ(lisp.run(std::string(million, ' ')), "(unreadable)");
    EXPECT_EQ(lisp.run(std::string(million, ' ') + "(display \"end\")" + std::string(million, '\n')), "end\n");
    EXPECT_EQ(lisp.run("(display \"" + std::string(million, 'x') + "\")"), "(unreadable)");
    EXPECT_EQ(lisp.run("(" + repeated("1 ", million) + ")"), "(unreadable)");
    EXPECT_TRUE(lisp.isHealthy());
    EXPECT_TRUE(HostileInterpreter::fatalMessages().empty());
}

TEST(HostileNesting, typeTextsOfAnyDepthAreRefused)
{
    HostileInterpreter lisp(64u << 20);
    lisp.run("(define deep \"(:list \") (define double (closure ((n)) (if (= n 0) 0 (do (set! deep (+ deep deep)) "
             "(double (- n 1)))))) (double 17)");
    EXPECT_EQ(lisp.run("(array 1 deep)"), "error: type not found!\n");
    EXPECT_EQ(lisp.run("(array 1 (string-take 1000 deep))"), "error: type not found!\n");
    EXPECT_EQ(lisp.run("(hash-table deep \":any\")"), "error: type not found!\n");
    EXPECT_EQ(lisp.run("(hash-table \":any\" deep)"), "error: type not found!\n");
    EXPECT_EQ(lisp.run("(print (from-string :symbol deep))"), ":nil\n");
    EXPECT_EQ(lisp.run("(print (from-string :keyword deep))"), ":nil\n");
    EXPECT_EQ(lisp.run("(print (from-string :integer deep))"), "error: integer under/overflow!\n:nil\n");
    EXPECT_EQ(lisp.run("(print (from-string :float deep))"), ":nil\n");
    EXPECT_EQ(lisp.run("(print (read deep))"), ":nil\n");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileNesting, typesInClosureFormsNestNoDeeperThanSignatures)
{
    HostileInterpreter lisp;
    const auto form = [](int depth) {
        return "(closure ((x " + repeated("(:list ", static_cast<std::size_t>(depth)) + ":any" +
               std::string(static_cast<std::size_t>(depth), ')') + ")) x)";
    };
    EXPECT_EQ(lisp.run(form(31)), "");
    EXPECT_EQ(lisp.run(form(40)), "error: invalid closure parameter!\n");
    EXPECT_EQ(lisp.run(form(300)), "error: invalid closure parameter!\n");
    EXPECT_TRUE(lisp.isHealthy());
}

// ---- values -------------------------------------------------------------------------------------------------------

TEST(HostileNesting, millionListsInOneAnother)
{
    HostileInterpreter lisp(lisp_region_size);
    nest(lisp, "(list x)", million);
    useNested(lisp, "(:list ");
}

TEST(HostileNesting, listsThatHoldThemselvesTwice)
{
    HostileInterpreter lisp;
    nest(lisp, "(list x x)", 10000); // 2^10000 elements, written out
    useNested(lisp, "(:list ");
}

TEST(HostileNesting, arraysInOneAnother)
{
    HostileInterpreter lisp(256u << 20);
    nest(lisp, "(fill-array (array 2 \":any\") x)", 0);
    lisp.run("(define fill-array (closure ((b) (y)) (do (array-set! b 0 y) (array-set! b 1 y) b)))");
    lisp.run("(nest 200000)");
    useNested(lisp, "(:array ");
}

TEST(HostileNesting, tablesInOneAnother)
{
    HostileInterpreter lisp(256u << 20);
    nest(lisp, "(fill-table (hash-table \":any\" \":any\") x)", 0);
    lisp.run("(define fill-table (closure ((t) (y)) (do (hash-table-put! t y y) (hash-table-put! t 1 y) t)))");
    lisp.run("(nest 100000)");
    useNested(lisp, ":hash-table (");
}

TEST(HostileNesting, environmentsInOneAnother)
{
    HostileInterpreter lisp(64u << 20);
    // Each closure is made by the one before, inside of its environment.
    lisp.run("(define again (macro () (set! c (closure () (again))))) (define c (closure () (again)))"
             "(define turn (closure ((n)) (if (= n 0) 0 (do (c) (turn (- n 1))))))");
    EXPECT_EQ(lisp.run("(turn 3000)"), "");
    EXPECT_EQ(lisp.run("(garbage-collection)"), "");
    EXPECT_EQ(lisp.run("(define filling '(1 2 3 4 5 6 7 8 9 10)) (turn 10)"), "");
    EXPECT_TRUE(lisp.isHealthy());
}

TEST(HostileNesting, wideValuesOverflowTheWorkListOfTheCollector)
{
    HostileInterpreter lisp(256u << 20);
    lisp.run("(define xs (list)) (define t (hash-table \":any\" \":any\"))"
             "(define grow (closure ((n)) (if (= n 0) 0 (do (set! xs (cons (list (list n)) xs))"
             " (hash-table-put! t (list (list n)) (list (list n))) (grow (- n 1))))))");
    EXPECT_EQ(lisp.run("(grow 60000)"), "");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(lisp.run("(garbage-collection)"), "");
    EXPECT_EQ(lisp.run("(define filling (map (closure ((x)) (list x)) '(1 2 3 4 5 6 7 8 9 10 11 12 13 14 15)))"), "");
    EXPECT_EQ(lisp.run("(define sum 0) (for-each (closure ((x)) (set! sum (+ sum (head (head x))))) xs) (print sum)"),
              ":integer (1800030000)\n");
    EXPECT_EQ(lisp.run("(set! sum 0) (hash-table-for-each (closure ((k) (v)) (set! sum (+ sum (head (head k)) "
                       "(head (head v))))) t) (print sum)"),
              ":integer (3600060000)\n");
    EXPECT_TRUE(lisp.isHealthy());
}
