#pragma once

#include "map_document.h"

enum class TerrainChange : int { Raise, Lower, Smooth, Flatten };

/// A round brush that shapes land: full strength in its middle, none at its edge.
struct TerrainBrush {
    TerrainChange change = TerrainChange::Raise;
    double radius = 6;   ///< world units
    double strength = 2; ///< units a second in the middle; smoothing and flattening go three times that part of the way
};

/// Changes the first terrain around a point of the world for some time. Flattening goes towards the point's height.
/// False when there is no terrain within reach.
bool shapeTerrain(MapDocument& document, const TerrainBrush& brush, const Vector3<double>& at, double seconds);

/// Of the first terrain above or below a point; nullopt outside of it.
std::optional<double> findHeight(const MapDocument& document, double x, double y);
