#include "map_document.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace {

Vector3<double> toDouble(const Vector3<float>& v)
{
    return {v.x, v.y, v.z};
}

template <class Part>
std::vector<std::shared_ptr<const Part>> share(std::vector<Part> parts)
{
    std::vector<std::shared_ptr<const Part>> shared;
    shared.reserve(parts.size());
    for (Part& part : parts) shared.push_back(std::make_shared<const Part>(std::move(part)));
    return shared;
}

template <class Part>
std::vector<Part> copyOf(const std::vector<std::shared_ptr<const Part>>& shared)
{
    std::vector<Part> parts;
    parts.reserve(shared.size());
    for (const auto& part : shared) parts.push_back(*part);
    return parts;
}

/// Puts entities where they were when the first mesh is another one.
void moveEntities(std::vector<EntitySource>& entities, const Vector3<double>& by)
{
    for (EntitySource& entity : entities) {
        for (auto& [name, value] : entity) {
            if (name != "position") continue;
            if (const auto position = readPosition(value)) value = formatPosition(*position + by);
        }
    }
}

} // namespace

Vector3<double> MapDocument::getOrigin(std::size_t mesh) const
{
    return mesh < meshOrigins.size() ? toDouble(meshOrigins[mesh]) : Vector3<double>();
}

MapDocument makeEmptyDocument()
{
    MapDocument document;
    document.meshOrigins.emplace_back();
    return document;
}

MapDocument toDocument(MapSource source)
{
    MapDocument document;
    document.title = std::move(source.title);
    for (MeshSource& mesh : source.meshes) {
        const std::size_t number = document.meshOrigins.size();
        document.meshOrigins.push_back(mesh.origin);
        for (BrushSource& brush : mesh.brushes)
            document.brushes.push_back(std::make_shared<const PlacedBrush>(PlacedBrush{std::move(brush), number}));
    }
    if (document.meshOrigins.empty()) document.meshOrigins.emplace_back();
    document.entities = share(std::move(source.entities));
    document.terrains = share(std::move(source.terrains));
    return document;
}

MapSource toSource(const MapDocument& document)
{
    MapSource source;
    source.title = document.title;
    source.entities = copyOf(document.entities);
    source.terrains = copyOf(document.terrains);
    for (std::size_t i = 0; i < document.meshOrigins.size(); ++i) {
        MeshSource mesh = {document.meshOrigins[i], {}};
        for (std::size_t number = 0; number < document.brushes.size(); ++number) {
            const PlacedBrush& placed = *document.brushes[number];
            if (placed.mesh != i) continue;
            mesh.brushes.push_back(placed.brush);
            mesh.brushes.back().name = "brush " + std::to_string(number);
        }
        if (!mesh.brushes.empty()) source.meshes.push_back(std::move(mesh));
    }
    const Vector3<float> first = source.meshes.empty() ? Vector3<float>() : source.meshes.front().origin;
    if (toDouble(first) != document.getEntityOrigin())
        moveEntities(source.entities, document.getEntityOrigin() - toDouble(first));
    return source;
}

bool isSameState(const MapDocument& a, const MapDocument& b)
{
    return a.title == b.title && a.meshOrigins == b.meshOrigins && a.brushes == b.brushes && a.entities == b.entities &&
           a.terrains == b.terrains;
}

std::string getEntry(const EntitySource& entity, const std::string& name)
{
    for (const auto& [entryName, value] : entity)
        if (entryName == name) return value;
    return {};
}

std::string formatPosition(const Vector3<double>& position)
{
    char text[128];
    // No more digits than a person means, and no -0.
    std::snprintf(text, sizeof text, "%.10g %.10g %.10g", position.x + 0.0, position.y + 0.0, position.z + 0.0);
    return text;
}

std::optional<Vector3<double>> readPosition(const std::string& text)
{
    Vector3<double> position;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%lf %lf %lf %c", &position.x, &position.y, &position.z, &rest) != 3)
        return std::nullopt;
    if (!std::isfinite(position.x + position.y + position.z)) return std::nullopt;
    return position;
}
