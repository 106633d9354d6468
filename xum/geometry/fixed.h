#pragma once

#include <xum/engine/export.h>

#include <cstdint>
#include <iosfwd>

/// A fixed-point number as it is stored: the raw 32-bit value. How many bits are fraction is the owner's agreement.
struct XUM_API Fixed {
    std::int32_t raw = 0;

    constexpr Fixed() = default;
    explicit constexpr Fixed(std::int32_t raw) : raw(raw) {}

    constexpr friend bool operator==(const Fixed& a, const Fixed& b) { return a.raw == b.raw; }
    constexpr friend bool operator!=(const Fixed& a, const Fixed& b) { return !(a == b); }
};

/// Writes "Fixed(RAW)" with the raw value in decimal, then ends the line and flushes.
XUM_API std::ostream& operator<<(std::ostream& stream, const Fixed& value);
