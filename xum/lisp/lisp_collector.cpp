#include <xum/lisp/lisp_collector.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_macro.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_table.h>
#include <xum/lisp/lisp_type.h>

#include <cstdint>
#include <cstdio>
#include <initializer_list>

/*
 * Two passes over the graph. Marking starts at the root symbols and stamps what it reaches with the mark epoch. Locking
 * starts at what may be in use although no symbol reaches it any more (objects made since the last unlock, records on
 * the value stack, running closures and expressions), stamps what it reaches with another value and locks it, so that
 * the number of marked objects stays that of the first pass.
 *
 * Nothing recurses. The work list has a fixed size; when it overflows, the objects that found no place are found again
 * by going over all slots for stamped objects with unstamped children.
 */

static constexpr unsigned locking_bit = 63;

struct lisp_tracer {
    lisp_interpreter* interpreter;
    std::uint64_t marked; // the stamp of the first pass
    std::uint64_t stamp;  // of the current pass
    bool is_locking;
    bool has_overflowed;
    std::uint64_t count;
    std::uint64_t capacity;
    lisp_object** work;
};

std::uint64_t lisp_mark_stack_size(std::uint64_t region_size)
{
    constexpr std::uint64_t usual = 16384;
    const std::uint64_t most = region_size / 64 / sizeof(lisp_object*); // small regions, in tests, have a small one
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

static bool is_seen(const lisp_tracer* tracer, std::uint64_t stamp)
{
    return stamp == tracer->marked || stamp == tracer->stamp;
}

static void visit(lisp_tracer* tracer, lisp_object* object)
{
    if (object == nullptr || is_seen(tracer, object->mark_stamp)) return;
    object->mark_stamp = tracer->stamp;
    if (tracer->is_locking) object->lock_stamp = tracer->interpreter->heap.lock_epoch;
    if (!has_children(object)) return;
    if (tracer->count < tracer->capacity)
        tracer->work[tracer->count++] = object;
    else
        tracer->has_overflowed = true;
}

static void visit_cells(lisp_tracer* tracer, const lisp_cell* cell, std::uint64_t count)
{
    // The count ends the walk: a list may share only the front of another one's cells.
    for (; count != 0 && cell != nullptr; --count, cell = cell->next) visit(tracer, cell->element);
}

static void visit_list(lisp_tracer* tracer, const lisp_list* list)
{
    if (list != nullptr) visit_cells(tracer, list->first, list->count);
}

static void visit_hash_table(lisp_tracer* tracer, const lisp_hash_table* table)
{
    for (std::uint32_t i = 0; i < table->bucket_count; ++i)
        for (lisp_hash_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next)
            visit(tracer, static_cast<lisp_object*>(entry->value));
}

/* What a closure record or an environment is stamped with after its children were visited: nothing when some of them
   may have found no place, so that it is walked again. */
static std::uint64_t shared_stamp(const lisp_tracer* tracer)
{
    return tracer->has_overflowed ? 0 : tracer->stamp;
}

/* The environments behind a closure's own, up to the root, hold what its body sees. */
static void visit_environments(lisp_tracer* tracer, lisp_environment* environment)
{
    for (; environment != nullptr && environment->parent != nullptr; environment = environment->parent) {
        if (is_seen(tracer, environment->mark_stamp)) return;
        visit_hash_table(tracer, &environment->table);
        environment->mark_stamp = shared_stamp(tracer);
    }
}

static void visit_closure(lisp_tracer* tracer, lisp_closure* closure)
{
    if (is_seen(tracer, closure->mark_stamp)) return;
    visit_environments(tracer, closure->environment);
    visit_list(tracer, closure->body);
    visit_list(tracer, closure->bounds);
    closure->mark_stamp = shared_stamp(tracer);
}

static void visit_table(lisp_tracer* tracer, lisp_table* table)
{
    for (std::uint64_t i = 0; i < table->bucket_count; ++i) {
        for (lisp_table_entry* entry = table->buckets[i]; entry != nullptr; entry = entry->next) {
            visit(tracer, entry->value);
            // The key is a record inside the entry, no slot; only what it points to is traced.
            entry->key.mark_stamp = 0;
            visit(tracer, &entry->key);
        }
    }
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

static void drain(lisp_tracer* tracer)
{
    while (tracer->count != 0) visit_children(tracer, tracer->work[--tracer->count]);
}

static lisp_object* slot_at(lisp_heap* heap, std::uint64_t word, std::uint64_t bits)
{
    return &heap->slots[word * 64 + static_cast<unsigned>(__builtin_ctzll(bits))];
}

static std::uint64_t used_words(const lisp_heap* heap)
{
    return (heap->boundary / sizeof(lisp_object) + 63) / 64;
}

/* What the work list could not hold is the child of a stamped object or of a root. */
static void visit_stamped_slots(lisp_tracer* tracer)
{
    lisp_heap* heap = &tracer->interpreter->heap;
    for (std::uint64_t word = 0; word < used_words(heap); ++word) {
        for (std::uint64_t bits = heap->bitmap[word]; bits != 0; bits &= bits - 1) {
            lisp_object* object = slot_at(heap, word, bits);
            if (object->mark_stamp != tracer->stamp) continue;
            visit_children(tracer, object);
            drain(tracer);
        }
    }
}

static void trace(lisp_tracer* tracer, void (*visit_roots)(lisp_tracer* tracer))
{
    visit_roots(tracer);
    drain(tracer);
    while (tracer->has_overflowed) {
        tracer->has_overflowed = false;
        visit_roots(tracer);
        drain(tracer);
        visit_stamped_slots(tracer);
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

static void visit_locking_roots(lisp_tracer* tracer)
{
    lisp_interpreter* interpreter = tracer->interpreter;
    lisp_heap* heap = &interpreter->heap;
    for (lisp_object* record = interpreter->stack; record < interpreter->stack_top; ++record)
        visit_children(tracer, record);
    for (lisp_activation* a = interpreter->activation; a != nullptr; a = a->previous) {
        if (a->closure != nullptr) visit_closure(tracer, a->closure);
        visit_environments(tracer, a->environment);
        if (a->expression != nullptr) visit_children(tracer, a->expression);
    }
    for (std::uint64_t word = 0; word < used_words(heap); ++word) {
        for (std::uint64_t bits = heap->bitmap[word]; bits != 0; bits &= bits - 1) {
            lisp_object* object = slot_at(heap, word, bits);
            if (object->mark_stamp == tracer->marked || !is_locked(heap, object)) continue;
            visit(tracer, object);
            drain(tracer);
        }
    }
}

static void release_slot(lisp_heap* heap, lisp_object* object)
{
    if (object->type->kind == lisp_kind_symbol) {
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
        std::uint64_t freed = 0;
        for (std::uint64_t bits = heap->bitmap[word]; bits != 0; bits &= bits - 1) {
            lisp_object* object = slot_at(heap, word, bits);
            if (object->mark_stamp == heap->mark_epoch) {
                ++marked;
            } else if (!is_locked(heap, object)) {
                freed |= bits & (~bits + 1);
                release_slot(heap, object);
            }
        }
        heap->bitmap[word] &= ~freed;
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
    lisp_tracer tracer = {};
    tracer.interpreter = interpreter;
    tracer.work = interpreter->mark_stack;
    tracer.capacity = lisp_mark_stack_size(heap->region_size);
    tracer.marked = heap->mark_epoch;
    tracer.stamp = heap->mark_epoch;
    trace(&tracer, visit_marking_roots);
    tracer.stamp = heap->mark_epoch | std::uint64_t{1} << locking_bit;
    tracer.is_locking = true;
    trace(&tracer, visit_locking_roots);
    const std::uint64_t marked = sweep(heap);
    lower_boundary(heap);
    // Kept on purpose: the format has three 32-bit fields, which receive the two halves of the 64-bit live count where
    // "marked of live (locked)" was meant.
    std::printf("full gc: %d objects of %d marked (%d locked)\n", static_cast<std::int32_t>(marked),
                static_cast<std::int32_t>(heap->live_objects & 0xFFFFFFFFu),
                static_cast<std::int32_t>(heap->live_objects >> 32));
}
