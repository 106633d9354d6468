// The first program: a triangle, until the window is closed or, with "--frames N", for N frames.
#include <xum/xum.h>

#include <cstdlib>

const std::string vertexText = "#version 150\n in vec3 position; in vec4 color; out vec4 blend;"
                               "void main() { blend = color; gl_Position = vec4(position, 1.0); }";
const std::string fragmentText = "#version 150\n in vec4 blend; out vec4 pixel; void main() { pixel = blend; }";

int main(int argc, char** argv)
{
    int framesLeft = argc == 3 ? std::atoi(argv[2]) : -1; // -1: no limit
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Hello, engine", 640, 480, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return EXIT_FAILURE; // no display; log.txt may say more
    Shader* vertex = device->createShader(ShaderType::Vertex, "hello", {vertexText.begin(), vertexText.end()});
    Shader* fragment = device->createShader(ShaderType::Fragment, "hello", {fragmentText.begin(), fragmentText.end()});
    Program* program = device->createProgram({vertex, fragment}, {"position", "color"}, {"pixel"});
    VertexBuffer* triangle = device->createVertexBuffer(false);
    triangle->setAttribute(0, std::vector<Vector3<float>>{{-0.8f, -0.7f, 0}, {0.8f, -0.7f, 0}, {0, 0.8f, 0}});
    triangle->setAttribute(1, std::vector<Vector4<float>>{{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}});
    while (framesLeft-- != 0 && engine->update()) { // false when the user closes the window
        device->setViewport(0, 0, window->getSize().x, window->getSize().y, window->getSize().y);
        device->clear(true, true, false);
        device->useProgram(program);
        triangle->drawTriangles();
        device->swap(window);
    }
    device->destroyVertexBuffer(triangle); // everything goes back to its maker, the devices last
    device->destroyProgram(program);
    for (Shader* shader : {vertex, fragment}) device->destroyShader(shader);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
