#pragma once

#include <string>

/// What becomes of a configuration text.
struct ConfigOutcome {
    std::string tree;     ///< as describe() writes it; empty when the text is refused
    std::string message;  ///< why it is refused
    std::size_t position; ///< what the message is about; 0 without one

    bool operator==(const ConfigOutcome&) const = default;
};

/// The outcome by the rules of the format, taken literally and in two passes: all tags first, then the tree. Recurses.
ConfigOutcome readByTheRules(const std::string& text);
