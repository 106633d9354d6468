#include "captured_output.h"
#include "interpreter_fixture.h"

#include <xum/lisp/lisp_collector.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

#include <algorithm>
#include <cstring>

using LispMemory = InterpreterTest;

TEST_F(LispMemory, theFullRegionIsLaidOut)
{
    EXPECT_STREQ(get()->memory->name, "mark-and-sweep");
    EXPECT_EQ(get()->memory, lisp_mark_and_sweep());
    EXPECT_EQ(heap().region_size, 536870912u);
    EXPECT_EQ(heap().slot_count, 11184810u);
    EXPECT_EQ(heap().bitmap_words, 174763u);
    EXPECT_EQ(heap().byte_top + heap().allocated_bytes, 535472808u);
    EXPECT_EQ(static_cast<void*>(heap().bitmap), heap().region);
    EXPECT_EQ(static_cast<void*>(heap().slots), static_cast<void*>(heap().bitmap + heap().bitmap_words));
}

TEST_F(LispMemory, bytesGrowDownwards)
{
    const std::uint64_t top = heap().byte_top;
    const std::uint64_t bytes = heap().allocated_bytes;
    void* block = get()->memory->allocate_bytes(&heap(), 24, false);
    EXPECT_EQ(static_cast<char*>(block), reinterpret_cast<char*>(heap().slots) + top - 24);
    EXPECT_EQ(heap().byte_top, top - 24);
    EXPECT_EQ(heap().allocated_bytes, bytes + 24);
}

TEST_F(LispMemory, bytesAreZero)
{
    const char zeros[256] = {};
    EXPECT_EQ(std::memcmp(lisp_allocate(get(), sizeof zeros), zeros, sizeof zeros), 0);
}

TEST_F(LispMemory, sizesOfRecordsAreRoundedUp)
{
    const std::uint64_t top = heap().byte_top;
    lisp_allocate(get(), 1);
    EXPECT_EQ(heap().byte_top, top - 8);
    lisp_allocate(get(), 9);
    EXPECT_EQ(heap().byte_top, top - 24);
}

TEST_F(LispMemory, aSizeOfZeroIsFatal)
{
    EXPECT_EQ(get()->memory->allocate_bytes(&heap(), 0, false), nullptr);
    EXPECT_EQ(errors, Lines{"fatal: invalid allocate size!"});
}

TEST_F(LispMemory, aSizeOver32BitsIsFatal)
{
    EXPECT_EQ(get()->memory->allocate_bytes(&heap(), 0x100000000u, false), nullptr);
    EXPECT_EQ(errors, Lines{"fatal: invalid allocate size!"});
    EXPECT_EQ(get()->memory->allocate_bytes(&heap(), 0xFFFFFFFFu, false), nullptr);
    EXPECT_EQ(errors.size(), 1u) << "the largest size of 32 bits is no more than out of memory";
}

TEST_F(LispMemory, aProductOver64BitsIsFatal)
{
    EXPECT_EQ(lisp_allocate_array(get(), std::uint64_t{1} << 61, 8), nullptr);
    EXPECT_EQ(errors, Lines{"fatal: invalid allocate size!"});
}

TEST_F(LispMemory, bytesEndStrictlyAboveTheBoundary)
{
    ASSERT_TRUE(start(1 << 20));
    const std::uint64_t rest = heap().byte_top - heap().boundary;
    EXPECT_EQ(get()->memory->allocate_bytes(&heap(), rest, false), nullptr);
    EXPECT_NE(get()->memory->allocate_bytes(&heap(), rest - 8, false), nullptr);
    EXPECT_TRUE(errors.empty());
}

TEST_F(LispMemory, aRequestThatMustNotFailIsFatal)
{
    EXPECT_EQ(get()->memory->allocate_bytes(&heap(), 0x7FFFFFFF, true), nullptr);
    EXPECT_EQ(errors, Lines{"fatal: out of no-fail memory!"});
}

TEST_F(LispMemory, aRegionThatIsTooSmallToStartIsFatal)
{
    EXPECT_FALSE(start(4096));
    EXPECT_EQ(errors, Lines{"fatal: out of no-fail memory!"});
    EXPECT_FALSE(start(8));
}

TEST_F(LispMemory, theLowestFreeSlotIsTaken)
{
    {
        CapturedOutput captured;
        get()->memory->unlock_all(&heap());
        get()->memory->garbage_collection(&heap(), &get()->root);
    }
    lisp_object* first = allocateObject(lisp_kind_integer);
    lisp_object* second = allocateObject(lisp_kind_integer);
    lisp_object* third = allocateObject(lisp_kind_integer);
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(third, second + 1);
    get()->memory->unlock_all(&heap());
    lisp_object* young = allocateObject(lisp_kind_integer);
    {
        CapturedOutput captured;
        get()->memory->garbage_collection(&heap(), &get()->root);
    }
    EXPECT_EQ(allocateObject(lisp_kind_integer), first) << "of the freed ones";
    EXPECT_EQ(allocateObject(lisp_kind_integer), second);
    EXPECT_EQ(allocateObject(lisp_kind_integer), third);
    EXPECT_EQ(allocateObject(lisp_kind_integer), young + 1) << "the one that was kept is skipped";
}

TEST_F(LispMemory, aNewObjectIsCleanLockedAndCounted)
{
    get()->memory->unlock_all(&heap());
    const std::uint64_t live = heap().live_objects;
    lisp_type_entry argument = {};
    const lisp_object_descriptor descriptor = {get()->kinds[lisp_kind_list], 3, 1, &argument};
    const lisp_object* object = get()->memory->allocate_object(&heap(), &descriptor);
    EXPECT_EQ(object->type, get()->kinds[lisp_kind_list]);
    EXPECT_EQ(object->flag, 3);
    EXPECT_EQ(object->type_argument_count, 1);
    EXPECT_EQ(object->type_arguments, &argument);
    EXPECT_EQ(object->payload.pointer, nullptr);
    EXPECT_EQ(object->lock_stamp, heap().lock_epoch);
    EXPECT_EQ(heap().live_objects, live + 1);
    const_cast<lisp_object*>(object)->type_arguments = get()->root_list.type_arguments; // for the check behind the test
}

TEST_F(LispMemory, theBoundaryIsTheEndOfTheHighestSlot)
{
    const lisp_object* object = allocateObject(lisp_kind_integer);
    EXPECT_EQ(heap().boundary, static_cast<std::uint64_t>(reinterpret_cast<const char*>(object + 1) -
                                                          reinterpret_cast<const char*>(heap().slots)));
}

TEST_F(LispMemory, aRefusedSlotLeavesNoTrace)
{
    ASSERT_TRUE(start(1 << 20));
    while (lisp_allocate(get(), 64) != nullptr) {
    }
    while (allocateObject(lisp_kind_integer) != nullptr) {
    }
    const std::uint64_t live = heap().live_objects;
    const std::uint64_t boundary = heap().boundary;
    EXPECT_EQ(allocateObject(lisp_kind_integer), nullptr);
    EXPECT_EQ(heap().live_objects, live);
    EXPECT_EQ(heap().boundary, boundary);
    EXPECT_FALSE(lisp_slot_is_used(&heap(), boundary / sizeof(lisp_object)));
}

TEST_F(LispMemory, unlockingAdvancesTheEpochByOne)
{
    const std::uint64_t epoch = heap().lock_epoch;
    get()->memory->unlock_all(&heap());
    EXPECT_EQ(heap().lock_epoch, epoch + 1);
    get()->memory->unlock_all(&heap());
    EXPECT_EQ(heap().lock_epoch, epoch + 2);
}

TEST_F(LispMemory, aNewInterpretersEpochsAreZero)
{
    EXPECT_EQ(heap().lock_epoch, 0u);
    EXPECT_EQ(heap().mark_epoch, 0u);
}

TEST_F(LispMemory, freedBytesAreNeverUsedAgain)
{
    void* block = lisp_allocate(get(), 16);
    const std::uint64_t bytes = heap().allocated_bytes;
    std::string output;
    {
        CapturedOutput captured;
        get()->memory->free_bytes(&heap(), block);
        output = captured.getText();
    }
    EXPECT_EQ(output, "free_bytes()\n");
    EXPECT_EQ(heap().allocated_bytes, bytes);
    EXPECT_NE(lisp_allocate(get(), 16), block);
}

TEST_F(LispMemory, releasingAStringFreesItOnceAndTheCounterStays)
{
    lisp_object* string = lisp_create_object(get(), ":string", "text");
    const std::uint64_t bytes = heap().allocated_bytes;
    std::string output;
    {
        CapturedOutput captured;
        get()->kinds[lisp_kind_string]->release(get(), string);
        output = captured.getText();
    }
    EXPECT_EQ(output, "free_bytes()\n");
    EXPECT_EQ(heap().allocated_bytes, bytes);
}

TEST_F(LispMemory, theFirstFatalHandlerStays)
{
    lisp_set_fatal_handler([](const char*) { FAIL() << "another handler"; });
    lisp_fatal("still the first");
    EXPECT_EQ(errors, Lines{"still the first"});
}

TEST_F(LispMemory, bytesAreZeroAlsoWhereObjectsWereBefore)
{
    ASSERT_TRUE(start(1 << 20));
    while (lisp_object* object = allocateObject(lisp_kind_integer)) object->payload.integer = -1;
    heap().lock_floor = ++heap().lock_epoch;
    const CapturedOutput captured;
    lisp_collect_garbage(&heap(), &get()->root);
    const lisp_memory_manager* manager = get()->memory;
    std::uint64_t dirty = 0;
    while (const void* block = manager->allocate_bytes(&heap(), 64, false)) {
        const char* bytes = static_cast<const char*>(block);
        dirty += static_cast<std::uint64_t>(std::count_if(bytes, bytes + 64, [](char c) { return c != 0; }));
    }
    EXPECT_EQ(dirty, 0u);
}
