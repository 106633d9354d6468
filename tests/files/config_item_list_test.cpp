#include <xum/files/config_item_list.h>

#include "allocation_counter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

struct Item {
    explicit Item(const std::string& name) : name(name) {}

    const std::string& getName() const { return name; }

    std::string name;
};

using List = ConfigItemList<Item>;

/// All items of a name, found through the list.
std::vector<std::uint32_t> indicesOf(const List& list, const std::string& name)
{
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = list.find(name); i != List::none; i = list.findNext(i)) found.push_back(i);
    return found;
}

/// The same by a look at each.
std::vector<std::uint32_t> expectedIndicesOf(const List& list, const std::string& name)
{
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i < list.getItems().size(); ++i)
        if (list.getItems()[i]->name == name) found.push_back(i);
    return found;
}

} // namespace

TEST(ConfigItemList, findsNothingWhenEmpty)
{
    const List list;
    EXPECT_EQ(list.find(""), List::none);
    EXPECT_EQ(list.find("a"), List::none);
    EXPECT_TRUE(list.getItems().empty());
}

TEST(ConfigItemList, findsAllItemsOfAName)
{
    for (const unsigned names : {1u, 2u, 5u, 60u, 1000000u}) {
        SCOPED_TRACE(names);
        std::mt19937 random(names);
        std::deque<Item> items;
        List list;
        for (int i = 0; i < 300; ++i) {
            items.emplace_back(std::to_string(random() % names));
            list.append(&items.back());
            ASSERT_EQ(list.getItems().size(), items.size());
            if (i > 40 && i % 29 != 0) continue; // every length around the first tables, then some
            for (const Item& item : items)
                ASSERT_EQ(indicesOf(list, item.name), expectedIndicesOf(list, item.name)) << "with " << i;
            EXPECT_EQ(list.find("missing"), List::none);
            EXPECT_EQ(list.find(""), List::none);
        }
        for (std::size_t i = 0; i < items.size(); ++i) EXPECT_EQ(list.getItems()[i], &items[i]);
    }
}

TEST(ConfigItemList, takesTheEmptyNameAndNamesWithANulForNames)
{
    std::deque<Item> items;
    List list;
    for (int i = 0; i < 20; ++i) {
        items.emplace_back(i % 3 == 0 ? std::string() : std::string("a\0", 2) + std::to_string(i % 3));
        list.append(&items.back());
        EXPECT_EQ(indicesOf(list, ""), expectedIndicesOf(list, ""));
        EXPECT_EQ(indicesOf(list, items.back().name), expectedIndicesOf(list, items.back().name));
        EXPECT_EQ(list.find("a"), List::none);
    }
}

TEST(ConfigItemList, findsAReplacedItemWhereTheOldOneWas)
{
    for (const int count : {1, 5, 8, 9, 100}) {
        std::deque<Item> items;
        List list;
        for (int i = 0; i < count; ++i) {
            items.emplace_back(std::to_string(i));
            list.append(&items.back());
        }
        for (int i = 0; i < count; ++i) {
            items.emplace_back(std::to_string(i));
            const std::uint32_t at = list.find(items.back().name);
            EXPECT_EQ(at, static_cast<std::uint32_t>(i));
            list.replace(at, &items.back());
            items[at].name = "gone";
        }
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(indicesOf(list, std::to_string(i)), std::vector<std::uint32_t>{static_cast<std::uint32_t>(i)});
            EXPECT_EQ(list.getItems()[static_cast<std::size_t>(i)], &items[static_cast<std::size_t>(count + i)]);
        }
    }
}

TEST(ConfigItemList, appendsAnItemOnlyUnderANewName)
{
    std::deque<Item> items;
    List list;
    for (int i = 0; i < 200; ++i) {
        items.emplace_back(std::to_string(i * 7 % 90));
        const std::uint32_t sameName = list.find(items.back().name);
        EXPECT_EQ(list.appendIfNew(&items.back()), sameName);
        EXPECT_EQ(list.getItems().size(), static_cast<std::size_t>(std::min(i + 1, 90)));
    }
    for (std::size_t i = 0; i < 90; ++i) EXPECT_EQ(list.getItems()[i], &items[i]);
}

TEST(ConfigItemList, givesItsLastItemsBack)
{
    std::deque<Item> items;
    List list;
    for (int i = 0; i < 20; ++i) {
        items.emplace_back(std::to_string(i));
        list.append(&items.back());
    }
    for (std::size_t i = 20; i-- > 0;) EXPECT_EQ(list.takeLast(), &items[i]);
    EXPECT_TRUE(list.getItems().empty());
}

TEST(ConfigItemList, staysAsItWasWhenMemoryRunsOut)
{
    std::deque<Item> items;
    for (int i = 0; i < 100; ++i) items.emplace_back(std::to_string(i % 60));
    List list;
    int failures = 0;
    for (Item& item : items) {
        const std::vector<Item*> before = list.getItems();
        for (int successes = 0; list.getItems().size() == before.size(); ++successes) {
            try {
                const FailingAllocations failing(successes);
                list.append(&item);
            } catch (const std::bad_alloc&) {
                ++failures;
                ASSERT_EQ(list.getItems(), before);
                for (const Item* old : before)
                    ASSERT_EQ(indicesOf(list, old->name), expectedIndicesOf(list, old->name));
                ASSERT_LT(successes, 10);
            }
        }
        ASSERT_EQ(list.getItems().back(), &item);
    }
    for (const Item& item : items) EXPECT_EQ(indicesOf(list, item.name), expectedIndicesOf(list, item.name));
    EXPECT_GT(failures, 8);
}
