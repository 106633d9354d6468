// What the user does: the keyboard as it is held down, the mouse, and what happens to the window.
#include "canvas.h"
#include "example_run.h"

#include <deque>

namespace {

const char* const keyRows[] = {"1234567890", "qwertyuiop", "asdfghjkl", "zxcvbnm"};
const Vector4<float> resting(0.20f, 0.24f, 0.32f, 1);
const Vector4<float> pressed(0.98f, 0.72f, 0.25f, 1);
const Vector4<float> pale(0.75f, 0.80f, 0.88f, 1);
const Vector4<float> dim(0.45f, 0.50f, 0.58f, 1);
const float keySize = 56;

// The last lines of what happened are on the screen, all of them on standard output.
void report(std::deque<std::string>& lines, const std::string& line)
{
    std::cout << line << '\n';
    lines.push_back(line);
    if (lines.size() > 4) lines.pop_front();
}

// Events are good for one frame: whoever wants to know asks each time.
void reportEvents(std::deque<std::string>& lines, Engine* engine)
{
    for (EngineEvent* event = engine->getEvents(); event != nullptr; event = event->getNext()) {
        switch (event->getType()) {
        case EngineEventType::WindowRestored: report(lines, "the window is back"); break;
        case EngineEventType::WindowMinimized: report(lines, "the window is minimised"); break;
        case EngineEventType::WindowClosed: report(lines, "the window is to be closed"); break;
        default: break;
        }
    }
}

std::string inPixels(const Vector2<int>& v)
{
    return std::to_string(v.x) + " x " + std::to_string(v.y);
}

void drawKeyboard(Canvas& canvas, InputDevice* input)
{
    for (int row = 0; row < 4; ++row) {
        const std::string keys = keyRows[row];
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const float x = 140.0f + keySize * 1.2f * (static_cast<float>(i) + 0.35f * static_cast<float>(row));
            const float y = 60 + keySize * 1.2f * static_cast<float>(row);
            const bool isDown = input->isDown(keys[i]);
            canvas.fill(x, y, keySize, keySize, isDown ? pressed : resting);
            canvas.write(static_cast<int>(x + keySize / 2), static_cast<int>(y + keySize / 2), {keys[i]}, pale, 2,
                         true);
        }
    }
}

void drawMouse(Canvas& canvas, InputDevice* input)
{
    for (int button = KeyCode::MouseLeft; button <= KeyCode::MouseMiddle; ++button)
        canvas.fill(820.0f + 30.0f * static_cast<float>((button - KeyCode::MouseLeft) * 2 % 3), 380, 26, 40,
                    input->isDown(button) ? pressed : resting);
    canvas.fill(820, 424, 86, 70, resting);
    const Vector2<int> place = input->getMousePosition();
    canvas.fill(static_cast<float>(place.x) - 12, static_cast<float>(place.y) - 1, 24, 2, pressed);
    canvas.fill(static_cast<float>(place.x) - 1, static_cast<float>(place.y) - 12, 2, 24, pressed);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Window and events", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more
    InputDevice* input = engine->createInputDevice(false);                // from here on keys and mouse are heard
    {
        Canvas canvas(device);
        std::deque<std::string> lines;
        Vector2<int> size;
        std::vector<InputEvent> keys;
        input->startRecording(); // what is fast, or down and up again in one frame, is not lost
        while (run.update(engine)) {
            reportEvents(lines, engine);
            // There is no event for a new size: it is asked for.
            if (window->getSize() != size)
                report(lines, "the window has " + inPixels(size = window->getSize()) + " pixels");
            input->getEvents(keys);
            for (const InputEvent& key : keys) {
                const std::string name = key.code < KeyCode::MouseLeft ? input->getKeyName(key.code) : "";
                if (key.released == 0) window->setTitle("Key " + std::to_string(key.code) + " " + name);
            }
            canvas.begin(size);
            drawKeyboard(canvas, input);
            drawMouse(canvas, input);
            canvas.write(140, 500, "Press keys, move the mouse, resize the window", dim, 1.2f);
            for (std::size_t i = 0; i < lines.size(); ++i)
                canvas.write(140, 360 + 32 * static_cast<int>(i), lines[i], pale, 1.5f);
            run.swap(device, window);
        }
        reportEvents(lines, engine); // the last frame was not drawn any more
    }
    engine->destroyRenderDevice(device);
    engine->destroyInputDevice(input);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
