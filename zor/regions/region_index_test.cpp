// The indexed paths of the region operations against the plain scans they replace, on random
// input.
#include "zor/regions/region_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "zor/polyline/point_inside.h"
#include "zor/polyline/split_break.h"
#include "zor/regions/loop_breaking.h"
#include "zor/regions/loops.h"
#include "zor/regions/region_building.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;

// Bit for bit, NaN equal to NaN, tags included.
bool sameExactly(const Loop& a, const Loop& b) {
    auto same = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
    if (a.len() != b.len()) return false;
    for (int i = 0; i < a.len(); ++i) {
        const CZorVertex &s = a[i], &t = b[i];
        if (!same(s.start.x, t.start.x) || !same(s.start.y, t.start.y) || !same(s.end.x, t.end.x) ||
            !same(s.end.y, t.end.y) || !same(s.bulge, t.bulge) || s.tag != t.tag) {
            return false;
        }
    }
    return true;
}

// Loops of random rectangles and circles in a 100 x 100 field, some nested, some crossing, some
// sharing corners on a coarse grid.
Vll randomLoops(std::mt19937& rng, int n) {
    std::uniform_int_distribution<int> cell(0, 20);
    std::uniform_int_distribution<int> size(1, 8);
    std::uniform_int_distribution<int> kind(0, 2);
    Vll out;
    for (int i = 0; i < n; ++i) {
        const double x = 5.0 * cell(rng), y = 5.0 * cell(rng), s = 2.5 * size(rng);
        if (kind(rng) == 0) {
            out.append(circle(x, y, s));
        } else {
            out.append(rect(x, y, x + s, y + 0.5 * s));
        }
    }
    return out;
}

// g_vl_sort as the walk puts it: for each joint that doesn't meet, the first following segment
// whose start is == to the end is brought forward, and the end snapped to it.
void sortBySearch(Loop& vl) {
    for (int i = 1; i < vl.len(); ++i) {
        if (vl[i - 1].end == vl[i].start) {
            vl[i - 1].end = vl[i].start;
            continue;
        }
        for (int k = i + 1; k < vl.len(); ++k) {
            if (vl[k].start == vl[i - 1].end) {
                vl[i - 1].end = vl[k].start;
                std::swap(vl[k], vl[i]);
                break;
            }
        }
    }
}

TEST(RegionIndex, ChainSortingEqualsThePlainSearch) {
    std::mt19937 rng(11);
    for (int round = 0; round < 200; ++round) {
        const Vll loops = randomLoops(rng, 1 + round % 7);
        std::vector<CZorVertex> bag;
        for (int i = 0; i < static_cast<int>(loops.len()); ++i)
            for (int k = 0; k < loops[i].len(); ++k) bag.push_back(loops[i][k]);
        // Shuffle, and move some ends by less than the tolerance so that joints aren't exact.
        std::shuffle(bag.begin(), bag.end(), rng);
        std::uniform_real_distribution<double> jitter(-3e-6, 3e-6);
        Loop plain;
        for (CZorVertex s : bag) {
            s.start.x += jitter(rng);
            plain.append(s);
        }
        Loop fast = plain;
        sortBySearch(plain);
        ZOR::g_vl_sort(fast);
        ASSERT_TRUE(sameExactly(fast, plain)) << "round " << round;
    }
}

TEST(RegionIndex, RegionTesterEqualsThePlainTest) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> coord(-5.0, 110.0);
    for (int round = 0; round < 40; ++round) {
        Region r = region(rect(0, 0, 100, 100));
        r += randomLoops(rng, 6);
        const ZOR::detail::RegionPointTester tester(ZOR::detail::loopPointers(r));
        std::vector<CZorPoint3d> points;
        for (int k = 0; k < 100; ++k) points.emplace_back(coord(rng), coord(rng), 0.0);
        // Points on the boundaries: middles and ends of segments.
        for (int i = 0; i < static_cast<int>(r.len()); ++i) {
            for (int k = 0; k < r[i].len(); ++k) {
                points.push_back(r[i][k].mid());
                points.push_back(r[i][k].start);
            }
        }
        for (const CZorPoint3d& p : points) {
            ASSERT_EQ(tester.classify(p), ZOR::g_vll_pt_inside(r, p)) << p.x << " " << p.y;
        }
    }
    EXPECT_EQ(ZOR::detail::RegionPointTester({}).classify(CZorPoint3d(0, 0, 0)), -1);
}

// g_vll_region as its steps read, every loop tested against every other.
Regions regionsByDepthPlain(const Vll& loops) {
    const int n = loops.len();
    std::vector<int> depth(n, 0), outers;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n && loops[i].len() >= 2; ++j)
            depth[i] += j != i && ZOR::g_vl_pt_inside(loops[j], loops[i][0].mid(), false);
        if (depth[i] % 2 == 0) outers.push_back(i);
    }
    // Shallower first, then in input order.
    std::stable_sort(outers.begin(), outers.end(),
                     [&](int i, int j) { return depth[i] < depth[j]; });
    Regions out;
    for (const int i : outers) out.append(region(loops[i]));
    for (int i = 0; i < n && out.len() > 0; ++i) {
        if (depth[i] % 2 == 0) continue;
        for (int r = static_cast<int>(out.len()) - 1; r >= 0; --r) {
            if (ZOR::g_vl_pt_inside(out[r][0], loops[i][0].mid(), false)) {
                out[r].append(loops[i]);
                break;
            }
        }
    }
    return out;
}

TEST(RegionIndex, RegionsByDepthEqualThePlainNesting) {
    std::mt19937 rng(3);
    for (int round = 0; round < 100; ++round) {
        const Vll loops = randomLoops(rng, round % 14);
        ASSERT_EQ(ZOR::g_vll_region(loops), regionsByDepthPlain(loops)) << "round " << round;
    }
}

bool breaksLikeThePlainWalk(Loop a, Loop b) {
    Loop pa = a, pb = b;
    ZOR::g_vl_break(pa, pb, 3);
    ZOR::detail::breakBoth(a, b);
    return sameExactly(a, pa) && sameExactly(b, pb);
}

TEST(RegionIndex, BreakingEqualsThePlainWalk) {
    std::mt19937 rng(21);
    for (int round = 0; round < 150; ++round) {
        const Vll loops = randomLoops(rng, 2);
        // Every third round, toothed outlines meeting at nearly every segment, some sharing
        // stretches.
        const bool teeth = round % 3 == 0;
        const double turn = round % 2 ? M_PI / (20 + round / 2) : 0.0;
        ASSERT_TRUE(breaksLikeThePlainWalk(teeth ? gear(0, 0, 40 + round, 50, 0.0) : loops[0],
                                           teeth ? gear(0, 0, 40 + round, 50, turn) : loops[1]))
            << "round " << round;
    }
    // Degenerate bulges, where every piece may meet the other segment again until the bound on
    // the splits ends the walk.
    const Loop zigzag = chain({L(1, -3, 2, 3), L(2, 3, 3, -3), L(3, -3, 6, 4)});
    for (const double bulge : {1e12, -1e15, std::nan(""), 1e-300}) {
        const Loop a = chain(
            {CZorVertex(P(0, 0), P(4, 0.001), bulge), CZorVertex(P(4, 0.001), P(8, 0), bulge)});
        EXPECT_TRUE(breaksLikeThePlainWalk(a, zigzag)) << bulge;
    }
}

}  // namespace
