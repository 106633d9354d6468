#include <xum/lisp/lisp_closure.h>

#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_token.h>
#include <xum/lisp/lisp_type.h>

#include <cstdio>
#include <cstring>

// ---- what both kinds share ----------------------------------------------------------------------------------------

static bool holds_variable(const lisp_type_entry* entry)
{
    if (entry->type == nullptr) return entry->letter != 0;
    for (std::uint8_t i = 0; i < entry->count; ++i)
        if (holds_variable(&entry->arguments[i])) return true;
    return false;
}

static lisp_check make_check(const lisp_type_entry* entry)
{
    if (entry->type == nullptr) return {entry->letter == 0 ? lisp_check_nothing : lisp_check_variable, 0, nullptr};
    // An empty list is a list of anything, so of a list type the record alone does not decide.
    const bool is_plain = entry->count == 0;
    return {is_plain ? lisp_check_type : lisp_check_entry, 0, entry->type};
}

/* The letters in the order in which the text names them. */
static void find_variables(lisp_closure* closure, const char* text)
{
    for (const char* c = text; *c != '\0'; ++c) {
        const bool is_variable = c[0] == ':' && c[1] >= 'a' && c[1] <= 'z' && !lisp_is_keyword_character(c[2]);
        if (!is_variable || std::memchr(closure->variables, c[1], closure->variable_count) != nullptr) continue;
        closure->variables[closure->variable_count++] = c[1];
    }
}

static bool finish_closure(lisp_interpreter* interpreter, lisp_closure* closure)
{
    const lisp_signature* signature = &closure->signature_entries;
    const std::uint32_t parameters = signature->entry_count - 1u;
    closure->least_arguments = parameters - (signature->has_rest ? 1 : 0);
    closure->most_arguments = signature->has_rest ? UINT32_MAX : parameters;
    closure->has_plain_checks = true;
    closure->has_variable_checks = true;
    if (parameters != 0) {
        closure->checks = lisp_allocate_elements<lisp_check>(interpreter, parameters);
        if (closure->checks == nullptr) return false;
    }
    for (std::uint32_t i = 0; i < parameters; ++i) {
        closure->checks[i] = make_check(&signature->entries[i]);
        const lisp_check_form form = closure->checks[i].form;
        if (form == lisp_check_variable || form == lisp_check_entry) closure->has_plain_checks = false;
        if (form == lisp_check_type || form == lisp_check_entry) closure->has_variable_checks = false;
    }
    const lisp_type_entry* returned = &signature->entries[parameters];
    closure->returns_anything = returned->type == nullptr && returned->letter == 0;
    closure->has_plain_return = !holds_variable(returned);
    return true;
}

static lisp_closure* allocate_closure(lisp_interpreter* interpreter)
{
    lisp_closure* closure = lisp_allocate_record<lisp_closure>(interpreter);
    if (closure != nullptr) *closure = {};
    return closure;
}

lisp_closure* lisp_make_native_closure(lisp_interpreter* interpreter, const lisp_native_descriptor* descriptor,
                                       void* user)
{
    lisp_closure* closure = allocate_closure(interpreter);
    if (closure == nullptr) return nullptr;
    closure->name = lisp_intern(interpreter, descriptor->name);
    closure->native = descriptor->native;
    closure->user = user;
    closure->is_trusted = user == nullptr;
    closure->signature = lisp_make_string(interpreter, descriptor->signature, std::strlen(descriptor->signature));
    if (closure->name == nullptr || closure->signature == nullptr) return nullptr;
    if (!lisp_parse_signature(interpreter, descriptor->signature, &closure->signature_entries)) return nullptr;
    find_variables(closure, descriptor->variables);
    return finish_closure(interpreter, closure) ? closure : nullptr;
}

void lisp_set_closure(lisp_interpreter* interpreter, lisp_object* result, lisp_closure* closure)
{
    lisp_set_nil(interpreter, result);
    result->type = interpreter->kinds[lisp_kind_closure];
    result->payload.closure = closure;
}

// ---- the form -----------------------------------------------------------------------------------------------------

/* (closure ((name [type | :lazy | :rest]) ...) { -> type | => bounds | expression }) */

struct closure_form {
    lisp_interpreter* interpreter;
    const lisp_list* parameters;
    const lisp_object* items;
    std::uint32_t count;
    const lisp_object* returned; // behind "->", or null
    const lisp_object* bounds;   // behind "=>", or null
    bool is_malformed;           // an arrow twice, or with nothing behind it
    char text[16384];            // the rendered signature
    std::size_t length;
    std::uint32_t depth;
    lisp_name* names[lisp_parameter_limit];
};

static void append(closure_form* form, const char* text)
{
    const std::size_t length = std::strlen(text);
    if (form->length + length >= sizeof form->text) {
        form->is_malformed = true;
        return;
    }
    std::memcpy(form->text + form->length, text, length + 1);
    form->length += length;
}

static bool is_symbol_named(const lisp_object* object, const char* name)
{
    return object->type->kind == lisp_kind_symbol &&
           std::strcmp(object->payload.symbol->name->text.characters, name) == 0;
}

/* The keyword's text; ":nil" is a value of its own type, but names a type here; null for anything else. */
static const char* keyword_text(const lisp_object* object)
{
    if (object->type->kind == lisp_kind_keyword) return object->payload.string->characters;
    return object->type->kind == lisp_kind_nil ? ":nil" : nullptr;
}

static bool is_signature_list(const lisp_list* list)
{
    const lisp_cell* cell = list->first;
    for (std::uint64_t i = 0; i < list->count; ++i, cell = cell->next)
        if (is_symbol_named(cell->element, "->")) return true;
    return list->count == 1;
}

static bool append_type(closure_form* form, const lisp_object* type);

static bool append_type_list(closure_form* form, const lisp_list* list)
{
    const bool is_signature = is_signature_list(list);
    append(form, "(");
    const lisp_cell* cell = list->first;
    for (std::uint64_t i = 0; i < list->count; ++i, cell = cell->next) {
        if (i != 0) append(form, " ");
        const bool is_arrow = is_signature && i % 2 == 1;
        if (is_arrow && !is_symbol_named(cell->element, "->")) return false;
        if (is_arrow)
            append(form, "->");
        else if (!append_type(form, cell->element))
            return false;
    }
    append(form, ")");
    return !is_signature || list->count % 2 == 1;
}

/* False when the object is no type by its shape. */
static bool append_type(closure_form* form, const lisp_object* type)
{
    if (const char* keyword = keyword_text(type)) {
        append(form, keyword);
        return true;
    }
    if (type->type->kind != lisp_kind_list || lisp_list_count(type) == 0) return false;
    if (++form->depth > lisp_type_depth_limit) return false;
    const bool is_type = append_type_list(form, type->payload.list);
    --form->depth;
    return is_type;
}

static bool is_one_of(const char* text, const char* a, const char* b)
{
    return std::strcmp(text, a) == 0 || std::strcmp(text, b) == 0;
}

/* "name type", "name :rest", "name :lazy" or "name" alone. */
static bool append_parameter(closure_form* form, const lisp_object* parameter, std::uint32_t index)
{
    const std::uint64_t size = parameter->type->kind == lisp_kind_list ? lisp_list_count(parameter) : 0;
    if (size == 3) lisp_fatal("named_parameter for closure! TODO!");
    if (size != 1 && size != 2) return false;
    const lisp_cell* cell = parameter->payload.list->first;
    if (cell->element->type->kind != lisp_kind_symbol) return false;
    form->names[index] = cell->element->payload.symbol->name;
    if (size == 1) {
        append(form, ":any");
        return true;
    }
    const lisp_object* second = cell->next->element;
    const char* keyword = keyword_text(second);
    if (keyword == nullptr) return append_type(form, second);
    if (is_one_of(keyword, ":optional", ":key")) return false;
    if (std::strcmp(keyword, ":rest") == 0)
        append(form, ":any&");
    else if (std::strcmp(keyword, ":lazy") == 0)
        append(form, ":any*");
    else
        append(form, keyword);
    return true;
}

static bool append_parameters(closure_form* form)
{
    const std::uint64_t count = form->parameters != nullptr ? form->parameters->count : 0;
    const lisp_cell* cell = count != 0 ? form->parameters->first : nullptr;
    for (std::uint64_t i = 0; i < count; ++i, cell = cell->next) {
        if (i == lisp_parameter_limit) {
            form->is_malformed = true;
            return true;
        }
        if (!append_parameter(form, cell->element, static_cast<std::uint32_t>(i))) return false;
        append(form, " -> ");
    }
    return true;
}

static const lisp_object** arrow_operand(closure_form* form, const lisp_object* item)
{
    if (is_symbol_named(item, "->")) return &form->returned;
    return is_symbol_named(item, "=>") ? &form->bounds : nullptr;
}

static void find_arrows(closure_form* form)
{
    for (std::uint32_t i = 0; i < form->count; ++i) {
        const lisp_object** operand = arrow_operand(form, &form->items[i]);
        if (operand == nullptr) continue;
        if (*operand != nullptr || i + 1 == form->count) form->is_malformed = true;
        if (i + 1 < form->count) *operand = &form->items[++i];
    }
}

/* Whether the declared return type is a type at all. */
static bool append_return_type(closure_form* form)
{
    const std::size_t begin = form->length;
    if (form->returned == nullptr) {
        append(form, ":any");
    } else if (!append_type(form, form->returned)) {
        return false;
    }
    lisp_type_entry entry;
    const bool names_types = form->is_malformed || lisp_parse_type(form->interpreter, form->text + begin, &entry);
    append(form, ")");
    return names_types;
}

static bool is_variable_keyword(const lisp_object* object)
{
    const char* text = keyword_text(object);
    return text != nullptr && std::strlen(text) == 2 && text[1] >= 'a' && text[1] <= 'z';
}

/* ((:a :integer :float) ...): a variable and the types that it may be bound to. */
static bool are_bounds(lisp_interpreter* interpreter, const lisp_list* bounds)
{
    const lisp_cell* cell = bounds->first;
    for (std::uint64_t i = 0; i < bounds->count; ++i, cell = cell->next) {
        const lisp_object* bound = cell->element;
        if (bound->type->kind != lisp_kind_list || lisp_list_count(bound) == 0) return false;
        const lisp_cell* name = bound->payload.list->first;
        if (!is_variable_keyword(name->element)) return false;
        for (std::uint64_t k = 1; k < bound->payload.list->count; ++k) {
            name = name->next;
            const char* text = keyword_text(name->element);
            if (text == nullptr || lisp_find_type(interpreter, text) == nullptr) return false;
        }
    }
    return true;
}

static const char* check_form(closure_form* form)
{
    find_arrows(form);
    append(form, "(");
    if (!append_parameters(form)) return "error: invalid closure parameter!";
    if (!append_return_type(form)) return "error: return type check failed!";
    if (form->bounds != nullptr) {
        if (form->bounds->type->kind != lisp_kind_list) return "error: type bounds must be a list!";
        if (form->bounds->payload.list != nullptr && !are_bounds(form->interpreter, form->bounds->payload.list))
            return "error: invalid type bounds!";
    }
    return nullptr;
}

/* The items that are neither arrows nor what stands behind one, copied out of the caller's frame. */
static bool copy_body(closure_form* form, lisp_closure* closure)
{
    std::uint64_t count = 0;
    for (std::uint32_t i = 0; i < form->count; ++i) {
        if (arrow_operand(form, &form->items[i]) != nullptr)
            ++i;
        else
            ++count;
    }
    closure->body = lisp_make_list(form->interpreter, count);
    if (closure->body == nullptr) return false;
    lisp_cell* cell = closure->body->first;
    for (std::uint32_t i = 0; i < form->count; ++i) {
        if (arrow_operand(form, &form->items[i]) != nullptr) {
            ++i;
            continue;
        }
        cell->element = lisp_copy_to_slot(form->interpreter, &form->items[i]);
        if (cell->element == nullptr) return false;
        cell = cell->next;
    }
    return true;
}

static bool record_parameters(closure_form* form, lisp_closure* closure, lisp_environment* environment)
{
    const std::uint32_t count = closure->signature_entries.entry_count - 1u;
    closure->environment = lisp_environment_make(form->interpreter, environment);
    if (closure->environment == nullptr) return false;
    if (count == 0) return true;
    closure->parameters = lisp_allocate_elements<lisp_closure_parameter>(form->interpreter, count);
    if (closure->parameters == nullptr) return false;
    for (std::uint32_t i = 0; i < count; ++i) closure->parameters[i] = {form->names[i], nullptr};
    return true;
}

static lisp_closure* build_closure(closure_form* form, lisp_environment* environment)
{
    lisp_interpreter* interpreter = form->interpreter;
    lisp_closure* closure = allocate_closure(interpreter);
    if (closure == nullptr) {
        lisp_out_of_memory(interpreter);
        return nullptr;
    }
    if (form->is_malformed || !lisp_parse_signature(interpreter, form->text, &closure->signature_entries)) {
        if (!interpreter->is_abandoned) lisp_print_line(interpreter, "error: invalid signature!");
        return nullptr;
    }
    closure->signature = lisp_make_string(interpreter, form->text, form->length);
    if (closure->signature == nullptr) return nullptr;
    find_variables(closure, form->text);
    closure->bounds = form->bounds != nullptr ? form->bounds->payload.list : nullptr;
    if (!record_parameters(form, closure, environment) || !finish_closure(interpreter, closure)) {
        lisp_print_line(interpreter, "error: setting closure parameters!");
        return nullptr;
    }
    return copy_body(form, closure) ? closure : nullptr;
}

void lisp_make_closure(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_list* parameters,
                       const lisp_object* items, std::uint32_t count, lisp_object* result)
{
    closure_form form;
    form.interpreter = interpreter;
    form.parameters = parameters;
    form.items = items;
    form.count = count;
    form.returned = nullptr;
    form.bounds = nullptr;
    form.is_malformed = false;
    form.text[0] = '\0';
    form.length = 0;
    form.depth = 0;
    if (const char* problem = check_form(&form)) {
        if (!interpreter->is_abandoned) lisp_print_line(interpreter, problem);
        return;
    }
    if (lisp_closure* closure = build_closure(&form, environment)) lisp_set_closure(interpreter, result, closure);
}
