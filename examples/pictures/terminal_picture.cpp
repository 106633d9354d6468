// What a program printed, as a terminal shows it: the picture of an example that draws none itself. Lines that were
// typed, those behind "$ " and "> ", have a colour of their own.
//
//     terminal_picture TRANSCRIPT.txt --frames 1 --screenshot FILE.bmp
#include "canvas.h"
#include "example_run.h"

#include <algorithm>
#include <fstream>

namespace {

constexpr int barHeight = 36;
constexpr int margin = 24;
constexpr int smallestAdvance = 8;
constexpr int largestAdvance = 20;

const Vector4<float> bar(0.20f, 0.23f, 0.29f, 1);
const Vector4<float> pale(0.80f, 0.85f, 0.92f, 1);
const Vector4<float> gold(0.98f, 0.76f, 0.30f, 1);

std::vector<std::string> readLines(const std::string& fileName)
{
    std::ifstream file(fileName);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

bool isTyped(const std::string& line)
{
    return line.rfind("$ ", 0) == 0 || line.rfind("> ", 0) == 0;
}

// From one character to the next, in pixels: as far as all lines fit the window. A line is twice as high.
int findAdvance(const std::vector<std::string>& lines, const Vector2<int>& size)
{
    std::size_t columns = 1;
    for (const std::string& line : lines) columns = std::max(columns, line.size());
    const int byWidth = (size.x - 2 * margin) / static_cast<int>(columns);
    const int byHeight = (size.y - barHeight - 2 * margin) / (2 * static_cast<int>(lines.size()));
    return std::clamp(std::min(byWidth, byHeight), smallestAdvance, largestAdvance);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv, "TRANSCRIPT.txt");
    const std::vector<std::string> lines = readLines(run.getArgument());
    if (lines.empty()) return fail("There is no text in " + run.getArgument());

    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("A terminal", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    // Untrimmed, so that all letters are as wide as a cell; 10 of its 12 pixels are the letter's.
    ImageFont* font = loadImageFont(device, defaultDataRoot() + "fonts/hud.png", 12, 19, 16, 32, false);
    if (font == nullptr) return fail("Cannot load the font " + defaultDataRoot() + "fonts/hud.png");
    font->setFilter(device, TextureFilter::Linear);
    {
        Canvas canvas(device);
        while (run.update(engine)) {
            const Vector2<int> size = window->getSize();
            canvas.begin(size);
            canvas.fill(0, 0, static_cast<float>(size.x), static_cast<float>(barHeight), bar);
            for (int i = 0; i < 3; ++i)
                canvas.fill(static_cast<float>(margin + 24 * i), 12, 12, 12, i == 0 ? gold : pale);

            const int advance = findAdvance(lines, size);
            int y = barHeight + margin;
            for (const std::string& line : lines) {
                canvas.use(isTyped(line) ? gold : pale);
                for (std::size_t i = 0; i < line.size(); ++i) {
                    const int x = margin + advance * static_cast<int>(i);
                    font->drawScaled(device, x, y, std::string(1, line[i]), static_cast<float>(advance) / 10, false,
                                     false);
                }
                y += 2 * advance;
            }
            run.swap(device, window);
        }
    }
    destroyImageFont(device, font);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
