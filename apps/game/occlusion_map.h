#pragma once

#include "viewpoint.h"

#include <xum/geometry/box.h>
#include <xum/geometry/depth_buffer.h>
#include <xum/geometry/polygon.h>

#include <utility>
#include <vector>

/// A coarse picture of how far away large solids are, by which what they hide is found. It errs on the safe side: a
/// solid only covers pixels that it fills, at the depth of its farthest point there.
class OcclusionMap {
public:
    static constexpr int width = 160;
    static constexpr int height = 90;

    /// Empty, of what is seen from a viewpoint.
    void begin(const Viewpoint& viewpoint, const Vector2<float>& viewExtents, float nearDistance);

    /// A convex polygon hides what is behind it, if it faces the viewpoint: seen from there it goes counter-clockwise.
    void addOccluder(const Polygon& polygon);

    /// Whether a box is hidden wherever it would be seen.
    bool isHidden(const Box& box) const;

    /// 1 / distance along the view at a pixel, counted from the bottom left; 0 where nothing hides anything.
    float getDepth(int x, int y) const { return depths[indexOf(x, y)]; }

    /// As 8-bit RGBA, bottom row first: the nearer the brighter.
    std::vector<unsigned char> makePicture() const;

private:
    static constexpr std::size_t indexOf(int x, int y)
    {
        return static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x);
    }

    struct Projected {
        double x;
        double y;
        double depth;
    };

    /// From a corner of an occluder to the next, in pixels. Those on its left by its reach are filled.
    struct Side {
        double x;
        double y;
        double across;
        double along;
        double reach;
    };

    /// To pixels; only for what lies in front of the viewpoint.
    Projected project(const Vector3<float>& point) const;
    float distanceAhead(const Vector3<float>& point) const { return dot(forward, point - eye); }
    void fill();
    std::pair<int, int> findFilled(double middleY, int x0, int x1) const;

    Vector3<float> eye, right, up, forward;
    Vector2<float> extents = {1, 1};
    float nearDistance = 0;
    Software::DepthBuffer buffer = Software::DepthBuffer(width, height, 16, 16);
    std::vector<Projected> corners; ///< of the occluder that is added just now, as its sides
    std::vector<Side> sides;
    std::vector<float> depths = std::vector<float>(width * height); ///< what the buffer holds: it only compares
};
