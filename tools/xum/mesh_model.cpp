#include "mesh_model.h"

int Model::addVertex(const Vector3<float>& position, const Vector2<float>* textureCoordinate)
{
    if (positions.size() == largestCount)
        throw ModelProblem("has more than " + std::to_string(largestCount) + " vertices");
    positions.push_back(position);
    textureCoordinates.push_back(textureCoordinate == nullptr ? Vector2<float>() : *textureCoordinate);
    if (textureCoordinate != nullptr) ++textureCoordinateCount;
    return static_cast<int>(positions.size() - 1);
}

void Model::addTriangle(int a, int b, int c)
{
    if (indexes.size() + 3 > largestCount)
        throw ModelProblem("has more than " + std::to_string(largestCount / 3) + " triangles");
    indexes.insert(indexes.end(), {a, b, c});
}

void Model::note(const std::string& text)
{
    if (noted.insert(text).second) notes.push_back(text);
}

// ---- formats whose loaders are not there --------------------------------------------------------------------------

#ifndef XUM_HAS_OBJ
void readObjModel(const std::string& /*text*/, Model& /*out*/)
{
    throw ModelProblem("this xum was built without tinyobjloader, and reads no OBJ files");
}
#endif

#ifndef XUM_HAS_GLTF
void readGltfModel(const std::string& /*bytes*/, const std::string& /*directory*/, Model& /*out*/)
{
    throw ModelProblem("this xum was built without tinygltf, and reads no glTF files");
}
#endif
