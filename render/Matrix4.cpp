#include "render/Matrix4.h"

namespace orbel {

namespace {

// Determinant of the 3 x 3 matrix that is left without row `skipRow` and column `skipColumn`.
double minorOf(const Vx_Matrix4& a, int skipRow, int skipColumn) {
    double d[3][3];
    for (int row = 0, i = 0; row < 4; ++row) {
        if (row == skipRow) {
            continue;
        }
        for (int column = 0, j = 0; column < 4; ++column) {
            if (column != skipColumn) {
                d[i][j++] = a.m[row][column];
            }
        }
        ++i;
    }
    return d[0][0] * (d[1][1] * d[2][2] - d[1][2] * d[2][1]) -
           d[0][1] * (d[1][0] * d[2][2] - d[1][2] * d[2][0]) +
           d[0][2] * (d[1][0] * d[2][1] - d[1][1] * d[2][0]);
}

double cofactor(const Vx_Matrix4& a, int row, int column) {
    const double minor = minorOf(a, row, column);
    return (row + column) % 2 == 0 ? minor : -minor;
}

} // namespace

void IdentityMatrix4(Vx_Matrix4* matrix) {
    *matrix = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}

void MultiplyMatrix4(const Vx_Matrix4* a, const Vx_Matrix4* b, Vx_Matrix4* out) {
    Vx_Matrix4 product;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            product.m[i][j] = a->m[i][0] * b->m[0][j] + a->m[i][1] * b->m[1][j] +
                              a->m[i][2] * b->m[2][j] + a->m[i][3] * b->m[3][j];
        }
    }
    *out = product;
}

void InverseMatrix4(const Vx_Matrix4* matrix, Vx_Matrix4* out) {
    const Vx_Matrix4 a = *matrix;
    double determinant = 0.0;
    for (int j = 0; j < 4; ++j) {
        determinant += a.m[0][j] * cofactor(a, 0, j);
    }
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            out->m[j][i] = cofactor(a, i, j) / determinant;
        }
    }
}

int CmpMatrix(const Vx_Matrix4* a, const Vx_Matrix4* b) {
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            if (!(a->m[i][j] == b->m[i][j])) {
                return 0;
            }
        }
    }
    return 1;
}

void BuildRotateXMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angle) {
    const double s = host->math_sin(angle);
    const double c = host->math_cos(angle);
    *matrix = {{{1, 0, 0, 0}, {0, c, s, 0}, {0, -s, c, 0}, {0, 0, 0, 1}}};
}

void BuildRotateYMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angle) {
    const double s = host->math_sin(angle);
    const double c = host->math_cos(angle);
    *matrix = {{{c, 0, -s, 0}, {0, 1, 0, 0}, {s, 0, c, 0}, {0, 0, 0, 1}}};
}

void BuildRotateZMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angle) {
    const double s = host->math_sin(angle);
    const double c = host->math_cos(angle);
    *matrix = {{{c, s, 0, 0}, {-s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}

void BuildRotateXYMatrix(PluginHost_API* host, Vx_Matrix4* matrix, double angleX, double angleY) {
    Vx_Matrix4 aboutY;
    BuildRotateXMatrix(host, matrix, angleX);
    BuildRotateYMatrix(host, &aboutY, angleY);
    MultiplyMatrix4(matrix, &aboutY, matrix);
}

void rotateZYX(PluginHost_API* host, Vx_Matrix4* matrix, const Vx_Vector3& rotation) {
    Vx_Matrix4 turn;
    BuildRotateZMatrix(host, &turn, rotation.z);
    MultiplyMatrix4(matrix, &turn, matrix);
    BuildRotateYMatrix(host, &turn, rotation.y);
    MultiplyMatrix4(matrix, &turn, matrix);
    BuildRotateXMatrix(host, &turn, rotation.x);
    MultiplyMatrix4(matrix, &turn, matrix);
}

void BuildTranformMatrix(PluginHost_API* host, Vx_Matrix4* matrix, const Vx_Vector3& anchor,
                         const Vx_Vector3& translation, const Vx_Vector3& rotation, int order) {
    IdentityMatrix4(matrix);
    addTranslation(matrix, order == 0 ? translation - anchor - anchor : -anchor);
    rotateZYX(host, matrix, rotation);
    addTranslation(matrix, order == 0 ? anchor : translation);
}

void addTranslation(Vx_Matrix4* matrix, const Vx_Vector3& offset) {
    matrix->m[3][0] += offset.x;
    matrix->m[3][1] += offset.y;
    matrix->m[3][2] += offset.z;
}

} // namespace orbel
