#include <xum/lisp/lisp_token.h>

#include <cstring>

struct tokenizer {
    lisp_tokens* out;
    const char* text;
    std::uint64_t at;
    std::int64_t depth;
    std::int64_t quoted_depth; // of the open quoted list; 0: none
};

static bool is_space(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

static bool ends_atom(char c)
{
    return is_space(c) || c == '(' || c == ')' || c == '"' || c == '\0';
}

static std::uint32_t give_up(tokenizer* t, lisp_read_problem problem, std::uint64_t offset)
{
    t->out->count = 0;
    t->out->problem = problem;
    t->out->problem_offset = offset;
    return 0;
}

/* Only A to Z: other bytes, UTF-8 among them, stay as they are. */
static char folded(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/* The text of a string ends at the next quote that is not directly behind a backslash. */
static bool scan_string(tokenizer* t, std::uint64_t* end)
{
    std::uint64_t i = t->at;
    for (; t->text[i] != '"' || t->text[i - 1] == '\\'; ++i)
        if (t->text[i] == '\0' || t->text[i] == '\r' || t->text[i] == '\n') return false;
    *end = i;
    return true;
}

static lisp_read_problem set_text(lisp_token* token, const char* text, std::uint64_t length)
{
    if (length >= lisp_token_size) return lisp_read_long_token;
    for (std::uint64_t i = 0; i < length; ++i) token->text[i] = token->is_string ? text[i] : folded(text[i]);
    token->text[length] = '\0';
    token->length = static_cast<std::uint8_t>(length);
    token->is_hash = !token->is_string && token->text[0] == '#';
    return lisp_read_fine;
}

/* The token at the current place, which holds neither whitespace nor the end. */
static lisp_read_problem read_token(tokenizer* t, lisp_token* token)
{
    token->is_quoted = t->text[t->at] == '\'';
    if (token->is_quoted) ++t->at;
    const char c = t->text[t->at];
    token->is_string = c == '"';
    std::uint64_t begin = t->at;
    std::uint64_t end = begin;
    if (c == '(' || c == ')') {
        end = begin + 1;
        t->at = end;
    } else if (c == '"') {
        begin = ++t->at;
        if (!scan_string(t, &end)) return lisp_read_open_string;
        t->at = end + 1;
    } else {
        while (!ends_atom(t->text[end])) ++end;
        t->at = end;
        if (end == begin) {
            lisp_fatal("tokenize() -> empty token!\n");
            return lisp_read_empty_token;
        }
    }
    return set_text(token, t->text + begin, end - begin);
}

static bool is_parenthesis(const lisp_token* token, char which)
{
    return !token->is_string && token->length == 1 && token->text[0] == which;
}

static lisp_read_problem follow_depth(tokenizer* t, const lisp_token* token)
{
    if (is_parenthesis(token, '(')) {
        ++t->depth;
        if (!token->is_quoted) return lisp_read_fine;
        if (t->quoted_depth != 0) return lisp_read_nested_quote;
        t->quoted_depth = t->depth;
    } else if (is_parenthesis(token, ')')) {
        if (t->depth == t->quoted_depth) t->quoted_depth = 0;
        --t->depth;
    }
    return lisp_read_fine;
}

std::uint32_t lisp_tokenize(lisp_tokens* out, const char* text)
{
    tokenizer t = {out, text, 0, 0, 0};
    bool is_complete = false;
    out->count = 0;
    out->problem = lisp_read_fine;
    for (;;) {
        while (is_space(text[t.at])) ++t.at;
        if (text[t.at] == '\0' || is_complete) break;
        if (out->count == lisp_token_limit) return give_up(&t, lisp_read_many_tokens, t.at);
        const std::uint64_t begin = t.at;
        lisp_token* token = &out->tokens[out->count++];
        lisp_read_problem problem = read_token(&t, token);
        if (problem == lisp_read_fine) problem = follow_depth(&t, token);
        if (problem != lisp_read_fine) return give_up(&t, problem, begin);
        is_complete = is_parenthesis(token, ')') && t.depth < 1;
    }
    if (t.depth > 0) return give_up(&t, lisp_read_open_list, t.at);
    if (out->count == 0) return give_up(&t, lisp_read_nothing, t.at);
    out->consumed = t.at;
    return out->count;
}

static bool equals(const char* text, std::uint64_t length, const char* word)
{
    return std::strlen(word) == length && std::memcmp(text, word, length) == 0;
}

bool lisp_is_keyword_text(const char* text, std::uint64_t length)
{
    if (length < 2 || text[0] != ':') return false;
    for (std::uint64_t i = 1; i < length; ++i)
        if (!lisp_is_keyword_character(text[i])) return false;
    return true;
}

bool lisp_is_symbol_text(const char* text, std::uint64_t length)
{
    for (std::uint64_t i = 0; i < length; ++i)
        if (text[i] == '\0' || std::strchr("()'\":;# ", text[i]) != nullptr) return false;
    return length != 0;
}

static bool is_hexadecimal(const char* text, std::uint64_t length)
{
    if (length < 3 || text[0] != '0' || text[1] != 'x') return false;
    for (std::uint64_t i = 2; i < length; ++i)
        if (!lisp_is_digit(text[i]) && !(text[i] >= 'a' && text[i] <= 'f')) return false;
    return true;
}

/* Digits with at most one point inside, behind an optional sign. */
static lisp_kind classify_number(const char* text, std::uint64_t length)
{
    std::uint64_t i = text[0] == '+' || text[0] == '-' ? 1 : 0;
    if (i == length || !lisp_is_digit(text[i]) || !lisp_is_digit(text[length - 1])) return lisp_kind_other;
    std::uint64_t points = 0;
    for (; i < length; ++i) {
        if (text[i] == '.')
            ++points;
        else if (!lisp_is_digit(text[i]))
            return lisp_kind_other;
    }
    return points == 0 ? lisp_kind_integer : points == 1 ? lisp_kind_float : lisp_kind_other;
}

lisp_kind lisp_classify(const char* text, std::uint64_t length)
{
    if (length == 0) return lisp_kind_other;
    if (text[0] == ':') {
        if (equals(text, length, ":true") || equals(text, length, ":false")) return lisp_kind_boolean;
        if (equals(text, length, ":nil")) return lisp_kind_nil;
        return lisp_is_keyword_text(text, length) ? lisp_kind_keyword : lisp_kind_other;
    }
    if (is_hexadecimal(text, length)) return lisp_kind_integer;
    const lisp_kind number = classify_number(text, length);
    if (number != lisp_kind_other) return number;
    return lisp_is_symbol_text(text, length) ? lisp_kind_symbol : lisp_kind_other;
}
