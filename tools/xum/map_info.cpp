#include "map_info.h"

#include "map_check.h"
#include "map_facts.h"
#include "map_file.h"
#include "printable_text.h"
#include "report.h"

#include <xum/geometry/compiled_map.h>

#include <charconv>
#include <cstdio>

namespace {

std::string textOf(const Vector3<float>& v)
{
    std::string text;
    for (const float value : {v.x, v.y, v.z}) {
        char digits[64];
        if (!text.empty()) text += ' ';
        text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    }
    return text;
}

void print(const char* name, const std::string& value)
{
    std::printf("%s: %s\n", name, value.c_str());
}

void print(const char* name, std::uint64_t value)
{
    print(name, std::to_string(value));
}

void printMesh(const BSPMesh& mesh, std::size_t number)
{
    const MeshFacts facts = findFacts(mesh);
    std::printf("mesh %llu:\n", static_cast<unsigned long long>(number));
    print("   origin", textOf(mesh.getOrigin()));
    print("   nodes", facts.nodes);
    print("   leaves", std::to_string(facts.solidLeaves + facts.emptyLeaves) + " (" +
                           std::to_string(facts.solidLeaves) + " solid, " + std::to_string(facts.emptyLeaves) +
                           " empty)");
    print("   depth", facts.depth);
    print("   polygons", facts.polygons);
    print("   vertices", facts.vertices);
    print("   brushes", facts.brushes);
    print("   references to brushes", facts.references);
    print("   bounds", facts.vertices == 0 ? "none" : textOf(facts.minimum) + " to " + textOf(facts.maximum));
}

} // namespace

bool printMapInfo(const std::string& fileName)
{
    std::string problem;
    const std::unique_ptr<CompiledMap> map = readMapFile(fileName, problem);
    if (map == nullptr) {
        report(printable(fileName) + ": " + problem);
        return false;
    }
    print("title", printable(map->getFirst()));
    print("second text", std::to_string(map->getSecond().size()) + " bytes");
    print("meshes", map->getBSPMeshes().getCount());
    MapProblems problems;
    std::size_t number = 0;
    for (const BSPMesh* mesh = map->getBSPMeshes().getFirst(); mesh != nullptr; mesh = mesh->getNext()) {
        printMesh(*mesh, ++number);
        checkMesh(*mesh, "mesh " + std::to_string(number), problems);
    }
    checkTextureLists(*map, problems);
    const std::vector<std::string> lines = problems.getLines();
    for (const std::string& line : lines) report(printable(fileName) + ": " + line);
    return lines.empty();
}
