#pragma once

#include "drawing_fixture.h"
#include "lit_scene.h"
#include "point_of_view.h"

#include <xum/render/light.h>

/// The scene of lit_scene, for spot lights to shine upon. It is drawn into textures of positions, normals and colours;
/// then each light is added to a canvas by a pass over the screen that looks its shadow map up.
class LitSceneTest : public DrawingTest {
protected:
    static constexpr int canvasSize = 96;

    void SetUp() override;

    /// Everything, with the current program, which is one of the three for surfaces.
    void drawScene(const Matrix4<float>& matrix);

    /// Draws the light's shadow map and adds the light to the canvas.
    void shine(SpotLight& light);

    /// Of a point of the world.
    static Pixel pixelOf(const Image& picture, const PointOfView& from, const Vector3<float>& point);

    const PointOfView view{{0.5f, -7, 9}, {0, 0.25f, 0}, 42, canvasSize};
    Program* colorProgram = nullptr; ///< surfaces in their colours

private:
    static constexpr int shadowMapSize = 256;

    void makeScene();
    void makeBox();
    void makePrograms();
    void drawSurfaces();

    VertexBuffer* floor = nullptr;
    VertexBuffer* box = nullptr;
    VertexBuffer* sphere = nullptr;
    Program* depthProgram = nullptr;
    Program* surfaceProgram = nullptr;
    Program* lightProgram = nullptr;
    RenderTarget* surfaces = nullptr;
    RenderTarget* shadowMap = nullptr;
};
