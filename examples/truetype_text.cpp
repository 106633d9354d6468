// Text from a TrueType font: a page of it, broken into lines that fit the window. Each line becomes one texture.
#include "canvas.h"
#include "example_run.h"

#include <sstream>

namespace {

const char* const story =
    "A font renders one line of text into a texture that is white everywhere, with the letters in its "
    "alpha: the program that draws it chooses the colour. Latin-1 has one byte for each letter, so "
    "caf\xe9, \xfc"
    "ber and \xa1hola! are at home here. Text that stays is rendered once and drawn many times; only "
    "what changes, such as the clock below, is rendered anew.";

const Vector4<float> paper(0.93f, 0.90f, 0.83f, 1);
const Vector4<float> ink(0.16f, 0.15f, 0.18f, 1);
const Vector4<float> red(0.70f, 0.20f, 0.16f, 1);

struct Line {
    Texture* texture;
    Vector2<int> size;
};

Line render(Font* font, RenderDevice* device, const std::string& text)
{
    return {font->render(device, text), font->measure(text)};
}

// Words go into a line as long as it is not wider.
std::vector<std::string> breakLines(Font* font, const std::string& text, int width)
{
    std::vector<std::string> lines(1);
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const std::string longer = lines.back().empty() ? word : lines.back() + " " + word;
        if (font->measure(longer).x <= width)
            lines.back() = longer;
        else
            lines.push_back(word);
    }
    return lines;
}

void drawLine(Canvas& canvas, const Line& line, float x, float y, const Vector4<float>& color)
{
    if (line.texture == nullptr) return; // nothing to see: an empty line
    canvas.draw(line.texture, x, y, static_cast<float>(line.size.x), static_cast<float>(line.size.y), color);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv, "FONT.ttf");
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("TrueType text", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    const std::string file = run.getArgument().empty() ? defaultDataRoot() + "fonts/hud.ttf" : run.getArgument();
    Font* titleFont = loadFont(file, 54); // one font for each size
    Font* textFont = titleFont != nullptr ? loadFont(file, 25) : nullptr;
    if (textFont == nullptr) return fail("Cannot load the font " + file);
    {
        Canvas canvas(device);
        const Line title = render(titleFont, device, "TrueType text");
        std::vector<Line> page;
        int pageWidth = 0;
        while (run.update(engine)) {
            const Vector2<int> size = window->getSize();
            if (size.x != pageWidth) { // broken anew for each width of the window
                for (const Line& line : page) device->destroyTexture(line.texture);
                page.clear();
                pageWidth = size.x;
                for (const std::string& line : breakLines(textFont, story, pageWidth - 160))
                    page.push_back(render(textFont, device, line));
                std::cout << page.size() << " lines fit a window of " << pageWidth << " pixels\n";
            }
            canvas.begin(size);
            canvas.fill(30, 30, static_cast<float>(size.x) - 60, static_cast<float>(size.y) - 60, paper);
            drawLine(canvas, title, 80, 55, red);
            canvas.fill(80, 125, static_cast<float>(title.size.x), 3, red);
            for (std::size_t i = 0; i < page.size(); ++i)
                drawLine(canvas, page[i], 80, 150 + 36 * static_cast<float>(i), ink);

            const Line clock =
                render(textFont, device,
                       std::to_string(static_cast<int>(run.getSeconds() * 10)) + " tenths of a second have passed");
            drawLine(canvas, clock, 80, static_cast<float>(size.y) - 80, red);
            run.swap(device, window);
            device->destroyTexture(clock.texture);
        }
        for (const Line& line : page) device->destroyTexture(line.texture);
        device->destroyTexture(title.texture);
    }
    destroyFont(textFont);
    destroyFont(titleFont);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
