#include "zor/polyline/vertexarray.h"

#include <cmath>
#include <random>
#include <utility>

#include <gtest/gtest.h>

#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"
#include "zor/polyline/test_shapes.h"
#include "zor/polyline/vertexarray_ex.h"

namespace zor_test {
namespace {

TEST(VertexArrayTest, IndexingWrapsReadsDefaultsAndExtends) {
    CZorVertexArray vl = Polygon({P(0, 0), P(1, 0), P(1, 1)}, false);
    const CZorVertexArray& c = vl;
    EXPECT_EQ(c[-1].end, P(1, 1));
    EXPECT_EQ(c[5], CZorVertex());
    EXPECT_EQ(vl.len(), 2);
    vl[vl.len()];
    ASSERT_EQ(vl.len(), 3);
    EXPECT_EQ(vl[2], CZorVertex());
    CZorVertexArray empty;
    empty[-1].bulge = 0.0;  // the writable default, the list stays empty
    EXPECT_EQ(empty.len(), 0);
}

TEST(VertexArrayTest, FromPointsClosednessAndGaps) {
    // A repeated first point isn't doubled; one point gives nothing open, a point segment
    // closed, which isn't closed (one element). numOpens doesn't count the pair last to first.
    struct Case {
        CZorVertexArray vl;
        int len, opens;
        bool continuous, closed;
    };
    for (const Case& c :
         {Case{Polygon({P(0, 0), P(1, 0), P(0, 1)}), 3, 0, true, true},
          Case{Polygon({P(0, 0), P(1, 0), P(0, 1), P(0, 0)}), 3, 0, true, true},
          Case{Polygon({P(0, 0), P(1, 0), P(0, 1)}, false), 2, 0, true, false},
          Case{Polygon({P(0, 0), P(1, 0), P(0, 1), P(5, 5)}, false), 3, 0, true, false},
          Case{Polygon({P(2, 2)}, false), 0, 0, true, false},
          Case{Polygon({P(2, 2)}, true), 1, 0, true, false},
          Case{Chain({L(0, 0, 1, 0), L(2, 0, 3, 0)}), 2, 1, false, false}}) {
        SCOPED_TRACE(c.len);
        EXPECT_EQ(c.vl.len(), c.len);
        EXPECT_EQ(c.vl.numOpens(), c.opens);
        EXPECT_EQ(c.vl.isContinuous(), c.continuous);
        EXPECT_EQ(c.vl.isClosed(), c.closed);
    }
    EXPECT_EQ(Polygon({P(2, 2)}, true)[0], L(2, 2, 2, 2));
}

TEST(VertexArrayTest, AppendInsertAndSlotsComingIntoUse) {
    CZorVertexArray vl;
    vl.append(P(3, 4), 0.0).append(P(5, 4), 0.5);  // from the origin when empty
    EXPECT_EQ(vl, Chain({L(0, 0, 3, 4), A(3, 4, 5, 4, 0.5)}));
    // Appending an element of the list itself, across a growth of the block.
    CZorVertexArray grow = Polygon(
        {P(0, 0), P(1, 0), P(2, 0), P(3, 0), P(4, 0), P(5, 0), P(6, 0), P(7, 0), P(8, 0)}, false);
    ASSERT_EQ(grow.len(), 8);
    grow.append(grow[0]);
    EXPECT_EQ(grow[8], grow[0]);
    grow.insertAt(0, grow[3]);
    EXPECT_EQ(grow[0], grow[4]);

    vl = Polygon({P(0, 0), P(1, 0), P(2, 0), P(3, 1)}, false);
    for (int i = 0; i < vl.len(); ++i) vl[i].tag = i + 1;
    // The removed segment stays behind the end within the storage; growing again must not
    // bring it back.
    vl.remove(1, false);
    vl[3];
    ASSERT_EQ(vl.len(), 4);
    EXPECT_EQ(vl[2], CZorVertex());
    EXPECT_EQ(vl[3], CZorVertex());
    EXPECT_EQ(vl[3].tag, 0);
    // Growth into a new block keeps every element, tag included, and defaults the rest.
    vl[40];
    ASSERT_EQ(vl.len(), 41);
    EXPECT_EQ(vl[1].end, P(3, 1));
    EXPECT_EQ(vl[1].tag, 3);
    EXPECT_EQ(vl[40], CZorVertex());
    EXPECT_EQ(vl[40].tag, 0);
}

TEST(VertexArrayTest, MovesTakeTheSegmentsAndNormalAndLeaveTheSourceEmpty) {
    CZorVertexArray source = Polygon({P(0, 0), P(1, 0), P(1, 1)});
    source.setNormal(CZorVector3d(0, 0, -1));
    const CZorVertexArray copy = source;
    CZorVertexArray moved(std::move(source));
    EXPECT_EQ(moved, copy);
    EXPECT_EQ(moved.normal(), CZorVector3d(0, 0, -1));
    EXPECT_EQ(source.len(), 0);  // NOLINT(bugprone-use-after-move): the state is specified
    source.append(P(2, 2), 0.0);
    EXPECT_EQ(source.len(), 1);
    for (CZorVertexArray target : {Rect(5, 5, 6, 6), CZorVertexArray()}) {
        CZorVertexArray from = copy;
        from.setNormal(CZorVector3d(0, 0, -1));
        target = std::move(from);
        EXPECT_EQ(target, copy);
        EXPECT_EQ(target.normal(), CZorVector3d(0, 0, -1));
        EXPECT_EQ(from.len(), 0);  // NOLINT(bugprone-use-after-move)
        CZorVertexArray& same = target;
        target = std::move(same);
        EXPECT_EQ(target, copy);
    }
}

TEST(VertexArrayTest, RemoveRepairsTheJointOnlyWhenAsked) {
    const CZorVertexArray chain = Polygon({P(0, 0), P(1, 0), P(2, 0), P(3, 1)}, false);
    CZorVertexArray kept = chain;
    kept.remove(1, true);
    EXPECT_EQ(kept, Polygon({P(0, 0), P(1, 0), P(3, 1)}, false));
    CZorVertexArray gap = chain;
    gap.remove(1, false);
    EXPECT_EQ(gap, Chain({L(0, 0, 1, 0), L(2, 0, 3, 1)}));
    // The closing joint too: a triangle's remainder A-C, C-A. An index past the end removes
    // nothing.
    CZorVertexArray triangle = Polygon({P(0, 0), P(1, 0), P(0, 1)});
    triangle.remove(0, true);
    EXPECT_EQ(triangle, Polygon({P(0, 0), P(0, 1)}));
    triangle.remove(7, true);
    EXPECT_EQ(triangle.len(), 2);
}

TEST(VertexArrayTest, BreakAndRevert) {
    // A half circle broken at its middle: two quarters that keep the tag.
    CZorVertexArray vl(A(1, 0, -1, 0, 1.0));
    vl[0].tag = 9;
    vl.breakVertex(0, P(0, 1));
    ExpectNear(vl, Chain({A(1, 0, 0, 1, std::tan(kPi / 8)), A(0, 1, -1, 0, std::tan(kPi / 8))}),
               1e-12);
    EXPECT_EQ(vl[0].tag, 9);
    EXPECT_EQ(vl[1].tag, 9);
    // Order reversed and every element, the middle one too, reverted once.
    vl = Chain({A(0, 0, 1, 0, 0.1), A(1, 0, 2, 0, 0.2), A(2, 0, 3, 0, 0.3)});
    vl.revert();
    ExpectBitEqual(vl, Chain({A(3, 0, 2, 0, -0.3), A(2, 0, 1, 0, -0.2), A(1, 0, 0, 0, -0.1)}));
}

TEST(VertexArrayTest, LengthsAndWalking) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(2, 0), P(2, 2)}, false);
    EXPECT_DOUBLE_EQ(vl.geomLength(), 4.0);
    CZorPoint3d p;
    ASSERT_TRUE(vl.pointAtDist(p, 3.0));
    EXPECT_EQ(p, P(2, 1));
    EXPECT_TRUE(vl.pointAtDist(p, 4.0));
    EXPECT_FALSE(vl.pointAtDist(p, -0.1));
    EXPECT_FALSE(vl.pointAtDist(p, 4.1));
    double d = -1;
    ASSERT_TRUE(vl.distAtPoint(d, P(2, 0)));
    EXPECT_DOUBLE_EQ(d, 2.0);  // a joint belongs to the earlier element
    ASSERT_TRUE(vl.distAtPoint(d, P(2, 1.5)));
    EXPECT_DOUBLE_EQ(d, 3.5);
    d = 8;
    EXPECT_FALSE(vl.distAtPoint(d, P(5, 5)));
    EXPECT_EQ(d, 8);
    // The nearest segment; off both feet measured just inside the ends.
    const CZorVertexArray corner = Polygon({P(0, 0), P(10, 0), P(10, 10)}, false);
    EXPECT_EQ(&corner.vxNear(P(5, 1)), &corner[0]);
    EXPECT_EQ(&corner.vxNear(P(11, 5)), &corner[1]);
    EXPECT_EQ(&corner.vxNear(P(-3, -0.5)), &corner[0]);
}

TEST(VertexArrayTest, ExtentsAndPointLists) {
    CZorVertexArray half(A(1, 0, -1, 0, 1.0));
    CZorPoint3d lo, hi;
    ASSERT_TRUE(half.extents(lo, hi));
    EXPECT_NEAR(hi.y, 1.0, 1e-12);
    EXPECT_NEAR(lo.y, 0.0, 1e-12);
    // Seen from below the sense of the arc turns, and so does the quadrant it covers.
    half.setNormal(CZorVector3d(0, 0, -1));
    ASSERT_TRUE(half.extents(lo, hi));
    EXPECT_NEAR(lo.y, -1.0, 1e-12);
    CZorPoint3d untouched(5, 5, 5);
    EXPECT_FALSE(CZorVertexArray().extents(untouched, untouched));
    EXPECT_EQ(untouched, CZorPoint3d(5, 5, 5));

    // Corners only: a closed square 4, an open chain of three 4. With arcs expanded at least
    // two inner points per arc; clockwise arcs walk backwards.
    EXPECT_EQ(Rect(0, 0, 1, 1).pts(false, 0.1).len(), 4);
    EXPECT_EQ(Polygon({P(0, 0), P(1, 0), P(1, 1), P(0, 1)}, false).pts(false, 0.1).len(), 4);
    const CZorPoint3dArray pts = CZorVertexArray(A(1, 0, -1, 0, 1.0)).pts(true, 0.5);
    ASSERT_GE(pts.len(), 4);
    EXPECT_EQ(pts[1], P(std::cos(kPi / 3), std::sin(kPi / 3)));
    EXPECT_LT(CZorVertexArray(A(1, 0, -1, 0, -1.0)).pts(true, 0.5)[1].y, 0.0);
}

TEST(VertexArrayTest, TransformsAndMirrors) {
    const CZorVertexArray vl(A(1, 1, -1, 1, 0.5));
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(CZorPoint3d(0, 0, 0), CZorVector3d(0, 1, 0)));
    const CZorVertexArray byMatrix = vl.getTransformedCopy(m.m);
    EXPECT_EQ(byMatrix[0].bulge, -0.5);
    CZorVertexArray byMirror = vl;
    byMirror.mirror(0.0, CZorPoint3d(0, 0, 0));
    EXPECT_EQ(byMirror, byMatrix);
    EXPECT_EQ(byMirror.normal(), CZorVector3d::kZAxis);
    CZorVertexArray moved = vl;
    moved.setNormal(CZorVector3d(0, 0, 5));
    moved.move(CZorVector3d(1, 2, 0));
    EXPECT_EQ(moved[0].start, P(2, 3));
    EXPECT_EQ(moved.normal(), CZorVector3d(0, 0, 5));
}

TEST(VertexArrayTest, PolylineIntersectionDropsRepeatedPoints) {
    const CZorVertexArray a = Polygon({P(0, 0), P(2, 0), P(2, 2)}, false);
    const CZorVertexArray b(L(1, -1, 3, 1));
    CZorPoint3dArray out;
    ASSERT_TRUE(a.intersectWith(out, b, 0));
    EXPECT_EQ(out, Points({P(2, 0)}));  // the shared corner once, not twice
    EXPECT_FALSE(a.intersectWith(out, a, 0));
    EXPECT_EQ(out, Points({P(2, 0)}));
    EXPECT_EQ(a.intersectWithBulg0(b), Points({P(2, 0)}));
}

// The plain nested loop the pruned intersection must reproduce exactly.
CZorPoint3dArray PlainIntersection(const CZorVertexArray& a, const CZorVertexArray& b,
                                   unsigned int flags) {
    CZorPoint3dArray out, hits;
    for (int i = 0; i < a.len(); ++i) {
        for (int j = 0; j < b.len(); ++j) {
            if (a[i].intersectWith(hits, b[j], flags)) {
                for (int k = 0; k < hits.len(); ++k) out.appendUniq(hits[k]);
            }
        }
    }
    return out;
}

TEST(VertexArrayTest, PrunedIntersectionEqualsThePlainLoopBitForBit) {
    std::mt19937 rng(1234);
    for (int round = 0; round < 10; ++round) {
        const CZorVertexArray a = RandomWalk(rng, 120, 50.0, 4.0);
        CZorVertexArray b = RandomWalk(rng, 90, 50.0, 4.0);
        if (round >= 8) {
            // A copy shifted by less than the tolerance: every segment touches its twin only
            // within tolerance, where a box without its margin would prune the pair.
            b = a;
            b.move(CZorVector3d(0.6 * CZorPoint3d::tol, -0.6 * CZorPoint3d::tol, 0.0));
        }
        for (unsigned int flags : {0u, 1u, 2u, 4u, 7u}) {
            SCOPED_TRACE(testing::Message() << "round " << round << " flags " << flags);
            const CZorPoint3dArray expected = PlainIntersection(a, b, flags);
            if (round >= 8 && flags == 0) {
                EXPECT_GT(expected.len(), 0);
            }
            ExpectBitEqual(a.intersectWith(b, flags), expected);
        }
    }
}

TEST(VertexArrayExTest, AttributesTravelOnlyWhereTheyShould) {
    CZorVertexArrayEx ex;
    EXPECT_EQ(ex.attrNumber, 0);
    EXPECT_TRUE(ex.attrText.isNull());
    ex.attrNumber = 7;
    ex.attrText = L"wall";
    ex = Rect(0, 0, 1, 1);  // geometry replaced, attributes kept
    EXPECT_EQ(ex.len(), 4);
    EXPECT_EQ(ex.attrNumber, 7);
    EXPECT_EQ(CZorVertexArrayEx(ex).attrNumber, 7);
    const CZorVertexArrayEx reversed = ex.reverse();
    EXPECT_EQ(reversed.attrNumber, 7);
    EXPECT_EQ(reversed, Rect(0, 0, 1, 1).reverse());
    const CZorVertexArrayEx sum = ex + Rect(5, 5, 6, 6);
    EXPECT_EQ(sum, Rect(0, 0, 1, 1) + Rect(5, 5, 6, 6));
    EXPECT_TRUE(sum.attrText == L"wall");
    EXPECT_EQ(CZorVertexArrayEx(Rect(0, 0, 1, 1)).attrNumber, 0);
    ex.clear();
    EXPECT_EQ(ex.len(), 0);
    EXPECT_EQ(ex.attrNumber, 0);
    EXPECT_TRUE(ex.attrText.isNull());
    // Converting lists: going to Ex the attributes already there stay.
    CZorArrayTempl<CZorVertexArray> plain;
    plain.append(Rect(0, 0, 1, 1)).append(Rect(0, 0, 2, 2));
    CZorArrayTempl<CZorVertexArrayEx> exList;
    exList[0].attrNumber = 3;
    zorVllToVllEx(exList, plain);
    ASSERT_EQ(exList.len(), 2u);
    EXPECT_EQ(exList[0].attrNumber, 3);
    EXPECT_EQ(exList[1], plain[1]);
    CZorArrayTempl<CZorVertexArray> back;
    zorVllExToVll(back, exList);
    EXPECT_EQ(back, plain);
}

}  // namespace
}  // namespace zor_test
