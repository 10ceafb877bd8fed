#include "zor/foundation/array.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "zor/geometry/point3d.h"
#include "zor/geometry/vector3d.h"

namespace {

// Exposes the capacity, which the interface keeps to itself.
template <class T>
struct Probe : CZorArrayTempl<T> {
    std::uint32_t capacity() const { return this->physicalLength; }
};

// Owns heap memory and counts live objects: bytewise relocation that duplicated or dropped an
// object shows up as a wrong count, a leak or a double free under the sanitizers.
struct Owned : CZorObj {
    static inline int live = 0;
    int* v;
    Owned(int x = 0) : v(new int(x)) { ++live; }
    Owned(const Owned& o) : CZorObj(o), v(new int(*o.v)) { ++live; }
    Owned& operator=(const Owned& o) {
        *v = *o.v;
        return *this;
    }
    ~Owned() override {
        delete v;
        --live;
    }
    bool operator==(const Owned& o) const { return *v == *o.v; }
    bool operator>(const Owned& o) const { return *v > *o.v; }
};

struct Tagged {  // ordered by key only, to see stability
    int key, tag;
    bool operator==(const Tagged& o) const { return key == o.key && tag == o.tag; }
    bool operator>(const Tagged& o) const { return key > o.key; }
};
struct OneSided {  // a == b when b lies in [a, a + 1]: the answer depends on the side asked
    double v;
    bool operator==(const OneSided& o) const { return o.v >= v && o.v <= v + 1.0; }
};

template <class T>
std::vector<T> items(const CZorArrayTempl<T>& a) {
    return std::vector<T>(a.entry(), a.entry() + a.len());
}
std::vector<int> items(const CZorArrayTempl<Owned>& a) {
    std::vector<int> out;
    for (std::uint32_t k = 0; k < a.len(); ++k) out.push_back(*a.entry()[k].v);
    return out;
}
template <class T>
CZorArrayTempl<T> make(const std::vector<T>& v) {
    CZorArrayTempl<T> a;
    for (const T& x : v) a.append(x);
    return a;
}
template <class T>
CZorArrayTempl<T> make(std::initializer_list<T> list) {
    return make(std::vector<T>(list));
}
using V = std::vector<int>;

// The adjacent-exchange sort whose result the arrays promise, written plainly.
template <class T, class Behind>
std::vector<T> bubbleSorted(std::vector<T> v, Behind behind) {
    for (std::size_t p = 0; p + 1 < v.size(); ++p) {
        for (std::size_t j = 1; j < v.size() - p; ++j) {
            if (behind(v[j - 1], v[j])) std::swap(v[j - 1], v[j]);
        }
    }
    return v;
}

TEST(ZorArrayTest, GrowthDoublesFromEightAndKeepsTheTailAlive) {
    Owned::live = 0;
    {
        Probe<Owned> a;
        for (int k = 0; k < 8; ++k) a.append(k);
        EXPECT_EQ(a.capacity(), 8u);
        a.append(8);
        EXPECT_TRUE(a.capacity() == 16 && Owned::live == 16);  // every slot holds an object
        a.setLogicalLength(3);
        EXPECT_TRUE(a.capacity() == 16 && *a.entry()[3].v == 3);
        a.setLogicalLength(33);
        EXPECT_EQ(a.capacity(), 64u);
        // Growth carries only the elements in use; the new block's slots are fresh.
        EXPECT_EQ(items(a.left(5)), (V{0, 1, 2, 0, 0}));
        a.removeAll();
        EXPECT_TRUE(a.entry() == nullptr && Owned::live == 0);
        a[0] = 5;
        EXPECT_EQ(a.capacity(), 8u);
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, IndexingRules) {
    CZorArrayTempl<int> a = make({10, 20, 30});
    const CZorArrayTempl<int>& c = a;
    EXPECT_TRUE(a[-1] == 30 && a[-2] == 20 && c[-3] == 10 && c[3] == 0 && a.len() == 3);
    a[5] = 9;
    EXPECT_TRUE(a.len() == 6 && a[5] == 9 && a[0] == 10);
    EXPECT_EQ(make({7})[-1], 7);

    const CZorArrayTempl<double> empty;
    EXPECT_TRUE(empty[5] == 0.0 && empty[-1] == 0.0 && empty.entry() == nullptr);

    // A negative index on an empty array: one writable default per instantiation, kept.
    CZorArrayTempl<int> e1, e2;
    int& d = e1[-1];
    d = 42;
    EXPECT_TRUE(&e2[-3] == &d && e2[-3] == 42 && e1.isEmpty() && e2.isEmpty());
    EXPECT_NE(&std::as_const(e2)[0], &d);
    d = 0;
}

TEST(ZorArrayTest, InsertionTakesElementsOfTheSameArrayAndExtends) {
    CZorArrayTempl<Owned> full;
    for (int k = 1; k <= 8; ++k) full.append(k);
    full.append(full[0]);  // the block is full and moves away under the argument
    EXPECT_EQ(items(full), (V{1, 2, 3, 4, 5, 6, 7, 8, 1}));
    CZorArrayTempl<Owned> room;
    room.append(1).append(2).append(3);
    room.insertAt(0, room[1]);  // the shift would move another element under the argument
    EXPECT_EQ(items(room), (V{2, 1, 2, 3}));

    CZorArrayTempl<Owned> a;
    a.append(1).append(2).insertAt(7, 9);
    EXPECT_EQ(items(a), (V{1, 2, 0, 0, 0, 0, 0, 9}));
    CZorArrayTempl<int> b = make({1, 2});
    b.insertAt(0xFFFFFFFFu, 3);  // a length that doesn't fit: nothing
    b.appendUniq(2).appendUniq(3).consUniq(3).consUniq(0);
    EXPECT_EQ(items(b), (V{0, 1, 2, 3}));
}

TEST(ZorArrayTest, RemovedElementLivesOnBehindTheEnd) {
    Owned::live = 0;
    {
        CZorArrayTempl<Owned> a;
        for (int k = 0; k < 5; ++k) a.append(k);
        a.removeAt(a.len()).removeAt(1).remove(3).remove(7);
        EXPECT_EQ(items(a), (V{0, 2, 4}));
        EXPECT_TRUE(*a.entry()[3].v == 3 && *a.entry()[4].v == 1 && Owned::live == 8);
        EXPECT_EQ(items(std::as_const(a).removeAt(0)), (V{2, 4}));
        EXPECT_EQ(items(std::as_const(a).append(6)), (V{0, 2, 4, 6}));
        EXPECT_EQ(items(make({1, 2, 1, 2}).remove(2)), (V{1, 1, 2}));
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, SlicesSetsAndOrder) {
    const CZorArrayTempl<int> a = make({1, 2, 3, 4, 5});
    EXPECT_EQ(items(a.right(2)), (V{4, 5}));
    EXPECT_TRUE(a.right(9).isEmpty());
    EXPECT_EQ(items(a.left(9)), items(a));
    EXPECT_EQ(items(a.mid(1, 3)), (V{2, 3, 4}));
    EXPECT_TRUE(a.mid(2, 0).isEmpty() && a.mid(5, 1).isEmpty());
    EXPECT_EQ(items(a.reverse()), (V{5, 4, 3, 2, 1}));

    CZorArrayTempl<int> d = make({1, 2, 2});
    d |= d;
    d &= d;
    d += d;
    EXPECT_EQ(items(d), (V{1, 2, 2, 1, 2, 2}));
    EXPECT_EQ(items(make({3, 3, 1}) | make({4, 1, 4, 5})), (V{3, 3, 1, 4, 5}));
    EXPECT_EQ(items(make({3, 1, 3, 2}) & make({2, 3, 9})), (V{3, 3, 2}));
    // The second pass of the intersection adds what only one side's equality sees.
    EXPECT_EQ((make<OneSided>({{0.0}}) & make<OneSided>({{0.5}}))[0].v, 0.5);

    EXPECT_TRUE(make({1, 2}) < make({1, 2, 0}) && make({1, 2, 0}) < make({1, 3}));
    EXPECT_FALSE(make({1, 3}) < make({1, 2, 0}) || a < a);
    EXPECT_TRUE(make({1, 2}) != make({1, 2, 0}));
    const CZorArrayTempl<double> n = make({1.0, std::nan("")});
    EXPECT_TRUE(n == n);
    EXPECT_FALSE(n == CZorArrayTempl<double>(n));
    std::uint32_t i = 77;
    EXPECT_FALSE(n.indexOf(1.0 + 1e-9, i) || n.indexOf(std::nan(""), i));
    EXPECT_TRUE(i == 77 && n.indexOf(1.0, i) && i == 0);
}

TEST(ZorArrayTest, AssignmentIsDeepAndKeepsTheBiggerBlock) {
    Owned::live = 0;
    {
        Probe<Owned> target;
        for (int k = 0; k < 20; ++k) target.append(k);
        CZorArrayTempl<Owned> small;
        small.append(100).append(101);
        static_cast<CZorArrayTempl<Owned>&>(target) = small;
        EXPECT_EQ(items(target), (V{100, 101}));
        EXPECT_EQ(target.capacity(), 32u);
        EXPECT_EQ(*target.entry()[2].v, 2);
        small[0] = 7;
        EXPECT_EQ(*target[0].v, 100);
        CZorArrayTempl<Owned> moved(std::move(small));
        EXPECT_TRUE(small.isEmpty());
        small = std::move(moved);
        EXPECT_EQ(items(small), (V{7, 101}));
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, BytewiseRelocationKeepsHeapOwnersIntact) {
    Owned::live = 0;
    {
        std::mt19937 rng(7);
        CZorArrayTempl<Owned> a;
        V model;
        for (int step = 0; step < 2000; ++step) {
            const int v = static_cast<int>(rng() % 50);
            const std::uint32_t i = rng() % (model.size() + 1), j = rng() % (model.size() + 1);
            switch (rng() % 4) {
                case 0:
                    a.insertAt(i, v);
                    model.insert(model.begin() + i, v);
                    break;
                case 1:
                    a.removeAt(i);
                    if (i < model.size()) model.erase(model.begin() + i);
                    break;
                case 2:
                    a.revert();
                    std::reverse(model.begin(), model.end());
                    break;
                default:
                    a.swap(i, j);
                    if (i < model.size() && j < model.size()) std::swap(model[i], model[j]);
            }
        }
        std::stable_sort(model.begin(), model.end());
        EXPECT_EQ(items(a.sort()), model);
    }
    EXPECT_EQ(Owned::live, 0);
}

int byLastDigit(const void* x, const void* y) {
    return *static_cast<const int*>(x) % 10 - *static_cast<const int*>(y) % 10;
}
// A consistent order of numbers that puts NaNs last.
int nanLast(const void* x, const void* y) {
    const double a = *static_cast<const double*>(x), b = *static_cast<const double*>(y);
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) - std::isnan(b);
    return (a > b) - (a < b);
}
// Bit patterns, so that NaNs and the sign of zero compare as well.
std::vector<std::uint64_t> bits(const std::vector<double>& v) {
    std::vector<std::uint64_t> out;
    for (double x : v) out.push_back(std::bit_cast<std::uint64_t>(x));
    return out;
}
std::vector<double> tags(const std::vector<CZorPoint3d>& v) {
    std::vector<double> out;
    for (const CZorPoint3d& p : v) out.push_back(p.z);
    return out;
}

TEST(ZorArrayTest, SortEqualsAdjacentExchangeOnRandomInput) {
    std::mt19937 rng(11);
    const double pool[] = {std::nan(""), -0.0, 0.0, 1.5, -2.0, 3.0};
    const auto greater = [](auto& x, auto& y) { return x > y; };
    const auto nanLastBehind = [](auto& x, auto& y) { return nanLast(&x, &y) > 0; };
    for (int round = 0; round < 300; ++round) {
        std::vector<Tagged> t;
        std::vector<double> d;
        V c;
        std::vector<CZorPoint3d> q;  // NaN coordinates make the order partial
        for (int k = 0, n = static_cast<int>(rng() % 40); k < n; ++k) {
            t.push_back({static_cast<int>(rng() % 6), k});
            d.push_back(pool[rng() % 6]);
            c.push_back(static_cast<int>(rng() % 60));
            q.emplace_back(pool[rng() % 6], pool[rng() % 6], k);  // z tags the point
        }
        ASSERT_EQ(items(make(t).sort()), bubbleSorted(t, greater));
        ASSERT_EQ(items(make(c).sort(byLastDigit)),
                  bubbleSorted(c, [](auto& x, auto& y) { return byLastDigit(&x, &y) > 0; }));
        ASSERT_EQ(tags(items(make(q).sort())), tags(bubbleSorted(q, greater)));
        // NaNs stay in their slots, unless the comparator moves them.
        ASSERT_EQ(bits(items(make(d).sort())), bits(bubbleSorted(d, greater)));
        ASSERT_EQ(bits(items(make(d).sort(nanLast))), bits(bubbleSorted(d, nanLastBehind)));
    }
    CZorArrayTempl<int> c = make({3, 1, 2});
    c.sort([](const void*, const void*) { return 0; }).sort(nullptr);
    EXPECT_EQ(items(c), (V{3, 1, 2}));
}

TEST(ZorArrayTest, PointsAreEqualWithinTheToleranceVectorsHaveNoOrder) {
    CZorArrayTempl<CZorPoint3d> p;
    p.appendUniq(CZorPoint3d(1, 0, 0)).appendUniq(CZorPoint3d(1 + 1e-6, 0, 0));
    EXPECT_TRUE(p.len() == 1 && p[0].x == 1.0);
    p.append(CZorPoint3d(1 - 1e-6, 0, 0)).sort();  // equal, yet the order is exact
    EXPECT_EQ(p[0].x, 1 - 1e-6);
    CZorArrayTempl<CZorVector3d> v;
    v.append(CZorVector3d(3, 0, 0)).append(CZorVector3d(1, 0, 0)).sort();
    EXPECT_EQ(v[0].x, 3.0);
}

// A storage-less root, to see what the base tells its derived class.
struct Lengths : CZorArray {
    int asked = -1;
    int capacity() const { return physicalLength; }
    int setLength(int n) override { return asked = CZorArray::setLength(n); }
};

TEST(ZorArrayRootTest, CapacityFollowsTheDoublingRule) {
    Lengths a;
    EXPECT_EQ(a.setLogicalLength(3), 3);
    EXPECT_EQ(a.asked, 8);
    a.asked = -1;
    EXPECT_EQ(a.setLogicalLength(8), 8);
    EXPECT_EQ(a.asked, -1);  // the storage suffices: the derived class isn't asked
    a.setLogicalLength(33);
    EXPECT_EQ(a.asked, 64);
    EXPECT_EQ(a.setLogicalLength(-4), 0);
    a.setLogicalLength(5);
    a.clear();
    EXPECT_TRUE(a.isEmpty());
    EXPECT_EQ(a.capacity(), 64);
    EXPECT_TRUE(a.setLength(-2) == 0 && a.len() == 0);
    a.setLogicalLength(std::numeric_limits<int>::max());  // doubling must not overflow
    EXPECT_EQ(a.capacity(), std::numeric_limits<int>::max());
}

}  // namespace
