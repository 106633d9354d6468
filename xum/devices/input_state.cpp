#include <xum/devices/input_state.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

enum KeyFlag : unsigned char {
    pressedThisFrame = 1,
    releasedThisFrame = 2,
    held = 4,
};

constexpr std::size_t keyCount = KeyCode::Count;
constexpr std::size_t textCapacity = 32;

std::array<unsigned char, keyCount> keys;
int deadZone = 20000;
std::array<int, 2> axisDirections; // -1, 0 or +1
bool isRecording = false;
std::vector<InputEvent> recordedEvents;
std::array<unsigned int, textCapacity> text;
std::size_t textCount = 0;

/// The place of a key in the table; keyCount for one that has none.
std::size_t keyIndex(int code)
{
    const std::size_t masked = static_cast<unsigned>(code) & ~static_cast<unsigned>(KeyCode::ScancodeMask);
    return std::min(masked, keyCount);
}

bool hasFlag(int code, KeyFlag flag)
{
    const std::size_t index = keyIndex(code);
    return index < keyCount && (keys[index] & flag) != 0;
}

void record(std::size_t index, int released)
{
    if (isRecording) recordedEvents.push_back({static_cast<int>(index), released});
}

void appendCharacter(unsigned int character)
{
    if (textCount == textCapacity) {
        std::copy(text.begin() + 1, text.end(), text.begin());
        --textCount;
    }
    text[textCount++] = character;
}

} // namespace

void beginFrame()
{
    for (unsigned char& key : keys) key &= held;
}

void press(int code)
{
    const std::size_t index = keyIndex(code);
    if (index == keyCount) return;
    keys[index] |= pressedThisFrame | held;
    record(index, 0);
}

// Kept on purpose: a press earlier in the same frame stays visible.
void release(int code)
{
    const std::size_t index = keyIndex(code);
    if (index == keyCount) return;
    keys[index] = static_cast<unsigned char>((keys[index] & ~held) | releasedThisFrame);
    record(index, 1);
}

void moveJoystickAxis(int axis, int value)
{
    const bool isSecond = (axis & 1) != 0;
    const int negativeCode = isSecond ? KeyCode::JoystickAxis1Negative : KeyCode::JoystickAxis0Negative;
    const int positiveCode = isSecond ? KeyCode::JoystickAxis1Positive : KeyCode::JoystickAxis0Positive;
    int& direction = axisDirections[isSecond ? 1 : 0];

    const std::int64_t limit = deadZone; // 64 bits: the smallest dead zone has no negative
    const bool isCentred = -limit <= value && value <= limit;
    const int newDirection = isCentred ? 0 : value > limit ? 1 : -1;

    if (direction == 1 && newDirection != 1) release(positiveCode);
    if (direction == -1 && newDirection != -1) release(negativeCode);
    // Kept on purpose: every motion outside the dead zone presses again.
    if (newDirection == 1) press(positiveCode);
    if (newDirection == -1) press(negativeCode);
    direction = newDirection;
}

void appendText(const char* utf8)
{
    for (; *utf8 != '\0'; ++utf8) {
        const unsigned char byte = static_cast<unsigned char>(*utf8);
        if (byte < 0x80) appendCharacter(byte);
    }
}

bool wasKeyPressed(int key)
{
    return hasFlag(key, pressedThisFrame);
}

bool wasKeyReleased(int key)
{
    return hasFlag(key, releasedThisFrame);
}

bool isKeyDown(int key)
{
    return hasFlag(key, held);
}

bool wasAnyKeyPressed()
{
    return std::any_of(keys.begin(), keys.end(), [](unsigned char key) { return (key & pressedThisFrame) != 0; });
}

void setDeadZone(int newDeadZone)
{
    deadZone = newDeadZone;
}

void startRecordingInput()
{
    isRecording = true;
}

void takeRecordedInput(std::vector<InputEvent>& out)
{
    out.assign(recordedEvents.begin(), recordedEvents.end());
    recordedEvents.clear();
}

void clearTypedText()
{
    textCount = 0;
}

void takeTypedText(std::vector<unsigned int>& out)
{
    out.assign(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(textCount));
    textCount = 0;
}
