#pragma once

#include <cstdint>
#include <string>
#include <vector>

class BSPMesh;
class CompiledMap;

/// What is wrong with something, a line each. Of very many lines only the first are kept.
class MapProblems {
public:
    void add(const std::string& problem);

    /// With a last line that counts those that were left out.
    std::vector<std::string> getLines() const;

private:
    std::vector<std::string> lines;
    std::uint64_t leftOut = 0;
};

/// Looks for what no map maker should let pass: numbers that are none, planes whose normals have not the length 1,
/// brushes that are open or empty, polygons that are not flat and convex or lie outside the region of their leaf.
/// Leaves, and polygons in a leaf, count from 1 in the order of the file, brushes as leaves name them first.
void checkMesh(const BSPMesh& mesh, const std::string& name, MapProblems& problems);

/// Compares the lists of textures in the second text with the polygons. A text that is no configuration, or has no such
/// lists, is another tool's matter.
void checkTextureLists(const CompiledMap& map, MapProblems& problems);
