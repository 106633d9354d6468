#include <xum/files/config_file.h>

#include "allocation_counter.h"
#include "config_tree.h"
#include "engine_fixtures.h"
#include "fatal_error.h"
#include "file_contents.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <xum/files/resource_manager.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#ifndef _WIN32
#    include <sys/resource.h>
#endif

namespace {

namespace fs = std::filesystem;

static_assert(std::has_virtual_destructor_v<ConfigFile>);

const std::string example = "<config>\r\n"
                            "   <window>\r\n"
                            "      <width 1024/>\r\n"
                            "      <title \"My window\"/>\r\n"
                            "   </window>\r\n"
                            "   <renderer OpenGL/>\r\n"
                            "</config>\r\n";
const std::string exampleTree = "config{window{width=1024;title=My window;}renderer=OpenGL;}";

const std::string noRoot = "config file has no root section!";

/// A configuration of a text, by way of a file.
ConfigFile configOf(const std::string& text)
{
    writeFileContents("config.cfg", text);
    return ConfigFile("config.cfg");
}

std::string treeOf(const ConfigFile& file)
{
    return describe(*file.getRootSection());
}

/// What the file writes.
std::string textOf(const ConfigFile& file)
{
    EXPECT_TRUE(file.write("written.cfg"));
    return fileContents("written.cfg");
}

ConfigFile withoutRoot()
{
    return ConfigFile(static_cast<ConfigSection*>(nullptr));
}

void addEntry(ConfigSection& section, const std::string& name, const std::string& value)
{
    auto* entry = new ConfigEntry(name);
    entry->setValue(value);
    section.addEntry(entry);
}

ConfigSection* addChild(ConfigSection& section, const std::string& name)
{
    auto* child = new ConfigSection(name);
    section.addSection(child);
    return child;
}

/// A file whose root section "r" has one entry.
ConfigFile withEntry(const std::string& name, const std::string& value)
{
    auto* root = new ConfigSection("r");
    addEntry(*root, name, value);
    return ConfigFile(root);
}

void expectRefused(const std::string& text, const std::string& message)
{
    expectFatalError([&] { configOf(text); }, message);
}

/// Files that a host keeps in memory.
class HostResources final : public ResourceManager {
public:
    ResourceFileImplementation* addResourceFile(const std::string&) override { return nullptr; }

    bool load(std::vector<unsigned char>& data, const std::string& name) override
    {
        const auto found = files.find(name);
        if (found == files.end()) return false;
        data.assign(found->second.begin(), found->second.end());
        return true;
    }

    std::map<std::string, std::string> files;
};

using ConfigFileWithEngine = EngineFixture;

std::string randomName(std::mt19937& random, const std::string& characters)
{
    std::string name;
    for (auto length = random() % 6; length > 0; --length) name += characters[random() % characters.size()];
    return name;
}

/// Of what can be read back: a tag must stay a tag, and of the same kind.
std::string randomSectionName(std::mt19937& random)
{
    for (;;) {
        std::string name = randomName(random, "ab </=\t\r\n\xC3\xA4{}");
        if (name.empty() || (name.front() != '/' && name.back() != '/')) return name;
    }
}

std::string randomEntryName(std::mt19937& random)
{
    for (;;) {
        std::string name = randomName(random, "abc</=\t\r\n\xFF;");
        if (name.empty() || name.front() != '/') return name;
    }
}

std::unique_ptr<ConfigSection> randomTree(std::mt19937& random)
{
    auto root = std::make_unique<ConfigSection>(randomSectionName(random));
    std::vector<ConfigSection*> sections = {root.get()};
    for (auto count = random() % 60; count > 0; --count) {
        ConfigSection* section = sections[random() % sections.size()];
        if (random() % 2 == 0)
            sections.push_back(addChild(*section, randomSectionName(random)));
        else
            addEntry(*section, randomEntryName(random), randomName(random, "ab  </'\t\r\n\xE4;=0"));
    }
    return root;
}

} // namespace

TEST(ConfigFile, readsAFile)
{
    const ConfigFile file = configOf(example);
    EXPECT_EQ(treeOf(file), exampleTree);
    EXPECT_EQ(file.getRootSection()->getName(), "config");
    EXPECT_EQ(file.getEntry("window/width", true)->getValue(), "1024");
    EXPECT_EQ(file.getEntry("renderer", true)->getValue(), "OpenGL");
    EXPECT_EQ(file.getEntry("missing", false), nullptr);
    EXPECT_EQ(file.getSections("window").front()->getEntry("title", true)->getValue(), "My window");
}

TEST(ConfigFile, readsAFileWithAWideName)
{
    std::ofstream(fs::path(u8"\u00FCn\u00EF-\u20AC.cfg"), std::ios::binary) << example;
    EXPECT_EQ(treeOf(ConfigFile(std::wstring(L"\u00FCn\u00EF-\u20AC.cfg"))), exampleTree);
}

TEST(ConfigFile, readsWhatAnEditorMakesOfIt)
{
    EXPECT_EQ(treeOf(configOf("\n<config>\n\t<window>\n\t\t<width 1024/>\n<title \"My window\"/></window>  "
                              "<renderer \"OpenGL\"/>\n\n</anything>")),
              exampleTree);
}

TEST(ConfigFile, readsThroughAHostsOwnResourceManager)
{
    HostResources resources;
    resources.files["data/a.cfg"] = example;
    EXPECT_EQ(treeOf(ConfigFile(&resources, "data/a.cfg")), exampleTree);
}

TEST_F(ConfigFileWithEngine, readsPlainFilesAndArchives)
{
    std::string archive("!XumRes\0\0\0\0\1\0\0\0\0", 16);
    archive += "packed/b.cfg" + std::string(116, '\0') + std::string("\xA0\0\0\0\0\0\0\0", 8);
    archive += std::string(1, static_cast<char>(example.size())) + std::string(7, '\0') + example;
    writeFileContents("archive.res", archive);
    writeFileContents("plain.cfg", "<a><b c/></a>");
    ResourceManager* resources = engine->createResourceManager();
    ASSERT_NE(resources->addResourceFile("archive.res"), nullptr);
    EXPECT_EQ(treeOf(ConfigFile(resources, "plain.cfg")), "a{b=c;}");
    EXPECT_EQ(treeOf(ConfigFile(resources, "packed/b.cfg")), exampleTree);
    EXPECT_EQ(treeOf(ConfigFile(resources, "packed/elsewhere/../b.cfg")), exampleTree);
    engine->destroyResourceManager(resources);
}

TEST(ConfigFile, thatIsMissingIsFatal)
{
    expectFatalError([] { ConfigFile(std::string("missing.cfg")); },
                     "ConfigFile::ConfigFile() -> could not open config file (missing.cfg)!");
    expectFatalError([] { ConfigFile(std::string("no/such/place.cfg")); },
                     "ConfigFile::ConfigFile() -> could not open config file (no/such/place.cfg)!");
    expectFatalError([] { ConfigFile{std::string()}; }, "ConfigFile::ConfigFile() -> could not open config file ()!");
}

TEST(ConfigFile, thatIsADirectoryCannotBeOpened)
{
    const auto open = [] {
        fs::create_directory("directory");
        ConfigFile(std::string("directory"));
    };
    expectFatalError(open, "ConfigFile::ConfigFile() -> could not open config file (directory)!");
}

TEST(ConfigFile, missingUnderAWideNameIsNamedInUtf8)
{
    expectFatalError([] { ConfigFile(std::wstring(L"k\u00E4se-\u20AC.cfg")); },
                     "ConfigFile::ConfigFile() -> could not open config file (k\xC3\xA4se-\xE2\x82\xAC.cfg)!");
    expectFatalError([] { ConfigFile(std::wstring(L"half\xD800.cfg")); },
                     "ConfigFile::ConfigFile() -> could not open config file (half)!");
}

TEST(ConfigFile, missingInTheResourcesIsFatal)
{
    const auto open = [] {
        writeFileContents("plain.cfg", example); // this manager does not look for plain files
        HostResources resources;
        ConfigFile(&resources, "plain.cfg");
    };
    expectFatalError(open, "ConfigFile::ConfigFile() -> could not open config file (plain.cfg)!");
    expectFatalError([] { ConfigFile(nullptr, "some.cfg"); },
                     "ConfigFile::ConfigFile() -> could not open config file (some.cfg)!");
}

TEST(ConfigFile, thatIsEmptyIsOnlyLogged)
{
    const auto open = [] {
        enterOwnDirectory();
        HostResources resources;
        resources.files["data/empty"] = "";
        writeFileContents("empty.cfg", "");
        const ConfigFile plain(std::string("empty.cfg"));
        const ConfigFile wide(std::wstring(L"empty.cfg"));
        const ConfigFile packed(&resources, "data/empty");
        const ConfigFile copy = packed;
        std::exit(shownMessageBoxes().empty() && copy.write("written.cfg") ? 0 : 1);
    };
    EXPECT_EXIT(open(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(fileText(ownLogFile()), "WARNING: empty config file (empty.cfg)!\n"
                                      "WARNING: empty config file (empty.cfg)!\n"
                                      "WARNING: empty config file (data/empty)!\n");
    EXPECT_EQ(fs::file_size(ownDirectory() / "written.cfg"), 0u);
}

TEST(ConfigFile, thatIsEmptyHasNoRootSection)
{
    const auto ask = [] {
        const ConfigFile file = withoutRoot();
        static_cast<void>(file.getRootSection());
    };
    expectFatalError(ask, "ConfigFile::getRootSection() -> " + noRoot);
    expectFatalError([] { withoutRoot().getSections("a"); }, "ConfigFile::getSections() -> " + noRoot);
    expectFatalError([] { withoutRoot().getEntry("a", true); }, "ConfigFile::getEntry() -> " + noRoot);
    expectFatalError([] { withoutRoot().getEntry("a", false); }, "ConfigFile::getEntry() -> " + noRoot);
}

TEST(ConfigFile, ofBrokenTagsIsFatal)
{
    expectRefused("<r><a b c/></r>", "Token::Token(a) -> invalid number of spaces inside entry!");
    expectRefused("<r><ab/></r>", "Token::Token(ab/>) -> invalid number of spaces inside entry!");
    expectRefused("<r><a\tb/></r>", "Token::Token(a\tb/>) -> invalid number of spaces inside entry!");
    expectRefused("<r><\"a b\"/></r>", "Token::Token(\"a b\"/>) -> invalid number of spaces inside entry!");
    expectRefused("<r>< a b/></r>", "Token::Token() -> invalid number of spaces inside entry!");
    expectRefused("<r><a \"b c/></r>", "Token::Token(a) -> mismatched quotes!");
}

TEST(ConfigFile, ofWhatAreNoTagsIsFatal)
{
    expectRefused("# c\n<a></a>", "tokenize() -> expecting '<' got '#'!");
    expectRefused("<a></a>junk", "tokenize() -> expecting '<' got 'j'!");
    expectRefused("<r><a \"x>y\"/></r>", "tokenize() -> expecting '<' got 'y'!");
    expectRefused("\xEF\xBB\xBF<a></a>", "tokenize() -> expecting '<' got '\xEF'!");
    expectRefused("<a></a", "tokenize() -> end of file reached before finding a closing tag!");
}

TEST(ConfigFile, ofSectionsThatAreNotClosedIsFatal)
{
    expectRefused(" \r\n", "readSection() -> section needs at least 2 tokens!");
    expectRefused("<a><b>", "readSection() -> section needs at least 2 tokens!");
    expectRefused("<a><b x/>", "readSection() -> empty token list while parsing!");
    expectRefused("<a><!-- c --></a>", "readSection() -> empty token list while parsing!");
}

TEST(ConfigFile, ofABrokenTextInTheResourcesIsFatal)
{
    const auto open = [] {
        HostResources resources;
        resources.files["broken"] = "<a><b/></a>";
        ConfigFile(&resources, "broken");
    };
    expectFatalError(open, "Token::Token(b/>) -> invalid number of spaces inside entry!");
}

TEST(ConfigFile, looksUpBelowItsRoot)
{
    expectFatalError([] { configOf(example).getEntry("config/window/width", false); },
                     "ConfigSection::getEntry() -> entry not found (config)!");
    expectFatalError([] { configOf(example).getEntry("window/height", true); },
                     "ConfigSection::getEntry() -> entry not found (height)!");
    expectFatalError([] { configOf(example).getSections("config"); },
                     "ConfigSection::getSections() -> section not found! (config)!");
    expectFatalError([] { configOf(example).getSections("config/window"); },
                     "ConfigSection::getSections() -> section not found (config)!");
}

TEST(ConfigFile, copiesTheWholeTree)
{
    const ConfigFile file = configOf(example);
    const ConfigFile copy = file;
    file.getEntry("window/width", true)->setValue("640");
    addChild(*file.getRootSection(), "more");
    EXPECT_EQ(treeOf(copy), exampleTree);
    EXPECT_EQ(treeOf(file), "config{window{width=640;title=My window;}more{}renderer=OpenGL;}");
}

TEST(ConfigFile, isAssignedTheWholeTree)
{
    const ConfigFile file = configOf(example);
    ConfigFile other = withEntry("a", "b");
    ConfigFile& result = other = file;
    EXPECT_EQ(&result, &other);
    EXPECT_EQ(treeOf(other), exampleTree);
    EXPECT_NE(other.getRootSection(), file.getRootSection());
    other.getEntry("renderer", true)->setValue("none");
    EXPECT_EQ(treeOf(file), exampleTree);
}

TEST(ConfigFile, isAssignedToItself)
{
    ConfigFile file = configOf(example);
    const ConfigSection* root = file.getRootSection();
    const ConfigFile& itself = file;
    file = itself;
    EXPECT_EQ(file.getRootSection(), root);
    EXPECT_EQ(treeOf(file), exampleTree);

    ConfigFile empty = withoutRoot();
    const ConfigFile& emptyItself = empty;
    empty = emptyItself;
    EXPECT_EQ(textOf(empty), "");
}

TEST(ConfigFile, withoutRootIsCopiedAndAssigned)
{
    const ConfigFile empty = withoutRoot();
    const ConfigFile copy = empty;
    EXPECT_EQ(textOf(copy), "");
    ConfigFile file = configOf(example);
    file = empty;
    EXPECT_EQ(textOf(file), "");
    file = configOf(example);
    EXPECT_EQ(textOf(file), example);
}

TEST(ConfigFile, ownsTheTreeThatItIsMadeOf)
{
    static int destroyed = 0;
    struct CountedSection : ConfigSection {
        using ConfigSection::ConfigSection;
        ~CountedSection() override { ++destroyed; }
    };
    destroyed = 0;
    {
        auto* root = new CountedSection(std::string("r"));
        const ConfigFile file(root);
        EXPECT_EQ(file.getRootSection(), root);
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ConfigFile, givesItsRootSectionToNobody)
{
    const ConfigFile file = configOf(example);
    ConfigSection section("r");
    section.addSection(file.getRootSection());
    EXPECT_EQ(describe(section), "r{}");
    EXPECT_EQ(textOf(ConfigFile(file.getRootSection())), "") << "a file without a root section";
    const ConfigFile copy = file;
    section.addSection(copy.getRootSection());
    EXPECT_EQ(describe(section), "r{}");
    section.addSection(new ConfigSection(*file.getRootSection()));
    EXPECT_EQ(describe(section), "r{" + exampleTree + "}");
    EXPECT_EQ(treeOf(file), exampleTree);
}

TEST(ConfigFile, takesNoSectionOfAnother)
{
    ConfigSection section("r");
    ConfigSection* child = addChild(section, "a");
    EXPECT_EQ(textOf(ConfigFile(child)), "");
    EXPECT_EQ(describe(section), "r{a{}}");
}

TEST(ConfigFileWriting, makesTheseBytesOfTheExample)
{
    ASSERT_EQ(example.size(), 120u);
    auto* root = new ConfigSection("config");
    addEntry(*root, "renderer", "OpenGL"); // sections come first all the same
    ConfigSection* window = addChild(*root, "window");
    addEntry(*window, "width", "1024");
    addEntry(*window, "title", "My window");
    const ConfigFile file(root);
    EXPECT_EQ(textOf(file), example);
    EXPECT_EQ(textOf(configOf(example)), example);
}

TEST(ConfigFileWriting, indentsBy3SpacesALevel)
{
    EXPECT_EQ(textOf(configOf("<a><e 1/><b><f 2/><c><g 3/></c></b><d></d></a>")), "<a>\r\n"
                                                                                  "   <b>\r\n"
                                                                                  "      <c>\r\n"
                                                                                  "         <g 3/>\r\n"
                                                                                  "      </c>\r\n"
                                                                                  "      <f 2/>\r\n"
                                                                                  "   </b>\r\n"
                                                                                  "   <d>\r\n"
                                                                                  "   </d>\r\n"
                                                                                  "   <e 1/>\r\n"
                                                                                  "</a>\r\n");
}

TEST(ConfigFileWriting, writesTheSectionsOfEveryLevelInTheOrderOfAdding)
{
    const std::string text = "<a><z></z><b></b><z><y></y><b></b></z><a></a></a>";
    std::string written = textOf(configOf(text));
    for (const char blank : {' ', '\r', '\n'}) std::erase(written, blank);
    EXPECT_EQ(written, text);
}

TEST(ConfigFileWriting, quotesOnlyValuesWithASpace)
{
    const std::vector<std::pair<std::string, std::string>> lines = {
        {"", "<e />"},
        {"v", "<e v/>"},
        {"a b", "<e \"a b\"/>"},
        {" ", "<e \" \"/>"},
        {"a\tb\r\nc", "<e a\tb\r\nc/>"},
        {"a/", "<e a//>"},
        {"a\"b", "<e a\"b/>"},
        {"\"a b\"", "<e \"\"a b\"\"/>"},
        {"a>b", "<e a>b/>"},
        {"\xC3\xA4\xFF", "<e \xC3\xA4\xFF/>"},
        {std::string("a\0b", 3), std::string("<e a\0b/>", 8)},
    };
    for (const auto& [value, line] : lines)
        EXPECT_EQ(textOf(withEntry("e", value)), "<r>\r\n   " + line + "\r\n</r>\r\n");
}

TEST(ConfigFileWriting, readsBackValuesWithoutQuotesAndBrackets)
{
    for (const std::string& value :
         {std::string(), std::string("v"), std::string("a b"), std::string(" "), std::string("  a  "),
          std::string("a\tb\r\nc"), std::string("a/"), std::string("/"), std::string("a /"), std::string("<<"),
          std::string("\0", 1), std::string("\xFF")}) {
        ASSERT_TRUE(withEntry("e", value).write("written.cfg"));
        EXPECT_EQ(ConfigFile(std::string("written.cfg")).getEntry("e", true)->getValue(), value);
    }
}

TEST(ConfigFileWriting, emptiesAFileThatWasLonger)
{
    writeFileContents("written.cfg", std::string(10000, 'x'));
    EXPECT_EQ(textOf(configOf("<a></a>")), "<a>\r\n</a>\r\n");
    EXPECT_TRUE(withoutRoot().write("written.cfg"));
    EXPECT_EQ(fs::file_size("written.cfg"), 0u);
}

TEST(ConfigFileWriting, mayReplaceTheFileThatWasRead)
{
    const ConfigFile file = configOf("<a><b c/></a>");
    EXPECT_TRUE(file.write("config.cfg"));
    EXPECT_EQ(fileContents("config.cfg"), "<a>\r\n   <b c/>\r\n</a>\r\n");
}

TEST(ConfigFileWriting, takesAWideName)
{
    EXPECT_TRUE(configOf(example).write(std::wstring(L"\u00E4-\U0001F600.cfg")));
    EXPECT_EQ(fs::file_size(fs::path(u8"\u00E4-\U0001F600.cfg")), 120u);
    EXPECT_EQ(treeOf(ConfigFile(std::wstring(L"\u00E4-\U0001F600.cfg"))), exampleTree);
}

TEST(ConfigFileWriting, ofAFileThatCannotBeMadeFailsSilently)
{
    const auto write = [] {
        enterOwnDirectory();
        fs::create_directory("directory");
        const ConfigFile file = configOf(example);
        const bool isWritten = file.write("no/such/place.cfg") || file.write("directory") || file.write("") ||
                               file.write(std::string("cut\0name", 8)) ||
                               file.write(std::wstring(L"no/such/place.cfg")) || withoutRoot().write("directory");
        std::exit(!isWritten && shownMessageBoxes().empty() && !fs::exists("log.txt") && !fs::exists("cut") ? 0 : 1);
    };
    EXPECT_EXIT(write(), ::testing::ExitedWithCode(0), "");
}

TEST(ConfigFileWriting, failsWhenMemoryRunsOut)
{
    const ConfigFile file = withEntry("e", std::string(100000, 'v'));
    const std::string text = textOf(file);
    const std::string name = "written.cfg";
    bool isWritten = false;
    int failures = 0;
    while (!isWritten) {
        const FailingAllocations failing(failures);
        isWritten = file.write(name);
        ASSERT_LT(++failures, 1000);
    }
    EXPECT_GT(failures, 2);
    EXPECT_EQ(fileContents(name), text);
}

#ifndef _WIN32

TEST(ConfigFileWriting, ontoAFullDiskFails)
{
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    EXPECT_FALSE(configOf("<a></a>").write("/dev/full")) << "shows only when the last bytes are handed on";
    EXPECT_FALSE(configOf("<a></a>").write(std::wstring(L"/dev/full")));
    EXPECT_FALSE(withEntry("e", std::string(1 << 20, 'x')).write("/dev/full"));
    EXPECT_TRUE(withoutRoot().write("/dev/full")) << "nothing to write";
}

TEST(ConfigFile, thatIsShorterThanItSaysCannotBeRead)
{
    const std::string name = "/sys/kernel/uevent_seqnum"; // says that it has 4096 bytes
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(name, failure);
    if (failure || fileContents(name).size() >= size) GTEST_SKIP() << "no such file here";
    expectFatalError([&] { ConfigFile{name}; },
                     "ConfigFile::ConfigFile() -> could not read config file (" + name + ")!");
}

TEST(ConfigFile, whoseSizeCannotBeFoundOutCannotBeRead)
{
    const std::string name = "/proc/self/mem";
    if (!fs::exists(name)) GTEST_SKIP() << "no such file here";
    expectFatalError([&] { ConfigFile{name}; },
                     "ConfigFile::ConfigFile() -> could not read config file (" + name + ")!");
}

#    if !defined(__SANITIZE_ADDRESS__) // which takes far more memory than there would be

TEST(ConfigFile, thatIsTooLargeForTheMemoryCannotBeRead)
{
    const auto open = [] {
        writeFileContents("huge.cfg", "");
        fs::resize_file("huge.cfg", std::uintmax_t{16} << 30); // a hole: it takes no place on the disk
        const rlimit limit = {rlim_t{8} << 30, rlim_t{8} << 30};
        setrlimit(RLIMIT_AS, &limit);
        ConfigFile(std::string("huge.cfg"));
    };
    expectFatalError(open, "ConfigFile::ConfigFile() -> could not read config file (huge.cfg)!");
    fs::remove(ownDirectory() / "huge.cfg");
}

#    endif

#endif

TEST(ConfigFileWriting, readsBackRandomTrees)
{
    std::mt19937 random(7);
    for (int i = 0; i < 500; ++i) {
        const ConfigFile file(randomTree(random).release());
        ASSERT_TRUE(file.write("random.cfg"));
        const std::string text = fileContents("random.cfg");
        const ConfigFile again(std::string("random.cfg"));
        ASSERT_EQ(treeOf(again), treeOf(file)) << text;
        ASSERT_EQ(textOf(again), text);
    }
}

TEST(ConfigFileWriting, readsBackManySectionsAndEntries)
{
    constexpr int many = 100000;
    auto* root = new ConfigSection("r");
    for (int i = 0; i < many; ++i) {
        addEntry(*addChild(*root, std::to_string(i)), "e", std::to_string(i));
        addChild(*root, "same");
        addEntry(*root, std::to_string(i), "value " + std::to_string(i));
    }
    ASSERT_TRUE(ConfigFile(root).write("many.cfg"));
    const ConfigFile file(std::string("many.cfg"));
    for (int i = 0; i < many; ++i) {
        ASSERT_EQ(file.getEntry(std::to_string(i) + "/e", true)->getValue(), std::to_string(i));
        ASSERT_EQ(file.getEntry(std::to_string(i), true)->getValue(), "value " + std::to_string(i));
    }
    EXPECT_EQ(file.getRootSection()->getAllSections().size(), 2u * many);
    EXPECT_EQ(file.getSections("same").size(), std::size_t{many});
}

TEST(ConfigFileWriting, readsBack2000Levels)
{
    auto* root = new ConfigSection("a");
    ConfigSection* section = root;
    std::string path;
    for (int i = 1; i < 2000; ++i) {
        section = addChild(*section, "a");
        path += "a/";
    }
    addEntry(*section, "e", "deep down");
    ASSERT_TRUE(ConfigFile(root).write("deep.cfg"));
    // Two tags a level, and the entry, each with a line end of two bytes.
    EXPECT_EQ(fs::file_size("deep.cfg"), 2000u * (5 + 6) + 2 * 3 * (2000u * 1999 / 2) + 3 * 2000 + 18);
    const ConfigFile file(std::string("deep.cfg"));
    EXPECT_EQ(file.getEntry(path + "e", true)->getValue(), "deep down");
    EXPECT_EQ(treeOf(file).size(), 3u * 2000 + 12);
}

TEST(ConfigFile, mayHaveAMillionLevels)
{
    constexpr int levels = 1000000;
    std::string path;
    {
        std::ofstream text("levels.cfg", std::ios::binary);
        for (int i = 0; i < levels; ++i) text << "<a>";
        text << "<e x/>";
        for (int i = 0; i < levels; ++i) text << "</a>";
    }
    for (int i = 1; i < levels; ++i) path += "a/";
    ConfigFile file(std::string("levels.cfg"));
    EXPECT_EQ(file.getEntry(path + "e", true)->getValue(), "x");
    const ConfigFile copy = file;
    EXPECT_EQ(copy.getEntry(path + "e", true)->getValue(), "x");
    file = withEntry("a", "b");
    EXPECT_EQ(treeOf(file), "r{a=b;}");
}

TEST(ConfigFileWriting, readsBackAValueOf100MB)
{
    std::string value(100000000, 'v');
    value[12345678] = ' ';
    value.back() = '/';
    ASSERT_TRUE(withEntry("e", value).write("large.cfg"));
    EXPECT_EQ(fs::file_size("large.cfg"), 5u + 3 + 3 + 1 + value.size() + 1 + 4 + 6);
    EXPECT_TRUE(ConfigFile(std::string("large.cfg")).getEntry("e", true)->getValue() == value);
    fs::remove("large.cfg");
}
