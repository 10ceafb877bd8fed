#include "zor/geometry/formulas.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace ZOR {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2 * kPi;

TEST(AngleNormalisingTest, GAngSnapsOnlyNearTwoPiAndWrapsByRepetition) {
    EXPECT_EQ(g_ang(kTwoPi), 0.0);
    EXPECT_EQ(g_ang(kTwoPi + 5e-9), 0.0);
    EXPECT_EQ(g_ang(kTwoPi - 5e-9), 0.0);
    EXPECT_NEAR(g_ang(kTwoPi + 2e-8), 2e-8, 1e-15);
    EXPECT_EQ(g_ang(-1e-12), kTwoPi - 1e-12);
    EXPECT_DOUBLE_EQ(g_ang(5 * kPi), kPi);
    EXPECT_DOUBLE_EQ(g_ang(-kPi / 2), 3 * kPi / 2);
    // Repeated subtraction, not a remainder: the rounding of each step is part of the result.
    double w = 7 * kTwoPi + 1.0;
    double expected = w;
    while (expected >= kTwoPi) expected -= kTwoPi;
    EXPECT_EQ(g_ang(w), expected);
}

TEST(AngleNormalisingTest, HostileInputTerminates) {
    EXPECT_TRUE(std::isnan(g_ang(INFINITY)));
    EXPECT_TRUE(std::isnan(g_ang(-INFINITY)));
    EXPECT_TRUE(std::isnan(g_ang(nan())));
    const double big = g_ang(1e300);
    EXPECT_GE(big, 0.0);
    EXPECT_LT(big, kTwoPi);
    EXPECT_LE(std::fabs(g_signed_ang(-1e300)), kPi);
    EXPECT_TRUE(std::isnan(g_signed_ang(INFINITY)));
    EXPECT_TRUE(std::isnan(g_dir_nrm(INFINITY)));
    EXPECT_LT(g_dir_nrm(1e300), kPi);
    EXPECT_TRUE(std::isnan(g_qw(nan())));
    EXPECT_EQ(g_qw(1e300), 0.0);
}

TEST(AngleNormalisingTest, SignedAngKeepsBothEnds) {
    EXPECT_EQ(g_signed_ang(kPi), kPi);
    EXPECT_EQ(g_signed_ang(-kPi), -kPi);
    EXPECT_DOUBLE_EQ(g_signed_ang(3 * kPi / 2), -kPi / 2);
    EXPECT_DOUBLE_EQ(g_signed_ang(-3 * kPi / 2), kPi / 2);
}

TEST(AngleNormalisingTest, DirNrmFoldsLinesOntoHalfTurn) {
    EXPECT_EQ(g_dir_nrm(kPi - 0.0005), 0.0);
    EXPECT_DOUBLE_EQ(g_dir_nrm(kPi - 0.002), kPi - 0.002);
    EXPECT_EQ(g_dir_nrm(3 * kPi), 0.0);
    EXPECT_EQ(g_dir_nrm(-1.0), -1.0);
    EXPECT_EQ(g_dir_nrm(-0.0005), 0.0);
    EXPECT_DOUBLE_EQ(g_dir_nrm(kPi + 1.0), 1.0);
    // The snap is strict: exactly 0.001 away is not snapped.
    EXPECT_EQ(g_dir_nrm(0.001), 0.001);
}

TEST(AngleNormalisingTest, QuarterIndex) {
    EXPECT_EQ(g_qw(-0.9), -kPi / 2);
    EXPECT_EQ(g_qw(0.7), 0.0);
    EXPECT_EQ(g_qw(0.8), kPi / 2);
    EXPECT_EQ(g_qw(7 * kPi / 4 + 0.1), 0.0);
    EXPECT_EQ(g_qw(kPi + 0.1), kPi);
    EXPECT_EQ(g_qw(3 * kPi / 2), 3 * kPi / 2);
}

TEST(AngleNormalisingTest, RndQuadSnapsWithinThousandth) {
    EXPECT_EQ(g_rnd_quad(0.0005), 0.0);
    EXPECT_EQ(g_rnd_quad(kTwoPi - 0.0005), 0.0);
    EXPECT_EQ(g_rnd_quad(kPi / 2 + 0.0005), kPi / 2);
    EXPECT_EQ(g_rnd_quad(0.01), 0.01);
    EXPECT_EQ(g_rnd_quad(-kPi / 2 + 0.0005), 3 * kPi / 2);
    EXPECT_EQ(g_rnd_quad(3 * kPi / 2 + 0.002), 3 * kPi / 2 + 0.002);
}

TEST(AngleNormalisingTest, AngEqualAcrossTheSeam) {
    EXPECT_TRUE(g_ang_equal(0.0001, kTwoPi - 0.0001, 0.001));
    EXPECT_TRUE(g_ang_equal(1.0, 1.0 + kTwoPi, 1e-9));
    EXPECT_FALSE(g_ang_equal(1.0, 1.002, 0.001));
    EXPECT_TRUE(g_ang_equal(1.0, 1.0009, 0.001));
    // Strict: a difference equal to the tolerance does not count.
    EXPECT_FALSE(g_ang_equal(0.0, 0.5, 0.5));
}

TEST(AngleDifferenceTest, UndirectedAndHalfwayDirections) {
    EXPECT_DOUBLE_EQ(g_dw(3.5, 0.0), 3.5 - kPi);
    EXPECT_EQ(g_dw(1.0, 3.0), 2.0);
    EXPECT_EQ(g_dw1(kPi, 0.0), 0.0);
    EXPECT_DOUBLE_EQ(g_dw1(0.3, 0.0), kPi - 0.3);
    EXPECT_DOUBLE_EQ(g_w_mid(0.0, kPi / 2), kPi / 4);
    EXPECT_DOUBLE_EQ(g_w_mid(3 * kPi / 2, kPi / 2), 0.0);
    EXPECT_DOUBLE_EQ(g_w_mid(kPi / 2, 0.0), 5 * kPi / 4);
    EXPECT_DOUBLE_EQ(g_w_halb(1.0, 2.0), 1.5);
    // Not normalised: halfway between 0.1 and 6.0 across the seam reaches beyond 2*pi.
    EXPECT_DOUBLE_EQ(g_w_halb(0.1, 6.0), 3.05 + kPi);
}

TEST(AngleDifferenceTest, CornerAngles) {
    const CZorPoint3d apex(0, 0, 0);
    const CZorPoint3d east(1, 0, 0);
    const CZorPoint3d north(0, 2, 0);
    const CZorPoint3d south(0, -1, 0);
    EXPECT_DOUBLE_EQ(g_aabs(east, apex, north), kPi / 2);
    EXPECT_DOUBLE_EQ(g_aabs(north, apex, south), kPi);
    EXPECT_DOUBLE_EQ(g_aabs(east, apex, south), kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w(north, apex, east), kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w(east, apex, north), 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w1(east, apex, north), kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w1(north, apex, east), 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w2(north, apex, east), kPi / 2);
}

TEST(DirectionClassTest, OktantAxesAndQuadrants) {
    EXPECT_EQ(g_oktant(0.0005), 0);
    EXPECT_EQ(g_oktant(-0.0005), 0);
    EXPECT_EQ(g_oktant(0.01), 1);
    EXPECT_EQ(g_oktant(kPi / 2), 2);
    EXPECT_EQ(g_oktant(kPi / 2 + 0.01), 3);
    EXPECT_EQ(g_oktant(kPi + 0.0009), 4);
    EXPECT_EQ(g_oktant(kPi + 0.01), 5);
    EXPECT_EQ(g_oktant(3 * kPi / 2 - 0.0009), 6);
    EXPECT_EQ(g_oktant(-0.01), 7);
}

TEST(DirectionClassTest, SextantEightDirectionsAndSectors) {
    EXPECT_EQ(g_sextant(kPi / 4 + 0.0005), 2);
    EXPECT_EQ(g_sextant(kPi / 4 + 0.01), 3);
    EXPECT_EQ(g_sextant(-0.0005), 0);
    EXPECT_EQ(g_sextant(0.01), 1);
    for (int k = 0; k < 8; ++k) {
        EXPECT_EQ(g_sextant(k * kPi / 4), 2 * k) << k;
        EXPECT_EQ(g_sextant(k * kPi / 4 + 0.1), 2 * k + 1) << k;
    }
}

TEST(ChordFormulaTest, ChordsAndSagittas) {
    EXPECT_DOUBLE_EQ(g_w_3eck(3, 4, 5), kPi / 2);
    EXPECT_DOUBLE_EQ(g_w_3eck(1, 1, 1), kPi / 3);
    EXPECT_TRUE(std::isnan(g_w_3eck(1, 1, 3)));
    EXPECT_DOUBLE_EQ(g_sec_ang(1, 2), kPi);
    EXPECT_DOUBLE_EQ(g_sec_ang(2, 2), kPi / 3);
    EXPECT_TRUE(std::isnan(g_sec_ang(1, 3)));
    EXPECT_DOUBLE_EQ(g_sec_len(2, kPi / 3), 2.0);
    EXPECT_DOUBLE_EQ(g_tang_radius(1, 1), 1.0);
    EXPECT_DOUBLE_EQ(g_tang_radius(1, 2), 2.5);
}

TEST(ChordFormulaTest, SecLen2GuardsEqualArguments) {
    EXPECT_TRUE(std::isnan(g_sec_len2(2, 2)));
    const double r = 3.0;
    const double w = 0.5;
    const double t = 2 * r * std::cos(w / 2) * std::sin(w / 2);
    EXPECT_DOUBLE_EQ(g_sec_len2(r, w), t * r / (r - t));
}

TEST(TangentCircleTest, ClosedForms) {
    EXPECT_TRUE(std::isnan(g_tang_cen(1.0, 0.0, 0.0, 0.0)));
    // A horizontal line y = 5: the parallel one unit below it.
    EXPECT_DOUBLE_EQ(g_tang_cen(0.0, 5.0, 3.0, 1.0), 4.0);
    // Slope 1 through the origin: y0 - m*x0 + m*r - r*sqrt(2).
    EXPECT_DOUBLE_EQ(g_tang_cen(1.0, 0.0, 0.0, 1.0), 1.0 - std::sqrt(2.0));

    // Two axis-parallel lines y = 4 and x = 2 with r = 1.
    const CZorPoint3d c = g_tang2_cen(0.0, 4.0, 0.0, 0.0, 2.0, 0.0, 1.0);
    EXPECT_DOUBLE_EQ(c.x, 3.0);
    EXPECT_DOUBLE_EQ(c.y, 5.0);
    EXPECT_EQ(c.z, 0.0);

    const CZorPoint3d p(1.0, 2.0, 7.0);
    const CZorPoint3d t3 = g_tang3_cen(p, 1.0, kPi / 6, 5.0);
    // s = 1, c = sqrt(3), e = 3.
    EXPECT_NEAR(t3.x, 1.0, 1e-12);
    EXPECT_DOUBLE_EQ(t3.y, 6.0);
    EXPECT_EQ(t3.z, 7.0);

    // Equal circles of radius 1 with centres 4 apart: d = 2, atan(1/sqrt 3).
    EXPECT_DOUBLE_EQ(g_tang_ang(CZorPoint3d(0, 0, 0), 1, CZorPoint3d(4, 0, 0), 1), kPi / 6);
    EXPECT_TRUE(std::isnan(g_tang_ang(CZorPoint3d(0, 0, 0), 1, CZorPoint3d(1, 0, 0), 1)));

    EXPECT_DOUBLE_EQ(g_achs_dist(1, 1, 4, 2, 2), 2.0 - (1.0 - 1.0 / std::sin(kPi / 4)));
}

TEST(EllipseTest, RadiusPointAndTangentDirection) {
    EXPECT_DOUBLE_EQ(g_ellips_pt(3, 2, 0.0), 3.0);
    EXPECT_EQ(g_ellips_pt(3, 2, kPi / 2), 2.0);
    EXPECT_DOUBLE_EQ(g_ellips_pt(2, 2, 0.7), 2.0);

    const CZorPoint3d c(1, 1, 4);
    const CZorPoint3d top = g_elps_p(c, 3, 2, 0.0, kPi / 2);
    EXPECT_NEAR(top.x, 1.0, 1e-12);
    EXPECT_DOUBLE_EQ(top.y, 3.0);
    EXPECT_EQ(top.z, 4.0);
    const CZorPoint3d turned = g_elps_p(c, 3, 2, kPi / 2, 0.0);
    EXPECT_NEAR(turned.x, 1.0, 1e-12);
    EXPECT_DOUBLE_EQ(turned.y, 4.0);

    // On the x axis the tangent runs upwards, on the far side downwards.
    EXPECT_DOUBLE_EQ(g_elps_w(3, 2, 0.0, 0.0), kPi / 2);
    EXPECT_DOUBLE_EQ(g_elps_w(3, 2, 0.0, kPi), 3 * kPi / 2);
    // On the y axis: left at the top, right at the bottom.
    EXPECT_DOUBLE_EQ(g_elps_w(3, 2, 0.0, kPi / 2), kPi);
    EXPECT_EQ(g_elps_w(3, 2, 0.0, 3 * kPi / 2), 0.0);
    // On a circle the tangent is perpendicular to the radius, counter-clockwise.
    EXPECT_DOUBLE_EQ(g_elps_w(1, 1, 0.0, kPi / 4), 3 * kPi / 4);
    EXPECT_DOUBLE_EQ(g_elps_w(1, 1, 0.0, 5 * kPi / 4), 7 * kPi / 4);
    EXPECT_DOUBLE_EQ(g_elps_w(1, 1, 0.5, kPi / 4), 3 * kPi / 4 + 0.5);
}

TEST(EllipseTest, TangentAxisTestsFollowThePointTolerance) {
    const double saved = CZorPoint3d::tol;
    {
        // y = sin(1e-4) ~ 1e-4: not an axis point at the default tolerance, one at 1e-3.
        const double w = 1e-4;
        const double plain = g_elps_w(1, 1, 0.0, w);
        EXPECT_NEAR(plain, kPi / 2 + w, 1e-12);
        CZorPoint3dTol wide(1e-3);
        EXPECT_EQ(g_elps_w(1, 1, 0.0, w), kPi / 2);
    }
    EXPECT_EQ(CZorPoint3d::tol, saved);
}

TEST(FriezeRuleTest, RadiusAndAngle) {
    const double a = 2.0;
    const double b = 1.0;
    EXPECT_DOUBLE_EQ(g_fries_r(a, b, 0.0), (a * a + b * b) / (4 * a));
    EXPECT_DOUBLE_EQ(g_fries_r(a, b, kPi), (a * a + b * b) / (4 * a));
    const double w = 0.001;
    const double D = std::pow(std::cos(w) + 1, 2) + std::pow(std::sin(w), 2) - 4;
    const double p = (2 * b * std::sin(w) - 2 * a * (std::cos(w) + 1)) / D * 0.5;
    const double q = (a * a + b * b) / D;
    EXPECT_DOUBLE_EQ(g_fries_r(a, b, w), -p + std::sqrt(p * p - q));
    EXPECT_NE(g_fries_r(a, b, w), (a * a + b * b) / (4 * a));

    EXPECT_TRUE(std::isnan(g_fries_w(a, b, -0.1)));
    const double r = 0.8;
    const double d = a - r;
    EXPECT_FALSE(std::isnan(g_fries_w(a, b, r)));
    EXPECT_DOUBLE_EQ(g_fries_w(a, b, r),
                     g_w_3eck(r, std::sqrt(d * d + b * b), 2 * r) + std::atan(d / b) - kPi / 2);
}

TEST(BasketArcTest, ThreeCentredRadii) {
    const double z = std::sqrt(13.0);
    EXPECT_DOUBLE_EQ(g_korb_3m(3, 2), (z + 1) * (z / 2) / 2);
    EXPECT_DOUBLE_EQ(g_rkorb(6, 2, 4), (16.0 - 4 - 9) / 2);
    EXPECT_DOUBLE_EQ(g_rkorb2(6, 2, 3), (18.0 - 4 - 9) / 2);
}

TEST(PointDistanceTest, PlanarAndDirectional) {
    const CZorPoint3d p(1, 1, 0);
    const CZorPoint3d q(4, 5, 100);
    EXPECT_DOUBLE_EQ(g_dist2d(p, q), 5.0);
    EXPECT_DOUBLE_EQ(g_dist_w1(p, q, 0.0), 3.0);
    EXPECT_DOUBLE_EQ(g_dist_w1(p, q, kPi), -3.0);
    EXPECT_DOUBLE_EQ(g_dist_w(p, q, kPi), 3.0);
    EXPECT_DOUBLE_EQ(g_dist_w(p, q, kPi / 2), 4.0);
}

}  // namespace
}  // namespace ZOR
