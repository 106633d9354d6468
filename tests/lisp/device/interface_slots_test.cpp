#include "slots.h"

#include <xum/lisp/scripting_device.h>

#include <gtest/gtest.h>

// Hosts compile against the places of these operations.

TEST(InterfaceSlots, ofTheScriptingDevice)
{
    EXPECT_EQ(slotOf(&ScriptingDevice::loadBaseScripts), 0);
    EXPECT_EQ(slotOf(&ScriptingDevice::loadScript), 1);
    EXPECT_EQ(slotOf(&ScriptingDevice::evaluateScript), 2);
    EXPECT_EQ(placesOf<ScriptingDevice>(), 3);
}
