#include "interpreter_fixture.h"

#include <xum/lisp/lisp_call.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

using LispEvaluator = InterpreterTest;

TEST_F(LispEvaluator, missingParametersAreReportedToTheHost)
{
    const Lines report = {"eval() -> funny parameters..."};
    lisp_object object = {};
    lisp_object result = {};
    lisp_set_integer(get(), &object, 5);
    lisp_set_integer(get(), &result, 7);
    lisp_eval(nullptr, &result, &get()->root, &object);
    EXPECT_EQ(errors, report);
    errors.clear();
    lisp_eval(get(), &result, nullptr, &object);
    EXPECT_EQ(errors, report);
    errors.clear();
    lisp_eval(get(), &result, &get()->root, nullptr);
    EXPECT_EQ(errors, report);
    EXPECT_EQ(result.payload.integer, 7) << "nothing is written";
    EXPECT_TRUE(lines.empty());
}

TEST_F(LispEvaluator, aValueEvaluatesToItself)
{
    lisp_object object = {};
    lisp_object result = {};
    lisp_set_float(get(), &object, 2.5);
    lisp_eval(get(), &result, &get()->root, &object);
    EXPECT_EQ(result.type, get()->kinds[lisp_kind_float]);
    EXPECT_EQ(result.payload.real, 2.5);
}

TEST_F(LispEvaluator, aListWithoutARecordIsEmpty)
{
    lisp_object result = {};
    lisp_eval(get(), &result, &get()->root, &get()->root_list);
    EXPECT_EQ(lines, Lines{"error: empty list evaluated!"});
    EXPECT_EQ(result.type, get()->kinds[lisp_kind_nil]);
}

TEST_F(LispEvaluator, anUnboundSymbolLeavesNilInTheResult)
{
    lisp_object result = {};
    lisp_set_integer(get(), &result, 7);
    lisp_object* symbol = lisp_make_symbol(get(), lisp_intern(get(), "nowhere"));
    lisp_eval(get(), &result, &get()->root, symbol);
    EXPECT_EQ(lines, Lines{"error: symbol 'nowhere' has no binding!"});
    EXPECT_EQ(result.type, get()->kinds[lisp_kind_nil]);
}

TEST_F(LispEvaluator, frameRecordsAreNil)
{
    lisp_object* frame = lisp_push_frame(get(), 3);
    ASSERT_NE(frame, nullptr);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(frame[i].type, get()->kinds[lisp_kind_nil]);
    EXPECT_EQ(get()->stack_top, frame + 3);
    lisp_pop_frame(get(), frame);
    EXPECT_EQ(get()->stack_top, frame);
}

TEST_F(LispEvaluator, aFullValueStackIsReported)
{
    EXPECT_EQ(lisp_push_frame(get(), 16385), nullptr);
    EXPECT_EQ(lines, Lines{"error: recursion too deep!"});
    EXPECT_FALSE(get()->is_abandoned) << "there is no evaluation to give up";
}

TEST_F(LispEvaluator, closuresAreAppliedWithChecks)
{
    const lisp_object add = evaluate("+");
    lisp_object arguments[2] = {};
    lisp_object result = {};
    lisp_set_integer(get(), &arguments[0], 1);
    lisp_set_integer(get(), &arguments[1], 2);
    lisp_apply(get(), &get()->root, add.payload.closure, arguments, 2, &result);
    EXPECT_EQ(result.payload.integer, 3);
    lisp_set_float(get(), &arguments[1], 2.0);
    lisp_apply(get(), &get()->root, add.payload.closure, arguments, 2, &result);
    EXPECT_EQ(result.type, get()->kinds[lisp_kind_nil]);
    lisp_apply(get(), &get()->root, add.payload.closure, arguments, 1, &result);
    EXPECT_EQ(lines, (Lines{"closure: +", "  error: expected ':integer' but got ':float' for parameter 1.",
                            "type bounds:", "  :a -> :integer", "error: wrong number of parameters!"}));
}

TEST_F(LispEvaluator, tailCallsNeedNoStackAtAll)
{
    evaluate("(define rounds (closure ((n :integer)) -> :integer (if (= n 0) 0 (rounds (- n 1)))))");
    EXPECT_EQ(evaluate("(rounds 300000)").type, get()->kinds[lisp_kind_integer]);
    EXPECT_TRUE(lines.empty());
}
