#pragma once

#include "owned.h"

#include <xum/geometry/vector.h>

#include <functional>
#include <memory>
#include <string>

class Image;

/// Has something drawn into a target of its own, with colour and depth, and reads it back, so that the window's state
/// does not matter. Throws Failure when memory runs out. The window is bound afterwards.
std::unique_ptr<Image> takePicture(RenderDevice& device, const Vector2<int>& size,
                                   const std::function<void(RenderTarget*)>& draw);

/// Throws Failure, naming the file, when it cannot be written.
void writePicture(const Image& picture, const std::string& fileName);

/// "screenshot-001.bmp", or the next number whose file does not exist yet.
std::string findFreePictureName();
