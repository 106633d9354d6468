#include <xum/lisp/lisp_convert.h>

#include <xum/lisp/lisp_call.h>
#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_token.h>
#include <xum/lisp/lisp_type.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

static bool is_hexadecimal_digit(char c)
{
    return lisp_is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

static unsigned hexadecimal_value(char c)
{
    return lisp_is_digit(c) ? static_cast<unsigned>(c - '0') : (static_cast<unsigned>(c) | 0x20u) - 'a' + 10u;
}

enum hexadecimal_result { hexadecimal_fits, hexadecimal_malformed, hexadecimal_too_large };

static hexadecimal_result parse_hexadecimal(const char* text, std::uint64_t length, std::int64_t* out)
{
    if (text[0] != '0' || length < 3) return hexadecimal_malformed;
    std::uint64_t value = 0;
    for (std::uint64_t i = 2; i < length; ++i) {
        if (!is_hexadecimal_digit(text[i])) return hexadecimal_malformed;
        value = value << 4 | hexadecimal_value(text[i]);
    }
    *out = static_cast<std::int64_t>(value);
    return length > 18 ? hexadecimal_too_large : hexadecimal_fits;
}

static bool looks_hexadecimal(const char* text, std::uint64_t length)
{
    return length > 1 && text[1] == 'x';
}

/* True for exactly the texts that printing gives back: digits without a leading zero, in the 64-bit range. */
static bool parse_decimal(const char* text, std::uint64_t length, std::int64_t* out)
{
    const bool is_negative = length != 0 && text[0] == '-';
    const std::uint64_t begin = is_negative ? 1 : 0;
    const std::uint64_t digits = length - begin;
    if (digits == 0 || digits > 19) return false;
    if (text[begin] == '0' && (digits > 1 || is_negative)) return false;
    std::uint64_t value = 0; // 19 digits fit
    for (std::uint64_t i = begin; i < length; ++i) {
        if (!lisp_is_digit(text[i])) return false;
        value = value * 10 + static_cast<std::uint64_t>(text[i] - '0');
    }
    const std::uint64_t most = static_cast<std::uint64_t>(INT64_MAX) + (is_negative ? 1 : 0);
    if (value > most) return false;
    *out = static_cast<std::int64_t>(is_negative ? 0 - value : value);
    return true;
}

static bool parse_signed_decimal(const char* text, std::uint64_t length, std::int64_t* out)
{
    const std::uint64_t sign = length > 1 && text[0] == '+' && text[1] != '-' ? 1 : 0;
    return parse_decimal(text + sign, length - sign, out);
}

bool lisp_is_integer_text(const char* text, std::uint64_t length, std::int64_t* out)
{
    if (looks_hexadecimal(text, length)) return parse_hexadecimal(text, length, out) == hexadecimal_fits;
    return parse_signed_decimal(text, length, out);
}

bool lisp_parse_integer(lisp_interpreter* interpreter, const char* text, std::uint64_t length, std::int64_t* out)
{
    if (looks_hexadecimal(text, length)) {
        const hexadecimal_result parsed = parse_hexadecimal(text, length, out);
        if (parsed == hexadecimal_too_large) lisp_print_line(interpreter, "error: hex value too large!");
        return parsed == hexadecimal_fits;
    }
    if (parse_signed_decimal(text, length, out)) return true;
    lisp_print_line(interpreter, "error: integer under/overflow!");
    return false;
}

/* The two agree on plain digits, where strtod is faster: sscanf measures the whole text first. */
bool lisp_parse_float(const char* text, std::uint64_t length, double* out)
{
    if (lisp_classify(text, length) == lisp_kind_float) {
        *out = std::strtod(text, nullptr);
        return true;
    }
    return std::sscanf(text, "%lf", out) == 1;
}

bool lisp_value_from_text(lisp_interpreter* interpreter, lisp_kind kind, const char* text, std::uint64_t length,
                          lisp_object* result)
{
    std::int64_t integer = 0;
    double real = 0.0;
    switch (kind) {
    case lisp_kind_integer:
        if (!lisp_parse_integer(interpreter, text, length, &integer)) return false;
        lisp_set_integer(interpreter, result, integer);
        return true;
    case lisp_kind_float:
        if (!lisp_parse_float(text, length, &real)) return false;
        lisp_set_float(interpreter, result, real);
        return true;
    case lisp_kind_boolean: {
        const bool is_true = length == 5 && std::memcmp(text, ":true", 5) == 0;
        const bool is_false = length == 6 && std::memcmp(text, ":false", 6) == 0;
        if (is_true || is_false) lisp_set_boolean(interpreter, result, is_true);
        return is_true || is_false;
    }
    case lisp_kind_keyword: {
        if (!lisp_is_keyword_text(text, length)) return false;
        lisp_name* name = lisp_intern(interpreter, text, length);
        if (name == nullptr) {
            lisp_out_of_memory(interpreter);
            return false;
        }
        lisp_set_keyword(interpreter, result, &name->text);
        return true;
    }
    case lisp_kind_symbol: {
        if (!lisp_is_symbol_text(text, length)) return false;
        lisp_name* name = lisp_intern(interpreter, text, length);
        if (name == nullptr) lisp_out_of_memory(interpreter);
        const lisp_object* symbol = name != nullptr ? lisp_make_symbol(interpreter, name) : nullptr;
        if (symbol == nullptr) return false;
        lisp_copy_value(result, symbol);
        return true;
    }
    case lisp_kind_string: return lisp_set_text(interpreter, result, text, length);
    default: return false;
    }
}

bool lisp_has_default_to_string(const lisp_type* type)
{
    switch (type->kind) {
    case lisp_kind_nil:
    case lisp_kind_keyword:
    case lisp_kind_symbol:
    case lisp_kind_boolean:
    case lisp_kind_byte:
    case lisp_kind_integer:
    case lisp_kind_float:
    case lisp_kind_string: return false;
    case lisp_kind_other: return type->to_string == nullptr;
    default: return true;
    }
}

static void use_buffer(lisp_interpreter* interpreter, int written, const char** text, std::uint64_t* length)
{
    const std::uint64_t size = written < 0 ? 0 : static_cast<std::uint64_t>(written);
    *text = interpreter->conversion;
    *length = size < lisp_conversion_size ? size : lisp_conversion_size - 1;
}

static constexpr std::size_t decimal_size = 24;

/* Writes the digits at the end of the buffer; where they begin. Hashing a number needs them all the time. */
static char* write_decimal(char* buffer, std::int64_t value)
{
    char* begin = buffer + decimal_size - 1;
    *begin = '\0';
    std::uint64_t rest = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    do {
        *--begin = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (value < 0) *--begin = '-';
    return begin;
}

bool lisp_text_of_value(lisp_interpreter* interpreter, const lisp_object* value, const char** text,
                        std::uint64_t* length)
{
    const auto use = [&](const char* word) {
        *text = word;
        *length = std::strlen(word);
    };
    switch (value->type->kind) {
    case lisp_kind_nil: use(":nil"); return true;
    case lisp_kind_boolean: use(value->payload.integer != 0 ? ":true" : ":false"); return true;
    case lisp_kind_keyword:
    case lisp_kind_string:
        *text = value->payload.string->characters;
        *length = value->payload.string->length;
        return true;
    case lisp_kind_symbol:
        *text = value->payload.symbol->name->text.characters;
        *length = value->payload.symbol->name->text.length;
        return true;
    case lisp_kind_byte:
    case lisp_kind_integer:
        *text = write_decimal(interpreter->conversion, value->payload.integer);
        *length = static_cast<std::uint64_t>(interpreter->conversion + decimal_size - 1 - *text);
        return true;
    case lisp_kind_float:
        use_buffer(interpreter,
                   std::snprintf(interpreter->conversion, lisp_conversion_size, "%lf", value->payload.real), text,
                   length);
        return true;
    default:
        // The record's address, not the object's: it stays the same from one evaluation to the next.
        use_buffer(
            interpreter,
            std::snprintf(interpreter->conversion, lisp_conversion_size, "%s (%llx)", value->type->name,
                          static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(value->payload.pointer))),
            text, length);
        return true;
    }
}

void lisp_value_to_string(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* value,
                          lisp_object* result)
{
    switch (value->type->kind) {
    case lisp_kind_string: lisp_copy_value(result, value); return;
    case lisp_kind_keyword: lisp_set_string(interpreter, result, value->payload.string); return;
    case lisp_kind_symbol: lisp_set_string(interpreter, result, &value->payload.symbol->name->text); return;
    default: break;
    }
    if (value->type->to_string != nullptr && value->type->kind == lisp_kind_other) {
        lisp_apply(interpreter, environment, value->type->to_string->payload.closure, value, 1, result);
        return;
    }
    const char* text = nullptr;
    std::uint64_t length = 0;
    if (lisp_text_of_value(interpreter, value, &text, &length)) lisp_set_text(interpreter, result, text, length);
}

void lisp_value_from_string(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_type* type,
                            const lisp_object* text, lisp_object* result)
{
    if (type->kind == lisp_kind_string) {
        lisp_copy_value(result, text);
        return;
    }
    if (type->kind != lisp_kind_other) {
        const lisp_string* string = text->payload.string;
        lisp_value_from_text(interpreter, type->kind, string->characters, string->length, result);
        return;
    }
    if (type->from_string == nullptr) return;
    lisp_object arguments[2] = {};
    lisp_set_keyword(interpreter, &arguments[0], type->name_string);
    lisp_copy_value(&arguments[1], text);
    lisp_apply(interpreter, environment, type->from_string->payload.closure, arguments, 2, result);
}

static bool hash_by_closure(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* converter,
                            const lisp_object* value, std::uint64_t* hash)
{
    lisp_object result = {};
    lisp_set_nil(interpreter, &result);
    lisp_apply(interpreter, environment, converter->payload.closure, value, 1, &result);
    *hash = static_cast<std::uint64_t>(result.payload.integer);
    return result.type->kind == lisp_kind_integer;
}

static bool hash_of_user_text(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* value,
                              std::uint64_t* hash)
{
    lisp_object text = {};
    lisp_set_nil(interpreter, &text);
    lisp_value_to_string(interpreter, environment, value, &text);
    if (text.type->kind != lisp_kind_string) return false;
    *hash = lisp_string_hash(text.payload.string->characters, text.payload.string->length);
    return true;
}

bool lisp_hash_of_value(lisp_interpreter* interpreter, lisp_environment* environment, const lisp_object* value,
                        std::uint64_t* hash)
{
    const lisp_type* type = value->type;
    if (type->kind == lisp_kind_nil) return false;
    if (type->to_hash != nullptr && type->kind == lisp_kind_other)
        return hash_by_closure(interpreter, environment, type->to_hash, value, hash);
    if (type->to_string != nullptr && type->kind == lisp_kind_other)
        return hash_of_user_text(interpreter, environment, value, hash);

    if (type->kind == lisp_kind_byte) {
        char text[8];
        const int length = std::snprintf(text, sizeof text, "b%d", static_cast<int>(value->payload.integer));
        *hash = lisp_string_hash(text, static_cast<std::uint64_t>(length));
        return true;
    }
    lisp_object zero = *value;
    const bool is_zero = type->kind == lisp_kind_float && value->payload.real == 0.0;
    if (is_zero) zero.payload.real = 0.0; // 0.0 and -0.0 are equal and must fall into one bucket
    const char* text = nullptr;
    std::uint64_t length = 0;
    if (!lisp_text_of_value(interpreter, &zero, &text, &length)) return false;
    *hash = lisp_string_hash(text, length);
    return true;
}

static bool texts_are_equal(const lisp_string* a, const lisp_string* b)
{
    return a == b || (a->length == b->length && std::memcmp(a->characters, b->characters, a->length) == 0);
}

bool lisp_values_are_equal(const lisp_object* a, const lisp_object* b)
{
    if (a->type != b->type) return false;
    switch (a->type->kind) {
    case lisp_kind_nil: return true;
    case lisp_kind_boolean:
    case lisp_kind_byte:
    case lisp_kind_integer: return a->payload.integer == b->payload.integer;
    case lisp_kind_float: return a->payload.real == b->payload.real;
    case lisp_kind_string:
    case lisp_kind_keyword: return texts_are_equal(a->payload.string, b->payload.string);
    case lisp_kind_symbol: return a->payload.symbol->name == b->payload.symbol->name;
    default: return a->payload.pointer == b->payload.pointer;
    }
}
