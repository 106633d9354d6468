#pragma once

/// @file
/// Bitmap fonts: how they are loaded, measured and drawn.

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>
#include <xum/render/render_types.h>

#include <cstddef>
#include <string>
#include <vector>

class Image;
class RenderDevice;
class ResourceManager;
class Texture;
class VertexBuffer;

/// Text from one picture that holds a grid of equal cells, one for each character code from a first one up to 127, row
/// by row. Bytes of 128 and above are characters without a width that are not printed. Positions are pixels, with y
/// downwards.
///
/// The draw functions write six vertices for each printed character (codes 33 to 127) into a buffer of the font and
/// draw them with the program that is current. Their attributes are VertexAttribute::Position, TextureCoordinate and,
/// where a colour is given, Color: list all four names for such a program. The texture is bound to unit 0. One font
/// cannot be drawn by two threads at once, and nothing is drawn on a device that makes no buffers.
///
/// At scale 1 each pixel shows one pixel of the picture, exactly. `centerX` centres the text around x, which is its
/// left edge otherwise; `centerY` centres it around y, otherwise its top.
class XUM_API ImageFont {
public:
    ImageFont(const ImageFont&) = delete;
    ImageFont& operator=(const ImageFont&) = delete;
    virtual ~ImageFont();

    /// From one line to the next: the height of a cell and 1.
    int getHeight() const { return cellHeight + 1; }

    /// Between two characters.
    int getCharacterSpace() const { return 4; }

    /// 0 for a character that the font does not hold.
    int getCharacterWidth(int c) const { return c < 0 || c >= characterCount ? 0 : widths[c]; }

    /// Owned by the font; null when the device made none.
    Texture* getTexture() const { return texture; }

    /// Also binds the texture to unit 0. Anisotropic is a fatal error, see Texture::setFilter.
    void setFilter(RenderDevice* device, TextureFilter::Type filter);

    /// The width of the text: 4 + character width + 2 * spacing summed up over all characters, without the 4 after the
    /// last, multiplied by the scale and cut off. 0 for no text.
    int measure(const std::string& text, float scale, int spacing) const;

    /// Appends two triangles, unless the character is not printed. The left edge is at x; the edges on the left and on
    /// the right reach so far above and below y.
    void generateCharacter(std::vector<Vector3<float>>& positions, std::vector<Vector2<float>>& coordinates, int x,
                           int y, float scale, float leftHalfHeight, float rightHalfHeight, int character) const;

    /// In the colours of the picture, at scale 1.
    void draw(RenderDevice* device, int x, int y, const std::string& text, bool centerX, bool centerY);

    /// In the colours of the picture. The steps between characters are scaled, too.
    void drawScaled(RenderDevice* device, int x, int y, const std::string& text, float scale, bool centerX,
                    bool centerY);

    /// At scale 1. The colour, RGBA from 0 to 1, goes to the program with each vertex.
    void drawColored(RenderDevice* device, int x, int y, const std::string& text, const Vector4<float>& color,
                     bool centerX, bool centerY);

    /// With a black edge, one pixel wide, of the colour's alpha. The letters have the depth of the edge behind them: a
    /// depth test for less would hide them.
    void drawOutlined(RenderDevice* device, int x, int y, const std::string& text, const Vector4<float>& color,
                      bool centerX, bool centerY);

private:
    /// In texture coordinates.
    struct Rectangle {
        float left;
        float top;
        float right;
        float bottom;
    };

    /// How the picture is divided.
    struct Grid {
        int cellWidth;
        int cellHeight;
        int columns;
        int firstCharacter;
        bool trim;
    };

    /// The upper left corner of a text, and its scale.
    struct Place {
        float left;
        float top;
        float scale;
    };

    static constexpr int characterCount = 128;

    ImageFont(const Image& image, const Grid& grid);
    void addCharacter(const Image& image, const Grid& grid, int c);
    void createResources(RenderDevice& device, const Image& image);
    static ImageFont* load(RenderDevice* device, Image* loaded, const Grid& grid);

    Place findPlace(int x, int y, const std::string& text, float scale, bool centerX, bool centerY) const;
    std::size_t begin(const std::string& text, std::size_t copies);
    void writeText(const std::string& text, Place place, std::size_t firstVertex);
    void drawWritten(RenderDevice* device, VertexBuffer* target) const;

    /// @cond
    friend XUM_API ImageFont* loadImageFont(RenderDevice*, const std::string&, int, int, int, int, bool);
    friend XUM_API ImageFont* loadImageFontFromMemory(RenderDevice*, ResourceManager*, const std::string&, int, int,
                                                      int, int, bool);
    friend XUM_API void destroyImageFont(RenderDevice*, ImageFont*);
    /// @endcond

    int cellHeight;
    Texture* texture = nullptr;
    VertexBuffer* buffer = nullptr;       ///< of positions and texture coordinates
    VertexBuffer* secondBuffer = nullptr; ///< with colours, too
    Rectangle glyphs[characterCount] = {};
    int widths[characterCount] = {};

    // What is drawn next. They are kept from draw to draw for their memory.
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> coordinates;
    std::vector<Vector4<float>> colors;
};

/// Loads the picture (see loadImage) and makes the font with the device, which may be null: then it only measures.
/// `trim` narrows each character to the columns of its cell in which any alpha is not 0; a space is always
/// cellWidth - 5 wide. Null when the picture cannot be read or is empty, for less than one column, for cells that are
/// not between 1 and 2^24 pixels wide and high, and when memory runs out. The caller hands the font to
/// destroyImageFont.
XUM_API ImageFont* loadImageFont(RenderDevice* device, const std::string& fileName, int cellWidth, int cellHeight,
                                 int columns, int firstCharacter, bool trim);

/// loadImageFont with the picture's bytes from a resource manager.
XUM_API ImageFont* loadImageFontFromMemory(RenderDevice* device, ResourceManager* resources, const std::string& name,
                                           int cellWidth, int cellHeight, int columns, int firstCharacter, bool trim);

/// Before the device is destroyed. Null is ignored.
XUM_API void destroyImageFont(RenderDevice* device, ImageFont* font);
