#include "map_source.h"

#include <xum/files/config_section.h>

#include <charconv>
#include <initializer_list>

namespace {

/// The shortest text that is read back as the same number.
template <class Number>
void append(std::string& text, Number number)
{
    char digits[32];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    if (!text.empty()) text += ' ';
    text.append(digits, end.ptr);
}

template <class Number>
std::string format(std::initializer_list<Number> numbers)
{
    std::string text;
    for (const Number number : numbers) append(text, number);
    return text;
}

template <class Number>
std::string format(const Vector3<Number>& v)
{
    return format({v.x, v.y, v.z});
}

void add(ConfigSection& section, const std::string& name, const std::string& value)
{
    auto* const entry = new ConfigEntry(name);
    entry->setValue(value);
    section.addEntry(entry);
}

ConfigSection& addSection(ConfigSection& section, const char* name)
{
    auto* const child = new ConfigSection(name);
    section.addSection(child);
    return *child;
}

const std::string& nameOf(const std::string& texture)
{
    static const std::string none = "none";
    return texture.empty() ? none : texture;
}

/// The one that most sides have.
std::string findCommonTexture(const BrushSource& brush)
{
    std::size_t most = 0;
    std::string common;
    for (const SideSource& candidate : brush.sides) {
        std::size_t count = 0;
        for (const SideSource& side : brush.sides) count += side.texture == candidate.texture ? 1U : 0U;
        if (count > most) common = candidate.texture;
        most = count > most ? count : most;
    }
    return common;
}

void addBrush(ConfigSection& mesh, const BrushSource& brush)
{
    ConfigSection& section = addSection(mesh, "brush");
    const std::string common = findCommonTexture(brush);
    const auto box = asBox(brush);
    if (box) {
        const auto& [minimum, maximum] = *box;
        add(section, "box", format(minimum) + " " + format(maximum));
    }
    if (!common.empty()) add(section, "texture", common);
    for (std::size_t i = 0; i < brush.sides.size(); ++i) {
        const SideSource& side = brush.sides[i];
        if (box) {
            if (side.texture != common) add(section, boxSides[i].name, nameOf(side.texture));
            continue;
        }
        ConfigSection& plane = addSection(section, "plane");
        add(plane, "normal", format(side.normal));
        add(plane, "distance", format({side.distance}));
        if (side.texture != common) add(plane, "texture", nameOf(side.texture));
    }
    if (brush.scale != 1) add(section, "scale", format({brush.scale}));
    if (brush.kind != 0) add(section, "kind", std::to_string(brush.kind));
    if (!brush.isSolid) add(section, "solid", "no");
}

} // namespace

std::optional<std::pair<Vector3<double>, Vector3<double>>> asBox(const BrushSource& brush)
{
    if (brush.sides.size() != boxSides.size()) return std::nullopt;
    for (std::size_t i = 0; i < boxSides.size(); ++i)
        if (brush.sides[i].normal != boxSides[i].normal) return std::nullopt;
    const auto distance = [&](std::size_t side) { return brush.sides[side].distance; };
    const Vector3<double> minimum = {0.0 - distance(0), 0.0 - distance(2), 0.0 - distance(4)};
    const Vector3<double> maximum = {distance(1), distance(3), distance(5)};
    return std::make_pair(minimum, maximum);
}

std::unique_ptr<ConfigSection> makeTerrainSection(const TerrainSource& terrain)
{
    auto section = std::make_unique<ConfigSection>("terrain");
    add(*section, "size", format({terrain.width, terrain.height}));
    add(*section, "spacing", format({terrain.spacing}));
    add(*section, "origin", format(terrain.origin));
    if (!terrain.texture.empty()) add(*section, "texture", terrain.texture);
    if (terrain.scale != 1) add(*section, "scale", format({terrain.scale}));
    std::string heights;
    for (const float height : terrain.heights) append(heights, height);
    add(*section, "heights", heights);
    return section;
}

std::unique_ptr<ConfigSection> makeMapSection(const MapSource& source)
{
    auto map = std::make_unique<ConfigSection>("map");
    if (!source.title.empty()) add(*map, "title", source.title);
    for (const TerrainSource& terrain : source.terrains) map->addSection(makeTerrainSection(terrain).release());
    for (const EntitySource& entity : source.entities) {
        ConfigSection& section = addSection(*map, "entity");
        for (const auto& [name, value] : entity) add(section, name, value);
    }
    for (const MeshSource& mesh : source.meshes) {
        ConfigSection& section = addSection(*map, "mesh");
        if (mesh.origin != Vector3<float>()) add(section, "origin", format(mesh.origin));
        for (const BrushSource& brush : mesh.brushes) addBrush(section, brush);
    }
    return map;
}
