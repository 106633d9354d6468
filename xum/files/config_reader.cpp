#include <xum/files/config_reader.h>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace

std::unique_ptr<ConfigSection> ConfigReader::read()
{
    ConfigToken token;
    while (readToken(token)) take(token);
    if (!root || current != nullptr) failAtEnd();
    return std::move(root);
}

bool ConfigReader::readToken(ConfigToken& out)
{
    while (position < text.size() && isBlank(text[position])) ++position;
    if (position == text.size()) return false;
    if (text[position] != '<')
        throw ConfigSyntaxError{std::string("tokenize() -> expecting '<' got '") + text[position] + "'!", position};
    // Quotes do not count here: a '>' inside a value ends the tag.
    const std::size_t end = text.find('>', position);
    if (end == std::string_view::npos)
        throw ConfigSyntaxError{"tokenize() -> end of file reached before finding a closing tag!", position};
    out = ConfigToken(text.substr(position, end + 1 - position), position);
    position = end + 1;
    return true;
}

void ConfigReader::take(const ConfigToken& token)
{
    if (!root) { // Kept on purpose: whatever kind of tag comes first opens the root section
        open(token);
        return;
    }
    if (current == nullptr) return; // behind the root section
    hasJustOpened = false;
    switch (token.getKind()) {
    case ConfigToken::Kind::Section: open(token); return;
    case ConfigToken::Kind::Entry:
        current->putEntry(std::unique_ptr<ConfigEntry>(new ConfigEntry(token.getName(), token.getValue())));
        return;
    case ConfigToken::Kind::Close: // Kept on purpose: whatever name it has
        current = current->parent;
        openTags.pop_back();
        return;
    case ConfigToken::Kind::Invalid: break; // cannot be: a token that was read is valid
    }
}

void ConfigReader::open(const ConfigToken& token)
{
    std::unique_ptr<ConfigSection> section(new ConfigSection(token.getName(), current));
    ConfigSection* const opened = section.get();
    openTags.push_back(token.getPosition());
    if (root)
        current->appendSection(std::move(section));
    else
        root = std::move(section);
    current = opened;
    hasJustOpened = true;
}

void ConfigReader::failAtEnd() const
{
    const std::size_t where = openTags.empty() ? text.size() : openTags.back();
    if (!root || hasJustOpened) throw ConfigSyntaxError{"readSection() -> section needs at least 2 tokens!", where};
    throw ConfigSyntaxError{"readSection() -> empty token list while parsing!", where};
}
