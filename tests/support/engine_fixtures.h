#pragma once

#include "pushed_events.h"

#include <xum/devices/input_device.h>
#include <xum/engine/engine.h>

#include <gtest/gtest.h>

#include <SDL.h>

#include <cstdlib>
#include <string>
#include <vector>

/// Sets an environment variable for SDL and for the C library, which keep them apart on Windows.
inline void setEnvironment(const char* name, const char* value)
{
#ifdef _WIN32
    _putenv_s(name, value);
#endif
    SDL_setenv(name, value, 1);
}

/// A test with a running engine.
class EngineFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        engine = initEngine(false);
        ASSERT_NE(engine, nullptr);
    }

    void TearDown() override { shutdownEngine(engine); }

    Engine* engine = nullptr;
};

/// A test with a running engine and an input device. The input state is process-wide, so what earlier tests of the same
/// process left is put back first: nothing held or pressed, axes centred, no text. Only a recording cannot be ended.
class InputFixture : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        input = engine->createInputDevice(false);
        ASSERT_NE(input, nullptr);
        input->setJoystickDeadZone(20000);
        pushJoystickAxis(0, 0);
        pushJoystickAxis(1, 0);
        for (int key = 0; key < KeyCode::Count; ++key) pushKeyUp(key);
        engine->update();
        engine->update();
        input->clearText();
        std::vector<InputEvent> events;
        input->getEvents(events);
    }

    void TearDown() override
    {
        if (engine != nullptr) engine->destroyInputDevice(input);
        EngineFixture::TearDown();
    }

    /// "pressed", "released" and "down", as far as they are true of the key, joined by blanks.
    std::string stateOf(int key)
    {
        std::string state;
        if (input->wasPressed(key)) state += " pressed";
        if (input->wasReleased(key)) state += " released";
        if (input->isDown(key)) state += " down";
        return state.empty() ? state : state.substr(1);
    }

    /// All keys that have any state, as "CODE: STATE" lines.
    std::string changedKeys()
    {
        std::string keys;
        for (int key = 0; key < KeyCode::Count; ++key)
            if (!stateOf(key).empty()) keys += std::to_string(key) + ": " + stateOf(key) + "\n";
        return keys;
    }

    /// What was recorded since the last call, as "+CODE" for a press and "-CODE" for a release, joined by blanks.
    std::string recordedKeys()
    {
        std::vector<InputEvent> events;
        input->getEvents(events);
        std::string keys;
        for (const InputEvent& event : events) {
            if (!keys.empty()) keys += " ";
            keys += (event.released == 0 ? "+" : event.released == 1 ? "-" : "?") + std::to_string(event.code);
        }
        return keys;
    }

    std::string typedText()
    {
        std::vector<unsigned int> characters;
        input->getText(characters);
        std::string text;
        for (const unsigned int character : characters) text += static_cast<char>(character);
        return text;
    }

    InputDevice* input = nullptr;
};
