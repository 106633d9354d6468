#include <xum/lisp/lisp_builtins.h>
#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_type.h>

#include <cstring>

// Comparison, arithmetic and bits. The signatures have established that the operands of arithmetic have one type.

LISP_NATIVE(lisp_native_equal)
{
    lisp_set_boolean(interpreter, result, lisp_values_are_equal(&arguments[0], &arguments[1]));
}

LISP_NATIVE(lisp_native_less)
{
    switch (arguments[0].type->kind) {
    case lisp_kind_byte:
    case lisp_kind_integer:
        lisp_set_boolean(interpreter, result, arguments[0].payload.integer < arguments[1].payload.integer);
        break;
    case lisp_kind_float:
        lisp_set_boolean(interpreter, result, arguments[0].payload.real < arguments[1].payload.real);
        break;
    default: break;
    }
}

/* 64-bit arithmetic wraps, which only unsigned types may do. */
static std::int64_t add(std::int64_t a, std::int64_t b)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

static std::int64_t subtract(std::int64_t a, std::int64_t b)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

static std::int64_t multiply(std::int64_t a, std::int64_t b)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

/* Truncating; the smallest integer by -1 wraps to itself, where the processor would trap. */
static std::int64_t divide(std::int64_t a, std::int64_t b)
{
    return b == -1 ? subtract(0, a) : a / b;
}

template <class Integer, class Real>
static void fold(lisp_interpreter* interpreter, const lisp_object* arguments, std::uint32_t count, lisp_object* result,
                 Integer integer, Real real)
{
    if (arguments[0].type->kind == lisp_kind_integer) {
        std::int64_t value = arguments[0].payload.integer;
        for (std::uint32_t i = 1; i < count; ++i) value = integer(value, arguments[i].payload.integer);
        lisp_set_integer(interpreter, result, value);
    } else if (arguments[0].type->kind == lisp_kind_float) {
        double value = arguments[0].payload.real;
        for (std::uint32_t i = 1; i < count; ++i) value = real(value, arguments[i].payload.real);
        lisp_set_float(interpreter, result, value);
    }
}

static void concatenate(lisp_interpreter* interpreter, const lisp_object* arguments, std::uint32_t count,
                        lisp_object* result)
{
    std::uint64_t length = 0;
    for (std::uint32_t i = 0; i < count; ++i) length += arguments[i].payload.string->length;
    lisp_string* string = lisp_make_string(interpreter, length);
    if (string == nullptr) return;
    char* out = string->characters;
    for (std::uint32_t i = 0; i < count; ++i) {
        const lisp_string* part = arguments[i].payload.string;
        std::memcpy(out, part->characters, part->length);
        out += part->length;
    }
    lisp_set_string(interpreter, result, string);
}

LISP_NATIVE(lisp_native_add)
{
    if (arguments[0].type->kind == lisp_kind_string)
        concatenate(interpreter, arguments, count, result);
    else
        fold(interpreter, arguments, count, result, add, [](double a, double b) { return a + b; });
}

LISP_NATIVE(lisp_native_subtract)
{
    if (count > 1) {
        fold(interpreter, arguments, count, result, subtract, [](double a, double b) { return a - b; });
    } else if (arguments[0].type->kind == lisp_kind_integer) {
        lisp_set_integer(interpreter, result, subtract(0, arguments[0].payload.integer));
    } else if (arguments[0].type->kind == lisp_kind_float) {
        lisp_set_float(interpreter, result, -arguments[0].payload.real);
    }
}

LISP_NATIVE(lisp_native_multiply)
{
    fold(interpreter, arguments, count, result, multiply, [](double a, double b) { return a * b; });
}

static bool is_zero(const lisp_object* object)
{
    return object->type->kind == lisp_kind_float ? object->payload.real == 0.0 : object->payload.integer == 0;
}

LISP_NATIVE(lisp_native_divide)
{
    const lisp_kind kind = arguments[0].type->kind;
    if (kind != lisp_kind_integer && kind != lisp_kind_float) return;
    for (std::uint32_t i = 1; i < count; ++i) {
        if (!is_zero(&arguments[i])) continue;
        lisp_print_line(interpreter, "error: division by zero!");
        return;
    }
    fold(interpreter, arguments, count, result, divide, [](double a, double b) { return a / b; });
}

static bool is_bit(std::int64_t index)
{
    return index >= 0 && index < 64;
}

LISP_NATIVE(lisp_native_bit_get)
{
    const std::int64_t index = arguments[0].payload.integer;
    const std::uint64_t value = static_cast<std::uint64_t>(arguments[1].payload.integer);
    lisp_set_boolean(interpreter, result, is_bit(index) && (value >> index & 1) != 0);
}

LISP_NATIVE(lisp_native_bit_set)
{
    const std::int64_t index = arguments[0].payload.integer;
    const std::uint64_t bit = is_bit(index) ? std::uint64_t{1} << index : 0;
    lisp_set_integer(interpreter, result,
                     static_cast<std::int64_t>(static_cast<std::uint64_t>(arguments[1].payload.integer) | bit));
}

LISP_NATIVE(lisp_native_bit_or)
{
    lisp_set_integer(interpreter, result, arguments[0].payload.integer | arguments[1].payload.integer);
}

LISP_NATIVE(lisp_native_bit_and)
{
    lisp_set_integer(interpreter, result, arguments[0].payload.integer & arguments[1].payload.integer);
}

LISP_NATIVE(lisp_native_bit_not)
{
    lisp_set_integer(interpreter, result, ~arguments[0].payload.integer);
}

LISP_NATIVE(lisp_native_bit_xor)
{
    lisp_set_integer(interpreter, result, arguments[0].payload.integer ^ arguments[1].payload.integer);
}

/* To the left for counts of 0 and more, to the right, keeping the sign, for negative ones. */
LISP_NATIVE(lisp_native_bit_shift)
{
    const std::int64_t shift = arguments[0].payload.integer;
    const std::int64_t value = arguments[1].payload.integer;
    std::int64_t shifted = 0;
    if (shift >= 0 && shift < 64)
        shifted = static_cast<std::int64_t>(static_cast<std::uint64_t>(value) << shift);
    else if (shift < 0)
        shifted = value >> (shift > -64 ? -shift : 63);
    lisp_set_integer(interpreter, result, shifted);
}
