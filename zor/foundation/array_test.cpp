#include "zor/foundation/array.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

namespace {

// Exposes the capacity, which the interface keeps to itself.
template <class T>
class Probe : public CZorArrayTempl<T> {
  public:
    using CZorArrayTempl<T>::CZorArrayTempl;
    std::uint32_t capacity() const { return this->physicalLength; }
};

// An element that owns heap memory and counts its live objects, so that bytewise relocation
// that duplicated or dropped an object shows up as a wrong count, a leak or a double free.
class Owned : public CZorObj {
  public:
    static inline int live = 0;

    Owned() : value_(new int(0)) { ++live; }
    explicit Owned(int v) : value_(new int(v)) { ++live; }
    Owned(const Owned& o) : CZorObj(o), value_(new int(*o.value_)) { ++live; }
    Owned& operator=(const Owned& o) {
        *value_ = *o.value_;
        return *this;
    }
    ~Owned() override {
        delete value_;
        --live;
    }
    int value() const { return *value_; }
    bool operator==(const Owned& o) const { return *value_ == *o.value_; }
    bool operator<(const Owned& o) const { return *value_ < *o.value_; }
    bool operator>(const Owned& o) const { return *value_ > *o.value_; }

  private:
    int* value_;
};

// Equal within 1.0: an equality that isn't transitive, like the point tolerance.
struct Near {
    double v = 0.0;
    bool operator==(const Near& o) const { return std::fabs(v - o.v) <= 1.0; }
};

// `a == b` when b lies in [a, a + 1]: asked from the other side, the answer differs.
struct OneSided {
    double v = 0.0;
    bool operator==(const OneSided& o) const { return o.v >= v && o.v <= v + 1.0; }
};

// A key with a tag that the order ignores, to see stability.
struct Tagged {
    int key = 0;
    int tag = 0;
    bool operator==(const Tagged& o) const { return key == o.key && tag == o.tag; }
    bool operator>(const Tagged& o) const { return key > o.key; }
};

// No order at all.
struct Unordered {
    int v = 0;
    bool operator==(const Unordered& o) const { return v == o.v; }
};

template <class T>
std::vector<T> items(const CZorArrayTempl<T>& a) {
    return std::vector<T>(a.entry(), a.entry() + a.len());
}

std::vector<int> values(const CZorArrayTempl<Owned>& a) {
    std::vector<int> out;
    for (std::uint32_t k = 0; k < a.len(); ++k) out.push_back(a.entry()[k].value());
    return out;
}

CZorArrayTempl<int> ints(std::initializer_list<int> list) {
    CZorArrayTempl<int> a;
    for (int v : list) a.append(v);
    return a;
}

// The adjacent-exchange order the arrays promise, written plainly.
template <class T, class Behind>
void bubbleSort(std::vector<T>& v, Behind behind) {
    const std::size_t n = v.size();
    for (std::size_t p = 0; p + 1 < n; ++p) {
        bool changed = false;
        for (std::size_t j = 1; j < n - p; ++j) {
            if (behind(v[j - 1], v[j])) {
                std::swap(v[j - 1], v[j]);
                changed = true;
            }
        }
        if (!changed) break;
    }
}

// A storage-less root, to see the lengths the base hands to its derived classes.
class Lengths : public CZorArray {
  public:
    int lastAnswer = -1;
    int capacity() const { return physicalLength; }

  protected:
    int setLength(int n) override { return lastAnswer = CZorArray::setLength(n); }
};

TEST(ZorArrayTest, CapacityDoublesFromEightAndNeverShrinks) {
    Probe<int> a;
    EXPECT_EQ(a.capacity(), 0u);
    EXPECT_EQ(a.entry(), nullptr);
    for (int k = 0; k < 8; ++k) a.append(k);
    EXPECT_EQ(a.capacity(), 8u);
    a.append(8);
    EXPECT_EQ(a.capacity(), 16u);
    a.setLogicalLength(3);
    EXPECT_EQ(a.capacity(), 16u);
    EXPECT_EQ(a.len(), 3u);
    a.setLogicalLength(33);
    EXPECT_EQ(a.capacity(), 64u);
    a.removeAll();
    EXPECT_EQ(a.capacity(), 0u);
    EXPECT_EQ(a.entry(), nullptr);
    a[0] = 5;
    EXPECT_EQ(a.capacity(), 8u);
}

TEST(ZorArrayTest, CutLengthKeepsTheTailAlive) {
    Owned::live = 0;
    {
        Probe<Owned> a;
        for (int k = 0; k < 5; ++k) a.append(Owned(k));
        EXPECT_EQ(Owned::live, 8);  // every slot of the block is an object
        a.setLogicalLength(3);
        EXPECT_EQ(Owned::live, 8);
        EXPECT_EQ(a.entry()[3].value(), 3);
        a.setLogicalLength(5);
        EXPECT_EQ(values(a), (std::vector<int>{0, 1, 2, 3, 4}));
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, NegativeIndicesCountFromTheEnd) {
    CZorArrayTempl<int> a = ints({10, 20, 30});
    const CZorArrayTempl<int>& c = a;
    EXPECT_EQ(a[-1], 30);
    EXPECT_EQ(a[-2], 20);
    EXPECT_EQ(c[-1], 30);
    EXPECT_EQ(c[-3], 10);
    // Below -len the index is outside the rule, but it still lands inside the array.
    const int far = a[-7];
    EXPECT_TRUE(far == 10 || far == 20 || far == 30);
    EXPECT_EQ(a.len(), 3u);

    CZorArrayTempl<int> one = ints({7});
    EXPECT_EQ(one[-1], 7);
    EXPECT_EQ(one[-5], 7);
    EXPECT_EQ(static_cast<const CZorArrayTempl<int>&>(one)[-1], 7);
}

TEST(ZorArrayTest, ConstReadsPastTheEndGiveTheDefaultAndChangeNothing) {
    const CZorArrayTempl<double> empty;
    EXPECT_EQ(empty[5], 0.0);
    EXPECT_EQ(empty[-1], 0.0);
    EXPECT_EQ(empty[0], 0.0);
    EXPECT_EQ(empty.len(), 0u);
    EXPECT_EQ(empty.entry(), nullptr);

    CZorArrayTempl<Owned> a;
    a.append(Owned(4));
    const CZorArrayTempl<Owned>& c = a;
    EXPECT_EQ(c[1].value(), 0);
    EXPECT_EQ(c[-1].value(), 4);
    EXPECT_EQ(a.len(), 1u);
}

TEST(ZorArrayTest, WritingPastTheEndExtends) {
    CZorArrayTempl<int> a = ints({1, 2});
    a[5] = 9;
    EXPECT_EQ(a.len(), 6u);
    EXPECT_EQ(a[5], 9);
    EXPECT_EQ(a[0], 1);

    CZorArrayTempl<Owned> o;
    o[2] = Owned(3);
    EXPECT_EQ(values(o), (std::vector<int>{0, 0, 3}));
}

TEST(ZorArrayTest, NegativeIndexOnEmptyGivesTheWritableDummy) {
    CZorArrayTempl<int> a;
    int& d = a[-1];
    EXPECT_EQ(a.len(), 0u);
    d = 42;
    CZorArrayTempl<int> b;
    EXPECT_EQ(b[-3], 42);  // shared by the instantiation, and what was written stays
    EXPECT_EQ(&b[-3], &d);
    d = 0;
    // The const default is another object.
    const CZorArrayTempl<int>& cb = b;
    EXPECT_NE(&cb[0], &d);
}

TEST(ZorArrayTest, AppendAndInsertTakeElementsOfTheSameArray) {
    CZorArrayTempl<Owned> full;
    for (int k = 0; k < 8; ++k) full.append(Owned(k + 1));
    full.append(full[0]);  // the block is full, so it moves under the argument
    EXPECT_EQ(values(full), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 1}));

    CZorArrayTempl<Owned> room;
    for (int k = 0; k < 3; ++k) room.append(Owned(k + 1));
    room.insertAt(0, room[1]);  // room to spare: the shift moves another element under it
    EXPECT_EQ(values(room), (std::vector<int>{2, 1, 2, 3}));
    room.insertAt(2, room[-1]);
    EXPECT_EQ(values(room), (std::vector<int>{2, 1, 3, 2, 3}));

    CZorArrayTempl<int> grow = ints({1, 2, 3, 4, 5, 6, 7, 8});
    grow.insertAt(3, grow[7]);
    EXPECT_EQ(items(grow), (std::vector<int>{1, 2, 3, 8, 4, 5, 6, 7, 8}));
}

TEST(ZorArrayTest, InsertPastTheEndExtends) {
    CZorArrayTempl<Owned> a;
    a.append(Owned(1)).append(Owned(2));
    a.insertAt(7, Owned(9));
    EXPECT_EQ(a.len(), 8u);
    EXPECT_EQ(values(a), (std::vector<int>{1, 2, 0, 0, 0, 0, 0, 9}));
    a.insertAt(8, Owned(10));
    EXPECT_EQ(a[-1].value(), 10);

    CZorArrayTempl<int> b = ints({1, 2});
    b.insertAt(0xFFFFFFFFu, 3);  // a length that doesn't fit: nothing happens
    EXPECT_EQ(items(b), (std::vector<int>{1, 2}));
}

TEST(ZorArrayTest, RemovedElementLivesOnBehindTheEnd) {
    Owned::live = 0;
    {
        CZorArrayTempl<Owned> a;
        for (int k = 0; k < 5; ++k) a.append(Owned(k));
        a.removeAt(a.len());
        a.removeAt(99);
        EXPECT_EQ(a.len(), 5u);
        a.removeAt(1);
        EXPECT_EQ(values(a), (std::vector<int>{0, 2, 3, 4}));
        EXPECT_EQ(a.entry()[4].value(), 1);
        EXPECT_EQ(Owned::live, 8);
        a.remove(Owned(3));
        EXPECT_EQ(values(a), (std::vector<int>{0, 2, 4}));
        a.remove(Owned(7));
        EXPECT_EQ(a.len(), 3u);

        const CZorArrayTempl<Owned>& c = a;
        EXPECT_EQ(values(c.removeAt(0)), (std::vector<int>{2, 4}));
        EXPECT_EQ(values(c.removeAt(3)), (std::vector<int>{0, 2, 4}));
        EXPECT_EQ(values(c.append(Owned(6))), (std::vector<int>{0, 2, 4, 6}));
        EXPECT_EQ(a.len(), 3u);
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, RemoveOnlyTheFirstMatch) {
    CZorArrayTempl<int> a = ints({1, 2, 1, 2});
    a.remove(2);
    EXPECT_EQ(items(a), (std::vector<int>{1, 1, 2}));
}

TEST(ZorArrayTest, SlicesAndReversal) {
    CZorArrayTempl<int> a = ints({1, 2, 3, 4, 5});
    EXPECT_EQ(items(a.right(2)), (std::vector<int>{4, 5}));
    EXPECT_TRUE(a.right(9).isEmpty());
    EXPECT_EQ(items(a.right(5)), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(items(a.left(9)), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(items(a.left(2)), (std::vector<int>{1, 2}));
    EXPECT_EQ(items(a.mid(1, 3)), (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(items(a.mid(3, 0xFFFFFFFFu)), (std::vector<int>{4, 5}));
    EXPECT_TRUE(a.mid(2, 0).isEmpty());
    EXPECT_TRUE(a.mid(5, 1).isEmpty());

    EXPECT_EQ(items(a.reverse()), (std::vector<int>{5, 4, 3, 2, 1}));
    EXPECT_EQ(items(a), (std::vector<int>{1, 2, 3, 4, 5}));
    a.revert();
    EXPECT_EQ(items(a), (std::vector<int>{5, 4, 3, 2, 1}));
    a.swap(0, 4);
    a.swap(1, 1);
    a.swap(2, 5);  // out of range: nothing
    EXPECT_EQ(items(a), (std::vector<int>{1, 4, 3, 2, 5}));
}

TEST(ZorArrayTest, ConcatenationAndSetOperations) {
    CZorArrayTempl<int> a = ints({1, 2, 2, 3});
    a |= a;
    a &= a;
    EXPECT_EQ(items(a), (std::vector<int>{1, 2, 2, 3}));
    a += a;
    EXPECT_EQ(items(a), (std::vector<int>{1, 2, 2, 3, 1, 2, 2, 3}));
    EXPECT_EQ(items(ints({1}) + ints({2, 3})), (std::vector<int>{1, 2, 3}));

    // Union: what is here stays, duplicates included; new ones come once, in their order.
    EXPECT_EQ(items(ints({3, 3, 1}) | ints({4, 1, 4, 5})), (std::vector<int>{3, 3, 1, 4, 5}));
    // Intersection: this array's order and duplicates.
    EXPECT_EQ(items(ints({3, 1, 3, 2}) & ints({2, 3, 9})), (std::vector<int>{3, 3, 2}));
    EXPECT_TRUE((ints({1, 2}) & ints({})).isEmpty());

    // Within a tolerance both elements of x meet the 1.0 of y.
    CZorArrayTempl<Near> x, y;
    x.append({0.0}).append({2.0});
    y.append({1.0}).append({0.5});
    x &= y;
    ASSERT_EQ(x.len(), 2u);
    EXPECT_EQ(x[0].v, 0.0);
    EXPECT_EQ(x[1].v, 2.0);

    // The second pass takes the elements of `a` that this array contains but the result
    // doesn't, which happens where the equality depends on the side it is asked from.
    CZorArrayTempl<OneSided> p, q;
    p.append({0.0});
    q.append({0.5});
    p &= q;
    ASSERT_EQ(p.len(), 1u);
    EXPECT_EQ(p[0].v, 0.5);
}

TEST(ZorArrayTest, UniqueInsertion) {
    CZorArrayTempl<int> a = ints({2, 3});
    a.appendUniq(3).appendUniq(4).consUniq(4).consUniq(1);
    EXPECT_EQ(items(a), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_TRUE(a.contains(4));
    EXPECT_FALSE(a.contains(5));
}

TEST(ZorArrayTest, SearchIsExactForNumbers) {
    CZorArrayTempl<double> a;
    a.append(0.5).append(1.0).append(std::nan("")).append(1.0);
    EXPECT_EQ(a.indexOf(1.0), 1);
    EXPECT_EQ(a.indexOf(1.0 + 1e-9), -1);
    EXPECT_EQ(a.indexOf(std::nan("")), -1);
    std::uint32_t i = 77;
    EXPECT_FALSE(a.indexOf(2.0, i));
    EXPECT_EQ(i, 77u);
    EXPECT_TRUE(a.indexOf(1.0, i));
    EXPECT_EQ(i, 1u);
}

TEST(ZorArrayTest, EqualityAndOrder) {
    EXPECT_TRUE(ints({1, 2}) < ints({1, 2, 0}));
    EXPECT_FALSE(ints({1, 2, 0}) < ints({1, 2}));
    EXPECT_TRUE(ints({1, 2, 0}) < ints({1, 3}));
    EXPECT_FALSE(ints({1, 3}) < ints({1, 2, 0}));
    CZorArrayTempl<int> a = ints({4});
    EXPECT_FALSE(a < a);
    EXPECT_TRUE(a == a);
    EXPECT_TRUE(ints({}) == ints({}));
    EXPECT_TRUE(ints({1, 2}) != ints({1, 2, 0}));
    EXPECT_TRUE(ints({1, 2}) != ints({1, 3}));

    CZorArrayTempl<double> n;
    n.append(std::nan(""));
    EXPECT_TRUE(n == n);  // the same object
    EXPECT_FALSE(n == CZorArrayTempl<double>(n));
}

TEST(ZorArrayTest, CopiesAreDeepAndAssignmentKeepsTheBiggerBlock) {
    Owned::live = 0;
    {
        Probe<Owned> big;
        for (int k = 0; k < 20; ++k) big.append(Owned(k));
        CZorArrayTempl<Owned> small;
        small.append(Owned(100)).append(Owned(101));
        Probe<Owned> target;
        target = big;
        static_cast<CZorArrayTempl<Owned>&>(target) = small;
        EXPECT_EQ(values(target), (std::vector<int>{100, 101}));
        EXPECT_EQ(target.capacity(), 32u);
        EXPECT_EQ(target.entry()[2].value(), 2);  // the old tail is still there
        small[0] = Owned(7);
        EXPECT_EQ(target[0].value(), 100);

        target = target;
        EXPECT_EQ(values(target), (std::vector<int>{100, 101}));

        CZorArrayTempl<Owned> moved(std::move(small));
        EXPECT_EQ(values(moved), (std::vector<int>{7, 101}));
        EXPECT_TRUE(small.isEmpty());
        small = std::move(moved);
        EXPECT_EQ(values(small), (std::vector<int>{7, 101}));
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, BytewiseRelocationKeepsHeapOwnersIntact) {
    Owned::live = 0;
    {
        std::mt19937 rng(7);
        CZorArrayTempl<Owned> a;
        std::vector<int> model;
        for (int step = 0; step < 2000; ++step) {
            const int v = static_cast<int>(rng() % 50);
            switch (rng() % 6) {
                case 0:
                case 1:
                    a.append(Owned(v));
                    model.push_back(v);
                    break;
                case 2: {
                    const std::uint32_t i = rng() % (model.size() + 1);
                    a.insertAt(i, Owned(v));
                    model.insert(model.begin() + i, v);
                    break;
                }
                case 3:
                    if (!model.empty()) {
                        const std::uint32_t i = rng() % model.size();
                        a.removeAt(i);
                        model.erase(model.begin() + i);
                    }
                    break;
                case 4:
                    a.revert();
                    std::reverse(model.begin(), model.end());
                    break;
                default:
                    if (model.size() > 1) {
                        const std::uint32_t i = rng() % model.size();
                        const std::uint32_t j = rng() % model.size();
                        a.swap(i, j);
                        std::swap(model[i], model[j]);
                    }
                    break;
            }
        }
        a.sort();
        std::stable_sort(model.begin(), model.end());
        EXPECT_EQ(values(a), model);
    }
    EXPECT_EQ(Owned::live, 0);
}

TEST(ZorArrayTest, SortMatchesAdjacentExchangeOnRandomInput) {
    std::mt19937 rng(11);
    for (int round = 0; round < 200; ++round) {
        const int n = static_cast<int>(rng() % 40);
        CZorArrayTempl<Tagged> a;
        std::vector<Tagged> ref;
        for (int k = 0; k < n; ++k) {
            const Tagged t{static_cast<int>(rng() % 6), k};
            a.append(t);
            ref.push_back(t);
        }
        a.sort();
        bubbleSort(ref, [](const Tagged& x, const Tagged& y) { return x > y; });
        ASSERT_EQ(items(a), ref);
    }
}

TEST(ZorArrayTest, SortOfNumbersWithNaNAndSignedZeros) {
    std::mt19937 rng(5);
    const double pool[] = {std::nan(""), -0.0, 0.0, 1.5, -2.0, 3.0, 1.5, -2.0};
    for (int round = 0; round < 300; ++round) {
        const int n = static_cast<int>(rng() % 30);
        CZorArrayTempl<double> a;
        std::vector<double> ref;
        for (int k = 0; k < n; ++k) {
            const double v = pool[rng() % 8];
            a.append(v);
            ref.push_back(v);
        }
        a.sort();
        bubbleSort(ref, [](double x, double y) { return x > y; });
        ASSERT_EQ(a.len(), ref.size());
        for (int k = 0; k < n; ++k) {
            // Bitwise: NaNs in their slots, and -0.0 and 0.0 in their order.
            ASSERT_EQ(std::signbit(a[k]), std::signbit(ref[k]));
            ASSERT_TRUE(a[k] == ref[k] || (std::isnan(a[k]) && std::isnan(ref[k])));
        }
    }
}

int compareDescending(const void* x, const void* y) {
    return *static_cast<const int*>(y) - *static_cast<const int*>(x);
}
int compareLastDigit(const void* x, const void* y) {
    return *static_cast<const int*>(x) % 10 - *static_cast<const int*>(y) % 10;
}
int compareNothing(const void*, const void*) {
    return 0;
}

TEST(ZorArrayTest, SortWithComparatorMatchesAdjacentExchange) {
    std::mt19937 rng(3);
    for (auto cmp : {compareDescending, compareLastDigit}) {
        for (int round = 0; round < 100; ++round) {
            CZorArrayTempl<int> a;
            std::vector<int> ref;
            const int n = static_cast<int>(rng() % 40);
            for (int k = 0; k < n; ++k) {
                const int v = static_cast<int>(rng() % 60);
                a.append(v);
                ref.push_back(v);
            }
            a.sort(cmp);
            bubbleSort(ref, [cmp](const int& x, const int& y) { return cmp(&x, &y) > 0; });
            ASSERT_EQ(items(a), ref);
        }
    }
    CZorArrayTempl<int> a = ints({3, 1, 2});
    a.sort(compareNothing);
    a.sort(nullptr);
    EXPECT_EQ(items(a), (std::vector<int>{3, 1, 2}));
    CZorArrayTempl<int> empty;
    EXPECT_TRUE(empty.sort().isEmpty());
}

TEST(ZorArrayTest, SortWithoutAnOrderChangesNothing) {
    CZorArrayTempl<Unordered> a;
    a.append({3}).append({1}).append({2});
    a.sort();
    EXPECT_EQ(a[0].v, 3);
    EXPECT_EQ(a[1].v, 1);
    EXPECT_EQ(a[2].v, 2);
}

TEST(ZorArrayTest, PointerArrays) {
    int x = 0, y = 0;
    CZorArrayTempl<void*> a;
    a.append(&y).append(&x).appendUniq(&x);
    EXPECT_EQ(a.len(), 2u);
    EXPECT_EQ(a.indexOf(&x), 1);
    const CZorArrayTempl<void*>& c = a;
    EXPECT_EQ(c[9], nullptr);
}

TEST(ZorArrayRootTest, CapacityFollowsTheDoublingRule) {
    Lengths a;
    EXPECT_EQ(a.setLogicalLength(3), 3);
    EXPECT_EQ(a.lastAnswer, 8);
    EXPECT_EQ(a.capacity(), 8);
    a.lastAnswer = -1;
    EXPECT_EQ(a.setLogicalLength(8), 8);
    EXPECT_EQ(a.lastAnswer, -1);  // the storage suffices: the derived class isn't asked
    EXPECT_EQ(a.setLogicalLength(33), 33);
    EXPECT_EQ(a.lastAnswer, 64);
    EXPECT_EQ(a.setLogicalLength(-4), 0);
    EXPECT_TRUE(a.isEmpty());
    EXPECT_EQ(a.capacity(), 64);
    a.setLogicalLength(5);
    a.clear();
    EXPECT_EQ(a.len(), 0);
    EXPECT_EQ(a.capacity(), 64);
    EXPECT_EQ(a.setLogicalLength(std::numeric_limits<int>::max()), std::numeric_limits<int>::max());
    EXPECT_EQ(a.capacity(), std::numeric_limits<int>::max());

    Lengths b;
    b.setLogicalLength(2);
    Lengths copy(b);
    EXPECT_EQ(copy.len(), 2);
    EXPECT_EQ(copy.capacity(), 8);
}

}  // namespace
