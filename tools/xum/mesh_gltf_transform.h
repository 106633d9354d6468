#pragma once

#include <xum/geometry/vector.h>

namespace tinygltf {
class Node;
}

/// Three rows of a matrix for column vectors.
struct Affine {
    double rows[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

    friend Affine operator*(const Affine& a, const Affine& b);

    /// Of three coordinates.
    Vector3<float> apply(const double* point) const;

    bool isMirror() const;
};

/// From the node's own coordinates to those of its parent.
Affine transformOf(const tinygltf::Node& node);
