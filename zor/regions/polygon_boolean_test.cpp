#include "zor/regions/polygon_boolean.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "zor/regions/loops.h"
#include "zor/regions/test_shapes.h"

namespace {

using namespace zor_test;
using ZOR::g_vl_bool;

// What one operation gives: segments, chains, and the exact area of all chains, each closed; a
// NaN area stands for a result that doesn't close.
struct Outcome {
    int segments, chains;
    double area;
};

TEST(PolygonBoolean, Figures) {
    const Loop sq = rect(0, 0, 10, 10);
    const double open = std::nan("");
    const struct {
        const char* name;
        Loop b;
        Outcome uni, diff, sect;
    } cases[] = {
        // Apart: both outlines as two chains of one polyline.
        {"apart", rect(20, 0, 30, 10), {8, 2, 200}, {4, 1, 100}, {0, 0, 0}},
        // Inside: the difference is a followed by b reversed, two chains.
        {"inside", rect(4, 4, 6, 6), {4, 1, 100}, {8, 2, 96}, {4, 1, 4}},
        {"overlapping", rect(5, 5, 15, 15), {8, 1, 175}, {6, 1, 75}, {4, 1, 25}},
        // Every segment of each lies on the other: only the intersection keeps them, from a.
        {"equal", sq, {0, 0, 0}, {0, 0, 0}, {4, 1, 100}},
        // The common edge goes from the union; the difference takes it back from b.
        {"side by side", rect(10, 0, 20, 10), {4, 1, 200}, {4, 1, 100}, {0, 0, 0}},
        // On a's bottom edge: a notch for the difference; the union, open there, in two pieces.
        {"notch", rect(4, 0, 6, 2), {5, 2, open}, {8, 1, 96}, {4, 1, 4}},
    };
    for (const auto& c : cases) {
        const Outcome* expected[] = {&c.uni, &c.diff, &c.sect};
        const CZorVertexArrayEx xa = zor_g_xvl(sq, 3, L"t", CZorVector3d::kXAxis);
        const CZorVertexArrayEx xb = zor_g_xvl(c.b, 3, L"t", CZorVector3d::kXAxis);
        for (const CZorVertexArray::boolOper op :
             {CZorVertexArray::boolUnion, CZorVertexArray::boolDiff, CZorVertexArray::boolSect}) {
            SCOPED_TRACE(std::string(c.name) + " op " + std::to_string(op));
            const Outcome& e = *expected[op];
            const CZorVertexArray r = g_vl_bool(sq, c.b, op);
            EXPECT_EQ(r.len(), e.segments);
            // The Ex form picks the same segments into a fresh polyline, whatever the operands.
            const CZorVertexArrayEx x = g_vl_bool(xa, xb, op);
            EXPECT_EQ(static_cast<const CZorVertexArray&>(x), r);
            EXPECT_TRUE(x.attrNumber == 0 && x.attrText.isNull());
            EXPECT_TRUE(x.normal() == CZorVector3d::kZAxis);
            const Vll chains = ZOR::g_vl_vll(r);
            EXPECT_EQ(static_cast<int>(chains.len()), e.chains);
            if (std::isnan(e.area)) {
                EXPECT_FALSE(r.isClosed());
                continue;
            }
            for (int k = 0; k < e.chains; ++k) EXPECT_TRUE(chains[k].isClosed());
            EXPECT_NEAR(exactArea(r), e.area, 1e-9);
        }
    }
    EXPECT_EQ(g_vl_bool(sq, rect(4, 4, 6, 6), static_cast<CZorVertexArray::boolOper>(7)).len(), 0);
}

TEST(PolygonBoolean, TrimToLoop) {
    const Loop sq = rect(0, 0, 10, 10);
    EXPECT_EQ(zor_g_vl_vl_trim(chain({L(-5, 5, 15, 5)}), sq), chain({L(0, 5, 10, 5)}));
    EXPECT_EQ(zor_g_vl_vl_trim(chain({L(2, 5, 8, 5)}), sq).len(), 0);
    // An arc inside a circle, touching it from within: a tangent contact doesn't cut.
    const CZorVertexArray touching(CZorVertex(P(3, -2), P(3, 2), 1.0));
    EXPECT_EQ(zor_g_vl_vl_trim(touching, circle(0, 0, 5)).len(), 0);
}

}  // namespace
