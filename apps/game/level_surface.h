#pragma once

#include "level.h"
#include "solids.h"

#include <vector>

/// All faces of a level that have one texture, as a solid in world coordinates.
struct LevelSurface {
    /// The triangles of a face: so many indices.
    struct Range {
        std::size_t face; ///< counted through all leaves
        int first;
        int count;
    };

    TextureName texture;
    Solid solid;
    std::vector<Range> ranges; ///< one behind the other, in the order of the leaves
};

std::vector<LevelSurface> makeSurfaces(const Level& level);
