#pragma once

#include <xum/geometry/brush.h>
#include <xum/geometry/polygon.h>

#include <deque>
#include <memory>
#include <utility>

/// Owns the brushes and polygons of a tree that the library made. They never move.
class BSPPool {
public:
    Brush& add(Brush brush) { return getMade(brushes).emplace_back(std::move(brush)); }
    Polygon& add(Polygon polygon) { return getMade(polygons).emplace_back(std::move(polygon)); }

private:
    /// A deque takes memory even when it is empty, and a map may have many trees with nothing in them.
    template <class Item>
    static std::deque<Item>& getMade(std::unique_ptr<std::deque<Item>>& items)
    {
        if (!items) items = std::make_unique<std::deque<Item>>();
        return *items;
    }

    std::unique_ptr<std::deque<Brush>> brushes;
    std::unique_ptr<std::deque<Polygon>> polygons;
};
