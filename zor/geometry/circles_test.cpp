#include "zor/geometry/circles.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace ZOR {
namespace {

constexpr double kPi = std::numbers::pi;
const double kSin60 = std::sqrt(3.0) / 2;

#define EXPECT_POINT_NEAR(p, X, Y, Z)  \
    do {                               \
        EXPECT_NEAR((p).x, (X), 1e-9); \
        EXPECT_NEAR((p).y, (Y), 1e-9); \
        EXPECT_NEAR((p).z, (Z), 1e-9); \
    } while (0)

CZorPoint3dArray prefilled() {
    CZorPoint3dArray list;
    list.append(CZorPoint3d(99, 99, 99));
    return list;
}

// Restores the process-wide point tolerance whatever a test does to it.
class CircleTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;
};

TEST_F(CircleTest, CircleCircleOuterTouchWithinTolerance) {
    CZorPoint3dArray list = prefilled();
    const CZorPoint3d o(0, 0, 0);
    EXPECT_TRUE(g_cci(list, o, 1, CZorPoint3d(2, 0, 0), 1));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 1, 0, 0);
    EXPECT_TRUE(g_cci(list, o, 1, CZorPoint3d(2.000005, 0, 0), 1));
    EXPECT_EQ(list.len(), 1);
    EXPECT_TRUE(g_cci(list, o, 1, CZorPoint3d(2 + 0.99e-5, 0, 0), 1));
    EXPECT_EQ(list.len(), 1);
    EXPECT_FALSE(g_cci(list, o, 1, CZorPoint3d(2 + 1.01e-5, 0, 0), 1));
    EXPECT_TRUE(list.isEmpty());
    EXPECT_FALSE(g_cci(list, o, 1, CZorPoint3d(2.1, 0, 0), 1));

    CZorPoint3dTol wide(1e-3);
    EXPECT_TRUE(g_cci(list, o, 1, CZorPoint3d(2.0009, 0, 0), 1));
    EXPECT_EQ(list.len(), 1);
}

TEST_F(CircleTest, CircleCircleCrossingGivesLeftPointFirst) {
    CZorPoint3dArray list;
    EXPECT_TRUE(g_cci(list, CZorPoint3d(0, 0, 3), 1, CZorPoint3d(1, 0, 3), 1));
    ASSERT_EQ(list.len(), 2);
    EXPECT_POINT_NEAR(list[0], 0.5, kSin60, 3);
    EXPECT_POINT_NEAR(list[1], 0.5, -kSin60, 3);
    // Seen from the other centre, left is the other side.
    EXPECT_TRUE(g_cci(list, CZorPoint3d(1, 0, 0), 1, CZorPoint3d(0, 0, 0), 1));
    ASSERT_EQ(list.len(), 2);
    EXPECT_POINT_NEAR(list[0], 0.5, -kSin60, 0);
    EXPECT_POINT_NEAR(list[1], 0.5, kSin60, 0);
}

TEST_F(CircleTest, CircleCircleInnerTouchAndConcentric) {
    CZorPoint3dArray list;
    EXPECT_TRUE(g_cci(list, CZorPoint3d(0, 0, 1), 3, CZorPoint3d(1, 0, 1), 2));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 3, 0, 1);
    // The centre distance is three-dimensional. With the smaller circle first, the point comes
    // from the second centre, at its z; otherwise from the first.
    EXPECT_TRUE(g_cci(list, CZorPoint3d(0, 0, 0), 2, CZorPoint3d(0, 0, 1), 3));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 3, 0, 1);
    EXPECT_TRUE(g_cci(list, CZorPoint3d(0, 0, 0), 3, CZorPoint3d(0, 0, 1), 2));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 3, 0, 0);

    // Equal circles on one centre: one point, at angle 0 from the second centre.
    EXPECT_TRUE(g_cci(list, CZorPoint3d(1, 1, 0), 2, CZorPoint3d(1, 1, 0), 2));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 3, 1, 0);
    EXPECT_FALSE(g_cci(list, CZorPoint3d(1, 1, 0), 1, CZorPoint3d(1, 1, 0), 2));
    EXPECT_FALSE(g_cci(list, CZorPoint3d(0, 0, 0), 3, CZorPoint3d(0.5, 0, 0), 1));
}

TEST_F(CircleTest, CircleCircleShallowCrossingUsesFixedAngleBound) {
    // A point tolerance far below the geometry, so that the angle bound 1e-5 / r1 decides.
    CZorPoint3dTol fine(1e-11);
    CZorPoint3dArray list;
    EXPECT_TRUE(g_cci(list, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(2 - 4e-11, 0, 0), 1));
    EXPECT_EQ(list.len(), 1);  // half angle ~6.3e-6
    EXPECT_TRUE(g_cci(list, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(2 - 4e-10, 0, 0), 1));
    EXPECT_EQ(list.len(), 2);  // half angle ~2e-5
}

TEST_F(CircleTest, CircleCircleZeroRadiusAndNaN) {
    CZorPoint3dArray list;
    EXPECT_TRUE(g_cci(list, CZorPoint3d(1, 0, 0), 0, CZorPoint3d(0, 0, 0), 1));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 1, 0, 0);
    EXPECT_FALSE(g_cci(list, CZorPoint3d(3, 0, 0), 0, CZorPoint3d(0, 0, 0), 1));
    EXPECT_FALSE(g_cci(list, CZorPoint3d(NAN, 0, 0), 1, CZorPoint3d(0, 0, 0), 1));
    EXPECT_TRUE(list.isEmpty());
}

TEST_F(CircleTest, ResultsMayReplaceTheirOwnInputs) {
    CZorPoint3dArray list;
    list.append(CZorPoint3d(0, 0, 0));
    list.append(CZorPoint3d(1, 0, 0));
    EXPECT_TRUE(g_cci(list, list[0], 1, list[1], 1));
    ASSERT_EQ(list.len(), 2);
    EXPECT_POINT_NEAR(list[0], 0.5, kSin60, 0);
    EXPECT_POINT_NEAR(list[1], 0.5, -kSin60, 0);

    CZorPoint3dArray seg;
    seg.append(CZorPoint3d(-5, 0, 0));
    seg.append(CZorPoint3d(5, 0, 0));
    EXPECT_TRUE(g_cli(seg, CZorPoint3d(0, 0, 0), 1, seg[0], seg[1]));
    ASSERT_EQ(seg.len(), 2);
    EXPECT_POINT_NEAR(seg[0], -1, 0, 0);
    EXPECT_POINT_NEAR(seg[1], 1, 0, 0);
}

TEST_F(CircleTest, CircleLineOrderFollowsTheDominantCoordinate) {
    CZorPoint3dArray list;
    const CZorPoint3d c(0, 0, 4);
    for (const bool reversed : {false, true}) {
        const CZorPoint3d p(-5, 0, 0);
        const CZorPoint3d q(5, 0, 0);
        EXPECT_TRUE(reversed ? g_cli0(list, c, 1, q, p) : g_cli0(list, c, 1, p, q));
        ASSERT_EQ(list.len(), 2);
        EXPECT_POINT_NEAR(list[0], -1, 0, 4);
        EXPECT_POINT_NEAR(list[1], 1, 0, 4);

        const CZorPoint3d up(0.3, -5, 0);
        const CZorPoint3d down(0.3, 5, 0);
        EXPECT_TRUE(reversed ? g_cli0(list, c, 1, down, up) : g_cli0(list, c, 1, up, down));
        ASSERT_EQ(list.len(), 2);
        EXPECT_LT(list[0].y, 0.0);
        EXPECT_GT(list[1].y, 0.0);
    }
    // Exactly 45 degrees counts as x-dominant: ascending x, so descending y on this line.
    const double h = std::sqrt(0.5);
    EXPECT_TRUE(
        g_cli0(list, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(2, -2, 0), CZorPoint3d(-2, 2, 0)));
    ASSERT_EQ(list.len(), 2);
    EXPECT_POINT_NEAR(list[0], -h, h, 0);
    // A hair steeper is y-dominant: ascending y.
    EXPECT_TRUE(g_cli0(list, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(2, -2.001, 0),
                       CZorPoint3d(-2, 2.001, 0)));
    ASSERT_EQ(list.len(), 2);
    EXPECT_GT(list[0].x, 0.0);
    EXPECT_LT(list[0].y, 0.0);
}

TEST_F(CircleTest, CircleLineTangencyWithinTolerance) {
    CZorPoint3dArray list;
    const CZorPoint3d c(0, 0, 0);
    const auto lineAt = [&](double y) {
        return g_cli0(list, c, 1, CZorPoint3d(-3, y, 0), CZorPoint3d(3, y, 0));
    };
    EXPECT_TRUE(lineAt(1 + 0.9e-5));
    ASSERT_EQ(list.len(), 1);
    EXPECT_NEAR(list[0].x, 0.0, 1e-9);
    EXPECT_FALSE(lineAt(1 + 1.1e-5));
    EXPECT_TRUE(list.isEmpty());
    EXPECT_FALSE(lineAt(1 + 2e-5));

    // From inside, the two roots merge only when they lie within half the tolerance.
    EXPECT_TRUE(lineAt(1 - 1e-11));
    EXPECT_EQ(list.len(), 1);
    EXPECT_TRUE(lineAt(1 - 1e-9));
    EXPECT_EQ(list.len(), 2);

    // The segment form leaves its list alone when the line misses.
    CZorPoint3dArray kept = prefilled();
    EXPECT_FALSE(g_cli(kept, c, 1, CZorPoint3d(-3, 1 + 2e-5, 0), CZorPoint3d(3, 1 + 2e-5, 0)));
    ASSERT_EQ(kept.len(), 1);
    EXPECT_EQ(kept[0].x, 99.0);
}

TEST_F(CircleTest, CircleLineDegenerateLine) {
    CZorPoint3dArray list = prefilled();
    EXPECT_FALSE(g_cli0(list, CZorPoint3d(0, 0, 0), 1, CZorPoint3d(1, 0, 0), CZorPoint3d(1, 0, 0)));
    EXPECT_TRUE(list.isEmpty());
    // A point circle on the line is touched once.
    EXPECT_TRUE(g_cli0(list, CZorPoint3d(2, 0, 0), 0, CZorPoint3d(0, 0, 0), CZorPoint3d(5, 0, 0)));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 2, 0, 0);
}

TEST_F(CircleTest, SegmentAndArcFilters) {
    const CZorPoint3d c(0, 0, 0);
    CZorPoint3dArray list = prefilled();
    EXPECT_TRUE(g_cli(list, c, 1, CZorPoint3d(0, 0, 0), CZorPoint3d(-5, 0, 0)));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], -1, 0, 0);
    // The line meets the circle but the segment stops short: emptied, false.
    list = prefilled();
    EXPECT_FALSE(g_cli(list, c, 1, CZorPoint3d(-0.5, 0, 0), CZorPoint3d(0.5, 0, 0)));
    EXPECT_TRUE(list.isEmpty());

    // The upper half circle with a horizontal segment: both points, ascending x.
    list = prefilled();
    EXPECT_TRUE(g_ali(list, c, 1, 0, kPi, CZorPoint3d(3, 0.5, 0), CZorPoint3d(-3, 0.5, 0)));
    ASSERT_EQ(list.len(), 2);
    EXPECT_POINT_NEAR(list[0], -kSin60, 0.5, 0);
    EXPECT_POINT_NEAR(list[1], kSin60, 0.5, 0);
    list = prefilled();
    EXPECT_FALSE(g_ali(list, c, 1, kPi, 0, CZorPoint3d(3, 0.5, 0), CZorPoint3d(-3, 0.5, 0)));
    EXPECT_TRUE(list.isEmpty());
    // Emptied also when the line misses.
    list = prefilled();
    EXPECT_FALSE(g_ali(list, c, 1, 0, kPi, CZorPoint3d(3, 5, 0), CZorPoint3d(-3, 5, 0)));
    EXPECT_TRUE(list.isEmpty());

    // Circle with arc: true even when nothing is found.
    list = prefilled();
    EXPECT_TRUE(g_cai(list, CZorPoint3d(1, 0, 0), 1, c, 1, kPi, 2 * kPi - 0.1));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 0.5, -kSin60, 0);
    EXPECT_TRUE(g_cai(list, CZorPoint3d(5, 0, 0), 1, c, 1, 0, kPi));
    EXPECT_TRUE(list.isEmpty());
}

TEST_F(CircleTest, ArcArc) {
    const CZorPoint3d c(0, 0, 0);
    CZorPoint3dArray list;
    // Different centres: the crossings on both arcs.
    EXPECT_TRUE(g_aai(list, c, 1, 0, kPi, CZorPoint3d(1, 0, 0), 1, 0, 2 * kPi - 0.01));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 0.5, kSin60, 0);
    EXPECT_FALSE(g_aai(list, c, 1, kPi / 2, kPi, CZorPoint3d(1, 0, 0), 1, 0, kPi));

    // One centre: the shared end points, the first arc's order first.
    EXPECT_TRUE(g_aai(list, c, 1, 0, kPi / 2, c, 1, kPi / 2, kPi));
    ASSERT_EQ(list.len(), 1);
    EXPECT_POINT_NEAR(list[0], 0, 1, 0);
    EXPECT_TRUE(g_aai(list, c, 1, 0, kPi, CZorPoint3d(5e-6, 0, 0), 1, kPi, 0));
    ASSERT_EQ(list.len(), 2);
    EXPECT_POINT_NEAR(list[0], 1, 0, 0);
    EXPECT_POINT_NEAR(list[1], -1, 0, 0);
    EXPECT_FALSE(g_aai(list, c, 1, 0, kPi, c, 2, 0, kPi));
}

TEST_F(CircleTest, PointOnArc) {
    const CZorPoint3d c(1, 1, 0);
    const auto at = [&](double w, double r) { return polar(c, w, r); };
    // A zero sweep is one direction, not a full circle.
    EXPECT_TRUE(g_arc_pt(c, 1, 1.0, 1.0, at(1.0, 1)));
    EXPECT_FALSE(g_arc_pt(c, 1, 1.0, 1.0, at(2.0, 1)));
    // Crossing the 0 direction.
    EXPECT_TRUE(g_arc_pt(c, 1, 3 * kPi / 2, kPi / 2, at(0.0, 1)));
    EXPECT_FALSE(g_arc_pt(c, 1, 3 * kPi / 2, kPi / 2, at(kPi, 1)));
    // Radius within the point tolerance.
    EXPECT_TRUE(g_arc_pt(c, 1, 0, kPi, at(1.0, 1 + 0.9e-5)));
    EXPECT_FALSE(g_arc_pt(c, 1, 0, kPi, at(1.0, 1 + 1.1e-5)));
    // Past an end: only within the point tolerance of the end point.
    EXPECT_TRUE(g_arc_pt(c, 1, 0, kPi / 2, at(kPi / 2 + 5e-6, 1)));
    EXPECT_FALSE(g_arc_pt(c, 1, 0, kPi / 2, at(kPi / 2 + 2e-5, 1)));
    EXPECT_TRUE(g_arc_pt(c, 1, 0, kPi / 2, at(-5e-6, 1)));
    // The distance is three-dimensional.
    CZorPoint3d lifted = at(1.0, 1);
    lifted.z = 0.01;
    EXPECT_FALSE(g_arc_pt(c, 1, 0, kPi, lifted));
}

TEST_F(CircleTest, PerpendicularOrientationAndTangentPoint) {
    const CZorPoint3d a(0, 0, 0);
    const CZorPoint3d b(10, 0, 0);
    EXPECT_DOUBLE_EQ(g_lot(a, b, CZorPoint3d(3, 2, 5)), kPi / 2);
    EXPECT_DOUBLE_EQ(g_lot(a, b, CZorPoint3d(3, -2, -5)), 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(g_lot(CZorPoint3d(0, 0, 0), CZorPoint3d(0, 4, 0), CZorPoint3d(-1, 1, 0)), kPi);

    EXPECT_EQ(g_point_orient(a, b, CZorPoint3d(5, 1, 0)), 1);
    EXPECT_EQ(g_point_orient(a, b, CZorPoint3d(5, -1, 0)), -1);
    EXPECT_EQ(g_point_orient(a, b, CZorPoint3d(20, 0, 0)), 1);
    EXPECT_EQ(g_point_orient(a, b, CZorPoint3d(-20, 0, 0)), 1);

    const CZorPoint3d p(2, 0, 0);
    EXPECT_POINT_NEAR(g_nm_pkt_tan(p, a, 1), 0.5, -kSin60, 0);
    EXPECT_POINT_NEAR(g_nm_pkt_tan(p, a, -1), 0.5, kSin60, 0);
    EXPECT_TRUE(std::isnan(g_nm_pkt_tan(CZorPoint3d(0.5, 0, 0), a, 1).x));
}

TEST_F(CircleTest, ThreePointArcs) {
    CZorPoint3d out(7, 7, 7);
    EXPECT_TRUE(
        g_arc3p_cen(CZorPoint3d(1, 0, 0), CZorPoint3d(0, 1, 0), CZorPoint3d(-1, 0, 0), out));
    EXPECT_POINT_NEAR(out, 0, 0, 0);
    EXPECT_TRUE(g_arc3p_cen(CZorPoint3d(4, 2, 0), CZorPoint3d(2, 4, 0), CZorPoint3d(0, 2, 0), out));
    EXPECT_POINT_NEAR(out, 2, 2, 0);

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
    EXPECT_POINT_NEAR(out, 0.6, 0, 0);

    double bulge = 5.0;
    EXPECT_TRUE(
        g_arc3p_bulg(CZorPoint3d(-1, 0, 0), CZorPoint3d(0, -1, 0), CZorPoint3d(1, 0, 0), bulge));
    EXPECT_NEAR(bulge, 1.0, 1e-12);
    EXPECT_TRUE(
        g_arc3p_bulg(CZorPoint3d(-1, 0, 0), CZorPoint3d(0, 1, 0), CZorPoint3d(1, 0, 0), bulge));
    EXPECT_NEAR(bulge, -1.0, 1e-12);
    EXPECT_TRUE(g_arc3p_bulg(CZorPoint3d(1, 0, 0), polar(CZorPoint3d(0, 0, 0), kPi / 4, 1),
                             CZorPoint3d(0, 1, 0), bulge));
    EXPECT_NEAR(bulge, std::tan(kPi / 8), 1e-12);
    // A major arc: from (1,0) through (0,-1) round to (0,1), counter-clockwise.
    EXPECT_TRUE(
        g_arc3p_bulg(CZorPoint3d(1, 0, 0), CZorPoint3d(-1, 0, 0), CZorPoint3d(0, -1, 0), bulge));
    EXPECT_NEAR(bulge, std::tan(3 * kPi / 8), 1e-12);
    bulge = 5.0;
    EXPECT_FALSE(
        g_arc3p_bulg(CZorPoint3d(0, 0, 0), CZorPoint3d(1, 0, 0), CZorPoint3d(2, 0, 0), bulge));
    EXPECT_EQ(bulge, 5.0);

    const CZorPoint3d c(0, 0, 0);
    const CZorPoint3d e(1, 0, 0);
    const CZorPoint3d n(0, 1, 0);
    const CZorPoint3d w(-1, 0, 0);
    EXPECT_TRUE(g_arc3p_orient(e, n, w, c));
    EXPECT_FALSE(g_arc3p_orient(e, w, n, c));
    EXPECT_FALSE(g_arc3p_orient(e, n, n, c));
}

TEST_F(CircleTest, BulgesFromAnglesAndRadii) {
    EXPECT_EQ(g_arc_bulg(1.0, 1.0), 0.0);
    EXPECT_DOUBLE_EQ(g_arc_bulg(0, kPi), 1.0);
    EXPECT_DOUBLE_EQ(g_arc_bulg(3 * kPi / 2, kPi / 2), 1.0);
    EXPECT_DOUBLE_EQ(g_arc_bulg(kPi / 2, 0), std::tan(3 * kPi / 8));
    EXPECT_DOUBLE_EQ(g_arcmp_bulg(CZorPoint3d(0, 0, 0), CZorPoint3d(1, 0, 0), CZorPoint3d(0, 1, 0)),
                     std::tan(kPi / 8));

    const CZorPoint3d p0(0, 0, 0);
    const CZorPoint3d p1(2, 0, 0);
    double b = 9.0;
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, 1.0));
    EXPECT_DOUBLE_EQ(b, 1.0);
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, -1.0));
    EXPECT_DOUBLE_EQ(b, -1.0);
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, 2.0));
    EXPECT_DOUBLE_EQ(b, 2.0 - std::sqrt(3.0));
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, -2.0));
    EXPECT_DOUBLE_EQ(b, -2.0 - std::sqrt(3.0));
    b = 9.0;
    EXPECT_FALSE(g_arcrad_bulg(b, p0, p1, 0.999));
    EXPECT_EQ(b, 9.0);
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, 0.0));
    EXPECT_EQ(b, 0.0);
    // A zero chord carries no arc.
    b = 9.0;
    EXPECT_FALSE(g_arcrad_bulg(b, p0, p0, 1.0));
    EXPECT_EQ(b, 9.0);

    EXPECT_DOUBLE_EQ(g_arcrad_bulg(p0, p1, 1.0), 1.0);
    EXPECT_TRUE(std::isnan(g_arcrad_bulg(p0, p1, 0.5)));
    EXPECT_TRUE(std::isnan(g_arcrad_bulg(p0, p1, NAN)));

    const CZorPoint3d c(0, 0, 0);
    EXPECT_DOUBLE_EQ(g_bulg_len(CZorPoint3d(2, 0, 0), CZorPoint3d(0, 2, 0), c), kPi);
    EXPECT_DOUBLE_EQ(g_bulg_len(CZorPoint3d(0, 2, 0), CZorPoint3d(2, 0, 0), c), 3 * kPi);
}

}  // namespace
}  // namespace ZOR
