#include "test_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

// The main of every test program. Each run works in a fresh directory of its own, because the log is opened in the
// working directory and programs run side by side. Without other orders it needs neither display nor sound card.

namespace {

void setDefault(const char* name, const std::string& value)
{
    if (std::getenv(name) != nullptr) return;
#ifdef _WIN32
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 0);
#endif
}

std::filesystem::path makeFreshDirectory()
{
    for (unsigned i = 0;; ++i) {
        const auto path = std::filesystem::temp_directory_path() /
                          ("xum-test-" + std::to_string(std::rand()) + "-" + std::to_string(i));
        if (std::filesystem::create_directory(path)) return path;
    }
}

} // namespace

std::filesystem::path testDirectory()
{
    return std::getenv("XUM_TEST_DIRECTORY");
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fork would copy a process in which audio and GL threads run
#ifndef _WIN32
    setDefault("SDL_VIDEODRIVER", "offscreen");
#endif
    setDefault("SDL_AUDIODRIVER", "dummy");

    // The process that a death test starts finds the directory of its parent here and leaves it alone.
    const bool isParent = std::getenv("XUM_TEST_DIRECTORY") == nullptr;
    if (isParent) {
        std::srand(static_cast<unsigned>(std::filesystem::file_time_type::clock::now().time_since_epoch().count()));
        setDefault("XUM_TEST_DIRECTORY", makeFreshDirectory().string());
    }
    std::filesystem::current_path(testDirectory());
    const int result = RUN_ALL_TESTS();
    if (isParent) {
        std::filesystem::current_path(std::filesystem::temp_directory_path());
        std::error_code failure;
        std::filesystem::remove_all(testDirectory(), failure);
    }
    return result;
}
