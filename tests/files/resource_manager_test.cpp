#include "own_directory.h"
#include "resource_fixture.h"

#include <algorithm>
#include <random>
#include <set>

#ifndef _WIN32
#    include <sys/stat.h>
#endif

namespace {

namespace fs = std::filesystem;
using archive::PackedFile;
using ::testing::ExitedWithCode;

using Loaded = std::optional<std::string>;
const Loaded nothing = std::nullopt;

class ResourceManagerTest : public ResourceFixture {};

std::string allByteValues()
{
    std::string bytes;
    for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
    return bytes;
}

std::string largeContents()
{
    std::string contents(5'000'003, '\0');
    std::mt19937 random(5);
    for (char& byte : contents) byte = static_cast<char>(random());
    return contents;
}

/// A reader of archives as plain as can be, for whole files in memory.
Loaded loadFrom(const std::string& bytes, const std::string& name)
{
    const auto numberAt = [&](std::size_t at, int size) {
        std::uint64_t value = 0;
        for (int i = size - 1; i >= 0; --i) value = value << 8 | static_cast<unsigned char>(bytes[at + std::size_t(i)]);
        return value;
    };
    if (bytes.size() < 16) return nothing;
    const std::uint64_t count = std::min<std::uint64_t>(numberAt(11, 4), (bytes.size() - 16) / 144);
    Loaded found;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = 16 + 144 * i;
        const std::string field = bytes.substr(at, 128);
        if (field.substr(0, field.find('\0')) != name) continue;
        const std::uint64_t offset = numberAt(at + 128, 8);
        const std::uint64_t size = numberAt(at + 136, 4);
        found = offset < bytes.size() ? bytes.substr(offset, size) : "";
        found->resize(size, '\0');
    }
    return found;
}

} // namespace

TEST_F(ResourceManagerTest, readsPlainFilesByteByByte)
{
    const std::string contents = allByteValues() + "\r\n\n\x1a" + allByteValues();
    writeFiles({{"plain", contents}, {"data/maps/plain", "in a directory"}, {"empty", ""}});
    EXPECT_EQ(load("plain"), contents);
    EXPECT_EQ(load("data/maps/plain"), "in a directory");
    EXPECT_EQ(load((fs::current_path() / "plain").string()), contents);
    EXPECT_EQ(load("data/../plain"), contents);
    EXPECT_EQ(load("empty"), "");
}

TEST_F(ResourceManagerTest, readsArchivedFilesByteByByte)
{
    const std::string contents = allByteValues() + "\r\n\n\x1a" + allByteValues();
    addArchive(archive::pack({{"first", contents}, {"maps/second", "in a directory"}, {"empty", ""}, {"last", "."}}));
    EXPECT_EQ(load("first"), contents);
    EXPECT_EQ(load("maps/second"), "in a directory");
    EXPECT_EQ(load("empty"), "");
    EXPECT_EQ(load("last"), ".");
    EXPECT_EQ(load("first"), contents) << "the second time";
}

TEST_F(ResourceManagerTest, hasNothingThatNobodyHas)
{
    EXPECT_EQ(load("missing"), nothing);
    addArchive(archive::pack({{"file", "contents"}}));
    for (const char* name :
         {"missing", "missing/file", "file/", "/file", "./file", "FILE", "fil", "filee", "", "/", "..", "../", "."})
        EXPECT_EQ(load(name), nothing) << name;
}

TEST_F(ResourceManagerTest, comparesNamesWithCaseAsTheyAreStored)
{
    addArchive(
        archive::pack({{"Name", "upper"}, {"name", "lower"}, {"a\\b", "backslash"}, {"./c", "dot"}, {"d//e", "two"}}));
    EXPECT_EQ(load("Name"), "upper");
    EXPECT_EQ(load("name"), "lower");
    EXPECT_EQ(load("NAME"), nothing);
    EXPECT_EQ(load("a\\b"), "backslash");
    EXPECT_EQ(load("a/b"), nothing);
    EXPECT_EQ(load("./c"), "dot");
    EXPECT_EQ(load("c"), nothing);
    EXPECT_EQ(load("d//e"), "two");
    EXPECT_EQ(load("d/e"), nothing);
}

TEST_F(ResourceManagerTest, plainFileWinsOverAnArchive)
{
    addArchive(archive::pack({{"data/x.cfg", "packed"}, {"data/y.cfg", "packed"}, {"data/z.cfg", "packed"}}));
    writeFiles({{"data/x.cfg", "plain"}, {"data/z.cfg", ""}});
    EXPECT_EQ(load("data/x.cfg"), "plain");
    EXPECT_EQ(load("data/y.cfg"), "packed");
    EXPECT_EQ(load("data/z.cfg"), "") << "an empty file is a file";
    fs::remove("data/x.cfg");
    EXPECT_EQ(load("data/x.cfg"), "packed");
}

TEST_F(ResourceManagerTest, directoryDoesNotWinOverAnArchive)
{
    addArchive(archive::pack({{"data", "packed"}}));
    fs::create_directory("data");
    fs::create_directory("other");
    EXPECT_EQ(load("data"), "packed");
    EXPECT_EQ(load("other"), nothing);
    EXPECT_EQ(load("."), nothing);
}

#ifndef _WIN32

TEST_F(ResourceManagerTest, looksForPlainFilesByTheNameAsGiven)
{
    addArchive(archive::pack({{"a/c", "packed"}}));
    writeFiles({{"a/c", "plain"}});
    EXPECT_EQ(load("a/b/../c"), "packed") << "there is no directory a/b";
    fs::create_directory("a/b");
    EXPECT_EQ(load("a/b/../c"), "plain");
}

TEST_F(ResourceManagerTest, findsPlainFilesAboveTheWorkingDirectory)
{
    writeFiles({{"plain", "plain"}, {"inner/other", "other"}});
    fs::current_path("inner");
    EXPECT_EQ(load("../plain"), "plain");
    EXPECT_EQ(load("../../resources/plain"), "plain");
    EXPECT_EQ(load("../inner/other"), "other");
}

TEST_F(ResourceManagerTest, namedPipeDoesNotWinOverAnArchive)
{
    addArchive(archive::pack({{"pipe", "packed"}}));
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    ASSERT_EQ(mkfifo("other", 0600), 0);
    EXPECT_EQ(load("pipe"), "packed") << "and nobody waits for a writer";
    EXPECT_EQ(load("other"), nothing);
}

TEST_F(ResourceManagerTest, readsDataBeyondFourGigabytes)
{
    const std::uint64_t offset = (std::uint64_t{5} << 30) + 3;
    addArchive(archive::header(1) + archive::entry("far", offset, 3) + "near");
    fs::resize_file("archive", offset); // a hole: it takes no place on the disk
    std::ofstream("archive", std::ios::binary | std::ios::app) << "data";
    renewManager();
    ASSERT_NE(resources->addResourceFile("archive"), nullptr);
    EXPECT_EQ(load("far"), "dat");
    fs::remove("archive");
}

#endif

TEST_F(ResourceManagerTest, archiveThatWasAddedLastWins)
{
    addArchive(archive::pack({{"all", "1"}, {"first", "1"}, {"first and second", "1"}}), "1");
    addArchive(archive::pack({{"all", "2"}, {"second", "2"}, {"first and second", "2"}}), "2");
    addArchive(archive::pack({{"all", "3"}, {"third", "3"}}), "3");
    EXPECT_EQ(load("all"), "3");
    EXPECT_EQ(load("first and second"), "2");
    EXPECT_EQ(load("first"), "1");
    EXPECT_EQ(load("second"), "2");
    EXPECT_EQ(load("third"), "3");
    EXPECT_NE(resources->addResourceFile("1"), nullptr);
    EXPECT_EQ(load("all"), "1") << "the same archive once more";
}

TEST_F(ResourceManagerTest, everyAddedArchiveIsAnObjectOfItsOwn)
{
    addArchive(archive::pack({{"file", "contents"}}));
    std::set<ResourceFileImplementation*> archives;
    for (int i = 0; i < 3; ++i) archives.insert(resources->addResourceFile("archive"));
    EXPECT_EQ(archives.size(), 3u);
    EXPECT_EQ(archives.count(nullptr), 0u);
}

TEST_F(ResourceManagerTest, laterEntryOfTwoWithOneNameCounts)
{
    addArchive(archive::pack({{"twice", "earlier"}, {"other", "other"}, {"twice", "late"}}));
    EXPECT_EQ(load("twice"), "late");
    EXPECT_EQ(load("other"), "other");
}

TEST_F(ResourceManagerTest, takesEachDetourOutOfTheNameForArchives)
{
    addArchive(archive::pack({{"textures/a.png", "texture"}, {"/x/z", "absolute"}, {"a/..", "dots at the end"}}));
    EXPECT_EQ(load("maps/../textures/a.png"), "texture");
    EXPECT_EQ(load("maps/e1/../../textures/a.png"), "texture");
    EXPECT_EQ(load("../../textures/a.png"), "texture");
    EXPECT_EQ(load("textures/b/../a.png"), "texture");
    EXPECT_EQ(load("textures/../a.png"), nothing);
    EXPECT_EQ(load("/x/y/../z"), "absolute");
    EXPECT_EQ(load("a/.."), "dots at the end") << "nothing follows, so it is no detour";
    EXPECT_EQ(load("b/../a/.."), "dots at the end");
}

TEST_F(ResourceManagerTest, doesNotNormalizeTheNamesInArchives)
{
    addArchive(archive::pack({{"a/../b", "stored with a detour"}}));
    EXPECT_EQ(load("a/../b"), nothing);
    EXPECT_EQ(load("b"), nothing);
}

TEST_F(ResourceManagerTest, knowsNoNameThatHoldsANul)
{
    writeFiles({{"plain", "plain"}});
    addArchive(archive::pack({{"packed", "packed"}, {std::string("odd\0name", 8), "odd"}}));
    EXPECT_EQ(load(std::string("plain\0", 6)), nothing);
    EXPECT_EQ(load(std::string("packed\0tail", 11)), nothing);
    EXPECT_EQ(load(std::string("odd\0name", 8)), nothing);
    EXPECT_EQ(load("odd"), "odd") << "a stored name ends at its NUL";
}

TEST_F(ResourceManagerTest, takesANameThatFillsItsField)
{
    const std::string longest(127, 'l');
    const std::string full(128, 'f');
    addArchive(archive::pack({{longest, "127 bytes"}, {full, "128 bytes"}}));
    EXPECT_EQ(load(longest), "127 bytes");
    EXPECT_EQ(load(full), "128 bytes");
    EXPECT_EQ(load(full + "g"), nothing);
    EXPECT_EQ(load(full.substr(1)), nothing);
}

TEST_F(ResourceManagerTest, findsTheFileWithoutAName)
{
    addArchive(archive::pack({{"", "nameless"}}));
    EXPECT_EQ(load(""), "nameless");
    EXPECT_EQ(load("directory/../"), "nameless");
}

TEST_F(ResourceManagerTest, replacesWhatTheVectorHeld)
{
    writeFiles({{"plain", "plain"}});
    addArchive(archive::pack({{"packed", "packed"}}));
    std::vector<unsigned char> data(1000, 'x');
    EXPECT_TRUE(resources->load(data, "plain"));
    EXPECT_EQ(std::string(data.begin(), data.end()), "plain");
    data.assign(1000, 'x');
    EXPECT_TRUE(resources->load(data, "packed"));
    EXPECT_EQ(std::string(data.begin(), data.end()), "packed");
    EXPECT_FALSE(resources->load(data, "missing"));
    EXPECT_EQ(std::string(data.begin(), data.end()), "packed");
}

TEST_F(ResourceManagerTest, readsMegabytes)
{
    const std::string contents = largeContents();
    addArchive(archive::pack({{"before", "1"}, {"large", contents}, {"after", "2"}}));
    writeFiles({{"plain", contents}});
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(load("large") == contents);
        EXPECT_EQ(load("after"), "2");
        EXPECT_EQ(load("before"), "1");
        EXPECT_TRUE(load("plain") == contents);
    }
}

TEST_F(ResourceManagerTest, readsManyEntries)
{
    std::vector<PackedFile> files;
    for (int i = 0; i < 20000; ++i) files.emplace_back("file " + std::to_string(i), std::to_string(i * 7));
    addArchive(archive::pack(files));
    for (int i = 0; i < 20000; i += 13) ASSERT_EQ(load("file " + std::to_string(i)), std::to_string(i * 7));
    EXPECT_EQ(load("file 20000"), nothing);
}

#ifdef __linux__

namespace {

std::ptrdiff_t openFileCount()
{
    const fs::directory_iterator files("/proc/self/fd");
    return std::distance(fs::begin(files), fs::end(files));
}

} // namespace

TEST_F(ResourceManagerTest, keepsArchivesOpenUntilItIsDestroyed)
{
    const std::ptrdiff_t before = openFileCount();
    for (const char* name : {"1", "2", "3"}) addArchive(archive::pack({{name, name}}), name);
    EXPECT_EQ(openFileCount(), before + 3);
    for (const char* name : {"1", "2", "3"}) fs::remove(name);
    EXPECT_EQ(load("1"), "1");
    EXPECT_EQ(openFileCount(), before + 3) << "plain files are closed at once";
    renewManager();
    EXPECT_EQ(openFileCount(), before);
    EXPECT_EQ(load("1"), nothing);
}

#endif

// Archives that are damaged, or none.

TEST_F(ResourceManagerTest, fileThatCannotBeOpenedCountsAsAnEmptyArchive)
{
    EXPECT_NE(resources->addResourceFile("missing"), nullptr);
    EXPECT_NE(resources->addResourceFile("missing/file"), nullptr);
    EXPECT_NE(resources->addResourceFile(""), nullptr);
    EXPECT_NE(resources->addResourceFile(std::string("name\0tail", 9)), nullptr);
    fs::create_directory("directory");
    EXPECT_NE(resources->addResourceFile("directory"), nullptr);
    EXPECT_EQ(load("file"), nothing);
    addArchive(archive::pack({{"file", "contents"}}));
    EXPECT_NE(resources->addResourceFile("missing"), nullptr);
    EXPECT_EQ(load("file"), "contents") << "the archive behind it is still asked";
}

TEST_F(ResourceManagerTest, fileThatEndsWithinTheMagicCountsAsAnEmptyArchive)
{
    const std::string whole = archive::pack({{"file", "contents"}});
    for (std::size_t size = 0; size < 16; ++size) {
        SCOPED_TRACE(size);
        addArchive(whole.substr(0, size), "archive " + std::to_string(size));
        EXPECT_EQ(load("file"), nothing);
    }
}

TEST(ResourceArchive, ofAnotherMagicIsFatal)
{
    const auto add = [](const std::string& bytes) {
        enterOwnDirectory();
        writeFileContents("archive", bytes);
        Engine* engine = initEngine(false);
        ResourceManager* resources = engine->createResourceManager();
        resources->addResourceFile("archive");
        engine->destroyResourceManager(resources);
        shutdownEngine(engine);
        std::exit(0);
    };
    const std::string rest = archive::pack({{"file", "contents"}}).substr(7);
    const std::string broken[] = {"abc",
                                  "?",
                                  "!XumReS" + rest,
                                  "!xumRes" + rest,
                                  "?XumRes" + rest,
                                  "!XumRe",
                                  " !XumRes" + rest,
                                  std::string("!XumRe\0", 7) + rest,
                                  std::string(16, '\0')};
    for (const std::string& bytes : broken) {
        SCOPED_TRACE(bytes.substr(0, 8));
        if (bytes == "!XumRe") { // what is there is right
            EXPECT_EXIT(add(bytes), ExitedWithCode(0), "");
            continue;
        }
        EXPECT_EXIT(add(bytes), ExitedWithCode(fatalExitCode), "\\[\\[Error\\|Invalid header for resource file!\\]\\]");
        EXPECT_EQ(fileText(ownLogFile()),
                  "Engine initialized successfully.\nERROR: Invalid header for resource file!\n");
    }
}

TEST_F(ResourceManagerTest, believesNoEntryCountThatTheFileHasNoRoomFor)
{
    const std::string directory = archive::entry("a", 16 + 288, 1) + archive::entry("b", 16 + 288 + 1, 2);
    for (const std::uint32_t count : {0xFFFFFFFFu, 0x80000000u, 0x01C71C72u, 3u, 2u}) {
        SCOPED_TRACE(count);
        renewManager();
        addArchive(archive::header(count) + directory + "ABB");
        EXPECT_EQ(load("a"), "A");
        EXPECT_EQ(load("b"), "BB");
    }
    renewManager();
    addArchive(archive::header(1) + directory + "ABB");
    EXPECT_EQ(load("a"), "A");
    EXPECT_EQ(load("b"), nothing) << "an entry beyond the count";
    renewManager();
    addArchive(archive::header(0) + directory + "ABB");
    EXPECT_EQ(load("a"), nothing);
}

TEST_F(ResourceManagerTest, fillsWhatADamagedArchiveLacksWithZeroes)
{
    const std::uint64_t end = 16 + 7 * 144 + 4;
    addArchive(archive::header(7) + archive::entry("whole", end - 4, 4) + archive::entry("partly", end - 1, 3) +
               archive::entry("at the end", end, 2) + archive::entry("behind", end + 1, 2) +
               archive::entry("far", std::uint64_t{1} << 63, 2) + archive::entry("farthest", ~std::uint64_t{0}, 2) +
               archive::entry("nowhere", ~std::uint64_t{0}, 0) + "DATA");
    const std::string zeroes(2, '\0');
    for (int i = 0; i < 2; ++i) { // no damaged entry spoils the next load
        EXPECT_EQ(load("whole"), "DATA");
        EXPECT_EQ(load("partly"), "A" + zeroes);
        EXPECT_EQ(load("whole"), "DATA");
        EXPECT_EQ(load("at the end"), zeroes);
        EXPECT_EQ(load("whole"), "DATA");
        EXPECT_EQ(load("behind"), zeroes);
        EXPECT_EQ(load("whole"), "DATA");
        EXPECT_EQ(load("far"), zeroes);
        EXPECT_EQ(load("whole"), "DATA");
        EXPECT_EQ(load("farthest"), zeroes);
        EXPECT_EQ(load("whole"), "DATA");
        EXPECT_EQ(load("nowhere"), "");
    }
}

TEST_F(ResourceManagerTest, readsDataAnywhereInTheFile)
{
    addArchive(archive::header(3) + archive::entry("magic", 1, 6) + archive::entry("name", 16 + 144, 4) +
               archive::entry("last", 16 + 144 - 16, 16));
    EXPECT_EQ(load("magic"), "XumRes");
    EXPECT_EQ(load("name"), "name");
    EXPECT_EQ(load("last"), archive::entry("magic", 1, 6).substr(128));
}

TEST_F(ResourceManagerTest, readsWhatThereIsOfAnArchiveThatIsCutOff)
{
    const std::string whole = archive::pack({{"a", "12"}, {"empty", ""}, {"b", "34567"}});
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        SCOPED_TRACE(size);
        renewManager();
        const std::string bytes = whole.substr(0, size);
        addArchive(bytes);
        for (const char* name : {"a", "empty", "b", "c"}) ASSERT_EQ(load(name), loadFrom(bytes, name)) << name;
    }
    EXPECT_EQ(load("b"), "34567");
}

TEST_F(ResourceManagerTest, readsWhatADamagedArchiveSays)
{
    std::mt19937 random(23);
    const std::string whole = archive::pack({{"a", "12"}, {"b", "34567"}, {"c", "890"}, {"b", "later"}});
    for (int i = 0; i < 500; ++i) {
        std::string bytes = whole;
        for (int changes = 0; changes < 8; ++changes) {
            const std::size_t at = 7 + random() % (bytes.size() - 7);
            if (at >= 16 && (at - 16) % 144 >= 138 && (at - 16) % 144 < 140) continue; // sizes of megabytes take long
            bytes[at] = static_cast<char>(random() % 2 == 0 ? random() % 3 : random());
        }
        renewManager();
        addArchive(bytes);
        for (const char* name : {"a", "b", "c", ""}) {
            const Loaded expected = loadFrom(bytes, name);
            ASSERT_EQ(load(name), expected) << name << " in round " << i;
        }
    }
}

TEST_F(ResourceManagerTest, archiveAnswersAsTheFilesThatWerePackedDo)
{
    std::mt19937 random(31);
    const auto pick = [&](const auto& from) { return from[random() % from.size()]; };
    std::vector<std::string> directories = {""};
    while (directories.size() < 12)
        directories.push_back(pick(directories) + "d" + std::to_string(directories.size()) + "/");
    std::vector<PackedFile> files;
    for (int i = 0; i < 60; ++i) {
        std::string contents(random() % 3 == 0 ? 0 : random() % 3000, '\0');
        for (char& byte : contents) byte = static_cast<char>(random());
        files.emplace_back(pick(directories) + "f" + std::to_string(i), contents);
    }

    // Detours only through directories that are there, so that the disk finds its way, too.
    std::vector<std::string> names;
    for (const auto& [name, contents] : files) names.push_back(name);
    for (const auto& directory : directories) fs::create_directories("tree/" + directory + ".");
    for (int i = 0; i < 600; ++i) {
        std::string name = random() % 5 == 0 ? pick(directories) + "missing" : pick(files).first;
        for (int detours = 0; detours < 3; ++detours) {
            const std::string& through = pick(directories);
            if (through.empty()) continue;
            const std::string parent = through.substr(0, through.find_last_of('/', through.size() - 2) + 1);
            if (name.starts_with(parent) && name.find("../") == std::string::npos)
                name = through + "../" + name.substr(parent.size());
            else
                name = through + [&] {
                    std::string up;
                    for (const char c : through)
                        if (c == '/') up += "../";
                    return up;
                }() + name;
        }
        names.push_back(name);
    }

    fs::current_path("tree");
    writeFiles(files);
    std::vector<Loaded> fromDisk;
    for (const std::string& name : names) fromDisk.push_back(load(name));
    EXPECT_GT(std::count(fromDisk.begin(), fromDisk.end(), nothing), 50);

    fs::create_directory("../elsewhere");
    fs::current_path("../elsewhere");
    addArchive(archive::pack(files));
    for (std::size_t i = 0; i < names.size(); ++i) ASSERT_EQ(load(names[i]), fromDisk[i]) << names[i];

    writeFiles({{files[0].first, "instead"}, {files[1].first, ""}});
    for (std::size_t i = 0; i < files.size(); ++i)
        ASSERT_EQ(load(files[i].first), i == 0 ? "instead" : i == 1 ? "" : files[i].second);
}
