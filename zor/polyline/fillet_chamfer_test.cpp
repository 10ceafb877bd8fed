#include "zor/polyline/fillet_chamfer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

TEST(Fillet, CornerSidesRadiiAndRefusals) {
    // A left turn: the right-hand offsets miss, the left-hand ones cross, so the arc comes from
    // the second attempt, counter-clockwise. The mirrored right turn is served by the first.
    const CZorVertex in = L(-10, 0, 0, 0), up = L(0, 0, 0, 10), down = L(0, 0, 0, -10);
    const double b = std::tan(kPi / 8);
    const CZorVertexArray left = Chain({L(-10, 0, -2, 0), L(0, 2, 0, 10), A(-2, 0, 0, 2, b)});
    const CZorVertexArray right = Chain({L(-10, 0, -2, 0), L(0, -2, 0, -10), A(-2, 0, 0, -2, -b)});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct Case {
        const char* what;
        CZorVertex s1, s2;
        double r;
        int side;
        CZorVertexArray expected;
    };
    for (const Case& c :
         {Case{"left", in, up, 2.0, 0, left}, Case{"left on the left", in, up, 2.0, 1, left},
          Case{"left not right", in, up, 2.0, -1, Chain({in, up})},
          Case{"no side", in, up, 2.0, 7, Chain({in, up})}, Case{"right", in, down, 2.0, 0, right},
          Case{"right not left", in, down, 2.0, 1, Chain({in, down})},
          // Radius 0 brings two lines that stop short to their crossing and refuses a corner
          // that already meets; a radius that isn't a normal finite number keeps the corner.
          Case{"r 0", L(-10, 0, -1, 0), L(0, 1, 0, 10), 0.0, 0, Chain({in, up})},
          Case{"r 0 met", in, up, 0.0, 0, CZorVertexArray()},
          Case{"NaN", in, up, nan, 0, Chain({in, up})},
          Case{"infinite", in, up, inf, 0, Chain({in, up})},
          Case{"subnormal", in, up, 1e-310, 0, Chain({in, up})},
          // Tangent segments, and offsets too far apart to cross on either side.
          Case{"tangent", in, L(0, 0, 10, 0), 1.0, 0, Chain({in, L(0, 0, 10, 0)})},
          Case{"too large", L(-1, 0, 0, 0), L(0, 0, 0, 1), 5.0, 0,
               Chain({L(-1, 0, 0, 0), L(0, 0, 0, 1)})},
          // A clockwise arc of radius 1 collapses under the offset to its right.
          Case{"collapse", A(0, 1, 1, 0, -b), L(1, 0, 5, 0), 2.0, 0, CZorVertexArray()}}) {
        SCOPED_TRACE(c.what);
        ExpectNear(ZOR::g_vx_fillet(c.s1, c.s2, c.r, c.side), c.expected);
    }
}

TEST(Fillet, LineArcAndArcArcCorners) {
    // Rounded on the inside of a left turn, the fillet touches each arc from within: its centre
    // lies one radius off the line and the arc's radius less one from the arc's centre. The
    // right side has no crossing there, so side -1 keeps the corner; mirrored into a right turn
    // the first attempt holds, and side +1 keeps the corner.
    const CZorVertex line = L(-10, 0, 0, 0);
    struct Case {
        CZorVertex s1, s2;
        int refusedSide;
        double centreY;
    };
    for (const Case& c :
         {Case{line, A(0, 0, 0, 10, 0.5), -1, 1.0}, Case{line, A(0, 0, 0, -10, -0.5), 1, -1.0},
          Case{A(-10, 0, 0, 0, 0.2), A(0, 0, 0, 10, 0.2), -1, std::nan("")}}) {
        SCOPED_TRACE(c.centreY);
        const CZorVertexArray t = ZOR::g_vx_fillet(c.s1, c.s2, 1.0, 0);
        ASSERT_EQ(t.len(), 3);
        EXPECT_TRUE(t[0].end == t[2].start);
        EXPECT_TRUE(t[2].end == t[1].start);
        EXPECT_NEAR(t[2].radius(), 1.0, 1e-9);
        EXPECT_EQ(t[2].bulge > 0.0, c.refusedSide < 0);
        if (!std::isnan(c.centreY)) {
            EXPECT_NEAR(t[2].center().y, c.centreY, 1e-9);
        }
        for (const CZorVertex& s : {c.s1, c.s2}) {
            if (s.bulge != 0.0) {
                EXPECT_NEAR(t[2].center().distanceTo(s.center()), s.radius() - 1.0, 1e-9);
            }
        }
        EXPECT_EQ(ZOR::g_vx_fillet(c.s1, c.s2, 1.0, -c.refusedSide).len(), 3);
        EXPECT_EQ(ZOR::g_vx_fillet(c.s1, c.s2, 1.0, c.refusedSide).len(), 2);
    }
}

TEST(Fillet, Polylines) {
    // Every corner in running order; closed with `closed`, the closing arc last, else the
    // closing corner keeps its point. One corner alone only at a joint and with a positive
    // radius; a copy otherwise, also at the free end of an open polyline.
    const CZorVertexArray sq = Rect(0, 0, 10, 10);
    const double b = std::tan(kPi / 8);
    const CZorVertexArray round =
        Chain({L(1, 0, 9, 0), A(9, 0, 10, 1, b), L(10, 1, 10, 9), A(10, 9, 9, 10, b),
               L(9, 10, 1, 10), A(1, 10, 0, 9, b), L(0, 9, 0, 1), A(0, 1, 1, 0, b)});
    ExpectNear(ZOR::g_vl_fillet(sq, 1.0, 0, true), round);
    CZorVertexArray open = round;
    open[0].start = P(0, 0);
    open[6].end = P(0, 0);
    open.setLogicalLength(7);
    ExpectNear(ZOR::g_vl_fillet(sq, 1.0, 0, false), open);
    ExpectNear(ZOR::g_vl_fillet_p(sq, P(10, 0), 1.0),
               Chain({L(0, 0, 9, 0), A(9, 0, 10, 1, b), L(10, 1, 10, 10), L(10, 10, 0, 10),
                      L(0, 10, 0, 0)}));
    ExpectNear(ZOR::g_vl_fillet_p(sq, P(0, 0), 1.0),
               Chain({L(1, 0, 10, 0), L(10, 0, 10, 10), L(10, 10, 0, 10), L(0, 10, 0, 1),
                      A(0, 1, 1, 0, b)}));
    for (const auto& [p, r] :
         {std::pair{P(5, 0), 1.0}, std::pair{P(10, 0), 0.0}, std::pair{P(10, 0), -1.0}}) {
        EXPECT_EQ(ZOR::g_vl_fillet_p(sq, p, r), sq);
    }
    const CZorVertexArray corner = Polygon({P(0, 0), P(5, 0), P(5, 5)}, false);
    EXPECT_EQ(ZOR::g_vl_fillet_p(corner, P(0, 0), 1.0), corner);
    EXPECT_EQ(ZOR::g_vl_fillet(CZorVertexArray(L(0, 0, 1, 0)), 1.0, 0, true).len(), 1);
    // A short middle segment: the first fillet uses it up, the second corner stays.
    CZorVertexArray f =
        ZOR::g_vl_fillet(Polygon({P(0, 10), P(0, 0), P(3, 0), P(3, 10)}, false), 2.0, 0, false);
    ASSERT_EQ(f.len(), 4);
    EXPECT_TRUE(f[2].end == P(3, 0));
    // A first segment left an arc of more than half a circle refuses the fillet.
    const CZorVertexArray big = Chain({A(-10, 0, 0, 0, 1.5), L(0, 0, 10, 0)});
    ASSERT_EQ(ZOR::g_vx_fillet(big[0], big[1], 0.5, 0).len(), 3);
    EXPECT_EQ(ZOR::g_vl_fillet(big, 0.5, 0, false), big);
    // Segments that stop short of their corner are first brought together there; parallel ones
    // can't be, and stay as they were.
    f = ZOR::g_vl_fillet(Chain({L(0, 0, 8, 0), L(10, 2, 10, 10)}), 1.0, 0, false);
    ExpectNear(f, Chain({L(0, 0, 9, 0), A(9, 0, 10, 1, b), L(10, 1, 10, 10)}));
    const CZorVertexArray parallel = Chain({L(0, 0, 5, 0), L(6, 1, 10, 1)});
    EXPECT_EQ(ZOR::g_vl_fillet(parallel, 1.0, 0, false), parallel);
}

TEST(Chamfer, CornersBySide) {
    // Side 0 and 0x7FFFFFFF cut all; the convex corners of a counter-clockwise square turn with
    // it, none against it. A negative distance uses the circle of diameter |d| through the
    // corner, which meets both segments nearest at the corner itself: the cuts have no length
    // and normalising takes them out. A distance over the side cuts nothing.
    const CZorVertexArray cut =
        Polygon({P(1, 0), P(9, 0), P(10, 1), P(10, 9), P(9, 10), P(1, 10), P(0, 9), P(0, 1)});
    struct Case {
        double d;
        int side;
        bool added;
        CZorVertexArray expected;
    };
    for (const Case& c :
         {Case{1.0, 0, true, cut}, Case{1.0, 0x7FFFFFFF, true, cut}, Case{1.0, 1, true, cut},
          Case{1.0, -1, false, Rect(0, 0, 10, 10)}, Case{-1.0, 0, true, Rect(0, 0, 10, 10)},
          Case{20.0, 0, false, Rect(0, 0, 10, 10)}}) {
        SCOPED_TRACE(testing::Message() << c.d << " " << c.side);
        CZorVertexArray sq = Rect(0, 0, 10, 10);
        EXPECT_EQ(ZOR::g_vl_chamfer(sq, c.d, c.side), c.added);
        EXPECT_EQ(sq, c.expected);
    }
    // Open: the inner corners are cut, the free ends stay.
    CZorVertexArray open = Polygon({P(0, 0), P(10, 0), P(10, 10), P(0, 10)}, false);
    EXPECT_TRUE(ZOR::g_vl_chamfer(open, 1.0, 0));
    EXPECT_EQ(open, Polygon({P(0, 0), P(9, 0), P(10, 1), P(10, 9), P(9, 10), P(0, 10)}, false));
    // Also when the last end lies by the first segment: there is no corner from last to first.
    CZorVertexArray nearlyClosed =
        Polygon({P(0, 0), P(10, 0), P(10, 10), P(0, 10), P(0, 0.5)}, false);
    EXPECT_TRUE(ZOR::g_vl_chamfer(nearlyClosed, 1.0, 0));
    EXPECT_EQ(nearlyClosed, Polygon({P(0, 0), P(9, 0), P(10, 1), P(10, 9), P(9, 10), P(1, 10),
                                     P(0, 9), P(0, 0.5)},
                                    false));
    // The L shape's inner corner turns against it: 0x7FFFFFFF cuts it too, +1 all but it, -1 it
    // alone.
    for (const auto& [side, len] :
         {std::pair{0x7FFFFFFF, 12}, std::pair{1, 11}, std::pair{-1, 7}}) {
        CZorVertexArray l = Polygon({P(0, 0), P(10, 0), P(10, 4), P(4, 4), P(4, 10), P(0, 10)});
        EXPECT_TRUE(ZOR::g_vl_chamfer(l, 1.0, side));
        EXPECT_EQ(l.len(), len) << side;
    }
    // The turn of the whole is read from the second segment on round to the first, so an open
    // single corner has no area there and counts as clockwise: its left turn goes against it.
    CZorVertexArray corner = Polygon({P(0, 0), P(10, 0), P(10, 10)}, false);
    CZorVertexArray against = corner;
    EXPECT_FALSE(ZOR::g_vl_chamfer(corner, 1.0, 1));
    EXPECT_TRUE(ZOR::g_vl_chamfer(against, 1.0, -1));
    EXPECT_EQ(against, Polygon({P(0, 0), P(9, 0), P(10, 1), P(10, 10)}, false));
    // On an arc the cut lies at the straight distance d from the corner, still on the arc.
    CZorVertexArray bend = Chain({L(0, 0, 10, 0), A(10, 0, 10, 10, 0.5)});
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
    EXPECT_EQ(ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(0, 0), P(10, 0), 0.0), P(-12, 0));
    EXPECT_EQ(ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(0, 0), P(10, 0), 0.01),
              P(-std::sqrt(133.0), -1));
    EXPECT_EQ(ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(10, 0), P(0, 0), 0.01),
              P(std::sqrt(133.0), -1));
    // A line of one point has no foot: the origin.
    EXPECT_EQ(ZOR::g_nm_fillet_mp(P(0, 5), 3.0, 13.0, P(1, 1), P(1, 1), 0.0), CZorPoint3d::kOrigin);
}

}  // namespace
}  // namespace zor_test
