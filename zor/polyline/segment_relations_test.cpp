#include "zor/polyline/segment_relations.h"

#include <cmath>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace {

using zor_test::P;

constexpr double kPi = 3.141592653589793;

CZorVertex L(CZorPoint3d a, CZorPoint3d b) {
    return CZorVertex(a, b, 0.0);
}

// Arc of bulge `b` on the circle of radius `r` about the origin, starting at angle `a0`.
CZorVertex ArcOn(double r, double a0, double b) {
    const double sweep = 4 * std::atan(b);
    return CZorVertex(ZOR::polar(P(0, 0), a0, r), ZOR::polar(P(0, 0), a0 + sweep, r), b);
}

TEST(SegmentRelationsTest, ColinearLinesNeedAConnectingDirection) {
    EXPECT_TRUE(ZOR::g_vx_colinear(L(P(0, 0), P(1, 0)), L(P(2, 0), P(3, 0)), 1e-5));
    EXPECT_TRUE(ZOR::g_vx_colinear(L(P(0, 0), P(1, 0)), L(P(3, 0), P(2, 0)), 1e-5));
    EXPECT_FALSE(ZOR::g_vx_colinear(L(P(0, 0), P(1, 0)), L(P(0, 1), P(1, 1)), 1e-5));
    EXPECT_FALSE(ZOR::g_vx_colinear(L(P(0, 0), P(1, 0)), L(P(5, 5), P(5, 5)), 1e-5));
    EXPECT_EQ(CZorPoint3d::tol, 1e-5);  // the scope restores the tolerance
}

TEST(SegmentRelationsTest, ColinearArcsShareCircleWithinTolerance) {
    EXPECT_TRUE(ZOR::g_vx_colinear(ArcOn(10, 0, 0.2), ArcOn(10, 2, 0.2), 1e-5));
    const CZorVertex a = ArcOn(10, 0, 0.4);
    const CZorVertex b = ArcOn(10.05, 3, 0.4);
    EXPECT_TRUE(ZOR::g_vx_colinear(a, b, 0.1));
    EXPECT_FALSE(ZOR::g_vx_colinear(a, b, 0.01));
    // Above 0.4 the arcs count as lines, and these don't run along one line.
    EXPECT_FALSE(ZOR::g_vx_colinear(a, b, 0.45));
}

TEST(SegmentRelationsTest, Parallel) {
    const CZorVertex line = L(P(0, 0), P(1, 1));
    EXPECT_TRUE(ZOR::g_vx_parallel(line, line));
    EXPECT_TRUE(ZOR::g_vx_parallel(line, L(P(5, 0), P(3, -2))));
    EXPECT_FALSE(ZOR::g_vx_parallel(line, L(P(0, 0), P(1, 0))));
    const CZorVertex arc = ArcOn(3, 0, 0.3);
    EXPECT_TRUE(ZOR::g_vx_parallel(arc, arc));
    EXPECT_TRUE(ZOR::g_vx_parallel(arc, ArcOn(5, 1, -0.3)));
    EXPECT_FALSE(ZOR::g_vx_parallel(arc, line));
    EXPECT_FALSE(ZOR::g_vx_parallel(L(P(1, 1), P(1, 1)), L(P(1, 1), P(1, 1))));
}

TEST(SegmentRelationsTest, CornerAngleIsLeftOfThePath) {
    const CZorVertex in = L(P(-1, 0), P(0, 0));
    EXPECT_NEAR(ZOR::g_vx_ang(in, L(P(0, 0), P(1, 0))), kPi, 1e-12);
    EXPECT_NEAR(ZOR::g_vx_ang(in, L(P(0, 0), P(0, 1))), kPi / 2, 1e-12);
    EXPECT_NEAR(ZOR::g_vx_ang(in, L(P(0, 0), P(0, -1))), 3 * kPi / 2, 1e-12);
}

TEST(SegmentRelationsTest, TrimToTheCrossing) {
    CZorVertex a = L(P(0, 0), P(1, 0));
    CZorVertex b = L(P(2, 1), P(2, 3));
    ASSERT_TRUE(ZOR::g_vx_trim(a, b));
    EXPECT_EQ(a.end, P(2, 0));
    EXPECT_EQ(b.start, P(2, 0));

    CZorVertex meetA = L(P(0, 0), P(1, 0));
    CZorVertex meetB = L(P(1, 0), P(1, 1));
    EXPECT_FALSE(ZOR::g_vx_trim(meetA, meetB));
    EXPECT_EQ(meetA.end, P(1, 0));

    CZorVertex parA = L(P(0, 0), P(1, 0));
    CZorVertex parB = L(P(2, 1), P(3, 1));
    EXPECT_FALSE(ZOR::g_vx_trim(parA, parB));
    EXPECT_EQ(parB.start, P(2, 1));
}

TEST(SegmentRelationsTest, SearchOnAndNear) {
    const CZorVertexArray vl = zor_test::Polygon({P(0, 0), P(2, 0), P(2, 2)}, false);
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

TEST(SegmentRelationsTest, TangentPointsByDirection) {
    const CZorVertex top(P(1, 0), P(-1, 0), 1.0);
    const CZorPoint3dArray level = ZOR::g_vx_tangp(top, 0.0, true);
    ASSERT_EQ(level.len(), 1);
    EXPECT_EQ(level[0], P(0, 1));
    EXPECT_EQ(ZOR::g_vx_tangp(top, kPi / 2, true).len(), 0);
    EXPECT_EQ(ZOR::g_vx_tangp(top, kPi / 2, false).len(), 2);
    EXPECT_EQ(ZOR::g_vx_tangp(L(P(0, 0), P(1, 0)), 0.0, false).len(), 0);
    // For a clockwise arc the candidates come in reverse order of testing.
    const CZorVertex cw(P(-1, 0), P(1, 0), -1.0);
    const CZorPoint3dArray both = ZOR::g_vx_tangp(cw, kPi / 2, false);
    ASSERT_EQ(both.len(), 2);
    EXPECT_EQ(both[0], P(1, 0));
}

TEST(SegmentRelationsTest, TangentPointsFromAPoint) {
    const CZorVertex top(P(1, 0), P(-1, 0), 1.0);
    const CZorPoint3dArray from = ZOR::g_vx_tangp(top, P(0, 2), true);
    ASSERT_EQ(from.len(), 2);
    EXPECT_NEAR(from[0].y, 0.5, 1e-12);
    EXPECT_GT(from[0].x, 0.0);
    EXPECT_EQ(ZOR::g_vx_tangp(top, P(0, 0.5), true).len(), 0);  // inside the circle
    const CZorPoint3dArray below = ZOR::g_vx_tangp(top, P(0, -2), false);
    EXPECT_EQ(below.len(), 0);
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
    const CZorVertex line = L(P(0, 0), P(10, 0));
    const CZorVertex piece = zor_g_vx_vx(P(1, 2), P(4, 7), line, false);
    EXPECT_EQ(piece.start, P(1, 2));
    EXPECT_EQ(piece.end, P(4, 2));
    EXPECT_EQ(piece.bulge, 0.0);
    const CZorVertex arc(P(2, 0), P(-2, 0), 1.0);
    const CZorVertex onCircle = zor_g_vx_vx(P(3, 0), P(0, 9), arc, true);
    EXPECT_EQ(onCircle.end, P(0, 3));
    EXPECT_NEAR(onCircle.bulge, std::tan(kPi / 8), 1e-12);
    const CZorVertex cw(P(-2, 0), P(2, 0), -1.0);
    const CZorVertex cwPiece = zor_g_vx_vx(P(-3, 0), P(0, 9), cw, false);
    EXPECT_EQ(cwPiece.end, P(0, 3));
    EXPECT_NEAR(cwPiece.bulge, -std::tan(kPi / 8), 1e-12);
}

}  // namespace
