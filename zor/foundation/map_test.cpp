#include "zor/foundation/map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "zor/geometry/point3d.h"

namespace {

std::vector<int> keysOf(const CZorMapTempl<int, int>& m) {
    CZorArrayTempl<int> dir;
    m.getDir(dir);
    return std::vector<int>(dir.entry(), dir.entry() + dir.len());
}

// A map of the keys 10, 20, ..., 10 n, each with its key negated as the value.
CZorMapTempl<int, int> tens(int n) {
    CZorMapTempl<int, int> m;
    for (int k = n; k >= 1; --k) m.setAt(10 * k, -10 * k);
    return m;
}

TEST(ZorMapTest, BisectionFindsEveryKeyAndEveryGapAtEverySize) {
    for (int n = 0; n <= 17; ++n) {
        const CZorMapTempl<int, int> m = tens(n);
        ASSERT_EQ(m.len(), static_cast<std::uint32_t>(n));
        for (int k = 1; k <= n; ++k) {
            int v = 0;
            ASSERT_TRUE(m.getAt(10 * k, v)) << n << " " << k;
            ASSERT_EQ(v, -10 * k);
        }
        // An absent key before, between and after the present ones goes in where it keeps the
        // order: the index of the gap.
        for (int gap = 0; gap <= n; ++gap) {
            CZorMapTempl<int, int> copy(m);
            const int key = 10 * gap + 5;
            ASSERT_FALSE(copy.hasKey(key));
            ASSERT_FALSE(copy.setAt(key, 1));
            int at = 0;
            ASSERT_TRUE(copy.keyAtIndex(static_cast<std::uint32_t>(gap), at)) << n << " " << gap;
            ASSERT_EQ(at, key) << n << " " << gap;
        }
    }
}

TEST(ZorMapTest, RandomUseAgreesWithAnOrderedReference) {
    std::mt19937 rng(17);
    CZorMapTempl<int, int> m;
    std::map<int, int> ref;
    for (int step = 0; step < 3000; ++step) {
        const int key = static_cast<int>(rng() % 200) - 100;
        switch (rng() % 4) {
            case 0:
            case 1:
                ASSERT_EQ(m.setAt(key, step), ref.count(key) == 1);
                ref[key] = step;
                break;
            case 2:
                ASSERT_EQ(m.removeAt(key), ref.erase(key) == 1);
                break;
            default:
                ++m[key];
                ++ref[key];
                break;
        }
    }
    ASSERT_EQ(m.len(), ref.size());
    std::uint32_t i = 0;
    for (const auto& [key, value] : ref) {
        int k = 0, v = 0;
        ASSERT_TRUE(m.getAtIndex(i++, k, v));
        EXPECT_EQ(k, key);
        EXPECT_EQ(v, value);
    }
}

TEST(ZorMapTest, SetAtTellsWhetherTheKeyExisted) {
    CZorMapTempl<int, int> m;
    EXPECT_FALSE(m.setAt(3, 30));
    EXPECT_TRUE(m.setAt(3, 31));
    EXPECT_EQ(m.len(), 1u);
    int v = 0;
    EXPECT_TRUE(m.getAt(3, v));
    EXPECT_EQ(v, 31);
}

TEST(ZorMapTest, DescendingInsertionGivesAscendingKeys) {
    EXPECT_EQ(keysOf(tens(5)), (std::vector<int>{10, 20, 30, 40, 50}));
    CZorArrayTempl<int> dir;
    dir.setLogicalLength(9);
    CZorMapTempl<int, int>().getDir(dir);
    EXPECT_TRUE(dir.isEmpty());
}

TEST(ZorMapTest, IndexOperatorInsertsADefaultValue) {
    CZorMapTempl<int, int> m = tens(2);
    m.setAt(15, 7);
    EXPECT_EQ(m[15], 7);
    EXPECT_EQ(m.len(), 3u);
    EXPECT_EQ(m[12], 0);
    EXPECT_EQ(m.len(), 4u);
    m[12] = 4;
    int v = 0;
    EXPECT_TRUE(m.getAt(12, v));
    EXPECT_EQ(v, 4);
}

TEST(ZorMapTest, ValuePointersSurviveOtherInsertions) {
    CZorMapTempl<int, CZorArrayTempl<int>> m;
    CZorArrayTempl<int>* first = nullptr;
    m[500].append(1);
    ASSERT_TRUE(m.getAt(500, first));
    for (int k = 0; k < 100; ++k) m[k].append(k);  // the pointer block grows past 16 and 64
    for (int k = 600; k < 700; ++k) m.setAt(k, CZorArrayTempl<int>());
    m.removeAt(3);
    first->append(2);
    CZorArrayTempl<int>* again = nullptr;
    ASSERT_TRUE(m.getAtIndex(99, again));
    EXPECT_EQ(again, first);
    EXPECT_EQ(again->len(), 2u);
    EXPECT_EQ((*again)[1], 2);
}

TEST(ZorMapTest, RemovalAndReuse) {
    CZorMapTempl<int, int> m;
    m.setAt(1, 1);
    EXPECT_FALSE(m.removeAt(2));
    EXPECT_TRUE(m.removeAt(1));
    EXPECT_EQ(m.len(), 0u);
    EXPECT_TRUE(m.isEmpty());
    EXPECT_FALSE(m.hasKey(1));
    m.setAt(4, 4);
    EXPECT_EQ(keysOf(m), (std::vector<int>{4}));

    m = tens(20);
    m.removeAt(10);
    m.removeAt(200);
    m.removeAt(100);
    EXPECT_EQ(m.len(), 17u);
    EXPECT_FALSE(m.hasKey(100));
    EXPECT_TRUE(m.hasKey(110));
    m.removeAll();
    EXPECT_EQ(m.len(), 0u);
    m.setAt(1, 2);
    EXPECT_EQ(keysOf(m), (std::vector<int>{1}));
}

TEST(ZorMapTest, MissesLeaveOutputsUntouched) {
    const CZorMapTempl<int, int> m = tens(3);
    int k = 77, v = 88;
    int* p = &v;
    EXPECT_FALSE(m.getAt(5, v));
    EXPECT_FALSE(m.getAt(5, p));
    EXPECT_FALSE(m.getAtIndex(3, v));
    EXPECT_FALSE(m.getAtIndex(3, p));
    EXPECT_FALSE(m.getAtIndex(3, k, v));
    EXPECT_FALSE(m.getAtIndex(3, k, p));
    EXPECT_FALSE(m.keyAtIndex(3, k));
    EXPECT_FALSE(m.keyAtIndex(0xFFFFFFFFu, k));
    EXPECT_EQ(k, 77);
    EXPECT_EQ(v, 88);
    EXPECT_EQ(p, &v);

    EXPECT_TRUE(m.getAtIndex(2, k, p));
    EXPECT_EQ(k, 30);
    EXPECT_EQ(*p, -30);
    EXPECT_TRUE(m.getAtIndex(0, v));
    EXPECT_EQ(v, -10);
}

TEST(ZorMapTest, CopiesAreDeep) {
    CZorMapTempl<int, CZorArrayTempl<int>> a;
    a[1].append(10);
    a[2].append(20);
    CZorMapTempl<int, CZorArrayTempl<int>> b(a);
    b[1].append(11);
    CZorMapTempl<int, CZorArrayTempl<int>> c;
    c[9].append(9);
    c = a;
    c[2][0] = 0;
    c = c;  // a map assigned to itself stays as it is
    EXPECT_EQ(a[1].len(), 1u);
    EXPECT_EQ(a[2][0], 20);
    EXPECT_EQ(b[1].len(), 2u);
    EXPECT_FALSE(c.hasKey(9));
    EXPECT_EQ(c[2][0], 0);
    EXPECT_EQ(c.len(), 2u);

    CZorMapTempl<int, CZorArrayTempl<int>> moved(std::move(b));
    EXPECT_EQ(moved.len(), 2u);
    EXPECT_TRUE(b.isEmpty());
    b = std::move(moved);
    EXPECT_EQ(b[1].len(), 2u);
}

TEST(ZorMapTest, PointKeysMatchWithinTheTolerance) {
    CZorMapTempl<CZorPoint3d, int> m;
    m.setAt(CZorPoint3d(1, 0, 0), 1);
    m.setAt(CZorPoint3d(0, 0, 0), 0);
    m.setAt(CZorPoint3d(2, 0, 0), 2);
    EXPECT_TRUE(m.setAt(CZorPoint3d(1 + 1e-6, 0, 0), 5));
    EXPECT_EQ(m.len(), 3u);
    CZorPoint3d key;
    int v = 0;
    ASSERT_TRUE(m.getAtIndex(1, key, v));
    EXPECT_EQ(key.x, 1.0);  // the earlier key stays
    EXPECT_EQ(v, 5);
    EXPECT_FALSE(m.setAt(CZorPoint3d(1 + 2e-5, 0, 0), 6));
    ASSERT_TRUE(m.keyAtIndex(2, key));
    EXPECT_EQ(key.x, 1 + 2e-5);
}

}  // namespace
