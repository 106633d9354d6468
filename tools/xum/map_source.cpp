#include "map_source.h"

#include <xum/files/config_section.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr double largestCoordinate = 1e6; // beyond it floats are too coarse for a world
constexpr char noTexture[] = "none";
constexpr int largestTerrain = 256;
constexpr double smallestDirection = 1e-6; // length of a normal that tells a direction

[[noreturn]] void fail(const std::string& where, const std::string& problem)
{
    throw MapProblem(where + ": " + problem);
}

/// All numbers of a value, which are as many as expected.
template <std::size_t count>
std::array<double, count> readNumbers(const std::string& where, const ConfigEntry& entry)
{
    std::array<double, count> numbers = {};
    const char* next = entry.getValue().data();
    const char* const end = next + entry.getValue().size();
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    const auto skipBlanks = [&] { next = std::find_if_not(next, end, isBlank); };
    const std::string name = "<" + entry.getName() + ">";
    for (double& number : numbers) {
        skipBlanks();
        const auto [stop, problem] = std::from_chars(next, end, number);
        const bool isNumber = problem == std::errc() && (stop == end || isBlank(*stop));
        if (!isNumber || !(std::fabs(number) <= largestCoordinate))
            fail(where, name + (count == 1 ? " needs a number" : " needs " + std::to_string(count) + " numbers") +
                            " from -1000000 to 1000000");
        next = stop;
    }
    skipBlanks();
    if (next != end)
        fail(where, name + " has more than " + std::to_string(count) + (count == 1 ? " number" : " numbers"));
    return numbers;
}

Vector3<double> readVector(const std::string& where, const ConfigEntry& entry)
{
    const auto [x, y, z] = readNumbers<3>(where, entry);
    return {x, y, z};
}

bool readSwitch(const std::string& where, const ConfigEntry& entry)
{
    if (entry.getValue() == "yes") return true;
    if (entry.getValue() != "no") fail(where, "<" + entry.getName() + "> is yes or no");
    return false;
}

/// Quotes inside a value would not come back from the map's text as they were.
void refuseQuotes(const std::string& where, const ConfigEntry& entry)
{
    if (entry.getValue().find('"') != std::string::npos) fail(where, "<" + entry.getName() + "> has a quote inside");
}

/// Empty for a side that is not drawn.
std::string readTexture(const std::string& where, const ConfigEntry& entry)
{
    refuseQuotes(where, entry);
    return entry.getValue() == noTexture ? "" : entry.getValue();
}

std::list<const ConfigEntry*> entriesOf(const ConfigSection& section)
{
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    return entries;
}

[[noreturn]] void failForUnknown(const std::string& where, const std::string& name)
{
    fail(where, "<" + name + "> is not known here");
}

void addBox(const std::string& where, BrushSource& brush, const ConfigEntry& entry)
{
    const auto n = readNumbers<6>(where, entry);
    if (!(n[0] < n[3] && n[1] < n[4] && n[2] < n[5]))
        fail(where, "<box> needs its lower corner first, then its upper one");
    const Vector3<double> minimum = {n[0], n[1], n[2]};
    const Vector3<double> maximum = {n[3], n[4], n[5]};
    for (const BoxSide& side : boxSides) {
        const bool isUpper = side.normal.x + side.normal.y + side.normal.z > 0;
        brush.sides.push_back({side.normal, dot(side.normal, isUpper ? maximum : minimum), ""});
    }
}

void addPlane(const std::string& where, BrushSource& brush, const ConfigSection& section, const std::string& texture)
{
    if (!section.getAllSections().empty()) failForUnknown(where, section.getAllSections().front()->getName());
    const ConfigEntry* const normal = section.getEntry("normal", false);
    const ConfigEntry* const distance = section.getEntry("distance", false);
    if (normal == nullptr || distance == nullptr) fail(where, "<plane> needs <normal> and <distance>");
    SideSource side = {readVector(where, *normal), readNumbers<1>(where, *distance)[0], texture};
    const double size = length(side.normal);
    if (!(size > smallestDirection)) fail(where, "a <normal> has no direction");
    if (std::fabs(size - 1) > 1e-14) { // or what was read, written and read again would wander
        side.normal /= size;
        side.distance /= size;
    }
    for (const ConfigEntry* entry : entriesOf(section)) {
        if (entry->getName() == "texture")
            side.texture = readTexture(where, *entry);
        else if (entry != normal && entry != distance)
            failForUnknown(where, entry->getName());
    }
    brush.sides.push_back(side);
}

void setBoxTextures(const std::string& where, BrushSource& brush, const ConfigSection& section,
                    const std::string& texture)
{
    for (std::size_t i = 0; i < boxSides.size(); ++i) {
        const ConfigEntry* const own = section.getEntry(boxSides[i].name, false);
        brush.sides[i].texture = own != nullptr ? readTexture(where, *own) : texture;
    }
}

BrushSource readBrush(const ConfigSection& section, const std::string& name)
{
    BrushSource brush;
    brush.name = name;
    const ConfigEntry* const box = section.getEntry("box", false);
    const ConfigEntry* const texture = section.getEntry("texture", false);
    const std::string commonTexture = texture != nullptr ? readTexture(name, *texture) : "";
    if (box != nullptr) addBox(name, brush, *box);
    for (const ConfigSection* child : section.getAllSections()) {
        if (child->getName() != "plane") failForUnknown(name, child->getName());
        if (box != nullptr) fail(name, "has both <box> and <plane>");
        addPlane(name, brush, *child, commonTexture);
    }
    if (brush.sides.size() < 4) fail(name, "needs a <box> or at least four <plane> sections");
    if (box != nullptr) setBoxTextures(name, brush, section, commonTexture);

    for (const ConfigEntry* entry : entriesOf(section)) {
        const std::string& entryName = entry->getName();
        const bool isSide =
            std::any_of(boxSides.begin(), boxSides.end(), [&](const BoxSide& side) { return entryName == side.name; });
        if (entryName == "kind") {
            const double kind = readNumbers<1>(name, *entry)[0];
            if (kind != std::floor(kind) || kind < 0 || kind > 255)
                fail(name, "<kind> is a whole number from 0 to 255");
            brush.kind = static_cast<unsigned char>(kind);
        } else if (entryName == "scale") {
            brush.scale = readNumbers<1>(name, *entry)[0];
            if (brush.scale == 0) fail(name, "<scale> is not 0");
        } else if (entryName == "solid") {
            brush.isSolid = readSwitch(name, *entry);
        } else if (entry != box && entry != texture && !(isSide && box != nullptr)) {
            failForUnknown(name, entryName);
        }
    }
    return brush;
}

MeshSource readMesh(const ConfigSection& section, const std::string& name)
{
    MeshSource mesh;
    for (const ConfigEntry* entry : entriesOf(section)) {
        if (entry->getName() != "origin") failForUnknown(name, entry->getName());
        const Vector3<double> origin = readVector(name, *entry);
        mesh.origin = {static_cast<float>(origin.x), static_cast<float>(origin.y), static_cast<float>(origin.z)};
    }
    for (const ConfigSection* child : section.getAllSections()) {
        if (child->getName() != "brush") failForUnknown(name, child->getName());
        mesh.brushes.push_back(readBrush(*child, name + ", brush " + std::to_string(mesh.brushes.size() + 1)));
    }
    if (mesh.brushes.empty()) fail(name, "has no <brush>");
    return mesh;
}

EntitySource readEntity(const ConfigSection& section, const std::string& name)
{
    if (!section.getAllSections().empty()) fail(name, "has a section; entities have entries only");
    EntitySource entity;
    for (const ConfigEntry* entry : entriesOf(section)) {
        refuseQuotes(name, *entry);
        entity.emplace_back(entry->getName(), entry->getValue());
    }
    if (section.getEntry("class", false) == nullptr) fail(name, "has no <class>");
    return entity;
}

std::vector<float> readHeights(const std::string& where, const ConfigEntry& entry, std::size_t count)
{
    std::vector<float> heights;
    heights.reserve(count);
    const char* next = entry.getValue().data();
    const char* const end = next + entry.getValue().size();
    while (true) {
        while (next != end && (*next == ' ' || *next == '\n' || *next == '\r' || *next == '\t')) ++next;
        if (next == end) break;
        float height = 0;
        const auto [stop, problem] = std::from_chars(next, end, height);
        if (problem != std::errc() || stop == next || !(std::fabs(height) <= largestCoordinate))
            fail(where, "<heights> needs numbers from -1000000 to 1000000");
        if (heights.size() == count) break;
        heights.push_back(height);
        next = stop;
    }
    if (heights.size() != count || next != end)
        fail(where, "<heights> needs " + std::to_string(count) + " numbers, a row after the other");
    return heights;
}

int readWholeNumber(const std::string& where, const char* name, double value, int largest)
{
    if (value != std::floor(value) || value < 1 || value > largest)
        fail(where, std::string("<") + name + "> needs whole numbers from 1 to " + std::to_string(largest));
    return static_cast<int>(value);
}

} // namespace

const std::array<BoxSide, 6> boxSides = {{{"left", {-1, 0, 0}},
                                          {"right", {1, 0, 0}},
                                          {"front", {0, -1, 0}},
                                          {"back", {0, 1, 0}},
                                          {"bottom", {0, 0, -1}},
                                          {"top", {0, 0, 1}}}};

TerrainSource readTerrain(const ConfigSection& section, const std::string& name)
{
    if (!section.getAllSections().empty()) failForUnknown(name, section.getAllSections().front()->getName());
    TerrainSource terrain;
    const ConfigEntry* const size = section.getEntry("size", false);
    const ConfigEntry* const heights = section.getEntry("heights", false);
    if (size == nullptr || heights == nullptr) fail(name, "needs <size> and <heights>");
    const auto sizes = readNumbers<2>(name, *size);
    terrain.width = readWholeNumber(name, "size", sizes[0], largestTerrain);
    terrain.height = readWholeNumber(name, "size", sizes[1], largestTerrain);
    for (const ConfigEntry* entry : entriesOf(section)) {
        const std::string& entryName = entry->getName();
        if (entryName == "spacing") {
            terrain.spacing = readWholeNumber(name, "spacing", readNumbers<1>(name, *entry)[0], 1000);
        } else if (entryName == "origin") {
            const Vector3<double> origin = readVector(name, *entry);
            terrain.origin = {static_cast<float>(origin.x), static_cast<float>(origin.y), static_cast<float>(origin.z)};
        } else if (entryName == "texture") {
            terrain.texture = readTexture(name, *entry);
        } else if (entryName == "scale") {
            terrain.scale = readNumbers<1>(name, *entry)[0];
            if (terrain.scale == 0) fail(name, "<scale> is not 0");
        } else if (entry != size && entry != heights) {
            failForUnknown(name, entryName);
        }
    }
    terrain.heights =
        readHeights(name, *heights,
                    static_cast<std::size_t>(terrain.countColumns()) * static_cast<std::size_t>(terrain.countRows()));
    return terrain;
}

MapSource readMapSource(const ConfigSection& root)
{
    MapSource map;
    for (const ConfigEntry* entry : entriesOf(root)) {
        if (entry->getName() != "title") failForUnknown("the map", entry->getName());
        map.title = entry->getValue();
    }
    for (const ConfigSection* child : root.getAllSections()) {
        if (child->getName() == "mesh")
            map.meshes.push_back(readMesh(*child, "mesh " + std::to_string(map.meshes.size() + 1)));
        else if (child->getName() == "entity")
            map.entities.push_back(readEntity(*child, "entity " + std::to_string(map.entities.size() + 1)));
        else if (child->getName() == "terrain")
            map.terrains.push_back(readTerrain(*child, "terrain " + std::to_string(map.terrains.size() + 1)));
        else
            failForUnknown("the map", child->getName());
    }
    return map;
}
