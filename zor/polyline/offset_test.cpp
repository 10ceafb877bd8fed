#include "zor/polyline/offset.h"

#include <gtest/gtest.h>

#include <cmath>

#include "zor/polyline/test_shapes.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace {

using ZOR::detail::offsetPolyline;
using zor_test::Circle;
using zor_test::P;
using zor_test::Rect;

CZorArrayTempl<double> dists(std::initializer_list<double> v) {
    CZorArrayTempl<double> out;
    for (double d : v) out.append(d);
    return out;
}

void expectSquare(const CZorVertexArray& l, double lo, double hi) {
    ASSERT_EQ(l.len(), 4);
    EXPECT_TRUE(l.isClosed());
    CZorPoint3d a, b;
    ASSERT_TRUE(l.extents(a, b));
    EXPECT_NEAR(a.x, lo, 1e-9);
    EXPECT_NEAR(a.y, lo, 1e-9);
    EXPECT_NEAR(b.x, hi, 1e-9);
    EXPECT_NEAR(b.y, hi, 1e-9);
}

// Note: the offset goes to the right of travel, so a counter-clockwise outline grows.
TEST(Offset, SquareGrowsShrinksAndCollapses) {
    CZorVertexArray l = Rect(0, 0, 10, 10);
    offsetPolyline(l, 1.0, true);
    expectSquare(l, -1, 11);
    l = Rect(0, 0, 10, 10);
    offsetPolyline(l, -4.0, true);
    expectSquare(l, 4, 6);
    l = Rect(0, 0, 10, 10);
    offsetPolyline(l, -6.0, true);
    EXPECT_EQ(l.len(), 0);
}

TEST(Offset, ZeroDistanceChangesNothingButAnEmptyListRepairs) {
    CZorVertexArray l = Rect(0, 0, 10, 10);
    l[3].end = P(0, 0.5);  // an open closing joint stays as it is with d == 0
    const CZorVertexArray before = l;
    offsetPolyline(l, 0.0, true);
    EXPECT_EQ(l, before);
    CZorVertexArray open;
    open.append(CZorVertex(P(0, 0), P(10, 0), 0.0));
    open.append(CZorVertex(P(10, 1), P(10, 10), 0.0));
    offsetPolyline(open, CZorArrayTempl<double>(), true);
    ASSERT_EQ(open.len(), 2);
    EXPECT_TRUE(open[0].end == P(10, 0));
    EXPECT_TRUE(open[1].start == P(10, 0));
}

TEST(Offset, ClosingJointLeftOpenWithoutTrimClose) {
    CZorVertexArray l = Rect(0, 0, 10, 10);
    offsetPolyline(l, 1.0, false);
    ASSERT_EQ(l.len(), 4);
    EXPECT_TRUE(l[0].start == P(0, -1));
    EXPECT_TRUE(l[3].end == P(-1, 0));
    EXPECT_TRUE(l[1].start == P(11, -1));
    EXPECT_TRUE(l[2].start == P(11, 11));
}

TEST(Offset, OpenCornerAndDistancesPerSegment) {
    CZorVertexArray l;
    l.append(CZorVertex(P(0, 0), P(10, 0), 0.0));
    l.append(CZorVertex(P(10, 0), P(10, 10), 0.0));
    offsetPolyline(l, 1.0, true);
    ASSERT_EQ(l.len(), 2);
    EXPECT_TRUE(l[0].start == P(0, -1));
    EXPECT_TRUE(l[0].end == P(11, -1));
    EXPECT_TRUE(l[1].end == P(11, 10));

    CZorVertexArray chain;
    chain.append(CZorVertex(P(0, 0), P(10, 0), 0.0));
    chain.append(CZorVertex(P(10, 0), P(10, 10), 0.0));
    chain.append(CZorVertex(P(10, 10), P(20, 10), 0.0));
    offsetPolyline(chain, dists({1, 2}), true);
    ASSERT_EQ(chain.len(), 3);
    EXPECT_NEAR(chain[2].end.y, 8.0, 1e-9);
    EXPECT_NEAR(chain[1].start.x, 12.0, 1e-9);
}

TEST(Offset, CollinearNeighboursKeepAStep) {
    CZorVertexArray l;
    l.append(CZorVertex(P(0, 0), P(10, 0), 0.0));
    l.append(CZorVertex(P(10, 0), P(20, 0), 0.0));
    offsetPolyline(l, dists({1, 2}), true);
    ASSERT_EQ(l.len(), 2);
    EXPECT_TRUE(l[0].end == P(10, -1));
    EXPECT_TRUE(l[1].start == P(10, -2));
}

TEST(Offset, CircleGrowsAndCollapses) {
    CZorVertexArray l = Circle(0, 0, 5);
    offsetPolyline(l, 1.0, true);
    ASSERT_EQ(l.len(), 2);
    EXPECT_NEAR(l[0].radius(), 6.0, 1e-9);
    // Both arcs collapse onto the centre and go; an Ex polyline keeps its attributes.
    CZorVertexArrayEx ex(Circle(0, 0, 5));
    ex.attrNumber = 5;
    offsetPolyline(ex, -6.0, true);
    EXPECT_EQ(ex.len(), 0);
    EXPECT_EQ(ex.attrNumber, 5);
}

TEST(Offset, ShortEdgeTurnsOverAndNeighboursMeet) {
    // A notch: the short top edge from (6,10) to (4,10) sits between two long slanted edges.
    // The survivors keep their order, tags and the polyline's normal.
    CZorVertexArray l = zor_test::Polygon({P(0, 0), P(10, 0), P(6, 10), P(4, 10)});
    for (int i = 0; i < 4; ++i) l[i].tag = i + 1;
    l.setNormal(CZorVector3d(0, 0, -1));
    offsetPolyline(l, -1.5, true);
    ASSERT_EQ(l.len(), 3);
    EXPECT_TRUE(l.isClosed());
    EXPECT_NEAR(l[1].end.x, 5.0, 1e-9);
    EXPECT_EQ(l[0].tag, 1);
    EXPECT_EQ(l[1].tag, 2);
    EXPECT_EQ(l[2].tag, 4);
    EXPECT_TRUE(l.normal() == CZorVector3d(0, 0, -1));

    // The same outline starting at the short edge: the walk judges it last, when it comes round.
    // Without the closing joint repaired its start stays put, and it keeps its direction.
    const CZorVertexArray fromTop = zor_test::Polygon({P(6, 10), P(4, 10), P(0, 0), P(10, 0)});
    l = fromTop;
    offsetPolyline(l, -1.5, true);
    ASSERT_EQ(l.len(), 3);
    EXPECT_TRUE(l.isClosed());
    EXPECT_NEAR(l[0].start.x, 5.0, 1e-9);
    l = fromTop;
    offsetPolyline(l, -1.5, false);
    ASSERT_EQ(l.len(), 4);
    EXPECT_TRUE(l[0].start == P(6, 8.5));
}

TEST(Offset, TinyHeadIsDroppedUnmovedAndTurnedHeadIsRemoved) {
    CZorVertexArray l;
    l.append(CZorVertex(P(0, 0), P(1e-7, 0), 0.0));
    l.append(CZorVertex(P(1e-7, 0), P(10, 0), 0.0));
    offsetPolyline(l, 1.0, true);
    ASSERT_EQ(l.len(), 1);
    // The tiny element skipped the only entry of the distances, so the next one found none
    // left to read and kept the starting distance 0.
    EXPECT_TRUE(l[0].start == P(1e-7, 0));
    EXPECT_TRUE(l[0].end == P(10, 0));

    // The first segment of an open chain turns over when the inner offset passes its length.
    CZorVertexArray open;
    open.append(CZorVertex(P(0, 10), P(0, 9), 0.0));
    open.append(CZorVertex(P(0, 9), P(10, 9), 0.0));
    open.append(CZorVertex(P(10, 9), P(10, 0), 0.0));
    offsetPolyline(open, -2.0, true);
    ASSERT_EQ(open.len(), 2);
    EXPECT_NEAR(open[0].start.y, 11.0, 1e-9);
}

TEST(Offset, RunsMoveTogether) {
    // A line, a tangent quarter arc, a tangent line.
    CZorVertexArray l;
    l.append(CZorVertex(P(0, 0), P(10, 0), 0.0));
    l.append(CZorVertex(P(10, 0), P(15, 5), std::tan(M_PI / 8)));
    l.append(CZorVertex(P(15, 5), P(15, 15), 0.0));
    ASSERT_TRUE(ZOR::g_vl_segm_offset(l, dists({2})));
    ASSERT_EQ(l.len(), 3);
    EXPECT_TRUE(l.isContinuous());
    EXPECT_NEAR(l[1].radius(), 7.0, 1e-9);
    EXPECT_NEAR(l[2].end.x, 17.0, 1e-9);
    CZorVertexArray same = l;
    EXPECT_FALSE(ZOR::g_vl_segm_offset(same, CZorArrayTempl<double>()));
    EXPECT_EQ(same, l);
}

}  // namespace
