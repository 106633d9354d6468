#pragma once

#include <xum/engine/export.h>

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

template <class Item>
class ConfigItemList;

/// A name with a value; both are any text.
class XUM_API ConfigEntry {
public:
    /// With an empty value.
    explicit ConfigEntry(const std::string& name) : name(name) {}

    /// The copy is in no section.
    ConfigEntry(const ConfigEntry&) = default;
    ConfigEntry& operator=(const ConfigEntry&) = delete; // its section finds it by its name

    /// Fixed when the entry is made.
    const std::string& getName() const { return name; }

    /// Without the quotes around it in a file.
    const std::string& getValue() const { return value; }

    /// A value with a '"' or '>' cannot be read back once it is written to a file.
    void setValue(const std::string& newValue) { value = newValue; }

private:
    friend class ConfigReader;
    ConfigEntry(std::string_view name, std::string_view value) : name(name), value(value) {}

    std::string name;
    std::string value;
};

/// A named group of entries and further sections, all of which it owns. Several sections may have one name, entries
/// may not. Paths lead downwards through section names, separated by '/': "window/width" is the entry "width" of the
/// child "window"; where several children have the name the first one counts. What comes as a collection is in the
/// order in which it was added.
class XUM_API ConfigSection {
public:
    /// Empty, and in no other section.
    explicit ConfigSection(const std::string& name);

    /// Copies everything below, too.
    ConfigSection(const ConfigSection& other);
    ConfigSection& operator=(const ConfigSection&) = delete; // its parent finds it by its name

    virtual ~ConfigSection();

    /// Fixed when the section is made.
    const std::string& getName() const { return name; }

    /// Takes ownership. Ignored are null, a section that belongs to another section or to a file already, and one that
    /// this one is part of.
    void addSection(ConfigSection* section);

    /// Takes ownership of an entry that no other section has. An entry of the same name is deleted and replaced, in its
    /// place. Null, and an entry that is in this section already, are ignored.
    void addEntry(ConfigEntry* entry);

    /// The children, of any name; owned by this section.
    std::vector<ConfigSection*> getAllSections() const;

    /// All sections at the path. When there is none that is a fatal error:
    /// "ConfigSection::getSections() -> section not found! (NAME)!"; when one on the way is missing, it is
    /// "ConfigSection::getSections() -> section not found (NAME)!".
    std::list<ConfigSection*> getSections(const std::string& path) const;

    /// The entry at the path; null when there is none and it is not required. Otherwise that is a fatal error, as is,
    /// in any case, a missing section on the way: "ConfigSection::getEntry() -> entry not found (NAME)!" with the part
    /// of the path that was not found.
    ConfigEntry* getEntry(const std::string& path, bool required) const;

    /// Appends all entries, which stay the section's.
    /// @{
    void getEntries(std::list<ConfigEntry*>& out);
    void getEntries(std::list<const ConfigEntry*>& out) const;
    /// @}

private:
    friend class ConfigFile;
    friend class ConfigReader;
    friend class ConfigWriter;

    explicit ConfigSection(std::string_view name, ConfigSection* parent);
    void appendSection(std::unique_ptr<ConfigSection> section);
    void putEntry(std::unique_ptr<ConfigEntry> entry);
    bool isOwned() const { return parent != nullptr || belongsToFile; }
    bool isPartOf(const ConfigSection* section) const;
    /// The section that holds what the path names, which is left with its last part; null, and the part that was not
    /// found is left, when one on the way is missing.
    const ConfigSection* findSectionAbove(std::string_view& path) const;

    std::string name;
    ConfigSection* parent = nullptr;
    bool belongsToFile = false; // as its root
    // Made with the first item: most sections have only one kind.
    std::unique_ptr<ConfigItemList<ConfigSection>> sections;
    std::unique_ptr<ConfigItemList<ConfigEntry>> entries;
};
