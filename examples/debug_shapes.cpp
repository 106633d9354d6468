// Lines for looking at a world that is being built: axes, boxes around things, spheres around them.
#include "backdrop.h"
#include "camera_view.h"
#include "example_run.h"
#include "shaded_program.h"
#include "text_program.h"

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Debug shapes", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    const std::unique_ptr<Mesh> urn(loadMesh(defaultDataRoot() + "meshes/urn.mesh"));
    if (!urn) return fail("There is no mesh " + defaultDataRoot() + "meshes/urn.mesh");
    urn->calculateFaceNormals();
    urn->calculateVertexNormals();
    VertexBuffer* solid = urn->createVertexBuffer(device);
    const Box box = urn->calculateBoundingBox();
    const Vector3<float> center = (box.minimum + box.maximum) / 2.0f;
    const float radius = length(box.maximum - center);
    std::cout << "the urn fits a sphere of radius " << std::lround(radius * 100) << " hundredths\n";

    Program* program = makeProgram(device, shadedVertexText, shadedFragmentText);
    auto backdrop = std::make_unique<Backdrop>(device);
    while (run.update(engine)) {
        const Vector2<int> size = window->getSize();
        const float angle = run.getSeconds() * 0.4f + 0.15f;
        const Vector3<float> eye = center + Vector3<float>(std::sin(angle), -std::cos(angle), 0.4f) * (radius * 4.8f);
        backdrop->begin(size);
        device->useProgram(program);
        device->setUniform("viewProjection", viewProjection(lookAt(eye, center, size)));
        const auto use = [&](const Vector3<float>& color, const Vector3<float>& offset) {
            device->setUniform("shade", Vector4<float>(color, 1)).setUniform("offset", offset).setUniform("isLit", 0);
        };

        // A floor of lines below the urn, and the axes: red x, green y, blue z.
        const Vector3<float> floor(0, 0, box.minimum.z);
        use({0.25f, 0.28f, 0.33f}, floor);
        for (int i = -8; i <= 8; ++i) {
            const float at = static_cast<float>(i) * radius / 2;
            DebugLine({at, -4 * radius, 0}, {at, 4 * radius, 0}).draw(device);
            DebugLine({-4 * radius, at, 0}, {4 * radius, at, 0}).draw(device);
        }
        const Vector3<float> axes[] = {{radius * 1.6f, 0, 0}, {0, radius * 1.6f, 0}, {0, 0, radius * 2.4f}};
        for (int axis = 0; axis < 3; ++axis) {
            use({axis == 0 ? 0.95f : 0.2f, axis == 1 ? 0.9f : 0.2f, axis == 2 ? 1.0f : 0.25f}, floor);
            DebugLine({0, 0, 0}, axes[axis]).draw(device);
        }

        // Three urns: with its box, with its sphere, with both.
        for (int i = -1; i <= 1; ++i) {
            const Vector3<float> offset(static_cast<float>(i) * radius * 2.2f, 0, 0);
            use({0.85f, 0.55f, 0.35f}, offset);
            device->setUniform("isLit", 1);
            solid->drawTriangles();
            use({0.98f, 0.76f, 0.30f}, offset);
            if (i <= 0) DebugBox(box.minimum, box.maximum).draw(device);
            use({0.40f, 0.85f, 0.90f}, offset);
            if (i >= 0) DebugSphere(center, radius, 48).draw(device);
        }
        run.swap(device, window);
    }
    device->destroyVertexBuffer(solid);
    device->destroyProgram(program);
    backdrop.reset();
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
