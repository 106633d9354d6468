#pragma once

#include "editor.h"
#include "picture_space.h"
#include "texture_shelf.h"

#include <map>
#include <unordered_map>

/// What an edit in progress shows.
struct Preview {
    std::optional<Bounds> box;
    std::optional<Vector3<double>> circleMiddle;
    double circleRadius = 0;
    Hit pointedAt; ///< what a click would select
};

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
    void updateBrushes(const MapDocument& document);
    const CornersByTexture& findShape(const MapDocument& document, const std::shared_ptr<const PlacedBrush>& placed);
    void makeBatches(const CornersByTexture& corners, std::vector<Batch>& batches);
    void drawBatches(const std::vector<Batch>& batches);
    void drawGrid(const Editor& editor, const Viewpoint& camera);
    void drawBox(const Bounds& box, const Vector4<float>& color);
    void drawOutline(const MapDocument& document, const Hit& hit, const Vector4<float>& color);
    void drawLines(const std::vector<Vector3<float>>& ends, const Vector4<float>& color);
    void drawEntities(const MapDocument& document);
    void drawPreview(const Preview& preview);

    RenderDevice& device;
    TextureShelf& textures;
    Program* surfaceProgram;
    Program* flatProgram;
    OwnedBuffer gridLines;
    MapDocument shown;
    std::uint64_t shownVersion = 0;
    std::unordered_map<const PlacedBrush*, Shape> shapes;
    std::vector<Batch> brushBatches;
    std::vector<Batch> terrainBatches;
};
