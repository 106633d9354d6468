#include "hostile_interpreter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// Texts that nobody would write, the same ones in each run.

namespace {

class Random {
public:
    explicit Random(std::uint64_t seed) : state(seed) {}

    std::uint64_t below(std::uint64_t limit)
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return (state >> 33) % limit;
    }

private:
    std::uint64_t state;
};

const char* const scripts[] = {
    "(define x 10) (define y (+ x 1 2)) (print (list x y)) (set! x \"text\") (display x)",
    "(define f (closure ((a :integer) (b)) -> :any (if (< a 1) b (list a b)))) (print (f 0 1)) (print (map f '(1 2)))",
    "(define g (closure ((f (:a -> :b)) (x :a)) -> :b (f x))) (print (g string-size \"abc\"))",
    "(define m (macro (a b :rest) (do (display ,a) (list ,@ b) , (+ 1 2) ,,@ (list 1 2)))) (m \"x\" 1 2 3)",
    "(define t (hash-table \":string\" \":any\")) (hash-table-put! t \"k\" '(1 2)) (hash-table-put! t \"l\" :nil)"
    "(hash-table-for-each (closure ((k :string) (v)) (do (display k) (hash-table-remove! t k))) t)",
    "(define a (array 9 \":any\")) (array-set! a 0 a) (print (array-get a 0)) (array-set! a 8 (byte 255)) "
    "(garbage-collection) (print (array-size a))",
    "(for-each-with-index (closure ((i :integer) (x)) (do (print i) (print x))) (list 1.5 -2.25 0xff :key \"s\" "
    ":true))",
    "(define-type :thing (:one :two) ((closure ((k) (s)) s) (closure ((x)) \"t\") :nil)) (print (type-list))"
    "(print (from-string :thing \"x\")) (print (type-parameters :thing))",
    "(print (eval (read \"(+ 1 (* 2 3))\"))) (print (bit-shift -1 4)) (print (/ 7 2 0)) (print (to-hash :a))",
    "(define-constant c (closure ((x :lazy) (xs :rest)) xs)) (print (c (1 2) 3 4)) (macro-expand (m 1)) (get c)",
    "(define xs (list 1 2 3)) (print (tail (cons 0 (list-reverse xs)))) (print (= xs xs)) (system-info)"
    "(print (string-take 2 (string-drop 1 (string-reverse \"hello\"))))",
};

const char* const words[] = {
    "(",
    ")",
    "'(",
    "'",
    "\"",
    "()",
    "(list)",
    ":nil",
    ":true",
    ":a",
    ":any",
    ":rest",
    ":lazy",
    "->",
    "=>",
    ",",
    ",@",
    ",,@",
    "x",
    "xs",
    "define",
    "closure",
    "macro",
    "if",
    "do",
    "list",
    "map",
    "for-each",
    "eval",
    "read",
    "set!",
    "garbage-collection",
    "array",
    "hash-table",
    "hash-table-put!",
    "array-set!",
    "0",
    "-1",
    "255",
    "9223372036854775807",
    "0x8000000000000000",
    "1.5",
    "\"(:list :any)\"",
    "\":any\"",
    "\"x\"",
    "+",
    "-",
    "*",
    "/",
    "bit-shift",
    "string-take",
    "define-type",
    "macro-expand",
    "type-of",
    "from-string",
    "to-string",
    "to-hash",
    "cons",
    "head",
    "tail",
    "hash-table-for-each",
    "map-with-index",
    "define-constant",
    "get",
    "load",
    "\n",
    " ",
};

/// Where the parts of a script begin: parentheses, words and what is between them.
std::vector<std::string> partsOf(const std::string& script)
{
    std::vector<std::string> parts;
    for (const char c : script) {
        const bool isAlone = c == '(' || c == ')' || c == ' ' || c == '"';
        const bool goesOn = !parts.empty() && !isAlone && parts.back().find_first_of("() \"") == std::string::npos;
        if (goesOn)
            parts.back() += c;
        else
            parts.push_back(std::string(1, c));
    }
    return parts;
}

template <class List>
const auto& oneOf(const List& list, Random& random)
{
    return list[random.below(std::size(list))];
}

std::string mutated(const std::string& script, Random& random)
{
    std::vector<std::string> parts = partsOf(script);
    for (std::uint64_t changes = 1 + random.below(4); changes != 0 && !parts.empty(); --changes) {
        const auto at = parts.begin() + static_cast<std::ptrdiff_t>(random.below(parts.size()));
        switch (random.below(5)) {
        case 0: parts.erase(at); break;
        case 1: *at = oneOf(words, random); break;
        case 2: parts.insert(at, std::string(oneOf(words, random)) + " "); break;
        case 3: *at = oneOf(parts, random); break;
        default: std::swap(*at, parts[random.below(parts.size())]); break;
        }
    }
    std::string text;
    for (const std::string& part : parts) text += part;
    return text;
}

} // namespace

TEST(HostileTexts, randomBytes)
{
    Random random(1);
    HostileInterpreter lisp(64u << 20);
    for (int i = 0; i < 20000; ++i) {
        std::string text(random.below(200), '\0');
        for (char& c : text) c = static_cast<char>(1 + random.below(255));
        lisp.run(text);
        if (i % 100 != 0) continue;
        ASSERT_TRUE(lisp.isHealthy()) << text;
    }
    HostileInterpreter::fatalMessages().clear(); // of apostrophes with nothing behind them
}

TEST(HostileTexts, randomBytesOfTheLanguage)
{
    const std::string characters = "()()()''\"\"  \n:;,@#-+.0123456789xabcdefif\\";
    Random random(2);
    HostileInterpreter lisp(64u << 20);
    for (int i = 0; i < 20000; ++i) {
        std::string text(random.below(60), '\0');
        for (char& c : text) c = oneOf(characters, random);
        lisp.run(text);
        if (i % 100 != 0) continue;
        ASSERT_TRUE(lisp.isHealthy()) << text;
    }
    HostileInterpreter::fatalMessages().clear();
}

TEST(HostileTexts, randomWords)
{
    Random random(3);
    HostileInterpreter lisp(64u << 20);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        int depth = 0;
        for (std::uint64_t count = 1 + random.below(30); count != 0; --count) {
            const std::string word = oneOf(words, random);
            if (word == "'" || word == "\"") continue;
            depth += word.back() == '(' ? 1 : word == ")" ? -1 : 0;
            text += word + " ";
        }
        for (; depth > 0; --depth) text += ")";
        lisp.run(text);
        if (i % 100 != 0) continue;
        ASSERT_TRUE(lisp.isHealthy()) << text;
    }
    HostileInterpreter::fatalMessages().clear();
}

TEST(HostileTexts, mutatedScripts)
{
    Random random(4);
    for (int round = 0; round < 1000; ++round) {
        HostileInterpreter lisp(1u << 20);
        std::string last;
        for (int i = 0; i < 20; ++i) lisp.run(last = mutated(oneOf(scripts, random), random));
        ASSERT_TRUE(lisp.isHealthy()) << last;
        lisp.run("(garbage-collection)");
        ASSERT_TRUE(lisp.isHealthy()) << last;
    }
    HostileInterpreter::fatalMessages().clear();
}
