#include <xum/devices/audio_device.h>
#include <xum/devices/console.h>
#include <xum/devices/network_device.h>

#include "slots.h"

#include <gtest/gtest.h>

#include <type_traits>

// Hosts compile against the places of these operations.

TEST(InterfaceSlots, ofTheAudioDevice)
{
    EXPECT_EQ(slotOf(&AudioDevice::loadSample), 0);
    EXPECT_EQ(slotOf(&AudioDevice::loadSampleFromMemory), 1);
    EXPECT_EQ(slotOf(&AudioDevice::destroySample), 2);
    EXPECT_EQ(slotOf(&AudioDevice::loadStream), 3);
    EXPECT_EQ(slotOf(&AudioDevice::loadStreamFromMemory), 4);
    EXPECT_EQ(slotOf(&AudioDevice::destroyStream), 5);
    EXPECT_EQ(slotOf(&AudioDevice::isMusicPlaying), 6);
    EXPECT_EQ(slotOf(&AudioDevice::setMusicVolume), 7);
    EXPECT_EQ(slotOf(&AudioDevice::playStream), 8);
    EXPECT_EQ(slotOf(&AudioDevice::stopMusic), 9);
    EXPECT_EQ(slotOf(&AudioDevice::acquireSource), 10);
    EXPECT_EQ(slotOf(&AudioDevice::getListenerPosition), 11);
    EXPECT_EQ(slotOf(&AudioDevice::setListener), 12);
    EXPECT_EQ(slotOf(&AudioDevice::update), 13);
    EXPECT_EQ(placesOf<AudioDevice>(), 14);
}

TEST(InterfaceSlots, ofTheAudioSource)
{
    EXPECT_EQ(slotOf(&AudioSource::setPosition), 0);
    EXPECT_EQ(slotOf(&AudioSource::setDirection), 1);
    EXPECT_EQ(slotOf(&AudioSource::setRange), 2);
    EXPECT_EQ(slotOf(&AudioSource::setVolume), 3);
    EXPECT_EQ(slotOf(&AudioSource::play), 4);
    EXPECT_EQ(slotOf(&AudioSource::stop), 5);
    EXPECT_EQ(placesOf<AudioSource>(), 6);
}

TEST(InterfaceSlots, ofTheNetworkDevice)
{
    EXPECT_EQ(slotOf(&NetworkDevice::create), 0);
    EXPECT_EQ(slotOf(&NetworkDevice::destroy), 1);
    EXPECT_EQ(placesOf<NetworkDevice>(), 2);
    EXPECT_EQ(placesOf<NetworkObject>(), 2); // the destructor, which takes two
}

TEST(InterfaceSlots, ofTheConsole)
{
    EXPECT_EQ(slotOf(&Console::toggle), 0);
    EXPECT_EQ(slotOf(&Console::print), 1);
    EXPECT_EQ(slotOf(&Console::execute), 2);
    EXPECT_EQ(slotOf(&Console::addCommand), 3);
    EXPECT_EQ(slotOf(&Console::removeCommand), 4);
    EXPECT_EQ(slotOf(&Console::setVariable), 5);
    EXPECT_EQ(placesOf<Console>(), 6);
}

TEST(Interfaces, ofDevicesThatOnlyTheEngineDeletesHaveNoPublicDestructor)
{
    static_assert(!std::is_destructible_v<AudioDevice> && !std::has_virtual_destructor_v<AudioDevice>);
    static_assert(!std::is_destructible_v<AudioSource> && !std::has_virtual_destructor_v<AudioSource>);
    static_assert(!std::is_destructible_v<NetworkDevice> && !std::has_virtual_destructor_v<NetworkDevice>);
    static_assert(!std::is_destructible_v<Console> && !std::has_virtual_destructor_v<Console>);
    static_assert(std::has_virtual_destructor_v<NetworkObject>);
}
