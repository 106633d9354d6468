#include "map_view.h"

#include "failure.h"
#include "map_solids.h"
#include "map_texture.h"
#include "program_loading.h"

#include <xum/render/debug_shapes.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

constexpr int gridLineCount = 60;     // in each direction
constexpr float gridHeight = -0.004f; // floors and land at 0 hide it
constexpr int circleSides = 48;
constexpr double pi = 3.14159265358979;

constexpr Vector4<float> selectionColor = {1.0f, 0.8f, 0.2f, 1.0f};
constexpr Vector4<float> sideColor = {1.0f, 0.45f, 0.1f, 1.0f};
constexpr Vector4<float> pointedColor = {0.75f, 0.75f, 0.75f, 1.0f};
constexpr Vector4<float> previewColor = {0.4f, 0.9f, 1.0f, 1.0f};
constexpr Vector4<float> entityColor = {0.5f, 1.0f, 0.5f, 1.0f};
constexpr Vector4<float> gridColor = {0.35f, 0.37f, 0.4f, 1.0f};

Vector3<float> toFloat(const Vector3<double>& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

ConvexSolid makeSolid(const PlacedBrush& placed)
{
    std::vector<SolidPlane> planes;
    for (const SideSource& side : placed.brush.sides) planes.emplace_back(side.normal, side.distance);
    return ConvexSolid(planes);
}

template <class Corners>
void addTerrain(const TerrainSource& terrain, Corners& corners)
{
    const auto heightAt = [&](int column, int row) {
        const int c = std::clamp(column, 0, terrain.countColumns() - 1);
        const int r = std::clamp(row, 0, terrain.countRows() - 1);
        return terrain.heights[static_cast<std::size_t>(r) * static_cast<std::size_t>(terrain.countColumns()) +
                               static_cast<std::size_t>(c)];
    };
    const auto spacing = static_cast<float>(terrain.spacing);
    const auto add = [&](int column, int row) {
        const Vector3<float> offset = {static_cast<float>(column - terrain.width) * spacing,
                                       static_cast<float>(row - terrain.height) * spacing, heightAt(column, row)};
        corners.positions.push_back(terrain.origin + offset);
        corners.textureCoordinates.push_back(
            {offset.x * static_cast<float>(terrain.scale), -offset.y * static_cast<float>(terrain.scale)});
        corners.normals.push_back(
            normalize(Vector3<float>(heightAt(column - 1, row) - heightAt(column + 1, row),
                                     heightAt(column, row - 1) - heightAt(column, row + 1), 2 * spacing)));
    };
    for (int row = 0; row + 1 < terrain.countRows(); ++row) {
        for (int column = 0; column + 1 < terrain.countColumns(); ++column) {
            add(column, row);
            add(column + 1, row);
            add(column + 1, row + 1);
            add(column + 1, row + 1);
            add(column, row + 1);
            add(column, row);
        }
    }
}

} // namespace

MapView::MapView(RenderDevice& device, GameData& data, TextureShelf& textures)
    : device(device), textures(textures), surfaceProgram(loadProgram(device, data, "editor.cfg")),
      flatProgram(loadProgram(device, data, "flat.cfg")), gridLines(device.createVertexBuffer(false), {&device})
{
    if (!gridLines) throw Failure(ExitStatus::NoGraphics, "not enough memory for the grid");
    std::vector<Vector3<float>> ends;
    const auto reach = static_cast<float>(gridLineCount);
    for (int i = -gridLineCount; i <= gridLineCount; ++i) {
        const auto at = static_cast<float>(i);
        ends.insert(ends.end(), {{at, -reach, 0}, {at, reach, 0}, {-reach, at, 0}, {reach, at, 0}});
    }
    gridLines->setAttribute(VertexAttribute::Position, ends);
}

const MapView::CornersByTexture& MapView::findShape(const MapDocument& document,
                                                    const std::shared_ptr<const PlacedBrush>& placed)
{
    const auto [known, isNew] = shapes.try_emplace(placed.get());
    Shape& shape = known->second;
    if (!isNew) return shape.corners;
    shape.brush = placed;
    const Vector3<double> origin = document.getOrigin(placed->mesh);
    const ConvexSolid solid = makeSolid(*placed);
    for (const ConvexSolid::Face& face : solid.getFaces()) {
        if (face.number >= placed->brush.sides.size()) continue; // of a brush that is open
        Corners& corners = shape.corners[placed->brush.sides[face.number].texture];
        for (std::size_t i = 2; i < face.loop.size(); ++i) {
            for (const std::size_t corner : {std::size_t{0}, i - 1, i}) {
                const Point& point = face.loop[corner];
                corners.positions.push_back(toFloat(point + origin));
                corners.textureCoordinates.push_back(
                    calculateTextureCoordinate(point, face.plane.normal, placed->brush.scale));
                corners.normals.push_back(toFloat(face.plane.normal));
            }
        }
    }
    return shape.corners;
}

void MapView::makeBatches(const CornersByTexture& corners, std::vector<Batch>& batches)
{
    batches.clear();
    for (const auto& [texture, list] : corners) {
        if (texture.empty() || list.positions.empty()) continue; // not drawn in the game either
        Batch batch = {texture, OwnedBuffer(device.createVertexBuffer(false), {&device})};
        if (!batch.buffer) continue;
        batch.buffer->setAttribute(VertexAttribute::Position, list.positions);
        batch.buffer->setAttribute(VertexAttribute::TextureCoordinate, list.textureCoordinates);
        batch.buffer->setAttribute(VertexAttribute::Normal, list.normals);
        batches.push_back(std::move(batch));
    }
}

void MapView::update(const MapDocument& document)
{
    if (document.brushes != shown.brushes || document.meshOrigins != shown.meshOrigins) updateBrushes(document);
    if (document.terrains != shown.terrains) {
        CornersByTexture all;
        for (const auto& terrain : document.terrains)
            addTerrain(*terrain, all[terrain->texture.empty() ? "grass.jpg" : terrain->texture]);
        makeBatches(all, terrainBatches);
    }
    shown = document;
}

/// One batch for each texture; only what is new is computed anew.
void MapView::updateBrushes(const MapDocument& document)
{
    if (document.meshOrigins != shown.meshOrigins) shapes.clear();
    CornersByTexture all;
    std::set<const PlacedBrush*> used;
    const auto append = [](auto& list, const auto& more) { list.insert(list.end(), more.begin(), more.end()); };
    for (const auto& brush : document.brushes) {
        used.insert(brush.get());
        for (const auto& [texture, corners] : findShape(document, brush)) {
            Corners& to = all[texture];
            append(to.positions, corners.positions);
            append(to.textureCoordinates, corners.textureCoordinates);
            append(to.normals, corners.normals);
        }
    }
    for (auto shape = shapes.begin(); shape != shapes.end();)
        shape = used.count(shape->first) != 0 ? std::next(shape) : shapes.erase(shape);
    makeBatches(all, brushBatches);
}

void MapView::draw(const Editor& editor, const Viewpoint& camera, const ScreenArea& area, const Preview& preview)
{
    const MapDocument& document = editor.getDocument();
    if (shownVersion != editor.getVersion()) update(document);
    shownVersion = editor.getVersion();
    if (area.isEmpty()) return;
    device.setViewport(area.x, area.y, area.width, area.height, area.screenHeight);
    device.setCullMode(CullMode::Back);
    device.setBlendMode(BlendMode::None);
    device.setDepthFunction(DepthFunction::Less);
    device.enable(RenderFeature::DepthTest);
    const Matrix4<float> viewProjection = calculateEditorProjection(camera, area.width, area.height);

    device.useProgram(surfaceProgram);
    device.setUniform("viewProjection", viewProjection).setUniform("surface", 0);
    drawBatches(brushBatches);
    drawBatches(terrainBatches);

    device.useProgram(flatProgram);
    device.setUniform("viewProjection", viewProjection);
    drawGrid(editor, camera);
    device.setUniform("world", Matrix4<float>());
    drawEntities(document);
    device.disable(RenderFeature::DepthTest); // what is chosen is seen through walls
    drawOutline(document, preview.pointedAt, pointedColor);
    drawOutline(document, editor.getSelection(), selectionColor);
    drawPreview(preview);
    device.enable(RenderFeature::DepthTest);
}

void MapView::drawBatches(const std::vector<Batch>& batches)
{
    for (const Batch& batch : batches) {
        device.bindTexture(0, textures.get(batch.texture));
        batch.buffer->drawTriangles();
    }
}

/// Around the camera, in steps that can be told apart.
void MapView::drawGrid(const Editor& editor, const Viewpoint& camera)
{
    const auto step = static_cast<float>(std::max(editor.grid, 1.0));
    const auto snapped = [step](float coordinate) { return std::floor(coordinate / step) * step; };
    const Vector3<float> middle = {snapped(camera.position.x), snapped(camera.position.y), gridHeight};
    device.setUniform("world", Matrix4<float>::translation(middle) * Matrix4<float>::scaling({step, step, 1}));
    device.setUniform("flatColor", gridColor);
    gridLines->drawLines();
}

void MapView::drawBox(const Bounds& box, const Vector4<float>& color)
{
    device.setUniform("flatColor", color);
    DebugBox(toFloat(box.minimum), toFloat(box.maximum)).draw(&device);
}

void MapView::drawEntities(const MapDocument& document)
{
    const Vector3<double> half = {entityHalfSize, entityHalfSize, entityHalfSize};
    for (const auto& entity : document.entities) {
        const Vector3<double> middle = getPosition(document, *entity);
        drawBox({middle - half, middle + half}, entityColor);
    }
}

/// Of a brush all edges; of the selected one those of the side that was clicked in a colour of their own.
void MapView::drawOutline(const MapDocument& document, const Hit& hit, const Vector4<float>& color)
{
    if (hit.kind == Hit::Kind::Entity && hit.number < document.entities.size()) {
        const Vector3<double> middle = getPosition(document, *document.entities[hit.number]);
        const Vector3<double> half = {entityHalfSize, entityHalfSize, entityHalfSize};
        drawBox({middle - half, middle + half}, color);
    }
    if (hit.kind != Hit::Kind::Brush || hit.number >= document.brushes.size()) return;
    const PlacedBrush& placed = *document.brushes[hit.number];
    const Vector3<double> origin = document.getOrigin(placed.mesh);
    std::vector<Vector3<float>> edges;
    std::vector<Vector3<float>> edgesOfSide;
    const ConvexSolid solid = makeSolid(placed);
    for (const ConvexSolid::Face& face : solid.getFaces()) {
        std::vector<Vector3<float>>& ends = face.number == hit.side ? edgesOfSide : edges;
        for (std::size_t i = 0; i < face.loop.size(); ++i) {
            ends.push_back(toFloat(face.loop[i] + origin));
            ends.push_back(toFloat(face.loop[(i + 1) % face.loop.size()] + origin));
        }
    }
    drawLines(edges, color);
    drawLines(edgesOfSide, color == selectionColor ? sideColor : color);
}

void MapView::drawLines(const std::vector<Vector3<float>>& ends, const Vector4<float>& color)
{
    const OwnedBuffer buffer(device.createVertexBuffer(false), {&device});
    if (!buffer || ends.empty()) return;
    buffer->setAttribute(VertexAttribute::Position, ends);
    device.setUniform("flatColor", color);
    buffer->drawLines();
}

void MapView::drawPreview(const Preview& preview)
{
    if (preview.box) drawBox(*preview.box, previewColor);
    if (!preview.circleMiddle) return;
    // Along the land.
    std::vector<Vector3<float>> ends;
    const auto pointAt = [&](int number) {
        const double angle = 2 * pi * number / circleSides;
        Vector3<double> point = *preview.circleMiddle;
        point += Vector3<double>(std::cos(angle), std::sin(angle), 0) * preview.circleRadius;
        point.z = findHeight(shown, point.x, point.y).value_or(point.z);
        return toFloat(point);
    };
    for (int i = 0; i < circleSides; ++i) ends.insert(ends.end(), {pointAt(i), pointAt(i + 1)});
    drawLines(ends, previewColor);
}
