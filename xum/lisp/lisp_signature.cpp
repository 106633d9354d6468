#include <xum/lisp/lisp_signature.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_token.h>
#include <xum/lisp/lisp_type.h>

#include <cstring>

/*
 * signature = "(" entry { " -> " entry } ")"
 * entry     = type [ "&" ] [ "*" ]
 * type      = keyword | "(" keyword { " " type } ")" | signature without marks
 */

struct type_parser {
    lisp_interpreter* interpreter;
    const char* at;
    std::uint32_t depth;
};

static constexpr std::uint32_t entry_limit = lisp_parameter_limit + 1;

static bool parse_type(type_parser* parser, lisp_type_entry* out);

static void skip_blanks(type_parser* parser)
{
    while (*parser->at == ' ') ++parser->at;
}

static bool take(type_parser* parser, const char* text)
{
    const std::size_t length = std::strlen(text);
    if (std::strncmp(parser->at, text, length) != 0) return false;
    parser->at += length;
    return true;
}

static std::size_t keyword_length(const char* text)
{
    if (*text != ':') return 0;
    std::size_t length = 1;
    while (lisp_is_keyword_character(text[length])) ++length;
    return length > 1 ? length : 0;
}

/* A colon and one letter is a variable; ":any" is an entry without a type; anything else must be registered. */
static bool parse_keyword(type_parser* parser, lisp_type_entry* out)
{
    const std::size_t length = keyword_length(parser->at);
    char name[128];
    if (length == 0 || length >= sizeof name) return false;
    std::memcpy(name, parser->at, length);
    name[length] = '\0';
    parser->at += length;
    *out = {};
    if (std::strcmp(name, ":any") == 0) return true;
    if (length == 2 && name[1] >= 'a' && name[1] <= 'z') {
        out->letter = name[1];
        return true;
    }
    out->type = lisp_find_type(parser->interpreter, name);
    return out->type != nullptr;
}

static lisp_type_entry* copy_entries(lisp_interpreter* interpreter, const lisp_type_entry* entries, std::uint32_t count)
{
    lisp_type_entry* copy = lisp_allocate_elements<lisp_type_entry>(interpreter, count);
    if (copy == nullptr)
        lisp_out_of_memory(interpreter);
    else
        std::memcpy(copy, entries, count * sizeof(lisp_type_entry));
    return copy;
}

/* Behind "(:name ": exactly the arguments that the type has. */
static bool parse_arguments(type_parser* parser, lisp_type_entry* out)
{
    if (out->type == nullptr || out->type->parameter_count == 0) return false;
    const std::uint8_t count = out->type->parameter_count;
    lisp_type_entry* arguments = lisp_allocate_elements<lisp_type_entry>(parser->interpreter, count);
    if (arguments == nullptr) {
        lisp_out_of_memory(parser->interpreter);
        return false;
    }
    for (std::uint8_t i = 0; i < count; ++i) {
        if (!parse_type(parser, &arguments[i])) return false;
        skip_blanks(parser);
    }
    out->count = count;
    out->arguments = arguments;
    return take(parser, ")");
}

/* Behind the first entry of a nested signature: its other entries. */
static bool parse_nested_signature(type_parser* parser, const lisp_type_entry* first, lisp_type_entry* out)
{
    lisp_type_entry entries[entry_limit];
    entries[0] = *first;
    std::uint32_t count = 1;
    while (take(parser, "->")) {
        skip_blanks(parser);
        if (count == entry_limit || !parse_type(parser, &entries[count++])) return false;
        skip_blanks(parser);
    }
    if (!take(parser, ")")) return false;
    *out = {parser->interpreter->kinds[lisp_kind_closure], 0, static_cast<std::uint8_t>(count), nullptr};
    out->arguments = copy_entries(parser->interpreter, entries, count);
    return out->arguments != nullptr;
}

static bool parse_parenthesised(type_parser* parser, lisp_type_entry* out)
{
    skip_blanks(parser);
    lisp_type_entry first;
    if (!parse_type(parser, &first)) return false;
    skip_blanks(parser);
    const bool is_signature = *parser->at == ')' || std::strncmp(parser->at, "->", 2) == 0;
    if (is_signature) return parse_nested_signature(parser, &first, out);
    *out = first;
    return first.count == 0 && parse_arguments(parser, out);
}

static bool parse_type(type_parser* parser, lisp_type_entry* out)
{
    if (*parser->at != '(') return parse_keyword(parser, out);
    if (++parser->depth > lisp_type_depth_limit) return false;
    ++parser->at;
    const bool is_parsed = parse_parenthesised(parser, out);
    --parser->depth;
    return is_parsed;
}

bool lisp_parse_type(lisp_interpreter* interpreter, const char* text, lisp_type_entry* out)
{
    type_parser parser = {interpreter, text, 0};
    return parse_type(&parser, out) && *parser.at == '\0';
}

bool lisp_parse_signature(lisp_interpreter* interpreter, const char* text, lisp_signature* out)
{
    type_parser parser = {interpreter, text, 0};
    lisp_type_entry entries[entry_limit];
    std::uint32_t count = 0;
    std::uint32_t rest_entry = entry_limit;
    *out = {};
    if (!take(&parser, "(")) return false;
    do {
        skip_blanks(&parser);
        if (count == entry_limit || !parse_type(&parser, &entries[count])) return false;
        if (take(&parser, "&")) {
            if (rest_entry != entry_limit) return false;
            rest_entry = count;
        }
        if (take(&parser, "*")) {
            if (count == lisp_parameter_limit) return false;
            out->lazy |= std::uint64_t{1} << count;
        }
        ++count;
        skip_blanks(&parser);
    } while (take(&parser, "->"));
    if (!take(&parser, ")") || *parser.at != '\0') return false;

    out->has_rest = rest_entry != entry_limit;
    if (out->has_rest && rest_entry + 2 != count) return false; // it must be the last parameter
    if (count <= lisp_parameter_limit && (out->lazy >> (count - 1) & 1) != 0)
        return false; // the return type has no mark
    out->entry_count = static_cast<std::uint8_t>(count);
    out->entries = copy_entries(interpreter, entries, count);
    return out->entries != nullptr;
}

void lisp_bindings_init(lisp_bindings* bindings, const lisp_closure* closure)
{
    bindings->letters = closure->variables;
    bindings->count = closure->variable_count;
    for (std::uint32_t i = 0; i <= bindings->count; ++i) {
        bindings->types[i] = nullptr;
        bindings->is_lenient[i] = false;
    }
}

static std::uint32_t slot_of(const lisp_bindings* bindings, char letter)
{
    std::uint32_t slot = 0;
    while (slot < bindings->count && bindings->letters[slot] != letter) ++slot;
    return slot;
}

const lisp_type* lisp_bound_type(const lisp_bindings* bindings, char letter)
{
    return bindings->types[slot_of(bindings, letter)];
}

static bool match_variable(lisp_bindings* bindings, char letter, const lisp_type* actual, bool lenient, bool strict)
{
    const std::uint32_t slot = slot_of(bindings, letter);
    if (bindings->types[slot] == nullptr) {
        bindings->types[slot] = actual;
        bindings->is_lenient[slot] = lenient && !strict;
        return true;
    }
    if (bindings->types[slot] == actual) return true;
    if (actual == nullptr && !strict) return true; // an element type that is not set matches everything
    if (strict || !bindings->is_lenient[slot]) return false;
    bindings->types[slot] = nullptr;
    return true;
}

bool lisp_match_type(lisp_bindings* bindings, const lisp_type_entry* declared, const lisp_type_entry* actual,
                     bool lenient, bool strict)
{
    if (declared->type == nullptr)
        return declared->letter == 0 || match_variable(bindings, declared->letter, actual->type, lenient, strict);
    if (actual->type == nullptr) return !strict; // ":any" promises nothing that a caller of a closure could rely on
    if (actual->type != declared->type) return false;
    if (declared->count == 0 || actual->count == 0) return true; // written without arguments: any
    if (declared->count != actual->count) return false;
    const bool is_strict = strict || declared->type->kind == lisp_kind_closure;
    for (std::uint8_t i = 0; i < declared->count; ++i)
        if (!lisp_match_type(bindings, &declared->arguments[i], &actual->arguments[i], lenient, is_strict))
            return false;
    return true;
}

bool lisp_match_value(lisp_bindings* bindings, const lisp_type_entry* declared, const lisp_object* actual, bool lenient)
{
    lisp_type_entry entry = {actual->type, 0, actual->type_argument_count, actual->type_arguments};
    if (actual->type->kind == lisp_kind_list && declared->type == actual->type && lisp_list_count(actual) == 0)
        return true; // an empty list is a list of anything
    if (actual->type->kind == lisp_kind_closure) {
        entry.count = actual->payload.closure->signature_entries.entry_count;
        entry.arguments = actual->payload.closure->signature_entries.entries;
    }
    return lisp_match_type(bindings, declared, &entry, lenient, false);
}
