#include "zor/regions/region_boolean.h"

#include <gtest/gtest.h>

#include "zor/polyline/orientation.h"
#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;
using ZOR::g_region_diff;
using ZOR::g_region_sect;
using ZOR::g_region_union;

bool allAtRest(const Regions& rs) {
    for (int i = 0; i < static_cast<int>(rs.len()); ++i) {
        for (int k = 0; k < static_cast<int>(rs[i].len()); ++k) {
            if (!rs[i][k].isClosed() || !ZOR::g_vl_orient(rs[i][k], CZorVector3d::kZAxis)) {
                return false;
            }
        }
    }
    return true;
}

Regions marker() {
    Regions m;
    m.append(region(rect(100, 100, 101, 101)));
    return m;
}

TEST(RegionBoolean, OverlappingSquaresGiveOneLoopEach) {
    const Region a = region(rect(0, 0, 10, 10));
    const Region b = region(rect(5, 5, 15, 15));
    Regions out;
    ASSERT_TRUE(g_region_union(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0].len(), 1u);
    EXPECT_NEAR(area(out), 175.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
    ASSERT_TRUE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 75.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
    ASSERT_TRUE(g_region_sect(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 25.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
}

TEST(RegionBoolean, EmptyOperandLeavesOutAlone) {
    Regions out = marker();
    EXPECT_FALSE(g_region_union(Region(), region(rect(0, 0, 1, 1)), out));
    EXPECT_FALSE(g_region_diff(region(rect(0, 0, 1, 1)), Region(), out));
    EXPECT_FALSE(g_region_sect(Region(), Region(), out));
    EXPECT_EQ(out, marker());

    // An outer loop without segments is an operand that lies nowhere: it stays without segments.
    Region empty;
    empty.append(Loop());
    ASSERT_TRUE(g_region_union(empty, region(rect(5, 5, 6, 6)), out));
    ASSERT_EQ(out.len(), 2u);
    EXPECT_EQ(out[0][0].len(), 0);
    EXPECT_EQ(out[1], region(rect(5, 5, 6, 6)));
}

TEST(RegionBoolean, IslandInHole) {
    const Region a = region(rect(0, 0, 10, 10), rect(2, 2, 8, 8));
    const Region b = region(rect(4, 4, 6, 6));
    Regions out;
    ASSERT_TRUE(g_region_union(a, b, out));
    ASSERT_EQ(out.len(), 2u);
    EXPECT_EQ(out[0].len(), 2u);
    EXPECT_EQ(out[1].len(), 1u);
    EXPECT_NEAR(area(out[1]), 4.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
    out = marker();
    EXPECT_TRUE(g_region_sect(a, b, out));
    EXPECT_EQ(out.len(), 0u);
}

TEST(RegionBoolean, SmallSquareInside) {
    const Region a = region(rect(0, 0, 10, 10));
    const Region b = region(rect(4, 4, 6, 6));
    Regions out;
    ASSERT_TRUE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    ASSERT_EQ(out[0].len(), 2u);
    EXPECT_NEAR(area(out), 96.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
    ASSERT_TRUE(g_region_sect(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 4.0, 1e-9);
    ASSERT_TRUE(g_region_union(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0].len(), 1u);
    EXPECT_NEAR(area(out), 100.0, 1e-9);
    out = marker();
    EXPECT_TRUE(g_region_diff(b, a, out));
    EXPECT_EQ(out.len(), 0u);
}

TEST(RegionBoolean, EqualRegionsComeOnceFromB) {
    const Region a = region(rect(0, 0, 10, 10));
    Region b = a;
    b[0][0].tag = 7;
    Regions out;
    ASSERT_TRUE(g_region_union(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 100.0, 1e-9);
    EXPECT_EQ(out[0][0][0].tag + out[0][0][1].tag + out[0][0][2].tag + out[0][0][3].tag, 7);
    ASSERT_TRUE(g_region_sect(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 100.0, 1e-9);
    ASSERT_TRUE(g_region_diff(a, b, out));
    EXPECT_EQ(out.len(), 0u);
}

TEST(RegionBoolean, SharedEdge) {
    const Region a = region(rect(0, 0, 10, 10));
    const Region b = region(rect(10, 0, 20, 10));
    Regions out;
    ASSERT_TRUE(g_region_union(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    ASSERT_EQ(out[0].len(), 1u);
    EXPECT_EQ(out[0][0].len(), 4);
    EXPECT_NEAR(area(out), 200.0, 1e-9);
    out = marker();
    EXPECT_TRUE(g_region_sect(a, b, out));
    EXPECT_EQ(out.len(), 0u);
    ASSERT_TRUE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 100.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
}

TEST(RegionBoolean, TouchingCorners) {
    const Region a = region(rect(0, 0, 10, 10));
    const Region b = region(rect(10, 10, 20, 20));
    Regions out = marker();
    EXPECT_FALSE(g_region_union(a, b, out));
    EXPECT_EQ(out, marker());
    EXPECT_TRUE(g_region_sect(a, b, out));
    EXPECT_EQ(out.len(), 0u);
    ASSERT_TRUE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 100.0, 1e-9);
}

TEST(RegionBoolean, DisjointSquares) {
    const Region a = region(rect(0, 0, 10, 10));
    const Region b = region(rect(20, 0, 30, 10));
    Regions out = marker();
    ASSERT_TRUE(g_region_union(a, b, out));
    ASSERT_EQ(out.len(), 2u);
    EXPECT_EQ(out[0], a);
    EXPECT_EQ(out[1], b);
    out = marker();
    EXPECT_FALSE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0], a);
    out = marker();
    EXPECT_FALSE(g_region_sect(a, b, out));
    EXPECT_EQ(out.len(), 0u);
}

TEST(RegionBoolean, SubtrahendCoveringOneOfTwoHoles) {
    Region a = region(rect(0, 0, 20, 10), rect(2, 2, 4, 4));
    a.append(rect(12, 2, 14, 4));
    const Region b = region(rect(1, 1, 5, 5));
    Regions out;
    ASSERT_TRUE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0].len(), 3u);
    EXPECT_NEAR(area(out), 200.0 - 4.0 - 16.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
}

TEST(RegionBoolean, ClockwiseOperandsOfPlainDifferenceAreOriented) {
    const Region a = region(rect(0, 0, 10, 10).reverse());
    const Region b = region(rect(5, 5, 15, 15).reverse());
    Regions out;
    ASSERT_TRUE(g_region_diff(a, b, out));
    EXPECT_NEAR(area(out), 75.0, 1e-9);
    EXPECT_TRUE(allAtRest(out));
}

TEST(RegionBoolean, ExAttributes) {
    CZorArrayTempl<CZorVertexArrayEx> a, b;
    a.append(CZorVertexArrayEx(rect(0, 0, 10, 10)));
    a[0].attrNumber = 5;
    a[0].attrText = L"wall";
    b.append(CZorVertexArrayEx(rect(5, 5, 15, 15)));
    b[0].attrNumber = 6;
    b[0].attrText = L"slab";
    CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> out;
    ASSERT_TRUE(g_region_diff(a, b, out));
    ASSERT_EQ(out.len(), 1u);
    EXPECT_EQ(out[0][0].attrNumber, 0);
    EXPECT_TRUE(out[0][0].attrText == CZorString(L"wall"));
    ASSERT_TRUE(g_region_union(a, b, out));
    EXPECT_EQ(out[0][0].attrNumber, 0);
    EXPECT_TRUE(out[0][0].attrText.isNull());
    ASSERT_TRUE(g_region_sect(a, b, out));
    EXPECT_TRUE(out[0][0].attrText.isNull());
}

TEST(RegionBoolean, ListDifferences) {
    const Region a = region(rect(0, 0, 30, 10));
    Regions cuts;
    cuts.append(region(rect(9, -1, 11, 11)));
    cuts.append(region(rect(19, -1, 21, 11)));
    cuts.append(region(rect(100, 100, 101, 101)));
    Regions out;
    ASSERT_TRUE(ZOR::reglDiff(Regions().append(a).append(region(rect(50, 0, 60, 10))), cuts, out));
    // Only the first region of `a` is cut; the second isn't in the result.
    ASSERT_EQ(out.len(), 3u);
    EXPECT_NEAR(area(out), 300.0 - 40.0, 1e-9);
    out = Regions();
    EXPECT_FALSE(ZOR::reglDiff(Regions(), cuts, out));
    Regions whole;
    whole.append(region(rect(-1, -1, 31, 11)));
    EXPECT_FALSE(ZOR::reglDiff(Regions().append(a), whole, out));
    EXPECT_EQ(out.len(), 0u);

    CZorArrayTempl<CZorVertexArrayEx> ax;
    zorVllToVllEx(ax, a);
    CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> cx, ox;
    zorReglToReglEx(cx, cuts);
    ASSERT_TRUE(g_region_diff(ax, cx, ox));
    EXPECT_EQ(ox.len(), 3u);
    ASSERT_TRUE(g_region_diff(ax, CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>>(), ox));
    ASSERT_EQ(ox.len(), 1u);
    EXPECT_EQ(ox[0].len(), 1u);
}

TEST(RegionBoolean, ShortSegmentLowersTheToleranceOnlyForTheCall) {
    // A step of 2e-6 on the bottom edge, below the tolerance divided by the factor.
    Loop a;
    a.append(CZorVertex(CZorPoint3d(0, 0, 0), CZorPoint3d(5, 0, 0), 0.0));
    a.append(CZorVertex(CZorPoint3d(5, 0, 0), CZorPoint3d(5, 2e-6, 0), 0.0));
    a.append(CZorVertex(CZorPoint3d(5, 2e-6, 0), CZorPoint3d(10, 2e-6, 0), 0.0));
    a.append(CZorVertex(CZorPoint3d(10, 2e-6, 0), CZorPoint3d(10, 10, 0), 0.0));
    a.append(CZorVertex(CZorPoint3d(10, 10, 0), CZorPoint3d(0, 10, 0), 0.0));
    a.append(CZorVertex(CZorPoint3d(0, 10, 0), CZorPoint3d(0, 0, 0), 0.0));
    const double before = CZorPoint3d::tol;
    Regions out;
    ASSERT_TRUE(g_region_union(region(a), region(rect(5, 5, 15, 15)), out));
    EXPECT_EQ(CZorPoint3d::tol, before);
    ASSERT_EQ(out.len(), 1u);
    EXPECT_NEAR(area(out), 175.0, 1e-4);
    EXPECT_TRUE(allAtRest(out));
}

TEST(RegionBoolean, ArcsAndHoles) {
    const Region a = region(circle(0, 0, 10), circle(0, 0, 3));
    const Region b = region(rect(-20, -1, 20, 1));
    Regions out;
    ASSERT_TRUE(g_region_diff(a, b, out));
    EXPECT_EQ(out.len(), 2u);
    EXPECT_TRUE(allAtRest(out));
    Regions both;
    ASSERT_TRUE(g_region_sect(a, b, both));
    EXPECT_EQ(both.len(), 2u);
    // The cross-section values chord the arcs within 0.01, the pieces differently from the whole.
    EXPECT_NEAR(area(out) + area(both), area(a), 2e-3 * area(a));
}

}  // namespace
