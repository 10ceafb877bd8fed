#include "zor/geometry/lines.h"

#include <gtest/gtest.h>

namespace {

class LinesTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;  // every test leaves the point tolerance as it found it
};

using P = CZorPoint3d;

TEST_F(LinesTest, CrossingTakesZFromTheFirstLine) {
    P out;
    ASSERT_TRUE(ZOR::inters(P(0, 0, 3), P(2, 2, 9), P(0, 2, 5), P(2, 0, 5), false, out));
    EXPECT_EQ(out.x, 1.0);
    EXPECT_EQ(out.y, 1.0);
    EXPECT_EQ(out.z, 3.0);
    // Bounded, the crossing must lie on both segments in space, so heights matter.
    EXPECT_FALSE(ZOR::inters(P(0, 0, 3), P(2, 2, 3), P(0, 2, 5), P(2, 0, 5), true, out));
    EXPECT_TRUE(ZOR::inters(P(0, 0, 5), P(2, 2, 5), P(0, 2, 5), P(2, 0, 5), true, out));
}

TEST_F(LinesTest, VerticalFirstLineTradesPlaces) {
    const P v0(1, -1, 2), v1(1, 1, 2);  // vertical
    const P h0(-1, 0, 2), h1(3, 0, 2);  // horizontal
    P out;
    ASSERT_TRUE(ZOR::inters(h0, h1, v0, v1, true, out));
    EXPECT_EQ(out.x, 1.0);
    EXPECT_EQ(out.y, 0.0);
    EXPECT_EQ(out.z, 2.0);
    // With the vertical line first, the horizontal one becomes first and gives z.
    P swapped;
    ASSERT_TRUE(ZOR::inters(v0, v1, h0, h1, true, swapped));
    EXPECT_EQ(swapped.x, 1.0);
    EXPECT_EQ(swapped.y, 0.0);
    EXPECT_EQ(swapped.z, 2.0);
}

TEST_F(LinesTest, NoCrossingForParallelVerticalOrDegenerateLines) {
    P out(9, 9, 9);
    EXPECT_FALSE(ZOR::inters(P(0, 0, 0), P(0, 1, 0), P(1, 0, 0), P(1, 5, 0), false, out));
    EXPECT_FALSE(ZOR::inters(P(0, 0, 0), P(1, 1, 0), P(0, 1, 0), P(2, 3, 0), false, out));
    // The first line is a point (and vertical), the second is not vertical.
    EXPECT_FALSE(ZOR::inters(P(1, 1, 0), P(1, 1, 0), P(0, 0, 0), P(2, 0, 0), false, out));
}

TEST_F(LinesTest, NearlyVerticalSecondLineUsesItsEndX) {
    P out;
    const double x = 1 + 5e-10;
    ASSERT_TRUE(ZOR::inters(P(0, 0, 0), P(4, 0, 0), P(1, -1, 0), P(x, 1, 0), false, out));
    EXPECT_EQ(out.x, x);
    EXPECT_EQ(out.y, 0.0);
}

TEST_F(LinesTest, BoundedCrossingWithinToleranceOfAnEnd) {
    const P a(0, 0, 0), b(1, 0, 0);
    P out;
    EXPECT_TRUE(ZOR::inters(a, b, P(1 + 0.5e-5, -1, 0), P(1 + 0.5e-5, 1, 0), true, out));
    EXPECT_FALSE(ZOR::inters(a, b, P(1 + 2e-5, -1, 0), P(1 + 2e-5, 1, 0), true, out));
    EXPECT_TRUE(ZOR::inters(a, b, P(1 + 2e-5, -1, 0), P(1 + 2e-5, 1, 0), false, out));
    EXPECT_EQ(out.x, 1 + 2e-5);
    // A wider tolerance reaches further.
    CZorPoint3dTol wide(1e-4);
    EXPECT_TRUE(ZOR::inters(a, b, P(1 + 2e-5, -1, 0), P(1 + 2e-5, 1, 0), true, out));
}

TEST_F(LinesTest, BoundedNeedsTheCrossingOnBothSegments) {
    // The boxes overlap, but the lines cross at (0.8, 0.8), past the end of the second segment.
    const P a(0, 0, 0), b(1, 1, 0), c(0, 1, 0), d(0.4, 0.9, 0);
    P out;
    EXPECT_FALSE(ZOR::inters(a, b, c, d, true, out));
    ASSERT_TRUE(ZOR::inters(a, b, c, d, false, out));
    EXPECT_DOUBLE_EQ(out.x, 0.8);
    EXPECT_DOUBLE_EQ(out.y, 0.8);
}

TEST_F(LinesTest, PointOnSegment) {
    const P a(0, 0, 0), b(-1, 0, 0);
    EXPECT_TRUE(ZOR::g_line_pt(a, b, P(-0.5, 0, 0)));
    EXPECT_TRUE(ZOR::g_line_pt(a, b, P(-0.5, 1e-5, 0)));  // exactly tol off the line
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(-0.5, 1.1e-5, 0)));
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(-0.5, 0, 1.1e-5)));  // z counts
    // Within tol of an end is on the segment, also beyond that end.
    EXPECT_TRUE(ZOR::g_line_pt(a, b, P(1e-5, 0, 0)));
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(1.1e-5, 0, 0)));
    EXPECT_TRUE(ZOR::g_line_pt(b, a, P(1e-5, 0, 0)));
    EXPECT_FALSE(ZOR::g_line_pt(b, a, P(1.1e-5, 0, 0)));
    // A degenerate segment holds only its own point.
    EXPECT_TRUE(ZOR::g_line_pt(a, a, P(0, 1e-6, 0)));
    EXPECT_FALSE(ZOR::g_line_pt(a, a, P(0, 1e-3, 0)));
}

TEST_F(LinesTest, FootOfPerpendicular) {
    const P f = ZOR::g_lotp(P(0, 0, 0), P(2, 0, 0), P(1, 5, 7));
    EXPECT_EQ(f.x, 1.0);
    EXPECT_EQ(f.y, 0.0);
    EXPECT_EQ(f.z, 0.0);
    const P beyond = ZOR::g_lotp(P(0, 0, 0), P(0, 0, 2), P(1, 1, 5));
    EXPECT_EQ(beyond.z, 5.0);
    EXPECT_EQ(beyond.x, 0.0);
    const P same = ZOR::g_lotp(P(1, 2, 3), P(1, 2, 3 + 1e-6), P(9, 9, 9));
    EXPECT_EQ(same.x, 1.0);
    EXPECT_EQ(same.z, 3.0);
}

}  // namespace
