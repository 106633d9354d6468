#include <xum/geometry/base_list.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

class Item : public BaseListNode<Item> {
public:
    explicit Item(const std::string& name, BaseList<Item>* list = nullptr, std::string* obituary = nullptr)
        : BaseListNode(list), name(name), obituary(obituary)
    {}
    Item(const Item&) = default;
    Item& operator=(const Item&) = default;
    ~Item() override
    {
        if (obituary != nullptr) *obituary += name;
    }

    const std::string& getName() const { return name; }

private:
    std::string name;
    std::string* obituary; // each name is added when its item dies
};

/// Also checks that both directions, the ends, the count and the items' own links tell the same.
std::string namesOf(const BaseList<Item>& list)
{
    std::string forward;
    for (const Item* item = list.getFirst(); item != nullptr; item = item->getNext()) {
        forward += item->getName();
        EXPECT_EQ(item->getList(), &list);
    }
    std::string backward;
    for (const Item* item = list.getLast(); item != nullptr; item = item->getPrev()) backward += item->getName();
    std::reverse(backward.begin(), backward.end());
    EXPECT_EQ(forward, backward);
    EXPECT_EQ(list.getCount(), forward.size());
    return forward;
}

void expectUnlinked(const Item& item)
{
    EXPECT_EQ(item.getList(), nullptr) << item.getName();
    EXPECT_EQ(item.getPrev(), nullptr) << item.getName();
    EXPECT_EQ(item.getNext(), nullptr) << item.getName();
}

} // namespace

TEST(BaseList, startsEmptyAndWithoutOwningElements)
{
    const BaseList<Item> list;
    EXPECT_EQ(list.getCount(), 0u);
    EXPECT_EQ(list.getFirst(), nullptr);
    EXPECT_EQ(list.getLast(), nullptr);
    EXPECT_FALSE(list.isOwner());
    EXPECT_TRUE(BaseList<Item>(true).isOwner());
}

TEST(BaseList, keepsElementsInTheOrderInWhichTheyWereAppended)
{
    BaseList<Item> list;
    Item a("a");
    Item b("b", &list);
    Item c("c");
    list.append(&a);
    c.appendTo(&list);
    EXPECT_EQ(namesOf(list), "bac");
    EXPECT_EQ(list.getFirst(), &b);
    EXPECT_EQ(list.getLast(), &c);
    EXPECT_EQ(a.getPrev(), &b);
    EXPECT_EQ(a.getNext(), &c);
    EXPECT_EQ(b.getPrev(), nullptr);
    EXPECT_EQ(c.getNext(), nullptr);
}

TEST(BaseList, elementMadeWithoutAListIsUnlinked)
{
    expectUnlinked(Item("a"));
}

TEST(BaseList, elementLeavesTheListWhenItDies)
{
    for (const std::size_t dying : {0u, 1u, 2u}) {
        BaseList<Item> list;
        std::vector<std::unique_ptr<Item>> items;
        for (const char* name : {"a", "b", "c"}) items.push_back(std::make_unique<Item>(name, &list));
        items[dying].reset();
        EXPECT_EQ(namesOf(list), std::string("abc").erase(dying, 1));
    }
}

TEST(BaseList, isEmptyAgainAfterItsOnlyElementDied)
{
    BaseList<Item> list;
    std::make_unique<Item>("a", &list).reset();
    EXPECT_EQ(namesOf(list), "");
    Item b("b", &list);
    EXPECT_EQ(namesOf(list), "b");
}

TEST(BaseList, unlinkedElementKeepsNoLinks)
{
    BaseList<Item> list;
    Item a("a", &list);
    Item b("b", &list);
    Item c("c", &list);
    b.unlink();
    expectUnlinked(b);
    b.unlink();
    expectUnlinked(b);
    EXPECT_EQ(namesOf(list), "ac");
    list.append(&b);
    EXPECT_EQ(namesOf(list), "acb");
}

TEST(BaseList, appendingAnElementThatItHoldsChangesNothing)
{
    BaseList<Item> list;
    Item a("a", &list);
    Item b("b", &list);
    Item c("c", &list);
    for (Item* item : {&a, &b, &c}) {
        list.append(item);
        item->appendTo(&list);
        EXPECT_EQ(namesOf(list), "abc");
    }
}

TEST(BaseList, appendingAnElementOfAnotherListMovesIt)
{
    BaseList<Item> first;
    BaseList<Item> second;
    Item a("a", &first);
    Item b("b", &first);
    Item c("c", &first);
    Item x("x", &second);
    second.append(&b);
    EXPECT_EQ(namesOf(first), "ac");
    EXPECT_EQ(namesOf(second), "xb");
    second.append(&a);
    c.appendTo(&second);
    EXPECT_EQ(namesOf(first), "");
    EXPECT_EQ(namesOf(second), "xbac");
    first.append(&x);
    EXPECT_EQ(namesOf(first), "x");
    EXPECT_EQ(namesOf(second), "bac");
}

TEST(BaseList, ignoresNull)
{
    BaseList<Item> list;
    Item a("a", &list);
    list.append(nullptr);
    a.appendTo(nullptr);
    EXPECT_EQ(namesOf(list), "a");
}

TEST(BaseList, clearingOneThatOwnsNothingLeavesEveryElementUnlinked)
{
    std::string obituary;
    BaseList<Item> list;
    Item a("a", &list, &obituary);
    Item b("b", &list, &obituary);
    Item c("c", &list, &obituary);
    list.clear();
    EXPECT_EQ(obituary, "");
    EXPECT_EQ(namesOf(list), "");
    for (const Item* item : {&a, &b, &c}) expectUnlinked(*item);
    list.clear();
    list.append(&c);
    list.append(&a);
    EXPECT_EQ(namesOf(list), "ca");
}

TEST(BaseList, clearingOneThatOwnsItsElementsDeletesThemFromTheFront)
{
    std::string obituary;
    BaseList<Item> list(true);
    for (const char* name : {"a", "b", "c"}) new Item(name, &list, &obituary);
    EXPECT_EQ(namesOf(list), "abc");
    list.clear();
    EXPECT_EQ(obituary, "abc");
    EXPECT_EQ(namesOf(list), "");
    new Item("d", &list, &obituary);
    EXPECT_EQ(namesOf(list), "d");
    EXPECT_EQ(obituary, "abc");
}

TEST(BaseList, deathDoesWhatClearingDoes)
{
    std::string obituary;
    auto owner = std::make_unique<BaseList<Item>>(true);
    for (const char* name : {"a", "b", "c"}) new Item(name, owner.get(), &obituary);
    owner.reset();
    EXPECT_EQ(obituary, "abc");

    auto list = std::make_unique<BaseList<Item>>();
    Item d("d", list.get(), &obituary);
    Item e("e", list.get(), &obituary);
    list.reset();
    EXPECT_EQ(obituary, "abc");
    expectUnlinked(d);
    expectUnlinked(e);
}

TEST(BaseList, deletesNothingThatLeftIt)
{
    std::string obituary;
    Item kept("k", nullptr, &obituary);
    {
        BaseList<Item> list(true);
        list.append(&kept);
        kept.unlink();
    }
    EXPECT_EQ(obituary, "");
}

TEST(BaseList, elementStillStandsInItWhileItsOwnDestructorRuns)
{
    struct Witness : BaseListNode<Witness> {
        explicit Witness(BaseList<Witness>* list, std::vector<std::uint32_t>* counts)
            : BaseListNode(list), counts(counts)
        {}
        ~Witness() override { counts->push_back(getList()->getCount()); }
        std::vector<std::uint32_t>* counts;
    };
    std::vector<std::uint32_t> counts;
    BaseList<Witness> list(true);
    for (int i = 0; i < 3; ++i) new Witness(&list, &counts);
    list.clear();
    EXPECT_EQ(counts, (std::vector<std::uint32_t>{3, 2, 1}));
}

TEST(BaseList, copyingAnElementDoesNotChangeTheCount)
{
    BaseList<Item> list;
    Item a("a", &list);
    Item b("b", &list);
    Item c("c", &list);
    alignas(Item) unsigned char place[sizeof(Item)];
    const Item* copy = new (place) Item(b); // never destroyed: that would take b's place out of the list
    EXPECT_EQ(namesOf(list), "abc");
    EXPECT_EQ(copy->getList(), &list);
    EXPECT_EQ(copy->getPrev(), &a);
    EXPECT_EQ(copy->getNext(), &c);
}

TEST(BaseList, assigningAnElementCopiesItsLinksAsTheyStand)
{
    BaseList<Item> list;
    BaseList<Item> other;
    Item a("a", &list);
    Item b("b", &list);
    Item x("x", &other);
    Item free("f");
    x = b;
    EXPECT_EQ(list.getCount(), 2u);
    EXPECT_EQ(other.getCount(), 1u);
    EXPECT_EQ(other.getFirst(), &x) << "nothing was unlinked";
    EXPECT_EQ(x.getList(), &list);
    EXPECT_EQ(x.getPrev(), &a);
    x = free;
    expectUnlinked(x);
    EXPECT_EQ(other.getFirst(), &x);
    other.clear();
    EXPECT_EQ(namesOf(list), "ab");
}

TEST(BaseList, destroyingACopyTakesThePlaceOfItsModelOut)
{
    BaseList<Item> list;
    Item a("a", &list);
    Item c("c");
    {
        Item b("b", &list);
        list.append(&c);
        {
            const Item copy = b; // NOLINT(performance-unnecessary-copy-initialization): its death counts
            EXPECT_EQ(list.getCount(), 3u);
        }
        EXPECT_EQ(namesOf(list), "ac");
        EXPECT_EQ(b.getList(), &list) << "the model itself does not know";
        EXPECT_EQ(b.getPrev(), &a);
        EXPECT_EQ(b.getNext(), &c);
        b = Item("b"); // so that it does not leave a second time
    }
    EXPECT_EQ(namesOf(list), "ac");
}

TEST(BaseList, copyOfAnUnlinkedElementIsUnlinked)
{
    BaseList<Item> list;
    const Item a("a");
    Item copy = a;
    expectUnlinked(copy);
    list.append(&copy);
    EXPECT_EQ(namesOf(list), "a");
    expectUnlinked(a);
}

TEST(BaseList, clearingComesToAnEndWhateverCopiesDid)
{
    for (const int model : {0, 1, 2}) {
        BaseList<Item> list;
        Item items[] = {Item("a"), Item("b"), Item("c")};
        for (Item& item : items) list.append(&item);
        {
            const Item copy = items[model];
        }                      // NOLINT(performance-unnecessary-copy-initialization)
        items[model].unlink(); // leaves a second time, which counts one too many
        list.clear();
        EXPECT_EQ(namesOf(list), "");
        for (const Item& item : items) expectUnlinked(item);
    }
}

TEST(BaseList, listAndElementMayBeFurtherBases)
{
    struct Other {
        virtual ~Other() = default;
        int payload = 7;
    };
    struct Both : Other, BaseListNode<Both> {
        explicit Both(BaseList<Both>* list) : BaseListNode(list) {}
    };
    struct Owner : Other, BaseList<Both> {
        Owner() : BaseList(true) {}
    };
    Owner owner;
    Both* first = new Both(&owner);
    Both* second = new Both(&owner);
    EXPECT_EQ(owner.getFirst(), first);
    EXPECT_EQ(owner.getLast(), second);
    EXPECT_EQ(first->getNext(), second);
    EXPECT_EQ(second->getPrev()->payload, 7);
}

TEST(BaseList, isDestroyedThroughItsBase)
{
    static_assert(std::has_virtual_destructor_v<BaseList<Item>>);
    static_assert(std::has_virtual_destructor_v<BaseListNode<Item>>);
    static_assert(!std::is_copy_constructible_v<BaseList<Item>> && !std::is_copy_assignable_v<BaseList<Item>>);
    static_assert(!std::is_constructible_v<BaseListNode<Item>, BaseList<Item>*>);
}

TEST(BaseList, behavesLikePlainListsUnderRandomChanges)
{
    std::mt19937 random(20);
    constexpr std::size_t itemCount = 12;
    BaseList<Item> lists[2];
    std::string models[2];
    std::vector<std::unique_ptr<Item>> items(itemCount);
    const auto nameOf = [](std::size_t i) { return std::string(1, static_cast<char>('a' + i)); };
    for (std::size_t i = 0; i < itemCount; ++i) items[i] = std::make_unique<Item>(nameOf(i));
    for (int step = 0; step < 5000; ++step) {
        const std::size_t i = random() % itemCount;
        const std::size_t which = random() % 2;
        const std::string name = nameOf(i);
        const auto forget = [&] {
            for (std::string& model : models) std::erase(model, name[0]);
        };
        switch (random() % 16) {
        case 0: // it dies and is born again
            forget();
            items[i] = std::make_unique<Item>(name);
            break;
        case 1:
            models[which].clear();
            lists[which].clear();
            break;
        case 2:
        case 3:
        case 4:
            forget();
            items[i]->unlink();
            break;
        default:
            if (models[which].find(name) == std::string::npos) {
                forget();
                models[which] += name;
            }
            lists[which].append(items[i].get());
        }
        ASSERT_EQ(namesOf(lists[0]), models[0]) << "after step " << step;
        ASSERT_EQ(namesOf(lists[1]), models[1]) << "after step " << step;
    }
}
