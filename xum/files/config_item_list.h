#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

/// Pointers to named items in the order in which they were added, found by name. Owns nothing.
template <class Item>
class ConfigItemList {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    const std::vector<Item*>& getItems() const { return items; }

    /// The index of the first item of that name; none if there is none.
    std::uint32_t find(std::string_view name) const { return findFirst(name, hash(name)); }

    /// The next item with the name of this one; none behind the last.
    std::uint32_t findNext(std::uint32_t index) const
    {
        if (slots.empty()) return scan(index + 1, items[index]->getName(), keys[index].hash);
        const std::uint32_t next = keys[index].nextOfName;
        return next > index ? next : none; // the last one points back to the first
    }

    void append(Item* item)
    {
        reserve();
        file(item, hash(item->getName()));
    }

    /// Appends the item unless there is one of its name: then that one's index comes back, otherwise none.
    std::uint32_t appendIfNew(Item* item)
    {
        const std::uint32_t itemHash = hash(item->getName());
        const std::uint32_t sameName = findFirst(item->getName(), itemHash);
        if (sameName == none) {
            reserve();
            file(item, itemHash);
        }
        return sameName;
    }

    /// Puts an item in the place of one of the same name.
    void replace(std::uint32_t index, Item* item) { items[index] = item; }

    /// Takes the last item out of a list whose names nobody asks for any more.
    Item* takeLast()
    {
        Item* last = items.back();
        items.pop_back();
        return last;
    }

private:
    /// What stands beside an item.
    struct Key {
        std::uint32_t hash;       // of the name: it tells most other names apart
        std::uint32_t nextOfName; // the next item of the name, in a ring; counts while there are slots
    };

    /// Up to here a look at the hash of each is as fast as a slot.
    static constexpr std::size_t longestUnindexed = 16;

    static std::uint32_t hash(std::string_view name)
    {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    }

    bool isNamed(std::uint32_t index, std::string_view name, std::uint32_t nameHash) const
    {
        return keys[index].hash == nameHash && items[index]->getName() == name;
    }

    std::uint32_t scan(std::uint32_t start, std::string_view name, std::uint32_t nameHash) const
    {
        for (std::uint32_t i = start; i < items.size(); ++i)
            if (isNamed(i, name, nameHash)) return i;
        return none;
    }

    std::uint32_t findFirst(std::string_view name, std::uint32_t nameHash) const
    {
        if (slots.empty()) return scan(0, name, nameHash);
        const std::uint32_t last = slots[findSlot(name, nameHash)];
        return last == none ? none : keys[last].nextOfName;
    }

    /// Makes room for one more. All that allocates is here: when it throws, nothing has changed but what is reserved.
    void reserve()
    {
        if (items.size() == items.capacity()) items.reserve(items.empty() ? 4 : items.size() * 2);
        keys.reserve(items.capacity());
        if (items.size() < longestUnindexed || items.size() * 2 < slots.size()) return;
        slots = std::vector<std::uint32_t>(slots.empty() ? longestUnindexed * 4 : slots.size() * 2, none);
        for (std::uint32_t i = 0; i < items.size(); ++i) index(i);
    }

    void file(Item* item, std::uint32_t itemHash)
    {
        items.push_back(item);
        keys.push_back({itemHash, none});
        if (!slots.empty()) index(static_cast<std::uint32_t>(items.size() - 1));
    }

    void index(std::uint32_t newest)
    {
        std::uint32_t& last = slots[findSlot(items[newest]->getName(), keys[newest].hash)];
        keys[newest].nextOfName = last == none ? newest : keys[last].nextOfName;
        if (last != none) keys[last].nextOfName = newest;
        last = newest;
    }

    /// The slot of the name: the one that it is filed in, or the free one where it belongs.
    std::size_t findSlot(std::string_view name, std::uint32_t nameHash) const
    {
        const std::size_t mask = slots.size() - 1;
        std::size_t slot = nameHash & mask;
        while (slots[slot] != none && !isNamed(slots[slot], name, nameHash)) slot = (slot + 1) & mask;
        return slot;
    }

    std::vector<Item*> items;
    std::vector<Key> keys;            // of each item
    std::vector<std::uint32_t> slots; // of each name its last item; empty while the list is short
};
