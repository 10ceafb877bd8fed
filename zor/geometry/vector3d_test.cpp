#include "zor/geometry/vector3d.h"

#include "zor/geometry/test_helpers.h"

namespace {

using namespace ZOR::test;

TEST(VectorTest, EqualityIsPerCoordinateWithoutDistance) {
    const V o(0, 0, 0);
    EXPECT_EQ(V::tol, 1e-7);
    EXPECT_TRUE(o == V(1e-7, -1e-7, 1e-7));  // all three at the bound
    EXPECT_FALSE(o == V(0, 0, 1.1e-7));
    EXPECT_TRUE(o != V(0.8e-5, 0.8e-5, 0));
    EXPECT_TRUE(o == V(kNan, 0, 0));  // only a difference above tol counts
    EXPECT_FALSE(V(0, kInf, 0).isValid());
}

TEST(VectorTest, ScalingKeepsZerosPositiveNormalizeAtTheTolerance) {
    const V v(0, 1, 0);
    const V neg = -v;
    EXPECT_THAT(Xyz(neg), ElementsAre(0, -1, 0));
    EXPECT_FALSE(std::signbit(neg.x) || std::signbit(neg.z));
    EXPECT_THAT(Xyz(v * kInf), ElementsAre(0, kInf, 0));
    EXPECT_THAT(Xyz(kNan * v), ElementsAre(0, IsNan(), 0));
}

TEST(VectorTest, CrossProductTransformAndRawSource) {
    EXPECT_THAT(Xyz(V(1, 2, 3) * V(4, 5, 6)), ElementsAre(-3, 6, -3));
    // A vector ignores the translation column but is still divided by w = x * m[3][0] + m[3][3].
    const double m[4][4] = {{0, -1, 0, 10}, {1, 0, 0, 20}, {0, 0, 1, 30}, {0.5, 0, 0, 1}};
    EXPECT_THAT(Xyz(V(2, 4, 6) * m), ElementsAre(-2, 1, 3));
    V r(7, 8, 9);
    r = static_cast<const double*>(nullptr);  // a missing source leaves the vector
    EXPECT_THAT(Xyz(r), ElementsAre(7, 8, 9));
    EXPECT_THAT(Xyz(V(5e-8, 0, 0).normalize()), ElementsAre(0, 0, 0));
    EXPECT_THAT(Xyz(V(1e-7, 0, 0).normalize()), ElementsAre(1, 0, 0));  // length == tol
    EXPECT_THAT(Xyz(V(kInf, 0, 0).normalize()), ElementsAre(0, 0, 0));
}

TEST(VectorTest, AngleToAndAngleInFullTurn) {
    EXPECT_THAT(V(1, 0, 0).angleTo(V(0, 0, 0)), IsNan());
    EXPECT_THAT(V(0, 0, 1e-8).angleTo(V(1, 0, 0)), IsNan());
    EXPECT_DOUBLE_EQ(V(1, 0, 0).angleTo(V(0, 0, 3)), kPi / 2);
    // Rounding puts this cosine just outside [-1, 1]; the angle is still exactly 0 or pi.
    const V p(0.1, 0.7, 0);
    EXPECT_EQ(ZOR::g_v_ang(p, p * 3.0), 0.0);
    EXPECT_EQ(p.angleTo(p * -3.0), kPi);
    EXPECT_EQ(ZOR::angle(V(0, 0, 0)), 0.0);
    EXPECT_EQ(ZOR::angle(V(1, -1e-30, 0)), 6.283185307179586);  // brought up, not left negative
}

TEST(VectorTest, ParallelAndOrthogonal) {
    EXPECT_TRUE(V(1, 2, 3).isParallelTo(V(-0.5, -1, -1.5)));
    EXPECT_FALSE(V(1, 0, 0).isParallelTo(V(1, 1e-6, 0)));
    EXPECT_FALSE(V(0, 0, 0).isParallelTo(V(1, 0, 0)));
    EXPECT_TRUE(V(0, 0, 0).isParallelTo(V(5e-8, 0, 0)));
    // The orthogonality bound is on the raw dot product: it depends on both lengths.
    EXPECT_TRUE(V(1, 0, 0).isOrthoTo(V(0.99e-9, 1, 0)));
    EXPECT_FALSE(V(1, 0, 0).isOrthoTo(V(1e-9, 1, 0)));
    EXPECT_FALSE(V(1000, 0, 0).isOrthoTo(V(1e-11, 1, 0)));
}

}  // namespace
