#pragma once

/// @file
/// Rectangles of two triangles. The create functions append six vertices to what the vectors hold already.

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <vector>

class RenderDevice;

/// A rectangle in the plane y = 0, where the point (a, b) of the plane is (a, 0, b): from `origin` to origin + size.
/// With positive sizes its front looks along +y.
XUM_API void createQuadPositions(std::vector<Vector3<float>>& positions, const Vector2<float>& origin,
                                 const Vector2<float>& size);

/// For the corners of createQuadPositions, from (0, 0) at the origin to (1, 1) opposite. A flipped coordinate runs from
/// 1 to 0.
XUM_API void createQuadTextureCoordinates(std::vector<Vector2<float>>& coordinates, bool flipU, bool flipV);

/// One colour for all corners.
XUM_API void createQuadColors(std::vector<Vector4<float>>& colors, const Vector4<float>& color);

/// createQuadPositions, createQuadTextureCoordinates and createQuadColors in one.
XUM_API void createQuadVertexes(std::vector<Vector3<float>>& positions, std::vector<Vector2<float>>& coordinates,
                                std::vector<Vector4<float>>& colors, const Vector2<float>& origin,
                                const Vector2<float>& size, const Vector4<float>& color, bool flipU, bool flipV);

/// Draws a rectangle in the plane z = 0, with (x, y) as its lower left corner where y goes up, through a buffer of its
/// own. It fills the position attribute alone; program, textures and state stay as they are, so a depth test compares
/// with the depth of z = 0. Does nothing on a device that makes no buffers.
XUM_API void drawQuad(RenderDevice* device, float x, float y, float width, float height);

/// drawQuad for the rectangle from -1 to 1: the whole viewport for a program that passes positions on as they are.
XUM_API void drawFullscreenQuad(RenderDevice* device);
