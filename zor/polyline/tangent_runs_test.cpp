#include "zor/polyline/tangent_runs.h"

#include <gtest/gtest.h>

#include <cmath>

#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

TEST(TangentRuns, TangentRuns) {
    CZorArrayTempl<CZorVertexArray> runs;
    const CZorArrayTempl<CZorVertexArray> marker = runs.append(CZorVertexArray(L(0, 0, 1, 0)));
    EXPECT_FALSE(ZOR::g_vl_segm(runs, CZorVertexArray()));
    EXPECT_EQ(runs, marker);
    ASSERT_TRUE(ZOR::g_vl_segm(runs, Rect(0, 0, 4, 2)));
    EXPECT_EQ(runs.len(), 4u);
    // A rectangle with round corners, starting in the middle of the bottom edge: the closing
    // joint continues, so the last run merges into run 0.
    const double b = std::tan(kPi / 8);
    const CZorVertexArray rounded =
        Chain({L(2, 0, 9, 0), A(9, 0, 10, 1, b), L(10, 1, 10, 4), A(10, 4, 9, 5, b), L(9, 5, 1, 5),
               A(1, 5, 0, 4, b), L(0, 4, 0, 1), A(0, 1, 1, 0, b), L(1, 0, 2, 0)});
    ASSERT_TRUE(ZOR::g_vl_segm(runs, rounded));
    ASSERT_EQ(runs.len(), 1u);
    EXPECT_TRUE(runs[0].isClosed());
}

TEST(TangentRuns, MirroredPairs) {
    // Opposite sides of a rectangle mirror each other across its middle lines.
    CZorMapTempl<int, int> out;
    ASSERT_TRUE(ZOR::g_vl_segm_mirp(out, Rect(0, 0, 10, 4)));
    ASSERT_EQ(out.len(), 4u);
    int j = -1;
    ASSERT_TRUE(out.getAt(0, j));
    EXPECT_EQ(j, 2);
    ASSERT_TRUE(out.getAt(3, j));
    EXPECT_EQ(j, 1);
    // The slanted sides of a trapezoid fall in other direction classes; its parallel sides
    // differ in length.
    out.setAt(42, 1);
    EXPECT_FALSE(ZOR::g_vl_segm_mirp(out, Polygon({P(0, 0), P(10, 0), P(8, 4), P(2, 4)})));
    EXPECT_TRUE(out.hasKey(42));
}

TEST(TangentRuns, PadAndCutDistances) {
    // The last value repeated, 0 for nothing to repeat; cut to length, emptied below 0.
    struct Case {
        CZorArrayTempl<double> in;
        int n;
        CZorArrayTempl<double> out;
    };
    for (const Case& c : {Case{List({1.0, 5.0}), 4, List({1.0, 5.0, 5.0, 5.0})},
                          Case{CZorArrayTempl<double>(), 3, List({0.0, 0.0, 0.0})},
                          Case{List({1.0, 2.0, 3.0, 4.0}), 3, List({1.0, 2.0, 3.0})},
                          Case{List({1.0, 2.0}), -1, CZorArrayTempl<double>()}}) {
        SCOPED_TRACE(c.n);
        CZorArrayTempl<double> d = c.in;
        ZOR::g_vl_dl(c.n, d);
        EXPECT_EQ(d, c.out);
    }
}

}  // namespace
}  // namespace zor_test
