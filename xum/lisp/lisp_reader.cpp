#include <xum/lisp/lisp_reader.h>

#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

#include <cstring>

struct reader {
    lisp_interpreter* interpreter;
    lisp_environment* environment;
    const lisp_tokens* tokens;
    std::uint32_t at;
};

static bool is_parenthesis(const lisp_token* token, char which)
{
    return !token->is_string && token->length == 1 && token->text[0] == which;
}

/* The symbol that the name means here, else one that is bound nowhere: one for each name, as long as it lives. */
static lisp_object* symbol_for(reader* r, lisp_name* name)
{
    if (lisp_object* known = lisp_find_symbol(r->environment, name)) return known;
    if (name->carrier == nullptr) name->carrier = lisp_make_symbol(r->interpreter, name);
    return name->carrier;
}

enum atom_result { atom_made, atom_invalid, atom_failed };

/* The value of an atom: a shared symbol object, or a record that the caller copies. */
static atom_result read_atom(reader* r, const lisp_token* token, lisp_object* value, lisp_object** shared)
{
    const lisp_kind kind = token->is_string ? lisp_kind_string : lisp_classify(token->text, token->length);
    *shared = nullptr;
    lisp_set_nil(r->interpreter, value);
    if (kind == lisp_kind_other) return atom_invalid;
    if (kind == lisp_kind_nil) return atom_made;
    if (kind != lisp_kind_symbol)
        return lisp_value_from_text(r->interpreter, kind, token->text, token->length, value) ? atom_made : atom_failed;

    lisp_name* name = lisp_intern(r->interpreter, token->text, token->length);
    if (name == nullptr) lisp_out_of_memory(r->interpreter);
    *shared = name != nullptr ? symbol_for(r, name) : nullptr;
    if (*shared == nullptr) return atom_failed;
    (*shared)->payload.symbol->is_quoted = token->is_quoted;
    lisp_copy_value(value, *shared);
    return atom_made;
}

static lisp_object* atom_object(reader* r, const lisp_token* token)
{
    lisp_object value;
    lisp_object* shared = nullptr;
    switch (read_atom(r, token, &value, &shared)) {
    case atom_made:
        if (shared != nullptr) return shared;
        if (lisp_object* object = lisp_copy_to_slot(r->interpreter, &value)) return object;
        return nullptr;
    case atom_invalid: lisp_print_line(r->interpreter, "error: invalid keyword/symbol name!"); return nullptr;
    default: lisp_print_line(r->interpreter, "error: out of memory!"); return nullptr;
    }
}

/* The number of elements of the list whose opening parenthesis is the token before `at`. */
static std::uint64_t count_elements(const reader* r)
{
    std::uint64_t count = 0;
    std::uint32_t depth = 0;
    for (std::uint32_t i = r->at; i < r->tokens->count; ++i) {
        const lisp_token* token = &r->tokens->tokens[i];
        const bool closes = is_parenthesis(token, ')');
        if (closes && depth == 0) break;
        if (depth == 0) ++count;
        if (is_parenthesis(token, '(')) ++depth;
        if (closes) --depth;
    }
    return count;
}

/* From the token behind an opening parenthesis to the closing one. As deep as there are tokens, at most. */
static bool read_list(reader* r, bool is_quoted, lisp_object* result)
{
    lisp_list* list = lisp_make_list(r->interpreter, count_elements(r));
    if (list == nullptr) return false;
    list->is_quoted = is_quoted;
    list->has_only_leaves = true;
    for (lisp_cell* cell = list->first; cell != nullptr; cell = cell->next) {
        const lisp_token* token = &r->tokens->tokens[r->at++];
        if (is_parenthesis(token, '(')) {
            lisp_object nested;
            if (!read_list(r, token->is_quoted, &nested)) return false;
            cell->element = lisp_copy_to_slot(r->interpreter, &nested);
        } else {
            cell->element = atom_object(r, token);
        }
        if (cell->element == nullptr) return false;
        list->has_only_leaves = list->has_only_leaves && lisp_is_leaf(cell->element);
    }
    ++r->at;
    lisp_set_list(r->interpreter, result, list, nullptr);
    return true;
}

static bool read_tokens(reader* r, lisp_object* result)
{
    const lisp_token* tokens = r->tokens->tokens;
    const std::uint32_t count = r->tokens->count;
    if (count == 1) {
        lisp_object* shared = nullptr;
        const atom_result atom = read_atom(r, &tokens[0], result, &shared);
        if (atom == atom_invalid) lisp_print_line(r->interpreter, "error: invalid keyword/symbol name!");
        return atom == atom_made;
    }
    if (!is_parenthesis(&tokens[0], '(') || !is_parenthesis(&tokens[count - 1], ')')) {
        lisp_print_line(r->interpreter, "error: invalid input!");
        return false;
    }
    r->at = 1;
    if (read_list(r, tokens[0].is_quoted, result)) return true;
    lisp_print_line(r->interpreter, "error: could not create root list!");
    return false;
}

/* Out of line: the tokens take more than 100 kB of stack, which must be free again before the expression is evaluated.
 */
#ifdef __GNUC__
__attribute__((noinline))
#endif
std::int64_t
lisp_read(lisp_interpreter* interpreter, lisp_object* result, lisp_environment* environment, const char* text,
          std::int64_t offset)
{
    lisp_tokens tokens;
    lisp_set_nil(interpreter, result);
    if (lisp_tokenize(&tokens, text + offset) == 0) return 0;
    reader r = {interpreter, environment, &tokens, 0};
    if (!read_tokens(&r, result)) {
        lisp_set_nil(interpreter, result);
        return 0;
    }
    const std::int64_t next = offset + static_cast<std::int64_t>(tokens.consumed);
    return text[next] == '\0' ? -1 : next;
}

bool lisp_read_all(lisp_interpreter* interpreter, const char* text, lisp_environment* environment, std::int64_t offset,
                   lisp_object* last)
{
    lisp_object* frame = lisp_push_frame(interpreter, 2); // the expression and its value, where a collection sees them
    if (frame == nullptr) return false;
    std::int64_t next = offset;
    do {
        next = lisp_read(interpreter, &frame[0], environment, text, next);
        if (next == 0) break;
        lisp_eval(interpreter, &frame[1], environment, &frame[0]);
    } while (next != -1 && !interpreter->is_abandoned && !interpreter->is_stopped);
    if (last != nullptr) lisp_copy_value(last, &frame[1]);
    lisp_pop_frame(interpreter, frame);
    return next == -1 && !interpreter->is_stopped;
}

static const char* describe(lisp_read_problem problem)
{
    switch (problem) {
    case lisp_read_nothing: return "there is no expression";
    case lisp_read_open_list: return "a list is not closed before the end of the text";
    case lisp_read_open_string: return "a string is not closed before the end of its line";
    case lisp_read_long_token: return "a token has more than 127 characters";
    case lisp_read_many_tokens: return "an expression has more than 1000 tokens";
    case lisp_read_nested_quote: return "a quoted list stands inside a quoted list";
    case lisp_read_empty_token: return "an apostrophe has nothing behind it";
    default: return "the expression is unreadable";
    }
}

/* The offset of a token: the tokenizer keeps none, so the text is walked again. */
static std::uint64_t offset_of_token(const char* text, std::uint32_t index)
{
    std::uint64_t at = 0;
    for (std::uint32_t i = 0;; ++i) {
        while (std::strchr(" \t\r\n", text[at]) != nullptr && text[at] != '\0') ++at;
        if (i == index) return at;
        if (text[at] == '\'') ++at;
        if (text[at] == '(' || text[at] == ')') {
            ++at;
        } else if (text[at] == '"') {
            for (++at; text[at] != '"' || text[at - 1] == '\\'; ++at) {
            }
            ++at;
        } else {
            at += std::strcspn(text + at, " \t\r\n()\"");
        }
    }
}

static const char* token_problem(const lisp_token* token)
{
    if (token->is_string || is_parenthesis(token, '(') || is_parenthesis(token, ')')) return nullptr;
    const lisp_kind kind = lisp_classify(token->text, token->length);
    if (kind == lisp_kind_other) return "invalid keyword or symbol name";
    if (kind != lisp_kind_integer) return nullptr;
    std::int64_t value = 0;
    return lisp_is_integer_text(token->text, token->length, &value) ? nullptr : "an integer under- or overflows";
}

lisp_check_result lisp_check_expression(const char* text, std::int64_t offset)
{
    lisp_tokens tokens;
    const char* expression = text + offset;
    const std::uint64_t base = static_cast<std::uint64_t>(offset);
    if (lisp_tokenize(&tokens, expression) == 0) return {0, describe(tokens.problem), base + tokens.problem_offset};
    const bool is_stray = tokens.count == 1 && is_parenthesis(&tokens.tokens[0], ')');
    if (is_stray) return {0, "a parenthesis closes no list", base + offset_of_token(expression, 0)};
    const bool is_list =
        is_parenthesis(&tokens.tokens[0], '(') && is_parenthesis(&tokens.tokens[tokens.count - 1], ')');
    if (tokens.count > 1 && !is_list)
        return {0, "several atoms stand side by side", base + offset_of_token(expression, 1)};
    for (std::uint32_t i = 0; i < tokens.count; ++i)
        if (const char* problem = token_problem(&tokens.tokens[i]))
            return {0, problem, base + offset_of_token(expression, i)};
    const std::int64_t next = offset + static_cast<std::int64_t>(tokens.consumed);
    return {text[next] == '\0' ? -1 : next, nullptr, 0};
}
