#include "zor/geometry/formulas.h"

#include <span>
#include <utility>

#include "zor/geometry/test_helpers.h"

namespace ZOR {
namespace {

using namespace test;
using ::testing::NanSensitiveDoubleEq;
constexpr double kTwoPi = 2 * kPi;

// One-argument angle functions at the edges of their rules. g_ang snaps only near two pi;
// g_dir_nrm keeps what lies exactly its tolerance away. Hostile input ends in NaN or in range,
// never in a loop: g_dir_nrm never raises negative input, however far out, and the quarter
// index of g_qw(1e300) overflows to 0x80000000.
TEST(AngleTest, OneArgumentRules) {
    using Cases = std::pair<double, double>[];  // argument, result
    const auto check = [](const char* name, double (*f)(double),
                          std::span<const std::pair<double, double>> cases) {
        for (const auto& [w, expected] : cases) {
            EXPECT_THAT(f(w), NanSensitiveDoubleEq(expected)) << name << "(" << w << ")";
        }
    };
    const Cases ang = {{kTwoPi, 0.0},           {kTwoPi + 5e-9, 0.0}, {-1e-12, kTwoPi - 1e-12},
                       {-kPi / 2, 3 * kPi / 2}, {kInf, kNan},         {kNan, kNan}};
    check("g_ang", g_ang, ang);
    const Cases signedAng = {{kPi, kPi}, {-kPi, -kPi}, {3 * kPi / 2, -kPi / 2}, {-kInf, kNan}};
    check("g_signed_ang", g_signed_ang, signedAng);
    const Cases dirNrm = {{kPi - 0.0005, 0.0}, {3 * kPi, 0.0}, {-1.0, -1.0},  {0.001, 0.001},
                          {kInf, kNan},        {-1e10, -1e10}, {-kInf, -kInf}};
    check("g_dir_nrm", g_dir_nrm, dirNrm);
    const Cases qw = {{-0.9, -kPi / 2}, {0.7, 0.0},   {7 * kPi / 4 + 0.1, 0.0},
                      {kPi + 0.1, kPi}, {kNan, kNan}, {1e300, 0.0}};
    check("g_qw", g_qw, qw);
    const Cases rndQuad = {
        {0.0005, 0.0}, {kTwoPi - 0.0005, 0.0}, {kPi / 2 + 0.0005, kPi / 2}, {0.01, 0.01}};
    check("g_rnd_quad", g_rnd_quad, rndQuad);
    // Repeated subtraction, not a remainder: the rounding of each step is part of the result.
    double expected = 7 * kTwoPi + 1.0;
    while (expected >= kTwoPi) expected -= kTwoPi;
    EXPECT_EQ(g_ang(7 * kTwoPi + 1.0), expected);
    EXPECT_NEAR(g_ang(kTwoPi + 2e-8), 2e-8, 1e-15);
    EXPECT_LT(g_ang(1e300), kTwoPi);
    EXPECT_LE(std::fabs(g_signed_ang(-1e300)), kPi);

    EXPECT_TRUE(g_ang_equal(0.0001, kTwoPi - 0.0001, 0.001));
    EXPECT_FALSE(g_ang_equal(1.0, 1.002, 0.001));
    EXPECT_FALSE(g_ang_equal(0.0, 0.5, 0.5));
}

TEST(AngleTest, DifferencesAndSweeps) {
    EXPECT_DOUBLE_EQ(g_dw(3.5, 0.0), 3.5 - kPi);
    EXPECT_DOUBLE_EQ(g_dw1(0.3, 0.0), kPi - 0.3);
    EXPECT_DOUBLE_EQ(g_w_mid(kPi / 2, 0.0), 5 * kPi / 4);
    EXPECT_DOUBLE_EQ(g_w_halb(0.1, 6.0), 3.05 + kPi);  // not normalised

    const P apex(0, 0, 0), east(1, 0, 0), north(0, 2, 0), south(0, -1, 0);
    EXPECT_DOUBLE_EQ(g_aabs(east, apex, south), kPi / 2);
    EXPECT_DOUBLE_EQ(g_aabs(north, apex, south), kPi);
    // From the ray to p2 to the ray to p0, and the other way round.
    EXPECT_DOUBLE_EQ(g_delta_w(east, apex, north), 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w1(east, apex, north), kPi / 2);
    EXPECT_DOUBLE_EQ(g_delta_w2(north, apex, east), kPi / 2);
}

TEST(AngleTest, DirectionClasses) {
    // Even codes within 0.001 of an axis direction, odd ones between.
    const std::pair<double, int> oktants[] = {{0.0005, 0},  {-0.0005, 0},      {0.01, 1},
                                              {kPi / 2, 2}, {kPi + 0.0009, 4}, {kPi + 0.01, 5},
                                              {-0.01, 7}};
    for (const auto& [w, code] : oktants) EXPECT_EQ(g_oktant(w), code) << w;
    EXPECT_EQ(g_sextant(kPi / 4 + 0.0005), 2);
    EXPECT_EQ(g_sextant(kPi / 4 + 0.01), 3);
    EXPECT_EQ(g_sextant(-0.0005), 0);
    for (int k = 0; k < 8; ++k) {
        EXPECT_EQ(g_sextant(k * kPi / 4), 2 * k) << k;
        EXPECT_EQ(g_sextant(k * kPi / 4 + 0.1), 2 * k + 1) << k;
    }
}

TEST(FormulaTest, GuardsAndArgumentOrder) {
    EXPECT_TRUE(std::isnan(g_sec_len2(2, 2)));
    EXPECT_TRUE(std::isnan(g_tang_cen(1.0, 0.0, 0.0, 0.0)));
    EXPECT_TRUE(std::isnan(g_fries_w(2, 1, -0.1)));
    EXPECT_FALSE(std::isnan(g_fries_w(2, 1, 0.8)));
    EXPECT_EQ(g_ellips_pt(3, 2, kPi / 2), 2.0);
    EXPECT_DOUBLE_EQ(g_fries_r(2, 1, 0.0), 5.0 / 8);  // flat: (a^2 + b^2) / (4a)
    EXPECT_DOUBLE_EQ(g_fries_r(2, 1, kPi), 5.0 / 8);
    EXPECT_NE(g_fries_r(2, 1, 0.001), 5.0 / 8);  // the quadratic
    // Lines y = 4 and x = 2, r = 1: the first line is given y before x, the second x before y.
    const CZorPoint3d c = g_tang2_cen(0.0, 4.0, 0.0, 0.0, 2.0, 0.0, 1.0);
    EXPECT_DOUBLE_EQ(c.x, 3.0);
    EXPECT_DOUBLE_EQ(c.y, 5.0);
}

TEST(FormulaTest, EllipseTangentDirections) {
    EXPECT_DOUBLE_EQ(g_elps_w(3, 2, 0.0, 0.0), kPi / 2);
    EXPECT_DOUBLE_EQ(g_elps_w(3, 2, 0.0, kPi), 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(g_elps_w(3, 2, 0.0, kPi / 2), kPi);
    EXPECT_EQ(g_elps_w(3, 2, 0.0, 3 * kPi / 2), 0.0);
    EXPECT_DOUBLE_EQ(g_elps_w(1, 1, 0.5, 5 * kPi / 4), 7 * kPi / 4 + 0.5);
    // The axis tests read the point tolerance: y ~ 1e-4 is off the axis at 1e-5, on it at 1e-3.
    EXPECT_NEAR(g_elps_w(1, 1, 0.0, 1e-4), kPi / 2 + 1e-4, 1e-12);
    CZorPoint3dTol wide(1e-3);
    EXPECT_EQ(g_elps_w(1, 1, 0.0, 1e-4), kPi / 2);
}

}  // namespace
}  // namespace ZOR
