#pragma once

#include <xum/files/config_section.h>

#include <list>
#include <string>

/// A name or a value of a description, in which some characters have a meaning.
inline std::string escaped(const std::string& text)
{
    std::string out;
    for (const char character : text) {
        if (std::string("\\{}=;").find(character) != std::string::npos) out += '\\';
        out += character;
    }
    return out;
}

/// All that a section holds, as "NAME{SECTION...ENTRY...}" with entries as "NAME=VALUE;". Two are equal just when the
/// trees are. Recurses: for trees that are not deep.
inline std::string describe(const ConfigSection& section)
{
    std::string text = escaped(section.getName()) + "{";
    for (const ConfigSection* child : section.getAllSections()) text += describe(*child);
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries) text += escaped(entry->getName()) + "=" + escaped(entry->getValue()) + ";";
    return text + "}";
}
