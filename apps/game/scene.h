#pragma once

#include "solids.h"

#include <xum/geometry/box.h>
#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

class Level;
class Terrain;

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
    std::size_t shape; ///< number of the solid: a SolidKind, or one of the scene's own behind these
    Material material;
    Matrix4<float> world;
    Matrix3<float> normals; ///< takes the solid's normals into the world, not yet of length 1
    Vector3<float> textureRepeat;
    Box bounds;         ///< in the world
    bool blocks = true; ///< nobody walks through it
    float halo = 0;     ///< how far it glows, when it moves
};

struct Scene {
    static constexpr std::size_t lampCount = 3;
    static constexpr std::size_t levelLampCount = 4; // with the others as many as in solid.frag

    std::vector<Solid> ownShapes; ///< numbered from solidKindCount on
    std::vector<Thing> things;
    std::shared_ptr<const Terrain> land;    ///< null without any
    std::shared_ptr<const Level> level;     ///< null without one
    std::vector<Vector3<float>> levelLamps; ///< in its rooms
    std::array<Vector3<float>, lampCount> lamps;
    Vector3<float> lampColor;
    Vector3<float> fountain;              ///< where its water falls
    std::vector<Vector3<float>> treeTops; ///< where birds sit
    bool hasCourtyard = false;            ///< with its lamps and its fountain
    Vector3<float> sunDirection;          ///< towards the sun
    Vector3<float> sunColor;
    Vector3<float> skyLight;
    Vector3<float> groundLight;
    Vector3<float> hazeColor;
    Vector3<float> zenithColor;
};

/// How a texture looks on faces that repeat it as they want.
Material materialOf(TextureName texture);

/// Nothing but the light of a late afternoon.
Scene makeEmptyScene();

/// A courtyard with a fountain, two rows of columns and a pavilion, on a late afternoon. One unit is a metre; the
/// courtyard's centre is the origin and its entrance looks along -y.
Scene makeCourtyard();

/// A solid with the middle of its foot at a point, turned about the vertical axis (degrees).
Thing place(SolidKind kind, const Material& material, const Vector3<float>& foot, const Vector3<float>& size,
            float turn = 0);

/// The same thing somewhere else.
Thing moved(Thing thing, const Vector3<float>& by);

/// Adds a shape of its own to a scene, and a thing of it at a place. Its texture coordinates count `repeats` fold.
void addOwnShape(Scene& scene, Solid shape, const Material& material, const Vector3<float>& position, float repeats);
