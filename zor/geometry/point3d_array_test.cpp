#include "zor/geometry/point3d_array.h"

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "zor/foundation/map.h"
#include "zor/geometry/matrix3d.h"

namespace {

constexpr double kPi = std::numbers::pi;

CZorPoint3dArray makeList(std::initializer_list<CZorPoint3d> points) {
    CZorPoint3dArray a;
    for (const CZorPoint3d& p : points) a.append(p);
    return a;
}

// Exactly the same coordinates, a NaN matching a NaN.
void expectSamePoints(const CZorPoint3dArray& a, const CZorPoint3dArray& b) {
    const auto same = [](double u, double v) { return u == v || (std::isnan(u) && std::isnan(v)); };
    ASSERT_EQ(a.len(), b.len());
    for (int i = 0; i < a.len(); ++i) {
        EXPECT_TRUE(same(a[i].x, b[i].x) && same(a[i].y, b[i].y) && same(a[i].z, b[i].z)) << i;
    }
}

// Restores the process-wide point tolerance whatever a test does to it.
class PointListTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;
};

TEST_F(PointListTest, IndexingCountsFromTheEndAndExtendsOnWrite) {
    CZorPoint3dArray a = makeList({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    EXPECT_EQ(a[-1].x, 3.0);
    EXPECT_EQ(a[-2].x, 2.0);
    const CZorPoint3dArray& c = a;
    EXPECT_EQ(c[-1].x, 3.0);
    EXPECT_EQ(c[7].x, 0.0);
    EXPECT_EQ(a.len(), 3);

    a[5] = CZorPoint3d(6, 0, 0);
    EXPECT_EQ(a.len(), 6);
    EXPECT_EQ(a[5].x, 6.0);
    EXPECT_EQ(a[4].x, 0.0);

    CZorPoint3dArray one = makeList({{7, 0, 0}});
    EXPECT_EQ(one[-1].x, 7.0);
    EXPECT_EQ(one[-3].x, 7.0);
}

TEST_F(PointListTest, EmptyListNegativeIndexGivesSharedWritableDefault) {
    CZorPoint3dArray a;
    CZorPoint3d& d = a[-1];
    EXPECT_TRUE(a.isEmpty());
    const CZorPoint3d saved = d;
    d.x = 42.0;
    CZorPoint3dArray b;
    EXPECT_EQ(b[-1].x, 42.0);
    EXPECT_TRUE(b.isEmpty());
    d = saved;
    const CZorPoint3dArray& c = a;
    EXPECT_EQ(c[-1].x, 0.0);
}

TEST_F(PointListTest, AppendAndInsertTakePointsOfTheSameList) {
    CZorPoint3dArray a;
    for (int i = 0; i < 8; ++i) a.append(CZorPoint3d(i, 0, 0));
    a.append(a[0]);  // the block is full: growth replaces it
    ASSERT_EQ(a.len(), 9);
    EXPECT_EQ(a[8].x, 0.0);

    a.insertAt(0, a[3]);  // the shift moves the argument's slot
    ASSERT_EQ(a.len(), 10);
    EXPECT_EQ(a[0].x, 3.0);
    EXPECT_EQ(a[1].x, 0.0);
    EXPECT_EQ(a[4].x, 3.0);

    const CZorPoint3dArray c = makeList({{1, 0, 0}});
    const CZorPoint3dArray d = c.append(CZorPoint3d(2, 0, 0));
    EXPECT_EQ(c.len(), 1);
    EXPECT_EQ(d.len(), 2);
    const CZorPoint3dArray e = c.insertAt(0, CZorPoint3d(5, 0, 0));
    EXPECT_EQ(c.len(), 1);
    EXPECT_EQ(e[0].x, 5.0);
    EXPECT_EQ(e[1].x, 1.0);
}

TEST_F(PointListTest, InsertAtEndAndBeyondIt) {
    CZorPoint3dArray a = makeList({{1, 1, 1}, {2, 2, 2}});
    a.insertAt(2, CZorPoint3d(3, 3, 3));
    EXPECT_EQ(a.len(), 3);
    EXPECT_EQ(a[2].x, 3.0);
    // Stale points behind the end must not reappear in the gap.
    a.setLogicalLength(1);
    a.insertAt(4, CZorPoint3d(9, 9, 9));
    ASSERT_EQ(a.len(), 5);
    EXPECT_EQ(a[0].x, 1.0);
    for (int i = 1; i < 4; ++i) EXPECT_TRUE(a[i] == CZorPoint3d::kOrigin) << i;
    EXPECT_EQ(a[4].x, 9.0);
}

TEST_F(PointListTest, RemoveAtIgnoresNegativeAndOutOfRangeIndices) {
    CZorPoint3dArray a = makeList({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    EXPECT_EQ(a.removeAt(-1), 3);
    EXPECT_EQ(a.removeAt(3), 3);
    EXPECT_EQ(a.removeAt(0), 2);
    EXPECT_EQ(a[0].x, 2.0);
    EXPECT_EQ(a[1].x, 3.0);
}

TEST_F(PointListTest, MembershipFollowsThePointTolerance) {
    CZorPoint3dArray a = makeList({{1, 1, 0}});
    a.appendUniq(CZorPoint3d(1 + 1e-6, 1, 0));
    EXPECT_EQ(a.len(), 1);
    a.appendUniq(CZorPoint3d(1 + 2e-5, 1, 0));
    EXPECT_EQ(a.len(), 2);

    std::uint32_t i = 77;
    EXPECT_FALSE(a.indexOf(CZorPoint3d(5, 5, 5), i));
    EXPECT_EQ(i, 77u);
    EXPECT_TRUE(a.indexOf(CZorPoint3d(1 + 2e-5, 1, 0), i));
    EXPECT_EQ(i, 1u);
    EXPECT_EQ(a.indexOf(CZorPoint3d(1, 1 + 9e-6, 0)), 0);

    CZorPoint3dTol wide(1e-3);
    a.appendUniq(CZorPoint3d(1.0005, 1, 0));
    EXPECT_EQ(a.len(), 2);
}

TEST_F(PointListTest, CopiesAreDeepAndEqualityUsesTheTolerance) {
    CZorPoint3dArray a = makeList({{1, 2, 3}, {4, 5, 6}});
    CZorPoint3dArray b(a);
    b[0].x = 10;
    EXPECT_EQ(a[0].x, 1.0);
    b = a;
    EXPECT_TRUE(b == a);
    b = b;
    EXPECT_EQ(b.len(), 2);
    b[1].x += 5e-6;
    EXPECT_TRUE(b == a);
    b[1].x += 1e-5;
    EXPECT_FALSE(b == a);
    EXPECT_FALSE(a == makeList({{1, 2, 3}}));

    CZorPoint3dArray nanList = makeList({{NAN, 0, 0}});
    EXPECT_TRUE(nanList == nanList);
    EXPECT_FALSE(nanList == CZorPoint3dArray(nanList));
}

TEST_F(PointListTest, ConcatenationAndOrder) {
    CZorPoint3dArray a = makeList({{1, 0, 0}, {2, 0, 0}});
    a += a;
    ASSERT_EQ(a.len(), 4);
    EXPECT_EQ(a[2].x, 1.0);
    EXPECT_EQ(a[3].x, 2.0);
    const CZorPoint3dArray b = a + makeList({{9, 0, 0}});
    EXPECT_EQ(a.len(), 4);
    EXPECT_EQ(b[-1].x, 9.0);

    const CZorPoint3dArray r = b.reverse();
    EXPECT_EQ(r[0].x, 9.0);
    EXPECT_EQ(r[-1].x, 1.0);
    EXPECT_EQ(b[0].x, 1.0);
}

TEST_F(PointListTest, ClosedNeedsThreePointsAndMatchingEnds) {
    const CZorPoint3d a(0, 0, 0);
    const CZorPoint3d b(1, 0, 0);
    EXPECT_TRUE(makeList({a, b, a}).isClosed());
    EXPECT_FALSE(makeList({a, a}).isClosed());
    EXPECT_FALSE(makeList({a, b, b}).isClosed());
    EXPECT_TRUE(makeList({a, b, CZorPoint3d(9e-6, 0, 0)}).isClosed());
}

TEST_F(PointListTest, SortAlongADirectionKeepsTiesInListOrder) {
    CZorPoint3dArray a = makeList({{3, 0, 0}, {1, 5, 0}, {1, 0, 0}});
    a.sort(CZorVector3d(1, 0, 0));
    expectSamePoints(a, makeList({{1, 5, 0}, {1, 0, 0}, {3, 0, 0}}));

    // Projections that round to one grid value of the tolerance are ties.
    CZorPoint3dArray g = makeList({{2, 0, 0}, {1 + 2e-6, 1, 0}, {1, 2, 0}, {1 - 2e-6, 3, 0}});
    g.sort(0.0);
    EXPECT_EQ(g[0].y, 1.0);
    EXPECT_EQ(g[1].y, 2.0);
    EXPECT_EQ(g[2].y, 3.0);
    EXPECT_EQ(g[3].x, 2.0);

    CZorPoint3dArray left = makeList({{1, 0, 0}, {3, 0, 0}, {1, 5, 0}, {2, 0, 0}});
    left.sort(kPi);
    expectSamePoints(left, makeList({{3, 0, 0}, {2, 0, 0}, {1, 0, 0}, {1, 5, 0}}));

    CZorPoint3dArray single = makeList({{4, 4, 4}});
    single.sort(1.0);
    EXPECT_EQ(single[0].x, 4.0);
}

// The order the list has always produced: a map keyed by (rounded projection, index, 0).
CZorPoint3dArray sortedThroughMap(const CZorPoint3dArray& a, const CZorVector3d& dir) {
    CZorPoint3dArray out(a);
    if (a.len() < 2) return out;
    CZorMapTempl<CZorPoint3d, CZorPoint3d> map;
    for (int i = 0; i < a.len(); ++i) {
        const double key = ZOR::round(ZOR::sprod(a[i], dir), CZorPoint3d::tol);
        map.setAt(CZorPoint3d(key, i, 0.0), a[i]);
    }
    for (std::uint32_t i = 0; i < map.len(); ++i) map.getAtIndex(i, out[static_cast<int>(i)]);
    return out;
}

TEST_F(PointListTest, SortEqualsTheMapOrderOnRandomInput) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coarse(-4, 4);
    std::uniform_real_distribution<double> fine(-10.0, 10.0);
    std::uniform_real_distribution<double> angle(0.0, 2 * kPi);
    const double tolerances[] = {1e-5, 0.3, 1.0, 2.5};
    for (double t : tolerances) {
        CZorPoint3dTol scope(t);
        for (int round = 0; round < 40; ++round) {
            CZorPoint3dArray a;
            const int n = 1 + round % 23;
            for (int i = 0; i < n; ++i) {
                // Half the lists on a coarse grid, so that equal projections are common.
                if (round % 2 == 0) {
                    a.append(CZorPoint3d(coarse(rng), coarse(rng), coarse(rng)));
                } else {
                    a.append(CZorPoint3d(fine(rng), fine(rng), fine(rng)));
                }
            }
            const CZorVector3d dir =
                round % 3 == 0 ? CZorVector3d(1, 0, 0) : ZOR::polar(angle(rng), 1.0);
            CZorPoint3dArray fast(a);
            fast.sort(dir);
            expectSamePoints(fast, sortedThroughMap(a, dir));
        }
    }
}

TEST_F(PointListTest, SortWithNaNProjectionsEqualsTheMapOrder) {
    const CZorPoint3dArray a =
        makeList({{2, 0, 0}, {NAN, 0, 0}, {1, 0, 0}, {NAN, 1, 0}, {0, 0, 0}});
    CZorPoint3dArray fast(a);
    fast.sort(0.0);
    expectSamePoints(fast, sortedThroughMap(a, CZorVector3d(1, 0, 0)));
    EXPECT_EQ(fast.len(), 5);
}

TEST_F(PointListTest, Transformations) {
    CZorPoint3dArray a = makeList({{2, 0, 0}, {1, 3, 5}});
    a.move(CZorVector3d(2, 0, -1));
    EXPECT_EQ(a[0].x, 4.0);
    EXPECT_EQ(a[1].x, 3.0);
    EXPECT_EQ(a[1].z, 4.0);

    CZorPoint3dArray r = makeList({{2, 0, 0}});
    r.rotate(kPi / 2, CZorPoint3d(1, 0, 0));
    EXPECT_NEAR(r[0].x, 1.0, 1e-12);
    EXPECT_NEAR(r[0].y, 1.0, 1e-12);

    // A zero angle is skipped entirely: a rotation about an invalid centre would spoil the list.
    CZorPoint3dArray z = makeList({{5, 6, 7}});
    z.rotate(0.0, CZorPoint3d(NAN, 0, 0));
    EXPECT_EQ(z[0].x, 5.0);
    EXPECT_EQ(z[0].y, 6.0);

    CZorPoint3dArray m = makeList({{1, 3, 5}});
    m.mirror(0.0, CZorPoint3d(0, 1, 0));
    EXPECT_NEAR(m[0].x, 1.0, 1e-12);
    EXPECT_NEAR(m[0].y, -1.0, 1e-12);
    EXPECT_NEAR(m[0].z, 5.0, 1e-12);
    CZorPoint3dArray d = makeList({{2, 0, 0}});
    d.mirror(kPi / 4, CZorPoint3d::kOrigin);
    EXPECT_NEAR(d[0].x, 0.0, 1e-12);
    EXPECT_NEAR(d[0].y, 2.0, 1e-12);

    CZorMatrix3d t;
    t.setToTranslation(CZorVector3d(0, 0, 1));
    const CZorPoint3dArray moved = a.getTransformedCopy(t);
    EXPECT_EQ(moved[1].z, 5.0);
    EXPECT_EQ(a[1].z, 4.0);
}

TEST_F(PointListTest, ExtentsAndCoordinateBounds) {
    CZorPoint3d lo(9, 9, 9);
    CZorPoint3d hi(9, 9, 9);
    EXPECT_FALSE(CZorPoint3dArray().extents(lo, hi));
    EXPECT_EQ(lo.x, 9.0);
    EXPECT_EQ(hi.x, 9.0);

    EXPECT_TRUE(makeList({{1, 2, 3}}).extents(lo, hi));
    EXPECT_TRUE(lo == CZorPoint3d(1, 2, 3));
    EXPECT_TRUE(hi == CZorPoint3d(1, 2, 3));

    const CZorPoint3dArray a = makeList({{1, 5, -1}, {-2, 3, 4}, {0, 7, 0}});
    EXPECT_TRUE(a.extents(lo, hi));
    EXPECT_TRUE(lo == CZorPoint3d(-2, 3, -1));
    EXPECT_TRUE(hi == CZorPoint3d(1, 7, 4));

    CZorPoint3d out(9, 9, 9);
    EXPECT_FALSE(ZOR::g_pl_min(out, CZorPoint3dArray()));
    EXPECT_FALSE(ZOR::g_pl_max(out, CZorPoint3dArray()));
    EXPECT_EQ(out.x, 9.0);
    EXPECT_TRUE(ZOR::g_pl_max(out, a));
    EXPECT_TRUE(out == CZorPoint3d(1, 7, 4));
}

TEST_F(PointListTest, NearestAndFarthestTakeTheFirstOfEqualDistances) {
    const CZorPoint3d p(0, 0, 0);
    EXPECT_TRUE(ZOR::g_near_p1(p, CZorPoint3dArray()) == p);
    EXPECT_TRUE(ZOR::g_far_p1(CZorPoint3d(3, 3, 3), CZorPoint3dArray()) == CZorPoint3d(3, 3, 3));
    const CZorPoint3dArray a = makeList({{0, 2, 0}, {1, 0, 0}, {-1, 0, 0}, {0, -2, 0}});
    EXPECT_EQ(ZOR::g_near_p1(p, a).x, 1.0);
    EXPECT_EQ(ZOR::g_far_p1(p, a).y, 2.0);
}

TEST_F(PointListTest, SetEqualityIgnoresOrderAndDuplicates) {
    const CZorPoint3d a(0, 0, 0);
    const CZorPoint3d b(1, 0, 0);
    const CZorPoint3d c(0, 1, 0);
    EXPECT_TRUE(ZOR::g_pl_equal(makeList({a, b, c}), makeList({c, a, b})));
    EXPECT_TRUE(ZOR::g_pl_equal(makeList({a, a, b}), makeList({a, b, b})));
    EXPECT_FALSE(ZOR::g_pl_equal(makeList({a, b}), makeList({a, c})));
    EXPECT_FALSE(ZOR::g_pl_equal(makeList({a, b}), makeList({a, b, b})));
    EXPECT_FALSE(ZOR::g_pl_equal(makeList({a, a}), makeList({a, b})));
    EXPECT_TRUE(ZOR::g_pl_equal(makeList({a, b}), makeList({CZorPoint3d(1, 9e-6, 0), a})));
    const CZorPoint3dArray withNaN = makeList({{NAN, 0, 0}});
    EXPECT_TRUE(ZOR::g_pl_equal(withNaN, withNaN));
    EXPECT_FALSE(ZOR::g_pl_equal(withNaN, CZorPoint3dArray(withNaN)));
}

TEST_F(PointListTest, MatrixConversion) {
    double m[4][4];
    for (auto& row : m) {
        for (double& e : row) e = 7.0;
    }
    EXPECT_FALSE(ZOR::plToMtx(m, makeList({{1, 2, 3}, {4, 5, 6}})));
    EXPECT_EQ(m[0][0], 7.0);

    EXPECT_TRUE(ZOR::plToMtx(m, makeList({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}})));
    const double expected[4][4] = {{1, 4, 7, 0}, {2, 5, 8, 0}, {3, 6, 9, 0}, {0, 0, 0, 1}};
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) EXPECT_EQ(m[r][c], expected[r][c]) << r << c;
    }

    CZorMatrix3d rot;
    rot.setToRotation(0.3, CZorVector3d::kZAxis, CZorPoint3d(1, 2, 0));
    CZorPoint3dArray p = makeList({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
    EXPECT_EQ(&ZOR::mtxToPl(p, rot), &p);
    ASSERT_EQ(p.len(), 4);
    EXPECT_EQ(p[3].x, rot.m[0][3]);
    EXPECT_EQ(p[1].y, rot.m[1][1]);
    double back[4][4];
    EXPECT_TRUE(ZOR::plToMtx(back, p));
    EXPECT_TRUE(CZorMatrix3d(back) == rot);
}

}  // namespace
