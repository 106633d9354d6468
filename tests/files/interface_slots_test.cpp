#include <xum/files/cache.h>
#include <xum/files/config_file.h>
#include <xum/files/config_section.h>
#include <xum/files/file.h>
#include <xum/files/resource_manager.h>
#include <xum/files/serializer.h>

#include "slots.h"

#include <gtest/gtest.h>

#include <type_traits>

// Hosts compile against the places of these operations.

TEST(InterfaceSlots, ofTheResourceManager)
{
    EXPECT_EQ(slotOf(&ResourceManager::addResourceFile), 0);
    EXPECT_EQ(slotOf(&ResourceManager::load), 1);
    EXPECT_EQ(placesOf<ResourceManager>(), 2);
}

TEST(InterfaceSlots, ofTheCache)
{
    EXPECT_EQ(slotOf(&Cache::getDataRoot), 0);
    EXPECT_EQ(slotOf(&Cache::setDataRoot), 1);
    EXPECT_EQ(slotOf(&Cache::getShaderDirectory), 2);
    EXPECT_EQ(slotOf(&Cache::setShaderDirectory), 3);
    EXPECT_EQ(slotOf(&Cache::getProgramDirectory), 4);
    EXPECT_EQ(slotOf(&Cache::setProgramDirectory), 5);
    EXPECT_EQ(slotOf(&Cache::getTextureDirectory), 6);
    EXPECT_EQ(slotOf(&Cache::setTextureDirectory), 7);
    EXPECT_EQ(slotOf(&Cache::getSampleDirectory), 8);
    EXPECT_EQ(slotOf(&Cache::setSampleDirectory), 9);
    EXPECT_EQ(slotOf(&Cache::getStreamDirectory), 10);
    EXPECT_EQ(slotOf(&Cache::setStreamDirectory), 11);
    EXPECT_EQ(slotOf(&Cache::getId), 12);
    EXPECT_EQ(slotOf(&Cache::getProgram), 13);
    EXPECT_EQ(slotOf(&Cache::getTexture), 14);
    EXPECT_EQ(slotOf(&Cache::getSample), 15);
    EXPECT_EQ(slotOf(&Cache::getStream), 16);
    EXPECT_EQ(slotOf(&Cache::release), 17);
    EXPECT_EQ(placesOf<Cache>(), 18);
}

TEST(InterfaceSlots, ofTheSerializers)
{
    EXPECT_EQ(slotOf(&Serializer::failed), 0);
    EXPECT_EQ(slotOf(&Serializer::write), 1);
    EXPECT_EQ(placesOf<Serializer>(), 2);
    EXPECT_EQ(slotOf(&Deserializer::failed), 0);
    EXPECT_EQ(slotOf(&Deserializer::read), 1);
    EXPECT_EQ(placesOf<Deserializer>(), 2);
}

TEST(InterfaceSlots, ofFilesHaveOnlyTheDestructor)
{
    EXPECT_EQ(placesOf<File<std::ifstream>>(), 2); // it takes two places
    EXPECT_EQ(placesOf<InputFile>(), 2);
    EXPECT_EQ(placesOf<OutputFile>(), 2);
    EXPECT_EQ(placesOf<ConfigFile>(), 2);
    EXPECT_EQ(placesOf<ConfigSection>(), 2);
    static_assert(std::has_virtual_destructor_v<InputFile> && std::has_virtual_destructor_v<OutputFile>);
    static_assert(std::has_virtual_destructor_v<ConfigFile> && std::has_virtual_destructor_v<ConfigSection>);
}

TEST(Interfaces, ofFilesThatOnlyTheirMakerDeletesHaveNoPublicDestructor)
{
    static_assert(!std::is_destructible_v<ResourceManager> && !std::has_virtual_destructor_v<ResourceManager>);
    static_assert(!std::is_destructible_v<Serializer> && !std::has_virtual_destructor_v<Serializer>);
    static_assert(!std::is_destructible_v<Deserializer> && !std::has_virtual_destructor_v<Deserializer>);
    static_assert(!std::is_destructible_v<Cache> && !std::has_virtual_destructor_v<Cache>);
}
