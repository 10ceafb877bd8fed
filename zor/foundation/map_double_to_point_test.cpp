#include "zor/foundation/map_double_to_point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using ZOR::CMapDoubleToPoint;

struct Entry {
    double key;
    double x;  // the point's x identifies the entry
};

std::vector<Entry> entries(CMapDoubleToPoint& m) {
    std::vector<Entry> out;
    const CZorArrayTempl<double> keys = m.getDbLst();
    const CZorPoint3dArray points = m.getPtLst();
    EXPECT_EQ(static_cast<int>(keys.len()), points.len());
    for (int i = 0; i < m.len(); ++i) out.push_back({keys[i], points[i].x});
    return out;
}

// The grouping the map promises, done the plain way: the distinct numbers ascending, and under
// each the entries with exactly that number in their order.
std::vector<Entry> groupedReference(const std::vector<Entry>& in) {
    std::vector<double> distinct;
    for (const Entry& e : in) {
        bool seen = false;
        for (double d : distinct) seen = seen || d == e.key;
        if (!seen) distinct.push_back(e.key);
    }
    std::sort(distinct.begin(), distinct.end());
    std::vector<Entry> out;
    for (double d : distinct) {
        for (const Entry& e : in) {
            if (e.key == d) out.push_back(e);
        }
    }
    return out;
}

void expectEntries(CMapDoubleToPoint& m, const std::vector<Entry>& want) {
    const std::vector<Entry> got = entries(m);
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(std::signbit(got[i].key), std::signbit(want[i].key)) << i;
        EXPECT_TRUE(got[i].key == want[i].key ||
                    (std::isnan(got[i].key) && std::isnan(want[i].key)))
            << i;
        EXPECT_EQ(got[i].x, want[i].x) << i;
    }
}

TEST(ZorMapDoubleToPointTest, SortIsStableByTheNumber) {
    CMapDoubleToPoint m;
    EXPECT_FALSE(m.sort());
    m.append(2, CZorPoint3d(1, 0, 0));  // a
    m.append(1, CZorPoint3d(2, 0, 0));  // b
    m.append(2, CZorPoint3d(3, 0, 0));  // c
    m.append(1, CZorPoint3d(4, 0, 0));  // d
    EXPECT_TRUE(m.sort());
    expectEntries(m, {{1, 2}, {1, 4}, {2, 1}, {2, 3}});

    double d = 0;
    CZorPoint3d p;
    EXPECT_TRUE(m.getAt(-1, d, p));
    EXPECT_EQ(d, 2);
    EXPECT_EQ(p.x, 3);
}

TEST(ZorMapDoubleToPointTest, SortMatchesGroupingOnRandomInput) {
    std::mt19937 rng(23);
    const double pool[] = {-0.0, 0.0, 1.25, -3.0, 7.0, 1.25, 2.0};
    for (int round = 0; round < 200; ++round) {
        CMapDoubleToPoint m;
        std::vector<Entry> in;
        const int n = 1 + static_cast<int>(rng() % 30);
        for (int k = 0; k < n; ++k) {
            const double key = pool[rng() % 7];
            m.append(key, CZorPoint3d(k, 0, 0));
            in.push_back({key, static_cast<double>(k)});
        }
        ASSERT_TRUE(m.sort());
        expectEntries(m, groupedReference(in));
    }
}

TEST(ZorMapDoubleToPointTest, NaNEntriesAreKeptBehindTheOthers) {
    CMapDoubleToPoint m;
    m.append(std::nan(""), CZorPoint3d(1, 0, 0));
    m.append(3, CZorPoint3d(2, 0, 0));
    m.append(std::nan(""), CZorPoint3d(3, 0, 0));
    m.append(-1, CZorPoint3d(4, 0, 0));
    ASSERT_TRUE(m.sort());
    expectEntries(m, {{-1, 4}, {3, 2}, {std::nan(""), 1}, {std::nan(""), 3}});
}

TEST(ZorMapDoubleToPointTest, ReadingAtTheLengthAddsAnEntry) {
    CMapDoubleToPoint m;
    m.append(5, CZorPoint3d(5, 5, 5));
    double d = 9;
    CZorPoint3d p(9, 9, 9);
    EXPECT_FALSE(m.getAt(2, d, p));
    EXPECT_EQ(d, 9);
    EXPECT_EQ(p.x, 9);
    EXPECT_EQ(m.len(), 1);
    EXPECT_TRUE(m.getAt(1, d, p));
    EXPECT_EQ(m.len(), 2);
    EXPECT_EQ(d, 0);
    EXPECT_EQ(p.x, 0);
    EXPECT_EQ(m.getPtLst().len(), 2);
    EXPECT_TRUE(m.getAt(0, d, p));
    EXPECT_EQ(d, 5);
    EXPECT_EQ(p.z, 5);
}

TEST(ZorMapDoubleToPointTest, InsertionAndLength) {
    CMapDoubleToPoint m;
    EXPECT_TRUE(m.insertAt(0, 2, CZorPoint3d(2, 0, 0)));
    EXPECT_TRUE(m.insertAt(0, 1, CZorPoint3d(1, 0, 0)));
    EXPECT_TRUE(m.insertAt(2, 3, CZorPoint3d(3, 0, 0)));
    // Outside the list the two arrays would part: nothing happens.
    EXPECT_FALSE(m.insertAt(4, 9, CZorPoint3d(9, 0, 0)));
    EXPECT_FALSE(m.insertAt(-1, 9, CZorPoint3d(9, 0, 0)));
    expectEntries(m, {{1, 1}, {2, 2}, {3, 3}});

    EXPECT_EQ(m.setLogicalLength(5), 5u);
    expectEntries(m, {{1, 1}, {2, 2}, {3, 3}, {0, 0}, {0, 0}});
    m.setLogicalLength(1);
    expectEntries(m, {{1, 1}});

    CMapDoubleToPoint copy(m);
    copy.append(4, CZorPoint3d(4, 0, 0));
    EXPECT_EQ(m.len(), 1);
    m = copy;
    expectEntries(m, {{1, 1}, {4, 4}});
}

}  // namespace
