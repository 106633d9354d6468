#pragma once

#include "scene_renderer.h"

#include <memory>
#include <string>

class Image;

/// Draws the scene into a target of its own and reads it back, so that the window's state does not matter. Throws
/// Failure when memory runs out. The window is bound afterwards.
std::unique_ptr<Image> takePicture(RenderDevice& device, SceneRenderer& renderer, const Vector2<int>& size,
                                   const Viewpoint& camera, DrawStyle style);

/// Throws Failure, naming the file, when it cannot be written.
void writePicture(const Image& picture, const std::string& fileName);

/// "screenshot-001.bmp", or the next number whose file does not exist yet.
std::string findFreePictureName();
