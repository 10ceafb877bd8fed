#include "zor/regions/polygon_boolean.h"

#include <gtest/gtest.h>

#include "zor/polyline/orientation.h"
#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;
using ZOR::g_vl_bool;

constexpr auto kUnion = CZorVertexArray::boolUnion;
constexpr auto kDiff = CZorVertexArray::boolDiff;
constexpr auto kSect = CZorVertexArray::boolSect;

int chains(const CZorVertexArray& vl) {
    return static_cast<int>(ZOR::g_vl_vll(vl).len());
}

TEST(PolygonBoolean, DisjointAndNested) {
    const Loop a = rect(0, 0, 10, 10);
    const Loop apart = rect(20, 0, 30, 10);
    EXPECT_EQ(chains(g_vl_bool(a, apart, kUnion)), 2);
    EXPECT_EQ(g_vl_bool(a, apart, kDiff).len(), 4);
    EXPECT_EQ(g_vl_bool(a, apart, kSect).len(), 0);

    const Loop inner = rect(4, 4, 6, 6);
    EXPECT_EQ(g_vl_bool(a, inner, kUnion).len(), 4);
    const CZorVertexArray diff = g_vl_bool(a, inner, kDiff);
    const CZorArrayTempl<CZorVertexArray> parts = ZOR::g_vl_vll(diff);
    ASSERT_EQ(parts.len(), 2u);
    EXPECT_EQ(parts[0], a);
    EXPECT_EQ(parts[1].len(), 4);
    EXPECT_FALSE(ZOR::g_vl_orient(parts[1], CZorVector3d::kZAxis));  // b reversed
    EXPECT_EQ(g_vl_bool(a, inner, kSect), inner);
    EXPECT_EQ(g_vl_bool(a, inner, static_cast<CZorVertexArray::boolOper>(7)).len(), 0);
}

TEST(PolygonBoolean, OverlapsAndSharedStretches) {
    const Loop a = rect(0, 0, 10, 10);
    for (const CZorVertexArray::boolOper op : {kUnion, kDiff, kSect}) {
        const CZorVertexArray r = g_vl_bool(a, rect(5, 5, 15, 15), op);
        ASSERT_EQ(chains(r), 1) << op;
        EXPECT_TRUE(r.isClosed()) << op;
    }
    // Equal squares: union and difference empty, intersection the square once.
    EXPECT_EQ(g_vl_bool(a, a, kUnion).len(), 0);
    EXPECT_EQ(g_vl_bool(a, a, kDiff).len(), 0);
    EXPECT_EQ(g_vl_bool(a, a, kSect).len(), 4);
    // Side by side: the common edge goes from the union; the difference keeps a's shape with
    // the common edge from b; the intersection is empty.
    const Loop side = rect(10, 0, 20, 10);
    const CZorVertexArray u = g_vl_bool(a, side, kUnion);
    EXPECT_EQ(u.len(), 4);
    EXPECT_TRUE(u.isClosed());
    const CZorVertexArray d = g_vl_bool(a, side, kDiff);
    EXPECT_EQ(d.len(), 4);
    EXPECT_TRUE(d.isClosed());
    EXPECT_EQ(g_vl_bool(a, side, kSect).len(), 0);
    // A small square on a's bottom edge: a notch for the difference, the union left open.
    const Loop notch = rect(4, 0, 6, 2);
    const CZorVertexArray dn = g_vl_bool(a, notch, kDiff);
    EXPECT_TRUE(dn.isClosed());
    EXPECT_EQ(dn.len(), 8);
    EXPECT_FALSE(g_vl_bool(a, notch, kUnion).isClosed());
}

TEST(PolygonBoolean, ResultCarriesNoAttributesAndTheDefaultNormal) {
    CZorVertexArrayEx a(rect(0, 0, 10, 10)), b(rect(5, 5, 15, 15));
    a.attrNumber = b.attrNumber = 3;
    a.attrText = b.attrText = L"t";
    a.setNormal(CZorVector3d::kXAxis);
    const CZorVertexArrayEx r = g_vl_bool(a, b, kUnion);
    EXPECT_EQ(r.len(), 8);
    EXPECT_EQ(r.attrNumber, 0);
    EXPECT_TRUE(r.attrText.isNull());
    EXPECT_TRUE(r.normal() == CZorVector3d::kZAxis);
}

TEST(PolygonBoolean, TrimToLoop) {
    const Loop sq = rect(0, 0, 10, 10);
    const CZorVertexArray through(CZorVertex(CZorPoint3d(-5, 5, 0), CZorPoint3d(15, 5, 0), 0.0));
    const CZorVertexArray in = zor_g_vl_vl_trim(through, sq);
    ASSERT_EQ(in.len(), 1);
    EXPECT_NEAR(in.geomLength(), 10.0, 1e-9);
    const CZorVertexArray inside(CZorVertex(CZorPoint3d(2, 5, 0), CZorPoint3d(8, 5, 0), 0.0));
    EXPECT_EQ(zor_g_vl_vl_trim(inside, sq).len(), 0);
    // An arc inside a circle, touching it from within: a tangent contact doesn't cut.
    const CZorVertexArray touching(CZorVertex(CZorPoint3d(3, -2, 0), CZorPoint3d(3, 2, 0), 1.0));
    EXPECT_EQ(zor_g_vl_vl_trim(touching, circle(0, 0, 5)).len(), 0);
}

}  // namespace
