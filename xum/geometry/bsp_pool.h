#pragma once

#include <xum/geometry/brush.h>
#include <xum/geometry/polygon.h>

#include <deque>

/// Owns the brushes and polygons of a tree that the library made. They never move.
struct BSPPool {
    std::deque<Brush> brushes;
    std::deque<Polygon> polygons;
};
