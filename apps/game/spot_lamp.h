#pragma once

#include "owned.h"
#include "view_volume.h"
#include "viewpoint.h"

#include <xum/render/light.h>

#include <cstddef>
#include <functional>

/// A lamp that circles above the courtyard and shines down into it, and the map of what stands in its light.
class SpotLamp {
public:
    static constexpr int mapSize = 1024; // pixels

    /// At time 0. Keeps the reference. Throws Failure when memory runs out. Leaves the map's target bound.
    explicit SpotLamp(RenderDevice& device);

    /// To where it is after so many seconds.
    void setTime(float seconds);

    /// To any place, shining towards a point elsewhere.
    void shine(const Vector3<float>& from, const Vector3<float>& towards);

    /// What the lamp can light: nothing else throws a shadow that is seen.
    ViewVolume getVolume() const;

    /// Clears the map and calls drawScene with the lamp's projection while the map's target is bound. Leaves it bound.
    void drawMap(const std::function<void(const Matrix4<float>&)>& drawScene);

    /// Sets what solid.frag wants to know of its lamp with that number, the map included, which is bound to a texture
    /// unit.
    void setUniforms(std::size_t number, int unit);

    /// The same for a lamp that is off.
    static void setDarkUniforms(RenderDevice& device, std::size_t number, int unit);

    /// Whether a point lies in the cone and not too far away; what is in between is not asked.
    bool reaches(const Vector3<float>& point) const;

    const SpotLight& getLight() const { return light; }

private:
    RenderDevice& device;
    SpotLight light;
    Viewpoint viewpoint; ///< the light's place and direction
    OwnedTarget target;
};
