#pragma once

#include "engine_fixtures.h"
#include "file_contents.h"
#include "test_directory.h"

#include <xum/engine/system_device.h>

#include <filesystem>
#include <initializer_list>
#include <string>

/// A test with a system device, in an empty working directory.
class SystemDeviceFixture : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        device = engine->createSystemDevice();
        ASSERT_NE(device, nullptr);
        std::filesystem::remove_all(testDirectory() / "listed");
        std::filesystem::create_directory(testDirectory() / "listed");
        std::filesystem::current_path(testDirectory() / "listed");
    }

    void TearDown() override
    {
        std::filesystem::current_path(testDirectory());
        if (engine != nullptr) engine->destroySystemDevice(device);
        EngineFixture::TearDown();
    }

    /// Empty files, with the directories they need.
    static void makeFiles(std::initializer_list<const char*> names)
    {
        for (const std::filesystem::path name : names) {
            if (name.has_parent_path()) std::filesystem::create_directories(name.parent_path());
            writeFileContents(name.string(), "");
        }
    }

    /// What is reported, in order, as "DIRECTORY|NAME" joined by blanks.
    std::string listed(const std::string& directory, const std::string& filter = "", bool recursive = false)
    {
        std::string files;
        device->listFiles(directory, filter, recursive, [&](const std::string& where, const std::string& name) {
            if (!files.empty()) files += " ";
            files += where;
            files += "|";
            files += name;
        });
        return files;
    }

    SystemDevice* device = nullptr;
};
