#pragma once

/// @file
/// Vectors of two, three and four components, and what is calculated with them. The components are stored in order
/// without padding: they are uploaded and written to files as they lie in memory. A default-constructed vector is zero.
/// World space is right-handed with z up; units are world units unless a declaration says otherwise.

#include <cmath>
#include <type_traits>

/// Two components: a size, or a place on a screen or a texture. Zero by default.
template <class T>
struct Vector2 {
    T x{}; ///< also u, or a width
    T y{}; ///< also v, or a height

    constexpr Vector2() = default;
    /// The components in their order.
    constexpr Vector2(T x, T y) : x(x), y(y) {}

    /// @name Operators
    /// @{

    /// Component by component; a number acts on each. Comparisons are exact.
    constexpr Vector2& operator+=(const Vector2& v) { return *this = {x + v.x, y + v.y}; }
    constexpr Vector2& operator-=(const Vector2& v) { return *this = {x - v.x, y - v.y}; }
    constexpr Vector2& operator*=(T s) { return *this = {x * s, y * s}; }
    constexpr Vector2& operator/=(T s) { return *this = {x / s, y / s}; }

    constexpr friend Vector2 operator+(Vector2 a, const Vector2& b) { return a += b; }
    constexpr friend Vector2 operator-(Vector2 a, const Vector2& b) { return a -= b; }
    constexpr friend Vector2 operator-(const Vector2& v) { return {-v.x, -v.y}; }
    constexpr friend Vector2 operator*(Vector2 v, T s) { return v *= s; }
    constexpr friend Vector2 operator*(T s, Vector2 v) { return v *= s; }
    constexpr friend Vector2 operator/(Vector2 v, T s) { return v /= s; }
    constexpr friend bool operator==(const Vector2& a, const Vector2& b) { return a.x == b.x && a.y == b.y; }
    constexpr friend bool operator!=(const Vector2& a, const Vector2& b) { return !(a == b); }
    /// @}
};

/// Three components: a place or a direction in the world. Zero by default.
template <class T>
struct Vector3 {
    T x{}; ///< in the world: to the right of an unturned camera
    T y{}; ///< in the world: forwards
    T z{}; ///< in the world: upwards

    constexpr Vector3() = default;
    /// The components in their order.
    constexpr Vector3(T x, T y, T z) : x(x), y(y), z(z) {}

    /// @name Operators
    /// @{

    /// Component by component; a number acts on each. Comparisons are exact.
    constexpr Vector3& operator+=(const Vector3& v) { return *this = {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3& operator-=(const Vector3& v) { return *this = {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3& operator*=(T s) { return *this = {x * s, y * s, z * s}; }
    constexpr Vector3& operator/=(T s) { return *this = {x / s, y / s, z / s}; }

    constexpr friend Vector3 operator+(Vector3 a, const Vector3& b) { return a += b; }
    constexpr friend Vector3 operator-(Vector3 a, const Vector3& b) { return a -= b; }
    constexpr friend Vector3 operator-(const Vector3& v) { return {-v.x, -v.y, -v.z}; }
    constexpr friend Vector3 operator*(Vector3 v, T s) { return v *= s; }
    constexpr friend Vector3 operator*(T s, Vector3 v) { return v *= s; }
    constexpr friend Vector3 operator/(Vector3 v, T s) { return v /= s; }
    constexpr friend bool operator==(const Vector3& a, const Vector3& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    constexpr friend bool operator!=(const Vector3& a, const Vector3& b) { return !(a == b); }
    /// @}
};

/// Four components: an RGBA colour, each from 0 to 1, or a homogeneous point. Zero by default.
template <class T>
struct Vector4 {
    T x{}; ///< also red
    T y{}; ///< also green
    T z{}; ///< also blue
    T w{}; ///< also alpha

    constexpr Vector4() = default;
    /// The components in their order.
    constexpr Vector4(T x, T y, T z, T w) : x(x), y(y), z(z), w(w) {}
    /// With a w of 1 a point for Matrix4, with 0 a direction, which is not translated.
    constexpr Vector4(const Vector3<T>& v, T w) : x(v.x), y(v.y), z(v.z), w(w) {}

    /// @name Operators
    /// @{

    /// Component by component; a number acts on each. Comparisons are exact.
    constexpr Vector4& operator+=(const Vector4& v) { return *this = {x + v.x, y + v.y, z + v.z, w + v.w}; }
    constexpr Vector4& operator-=(const Vector4& v) { return *this = {x - v.x, y - v.y, z - v.z, w - v.w}; }
    constexpr Vector4& operator*=(T s) { return *this = {x * s, y * s, z * s, w * s}; }
    constexpr Vector4& operator/=(T s) { return *this = {x / s, y / s, z / s, w / s}; }

    constexpr friend Vector4 operator+(Vector4 a, const Vector4& b) { return a += b; }
    constexpr friend Vector4 operator-(Vector4 a, const Vector4& b) { return a -= b; }
    constexpr friend Vector4 operator-(const Vector4& v) { return {-v.x, -v.y, -v.z, -v.w}; }
    constexpr friend Vector4 operator*(Vector4 v, T s) { return v *= s; }
    constexpr friend Vector4 operator*(T s, Vector4 v) { return v *= s; }
    constexpr friend Vector4 operator/(Vector4 v, T s) { return v /= s; }
    constexpr friend bool operator==(const Vector4& a, const Vector4& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
    }
    constexpr friend bool operator!=(const Vector4& a, const Vector4& b) { return !(a == b); }
    /// @}
};

/// The sum of the products of the components: between vectors of length 1 the cosine of their angle.
/// @{
template <class T>
constexpr T dot(const Vector2<T>& a, const Vector2<T>& b)
{
    return a.x * b.x + a.y * b.y;
}

template <class T>
constexpr T dot(const Vector3<T>& a, const Vector3<T>& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <class T>
constexpr T dot(const Vector4<T>& a, const Vector4<T>& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
}
/// @}

/// Right-handed: cross(x axis, y axis) is the z axis.
template <class T>
constexpr Vector3<T> cross(const Vector3<T>& a, const Vector3<T>& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// The product component by component.
template <class T>
constexpr Vector3<T> scale(const Vector3<T>& a, const Vector3<T>& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}

/// Euclidean length; T is a floating-point type.
/// @{
template <class T>
T length(const Vector2<T>& v)
{
    return std::sqrt(dot(v, v));
}

template <class T>
T length(const Vector3<T>& v)
{
    return std::sqrt(dot(v, v));
}

template <class T>
T length(const Vector4<T>& v)
{
    return std::sqrt(dot(v, v));
}
/// @}

/// The vector of length 1 in the same direction; the zero vector stays zero. The squares of the components must
/// neither overflow nor vanish: for floats, lengths from 1e-18 to 1e18.
/// @{
template <class T>
Vector2<T> normalize(const Vector2<T>& v)
{
    const T size = length(v);
    return size > T(0) ? v / size : v;
}

template <class T>
Vector3<T> normalize(const Vector3<T>& v)
{
    const T size = length(v);
    return size > T(0) ? v / size : v;
}

template <class T>
Vector4<T> normalize(const Vector4<T>& v)
{
    const T size = length(v);
    return size > T(0) ? v / size : v;
}
/// @}

static_assert(sizeof(Vector2<float>) == 8 && std::is_standard_layout_v<Vector2<float>>);
static_assert(sizeof(Vector3<float>) == 12 && std::is_standard_layout_v<Vector3<float>>);
static_assert(sizeof(Vector4<float>) == 16 && std::is_standard_layout_v<Vector4<float>>);
static_assert(std::is_trivially_copyable_v<Vector2<float>> && std::is_trivially_copyable_v<Vector3<float>> &&
              std::is_trivially_copyable_v<Vector4<float>>);
