#include "scene_renderer.h"

#include "failure.h"

#include <xum/render/render_target.h>
#include <xum/render/vertex_buffer.h>

#include <string>
#include <utility>
#include <vector>

namespace {

constexpr float verticalFieldOfView = 50.0f; // degrees
constexpr float nearDistance = 0.2f;
constexpr float farDistance = 400.0f;

constexpr int shadowMapSize = 2048;      // pixels
constexpr float shadowMapReach = 24.0f;  // from the courtyard's centre
constexpr float shadowMapDepth = 100.0f; // along the light

constexpr Vector4<float> edgeColor = {0.55f, 0.8f, 0.95f, 0.3f}; // edges add up where many meet

constexpr int surfaceUnit = 0;
constexpr int shadowUnit = 1;

Matrix4<float> calculateShadowProjection(const Vector3<float>& sunDirection)
{
    Camera sun;
    sun.position = sunDirection * (shadowMapDepth / 2.0f);
    sun.lookAt({0, 0, 0});
    return calculateParallelProjection(sun, shadowMapReach, 0.0f, shadowMapDepth);
}

} // namespace

SceneRenderer::SceneRenderer(RenderDevice& device, const Assets& assets, Scene sceneToDraw)
    : device(device), assets(assets), scene(std::move(sceneToDraw)),
      shadowProjection(calculateShadowProjection(scene.sunDirection)),
      screenTriangle(device.createVertexBuffer(false), {&device}),
      shadowTarget(device.createRenderTarget(shadowMapSize, shadowMapSize, {TextureFormat(TextureFormat::Depth, 1)}),
                   {&device})
{
    if (!screenTriangle || !shadowTarget) throw Failure(ExitStatus::NoGraphics, "not enough memory for the scene");
    for (std::size_t i = 0; i < solidKindCount; ++i) solids[i] = makeSolidBuffer(makeSolid(static_cast<SolidKind>(i)));
    screenTriangle->setAttribute(VertexAttribute::Position,
                                 std::vector<Vector3<float>>{{-1, -1, 0}, {3, -1, 0}, {-1, 3, 0}});
    device.setCullMode(CullMode::Back);
    device.setDepthFunction(DepthFunction::Less);
    device.enable(RenderFeature::DepthTest);
    drawShadowMap();
    device.bindRenderTarget(nullptr, TargetBinding::Both);
}

SceneRenderer::SolidBuffer SceneRenderer::makeSolidBuffer(const Solid& solid)
{
    const std::vector<unsigned int> edges = makeEdges(solid.triangles);
    std::vector<unsigned int> indices = solid.triangles;
    indices.insert(indices.end(), edges.begin(), edges.end());

    SolidBuffer made;
    made.buffer = OwnedBuffer(device.createVertexBuffer(false), {&device});
    if (!made.buffer) throw Failure(ExitStatus::NoGraphics, "not enough memory for the solids");
    made.buffer->setAttribute(VertexAttribute::Position, solid.positions);
    made.buffer->setAttribute(VertexAttribute::TextureCoordinate, solid.textureCoordinates);
    made.buffer->setAttribute(VertexAttribute::Normal, solid.normals);
    made.buffer->setIndices(indices);
    made.triangleIndexCount = static_cast<int>(solid.triangles.size());
    made.edgeIndexCount = static_cast<int>(edges.size());
    return made;
}

// Once is enough: neither the sun nor the scene moves.
void SceneRenderer::drawShadowMap()
{
    device.bindRenderTarget(shadowTarget.get(), TargetBinding::Both);
    device.setViewport(0, 0, shadowMapSize, shadowMapSize, shadowMapSize);
    device.clear(false, true, false);
    device.useProgram(assets.getFlatProgram());
    device.setUniform("viewProjection", shadowProjection);
    for (const Thing& thing : scene.things) {
        device.setUniform("world", thing.world);
        const SolidBuffer& solid = getBuffer(thing.kind);
        solid.buffer->drawTriangles(0, solid.triangleIndexCount);
    }
}

void SceneRenderer::draw(RenderTarget* target, const Vector2<int>& size, const Camera& camera, DrawStyle style)
{
    if (size.x <= 0 || size.y <= 0) return; // a minimised window
    const Vector2<float> viewExtents = calculateViewExtents(verticalFieldOfView, size);
    const Matrix4<float> viewProjection = calculateViewProjection(camera, viewExtents, nearDistance, farDistance);

    device.bindRenderTarget(target, TargetBinding::Both);
    device.setViewport(0, 0, size.x, size.y, size.y);
    device.clear(true, true, false);
    if (style == DrawStyle::Edges) {
        drawEdges(viewProjection);
    } else {
        drawSky(camera, viewExtents);
        drawSolids(camera, viewProjection);
    }
}

void SceneRenderer::drawSky(const Camera& camera, const Vector2<float>& viewExtents)
{
    device.useProgram(assets.getSkyProgram());
    device.setUniform("forward", camera.getForward())
        .setUniform("right", camera.getRight() * viewExtents.x)
        .setUniform("up", camera.getUp() * viewExtents.y)
        .setUniform("zenithColor", scene.zenithColor)
        .setUniform("hazeColor", scene.hazeColor)
        .setUniform("sunColor", scene.sunColor)
        .setUniform("sunDirection", scene.sunDirection);
    device.disable(RenderFeature::DepthTest); // also keeps the depth as it was cleared
    screenTriangle->drawTriangles();
    device.enable(RenderFeature::DepthTest);
}

void SceneRenderer::drawSolids(const Camera& camera, const Matrix4<float>& viewProjection)
{
    device.useProgram(assets.getSolidProgram());
    device.setUniform("viewProjection", viewProjection).setUniform("eye", camera.position);
    setLightUniforms();
    for (const Thing& thing : scene.things) {
        setThingUniforms(thing);
        const SolidBuffer& solid = getBuffer(thing.kind);
        solid.buffer->drawTriangles(0, solid.triangleIndexCount);
    }
}

void SceneRenderer::drawEdges(const Matrix4<float>& viewProjection)
{
    device.useProgram(assets.getFlatProgram());
    device.setUniform("viewProjection", viewProjection).setUniform("flatColor", edgeColor);
    device.setBlendMode(BlendMode::Additive);
    device.disable(RenderFeature::DepthTest);
    for (const Thing& thing : scene.things) {
        device.setUniform("world", thing.world);
        const SolidBuffer& solid = getBuffer(thing.kind);
        solid.buffer->drawLines(solid.triangleIndexCount, solid.edgeIndexCount);
    }
    device.enable(RenderFeature::DepthTest);
    device.setBlendMode(BlendMode::None);
}

void SceneRenderer::setLightUniforms()
{
    device.bindTexture(shadowUnit, shadowTarget->getDepthTexture());
    device.setUniform("surface", surfaceUnit)
        .setUniform("shadowMap", shadowUnit)
        .setUniform("shadowProjection", shadowProjection)
        .setUniform("sunDirection", scene.sunDirection)
        .setUniform("sunColor", scene.sunColor)
        .setUniform("skyLight", scene.skyLight)
        .setUniform("groundLight", scene.groundLight)
        .setUniform("hazeColor", scene.hazeColor)
        .setUniform("lampColor", scene.lampColor);
    for (std::size_t i = 0; i < Scene::lampCount; ++i)
        device.setUniform("lampPositions[" + std::to_string(i) + "]", scene.lamps[i]);
}

void SceneRenderer::setThingUniforms(const Thing& thing)
{
    const Material& material = thing.material;
    device.bindTexture(surfaceUnit, assets.getTexture(material.texture));
    device.setUniform("world", thing.world)
        .setUniform("normalMatrix", thing.normals)
        .setUniform("textureRepeat", thing.textureRepeat)
        .setUniform("tint", material.tint)
        .setUniform("specular", material.specular)
        .setUniform("shininess", material.shininess)
        .setUniform("glow", material.glow);
}
