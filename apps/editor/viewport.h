#pragma once

#include "map_view.h"

class Gui;
class InputDevice;

/// What the mouse does in the picture of the map. With the right button it looks around while W A S D, Q and E fly;
/// with the left one it does what the tool does:
/// - Select: chooses; dragging moves along the ground, with Alt or Ctrl up and down, with Shift the side that was
/// clicked.
/// - Box: draws the foot of a new box. - Terrain: shapes the land. - Object: places one.
class Viewport {
public:
    Viewport(Editor& editor, InputDevice& input);

    /// Once a frame, between Gui::begin and Gui::draw.
    void update(const Gui& gui, const ScreenArea& area, double cameraSpeed, double mouseSpeed, float seconds);

    const Viewpoint& getCamera() const { return camera; }
    void setCamera(const Viewpoint& newCamera) { camera = newCamera; }

    /// Flies to where the selection fills the picture.
    void showSelection();

    const Preview& getPreview() const { return preview; }

private:
    enum class Drag : int { None, Pending, Move, Lift, Resize, DrawBox, Shape };

    void fly(double cameraSpeed, double mouseSpeed, float seconds);
    void point(const Ray& ray);
    void press(const Ray& ray, const Vector2<float>& mouse);
    void placeObject();
    void drag(const Ray& ray, const Vector2<float>& mouse, float seconds);
    void release();
    void addDrawnBox();
    void beginDrag();
    void dragTo(const Vector3<double>& offset);
    void resize(const Ray& ray);
    void shape(const Ray& ray, float seconds);
    Bounds boxTo(const Vector3<double>& point) const;

    Editor& editor;
    InputDevice& input;
    Viewpoint camera;
    Preview preview;
    Drag state = Drag::None;
    Hit grabbed;                   ///< where the button went down
    Vector2<float> grabbedAt;      ///< on the screen
    Bounds grabbedBounds;          ///< of the selection then
    Vector3<double> moved;         ///< so far
    bool hasDrawn = false;         ///< a box: a click alone makes none
    int dragNumber = 0;            ///< one undo step each
    std::uint64_t seenVersion = 0; ///< of the editor: when others change something, a drag is over
};
