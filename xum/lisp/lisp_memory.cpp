#include <xum/lisp/lisp_memory.h>

#include <xum/lisp/lisp_collector.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef __linux__
#    include <sys/mman.h>
#endif

static void (*fatal_handler)(const char* text) = nullptr;

void lisp_set_fatal_handler(void (*handler)(const char* text))
{
    if (fatal_handler == nullptr) fatal_handler = handler;
}

void lisp_fatal(const char* text)
{
    if (fatal_handler != nullptr) fatal_handler(text);
}

/* A script that makes data runs in memory that was never touched before, where a page fault costs more than the work on
   the page: large pages make it a third. The ends of the region, which start-up touches, stay small. Only advice: a
   system without large pages goes on as it is. */
static void ask_for_large_pages([[maybe_unused]] void* region, [[maybe_unused]] std::uint64_t size)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t large_page = 2u << 20;
    constexpr std::uintptr_t small_end = 6u << 20;
    const std::uintptr_t begin = (reinterpret_cast<std::uintptr_t>(region) + small_end) & ~(large_page - 1);
    const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(region) + size - small_end) & ~(large_page - 1);
    if (size > 4 * small_end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

bool lisp_heap_start(lisp_heap* heap, lisp_interpreter* interpreter, std::uint64_t region_size)
{
    *heap = {};
    heap->region_size = region_size;
    heap->slot_count = region_size / sizeof(lisp_object);
    heap->bitmap_words = (heap->slot_count + 63) / 64;
    const std::uint64_t bitmap_bytes = heap->bitmap_words * sizeof(std::uint64_t);
    if (region_size <= bitmap_bytes) return false;
    // calloc takes untouched zero pages from the system: start-up pays only for what it uses.
    heap->region = std::calloc(1, region_size);
    if (heap->region == nullptr) return false;
    ask_for_large_pages(heap->region, region_size);
    heap->bitmap = static_cast<std::uint64_t*>(heap->region);
    heap->slots = reinterpret_cast<lisp_object*>(static_cast<char*>(heap->region) + bitmap_bytes);
    heap->byte_top = region_size - bitmap_bytes;
    heap->byte_top -= heap->byte_top % 8;
    heap->interpreter = interpreter;
    return true;
}

void lisp_heap_stop(lisp_heap* heap)
{
    std::free(heap->region);
    *heap = {};
}

static void* allocate_bytes(lisp_heap* heap, std::uint64_t size, bool no_fail)
{
    if (size == 0 || size > 0xFFFFFFFFu) {
        lisp_fatal("fatal: invalid allocate size!");
        return nullptr;
    }
    if (size > heap->byte_top || heap->byte_top - size <= heap->boundary) {
        if (no_fail) lisp_fatal("fatal: out of no-fail memory!");
        return nullptr;
    }
    heap->byte_top -= size;
    heap->allocated_bytes += size;
    char* block = reinterpret_cast<char*>(heap->slots) + heap->byte_top;
    // Where the byte area grows over slots that a collection gave up, the zeroes that callers rely on are gone.
    if (heap->byte_top < heap->highest_boundary) {
        const std::uint64_t used_before = heap->highest_boundary - heap->byte_top;
        std::memset(block, 0, used_before < size ? used_before : size);
    }
    return block;
}

// Payload bytes are never used again in this version.
static void free_bytes(lisp_heap* /*heap*/, void* /*address*/)
{
    std::printf("free_bytes()\n");
}

static void unlock_all(lisp_heap* heap)
{
    ++heap->lock_epoch;
    // Scripts that a running script reloads unlock as well: what the outermost one made stays.
    if (heap->interpreter->stack_origin == nullptr) heap->lock_floor = heap->lock_epoch;
}

static unsigned lowest_clear_bit(std::uint64_t word)
{
    return static_cast<unsigned>(__builtin_ctzll(~word));
}

lisp_object* lisp_allocate_object(lisp_heap* heap, const lisp_object_descriptor* descriptor)
{
    // Always the lowest free slot. Words below lowest_word are full, so the scan is amortised over the allocations.
    std::uint64_t word = heap->lowest_word;
    while (word < heap->bitmap_words && heap->bitmap[word] == ~std::uint64_t{0}) ++word;
    heap->lowest_word = word;
    if (word == heap->bitmap_words) return nullptr;
    const std::uint64_t slot = word * 64 + lowest_clear_bit(heap->bitmap[word]);
    const std::uint64_t end = (slot + 1) * sizeof(lisp_object);
    const std::uint64_t boundary = end > heap->boundary ? end : heap->boundary;
    if (boundary >= heap->byte_top) return nullptr; // before the bit is set: a collection must not see the slot
    heap->bitmap[word] |= std::uint64_t{1} << (slot % 64);
    heap->boundary = boundary;
    if (boundary > heap->highest_boundary) heap->highest_boundary = boundary;

    lisp_object* object = &heap->slots[slot];
    object->type = descriptor->type;
    object->flag = descriptor->flag;
    object->type_argument_count = descriptor->type_argument_count;
    object->type_arguments = descriptor->type_arguments;
    object->payload.integer = 0;
    object->lock_stamp = heap->lock_epoch;
    object->mark_stamp = 0;
    ++heap->live_objects;
    return object;
}

const lisp_memory_manager* lisp_mark_and_sweep()
{
    // Both collections run the same full one.
    static const lisp_memory_manager manager = {
        "mark-and-sweep",     allocate_bytes,       free_bytes,           unlock_all,
        lisp_allocate_object, lisp_collect_garbage, lisp_collect_garbage,
    };
    return &manager;
}

/* Requests that are just below what is fatal stay below it. */
static std::uint64_t rounded_up(std::uint64_t size)
{
    return size > 0xFFFFFFF8u ? size : (size + 7) & ~std::uint64_t{7};
}

void* lisp_allocate(lisp_interpreter* interpreter, std::uint64_t size)
{
    return interpreter->memory->allocate_bytes(&interpreter->heap, rounded_up(size), false);
}

void* lisp_allocate_no_fail(lisp_interpreter* interpreter, std::uint64_t size)
{
    return interpreter->memory->allocate_bytes(&interpreter->heap, rounded_up(size), true);
}

void* lisp_allocate_array(lisp_interpreter* interpreter, std::uint64_t count, std::uint64_t size)
{
    const std::uint64_t most = 0xFFFFFFFFu;
    return lisp_allocate(interpreter, count > most / size ? most + 1 : count * size);
}
