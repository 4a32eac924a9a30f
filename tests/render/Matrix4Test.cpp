#include "render/Matrix4.h"

#include "render/Units.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

using Point = std::array<double, 3>;

constexpr double QUARTER = PI / 2;
constexpr Vx_Vector3 NONE{0, 0, 0};

Point moved(const Point& p, const Vx_Matrix4& matrix) {
    const Vx_Point4 in{p[0], p[1], p[2], 1.0};
    Vx_Point4 out;
    TransformPoint4(&in, &matrix, &out);
    EXPECT_EQ(out.w, 1.0);
    return {out.x, out.y, out.z};
}

void expectNear(const Point& actual, const Point& expected) {
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(actual[i], expected[i], 1e-9) << "component " << i;
    }
}

void expectIdentity(const Vx_Matrix4& matrix) {
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(matrix.m[i / 4][i % 4], i % 5 == 0 ? 1.0 : 0.0, 1e-11) << i;
    }
}

class Matrix4 : public testing::Test {
protected:
    Vx_Matrix4 transform(const Vx_Vector3& anchor, const Vx_Vector3& translation,
                         const Vx_Vector3& rotation, int order) {
        Vx_Matrix4 matrix;
        BuildTranformMatrix(&m_host, &matrix, anchor, translation, rotation, order);
        return matrix;
    }

    test::BareHost m_host;
};

TEST_F(Matrix4, combinedRotationsKeepTheirOrder) {
    Vx_Matrix4 matrix;
    BuildRotateXYMatrix(&m_host, &matrix, QUARTER, QUARTER);
    expectNear(moved({0, 1, 0}, matrix), {1, 0, 0}); // x takes y to z, then y takes z to x
    IdentityMatrix4(&matrix);
    rotateZYX(&m_host, &matrix, {QUARTER, QUARTER, QUARTER});
    expectNear(moved({1, 0, 0}, matrix), {0, 0, 1});
    expectNear(moved({0, 1, 0}, matrix), {0, -1, 0});
}

TEST_F(Matrix4, inverseOfAFullMatrixAndOfASingularOne) {
    const Vx_Matrix4 full{{{2, 1, 0, 3}, {0, 1, 4, 1}, {1, 0, 2, 2}, {3, 1, 1, 1}}};
    Vx_Matrix4 inverse = full;
    InverseMatrix4(&inverse, &inverse); // in place
    Vx_Matrix4 product;
    MultiplyMatrix4(&full, &inverse, &product);
    expectIdentity(product);
    const Vx_Matrix4 singular{};
    InverseMatrix4(&singular, &inverse);
    EXPECT_FALSE(std::isfinite(inverse.m[0][0]));
}

TEST_F(Matrix4, productsMayAliasTheirFactors) {
    const Vx_Matrix4 a = transform(NONE, {1, 2, 3}, {0.1, 0.2, 0.3}, 1);
    const Vx_Matrix4 b = transform(NONE, {-4, 5, 6}, {1, 2, 3}, 1);
    Vx_Matrix4 expected;
    MultiplyMatrix4(&a, &b, &expected);
    Vx_Matrix4 left = a;
    MultiplyMatrix4(&left, &b, &left);
    EXPECT_NE(CmpMatrix(&left, &expected), 0);
    Vx_Matrix4 right = b;
    MultiplyMatrix4(&a, &right, &right);
    EXPECT_NE(CmpMatrix(&right, &expected), 0);
    expectNear(moved({7, 8, 9}, expected), moved(moved({7, 8, 9}, a), b));
}

TEST_F(Matrix4, comparisonIsExactAndNaNEqualsNothing) {
    Vx_Matrix4 a;
    IdentityMatrix4(&a);
    for (int i = 0; i < 16; ++i) {
        Vx_Matrix4 b = a;
        double& element = b.m[i / 4][i % 4];
        element = std::nextafter(element, 2.0);
        EXPECT_EQ(CmpMatrix(&a, &b), 0) << i;
        element = std::nan("");
        EXPECT_EQ(CmpMatrix(&b, &b), 0) << i;
    }
    EXPECT_NE(CmpMatrix(&a, &a), 0);
}

} // namespace
} // namespace orbel
