#include "zor/geometry/circles.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace ZOR {
namespace {

constexpr double kPi = std::numbers::pi;
const double kSin60 = std::sqrt(3.0) / 2;

::testing::AssertionResult at(const CZorPoint3d& p, double x, double y, double z = 0.0) {
    if (std::fabs(p.x - x) < 1e-9 && std::fabs(p.y - y) < 1e-9 && std::fabs(p.z - z) < 1e-9) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "(" << p.x << ", " << p.y << ", " << p.z << ")";
}

CZorPoint3dArray prefilled() {
    CZorPoint3dArray list;
    list.append(CZorPoint3d(99, 99, 99));
    return list;
}

// Restores the process-wide point tolerance whatever a test does to it.
class CircleTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;
    CZorPoint3dArray list_ = prefilled();
};

TEST_F(CircleTest, CircleCircleTouchWithinTolerance) {
    const CZorPoint3d o(0, 0, 0);
    EXPECT_TRUE(g_cci(list_, o, 1, CZorPoint3d(2, 0, 0), 1));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_TRUE(at(list_[0], 1, 0));
    EXPECT_TRUE(g_cci(list_, o, 1, CZorPoint3d(2 + 0.99e-5, 0, 0), 1));
    EXPECT_FALSE(g_cci(list_, o, 1, CZorPoint3d(2 + 1.01e-5, 0, 0), 1));
    EXPECT_TRUE(list_.isEmpty());
    CZorPoint3dTol wide(1e-3);
    EXPECT_TRUE(g_cci(list_, o, 1, CZorPoint3d(2.0009, 0, 0), 1));

    // Inner touch; the distance of the centres is three-dimensional, and with the smaller
    // circle first the point comes from the second centre, at its z.
    EXPECT_TRUE(g_cci(list_, o, 2, CZorPoint3d(0, 0, 1), 3));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_TRUE(at(list_[0], 3, 0, 1));
    EXPECT_TRUE(g_cci(list_, o, 3, CZorPoint3d(0, 0, 1), 2));
    EXPECT_TRUE(at(list_[0], 3, 0, 0));
}

TEST_F(CircleTest, CircleCircleCrossingGivesLeftPointFirst) {
    EXPECT_TRUE(g_cci(list_, CZorPoint3d(0, 0, 3), 1, CZorPoint3d(1, 0, 3), 1));
    ASSERT_EQ(list_.len(), 2);
    EXPECT_TRUE(at(list_[0], 0.5, kSin60, 3));
    EXPECT_TRUE(at(list_[1], 0.5, -kSin60, 3));
    // Seen from the other centre, left is the other side.
    EXPECT_TRUE(g_cci(list_, CZorPoint3d(1, 0, 0), 1, CZorPoint3d(0, 0, 0), 1));
    EXPECT_TRUE(at(list_[0], 0.5, -kSin60));

    // The results may overwrite their own inputs.
    CZorPoint3dArray centres;
    centres.append(CZorPoint3d(0, 0, 0)).append(CZorPoint3d(1, 0, 0));
    EXPECT_TRUE(g_cci(centres, centres[0], 1, centres[1], 1));
    EXPECT_TRUE(at(centres[1], 0.5, -kSin60));
}

TEST_F(CircleTest, CircleCircleDegenerate) {
    // Equal circles on one centre: one point, at angle 0 from the second centre.
    EXPECT_TRUE(g_cci(list_, CZorPoint3d(1, 1, 0), 2, CZorPoint3d(1, 1, 0), 2));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_TRUE(at(list_[0], 3, 1));
    EXPECT_FALSE(g_cci(list_, CZorPoint3d(1, 1, 0), 1, CZorPoint3d(1, 1, 0), 2));
    EXPECT_TRUE(g_cci(list_, CZorPoint3d(1, 0, 0), 0, CZorPoint3d(0, 0, 0), 1));
    EXPECT_TRUE(at(list_[0], 1, 0));
    EXPECT_FALSE(g_cci(list_, CZorPoint3d(3, 0, 0), 0, CZorPoint3d(0, 0, 0), 1));
    EXPECT_FALSE(g_cci(list_, CZorPoint3d(NAN, 0, 0), 1, CZorPoint3d(0, 0, 0), 1));

    // With a tiny point tolerance the fixed angle bound 1e-5 / r1 decides about one point.
    CZorPoint3dTol fine(1e-11);
    EXPECT_TRUE(g_cci(list_, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(2 - 4e-11, 0, 0), 1));
    EXPECT_EQ(list_.len(), 1);  // half angle ~6.3e-6
    EXPECT_TRUE(g_cci(list_, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(2 - 4e-10, 0, 0), 1));
    EXPECT_EQ(list_.len(), 2);  // half angle ~2e-5
}

TEST_F(CircleTest, CircleLineOrderFollowsTheDominantCoordinate) {
    const CZorPoint3d c(0, 0, 4);
    for (const double sense : {1.0, -1.0}) {
        EXPECT_TRUE(
            g_cli0(list_, c, 1, CZorPoint3d(-5 * sense, 0, 0), CZorPoint3d(5 * sense, 0, 0)));
        ASSERT_EQ(list_.len(), 2);
        EXPECT_TRUE(at(list_[0], -1, 0, 4));
        EXPECT_TRUE(at(list_[1], 1, 0, 4));
        EXPECT_TRUE(
            g_cli0(list_, c, 1, CZorPoint3d(0, -5 * sense, 0), CZorPoint3d(0, 5 * sense, 0)));
        EXPECT_TRUE(at(list_[0], 0, -1, 4));
    }
    // Exactly 45 degrees is x-dominant (ascending x); a hair steeper is y-dominant.
    const double h = std::sqrt(0.5);
    const CZorPoint3d o(0, 0, 0);
    EXPECT_TRUE(g_cli0(list_, o, 1, CZorPoint3d(2, -2, 0), CZorPoint3d(-2, 2, 0)));
    EXPECT_TRUE(at(list_[0], -h, h));
    EXPECT_TRUE(g_cli0(list_, o, 1, CZorPoint3d(2, -2.001, 0), CZorPoint3d(-2, 2.001, 0)));
    EXPECT_LT(list_[0].y, 0.0);
}

TEST_F(CircleTest, CircleLineTangencyWithinTolerance) {
    const auto lineAt = [&](double y) {
        return g_cli0(list_, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(-3, y, 0), CZorPoint3d(3, y, 0));
    };
    EXPECT_TRUE(lineAt(1 + 0.9e-5));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_NEAR(list_[0].x, 0.0, 1e-9);
    EXPECT_FALSE(lineAt(1 + 1.1e-5));
    EXPECT_TRUE(list_.isEmpty());
    // From inside, the two roots merge only within half the tolerance.
    EXPECT_TRUE(lineAt(1 - 1e-11));
    EXPECT_EQ(list_.len(), 1);
    EXPECT_TRUE(lineAt(1 - 1e-9));
    EXPECT_EQ(list_.len(), 2);

    // A line through two identical points is none; a point circle on a line is touched once.
    EXPECT_FALSE(
        g_cli0(list_, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(1, 0, 0), CZorPoint3d(1, 0, 0)));
    EXPECT_TRUE(g_cli0(list_, CZorPoint3d(2, 0, 0), 0, CZorPoint3d(0, 0, 0), CZorPoint3d(5, 0, 0)));
    EXPECT_EQ(list_.len(), 1);
}

TEST_F(CircleTest, SegmentAndArcFilters) {
    const CZorPoint3d c(0, 0, 0);
    // The segment form leaves its list alone when the infinite line misses...
    EXPECT_FALSE(g_cli(list_, c, 1, CZorPoint3d(-3, 1 + 2e-5, 0), CZorPoint3d(3, 1 + 2e-5, 0)));
    EXPECT_EQ(list_[0].x, 99.0);
    // ...and empties it when the segment stops short.
    EXPECT_FALSE(g_cli(list_, c, 1, CZorPoint3d(-0.5, 0, 0), CZorPoint3d(0.5, 0, 0)));
    EXPECT_TRUE(list_.isEmpty());
    EXPECT_TRUE(g_cli(list_, c, 1, CZorPoint3d(0, 0, 0), CZorPoint3d(-5, 0, 0)));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_TRUE(at(list_[0], -1, 0));

    EXPECT_TRUE(g_ali(list_, c, 1, 0, kPi, CZorPoint3d(3, 0.5, 0), CZorPoint3d(-3, 0.5, 0)));
    ASSERT_EQ(list_.len(), 2);
    EXPECT_TRUE(at(list_[0], -kSin60, 0.5));
    EXPECT_FALSE(g_ali(list_, c, 1, kPi, 0, CZorPoint3d(3, 0.5, 0), CZorPoint3d(-3, 0.5, 0)));
    list_ = prefilled();
    EXPECT_FALSE(g_ali(list_, c, 1, 0, kPi, CZorPoint3d(3, 5, 0), CZorPoint3d(-3, 5, 0)));
    EXPECT_TRUE(list_.isEmpty());

    // Circle with arc: true even when nothing is found.
    EXPECT_TRUE(g_cai(list_, CZorPoint3d(1, 0, 0), 1, c, 1, kPi, 2 * kPi - 0.1));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_TRUE(at(list_[0], 0.5, -kSin60));
    EXPECT_TRUE(g_cai(list_, CZorPoint3d(5, 0, 0), 1, c, 1, 0, kPi));
    EXPECT_TRUE(list_.isEmpty());
}

TEST_F(CircleTest, ArcArc) {
    const CZorPoint3d c(0, 0, 0);
    EXPECT_TRUE(g_aai(list_, c, 1, 0, kPi, CZorPoint3d(1, 0, 0), 1, 0, 2 * kPi - 0.01));
    ASSERT_EQ(list_.len(), 1);
    EXPECT_TRUE(at(list_[0], 0.5, kSin60));
    EXPECT_FALSE(g_aai(list_, c, 1, kPi / 2, kPi, CZorPoint3d(1, 0, 0), 1, 0, kPi));
    // One centre (within tolerance): the shared end points in the first arc's order.
    EXPECT_TRUE(g_aai(list_, c, 1, 0, kPi, CZorPoint3d(5e-6, 0, 0), 1, kPi, 0));
    ASSERT_EQ(list_.len(), 2);
    EXPECT_TRUE(at(list_[0], 1, 0));
    EXPECT_TRUE(at(list_[1], -1, 0));
    EXPECT_TRUE(g_aai(list_, c, 1, 0, kPi / 2, c, 1, kPi / 2, kPi));
    EXPECT_EQ(list_.len(), 1);
    EXPECT_FALSE(g_aai(list_, c, 1, 0, kPi, c, 2, 0, kPi));
}

TEST_F(CircleTest, PointOnArc) {
    const CZorPoint3d c(1, 1, 0);
    const auto on = [&](double a0, double a1, double w, double r = 1.0) {
        return g_arc_pt(c, 1, a0, a1, polar(c, w, r));
    };
    EXPECT_TRUE(on(1.0, 1.0, 1.0));  // a zero sweep, not a full circle
    EXPECT_FALSE(on(1.0, 1.0, 2.0));
    EXPECT_TRUE(on(3 * kPi / 2, kPi / 2, 0.0));
    EXPECT_FALSE(on(3 * kPi / 2, kPi / 2, kPi));
    EXPECT_TRUE(on(0, kPi, 1.0, 1 + 0.9e-5));
    EXPECT_FALSE(on(0, kPi, 1.0, 1 + 1.1e-5));
    // Past an end, only within the point tolerance of the end point.
    EXPECT_TRUE(on(0, kPi / 2, kPi / 2 + 5e-6));
    EXPECT_TRUE(on(0, kPi / 2, -5e-6));
    EXPECT_FALSE(on(0, kPi / 2, kPi / 2 + 2e-5));
}

TEST_F(CircleTest, PerpendicularOrientationTangentPoint) {
    const CZorPoint3d a(0, 0, 0);
    const CZorPoint3d b(10, 0, 0);
    EXPECT_DOUBLE_EQ(g_lot(a, b, CZorPoint3d(3, 2, 5)), kPi / 2);
    EXPECT_DOUBLE_EQ(g_lot(a, b, CZorPoint3d(3, -2, -5)), 3 * kPi / 2);
    EXPECT_EQ(g_point_orient(a, b, CZorPoint3d(5, -1, 0)), -1);
    EXPECT_EQ(g_point_orient(a, b, CZorPoint3d(-20, 0, 0)), 1);

    const CZorPoint3d p(2, 0, 0);
    EXPECT_TRUE(at(g_nm_pkt_tan(p, a, 1), 0.5, -kSin60));
    EXPECT_TRUE(at(g_nm_pkt_tan(p, a, -1), 0.5, kSin60));
    EXPECT_TRUE(std::isnan(g_nm_pkt_tan(CZorPoint3d(0.5, 0, 0), a, 1).x));
}

TEST_F(CircleTest, ThreePointArcs) {
    CZorPoint3d out(7, 7, 7);
    EXPECT_TRUE(g_arc3p_cen(CZorPoint3d(4, 2, 0), CZorPoint3d(2, 4, 0), CZorPoint3d(0, 2, 0), out));
    EXPECT_TRUE(at(out, 2, 2));
    out = CZorPoint3d(7, 7, 7);
    EXPECT_FALSE(
        g_arc3p_cen(CZorPoint3d(1, 0, 0), CZorPoint3d(1, 5e-6, 0), CZorPoint3d(3, 3, 0), out));
    EXPECT_FALSE(
        g_arc3p_cen(CZorPoint3d(0, 0, 0), CZorPoint3d(1, 1, 0), CZorPoint3d(3, 3, 0), out));
    EXPECT_FALSE(
        g_arc3p_cen(CZorPoint3d(0, 0, 0), CZorPoint3d(1, 1, 0), CZorPoint3d(0, 0, 0), out));
    EXPECT_EQ(out.x, 7.0);
    EXPECT_TRUE(
        g_arc3p_tan(CZorPoint3d(1, 0, 0), CZorPoint3d(0.6, 0.8, 0), CZorPoint3d(-1, 0, 0), out));
    EXPECT_TRUE(at(out, 0.6, 0));

    double bulge = 5.0;
    const auto bulgeOf = [&](CZorPoint3d p0, CZorPoint3d p1, CZorPoint3d p2) {
        return g_arc3p_bulg(p0, p1, p2, bulge) ? bulge : 5.0;
    };
    EXPECT_NEAR(bulgeOf({-1, 0, 0}, {0, -1, 0}, {1, 0, 0}), 1.0, 1e-12);
    EXPECT_NEAR(bulgeOf({-1, 0, 0}, {0, 1, 0}, {1, 0, 0}), -1.0, 1e-12);
    EXPECT_NEAR(bulgeOf({1, 0, 0}, {-1, 0, 0}, {0, -1, 0}), std::tan(3 * kPi / 8), 1e-12);
    bulge = 5.0;
    EXPECT_FALSE(
        g_arc3p_bulg(CZorPoint3d(0, 0, 0), CZorPoint3d(1, 0, 0), CZorPoint3d(2, 0, 0), bulge));
    EXPECT_EQ(bulge, 5.0);

    const CZorPoint3d e(1, 0, 0);
    const CZorPoint3d n(0, 1, 0);
    const CZorPoint3d w(-1, 0, 0);
    EXPECT_TRUE(g_arc3p_orient(e, n, w, CZorPoint3d::kOrigin));
    EXPECT_FALSE(g_arc3p_orient(e, w, n, CZorPoint3d::kOrigin));
    EXPECT_FALSE(g_arc3p_orient(e, n, n, CZorPoint3d::kOrigin));
}

TEST_F(CircleTest, Bulges) {
    EXPECT_EQ(g_arc_bulg(1.0, 1.0), 0.0);
    EXPECT_DOUBLE_EQ(g_arc_bulg(3 * kPi / 2, kPi / 2), 1.0);
    EXPECT_DOUBLE_EQ(g_arc_bulg(kPi / 2, 0), std::tan(3 * kPi / 8));

    const CZorPoint3d p0(0, 0, 0);
    const CZorPoint3d p1(2, 0, 0);
    double b = 9.0;
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, -1.0));
    EXPECT_DOUBLE_EQ(b, -1.0);
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, -2.0));
    EXPECT_DOUBLE_EQ(b, -2.0 - std::sqrt(3.0));
    b = 9.0;
    EXPECT_FALSE(g_arcrad_bulg(b, p0, p1, 0.999));
    EXPECT_FALSE(g_arcrad_bulg(b, p0, p0, 1.0));  // a zero chord carries no arc
    EXPECT_EQ(b, 9.0);
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, 0.0));
    EXPECT_EQ(b, 0.0);
    EXPECT_DOUBLE_EQ(g_arcrad_bulg(p0, p1, 1.0), 1.0);
    EXPECT_TRUE(std::isnan(g_arcrad_bulg(p0, p1, 0.5)));
    EXPECT_TRUE(std::isnan(g_arcrad_bulg(p0, p1, NAN)));

    EXPECT_DOUBLE_EQ(g_bulg_len(CZorPoint3d(0, 2, 0), CZorPoint3d(2, 0, 0), p0), 3 * kPi);
}

}  // namespace
}  // namespace ZOR
