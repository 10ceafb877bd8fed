#include "zor/polyline/vertex.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"

namespace {

constexpr double kPi = 3.141592653589793;

CZorPoint3d P(double x, double y) {
    return CZorPoint3d(x, y, 0.0);
}

void ExpectPoint(const CZorPoint3d& p, double x, double y, double eps = 1e-12) {
    EXPECT_NEAR(p.x, x, eps);
    EXPECT_NEAR(p.y, y, eps);
}

TEST(VertexTest, HalfCircleShapeFollowsBulgeSign) {
    const CZorVertex ccw(P(1, 0), P(-1, 0), 1.0);
    ExpectPoint(ccw.mid(), 0, 1);
    ExpectPoint(ccw.center(), 0, 0);
    EXPECT_DOUBLE_EQ(ccw.radius(), 1.0);
    EXPECT_DOUBLE_EQ(ccw.bulgLen(), kPi);
    EXPECT_NEAR(ZOR::vx_start_angle(ccw), kPi / 2, 1e-12);
    // At the end the curve heads -Y; walked backwards it points back towards +Y.
    EXPECT_NEAR(ZOR::vx_end_angle(ccw), kPi / 2, 1e-12);

    const CZorVertex cw(P(1, 0), P(-1, 0), -1.0);
    ExpectPoint(cw.mid(), 0, -1);
    CZorPoint3d c;
    double r = 0, a1 = 0, a2 = 0;
    ASSERT_TRUE(cw.toArc(c, r, a1, a2));
    // Read counter-clockwise: from the end to the start.
    EXPECT_NEAR(a1, kPi, 1e-12);
    EXPECT_NEAR(a2, 0.0, 1e-12);
}

TEST(VertexTest, MinorArcCentreLiesLeftOfChordForPositiveBulge) {
    const CZorVertex v(P(0, 0), P(2, 0), 0.5);
    const CZorPoint3d c = v.center();
    EXPECT_GT(c.y, 0.0);
    EXPECT_NEAR(c.distanceTo(v.start), v.radius(), 1e-12);
    EXPECT_NEAR(c.distanceTo(v.mid()), v.radius(), 1e-12);
    // The arc swells to the right of the chord direction.
    EXPECT_LT(v.mid().y, 0.0);
    EXPECT_NEAR(v.mid().y, -0.5, 1e-12);  // sagitta = |b| * chord / 2

    // More than half a circle: the centre moves over to the swollen side.
    const CZorVertex major(P(0, 0), P(2, 0), 2.0);
    EXPECT_LT(major.center().y, 0.0);
    EXPECT_NEAR(major.mid().y, -2.0, 1e-12);
    EXPECT_NEAR(major.center().distanceTo(major.mid()), major.radius(), 1e-12);
    const CZorVertex mirrored(P(0, 0), P(2, 0), -2.0);
    EXPECT_GT(mirrored.center().y, 0.0);
    EXPECT_NEAR(mirrored.mid().y, 2.0, 1e-12);
}

TEST(VertexTest, LineHasNoCentreOrRadius) {
    const CZorVertex line(P(0, 0), P(1, 0), 0.0);
    CZorPoint3d c(7, 7, 7);
    double r = 3.0;
    EXPECT_FALSE(line.center(c));
    EXPECT_FALSE(line.radius(r));
    EXPECT_EQ(c, CZorPoint3d(7, 7, 7));
    EXPECT_EQ(r, 3.0);
    EXPECT_TRUE(std::isnan(line.center().x));
    EXPECT_TRUE(std::isnan(line.radius()));
}

TEST(VertexTest, ZeroChordArcHasCentreAtMidpointAndNoRadius) {
    const CZorVertex v(P(3, 4), P(3, 4), 0.7);
    ExpectPoint(v.center(), 3, 4);
    EXPECT_DOUBLE_EQ(v.radius(), 0.0);
    ExpectPoint(v.mid(), 3, 4);
    EXPECT_DOUBLE_EQ(v.bulgLen(), 0.0);
}

TEST(VertexTest, ConstructorsFromArcDescriptions) {
    const CZorVertex three(P(-1, 0), P(0, -1), P(1, 0));
    EXPECT_NEAR(three.bulge, 1.0, 1e-12);
    const CZorVertex polarArc(P(0, 0), 2.0, 0.0, kPi / 2);
    ExpectPoint(polarArc.start, 2, 0);
    ExpectPoint(polarArc.end, 0, 2);
    EXPECT_NEAR(polarArc.bulge, std::tan(kPi / 8), 1e-12);
    const CZorVertex flat(P(0, 0), 2.0, 1.0, 1.0);
    EXPECT_EQ(flat.bulge, 0.0);
    EXPECT_EQ(flat.tag, 0);
}

TEST(VertexTest, EqualityUsesLiteralBulgeToleranceAndDirection) {
    const CZorVertex a(P(0, 0), P(1, 0), 0.5);
    EXPECT_EQ(a, CZorVertex(P(0, 0), P(1, 0), 0.5 + 0.9e-5));
    EXPECT_NE(a, CZorVertex(P(0, 0), P(1, 0), 0.5 + 1.1e-5));
    EXPECT_EQ(a, CZorVertex(P(0, 0), P(1 + 1e-6, 0), 0.5));
    EXPECT_NE(a, a.reverse());
}

TEST(VertexTest, RevertKeepsTagReverseDoesNot) {
    CZorVertex line(P(0, 0), P(1, 0), 0.0);
    line.tag = 42;
    line.revert();
    EXPECT_EQ(line.tag, 42);
    EXPECT_FALSE(std::signbit(line.bulge));
    ExpectPoint(line.start, 1, 0);
    EXPECT_EQ(line.reverse().tag, 0);
    EXPECT_FALSE(std::signbit(line.reverse().bulge));
}

TEST(VertexTest, ComplementTakesTheOtherPartOfTheCircle) {
    CZorVertex a(P(0, 0), P(1, 0), 0.5);
    a.complement();
    EXPECT_NEAR(a.bulge, 2.0, 1e-12);
    ExpectPoint(a.start, 1, 0);
    CZorVertex b(P(0, 0), P(1, 0), -0.5);
    b.complement();
    EXPECT_NEAR(b.bulge, -2.0, 1e-12);
    CZorVertex line(P(0, 0), P(1, 0), 0.0);
    line.complement();
    EXPECT_EQ(line.bulge, 0.0);
    ExpectPoint(line.end, 0, 0);
}

TEST(VertexTest, MovingAnEndKeepsTheCircle) {
    CZorVertex v(P(1, 0), P(-1, 0), 1.0);
    v.setEndPoint(P(0, 5));  // off the circle: projected along the ray from the centre
    ExpectPoint(v.end, 0, 1);
    EXPECT_NEAR(v.bulge, std::tan(kPi / 8), 1e-12);
    EXPECT_NEAR(v.radius(), 1.0, 1e-12);

    CZorVertex w(P(1, 0), P(-1, 0), 1.0);
    w.setStartPoint(P(0, 1));
    ExpectPoint(w.start, 0, 1);
    EXPECT_NEAR(w.bulge, std::tan(kPi / 8), 1e-12);

    // Past the other end: the long way round, same sense.
    CZorVertex x(P(1, 0), P(0, 1), std::tan(kPi / 8));
    x.setEndPoint(P(1, -0.001));
    EXPECT_GT(x.bulge, 1.0);
    // The lower half walked clockwise: (1,0) -> (-1,0) through (0,-1), bulge -1.
    CZorVertex cw(P(1, 0), P(-1, 0), -1.0);
    cw.setEndPoint(P(0, -3));
    ExpectPoint(cw.end, 0, -1);
    EXPECT_NEAR(cw.bulge, -std::tan(kPi / 8), 1e-12);
}

TEST(VertexTest, OffsetGoesRightOfTravelAndCollapsesPastTheCentre) {
    CZorVertex line(P(0, 0), P(1, 0), 0.0);
    line.offset(1.0);
    ExpectPoint(line.start, 0, -1);
    ExpectPoint(line.end, 1, -1);

    CZorVertex ccw(P(1, 0), P(-1, 0), 1.0);
    CZorVertex grown = ccw;
    grown.offset(1.0);
    EXPECT_NEAR(grown.radius(), 2.0, 1e-12);
    CZorVertex onCentre = ccw;
    onCentre.offset(-1.0);
    ExpectPoint(onCentre.start, 0, 0);
    ExpectPoint(onCentre.end, 0, 0);
    CZorVertex collapsed = ccw;
    collapsed.offset(-3.0);
    ExpectPoint(collapsed.start, 0, 0);
    ExpectPoint(collapsed.end, 0, 0);
    EXPECT_EQ(collapsed.bulge, 1.0);

    CZorVertex cw(P(2, 0), P(-2, 0), -1.0);
    cw.offset(1.0);  // right of a clockwise arc is its inside
    EXPECT_NEAR(cw.radius(), 1.0, 1e-12);

    CZorVertex same = ccw;
    same.offset(std::nan(""));
    EXPECT_EQ(same, ccw);
    same.offset(0.0);
    EXPECT_EQ(same, ccw);
}

TEST(VertexTest, OffsetThroughAPoint) {
    CZorVertex line(P(0, 0), P(4, 0), 0.0);
    line.offset(P(2, 3));
    ExpectPoint(line.start, 0, 3);
    CZorVertex arc(P(1, 0), P(-1, 0), 1.0);
    arc.offset(P(0, 3));
    EXPECT_NEAR(arc.radius(), 3.0, 1e-12);
    arc.offset(P(0, 0.5));
    EXPECT_NEAR(arc.radius(), 0.5, 1e-12);
}

TEST(VertexTest, SideAndSignedDistance) {
    const CZorVertex line(P(0, 0), P(1, 0), 0.0);
    EXPECT_EQ(line.orientp(P(0, 5)), 1);
    EXPECT_EQ(line.orientp(P(7, -5)), -1);
    EXPECT_EQ(line.orientp(P(9, 0)), 0);
    EXPECT_NEAR(ZOR::g_vx_lotd(line, P(0, 5)), 5.0, 1e-12);
    const CZorVertex ccw(P(1, 0), P(-1, 0), 1.0);
    EXPECT_EQ(ccw.orientp(P(0, 0.5)), 1);  // inside a counter-clockwise arc is left
    EXPECT_EQ(ccw.orientp(P(0, 2)), -1);
    ExpectPoint(ccw.lotp(P(0, -4)), 0, -1);  // on the full circle, not limited to the arc
}

TEST(VertexTest, WalkingAlongAndBack) {
    const CZorVertex arc(P(1, 0), P(-1, 0), 1.0);
    CZorPoint3d p;
    ASSERT_TRUE(arc.pointAtDist(p, kPi / 2, true));
    ExpectPoint(p, 0, 1);
    EXPECT_FALSE(arc.pointAtDist(p, arc.bulgLen() + 1e-9, true));
    EXPECT_TRUE(arc.pointAtDist(p, arc.bulgLen() + 1e-9, false));
    EXPECT_TRUE(arc.pointAtDist(p, -1.0, false));
    const CZorVertex cw(P(1, 0), P(-1, 0), -1.0);
    ASSERT_TRUE(cw.pointAtDist(p, kPi / 2, true));
    ExpectPoint(p, 0, -1);

    double d = -1.0;
    ASSERT_TRUE(arc.distAtPoint(d, P(-1, 0)));
    EXPECT_DOUBLE_EQ(d, kPi);  // the end, never a multiple of 2 pi r
    ASSERT_TRUE(arc.distAtPoint(d, P(1, 0)));
    EXPECT_EQ(d, 0.0);
    ASSERT_TRUE(cw.distAtPoint(d, P(0, -1)));
    EXPECT_NEAR(d, kPi / 2, 1e-12);
    d = 5.0;
    EXPECT_FALSE(arc.distAtPoint(d, P(0, -1)));
    EXPECT_EQ(d, 5.0);
}

TEST(VertexTest, IntersectionFlags) {
    const CZorVertex a(P(0, 0), P(1, 0), 0.0);
    const CZorVertex b(P(1, 0), P(1, 1), 0.0);
    CZorPoint3dArray out;
    EXPECT_TRUE(a.intersectWith(out, b, 0));
    ASSERT_EQ(out.len(), 1);
    ExpectPoint(out[0], 1, 0);
    EXPECT_FALSE(a.intersectWith(b, 0x002).len());
    EXPECT_FALSE(a.intersectWith(b, 0x004).len());

    // Nothing found keeps what `out` had, and the same object never intersects.
    out.setLogicalLength(0);
    out.append(P(9, 9));
    EXPECT_FALSE(a.intersectWith(out, a, 0));
    EXPECT_FALSE(a.intersectWith(out, CZorVertex(P(5, 5), P(6, 5), 0.0), 0));
    ASSERT_EQ(out.len(), 1);
    ExpectPoint(out[0], 9, 9);

    // 0x100: lines infinite, arcs full circles.
    const CZorVertex far(P(3, -1), P(3, 1), 0.0);
    EXPECT_EQ(a.intersectWith(far, 0).len(), 0);
    ASSERT_EQ(a.intersectWith(far, 0x100).len(), 1);
    ExpectPoint(a.intersectWith(far, 0x100)[0], 3, 0);

    // A line touching the top of a half circle: kept without 0x001, dropped with it.
    const CZorVertex arc(P(1, 0), P(-1, 0), 1.0);
    const CZorVertex tangent(P(-2, 1), P(2, 1), 0.0);
    EXPECT_EQ(arc.intersectWith(tangent, 0).len(), 1);
    EXPECT_EQ(arc.intersectWith(tangent, 0x001).len(), 0);
    EXPECT_EQ(tangent.intersectWith(arc, 0x001).len(), 0);
    const CZorVertex below(P(-2, -0.5), P(2, -0.5), 0.0);
    EXPECT_EQ(arc.intersectWith(below, 0).len(), 0);
    EXPECT_EQ(arc.intersectWith(below, 0x100).len(), 2);

    // A line leading: the arc computes, the line's own ends are still filtered.
    const CZorVertex chord(P(0, 0), P(0, 1), 0.0);
    EXPECT_EQ(chord.intersectWith(arc, 0).len(), 1);
    EXPECT_EQ(chord.intersectWith(arc, 0x002).len(), 0);
    EXPECT_EQ(chord.intersectWith(arc, 0x004).len(), 1);

    // Chords only.
    EXPECT_EQ(arc.intersectWithBulg0(CZorVertex(P(0, -1), P(0, 0.5), 0.0)).len(), 1);
    EXPECT_EQ(arc.intersectWithBulg0(arc).len(), 0);
}

TEST(VertexTest, GivenArcCircleAnswersLikeTheSegmentItself) {
    // The circle a caller worked out once through toArc must give the very points and answers
    // of the segment's own arithmetic, for every flag combination and both segment kinds.
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> coord(-5.0, 5.0);
    std::uniform_real_distribution<double> bulge(-2.5, 2.5);
    int found = 0;
    for (int k = 0; k < 400; ++k) {
        const CZorVertex arc(P(coord(rng), coord(rng)), P(coord(rng), coord(rng)), bulge(rng));
        const double otherBulge = k % 2 == 0 ? 0.0 : bulge(rng);
        const CZorVertex other(P(coord(rng), coord(rng)), P(coord(rng), coord(rng)), otherBulge);
        ZOR::detail::ArcCircle circle, otherCircle;
        ASSERT_TRUE(arc.toArc(circle.c, circle.r, circle.a1, circle.a2));
        other.toArc(otherCircle.c, otherCircle.r, otherCircle.a1, otherCircle.a2);
        const ZOR::detail::ArcCircle* otherGiven = otherBulge != 0.0 ? &otherCircle : nullptr;
        for (const unsigned int flags : {0x000u, 0x001u, 0x006u, 0x100u, 0x107u}) {
            // Both orders: a line leading hands the work to the arc.
            for (const bool arcFirst : {true, false}) {
                const CZorVertex& s = arcFirst ? arc : other;
                const CZorVertex& v = arcFirst ? other : arc;
                CZorPoint3dArray own, given;
                const bool a = s.intersectWith(own, v, flags);
                const bool b =
                    arcFirst
                        ? ZOR::detail::intersectSegments(s, &circle, given, v, otherGiven, flags)
                        : ZOR::detail::intersectSegments(s, otherGiven, given, v, &circle, flags);
                ASSERT_EQ(a, b);
                ASSERT_EQ(own.len(), given.len());
                for (int i = 0; i < own.len(); ++i) {
                    EXPECT_EQ(own[i].x, given[i].x);
                    EXPECT_EQ(own[i].y, given[i].y);
                }
                found += own.len();
            }
        }
        for (const CZorPoint3d& p : {arc.mid(), other.start, P(coord(rng), coord(rng))}) {
            EXPECT_EQ(arc.isPoint(p), ZOR::detail::isPointOn(arc, &circle, p));
        }
    }
    EXPECT_GT(found, 100);
}

TEST(VertexTest, IntNearPicksTheCrossingNearestToAPoint) {
    const CZorVertex circleArc(P(2, 0), P(-2, 0), 1.0);
    const CZorVertex line(P(-5, 0.5), P(-4, 0.5), 0.0);
    CZorPoint3d out(7, 7, 0);
    ASSERT_TRUE(circleArc.intNear(line, P(5, 0), out));
    EXPECT_GT(out.x, 0.0);
    CZorPoint3d untouched(7, 7, 0);
    EXPECT_FALSE(circleArc.intNear(CZorVertex(P(-5, 9), P(5, 9), 0.0), P(0, 0), untouched));
    EXPECT_EQ(untouched, CZorPoint3d(7, 7, 0));
}

TEST(VertexTest, CoLinearAndUnite) {
    const CZorVertex a(P(0, 0), P(1, 0), 0.0);
    const CZorVertex b(P(1, 0), P(2, 0), 0.0);
    EXPECT_TRUE(a.coLinear(b));
    EXPECT_FALSE(a.coLinear(a));
    const CZorVertex u = a.unite(b);
    ExpectPoint(u.start, 0, 0);
    ExpectPoint(u.end, 2, 0);
    EXPECT_TRUE(a.coLinear(CZorVertex(P(1, 0), P(0.5, 0), 0.0)));  // doubling back
    EXPECT_FALSE(a.coLinear(CZorVertex(P(1, 0), P(2, 0), 0.1)));
    // Two half circles of one circle: a full circle is not one arc.
    const CZorVertex top(P(1, 0), P(-1, 0), 1.0);
    const CZorVertex bottom(P(-1, 0), P(1, 0), 1.0);
    EXPECT_FALSE(top.coLinear(bottom));
    const CZorVertex q1(P(1, 0), P(0, 1), std::tan(kPi / 8));
    const CZorVertex q2(P(0, 1), P(-1, 0), std::tan(kPi / 8));
    ASSERT_TRUE(q1.coLinear(q2));
    EXPECT_NEAR(q1.unite(q2).bulge, 1.0, 1e-12);
}

TEST(VertexTest, TangencyAndSplitCounts) {
    const CZorVertex a(P(0, 0), P(1, 0), 0.0);
    EXPECT_TRUE(ZOR::g_vx_is_tang(a, a.reverse(), P(1, 0)));
    EXPECT_FALSE(ZOR::g_vx_is_tang(a, CZorVertex(P(1, 0), P(1, 1), 0.0), P(1, 0)));

    const CZorVertex half(P(10, 0), P(-10, 0), 1.0);
    EXPECT_EQ(ZOR::g_vx_split_n(half, 0.1), 11);
    EXPECT_EQ(ZOR::g_vx_split_n(half, 5.0), 2);
    EXPECT_EQ(ZOR::g_vx_split_n(a, 0.1), 0);
    EXPECT_EQ(ZOR::g_vx_split_dif(CZorVertex(P(0, 0), P(1, 0), 0.00005), 0.01), 0);
    EXPECT_GT(ZOR::g_vx_split_dif(half, 0.1), 2);
    EXPECT_EQ(ZOR::g_bulg_split(half), 2);
    EXPECT_EQ(ZOR::g_bulg_split(a), 0);
    // A zero deviation asks for no finite count; it must not ask for an unbounded one.
    EXPECT_LE(ZOR::g_vx_split_n(half, 0.0), 1000000);
}

TEST(VertexTest, FreeShapeFunctionsMatchTheSegment) {
    ExpectPoint(ZOR::g_bulg_mid(P(1, 0), P(-1, 0), 1.0), 0, 1);
    ExpectPoint(ZOR::g_bulg_cen(P(1, 0), P(-1, 0), 1.0), 0, 0);
    ExpectPoint(ZOR::g_bulg_cen(P(0, 0), P(2, 0), 0.0), 1, 0);
    EXPECT_DOUBLE_EQ(ZOR::g_bulg_len(P(1, 0), P(-1, 0), 1.0), kPi);
    ExpectPoint(ZOR::g_arc_mid(P(0, 0), 1.0, 0.0, kPi), 0, 1);
    const CZorVector3d d = ZOR::vx_start_dir(CZorVertex(P(0, 0), P(0, 2), 0.0));
    EXPECT_NEAR(d.y, 1.0, 1e-12);
}

TEST(VertexTest, MirroringFlipsTheBulge) {
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(CZorPoint3d(0, 0, 0), CZorVector3d(0, 1, 0)));
    CZorVertex viaMatrix(P(1, 1), P(-1, 1), 1.0);
    viaMatrix.transformBy(m.m);
    EXPECT_EQ(viaMatrix.bulge, -1.0);
    ExpectPoint(viaMatrix.mid(), 0, -2);
    CZorVertex viaMirror(P(1, 1), P(-1, 1), 1.0);
    viaMirror.mirror(0.0, CZorPoint3d(0, 0, 0));
    EXPECT_EQ(viaMirror, viaMatrix);
    CZorVertex turned(P(1, 0), P(-1, 0), 1.0);
    turned.rotate(kPi / 2, CZorPoint3d(0, 0, 0));
    EXPECT_EQ(turned.bulge, 1.0);
    ExpectPoint(turned.start, 0, 1);
}

}  // namespace
