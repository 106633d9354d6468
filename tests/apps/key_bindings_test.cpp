#include "key_bindings.h"

#include "engine_fixtures.h"

#include <set>

namespace {

class Bindings : public InputFixture {
protected:
    void SetUp() override
    {
        InputFixture::SetUp();
        keys = std::make_unique<KeyBindings>(*input);
    }

    std::unique_ptr<KeyBindings> keys;
};

Action actionOf(std::size_t number)
{
    return static_cast<Action>(number);
}

} // namespace

TEST_F(Bindings, eachActionHasANameAndAKeyOfItsOwn)
{
    std::set<std::string> names;
    std::set<std::string> keyNames;
    for (std::size_t i = 0; i < actionCount; ++i) {
        names.insert(KeyBindings::getName(actionOf(i)));
        keyNames.insert(keys->getKeyName(actionOf(i)));
    }
    EXPECT_EQ(names.size(), actionCount);
    EXPECT_EQ(keyNames.size(), actionCount);
    EXPECT_EQ(keyNames.count(""), 0u);
}

TEST_F(Bindings, keyIsDownAsLongAsItIsHeldAndPressedOnce)
{
    for (std::size_t i = 0; i < actionCount; ++i) {
        const Action action = actionOf(i);
        const int key = input->getKeyFromName(keys->getKeyName(action));
        EXPECT_FALSE(keys->isDown(action) || keys->isPressed(action)) << i;
        pushKeyDown(key);
        engine->update();
        EXPECT_TRUE(keys->isDown(action)) << i;
        EXPECT_TRUE(keys->isPressed(action)) << i;
        pushKey(SDL_KEYDOWN, key, true); // repeated by the keyboard
        engine->update();
        EXPECT_TRUE(keys->isDown(action)) << i;
        EXPECT_FALSE(keys->isPressed(action)) << i;
        pushKeyUp(key);
        engine->update();
        EXPECT_FALSE(keys->isDown(action) || keys->isPressed(action)) << i;
        pushKeyDown(key);
        engine->update();
        EXPECT_TRUE(keys->isPressed(action)) << i;
        pushKeyUp(key);
        engine->update();
        keys->isPressed(action);
    }
}

TEST_F(Bindings, buttonsOfAJoystickDoTheSame)
{
    const std::pair<int, Action> buttons[] = {
        {0, Action::Jump}, {1, Action::Back}, {2, Action::Run}, {3, Action::Confirm}};
    for (const auto& [button, action] : buttons) {
        pushJoystickButton(SDL_JOYBUTTONDOWN, static_cast<Uint8>(button));
        engine->update();
        EXPECT_TRUE(keys->isDown(action)) << button;
        EXPECT_TRUE(keys->isPressed(action)) << button;
        pushJoystickButton(SDL_JOYBUTTONUP, static_cast<Uint8>(button));
        engine->update();
        EXPECT_FALSE(keys->isDown(action)) << button;
    }
}

TEST_F(Bindings, axesOfAJoystickTurnAndWalk)
{
    const struct {
        Uint8 axis;
        Sint16 value;
        Action action;
    } axes[] = {{0, -30000, Action::TurnLeft},
                {0, 30000, Action::TurnRight},
                {1, -30000, Action::Forwards},
                {1, 30000, Action::Backwards}};
    for (const auto& [axis, value, action] : axes) {
        pushJoystickAxis(axis, value);
        engine->update();
        for (const auto& other : axes) EXPECT_EQ(keys->isDown(other.action), other.action == action);
        pushJoystickAxis(axis, 0);
        engine->update();
    }
}

TEST_F(Bindings, newKeyReplacesTheOldOneButNotTheButton)
{
    EXPECT_TRUE(keys->bind(Action::Jump, "Right Shift"));
    EXPECT_EQ(keys->getKeyName(Action::Jump), "Right Shift");
    pushKeyDown(SDLK_SPACE);
    engine->update();
    EXPECT_FALSE(keys->isDown(Action::Jump));
    pushKeyDown(SDLK_RSHIFT);
    engine->update();
    EXPECT_TRUE(keys->isDown(Action::Jump));
    pushKeyUp(SDLK_RSHIFT);
    pushJoystickButton(SDL_JOYBUTTONDOWN, 0);
    engine->update();
    EXPECT_TRUE(keys->isDown(Action::Jump));
    pushJoystickButton(SDL_JOYBUTTONUP, 0);
    engine->update();
}

TEST_F(Bindings, unknownKeyLeavesTheOldOne)
{
    EXPECT_FALSE(keys->bind(Action::Jump, "Hop"));
    EXPECT_FALSE(keys->bind(Action::Jump, ""));
    EXPECT_EQ(keys->getKeyName(Action::Jump), "Space");
}
