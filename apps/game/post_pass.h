#pragma once

#include "draw_counter.h"
#include "owned.h"

#include <xum/geometry/vector.h>

class Program;

/// Looks at a finished picture once more before it is shown: a little more contrast, darker corners, and the fade at
/// the start of a game. The picture is drawn into a target that is made anew for each size.
class PostPass {
public:
    /// The program is that of film.cfg. Keeps the reference and the pointer.
    PostPass(RenderDevice& device, Program* program) : device(device), program(program), target(nullptr, {&device}) {}

    /// Where to draw a picture of that size, with colour and depth; null when there is not enough memory, then the pass
    /// is to be left out.
    RenderTarget* getTarget(const Vector2<int>& size);

    /// Covers the bound target with the picture, which has its size. Brightness 0 is black, 1 is the picture.
    void draw(float brightness, DrawCounter& draws);

private:
    RenderDevice& device;
    Program* program;
    Vector2<int> targetSize = {0, 0};
    OwnedTarget target;
};
