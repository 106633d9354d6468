#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>

#include <functional>

class RenderDevice;

/// A light that is added to a picture by a pass over the whole screen.
class XUM_API Light {
public:
    /// A light holds no resources: a copy is as good as the first.
    /// @{
    Light() = default;
    Light(const Light&) = default;
    Light& operator=(const Light&) = default;
    /// @}

    virtual ~Light() = default;

    /// Draws a rectangle over the whole screen. The caller has bound the light's program and set its uniforms.
    virtual void draw(RenderDevice* device);
};

/// A light that shines in a cone and casts shadows by a depth map.
class XUM_API SpotLight : public Light {
public:
    /// White, at the origin, and without a direction yet.
    SpotLight();

    Vector3<float> color = {1, 1, 1};    ///< red, green and blue, for the host to give to its shader
    Vector3<float> position = {0, 0, 0}; ///< in world units

    /// Where it shines to and what is up in its shadow map: of any length from 0.00001 to 10^18, and not parallel to
    /// each other.
    /// @{
    Vector3<float> direction = {0, 0, 0};
    Vector3<float> up = {0, 0, 0};
    /// @}

    /// The whole angles of the bright cone and of the one outside which there is no light, in degrees. The cosines are
    /// for shaders: who changes an angle also changes its cosine. At the start they are those of the whole angles; a
    /// shader that compares with the angle from the middle of the cone wants those of half the angles, or it lights
    /// what the shadow map does not reach.
    float innerAngle = 45;
    float innerCosine;     ///< see innerAngle
    float outerAngle = 60; ///< see innerAngle
    float outerCosine;     ///< see innerAngle

    /// From world to clip coordinates, for matrix * point: the picture of an observer at `position` who looks along
    /// `direction` with `up` as near to upwards as can be. It is as wide as the larger angle, in both directions, and
    /// reaches from 0.1 to 2000. With directions that are zero or parallel it maps nothing usefully.
    virtual Matrix4<float> calculateMatrix();

    /// calculateMatrix() * B, with B = scale by 0.5, then move by 0.5. This order is kept on purpose: B is applied to
    /// the world point, before the projection. To look up a shadow map with world points, use B * calculateMatrix(), or
    /// halve and move the projected point in the shader.
    virtual Matrix4<float> calculateShadowMatrix();

    /// Calls drawScene once with calculateMatrix(). The caller binds the map's target, clears it and chooses the
    /// program that writes depth, inside drawScene or around this call; nothing is done to the device, which may be
    /// null. Throws std::bad_function_call for an empty function.
    virtual void generateShadowMap(RenderDevice* device, std::function<void(const Matrix4<float>&)> drawScene);
};
