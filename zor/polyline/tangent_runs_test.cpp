#include "zor/polyline/tangent_runs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>

namespace {

CZorPoint3d P(double x, double y) {
    return CZorPoint3d(x, y, 0);
}

CZorVertex L(double x0, double y0, double x1, double y1) {
    return CZorVertex(P(x0, y0), P(x1, y1), 0.0);
}

CZorVertexArray chain(std::initializer_list<CZorVertex> segments) {
    CZorVertexArray out;
    for (const CZorVertex& s : segments) out.append(s);
    return out;
}

// Counter-clockwise, starting at the lower left corner.
CZorVertexArray rect(double x0, double y0, double x1, double y1) {
    return chain({L(x0, y0, x1, y0), L(x1, y0, x1, y1), L(x1, y1, x0, y1), L(x0, y1, x0, y0)});
}

TEST(TangentRuns, TangentRuns) {
    CZorArrayTempl<CZorVertexArray> runs;
    const CZorArrayTempl<CZorVertexArray> marker = runs.append(CZorVertexArray(L(0, 0, 1, 0)));
    EXPECT_FALSE(ZOR::g_vl_segm(runs, CZorVertexArray()));
    EXPECT_EQ(runs, marker);
    ASSERT_TRUE(ZOR::g_vl_segm(runs, rect(0, 0, 4, 2)));
    EXPECT_EQ(runs.len(), 4u);

    // A rectangle with round corners, starting in the middle of the bottom edge.
    const double b = std::tan(M_PI / 8);
    const CZorVertexArray rounded =
        chain({L(2, 0, 9, 0), CZorVertex(P(9, 0), P(10, 1), b), L(10, 1, 10, 4),
               CZorVertex(P(10, 4), P(9, 5), b), L(9, 5, 1, 5), CZorVertex(P(1, 5), P(0, 4), b),
               L(0, 4, 0, 1), CZorVertex(P(0, 1), P(1, 0), b), L(1, 0, 2, 0)});
    ASSERT_TRUE(ZOR::g_vl_segm(runs, rounded));
    ASSERT_EQ(runs.len(), 1u);
    EXPECT_TRUE(runs[0].isClosed());
}

TEST(TangentRuns, MirroredPairs) {
    // Opposite sides of a rectangle mirror each other across its middle lines.
    CZorMapTempl<int, int> out;
    ASSERT_TRUE(ZOR::g_vl_segm_mirp(out, rect(0, 0, 10, 4)));
    ASSERT_EQ(out.len(), 4u);
    int j = -1;
    ASSERT_TRUE(out.getAt(0, j));
    EXPECT_EQ(j, 2);
    ASSERT_TRUE(out.getAt(3, j));
    EXPECT_EQ(j, 1);
    // The slanted sides of a trapezoid fall in other direction classes; its parallel sides
    // differ in length.
    out.setAt(42, 1);
    const CZorVertexArray trapezoid =
        chain({L(0, 0, 10, 0), L(10, 0, 8, 4), L(8, 4, 2, 4), L(2, 4, 0, 0)});
    EXPECT_FALSE(ZOR::g_vl_segm_mirp(out, trapezoid));
    EXPECT_TRUE(out.hasKey(42));
}

TEST(TangentRuns, PadAndCutDistances) {
    CZorArrayTempl<double> d;
    d.append(5.0);
    ZOR::g_vl_dl(3, d);
    ASSERT_EQ(d.len(), 3u);
    EXPECT_EQ(d[2], 5.0);
    d.removeAll();
    ZOR::g_vl_dl(3, d);
    ASSERT_EQ(d.len(), 3u);
    EXPECT_EQ(d[0], 0.0);
    d.removeAll();
    for (double v : {1.0, 2.0, 3.0, 4.0}) d.append(v);
    ZOR::g_vl_dl(3, d);
    ASSERT_EQ(d.len(), 3u);
    EXPECT_EQ(d[2], 3.0);
    ZOR::g_vl_dl(-1, d);
    EXPECT_EQ(d.len(), 0u);
}

}  // namespace
