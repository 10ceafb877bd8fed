#include <cmath>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"
#include "zor/polyline/vertexarray.h"

namespace zor_test {
namespace {

TEST(NormTest, ZeroLengthSegmentsGoAndTheNormalResets) {
    // Nothing left, or one real segment left: the normal goes back to +Z. A polyline that
    // keeps its segments keeps its normal.
    struct Case {
        CZorVertexArray vl;
        bool keepStart;
        int left;
        CZorVector3d normal;
    };
    for (const Case& c :
         {Case{Chain({L(1, 1, 1, 1), A(2, 2, 2, 2, 0.5)}), false, 0, CZorVector3d::kZAxis},
          Case{Chain({L(0, 0, 1, 0), L(1, 0, 1, 0)}), true, 1, CZorVector3d::kZAxis},
          Case{Rect(0, 0, 1, 1), false, 4, CZorVector3d(0, 0, -1)}}) {
        CZorVertexArray vl = c.vl;
        vl.setNormal(CZorVector3d(0, 0, -1));
        vl.norm(c.keepStart);
        EXPECT_EQ(vl.len(), c.left);
        EXPECT_EQ(vl.normal(), c.normal);
    }
}

TEST(NormTest, MergesAndTheStartPoint) {
    const CZorVertexArray startMid = Polygon({P(1, 0), P(2, 0), P(2, 2), P(0, 2), P(0, 0)});
    const CZorVertexArray extraCorner = Polygon({P(0, 0), P(1, 0), P(2, 0), P(2, 2), P(0, 2)});
    struct Case {
        const char* what;
        CZorVertexArray vl;
        bool keepStart;
        CZorVertexArray expected;
    };
    for (const Case& c :
         {// Collinear lines merge, also when doubling back; a spike leaves nothing.
          Case{"ahead", Polygon({P(0, 0), P(1, 0), P(3, 0)}, false), false,
               CZorVertexArray(L(0, 0, 3, 0))},
          Case{"back", Polygon({P(0, 0), P(2, 0), P(1, 0)}, false), false,
               CZorVertexArray(L(0, 0, 1, 0))},
          Case{"spike", Polygon({P(0, 0), P(2, 0), P(0, 0)}, false), false, CZorVertexArray()},
          // An extra corner inside the first side that isn't the first point goes either way.
          Case{"extra corner", extraCorner, false, Rect(0, 0, 2, 2)},
          Case{"extra corner kept start", extraCorner, true, Rect(0, 0, 2, 2)},
          // A first point in the middle of a side goes, unless the start is kept.
          Case{"start mid", startMid, false, Polygon({P(2, 0), P(2, 2), P(0, 2), P(0, 0)})},
          Case{"start mid kept", startMid, true, startMid},
          // Two half circles of one circle stay two: a full circle is not one arc.
          Case{"halves", Circle(0, 0, 1), false, Circle(0, 0, 1)}}) {
        SCOPED_TRACE(c.what);
        CZorVertexArray vl = c.vl;
        vl.norm(c.keepStart);
        EXPECT_EQ(vl, c.expected);
    }
}

TEST(NormTest, QuarterArcsMergeButNeverIntoAFullCircle) {
    const double q = std::tan(kPi / 8);
    const CZorVertexArray quarters =
        Chain({A(1, 0, 0, 1, q), A(0, 1, -1, 0, q), A(-1, 0, 0, -1, q), A(0, -1, 1, 0, q)});
    // Across the closing joint the last quarter takes in the first two before the circle would
    // close, so the walk starts at the third: three quarters from (-1,0), then the second one.
    CZorVertexArray merged = quarters;
    merged.norm(false);
    ExpectNear(merged, Chain({A(-1, 0, 0, 1, std::tan(3 * kPi / 8)), quarters[1]}), 1e-12);
    // Keeping the start: the first three merge from (1,0), the fourth stays alone.
    CZorVertexArray kept = quarters;
    kept.norm(true);
    ExpectNear(kept, Chain({A(1, 0, 0, -1, std::tan(3 * kPi / 8)), quarters[3]}), 1e-12);
}

TEST(NormTest, JointsBecomeBitEqualGapsStay) {
    CZorVertexArray vl = Chain({L(0, 0, 1, 0), L(1, 3e-6, 1, 1), L(1, 1, 0, 1), L(0, 1, 0, 4e-6),
                                L(5, 5, 6, 7)});  // the last gap far above tolerance
    vl.norm(true);
    ASSERT_EQ(vl.len(), 5);
    EXPECT_EQ(vl[0].end.y, vl[1].start.y);
    EXPECT_EQ(vl[0].end.y, 3e-6);
    EXPECT_EQ(vl[2].end.x, vl[3].start.x);
    EXPECT_NE(vl[3].end, vl[4].start);
    // The closing joint is snapped too: the last end takes the first start.
    CZorVertexArray loop = Rect(0, 0, 1, 1);
    loop[3].end = P(0, 4e-6);
    loop.norm(true);
    ASSERT_EQ(loop.len(), 4);
    EXPECT_EQ(loop[3].end.y, 0.0);
}

TEST(CloseTest, BridgesGapsAndClosesOnRequest) {
    const CZorVertexArray gap = Chain({L(0, 0, 1, 0), L(2, 0, 3, 1)});
    struct Case {
        CZorVertexArray vl;
        bool closeIt;
        CZorVertexArray expected;
    };
    for (const Case& c : {Case{gap, false, Chain({L(0, 0, 1, 0), L(1, 0, 2, 0), L(2, 0, 3, 1)})},
                          Case{gap, true, Polygon({P(0, 0), P(1, 0), P(2, 0), P(3, 1)})},
                          Case{CZorVertexArray(L(0, 0, 1, 0)), true, Polygon({P(0, 0), P(1, 0)})},
                          Case{Rect(0, 0, 1, 1), true, Rect(0, 0, 1, 1)},
                          Case{Rect(0, 0, 1, 1), false, Rect(0, 0, 1, 1)},
                          Case{CZorVertexArray(), false, CZorVertexArray(CZorVertex())}}) {
        CZorVertexArray vl = c.vl;
        vl.close(c.closeIt);
        EXPECT_EQ(vl, c.expected);
    }
}

TEST(JoinTest, SegmentsAndPolylines) {
    // A segment that fits only reversed is refused without allowReverse; at the start it is
    // attached reversed too; what fits nowhere is refused.
    CZorVertexArray vl(L(0, 0, 1, 0));
    EXPECT_FALSE(vl.join(L(2, 0, 1, 0), false));
    EXPECT_EQ(vl.len(), 1);
    ASSERT_TRUE(vl.join(L(2, 0, 1, 0), true));
    ASSERT_TRUE(vl.join(L(-1, 0, 0, 0), false));
    ASSERT_TRUE(vl.join(L(-1, 0, -1, 5), true));
    EXPECT_FALSE(vl.join(L(9, 9, 8, 8), true));
    EXPECT_EQ(vl, Polygon({P(-1, 5), P(-1, 0), P(0, 0), P(1, 0), P(2, 0)}, false));
    // Fitting both ends: the end wins. Then it is closed and takes nothing.
    CZorVertexArray both = Polygon({P(0, 0), P(1, 0), P(1, 1)}, false);
    ASSERT_TRUE(both.join(L(1, 1, 0, 0), false));
    EXPECT_EQ(both[2].start, P(1, 1));
    EXPECT_FALSE(both.join(L(0, 0, 5, 5), true));
    // An empty polyline takes anything, also a closed polyline.
    CZorVertexArray empty;
    EXPECT_TRUE(empty.join(L(3, 3, 4, 4), false));
    EXPECT_EQ(empty, CZorVertexArray(L(3, 3, 4, 4)));
    const CZorVertexArray square = Rect(0, 0, 1, 1);
    empty = CZorVertexArray();
    EXPECT_TRUE(empty.join(square, false));
    EXPECT_EQ(empty, square);
    CZorVertexArray chain(L(0, 0, 1, 0));
    EXPECT_FALSE(chain.join(square, true));
    EXPECT_FALSE(chain.join(CZorVertexArray(), true));
    // Put in front, the result takes the normal of what came in front.
    CZorVertexArray before = Polygon({P(-2, 0), P(-1, 0), P(0, 0)}, false);
    before.setNormal(CZorVector3d(0, 0, -1));
    ASSERT_TRUE(chain.join(before, false));
    EXPECT_EQ(chain, Polygon({P(-2, 0), P(-1, 0), P(0, 0), P(1, 0)}, false));
    EXPECT_EQ(chain.normal(), CZorVector3d(0, 0, -1));
    const CZorVertexArray tail(L(5, 0, 1, 0));
    EXPECT_FALSE(chain.join(tail, false));
    ASSERT_TRUE(chain.join(tail, true));
    EXPECT_EQ(chain[-1], L(1, 0, 5, 0));
}

}  // namespace
}  // namespace zor_test
