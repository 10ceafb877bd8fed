#include <cmath>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"
#include "zor/polyline/vertexarray.h"

namespace {

using zor_test::P;
using zor_test::Polygon;

constexpr double kPi = 3.141592653589793;

CZorVertex L(CZorPoint3d a, CZorPoint3d b) {
    return CZorVertex(a, b, 0.0);
}

TEST(NormTest, ZeroLengthSegmentsGoAndTheNormalResets) {
    CZorVertexArray points;
    points.append(L(P(1, 1), P(1, 1)));
    points.append(CZorVertex(P(2, 2), P(2, 2), 0.5));
    points.setNormal(CZorVector3d(0, 0, -1));
    points.norm(false);
    EXPECT_EQ(points.len(), 0);
    EXPECT_EQ(points.normal(), CZorVector3d::kZAxis);

    CZorVertexArray one;
    one.append(L(P(0, 0), P(1, 0)));
    one.append(L(P(1, 0), P(1, 0)));
    one.setNormal(CZorVector3d(0, 0, -1));
    one.norm(true);
    ASSERT_EQ(one.len(), 1);
    EXPECT_EQ(one.normal(), CZorVector3d::kZAxis);

    CZorVertexArray kept = zor_test::Rect(0, 0, 1, 1);
    kept.setNormal(CZorVector3d(0, 0, -1));
    kept.norm(false);
    EXPECT_EQ(kept.normal(), CZorVector3d(0, 0, -1));
}

TEST(NormTest, CollinearLinesMergeAlsoWhenDoublingBack) {
    CZorVertexArray ahead = Polygon({P(0, 0), P(1, 0), P(3, 0)}, false);
    ahead.norm(false);
    ASSERT_EQ(ahead.len(), 1);
    EXPECT_EQ(ahead[0].end, P(3, 0));
    CZorVertexArray back = Polygon({P(0, 0), P(2, 0), P(1, 0)}, false);
    back.norm(false);
    ASSERT_EQ(back.len(), 1);
    EXPECT_EQ(back[0].end, P(1, 0));
    CZorVertexArray spike = Polygon({P(0, 0), P(2, 0), P(0, 0)}, false);
    spike.norm(false);
    EXPECT_EQ(spike.len(), 0);
}

TEST(NormTest, ClosingJointWithAndWithoutKeepStart) {
    // The extra corner lies inside the first side; it isn't the first point.
    CZorVertexArray inner = Polygon({P(0, 0), P(1, 0), P(2, 0), P(2, 2), P(0, 2)});
    inner.norm(false);
    EXPECT_EQ(inner.len(), 4);
    CZorVertexArray innerKeep = Polygon({P(0, 0), P(1, 0), P(2, 0), P(2, 2), P(0, 2)});
    innerKeep.norm(true);
    EXPECT_EQ(innerKeep.len(), 4);

    // The first point lies in the middle of a side.
    const CZorVertexArray startMid = Polygon({P(1, 0), P(2, 0), P(2, 2), P(0, 2), P(0, 0)});
    CZorVertexArray merged = startMid;
    merged.norm(false);
    ASSERT_EQ(merged.len(), 4);
    EXPECT_EQ(merged[0].start, P(2, 0));
    EXPECT_EQ(merged[3].start, P(0, 0));
    EXPECT_EQ(merged[3].end, P(2, 0));
    EXPECT_TRUE(merged.isClosed());
    CZorVertexArray keep = startMid;
    keep.norm(true);
    ASSERT_EQ(keep.len(), 5);
    EXPECT_EQ(keep[0].start, P(1, 0));
}

TEST(NormTest, ArcsMergeOnOneCircleButNeverIntoAFullCircle) {
    CZorVertexArray halves = zor_test::Circle(0, 0, 1);
    halves.norm(false);
    EXPECT_EQ(halves.len(), 2);

    const double q = std::tan(kPi / 8);
    CZorVertexArray quarters;
    quarters.append(CZorVertex(P(1, 0), P(0, 1), q));
    quarters.append(CZorVertex(P(0, 1), P(-1, 0), q));
    quarters.append(CZorVertex(P(-1, 0), P(0, -1), q));
    quarters.append(CZorVertex(P(0, -1), P(1, 0), q));

    // Across the closing joint the last quarter takes in the first two before the circle would
    // close, so the walk starts at the third: three quarters from (-1,0), then the second one.
    CZorVertexArray merged = quarters;
    merged.norm(false);
    ASSERT_EQ(merged.len(), 2);
    EXPECT_EQ(merged[0].start, P(-1, 0));
    EXPECT_EQ(merged[0].end, P(0, 1));
    EXPECT_NEAR(merged[0].bulge, std::tan(3 * kPi / 8), 1e-12);
    EXPECT_EQ(merged[1], quarters[1]);
    EXPECT_TRUE(merged.isClosed());

    // Keeping the start: the first three merge from (1,0), the fourth stays alone.
    CZorVertexArray kept = quarters;
    kept.norm(true);
    ASSERT_EQ(kept.len(), 2);
    EXPECT_EQ(kept[0].start, P(1, 0));
    EXPECT_EQ(kept[0].end, P(0, -1));
    EXPECT_EQ(kept[1], quarters[3]);
}

TEST(NormTest, JointsBecomeBitEqualGapsStay) {
    CZorVertexArray vl;
    vl.append(L(P(0, 0), P(1, 0)));
    vl.append(L(P(1, 3e-6), P(1, 1)));
    vl.append(L(P(1, 1), P(0, 1)));
    vl.append(L(P(0, 1), P(0, 4e-6)));
    vl.append(L(P(5, 5), P(6, 7)));  // a gap far above tolerance
    vl.norm(true);
    ASSERT_EQ(vl.len(), 5);
    EXPECT_EQ(vl[0].end.y, vl[1].start.y);
    EXPECT_EQ(vl[0].end.y, 3e-6);
    EXPECT_EQ(vl[2].end.x, vl[3].start.x);
    EXPECT_NE(vl[3].end, vl[4].start);

    // The closing joint is snapped too: the last end takes the first start.
    CZorVertexArray loop = zor_test::Rect(0, 0, 1, 1);
    loop[3].end = P(0, 4e-6);
    loop.norm(true);
    ASSERT_EQ(loop.len(), 4);
    EXPECT_EQ(loop[3].end.y, 0.0);
}

TEST(CloseTest, BridgesGapsAndClosesOnRequest) {
    CZorVertexArray gap;
    gap.append(L(P(0, 0), P(1, 0)));
    gap.append(L(P(2, 0), P(3, 1)));
    CZorVertexArray open = gap;
    open.close(false);
    ASSERT_EQ(open.len(), 3);
    EXPECT_EQ(open[1], L(P(1, 0), P(2, 0)));
    EXPECT_FALSE(open.isClosed());
    CZorVertexArray closed = gap;
    closed.close(true);
    ASSERT_EQ(closed.len(), 4);
    EXPECT_EQ(closed[3], L(P(3, 1), P(0, 0)));
    EXPECT_TRUE(closed.isClosed());

    CZorVertexArray single(L(P(0, 0), P(1, 0)));
    single.close(true);
    ASSERT_EQ(single.len(), 2);
    EXPECT_EQ(single[1], L(P(1, 0), P(0, 0)));

    CZorVertexArray already = zor_test::Rect(0, 0, 1, 1);
    already.close(true);
    EXPECT_EQ(already, zor_test::Rect(0, 0, 1, 1));

    CZorVertexArray empty;
    empty.close(false);
    ASSERT_EQ(empty.len(), 1);
    EXPECT_EQ(empty[0], CZorVertex());
}

TEST(JoinTest, OneSegment) {
    CZorVertexArray vl(L(P(0, 0), P(1, 0)));
    const CZorVertex reversedFit = L(P(2, 0), P(1, 0));
    EXPECT_FALSE(vl.join(reversedFit, false));
    EXPECT_EQ(vl.len(), 1);
    ASSERT_TRUE(vl.join(reversedFit, true));
    EXPECT_EQ(vl[1], L(P(1, 0), P(2, 0)));
    ASSERT_TRUE(vl.join(L(P(-1, 0), P(0, 0)), false));
    EXPECT_EQ(vl[0].start, P(-1, 0));
    ASSERT_TRUE(vl.join(L(P(-1, 0), P(-1, 5)), true));  // fits the start reversed
    EXPECT_EQ(vl[0], L(P(-1, 5), P(-1, 0)));
    EXPECT_FALSE(vl.join(L(P(9, 9), P(8, 8)), true));

    // Fitting both ends: the end wins.
    CZorVertexArray both = Polygon({P(0, 0), P(1, 0), P(1, 1)}, false);
    ASSERT_TRUE(both.join(L(P(1, 1), P(0, 0)), false));
    EXPECT_EQ(both[2].start, P(1, 1));
    EXPECT_FALSE(both.join(L(P(0, 0), P(5, 5)), true));  // now closed

    CZorVertexArray empty;
    EXPECT_TRUE(empty.join(L(P(3, 3), P(4, 4)), false));
}

TEST(JoinTest, WholePolylines) {
    const CZorVertexArray square = zor_test::Rect(0, 0, 1, 1);
    CZorVertexArray empty;
    EXPECT_TRUE(empty.join(square, false));
    EXPECT_EQ(empty, square);
    CZorVertexArray chain = Polygon({P(0, 0), P(1, 0)}, false);
    EXPECT_FALSE(chain.join(square, true));
    EXPECT_FALSE(chain.join(CZorVertexArray(), true));

    CZorVertexArray before = Polygon({P(-2, 0), P(-1, 0), P(0, 0)}, false);
    before.setNormal(CZorVector3d(0, 0, -1));
    ASSERT_TRUE(chain.join(before, false));
    ASSERT_EQ(chain.len(), 3);
    EXPECT_EQ(chain[0].start, P(-2, 0));
    EXPECT_EQ(chain.normal(), CZorVector3d(0, 0, -1));  // a + *this takes a's normal

    CZorVertexArray tail = Polygon({P(5, 0), P(1, 0)}, false);
    EXPECT_FALSE(chain.join(tail, false));
    ASSERT_TRUE(chain.join(tail, true));
    EXPECT_EQ(chain[-1].end, P(5, 0));
}

}  // namespace
