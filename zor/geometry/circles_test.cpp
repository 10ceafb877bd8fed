#include "zor/geometry/circles.h"

#include <random>
#include <vector>

#include "zor/geometry/test_helpers.h"

namespace ZOR {
namespace {

using namespace test;
const double kSin60 = std::sqrt(3.0) / 2;

// The list starts with one point, so that "left untouched" and "emptied" differ.
class CircleTest : public PointTolTest {
  protected:
    // The call said true exactly when it found points, and the list holds these, in order.
    ::testing::AssertionResult gives(bool result, const std::vector<P>& expected) const {
        bool same = result == !expected.empty() && list_.len() == static_cast<int>(expected.size());
        for (int i = 0; same && i < list_.len(); ++i) same = near(list_[i], expected[i]);
        if (same) return ::testing::AssertionSuccess();
        auto failure = ::testing::AssertionFailure() << result << ":";
        for (int i = 0; i < list_.len(); ++i) failure << " " << list_[i].x << "," << list_[i].y;
        return failure;
    }
    CZorPoint3dArray list_ = makeList({{99, 99, 99}});
};

TEST_F(CircleTest, CircleCircle) {
    const P o(0, 0, 0);
    EXPECT_TRUE(gives(g_cci(list_, o, 1, P(2, 0, 0), 1), {{1, 0, 0}}));
    EXPECT_TRUE(gives(g_cci(list_, o, 1, P(2 + 0.99e-5, 0, 0), 1), {{1, 0, 0}}));
    EXPECT_TRUE(gives(g_cci(list_, o, 1, P(2 + 1.01e-5, 0, 0), 1), {}));
    // Inner touch: the centre distance counts z, the point comes from the larger circle.
    EXPECT_TRUE(gives(g_cci(list_, o, 2, P(0, 0, 1), 3), {{3, 0, 1}}));
    EXPECT_TRUE(gives(g_cci(list_, o, 3, P(0, 0, 1), 2), {{3, 0, 0}}));
    // Crossing: the point left of c1 -> c2 first, at the z of c1.
    EXPECT_TRUE(
        gives(g_cci(list_, P(0, 0, 3), 1, P(1, 0, 3), 1), {{0.5, kSin60, 3}, {0.5, -kSin60, 3}}));
    // One circle twice: the point at angle 0 from c2. A point circle on the other, NaN.
    EXPECT_TRUE(gives(g_cci(list_, P(1, 1, 0), 2, P(1, 1, 0), 2), {{3, 1, 0}}));
    EXPECT_TRUE(gives(g_cci(list_, P(1, 1, 0), 1, P(1, 1, 0), 2), {}));
    EXPECT_TRUE(gives(g_cci(list_, P(1, 0, 0), 0, o, 1), {{1, 0, 0}}));
    EXPECT_TRUE(gives(g_cci(list_, P(kNan, 0, 0), 1, o, 1), {}));
    // The inputs may be points of the result list.
    list_ = makeList({{1, 0, 0}, o});
    EXPECT_TRUE(
        gives(g_cci(list_, list_[0], 1, list_[1], 1), {{0.5, -kSin60, 0}, {0.5, kSin60, 0}}));

    // A tiny point tolerance leaves the fixed angle bound 1e-5 / r1 to decide about one point.
    CZorPoint3dTol fine(1e-11);
    EXPECT_TRUE(g_cci(list_, o, 1, P(2 - 4e-11, 0, 0), 1));
    EXPECT_EQ(list_.len(), 1);  // half angle ~6.3e-6
    EXPECT_TRUE(g_cci(list_, o, 1, P(2 - 4e-10, 0, 0), 1));
    EXPECT_EQ(list_.len(), 2);  // half angle ~2e-5
    CZorPoint3dTol wide(1e-3);
    EXPECT_TRUE(g_cci(list_, o, 1, P(2.0009, 0, 0), 1));
}

TEST_F(CircleTest, CircleLine) {
    // Ascending in the dominant coordinate whichever way the line runs, at the centre's z;
    // exactly 45 degrees goes by x, a hair steeper by y.
    const P c(0, 0, 4);
    EXPECT_TRUE(gives(g_cli0(list_, c, 1, P(-5, 0, 0), P(5, 0, 0)), {{-1, 0, 4}, {1, 0, 4}}));
    EXPECT_TRUE(gives(g_cli0(list_, c, 1, P(5, 0, 0), P(-5, 0, 0)), {{-1, 0, 4}, {1, 0, 4}}));
    EXPECT_TRUE(gives(g_cli0(list_, c, 1, P(0, 5, 0), P(0, -5, 0)), {{0, -1, 4}, {0, 1, 4}}));
    const double h = std::sqrt(0.5);
    const P o(0, 0, 0);
    EXPECT_TRUE(gives(g_cli0(list_, o, 1, P(2, -2, 0), P(-2, 2, 0)), {{-h, h, 0}, {h, -h, 0}}));
    EXPECT_TRUE(g_cli0(list_, o, 1, P(2, -2.001, 0), P(-2, 2.001, 0)));
    EXPECT_LT(list_[0].y, 0.0);

    // Tangent from outside within the tolerance; from inside the roots merge within half of it.
    const auto lineAt = [&](double y) { return g_cli0(list_, o, 1, P(-3, y, 0), P(3, y, 0)); };
    EXPECT_TRUE(gives(lineAt(1 + 0.9e-5), {{0, 1 + 0.9e-5, 0}}));
    EXPECT_TRUE(gives(lineAt(1 + 1.1e-5), {}));
    EXPECT_TRUE(gives(lineAt(1 - 1e-11), {{0, 1, 0}}));
    EXPECT_TRUE(lineAt(1 - 1e-9));
    EXPECT_EQ(list_.len(), 2);
    // Two equal points make no line; a point circle on the line is touched once.
    EXPECT_TRUE(gives(g_cli0(list_, o, 1, P(1, 0, 0), P(1, 0, 0)), {}));
    EXPECT_TRUE(gives(g_cli0(list_, P(2, 0, 0), 0, o, P(5, 0, 0)), {{2, 0, 0}}));
}

TEST_F(CircleTest, SegmentAndArcFiltersArcArc) {
    const P c(0, 0, 0);
    // g_cli leaves its list alone when the infinite line misses, and empties it when the
    // segment stops short.
    EXPECT_FALSE(g_cli(list_, c, 1, P(-3, 1 + 2e-5, 0), P(3, 1 + 2e-5, 0)));
    EXPECT_TRUE(gives(true, {{99, 99, 99}}));
    EXPECT_TRUE(gives(g_cli(list_, c, 1, P(-0.5, 0, 0), P(0.5, 0, 0)), {}));
    EXPECT_TRUE(gives(g_cli(list_, c, 1, P(0, 0, 0), P(-5, 0, 0)), {{-1, 0, 0}}));

    EXPECT_TRUE(gives(g_ali(list_, c, 1, 0, kPi, P(3, 0.5, 0), P(-3, 0.5, 0)),
                      {{-kSin60, 0.5, 0}, {kSin60, 0.5, 0}}));
    EXPECT_TRUE(gives(g_ali(list_, c, 1, kPi, 0, P(3, 0.5, 0), P(-3, 0.5, 0)), {}));
    list_.append(c);
    EXPECT_TRUE(gives(g_ali(list_, c, 1, 0, kPi, P(3, 5, 0), P(-3, 5, 0)), {}));  // emptied

    // Circle with arc: true even when nothing is found.
    EXPECT_TRUE(g_cai(list_, P(1, 0, 0), 1, c, 1, kPi, 2 * kPi - 0.1));
    EXPECT_TRUE(gives(true, {{0.5, -kSin60, 0}}));
    EXPECT_TRUE(g_cai(list_, P(5, 0, 0), 1, c, 1, 0, kPi));
    EXPECT_TRUE(list_.isEmpty());
    list_.append(c);  // replaced, not appended to
    EXPECT_TRUE(
        gives(g_aai(list_, c, 1, 0, kPi, P(1, 0, 0), 1, 0, 2 * kPi - 0.01), {{0.5, kSin60, 0}}));
    EXPECT_TRUE(gives(g_aai(list_, c, 1, kPi / 2, kPi, P(1, 0, 0), 1, 0, kPi), {}));
    EXPECT_TRUE(gives(g_aai(list_, c, 1, 0, kPi, c, 2, 0, kPi), {}));
}

// The common end points of concentric arcs by the two passes as first written: the first arc's
// ends that the second's contain, then the second's that the first's contain and that are not
// yet in the result.
CZorPoint3dArray commonEnds(const CZorPoint3dArray& first, const CZorPoint3dArray& second) {
    CZorPoint3dArray out;
    for (int i = 0; i < first.len(); ++i) {
        if (second.indexOf(first[i]) >= 0) out.append(first[i]);
    }
    for (int i = 0; i < second.len(); ++i) {
        if (first.indexOf(second[i]) >= 0 && out.indexOf(second[i]) < 0) out.append(second[i]);
    }
    return out;
}

TEST_F(CircleTest, ConcentricArcsEqualTheTwoPassRule) {
    // Centres, radii and angles jittered around the tolerance, so that end points match, miss,
    // and reach two others at once.
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> slot(0, 2);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        const P c1(unit(rng), unit(rng), 0);
        const P c2 = c1 + CZorVector3d(unit(rng), unit(rng), unit(rng)) * 4e-6;
        const double r1 = 2 + unit(rng) * 3e-6;
        const double r2 = 2 + unit(rng) * 3e-6;
        const auto angleAt = [&] { return slot(rng) * kPi / 2 + unit(rng) * 6e-6; };
        const double a[4] = {angleAt(), angleAt(), angleAt(), angleAt()};
        const CZorPoint3dArray expected =
            commonEnds(makeList({polar(c1, a[0], r1), polar(c1, a[1], r1)}),
                       makeList({polar(c2, a[2], r2), polar(c2, a[3], r2)}));
        EXPECT_EQ(g_aai(list_, c1, r1, a[0], a[1], c2, r2, a[2], a[3]), !expected.isEmpty());
        ASSERT_EQ(list_.len(), expected.len()) << round;
        for (int i = 0; i < list_.len(); ++i) EXPECT_TRUE(near(list_[i], expected[i])) << round;
        found += expected.len();
    }
    EXPECT_GT(found, 100);
}

TEST_F(CircleTest, PointOnArc) {
    const P c(1, 1, 0);
    const auto on = [&](double a0, double a1, double w, double r = 1.0) {
        return g_arc_pt(c, 1, a0, a1, polar(c, w, r));
    };
    EXPECT_TRUE(on(1.0, 1.0, 1.0));  // a zero sweep, not a full circle
    EXPECT_FALSE(on(1.0, 1.0, 2.0));
    EXPECT_TRUE(on(3 * kPi / 2, kPi / 2, 0.0));
    EXPECT_FALSE(on(3 * kPi / 2, kPi / 2, kPi));
    EXPECT_TRUE(on(0, kPi, 1.0, 1 + 0.9e-5));
    EXPECT_FALSE(on(0, kPi, 1.0, 1 + 1.1e-5));
}

TEST_F(CircleTest, PointOnArcAgreesWithMeasuringBothEnds) {
    // Points on and near circles of many sizes and places, on, beyond and around the ends of
    // arcs, against the plain test that measures the distance to both end points.
    const auto plain = [](const P& c, double r, double a0, double a1, const P& p) {
        if (std::fabs(c.distanceTo(p) - r) > CZorPoint3d::tol) return false;
        double sweep = a1 - a0;
        if (sweep < 0) sweep += 2 * kPi;
        double pos = angle(c, p) - a0;
        if (pos < 0) pos += 2 * kPi;
        return sweep >= pos || p == polar(c, a0, r) || p == polar(c, a1, r);
    };
    std::mt19937 rng(17);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    int endHits = 0;
    for (const double tol : {1e-5, 1e-3, 1e-10}) {
        CZorPoint3dTol scope(tol);
        for (int round = 0; round < 3000; ++round) {
            const double r = std::pow(10.0, 8 * unit(rng) - 4);
            const P c(1e4 * (unit(rng) - 0.5), 1e4 * (unit(rng) - 0.5), 0);
            const double a0 = 2 * kPi * unit(rng), a1 = 2 * kPi * unit(rng);
            // Beyond an end by a few tolerances' worth of angle, or anywhere.
            const double end = unit(rng) < 0.5 ? a0 : a1;
            const double step = (unit(rng) - 0.5) * 8 * tol / r;
            const double w = round % 3 == 0 ? 2 * kPi * unit(rng) : end + step;
            const P p = polar(c, w, r + (unit(rng) - 0.5) * 2 * tol);
            const bool expected = plain(c, r, a0, a1, p);
            ASSERT_EQ(g_arc_pt(c, r, a0, a1, p), expected) << tol << " " << round;
            endHits += expected && round % 3 != 0;
        }
    }
    EXPECT_GT(endHits, 1000);
}

TEST_F(CircleTest, PerpendicularOrientationTangentPoint) {
    const P a(0, 0, 0), b(10, 0, 0);
    EXPECT_DOUBLE_EQ(g_lot(a, b, P(3, 2, 5)), kPi / 2);
    EXPECT_DOUBLE_EQ(g_lot(a, b, P(3, -2, -5)), 3 * kPi / 2);
    EXPECT_EQ(g_point_orient(a, b, P(5, -1, 0)), -1);
    EXPECT_EQ(g_point_orient(a, b, P(-20, 0, 0)), 1);
    EXPECT_TRUE(near(g_nm_pkt_tan(P(2, 0, 0), a, 1), P(0.5, -kSin60, 0)));
    EXPECT_TRUE(near(g_nm_pkt_tan(P(2, 0, 0), a, -1), P(0.5, kSin60, 0)));
    EXPECT_TRUE(std::isnan(g_nm_pkt_tan(P(0.5, 0, 0), a, 1).x));
}

TEST_F(CircleTest, ThreePointArcs) {
    P out(7, 7, 7);
    EXPECT_FALSE(g_arc3p_cen(P(0, 0, 0), P(1, 1, 0), P(3, 3, 0), out));  // collinear
    EXPECT_FALSE(g_arc3p_cen(P(0, 0, 0), P(1, 1, 0), P(0, 0, 0), out));
    EXPECT_FALSE(g_arc3p_cen(P(1, 0, 0), P(1, 5e-6, 0), P(3, 3, 0), out));
    EXPECT_EQ(out.x, 7.0);
    EXPECT_TRUE(g_arc3p_cen(P(4, 2, 0), P(2, 4, 0), P(0, 2, 0), out));
    EXPECT_TRUE(near(out, P(2, 2, 0)));
    EXPECT_TRUE(g_arc3p_tan(P(1, 0, 0), P(0.6, 0.8, 0), P(-1, 0, 0), out));
    EXPECT_TRUE(near(out, P(0.6, 0, 0)));

    const auto bulgeOf = [](P p0, P p1, P p2) {
        double bulge = 5.0;
        return g_arc3p_bulg(p0, p1, p2, bulge) ? bulge : -5.0;
    };
    EXPECT_NEAR(bulgeOf({-1, 0, 0}, {0, -1, 0}, {1, 0, 0}), 1.0, 1e-12);
    EXPECT_NEAR(bulgeOf({-1, 0, 0}, {0, 1, 0}, {1, 0, 0}), -1.0, 1e-12);
    EXPECT_NEAR(bulgeOf({1, 0, 0}, {-1, 0, 0}, {0, -1, 0}), std::tan(3 * kPi / 8), 1e-12);
    EXPECT_EQ(bulgeOf({0, 0, 0}, {1, 0, 0}, {2, 0, 0}), -5.0);

    EXPECT_TRUE(g_arc3p_orient(P(1, 0, 0), P(0, 1, 0), P(-1, 0, 0), P::kOrigin));
    EXPECT_FALSE(g_arc3p_orient(P(1, 0, 0), P(-1, 0, 0), P(0, 1, 0), P::kOrigin));
    EXPECT_FALSE(g_arc3p_orient(P(1, 0, 0), P(0, 1, 0), P(0, 1, 0), P::kOrigin));
}

TEST_F(CircleTest, Bulges) {
    EXPECT_EQ(g_arc_bulg(1.0, 1.0), 0.0);
    EXPECT_DOUBLE_EQ(g_arc_bulg(3 * kPi / 2, kPi / 2), 1.0);
    EXPECT_DOUBLE_EQ(g_arcmp_bulg(P(1, 0, 0), P(1, 1, 0), P(2, 0, 0)), std::tan(3 * kPi / 8));
    EXPECT_DOUBLE_EQ(g_bulg_len(P(0, 2, 0), P(2, 0, 0), P(0, 0, 0)), 3 * kPi);

    const P p0(0, 0, 0), p1(2, 0, 0);
    double b = 9.0;
    EXPECT_FALSE(g_arcrad_bulg(b, p0, p1, 0.999));
    EXPECT_FALSE(g_arcrad_bulg(b, p0, p0, 1.0));  // a zero chord carries no arc
    EXPECT_EQ(b, 9.0);
    EXPECT_TRUE(g_arcrad_bulg(b, p0, p1, 0.0));
    EXPECT_EQ(b, 0.0);
    EXPECT_DOUBLE_EQ(g_arcrad_bulg(p0, p1, 1.0), 1.0);
    EXPECT_DOUBLE_EQ(g_arcrad_bulg(p0, p1, -1.0), -1.0);
    EXPECT_DOUBLE_EQ(g_arcrad_bulg(p0, p1, -2.0), -2.0 - std::sqrt(3.0));
    EXPECT_TRUE(std::isnan(g_arcrad_bulg(p0, p1, 0.5)));
    EXPECT_TRUE(std::isnan(g_arcrad_bulg(p0, p1, kNan)));
}

}  // namespace
}  // namespace ZOR
