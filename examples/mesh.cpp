// Triangle meshes: one from a file and spheres in three resolutions; what they look like, their edges and their
// normals.
#include "backdrop.h"
#include "camera_view.h"
#include "example_run.h"
#include "text_program.h"

namespace {

const std::string vertexText = R"(#version 150
in vec3 position;
in vec3 normal;
uniform mat4 world;
uniform mat4 viewProjection;
out vec3 direction;
void main()
{
    direction = (vec4(normal, 0.0) * world).xyz; // rotated only: the world matrix does not stretch
    gl_Position = vec4(position, 1.0) * world * viewProjection;
}
)";
const std::string fragmentText = R"(#version 150
in vec3 direction;
uniform vec3 surface;
uniform bool isLit;
out vec4 color;
void main()
{
    vec3 normal = normalize(direction);
    float sun = max(dot(normal, vec3(0.48, -0.6, 0.64)), 0.0);
    vec3 light = vec3(0.20, 0.24, 0.32) + vec3(0.95, 0.85, 0.70) * sun + vec3(0.10, 0.12, 0.16) * normal.z;
    color = vec4(isLit ? surface * light : surface, 1.0);
}
)";

// A mesh and the buffers that the device made of it. A buffer is null where there is nothing to show.
struct Model {
    std::unique_ptr<Mesh> mesh;
    VertexBuffer* solid;
    VertexBuffer* edges;
    VertexBuffer* faceNormals;
    VertexBuffer* vertexNormals;
};

Model makeModel(RenderDevice* device, Mesh* owned)
{
    std::unique_ptr<Mesh> mesh(owned);
    mesh->calculateFaceNormals(); // a file has none
    mesh->calculateVertexNormals();
    return {std::move(mesh), owned->createVertexBuffer(device), owned->createWireframeVertexBuffer(device),
            owned->createFaceNormalsVertexBuffer(device), owned->createVertexNormalsVertexBuffer(device)};
}

void drawLines(RenderDevice* device, VertexBuffer* lines, const Vector3<float>& color)
{
    if (lines == nullptr) return;
    device->setUniform("isLit", 0).setUniform("surface", color);
    lines->drawLines();
}

void drawModel(RenderDevice* device, const Model& model, const Matrix4<float>& world, const Vector3<float>& color)
{
    device->setUniform("world", world).setUniform("isLit", 1).setUniform("surface", color);
    if (model.solid != nullptr) model.solid->drawTriangles();
}

Matrix4<float> turned(const Vector3<float>& position, float scale, float angle)
{
    const float c = std::cos(angle) * scale;
    const float s = std::sin(angle) * scale;
    return {c, -s, 0, position.x, s, c, 0, position.y, 0, 0, scale, position.z, 0, 0, 0, 1};
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Mesh", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    Mesh* urnMesh = loadMesh(defaultDataRoot() + "meshes/urn.mesh");
    if (urnMesh == nullptr) return fail("There is no mesh " + defaultDataRoot() + "meshes/urn.mesh");
    std::vector<Model> models;
    models.push_back(makeModel(device, urnMesh));
    for (int subdivisions = 0; subdivisions < 3; ++subdivisions)
        models.push_back(makeModel(device, createSphereMesh(subdivisions + 1, 1)));
    for (const Model& model : models)
        std::cout << model.mesh->getPositions().size() << " vertices, " << model.mesh->getIndexes().size() / 3
                  << " triangles\n";
    const Box box = models[0].mesh->calculateBoundingBox();
    const float urnScale = 2.6f / (box.maximum.z - box.minimum.z);

    Program* program = makeProgram(device, vertexText, fragmentText);
    auto backdrop = std::make_unique<Backdrop>(device);
    while (run.update(engine)) {
        const Vector2<int> size = window->getSize();
        backdrop->begin(size);
        device->useProgram(program);
        device->setUniform("viewProjection", viewProjection(lookAt({0, -8, 2.2f}, {0, 0, 0}, size)));
        const float angle = run.getSeconds() * 0.5f;

        for (std::size_t i = 0; i < models.size(); ++i) {
            const float x = 2.9f * (static_cast<float>(i) - 1.5f);
            const Vector3<float> color =
                i == 0 ? Vector3<float>(0.85f, 0.55f, 0.35f) : Vector3<float>(0.45f, 0.60f, 0.75f);
            const Matrix4<float> world = i == 0 ? turned({x, 0, -1.3f - box.minimum.z * urnScale}, urnScale, angle)
                                                : turned({x, 0, 0}, 1, angle);
            drawModel(device, models[i], world, color);
            if (i == 1) {
                // A little larger, or edges and faces would fight for the pixels.
                device->setUniform("world", turned({x, 0, 0}, 1.004f, angle));
                drawLines(device, models[i].edges, {0.95f, 0.95f, 0.90f});
            }
            if (i == 2) drawLines(device, models[i].faceNormals, {0.98f, 0.76f, 0.30f});
            if (i == 3) drawLines(device, models[i].vertexNormals, {0.45f, 0.90f, 0.55f});
        }
        run.swap(device, window);
    }
    for (const Model& model : models)
        for (VertexBuffer* buffer : {model.solid, model.edges, model.faceNormals, model.vertexNormals})
            device->destroyVertexBuffer(buffer);
    device->destroyProgram(program);
    backdrop.reset();
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
