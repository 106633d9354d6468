#pragma once

#include "draw_counter.h"
#include "soundscape.h"
#include "visibility.h"

#include <xum/geometry/matrix.h>
#include <xum/render/debug_shapes.h>

#include <memory>
#include <vector>

class Program;
class RenderDevice;
class SpotLight;

/// Shapes that make visible what a picture only hints at, in one colour.
struct DebugShapes {
    Vector4<float> color;
    std::vector<std::unique_ptr<DebugObject>> shapes;
};

/// The boxes of the things and of the level's leaves that are drawn; spheres where sounds come from, larger for what is
/// heard farther; and a line along a light, if there is one (not null).
std::vector<DebugShapes> collectDebugShapes(const Scene& scene, const Visibility& visibility,
                                            const std::vector<SoundPlace>& sounds, const SpotLight* light);

/// Over everything that is drawn already, whatever its depth. The program is that of flat.cfg.
void drawDebugShapes(RenderDevice& device, Program* program, const Matrix4<float>& viewProjection,
                     const std::vector<DebugShapes>& groups, DrawCounter& draws);
