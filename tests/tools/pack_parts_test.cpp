#include "file_contents.h"
#include "own_directory.h"
#include "pack_bytes.h"
#include "program.h"

#include <pack_create.h>
#include <pack_explain.h>
#include <pack_name.h>
#include <pack_progress.h>
#include <replacement_file.h>

#include <xum/files/resource_manager_implementation.h>
#include <xum/files/resource_path.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <vector>

namespace fs = std::filesystem;

namespace {

class PackParts : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

std::string loadedFrom(ResourceManager& resources, const std::string& name)
{
    std::vector<unsigned char> data;
    if (!resources.load(data, name)) return "nothing";
    return {data.begin(), data.end()};
}

/// What explain says about a name: the first line behind the key, without "answers: ".
std::string answerTo(const std::string& name, const std::vector<std::string>& archives)
{
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    const bool isAnswered = explainLoad(name, archives);
    std::fflush(stdout);
    const std::string output = ::testing::internal::GetCapturedStdout();
    ::testing::internal::GetCapturedStderr();
    const std::size_t answer = output.find("\nanswers: ");
    EXPECT_EQ(isAnswered, answer != std::string::npos) << output;
    return isAnswered ? output.substr(answer + 10, output.find('\n', answer + 1) - answer - 10) : "nothing";
}

} // namespace

// ---- against the engine -------------------------------------------------------------------------------------------

TEST_F(PackParts, engineLoadsEveryPackedFile)
{
    fs::create_directories("d/textures/walls");
    writeFileContents("d/textures/walls/a.png", std::string(2000000, 'a') + "end");
    writeFileContents("d/textures/b.png", "b");
    writeFileContents("d/empty", "");
    writeFileContents("d/" + std::string(127, 'n'), "n");
    ASSERT_TRUE(createArchive("a.xum", "d"));
    ResourceManagerImplementation resources;
    ASSERT_NE(resources.addResourceFile("a.xum"), nullptr);
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator("d")) {
        if (!entry.is_regular_file()) continue;
        const std::string name = entry.path().lexically_relative("d").generic_string();
        EXPECT_EQ(loadedFrom(resources, name), fileContents(entry.path().string())) << name;
        ++count;
    }
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(loadedFrom(resources, "maps/../textures/b.png"), "b");
}

// The contents of each file are what explain says of it, so that both must name the same place.
TEST_F(PackParts, explainAgreesWithTheEngine)
{
    const char* const archives[] = {"a.xum", "b.xum", "c.xum"};
    const char* const names[] = {"x", "d/x", "d/y", "e/../d/x", "d/../x", "../x", "a..", "d", "./x", "nosuch", "", "X"};
    fs::create_directories("d");
    fs::create_directories("e");
    std::mt19937 random(7);
    const auto draw = [&random](unsigned count) { return static_cast<unsigned>(random() % count); };
    std::size_t answers[3] = {};
    for (int round = 0; round < 200; ++round) {
        for (const char* plain : {"x", "d/y"}) {
            fs::remove(plain);
            if (draw(3) == 0)
                writeFileContents(plain,
                                  "the file " + std::string(plain) + ", " + (plain[1] != 0 ? "22" : "20") + " bytes");
        }
        std::vector<std::string> added;
        ResourceManagerImplementation resources;
        for (const char* archive : archives) {
            if (draw(4) == 0) continue;
            const unsigned count = draw(5);
            std::string bytes = packHeader(count);
            std::string data;
            for (unsigned i = 0; i < count; ++i) {
                // Sizes and offsets of fixed lengths, for they stand in the contents.
                const std::size_t offset = 1000 + data.size();
                const std::string text = std::string("the archive ") + archive + ", entry " + std::to_string(i + 1) +
                                         ", 49 bytes from " + std::to_string(offset) + " on";
                data += text;
                bytes += packEntry(names[draw(12)], offset, 49);
            }
            bytes.resize(1000, 'z');
            writeFileContents(archive, bytes + data);
            added.emplace_back(archive);
            resources.addResourceFile(archive);
        }
        for (const char* name : names) {
            const std::string loaded = loadedFrom(resources, name);
            const std::string answer = answerTo(name, added);
            if (loaded.compare(0, 9, "the file ") == 0)
                EXPECT_EQ(answer, "the file " + std::string(name) + loaded.substr(loaded.find(',')));
            else
                EXPECT_EQ(answer, loaded) << name;
            ++answers[loaded == "nothing" ? 0 : loaded[4] == 'f' ? 1 : 2];
        }
    }
    for (const std::size_t count : answers) EXPECT_GT(count, 100u);
}

TEST_F(PackParts, goodNamesAreExactlyThoseThatLoadsAskFor)
{
    // Every text of these parts: what loses something on the way to a key is no good name.
    const char* const parts[] = {"a", ".", "/", "..", "b."};
    std::size_t good = 0;
    for (int code = 0; code < 5 * 5 * 5 * 5 * 5 * 5; ++code) {
        std::string name;
        for (int rest = code, i = 0; i < 6; ++i, rest /= 5) name += parts[rest % 5];
        if (!findNameProblem(name).empty()) continue;
        EXPECT_EQ(normalizeResourceName(name), name);
        EXPECT_EQ(fs::path(name).lexically_normal().generic_string(), name) << "one spelling for one file";
        ++good;
    }
    EXPECT_GT(good, 1000u);
}

// ---- limits -------------------------------------------------------------------------------------------------------

TEST_F(PackParts, tooManyFilesAreRefused)
{
    fs::create_directories("d/e");
    for (const char* name : {"d/a", "d/b", "d/e/c"}) writeFileContents(name, "");
    std::vector<FileToPack> files;
    EXPECT_TRUE(findFilesToPack("d", "a.xum", files, 3));
    EXPECT_EQ(files.size(), 3u);
    files.clear();
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(findFilesToPack("d", "a.xum", files, 2));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "d: holds too many files for an archive (3, at most 2)\n");
}

// ---- progress -----------------------------------------------------------------------------------------------------

namespace {

std::string shownProgress(bool isWatched, std::chrono::milliseconds delay)
{
    ::testing::internal::CaptureStderr();
    {
        PackProgress progress("packing", 4000000000u, isWatched, delay);
        progress.add(1900000000);
        progress.add(0); // too soon after the first
        progress.clear();
        progress.clear();
    }
    return ::testing::internal::GetCapturedStderr();
}

} // namespace

TEST(PackProgress, isOneLineThatGoesAwayAgain)
{
    EXPECT_EQ(shownProgress(true, std::chrono::milliseconds(0)), "\rpacking: 47 %\r             \r");
}

TEST(PackProgress, isNotShownForShortWorkAndToNobody)
{
    EXPECT_EQ(shownProgress(true, std::chrono::hours(1)), "");
    EXPECT_EQ(shownProgress(false, std::chrono::milliseconds(0)), "");
}

TEST(PackProgress, nothingToDoIsDoneAtOnce)
{
    ::testing::internal::CaptureStderr();
    PackProgress("packing", 0, true, std::chrono::milliseconds(0)).add(0);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "\rpacking: 100 %\r              \r");
}

// ---- replaced files -----------------------------------------------------------------------------------------------

TEST_F(PackParts, fileTakesItsPlaceOnlyAtTheEnd)
{
    fs::create_directory("d");
    writeFileContents("d/a", "old");
    {
        ReplacementFile file("d/a");
        EXPECT_TRUE(file.write("new", 3));
        EXPECT_EQ(fileContents("d/a"), "old");
        EXPECT_EQ(std::distance(fs::directory_iterator("d"), fs::directory_iterator()), 2);
        EXPECT_TRUE(file.finish());
    }
    EXPECT_EQ(fileContents("d/a"), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator("d"), fs::directory_iterator()), 1);
}

TEST_F(PackParts, fileThatIsGivenUpLeavesNothingBehind)
{
    fs::create_directory("d");
    {
        ReplacementFile file("d/a");
        EXPECT_TRUE(file.write("new", 3));
    }
    EXPECT_TRUE(fs::is_empty("d"));
}

TEST_F(PackParts, fileThatCannotBeMadeSaysWhy)
{
    ReplacementFile file("nosuch/a");
    EXPECT_FALSE(file.write("new", 3));
    EXPECT_FALSE(file.finish());
    EXPECT_EQ(file.getProblem(), "cannot be written: No such file or directory");
}

TEST_F(PackParts, longestNameCanBeReplaced)
{
    const std::string name(255, 'n');
    ReplacementFile file(name);
    EXPECT_TRUE(file.write("new", 3));
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(fileContents(name), "new");
}
