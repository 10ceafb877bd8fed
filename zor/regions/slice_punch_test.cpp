#include "zor/regions/slice_punch.h"

#include <gtest/gtest.h>

#include <cmath>

#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

TEST(Slice, OpenPolylineBySide) {
    Vll right, left;
    right.append(rect(0, 0, 1, 1));  // emptied by the call
    const CZorVertexArray line(CZorVertex(P(0, -5), P(0, 5), 0.0));
    ASSERT_TRUE(ZOR::g_vl_slice(line, CZorVertex(P(-10, 0), P(10, 0), 0.0), right, left));
    ASSERT_EQ(right.len(), 1u);
    ASSERT_EQ(left.len(), 1u);
    EXPECT_TRUE(right[0][0].start == P(0, -5));
    EXPECT_TRUE(left[0][-1].end == P(0, 5));

    // Running along the cutter first: the test point of that piece lies on the cutter and the
    // piece goes right; the rest rises to the left.
    CZorVertexArray along;
    along.append(CZorVertex(P(-5, 0), P(0, 0), 0.0));
    along.append(CZorVertex(P(0, 0), P(0, 5), 0.0));
    ASSERT_TRUE(ZOR::g_vl_slice(along, P(-10, 0), P(10, 0), right, left));
    ASSERT_EQ(right.len(), 1u);
    ASSERT_EQ(left.len(), 1u);
    EXPECT_TRUE(right[0][0].start == P(-5, 0));

    CZorVertexArray gap = along;
    gap[1].start = P(0, 1);
    right.removeAll();
    right.append(along);
    EXPECT_FALSE(ZOR::g_vl_slice(gap, P(-10, 0), P(10, 0), right, left));
    EXPECT_EQ(right.len(), 1u);
}

TEST(Slice, ClosedSquare) {
    Vll right, left;
    // Cut through the middle parallel to two sides.
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), P(-1, 5), P(11, 5), right, left));
    ASSERT_EQ(right.len(), 1u);
    ASSERT_EQ(left.len(), 1u);
    EXPECT_EQ(right[0].len(), 3);
    EXPECT_EQ(left[0].len(), 3);
    EXPECT_FALSE(right[0].isClosed());
    EXPECT_LT(right[0][1].mid().y, 5.0);

    // Left of the cutter without touching, and touching with one corner.
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), P(-1, -5), P(11, -5), right, left));
    EXPECT_EQ(right.len(), 0u);
    ASSERT_EQ(left.len(), 1u);
    EXPECT_TRUE(left[0].isClosed());
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), P(-5, 5), P(5, -5), right, left));
    EXPECT_EQ(right.len(), 0u);
    EXPECT_EQ(left.len(), 1u);

    // An arc cutter bulging to the right through the square's middle cuts where the arc, not its
    // chord, crosses the edges; the closed right part is bridged straight between the cuts.
    const CZorVertex arc(P(5, -1), P(5, 11), 0.2);
    const double r = 6.0 / std::sin(2.0 * std::atan(0.2));
    const double x = 5.0 - (r - 1.2) + std::sqrt(r * r - 25.0);
    ASSERT_TRUE(ZOR::g_vl_slice(rect(0, 0, 10, 10), arc, right, left));
    ASSERT_EQ(right.len(), 1u);
    EXPECT_EQ(left.len(), 1u);
    EXPECT_TRUE(right[0][0].start == P(x, 0));
    EXPECT_TRUE(right[0][-1].end == P(x, 10));
    Vll loops;
    loops.append(rect(0, 0, 10, 10));
    const Vll closed = ZOR::g_reg_slice(loops, arc);
    ASSERT_EQ(closed.len(), 1u);
    EXPECT_NEAR(std::fabs(exactArea(closed[0])), 10.0 * (10.0 - x), 1e-9);
}

TEST(Slice, RegionLoopsClosedAlongTheCutter) {
    Vll loops;
    loops.append(rect(0, 0, 10, 10));
    const CZorVertex cutter(P(-1, 5), P(11, 5), 0.0);
    Vll out = ZOR::g_reg_slice(loops, cutter);
    ASSERT_EQ(out.len(), 1u);
    EXPECT_TRUE(out[0].isClosed());
    EXPECT_NEAR(exactArea(out[0]), 50.0, 1e-9);

    loops.append(rect(3, 3, 7, 7).reverse());
    out = ZOR::g_reg_slice(loops, cutter);
    ASSERT_EQ(out.len(), 1u);
    EXPECT_TRUE(out[0].isClosed());
    EXPECT_NEAR(exactArea(out[0]), 50.0 - 8.0, 1e-9);

    EXPECT_EQ(ZOR::g_reg_slice(loops, CZorVertex(P(1, 1), P(1, 1), 0.0)), loops);
}

TEST(Slice, Regions) {
    const Region r = region(rect(0, 0, 10, 10), rect(3, 3, 7, 7));
    Regions out = ZOR::g_region_slice(r, P(-1, -5), P(11, -5));
    EXPECT_EQ(out.len(), 0u);
    out = ZOR::g_region_slice(r, P(-1, 20), P(11, 20));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0], r);
    out = ZOR::g_region_slice(Region(), P(0, 0), P(1, 0));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0].len(), 0u);

    out = ZOR::g_region_slice(r, P(11, 5), P(-1, 5));  // keeps the upper half
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0].len(), 1u);
    EXPECT_NEAR(exactArea(out), 50.0 - 8.0, 1e-9);
}

TEST(Punch, LineThroughCircle) {
    const CZorVertexArray line(CZorVertex(P(-10, 0), P(10, 0), 0.0));
    EXPECT_EQ(ZOR::g_vl_punch(line, circle(0, 0, 5), false).len(), 2u);
    const Vll in = ZOR::g_vl_punch(line, circle(0, 0, 5), true);
    ASSERT_EQ(in.len(), 1u);
    EXPECT_NEAR(in[0].geomLength(), 10.0, 1e-9);

    const CZorVertexArray onBoundary(CZorVertex(P(0, 0), P(10, 0), 0.0));
    EXPECT_EQ(ZOR::g_vl_punch(onBoundary, rect(0, 0, 10, 10), false).len(), 0u);
    EXPECT_EQ(ZOR::g_vl_punch(onBoundary, rect(0, 0, 10, 10), true).len(), 0u);

    CZorVertexArrayEx ex(line);
    ex.attrNumber = 2;
    ex.attrText = L"a";
    VllEx list;
    list.append(ex).append(ex);
    const VllEx pieces = ZOR::g_vll_punch(list, circle(0, 0, 5), false);
    ASSERT_EQ(pieces.len(), 4u);
    EXPECT_EQ(pieces[3].attrNumber, 2);
    EXPECT_TRUE(pieces[3].attrText == CZorString(L"a"));
    EXPECT_EQ(ZOR::g_vll_punch(VllEx(), circle(0, 0, 5), true).len(), 0u);
}

TEST(Punch, AgainstRegion) {
    const Region r = region(rect(0, 0, 10, 10), rect(4, 4, 6, 6));
    const CZorVertexArray line(CZorVertex(P(-5, 5), P(15, 5), 0.0));
    const Vll in = ZOR::g_vl_punch_reg(line, r, true);
    ASSERT_EQ(in.len(), 2u);
    EXPECT_NEAR(in[0].geomLength() + in[1].geomLength(), 8.0, 1e-9);
    const Vll out = ZOR::g_vl_punch_reg(line, r, false);
    ASSERT_EQ(out.len(), 3u);
    EXPECT_NEAR(out[1].geomLength(), 2.0, 1e-9);
    // No region at all: everything lies outside it, nothing inside.
    ASSERT_EQ(ZOR::g_vl_punch_reg(line, Region(), false).len(), 1u);
    EXPECT_EQ(ZOR::g_vl_punch_reg(line, Region(), false)[0], line);
    EXPECT_EQ(ZOR::g_vl_punch_reg(line, Region(), true).len(), 0u);
}

}  // namespace
