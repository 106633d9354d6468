// A drop-down console: typed text, a line to edit, and commands that change the game. The key below Escape opens and
// closes it; Return runs a line.
#include "canvas.h"
#include "example_run.h"

#include <deque>
#include <functional>
#include <map>
#include <sstream>

namespace {

using Command = std::function<std::string(std::istream& arguments)>;

const Vector4<float> pale(0.80f, 0.85f, 0.92f, 1);
const Vector4<float> gold(0.98f, 0.76f, 0.30f, 1);

class CommandLine {
public:
    void add(const std::string& name, Command command) { commands[name] = std::move(command); }

    void run(const std::string& line)
    {
        print("> " + line);
        std::istringstream words(line);
        std::string name;
        words >> name;
        const auto command = commands.find(name);
        print(command != commands.end() ? command->second(words) : "There is no command " + name);
    }

    // Typed text comes as characters, ready for the line; Return and Backspace are keys.
    void type(InputDevice* input)
    {
        input->getText(typed);
        for (const unsigned int character : typed)
            if (character != '`') line += static_cast<char>(character);
        if (input->wasPressed(8) && !line.empty()) line.pop_back();
        if (!input->wasPressed(13)) return;
        run(line);
        line.clear();
    }

    std::string listCommands() const
    {
        std::string names;
        for (const auto& command : commands) names += command.first + " ";
        return names;
    }

    void draw(Canvas& canvas) const
    {
        canvas.fill(0, 0, 960, 300, {0.05f, 0.06f, 0.09f, 0.85f});
        canvas.fill(0, 300, 960, 3, gold);
        int y = 14;
        for (const std::string& text : lines) {
            canvas.write(24, y, text, text[0] == '>' ? gold : pale, 1.3f);
            y += 27;
        }
        canvas.write(24, 268, "> " + line + "_", gold, 1.3f);
    }

private:
    void print(const std::string& text)
    {
        std::cout << text << '\n';
        lines.push_back(text);
        if (lines.size() > 9) lines.pop_front();
    }

    std::map<std::string, Command> commands;
    std::deque<std::string> lines;
    std::vector<unsigned int> typed;
    std::string line;
};

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Console", 960, 540, false, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more
    InputDevice* input = engine->createInputDevice(false);                // also starts text input
    Console* console = engine->createConsole(); // remembers whether it is open; the rest is the host's

    Vector3<float> color(0.30f, 0.45f, 0.60f);
    bool goesOn = true;
    CommandLine commands;
    commands.add("help", [&](std::istream&) { return commands.listCommands(); });
    commands.add("time", [&](std::istream&) { return std::to_string(engine->getTime()) + " milliseconds"; });
    commands.add("version", [&](std::istream&) { return engine->getVersion(); });
    commands.add("color", [&](std::istream& numbers) {
        Vector3<float> chosen;
        if (!(numbers >> chosen.x >> chosen.y >> chosen.z)) return "color RED GREEN BLUE, each from 0 to 1";
        color = chosen;
        return "done";
    });
    commands.add("quit", [&](std::istream&) { return goesOn = false, "good bye"; });

    console->toggle();
    for (const char* line : {"help", "version", "color 0.75 0.42 0.25", "jump"}) commands.run(line); // a startup script
    {
        Canvas canvas(device);
        bool isOpen = true;
        while (goesOn && run.update(engine)) {
            if (input->wasPressed('`')) {
                isOpen = console->toggle();
                input->clearText();
            }
            if (isOpen) commands.type(input); // while it is open, keys are not the game's
            canvas.begin(window->getSize());
            for (int stripe = 0; stripe < 24; ++stripe) // what stands for a game
                canvas.fill(0, 22.5f * static_cast<float>(stripe), 960, 22.5f,
                            {color, 1 - 0.03f * static_cast<float>(stripe)});
            if (isOpen) commands.draw(canvas);
            run.swap(device, window);
        }
    }
    engine->destroyConsole(console);
    engine->destroyRenderDevice(device);
    engine->destroyInputDevice(input);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
