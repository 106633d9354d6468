#pragma once

#include "occlusion_map.h"
#include "scene.h"

#include <vector>

/// The large flat sides of a scene: those of boxes and of the level's brushes.
class Occluders {
public:
    explicit Occluders(const Scene& scene);

    /// Adds all to a map. The level's are left out while a box of this half size around the viewpoint touches its
    /// solids: the sides inside of them, which nobody draws, could be seen from there.
    void addTo(OcclusionMap& map, const Vector3<float>& eye, float reach) const;

    std::size_t count() const { return sidesOfThings.size() + sidesOfLevel.size(); }

private:
    std::vector<Polygon> sidesOfThings;
    std::vector<Polygon> sidesOfLevel;
    std::shared_ptr<const Level> level;
};
