#include "zor/foundation/map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "zor/geometry/point3d.h"

namespace {

using IntMap = CZorMapTempl<int, int>;

// The keys 10, 20, ..., 10 n inserted in descending order, each with its key negated as value.
IntMap tens(int n) {
    IntMap m;
    for (int k = n; k >= 1; --k) m.setAt(10 * k, -10 * k);
    return m;
}

TEST(ZorMapTest, BisectionFindsEveryKeyAndEveryGapAtEverySize) {
    for (int n = 0; n <= 17; ++n) {
        const IntMap m = tens(n);
        CZorArrayTempl<int> dir;
        m.getDir(dir);
        ASSERT_EQ(dir.len(), static_cast<std::uint32_t>(n));
        for (int k = 1; k <= n; ++k) {
            int v = 0;
            ASSERT_EQ(dir[k - 1], 10 * k);
            ASSERT_TRUE(m.getAt(10 * k, v) && v == -10 * k) << n << " " << k;
        }
        // An absent key at either end or between goes in at the index of its gap.
        for (int gap = 0; gap <= n; ++gap) {
            IntMap copy(m);
            int at = 0;
            ASSERT_FALSE(copy.setAt(10 * gap + 5, 1));
            ASSERT_TRUE(copy.keyAtIndex(gap, at) && at == 10 * gap + 5) << n << " " << gap;
        }
    }
}

TEST(ZorMapTest, RandomUseAgreesWithAnOrderedReference) {
    std::mt19937 rng(17);
    IntMap m;
    std::map<int, int> ref;
    for (int step = 0; step < 3000; ++step) {
        const int key = static_cast<int>(rng() % 200) - 100;
        switch (rng() % 3) {
            case 0:  // true when the key existed
                ASSERT_EQ(m.setAt(key, step), ref.count(key) == 1);
                ref[key] = step;
                break;
            case 1:
                ASSERT_EQ(m.removeAt(key), ref.erase(key) == 1);
                break;
            default:  // an absent key gets a default value first
                ASSERT_EQ(++m[key], ++ref[key]);
        }
    }
    ASSERT_EQ(m.len(), ref.size());
    std::uint32_t i = 0;
    for (const auto& [key, value] : ref) {
        int k = 0, v = 0;
        ASSERT_TRUE(m.getAtIndex(i++, k, v));
        EXPECT_TRUE(k == key && v == value);
    }
    m.removeAll();
    EXPECT_TRUE(m.isEmpty());
    m.setAt(1, 1);
    EXPECT_TRUE(m.hasKey(1) && m.len() == 1);
}

TEST(ZorMapTest, MissesLeaveOutputsUntouched) {
    const IntMap m = tens(3);
    int k = 77, v = 88;
    int* p = &v;
    EXPECT_FALSE(m.getAt(5, v) || m.getAt(5, p) || m.hasKey(5));
    EXPECT_FALSE(m.getAtIndex(3, v) || m.getAtIndex(3, p) || m.getAtIndex(3, k, v));
    EXPECT_FALSE(m.getAtIndex(3, k, p) || m.keyAtIndex(0xFFFFFFFFu, k));
    EXPECT_TRUE(k == 77 && v == 88 && p == &v);
    EXPECT_TRUE(m.getAtIndex(2, k, p) && k == 30 && *p == -30);
}

TEST(ZorMapTest, ValuePointersSurviveGrowthAndCopiesAreDeep) {
    CZorMapTempl<int, CZorArrayTempl<int>> m;
    CZorArrayTempl<int>* first = nullptr;
    m[500].append(1);
    ASSERT_TRUE(m.getAt(500, first));
    for (int k = 0; k < 100; ++k) m[k].append(k);  // the pointer block grows past 16 and 64
    m.removeAt(3);
    first->append(2);
    CZorArrayTempl<int>* again = nullptr;
    ASSERT_TRUE(m.getAtIndex(99, again));
    EXPECT_EQ(again, first);

    CZorMapTempl<int, CZorArrayTempl<int>> copy(m), assigned;
    assigned[1000].append(0);
    assigned = m;
    assigned = assigned;
    copy[500].append(3);
    assigned[500][0] = 9;
    EXPECT_EQ(m[500].len(), 2u);
    EXPECT_EQ(m[500][0], 1);
    EXPECT_TRUE(copy[500].len() == 3 && !assigned.hasKey(1000) && assigned.len() == 100);
    CZorMapTempl<int, CZorArrayTempl<int>> moved(std::move(copy));
    EXPECT_TRUE(copy.isEmpty() && moved.len() == 100);
}

TEST(ZorMapTest, PointKeysMatchWithinTheTolerance) {
    CZorMapTempl<CZorPoint3d, int> m;
    m.setAt(CZorPoint3d(1, 0, 0), 1);
    m.setAt(CZorPoint3d(0, 0, 0), 0);
    EXPECT_TRUE(m.setAt(CZorPoint3d(1 + 1e-6, 0, 0), 5));
    EXPECT_FALSE(m.setAt(CZorPoint3d(1 + 2e-5, 0, 0), 6));
    CZorPoint3d key;
    int v = 0;
    ASSERT_TRUE(m.getAtIndex(1, key, v));
    EXPECT_TRUE(key.x == 1.0 && v == 5);  // the earlier key stays
    EXPECT_TRUE(m.keyAtIndex(2, key) && key.x == 1 + 2e-5);

    // Within the tolerance of two keys the bisection's order of probes decides: of two entries
    // the first probe is index 1, where a scan from the front would stop at index 0.
    CZorMapTempl<CZorPoint3d, int> pair;
    pair.setAt(CZorPoint3d(0, 0, 0), 0);
    pair.setAt(CZorPoint3d(1.5e-5, 0, 0), 1);
    EXPECT_TRUE(pair.getAt(CZorPoint3d(0.75e-5, 0, 0), v) && v == 1);
}

}  // namespace
