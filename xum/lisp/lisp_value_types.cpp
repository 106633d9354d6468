#include <xum/lisp/lisp_type.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_object.h>

#include <cstring>

// The built-in types. Their values are converted to and from text by lisp_convert.cpp directly; only the types of
// scripts have converter closures.

static bool copy_eight_bytes(lisp_interpreter* /*interpreter*/, lisp_object* object, const void* source)
{
    if (source != nullptr) std::memcpy(&object->payload, source, sizeof object->payload);
    return true;
}

static bool copy_text(lisp_interpreter* interpreter, lisp_object* object, const void* source)
{
    if (source == nullptr) return true;
    const char* text = static_cast<const char*>(source);
    object->payload.string = lisp_make_string(interpreter, text, std::strlen(text));
    return object->payload.string != nullptr;
}

static bool build_closure(lisp_interpreter* interpreter, lisp_object* object, const void* source)
{
    if (source == nullptr) return true;
    const lisp_native_descriptor* descriptor = static_cast<const lisp_native_descriptor*>(source);
    object->payload.closure = lisp_make_native_closure(interpreter, descriptor, nullptr);
    return object->payload.closure != nullptr;
}

static void release_text(lisp_interpreter* interpreter, lisp_object* object)
{
    interpreter->memory->free_bytes(&interpreter->heap, object->payload.string);
}

struct built_in_type {
    const char* name;
    const char* parameters;
    bool (*init)(lisp_interpreter* interpreter, lisp_object* object, const void* source);
    void (*evaluate)(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment,
                     const lisp_object* object);
    void (*release)(lisp_interpreter* interpreter, lisp_object* object);
};

/* In the order of lisp_kind. A macro that is evaluated as a value is itself: it expands where a list calls it. */
static const built_in_type built_in_types[] = {
    {":nil", "", nullptr, lisp_evaluate_to_itself, nullptr},
    {":list", ":value", nullptr, lisp_evaluate_list, nullptr},
    {":keyword", "", copy_text, lisp_evaluate_to_itself, release_text},
    {":symbol", "", nullptr, lisp_evaluate_symbol, nullptr},
    {":boolean", "", copy_eight_bytes, lisp_evaluate_to_itself, nullptr},
    {":byte", "", copy_eight_bytes, lisp_evaluate_to_itself, nullptr},
    {":integer", "", copy_eight_bytes, lisp_evaluate_to_itself, nullptr},
    {":float", "", copy_eight_bytes, lisp_evaluate_to_itself, nullptr},
    {":string", "", copy_text, lisp_evaluate_to_itself, release_text},
    {":array", ":value", nullptr, lisp_evaluate_to_itself, nullptr},
    {":hash-table", ":key :value", nullptr, lisp_evaluate_to_itself, nullptr},
    {":closure", "", build_closure, lisp_evaluate_to_itself, nullptr},
    {":macro", "", nullptr, lisp_evaluate_to_itself, nullptr},
    {":stream", "", nullptr, lisp_evaluate_to_itself, nullptr},
    {":thread", "", nullptr, lisp_evaluate_to_itself, nullptr},
};
static_assert(sizeof built_in_types / sizeof built_in_types[0] == lisp_built_in_type_count);

bool lisp_define_built_in_types(lisp_interpreter* interpreter)
{
    for (std::size_t i = 0; i < lisp_built_in_type_count; ++i) {
        const built_in_type* built_in = &built_in_types[i];
        lisp_type* type = lisp_define_type(interpreter, built_in->name, built_in->parameters, built_in->release,
                                           nullptr, nullptr, nullptr);
        if (type == nullptr) return false;
        type->kind = static_cast<lisp_kind>(i);
        type->init = built_in->init;
        type->evaluate = built_in->evaluate;
        type->is_self_evaluating = built_in->evaluate == lisp_evaluate_to_itself;
        interpreter->kinds[i] = type;
    }
    return true;
}
