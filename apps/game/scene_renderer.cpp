#include "scene_renderer.h"

#include "failure.h"
#include "halos.h"

#include <xum/render/render_target.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr float verticalFieldOfView = 50.0f; // degrees
constexpr float nearDistance = 0.2f;
constexpr float farDistance = 400.0f;

constexpr int shadowMapSize = 3072;      // pixels
constexpr float shadowMapReach = 36.0f;  // from the courtyard's centre
constexpr float shadowMapDepth = 100.0f; // along the light

constexpr Vector4<float> edgeColor = {0.55f, 0.8f, 0.95f, 0.3f}; // edges add up where many meet

constexpr int surfaceUnit = 0;
constexpr int shadowUnit = 1;
constexpr int firstLampUnit = 2;

const Material lampGlass = {TextureName::Limestone, 0.5f, {0.5f, 0.8f, 1.0f}, 0, 1, 6.0f};
constexpr float lampWidth = 0.4f;

constexpr Vector3<float> nightLight = {0.035f, 0.05f, 0.1f};
constexpr Vector3<float> nightSky = {0.02f, 0.03f, 0.07f};

Matrix4<float> calculateShadowProjection(const Vector3<float>& sunDirection)
{
    Viewpoint sun;
    sun.position = sunDirection * (shadowMapDepth / 2.0f);
    sun.lookAt({0, 0, 0});
    return calculateParallelProjection(sun, shadowMapReach, 0.0f, shadowMapDepth);
}

} // namespace

SceneRenderer::SceneRenderer(RenderDevice& device, const Assets& assets, Scene sceneToDraw)
    : device(device), assets(assets), scene(std::move(sceneToDraw)),
      shadowProjection(calculateShadowProjection(scene.sunDirection)), occluders(scene),
      occlusionPicture(device.createTexture(OcclusionMap::width, OcclusionMap::height, false), {&device}),
      screenTriangle(device.createVertexBuffer(false), {&device}),
      shadowTarget(device.createRenderTarget(shadowMapSize, shadowMapSize, {TextureFormat(TextureFormat::Depth, 1)}),
                   {&device}),
      lamps{SpotLamp(device), SpotLamp(device)}
{
    if (!screenTriangle || !shadowTarget || !occlusionPicture)
        throw Failure(ExitStatus::NoGraphics, "not enough memory for the scene");
    for (std::size_t i = 0; i < solidKindCount; ++i)
        shapes.push_back(makeSolidBuffer(makeSolid(static_cast<SolidKind>(i))));
    for (const Solid& shape : scene.ownShapes) shapes.push_back(makeSolidBuffer(shape));
    if (scene.level) levelSurfaces = makeSurfaces(*scene.level);
    for (const LevelSurface& surface : levelSurfaces) levelBuffers.push_back(makeSolidBuffer(surface.solid));
    screenTriangle->setAttribute(VertexAttribute::Position,
                                 std::vector<Vector3<float>>{{-1, -1, 0}, {3, -1, 0}, {-1, 3, 0}});
    device.setCullMode(CullMode::Back);
    device.setDepthFunction(DepthFunction::Less);
    device.enable(RenderFeature::DepthTest);
    drawShadowMap();
    device.bindRenderTarget(nullptr, TargetBinding::Both);
    afternoon.sunColor = scene.sunColor;
    afternoon.skyLight = scene.skyLight;
    afternoon.groundLight = scene.groundLight;
    afternoon.hazeColor = scene.hazeColor;
    afternoon.zenithColor = scene.zenithColor;
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
    drawDistances(shadowProjection, seeEverything(scene));
}

void SceneRenderer::drawLampMap(SpotLamp& lamp)
{
    const Visibility lit = isCulling ? seeWithin(scene, lamp.getVolume()) : seeEverything(scene);
    lamp.drawMap([&](const Matrix4<float>& projection) { drawDistances(projection, lit); });
}

/// Into the bound map of a light: how far away from it things are.
void SceneRenderer::drawDistances(const Matrix4<float>& projection, const Visibility& lit)
{
    device.useProgram(assets.getFlatProgram());
    device.setUniform("viewProjection", projection);
    for (std::size_t i = 0; i < scene.things.size(); ++i) {
        if (!lit.things[i]) continue;
        device.setUniform("world", scene.things[i].world);
        drawTriangles(shapes[scene.things[i].shape]);
    }
    device.setUniform("world", Matrix4<float>());
    for (std::size_t i = 0; i < levelSurfaces.size(); ++i)
        forVisibleRanges(i, lit, [&](int first, int count) { drawTriangles(levelBuffers[i], first, count); });
}

void SceneRenderer::draw(RenderTarget* target, const Vector2<int>& size, const Viewpoint& camera, DrawStyle style)
{
    if (size.x <= 0 || size.y <= 0) return; // a minimised window
    const Vector2<float> viewExtents = calculateViewExtents(verticalFieldOfView, size);
    viewProjection = calculateViewProjection(camera, viewExtents, nearDistance, farDistance);
    draws.reset();
    findVisible(camera, viewExtents, style);
    for (std::size_t i = 0; i < lampCount; ++i)
        if (isLampOn[i] && style == DrawStyle::Solids) drawLampMap(lamps[i]);

    device.bindRenderTarget(target, TargetBinding::Both);
    device.setViewport(0, 0, size.x, size.y, size.y);
    device.clear(true, true, false);
    if (style == DrawStyle::Edges) {
        drawEdges();
    } else {
        drawSky(camera, viewExtents);
        drawSolids(camera);
        if (showsOcclusion) drawOcclusionView(size);
    }
}

void SceneRenderer::findVisible(const Viewpoint& camera, const Vector2<float>& viewExtents, DrawStyle style)
{
    visibility = isCulling ? seeWithin(scene, ViewVolume(camera, viewExtents, nearDistance)) : seeEverything(scene);
    const ViewVolume view(camera, viewExtents, nearDistance);
    seenMovingThings.clear();
    for (const Thing& thing : movingThings)
        seenMovingThings.push_back(view.seePart(thing.bounds) != ViewVolume::Part::Nothing);
    if (style == DrawStyle::Edges || (!isCulling && !showsOcclusion)) return;
    occlusion.begin(camera, viewExtents, nearDistance);
    const float reach = nearDistance * length(Vector3<float>(viewExtents.x, viewExtents.y, 1));
    occluders.addTo(occlusion, camera.position, reach);
    if (isCulling) hide(visibility, scene, occlusion);
}

void SceneRenderer::setDusk(float part)
{
    const float night = std::clamp(part, 0.0f, 1.0f);
    const auto mix = [night](const Vector3<float>& day, const Vector3<float>& dark) {
        return day * (1 - night) + dark * night;
    };
    scene.sunColor = afternoon.sunColor * ((1 - night) * (1 - night));
    scene.skyLight = mix(afternoon.skyLight, nightLight);
    scene.groundLight = mix(afternoon.groundLight, nightLight * 0.5f);
    scene.hazeColor = mix(afternoon.hazeColor, nightSky);
    scene.zenithColor = mix(afternoon.zenithColor, nightSky * 0.5f);
}

void SceneRenderer::drawOcclusionView(const Vector2<int>& size)
{
    const Vector2<int> part = {size.x / 3, size.y / 3};
    if (part.x == 0 || part.y == 0) return;
    occlusionPicture->update(occlusion.makePicture().data());
    device.setViewport(0, size.y - part.y, part.x, part.y, size.y);
    device.useProgram(assets.getPictureProgram());
    device.bindTexture(surfaceUnit, occlusionPicture.get());
    device.setUniform("surface", surfaceUnit);
    device.disable(RenderFeature::DepthTest);
    drawScreenTriangle();
    device.enable(RenderFeature::DepthTest);
    device.setViewport(0, 0, size.x, size.y, size.y);
}

void SceneRenderer::drawSky(const Viewpoint& camera, const Vector2<float>& viewExtents)
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
    drawScreenTriangle();
    device.enable(RenderFeature::DepthTest);
}

void SceneRenderer::drawSolids(const Viewpoint& camera)
{
    device.useProgram(assets.getSolidProgram());
    device.setUniform("viewProjection", viewProjection).setUniform("eye", camera.position);
    setLightUniforms();
    for (std::size_t i = 0; i < scene.things.size(); ++i) {
        if (!visibility.things[i]) continue;
        const Thing& thing = scene.things[i];
        setThingUniforms(thing);
        drawTriangles(shapes[thing.shape]);
    }
    drawLevel();
    drawMovingThings();
    for (std::size_t i = 0; i < lampCount; ++i)
        if (isLampOn[i]) drawLampItself(lamps[i]);
    drawHalos(device, assets.getHaloProgram(), viewProjection, camera, movingThings, draws);
}

void SceneRenderer::drawMovingThings()
{
    for (std::size_t i = 0; i < movingThings.size(); ++i) {
        if (!seenMovingThings[i]) continue;
        setThingUniforms(movingThings[i]);
        drawTriangles(shapes[movingThings[i].shape]);
    }
}

/// A shining ball, which the light comes from: it throws no shadow.
void SceneRenderer::drawLampItself(const SpotLamp& lamp)
{
    const Vector3<float> foot = lamp.getLight().position - Vector3<float>(0, 0, lampWidth / 2);
    setThingUniforms(place(SolidKind::Sphere, lampGlass, foot, {lampWidth, lampWidth, lampWidth}));
    drawTriangles(shapes[static_cast<std::size_t>(SolidKind::Sphere)]);
}

void SceneRenderer::drawLevel()
{
    for (std::size_t i = 0; i < levelSurfaces.size(); ++i) {
        setThingUniforms({0, materialOf(levelSurfaces[i].texture), {}, {}, {1, 1, 1}, {}});
        forVisibleRanges(i, visibility, [&](int first, int count) { drawTriangles(levelBuffers[i], first, count); });
    }
}

/// Calls draw(first index, count) for the triangles of the faces that are seen; those that lie together go over at
/// once.
template <class Draw>
void SceneRenderer::forVisibleRanges(std::size_t surface, const Visibility& seen, Draw draw) const
{
    int first = 0;
    int count = 0;
    for (const LevelSurface::Range& range : levelSurfaces[surface].ranges) {
        if (!seen.faces[range.face]) continue;
        if (range.first != first + count) {
            if (count > 0) draw(first, count);
            first = range.first;
            count = 0;
        }
        count += range.count;
    }
    if (count > 0) draw(first, count);
}

void SceneRenderer::drawEdges()
{
    device.useProgram(assets.getFlatProgram());
    device.setUniform("viewProjection", viewProjection).setUniform("flatColor", edgeColor);
    device.setBlendMode(BlendMode::Additive);
    device.disable(RenderFeature::DepthTest);
    for (std::size_t i = 0; i < scene.things.size(); ++i) {
        if (!visibility.things[i]) continue;
        const Thing& thing = scene.things[i];
        device.setUniform("world", thing.world);
        drawLines(shapes[thing.shape]);
    }
    device.setUniform("world", Matrix4<float>());
    for (const SolidBuffer& solid : levelBuffers) drawLines(solid);
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
    std::vector<Vector3<float>> still(scene.lamps.begin(), scene.lamps.end());
    still.insert(still.end(), scene.levelLamps.begin(), scene.levelLamps.end());
    still.resize(Scene::lampCount + Scene::levelLampCount, {0, 0, -1e6f}); // those that are missing shine nowhere
    for (std::size_t i = 0; i < still.size(); ++i)
        device.setUniform("lampPositions[" + std::to_string(i) + "]", still[i]);
    for (std::size_t i = 0; i < lampCount; ++i) {
        const int unit = firstLampUnit + static_cast<int>(i);
        if (isLampOn[i])
            lamps[i].setUniforms(i, unit);
        else
            SpotLamp::setDarkUniforms(device, i, unit);
    }
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

void SceneRenderer::drawTriangles(const SolidBuffer& solid)
{
    drawTriangles(solid, 0, solid.triangleIndexCount);
}

void SceneRenderer::drawTriangles(const SolidBuffer& solid, int firstIndex, int count)
{
    draws.add();
    solid.buffer->drawTriangles(firstIndex, count);
}

void SceneRenderer::drawLines(const SolidBuffer& solid)
{
    draws.add();
    solid.buffer->drawLines(solid.triangleIndexCount, solid.edgeIndexCount);
}

void SceneRenderer::drawScreenTriangle()
{
    draws.add();
    screenTriangle->drawTriangles();
}
