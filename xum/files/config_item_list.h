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
    std::uint32_t find(std::string_view name) const
    {
        if (!slots.empty()) {
            const std::uint32_t last = slots[findSlot(name)];
            return last == none ? none : nextOfName[last];
        }
        for (std::uint32_t i = 0; i < items.size(); ++i)
            if (items[i]->getName() == name) return i;
        return none;
    }

    /// The next item with the name of this one; none behind the last.
    std::uint32_t findNext(std::uint32_t index) const
    {
        if (!slots.empty()) {
            const std::uint32_t next = nextOfName[index];
            return next > index ? next : none; // the last one points back to the first
        }
        for (std::uint32_t i = index + 1; i < items.size(); ++i)
            if (items[i]->getName() == items[index]->getName()) return i;
        return none;
    }

    /// All that allocates comes first: when it throws, nothing has changed but what it reserved.
    void append(Item* item)
    {
        if (items.size() == items.capacity()) items.reserve(items.empty() ? 4 : items.size() * 2);
        if (items.size() >= longestUnindexed && items.size() * 2 >= slots.size()) index();
        if (!slots.empty() && nextOfName.size() == nextOfName.capacity()) nextOfName.reserve(items.capacity());
        items.push_back(item);
        if (!slots.empty()) {
            nextOfName.push_back(none);
            file(static_cast<std::uint32_t>(items.size() - 1));
        }
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
    /// Up to here a look at each is as fast as a hash.
    static constexpr std::size_t longestUnindexed = 8;

    /// Makes room for twice the items and some, and files those that there are.
    void index()
    {
        std::vector<std::uint32_t> newSlots(slots.empty() ? longestUnindexed * 4 : slots.size() * 2, none);
        nextOfName.reserve(items.capacity());
        slots.swap(newSlots);
        nextOfName.assign(items.size(), none);
        for (std::uint32_t i = 0; i < items.size(); ++i) file(i);
    }

    void file(std::uint32_t index)
    {
        std::uint32_t& last = slots[findSlot(items[index]->getName())];
        nextOfName[index] = last == none ? index : nextOfName[last];
        if (last != none) nextOfName[last] = index;
        last = index;
    }

    /// The slot of the name: the one that it is filed in, or the free one where it belongs.
    std::size_t findSlot(std::string_view name) const
    {
        const std::size_t mask = slots.size() - 1;
        std::size_t slot = std::hash<std::string_view>()(name) & mask;
        while (slots[slot] != none && items[slots[slot]]->getName() != name) slot = (slot + 1) & mask;
        return slot;
    }

    std::vector<Item*> items;
    std::vector<std::uint32_t> slots;      // of each name its last item; empty while the list is short
    std::vector<std::uint32_t> nextOfName; // of each item, in a ring; as long as items, or empty while slots is
};
