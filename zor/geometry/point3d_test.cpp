#include "zor/geometry/point3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kQuietNan = std::numeric_limits<double>::quiet_NaN();

// Every test leaves the process-wide point tolerance as it found it.
class PointTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;
};

TEST(NanTest, HasAllBitsButTheSignSet) {
    const double v = ZOR::nan();
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    EXPECT_EQ(bits, 0x7FFFFFFFFFFFFFFFull);
    EXPECT_TRUE(std::isnan(v));
}

TEST_F(PointTest, EqualityIsEuclideanAndInclusive) {
    const CZorPoint3d o(0, 0, 0);
    EXPECT_EQ(CZorPoint3d::tol, 1e-5);
    EXPECT_TRUE(o == CZorPoint3d(1e-5, 0, 0));
    EXPECT_FALSE(o == CZorPoint3d(1.1e-5, 0, 0));
    // Each coordinate passes, the distance 1.13e-5 does not.
    EXPECT_FALSE(o == CZorPoint3d(0.8e-5, 0.8e-5, 0));
    EXPECT_TRUE(o != CZorPoint3d(0.8e-5, 0.8e-5, 0));
    // z counts as much as x and y.
    EXPECT_FALSE(o == CZorPoint3d(0, 0, 2e-5));

    // A distance of exactly tol is equal; one step beyond is not.
    CZorPoint3dTol wide(5.0);
    EXPECT_TRUE(o == CZorPoint3d(3, 4, 0));
    EXPECT_FALSE(o == CZorPoint3d(3, std::nextafter(4.0, 5.0), 0));
    EXPECT_TRUE(o == CZorPoint3d(5, 0, 0));
    EXPECT_FALSE(o == CZorPoint3d(std::nextafter(5.0, 6.0), 0, 0));
}

TEST_F(PointTest, NanCoordinatesAreEqualOnlyToTheSameObject) {
    const CZorPoint3d p(kQuietNan, 0, 0);
    const CZorPoint3d copy(p);
    EXPECT_TRUE(p == p);
    EXPECT_FALSE(p == copy);
    EXPECT_FALSE(CZorPoint3d(0, 0, ZOR::nan()) == CZorPoint3d(0, 0, 0));
}

TEST_F(PointTest, OrderIsExactAndLexicographic) {
    const CZorPoint3d a(1, 0, 0);
    const CZorPoint3d b(1 + 1e-9, 0, 0);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b > a);
    EXPECT_FALSE(a > b);
    // Later coordinates are consulted only on exact ties.
    EXPECT_TRUE(CZorPoint3d(1, 9, 9) < CZorPoint3d(1 + 1e-12, 0, 0));
    EXPECT_TRUE(CZorPoint3d(1, 2, 3) < CZorPoint3d(1, 2, 4));
    EXPECT_FALSE(CZorPoint3d(1, 2, 3) < CZorPoint3d(1, 2, 3));
    EXPECT_FALSE(CZorPoint3d(1, 2, 3) > CZorPoint3d(1, 2, 3));
}

TEST_F(PointTest, ValidityNeedsFiniteCoordinates) {
    EXPECT_TRUE(CZorPoint3d(1, 2, 3).isValid());
    EXPECT_FALSE(CZorPoint3d(kInf, 0, 0).isValid());
    EXPECT_FALSE(CZorPoint3d(0, kQuietNan, 0).isValid());
    EXPECT_FALSE(CZorPoint3d(0, 0, -kInf).isValid());
}

TEST_F(PointTest, ConstructionAndViews) {
    const double raw[3] = {1, 2, 3};
    CZorPoint3d p(raw);
    EXPECT_EQ(p.x + p.y * 10 + p.z * 100, 321.0);
    EXPECT_EQ(static_cast<double*>(p), &p.x);
    const CZorPoint3d null_source(static_cast<const double*>(nullptr));
    EXPECT_EQ(null_source.x + null_source.y + null_source.z, 0.0);
    EXPECT_EQ(static_cast<const void*>(&p.asVector()), static_cast<const void*>(&p));
    EXPECT_EQ(&p.set(4, 5, 6), &p);
    EXPECT_EQ(p.z, 6.0);
}

TEST_F(PointTest, Arithmetic) {
    CZorPoint3d p(1, 2, 3);
    const CZorVector3d v(1, 1, 1);
    EXPECT_EQ((p + v).z, 4.0);
    EXPECT_EQ((p - v).x, 0.0);
    const CZorVector3d d = CZorPoint3d(4, 6, 3) - p;
    EXPECT_EQ(d.x, 3.0);
    EXPECT_EQ(d.y, 4.0);
    EXPECT_EQ(CZorPoint3d(4, 6, 3).distanceTo(p), 5.0);
    EXPECT_EQ(CZorPoint3d(0, 0, 2).distanceTo(CZorPoint3d()), 2.0);
    const CZorPoint3d s = p.scale(CZorPoint3d(2, -1, 0));
    EXPECT_EQ(s.x, 2.0);
    EXPECT_EQ(s.y, -2.0);
    EXPECT_EQ(s.z, 0.0);
    p += v;
    p -= CZorVector3d(0, 0, 4);
    EXPECT_EQ(p.z, 0.0);
}

TEST_F(PointTest, HomogeneousTransformDividesByW) {
    double m[4][4] = {{1, 0, 0, 10}, {0, 1, 0, 20}, {0, 0, 1, 30}, {0, 0, 0, 2}};
    const CZorPoint3d p = CZorPoint3d(2, 4, 6) * m;
    EXPECT_EQ(p.x, 6.0);
    EXPECT_EQ(p.y, 12.0);
    EXPECT_EQ(p.z, 18.0);
    // The perspective row: w = 1 + x.
    double persp[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 1}};
    CZorPoint3d q(1, 4, 8);
    q *= persp;
    EXPECT_EQ(q.x, 0.5);
    EXPECT_EQ(q.y, 2.0);
    EXPECT_EQ(q.z, 4.0);
}

TEST_F(PointTest, ToleranceScopeSetsAndRestores) {
    {
        CZorPoint3dTol ignored(0.0);
        EXPECT_EQ(CZorPoint3d::tol, 1e-5);
        ignored = 1e-12;  // not above 1e-12
        ignored = kQuietNan;
        EXPECT_EQ(CZorPoint3d::tol, 1e-5);
    }
    {
        CZorPoint3dTol t(1e-3);
        EXPECT_EQ(CZorPoint3d::tol, 1e-3);
        EXPECT_EQ(static_cast<double>(t), 1e-5);
        t = 2e-3;
        EXPECT_EQ(CZorPoint3d::tol, 2e-3);
        EXPECT_EQ(static_cast<double>(t), 1e-5);
        {
            CZorPoint3dTol inner(0.5);
            EXPECT_EQ(static_cast<double>(inner), 2e-3);
            // Copies carry the saved value and leave the tolerance alone.
            CZorPoint3dTol copy(inner);
            EXPECT_EQ(static_cast<double>(copy), 2e-3);
            EXPECT_EQ(CZorPoint3d::tol, 0.5);
        }
        EXPECT_EQ(CZorPoint3d::tol, 2e-3);
    }
    EXPECT_EQ(CZorPoint3d::tol, 1e-5);
}

TEST_F(PointTest, ToleranceScopesUnwindThroughExceptions) {
    const auto nested = [] {
        CZorPoint3dTol outer(0.1);
        CZorPoint3dTol inner(0.2);
        throw std::runtime_error("leave");
    };
    EXPECT_THROW(nested(), std::runtime_error);
    EXPECT_EQ(CZorPoint3d::tol, 1e-5);
}

TEST_F(PointTest, AngleIsInZeroToTwoPi) {
    const CZorPoint3d o;
    EXPECT_DOUBLE_EQ(ZOR::angle(o, CZorPoint3d(0, 1, 0)), kPi / 2);
    EXPECT_DOUBLE_EQ(ZOR::angle(o, CZorPoint3d(0, -1, 0)), 3 * kPi / 2);
    const double just_below = ZOR::angle(o, CZorPoint3d(1, -1e-30, 0));
    EXPECT_GT(just_below, 6.28);
    EXPECT_LT(just_below, 6.283185307179586 + 1e-15);
    EXPECT_EQ(ZOR::angle(o, o), 0.0);
    const double a[3] = {1, 1, 0}, b[3] = {0, 1, 0};
    EXPECT_DOUBLE_EQ(ZOR::angle(a, b), kPi);
}

TEST_F(PointTest, Polar) {
    const CZorPoint3d p = ZOR::polar(CZorPoint3d(1, 1, 7), kPi / 2, 2);
    EXPECT_NEAR(p.x, 1, 1e-15);
    EXPECT_EQ(p.y, 3.0);
    EXPECT_EQ(p.z, 7.0);
}

TEST_F(PointTest, Rounding) {
    EXPECT_EQ(ZOR::round(2.5, 1.0), 3.0);
    EXPECT_EQ(ZOR::round(-2.5, 1.0), -2.0);
    EXPECT_EQ(ZOR::round(7.3, 0.0), 7.3);
    EXPECT_EQ(ZOR::round(7.3, 0.99e-9), 7.3);
    EXPECT_EQ(ZOR::round(7.3, 0.5), 7.5);
    const CZorPoint3d r = ZOR::g_p_rnd(CZorPoint3d(1.2, -1.26, 0.05), 0.1);
    EXPECT_DOUBLE_EQ(r.x, 1.2);
    EXPECT_DOUBLE_EQ(r.y, -1.3);
    EXPECT_DOUBLE_EQ(r.z, 0.1);
}

TEST_F(PointTest, SmallHelpers) {
    const CZorPoint3d p(1, 2, 3);
    EXPECT_EQ(ZOR::g_p_mrx(p).x, -1.0);
    EXPECT_EQ(ZOR::g_p_mrx(p).y, 2.0);
    EXPECT_EQ(ZOR::g_p_mry(p).y, -2.0);
    EXPECT_EQ(ZOR::g_p_mry(p).x, 1.0);

    const CZorPoint3d n = ZOR::g_nrm_p(CZorPoint3d(0.99e-5, -0.99e-5, 1e-5));
    EXPECT_EQ(n.x, 0.0);
    EXPECT_EQ(n.y, 0.0);
    EXPECT_EQ(n.z, 1e-5);  // not below the tolerance

    const CZorPoint3d mid = ZOR::g_midp3d(CZorPoint3d(0, 2, 4), CZorPoint3d(2, 4, -4));
    EXPECT_EQ(mid.x, 1.0);
    EXPECT_EQ(mid.y, 3.0);
    EXPECT_EQ(mid.z, 0.0);

    const CZorPoint3d a(1, 5, -1), b(2, 3, -2);
    const CZorPoint3d lo = ZOR::p_min(a, b), hi = ZOR::p_max(a, b);
    EXPECT_EQ(lo.x + lo.y * 10 + lo.z * 100, 1 + 30 - 200.0);
    EXPECT_EQ(hi.x + hi.y * 10 + hi.z * 100, 2 + 50 - 100.0);
}

}  // namespace
