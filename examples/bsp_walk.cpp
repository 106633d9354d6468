// A compiled map and its BSP tree: in which leaf a point lies, and all leaves from the nearest to the farthest. The
// colours tell the order, from red for what the camera comes to first to blue for the last.
#include "backdrop.h"
#include "camera_view.h"
#include "example_run.h"

namespace {

const std::string vertexText = R"(#version 150
in vec3 position;
uniform vec3 origin;
uniform mat4 viewProjection;
out vec3 place;
void main()
{
    place = position + origin;
    gl_Position = vec4(place, 1.0) * viewProjection;
}
)";
const std::string fragmentText = R"(#version 150
in vec3 place;
uniform float rank; // 0 for the nearest leaf to 1 for the farthest
out vec4 color;
void main()
{
    vec3 normal = normalize(cross(dFdx(place), dFdy(place)));
    vec3 hue = clamp(vec3(1.6 - 2.4 * rank, 1.3 - abs(2.6 * rank - 1.0), 2.2 * rank - 0.8), 0.08, 1.0);
    color = vec4(mix(vec3(0.8), hue, 0.75) * (0.45 + 0.55 * max(dot(normal, vec3(0.48, -0.6, 0.64)), 0.0)), 1.0);
}
)";

// The polygons of a leaf as triangles: they are convex, so fans will do. Null for an empty leaf.
VertexBuffer* makeBuffer(RenderDevice* device, const BSPNodeContentLeaf& leaf)
{
    std::vector<Vector3<float>> positions;
    for (const struct Polygon* polygon : leaf.polygons) {
        const std::vector<Vertex>& corners = polygon->vertices;
        for (std::size_t i = 2; i < corners.size(); ++i)
            for (const std::size_t corner : {std::size_t{0}, i - 1, i}) positions.push_back(corners[corner].position);
    }
    if (positions.empty()) return nullptr;
    VertexBuffer* buffer = device->createVertexBuffer(false);
    buffer->setAttribute(VertexAttribute::Position, positions);
    return buffer;
}

// Everything on the eye's side of a plane is nearer than what lies beyond: no sorting is needed.
void visit(const BSPNode* node, const Vector3<float>& eye, std::vector<const BSPNode*>& order)
{
    if (node->isLeaf()) {
        if (!node->getLeaf()->polygons.empty()) order.push_back(node);
        return;
    }
    const BSPNodeContentNode* inner = node->getNode();
    const bool isInFront = inner->plane.isInFront(eye);
    visit(isInFront ? inner->front : inner->back, eye, order);
    visit(isInFront ? inner->back : inner->front, eye, order);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv, "MAP");
    const std::string file = run.getArgument().empty() ? defaultDataRoot() + "maps/gatehouse.map" : run.getArgument();
    const std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile(file));
    if (!map || map->getBSPMeshes().getFirst() == nullptr) return fail("There is no map in " + file);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow(map->getFirst(), 960, 540, true, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    const BSPMesh* mesh = map->getBSPMeshes().getFirst(); // a map may have several, each with a tree and an origin
    std::vector<VertexBuffer*> buffers;
    Box box;
    for (BSPNode* leaf : mesh->getBSP()->calculateLeafArray()) {
        leaf->word = static_cast<std::uint32_t>(buffers.size()); // the word is the host's: here the leaf's number
        buffers.push_back(makeBuffer(device, *leaf->getLeaf()));
        for (const struct Polygon* polygon : leaf->getLeaf()->polygons)
            for (const Vertex& vertex : polygon->vertices) box.add(vertex.position);
    }
    std::cout << map->getFirst() << ": " << buffers.size() << " leaves\n";
    const Vector3<float> center = mesh->getOrigin() + (box.minimum + box.maximum) / 2.0f;
    const float radius = length(box.maximum - box.minimum) / 2;

    Program* program = makeProgram(device, vertexText, fragmentText);
    auto backdrop = std::make_unique<Backdrop>(device);
    const BSPNode* lastLeaf = nullptr;
    while (run.update(engine)) {
        const float angle = run.getSeconds() * 0.3f + 0.6f;
        const Vector3<float> eye = center + Vector3<float>(std::sin(angle), -std::cos(angle), 0.45f) * (radius * 1.4f);
        // The tree counts from the mesh's origin.
        const BSPNode* leaf = mesh->getBSP()->locatePoint(eye - mesh->getOrigin());
        if (leaf != lastLeaf)
            std::cout << "the camera is in leaf " << leaf->word << ", which is "
                      << (leaf->getLeaf()->kind ? "solid" : "open") << '\n';
        lastLeaf = leaf;
        std::vector<const BSPNode*> order;
        visit(mesh->getBSP()->getRoot(), eye - mesh->getOrigin(), order);

        backdrop->begin(window->getSize());
        device->setCullMode(CullMode::Back); // polygons have a front
        device->useProgram(program);
        device->setUniform("viewProjection", viewProjection(lookAt(eye, center, window->getSize())));
        device->setUniform("origin", mesh->getOrigin());
        for (std::size_t i = 0; i < order.size(); ++i) {
            device->setUniform("rank", static_cast<float>(i) / static_cast<float>(order.size()));
            buffers[order[i]->word]->drawTriangles();
        }
        run.swap(device, window);
    }
    for (VertexBuffer* buffer : buffers) device->destroyVertexBuffer(buffer);
    device->destroyProgram(program);
    backdrop.reset();
    engine->destroyRenderDevice(device);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
