#pragma once

#include "layout.h"
#include "picking.h"
#include "viewpoint.h"

// Between the world and the picture of the map.

/// From world to clip coordinates, for a picture of that shape.
Matrix4<float> calculateEditorProjection(const Viewpoint& camera, int width, int height);

/// The ray through a point of the screen. The area is not empty.
Ray calculateRay(const Viewpoint& camera, const ScreenArea& area, const Vector2<float>& pixel);

/// Where a point of the world is on the screen; nullopt when it is behind the camera. The area is not empty.
std::optional<Vector2<float>> findPixel(const Viewpoint& camera, const ScreenArea& area, const Vector3<double>& point);
