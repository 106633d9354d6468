#include "viewport.h"

#include "gui.h"

#include <xum/devices/input_device.h>

#include <SDL.h>
#include <imgui.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double reach = 1000;     // of what is drawn or moved at a distance
constexpr double finest = 1e-4;    // rounding what rays meet
constexpr float dragThreshold = 3; // pixels
constexpr float steepest = 89;     // degrees
constexpr double fastFactor = 4;   // with Shift
constexpr Vector3<double> up = {0, 0, 1};

MapDocument landOf(const MapDocument& document)
{
    MapDocument land;
    land.meshOrigins = document.meshOrigins;
    land.terrains = document.terrains;
    return land;
}

/// Where there is nothing, the ground.
Hit pickOrGround(const MapDocument& document, const Ray& ray)
{
    Hit hit = pick(document, ray);
    if (hit.kind != Hit::Kind::Nothing) return hit;
    hit.normal = up;
    hit.point = meetPlane(ray, {}, up, reach).value_or(ray.at(10));
    return hit;
}

/// On the grid, but never off the surface that it is on.
Vector3<double> snapOnSurface(const Hit& hit, double grid)
{
    Vector3<double> point = snap(hit.point, grid);
    if (std::fabs(hit.normal.x) > 0.99) point.x = hit.point.x;
    if (std::fabs(hit.normal.y) > 0.99) point.y = hit.point.y;
    if (std::fabs(hit.normal.z) > 0.99) point.z = hit.point.z;
    return snap(point, finest);
}

} // namespace

Viewport::Viewport(Editor& editor, InputDevice& input) : editor(editor), input(input)
{
    camera.position = {0, -16, 9};
    camera.pitch = -25;
}

void Viewport::update(const Gui& gui, const ScreenArea& area, double cameraSpeed, double mouseSpeed, float seconds)
{
    preview = {};
    if (!gui.wantsKeyboard()) fly(cameraSpeed, mouseSpeed, seconds);
    if (state != Drag::None && (seenVersion != editor.getVersion() || ImGui::IsKeyPressed(SDL_SCANCODE_ESCAPE))) {
        state = Drag::None; // what was grabbed may be gone
        editor.endStep();
    }
    if (area.isEmpty()) return;
    const Vector2<float> mouse = gui.getMouse();
    const Ray ray = calculateRay(camera, area, mouse);
    const bool isFree = !gui.wantsMouse();
    if (isFree && ImGui::IsMouseClicked(0)) press(ray, mouse);
    if (ImGui::IsMouseDown(0))
        drag(ray, mouse, seconds);
    else
        release();
    if (isFree) point(ray);
    seenVersion = editor.getVersion();
}

/// Shows what a click would do.
void Viewport::point(const Ray& ray)
{
    if (editor.tool == Editor::Tool::Select && state == Drag::None) preview.pointedAt = pick(editor.getDocument(), ray);
    if (editor.tool != Editor::Tool::Terrain) return;
    const Hit hit = pick(landOf(editor.getDocument()), ray);
    if (hit.kind != Hit::Kind::Terrain) return;
    preview.circleMiddle = hit.point;
    preview.circleRadius = editor.terrainBrush.radius;
}

void Viewport::fly(double cameraSpeed, double mouseSpeed, float seconds)
{
    const ImGuiIO& io = ImGui::GetIO();
    const bool isLooking = ImGui::IsMouseDown(1) && !io.WantCaptureMouse;
    if (isLooking) {
        camera.yaw -= io.MouseDelta.x * static_cast<float>(mouseSpeed);
        camera.pitch -= io.MouseDelta.y * static_cast<float>(mouseSpeed);
    }
    camera.yaw = std::remainder(camera.yaw, 360.0f);
    camera.pitch = std::clamp(camera.pitch, -steepest, steepest);
    if (!io.WantCaptureMouse && io.MouseWheel != 0)
        camera.position += camera.getForward() * io.MouseWheel * static_cast<float>(cameraSpeed * 0.15);
    if (io.KeyCtrl || io.KeyAlt) return; // a shortcut
    const auto axis = [this](int positive, int negative) {
        return (input.isDown(positive) ? 1.0f : 0.0f) - (input.isDown(negative) ? 1.0f : 0.0f);
    };
    const Vector3<float> way = camera.getRight() * axis('d', 'a') + camera.getForward() * axis('w', 's') +
                               Vector3<float>(0, 0, axis('e', 'q'));
    const double speed = cameraSpeed * (io.KeyShift ? fastFactor : 1);
    camera.position += normalize(way) * static_cast<float>(speed * seconds);
}

void Viewport::press(const Ray& ray, const Vector2<float>& mouse)
{
    const MapDocument& document = editor.getDocument();
    grabbed = pickOrGround(document, ray);
    grabbedAt = mouse;
    moved = {};
    ++dragNumber;
    switch (editor.tool) {
    case Editor::Tool::Select:
        editor.select(grabbed);
        if (editor.hasBrush() || editor.hasEntity()) {
            grabbedBounds = editor.getSelectionBounds();
            state = Drag::Pending;
        }
        break;
    case Editor::Tool::Box:
        grabbed.point = snapOnSurface(grabbed, editor.grid);
        grabbedBounds = boxTo(grabbed.point);
        hasDrawn = false;
        state = Drag::DrawBox;
        break;
    case Editor::Tool::Terrain:
        grabbed = pick(landOf(document), ray);
        if (grabbed.kind == Hit::Kind::Terrain)
            state = Drag::Shape;
        else
            editor.say(document.terrains.empty() ? "There is no terrain yet: make one in the panel on the left"
                                                 : "There is no land here");
        break;
    case Editor::Tool::Object: placeObject(); break;
    }
}

void Viewport::placeObject()
{
    const Vector3<double> place = snapOnSurface(grabbed, editor.grid);
    bool isAdded = false;
    editor.edit([&](MapDocument& changed) { isAdded = addEntity(changed, editor.entityClass, place); });
    if (isAdded)
        editor.selectEntity(editor.getDocument().entities.size() - 1);
    else
        editor.say("An object needs a class without quotes and brackets, and a place that is not too far away");
}

void Viewport::drag(const Ray& ray, const Vector2<float>& mouse, float seconds)
{
    if (state == Drag::Pending && length(mouse - grabbedAt) > dragThreshold) beginDrag();
    switch (state) {
    case Drag::None:
    case Drag::Pending: break;
    case Drag::Move:
        if (const auto point = meetPlane(ray, grabbed.point, up, reach)) dragTo(*point - grabbed.point);
        break;
    case Drag::Lift: dragTo(nearestOnLine(ray, grabbed.point, up) - grabbed.point); break;
    case Drag::Resize: resize(ray); break;
    case Drag::DrawBox:
        hasDrawn = hasDrawn || length(mouse - grabbedAt) > dragThreshold;
        if (!hasDrawn) break;
        if (const auto point = meetPlane(ray, grabbed.point, up, reach)) grabbedBounds = boxTo(*point);
        preview.box = grabbedBounds;
        break;
    case Drag::Shape: shape(ray, seconds); break;
    }
}

void Viewport::beginDrag()
{
    const ImGuiIO& io = ImGui::GetIO();
    state = Drag::Move;
    if (io.KeyAlt || io.KeyCtrl) state = Drag::Lift; // desktops may keep Alt for themselves
    if (io.KeyShift && editor.hasBrush()) state = Drag::Resize;
}

/// So far away from where it was, on the grid.
void Viewport::dragTo(const Vector3<double>& offset)
{
    const Vector3<double> place = snap(grabbedBounds.minimum + offset, editor.grid);
    Vector3<double> wanted = place - grabbedBounds.minimum;
    // Only along what it is dragged along: what was off the grid stays so.
    if (state == Drag::Move) wanted.z = 0;
    if (state == Drag::Lift) wanted.x = wanted.y = 0;
    if (wanted == moved) return;
    if (editor.moveSelection(wanted - moved, dragNumber)) moved = wanted;
}

void Viewport::resize(const Ray& ray)
{
    const Vector3<double>& normal = grabbed.normal;
    const double way = dot(nearestOnLine(ray, grabbed.point, normal) - grabbed.point, normal);
    Bounds box = grabbedBounds;
    const double least = std::max(editor.grid, smallestBrush);
    const auto pull = [&](double& coordinate, double direction, double opposite) {
        coordinate = snap(coordinate + way * direction, editor.grid);
        if ((coordinate - opposite) * direction < least) coordinate = opposite + direction * least;
    };
    if (normal.x > 0.5) pull(box.maximum.x, 1, box.minimum.x);
    if (normal.x < -0.5) pull(box.minimum.x, -1, box.maximum.x);
    if (normal.y > 0.5) pull(box.maximum.y, 1, box.minimum.y);
    if (normal.y < -0.5) pull(box.minimum.y, -1, box.maximum.y);
    if (normal.z > 0.5) pull(box.maximum.z, 1, box.minimum.z);
    if (normal.z < -0.5) pull(box.minimum.z, -1, box.maximum.z);
    bool isBox = false;
    editor.edit([&](MapDocument& changed) { isBox = resizeBrush(changed, editor.getSelection().number, box); },
                dragNumber);
    if (!isBox) editor.say("Only boxes can be resized");
}

void Viewport::shape(const Ray& ray, float seconds)
{
    const Hit hit = pick(landOf(editor.getDocument()), ray);
    if (hit.kind != Hit::Kind::Terrain) return;
    Vector3<double> at = hit.point;
    if (editor.terrainBrush.change == TerrainChange::Flatten) at.z = grabbed.point.z;
    editor.edit([&](MapDocument& changed) { shapeTerrain(changed, editor.terrainBrush, at, seconds); }, dragNumber);
}

Bounds Viewport::boxTo(const Vector3<double>& point) const
{
    const Vector3<double> end = snap(point, editor.grid);
    const double least = editor.grid > 0 ? editor.grid : 0.1;
    Bounds box = {{std::min(grabbed.point.x, end.x), std::min(grabbed.point.y, end.y), grabbed.point.z},
                  {std::max(grabbed.point.x, end.x), std::max(grabbed.point.y, end.y),
                   grabbed.point.z + std::max(editor.boxHeight, smallestBrush)}};
    box.maximum.x = std::max(box.maximum.x, box.minimum.x + least);
    box.maximum.y = std::max(box.maximum.y, box.minimum.y + least);
    return box;
}

void Viewport::release()
{
    if (state == Drag::DrawBox && hasDrawn) addDrawnBox();
    if (state != Drag::None) editor.endStep();
    state = Drag::None;
}

void Viewport::addDrawnBox()
{
    bool isAdded = false;
    editor.edit(
        [&](MapDocument& changed) { isAdded = addBox(changed, grabbedBounds, editor.texture, editor.textureScale); });
    if (isAdded)
        editor.selectBrush(editor.getDocument().brushes.size() - 1);
    else
        editor.say("The box is too large, too small or too far away");
}

void Viewport::showSelection()
{
    if (!editor.hasBrush() && !editor.hasEntity()) return;
    const Bounds bounds = editor.getSelectionBounds();
    const Vector3<double> middle = (bounds.minimum + bounds.maximum) * 0.5;
    const auto distance = static_cast<float>(length(bounds.maximum - bounds.minimum) * 1.2 + 2);
    const Vector3<float> point = {static_cast<float>(middle.x), static_cast<float>(middle.y),
                                  static_cast<float>(middle.z)};
    camera.position = point - camera.getForward() * distance;
}
