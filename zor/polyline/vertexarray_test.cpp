#include "zor/polyline/vertexarray.h"

#include <cmath>
#include <random>
#include <utility>

#include <gtest/gtest.h>

#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"
#include "zor/polyline/test_shapes.h"
#include "zor/polyline/vertexarray_ex.h"

namespace {

using zor_test::P;
using zor_test::Points;
using zor_test::Polygon;

constexpr double kPi = 3.141592653589793;

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

TEST(VertexArrayTest, FromPointsAndClosedness) {
    EXPECT_EQ(Polygon({P(0, 0), P(1, 0), P(0, 1)}).len(), 3);
    EXPECT_TRUE(Polygon({P(0, 0), P(1, 0), P(0, 1)}).isClosed());
    const CZorVertexArray repeated = Polygon({P(0, 0), P(1, 0), P(0, 1), P(0, 0)});
    EXPECT_EQ(repeated.len(), 3);
    EXPECT_TRUE(repeated.isClosed());
    EXPECT_EQ(Polygon({P(0, 0), P(1, 0), P(0, 1)}, false).len(), 2);
    EXPECT_EQ(Polygon({P(2, 2)}, false).len(), 0);
    const CZorVertexArray single = Polygon({P(2, 2)}, true);
    ASSERT_EQ(single.len(), 1);
    EXPECT_EQ(single[0].start, single[0].end);
    EXPECT_FALSE(single.isClosed());
}

TEST(VertexArrayTest, GapsAndOpenings) {
    CZorVertexArray gap;
    gap.append(CZorVertex(P(0, 0), P(1, 0), 0.0));
    gap.append(CZorVertex(P(2, 0), P(3, 0), 0.0));
    EXPECT_FALSE(gap.isContinuous());
    EXPECT_EQ(gap.numOpens(), 1);
    EXPECT_FALSE(gap.isClosed());
    EXPECT_EQ(Polygon({P(0, 0), P(1, 0), P(0, 1)}).numOpens(), 0);
    EXPECT_EQ(Polygon({P(0, 0), P(1, 0), P(0, 1), P(5, 5)}, false).numOpens(), 0);
}

TEST(VertexArrayTest, AppendByPointStartsAtTheOriginWhenEmpty) {
    CZorVertexArray vl;
    vl.append(P(3, 4), 0.0);
    EXPECT_EQ(vl[0].start, P(0, 0));
    vl.append(P(5, 4), 0.5);
    EXPECT_EQ(vl[1].start, P(3, 4));
    EXPECT_EQ(vl[1].bulge, 0.5);
    // Appending an element of the list itself, across a growth of the block.
    CZorVertexArray grow = Polygon(
        {P(0, 0), P(1, 0), P(2, 0), P(3, 0), P(4, 0), P(5, 0), P(6, 0), P(7, 0), P(8, 0)}, false);
    ASSERT_EQ(grow.len(), 8);
    grow.append(grow[0]);
    EXPECT_EQ(grow[8], grow[0]);
    grow.insertAt(0, grow[3]);
    EXPECT_EQ(grow[0], grow[4]);
}

TEST(VertexArrayTest, SlotsComingIntoUseHoldDefaultSegments) {
    CZorVertexArray vl = Polygon({P(0, 0), P(1, 0), P(2, 0), P(3, 1)}, false);
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

    CZorVertexArray target = Polygon({P(5, 5), P(6, 5), P(6, 6), P(5, 6)});
    target = std::move(moved);
    EXPECT_EQ(target, copy);
    EXPECT_EQ(target.normal(), CZorVector3d(0, 0, -1));
    EXPECT_EQ(moved.len(), 0);  // NOLINT(bugprone-use-after-move)
    CZorVertexArray& same = target;
    target = std::move(same);
    EXPECT_EQ(target, copy);
}

TEST(VertexArrayTest, RemoveRepairsTheJointOnlyWhenAsked) {
    const CZorVertexArray chain = Polygon({P(0, 0), P(1, 0), P(2, 0), P(3, 1)}, false);
    CZorVertexArray kept = chain;
    kept.remove(1, true);
    ASSERT_EQ(kept.len(), 2);
    EXPECT_EQ(kept[1].start, P(1, 0));
    EXPECT_TRUE(kept.isContinuous());
    CZorVertexArray gap = chain;
    gap.remove(1, false);
    EXPECT_EQ(gap[1].start, P(2, 0));
    CZorVertexArray triangle = Polygon({P(0, 0), P(1, 0), P(0, 1)});
    triangle.remove(0, true);
    ASSERT_EQ(triangle.len(), 2);
    EXPECT_EQ(triangle[0].start, P(0, 0));
    EXPECT_EQ(triangle[0].end, P(0, 1));
    EXPECT_TRUE(triangle.isClosed());
    triangle.remove(7, true);
    EXPECT_EQ(triangle.len(), 2);
}

TEST(VertexArrayTest, BreakVertexKeepsTheCircleAndTags) {
    CZorVertexArray vl(CZorVertex(P(1, 0), P(-1, 0), 1.0));
    vl[0].tag = 9;
    vl.breakVertex(0, P(0, 1));
    ASSERT_EQ(vl.len(), 2);
    EXPECT_NEAR(vl[0].bulge, std::tan(kPi / 8), 1e-12);
    EXPECT_NEAR(vl[1].bulge, std::tan(kPi / 8), 1e-12);
    EXPECT_EQ(vl[0].tag, 9);
    EXPECT_EQ(vl[1].tag, 9);
    EXPECT_EQ(vl[0].end, vl[1].start);
}

TEST(VertexArrayTest, RevertTurnsOrderAndEachElementOnce) {
    CZorVertexArray vl;
    vl.append(CZorVertex(P(0, 0), P(1, 0), 0.1));
    vl.append(CZorVertex(P(1, 0), P(2, 0), 0.2));
    vl.append(CZorVertex(P(2, 0), P(3, 0), 0.3));
    vl.revert();
    EXPECT_EQ(vl[0], CZorVertex(P(3, 0), P(2, 0), -0.3));
    EXPECT_EQ(vl[1], CZorVertex(P(2, 0), P(1, 0), -0.2));
    EXPECT_EQ(vl[2], CZorVertex(P(1, 0), P(0, 0), -0.1));
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
}

TEST(VertexArrayTest, ExtentsIncludeArcQuadrantsAndFollowTheNormal) {
    CZorVertexArray half(CZorVertex(P(1, 0), P(-1, 0), 1.0));
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
}

TEST(VertexArrayTest, PointListsOfCornersAndArcs) {
    EXPECT_EQ(zor_test::Rect(0, 0, 1, 1).pts(false, 0.1).len(), 4);
    EXPECT_EQ(Polygon({P(0, 0), P(1, 0), P(1, 1), P(0, 1)}, false).pts(false, 0.1).len(), 4);
    const CZorVertexArray half(CZorVertex(P(1, 0), P(-1, 0), 1.0));
    const CZorPoint3dArray pts = half.pts(true, 0.5);
    ASSERT_GE(pts.len(), 4);
    EXPECT_EQ(pts[1], P(std::cos(kPi / 3), std::sin(kPi / 3)));
    const CZorVertexArray cw(CZorVertex(P(1, 0), P(-1, 0), -1.0));
    EXPECT_LT(cw.pts(true, 0.5)[1].y, 0.0);  // clockwise arcs walk backwards
}

TEST(VertexArrayTest, NearestSegment) {
    const CZorVertexArray vl = Polygon({P(0, 0), P(10, 0), P(10, 10)}, false);
    EXPECT_EQ(&vl.vxNear(P(5, 1)), &vl[0]);
    EXPECT_EQ(&vl.vxNear(P(11, 5)), &vl[1]);
    // Off both feet: measured just inside the ends.
    EXPECT_EQ(&vl.vxNear(P(-3, -0.5)), &vl[0]);
}

TEST(VertexArrayTest, TransformsAndMirrors) {
    CZorVertexArray vl(CZorVertex(P(1, 1), P(-1, 1), 0.5));
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(CZorPoint3d(0, 0, 0), CZorVector3d(0, 1, 0)));
    CZorVertexArray byMatrix = vl.getTransformedCopy(m.m);
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
    const CZorVertexArray b = Polygon({P(1, -1), P(3, 1)}, false);
    CZorPoint3dArray out;
    ASSERT_TRUE(a.intersectWith(out, b, 0));
    ASSERT_EQ(out.len(), 1);  // the shared corner once, not twice
    EXPECT_EQ(out[0], P(2, 0));
    out.append(P(9, 9));
    EXPECT_FALSE(a.intersectWith(out, a, 0));
    EXPECT_EQ(out.len(), 2);
    EXPECT_EQ(a.intersectWithBulg0(b).len(), 1);
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
        const CZorVertexArray a = zor_test::RandomWalk(rng, 120, 50.0, 4.0);
        CZorVertexArray b = zor_test::RandomWalk(rng, 90, 50.0, 4.0);
        if (round >= 8) {
            // A copy shifted by less than the tolerance: every segment touches its twin only
            // within tolerance, where a box without its margin would prune the pair.
            b = a;
            b.move(CZorVector3d(0.6 * CZorPoint3d::tol, -0.6 * CZorPoint3d::tol, 0.0));
        }
        for (unsigned int flags : {0u, 1u, 2u, 4u, 7u}) {
            const CZorPoint3dArray expected = PlainIntersection(a, b, flags);
            if (round >= 8 && flags == 0) {
                EXPECT_GT(expected.len(), 0);
            }
            const CZorPoint3dArray actual = a.intersectWith(b, flags);
            ASSERT_EQ(actual.len(), expected.len()) << "round " << round << " flags " << flags;
            for (int k = 0; k < expected.len(); ++k) {
                EXPECT_EQ(actual[k].x, expected[k].x);
                EXPECT_EQ(actual[k].y, expected[k].y);
            }
        }
    }
}

TEST(VertexArrayExTest, AttributesTravelOnlyWhereTheyShould) {
    CZorVertexArrayEx ex;
    EXPECT_EQ(ex.attrNumber, 0);
    EXPECT_TRUE(ex.attrText.isNull());
    ex.attrNumber = 7;
    ex.attrText = L"wall";
    ex = zor_test::Rect(0, 0, 1, 1);  // geometry replaced, attributes kept
    EXPECT_EQ(ex.len(), 4);
    EXPECT_EQ(ex.attrNumber, 7);
    const CZorVertexArrayEx copy(ex);
    EXPECT_EQ(copy.attrNumber, 7);
    const CZorVertexArrayEx reversed = ex.reverse();
    EXPECT_EQ(reversed.attrNumber, 7);
    EXPECT_EQ(reversed[0].end, P(0, 1));
    const CZorVertexArrayEx sum = ex + zor_test::Rect(5, 5, 6, 6);
    EXPECT_EQ(sum.len(), 8);
    EXPECT_TRUE(sum.attrText == L"wall");
    const CZorVertexArrayEx fromPlain(zor_test::Rect(0, 0, 1, 1));
    EXPECT_EQ(fromPlain.attrNumber, 0);
    ex.clear();
    EXPECT_EQ(ex.len(), 0);
    EXPECT_EQ(ex.attrNumber, 0);
    EXPECT_TRUE(ex.attrText.isNull());
}

TEST(VertexArrayExTest, ListConversionsKeepExistingAttributes) {
    CZorArrayTempl<CZorVertexArray> plain;
    plain.append(zor_test::Rect(0, 0, 1, 1));
    plain.append(zor_test::Rect(0, 0, 2, 2));
    CZorArrayTempl<CZorVertexArrayEx> ex;
    ex[0].attrNumber = 3;
    zorVllToVllEx(ex, plain);
    ASSERT_EQ(ex.len(), 2u);
    EXPECT_EQ(ex[0].attrNumber, 3);
    EXPECT_EQ(ex[1][2].start, P(2, 2));
    CZorArrayTempl<CZorVertexArray> back;
    zorVllExToVll(back, ex);
    ASSERT_EQ(back.len(), 2u);
    EXPECT_EQ(back[1], plain[1]);
}

}  // namespace
