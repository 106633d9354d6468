#pragma once

#include "map_document.h"

// Changes of a document. False: there is no such part, or the change is not possible; then nothing has changed. Numbers
// count from 0. Coordinates are the world's.

/// False for a title that a map file cannot hold.
bool setTitle(MapDocument& document, const std::string& title);

/// The corners of a box, and of what encloses any other brush.
struct Bounds {
    Vector3<double> minimum;
    Vector3<double> maximum;
};

constexpr double smallestBrush = 0.01;    ///< length of a side
constexpr double largestCoordinate = 1e6; ///< as in map files

/// All six sides with one texture (empty: none). False for a box that is too small or too far away.
bool addBox(MapDocument& document, const Bounds& box, const std::string& texture, double scale);

bool removeBrush(MapDocument& document, std::size_t number);
bool moveBrush(MapDocument& document, std::size_t number, const Vector3<double>& by);

/// Of boxes only; textures stay. False when the brush is no box and when the new one is too small.
bool resizeBrush(MapDocument& document, std::size_t number, const Bounds& box);

/// A copy of it, moved. The new one is the last.
bool duplicateBrush(MapDocument& document, std::size_t number, const Vector3<double>& by);

bool setTexture(MapDocument& document, std::size_t brush, const std::string& texture);
bool setSideTexture(MapDocument& document, std::size_t brush, std::size_t side, const std::string& texture);
bool setTextureScale(MapDocument& document, std::size_t brush, double scale);
bool setSolid(MapDocument& document, std::size_t brush, bool isSolid);

/// In the world; empty for a brush that has no room inside.
Bounds getBounds(const MapDocument& document, const PlacedBrush& placed);

/// False for a class that a map file cannot hold and for a place that is too far away.
bool addEntity(MapDocument& document, const std::string& className, const Vector3<double>& position);
bool removeEntity(MapDocument& document, std::size_t number);
bool moveEntity(MapDocument& document, std::size_t number, const Vector3<double>& by);

/// False for a name or a value that a map file cannot hold. An empty value removes the entry, but never the class.
bool setEntityEntry(MapDocument& document, std::size_t number, const std::string& name, const std::string& value);

/// Where it stands in the world; the origin of entities without a good position.
Vector3<double> getPosition(const MapDocument& document, const EntitySource& entity);

/// Flat, around the origin, in place of the first terrain if there is one. Sizes are brought within 1 to 256 cells,
/// the spacing within 1 to 1000. False for a texture that a map file cannot hold.
bool setFlatTerrain(MapDocument& document, int width, int height, int spacing, const std::string& texture);

/// Quotes and brackets would not come back from a file.
bool isStorable(const std::string& text);

/// The multiple of the grid nearest to a coordinate, the upper one of two; the coordinate itself for a grid of 0.
double snap(double coordinate, double grid);
Vector3<double> snap(const Vector3<double>& point, double grid);
