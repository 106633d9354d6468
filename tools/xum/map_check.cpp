#include "map_check.h"

#include "map_facts.h"
#include "map_solids.h"

#include <xum/files/config_reader.h>
#include <xum/geometry/brush.h>
#include <xum/geometry/compiled_map.h>
#include <xum/geometry/polygon.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <list>
#include <unordered_set>

namespace {

constexpr std::size_t mostLines = 100;
constexpr double tolerance = 1e-3;                   // world units near the origin
constexpr double normalTolerance = 1e-4;             // of the length of a normal
constexpr std::size_t mostPlanes = 4096;             // of a brush: the work grows with the square
constexpr std::uint64_t mostComparisons = 100000000; // of vertices with planes: a second at most
constexpr double fullTurn = 6.283185307179586;

bool isFinite(const Vector3<float>& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool isFinite(const Plane<float>& plane)
{
    return isFinite(plane.normal) && std::isfinite(plane.distance);
}

bool isFinite(const Vertex& vertex)
{
    return isFinite(vertex.position) && std::isfinite(vertex.textureCoordinate.x) &&
           std::isfinite(vertex.textureCoordinate.y);
}

Point toPoint(const Vector3<float>& v)
{
    return {v.x, v.y, v.z};
}

SolidPlane toSolidPlane(const Plane<float>& plane)
{
    return {toPoint(plane.normal), plane.distance};
}

/// Null when all is well.
const char* findPlaneProblem(const Plane<float>& plane)
{
    if (!isFinite(plane)) return "has a plane with a value that is no number";
    if (std::fabs(length(toPoint(plane.normal)) - 1) > normalTolerance) return "has a normal whose length is not 1";
    return nullptr;
}

const char* findBrushProblem(const Brush& brush)
{
    std::vector<SolidPlane> planes;
    for (const Plane<float>& plane : brush.planes) {
        if (const char* const problem = findPlaneProblem(plane)) return problem;
        planes.push_back(toSolidPlane(plane));
    }
    if (planes.size() > mostPlanes) return "has more than 4096 planes, which are not looked at";
    const ConvexSolid solid(planes);
    if (planes.empty() || !solid.isBounded()) return "is open";
    if (solid.isEmpty()) return "is empty";
    return nullptr;
}

/// How far positions of this size may be off, as floats get coarser away from the origin.
double findTolerance(const Polygon& polygon)
{
    double largest = 0;
    for (const Vertex& vertex : polygon.vertices)
        for (const float value : {vertex.position.x, vertex.position.y, vertex.position.z})
            largest = std::max(largest, std::fabs(static_cast<double>(value)));
    return tolerance + 4 * largest * std::numeric_limits<float>::epsilon();
}

/// Its length is twice the area.
Point calculateAreaVector(const Loop& loop)
{
    Point sum;
    for (std::size_t i = 2; i < loop.size(); ++i) sum += cross(loop[i - 1] - loop[0], loop[i] - loop[0]);
    return sum;
}

/// Whether the corners turn one way, and once around.
bool isConvex(const Loop& loop, const Point& normal, double allowance)
{
    double turned = 0;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const Point& corner = loop[(i + 1) % loop.size()];
        const Point before = corner - loop[i];
        const Point after = loop[(i + 2) % loop.size()] - corner;
        const double turn = dot(cross(before, after), normal);
        if (turn < -allowance * std::max(length(before), length(after))) return false;
        turned += std::atan2(turn, dot(before, after));
    }
    return std::fabs(turned - fullTurn) < fullTurn / 2;
}

const char* findShapeProblem(const Polygon& polygon)
{
    if (polygon.vertices.size() < 3) return "has less than 3 vertices";
    if (!std::all_of(polygon.vertices.begin(), polygon.vertices.end(),
                     [](const Vertex& vertex) { return isFinite(vertex); }))
        return "has a value that is no number";
    Loop loop;
    for (const Vertex& vertex : polygon.vertices) loop.push_back(toPoint(vertex.position));
    const Point normal = normalize(calculateAreaVector(loop));
    if (normal == Point()) return "has no area";
    const double allowance = findTolerance(polygon);
    const SolidPlane plane = {normal, dot(normal, loop[0])};
    if (std::any_of(loop.begin(), loop.end(),
                    [&](const Point& point) { return std::fabs(plane.signedDistance(point)) > allowance; }))
        return "is not flat";
    return isConvex(loop, normal, allowance) ? nullptr : "is not convex";
}

bool isInRegion(const Polygon& polygon, const std::vector<TreeStep>& way)
{
    const double allowance = findTolerance(polygon);
    return std::all_of(way.begin(), way.end(), [&](const TreeStep& step) {
        const SolidPlane plane = toSolidPlane(step.node->plane);
        return std::all_of(polygon.vertices.begin(), polygon.vertices.end(), [&](const Vertex& vertex) {
            const double distance = plane.signedDistance(toPoint(vertex.position));
            return step.isBehind ? distance <= allowance : distance >= -allowance;
        });
    });
}

class MeshCheck {
public:
    MeshCheck(std::string name, MapProblems& problems) : name(std::move(name)), problems(problems) {}

    void check(const BSPMesh& mesh);

private:
    void checkPlanes(const BSPNode* root);
    void checkLeaf(const BSPNodeContentLeaf& leaf, const std::vector<TreeStep>& way);
    void checkPolygon(const Polygon& polygon, const std::vector<TreeStep>& way, std::size_t number);
    void fail(const std::string& what, const char* problem) { problems.add(name + what + ": " + problem); }

    std::string name;
    MapProblems& problems;
    std::unordered_set<const Brush*> knownBrushes;
    std::uint64_t leaves = 0;
    std::uint64_t comparisons = 0;
};

void MeshCheck::check(const BSPMesh& mesh)
{
    if (!isFinite(mesh.getOrigin())) fail("", "the origin has a value that is no number");
    checkPlanes(mesh.getBSP()->getRoot());
    walkLeaves(mesh.getBSP()->getRoot(),
               [this](const BSPNodeContentLeaf& leaf, const std::vector<TreeStep>& way) { checkLeaf(leaf, way); });
    if (comparisons > mostComparisons)
        fail("", "the tree is too deep to compare all polygons with the planes around their leaves");
}

void MeshCheck::checkPlanes(const BSPNode* root)
{
    std::uint64_t number = 0;
    std::vector<const BSPNode*> pending = {root};
    while (!pending.empty()) {
        const BSPNode* const node = pending.back();
        pending.pop_back();
        if (node == nullptr || node->isLeaf()) continue;
        ++number;
        if (const char* const problem = findPlaneProblem(node->getNode()->plane))
            fail(", node " + std::to_string(number), problem);
        pending.push_back(node->getNode()->back);
        pending.push_back(node->getNode()->front);
    }
}

void MeshCheck::checkLeaf(const BSPNodeContentLeaf& leaf, const std::vector<TreeStep>& way)
{
    ++leaves;
    for (const Brush* brush : leaf.brushes) {
        if (!knownBrushes.insert(brush).second) continue;
        if (const char* const problem = findBrushProblem(*brush))
            fail(", brush " + std::to_string(knownBrushes.size()), problem);
    }
    for (std::size_t i = 0; i < leaf.polygons.size(); ++i) checkPolygon(*leaf.polygons[i], way, i + 1);
}

void MeshCheck::checkPolygon(const Polygon& polygon, const std::vector<TreeStep>& way, std::size_t number)
{
    const char* problem = findShapeProblem(polygon);
    if (problem == nullptr) {
        comparisons += way.size() * polygon.vertices.size();
        if (comparisons <= mostComparisons && !isInRegion(polygon, way)) problem = "reaches out of its leaf";
    }
    if (problem != nullptr) fail(", leaf " + std::to_string(leaves) + ", polygon " + std::to_string(number), problem);
}

/// The list of numbers in a text; what is no number ends it.
std::vector<int> readList(const std::string& text)
{
    std::vector<int> numbers;
    const char* next = text.data();
    const char* const end = next + text.size();
    for (int number = 0;; numbers.push_back(number)) {
        next = std::find_if_not(next, end, [](char c) { return c == ' '; });
        const auto [stop, problem] = std::from_chars(next, end, number);
        if (problem != std::errc()) return numbers;
        next = stop;
    }
}

std::size_t countTextures(const ConfigSection& root)
{
    std::size_t count = 0;
    for (const ConfigSection* section : root.getAllSections()) {
        if (section->getName() != "textures") continue;
        std::list<const ConfigEntry*> entries;
        section->getEntries(entries);
        count += entries.size();
    }
    return count;
}

std::unique_ptr<ConfigSection> readSecondText(const CompiledMap& map)
{
    try {
        return map.getSecond().empty() ? nullptr : ConfigReader(map.getSecond()).read();
    } catch (const ConfigSyntaxError&) {
        return nullptr;
    }
}

} // namespace

void MapProblems::add(const std::string& problem)
{
    if (lines.size() < mostLines)
        lines.push_back(problem);
    else
        ++leftOut;
}

std::vector<std::string> MapProblems::getLines() const
{
    std::vector<std::string> all = lines;
    if (leftOut != 0) all.push_back("and " + std::to_string(leftOut) + " more problems");
    return all;
}

void checkMesh(const BSPMesh& mesh, const std::string& name, MapProblems& problems)
{
    MeshCheck(name, problems).check(mesh);
}

void checkTextureLists(const CompiledMap& map, MapProblems& problems)
{
    const std::unique_ptr<ConfigSection> root = readSecondText(map);
    if (root == nullptr) return;
    const std::size_t textures = countTextures(*root);
    const BSPMesh* mesh = map.getBSPMeshes().getFirst();
    std::uint64_t lists = 0;
    for (const ConfigSection* section : root->getAllSections()) {
        const ConfigEntry* const list = section->getName() == "mesh" ? section->getEntry("polygons", false) : nullptr;
        if (list == nullptr) continue;
        ++lists;
        if (mesh == nullptr) continue;
        const std::vector<int> numbers = readList(list->getValue());
        const std::uint64_t polygons = findFacts(*mesh).polygons;
        const std::string where = "the second text, mesh " + std::to_string(lists) + ": ";
        if (numbers.size() != polygons)
            problems.add(where + "textures of " + std::to_string(numbers.size()) + " polygons; there are " +
                         std::to_string(polygons));
        if (std::any_of(numbers.begin(), numbers.end(),
                        [&](int number) { return number < 0 || static_cast<std::size_t>(number) >= textures; }))
            problems.add(where + "a texture number that is not listed");
        mesh = mesh->getNext();
    }
    if (lists != 0 && lists != map.getBSPMeshes().getCount())
        problems.add("the second text: textures of " + std::to_string(lists) + " meshes; there are " +
                     std::to_string(map.getBSPMeshes().getCount()));
}
