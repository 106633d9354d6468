#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

/// The bytes that a text names by two hexadecimal digits each, with spaces anywhere between them.
inline std::string bytesOf(const std::string& digits)
{
    const auto valueOf = [](char digit) {
        const std::size_t value = std::string("0123456789abcdef").find(digit);
        if (value == std::string::npos) throw std::invalid_argument("no hexadecimal digit");
        return value;
    };
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); ++i)
        if (digits[i] != ' ') {
            bytes += static_cast<char>(valueOf(digits.at(i)) * 16 + valueOf(digits.at(i + 1)));
            ++i;
        }
    return bytes;
}

/// As the file formats have them: little-endian.
inline std::string bytesOf(std::uint32_t number)
{
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

inline std::string bytesOf(float number)
{
    std::uint32_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return bytesOf(bits);
}

/// With other bytes in the place of some.
inline std::string withBytes(std::string bytes, std::size_t place, const std::string& others)
{
    return bytes.replace(place, others.size(), others);
}
