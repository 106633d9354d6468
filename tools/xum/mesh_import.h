#pragma once

#include <string>

/// What to import, and how.
struct MeshImport {
    std::string model;
    std::string mesh;
    bool isYUp = true;
    float scale = 1;
    bool hasTextureCoordinates = true; // if the model has them
};

/// Makes a mesh file of a model. False when that failed, which has been reported; an older file stays then.
bool importMesh(const MeshImport& order);

/// Writes the mesh of createSphereMesh. The same.
bool writeSphere(int subdivisions, float radius, const std::string& mesh);
