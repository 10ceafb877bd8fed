#include "zor/regions/region_building.h"

#include <gtest/gtest.h>

#include "zor/polyline/orientation.h"
#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

// [square, hole in it, island in the hole, hole in the island] in a given order.
CZorArrayTempl<CZorVertexArray> nested(std::initializer_list<int> order) {
    const Loop loops[4] = {rect(0, 0, 100, 100), rect(10, 10, 90, 90), rect(20, 20, 80, 80),
                           rect(30, 30, 70, 70)};
    CZorArrayTempl<CZorVertexArray> out;
    for (int k : order) out.append(loops[k]);
    return out;
}

TEST(RegionBuilding, ByDepthNestsToAnyDepth) {
    const Regions r = ZOR::g_vll_region(nested({3, 1, 2, 0}));
    ASSERT_EQ(r.len(), 2u);
    ASSERT_EQ(r[0].len(), 2u);
    EXPECT_EQ(r[0][0], rect(0, 0, 100, 100));
    EXPECT_EQ(r[0][1], rect(10, 10, 90, 90));
    ASSERT_EQ(r[1].len(), 2u);
    EXPECT_EQ(r[1][0], rect(20, 20, 80, 80));
    EXPECT_EQ(r[1][1], rect(30, 30, 70, 70));
}

TEST(RegionBuilding, ByDepthOfTwinsApartOverlappingAndShortLoops) {
    CZorArrayTempl<CZorVertexArray> twins;
    twins.append(rect(0, 0, 1, 1)).append(rect(0, 0, 1, 1));
    EXPECT_EQ(ZOR::g_vll_region(twins).len(), 2u);
    CZorArrayTempl<CZorVertexArray> apart;
    apart.append(rect(5, 0, 6, 1)).append(rect(0, 0, 1, 1));
    const Regions r = ZOR::g_vll_region(apart);
    ASSERT_EQ(r.len(), 2u);
    EXPECT_EQ(r[0][0], rect(5, 0, 6, 1));
    EXPECT_EQ(ZOR::g_vll_region(CZorArrayTempl<CZorVertexArray>()).len(), 0u);
    // Each sample point (middle of the first edge) lies inside the other square.
    CZorArrayTempl<CZorVertexArray> overlap;
    const Loop b = rect(2, -2, 8, 8);
    Loop turned;  // b starting with its top edge, whose middle lies in the first square
    for (int k = 2; k < 6; ++k) turned.append(b[k % 4]);
    overlap.append(rect(0, 0, 10, 10)).append(turned);
    EXPECT_EQ(ZOR::g_vll_region(overlap).len(), 0u);
    CZorArrayTempl<CZorVertexArray> single;
    single.append(CZorVertexArray(CZorVertex(CZorPoint3d(5, 5, 0), CZorPoint3d(6, 5, 0), 0.0)));
    single.append(rect(0, 0, 10, 10));
    EXPECT_EQ(ZOR::g_vll_region(single).len(), 2u);

    CZorArrayTempl<CZorVertexArrayEx> ex;
    zorVllToVllEx(ex, nested({1, 0}));
    ex[1].attrNumber = 4;
    const CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> rx = ZOR::g_vll_region(ex);
    ASSERT_EQ(rx.len(), 1u);
    EXPECT_EQ(rx[0][0].attrNumber, 4);
}

TEST(RegionBuilding, ByPairsFlagsAndOrder) {
    const CZorArrayTempl<CZorVertexArray> loops = nested({0, 1, 2, 3});
    Regions r = ZOR::g_vll_regions(loops, 0);
    ASSERT_EQ(r.len(), 2u);
    EXPECT_EQ(r[0].len(), 1u);
    EXPECT_EQ(r[0][0], rect(20, 20, 80, 80));
    ASSERT_EQ(r[1].len(), 2u);
    EXPECT_EQ(r[1][0], rect(0, 0, 100, 100));
    EXPECT_EQ(r[1][1], rect(10, 10, 90, 90));

    r = ZOR::g_vll_regions(loops, 1);
    ASSERT_EQ(r.len(), 1u);
    EXPECT_EQ(r[0].len(), 2u);
    r = ZOR::g_vll_regions(loops, 2);
    ASSERT_EQ(r.len(), 2u);
    EXPECT_EQ(r[0].len(), 1u);
    EXPECT_EQ(r[1].len(), 1u);

    CZorArrayTempl<CZorVertexArrayEx> ex;
    zorVllToVllEx(ex, loops);
    const CZorArrayTempl<CZorArrayTempl<CZorVertexArrayEx>> rx = ZOR::g_vll_regions(ex, 0);
    ASSERT_EQ(rx.len(), 2u);
    EXPECT_EQ(rx[0][0], rect(0, 0, 100, 100));
    EXPECT_EQ(rx[0].len(), 2u);
    EXPECT_EQ(rx[1][0], rect(20, 20, 80, 80));
}

TEST(RegionBuilding, ByPairsCrossingAndTouching) {
    CZorArrayTempl<CZorVertexArray> crossing;
    crossing.append(rect(0, 0, 10, 10)).append(rect(5, 5, 15, 15));
    EXPECT_EQ(ZOR::g_vll_regions(crossing, 0).len(), 0u);
    EXPECT_EQ(ZOR::g_vll_regions(crossing, 4).len(), 2u);

    // A circle inside a square touching one side only tangentially doesn't cross it.
    CZorArrayTempl<CZorVertexArray> tangent;
    tangent.append(rect(0, 0, 10, 10)).append(circle(5, 4, 4));
    Regions r = ZOR::g_vll_regions(tangent, 0);
    ASSERT_EQ(r.len(), 1u);
    EXPECT_EQ(r[0].len(), 2u);
    // A diamond touching the square with a corner from inside crosses it.
    CZorArrayTempl<CZorVertexArray> corner;
    CZorVertexArray diamond;
    diamond.fromPoints(CZorPoint3dArray()
                           .append(CZorPoint3d(5, 0, 0))
                           .append(CZorPoint3d(8, 3, 0))
                           .append(CZorPoint3d(5, 6, 0))
                           .append(CZorPoint3d(2, 3, 0)),
                       true);
    corner.append(rect(0, 0, 10, 10)).append(diamond);
    EXPECT_EQ(ZOR::g_vll_regions(corner, 0).len(), 0u);

    // A loop inside two crossing loops, kept by flag 4: two containers that don't nest make
    // the plain form give up.
    CZorArrayTempl<CZorVertexArray> twoContainers;
    twoContainers.append(rect(6, 6, 8, 8)).append(rect(0, 0, 10, 10)).append(rect(5, 5, 15, 15));
    EXPECT_EQ(ZOR::g_vll_regions(twoContainers, 4).len(), 0u);
    CZorArrayTempl<CZorVertexArrayEx> ex;
    zorVllToVllEx(ex, twoContainers);
    EXPECT_EQ(ZOR::g_vll_regions(ex, 4).len(), 3u);
}

TEST(RegionBuilding, Prepare) {
    CZorArrayTempl<CZorVertexArray> in;
    in.append(rect(0, 0, 1, 1).reverse());
    in.append(CZorVertexArray(CZorVertex(CZorPoint3d(0, 0, 0), CZorPoint3d(1, 0, 0), 0.0)));
    in.append(CZorVertexArray());
    const CZorArrayTempl<CZorVertexArray> before = in;
    const CZorArrayTempl<CZorVertexArray> out = ZOR::g_vll_regions_prepare(in);
    ASSERT_EQ(out.len(), 1u);
    EXPECT_TRUE(ZOR::g_vl_orient(out[0], CZorVector3d::kZAxis));
    EXPECT_EQ(in, before);
}

TEST(RegionBuilding, Symmetry) {
    EXPECT_FALSE(ZOR::g_region_is_symmetric(Region(), 0.0));
    EXPECT_TRUE(ZOR::g_region_is_symmetric(region(rect(0, 0, 20, 10), rect(8, 3, 12, 7)), 0.0));
    Region pair = region(rect(0, 0, 20, 10), rect(2, 1, 4, 3));
    pair.append(rect(2, 7, 4, 9));
    EXPECT_TRUE(ZOR::g_region_is_symmetric(pair, 0.0));
    pair[2] = rect(3, 7, 5, 9);
    EXPECT_FALSE(ZOR::g_region_is_symmetric(pair, 0.0));
    Region three = region(rect(0, 0, 20, 10), rect(2, 1, 4, 3));
    three.append(rect(2, 7, 4, 9)).append(rect(14, 1, 16, 3));
    EXPECT_FALSE(ZOR::g_region_is_symmetric(three, 0.0));
}

}  // namespace
