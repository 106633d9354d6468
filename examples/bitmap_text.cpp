// Text from a picture of letters: everything that ImageFont draws, at the pixel where it is wanted.
#include "example_run.h"
#include "text_program.h"

#include <cmath>

namespace {

// Texts are triangles in window pixels, y downwards, with the letters in the alpha of a texture. What is drawn without
// a colour takes the attribute's current value, so this program chooses.
const std::string vertexText = R"(#version 150
in vec3 position;
in vec2 textureCoordinate;
in vec4 vertexColor;
uniform vec2 size;
out vec2 place;
out vec4 tint;
void main()
{
    place = textureCoordinate;
    tint = vertexColor;
    gl_Position = vec4(position.x / size.x * 2.0 - 1.0, 1.0 - position.y / size.y * 2.0, 0.0, 1.0);
}
)";
const std::string fragmentText = R"(#version 150
in vec2 place;
in vec4 tint;
uniform sampler2D letters;
uniform bool isColored;
out vec4 color;
void main() { color = texture(letters, place) * (isColored ? tint : vec4(0.95, 0.96, 0.98, 1.0)); }
)";
const std::string backgroundText = R"(#version 150
uniform vec2 size;
out vec4 color;
void main()
{
    vec2 at = gl_FragCoord.xy / size;
    color = vec4(mix(vec3(0.12, 0.16, 0.26), vec3(0.30, 0.42, 0.50), at.y * at.x), 1.0);
}
)";

const Vector4<float> gold(0.98f, 0.76f, 0.30f, 1);
const Vector4<float> sea(0.35f, 0.75f, 0.85f, 1);
const Vector4<float> ghost(1.0f, 0.75f, 0.70f, 0.5f);

// Letters of one's own arrangement: the font gives the triangles.
void drawWave(ImageFont* font, VertexBuffer* buffer, const std::string& text, float seconds)
{
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> coordinates;
    std::vector<Vector4<float>> colors;
    int x = 90;
    for (const char c : text) {
        const float phase = static_cast<float>(x) / 70 + seconds * 3;
        const int y = static_cast<int>(445 + 22 * std::sin(phase));
        // The edges reach half a letter above and below y, the left one here, the right one there.
        font->generateCharacter(positions, coordinates, x, y, 3, 26 + 6 * std::sin(phase),
                                26 + 6 * std::sin(phase + 0.5f), c);
        const float light = 0.5f + 0.5f * std::sin(phase);
        colors.resize(positions.size(), {0.4f + 0.6f * light, 0.8f, 1 - 0.7f * light, 1});
        x += 3 * font->getCharacterWidth(c) + 10;
    }
    buffer->setAttribute(VertexAttribute::Position, positions);
    buffer->setAttribute(VertexAttribute::TextureCoordinate, coordinates);
    buffer->setAttribute(VertexAttribute::Color, colors);
    buffer->drawTriangles();
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Bitmap text", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    // `xum font bake` made the picture: cells of 12 x 19 pixels, 16 in a row, the first one for the space.
    ImageFont* font = loadImageFont(device, defaultDataRoot() + "fonts/hud.png", 12, 19, 16, 32, true);
    if (font == nullptr) return fail("Cannot load the font " + defaultDataRoot() + "fonts/hud.png");
    Program* program = makeProgram(device, vertexText, fragmentText);
    Program* background = makeProgram(device, vertexText, backgroundText);
    VertexBuffer* wave = device->createVertexBuffer(true);
    const std::string measured = "measure() says how wide this is";
    std::cout << "\"" << measured << "\" is " << font->measure(measured, 2, 0) << " pixels wide at scale 2\n";

    while (run.update(engine)) {
        const Vector2<int> size = window->getSize();
        device->setViewport(0, 0, size.x, size.y, size.y);
        const Vector2<float> pixels(static_cast<float>(size.x), static_cast<float>(size.y));
        device->useProgram(background);
        device->setUniform("size", pixels);
        drawQuad(device, 0, 0, pixels.x, pixels.y);
        device->setBlendMode(BlendMode::Alpha);
        device->useProgram(program);
        device->setUniform("size", pixels);
        device->setUniform("letters", 0).setUniform("isColored", 0);

        font->setFilter(device, TextureFilter::Nearest); // each pixel of the picture as it is
        font->draw(device, 90, 40, "draw(): at scale 1 each pixel of the picture is a pixel of the window.", false,
                   false);
        font->drawScaled(device, 90, 80, "drawScaled(): twice as large", 2, false, false);
        font->setFilter(device, TextureFilter::Linear); // softer
        font->drawScaled(device, 90, 130, "...and with a linear filter", 2, false, false);
        font->drawScaled(device, 90, 330, measured, 2, false, false);
        const int end = 90 + font->measure(measured, 2, 0);
        font->drawScaled(device, end, 330, "|", 2, false, false);

        device->setUniform("isColored", 1);
        font->setFilter(device, TextureFilter::Nearest);
        font->drawColored(device, 90, 190, "drawColored() in gold,", gold, false, false);
        font->drawColored(device, 420, 190, "and half transparent", ghost, false, false);
        font->drawOutlined(device, 90, 225, "drawOutlined() has a black edge, to be read on anything", sea, false,
                           false);
        font->drawOutlined(device, size.x / 2, 285, "* centred *", gold, true, true);
        font->setFilter(device, TextureFilter::Linear);
        device->bindTexture(0, font->getTexture());
        drawWave(font, wave, "generateCharacter()", run.getSeconds());
        run.swap(device, window);
    }
    device->destroyVertexBuffer(wave);
    device->destroyProgram(background);
    device->destroyProgram(program);
    destroyImageFont(device, font); // before the device: the font's texture is the device's
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
