#pragma once

#include "engine_fixtures.h"
#include "file_contents.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <xum/lisp/scripting_device.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

/// A test with a running engine and a data root of its own, whose four base scripts do nothing.
class ScriptingFixture : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        shownMessageBoxes().clear();
        std::filesystem::create_directories(ownDirectory() / "lisp" / "base");
        setEnvironment("XUM_DATA_ROOT", ownDirectory().string().c_str());
        for (const char* name : {"base/base", "engine", "editor", "game"}) writeScript(name, "(list)");
    }

    void TearDown() override
    {
        if (engine != nullptr) engine->destroyScriptingDevice(device);
        EngineFixture::TearDown();
    }

    static std::string pathOfScript(const std::string& name)
    {
        return (ownDirectory() / "lisp" / (name + ".lisp")).string();
    }

    static void writeScript(const std::string& name, const std::string& text)
    {
        writeFileContents(pathOfScript(name), text);
    }

    static void removeScript(const std::string& name) { std::filesystem::remove(pathOfScript(name)); }

    /// What is printed while the device is being made.
    std::string outputOfCreation()
    {
        ::testing::internal::CaptureStdout();
        device = engine->createScriptingDevice();
        return ::testing::internal::GetCapturedStdout();
    }

    void makeDevice()
    {
        ASSERT_EQ(outputOfCreation(), "");
        ASSERT_NE(device, nullptr);
    }

    /// What a text prints; "(unreadable)" is put behind it when the device calls it a failure.
    static std::string outputOf(ScriptingDevice* scripting, const std::string& text)
    {
        ::testing::internal::CaptureStdout();
        const bool isRead = scripting->evaluateScript(text);
        return ::testing::internal::GetCapturedStdout() + (isRead ? "" : "(unreadable)");
    }

    std::string outputOf(const std::string& text) { return outputOf(device, text); }

    std::string outputOfLoading(const std::string& name)
    {
        ::testing::internal::CaptureStdout();
        const bool isLoaded = device->loadScript(name);
        return ::testing::internal::GetCapturedStdout() + (isLoaded ? "" : "(failed)");
    }

    ScriptingDevice* device = nullptr;
};
