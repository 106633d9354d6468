#pragma once

/// @file
/// A place on an integer grid and how it is printed.

#include <xum/engine/export.h>

#include <cstdint>
#include <iosfwd>

/// A place on an integer grid.
struct XUM_API Position {
    /// Counted in cells; what a cell is, the host says.
    /// @{
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t z = 0;
    /// @}

    constexpr Position() = default;
    /// The components in their order.
    constexpr Position(std::int32_t x, std::int32_t y, std::int32_t z) : x(x), y(y), z(z) {}

    /// Component by component.
    /// @{
    constexpr friend bool operator==(const Position& a, const Position& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    constexpr friend bool operator!=(const Position& a, const Position& b) { return !(a == b); }
    /// @}
};

/// Writes "Position(X, Y, Z)", then ends the line and flushes.
XUM_API std::ostream& operator<<(std::ostream& stream, const Position& position);
