#include <xum/files/config_section.h>

#include "config_tree.h"
#include "fatal_error.h"

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <type_traits>
#include <vector>

namespace {

static_assert(std::has_virtual_destructor_v<ConfigSection>);
static_assert(!std::is_polymorphic_v<ConfigEntry>);
static_assert(!std::is_copy_assignable_v<ConfigSection> && !std::is_copy_assignable_v<ConfigEntry>);

int destroyed = 0;

/// Counts how often one was destroyed.
class CountedSection : public ConfigSection {
public:
    using ConfigSection::ConfigSection;
    CountedSection(const CountedSection&) = delete;
    ~CountedSection() override { ++destroyed; }
};

ConfigEntry* makeEntry(const std::string& name, const std::string& value)
{
    auto* entry = new ConfigEntry(name);
    entry->setValue(value);
    return entry;
}

/// Adds a new child and returns it.
ConfigSection* addChild(ConfigSection& section, const std::string& name)
{
    auto* child = new ConfigSection(name);
    section.addSection(child);
    return child;
}

/// The tree of the look-up tests, in which "a" stands twice.
///
///     <r><a><b><c 1/></b><b></b><e 2/></a><a><only 3/></a><><z 4/></><a 5/></r>
class Lookups : public ::testing::Test {
protected:
    Lookups() : root("r")
    {
        ConfigSection* a = addChild(root, "a");
        addChild(*a, "b")->addEntry(makeEntry("c", "1"));
        addChild(*a, "b");
        a->addEntry(makeEntry("e", "2"));
        addChild(root, "a")->addEntry(makeEntry("only", "3"));
        addChild(root, "")->addEntry(makeEntry("z", "4"));
        root.addEntry(makeEntry("a", "5"));
    }

    std::string valueAt(const std::string& path) const
    {
        const ConfigEntry* entry = root.getEntry(path, false);
        return entry != nullptr ? entry->getValue() : "nothing";
    }

    ConfigSection root;
};

// Where each item were looked at for each of them, the test would run into its time limit.
constexpr int many = 100000;
constexpr int levels = 1000000;

} // namespace

TEST(ConfigEntry, startsWithAnEmptyValue)
{
    ConfigEntry entry("name");
    EXPECT_EQ(entry.getName(), "name");
    EXPECT_EQ(entry.getValue(), "");
    entry.setValue("a value");
    EXPECT_EQ(entry.getValue(), "a value");
    EXPECT_EQ(entry.getName(), "name");
}

TEST(ConfigEntry, isCopiedWithItsValue)
{
    ConfigEntry entry("name");
    entry.setValue("old");
    const ConfigEntry copy = entry;
    entry.setValue("new");
    EXPECT_EQ(copy.getName(), "name");
    EXPECT_EQ(copy.getValue(), "old");
}

TEST(ConfigEntry, takesAnyText)
{
    const std::string odd("<\"/>\0 \n\xFF", 8);
    ConfigEntry entry(odd);
    entry.setValue(odd);
    EXPECT_EQ(entry.getName(), odd);
    EXPECT_EQ(entry.getValue(), odd);
}

TEST(ConfigSection, startsEmpty)
{
    const ConfigSection section("name");
    EXPECT_EQ(section.getName(), "name");
    EXPECT_TRUE(section.getAllSections().empty());
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    EXPECT_TRUE(entries.empty());
    EXPECT_EQ(section.getEntry("missing", false), nullptr);
}

TEST(ConfigSection, returnsWhatWasAddedAndNoCopy)
{
    ConfigSection section("r");
    ConfigSection* child = addChild(section, "a");
    ConfigEntry* entry = makeEntry("a", "x");
    section.addEntry(entry);
    EXPECT_EQ(section.getAllSections(), std::vector<ConfigSection*>{child});
    EXPECT_EQ(section.getSections("a"), std::list<ConfigSection*>{child});
    EXPECT_EQ(section.getEntry("a", true), entry);
    entry->setValue("y");
    EXPECT_EQ(describe(section), "r{a{}a=y;}");
}

TEST(ConfigSection, keepsTheOrderOfAdding)
{
    ConfigSection section("r");
    std::vector<ConfigSection*> added;
    std::list<ConfigEntry*> entries;
    for (int i = 0; i < 200; ++i) {
        added.push_back(addChild(section, std::to_string(i * 7919 % 50)));
        entries.push_back(makeEntry(std::to_string(i * 7919 % 200), ""));
        section.addEntry(entries.back());
    }
    EXPECT_EQ(section.getAllSections(), added);
    std::list<ConfigEntry*> found;
    section.getEntries(found);
    EXPECT_EQ(found, entries);
}

TEST(ConfigSection, returnsAllSectionsOfANameInTheOrderOfAdding)
{
    for (const int others : {0, 3, 100}) {
        ConfigSection section("r");
        std::list<ConfigSection*> added;
        for (int i = 0; i < 3; ++i) {
            added.push_back(addChild(section, "same"));
            for (int k = 0; k < others; ++k) addChild(section, std::to_string(k));
        }
        EXPECT_EQ(section.getSections("same"), added);
    }
}

TEST(ConfigSection, appendsItsEntriesToAList)
{
    ConfigSection section("r");
    section.addEntry(makeEntry("a", "1"));
    section.addEntry(makeEntry("b", "2"));
    ConfigEntry other("other");
    std::list<ConfigEntry*> entries = {&other};
    section.getEntries(entries);
    section.getEntries(entries);
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_EQ(entries.front(), &other);
    EXPECT_EQ(entries.back(), section.getEntry("b", true));

    const ConfigSection& constant = section;
    std::list<const ConfigEntry*> constants = {&other};
    constant.getEntries(constants);
    ASSERT_EQ(constants.size(), 3u);
    EXPECT_EQ(constants.front(), &other);
    EXPECT_EQ(constants.back(), section.getEntry("b", true));
}

TEST(ConfigSection, replacesAnEntryOfTheSameNameInItsPlace)
{
    for (const int others : {0, 3, 100}) {
        ConfigSection section("r");
        section.addEntry(makeEntry("e", "old"));
        for (int i = 0; i < others; ++i) section.addEntry(makeEntry(std::to_string(i), ""));
        ConfigEntry* later = makeEntry("e", "new");
        section.addEntry(later);
        EXPECT_EQ(section.getEntry("e", true), later);
        std::list<ConfigEntry*> entries;
        section.getEntries(entries);
        EXPECT_EQ(entries.size(), static_cast<std::size_t>(others) + 1);
        EXPECT_EQ(entries.front(), later);
        EXPECT_EQ(later->getValue(), "new");
    }
}

TEST(ConfigSection, ignoresAnEntryThatItHasAlready)
{
    ConfigSection section("r");
    ConfigEntry* entry = makeEntry("e", "x");
    section.addEntry(entry);
    section.addEntry(entry);
    EXPECT_EQ(section.getEntry("e", true), entry);
    EXPECT_EQ(describe(section), "r{e=x;}");
}

TEST(ConfigSection, ignoresNull)
{
    ConfigSection section("r");
    section.addSection(nullptr);
    section.addEntry(nullptr);
    EXPECT_EQ(describe(section), "r{}");
}

TEST(ConfigSection, ignoresASectionThatItHasAlready)
{
    destroyed = 0;
    {
        ConfigSection section("r");
        auto* child = new CountedSection("a");
        section.addSection(child);
        section.addSection(child);
        EXPECT_EQ(describe(section), "r{a{}}");
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ConfigSection, ignoresItselfAndWhatItIsPartOf)
{
    destroyed = 0;
    {
        CountedSection root("r");
        auto* child = new CountedSection("a");
        auto* grandchild = new CountedSection("b");
        root.addSection(&root);
        root.addSection(child);
        child->addSection(grandchild);
        child->addSection(&root);
        grandchild->addSection(&root);
        grandchild->addSection(child);
        grandchild->addSection(grandchild);
        EXPECT_EQ(describe(root), "r{a{b{}}}");
    }
    EXPECT_EQ(destroyed, 3);
}

TEST(ConfigSection, ignoresASectionOfAnother)
{
    destroyed = 0;
    {
        ConfigSection first("first");
        ConfigSection second("second");
        auto* child = new CountedSection("a");
        first.addSection(child);
        second.addSection(child);
        EXPECT_EQ(describe(first), "first{a{}}");
        EXPECT_EQ(describe(second), "second{}");
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ConfigSection, takesATreeThatWasBuiltBefore)
{
    ConfigSection root("r");
    auto* tree = new ConfigSection("a");
    addChild(*addChild(*tree, "b"), "c")->addEntry(makeEntry("e", "x"));
    root.addSection(tree);
    EXPECT_EQ(describe(root), "r{a{b{c{e=x;}}}}");
}

TEST(ConfigSection, destroysEverythingBelowOnce)
{
    destroyed = 0;
    {
        ConfigSection root("r");
        for (int i = 0; i < 5; ++i) {
            auto* child = new CountedSection("a");
            root.addSection(child);
            for (int k = 0; k < i; ++k) {
                auto* grandchild = new CountedSection("b");
                child->addSection(grandchild);
                grandchild->addEntry(makeEntry("e", "x"));
                grandchild->addSection(new CountedSection("c"));
            }
        }
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 5 + 10 + 10);
}

TEST(ConfigSection, isCopiedWithEverythingBelowInOrder)
{
    ConfigSection root("r");
    for (int i = 0; i < 30; ++i) {
        ConfigSection* child = addChild(root, std::to_string(i * 7 % 20));
        root.addEntry(makeEntry(std::to_string(i * 7 % 20), std::to_string(i)));
        for (int k = 0; k < i % 4; ++k) addChild(*child, "inner")->addEntry(makeEntry("e", std::to_string(k)));
    }
    const ConfigSection copy = root;
    EXPECT_EQ(describe(copy), describe(root));
    EXPECT_EQ(copy.getSections("7").size(), root.getSections("7").size());
    EXPECT_EQ(copy.getEntry("7", true)->getValue(), root.getEntry("7", true)->getValue());
}

TEST(ConfigSection, isIndependentOfItsCopy)
{
    ConfigSection root("r");
    ConfigSection* child = addChild(root, "a");
    child->addEntry(makeEntry("e", "old"));
    const ConfigSection copy = root;
    child->getEntry("e", true)->setValue("new");
    addChild(*child, "b");
    addChild(root, "c");
    root.addEntry(makeEntry("f", "x"));
    EXPECT_EQ(describe(copy), "r{a{e=old;}}");
    EXPECT_EQ(describe(root), "r{a{b{}e=new;}c{}f=x;}");
    EXPECT_NE(copy.getSections("a").front(), child);
}

TEST(ConfigSection, copyOfAChildBelongsToNobodyYet)
{
    ConfigSection root("r");
    ConfigSection* child = addChild(root, "a");
    child->addEntry(makeEntry("e", "x"));
    root.addSection(new ConfigSection(*child));
    child->addSection(new ConfigSection(root));
    EXPECT_EQ(describe(root), "r{a{r{a{e=x;}a{e=x;}}e=x;}a{e=x;}}");
}

TEST_F(Lookups, startBelowTheSection)
{
    EXPECT_EQ(valueAt("a"), "5");
    EXPECT_EQ(valueAt("a/e"), "2");
    EXPECT_EQ(valueAt("a/b/c"), "1");
    EXPECT_EQ(root.getSections("a").size(), 2u);
    EXPECT_EQ(root.getSections("a/b").size(), 2u);
    EXPECT_EQ(root.getSections("a/b").front()->getEntry("c", true)->getValue(), "1");
}

TEST_F(Lookups, takeTheFirstOfSeveralSectionsOnTheWay)
{
    EXPECT_EQ(valueAt("a/only"), "nothing");
    EXPECT_EQ(valueAt("a/e"), "2");
    expectFatalError([this] { root.getEntry("a/only", true); }, "ConfigSection::getEntry() -> entry not found (only)!");
}

TEST_F(Lookups, treatTheEmptyNameLikeAnother)
{
    EXPECT_EQ(valueAt("/z"), "4");
    EXPECT_EQ(valueAt(""), "nothing");
    EXPECT_EQ(valueAt("a/"), "nothing");
    EXPECT_EQ(root.getSections("").size(), 1u);
    root.getSections("a").front()->addEntry(makeEntry("", "6"));
    root.addEntry(makeEntry("", "7"));
    EXPECT_EQ(valueAt("a/"), "6");
    EXPECT_EQ(valueAt(""), "7");
}

TEST_F(Lookups, missNothingSilentlyButTheLastEntry)
{
    EXPECT_EQ(root.getEntry("missing", false), nullptr);
    EXPECT_EQ(root.getEntry("a/missing", false), nullptr);
    EXPECT_EQ(root.getEntry("a/b/missing", false), nullptr);
}

TEST_F(Lookups, ofAMissingEntryNameItsLastPart)
{
    expectFatalError([this] { root.getEntry("missing", true); },
                     "ConfigSection::getEntry() -> entry not found (missing)!");
    expectFatalError([this] { root.getEntry("a/b/d", true); }, "ConfigSection::getEntry() -> entry not found (d)!");
    expectFatalError([this] { root.getEntry("a/", true); }, "ConfigSection::getEntry() -> entry not found ()!");
    expectFatalError([this] { root.getEntry("a/b", true); }, "ConfigSection::getEntry() -> entry not found (b)!");
}

TEST_F(Lookups, ofAnEntryBehindAMissingSectionAreFatalInAnyCase)
{
    expectFatalError([this] { root.getEntry("x/y/z", false); }, "ConfigSection::getEntry() -> entry not found (x)!");
    expectFatalError([this] { root.getEntry("x/y/z", true); }, "ConfigSection::getEntry() -> entry not found (x)!");
    expectFatalError([this] { root.getEntry("a/x/z", false); }, "ConfigSection::getEntry() -> entry not found (x)!");
    expectFatalError([this] { root.getEntry("a/e/z", false); }, "ConfigSection::getEntry() -> entry not found (e)!");
    expectFatalError([this] { root.getEntry("a//z", false); }, "ConfigSection::getEntry() -> entry not found ()!");
}

TEST_F(Lookups, ofSectionsNameWhatIsMissingInTwoWays)
{
    expectFatalError([this] { root.getSections("x/y"); }, "ConfigSection::getSections() -> section not found (x)!");
    expectFatalError([this] { root.getSections("a/x/y"); }, "ConfigSection::getSections() -> section not found (x)!");
    expectFatalError([this] { root.getSections("a//y"); }, "ConfigSection::getSections() -> section not found ()!");
    expectFatalError([this] { root.getSections("x"); }, "ConfigSection::getSections() -> section not found! (x)!");
    expectFatalError([this] { root.getSections("a/x"); }, "ConfigSection::getSections() -> section not found! (x)!");
    expectFatalError([this] { root.getSections("a/"); }, "ConfigSection::getSections() -> section not found! ()!");
    expectFatalError([this] { root.getSections("a/e"); }, "ConfigSection::getSections() -> section not found! (e)!");
    expectFatalError([this] { root.getSections("a/b/c"); }, "ConfigSection::getSections() -> section not found! (c)!");
}

TEST(ConfigSection, findsEachOfManySections)
{
    ConfigSection root("r");
    std::vector<ConfigSection*> added;
    added.reserve(many);
    for (int i = 0; i < many; ++i) added.push_back(addChild(root, std::to_string(i)));
    for (int i = 0; i < many; ++i) {
        const std::list<ConfigSection*> found = root.getSections(std::to_string(i));
        ASSERT_EQ(found.size(), 1u);
        ASSERT_EQ(found.front(), added[static_cast<std::size_t>(i)]);
        ASSERT_EQ(root.getEntry(std::to_string(i) + "/e", false), nullptr);
    }
    const ConfigSection copy = root;
    EXPECT_EQ(copy.getAllSections().size(), added.size());
    EXPECT_EQ(copy.getSections(std::to_string(many - 1)).front(), copy.getAllSections().back());
}

TEST(ConfigSection, findsEachOfManyEntries)
{
    ConfigSection root("r");
    for (int round = 0; round < 2; ++round)
        for (int i = 0; i < many; ++i) root.addEntry(makeEntry(std::to_string(i), std::to_string(i + round)));
    const ConfigSection copy = root;
    for (int i = 0; i < many; ++i) {
        ASSERT_EQ(root.getEntry(std::to_string(i), true)->getValue(), std::to_string(i + 1));
        ASSERT_EQ(copy.getEntry(std::to_string(i), true)->getValue(), std::to_string(i + 1));
    }
    EXPECT_EQ(root.getEntry(std::to_string(many), false), nullptr);
    std::list<ConfigEntry*> entries;
    root.getEntries(entries);
    EXPECT_EQ(entries.size(), static_cast<std::size_t>(many));
}

TEST(ConfigSection, keepsManySectionsOfOneName)
{
    ConfigSection root("r");
    std::list<ConfigSection*> added;
    for (int i = 0; i < many; ++i) added.push_back(addChild(root, "same"));
    EXPECT_EQ(root.getSections("same"), added);
    added.front()->addEntry(makeEntry("e", "first"));
    for (int i = 0; i < many; ++i) ASSERT_EQ(root.getEntry("same/e", true)->getValue(), "first");
    const ConfigSection copy = root;
    EXPECT_EQ(copy.getSections("same").size(), added.size());
}

TEST(ConfigSection, mayHaveAMillionLevels)
{
    std::string path;
    ConfigSection root("a");
    ConfigSection* last = &root;
    for (int i = 1; i < levels; ++i) {
        last = addChild(*last, "a");
        path += "a/";
    }
    last->addEntry(makeEntry("e", "x"));
    EXPECT_EQ(root.getEntry(path + "e", true), last->getEntry("e", true));
    EXPECT_EQ(root.getSections(path.substr(0, path.size() - 1)).front(), last);

    const ConfigSection copy = root;
    ASSERT_NE(copy.getEntry(path + "e", true), last->getEntry("e", true));
    EXPECT_EQ(copy.getEntry(path + "e", true)->getValue(), "x");
    last->addSection(&root);
    EXPECT_TRUE(last->getAllSections().empty());
}

TEST(ConfigSection, mayBeBuiltFromTheInsideOut)
{
    auto* section = new ConfigSection("a");
    for (int i = 1; i < levels; ++i) {
        auto* outer = new ConfigSection("a");
        outer->addSection(section);
        section = outer;
    }
    EXPECT_EQ(section->getAllSections().size(), 1u);
    delete section;
}
