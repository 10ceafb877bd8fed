#include "zor/regions/region_building.h"

#include <gtest/gtest.h>

#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

// [square, hole in it, island in the hole, hole in the island] in a given order.
Vll nested(std::initializer_list<int> order) {
    const Loop loops[4] = {rect(0, 0, 100, 100), rect(10, 10, 90, 90), rect(20, 20, 80, 80),
                           rect(30, 30, 70, 70)};
    Vll out;
    for (int k : order) out.append(loops[k]);
    return out;
}

Regions plain(const RegionsEx& in) {
    Regions out;
    zorReglExToRegl(out, in);
    return out;
}

TEST(RegionBuilding, ByDepthNestsToAnyDepth) {
    const Vll n = nested({0, 1, 2, 3});
    const Regions expected = list({region(n[0], n[1]), region(n[2], n[3])});
    EXPECT_EQ(ZOR::g_vll_region(nested({3, 1, 2, 0})), expected);
    EXPECT_EQ(ZOR::g_vll_region(nested({2, 0, 3, 1})), expected);

    // Twins are each at depth 0 by the strict test; loops apart keep their input order.
    EXPECT_EQ(ZOR::g_vll_region(list({rect(0, 0, 1, 1), rect(0, 0, 1, 1)})).len(), 2u);
    const Regions apart = ZOR::g_vll_region(list({rect(5, 0, 6, 1), rect(0, 0, 1, 1)}));
    EXPECT_EQ(apart, list({region(rect(5, 0, 6, 1)), region(rect(0, 0, 1, 1))}));
    EXPECT_EQ(ZOR::g_vll_region(Vll()).len(), 0u);
    // Each sample point (middle of the first edge) lies inside the other square: no region opens.
    const Loop b = rect(2, -2, 8, 8);
    const Loop turned = chain({b[2], b[3], b[0], b[1]});  // starts with its top edge
    EXPECT_EQ(ZOR::g_vll_region(list({rect(0, 0, 10, 10), turned})).len(), 0u);
    // A single segment has depth 0 and opens a region.
    EXPECT_EQ(ZOR::g_vll_region(list({chain({L(5, 5, 6, 5)}), rect(0, 0, 10, 10)})).len(), 2u);

    VllEx ex = toEx(nested({1, 0}));
    ex[1].attrNumber = 4;
    const RegionsEx rx = ZOR::g_vll_region(ex);
    ASSERT_EQ(rx.len(), 1u);
    EXPECT_EQ(rx[0][0].attrNumber, 4);
}

TEST(RegionBuilding, ByPairsFlagsAndOrder) {
    // Depth 1 only: the island comes without its hole, the fourth loop in no region. The plain
    // form lists islands first and each kind in descending order; the Ex form ascends.
    const Vll n = nested({0, 1, 2, 3});
    const Region island = region(n[2]), square = region(n[0], n[1]);
    EXPECT_EQ(ZOR::g_vll_regions(n, 0), list({island, square}));
    EXPECT_EQ(ZOR::g_vll_regions(n, 1), list({square}));
    EXPECT_EQ(ZOR::g_vll_regions(n, 2), list({island, region(n[0])}));
    EXPECT_EQ(plain(ZOR::g_vll_regions(toEx(n), 0)), list({square, island}));
    const Vll twoTops = list({rect(0, 0, 1, 1), rect(5, 0, 6, 1)});
    EXPECT_EQ(ZOR::g_vll_regions(twoTops, 0), list({region(twoTops[1]), region(twoTops[0])}));
}

TEST(RegionBuilding, ByPairsCrossingAndTouching) {
    const Loop sq = rect(0, 0, 10, 10), round = circle(5, 4, 4);
    const Vll crossing = list({sq, rect(5, 5, 15, 15)});
    EXPECT_EQ(ZOR::g_vll_regions(crossing, 0).len(), 0u);
    EXPECT_EQ(ZOR::g_vll_regions(crossing, 4).len(), 2u);

    // A circle inside a square touching one side only tangentially doesn't cross it.
    EXPECT_EQ(ZOR::g_vll_regions(list({sq, round}), 0), list({region(sq, round)}));
    // A diamond touching the square with a corner from inside crosses it.
    const Loop diamond = chain({L(5, 0, 8, 3), L(8, 3, 5, 6), L(5, 6, 2, 3), L(2, 3, 5, 0)});
    EXPECT_EQ(ZOR::g_vll_regions(list({sq, diamond}), 0).len(), 0u);

    // A loop inside two crossing loops, kept by flag 4: two containers that don't nest make
    // the plain form give up, while the Ex form empties the list in one pass.
    const Vll twoContainers = list({rect(6, 6, 8, 8), crossing[0], crossing[1]});
    EXPECT_EQ(ZOR::g_vll_regions(twoContainers, 4).len(), 0u);
    EXPECT_EQ(ZOR::g_vll_regions(toEx(twoContainers), 4).len(), 3u);
}

TEST(RegionBuilding, Prepare) {
    // Only the closed member is kept, as a counter-clockwise copy.
    const Vll in = list({rect(0, 0, 1, 1).reverse(), chain({L(0, 0, 1, 0)}), Loop()});
    EXPECT_EQ(ZOR::g_vll_regions_prepare(in), list({Loop(in[0]).revert()}));
}

TEST(RegionBuilding, Symmetry) {
    EXPECT_FALSE(ZOR::g_region_is_symmetric(Region(), 0.0));
    EXPECT_TRUE(ZOR::g_region_is_symmetric(region(rect(0, 0, 20, 10), rect(8, 3, 12, 7)), 0.0));
    Region pair = region(rect(0, 0, 20, 10), rect(2, 1, 4, 3), rect(2, 7, 4, 9));
    EXPECT_TRUE(ZOR::g_region_is_symmetric(pair, 0.0));
    pair[2] = rect(3, 7, 5, 9);
    EXPECT_FALSE(ZOR::g_region_is_symmetric(pair, 0.0));
    EXPECT_FALSE(ZOR::g_region_is_symmetric(
        region(rect(0, 0, 20, 10), rect(2, 1, 4, 3), rect(2, 7, 4, 9), rect(14, 1, 16, 3)), 0.0));
}

}  // namespace
