#pragma once

#include "assets.h"
#include "draw_counter.h"
#include "level_surface.h"
#include "occluders.h"
#include "owned.h"
#include "scene.h"
#include "spot_lamp.h"
#include "viewpoint.h"
#include "visibility.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

enum class DrawStyle : int { Solids, Edges };

/// Draws a scene from any point of view into the window or a render target.
class SceneRenderer {
public:
    static constexpr std::size_t lampCount = 2; // as in solid.frag

    /// Keeps references to the device and the assets. The window is bound afterwards. Throws Failure when memory runs
    /// out.
    SceneRenderer(RenderDevice& device, const Assets& assets, Scene scene);

    /// Clears the target (null is the window) of `size` pixels and draws the scene. Nothing happens without a pixel.
    void draw(RenderTarget* target, const Vector2<int>& size, const Viewpoint& camera, DrawStyle style);

    /// Whether what lies outside of the view or is hidden is left out; it is at the start. The picture is the same.
    void setCulling(bool isOn) { isCulling = isOn; }
    bool isCullingOn() const { return isCulling; }

    /// Whether the map by which hidden things are found is shown in the lower left corner. It is seen on solids only:
    /// between edges nothing is hidden.
    void setOcclusionView(bool isOn) { showsOcclusion = isOn; }
    bool isOcclusionViewOn() const { return showsOcclusion; }

    /// Lamps that move, by their numbers. At the start the first one shines and circles above the courtyard. They light
    /// solids only.
    void setLamp(bool isOn, std::size_t number = 0) { isLampOn[number] = isOn; }
    bool isLampShining(std::size_t number = 0) const { return isLampOn[number]; }
    SpotLamp& getLamp(std::size_t number = 0) { return lamps[number]; }

    /// Things that are somewhere else in each frame: nobody stands in their way, and the sun shines through them.
    void setMovingThings(std::vector<Thing> things) { movingThings = std::move(things); }

    /// 0: the afternoon, as the scene has it; 1: night.
    void setDusk(float part);

    const Scene& getScene() const { return scene; }
    const Assets& getAssets() const { return assets; }

    /// Of what was drawn last.
    const Visibility& getVisibility() const { return visibility; }
    std::size_t countDraws() const { return draws.get(); }
    const Matrix4<float>& getViewProjection() const { return viewProjection; }

private:
    /// A solid. Its index list holds the triangles and behind them the edges.
    struct SolidBuffer {
        OwnedBuffer buffer;
        int triangleIndexCount = 0;
        int edgeIndexCount = 0;
    };

    SolidBuffer makeSolidBuffer(const Solid& solid);
    void drawShadowMap();
    void drawLampMap(SpotLamp& lamp);
    void drawLampItself(const SpotLamp& lamp);
    void drawMovingThings();
    void drawDistances(const Matrix4<float>& projection, const Visibility& lit);
    void drawSky(const Viewpoint& camera, const Vector2<float>& viewExtents);
    void drawSolids(const Viewpoint& camera);
    void drawEdges();
    void setLightUniforms();
    void setThingUniforms(const Thing& thing);
    void drawLevel();
    void drawTriangles(const SolidBuffer& solid);
    void drawTriangles(const SolidBuffer& solid, int firstIndex, int count);
    void drawLines(const SolidBuffer& solid);
    void drawScreenTriangle();
    void findVisible(const Viewpoint& camera, const Vector2<float>& viewExtents, DrawStyle style);
    void drawOcclusionView(const Vector2<int>& size);
    template <class Draw>
    void forVisibleRanges(std::size_t surface, const Visibility& seen, Draw draw) const;

    RenderDevice& device;
    const Assets& assets;
    Scene scene;
    Matrix4<float> shadowProjection;
    std::vector<SolidBuffer> shapes; ///< by their numbers
    std::vector<LevelSurface> levelSurfaces;
    std::vector<SolidBuffer> levelBuffers; ///< one for each surface
    Occluders occluders;
    OcclusionMap occlusion;
    OwnedTexture occlusionPicture;
    bool isCulling = true;
    bool showsOcclusion = false;
    Visibility visibility;
    Matrix4<float> viewProjection; ///< of what was drawn last
    DrawCounter draws;
    OwnedBuffer screenTriangle;
    OwnedTarget shadowTarget;
    std::array<SpotLamp, lampCount> lamps;
    std::array<bool, lampCount> isLampOn = {true, false};
    std::vector<Thing> movingThings;
    std::vector<bool> seenMovingThings;
    Scene afternoon; ///< for its colours
};
