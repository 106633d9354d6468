#pragma once

#include <xum/geometry/vector.h>

#include <cstddef>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

/// Why a model cannot be imported, without the name of its file.
class ModelProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    ModelProblem(const std::string& part, const std::string& reason) : std::runtime_error(part + ": " + reason) {}
};

/// The triangles of a model as its file has them, before they are turned and scaled. Texture coordinates have v = 0 at
/// the top of the picture. What exceeds the limit is a ModelProblem.
class Model {
public:
    explicit Model(int largestCount = std::numeric_limits<int>::max())
        : largestCount(static_cast<std::size_t>(largestCount))
    {}

    /// Its index; null for a vertex that has no texture coordinate.
    int addVertex(const Vector3<float>& position, const Vector2<float>* textureCoordinate);

    void addTriangle(int a, int b, int c);

    /// Something that was left out. Told once, however often it is noted.
    void note(const std::string& text);

    const std::vector<Vector3<float>>& getPositions() const { return positions; }
    std::vector<Vector3<float>>& getPositions() { return positions; }

    /// One for each position, zero where there was none.
    const std::vector<Vector2<float>>& getTextureCoordinates() const { return textureCoordinates; }

    const std::vector<int>& getIndexes() const { return indexes; }
    const std::vector<std::string>& getNotes() const { return notes; }

    /// Of the vertices.
    std::size_t countTextureCoordinates() const { return textureCoordinateCount; }

private:
    std::size_t largestCount;
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::size_t textureCoordinateCount = 0;
    std::vector<int> indexes;
    std::vector<std::string> notes;
    std::set<std::string> noted;
};

/// Fills the model from the text of an OBJ file.
void readObjModel(const std::string& text, Model& out);

/// Fills the model from a glTF file, be it text or binary; other files that it names lie in the directory or below.
void readGltfModel(const std::string& bytes, const std::string& directory, Model& out);
