#include "config_reference.h"

#include "config_tree.h"

#include <list>
#include <utility>
#include <vector>

namespace {

struct Refusal {
    std::string message;
    std::size_t position;
};

struct Tag {
    std::string text;
    std::size_t position = 0;
    int kind = 0;
    std::string name;
    std::string value;
};

struct Section {
    std::string name;
    std::vector<Section> sections;
    std::vector<std::pair<std::string, std::string>> entries;
};

bool hasOpenQuotes(const std::string& text)
{
    bool isOpen = false;
    for (const char character : text)
        if (character == '"') isOpen = !isOpen;
    return isOpen;
}

Tag classify(const std::string& text, std::size_t position)
{
    Tag tag;
    tag.text = text;
    tag.position = position;
    if (text.length() < 2) throw Refusal{"Token::Token() -> invalid token '" + text + "'!", position};
    if (text.compare(0, 2, "</") == 0) {
        tag.kind = 3;
        tag.name = text.substr(2, text.length() - 3);
        return tag;
    }
    if (text.compare(text.length() - 2, 2, "/>") != 0) {
        tag.kind = 1;
        tag.name = text.substr(1, text.length() - 2);
        return tag;
    }
    tag.kind = 2;
    std::vector<std::size_t> spaces;
    for (std::size_t i = 0; i < text.length(); ++i)
        if (text[i] == ' ' && !hasOpenQuotes(text.substr(0, i))) spaces.push_back(i);
    tag.name = spaces.empty() ? text.substr(1) : text.substr(1, spaces[0] - 1);
    if (spaces.size() != 1)
        throw Refusal{"Token::Token(" + tag.name + ") -> invalid number of spaces inside entry!", position};
    if (hasOpenQuotes(text)) throw Refusal{"Token::Token(" + tag.name + ") -> mismatched quotes!", position};
    tag.value = text.substr(spaces[0] + 1);
    tag.value.erase(tag.value.length() - 2);
    if (tag.value.length() >= 2 && tag.value[0] == '"' && tag.value[tag.value.length() - 1] == '"')
        tag.value = tag.value.substr(1, tag.value.length() - 2);
    return tag;
}

std::list<Tag> tokenize(const std::string& text)
{
    std::list<Tag> tags;
    std::size_t i = 0;
    for (;;) {
        while (i < text.length() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\r' || text[i] == '\n')) ++i;
        if (i == text.length()) return tags;
        if (text[i] != '<') throw Refusal{"tokenize() -> expecting '<' got '" + text.substr(i, 1) + "'!", i};
        std::size_t end = i;
        while (end < text.length() && text[end] != '>') ++end;
        if (end == text.length()) throw Refusal{"tokenize() -> end of file reached before finding a closing tag!", i};
        tags.push_back(classify(text.substr(i, end - i + 1), i));
        i = end + 1;
    }
}

Section readSection(std::list<Tag>& tags, std::size_t length)
{
    if (tags.size() < 2)
        throw Refusal{"readSection() -> section needs at least 2 tokens!",
                      tags.empty() ? length : tags.front().position};
    const std::size_t position = tags.front().position;
    Section section;
    section.name = tags.front().name;
    tags.pop_front();
    for (;;) {
        if (tags.empty()) throw Refusal{"readSection() -> empty token list while parsing!", position};
        const Tag front = tags.front();
        if (front.kind == 1) {
            section.sections.push_back(readSection(tags, length));
            continue;
        }
        tags.pop_front();
        if (front.kind == 3) return section;
        bool isReplaced = false;
        for (auto& [name, value] : section.entries) {
            if (name != front.name) continue;
            value = front.value;
            isReplaced = true;
        }
        if (!isReplaced) section.entries.emplace_back(front.name, front.value);
    }
}

std::string describe(const Section& section)
{
    std::string text = escaped(section.name) + "{";
    for (const Section& child : section.sections) text += describe(child);
    for (const auto& [name, value] : section.entries) text += escaped(name) + "=" + escaped(value) + ";";
    return text + "}";
}

} // namespace

ConfigOutcome readByTheRules(const std::string& text)
{
    try {
        std::list<Tag> tags = tokenize(text);
        return {describe(readSection(tags, text.length())), "", 0};
    } catch (const Refusal& refusal) {
        return {"", refusal.message, refusal.position};
    }
}
