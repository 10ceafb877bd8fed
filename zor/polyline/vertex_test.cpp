#include "zor/polyline/vertex.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"
#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

const double kQuarter = std::tan(kPi / 8);  // the bulge of a quarter circle

TEST(VertexTest, ShapeFollowsBulge) {
    // A positive bulge swells right of the chord, its centre on the left until more than half
    // a circle moves it over; the sagitta is |b| chord / 2. An arc without chord is a point. The
    // free functions of (start, end, bulge) agree with the segment.
    struct Case {
        CZorVertex v;
        CZorPoint3d mid, centre;
        double r, len;
    };
    const double r = 1.25;  // of the arcs on the chord (0, 0)-(2, 0)
    for (const Case& c :
         {Case{A(1, 0, -1, 0, 1.0), P(0, 1), P(0, 0), 1.0, kPi},
          Case{A(1, 0, -1, 0, -1.0), P(0, -1), P(0, 0), 1.0, kPi},
          Case{A(0, 0, 2, 0, 0.5), P(1, -0.5), P(1, 0.75), r, 4 * r * std::atan(0.5)},
          Case{A(0, 0, 2, 0, 2.0), P(1, -2), P(1, -0.75), r, 4 * r * std::atan(2.0)},
          Case{A(0, 0, 2, 0, -2.0), P(1, 2), P(1, 0.75), r, 4 * r * std::atan(2.0)},
          Case{A(3, 4, 3, 4, 0.7), P(3, 4), P(3, 4), 0.0, 0.0}}) {
        SCOPED_TRACE(c.v.bulge);
        const CZorVertex& v = c.v;
        ExpectPoint(v.mid(), c.mid.x, c.mid.y);
        ExpectPoint(ZOR::g_bulg_mid(v.start, v.end, v.bulge), c.mid.x, c.mid.y);
        ExpectPoint(v.center(), c.centre.x, c.centre.y);
        ExpectPoint(ZOR::g_bulg_cen(v.start, v.end, v.bulge), c.centre.x, c.centre.y);
        EXPECT_NEAR(v.radius(), c.r, 1e-12);
        EXPECT_NEAR(v.bulgLen(), c.len, 1e-12);
        EXPECT_NEAR(ZOR::g_bulg_len(v.start, v.end, v.bulge), c.len, 1e-12);
    }
    // toArc reads counter-clockwise: the clockwise half from its end to its start.
    CZorPoint3d centre;
    double radius = 0, a1 = 0, a2 = 0;
    ASSERT_TRUE(A(1, 0, -1, 0, -1.0).toArc(centre, radius, a1, a2));
    EXPECT_NEAR(a1, kPi, 1e-12);
    EXPECT_NEAR(a2, 0.0, 1e-12);
    EXPECT_NEAR(ZOR::vx_start_angle(A(1, 0, -1, 0, 1.0)), kPi / 2, 1e-12);
    // At the end the curve heads -Y; walked backwards it points back towards +Y.
    EXPECT_NEAR(ZOR::vx_end_angle(A(1, 0, -1, 0, 1.0)), kPi / 2, 1e-12);
    ExpectPoint(ZOR::g_bulg_cen(P(0, 0), P(2, 0), 0.0), 1, 0);
    ExpectPoint(ZOR::g_arc_mid(P(0, 0), 1.0, 0.0, kPi), 0, 1);
    EXPECT_NEAR(ZOR::vx_start_dir(L(0, 0, 0, 2)).y, 1.0, 1e-12);
    // A line has neither centre nor radius: false and untouched, or NaN.
    const CZorVertex line = L(0, 0, 1, 0);
    CZorPoint3d c(7, 7, 7);
    double lineRadius = 3.0;
    EXPECT_FALSE(line.center(c));
    EXPECT_FALSE(line.radius(lineRadius));
    EXPECT_EQ(c, CZorPoint3d(7, 7, 7));
    EXPECT_EQ(lineRadius, 3.0);
    EXPECT_TRUE(std::isnan(line.center().x));
    EXPECT_TRUE(std::isnan(line.radius()));
}

TEST(VertexTest, ConstructorsAndEquality) {
    EXPECT_NEAR(CZorVertex(P(-1, 0), P(0, -1), P(1, 0)).bulge, 1.0, 1e-12);
    ExpectNear(CZorVertex(P(0, 0), 2.0, 0.0, kPi / 2), A(2, 0, 0, 2, kQuarter), 1e-12);
    const CZorVertex flat(P(0, 0), 2.0, 1.0, 1.0);
    EXPECT_EQ(flat.bulge, 0.0);
    EXPECT_EQ(flat.tag, 0);
    // Bulges within the literal 1e-5, ends by the point tolerance, direction counts.
    const CZorVertex a = A(0, 0, 1, 0, 0.5);
    EXPECT_EQ(a, A(0, 0, 1, 0, 0.5 + 0.9e-5));
    EXPECT_NE(a, A(0, 0, 1, 0, 0.5 + 1.1e-5));
    EXPECT_EQ(a, A(0, 0, 1 + 1e-6, 0, 0.5));
    EXPECT_NE(a, a.reverse());
}

TEST(VertexTest, RevertReverseAndComplement) {
    CZorVertex line = L(0, 0, 1, 0);
    line.tag = 42;
    line.revert();  // keeps the tag and doesn't make the bulge -0.0
    EXPECT_EQ(line.tag, 42);
    EXPECT_FALSE(std::signbit(line.bulge));
    ExpectPoint(line.start, 1, 0);
    EXPECT_EQ(line.reverse().tag, 0);
    EXPECT_FALSE(std::signbit(line.reverse().bulge));
    // The other part of the circle, ends swapped; a line just turns.
    for (const double b : {0.5, -0.5, 0.0}) {
        SCOPED_TRACE(b);
        ExpectNear(A(0, 0, 1, 0, b).complement(), A(1, 0, 0, 0, b == 0.0 ? 0.0 : 1.0 / b), 1e-12);
    }
}

TEST(VertexTest, MovingAnEndKeepsTheCircle) {
    // A point off the circle is projected along the ray from the centre; past the other end the
    // arc goes the long way round in the same sense.
    CZorVertex v = A(1, 0, -1, 0, 1.0);
    ExpectNear(v.setEndPoint(P(0, 5)), A(1, 0, 0, 1, kQuarter), 1e-12);
    ExpectNear(A(1, 0, -1, 0, 1.0).setStartPoint(P(0, 1)), A(0, 1, -1, 0, kQuarter), 1e-12);
    ExpectNear(A(1, 0, -1, 0, -1.0).setEndPoint(P(0, -3)), A(1, 0, 0, -1, -kQuarter), 1e-12);
    ExpectNear(A(1, 0, -1, 0, -1.0).setStartPoint(P(0, -3)), A(0, -1, -1, 0, -kQuarter), 1e-12);
    EXPECT_GT(v.setEndPoint(P(1, -0.001)).bulge, 1.0);
}

TEST(VertexTest, OffsetGoesRightOfTravelAndCollapsesPastTheCentre) {
    // Right of a counter-clockwise arc is outside, of a clockwise one inside; -1 lands on the
    // centre by arithmetic, -3 by the collapse rule, which keeps the bulge.
    const CZorVertex ccw = A(1, 0, -1, 0, 1.0);
    struct Case {
        CZorVertex v;
        double d;
        CZorVertex expected;
    };
    for (const Case& c :
         {Case{L(0, 0, 1, 0), 1.0, L(0, -1, 1, -1)}, Case{ccw, 1.0, A(2, 0, -2, 0, 1.0)},
          Case{ccw, -1.0, A(0, 0, 0, 0, 1.0)}, Case{ccw, -3.0, A(0, 0, 0, 0, 1.0)},
          Case{ccw, 0.0, ccw}, Case{ccw, std::nan(""), ccw},
          Case{A(2, 0, -2, 0, -1.0), 1.0, A(1, 0, -1, 0, -1.0)}}) {
        SCOPED_TRACE(testing::Message() << c.v.bulge << " " << c.d);
        CZorVertex v = c.v;
        ExpectNear(v.offset(c.d), c.expected, 1e-12);
    }
    // Through a point.
    ExpectNear(L(0, 0, 4, 0).offset(P(2, 3)), L(0, 3, 4, 3), 1e-12);
    CZorVertex arc = ccw;
    EXPECT_NEAR(arc.offset(P(0, 3)).radius(), 3.0, 1e-12);
    EXPECT_NEAR(arc.offset(P(0, 0.5)).radius(), 0.5, 1e-12);
}

TEST(VertexTest, SideDistanceAndWalking) {
    const CZorVertex line = L(0, 0, 1, 0);
    EXPECT_EQ(line.orientp(P(0, 5)), 1);
    EXPECT_EQ(line.orientp(P(7, -5)), -1);
    EXPECT_EQ(line.orientp(P(9, 0)), 0);
    EXPECT_NEAR(ZOR::g_vx_lotd(line, P(0, 5)), 5.0, 1e-12);
    const CZorVertex ccw = A(1, 0, -1, 0, 1.0);
    EXPECT_EQ(ccw.orientp(P(0, 0.5)), 1);  // inside a counter-clockwise arc is left
    EXPECT_EQ(ccw.orientp(P(0, 2)), -1);
    ExpectPoint(ccw.lotp(P(0, -4)), 0, -1);  // on the full circle, not limited to the arc
    const CZorVertex arc = A(1, 0, -1, 0, 1.0);
    const CZorVertex cw = A(1, 0, -1, 0, -1.0);
    CZorPoint3d p;
    ASSERT_TRUE(arc.pointAtDist(p, kPi / 2, true));
    ExpectPoint(p, 0, 1);
    ASSERT_TRUE(cw.pointAtDist(p, kPi / 2, true));
    ExpectPoint(p, 0, -1);
    EXPECT_FALSE(arc.pointAtDist(p, arc.bulgLen() + 1e-9, true));
    EXPECT_TRUE(arc.pointAtDist(p, arc.bulgLen() + 1e-9, false));
    EXPECT_TRUE(arc.pointAtDist(p, -1.0, false));

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
    const CZorVertex a = L(0, 0, 1, 0);
    CZorPoint3dArray out;
    EXPECT_TRUE(a.intersectWith(out, L(1, 0, 1, 1), 0));
    ASSERT_EQ(out.len(), 1);
    ExpectPoint(out[0], 1, 0);
    // Nothing found keeps what `out` had, and the same object never intersects.
    out = Points({P(9, 9)});
    EXPECT_FALSE(a.intersectWith(out, a, 0));
    EXPECT_FALSE(a.intersectWith(out, L(5, 5, 6, 5), 0));
    EXPECT_EQ(out, Points({P(9, 9)}));
    ExpectPoint(a.intersectWith(L(3, -1, 3, 1), 0x100)[0], 3, 0);

    // 0x002 drops own ends, 0x004 those of the other, 0x001 touching points, and 0x100 takes
    // lines as infinite and arcs as full circles. A line leading hands the work to the arc.
    const CZorVertex arc = A(1, 0, -1, 0, 1.0);
    struct Case {
        CZorVertex s, v;
        unsigned int flags;
        int found;
    };
    for (const Case& c :
         {Case{a, L(1, 0, 1, 1), 0x002, 0}, Case{a, L(1, 0, 1, 1), 0x004, 0},
          Case{a, L(3, -1, 3, 1), 0, 0}, Case{a, L(3, -1, 3, 1), 0x100, 1},
          Case{arc, L(-2, 1, 2, 1), 0, 1}, Case{arc, L(-2, 1, 2, 1), 0x001, 0},
          Case{L(-2, 1, 2, 1), arc, 0x001, 0}, Case{arc, L(-2, -0.5, 2, -0.5), 0, 0},
          Case{arc, L(-2, -0.5, 2, -0.5), 0x100, 2}, Case{L(0, 0, 0, 1), arc, 0, 1},
          Case{L(0, 0, 0, 1), arc, 0x002, 0}, Case{L(0, 0, 0, 1), arc, 0x004, 1}}) {
        SCOPED_TRACE(testing::Message() << c.s.bulge << " " << c.v.start.y << " " << c.flags);
        EXPECT_EQ(c.s.intersectWith(c.v, c.flags).len(), c.found);
    }
    // Chords only.
    EXPECT_EQ(arc.intersectWithBulg0(L(0, -1, 0, 0.5)).len(), 1);
    EXPECT_EQ(arc.intersectWithBulg0(arc).len(), 0);
    // intNear: the crossing of the extended segments nearest to a point; none leaves `out`.
    CZorPoint3d near(7, 7, 0);
    ASSERT_TRUE(A(2, 0, -2, 0, 1.0).intNear(L(-5, 0.5, -4, 0.5), P(5, 0), near));
    EXPECT_GT(near.x, 0.0);
    near = CZorPoint3d(7, 7, 0);
    EXPECT_FALSE(A(2, 0, -2, 0, 1.0).intNear(L(-5, 9, 5, 9), P(0, 0), near));
    EXPECT_EQ(near, CZorPoint3d(7, 7, 0));
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
                ExpectBitEqual(own, given);
                found += own.len();
            }
        }
        for (const CZorPoint3d& p : {arc.mid(), other.start, P(coord(rng), coord(rng))}) {
            EXPECT_EQ(arc.isPoint(p), ZOR::detail::isPointOn(arc, &circle, p));
        }
    }
    EXPECT_GT(found, 100);
}

TEST(VertexTest, CoLinearTangentAndSplitCounts) {
    const CZorVertex a = L(0, 0, 1, 0);
    EXPECT_TRUE(a.coLinear(L(1, 0, 2, 0)));
    EXPECT_EQ(a.unite(L(1, 0, 2, 0)), L(0, 0, 2, 0));
    EXPECT_FALSE(a.coLinear(a));
    EXPECT_TRUE(a.coLinear(L(1, 0, 0.5, 0)));  // doubling back
    EXPECT_FALSE(a.coLinear(A(1, 0, 2, 0, 0.1)));
    // Two half circles of one circle: a full circle is not one arc.
    EXPECT_FALSE(A(1, 0, -1, 0, 1.0).coLinear(A(-1, 0, 1, 0, 1.0)));
    const CZorVertex q1 = A(1, 0, 0, 1, kQuarter);
    ASSERT_TRUE(q1.coLinear(A(0, 1, -1, 0, kQuarter)));
    EXPECT_NEAR(q1.unite(A(0, 1, -1, 0, kQuarter)).bulge, 1.0, 1e-12);
    EXPECT_TRUE(ZOR::g_vx_is_tang(a, a.reverse(), P(1, 0)));
    EXPECT_FALSE(ZOR::g_vx_is_tang(a, L(1, 0, 1, 1), P(1, 0)));
    const CZorVertex half = A(10, 0, -10, 0, 1.0);
    EXPECT_EQ(ZOR::g_vx_split_n(half, 0.1), 11);
    EXPECT_EQ(ZOR::g_vx_split_n(half, 5.0), 2);
    EXPECT_EQ(ZOR::g_vx_split_n(a, 0.1), 0);
    EXPECT_EQ(ZOR::g_vx_split_dif(A(0, 0, 1, 0, 0.00005), 0.01), 0);
    EXPECT_GT(ZOR::g_vx_split_dif(half, 0.1), 2);
    EXPECT_EQ(ZOR::g_bulg_split(half), 2);
    EXPECT_EQ(ZOR::g_bulg_split(a), 0);
    // A zero deviation asks for no finite count; it must not ask for an unbounded one.
    EXPECT_LE(ZOR::g_vx_split_n(half, 0.0), 1000000);
}

TEST(VertexTest, MirroringFlipsTheBulge) {
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(CZorPoint3d(0, 0, 0), CZorVector3d(0, 1, 0)));
    CZorVertex viaMatrix = A(1, 1, -1, 1, 1.0);
    viaMatrix.transformBy(m.m);
    EXPECT_EQ(viaMatrix.bulge, -1.0);
    ExpectPoint(viaMatrix.mid(), 0, -2);
    EXPECT_EQ(A(1, 1, -1, 1, 1.0).mirror(0.0, CZorPoint3d(0, 0, 0)), viaMatrix);
    CZorVertex turned = A(1, 0, -1, 0, 1.0);
    turned.rotate(kPi / 2, CZorPoint3d(0, 0, 0));
    EXPECT_EQ(turned.bulge, 1.0);
    ExpectPoint(turned.start, 0, 1);
}

}  // namespace
}  // namespace zor_test
