#pragma once

#include <xum/lisp/lisp.h>

/// Cutting text into tokens, and telling from a token's spelling which type it belongs to.

constexpr std::uint32_t lisp_token_limit = 1000;
constexpr std::uint32_t lisp_token_size = 128; // with the zero behind the text

struct lisp_token {
    bool is_quoted; // an apostrophe stood directly before it
    bool is_string; // the contents of a double-quoted string
    bool is_hash;   // an atom that begins with '#'
    std::uint8_t length;
    char text[lisp_token_size];
};

/// Why an expression is unreadable; scripts are not told, tools are.
enum lisp_read_problem {
    lisp_read_fine,
    lisp_read_nothing, // only whitespace
    lisp_read_open_list,
    lisp_read_open_string,
    lisp_read_long_token,
    lisp_read_many_tokens,
    lisp_read_nested_quote,
    lisp_read_empty_token,
};

struct lisp_tokens {
    std::uint32_t count;
    std::uint64_t consumed;    // where reading stopped, as an offset into the text
    lisp_read_problem problem; // set when the count is 0
    std::uint64_t problem_offset;
    lisp_token tokens[lisp_token_limit]; // not cleared: only the first `count` are set
};

/// Cuts the first complete top-level list, or all tokens up to the end, from a NUL-terminated text. The number of
/// tokens; 0 when the expression is unreadable or there is none.
std::uint32_t lisp_tokenize(lisp_tokens* out, const char* text);

/// The type that an atom's spelling belongs to; lisp_kind_other when it fits none.
lisp_kind lisp_classify(const char* text, std::uint64_t length);

bool lisp_is_keyword_text(const char* text, std::uint64_t length);
bool lisp_is_symbol_text(const char* text, std::uint64_t length);

inline bool lisp_is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// A letter, a digit or '-'.
inline bool lisp_is_keyword_character(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || lisp_is_digit(c) || c == '-';
}
