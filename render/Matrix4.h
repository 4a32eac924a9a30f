#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// A 4 x 4 matrix of doubles, row-major. Points are row vectors multiplied on the left, so the
/// translation stands in the last row.
struct Vx_Matrix4 {
    double m[4][4] = {};
};

struct Vx_Point4 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 0.0;
};

/// Three components of a position, a displacement or a rotation (radians, about x, y and z).
struct Vx_Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend Vx_Vector3 operator*(const Vx_Vector3& v, double factor) {
        return {v.x * factor, v.y * factor, v.z * factor};
    }
    friend Vx_Vector3 operator-(const Vx_Vector3& a, const Vx_Vector3& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend Vx_Vector3 operator-(const Vx_Vector3& v) { return {-v.x, -v.y, -v.z}; }
};

void IdentityMatrix4(Vx_Matrix4* matrix);
/// `out` = A x B; `out` may be A or B.
void MultiplyMatrix4(const Vx_Matrix4* a, const Vx_Matrix4* b, Vx_Matrix4* out);
/// `out` = p x M, all four components, without a division by w.
inline void TransformPoint4(const Vx_Point4* p, const Vx_Matrix4* matrix, Vx_Point4* out) {
    const auto& m = matrix->m;
    const Vx_Point4 in = *p;
    const auto column = [&](int j) {
        return in.x * m[0][j] + in.y * m[1][j] + in.z * m[2][j] + in.w * m[3][j];
    };
    *out = {column(0), column(1), column(2), column(3)};
}
/// The full inverse, from cofactors; a singular matrix gives infinities and NaNs. `out` may alias.
void InverseMatrix4(const Vx_Matrix4* matrix, Vx_Matrix4* out);
/// Non-zero when all sixteen elements are equal; a NaN never is.
int CmpMatrix(const Vx_Matrix4* a, const Vx_Matrix4* b);

// Rotations by `angle` radians, with the host's sine and cosine.
void BuildRotateXMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angle);
void BuildRotateYMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angle);
void BuildRotateZMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angle);
/// About x first, then about y.
void BuildRotateXYMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angleX, double angleY);
/// `matrix` = `matrix` x Rz x Ry x Rx.
void rotateZYX(PluginHost_API* host, Vx_Matrix4* matrix, const Vx_Vector3& rotation);

/// The layer transform (the misspelt name is meant): rotation about `anchor`, about z, then y, then
/// x. With `order` not 0 ("Rotate Translate") the anchor then moves to `translation`; with 0
/// ("Translate Rotate") the offset from anchor to translation comes before the rotation.
void BuildTranformMatrix(PluginHost_API* host, Vx_Matrix4* matrix, const Vx_Vector3& anchor,
                         const Vx_Vector3& translation, const Vx_Vector3& rotation, int order);

/// Adds to the translation row.
void addTranslation(Vx_Matrix4* matrix, const Vx_Vector3& offset);

} // namespace orbel
