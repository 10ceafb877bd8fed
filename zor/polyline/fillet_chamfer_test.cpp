#include "zor/polyline/fillet_chamfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "zor/polyline/test_shapes.h"

namespace {

using zor_test::P;
using zor_test::Rect;

CZorVertex L(double x0, double y0, double x1, double y1) {
    return CZorVertex(P(x0, y0), P(x1, y1), 0.0);
}

void expectSegment(const CZorVertex& v, CZorPoint3d s, CZorPoint3d e, double bulge) {
    EXPECT_TRUE(v.start == s) << v.start.x << "," << v.start.y;
    EXPECT_TRUE(v.end == e) << v.end.x << "," << v.end.y;
    EXPECT_NEAR(v.bulge, bulge, 1e-9);
}

// The arc of a corner result [s1, s2, arc] of radius 1, checked to join both segments.
CZorVertex joinedArc(const CZorVertexArray& t) {
    EXPECT_EQ(t.len(), 3);
    if (t.len() != 3) return CZorVertex();
    EXPECT_TRUE(t[0].end == t[2].start);
    EXPECT_TRUE(t[2].end == t[1].start);
    EXPECT_NEAR(t[2].radius(), 1.0, 1e-9);
    return t[2];
}

// The right-hand offsets of a left turn miss, the left-hand ones cross: a counter-clockwise arc
// from the second attempt. A right turn is served by the first, clockwise.
TEST(Fillet, LineCornersOnBothSides) {
    const CZorVertexArray t = ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, 10), 2.0, 0);
    ASSERT_EQ(t.len(), 3);
    expectSegment(t[0], P(-10, 0), P(-2, 0), 0.0);
    expectSegment(t[1], P(0, 2), P(0, 10), 0.0);
    expectSegment(t[2], P(-2, 0), P(0, 2), std::tan(M_PI / 8));
    const CZorVertexArray refused = ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, 10), 2.0, -1);
    ASSERT_EQ(refused.len(), 2);
    EXPECT_TRUE(refused[0] == L(-10, 0, 0, 0));
    EXPECT_EQ(ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, 10), 2.0, 1).len(), 3);
    EXPECT_EQ(ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, 10), 2.0, 7).len(), 2);

    const CZorVertexArray right = ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, -10), 2.0, 0);
    ASSERT_EQ(right.len(), 3);
    expectSegment(right[2], P(-2, 0), P(0, -2), -std::tan(M_PI / 8));
    EXPECT_EQ(ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, -10), 2.0, 1).len(), 2);
}

TEST(Fillet, RadiusKindsAndRefusals) {
    // Radius 0 extends two lines that stop short to their crossing; it refuses a met corner.
    const CZorVertexArray met = ZOR::g_vx_fillet(L(-10, 0, -1, 0), L(0, 1, 0, 10), 0.0, 0);
    ASSERT_EQ(met.len(), 2);
    EXPECT_TRUE(met[0].end == P(0, 0));
    EXPECT_TRUE(met[1].start == P(0, 0));
    EXPECT_EQ(ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, 10), 0.0, 0).len(), 0);
    for (double r : {std::numeric_limits<double>::quiet_NaN(),
                     std::numeric_limits<double>::infinity(), 1e-310}) {
        EXPECT_EQ(ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 0, 10), r, 0).len(), 2);
    }
    // Tangent segments, and a radius too large for the offsets to cross on either side.
    EXPECT_EQ(ZOR::g_vx_fillet(L(-10, 0, 0, 0), L(0, 0, 10, 0), 1.0, 0).len(), 2);
    EXPECT_EQ(ZOR::g_vx_fillet(L(-1, 0, 0, 0), L(0, 0, 0, 1), 5.0, 0).len(), 2);
    // A clockwise arc of radius 1 collapses under the offset to its right.
    const CZorVertex arc(P(0, 1), P(1, 0), -std::tan(M_PI / 8));
    EXPECT_EQ(ZOR::g_vx_fillet(arc, L(1, 0, 5, 0), 2.0, 0).len(), 0);
}

// Rounded on the inside of a left turn, the fillet touches each arc from within: its centre lies
// one radius off the line and the arc's radius less one from the arc's centre. The right side
// has no crossing there, so side -1 keeps the corner.
TEST(Fillet, LineArcAndArcArcCorners) {
    const CZorVertex line = L(-10, 0, 0, 0);
    const CZorVertex arc(P(0, 0), P(0, 10), 0.5);
    CZorVertex f = joinedArc(ZOR::g_vx_fillet(line, arc, 1.0, 0));
    EXPECT_GT(f.bulge, 0.0);
    EXPECT_NEAR(f.center().y, 1.0, 1e-9);
    EXPECT_NEAR(f.center().distanceTo(arc.center()), arc.radius() - 1.0, 1e-9);
    EXPECT_EQ(ZOR::g_vx_fillet(line, arc, 1.0, 1).len(), 3);
    EXPECT_EQ(ZOR::g_vx_fillet(line, arc, 1.0, -1).len(), 2);
    // Mirrored into a right turn, the first attempt holds: a clockwise fillet, and side +1,
    // which the second attempt would have served, keeps the corner.
    const CZorVertex down(P(0, 0), P(0, -10), -0.5);
    f = joinedArc(ZOR::g_vx_fillet(line, down, 1.0, 0));
    EXPECT_LT(f.bulge, 0.0);
    EXPECT_NEAR(f.center().y, -1.0, 1e-9);
    EXPECT_NEAR(f.center().distanceTo(down.center()), down.radius() - 1.0, 1e-9);
    EXPECT_EQ(ZOR::g_vx_fillet(line, down, 1.0, 1).len(), 2);

    const CZorVertex a1(P(-10, 0), P(0, 0), 0.2);
    const CZorVertex a2(P(0, 0), P(0, 10), 0.2);
    f = joinedArc(ZOR::g_vx_fillet(a1, a2, 1.0, 0));
    EXPECT_GT(f.bulge, 0.0);
    EXPECT_NEAR(f.center().distanceTo(a1.center()), a1.radius() - 1.0, 1e-9);
    EXPECT_NEAR(f.center().distanceTo(a2.center()), a2.radius() - 1.0, 1e-9);
    EXPECT_EQ(ZOR::g_vx_fillet(a1, a2, 1.0, -1).len(), 2);
}

TEST(Fillet, Polylines) {
    const CZorVertexArray sq = Rect(0, 0, 10, 10);
    CZorVertexArray f = ZOR::g_vl_fillet(sq, 1.0, 0, true);
    ASSERT_EQ(f.len(), 8);
    EXPECT_NE(f[-1].bulge, 0.0);
    EXPECT_TRUE(f.isClosed());
    f = ZOR::g_vl_fillet(sq, 1.0, 0, false);
    ASSERT_EQ(f.len(), 7);
    EXPECT_TRUE(f[0].start == P(0, 0));
    EXPECT_EQ(ZOR::g_vl_fillet(CZorVertexArray(L(0, 0, 1, 0)), 1.0, 0, true).len(), 1);

    // A short middle segment: the first fillet uses it up, the second corner stays.
    CZorVertexArray u;
    u.append(L(0, 10, 0, 0)).append(L(0, 0, 3, 0)).append(L(3, 0, 3, 10));
    f = ZOR::g_vl_fillet(u, 2.0, 0, false);
    ASSERT_EQ(f.len(), 4);
    EXPECT_TRUE(f[2].end == P(3, 0));

    // A first segment left an arc of more than half a circle refuses the fillet.
    CZorVertexArray big;
    big.append(CZorVertex(P(-10, 0), P(0, 0), 1.5)).append(L(0, 0, 10, 0));
    ASSERT_EQ(ZOR::g_vx_fillet(big[0], big[1], 0.5, 0).len(), 3);
    EXPECT_EQ(ZOR::g_vl_fillet(big, 0.5, 0, false), big);

    // Segments that stop short of their corner are first brought together there; parallel ones
    // can't be, and stay as they were.
    CZorVertexArray gap;
    gap.append(L(0, 0, 8, 0)).append(L(10, 2, 10, 10));
    f = ZOR::g_vl_fillet(gap, 1.0, 0, false);
    ASSERT_EQ(f.len(), 3);
    EXPECT_TRUE(f[0].end == P(9, 0));
    EXPECT_TRUE(f[2].start == P(10, 1));
    CZorVertexArray parallel;
    parallel.append(L(0, 0, 5, 0)).append(L(6, 1, 10, 1));
    EXPECT_EQ(ZOR::g_vl_fillet(parallel, 1.0, 0, false), parallel);
}

TEST(Fillet, OneCorner) {
    const CZorVertexArray sq = Rect(0, 0, 10, 10);
    CZorVertexArray f = ZOR::g_vl_fillet_p(sq, P(10, 0), 1.0);
    ASSERT_EQ(f.len(), 5);
    EXPECT_NE(f[1].bulge, 0.0);
    f = ZOR::g_vl_fillet_p(sq, P(0, 0), 1.0);  // the closing corner: arc last
    ASSERT_EQ(f.len(), 5);
    EXPECT_NE(f[4].bulge, 0.0);
    EXPECT_EQ(ZOR::g_vl_fillet_p(sq, P(5, 0), 1.0), sq);
    EXPECT_EQ(ZOR::g_vl_fillet_p(sq, P(10, 0), 0.0), sq);
    EXPECT_EQ(ZOR::g_vl_fillet_p(sq, P(10, 0), -1.0), sq);
    CZorVertexArray open;
    open.append(L(0, 0, 5, 0)).append(L(5, 0, 5, 5));
    EXPECT_EQ(ZOR::g_vl_fillet_p(open, P(0, 0), 1.0), open);
}

TEST(Chamfer, CornersBySide) {
    CZorVertexArray sq = Rect(0, 0, 10, 10);
    EXPECT_TRUE(ZOR::g_vl_chamfer(sq, 1.0, 0));
    ASSERT_EQ(sq.len(), 8);
    EXPECT_TRUE(sq.isClosed());
    EXPECT_TRUE(sq[0] == L(1, 0, 9, 0));
    EXPECT_TRUE(sq[1] == L(9, 0, 10, 1));
    EXPECT_TRUE(sq[-1] == L(0, 1, 1, 0));
    // A negative distance: the circle of diameter |d| through the corner meets both segments
    // nearest at the corner itself, so the cuts have no length and normalising takes them out.
    CZorVertexArray through = Rect(0, 0, 10, 10);
    EXPECT_TRUE(ZOR::g_vl_chamfer(through, -1.0, 0));
    EXPECT_EQ(through, Rect(0, 0, 10, 10));
    CZorVertexArray same = Rect(0, 0, 10, 10);
    EXPECT_TRUE(ZOR::g_vl_chamfer(same, 1.0, 0x7FFFFFFF));
    EXPECT_EQ(same, sq);
    CZorVertexArray big = Rect(0, 0, 10, 10);
    EXPECT_FALSE(ZOR::g_vl_chamfer(big, 20.0, 0));
    EXPECT_EQ(big.len(), 4);
    // Convex corners of a counter-clockwise square turn with it; none turns against it.
    CZorVertexArray concave = Rect(0, 0, 10, 10);
    EXPECT_FALSE(ZOR::g_vl_chamfer(concave, 1.0, -1));
    CZorVertexArray convex = Rect(0, 0, 10, 10);
    EXPECT_TRUE(ZOR::g_vl_chamfer(convex, 1.0, 1));

    CZorVertexArray open;
    open.append(L(0, 0, 10, 0)).append(L(10, 0, 10, 10)).append(L(10, 10, 0, 10));
    EXPECT_TRUE(ZOR::g_vl_chamfer(open, 1.0, 0));
    ASSERT_EQ(open.len(), 5);
    EXPECT_TRUE(open[0].start == P(0, 0));
    EXPECT_TRUE(open[-1].end == P(0, 10));
    EXPECT_TRUE(open[1].start == P(9, 0));

    // The turn of the whole is read from the second segment on round to the first, so an open
    // single corner has no area there and counts as clockwise: its left turn goes against it.
    CZorVertexArray corner;
    corner.append(L(0, 0, 10, 0)).append(L(10, 0, 10, 10));
    CZorVertexArray against = corner;
    EXPECT_FALSE(ZOR::g_vl_chamfer(corner, 1.0, 1));
    EXPECT_TRUE(ZOR::g_vl_chamfer(against, 1.0, -1));
    EXPECT_EQ(against.len(), 3);

    // On an arc the cut lies at the straight distance d from the corner, still on the arc.
    CZorVertexArray bend;
    bend.append(L(0, 0, 10, 0)).append(CZorVertex(P(10, 0), P(10, 10), 0.5));
    EXPECT_TRUE(ZOR::g_vl_chamfer(bend, 2.0, 0));
    ASSERT_EQ(bend.len(), 3);
    EXPECT_NEAR(bend[2].start.distanceTo(P(10, 0)), 2.0, 1e-9);
    EXPECT_NEAR(bend[2].center().distanceTo(bend[2].start), 6.25, 1e-9);

    CZorArrayTempl<CZorVertexArray> none;
    EXPECT_TRUE(ZOR::g_vll_chamfer(none, 1.0, 0));
}

TEST(Fillet, ConstructionPoint) {
    // m at (0, 5) above the line y = 0, d = 5: q = (3 - 13)^2 * k + 5, s = sqrt(13^2 - q^2); the
    // point lies s from m towards a (b to a runs in -x), then q towards the line.
    CZorPoint3d p = ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(0, 0), P(10, 0), 0.0);
    EXPECT_TRUE(p == P(-12, 0));
    p = ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(0, 0), P(10, 0), 0.01);
    EXPECT_TRUE(p == P(-std::sqrt(133.0), -1));
    p = ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(10, 0), P(0, 0), 0.01);
    EXPECT_TRUE(p == P(std::sqrt(133.0), -1));
    // A line of one point has no foot: the origin.
    p = ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(1, 1), P(1, 1), 0.0);
    EXPECT_TRUE(p == CZorPoint3d::kOrigin);
}

}  // namespace
