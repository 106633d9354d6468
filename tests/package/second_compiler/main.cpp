#include <xum/xum.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iostream>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

// A host that another compiler than the library's translated, with the same standard library. All that must agree goes
// through the edge in both directions: texts, lists and functions, memory, exceptions, virtual calls and types.

namespace {

int failures = 0;

void check(bool holds, std::string_view what)
{
    if (holds) return;
    std::cerr << "FAILED: " << what << '\n';
    ++failures;
}

/// Known to this program alone: the library lets it pass.
class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

template <class Exception, class Action>
bool throws(Action action)
{
    try {
        action();
    } catch (const Exception&) {
        return true;
    }
    return false;
}

template <class Type, class Base>
bool isExactly(const Base& object)
{
    return typeid(object) == typeid(Type);
}

// Classes of the host's, which the library calls and destroys.

class Lantern final : public SpotLight {
public:
    Matrix4<float> calculateMatrix() override
    {
        ++asked;
        return SpotLight::calculateMatrix();
    }

    int asked = 0;
};

class Torch final : public MapGridObject {
public:
    Torch(MapGridCell* cell, int& alive) : MapGridObject(cell), alive(alive) { ++alive; }
    ~Torch() override { --alive; }
    Torch(const Torch&) = delete;
    Torch& operator=(const Torch&) = delete;

private:
    int& alive;
};

class Marker final : public DebugObject {
public:
    void draw(RenderDevice* device) override
    {
        withVertexBuffer(device, [this](VertexBuffer*) { ++drawn; });
    }

    int drawn = 0;
};

/// Where a map's bytes go and come from.
class Memory final : public Serializer, public Deserializer {
public:
    bool failed() override { return false; }

    void write(const char* data, int size) override
    {
        bytes.append(data, size < 0 ? 0 : static_cast<std::size_t>(size));
    }

    void read(char* data, int size) override
    {
        for (int index = 0; index < size && position < bytes.size(); ++index) data[index] = bytes[position++];
    }

    std::string bytes;
    std::size_t position = 0;
};

void exchangeTexts(Engine* engine)
{
    check(engine->getVersion() == "xum-engine 0.1 (build 0001)", "a text comes back by value");
    auto root = std::make_unique<ConfigSection>("settings");
    auto window = std::make_unique<ConfigSection>("window");
    const std::string title(1000, 'x'); // lies outside of the text object itself
    auto entry = std::make_unique<ConfigEntry>("title");
    entry->setValue(title);
    window->addEntry(entry.release());
    root->addSection(window.release());
    const ConfigFile file(root.release()); // the library deletes what was made here
    const ConfigFile copy(file);           // and the other way round
    check(copy.getEntry("window/title", true)->getValue() == title, "a long text is kept");
    check(copy.getSections("window").front()->getName() == "window", "a list comes back by value");
    check(copy.getRootSection()->getAllSections().size() == 1, "a vector comes back by value");
    std::list<ConfigEntry*> entries;
    copy.getSections("window").front()->getEntries(entries);
    check(entries.size() == 1, "the library appends to a list");
    std::string problem;
    check(!checkConfigText("<a <b>", problem) && !problem.empty(), "the library fills a text");
}

void exchangeLists(Engine* engine)
{
    const std::unique_ptr<Mesh> mesh(createSphereMesh(1, 2.0f));
    check(mesh != nullptr && mesh->getIndexes().size() == 3 * 32, "a vector of the library's is read");
    check(mesh != nullptr && isExactly<Mesh>(*mesh), "both mean the same type");
    Mesh triangle({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {}, {0, 1, 2});
    triangle.calculateFaceNormals();
    check(triangle.isValid() && triangle.getFaceNormals().size() == 1, "a vector is handed over");

    ResourceManager* const resources = engine->createResourceManager();
    std::vector<unsigned char> bytes;
    check(resources->load(bytes, defaultDataRoot() + "textures/brick.png"), "a file is loaded");
    const std::unique_ptr<Image> decoded(loadImageFromMemory(bytes));
    const std::unique_ptr<Image> part(decoded == nullptr ? nullptr : decoded->getSub(0, 0, 4, 4));
    check(part != nullptr && part->getPixel(1, 1) == decoded->getPixel(1, 1), "pictures are made and deleted");
    engine->destroyResourceManager(resources);
}

void exchangeFunctions()
{
    Lantern lantern;
    lantern.direction = {0, 1, 0};
    lantern.up = {0, 0, 1};
    int calls = 0;
    SpotLight& light = lantern;
    light.generateShadowMap(nullptr, [&calls](const Matrix4<float>&) { ++calls; });
    check(calls == 1, "the library calls a function of the host's");
    check(lantern.asked == 1, "and the host's own operation for the matrix");
    check(throws<std::bad_function_call>([&light] { light.generateShadowMap(nullptr, {}); }),
          "an exception of the library's is caught");
    check(throws<HostError>([&light] {
              light.generateShadowMap(nullptr, [](const Matrix4<float>&) { throw HostError("drawing"); });
          }),
          "an exception of the host's passes through the library");
}

void deriveClasses(Engine* engine)
{
    int alive = 0;
    {
        MapGrid grid;
        MapGridCell* const cell = grid.getCell(3, 4);
        new Torch(cell, alive);
        new Torch(cell, alive);
        check(alive == 2 && cell->getCount() == 2, "objects are in their cell");
        check(dynamic_cast<Torch*>(cell->getFirst()) != nullptr, "a base is cast back");
    }
    check(alive == 0, "the library destroys what the host derived");

    RenderDevice* const device = engine->createRenderDevice(nullptr, "Software");
    Marker marker;
    DebugObject* const shape = &marker;
    shape->draw(device);
    check(marker.drawn == 0, "the inert device makes no buffers");
    DebugSphere({0, 0, 0}, 1.0f, 8).draw(device);
    std::list<Vector3<float>> points;
    DebugSphere({0, 0, 0}, 1.0f, 8).drawHelper(points, {1, 0, 0}, [](float sine, float cosine, const Vector3<float>&) {
        return Vector3<float>(cosine, sine, 0);
    });
    check(!points.empty(), "a function that gives a vector back is called");
    engine->destroyRenderDevice(device);
}

void castTypes()
{
    const Plane<float> plane({0, 0, 1}, 2.0f);
    const BSPNode node(plane, new BSPNode(true, {}, {}), new BSPNode(false, {}, {}));
    const auto* const inner = dynamic_cast<const BSPNodeContentNode*>(node.getContent());
    check(inner != nullptr && std::abs(inner->plane.distance - 2.0f) < 1e-6f, "a node of the library's is cast");
    check(dynamic_cast<const BSPNodeContentLeaf*>(node.getContent()) == nullptr, "and is nothing else");
    const std::unique_ptr<BSPNodeContent> copy(inner == nullptr ? nullptr : inner->clone());
    check(dynamic_cast<BSPNodeContentNode*>(copy.get()) != nullptr, "so is its copy");
    check(copy != nullptr && isExactly<BSPNodeContentNode>(*copy), "and its type has one name");

    Memory memory;
    Serializer& out = memory;
    out.write("abc", 3);
    check(dynamic_cast<Deserializer*>(&out) == static_cast<Deserializer*>(&memory), "a cast goes sideways");
}

void countArguments(ScriptCall& call, void* user)
{
    auto& lines = *static_cast<std::vector<std::string>*>(user);
    lines.emplace_back(call.getString(0));
    if (call.getString(0) == "throw") throw HostError("called from a script");
    call.returnInteger(call.getInteger(1) + 1);
}

void extendScripts(Engine* engine)
{
    ScriptingDevice* const scripts = engine->createScriptingDevice();
    std::vector<std::string> lines;
    check(
        registerScriptFunction(scripts, "host-count", "", "(:string -> :integer -> :integer)", countArguments, &lines),
        "a function is added to the language");
    ScriptValue value;
    check(evaluateScript(scripts, "(host-count \"hello\" 41)", value), "a script is evaluated");
    check(value.getInteger() == 42 && lines.size() == 1 && lines[0] == "hello", "with the host's function");
    check(evaluateScript(scripts, "(list 1 2 3)", value) && value.getList().size() == 3,
          "a list comes out of a script");
    check(throws<HostError>([&] { evaluateScript(scripts, "(host-count \"throw\" 1)", value); }),
          "an exception passes through the interpreter");
    check(evaluateScript(scripts, "(host-count \"again\" 1)", value) && value.getInteger() == 2, "which goes on");
    engine->destroyScriptingDevice(scripts);
}

} // namespace

int main()
{
    Engine* const engine = initEngine(false);
    if (engine == nullptr) return 1;
    if (!engine->update()) return 2;
    getLog() << "a stream of the library's" << std::endl;
    exchangeTexts(engine);
    exchangeLists(engine);
    exchangeFunctions();
    deriveClasses(engine);
    castTypes();
    extendScripts(engine);
    shutdownEngine(engine);
    if (failures == 0) std::cout << "all is well\n";
    return failures == 0 ? 0 : 3;
}
