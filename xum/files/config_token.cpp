#include <xum/files/config_token.h>

ConfigToken::ConfigToken(std::string_view tag, std::size_t position) : position(position)
{
    if (tag.size() < 2)
        throw ConfigSyntaxError{"Token::Token() -> invalid token '" + std::string(tag) + "'!", position};
    if (tag[1] == '/') {
        kind = Kind::Close;
        name = tag.substr(2, tag.size() - 3);
    } else if (tag[tag.size() - 2] != '/') {
        kind = Kind::Section;
        name = tag.substr(1, tag.size() - 2);
    } else {
        kind = Kind::Entry;
        readEntry(tag);
    }
}

void ConfigToken::readEntry(std::string_view tag)
{
    std::size_t spaces = 0;
    std::size_t firstSpace = tag.size();
    bool isQuoted = false;
    for (std::size_t i = 1; i < tag.size(); ++i) {
        if (tag[i] == '"') {
            isQuoted = !isQuoted;
        } else if (tag[i] == ' ' && !isQuoted) {
            if (spaces++ == 0) firstSpace = i;
        }
    }
    name = tag.substr(1, firstSpace - 1);
    const auto fail = [this](const char* problem) {
        throw ConfigSyntaxError{"Token::Token(" + std::string(name) + ") -> " + problem, position};
    };
    if (spaces != 1) fail("invalid number of spaces inside entry!");
    if (isQuoted) fail("mismatched quotes!");

    value = tag.substr(firstSpace + 1, tag.size() - firstSpace - 3);
    // Quotes elsewhere are part of the value.
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
}

std::string_view ConfigToken::getName() const
{
    if (kind == Kind::Invalid) throw ConfigSyntaxError{"Token::getName() for invalid token called!", position};
    return name;
}

std::string_view ConfigToken::getValue() const
{
    if (kind != Kind::Entry) throw ConfigSyntaxError{"Token::getValue() for invalid token called!", position};
    return value;
}
