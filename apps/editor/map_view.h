#pragma once

#include "editor.h"
#include "texture_shelf.h"
#include "viewpoint.h"

#include <map>
#include <unordered_map>

/// A rectangle of the screen, in pixels from the upper left.
struct ScreenArea {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int screenHeight = 0;
};

/// What an edit in progress shows.
struct Preview {
    std::optional<Bounds> box;
    std::optional<Vector3<double>> circleMiddle;
    double circleRadius = 0;
};

/// The camera's matrix from world to clip coordinates for a view of that shape.
Matrix4<float> calculateEditorProjection(const Viewpoint& camera, int width, int height);

/// The ray through a point of the screen.
Ray calculateRay(const Viewpoint& camera, const ScreenArea& area, const Vector2<float>& pixel);

/// Draws the document into the bound target.
class MapView {
public:
    /// Throws Failure, naming the file, when a program is missing.
    MapView(RenderDevice& device, GameData& data, TextureShelf& textures);

    void draw(const Editor& editor, const Viewpoint& camera, const ScreenArea& area, const Preview& preview);

private:
    struct Corners {
        std::vector<Vector3<float>> positions;
        std::vector<Vector2<float>> textureCoordinates;
        std::vector<Vector3<float>> normals;
    };
    using CornersByTexture = std::map<std::string, Corners>;

    struct Batch {
        std::string texture;
        OwnedBuffer buffer;
    };

    /// The triangles of one brush, kept as long as the brush is.
    struct Shape {
        std::shared_ptr<const PlacedBrush> brush;
        CornersByTexture corners;
    };

    void update(const MapDocument& document);
    const CornersByTexture& findShape(const MapDocument& document, const std::shared_ptr<const PlacedBrush>& brush);
    void makeBatches(const CornersByTexture& corners, std::vector<Batch>& batches);
    void drawBatches(const std::vector<Batch>& batches);
    void drawGrid(const Editor& editor, const Viewpoint& camera);
    void drawBox(const Bounds& box, const Vector4<float>& color);
    void drawSelection(const Editor& editor);
    void drawEntities(const MapDocument& document);
    void drawPreview(const Preview& preview);

    RenderDevice& device;
    TextureShelf& textures;
    Program* surfaceProgram;
    Program* flatProgram;
    OwnedBuffer gridLines;
    MapDocument shown;
    std::unordered_map<const PlacedBrush*, Shape> shapes;
    std::vector<Batch> brushBatches;
    std::vector<Batch> terrainBatches;
};
