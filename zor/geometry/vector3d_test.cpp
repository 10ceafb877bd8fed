#include "zor/geometry/vector3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "zor/geometry/point3d.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kQuietNan = std::numeric_limits<double>::quiet_NaN();

void ExpectVector(const CZorVector3d& v, double x, double y, double z) {
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

TEST(VectorTest, EqualityIsPerCoordinateWithoutDistance) {
    const CZorVector3d o(0, 0, 0);
    EXPECT_EQ(CZorVector3d::tol, 1e-7);
    EXPECT_TRUE(o == CZorVector3d(1e-7, -1e-7, 1e-7));  // all three at the bound: still equal
    EXPECT_FALSE(o == CZorVector3d(0, 0, 1.1e-7));
    // The numbers that fail the point distance test fail the vector one on the coordinates.
    EXPECT_FALSE(o == CZorVector3d(0.8e-5, 0.8e-5, 0));
    // Only a difference above tol is unequal, so a NaN coordinate does not count.
    EXPECT_TRUE(o == CZorVector3d(kQuietNan, 0, 0));
    EXPECT_FALSE(o != CZorVector3d(kQuietNan, 0, 0));
}

TEST(VectorTest, ScalingKeepsZerosPositive) {
    const CZorVector3d v(0, 1, 0);
    const CZorVector3d doubled = v * 2.0;
    ExpectVector(doubled, 0, 2, 0);
    const CZorVector3d neg = -v;
    ExpectVector(neg, 0, -1, 0);
    EXPECT_FALSE(std::signbit(neg.x));
    EXPECT_FALSE(std::signbit(neg.z));
    const CZorVector3d by_inf = v * kInf;
    EXPECT_EQ(by_inf.x, 0.0);
    EXPECT_EQ(by_inf.y, kInf);
    const CZorVector3d by_nan = kQuietNan * v;
    EXPECT_EQ(by_nan.z, 0.0);
    EXPECT_TRUE(std::isnan(by_nan.y));
}

TEST(VectorTest, ArithmeticAndCrossProduct) {
    CZorVector3d a(1, 2, 3);
    const CZorVector3d b(4, 5, 6);
    ExpectVector(a + b, 5, 7, 9);
    ExpectVector(b - a, 3, 3, 3);
    ExpectVector(a * b, 2 * 6 - 3 * 5, 3 * 4 - 1 * 6, 1 * 5 - 2 * 4);
    ExpectVector(CZorVector3d(1, 0, 0) * CZorVector3d(0, 1, 0), 0, 0, 1);
    a *= b;
    ExpectVector(a, -3, 6, -3);
    ExpectVector(CZorVector3d(1, 2, 3).scale(CZorPoint3d(2, 0, -1)), 2, 0, -3);
    EXPECT_EQ(CZorVector3d(2, 3, 6).abs(), 7.0);
    const double raw[3] = {7, 8, 9};
    CZorVector3d r;
    r = raw;
    ExpectVector(r, 7, 8, 9);
    r = static_cast<const double*>(nullptr);
    ExpectVector(r, 7, 8, 9);
}

TEST(VectorTest, TransformIgnoresTranslationButNotW) {
    const double move[4][4] = {{1, 0, 0, 10}, {0, 1, 0, 20}, {0, 0, 1, 30}, {0, 0, 0, 1}};
    ExpectVector(CZorVector3d(1, 2, 3) * move, 1, 2, 3);
    const double w2[4][4] = {{0, -1, 0, 10}, {1, 0, 0, 20}, {0, 0, 1, 30}, {0, 0, 0, 2}};
    CZorVector3d v(2, 4, 6);
    v *= w2;
    ExpectVector(v, -2, 1, 3);
    // The perspective row still counts: w = 1 + x.
    const double persp[4][4] = {{1, 0, 0, 5}, {0, 1, 0, 5}, {0, 0, 1, 5}, {1, 0, 0, 1}};
    ExpectVector(CZorVector3d(1, 4, 8) * persp, 0.5, 2, 4);
}

TEST(VectorTest, NormalizeAtTheToleranceBoundary) {
    ExpectVector(CZorVector3d(0, 0, 0).normalize(), 0, 0, 0);
    ExpectVector(CZorVector3d(5e-8, 0, 0).normalize(), 0, 0, 0);
    ExpectVector(CZorVector3d(1e-7, 0, 0).normalize(), 1, 0, 0);  // length == tol normalises
    ExpectVector(CZorVector3d(kInf, 0, 0).normalize(), 0, 0, 0);
    ExpectVector(CZorVector3d(kQuietNan, 1, 0).normalize(), 0, 0, 0);
    const CZorVector3d v(0, 3, 4);
    ExpectVector(v.normal(), 0, 0.6, 0.8);
    ExpectVector(v, 0, 3, 4);
}

TEST(VectorTest, AngleTo) {
    EXPECT_TRUE(std::isnan(CZorVector3d(1, 0, 0).angleTo(CZorVector3d(0, 0, 0))));
    EXPECT_TRUE(std::isnan(CZorVector3d(0, 0, 1e-8).angleTo(CZorVector3d(1, 0, 0))));
    EXPECT_DOUBLE_EQ(CZorVector3d(1, 0, 0).angleTo(CZorVector3d(0, 0, 3)), kPi / 2);
    EXPECT_NEAR(CZorVector3d(1, 1, 0).angleTo(CZorVector3d(-2, -2, 0)), kPi, 1e-7);
    // For these vectors rounding puts the cosine just outside [-1, 1]; the clamp keeps the
    // angle exactly 0 or pi instead of NaN.
    const CZorVector3d p(0.1, 0.7, 0);
    EXPECT_EQ(p.angleTo(p), 0.0);
    EXPECT_EQ(ZOR::g_v_ang(p, p * 3.0), 0.0);
    EXPECT_EQ(p.angleTo(p * -3.0), kPi);
}

TEST(VectorTest, ParallelAndOrthogonal) {
    EXPECT_TRUE(CZorVector3d(1, 2, 3).isParallelTo(CZorVector3d(2, 4, 6)));
    EXPECT_TRUE(CZorVector3d(1, 2, 3).isParallelTo(CZorVector3d(-0.5, -1, -1.5)));
    EXPECT_FALSE(CZorVector3d(1, 0, 0).isParallelTo(CZorVector3d(1, 1e-6, 0)));
    EXPECT_FALSE(CZorVector3d(0, 0, 0).isParallelTo(CZorVector3d(1, 0, 0)));
    EXPECT_TRUE(CZorVector3d(0, 0, 0).isParallelTo(CZorVector3d(5e-8, 0, 0)));

    EXPECT_TRUE(CZorVector3d(1, 0, 0).isOrthoTo(CZorVector3d(0, 1, 0)));
    // The bound is on the raw dot product: it depends on both lengths.
    EXPECT_TRUE(CZorVector3d(1, 0, 0).isOrthoTo(CZorVector3d(0.99e-9, 1, 0)));
    EXPECT_FALSE(CZorVector3d(1, 0, 0).isOrthoTo(CZorVector3d(1e-9, 1, 0)));
    EXPECT_FALSE(CZorVector3d(1000, 0, 0).isOrthoTo(CZorVector3d(1e-11, 1, 0)));
}

TEST(VectorTest, Validity) {
    EXPECT_TRUE(CZorVector3d(1, 2, 3).isValid());
    EXPECT_FALSE(CZorVector3d(0, kInf, 0).isValid());
    EXPECT_FALSE(CZorVector3d(0, 0, kQuietNan).isValid());
}

TEST(VectorTest, FreeFunctions) {
    EXPECT_EQ(ZOR::angle(CZorVector3d(0, 0, 0)), 0.0);
    EXPECT_DOUBLE_EQ(ZOR::angle(CZorVector3d(-1, -1, 5)), 1.25 * kPi);
    const double near_full = ZOR::angle(CZorVector3d(1, -1e-30, 0));
    EXPECT_GT(near_full, 0.0);
    EXPECT_NEAR(near_full, 2 * kPi, 1e-15);
    const CZorVector3d p = ZOR::polar(kPi, 2);
    EXPECT_EQ(p.x, -2.0);
    EXPECT_NEAR(p.y, 0, 1e-15);
    EXPECT_EQ(p.z, 0.0);
    const double a[3] = {1, 2, 3}, b[3] = {4, -5, 6};
    EXPECT_EQ(ZOR::sprod(a, b), 12.0);
    const double c[3] = {2, 3, 6};
    EXPECT_EQ(ZOR::vabs(c), 7.0);
}

}  // namespace
