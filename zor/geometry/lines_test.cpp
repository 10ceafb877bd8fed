#include "zor/geometry/lines.h"

#include <random>

#include "zor/geometry/test_helpers.h"

namespace {

using namespace ZOR::test;
using LinesTest = PointTolTest;

TEST_F(LinesTest, Crossings) {
    // The crossing takes z from the first line, unless that one is vertical: then the lines
    // trade places. Bounded, the crossing must lie on both segments in space, within the
    // tolerance of an end. A nearly vertical second line gives the x of its end.
    const P h0(-1, 0, 2), h1(3, 0, 2), v0(1, -1, 7), v1(1, 1, 7), o(0, 0, 0), w(-1, 0, 0);
    const P a(0, 0, 0), b(1, 1, 0), c(0, 1, 0), d(0.4, 0.9, 0);  // boxes overlap, lines don't
    const P none(kNan, 0, 0);
    const struct {
        P a0, a1, b0, b1;
        bool bounded;
        P at;
    } cases[] = {
        {{0, 0, 3}, {2, 2, 9}, {0, 2, 5}, {2, 0, 5}, false, {1, 1, 3}},
        {h0, h1, v0, v1, false, {1, 0, 2}},
        {v0, v1, h0, h1, false, {1, 0, 2}},
        {h0, h1, v0, v1, true, none},
        {h0, h1, {1, -1, 2}, {1, 1, 2}, true, {1, 0, 2}},
        {{0, 0, 0}, {4, 0, 0}, {1, -1, 0}, {1 + 5e-10, 1, 0}, false, {1 + 5e-10, 0, 0}},
        {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 5, 0}, false, none},
        {{0, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 3, 0}, false, none},
        {{1, 1, 0}, {1, 1, 0}, {0, 0, 0}, {2, 0, 0}, false, none},
        {a, b, c, d, true, none},
        {a, b, c, d, false, {0.8, 0.8, 0}},
        {o, w, {1e-5, -1, 0}, {1e-5, 1, 0}, true, {1e-5, 0, 0}},
        {o, w, {2e-5, -1, 0}, {2e-5, 1, 0}, true, none},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(&t - cases);
        P out;
        const bool found = ZOR::inters(t.a0, t.a1, t.b0, t.b1, t.bounded, out);
        EXPECT_EQ(found, t.at.isValid());
        if (found) {
            EXPECT_TRUE(near(out, t.at, 1e-12));
        }
    }
    CZorPoint3dTol wide(1e-4);
    P out;
    EXPECT_TRUE(ZOR::inters(o, w, P(2e-5, -1, 0), P(2e-5, 1, 0), true, out));
}

TEST_F(LinesTest, PointOnSegmentAndFoot) {
    const P a(0, 0, 0), b(-1, 0, 0);
    EXPECT_TRUE(ZOR::g_line_pt(a, b, P(-0.5, 1e-5, 0)));  // exactly tol off the line
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(-0.5, 1.1e-5, 0)));
    EXPECT_FALSE(ZOR::g_line_pt(a, b, P(-0.5, 0, 1.1e-5)));  // z counts
    // Within tol of an end is on the segment, also beyond that end, whichever end it is.
    for (const bool forward : {true, false}) {
        EXPECT_TRUE(ZOR::g_line_pt(forward ? a : b, forward ? b : a, P(1e-5, 0, 0)));
        EXPECT_FALSE(ZOR::g_line_pt(forward ? a : b, forward ? b : a, P(1.1e-5, 0, 0)));
    }
    EXPECT_THAT(Xyz(ZOR::g_lotp(P(0, 0, 0), P(2, 0, 0), P(1, 5, 7))), ElementsAre(1, 0, 0));
    EXPECT_THAT(Xyz(ZOR::g_lotp(P(0, 0, 0), P(0, 0, 2), P(1, 1, 5))), ElementsAre(0, 0, 5));
    EXPECT_THAT(Xyz(ZOR::g_lotp(P(1, 2, 3), P(1, 2, 3 + 1e-6), P(9, 9, 9))), ElementsAre(1, 2, 3));
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

}  // namespace
