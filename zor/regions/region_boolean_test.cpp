#include "zor/regions/region_boolean.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

Regions marker() {
    return list({region(rect(100, 100, 101, 101))});
}

// What one operation gives: its result and, unless `out` is to stay as it was (kUntouched) or
// the case isn't asked (kSkip), how many regions, how many loops the first one has, and the
// exact area of them all.
constexpr int kUntouched = -1, kSkip = -2;
struct Outcome {
    bool ok;
    int regions, loops;
    double area;
};

Outcome yes(int regions, int loops, double area) {
    return {true, regions, loops, area};
}

// The area of a circle of radius r within the band |y| < 1.
double band(double r) {
    return 2.0 * (std::sqrt(r * r - 1.0) + r * r * std::asin(1.0 / r));
}

TEST(RegionBoolean, FiguresUnionDifferenceIntersection) {
    const Region sq = region(rect(0, 0, 10, 10)), small = region(rect(4, 4, 6, 6));
    const Region over = region(rect(5, 5, 15, 15)), side = region(rect(10, 0, 20, 10));
    const Region corner = region(rect(10, 10, 20, 20)), apart = region(rect(20, 0, 30, 10));
    const Region holed = region(rect(0, 0, 10, 10), rect(2, 2, 8, 8));
    const Region twoHoles = region(rect(0, 0, 20, 10), rect(2, 2, 4, 4), rect(12, 2, 14, 4));
    const Region cwA = region(rect(0, 0, 10, 10).reverse());
    const Region cwB = region(rect(5, 5, 15, 15).reverse());
    const Region ring = region(circle(0, 0, 10), circle(0, 0, 3));
    const Region bar = region(rect(-20, -1, 20, 1)), cover = region(rect(1, 1, 5, 5));
    // A step of 2e-6 on the bottom edge, below the tolerance divided by the factor.
    const Region step = region(chain({L(0, 0, 5, 0), L(5, 0, 5, 2e-6), L(5, 2e-6, 10, 2e-6),
                                      L(10, 2e-6, 10, 10), L(10, 10, 0, 10), L(0, 10, 0, 0)}));
    const double crossing = band(10) - band(3), kept = M_PI * (100.0 - 9.0) - crossing;
    const Outcome empty = yes(0, 0, 0), skip{true, kSkip, 0, 0}, none{false, kUntouched, 0, 0};
    const struct {
        const char* name;
        Region a, b;
        Outcome uni, diff, sect;
    } cases[] = {
        // An empty operand: false and `out` untouched, whichever side and operation.
        {"no a", Region(), sq, none, none, none},
        {"no b", sq, Region(), none, none, none},
        {"overlapping", sq, over, yes(1, 1, 175), yes(1, 1, 75), yes(1, 1, 25)},
        // Union and intersection keep a stretch shared with interiors on the same side once.
        {"equal", sq, sq, yes(1, 1, 100), empty, yes(1, 1, 100)},
        // b becomes a counter-clockwise hole of the difference.
        {"inside", sq, small, yes(1, 1, 100), yes(1, 2, 96), yes(1, 1, 4)},
        {"around", small, sq, yes(1, 1, 100), empty, yes(1, 1, 4)},
        // The island comes after the region whose hole holds it.
        {"island in hole", holed, small, yes(2, 2, 68), yes(1, 2, 64), empty},
        // The common edge goes from the union, and comes back from b for the difference.
        {"shared edge", sq, side, yes(1, 1, 200), yes(1, 1, 100), empty},
        {"corners touch", sq, corner, none, yes(1, 1, 100), empty},
        {"apart", sq, apart, yes(2, 1, 200), {false, 1, 1, 100}, {false, 0, 0, 0}},
        // b covers one hole: its outline becomes a hole of the difference.
        {"hole covered", twoHoles, cover, yes(1, 2, 196), yes(1, 3, 180), yes(1, 2, 12)},
        // The plain difference orients clockwise operands first; the others don't.
        {"clockwise", cwA, cwB, skip, yes(1, 1, 75), skip},
        // A band through a ring of arcs: the hole splits in two for the union.
        {"ring and band", ring, bar, yes(1, 3, kept + 80), yes(2, 1, kept), yes(2, 1, crossing)},
        // The short step lowers the tolerance for the segments after it, only within the call.
        {"short step", step, over, yes(1, 1, 175 - 1e-5), yes(1, 1, 75 - 1e-5), yes(1, 1, 25)},
    };
    using Op = bool (*)(Region, Region, Regions&);
    const Op ops[] = {ZOR::g_region_union, ZOR::g_region_diff, ZOR::g_region_sect};
    const char* const names[] = {"union", "diff", "sect"};
    const double tol = CZorPoint3d::tol;
    for (const auto& c : cases) {
        const Outcome* expected[] = {&c.uni, &c.diff, &c.sect};
        for (int k = 0; k < 3; ++k) {
            const Outcome& e = *expected[k];
            if (e.regions == kSkip) continue;
            SCOPED_TRACE(std::string(c.name) + " " + names[k]);
            Regions out = marker();
            EXPECT_EQ(ops[k](c.a, c.b, out), e.ok);
            EXPECT_EQ(CZorPoint3d::tol, tol);
            if (e.regions == kUntouched) {
                EXPECT_EQ(out, marker());
                continue;
            }
            ASSERT_EQ(out.len(), static_cast<std::uint32_t>(e.regions));
            EXPECT_EQ(e.regions > 0 ? out[0].len() : 0u, static_cast<std::uint32_t>(e.loops));
            EXPECT_NEAR(exactArea(out), e.area, 1e-9 * (1 + e.area));
            EXPECT_TRUE(atRest(out));
        }
    }
    // Apart, the operands come back as passed; equal ones come once from b; a shared edge leaves
    // no joint behind in the union.
    Regions out;
    ZOR::g_region_union(sq, apart, out);
    EXPECT_EQ(out, list({sq, apart}));
    ZOR::g_region_diff(sq, apart, out);
    EXPECT_EQ(out, list({sq}));
    Region tagged = sq;
    tagged[0][0].tag = 7;
    ZOR::g_region_union(sq, tagged, out);
    EXPECT_EQ(out[0][0][0].tag + out[0][0][1].tag + out[0][0][2].tag + out[0][0][3].tag, 7);
    ZOR::g_region_union(sq, side, out);
    EXPECT_EQ(out[0][0].len(), 4);
    // The loops are strung and normalised at the lowered tolerance, so the step stays.
    ZOR::g_region_union(step, over, out);
    EXPECT_EQ(out[0][0].len(), 10);
    // An outer loop without segments is an operand that lies nowhere: it stays without segments.
    ASSERT_TRUE(ZOR::g_region_union(region(Loop()), small, out));
    EXPECT_EQ(out, list({region(Loop()), small}));
}

TEST(RegionBoolean, ExAttributes) {
    // Only the difference gives its loops a text, that of a[0]; no number is carried.
    const VllEx a = zor_g_xvll(region(rect(0, 0, 10, 10)), 5, L"wall", CZorVector3d::kZAxis);
    const VllEx b = zor_g_xvll(region(rect(5, 5, 15, 15)), 6, L"slab", CZorVector3d::kZAxis);
    RegionsEx out;
    ASSERT_TRUE(ZOR::g_region_diff(a, b, out));
    EXPECT_EQ(out[0][0].attrNumber, 0);
    EXPECT_TRUE(out[0][0].attrText == CZorString(L"wall"));
    ASSERT_TRUE(ZOR::g_region_union(a, b, out));
    EXPECT_TRUE(out[0][0].attrNumber == 0 && out[0][0].attrText.isNull());
    ASSERT_TRUE(ZOR::g_region_sect(a, b, out));
    EXPECT_TRUE(out[0][0].attrNumber == 0 && out[0][0].attrText.isNull());
}

TEST(RegionBoolean, ListDifferences) {
    const Region a = region(rect(0, 0, 30, 10));
    const Regions cuts = Regions()
                             .append(region(rect(9, -1, 11, 11)))
                             .append(region(rect(19, -1, 21, 11)))
                             .append(region(rect(100, 100, 101, 101)));
    // Only the first region of `a` is cut, and it replaces out[0]; the second region of `a` isn't
    // in the result, and what `out` held beyond its first region is cut as well.
    Regions out = marker().append(region(rect(15, 0, 25, 10)));
    ASSERT_TRUE(ZOR::reglDiff(list({a, region(rect(50, 0, 60, 10))}), cuts, out));
    ASSERT_EQ(out.len(), 5u);
    EXPECT_NEAR(exactArea(out), 300.0 - 40.0 + 80.0, 1e-9);
    out = marker();
    EXPECT_FALSE(ZOR::reglDiff(Regions(), cuts, out));
    EXPECT_EQ(out, marker());
    EXPECT_FALSE(ZOR::reglDiff(list({a}), list({region(rect(-1, -1, 31, 11))}), out));
    EXPECT_EQ(out.len(), 0u);

    RegionsEx cx, ox;
    zorReglToReglEx(cx, cuts);
    ASSERT_TRUE(ZOR::g_region_diff(toEx(a), cx, ox));
    EXPECT_EQ(ox.len(), 3u);
    ASSERT_TRUE(ZOR::g_region_diff(toEx(a), RegionsEx(), ox));
    ASSERT_EQ(ox.len(), 1u);
    EXPECT_EQ(ox[0].len(), 1u);
}

}  // namespace
