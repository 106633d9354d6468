#include <xum/files/data_root.h>

#include "test_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

namespace fs = std::filesystem;

namespace {

void setVariable(const char* name, const std::optional<std::string>& value)
{
#ifdef _WIN32
    _putenv_s(name, value.value_or("").c_str());
#else
    if (value)
        setenv(name, value->c_str(), 1);
    else
        unsetenv(name);
#endif
}

/// Sets XUM_DATA_ROOT as long as the object lives.
class ChosenDataRoot {
public:
    explicit ChosenDataRoot(const std::optional<std::string>& value)
    {
        if (const char* old = std::getenv("XUM_DATA_ROOT")) before = old;
        setVariable("XUM_DATA_ROOT", value);
    }
    ~ChosenDataRoot() { setVariable("XUM_DATA_ROOT", before); }

private:
    std::optional<std::string> before;
};

std::string dataRootWhenChosen(const std::optional<std::string>& value)
{
    const ChosenDataRoot chosen(value);
    return defaultDataRoot();
}

std::string workingDirectory()
{
    return fs::current_path().generic_string() + "/";
}

/// The directory that XUM_DATA_ROOT yields to: the compiled-in one, or this build's where that is not installed.
fs::path fallback()
{
    const fs::path compiledIn = XUM_TEST_COMPILED_DATA_ROOT;
    return fs::is_directory(compiledIn) ? compiledIn : fs::path(XUM_TEST_BUILD_DATA_ROOT);
}

} // namespace

TEST(DataRoot, isWhatTheEnvironmentSays)
{
    EXPECT_EQ(dataRootWhenChosen(workingDirectory() + "data/"), workingDirectory() + "data/");
}

TEST(DataRoot, ofTheEnvironmentNeedNotExist)
{
    ASSERT_FALSE(fs::exists("nowhere"));
    EXPECT_EQ(dataRootWhenChosen(workingDirectory() + "nowhere/"), workingDirectory() + "nowhere/");
}

TEST(DataRoot, endsWithASlash)
{
    EXPECT_EQ(dataRootWhenChosen(workingDirectory() + "data"), workingDirectory() + "data/");
}

TEST(DataRoot, isAbsoluteAndWithoutDetours)
{
    EXPECT_EQ(dataRootWhenChosen("data"), workingDirectory() + "data/");
    EXPECT_EQ(dataRootWhenChosen("./more//../data//"), workingDirectory() + "data/");
    EXPECT_EQ(dataRootWhenChosen("."), workingDirectory());
}

TEST(DataRoot, isTheInstalledOneWhenTheEnvironmentIsSilent)
{
    const std::string root = dataRootWhenChosen(std::nullopt);
    ASSERT_FALSE(root.empty());
    EXPECT_EQ(root.back(), '/');
    EXPECT_TRUE(fs::path(root).is_absolute());
    EXPECT_EQ(fs::path(root).lexically_normal(), fs::path(root));
#ifdef _WIN32 // where the names are the same, but the library does not see that the directories are
    EXPECT_EQ(root, fs::absolute(fallback()).generic_string() + "/");
#else
    EXPECT_TRUE(fs::equivalent(root, fallback())) << root << " is not " << fallback();
#endif
    EXPECT_TRUE(fs::is_directory(root + "shaders"));
}

TEST(DataRoot, treatsAnEmptyEnvironmentAsSilent)
{
    EXPECT_EQ(dataRootWhenChosen(""), dataRootWhenChosen(std::nullopt));
}

#ifdef __linux__

namespace {

/// Expects an answer of a copy of the library that lies in `prefix`. A death test runs in this program started anew,
/// and the loader then looks for libraries in LD_LIBRARY_PATH first.
void expectLibraryToAnswer(const fs::path& prefix, const std::string& expected)
{
    const fs::path libraries = prefix / XUM_TEST_LIBRARY_DIRECTORY;
    const fs::path copy = libraries / XUM_TEST_LIBRARY_NAME;
    fs::create_directories(libraries);
    if (!fs::exists(copy)) fs::copy_file(XUM_TEST_LIBRARY, copy); // the new process comes by here too and has it open
    const ChosenDataRoot silent(std::nullopt);
    setVariable("LD_LIBRARY_PATH", libraries.string());
    const auto answer = [] {
        std::cerr << "<" << defaultDataRoot() << ">" << std::endl;
        std::exit(0);
    };
    EXPECT_EXIT(answer(), testing::ExitedWithCode(0), "<" + expected + ">");
}

} // namespace

TEST(DataRoot, movesWithTheLibrary)
{
    if (fs::is_directory(XUM_TEST_COMPILED_DATA_ROOT)) GTEST_SKIP() << "the compiled-in directory exists and wins";
    const fs::path prefix = testDirectory() / "moved";
    const fs::path data = prefix / XUM_TEST_DATA_DIRECTORY;
    fs::create_directories(data);
    expectLibraryToAnswer(prefix, data.string() + "/");
}

TEST(DataRoot, isBesideTheLibraryAlsoThroughALink)
{
    if (fs::is_directory(XUM_TEST_COMPILED_DATA_ROOT)) GTEST_SKIP() << "the compiled-in directory exists and wins";
    const fs::path prefix = testDirectory() / "linked";
    const fs::path data = prefix / "usr" / XUM_TEST_DATA_DIRECTORY;
    const fs::path libraries = XUM_TEST_LIBRARY_DIRECTORY;
    fs::create_directories(data);
    fs::create_directories(prefix / "usr" / libraries);
    const fs::path link = prefix / *libraries.begin(); // as /lib leads to /usr/lib on many systems
    if (!fs::exists(link)) fs::create_directory_symlink("usr" / *libraries.begin(), link);
    expectLibraryToAnswer(prefix, data.string() + "/");
}

TEST(DataRoot, isTheCompiledInOneWhenThereIsNone)
{
    const std::string compiledIn = fs::path(XUM_TEST_COMPILED_DATA_ROOT).lexically_normal().string();
    expectLibraryToAnswer(testDirectory() / "alone", compiledIn.back() == '/' ? compiledIn : compiledIn + "/");
}

#endif
