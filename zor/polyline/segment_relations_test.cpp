#include "zor/polyline/segment_relations.h"

#include <cmath>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

// Arc of bulge `b` on the circle of radius `r` about the origin, starting at angle `a0`.
CZorVertex ArcOn(double r, double a0, double b) {
    const double sweep = 4 * std::atan(b);
    return CZorVertex(ZOR::polar(P(0, 0), a0, r), ZOR::polar(P(0, 0), a0 + sweep, r), b);
}

TEST(SegmentRelationsTest, ColinearAndParallel) {
    // Lines need a connecting direction; arcs one circle within `tol`, and above their bulge of
    // 0.4 they count as lines, which these aren't on one of. The tolerance is restored.
    const CZorVertex a = ArcOn(10, 0, 0.4), b = ArcOn(10.05, 3, 0.4);
    struct Case {
        CZorVertex s, v;
        double tol;
        bool colinear;
    };
    for (const Case& c :
         {Case{L(0, 0, 1, 0), L(2, 0, 3, 0), 1e-5, true},
          Case{L(0, 0, 1, 0), L(3, 0, 2, 0), 1e-5, true},
          Case{L(0, 0, 1, 0), L(0, 1, 1, 1), 1e-5, false},
          Case{L(0, 0, 1, 0), L(5, 5, 5, 5), 1e-5, false},
          Case{ArcOn(10, 0, 0.2), ArcOn(10, 2, 0.2), 1e-5, true}, Case{a, b, 0.1, true},
          Case{a, b, 0.01, false}, Case{a, b, 0.45, false}}) {
        SCOPED_TRACE(testing::Message() << c.v.start.x << " " << c.tol);
        EXPECT_EQ(ZOR::g_vx_colinear(c.s, c.v, c.tol), c.colinear);
        EXPECT_EQ(CZorPoint3d::tol, 1e-5);
    }
    // Parallel lines, concentric arcs; a point is parallel to nothing.
    const CZorVertex line = L(0, 0, 1, 1), arc = ArcOn(3, 0, 0.3);
    EXPECT_TRUE(ZOR::g_vx_parallel(line, line));
    EXPECT_TRUE(ZOR::g_vx_parallel(line, L(5, 0, 3, -2)));
    EXPECT_FALSE(ZOR::g_vx_parallel(line, L(0, 0, 1, 0)));
    EXPECT_TRUE(ZOR::g_vx_parallel(arc, arc));
    EXPECT_TRUE(ZOR::g_vx_parallel(arc, ArcOn(5, 1, -0.3)));
    EXPECT_FALSE(ZOR::g_vx_parallel(arc, line));
    EXPECT_FALSE(ZOR::g_vx_parallel(L(1, 1, 1, 1), L(1, 1, 1, 1)));
}

TEST(SegmentRelationsTest, CornerAngleAndTrim) {
    // Left of the path: straight on pi, a left turn pi/2, a right turn 3 pi/2.
    const CZorVertex in = L(-1, 0, 0, 0);
    EXPECT_NEAR(ZOR::g_vx_ang(in, L(0, 0, 1, 0)), kPi, 1e-12);
    EXPECT_NEAR(ZOR::g_vx_ang(in, L(0, 0, 0, 1)), kPi / 2, 1e-12);
    EXPECT_NEAR(ZOR::g_vx_ang(in, L(0, 0, 0, -1)), 3 * kPi / 2, 1e-12);
    // Both extended to the crossing; segments that meet already or don't cross stay.
    struct Case {
        CZorVertex a, b;
        bool trimmed;
        CZorVertex aAfter, bAfter;
    };
    for (const Case& c :
         {Case{L(0, 0, 1, 0), L(2, 1, 2, 3), true, L(0, 0, 2, 0), L(2, 0, 2, 3)},
          Case{L(0, 0, 1, 0), L(1, 0, 1, 1), false, L(0, 0, 1, 0), L(1, 0, 1, 1)},
          Case{L(0, 0, 1, 0), L(2, 1, 3, 1), false, L(0, 0, 1, 0), L(2, 1, 3, 1)}}) {
        CZorVertex a = c.a, b = c.b;
        EXPECT_EQ(ZOR::g_vx_trim(a, b), c.trimmed);
        EXPECT_EQ(a, c.aAfter);
        EXPECT_EQ(b, c.bAfter);
    }
}

TEST(SegmentRelationsTest, SearchOnAndNear) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(2, 0), P(2, 2)}, false);
    int index = -7;
    ASSERT_TRUE(ZOR::g_vx_search(vl, P(2, 0), index));
    EXPECT_EQ(index, 0);  // a corner belongs to the first of its two segments
    ASSERT_TRUE(ZOR::g_vx_search(vl, P(2, 1), index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(ZOR::g_vx_search(vl, P(5, 5), index));
    EXPECT_EQ(index, 1);
    // (3, -1) is equally near both segments' shared end: the later wins.
    EXPECT_EQ(ZOR::g_vx_search_near(vl, P(3, -1)), vl[1]);
    EXPECT_EQ(ZOR::g_vx_search_near(vl, P(1, -1)), vl[0]);
    EXPECT_EQ(ZOR::g_vx_search_near(CZorVertexArray(), P(1, 1)), CZorVertex());
}

TEST(SegmentRelationsTest, TangentPoints) {
    // By direction: w = 0 touches the top alone; at w = pi/2 both candidates are ends of the
    // arc. For a clockwise arc they come in reverse order of testing.
    const CZorVertex top = A(1, 0, -1, 0, 1.0);
    EXPECT_EQ(ZOR::g_vx_tangp(top, 0.0, true), Points({P(0, 1)}));
    EXPECT_EQ(ZOR::g_vx_tangp(top, kPi / 2, true).len(), 0);
    EXPECT_EQ(ZOR::g_vx_tangp(top, kPi / 2, false).len(), 2);
    EXPECT_EQ(ZOR::g_vx_tangp(L(0, 0, 1, 0), 0.0, false).len(), 0);
    EXPECT_EQ(ZOR::g_vx_tangp(A(-1, 0, 1, 0, -1.0), kPi / 2, false), Points({P(1, 0), P(-1, 0)}));
    // From a point: none from inside the circle, nor where the points miss the arc.
    const CZorPoint3dArray from = ZOR::g_vx_tangp(top, P(0, 2), true);
    ASSERT_EQ(from.len(), 2);
    EXPECT_NEAR(from[0].y, 0.5, 1e-12);
    EXPECT_GT(from[0].x, 0.0);
    EXPECT_EQ(ZOR::g_vx_tangp(top, P(0, 0.5), true).len(), 0);
    EXPECT_EQ(ZOR::g_vx_tangp(top, P(0, -2), false).len(), 0);
}

TEST(SegmentRelationsTest, SmallEdits) {
    CZorVertex v(CZorPoint3d(0.26, 1.74, 3), CZorPoint3d(2.51, -0.49, 4), 0.3);
    v.tag = 5;
    const CZorVertex r = ZOR::g_vx_rnd(v, 0.5);
    EXPECT_EQ(r.start, CZorPoint3d(0.5, 1.5, 3));
    EXPECT_EQ(r.end, CZorPoint3d(2.5, -0.5, 4));
    EXPECT_EQ(r.bulge, 0.3);
    EXPECT_EQ(r.tag, 5);
    EXPECT_EQ(ZOR::g_vx_rnd(v, 1e-10).start, v.start);
    ZOR::g_vx_xy(v);
    EXPECT_EQ(v.start.z, 0.0);
    EXPECT_EQ(v.end.z, 0.0);
}

TEST(SegmentRelationsTest, ParallelPieceFromAPointToTheLevelOfAnother) {
    // A line gives a line to the level of q; an arc a piece of the concentric circle through p
    // to the radius through q, in its own sense.
    ExpectNear(CZorVertexArray(zor_g_vx_vx(P(1, 2), P(4, 7), L(0, 0, 10, 0), false)),
               CZorVertexArray(L(1, 2, 4, 2)), 0.0);
    ExpectNear(CZorVertexArray(zor_g_vx_vx(P(3, 0), P(0, 9), A(2, 0, -2, 0, 1.0), true)),
               CZorVertexArray(A(3, 0, 0, 3, std::tan(kPi / 8))), 1e-12);
    ExpectNear(CZorVertexArray(zor_g_vx_vx(P(-3, 0), P(0, 9), A(-2, 0, 2, 0, -1.0), false)),
               CZorVertexArray(A(-3, 0, 0, 3, -std::tan(kPi / 8))), 1e-12);
}

}  // namespace
}  // namespace zor_test
