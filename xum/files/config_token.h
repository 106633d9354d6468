#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Why a text is no configuration: the message for the user, and the position in the text that it is about.
struct ConfigSyntaxError {
    std::string message;
    std::size_t position;
};

/// One tag of a configuration text.
class ConfigToken {
public:
    enum class Kind : unsigned char {
        Invalid = 0,
        Section = 1, ///< <name> opens a section
        Entry = 2,   ///< <name value/> or <name "a value"/>
        Close = 3,   ///< </name> closes the innermost section
    };

    ConfigToken() = default;

    /// Of the text from '<' to '>' inclusive, which must outlive the token. Throws ConfigSyntaxError.
    ConfigToken(std::string_view tag, std::size_t position);

    Kind getKind() const { return kind; }

    /// Throws ConfigSyntaxError for an invalid token.
    std::string_view getName() const;

    /// Throws ConfigSyntaxError for all but an entry.
    std::string_view getValue() const;

    /// Of its '<' in the text.
    std::size_t getPosition() const { return position; }

private:
    void readEntry(std::string_view tag);

    Kind kind = Kind::Invalid;
    std::string_view name;
    std::string_view value;
    std::size_t position = 0;
};
