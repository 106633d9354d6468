#pragma once

#include <string>
#include <string_view>

/// A text from a file for a line of output: control characters, which would end the line or drive the terminal, become
/// \xHH.
inline std::string printable(std::string_view text)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string shown;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code >= 0x20 && code != 0x7F)
            shown += character;
        else
            shown.append("\\x") += {digits[code >> 4], digits[code & 15]};
    }
    return shown;
}
