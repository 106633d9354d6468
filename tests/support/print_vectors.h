#pragma once

#include <xum/geometry/vector.h>

#include <ostream>

// How test reports show vectors.

template <class T>
void PrintTo(const Vector2<T>& v, std::ostream* stream)
{
    *stream << "(" << v.x << ", " << v.y << ")";
}

template <class T>
void PrintTo(const Vector3<T>& v, std::ostream* stream)
{
    *stream << "(" << v.x << ", " << v.y << ", " << v.z << ")";
}

template <class T>
void PrintTo(const Vector4<T>& v, std::ostream* stream)
{
    *stream << "(" << v.x << ", " << v.y << ", " << v.z << ", " << v.w << ")";
}
