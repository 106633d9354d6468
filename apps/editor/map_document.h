#pragma once

#include "map_source.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// A brush with the mesh that it belongs to. Its planes count from the mesh's origin.
struct PlacedBrush {
    BrushSource brush;
    std::size_t mesh = 0;
};

/// A map that is being edited. Its parts never change: an edit puts a new part in place of the old one, so that a copy
/// of a document costs little and shows what the document was.
struct MapDocument {
    std::string title;
    std::vector<Vector3<float>> meshOrigins; ///< at least one
    std::vector<std::shared_ptr<const PlacedBrush>> brushes;
    std::vector<std::shared_ptr<const EntitySource>> entities;
    std::vector<std::shared_ptr<const TerrainSource>> terrains;

    /// Where the brushes of a mesh count from.
    Vector3<double> getOrigin(std::size_t mesh) const;

    /// Where entities count from: the first mesh's origin.
    Vector3<double> getEntityOrigin() const { return getOrigin(0); }
};

/// With one mesh at the origin.
MapDocument makeEmptyDocument();

MapDocument toDocument(MapSource source);

/// Meshes without brushes are left out. Brushes have their numbers as names.
MapSource toSource(const MapDocument& document);

/// Whether both have the same parts, not only equal ones.
bool isSameState(const MapDocument& a, const MapDocument& b);

/// The value of an entity's entry; empty when there is none.
std::string getEntry(const EntitySource& entity, const std::string& name);

/// "1 2.5 -3" and back; nullopt when the text is not three numbers.
std::string formatPosition(const Vector3<double>& position);
std::optional<Vector3<double>> readPosition(const std::string& text);
