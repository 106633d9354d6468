// The first program: a window with one coloured triangle, until it is closed or, with "--frames N", for N frames.
#include <xum/xum.h>

#include <cstdlib>
#include <string>
#include <vector>

const std::string vertexText = "#version 150\n in vec3 position; in vec4 color; out vec4 blend;"
                               "void main() { blend = color; gl_Position = vec4(position, 1.0); }";
const std::string fragmentText = "#version 150\n in vec4 blend; out vec4 pixel; void main() { pixel = blend; }";

int main(int argc, char** argv)
{
    int framesLeft = argc == 3 && std::string(argv[1]) == "--frames" ? std::atoi(argv[2]) : -1; // -1: no limit

    // The engine makes the devices, the render device makes everything that is drawn with.
    Engine* engine = initEngine(false);
    if (engine == nullptr) return EXIT_FAILURE;
    Window* window = engine->createWindow("Hello, engine", 640, 480, true, false);
    RenderDevice* device = engine->createRenderDevice(window, "OpenGL");
    if (device == nullptr) return EXIT_FAILURE; // log.txt says why

    Shader* vertex = device->createShader(ShaderType::Vertex, "hello", {vertexText.begin(), vertexText.end()});
    Shader* fragment = device->createShader(ShaderType::Fragment, "hello", {fragmentText.begin(), fragmentText.end()});
    Program* program = device->createProgram({vertex, fragment}, {"position", "color"}, {"pixel"});
    VertexBuffer* triangle = device->createVertexBuffer(false);
    triangle->setAttribute(0, std::vector<Vector3<float>>{{-0.8f, -0.7f, 0}, {0.8f, -0.7f, 0}, {0, 0.8f, 0}});
    triangle->setAttribute(1, std::vector<Vector4<float>>{{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}});

    // One round is one frame; update() says false when the user closes the window.
    while (framesLeft-- != 0 && engine->update()) {
        const Vector2<int> size = window->getSize();
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->clear(true, true, false);
        device->useProgram(program);
        triangle->drawTriangles();
        device->swap(window);
    }

    // Everything goes back to its maker, the devices last.
    device->destroyVertexBuffer(triangle);
    device->destroyProgram(program);
    device->destroyShader(fragment);
    device->destroyShader(vertex);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
