#pragma once

#include <string>

namespace tinygltf {
class Model;
}

/// Loads a glTF file, be it text or binary, with the buffers that it names: these lie in the directory or below, as
/// nothing else is opened, and no pictures. What the loader could not stand, or what would change the triangles in ways
/// that are not known here, is a ModelProblem, as is all that cannot be loaded. Numbers within the model may still
/// point anywhere.
tinygltf::Model loadGltf(const std::string& bytes, const std::string& directory);
