#pragma once

#include <xum/lisp/lisp.h>

/// The memory manager "mark-and-sweep": one region with object slots at its low end, found through a bitmap of occupied
/// slots, and a byte area that grows downwards from its high end. Bytes never come back; slots do, by collections.

/// Allocates the region, zeroed but untouched, and lays it out. False when there is no memory.
bool lisp_heap_start(lisp_heap* heap, lisp_interpreter* interpreter, std::uint64_t region_size);
void lisp_heap_stop(lisp_heap* heap);

/// The process-wide table of operations.
const lisp_memory_manager* lisp_mark_and_sweep();

/// Bytes for a record, rounded up so that the next one is aligned; zero-filled. Null when the region is exhausted: the
/// caller reports it. A size over 32 bits is fatal.
void* lisp_allocate(lisp_interpreter* interpreter, std::uint64_t size);

/// The same for what start-up needs: failing is fatal.
void* lisp_allocate_no_fail(lisp_interpreter* interpreter, std::uint64_t size);

/// The same for the elements of an array.
template <class Element>
Element* lisp_allocate_elements_no_fail(lisp_interpreter* interpreter, std::uint64_t count)
{
    return static_cast<Element*>(lisp_allocate_no_fail(interpreter, count * sizeof(Element)));
}

/// `count` elements of `size` bytes; a product over 64 bits is as fatal as one over 32.
void* lisp_allocate_array(lisp_interpreter* interpreter, std::uint64_t count, std::uint64_t size);

template <class Record>
Record* lisp_allocate_record(lisp_interpreter* interpreter)
{
    return static_cast<Record*>(lisp_allocate(interpreter, sizeof(Record)));
}

template <class Element>
Element* lisp_allocate_elements(lisp_interpreter* interpreter, std::uint64_t count)
{
    return static_cast<Element*>(lisp_allocate_array(interpreter, count, sizeof(Element)));
}

/// The operation of the table; also called directly, so that it can be inlined.
lisp_object* lisp_allocate_object(lisp_heap* heap, const lisp_object_descriptor* descriptor);

/// Whether the slot of the object is in use; for the checker and the collector.
inline bool lisp_slot_is_used(const lisp_heap* heap, std::uint64_t slot)
{
    return (heap->bitmap[slot / 64] >> (slot % 64) & 1) != 0;
}
