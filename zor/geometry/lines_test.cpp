#include "zor/geometry/lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace {

using ::testing::ElementsAre;
using P = CZorPoint3d;

std::array<double, 3> Xyz(const double* p) {
    return {p[0], p[1], p[2]};
}

class LinesTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;  // every test leaves the point tolerance as it found it
};

TEST_F(LinesTest, CrossingTakesZFromTheLineThatEndsUpFirst) {
    P out;
    ASSERT_TRUE(ZOR::inters(P(0, 0, 3), P(2, 2, 9), P(0, 2, 5), P(2, 0, 5), false, out));
    EXPECT_THAT(Xyz(out), ElementsAre(1, 1, 3));
    // A vertical first line trades places: the other line gives z, whichever order.
    const P h0(-1, 0, 2), h1(3, 0, 2), v0(1, -1, 7), v1(1, 1, 7);
    ASSERT_TRUE(ZOR::inters(h0, h1, v0, v1, false, out));
    EXPECT_THAT(Xyz(out), ElementsAre(1, 0, 2));
    ASSERT_TRUE(ZOR::inters(v0, v1, h0, h1, false, out));
    EXPECT_THAT(Xyz(out), ElementsAre(1, 0, 2));
    // Bounded, the crossing must lie on both segments in space, so heights matter.
    EXPECT_FALSE(ZOR::inters(h0, h1, v0, v1, true, out));
    EXPECT_TRUE(ZOR::inters(h0, h1, P(1, -1, 2), P(1, 1, 2), true, out));
}

TEST_F(LinesTest, NoCrossing) {
    P out;
    EXPECT_FALSE(ZOR::inters(P(0, 0, 0), P(0, 1, 0), P(1, 0, 0), P(1, 5, 0), false, out));
    EXPECT_FALSE(ZOR::inters(P(0, 0, 0), P(1, 1, 0), P(0, 1, 0), P(2, 3, 0), false, out));
    EXPECT_FALSE(ZOR::inters(P(1, 1, 0), P(1, 1, 0), P(0, 0, 0), P(2, 0, 0), false, out));
    // The boxes overlap, but the lines cross at (0.8, 0.8), past the end of c-d.
    const P a(0, 0, 0), b(1, 1, 0), c(0, 1, 0), d(0.4, 0.9, 0);
    EXPECT_FALSE(ZOR::inters(a, b, c, d, true, out));
    EXPECT_TRUE(ZOR::inters(a, b, c, d, false, out));
}

TEST_F(LinesTest, NearlyVerticalSecondLineUsesItsEndX) {
    P out;
    const double x = 1 + 5e-10;
    ASSERT_TRUE(ZOR::inters(P(0, 0, 0), P(4, 0, 0), P(1, -1, 0), P(x, 1, 0), false, out));
    EXPECT_THAT(Xyz(out), ElementsAre(x, 0, 0));
}

TEST_F(LinesTest, BoundedCrossingWithinToleranceOfAnEnd) {
    const P a(0, 0, 0), b(-1, 0, 0);
    P out;
    EXPECT_TRUE(ZOR::inters(a, b, P(1e-5, -1, 0), P(1e-5, 1, 0), true, out));
    EXPECT_FALSE(ZOR::inters(a, b, P(2e-5, -1, 0), P(2e-5, 1, 0), true, out));
    CZorPoint3dTol wide(1e-4);
    EXPECT_TRUE(ZOR::inters(a, b, P(2e-5, -1, 0), P(2e-5, 1, 0), true, out));
}

TEST_F(LinesTest, PointOnSegment) {
    const P a(0, 0, 0), b(-1, 0, 0);
    EXPECT_TRUE(ZOR::g_line_pt(a, b, P(-0.5, 1e-5, 0)));  // exactly tol off the line
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(-0.5, 1.1e-5, 0)));
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(-0.5, 0, 1.1e-5)));  // z counts
    // Within tol of an end is on the segment, also beyond that end, whichever end it is.
    for (const bool forward : {true, false}) {
        EXPECT_TRUE(ZOR::g_line_pt(forward ? a : b, forward ? b : a, P(1e-5, 0, 0)));
        EXPECT_FALSE(ZOR::g_line_pt(forward ? a : b, forward ? b : a, P(1.1e-5, 0, 0)));
    }
    EXPECT_TRUE(ZOR::g_line_pt(a, a, P(0, 1e-6, 0)));  // a degenerate segment holds its point
    EXPECT_FALSE(ZOR::g_line_pt(a, a, P(0, 1e-3, 0)));
}

TEST_F(LinesTest, PointOnSegmentAgreesWithThePlainTests) {
    // Points around segments of every size and place, within a few tolerances of the line,
    // the ends and beyond them, against the tests without the box that turns far points away.
    const auto plain = [](const P& a, const P& b, const P& p) {
        if (p == a || p == b) return true;
        if (a == b) return false;
        const P f = ZOR::g_lotp(a, b, p);
        if (p.distanceTo(f) > CZorPoint3d::tol) return false;
        return (f - a).normalize() == (b - f).normalize();
    };
    std::mt19937 rng(23);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    int on = 0;
    for (const double tol : {1e-5, 1e-2, 1e-11}) {
        CZorPoint3dTol scope(tol);
        for (int round = 0; round < 4000; ++round) {
            const double scale = std::pow(10.0, 10 * unit(rng) - 4);
            const P a(1e5 * (unit(rng) - 0.5), 1e5 * (unit(rng) - 0.5), 0);
            const P b =
                round % 50 == 0 ? a : a + CZorVector3d(unit(rng) - 0.5, unit(rng) - 0.5, 0) * scale;
            // Along the segment and past its ends, or around an end, off by a few tolerances.
            const double t = round % 2 == 0 ? 1.4 * unit(rng) - 0.2 : (round % 4 == 1 ? 0 : 1);
            const CZorVector3d off(unit(rng) - 0.5, unit(rng) - 0.5, 0);
            const P p = a + (b - a) * t + off * (3 * tol);
            const bool expected = plain(a, b, p);
            ASSERT_EQ(ZOR::g_line_pt(a, b, p), expected) << tol << " " << round;
            on += expected;
        }
    }
    EXPECT_GT(on, 2000);
}

TEST_F(LinesTest, FootOfPerpendicular) {
    EXPECT_THAT(Xyz(ZOR::g_lotp(P(0, 0, 0), P(2, 0, 0), P(1, 5, 7))), ElementsAre(1, 0, 0));
    EXPECT_THAT(Xyz(ZOR::g_lotp(P(0, 0, 0), P(0, 0, 2), P(1, 1, 5))), ElementsAre(0, 0, 5));
    EXPECT_THAT(Xyz(ZOR::g_lotp(P(1, 2, 3), P(1, 2, 3 + 1e-6), P(9, 9, 9))), ElementsAre(1, 2, 3));
}

}  // namespace
