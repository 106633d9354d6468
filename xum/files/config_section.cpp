#include <xum/files/config_section.h>

#include <xum/engine/log.h>
#include <xum/files/config_item_list.h>

#include <utility>

// Trees may be a million levels deep: nothing here recurses.

ConfigSection::ConfigSection(const std::string& name) : name(name) {}

ConfigSection::ConfigSection(std::string_view name, ConfigSection* parent) : name(name), parent(parent) {}

ConfigSection::ConfigSection(const ConfigSection& other) : ConfigSection(other.name)
{
    std::vector<std::pair<const ConfigSection*, ConfigSection*>> pending = {{&other, this}};
    while (!pending.empty()) {
        const auto [source, copy] = pending.back();
        pending.pop_back();
        if (source->entries)
            for (const ConfigEntry* entry : source->entries->getItems())
                copy->putEntry(std::make_unique<ConfigEntry>(*entry));
        if (!source->sections) continue;
        for (const ConfigSection* section : source->sections->getItems()) {
            copy->appendSection(std::make_unique<ConfigSection>(section->name));
            pending.emplace_back(section, copy->sections->getItems().back());
        }
    }
}

ConfigSection::~ConfigSection()
{
    if (entries)
        for (const ConfigEntry* entry : entries->getItems()) delete entry;
    // Always the last leaf of all, so that no destructor but this one finds children.
    for (ConfigSection* at = this; at != this || (sections && !sections->getItems().empty());) {
        if (at->sections && !at->sections->getItems().empty()) {
            at = at->sections->getItems().back();
        } else {
            at = at->parent;
            delete at->sections->takeLast();
        }
    }
}

void ConfigSection::addSection(ConfigSection* section)
{
    if (section == nullptr || section->isOwned() || isPartOf(section)) return;
    appendSection(std::unique_ptr<ConfigSection>(section));
}

void ConfigSection::addEntry(ConfigEntry* entry)
{
    if (entry != nullptr) putEntry(std::unique_ptr<ConfigEntry>(entry));
}

std::vector<ConfigSection*> ConfigSection::getAllSections() const
{
    if (!sections) return {};
    return sections->getItems();
}

std::list<ConfigSection*> ConfigSection::getSections(const std::string& path) const
{
    std::string_view rest = path;
    const ConfigSection* section = findSectionAbove(rest);
    if (section == nullptr) error("ConfigSection::getSections() -> section not found (" + std::string(rest) + ")!");
    std::list<ConfigSection*> found;
    if (section->sections) {
        const auto& list = *section->sections;
        for (std::uint32_t i = list.find(rest); i != ConfigItemList<ConfigSection>::none; i = list.findNext(i))
            found.push_back(list.getItems()[i]);
    }
    if (found.empty()) error("ConfigSection::getSections() -> section not found! (" + std::string(rest) + ")!");
    return found;
}

ConfigEntry* ConfigSection::getEntry(const std::string& path, bool required) const
{
    std::string_view rest = path;
    const ConfigSection* section = findSectionAbove(rest);
    if (section == nullptr) error("ConfigSection::getEntry() -> entry not found (" + std::string(rest) + ")!");
    if (section->entries) {
        const std::uint32_t found = section->entries->find(rest);
        if (found != section->entries->none) return section->entries->getItems()[found];
    }
    if (required) error("ConfigSection::getEntry() -> entry not found (" + std::string(rest) + ")!");
    return nullptr;
}

void ConfigSection::getEntries(std::list<ConfigEntry*>& out)
{
    if (entries) out.insert(out.end(), entries->getItems().begin(), entries->getItems().end());
}

void ConfigSection::getEntries(std::list<const ConfigEntry*>& out) const
{
    if (entries) out.insert(out.end(), entries->getItems().begin(), entries->getItems().end());
}

void ConfigSection::appendSection(std::unique_ptr<ConfigSection> section)
{
    if (!sections) sections = std::make_unique<ConfigItemList<ConfigSection>>();
    sections->append(section.get());
    section->parent = this;
    static_cast<void>(section.release());
}

void ConfigSection::putEntry(std::unique_ptr<ConfigEntry> entry)
{
    if (!entries) entries = std::make_unique<ConfigItemList<ConfigEntry>>();
    const std::uint32_t sameName = entries->appendIfNew(entry.get());
    if (sameName != entries->none && entries->getItems()[sameName] != entry.get()) {
        delete entries->getItems()[sameName];
        entries->replace(sameName, entry.get());
    }
    static_cast<void>(entry.release());
}

bool ConfigSection::isPartOf(const ConfigSection* section) const
{
    if (section == this) return true;
    if (!section->sections) return false; // spares the way up for all that are added as they are made
    for (const ConfigSection* above = parent; above != nullptr; above = above->parent)
        if (above == section) return true;
    return false;
}

const ConfigSection* ConfigSection::findSectionAbove(std::string_view& path) const
{
    constexpr std::uint32_t none = ConfigItemList<ConfigSection>::none;
    const ConfigSection* section = this;
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        const std::string_view head = path.substr(0, slash);
        const std::uint32_t found = section->sections ? section->sections->find(head) : none;
        if (found == none) {
            path = head;
            return nullptr;
        }
        section = section->sections->getItems()[found];
        path.remove_prefix(slash + 1);
    }
    return section;
}
