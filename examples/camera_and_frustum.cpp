// What a camera sees, seen from outside: its frustum tells the balls that are in view (green), partly in view (gold)
// and out of view; the clipper cuts the floor and its lines to what is visible.
#include "backdrop.h"
#include "camera_view.h"
#include "example_run.h"
#include "shaded_program.h"

namespace {

const float sight = 16; // a frustum has no far plane: this one ends here
const float ballRadius = 0.6f;

std::vector<Plane<float>> makePlanes(const Camera& camera)
{
    Vector3<float> right;
    Vector3<float> forward;
    Vector3<float> up;
    viewVectorsFromViewMatrix(right, forward, up, camera.calculateViewMatrix());
    Frustum frustum;
    frustum.setFromViewVectors(camera.getOrigin(), right, forward, up, camera.getHorizontalFov(),
                               camera.getVerticalFov(), 1);
    std::vector<Plane<float>> planes = frustum.getPlanes(); // they face inwards
    planes.emplace_back(-forward, dot(-forward, camera.getOrigin() + forward * sight));
    return planes;
}

Vector4<float> colorOfBall(const std::vector<Plane<float>>& planes, const Vector3<float>& center)
{
    float nearest = ballRadius;
    for (const Plane<float>& plane : planes) nearest = std::min(nearest, plane.signedDistance(center));
    if (nearest < -ballRadius) return {0.35f, 0.38f, 0.45f, 1};
    return nearest < ballRadius ? Vector4<float>(0.98f, 0.72f, 0.25f, 1) : Vector4<float>(0.40f, 0.85f, 0.45f, 1);
}

// From the eye to the corners of what it sees at the end of its sight.
void drawEdges(RenderDevice* device, const Camera& camera)
{
    const Matrix3<float> toWorld = camera.calculateViewMatrix().transposed();
    const float x = std::tan(camera.getHorizontalFov() / 2 / degreesPerRadian) * sight;
    const float z = std::tan(camera.getVerticalFov() / 2 / degreesPerRadian) * sight;
    const Vector3<float> corners[] = {{-x, sight, -z}, {x, sight, -z}, {x, sight, z}, {-x, sight, z}};
    device->setUniform("shade", Vector4<float>(0.40f, 0.80f, 0.95f, 1));
    for (int i = 0; i < 4; ++i) {
        const Vector3<float> corner = camera.getOrigin() + toWorld * corners[i];
        DebugLine(camera.getOrigin(), corner).draw(device);
        DebugLine(corner, camera.getOrigin() + toWorld * corners[(i + 1) % 4]).draw(device);
    }
}

// The whole line, and once more, brightly, the part of it that is in view.
void drawLine(RenderDevice* device, const Clipper& clipper, const Vector3<float>& start, const Vector3<float>& end)
{
    device->setUniform("shade", Vector4<float>(0.30f, 0.33f, 0.40f, 1));
    DebugLine(start, end).draw(device);
    DebugLine seen(start, end);
    if (!clipper.clipLine(seen.from, seen.to, start, end)) return;
    if (dot(seen.to - seen.from, end - start) < 0) return; // it passes outside a corner
    device->setUniform("shade", Vector4<float>(0.95f, 0.95f, 0.90f, 1));
    seen.draw(device);
}

void drawPolygon(RenderDevice* device, const std::vector<Vertex>& vertices)
{
    std::vector<Vector3<float>> positions;
    positions.reserve(vertices.size());
    for (const Vertex& vertex : vertices) positions.push_back(vertex.position);
    VertexBuffer* buffer = device->createVertexBuffer(false);
    buffer->setAttribute(VertexAttribute::Position, positions);
    buffer->drawTriangleFan();
    device->destroyVertexBuffer(buffer);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Camera and frustum", 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    const std::unique_ptr<Mesh> mesh(createSphereMesh(3, ballRadius));
    VertexBuffer* ball = mesh->createVertexBuffer(device);
    const Polygon floor(
        {{{-14, -14, 0}, {0, 0}}, {{14, -14, 0}, {1, 0}}, {{14, 14, 0}, {1, 1}}, {{-14, 14, 0}, {0, 1}}});
    Program* program = makeProgram(device, shadedVertexText, shadedFragmentText);
    auto backdrop = std::make_unique<Backdrop>(device);
    while (run.update(engine)) {
        Camera watched;
        watched.setOrigin({0, -9, 3});
        watched.setRotation({-12, 0, 40 * std::sin(run.getSeconds() * 0.7f)}); // a little downwards, to and fro
        watched.setHorizontalFov(60);
        watched.setVerticalFov(36);
        const std::vector<Plane<float>> planes = makePlanes(watched);
        const Clipper clipper(planes);

        backdrop->begin(window->getSize());
        device->useProgram(program);
        device->setUniform("viewProjection", viewProjection(lookAt({-10, -19, 15}, {0, -1.5f, 0}, window->getSize())));
        device->setUniform("offset", Vector3<float>()).setUniform("isLit", 0);
        device->disable(RenderFeature::DepthTest); // lines that lie on each other: the later one is seen
        for (int i = -7; i <= 7; ++i) {
            const float at = 2 * static_cast<float>(i);
            drawLine(device, clipper, {at, -14, 0}, {at, 14, 0});
            drawLine(device, clipper, {-14, at, 0}, {14, at, 0});
        }
        device->enable(RenderFeature::DepthTest);
        drawEdges(device, watched);
        DebugBox(watched.getOrigin() - Vector3<float>(0.3f, 0.3f, 0.3f),
                 watched.getOrigin() + Vector3<float>(0.3f, 0.3f, 0.3f))
            .draw(device);
        for (int x = -3; x <= 3; ++x) {
            for (int y = -3; y <= 3; ++y) {
                const Vector3<float> center(static_cast<float>(4 * x), static_cast<float>(4 * y), 0.8f);
                device->setUniform("offset", center).setUniform("isLit", 1);
                device->setUniform("shade", colorOfBall(planes, center));
                ball->drawTriangles();
            }
        }
        device->setBlendMode(BlendMode::Alpha); // what shines through goes last
        device->setUniform("offset", Vector3<float>()).setUniform("isLit", 0);
        device->setUniform("shade", Vector4<float>(0.98f, 0.90f, 0.55f, 0.25f));
        drawPolygon(device, clipper.clipPolygon(&floor));
        run.swap(device, window);
    }
    device->destroyVertexBuffer(ball);
    device->destroyProgram(program);
    backdrop.reset();
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
