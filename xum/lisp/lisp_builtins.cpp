#include <xum/lisp/lisp_builtins.h>

#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>

#include <cstring>

/* Name, type variables, signature, function. The signature decides how arguments are evaluated and checked. */
// clang-format off
static const lisp_native_descriptor builtins[] = {
    {"read", "", "(:string -> :any)", lisp_native_read},
    {"eval", "", "(:any -> :any)", lisp_native_eval},
    {"load", "", "(:string -> :boolean)", lisp_native_load},
    {"define", "", "(:symbol* -> :any -> :any)", lisp_native_define},
    {"define-constant", "", "(:symbol* -> :any -> :any)", lisp_native_define_constant},
    {"get", "", "(:symbol* -> :any)", lisp_native_get},
    {"set!", "(:a)", "(:symbol* -> :a -> :a)", lisp_native_set},
    {"do", "", "(:any&* -> :any)", lisp_native_do},
    {"print", "", "(:any -> :nil)", lisp_native_print},
    {"display", "", "(:string -> :nil)", lisp_native_display},
    {"macro", "", "((:list :any)* -> (:list :any)* -> :macro)", lisp_native_macro},
    {"macro-expand", "", "((:list :any)* -> :nil)", lisp_native_macro_expand},
    {"define-type", "", "(:keyword -> (:list :keyword)* -> (:list :any)* -> :nil)", lisp_native_define_type},
    {"type-list", "", "((:list :keyword))", lisp_native_type_list},
    {"type-parameters", "", "(:keyword -> (:list :keyword))", lisp_native_type_parameters},
    {"type-of", "", "(:any -> :keyword)", lisp_native_type_of},
    {"from-string", "", "(:keyword -> :string -> :any)", lisp_native_from_string},
    {"to-string", "", "(:any -> :string)", lisp_native_to_string},
    {"to-hash", "", "(:any -> :integer)", lisp_native_to_hash},
    {"list", "(:a)", "(:a& -> (:list :a))", lisp_native_list},
    {"byte", "", "(:integer -> :byte)", lisp_native_byte},
    {"array", "", "(:integer -> :string -> (:array :any))", lisp_native_array},
    {"hash-table", "", "(:string -> :string -> (:hash-table :any :any))", lisp_native_hash_table},
    {"closure", "", "((:list :any)* -> :any&* -> :closure)", lisp_native_closure},
    {"cons", "", "(:any -> (:list :any) -> (:list :any))", lisp_native_cons},
    {"head", "(:a)", "((:list :a) -> :a)", lisp_native_head},
    {"tail", "(:a)", "((:list :a) -> (:list :a))", lisp_native_tail},
    {"list-size", "", "((:list :any) -> :integer)", lisp_native_list_size},
    {"list-reverse", "(:a)", "((:list :a) -> (:list :a))", lisp_native_list_reverse},
    {"string-size", "", "(:string -> :integer)", lisp_native_string_size},
    {"string-take", "", "(:integer -> :string -> :string)", lisp_native_string_take},
    {"string-drop", "", "(:integer -> :string -> :string)", lisp_native_string_drop},
    {"string-reverse", "", "(:string -> :string)", lisp_native_string_reverse},
    {"array-size", "", "((:array :any) -> :integer)", lisp_native_array_size},
    {"array-get", "(:a)", "((:array :a) -> :integer -> :a)", lisp_native_array_get},
    {"array-set!", "(:a)", "((:array :a) -> :integer -> :a -> :nil)", lisp_native_array_set},
    {"hash-table-size", "", "((:hash-table :any :any) -> :integer)", lisp_native_hash_table_size},
    {"hash-table-for-each", "(:a :b)", "((:a -> :b -> :any) -> (:hash-table :a :b) -> :nil)", lisp_native_hash_table_for_each},
    {"hash-table-map", "(:a :b)", "((:a -> :b -> :b) -> (:hash-table :a :b) -> (:hash-table :a :b))", lisp_native_placeholder},
    {"hash-table-contains?", "(:a)", "((:hash-table :a :any) -> :a -> :boolean)", lisp_native_hash_table_contains},
    {"hash-table-get", "(:a :b)", "((:hash-table :a :b) -> :a -> :b)", lisp_native_hash_table_get},
    {"hash-table-put!", "(:a :b)", "((:hash-table :a :b) -> :a -> :b -> :boolean)", lisp_native_hash_table_put},
    {"hash-table-remove!", "(:a :b)", "((:hash-table :a :b) -> :a -> :boolean)", lisp_native_hash_table_remove},
    {"if", "", "(:boolean -> :any* -> :any* -> :any)", lisp_native_if},
    {"=", "(:a)", "(:a -> :a -> :boolean)", lisp_native_equal},
    {"<", "(:a)", "(:a -> :a -> :boolean)", lisp_native_less},
    {"map", "(:a :b)", "((:a -> :b) -> (:list :a) -> (:list :b))", lisp_native_map},
    {"map-with-index", "(:a :b)", "((:integer -> :a -> :b) -> (:list :a) -> (:list :b))", lisp_native_map_with_index},
    {"for-each", "(:a)", "((:a -> :any) -> (:list :a) -> :nil)", lisp_native_for_each},
    {"for-each-with-index", "(:a)", "((:integer -> :a -> :any) -> (:list :a) -> :nil)", lisp_native_for_each_with_index},
    {"filter", "(:a)", "((:a -> :boolean) -> (:list :a) -> (:list :a))", lisp_native_placeholder},
    {"loop", "", "((:list :any)* -> :any& -> :any)", lisp_native_placeholder},
    {"bit-get", "", "(:integer -> :integer -> :boolean)", lisp_native_bit_get},
    {"bit-set", "", "(:integer -> :integer -> :integer)", lisp_native_bit_set},
    {"bit-or", "", "(:integer -> :integer -> :integer)", lisp_native_bit_or},
    {"bit-and", "", "(:integer -> :integer -> :integer)", lisp_native_bit_and},
    {"bit-not", "", "(:integer -> :integer)", lisp_native_bit_not},
    {"bit-xor", "", "(:integer -> :integer -> :integer)", lisp_native_bit_xor},
    {"bit-shift", "", "(:integer -> :integer -> :integer)", lisp_native_bit_shift},
    {"+", "(:a)", "(:a -> :a -> :a& -> :a)", lisp_native_add},
    {"-", "(:a)", "(:a -> :a& -> :a)", lisp_native_subtract},
    {"*", "(:a)", "(:a -> :a -> :a& -> :a)", lisp_native_multiply},
    {"/", "(:a)", "(:a -> :a -> :a& -> :a)", lisp_native_divide},
    {"garbage-collection", "", "(:nil)", lisp_native_garbage_collection},
    {"full-garbage-collection", "", "(:nil)", lisp_native_full_garbage_collection},
    {"system-info", "", "(:nil)", lisp_native_system_info},
};
// clang-format on

const lisp_native_descriptor* lisp_builtins(std::size_t* count)
{
    *count = sizeof builtins / sizeof builtins[0];
    return builtins;
}

static bool define(lisp_interpreter* interpreter, const char* name, const lisp_object* value, bool is_constant)
{
    lisp_name* interned = lisp_intern(interpreter, name);
    return interned != nullptr &&
           lisp_set_symbol(interpreter, &interpreter->root, interned, value, is_constant, true) != nullptr;
}

lisp_closure* lisp_define_native(lisp_interpreter* interpreter, const lisp_native_descriptor* descriptor, void* user)
{
    lisp_closure* closure = lisp_make_native_closure(interpreter, descriptor, user);
    if (closure == nullptr) return nullptr;
    lisp_object value = {};
    lisp_set_closure(interpreter, &value, closure);
    return define(interpreter, descriptor->name, &value, true) ? closure : nullptr;
}

static lisp_special special_of(lisp_native native)
{
    static const struct {
        lisp_native native;
        lisp_special special;
    } specials[] = {
        {lisp_native_if, lisp_special_if},
        {lisp_native_do, lisp_special_do},
        {lisp_native_add, lisp_special_add},
        {lisp_native_subtract, lisp_special_subtract},
        {lisp_native_multiply, lisp_special_multiply},
        {lisp_native_less, lisp_special_less},
        {lisp_native_equal, lisp_special_equal},
    };
    for (const auto& entry : specials)
        if (entry.native == native) return entry.special;
    return lisp_special_none;
}

static bool define_text(lisp_interpreter* interpreter, const char* name, const char* text, bool is_constant)
{
    lisp_object value = {};
    return lisp_set_text(interpreter, &value, text, std::strlen(text)) &&
           define(interpreter, name, &value, is_constant);
}

static bool define_load_path(lisp_interpreter* interpreter)
{
    lisp_object directory = {};
    lisp_list* list = lisp_make_list(interpreter, 1);
    if (list == nullptr || !lisp_set_text(interpreter, &directory, "base/", 5)) return false;
    list->first->element = lisp_copy_to_slot(interpreter, &directory);
    if (list->first->element == nullptr) return false;
    lisp_object value = {};
    lisp_set_list(interpreter, &value, list, directory.type);
    return define(interpreter, "*load-path*", &value, false);
}

static bool define_variables(lisp_interpreter* interpreter)
{
    lisp_object pi = {};
    lisp_set_float(interpreter, &pi, 3.141592653589793);
    return define_text(interpreter, "+lisp+", "xum-lisp", true) &&
           define_text(interpreter, "+lisp-version+", "0.0.1", true) && define_load_path(interpreter) &&
           define_text(interpreter, "*load-extension*", ".lisp", false) && define(interpreter, "+pi+", &pi, true);
}

bool lisp_define_builtins(lisp_interpreter* interpreter)
{
    for (const lisp_native_descriptor& descriptor : builtins) {
        lisp_closure* closure = lisp_define_native(interpreter, &descriptor, nullptr);
        if (closure == nullptr) return false;
        closure->special = special_of(descriptor.native);
    }
    return define_variables(interpreter);
}
