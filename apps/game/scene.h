#pragma once

#include "solids.h"

#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>

#include <array>
#include <cstddef>
#include <vector>

/// The pictures in textures/; textureFileNames is in the same order.
enum class TextureName : int { Grass, Paving, Limestone, Brick, Wood, Bronze, Water, Roof, Leaves };
constexpr std::size_t textureCount = 9;
extern const std::array<const char*, textureCount> textureFileNames;

/// How a surface looks.
struct Material {
    TextureName texture;
    float repeatsPerUnit = 0.5f; ///< of the texture
    Vector3<float> tint = {1.0f, 1.0f, 1.0f};
    float specular = 0.02f;
    float shininess = 20.0f;
    float glow = 0.0f; ///< light of its own
};

/// A solid that stands in the world.
struct Thing {
    SolidKind kind;
    Material material;
    Matrix4<float> world;
    Matrix3<float> normals; ///< takes the solid's normals into the world, not yet of length 1
    Vector3<float> textureRepeat;
};

struct Scene {
    static constexpr std::size_t lampCount = 3; // as in solid.frag

    std::vector<Thing> things;
    std::array<Vector3<float>, lampCount> lamps;
    Vector3<float> lampColor;
    Vector3<float> fountain;              ///< where its water falls
    std::vector<Vector3<float>> treeTops; ///< where birds sit
    Vector3<float> sunDirection;          ///< towards the sun
    Vector3<float> sunColor;
    Vector3<float> skyLight;
    Vector3<float> groundLight;
    Vector3<float> hazeColor;
    Vector3<float> zenithColor;
};

/// A courtyard with a fountain, two rows of columns and a pavilion, on a late afternoon. One unit is a metre; the
/// courtyard's centre is the origin and its entrance looks along -y.
Scene makeCourtyard();

/// A solid with the middle of its foot at a point, turned about the vertical axis (degrees).
Thing place(SolidKind kind, const Material& material, const Vector3<float>& foot, const Vector3<float>& size,
            float turn = 0);
