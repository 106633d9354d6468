#pragma once

#include "engine_fixtures.h"
#include "file_contents.h"
#include "resource_archive.h"
#include "test_directory.h"

#include <xum/files/resource_manager.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Files in the working directory, with the directories that they need.
inline void writeFiles(const std::vector<archive::PackedFile>& files)
{
    for (const auto& [name, contents] : files) {
        const std::filesystem::path path = name;
        if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
        writeFileContents(name, contents);
    }
}

/// A test with a resource manager, in an empty working directory.
class ResourceFixture : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        resources = engine->createResourceManager();
        ASSERT_NE(resources, nullptr);
        enterEmptyDirectory();
    }

    void TearDown() override
    {
        std::filesystem::current_path(testDirectory());
        if (engine != nullptr) engine->destroyResourceManager(resources);
        EngineFixture::TearDown();
    }

    static void enterEmptyDirectory()
    {
        const std::filesystem::path directory = testDirectory() / "resources";
        std::filesystem::current_path(testDirectory());
        std::filesystem::remove_all(directory);
        std::filesystem::create_directory(directory);
        std::filesystem::current_path(directory);
    }

    /// A manager without archives.
    void renewManager()
    {
        engine->destroyResourceManager(resources);
        resources = engine->createResourceManager();
        ASSERT_NE(resources, nullptr);
    }

    void addArchive(const std::string& bytes, const std::string& fileName = "archive")
    {
        writeFileContents(fileName, bytes);
        EXPECT_NE(resources->addResourceFile(fileName), nullptr) << fileName;
    }

    /// What a load yields, or none. What a failed load does to the vector is checked with it.
    std::optional<std::string> load(const std::string& name)
    {
        const std::vector<unsigned char> before = {'o', 'l', 'd', 0};
        std::vector<unsigned char> data = before;
        if (resources->load(data, name)) return std::string(data.begin(), data.end());
        EXPECT_EQ(data, before) << name;
        return std::nullopt;
    }

    ResourceManager* resources = nullptr;
};
