#include "zor/regions/slice_punch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

// The numbers of pieces on each side, as "right/left".
std::string sides(const Vll& right, const Vll& left) {
    return std::to_string(right.len()) + "/" + std::to_string(left.len());
}

TEST(Slice, OpenPolylineBySide) {
    Vll right = list({rect(0, 0, 1, 1)}), left;  // emptied by the call
    ASSERT_TRUE(ZOR::g_vl_slice(chain({L(0, -5, 0, 5)}), L(-10, 0, 10, 0), right, left));
    EXPECT_EQ(right, list({chain({L(0, -5, 0, 0)})}));
    EXPECT_EQ(left, list({chain({L(0, 0, 0, 5)})}));

    // Running along the cutter first: the test point of that piece lies on the cutter and the
    // piece goes right; the rest rises to the left.
    const Loop along = chain({L(-5, 0, 0, 0), L(0, 0, 0, 5)});
    ASSERT_TRUE(ZOR::g_vl_slice(along, P(-10, 0), P(10, 0), right, left));
    EXPECT_EQ(right, list({chain({along[0]})}));
    EXPECT_EQ(left, list({chain({along[1]})}));

    Loop gap = along;
    gap[1].start = P(0, 1);
    right = list({along});
    EXPECT_FALSE(ZOR::g_vl_slice(gap, P(-10, 0), P(10, 0), right, left));
    EXPECT_EQ(right.len(), 1u);
}

TEST(Slice, ClosedSquare) {
    Vll right, left;
    // Cut through the middle parallel to two sides.
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), P(-1, 5), P(11, 5), right, left));
    ASSERT_EQ(sides(right, left), "1/1");
    EXPECT_EQ(right[0].len(), 3);
    EXPECT_EQ(left[0].len(), 3);
    EXPECT_FALSE(right[0].isClosed());
    EXPECT_LT(right[0][1].mid().y, 5.0);

    // Left of the cutter without touching, and touching with one corner.
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), P(-1, -5), P(11, -5), right, left));
    ASSERT_EQ(sides(right, left), "0/1");
    EXPECT_TRUE(left[0].isClosed());
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), P(-5, 5), P(5, -5), right, left));
    EXPECT_EQ(sides(right, left), "0/1");

    // An arc cutter bulging to the right through the square's middle cuts where the arc, not its
    // chord, crosses the edges; the closed right part is bridged straight between the cuts.
    const CZorVertex arc(P(5, -1), P(5, 11), 0.2);
    const double r = 6.0 / std::sin(2.0 * std::atan(0.2));
    const double x = 5.0 - (r - 1.2) + std::sqrt(r * r - 25.0);
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), arc, right, left));
    ASSERT_EQ(sides(right, left), "1/1");
    EXPECT_TRUE(right[0][0].start == P(x, 0));
    EXPECT_TRUE(right[0][-1].end == P(x, 10));
    const Vll closed = ZOR::g_reg_slice(list({rect(0, 0, 10, 10)}), arc);
    ASSERT_EQ(closed.len(), 1u);
    EXPECT_TRUE(closed[0].isClosed());
    EXPECT_NEAR(exactArea(closed[0]), 10.0 * (10.0 - x), 1e-9);
}

TEST(Slice, RegionsAlongTheCutter) {
    const Region r = region(rect(0, 0, 10, 10), rect(3, 3, 7, 7));
    // The pieces of the outer loop and the hole, run clockwise, join with two bridges into one
    // C-shaped outline; a cutter of no length leaves the loops as they are.
    const Vll loops = list({r[0], r[1].reverse()});
    const Vll sliced = ZOR::g_reg_slice(loops, L(-1, 5, 11, 5));
    ASSERT_EQ(sliced.len(), 1u);
    EXPECT_TRUE(sliced[0].isClosed());
    EXPECT_NEAR(exactArea(sliced[0]), 50.0 - 8.0, 1e-9);
    EXPECT_EQ(ZOR::g_reg_slice(loops, L(1, 1, 1, 1)), loops);

    // Wholly left, wholly right (holes included), an empty region.
    EXPECT_EQ(ZOR::g_region_slice(r, P(-1, -5), P(11, -5)).len(), 0u);
    EXPECT_EQ(ZOR::g_region_slice(r, P(-1, 20), P(11, 20)), list({r}));
    EXPECT_EQ(ZOR::g_region_slice(Region(), P(0, 0), P(1, 0)), list({Region()}));
    // The hole crossed by the line shapes the outline of the upper half.
    const Regions out = ZOR::g_region_slice(r, P(11, 5), P(-1, 5));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0].len(), 1u);
    EXPECT_NEAR(exactArea(out), 50.0 - 8.0, 1e-9);
}

TEST(Punch, PiecesOutsideAndInside) {
    // A shape punches like the region of that one loop. Pieces on the boundary belong to neither
    // side; with holes, outside takes what lies in a hole; no region at all leaves all outside.
    const Loop across = chain({L(-5, 5, 15, 5)});
    const Region holed = region(rect(0, 0, 10, 10), rect(4, 4, 6, 6));
    const struct {
        const char* name;
        Loop vl;
        Region shape;
        std::vector<double> outside, inside;  // lengths of the pieces in order
    } cases[] = {
        {"circle", chain({L(-10, 0, 10, 0)}), region(circle(0, 0, 5)), {5, 5}, {10}},
        {"on boundary", chain({L(0, 0, 10, 0)}), region(rect(0, 0, 10, 10)), {}, {}},
        {"holed", across, holed, {5, 2, 5}, {4, 4}},
        {"no region", across, Region(), {20}, {}},
    };
    for (const auto& c : cases) {
        for (const bool inside : {false, true}) {
            SCOPED_TRACE(std::string(c.name) + (inside ? " inside" : " outside"));
            const std::vector<double>& expected = inside ? c.inside : c.outside;
            const Vll pieces = ZOR::g_vl_punch_reg(c.vl, c.shape, inside);
            ASSERT_EQ(pieces.len(), expected.size());
            for (std::size_t k = 0; k < expected.size(); ++k)
                EXPECT_NEAR(pieces[k].geomLength(), expected[k], 1e-9);
            EXPECT_TRUE(c.shape.len() != 1 || ZOR::g_vl_punch(c.vl, c.shape[0], inside) == pieces);
        }
    }
    // The Ex form gives every piece the attributes of its polyline.
    const VllEx lines = zor_g_xvll(list({cases[0].vl, cases[0].vl}), 2, L"a", CZorVector3d::kZAxis);
    const VllEx pieces = ZOR::g_vll_punch(lines, circle(0, 0, 5), false);
    ASSERT_EQ(pieces.len(), 4u);
    EXPECT_EQ(pieces[3].attrNumber, 2);
    EXPECT_TRUE(pieces[3].attrText == CZorString(L"a"));
    EXPECT_EQ(ZOR::g_vll_punch(VllEx(), circle(0, 0, 5), true).len(), 0u);
}

}  // namespace
