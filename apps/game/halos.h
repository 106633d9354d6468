#pragma once

#include "draw_counter.h"
#include "scene.h"
#include "viewpoint.h"

#include <vector>

class Program;
class RenderDevice;

/// Draws the glow around each thing that has a halo, over what the bound target shows; what stands in front hides it.
/// The program is that of halo.cfg.
void drawHalos(RenderDevice& device, Program* program, const Matrix4<float>& viewProjection, const Viewpoint& camera,
               const std::vector<Thing>& things, DrawCounter& draws);
