#pragma once

#include <cstddef>
#include <cstdint>

/// The records of xum-lisp and the functions that a host of the interpreter calls.
///
/// Written procedurally: free functions that take the interpreter first, records without behaviour, tables of
/// operations. Nothing here knows the engine; a host gives two callbacks. All memory of an interpreter lies in one
/// region, so that everything goes when the region goes, and pointers into it are never kept outside of it.
///
/// Every Lisp value is a lisp_object. Reading a value always copies its record, and every place that holds a value (a
/// symbol, a list element, an array element, a table entry) owns its record alone, so a place is changed by overwriting
/// its record.

struct lisp_interpreter;
struct lisp_object;
struct lisp_type;
struct lisp_closure;
struct lisp_environment;
struct lisp_name;

/// What the host does with text. `print` gets one line without its end; `error` gets a consistency failure, and may
/// return or not.
struct lisp_output {
    void (*print)(void* user, const char* text);
    void (*error)(const char* text);
    void* user;
};

/// The built-in types in the order of their registration; a type of a script's own is of kind other.
enum lisp_kind : std::uint8_t {
    lisp_kind_nil,
    lisp_kind_list,
    lisp_kind_keyword,
    lisp_kind_symbol,
    lisp_kind_boolean,
    lisp_kind_byte,
    lisp_kind_integer,
    lisp_kind_float,
    lisp_kind_string,
    lisp_kind_array,
    lisp_kind_hash_table,
    lisp_kind_closure,
    lisp_kind_macro,
    lisp_kind_stream,
    lisp_kind_thread,
    lisp_kind_other,
};
constexpr std::size_t lisp_built_in_type_count = lisp_kind_other;

/// One entry of a signature, or the type that is bound to a parameter of a type. Without a type record it is a type
/// variable, when it has a letter, or ":any". Arguments of ":closure" are the entries of a signature.
struct lisp_type_entry {
    lisp_type* type;
    char letter;
    std::uint8_t count;
    lisp_type_entry* arguments;
};

/// A string or a keyword's name; the characters follow in the same block, with a zero behind them. Immutable.
struct lisp_string {
    std::uint64_t length;
    std::uint64_t capacity;
    char* characters;
};

/// A symbol as the reader finds it in a text, and as an environment binds it. `value` is null where it is not bound.
struct lisp_symbol {
    lisp_name* name;
    bool is_quoted;
    bool is_constant;
    lisp_object* value;
};

struct lisp_cell {
    lisp_cell* next;
    lisp_object* element;
};

/// Lists are immutable for scripts, so several may share cells.
struct lisp_list {
    bool is_quoted;       // evaluates to itself
    bool has_only_leaves; // no element can reach another object; where false, that is not known
    lisp_cell* first;
    lisp_cell* last;
    std::uint64_t count;
};

enum lisp_element_kind : std::uint8_t {
    lisp_element_boolean,
    lisp_element_byte,
    lisp_element_integer,
    lisp_element_float,
    lisp_element_object,
};

struct lisp_array {
    std::uint64_t count;
    lisp_element_kind element_kind;
    void* elements; // booleans are packed, one bit each
};

struct lisp_table;
struct lisp_macro;

union lisp_payload {
    std::int64_t integer; // also of a boolean, 0 or 1, and of a byte
    double real;
    lisp_string* string;
    lisp_symbol* symbol;
    lisp_list* list;
    lisp_array* array;
    lisp_table* table;
    lisp_closure* closure;
    lisp_macro* macro;
    void* pointer;
};

struct lisp_object {
    lisp_type* type;
    std::uint8_t flag;
    std::uint8_t type_argument_count;
    lisp_type_entry* type_arguments;
    lisp_payload payload;
    std::uint64_t lock_stamp;
    std::uint64_t mark_stamp;
};
static_assert(sizeof(lisp_object) == 48);

/// An interned name: one record for each distinct text, so that names are compared as pointers.
struct lisp_name {
    lisp_name* next;
    std::uint64_t hash;
    lisp_object* root_symbol; // what the root environment binds to the name, or null
    lisp_object* carrier;     // an unbound symbol that the reader made for the name and uses again, or null
    lisp_string text;
};

/// A table from names to anything. `bucket_count` is fixed but for the small tables of closures, which grow.
struct lisp_hash_entry {
    lisp_hash_entry* next;
    lisp_name* key;
    void* value;
};

struct lisp_hash_table {
    std::uint32_t bucket_count;
    bool is_growing;
    lisp_hash_entry** buckets;
    std::uint64_t count;
    lisp_interpreter* interpreter; // whose memory it allocates from
};

/// From names to the symbol objects that hold the bindings. The root's parent is null.
struct lisp_environment {
    lisp_environment* parent;
    lisp_hash_table table;
    std::uint64_t trace_round; // of the collector's last visit
};

/// The state of the memory manager; see lisp_memory.h.
struct lisp_heap {
    lisp_object* slots;
    std::uint64_t region_size;
    std::uint64_t* bitmap;
    std::uint64_t bitmap_words;
    std::uint64_t live_objects;
    std::uint64_t allocated_bytes;
    std::uint64_t boundary; // end of the highest slot handed out, as an offset from the first slot
    std::uint64_t byte_top; // where the byte area begins, as an offset from the first slot; it grows downwards
    std::uint64_t lock_epoch;
    std::uint64_t mark_epoch;

    void* region;
    std::uint64_t slot_count;
    std::uint64_t lowest_word;      // no word of the bitmap below it has a clear bit
    std::uint64_t lock_floor;       // objects with this lock stamp or a later one are kept
    std::uint64_t highest_boundary; // that there ever was: below it the region may hold what former objects left
    std::uint64_t trace_round;      // of the collector; grows with every walk over the graph
    std::uint64_t* marked;          // the collector's bitmaps, one bit a slot as in the bitmap
    std::uint64_t* kept;
    lisp_interpreter* interpreter;
};

/// A descriptor of what allocate_object makes.
struct lisp_object_descriptor {
    lisp_type* type;
    std::uint8_t flag;
    std::uint8_t type_argument_count;
    lisp_type_entry* type_arguments;
};

struct lisp_memory_manager {
    const char* name;
    void* (*allocate_bytes)(lisp_heap* heap, std::uint64_t size, bool no_fail);
    void (*free_bytes)(lisp_heap* heap, void* address);
    void (*unlock_all)(lisp_heap* heap);
    lisp_object* (*allocate_object)(lisp_heap* heap, const lisp_object_descriptor* descriptor);
    void (*garbage_collection)(lisp_heap* heap, lisp_environment* roots);
    void (*full_garbage_collection)(lisp_heap* heap, lisp_environment* roots);
};

/// One list evaluation in progress, as the collector must know it.
struct lisp_activation {
    lisp_activation* previous;
    lisp_closure* closure;
    lisp_environment* environment;
    const lisp_object* expression;
};

constexpr std::size_t lisp_conversion_size = 10000;

struct lisp_interpreter {
    const lisp_output* output;
    const lisp_memory_manager* memory;
    lisp_heap heap;

    // Never allocated from the heap and never collected.
    lisp_object root_list; // the empty list
    lisp_object nil;
    lisp_object boolean_false;
    lisp_object boolean_true;

    lisp_environment root;

    lisp_hash_table types;
    lisp_type* newest_type;
    lisp_type* kinds[lisp_built_in_type_count];
    lisp_name** names;
    std::uint64_t name_bucket_count;
    std::uint64_t name_count;

    // Arguments and intermediate results live on a stack of records.
    lisp_object* stack;
    lisp_object* stack_top;
    lisp_object* stack_end;

    lisp_activation* activation; // the innermost
    const char* stack_origin;    // an address in the outermost evaluation's frame; null outside of any
    bool is_abandoned;           // the current outermost expression is given up: every evaluation yields :nil at once
    bool is_stopped;             // the whole text or script is given up: a function of the host threw
    std::uint32_t tables_in_use; // by for-each loops: no table grows meanwhile

    lisp_object** mark_stack;

    char conversion[lisp_conversion_size];
};

// ---- what a host calls --------------------------------------------------------------------------------------------

/// Starts an interpreter in zeroed memory. `region_size` is that of the heap (lisp_region_size; tests take less). False
/// when the region cannot be allocated. The first interpreter of the process makes `output->error` the fatal handler.
bool lisp_start(lisp_interpreter* interpreter, const lisp_output* output, std::uint64_t region_size);
constexpr std::uint64_t lisp_region_size = 0x20000000;

/// Releases the region and everything in it.
void lisp_stop(lisp_interpreter* interpreter);

/// Ends a fatal condition; may return, in tests.
void lisp_fatal(const char* text);

/// The first handler that is set stays for the life of the process.
void lisp_set_fatal_handler(void (*handler)(const char* text));

/// Writes one line through the host's print callback.
void lisp_print_line(lisp_interpreter* interpreter, const char* text);

/// The same, formatted and cut to the conversion size.
#ifdef __GNUC__
__attribute__((format(printf, 2, 3)))
#endif
void lisp_print_format(lisp_interpreter* interpreter, const char* format, ...);

/// Reports "error: out of memory!" and gives the current evaluation up.
void lisp_out_of_memory(lisp_interpreter* interpreter);
