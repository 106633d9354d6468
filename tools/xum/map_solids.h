#pragma once

#include <xum/geometry/plane.h>
#include <xum/geometry/vector.h>

#include <cstddef>
#include <vector>

// Convex polygons and solids in double precision, for the map compiler.

/// How far from a plane a point still counts as on it, in world units.
constexpr double onPlane = 1e-4;

using Point = Vector3<double>;
using SolidPlane = Plane<double>;

/// A convex polygon as its loop of corners.
using Loop = std::vector<Point>;

enum class SideOfPlane : int { On, Front, Back, Both };

/// Where a set of points lies.
SideOfPlane classify(const Loop& loop, const SolidPlane& plane);

/// The part in front of a plane, or behind it; fewer than 3 points when there is none.
Loop clipToFront(const Loop& loop, const SolidPlane& plane);
Loop clipToBack(const Loop& loop, const SolidPlane& plane);

/// A square around the origin's foot on the plane, with half its side this long, counter-clockwise seen from the front.
Loop makeSquare(const SolidPlane& plane, double halfSide);

/// A bounded convex solid as its faces, each counter-clockwise seen from outside.
class ConvexSolid {
public:
    static constexpr std::size_t noNumber = ~std::size_t{0}; ///< of a face that a cut made

    struct Face {
        SolidPlane plane; ///< facing outwards
        Loop loop;
        std::size_t number = noNumber; ///< of its plane among those that the solid was made from
    };

    ConvexSolid() = default;

    /// What lies behind all planes. A plane that touches nothing has no face; of planes that are the same the first one
    /// has it. What is open is cut off far out: see isBounded.
    explicit ConvexSolid(const std::vector<SolidPlane>& planes);

    /// An axis-aligned box.
    ConvexSolid(const Point& minimum, const Point& maximum);

    const std::vector<Face>& getFaces() const { return faces; }

    /// Fewer than four faces hold no room. A solid thinner than twice onPlane counts as empty.
    bool isEmpty() const { return faces.size() < 4; }
    bool isBounded() const;

    /// The part in front of a plane, or behind it.
    ConvexSolid cutToFront(const SolidPlane& plane) const { return cut(plane, true); }
    ConvexSolid cutToBack(const SolidPlane& plane) const { return cut(plane, false); }

    /// Where its corners lie.
    SideOfPlane classify(const SolidPlane& plane) const;

    /// A point inside.
    Point calculateMiddle() const;

    Point calculateMinimum() const;
    Point calculateMaximum() const;

private:
    ConvexSolid cut(const SolidPlane& plane, bool keepFront) const;

    std::vector<Face> faces;
};
