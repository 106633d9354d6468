#pragma once

/// @file
/// Matrices of three and of four rows, and the two of them that models and cameras need.

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

/// Nine components stored row by row: element (row, column), both counted from 0, lies at index 3 * row + column.
/// Used with column vectors: matrix * vector. A default-constructed matrix is the identity. A view matrix holds the
/// three view vectors as its rows.
template <class T>
struct Matrix3 {
    /// Row by row.
    T elements[9] = {T(1), T(0), T(0), T(0), T(1), T(0), T(0), T(0), T(1)};

    constexpr Matrix3() = default;

    /// Row by row.
    constexpr Matrix3(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
        : elements{m00, m01, m02, m10, m11, m12, m20, m21, m22}
    {}

    /// The matrix that takes v to (dot(a, v), dot(b, v), dot(c, v)).
    static constexpr Matrix3 fromRows(const Vector3<T>& a, const Vector3<T>& b, const Vector3<T>& c)
    {
        return {a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z};
    }

    /// An element, both counted from 0; not checked.
    /// @{
    constexpr T& operator()(int row, int column) { return elements[3 * row + column]; }
    constexpr const T& operator()(int row, int column) const { return elements[3 * row + column]; }
    /// @}

    /// From 0 to 2; not checked.
    constexpr Vector3<T> getRow(int row) const
    {
        return {elements[3 * row], elements[3 * row + 1], elements[3 * row + 2]};
    }

    /// The matrix with rows and columns exchanged: of a rotation the inverse.
    constexpr Matrix3 transposed() const
    {
        const T* e = elements;
        return {e[0], e[3], e[6], e[1], e[4], e[7], e[2], e[5], e[8]};
    }

    /// a * b applies b first.
    constexpr friend Matrix3 operator*(const Matrix3& a, const Matrix3& b)
    {
        Matrix3 product;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                product(row, column) = a(row, 0) * b(0, column) + a(row, 1) * b(1, column) + a(row, 2) * b(2, column);
        return product;
    }

    /// The vector as a column.
    constexpr friend Vector3<T> operator*(const Matrix3& m, const Vector3<T>& v)
    {
        return {dot(m.getRow(0), v), dot(m.getRow(1), v), dot(m.getRow(2), v)};
    }

    /// Exact, element by element.
    /// @{
    constexpr friend bool operator==(const Matrix3& a, const Matrix3& b)
    {
        for (int i = 0; i < 9; ++i)
            if (a.elements[i] != b.elements[i]) return false;
        return true;
    }
    constexpr friend bool operator!=(const Matrix3& a, const Matrix3& b) { return !(a == b); }
    /// @}
};

/// Sixteen components stored row by row: element (row, column), both counted from 0, lies at index 4 * row + column.
/// Used with column vectors: matrix * point, so a translation stands in the last column and a * b applies b first.
/// A default-constructed matrix is the identity.
///
/// Shaders receive the floats in this order without transposition, hence see the transposed matrix: they multiply with
/// the vector on the left, `vec4(position, 1.0) * matrix`.
template <class T>
struct Matrix4 {
    /// Row by row.
    T elements[16] = {T(1), T(0), T(0), T(0), T(0), T(1), T(0), T(0), T(0), T(0), T(1), T(0), T(0), T(0), T(0), T(1)};

    constexpr Matrix4() = default;

    /// Row by row.
    constexpr Matrix4(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23, T m30, T m31,
                      T m32, T m33)
        : elements{m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33}
    {}

    /// The rotation (or any 3 x 3 map) in the upper left, without translation.
    explicit constexpr Matrix4(const Matrix3<T>& m)
        : elements{m.elements[0], m.elements[1], m.elements[2], T(0), m.elements[3], m.elements[4], m.elements[5], T(0),
                   m.elements[6], m.elements[7], m.elements[8], T(0), T(0),          T(0),          T(0),          T(1)}
    {}

    /// Maps p to p + offset.
    static constexpr Matrix4 translation(const Vector3<T>& offset)
    {
        Matrix4 m;
        m(0, 3) = offset.x;
        m(1, 3) = offset.y;
        m(2, 3) = offset.z;
        return m;
    }

    /// Maps p to p multiplied by the factors, component by component.
    static constexpr Matrix4 scaling(const Vector3<T>& factors)
    {
        Matrix4 m;
        m(0, 0) = factors.x;
        m(1, 1) = factors.y;
        m(2, 2) = factors.z;
        return m;
    }

    /// An element, both counted from 0; not checked.
    /// @{
    constexpr T& operator()(int row, int column) { return elements[4 * row + column]; }
    constexpr const T& operator()(int row, int column) const { return elements[4 * row + column]; }
    /// @}

    /// From 0 to 3; not checked.
    constexpr Vector4<T> getRow(int row) const
    {
        return {elements[4 * row], elements[4 * row + 1], elements[4 * row + 2], elements[4 * row + 3]};
    }

    /// The matrix with rows and columns exchanged.
    constexpr Matrix4 transposed() const
    {
        Matrix4 m;
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column) m(row, column) = (*this)(column, row);
        return m;
    }

    /// a * b applies b first.
    constexpr friend Matrix4 operator*(const Matrix4& a, const Matrix4& b)
    {
        Matrix4 product;
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                product(row, column) = a(row, 0) * b(0, column) + a(row, 1) * b(1, column) + a(row, 2) * b(2, column) +
                                       a(row, 3) * b(3, column);
        return product;
    }

    /// The vector as a column; the result is not divided by its w.
    constexpr friend Vector4<T> operator*(const Matrix4& m, const Vector4<T>& v)
    {
        return {dot(m.getRow(0), v), dot(m.getRow(1), v), dot(m.getRow(2), v), dot(m.getRow(3), v)};
    }

    /// Exact, element by element.
    /// @{
    constexpr friend bool operator==(const Matrix4& a, const Matrix4& b)
    {
        for (int i = 0; i < 16; ++i)
            if (a.elements[i] != b.elements[i]) return false;
        return true;
    }
    constexpr friend bool operator!=(const Matrix4& a, const Matrix4& b) { return !(a == b); }
    /// @}
};

/// Copies row 0 of m into a, row 1 into b and row 2 into c. Of an unrotated camera these are right (+x), forward (+y)
/// and up (+z).
XUM_API void viewVectorsFromViewMatrix(Vector3<float>& a, Vector3<float>& b, Vector3<float>& c,
                                       const Matrix3<float>& m);

/// S * T with the translation T by position and S = diag(scale, 1): maps p to scale * (p + position), component by
/// component. Kept on purpose: the translation is scaled too, so a caller that wants "scale, then place" divides the
/// position by the scale. The second argument has no effect.
XUM_API Matrix4<float> calculateMeshMatrix(const Vector3<float>& position, const Vector3<float>& ignored,
                                           const Vector3<float>& scale);

static_assert(sizeof(Matrix3<float>) == 36 && std::is_standard_layout_v<Matrix3<float>>);
static_assert(sizeof(Matrix4<float>) == 64 && std::is_standard_layout_v<Matrix4<float>>);
static_assert(std::is_trivially_copyable_v<Matrix3<float>> && std::is_trivially_copyable_v<Matrix4<float>>);
