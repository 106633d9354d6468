#include "engine_fixtures.h"

#include <xum/engine/system_device.h>

#include <string>

namespace {

class Clipboard : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        device = engine->createSystemDevice();
        ASSERT_NE(device, nullptr);
    }

    void TearDown() override
    {
        if (engine != nullptr) engine->destroySystemDevice(device);
        EngineFixture::TearDown();
    }

    SystemDevice* device = nullptr;
};

} // namespace

TEST_F(Clipboard, thatIsEmptyHasNoText)
{
    SDL_SetClipboardText("");
    EXPECT_FALSE(device->hasClipboardText());
    EXPECT_EQ(device->getClipboardText(), "");
}

TEST_F(Clipboard, holdsTheTextItWasGiven)
{
#ifdef _WIN32 // where SDL ends the lines as other programs there expect it
    const std::string lineEnd = "\r\n";
#else
    const std::string lineEnd = "\n";
#endif
    const std::string line = "Gr\xC3\xBC\xC3\x9F"
                             "e";
    device->setClipboardText(line + "\nin two lines");
    EXPECT_TRUE(device->hasClipboardText());
    EXPECT_EQ(device->getClipboardText(), line + lineEnd + "in two lines");
    device->setClipboardText("another");
    EXPECT_EQ(device->getClipboardText(), "another");
}

TEST_F(Clipboard, isEmptiedByTheEmptyText)
{
    device->setClipboardText("x");
    device->setClipboardText("");
    EXPECT_FALSE(device->hasClipboardText());
    EXPECT_EQ(device->getClipboardText(), "");
}

TEST_F(Clipboard, isTheOneOfTheSystem)
{
    SDL_SetClipboardText("from elsewhere");
    EXPECT_TRUE(device->hasClipboardText());
    EXPECT_EQ(device->getClipboardText(), "from elsewhere");
    device->setClipboardText("from here");
    char* text = SDL_GetClipboardText();
    EXPECT_STREQ(text, "from here");
    SDL_free(text);
}
