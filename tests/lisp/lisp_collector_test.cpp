#include "captured_output.h"
#include "interpreter_fixture.h"

#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>

#include <cstdio>

namespace {

class LispCollector : public InterpreterTest {
protected:
    /* What the collection writes. */
    std::string collect()
    {
        CapturedOutput captured;
        get()->memory->garbage_collection(&heap(), &get()->root);
        return captured.getText();
    }

    void unlock() { get()->memory->unlock_all(&heap()); }

    std::string line(std::uint64_t marked) const
    {
        return "full gc: " + std::to_string(marked) + " objects of " + std::to_string(liveObjects) +
               " marked (0 locked)\n";
    }

    std::uint64_t liveObjects = 0;
};

} // namespace

TEST_F(LispCollector, nothingUnreachableLeavesTheLiveCountAlone)
{
    evaluate("(define xs (list 1 2 3))");
    unlock();
    collect();
    liveObjects = heap().live_objects;
    EXPECT_EQ(collect(), line(liveObjects));
    EXPECT_EQ(heap().live_objects, liveObjects);
}

TEST_F(LispCollector, bothOperationsRunTheSameCollection)
{
    unlock();
    liveObjects = heap().live_objects;
    CapturedOutput captured;
    get()->memory->full_garbage_collection(&heap(), &get()->root);
    EXPECT_EQ(captured.getText(), line(liveObjects));
}

TEST_F(LispCollector, everythingThatStartUpMakesIsReachable)
{
    const std::uint64_t live = heap().live_objects;
    unlock();
    collect();
    EXPECT_EQ(heap().live_objects, live);
}

TEST_F(LispCollector, whatNothingReachesGoes)
{
    unlock();
    collect();
    const std::uint64_t live = heap().live_objects;
    evaluate("(define xs (list 1 2 3))");
    EXPECT_GT(heap().live_objects, live + 4);
    evaluate("(set! xs :nil)");
    unlock();
    collect();
    EXPECT_EQ(heap().live_objects, live + 2) << "the symbol and its value stay";
}

TEST_F(LispCollector, youngObjectsStayUntilTheyAreUnlocked)
{
    unlock();
    collect();
    const std::uint64_t reachable = heap().live_objects;
    lisp_object* young = allocateObject(lisp_kind_integer);
    const std::uint64_t slot = static_cast<std::uint64_t>(young - heap().slots);
    liveObjects = reachable + 1;
    EXPECT_EQ(collect(), line(reachable)) << "locked ones are not counted as marked";
    EXPECT_EQ(collect(), line(reachable));
    EXPECT_TRUE(lisp_slot_is_used(&heap(), slot));
    unlock();
    liveObjects = reachable;
    EXPECT_EQ(collect(), line(reachable));
    EXPECT_FALSE(lisp_slot_is_used(&heap(), slot));
}

TEST_F(LispCollector, aCollectionLowersTheBoundaryToTheHighestUsedSlot)
{
    unlock();
    collect();
    const std::uint64_t boundary = heap().boundary;
    lisp_object* kept = nullptr;
    for (int i = 0; i < 100; ++i) allocateObject(lisp_kind_integer);
    EXPECT_EQ(heap().boundary, boundary + 100 * sizeof(lisp_object));
    unlock();
    kept = allocateObject(lisp_kind_integer);
    for (int i = 0; i < 100; ++i) kept = i == 50 ? allocateObject(lisp_kind_integer) : kept;
    collect();
    EXPECT_EQ(heap().boundary, static_cast<std::uint64_t>(kept + 1 - heap().slots) * sizeof(lisp_object));
    unlock();
    collect();
    EXPECT_EQ(heap().boundary, boundary);
}

TEST_F(LispCollector, noBytesComeBack)
{
    evaluate("(define s (+ \"some\" \"text\"))");
    evaluate("(set! s :nil)");
    const std::uint64_t bytes = heap().allocated_bytes;
    unlock();
    EXPECT_EQ(collect().find("free_bytes"), std::string::npos);
    EXPECT_EQ(heap().allocated_bytes, bytes);
}

TEST_F(LispCollector, eachCollectionHasAnEpochOfItsOwn)
{
    const std::uint64_t epoch = heap().mark_epoch;
    collect();
    collect();
    EXPECT_EQ(heap().mark_epoch, epoch + 2);
}

TEST_F(LispCollector, wideDataOverflowsTheWorkListOfASmallRegion)
{
    ASSERT_TRUE(start(std::uint64_t{4} << 20));
    evaluate("(define make (closure ((n :integer) (xs)) (if (= n 0) xs (make (- n 1) (cons (list n) xs)))))");
    evaluate("(define wide (make 9000 (list)))");
    unlock();
    collect();
    const std::uint64_t live = heap().live_objects;
    EXPECT_GT(live, 18000u);
    collect();
    EXPECT_EQ(heap().live_objects, live);
    EXPECT_EQ(evaluate("(list-size wide)").payload.integer, 9000);
}

TEST_F(LispCollector, unlockingInTheMiddleOfAnExpressionLeavesWhatItHasMade)
{
    const lisp_native native = [](auto* interpreter, auto*, auto*, auto*, auto, auto*) {
        interpreter->memory->unlock_all(&interpreter->heap);
        interpreter->memory->garbage_collection(&interpreter->heap, &interpreter->root);
    };
    const lisp_native_descriptor descriptor = {"unlock-and-collect", "", "(:nil)", native};
    ASSERT_NE(lisp_define_native(get(), &descriptor, nullptr), nullptr);
    CapturedOutput captured;
    evaluate("(do (define made (list (list \"early\") (unlock-and-collect) (list \"late\") (unlock-and-collect)))"
             "    (list 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32)"
             "    (display (head (head made)))"
             "    (display (head (head (tail (tail made))))))");
    EXPECT_EQ(lines, (Lines{"early", "late"}));
}

TEST_F(LispCollector, aTableWithoutObjectsKeepsItsValues)
{
    evaluate("(define t (hash-table \":any\" \":any\"))");
    evaluate("(hash-table-put! t \"key\" (list \"a\" (list \"b\")))");
    unlock();
    collect();
    std::string filler = "(define litter '(";
    for (int i = 0; i < 500; ++i) filler += "1 ";
    evaluate(filler + "))");
    evaluate("(display (head (head (tail (hash-table-get t \"key\")))))");
    EXPECT_EQ(lines, Lines{"b"});
}
