#pragma once

#include "scene.h"

#include <xum/geometry/box.h>
#include <xum/geometry/plane.h>

#include <memory>
#include <vector>

struct Brush;
class Terrain;

/// What stops something that moves, here an upright box.
struct Contact {
    float part = 1;        ///< how much of the way it goes, 0 to 1
    Vector3<float> normal; ///< of the side that is in the way; zero: nothing is
    bool isHit() const { return part < 1 || dot(normal, normal) > 0; }
};

/// What nobody walks through: the things of a scene, the solid brushes of its level, and its land. Kept as convex
/// solids; a round thing counts as a solid with flat sides around it.
class Obstacles {
public:
    /// Keeps the scene's level and land alive, but copies the things.
    explicit Obstacles(const Scene& scene);

    /// Moves a box of half this size from a centre by a way. Sides are kept at a small distance. A box that is inside
    /// of something already can only leave it.
    Contact move(const Vector3<float>& centre, const Vector3<float>& halfSize, const Vector3<float>& way) const;

    /// How far along x and y one gets from the middle of the world.
    float getReach() const { return reach; }

    /// Whether a point lies in something, the land excepted.
    bool isSolid(const Vector3<float>& point) const;

    /// The height of the land; far below everything where there is none, and beyond its rim.
    float getGroundHeight(float x, float y) const;

private:
    struct Convex {
        std::vector<Plane<float>> planes; ///< facing outwards
        Box bounds;
    };

    static Convex makeConvex(const Thing& thing);

    std::vector<Convex> things;
    float reach;
    std::shared_ptr<const Level> level;
    std::shared_ptr<const Terrain> land;
};
