#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <functional>
#include <list>

class RenderDevice;
class VertexBuffer;

/// Shapes of lines for looking at a world that is being built. They hold their parameters alone and make a buffer for
/// each draw.
class XUM_API DebugObject {
public:
    /// Copies of shapes have parameters of their own.
    /// @{
    DebugObject() = default;
    DebugObject(const DebugObject&) = default;
    DebugObject& operator=(const DebugObject&) = default;
    /// @}

    virtual ~DebugObject() = default;

    /// Draws lines with the current program and state; positions are in location 0. Does nothing on a device that makes
    /// no buffers.
    virtual void draw(RenderDevice* device) = 0;

protected:
    /// Calls the action with a new static buffer that is destroyed afterwards, also when the action throws. The action
    /// is not called on a device that makes no buffers. Throws std::bad_function_call for an empty function.
    void withVertexBuffer(RenderDevice* device, std::function<void(VertexBuffer*)> action);
};

/// One straight line.
class XUM_API DebugLine : public DebugObject {
public:
    /// Between two points of the space in which the current program takes positions.
    /// @{
    DebugLine(const Vector3<float>& from, const Vector3<float>& to) : from(from), to(to) {}
    DebugLine(const DebugLine&) = default;
    DebugLine& operator=(const DebugLine&) = default;
    /// @}

    void draw(RenderDevice* device) override;

    /// The ends; a change counts from the next draw on.
    /// @{
    Vector3<float> from;
    Vector3<float> to;
    /// @}
};

/// The twelve edges of a box between two opposite corners.
class XUM_API DebugBox : public DebugObject {
public:
    /// Any two opposite corners do, in either order.
    /// @{
    DebugBox(const Vector3<float>& minimum, const Vector3<float>& maximum) : minimum(minimum), maximum(maximum) {}
    DebugBox(const DebugBox&) = default;
    DebugBox& operator=(const DebugBox&) = default;
    /// @}

    void draw(RenderDevice* device) override;

    /// Appends one segment.
    static void drawHelper(std::list<Vector3<float>>& points, const Vector3<float>& a, const Vector3<float>& b);

    /// The corners; a change counts from the next draw on.
    /// @{
    Vector3<float> minimum;
    Vector3<float> maximum;
    /// @}
};

/// Three circles around the centre, one in each coordinate plane.
class XUM_API DebugSphere : public DebugObject {
public:
    /// `segments` steps go once around a circle; one more closes it. Without a step nothing is drawn, and more than
    /// 65536 are taken as so many.
    /// @{
    DebugSphere(const Vector3<float>& center, float radius, int segments)
        : center(center), radius(radius), segments(segments)
    {}
    DebugSphere(const DebugSphere&) = default;
    DebugSphere& operator=(const DebugSphere&) = default;
    /// @}

    void draw(RenderDevice* device) override;

    /// Appends the segments of one circle. circlePoint gets the sine and the cosine of an angle and `start`, the
    /// circle's point at angle 0, and returns the point at that angle; all of them are relative to the centre.
    void drawHelper(std::list<Vector3<float>>& points, const Vector3<float>& start,
                    std::function<Vector3<float>(float, float, const Vector3<float>&)> circlePoint) const;

    /// As for the constructor; a change counts from the next draw on.
    /// @{
    Vector3<float> center;
    float radius;
    int segments;
    /// @}
};
