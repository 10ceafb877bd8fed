#include "zor/polyline/offset.h"

#include <gtest/gtest.h>

#include <cmath>

#include "zor/polyline/test_shapes.h"
#include "zor/polyline/vertexarray.h"
#include "zor/polyline/vertexarray_ex.h"

namespace zor_test {
namespace {

using ZOR::detail::offsetPolyline;

// The offset goes to the right of travel, so a counter-clockwise outline grows. Corners are
// mitred; an empty list of distances moves nothing but still repairs the joints.
TEST(Offset, MovesSidewaysAndMitresTheJoints) {
    const CZorVertexArray corner = Chain({L(0, 0, 10, 0), L(10, 0, 10, 10)});
    struct Case {
        const char* what;
        CZorVertexArray vl;
        CZorArrayTempl<double> dist;
        bool trimClose;
        CZorVertexArray expected;
    };
    for (const Case& c :
         {Case{"grows", Rect(0, 0, 10, 10), List({1.0}), true, Rect(-1, -1, 11, 11)},
          Case{"shrinks", Rect(0, 0, 10, 10), List({-4.0}), true, Rect(4, 4, 6, 6)},
          Case{"turns over", Rect(0, 0, 10, 10), List({-6.0}), true, CZorVertexArray()},
          // Without trimClose the joint at (0, 0) stays open between (-1, 0) and (0, -1).
          Case{"open seam", Rect(0, 0, 10, 10), List({1.0}), false,
               Chain({L(0, -1, 11, -1), L(11, -1, 11, 11), L(11, 11, -1, 11), L(-1, 11, -1, 0)})},
          Case{"open corner", corner, List({1.0}), true,
               Chain({L(0, -1, 11, -1), L(11, -1, 11, 10)})},
          Case{"gap repaired", Chain({L(0, 0, 10, 0), L(10, 1, 10, 10)}), CZorArrayTempl<double>(),
               true, corner},
          // The last distance serves the rest of the chain.
          Case{"per segment", Chain({L(0, 0, 10, 0), L(10, 0, 10, 10), L(10, 10, 20, 10)}),
               List({1.0, 2.0}), true,
               Chain({L(0, -1, 12, -1), L(12, -1, 12, 8), L(12, 8, 20, 8)})},
          Case{"collinear step", Chain({L(0, 0, 10, 0), L(10, 0, 20, 0)}), List({1.0, 2.0}), true,
               Chain({L(0, -1, 10, -1), L(10, -2, 20, -2)})},
          Case{"circle", Circle(0, 0, 5), List({1.0}), true, Circle(0, 0, 6)},
          // An element shorter than the tolerance at the start goes unmoved; it skipped the
          // only distance, so the next one found none left and kept the starting 0.
          Case{"tiny head", Chain({L(0, 0, 1e-7, 0), L(1e-7, 0, 10, 0)}), List({1.0}), true,
               CZorVertexArray(L(1e-7, 0, 10, 0))},
          // The head of an open chain, trimmed against its neighbour, turns over and goes: the
          // second element becomes the start.
          Case{"head turns", Chain({L(0, 10, 0, 9), L(0, 9, 10, 9), L(10, 9, 10, 0)}), List({-2.0}),
               true, Chain({L(2, 11, 12, 11), L(12, 11, 12, 0)})}}) {
        SCOPED_TRACE(c.what);
        CZorVertexArray vl = c.vl;
        offsetPolyline(vl, c.dist, c.trimClose);
        ExpectNear(vl, c.expected);
        if (c.dist.len() == 1) {
            CZorVertexArray single = c.vl;
            offsetPolyline(single, c.dist[0], c.trimClose);
            ExpectBitEqual(single, vl);
        }
    }
}

TEST(Offset, ZeroDistanceChangesNothingNotEvenTheJoints) {
    // An empty list of distances would trim these two to their corner.
    CZorVertexArray l = Chain({L(0, 0, 10, 0), L(10, 1, 10, 10)});
    const CZorVertexArray before = l;
    offsetPolyline(l, 0.0, true);
    ExpectBitEqual(l, before);
}

TEST(Offset, CollapsedCircleGoesAndAttributesStay) {
    CZorVertexArrayEx ex(Circle(0, 0, 5));
    ex.attrNumber = 5;
    offsetPolyline(ex, -6.0, true);
    EXPECT_EQ(ex.len(), 0);
    EXPECT_EQ(ex.attrNumber, 5);
}

TEST(Offset, ShortEdgeTurnsOverAndNeighboursMeet) {
    // A notch: the short top edge from (6,10) to (4,10) sits between two long slanted edges.
    // The survivors keep their order, tags and the polyline's normal.
    CZorVertexArray l = Polygon({P(0, 0), P(10, 0), P(6, 10), P(4, 10)});
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
    const CZorVertexArray fromTop = Polygon({P(6, 10), P(4, 10), P(0, 0), P(10, 0)});
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

TEST(Offset, RunsMoveTogether) {
    // A line, a tangent quarter arc, a tangent line: one run, all moved by 2, joints closed.
    CZorVertexArray l =
        Chain({L(0, 0, 10, 0), A(10, 0, 15, 5, std::tan(kPi / 8)), L(15, 5, 15, 15)});
    ASSERT_TRUE(ZOR::g_vl_segm_offset(l, List({2.0})));
    ExpectNear(l, Chain({L(0, -2, 10, -2), A(10, -2, 17, 5, std::tan(kPi / 8)), L(17, 5, 17, 15)}));
    CZorVertexArray same = l;
    EXPECT_FALSE(ZOR::g_vl_segm_offset(same, CZorArrayTempl<double>()));
    EXPECT_EQ(same, l);
}

}  // namespace
}  // namespace zor_test
