#pragma once

#include "map_document.h"

struct Ray {
    Vector3<double> origin;
    Vector3<double> direction; ///< of length 1

    Vector3<double> at(double distance) const { return origin + direction * distance; }
};

/// What a ray meets.
struct Hit {
    enum class Kind : int { Nothing, Brush, Entity, Terrain };

    Kind kind = Kind::Nothing;
    std::size_t number = 0; ///< of the brush or entity
    std::size_t side = 0;   ///< of the brush
    double distance = 0;
    Vector3<double> point;
    Vector3<double> normal;
};

/// Half the size of the boxes that stand for entities.
constexpr double entityHalfSize = 0.3;

/// What a ray meets first. A ray that begins inside a brush does not meet it.
Hit pick(const MapDocument& document, const Ray& ray);

/// Where a ray meets a plane in front of it, at most `farthest` away.
std::optional<Vector3<double>> meetPlane(const Ray& ray, const Vector3<double>& point, const Vector3<double>& normal,
                                         double farthest);

/// The point of a line (through `point` along `axis`) that is nearest to the ray.
Vector3<double> nearestOnLine(const Ray& ray, const Vector3<double>& point, const Vector3<double>& axis);
