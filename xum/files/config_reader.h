#pragma once

#include <xum/files/config_section.h>
#include <xum/files/config_token.h>

#include <memory>
#include <string_view>
#include <vector>

/// Reads a configuration text, in one pass.
class ConfigReader {
public:
    /// The text must outlive the reader.
    explicit ConfigReader(std::string_view text) : text(text) {}

    /// The root section; what follows it is only checked tag by tag. Throws ConfigSyntaxError: a broken tag anywhere
    /// goes before a section that is not closed. Throws std::bad_alloc when memory runs out.
    std::unique_ptr<ConfigSection> read();

private:
    /// The next tag; false behind the last one.
    bool readToken(ConfigToken& out);
    void take(const ConfigToken& token);
    void open(const ConfigToken& token);
    [[noreturn]] void failAtEnd() const;

    std::string_view text;
    std::size_t position = 0;
    std::unique_ptr<ConfigSection> root;
    ConfigSection* current = nullptr;  // null before the root section and behind it
    std::vector<std::size_t> openTags; // the positions of the sections that are open
    bool hasJustOpened = false;        // the last tag opened a section
};
