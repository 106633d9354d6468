#pragma once

#include <map_edits.h>

/// Documents for the tests of the editor.

inline MapDocument documentWithBox(const Bounds& box)
{
    MapDocument document = makeEmptyDocument();
    addBox(document, box, "brick.png", 0.5);
    return document;
}

/// From (0, 0, 0) to (1, 1, 1).
inline MapDocument documentWithUnitBox()
{
    return documentWithBox({{0, 0, 0}, {1, 1, 1}});
}

/// A wedge that is no box: the half of the unit box below x + z = 1.
inline BrushSource makeWedge()
{
    BrushSource wedge;
    const double slope = 0.7071067811865476;
    wedge.sides = {{{slope, 0, slope}, slope, "brick.png"},
                   {{-1, 0, 0}, 0, "brick.png"},
                   {{0, 0, -1}, 0, "brick.png"},
                   {{0, -1, 0}, 0, "brick.png"},
                   {{0, 1, 0}, 1, "brick.png"}};
    return wedge;
}

inline void addBrush(MapDocument& document, const BrushSource& brush, std::size_t mesh = 0)
{
    document.brushes.push_back(std::make_shared<const PlacedBrush>(PlacedBrush{brush, mesh}));
}

/// 4 by 4 cells of 1 unit, flat at height 0, from (-2, -2) to (2, 2).
inline MapDocument documentWithLand()
{
    MapDocument document = makeEmptyDocument();
    setFlatTerrain(document, 2, 2, 1, "grass.jpg");
    return document;
}

/// Shown when an expectation about corners fails.
inline std::vector<double> numbersOf(const Bounds& box)
{
    return {box.minimum.x, box.minimum.y, box.minimum.z, box.maximum.x, box.maximum.y, box.maximum.z};
}

inline std::vector<double> boundsOf(const MapDocument& document, std::size_t brush)
{
    return numbersOf(getBounds(document, *document.brushes.at(brush)));
}
