#include <xum/lisp/lisp_collector.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_macro.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_table.h>
#include <xum/lisp/lisp_type.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>

/*
 * Two walks over the graph. Marking starts at the root symbols. Locking starts at what may be in use although no symbol
 * reaches it any more: objects made since the last unlock, records on the value stack, running closures and
 * expressions. What only the second walk reaches is kept, too, but does not count as marked.
 *
 * Which slots were reached is a bit each in two bitmaps beside the heap's own, so that the sweep is an operation on
 * words and looks only at the objects that it frees.
 *
 * Nothing recurses. The work list has a fixed size. When it overflows, the walk is repeated from the roots and from all
 * reached slots until it fits: each round reaches at least as many new slots as the list holds. Records that several
 * objects share and that lie in no slot (closures, environments, tables) remember the round that they were walked in.
 */

struct lisp_tracer {
    lisp_interpreter* interpreter;
    lisp_heap* heap;
    std::uint64_t* reached; // the bitmap of the current walk
    bool has_overflowed;
    std::uint64_t round;
    std::uint64_t count;
    std::uint64_t capacity;
    lisp_object** work;
    lisp_table* tables; // to be walked
};

std::uint64_t lisp_mark_stack_size(std::uint64_t region_size)
{
    constexpr std::uint64_t usual = 16384;
    const std::uint64_t most = region_size / 64 / sizeof(void*); // small regions, in tests, have a small one
    return most < usual ? most : usual;
}

static bool has_children(const lisp_object* object)
{
    switch (object->type->kind) {
    case lisp_kind_list:
    case lisp_kind_symbol:
    case lisp_kind_hash_table:
    case lisp_kind_closure:
    case lisp_kind_macro: return object->payload.pointer != nullptr;
    case lisp_kind_array:
        return object->payload.array != nullptr && object->payload.array->element_kind == lisp_element_object;
    default: return false;
    }
}

/* The slot's number; a number past all slots for the interpreter's static objects, which have no children. */
static std::uint64_t slot_number(const lisp_heap* heap, const lisp_object* object)
{
    const std::uintptr_t offset =
        reinterpret_cast<std::uintptr_t>(object) - reinterpret_cast<std::uintptr_t>(heap->slots);
    return offset / sizeof(lisp_object);
}

/* False when the object was reached before. */
static bool reach(lisp_tracer* tracer, const lisp_object* object)
{
    const std::uint64_t slot = slot_number(tracer->heap, object);
    if (slot >= tracer->heap->slot_count) return false;
    const std::uint64_t bit = std::uint64_t{1} << (slot % 64);
    if (((tracer->heap->marked[slot / 64] | tracer->reached[slot / 64]) & bit) != 0) return false;
    tracer->reached[slot / 64] |= bit;
    return true;
}

static void push(lisp_tracer* tracer, lisp_object* object)
{
    if (!has_children(object)) return;
    if (tracer->count < tracer->capacity)
        tracer->work[tracer->count++] = object;
    else
        tracer->has_overflowed = true;
}

static void visit(lisp_tracer* tracer, lisp_object* object)
{
    if (object == nullptr || !reach(tracer, object)) return;
    object->mark_stamp = tracer->heap->mark_epoch;
    push(tracer, object);
}

/* The count ends the walk: a list may share only the front of another one's cells. */
static void visit_list(lisp_tracer* tracer, const lisp_list* list)
{
    if (list == nullptr) return;
    const lisp_cell* cell = list->first;
    if (list->has_only_leaves) { // nothing but a bit to set: the elements themselves are not looked at
        for (std::uint64_t i = list->count; i != 0; --i, cell = cell->next) reach(tracer, cell->element);
        return;
    }
    for (std::uint64_t i = list->count; i != 0; --i, cell = cell->next) visit(tracer, cell->element);
}

static void visit_hash_table(lisp_tracer* tracer, const lisp_hash_table* table)
{
    for (std::uint32_t i = 0; i < table->bucket_count; ++i)
        for (lisp_hash_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next)
            visit(tracer, static_cast<lisp_object*>(entry->value));
}

/* The environments behind a closure's own, up to the root, hold what its body sees. */
static void visit_environments(lisp_tracer* tracer, lisp_environment* environment)
{
    for (; environment != nullptr && environment->parent != nullptr; environment = environment->parent) {
        if (environment->trace_round == tracer->round) return;
        environment->trace_round = tracer->round;
        visit_hash_table(tracer, &environment->table);
    }
}

static void visit_closure(lisp_tracer* tracer, lisp_closure* closure)
{
    if (closure->trace_round == tracer->round) return;
    closure->trace_round = tracer->round;
    visit_environments(tracer, closure->environment);
    visit_list(tracer, closure->body);
    visit_list(tracer, closure->bounds);
}

/* Tables queue by themselves: what their entries hold lies in no slot, where an overflow could be made good. */
static void visit_table(lisp_tracer* tracer, lisp_table* table)
{
    if (table->trace_round == tracer->round) return;
    table->trace_round = tracer->round;
    table->next_to_trace = tracer->tables;
    tracer->tables = table;
}

static void visit_children(lisp_tracer* tracer, const lisp_object* object)
{
    if (!has_children(object)) return;
    switch (object->type->kind) {
    case lisp_kind_list: visit_list(tracer, object->payload.list); break;
    case lisp_kind_symbol: visit(tracer, object->payload.symbol->value); break;
    case lisp_kind_hash_table: visit_table(tracer, object->payload.table); break;
    case lisp_kind_closure: visit_closure(tracer, object->payload.closure); break;
    case lisp_kind_macro: visit_list(tracer, object->payload.macro->body); break;
    case lisp_kind_array: {
        const lisp_array* array = object->payload.array;
        lisp_object** elements = static_cast<lisp_object**>(array->elements);
        for (std::uint64_t i = 0; i < array->count; ++i) visit(tracer, elements[i]);
        break;
    }
    default: break;
    }
}

/* Keys and values are records inside the entries; what they point to is traced. */
static void visit_entries(lisp_tracer* tracer, const lisp_table* table)
{
    for (std::uint64_t i = 0; i < table->bucket_count; ++i) {
        for (const lisp_table_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next) {
            visit_children(tracer, &entry->value);
            visit_children(tracer, &entry->key);
        }
    }
}

static void drain(lisp_tracer* tracer)
{
    while (tracer->count != 0 || tracer->tables != nullptr) {
        while (tracer->count != 0) visit_children(tracer, tracer->work[--tracer->count]);
        if (lisp_table* table = tracer->tables) {
            tracer->tables = table->next_to_trace;
            visit_entries(tracer, table);
        }
    }
}

static lisp_object* slot_at(const lisp_heap* heap, std::uint64_t word, std::uint64_t bits)
{
    return &heap->slots[word * 64 + static_cast<unsigned>(__builtin_ctzll(bits))];
}

static std::uint64_t used_words(const lisp_heap* heap)
{
    return (heap->boundary / sizeof(lisp_object) + 63) / 64;
}

static void visit_reached_slots(lisp_tracer* tracer)
{
    for (std::uint64_t word = 0; word < used_words(tracer->heap); ++word) {
        for (std::uint64_t bits = tracer->reached[word]; bits != 0; bits &= bits - 1) {
            visit_children(tracer, slot_at(tracer->heap, word, bits));
            drain(tracer);
        }
    }
}

static void trace(lisp_tracer* tracer, void (*visit_roots)(lisp_tracer* tracer))
{
    tracer->round = ++tracer->heap->trace_round;
    visit_roots(tracer);
    drain(tracer);
    while (tracer->has_overflowed) {
        tracer->has_overflowed = false;
        tracer->round = ++tracer->heap->trace_round;
        visit_roots(tracer);
        drain(tracer);
        visit_reached_slots(tracer);
    }
}

/* The symbol that the reader uses again for an unbound name is no root: the sweep makes the name forget it. */
static void visit_marking_roots(lisp_tracer* tracer)
{
    visit_hash_table(tracer, &tracer->interpreter->root.table);
    for (lisp_type* type = tracer->interpreter->newest_type; type != nullptr; type = type->next)
        for (lisp_object* converter : {type->from_string, type->to_string, type->to_hash})
            if (converter != nullptr) visit_children(tracer, converter);
}

static bool is_locked(const lisp_heap* heap, const lisp_object* object)
{
    return object->lock_stamp >= heap->lock_floor;
}

/* The used slots that no walk has reached, as far as the tracer knows. */
static std::uint64_t unreached(const lisp_heap* heap, std::uint64_t word)
{
    return heap->bitmap[word] & ~heap->marked[word] & ~heap->kept[word];
}

static void visit_locking_roots(lisp_tracer* tracer)
{
    lisp_interpreter* interpreter = tracer->interpreter;
    for (lisp_object* record = interpreter->stack; record < interpreter->stack_top; ++record) {
        visit_children(tracer, record);
        drain(tracer);
    }
    for (lisp_activation* a = interpreter->activation; a != nullptr; a = a->previous) {
        if (a->closure != nullptr) visit_closure(tracer, a->closure);
        visit_environments(tracer, a->environment);
        if (a->expression != nullptr) {
            visit(tracer, const_cast<lisp_object*>(a->expression)); // keeps its slot, where it has one
            visit_children(tracer, a->expression);
        }
        drain(tracer);
    }
    for (std::uint64_t word = 0; word < used_words(tracer->heap); ++word) {
        for (std::uint64_t bits = unreached(tracer->heap, word); bits != 0; bits &= bits - 1) {
            lisp_object* object = slot_at(tracer->heap, word, bits);
            if (!is_locked(tracer->heap, object)) continue;
            visit(tracer, object);
            drain(tracer);
        }
    }
}

static void release_slot(lisp_heap* heap, lisp_object* object)
{
    if (object->type->kind == lisp_kind_symbol && object->payload.symbol != nullptr) {
        lisp_name* name = object->payload.symbol->name;
        if (name->carrier == object) name->carrier = nullptr;
    }
    --heap->live_objects;
#ifndef NDEBUG
    object->type = nullptr; // a dangling reference is noticed at once
#endif
}

/* The number of marked objects. */
static std::uint64_t sweep(lisp_heap* heap)
{
    std::uint64_t marked = 0;
    std::uint64_t lowest = heap->lowest_word;
    for (std::uint64_t word = 0; word < used_words(heap); ++word) {
        const std::uint64_t freed = unreached(heap, word);
        for (std::uint64_t bits = freed; bits != 0; bits &= bits - 1) release_slot(heap, slot_at(heap, word, bits));
        heap->bitmap[word] &= ~freed;
        marked += static_cast<std::uint64_t>(__builtin_popcountll(heap->marked[word]));
        if (freed != 0 && word < lowest) lowest = word;
    }
    heap->lowest_word = lowest;
    return marked;
}

static void lower_boundary(lisp_heap* heap)
{
    std::uint64_t word = used_words(heap);
    while (word != 0 && heap->bitmap[word - 1] == 0) --word;
    if (word == 0) {
        heap->boundary = 0;
        return;
    }
    const unsigned highest = 63 - static_cast<unsigned>(__builtin_clzll(heap->bitmap[word - 1]));
    heap->boundary = ((word - 1) * 64 + highest + 1) * sizeof(lisp_object);
}

void lisp_collect_garbage(lisp_heap* heap, lisp_environment* /*roots*/)
{
    lisp_interpreter* interpreter = heap->interpreter;
    ++heap->mark_epoch;
    std::memset(heap->marked, 0, used_words(heap) * sizeof(std::uint64_t));
    std::memset(heap->kept, 0, used_words(heap) * sizeof(std::uint64_t));
    lisp_tracer tracer = {};
    tracer.interpreter = interpreter;
    tracer.heap = heap;
    tracer.work = interpreter->mark_stack;
    tracer.capacity = lisp_mark_stack_size(heap->region_size);
    tracer.reached = heap->marked;
    trace(&tracer, visit_marking_roots);
    tracer.reached = heap->kept;
    trace(&tracer, visit_locking_roots);
    const std::uint64_t marked = sweep(heap);
    lower_boundary(heap);
    // Kept on purpose: the format has three 32-bit fields, which receive the two halves of the 64-bit live count where
    // "marked of live (locked)" was meant.
    std::printf("full gc: %d objects of %d marked (%d locked)\n", static_cast<std::int32_t>(marked),
                static_cast<std::int32_t>(heap->live_objects & 0xFFFFFFFFu),
                static_cast<std::int32_t>(heap->live_objects >> 32));
}
