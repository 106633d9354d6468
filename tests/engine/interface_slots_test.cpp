#include "slots.h"

#include <xum/engine/engine.h>
#include <xum/engine/game_engine.h>
#include <xum/engine/system_device.h>
#include <xum/engine/window.h>

#include <gtest/gtest.h>

// Hosts compile against the places of these operations.

TEST(InterfaceSlots, ofTheEngine)
{
    EXPECT_EQ(slotOf(&Engine::getVersion), 0);
    EXPECT_EQ(slotOf(&Engine::getEvents), 1);
    EXPECT_EQ(slotOf(&Engine::getTime), 2);
    EXPECT_EQ(slotOf(&Engine::createWindow), 3);
    EXPECT_EQ(slotOf(&Engine::destroyWindow), 4);
    EXPECT_EQ(slotOf(&Engine::createSystemDevice), 5);
    EXPECT_EQ(slotOf(&Engine::destroySystemDevice), 6);
    EXPECT_EQ(slotOf(&Engine::createInputDevice), 7);
    EXPECT_EQ(slotOf(&Engine::destroyInputDevice), 8);
    EXPECT_EQ(slotOf(&Engine::createRenderDevice), 9);
    EXPECT_EQ(slotOf(&Engine::destroyRenderDevice), 10);
    EXPECT_EQ(slotOf(&Engine::createAudioDevice), 11);
    EXPECT_EQ(slotOf(&Engine::destroyAudioDevice), 12);
    EXPECT_EQ(slotOf(&Engine::createNetworkDevice), 13);
    EXPECT_EQ(slotOf(&Engine::destroyNetworkDevice), 14);
    EXPECT_EQ(slotOf(&Engine::createScriptingDevice), 15);
    EXPECT_EQ(slotOf(&Engine::destroyScriptingDevice), 16);
    EXPECT_EQ(slotOf(&Engine::createConsole), 17);
    EXPECT_EQ(slotOf(&Engine::destroyConsole), 18);
    EXPECT_EQ(slotOf(&Engine::createResourceManager), 19);
    EXPECT_EQ(slotOf(&Engine::destroyResourceManager), 20);
    EXPECT_EQ(slotOf(&Engine::createCache), 21);
    EXPECT_EQ(slotOf(&Engine::destroyCache), 22);
    EXPECT_EQ(slotOf(&Engine::update), 23);
    EXPECT_EQ(placesOf<Engine>(), 24);
}

TEST(InterfaceSlots, ofTheEngineEvent)
{
    EXPECT_EQ(slotOf(&EngineEvent::getType), 0);
    EXPECT_EQ(slotOf(&EngineEvent::getNext), 1);
    EXPECT_EQ(placesOf<EngineEvent>(), 2);
}

TEST(InterfaceSlots, ofTheGameEngine)
{
    EXPECT_EQ(slotOf(&GameEngine::getEngine), 0);
    EXPECT_EQ(slotOf(&GameEngine::getWindow), 1);
    EXPECT_EQ(slotOf(&GameEngine::getSystemDevice), 2);
    EXPECT_EQ(slotOf(&GameEngine::getInputDevice), 3);
    EXPECT_EQ(slotOf(&GameEngine::update), 4);
    EXPECT_EQ(placesOf<GameEngine>(), 5);
}

TEST(InterfaceSlots, ofTheWindow)
{
    EXPECT_EQ(slotOf(&Window::getHandle), 0);
    EXPECT_EQ(slotOf(&Window::getSize), 1);
    EXPECT_EQ(slotOf(&Window::getTitle), 2);
    EXPECT_EQ(slotOf(&Window::setTitle), 3);
    EXPECT_EQ(slotOf(&Window::setFullscreen), 4);
    EXPECT_EQ(placesOf<Window>(), 5);
}

TEST(InterfaceSlots, ofTheSystemDevice)
{
    EXPECT_EQ(slotOf(&SystemDevice::createDirectory), 0);
    EXPECT_EQ(slotOf(&SystemDevice::listFiles), 1);
    EXPECT_EQ(slotOf(&SystemDevice::hasClipboardText), 2);
    EXPECT_EQ(slotOf(&SystemDevice::getClipboardText), 3);
    EXPECT_EQ(slotOf(&SystemDevice::setClipboardText), 4);
    EXPECT_EQ(placesOf<SystemDevice>(), 5);
}
