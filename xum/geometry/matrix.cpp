#include <xum/geometry/matrix.h>

void viewVectorsFromViewMatrix(Vector3<float>& a, Vector3<float>& b, Vector3<float>& c, const Matrix3<float>& m)
{
    a = m.getRow(0);
    b = m.getRow(1);
    c = m.getRow(2);
}

Matrix4<float> calculateMeshMatrix(const Vector3<float>& position, const Vector3<float>& /*ignored*/,
                                   const Vector3<float>& scale)
{
    return Matrix4<float>::scaling(scale) * Matrix4<float>::translation(position);
}
