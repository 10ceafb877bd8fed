// The set identities of the region booleans on many random overlapping regions:
//   area(A u B) = area(A) + area(B) - area(A n B),   area(A - B) = area(A) - area(A n B),
// with every result loop closed and counter-clockwise and every hole inside its outer loop.
//
// The areas are exact (polygon plus circular segments), so the identities hold to rounding and
// the relative tolerance of 1e-6 catches any piece kept twice, dropped or misplaced.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "zor/regions/region_boolean.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

constexpr double kScale = 1e5;

// A convex polygon round (cx, cy) with 3 to 8 corners on a circle of radius r, each side bent
// outwards into an arc with probability `arcs`. The angular gaps stay below 120 degrees, so the
// circle of radius r / 2 lies inside, and outward arcs keep the outline simple.
Loop randomOutline(std::mt19937& rng, double cx, double cy, double r, double arcs) {
    std::uniform_int_distribution<int> corners(3, 8);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const int n = corners(rng);
    const double step = 2.0 * M_PI / n;
    const double start = unit(rng) * 2.0 * M_PI;
    std::vector<CZorPoint3d> p;
    for (int k = 0; k < n; ++k) {
        const double a = start + step * (k + 0.3 * (unit(rng) - 0.5));
        p.emplace_back(cx + r * std::cos(a), cy + r * std::sin(a), 0.0);
    }
    Loop l;
    for (int k = 0; k < n; ++k) {
        const double bulge = unit(rng) < arcs ? 0.05 + 0.25 * unit(rng) : 0.0;
        l.append(CZorVertex(p[k], p[(k + 1) % n], bulge));
    }
    return l;
}

Region randomRegion(std::mt19937& rng, double cx, double cy) {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const double r = kScale * (0.3 + 0.4 * unit(rng));
    Region out = region(randomOutline(rng, cx, cy, r, unit(rng)));
    if (unit(rng) < 0.5) {
        // A hole well inside: within a third of the radius round a point near the centre.
        const double hx = cx + 0.1 * r * (unit(rng) - 0.5);
        const double hy = cy + 0.1 * r * (unit(rng) - 0.5);
        out.append(randomOutline(rng, hx, hy, r * (0.15 + 0.15 * unit(rng)), unit(rng)));
    }
    return out;
}

TEST(RegionProperty, SetIdentitiesOnRandomOverlappingRegions) {
    std::mt19937 rng(2024);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    int overlapping = 0;
    for (int round = 0; round < 120; ++round) {
        const Region a = randomRegion(rng, 0.0, 0.0);
        const double dir = unit(rng) * 2.0 * M_PI;
        const double dist = kScale * 0.6 * unit(rng);
        const Region b = randomRegion(rng, dist * std::cos(dir), dist * std::sin(dir));

        Regions uni, sect, diff;
        ASSERT_TRUE(ZOR::g_region_union(a, b, uni)) << "round " << round;
        ZOR::g_region_sect(a, b, sect);
        ZOR::g_region_diff(a, b, diff);
        ASSERT_TRUE(atRest(uni) && atRest(sect) && atRest(diff)) << "round " << round;

        const double areaA = exactArea(a), areaB = exactArea(b), areaSect = exactArea(sect);
        if (areaSect > 0.0) ++overlapping;
        EXPECT_NEAR(exactArea(uni), areaA + areaB - areaSect, 1e-6 * (areaA + areaB)) << round;
        EXPECT_NEAR(exactArea(diff), areaA - areaSect, 1e-6 * areaA) << round;
    }
    // The test means something only when most pairs really overlap.
    EXPECT_GT(overlapping, 100);
}

}  // namespace
