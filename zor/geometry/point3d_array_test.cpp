#include "zor/geometry/point3d_array.h"

#include <cstring>
#include <random>
#include <vector>

#include "zor/foundation/map.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/test_helpers.h"

namespace {

using namespace ZOR::test;
using PointListTest = PointTolTest;

// The x coordinates, which identify the points in most tests here.
std::vector<double> xs(const CZorPoint3dArray& a) {
    std::vector<double> out;
    for (int i = 0; i < a.len(); ++i) out.push_back(a[i].x);
    return out;
}

// Bit for bit the same coordinates, so that a NaN matches a NaN.
bool samePoints(const CZorPoint3dArray& a, const CZorPoint3dArray& b) {
    for (int i = 0; i < a.len() && a.len() == b.len(); ++i) {
        if (std::memcmp(&a[i].x, &b[i].x, 3 * sizeof(double)) != 0) return false;
    }
    return a.len() == b.len();
}

TEST_F(PointListTest, IndexingAndEditing) {
    CZorPoint3dArray a = makeList({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    const CZorPoint3dArray& c = a;
    EXPECT_EQ(a[-1].x, 3.0);
    EXPECT_EQ(c[-2].x, 2.0);
    EXPECT_EQ(c[7].x, 0.0);
    EXPECT_EQ(a.removeAt(-1), 3);  // unlike operator[], -1 is no index here
    EXPECT_EQ(a.removeAt(3), 3);
    a[5].x = 6;
    EXPECT_EQ(xs(a), (std::vector<double>{1, 2, 3, 0, 0, 6}));
    a.setLogicalLength(1);  // what stays behind the end must not come back
    a[2].y = 1;
    EXPECT_EQ(xs(a), (std::vector<double>{1, 0, 0}));
    a.insertAt(6, P(9, 9, 9));  // beyond the end: origin points fill the gap
    EXPECT_EQ(xs(a), (std::vector<double>{1, 0, 0, 0, 0, 0, 9}));
    EXPECT_EQ(a.removeAt(0), 6);
    CZorPoint3dArray two = makeList({{1, 0, 0}, {2, 0, 0}});
    two += two;
    EXPECT_EQ(xs(two.reverse() + makeList({{7, 0, 0}})), (std::vector<double>{2, 1, 2, 1, 7}));

    // On an empty list a negative index gives a shared, writable default point.
    CZorPoint3dArray empty;
    empty[-1].x = 42.0;
    EXPECT_EQ(CZorPoint3dArray()[-1].x, 42.0);
    EXPECT_TRUE(empty.isEmpty());
    empty[-1].x = 0.0;
}

TEST_F(PointListTest, AppendAndInsertTakePointsOfTheSameList) {
    CZorPoint3dArray a;
    for (int i = 0; i < 8; ++i) a.append(P(i, 0, 0));
    a.append(a[0]);       // the block is full: growth replaces it
    a.insertAt(0, a[3]);  // the shift moves the argument's slot
    EXPECT_EQ(xs(a), (std::vector<double>{3, 0, 1, 2, 3, 4, 5, 6, 7, 0}));
    const CZorPoint3dArray one = makeList({{1, 0, 0}});
    EXPECT_EQ(xs(one.insertAt(0, P(5, 0, 0))), (std::vector<double>{5, 1}));
    EXPECT_EQ(xs(one.append(P(5, 0, 0))), (std::vector<double>{1, 5}));
    EXPECT_EQ(one.len(), 1);
}

TEST_F(PointListTest, EqualityAndMembershipFollowThePointTolerance) {
    CZorPoint3dArray a = makeList({{1, 1, 0}});
    a.appendUniq(P(1 + 1e-6, 1, 0));
    EXPECT_EQ(a.len(), 1);
    a.appendUniq(P(1 + 2e-5, 1, 0));
    EXPECT_EQ(a.len(), 2);
    std::uint32_t i = 77;
    EXPECT_FALSE(a.indexOf(P(5, 5, 5), i));
    EXPECT_EQ(i, 77u);
    EXPECT_TRUE(a.indexOf(P(1 + 2e-5, 1 + 9e-6, 0), i));
    EXPECT_EQ(i, 1u);

    CZorPoint3dArray b(a);
    b[1].x += 0.5e-5;
    EXPECT_TRUE(b == a);
    b[1].x += 1e-5;
    EXPECT_FALSE(b == a);
    const CZorPoint3dArray withNaN = makeList({{kNan, 0, 0}});
    EXPECT_TRUE(withNaN == withNaN);  // the same object
    EXPECT_FALSE(withNaN == CZorPoint3dArray(withNaN));

    const P p(0, 0, 0), q(1, 0, 0);
    EXPECT_TRUE(makeList({p, q, p}).isClosed());
    EXPECT_TRUE(makeList({p, q, P(9e-6, 0, 0)}).isClosed());
    EXPECT_FALSE(makeList({p, p}).isClosed());
}

// The order the list has always produced: a map keyed by (rounded projection, index, 0).
CZorPoint3dArray sortedThroughMap(const CZorPoint3dArray& a, const CZorVector3d& dir) {
    CZorPoint3dArray out(a);
    CZorMapTempl<CZorPoint3d, CZorPoint3d> map;
    for (int i = 0; i < a.len(); ++i) {
        const double key = ZOR::round(ZOR::sprod(a[i], dir), CZorPoint3d::tol);
        map.setAt(P(key, i, 0.0), a[i]);
    }
    for (std::uint32_t i = 0; i < map.len(); ++i) map.getAtIndex(i, out[static_cast<int>(i)]);
    return out;
}

TEST_F(PointListTest, SortEqualsTheMapOrder) {
    // Projections round to a grid of the tolerance: at 0.3 many lists have ties.
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coarse(-4, 4);
    std::uniform_real_distribution<double> fine(-10.0, 10.0);
    // Below 1e-9 projections are not rounded; from 1 up the keys of neighbours merge.
    for (double t : {1e-12, 1e-5, 0.3, 1.0, 2.5}) {
        CZorPoint3dTol scope(t);
        for (int round = 0; round < 40; ++round) {
            CZorPoint3dArray a;
            for (int i = 0; i < 1 + round % 23; ++i) {
                // Half the lists on a coarse grid, so that equal projections are common.
                a.append(round % 2 ? P(fine(rng), fine(rng), fine(rng))
                                   : P(coarse(rng), coarse(rng), coarse(rng)));
            }
            const CZorVector3d dir = ZOR::polar(round % 3 ? fine(rng) : 0.0, 1.0);
            CZorPoint3dArray fast(a);
            EXPECT_TRUE(samePoints(fast.sort(dir), sortedThroughMap(a, dir))) << t << " " << round;
        }
    }
    const CZorPoint3dArray withNaN = makeList({{2, 0, 0}, {kNan, 0, 0}, {1, 0, 0}, {kNan, 1, 0}});
    CZorPoint3dArray fast(withNaN);
    EXPECT_TRUE(samePoints(fast.sort(0.0), sortedThroughMap(withNaN, V(1, 0, 0))));
    // By angle, leftwards: ties keep their order in the list.
    CZorPoint3dArray left = makeList({{1, 0, 0}, {3, 0, 0}, {1, 5, 0}, {2, 0, 0}});
    EXPECT_TRUE(samePoints(left.sort(kPi), makeList({{3, 0, 0}, {2, 0, 0}, {1, 0, 0}, {1, 5, 0}})));
}

TEST_F(PointListTest, TransformationsBoundsNearest) {
    // Mirroring in the line through (0, 1) at 45 degrees; a zero-angle rotation is skipped,
    // so even an invalid centre leaves the list alone.
    CZorPoint3dArray m = makeList({{2, 1, 5}});
    m.mirror(kPi / 4, P(0, 1, 0));
    m.rotate(0.0, P(kNan, 0, 0));
    EXPECT_TRUE(near(m[0], P(0, 3, 5), 1e-12));

    P lo(9, 9, 9), hi(9, 9, 9);
    EXPECT_FALSE(CZorPoint3dArray().extents(lo, hi));
    EXPECT_FALSE(ZOR::g_pl_min(lo, CZorPoint3dArray()));
    EXPECT_EQ(lo.x, 9.0);
    EXPECT_TRUE(makeList({{1, 2, 3}}).extents(lo, hi));
    EXPECT_TRUE(lo == P(1, 2, 3) && hi == P(1, 2, 3));
    const CZorPoint3dArray a = makeList({{1, 5, -1}, {-2, 3, 4}, {0, 7, 0}});
    EXPECT_TRUE(a.extents(lo, hi));
    EXPECT_TRUE(lo == P(-2, 3, -1) && hi == P(1, 7, 4));

    const CZorPoint3dArray ring = makeList({{0, 2, 0}, {1, 0, 0}, {-1, 0, 0}, {0, -2, 0}});
    EXPECT_EQ(ZOR::g_near_p1(CZorPoint3d::kOrigin, ring).x, 1.0);
    EXPECT_EQ(ZOR::g_far_p1(CZorPoint3d::kOrigin, ring).y, 2.0);
    EXPECT_TRUE(ZOR::g_far_p1(P(3, 3, 3), CZorPoint3dArray()) == P(3, 3, 3));
}

TEST_F(PointListTest, SetEqualityIgnoresOrderAndDuplicates) {
    const P a(0, 0, 0), b(1, 0, 0), c(0, 1, 0);
    EXPECT_TRUE(ZOR::g_pl_equal(makeList({a, b, c}), makeList({c, a, b})));
    EXPECT_TRUE(ZOR::g_pl_equal(makeList({a, a, b}), makeList({a, b, b})));
    EXPECT_TRUE(ZOR::g_pl_equal(makeList({a, b}), makeList({P(1, 9e-6, 0), a})));
    EXPECT_FALSE(ZOR::g_pl_equal(makeList({a, b}), makeList({a, c})));
    EXPECT_FALSE(ZOR::g_pl_equal(makeList({a, a}), makeList({a, b})));
    EXPECT_FALSE(ZOR::g_pl_equal(makeList({a, b}), makeList({a, b, b})));
    const CZorPoint3dArray withNaN = makeList({{kNan, 0, 0}});
    EXPECT_TRUE(ZOR::g_pl_equal(withNaN, withNaN));
    EXPECT_FALSE(ZOR::g_pl_equal(withNaN, CZorPoint3dArray(withNaN)));
}

TEST_F(PointListTest, SetEqualityOfLongListsEqualsPlainScans) {
    const auto plain = [](const CZorPoint3dArray& a, const CZorPoint3dArray& b) {
        if (a.len() != b.len()) return false;
        for (int i = 0; i < a.len(); ++i) {
            if (b.indexOf(a[i]) < 0 || a.indexOf(b[i]) < 0) return false;
        }
        return true;
    };
    std::mt19937 rng(11);
    int agreed[2] = {0, 0};
    for (double t : {1e-5, 0.25}) {
        CZorPoint3dTol scope(t);
        std::uniform_int_distribution<int> lattice(-3, 3);  // crowded cells, many candidates
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        for (int round = 0; round < 60; ++round) {
            const double jitter = t * (0.2 + 0.1 * (round % 8));
            CZorPoint3dArray a;
            CZorPoint3dArray b;
            for (int i = 0; i < 40; ++i) {
                a.append(P(lattice(rng) * t, lattice(rng) * t, lattice(rng) * t * 0.5));
            }
            for (int i = 0; i < 40; ++i) {
                b.append(a[(i * 7) % 40] + V(unit(rng), unit(rng), unit(rng)) * jitter);
            }
            const bool expected = plain(a, b);
            EXPECT_EQ(ZOR::g_pl_equal(a, b), expected) << t << " " << round;
            ++agreed[expected];
        }
    }
    EXPECT_GT(agreed[0], 10);  // both answers were exercised
    EXPECT_GT(agreed[1], 10);
}

TEST_F(PointListTest, MatrixConversion) {
    double m[4][4] = {{7}};
    EXPECT_FALSE(ZOR::plToMtx(m, makeList({{1, 2, 3}, {4, 5, 6}})));
    EXPECT_EQ(m[0][0], 7.0);
    EXPECT_TRUE(ZOR::plToMtx(m, makeList({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}})));
    const double columns[4][4] = {{1, 4, 7, 0}, {2, 5, 8, 0}, {3, 6, 9, 0}, {0, 0, 0, 1}};
    EXPECT_TRUE(CZorMatrix3d(m) == CZorMatrix3d(columns));

    CZorMatrix3d rot;
    rot.setToRotation(0.3, CZorVector3d::kZAxis, P(1, 2, 0));
    CZorPoint3dArray p = makeList({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
    EXPECT_EQ(ZOR::mtxToPl(p, rot).len(), 4);
    EXPECT_EQ(p[3].x, rot.m[0][3]);
    EXPECT_TRUE(ZOR::plToMtx(m, p));
    EXPECT_TRUE(CZorMatrix3d(m) == rot);
}

}  // namespace
