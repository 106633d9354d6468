#pragma once

#include "assets.h"
#include "camera.h"
#include "owned.h"
#include "scene.h"

#include <array>

enum class DrawStyle : int { Solids, Edges };

/// Draws a scene from any point of view into the window or a render target.
class SceneRenderer {
public:
    /// Keeps references to the device and the assets. The window is bound afterwards. Throws Failure when memory runs
    /// out.
    SceneRenderer(RenderDevice& device, const Assets& assets, Scene scene);

    /// Clears the target (null is the window) of `size` pixels and draws the scene. Nothing happens without a pixel.
    void draw(RenderTarget* target, const Vector2<int>& size, const Camera& camera, DrawStyle style);

private:
    /// One kind of solid. Its index list holds the triangles and behind them the edges.
    struct SolidBuffer {
        OwnedBuffer buffer;
        int triangleIndexCount = 0;
        int edgeIndexCount = 0;
    };

    SolidBuffer makeSolidBuffer(const Solid& solid);
    void drawShadowMap();
    void drawSky(const Camera& camera, const Vector2<float>& viewExtents);
    void drawSolids(const Camera& camera, const Matrix4<float>& viewProjection);
    void drawEdges(const Matrix4<float>& viewProjection);
    void setLightUniforms();
    void setThingUniforms(const Thing& thing);
    const SolidBuffer& getBuffer(SolidKind kind) const { return solids[static_cast<std::size_t>(kind)]; }

    RenderDevice& device;
    const Assets& assets;
    Scene scene;
    Matrix4<float> shadowProjection;
    std::array<SolidBuffer, solidKindCount> solids;
    OwnedBuffer screenTriangle;
    OwnedTarget shadowTarget;
};
