#include "map_texture.h"

#include <cmath>

Vector2<float> calculateTextureCoordinate(const Vector3<double>& point, const Vector3<double>& normal, double scale)
{
    const double x = std::fabs(normal.x);
    const double y = std::fabs(normal.y);
    const double z = std::fabs(normal.z);
    double u = 0;
    double v = 0;
    if (z >= x && z >= y) {
        u = point.x;
        v = normal.z > 0 ? -point.y : point.y;
    } else if (x >= y) {
        u = normal.x > 0 ? point.y : -point.y;
        v = -point.z;
    } else {
        u = normal.y > 0 ? -point.x : point.x;
        v = -point.z;
    }
    return {static_cast<float>(u * scale), static_cast<float>(v * scale)};
}
