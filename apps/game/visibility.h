#pragma once

#include "occlusion_map.h"
#include "scene.h"
#include "view_volume.h"

#include <vector>

/// What of a scene is drawn in one frame.
struct Visibility {
    std::vector<bool> things; ///< as in the scene
    std::vector<bool> faces;  ///< of the level, counted through all leaves
    std::size_t drawn = 0;    ///< so many of both
    std::size_t culled = 0;   ///< and so many not, since they lie outside of the view
    std::size_t hidden = 0;   ///< or behind something

    std::size_t countAll() const { return things.size() + faces.size(); }
};

/// Everything.
Visibility seeEverything(const Scene& scene);

/// What may lie in the view: things by their boxes, the level by the boxes of its leaves, and in leaves at the edge
/// face by face.
Visibility seeWithin(const Scene& scene, const ViewVolume& view);

/// Takes away what is hidden: things and leaves by their boxes.
void hide(Visibility& visibility, const Scene& scene, const OcclusionMap& occlusion);
