#include "engine_fixtures.h"
#include "message_boxes.h"

#include <xum/lisp/scripting_device.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The scripts that come with the engine: each helper, as a script uses it.

namespace {

/// A device with the real base scripts.
class BaseScripts : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        shownMessageBoxes().clear();
        setEnvironment("XUM_DATA_ROOT", XUM_TEST_DATA_ROOT);
        ::testing::internal::CaptureStdout();
        device = engine->createScriptingDevice();
        outputOfCreation = ::testing::internal::GetCapturedStdout();
    }

    void TearDown() override
    {
        if (engine != nullptr) engine->destroyScriptingDevice(device);
        EngineFixture::TearDown();
    }

    std::string outputOf(const std::string& text)
    {
        ::testing::internal::CaptureStdout();
        const bool isRead = device->evaluateScript(text);
        return ::testing::internal::GetCapturedStdout() + (isRead ? "" : "(unreadable)");
    }

    struct Line {
        const char* expression;
        const char* output;
    };

    /// Evaluates each expression in turn. A list is shown as its elements, anything else as print shows it.
    void expectOutputs(const std::vector<Line>& lines)
    {
        outputOf("(define show (closure ((xs (:list :any))) (display (string-join \" \" (map to-string xs)))))");
        for (const Line& line : lines) EXPECT_EQ(outputOf(line.expression), line.output) << line.expression;
    }

    ScriptingDevice* device = nullptr;
    std::string outputOfCreation;
};

} // namespace

TEST_F(BaseScripts, loadWithoutAnyOutput)
{
    EXPECT_EQ(outputOfCreation, "");
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(BaseScripts, reloadWithNothingButWarnings)
{
    const std::string output = outputOf("(reload-scripts)");
    EXPECT_EQ(output.find("error"), std::string::npos);
    EXPECT_EQ(output.find("(unreadable)"), std::string::npos);
    EXPECT_EQ(output.find("warning: symbol 'not' was already defined.\n"), 0u);
    EXPECT_NE(output.find("warning: symbol 'status-line' was already defined.\n"), std::string::npos);
}

TEST_F(BaseScripts, truth)
{
    expectOutputs({
        {"(print (not :true))", ":boolean (:false)\n"},
        {"(print (not :false))", ":boolean (:true)\n"},
        {"(print (and :true))", ":boolean (:true)\n"},
        {"(print (and :true (< 1 2) (= 2 2)))", ":boolean (:true)\n"},
        {"(print (and :true (< 1 2) (= 2 3)))", ":boolean (:false)\n"},
        {"(print (and (< 2 1) (display \"not evaluated\")))", ":boolean (:false)\n"},
        {"(print (or :false))", ":boolean (:false)\n"},
        {"(print (or :false (= 1 2) (< 1 2)))", ":boolean (:true)\n"},
        {"(print (or :false :false :false))", ":boolean (:false)\n"},
        {"(print (or (= 1 1) (display \"not evaluated\")))", ":boolean (:true)\n"},
        {"(print (when (< 1 2) (display \"one\") 2))", "one\n:integer (2)\n"},
        {"(print (when (< 2 1) (display \"not evaluated\")))", ":nil\n"},
        {"(print (unless (< 2 1) (display \"one\") 2))", "one\n:integer (2)\n"},
        {"(print (unless (< 1 2) (display \"not evaluated\")))", ":nil\n"},
        {"(print (assert (= 1 1) \"one is one\"))", ":boolean (:true)\n"},
        {"(print (assert (= 1 2) \"one is two\"))", "assertion failed: one is two\n:boolean (:false)\n"},
        {"(print (nil? :nil))", ":boolean (:true)\n"},
        {"(print (nil? :false))", ":boolean (:false)\n"},
    });
}

TEST_F(BaseScripts, comparisons)
{
    expectOutputs({
        {"(show (list (> 2 1) (> 1 1) (> 1 2)))", ":true :false :false\n"},
        {"(show (list (>= 2 1) (>= 1 1) (>= 1 2)))", ":true :true :false\n"},
        {"(show (list (<= 2 1) (<= 1 1) (<= 1 2)))", ":false :true :true\n"},
        {"(show (list (/= 1 2) (/= \"a\" \"a\")))", ":true :false\n"},
        {"(show (list (> 2.5 1.5) (<= (byte 1) (byte 1))))", ":true :true\n"},
        {"(define nan (from-string :float \"nan\"))", ""},
        {"(show (list (> nan 1.0) (<= nan 1.0) (>= nan 1.0) (= nan nan)))", ":false :false :false :false\n"},
    });
}

TEST_F(BaseScripts, numbers)
{
    expectOutputs({
        {"(show (list (min 3 2) (min 2 3) (max 3 2) (max 2 3)))", "2 2 3 3\n"},
        {"(show (list (min 3.5 2.5) (max 3.5 2.5)))", "2.500000 3.500000\n"},
        {"(show (list (abs -3) (abs 3) (abs 0)))", "3 3 0\n"},
        {"(show (list (abs -3.5) (abs 3.5)))", "3.500000 3.500000\n"},
        {"(print (abs -9223372036854775808))", ":integer (-9223372036854775808)\n"},
        {"(show (list (clamp 9 0 5) (clamp -9 0 5) (clamp 3 0 5)))", "5 0 3\n"},
        {"(show (list (remainder 7 3) (remainder -7 3) (remainder 7 -3)))", "1 -1 1\n"},
        {"(show (list (modulo 7 3) (modulo -7 3) (modulo 7 -3) (modulo 6 3)))", "1 2 -2 0\n"},
        {"(print (modulo 7 0))", "error: division by zero!\n:nil\n"},
        {"(print (remainder 7 0))", "error: division by zero!\n:nil\n"},
        {"(show (list (even? 4) (even? -3) (odd? 4) (odd? -3)))", ":true :false :false :true\n"},
        {"(print (interpolate 2.0 4.0 0.5))", ":float (3.000000)\n"},
        {"(print (integer->float -3))", ":float (-3.000000)\n"},
        {"(show (map float->integer (list -3.7 3.7 -0.7 0.0)))", "-3 3 0 0\n"},
        {"(print (float->integer 9300000000000000000.5))", ":nil\n"},
        {"(print (float->integer (from-string :float \"inf\")))", ":nil\n"},
    });
}

TEST_F(BaseScripts, placesInLists)
{
    expectOutputs({
        {"(show (list (empty? (list)) (empty? (list 1))))", ":true :false\n"},
        {"(show (list (nth 0 (list 5 6 7)) (nth 2 (list 5 6 7))))", "5 7\n"},
        {"(print (nth 3 (list 5 6 7)))", "error: empty list!\n:nil\n"},
        {"(print (nth 99 (list 5 6 7)))", "error: empty list!\n:nil\n"},
        {"(print (nth -1 (list 5 6 7)))", "error: empty list!\n:nil\n"},
        {"(show (list (second (list 5 6 7)) (third (list 5 6 7)) (last (list 5 6 7))))", "6 7 7\n"},
        {"(print (last (list)))", "error: empty list!\n:nil\n"},
        {"(show (list-take 2 (list 1 2 3)))", "1 2\n"},
        {"(show (list-take 9 (list 1 2 3)))", "1 2 3\n"},
        {"(show (list-take -1 (list 1 2 3)))", "\n"},
        {"(show (list-drop 2 (list 1 2 3)))", "3\n"},
        {"(show (list-drop 9 (list 1 2 3)))", "\n"},
        {"(show (list-drop -1 (list 1 2 3)))", "1 2 3\n"},
        {"(show (list (list-index 3 (list 1 \"a\" 3)) (list-index 4 (list 1 2 3))))", "2 -1\n"},
        {"(show (list (contains? \"a\" (list 1 \"a\")) (contains? 1 (list)) (contains? :nil (list 1 :nil))))",
         ":true :false :true\n"},
        {"(show (list (same? 1 1) (same? 1 1.0) (same? :a :b)))", ":true :false :false\n"},
    });
}

TEST_F(BaseScripts, listsFromLists)
{
    expectOutputs({
        {"(show (append (list 1 2) (list 3 4)))", "1 2 3 4\n"},
        {"(show (append (list) (list 3)))", "3\n"},
        {"(show (append (list 3) (list)))", "3\n"},
        {"(show (range 2 5))", "2 3 4\n"},
        {"(print (list-size (range 5 5)))", ":integer (0)\n"},
        {"(print (list-size (range 5 2)))", ":integer (0)\n"},
        {"(print (fold + 0 (range 0 101)))", ":integer (5050)\n"},
        {"(print (fold - 10 (list 1 2)))", ":integer (7)\n"},
        {"(print (fold + 5 (list)))", ":integer (5)\n"},
        {"(show (filter-list odd? (range 0 10)))", "1 3 5 7 9\n"},
        {"(show (list (any? odd? (list 2 3)) (any? odd? (list 2)) (any? odd? (list))))", ":true :false :false\n"},
        {"(show (list (all? odd? (list 1 3)) (all? odd? (list 1 2)) (all? odd? (list))))", ":true :false :true\n"},
        {"(show (list-remove 1 (list 1 2 1 3)))", "2 3\n"},
        {"(print (sum (list 1.5 2.5)))", ":float (4.000000)\n"},
        {"(print (sum (list)))", ":nil\n"},
        {"(print (times 3 print))", ":integer (0)\n:integer (1)\n:integer (2)\n:nil\n"},
        {"(times 0 print)", ""},
    });
}

TEST_F(BaseScripts, helpersMayBeUsedInsideTheFunctionsThatTheyCall)
{
    expectOutputs({
        {"(times 2 (closure ((i)) (times 2 (closure ((j)) (display (text i \" \" j))))))", "0 0\n0 1\n1 0\n1 1\n"},
        {"(print (fold (closure ((a) (n)) (+ a (fold + 0 (range 0 n)))) 0 (range 0 5)))", ":integer (10)\n"},
        {"(show (filter-list (closure ((n)) (contains? n (filter-list odd? (range 0 5)))) (range 0 5)))", "1 3\n"},
        {"(print (any? (closure ((n)) (all? (closure ((m)) (< m n)) (list 1 2))) (list 1 2 3)))", ":boolean (:true)\n"},
    });
}

TEST_F(BaseScripts, helpersTakeLongLists)
{
    expectOutputs({
        {"(print (sum (filter-list even? (append (range 0 20000) (range 0 20000)))))", ":integer (199980000)\n"},
        {"(print (last (list-drop 5000 (list-take 15000 (range 0 20000)))))", ":integer (14999)\n"},
        {"(print (string-size (string-join \", \" (map to-string (range 0 10000)))))", ":integer (58888)\n"},
    });
}

TEST_F(BaseScripts, strings)
{
    expectOutputs({
        {"(show (list (string-at 1 \"abc\") (string-at 3 \"abc\") (string-at -1 \"abc\")))", "b  \n"},
        {"(show (list (string-starts? \"ab\" \"abc\") (string-starts? \"bc\" \"abc\") (string-starts? \"\" \"\")))",
         ":true :false :true\n"},
        {"(show (list (string-ends? \"bc\" \"abc\") (string-ends? \"ab\" \"abc\") (string-ends? \"abcd\" \"abc\")))",
         ":true :false :false\n"},
        {"(show (list (string-index \"c\" \"abc\") (string-index \"x\" \"abc\") (string-index \"\" \"abc\")))",
         "2 -1 0\n"},
        {"(show (list (string-contains? \"b\" \"abc\") (string-contains? \"cb\" \"abc\")))", ":true :false\n"},
        {"(show (list (string-repeat 3 \"ab\") (string-repeat 0 \"ab\") (string-repeat -1 \"ab\")))", "ababab  \n"},
        {"(display (string-join \", \" (list \"a\" \"b\" \"c\")))", "a, b, c\n"},
        {"(display (string-join \", \" (list)))", "\n"},
        {"(display (string-join \"|\" (string-split \",\" \"a,,b,\")))", "a||b|\n"},
        {"(print (list-size (string-split \",\" \"\")))", ":integer (1)\n"},
        {"(show (string-split \"\" \"a,b\"))", "a,b\n"},
        {"(show (list (string-pad 5 \"0\" \"42\") (string-pad 1 \"0\" \"42\")))", "00042 42\n"},
        {"(display (text 1 \" \" :a \" \" 2.5))", "1 :a 2.500000\n"},
        {"(display (text))", "\n"},
    });
}

TEST_F(BaseScripts, eventsReachTheirHandlersInOrder)
{
    expectOutputs({
        {"(emit :hit 1)", ""},
        {"(on-event :hit (closure ((x)) (display (text \"first \" x))))", ""},
        {"(on-event :hit (closure ((x)) (display (text \"second \" x))))", ""},
        {"(print (emit :hit 1))", "first 1\nsecond 1\n:nil\n"},
        {"(emit :miss 1)", ""},
        {"(forget-event :hit)", ""},
        {"(emit :hit 1)", ""},
    });
}

TEST_F(BaseScripts, handlersMayEmitAndAddHandlers)
{
    expectOutputs({
        {"(on-event :outer (closure ((x)) (emit :inner (+ x 1))))", ""},
        {"(on-event :outer (closure ((x)) (display (text \"outer \" x))))", ""},
        {"(on-event :inner (closure ((x)) (do (display (text \"inner \" x))"
         " (on-event :outer (closure ((y)) (display \"added\"))))))",
         ""},
        {"(emit :outer 1)", "inner 2\nouter 1\n"},
        {"(emit :outer 1)", "inner 2\nouter 1\nadded\n"},
    });
}

TEST_F(BaseScripts, timersRunWhenTheyAreDue)
{
    expectOutputs({
        {"(after 100 (closure () (display \"once\")))", ""},
        {"(define repeated (every 50 (closure () (display (text \"every \" engine-time)))))", ""},
        {"(frame 40)", ""},
        {"(frame 20)", "every 60\n"},
        {"(frame 100)", "once\nevery 160\nevery 160\n"},
        {"(frame 39)", ""},
        {"(frame 1)", "every 200\n"},
        {"(print (list-size timers))", ":integer (1)\n"},
        {"(cancel repeated)", ""},
        {"(frame 100)", ""},
        {"(print (list-size timers))", ":integer (0)\n"},
        {"(print frame-count)", ":integer (6)\n"},
    });
}

TEST_F(BaseScripts, timersMayCancelThemselvesAndStartOthers)
{
    expectOutputs({
        {"(define t (every 0 (closure () (do (cancel t) (after 5 (closure () (display \"later\"))) (display "
         "\"now\")))))",
         ""},
        {"(frame 10)", "now\n"},
        {"(frame 10)", "later\n"},
        {"(frame 10)", ""},
    });
}

TEST_F(BaseScripts, framesEmitTheirLength)
{
    expectOutputs({
        {"(on-event :frame (closure ((elapsed :integer)) (print elapsed)))", ""},
        {"(frame 16)", ":integer (16)\n"},
    });
}

TEST_F(BaseScripts, framesCostLittleMemory)
{
    // A thousand frames with a timer and a handler stay far below what one second of a careless loop would take.
    outputOf("(every 1000000 (closure () 1)) (define run (closure ((n :integer)) (if (= n 0) 0 (do (frame 16) "
             "(run (- n 1))))))");
    const auto bytes = [&] {
        const std::string info = outputOf("(system-info)");
        return std::stol(info.substr(info.find("objects, ") + 9));
    };
    outputOf("(run 10)");
    const long before = bytes();
    outputOf("(run 1000)");
    EXPECT_LT(bytes() - before, 1000 * 400);
}

TEST_F(BaseScripts, editorGridAndSelection)
{
    expectOutputs({
        {"(show (map snap (list 11 12 0 -4 -5 16)))", "8 16 0 0 -8 16\n"},
        {"(set! grid-size 10)", ""},
        {"(print (snap 15))", ":integer (20)\n"},
        {"(select! :a)", ""},
        {"(select! \"b\")", ""},
        {"(select! :a)", ""},
        {"(show selection)", "b :a\n"},
        {"(show (list (selected? :a) (selected? :c)))", ":true :false\n"},
        {"(toggle-selection! :a)", ""},
        {"(toggle-selection! :c)", ""},
        {"(show selection)", ":c b\n"},
        {"(deselect! \"b\")", ""},
        {"(deselect! :nothing)", ""},
        {"(show selection)", ":c\n"},
        {"(deselect-all!)", ""},
        {"(print (list-size selection))", ":integer (0)\n"},
    });
}

TEST_F(BaseScripts, editorHistory)
{
    expectOutputs({
        {"(define x 0)", ""},
        {"(show (list (undo!) (redo!)))", ":false :false\n"},
        {"(change! (closure () (set! x 1)) (closure () (set! x 0)))", ""},
        {"(change! (closure () (set! x 2)) (closure () (set! x 1)))", ""},
        {"(print x)", ":integer (2)\n"},
        {"(do (undo!) (print x) (undo!) (print x) (print (undo!)))", ":integer (1)\n:integer (0)\n:boolean (:false)\n"},
        {"(do (redo!) (print x) (redo!) (print x) (print (redo!)))", ":integer (1)\n:integer (2)\n:boolean (:false)\n"},
        {"(do (undo!) (change! (closure () (set! x 5)) (closure () (set! x 1))) (print (redo!)) (print x))",
         ":boolean (:false)\n:integer (5)\n"},
    });
}

TEST_F(BaseScripts, gameCountsScoreAndLives)
{
    expectOutputs({
        {"(on-event :game-state (closure ((state)) (display (text \"state \" state))))", ""},
        {"(print game-state)", ":keyword (:title)\n"},
        {"(show (list (add-score 50) (lose-life)))", "0 0\n"},
        {"(start-game)", "state :playing\n"},
        {"(print (playing?))", ":boolean (:true)\n"},
        {"(show (list (add-score 50) (add-score 25)))", "50 75\n"},
        {"(do (frame 16) (frame 17))", ""},
        {"(print play-time)", ":integer (33)\n"},
        {"(display (status-line))", "score 000075  best 000075  lives 3\n"},
        {"(show (list (lose-life) (lose-life)))", "2 1\n"},
        {"(print (lose-life))", "state :over\n:integer (0)\n"},
        {"(print (lose-life))", ":integer (0)\n"},
        {"(frame 16)", ""},
        {"(print play-time)", ":integer (33)\n"},
        {"(start-game)", "state :playing\n"},
        {"(display (status-line))", "score 000000  best 000075  lives 3\n"},
    });
}
