#include "zor/foundation/map_double_to_point.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

using ZOR::CMapDoubleToPoint;
using Entries = std::vector<std::pair<double, double>>;  // (number, x of the point)

Entries entries(CMapDoubleToPoint& m) {
    const CZorArrayTempl<double> keys = m.getDbLst();
    const CZorPoint3dArray points = m.getPtLst();
    EXPECT_EQ(static_cast<int>(keys.len()), points.len());
    Entries out;
    for (int i = 0; i < m.len(); ++i) out.emplace_back(keys[i], points[i].x);
    return out;
}

TEST(ZorMapDoubleToPointTest, SortIsStableByTheNumber) {
    CMapDoubleToPoint m;
    EXPECT_FALSE(m.sort());
    for (double key : {2, 1, 2, 1}) m.append(key, CZorPoint3d(m.len(), 0, 0));
    EXPECT_TRUE(m.sort());
    EXPECT_EQ(entries(m), (Entries{{1, 1}, {1, 3}, {2, 0}, {2, 2}}));
    double d = 0;
    CZorPoint3d p;
    EXPECT_TRUE(m.getAt(-1, d, p) && d == 2 && p.x == 2);

    // NaN equals no number; its entries are kept, behind the others.
    CMapDoubleToPoint n;
    for (double key : {std::nan(""), 3.0, std::nan(""), -1.0})
        n.append(key, CZorPoint3d(n.len(), 0, 0));
    n.sort();
    const Entries e = entries(n);
    EXPECT_TRUE(e[0] == std::make_pair(-1.0, 3.0) && e[1] == std::make_pair(3.0, 1.0));
    EXPECT_TRUE(std::isnan(e[2].first) && e[2].second == 0 && e[3].second == 2);
}

TEST(ZorMapDoubleToPointTest, SortEqualsGroupingUnderDistinctNumbers) {
    std::mt19937 rng(23);
    const double pool[] = {-0.0, 0.0, 1.25, -3.0, 7.0, 2.0};
    for (int round = 0; round < 200; ++round) {
        CMapDoubleToPoint m;
        for (int k = 0, n = 1 + static_cast<int>(rng() % 30); k < n; ++k)
            m.append(pool[rng() % 6], CZorPoint3d(k, 0, 0));
        // The plain way: the distinct numbers ascending, under each its entries in order.
        const Entries in = entries(m);
        std::vector<double> distinct;
        for (const auto& [key, x] : in)
            if (std::find(distinct.begin(), distinct.end(), key) == distinct.end())
                distinct.push_back(key);
        std::sort(distinct.begin(), distinct.end());
        Entries want;
        for (double key : distinct)
            for (const auto& entry : in)
                if (entry.first == key) want.push_back(entry);
        ASSERT_TRUE(m.sort());
        const Entries got = entries(m);
        ASSERT_EQ(got, want);
        for (std::size_t k = 0; k < got.size(); ++k)  // -0 and 0 keep their own signs
            ASSERT_EQ(std::signbit(got[k].first), std::signbit(want[k].first));
    }
}

TEST(ZorMapDoubleToPointTest, AccessInsertionAndLength) {
    CMapDoubleToPoint m;
    double d = 9;
    CZorPoint3d p(9, 9, 9);
    EXPECT_TRUE(m.insertAt(0, 2, CZorPoint3d(2, 0, 0)) && m.insertAt(0, 1, CZorPoint3d(1, 0, 0)));
    EXPECT_FALSE(m.insertAt(-1, 9, p) || m.getAt(3, d, p));
    EXPECT_TRUE(d == 9 && p.x == 9);
    EXPECT_TRUE(m.getAt(2, d, p) && d == 0 && p.x == 0);  // reading at the length extends
    // Past the end both lists extend together, with defined numbers in the gap.
    EXPECT_TRUE(m.insertAt(4, 5, CZorPoint3d(5, 0, 0)));
    EXPECT_EQ(entries(m), (Entries{{1, 1}, {2, 2}, {0, 0}, {0, 0}, {5, 5}}));
    EXPECT_EQ(m.setLogicalLength(1), 1u);
    CMapDoubleToPoint copy(m);
    copy.append(4, CZorPoint3d(4, 0, 0));
    EXPECT_EQ(entries(m), (Entries{{1, 1}}));
    m = copy;
    EXPECT_EQ(entries(m), (Entries{{1, 1}, {4, 4}}));
}

}  // namespace
