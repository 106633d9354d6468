#include "mesh_gltf_transform.h"

#include <tiny_gltf.h>

#include <cstddef>
#include <vector>

Affine operator*(const Affine& a, const Affine& b)
{
    Affine product;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
            product.rows[i][j] = a.rows[i][0] * b.rows[0][j] + a.rows[i][1] * b.rows[1][j] +
                                 a.rows[i][2] * b.rows[2][j] + (j == 3 ? a.rows[i][3] : 0);
    return product;
}

Vector3<float> Affine::apply(const double* point) const
{
    const auto row = [point](const double* r) {
        return static_cast<float>(r[0] * point[0] + r[1] * point[1] + r[2] * point[2] + r[3]);
    };
    return {row(rows[0]), row(rows[1]), row(rows[2])};
}

bool Affine::isMirror() const
{
    const double(&r)[3][4] = rows;
    return r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) - r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
               r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]) <
           0;
}

Affine transformOf(const tinygltf::Node& node)
{
    Affine all;
    if (node.matrix.size() == 16) { // column by column
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 4; ++j) all.rows[i][j] = node.matrix[j * 4 + i];
        return all;
    }
    const std::vector<double> still = {0, 0, 0, 1};
    const std::vector<double>& q = node.rotation.size() == 4 ? node.rotation : still;
    const double x = q[0];
    const double y = q[1];
    const double z = q[2];
    const double w = q[3];
    const double rotation[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                                   {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                                   {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j)
            all.rows[i][j] = rotation[i][j] * (node.scale.size() == 3 ? node.scale[j] : 1);
        if (node.translation.size() == 3) all.rows[i][3] = node.translation[i];
    }
    return all;
}
