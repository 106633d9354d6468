#pragma once

/// @file
/// A fixed-point number and how it is printed.

#include <xum/engine/export.h>

#include <cstdint>
#include <iosfwd>

/// A fixed-point number as it is stored: the raw 32-bit value. How many bits are fraction is the owner's agreement.
struct XUM_API Fixed {
    std::int32_t raw = 0; ///< the number times 2 to the power of the fraction's bits

    constexpr Fixed() = default;
    /// Takes the stored value, not a whole number.
    explicit constexpr Fixed(std::int32_t raw) : raw(raw) {}

    /// Of the raw values.
    /// @{
    constexpr friend bool operator==(const Fixed& a, const Fixed& b) { return a.raw == b.raw; }
    constexpr friend bool operator!=(const Fixed& a, const Fixed& b) { return !(a == b); }
    /// @}
};

/// Writes "Fixed(RAW)" with the raw value in decimal, then ends the line and flushes.
XUM_API std::ostream& operator<<(std::ostream& stream, const Fixed& value);
