// What walls hide is found without the graphics hardware: the walls go into a small depth buffer in main memory (shown
// in the corner), and each ball asks it. Balls that are hidden need not be drawn: here they are, as outlines.
#include "backdrop.h"
#include "camera_view.h"
#include "canvas.h"
#include "example_run.h"

namespace {

const std::string vertexText = R"(#version 150
in vec3 position;
uniform vec3 offset;
uniform mat4 viewProjection;
out vec3 place;
void main()
{
    place = position + offset;
    gl_Position = vec4(place, 1.0) * viewProjection;
}
)";
const std::string fragmentText = R"(#version 150
in vec3 place;
uniform vec3 shade;
uniform bool isLit;
out vec4 color;
void main()
{
    vec3 normal = normalize(cross(dFdx(place), dFdy(place)));
    color = vec4(isLit ? shade * (0.4 + 0.6 * max(dot(normal, vec3(0.48, -0.6, 0.64)), 0.0)) : shade, 1.0);
}
)";

const int mapWidth = 96; // pixels are coarse: each stands for ten by ten of the window
const int mapHeight = 54;
const float ballRadius = 0.5f;

struct Occlusion {
    Software::DepthBuffer depths{mapWidth, mapHeight, 8, 8};
    Image picture{mapWidth, mapHeight, 0, nullptr, nullptr, false}; // to look at; the buffer itself only compares

    // Pixels from the top left, and 1 / distance: the nearer, the larger.
    static Vector3<float> project(const Matrix4<float>& matrix, const Vector3<float>& point)
    {
        const Vector4<float> clip = matrix * Vector4<float>(point, 1);
        return {(clip.x / clip.w + 1) / 2 * mapWidth, (1 - clip.y / clip.w) / 2 * mapHeight, 1 / clip.w};
    }

    // A wall hides no pixel that it does not fill, and hides from its farthest corner on: it never hides too much.
    // Its corners go counter-clockwise, all in front of the camera.
    void addWall(const Matrix4<float>& matrix, const std::vector<Vector3<float>>& wall)
    {
        std::vector<Vector3<float>> corners;
        corners.reserve(wall.size());
        for (const Vector3<float>& corner : wall) corners.push_back(project(matrix, corner));
        float farthest = corners[0].z;
        for (const Vector3<float>& corner : corners) farthest = std::min(farthest, corner.z);
        for (int y = 0; y < mapHeight; ++y) {
            for (int x = 0; x < mapWidth; ++x) {
                if (!isFilled(corners, static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f)) continue;
                if (!depths.test(x, y, farthest)) continue;
                const auto light = static_cast<unsigned char>(std::min(farthest * 2200, 255.0f));
                picture.getPixels()[y * mapWidth + x] = {light, light, light, 255};
            }
        }
    }

    // Whether the whole pixel around the point lies inside all edges, on the left of each.
    static bool isFilled(const std::vector<Vector3<float>>& corners, float x, float y)
    {
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Vector3<float>& from = corners[i];
            const Vector3<float> edge = corners[(i + 1) % corners.size()] - from;
            const float inside = edge.y * (x - from.x) - edge.x * (y - from.y);
            if (inside < (std::fabs(edge.x) + std::fabs(edge.y)) / 2) return false;
        }
        return true;
    }

    // The square around a ball, at the depth of its nearest point. test() keeps what it found nearer, so balls are
    // asked from the farthest to the nearest: what one leaves behind hides none of those that follow.
    bool isVisible(const Matrix4<float>& matrix, const Vector3<float>& center)
    {
        const Vector3<float> at = project(matrix, center);
        const float distance = 1 / at.z - ballRadius;
        const float reach = ballRadius / distance / std::tan(25 / degreesPerRadian) * mapHeight / 2 * 1.1f;
        const int left = std::max(static_cast<int>(at.x - reach), 0);
        const int right = std::min(static_cast<int>(at.x + reach), mapWidth - 1);
        const int bottom = std::min(static_cast<int>(at.y + reach), mapHeight - 1);
        for (int y = std::max(static_cast<int>(at.y - reach), 0); y <= bottom; ++y)
            for (int x = left; x <= right; ++x)
                if (depths.test(x, y, 1 / distance)) return true;
        return false;
    }
};

// Seen from y = 0: across x, from the ground up.
std::vector<Vector3<float>> makeWall(float x, float y, float width, float height)
{
    return {{x, y, 0}, {x + width, y, 0}, {x + width, y, height}, {x, y, height}};
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Software occlusion", 960, 540, false, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    const std::unique_ptr<Mesh> mesh(createSphereMesh(3, ballRadius));
    VertexBuffer* ball = mesh->createVertexBuffer(device);
    const std::vector<std::vector<Vector3<float>>> walls = {makeWall(-8, 2, 6, 2.6f), makeWall(0.5f, 4, 4, 3.4f),
                                                            makeWall(6, 1, 2.5f, 2.2f)};
    VertexBuffer* wallBuffer = device->createVertexBuffer(true);
    Texture* mapTexture = device->createTexture(mapWidth, mapHeight, false);
    Program* program = makeProgram(device, vertexText, fragmentText);
    auto backdrop = std::make_unique<Backdrop>(device);
    auto canvas = std::make_unique<Canvas>(device);
    while (run.update(engine)) {
        const Vector2<int> size = window->getSize();
        const Vector3<float> eye(5 * std::sin(run.getSeconds() * 0.5f), -10, 5);
        const Matrix4<float> matrix = viewProjection(lookAt(eye, {0, 5, 0}, size));
        Occlusion occlusion;
        occlusion.depths.clear();
        for (const auto& wall : walls) occlusion.addWall(matrix, wall);

        backdrop->begin(size);
        device->useProgram(program);
        device->setUniform("viewProjection", matrix);
        device->setUniform("isLit", 0)
            .setUniform("offset", Vector3<float>())
            .setUniform("shade", Vector3<float>(0.46f, 0.42f, 0.40f));
        for (const auto& wall : walls) {
            wallBuffer->setAttribute(VertexAttribute::Position, wall);
            wallBuffer->drawTriangleFan();
        }
        int hidden = 0;
        for (int row = 6; row >= 0; --row) { // from the farthest to the nearest
            for (int column = -6; column <= 6; ++column) {
                const Vector3<float> center(static_cast<float>(column) * 1.8f, static_cast<float>(row) * 2 - 1, 0.5f);
                const bool isVisible = occlusion.isVisible(matrix, center);
                hidden += isVisible ? 0 : 1;
                device->setUniform("offset", center).setUniform("isLit", isVisible ? 1 : 0);
                device->setUniform("shade", isVisible ? Vector3<float>(0.45f, 0.75f, 0.55f)
                                                      : Vector3<float>(0.95f, 0.40f, 0.35f));
                if (isVisible) {
                    ball->drawTriangles();
                } else {
                    device->disable(RenderFeature::DepthTest);
                    DebugSphere({0, 0, 0}, ballRadius, 24).draw(device);
                    device->enable(RenderFeature::DepthTest);
                }
            }
        }
        if (run.getSeconds() < 0.02f) std::cout << hidden << " of 91 balls are hidden\n";
        mapTexture->update(occlusion.picture.getPixels());
        canvas->over(size);
        canvas->draw(mapTexture, 24, 24, mapWidth * 2.5f, mapHeight * 2.5f);
        canvas->write(24, 170, std::to_string(hidden) + " of 91 balls are hidden", {0.9f, 0.9f, 0.9f, 1}, 1.2f);
        run.swap(device, window);
    }
    canvas.reset();
    backdrop.reset();
    device->destroyTexture(mapTexture);
    device->destroyVertexBuffer(wallBuffer);
    device->destroyVertexBuffer(ball);
    device->destroyProgram(program);
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
