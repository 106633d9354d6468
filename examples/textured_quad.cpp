// A picture file on a rectangle: image -> texture -> vertex buffer with indices. Escape or Q quits.
//
//     textured_quad [PICTURE]
#include "example_run.h"

#include <algorithm>

namespace {

// The vector stands on the left of the matrix: matrices arrive row by row, which GLSL reads as columns.
const std::string vertexText = R"(#version 150
in vec3 position;
in vec2 textureCoordinate;
uniform mat4 placement;
out vec2 coordinate;
void main() { coordinate = textureCoordinate; gl_Position = vec4(position, 1.0) * placement; }
)";

const std::string fragmentText = R"(#version 150
in vec2 coordinate;
uniform sampler2D picture;
out vec4 color;
void main() { color = texture(picture, coordinate); }
)";

Program* makeProgram(RenderDevice& device)
{
    Shader* vertexShader =
        device.createShader(ShaderType::Vertex, "textured_quad.vert", {vertexText.begin(), vertexText.end()});
    Shader* fragmentShader =
        device.createShader(ShaderType::Fragment, "textured_quad.frag", {fragmentText.begin(), fragmentText.end()});
    Program* program =
        device.createProgram({vertexShader, fragmentShader}, {"position", "textureCoordinate"}, {"color"});
    device.destroyShader(vertexShader); // a linked program needs them no more
    device.destroyShader(fragmentShader);
    return program;
}

Texture* makeTexture(RenderDevice& device, const Image& image)
{
    Texture* texture = device.createTexture(image.getWidth(), image.getHeight(), true);
    texture->update(image.getPixels());
    texture->setFilter(TextureFilter::Linear);
    return texture;
}

/// Four corners shared by two triangles, counter-clockwise. The first row of an image has the texture coordinate v = 0,
/// so v runs downwards here.
VertexBuffer* makeQuad(RenderDevice& device)
{
    VertexBuffer* quad = device.createVertexBuffer(false);
    quad->setAttribute(VertexAttribute::Position,
                       std::vector<Vector3<float>>{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
    quad->setAttribute(VertexAttribute::TextureCoordinate, std::vector<Vector2<float>>{{0, 1}, {1, 1}, {1, 0}, {0, 0}});
    quad->setIndices({0, 1, 2, 0, 2, 3});
    return quad;
}

/// As large as the window allows without distorting the picture.
Matrix4<float> fitInto(const Vector2<int>& window, const Image& image)
{
    const float x = static_cast<float>(image.getWidth()) / static_cast<float>(std::max(window.x, 1));
    const float y = static_cast<float>(image.getHeight()) / static_cast<float>(std::max(window.y, 1));
    const float larger = std::max(x, y) / 0.9f;
    return Matrix4<float>::scaling({x / larger, y / larger, 1.0f});
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv, "PICTURE");
    const std::string file = run.getArgument().empty() ? defaultDataRoot() + "textures/brick.png" : run.getArgument();
    Engine* engine = initEngine(false);
    if (engine == nullptr) return fail("The engine does not start"); // log.txt may say more
    const std::unique_ptr<Image> image(loadImage(file));
    if (!image) return fail("Cannot load the picture " + file);
    Window* window = engine->createWindow("Textured quad", 960, 540, true, false);
    InputDevice* input = engine->createInputDevice(false);
    RenderDevice* device = engine->createRenderDevice(window, "OpenGL");
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more
    Program* program = makeProgram(*device);
    Texture* texture = makeTexture(*device, *image);
    VertexBuffer* quad = makeQuad(*device);

    const int escape = input->getKeyFromName("Escape");
    while (run.update(engine)) {
        if (input->wasPressed(escape) || input->wasPressed('q')) break;
        const Vector2<int> size = window->getSize();
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->clear(true, true, false);
        device->useProgram(program);
        device->bindTexture(0, texture);
        device->setUniform("picture", 0).setUniform("placement", fitInto(size, *image));
        quad->drawTriangles();
        run.swap(device, window);
    }

    device->destroyVertexBuffer(quad);
    device->destroyTexture(texture);
    device->destroyProgram(program);
    engine->destroyRenderDevice(device);
    engine->destroyInputDevice(input);
    engine->destroyWindow(window);
    shutdownEngine(engine);
    return EXIT_SUCCESS;
}
