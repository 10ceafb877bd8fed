#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "zor/geometry/formulas.h"
#include "zor/polyline/vertex.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// The test as the angles of the tangents put it, with no shortcut.
bool tangentByAngles(const CZorVertex& a, const CZorVertex& b, const CZorPoint3d& p) {
    const double wa = a.wTan(p);
    const double wb = b.wTan(p);
    return ZOR::g_ang_equal(wa, wb, 1e-5) || ZOR::g_ang_equal(wa, wb + kPi, 1e-5);
}

// A segment through `p` whose tangent there runs at `w`: a line, or an arc of either sense.
CZorVertex throughAt(const CZorPoint3d& p, double w, int kind, double size) {
    const CZorPoint3d s = ZOR::polar(p, w + kPi, size);
    const CZorPoint3d e = ZOR::polar(p, w, size);
    if (kind == 0) return CZorVertex(s, e, 0.0);
    // The arc of radius `size` tangent to the line at `p`, its centre on the chosen side.
    const double side = kind == 1 ? kPi / 2 : -kPi / 2;
    const CZorPoint3d c = ZOR::polar(p, w + side, size);
    const double at = ZOR::angle(c, p);
    return kind == 1 ? CZorVertex(c, size, at - 0.5, at + 0.5)
                     : CZorVertex(c, size, at - 0.5, at + 0.5).reverse();
}

TEST(VertexTangency, AgreesWithTheAnglesAtEveryCrossingAngle) {
    // Pairs of lines and arcs meeting at one point at angles from equal and opposite through
    // the edge of the 1e-5 tolerance to clearly crossing, in every direction of the plane.
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const double turns[] = {0.0,    3e-6, 9.9e-6, 1e-5, 1.01e-5, 3e-5, 1e-4,      9e-4,
                            1.1e-3, 5e-3, 0.3,    1.0,  kPi / 2, kPi,  kPi - 2e-5};
    int tangents = 0, cases = 0;
    for (int round = 0; round < 200; ++round) {
        const CZorPoint3d p(2000 * unit(rng) - 1000, 2000 * unit(rng) - 1000, 0.0);
        const double w = 2 * kPi * unit(rng);
        const double size = std::pow(10.0, 4 * unit(rng) - 2);
        for (const double turn : turns) {
            for (const double sign : {1.0, -1.0}) {
                for (int ka = 0; ka < 3; ++ka) {
                    for (int kb = 0; kb < 3; ++kb) {
                        const CZorVertex a = throughAt(p, w, ka, size);
                        const CZorVertex b = throughAt(p, w + sign * turn, kb, 0.7 * size);
                        const bool expected = tangentByAngles(a, b, p);
                        ASSERT_EQ(ZOR::g_vx_is_tang(a, b, p), expected)
                            << round << " " << turn << " " << ka << kb;
                        tangents += expected;
                        ++cases;
                    }
                }
            }
        }
    }
    // Both answers occur in numbers.
    EXPECT_GT(tangents, cases / 10);
    EXPECT_LT(tangents, cases / 2);
    // Segments without a direction: a line of no length and an arc around the point itself.
    const CZorPoint3d o(1, 1, 0);
    const CZorVertex dot(o, o, 0.0);
    const CZorVertex line(CZorPoint3d(0, 1, 0), CZorPoint3d(2, 1, 0), 0.0);
    EXPECT_EQ(ZOR::g_vx_is_tang(dot, line, o), tangentByAngles(dot, line, o));
    EXPECT_EQ(ZOR::g_vx_is_tang(line, dot, o), tangentByAngles(line, dot, o));
    const CZorVertex around(o, 1.0, 0.0, 1.0);
    EXPECT_EQ(ZOR::g_vx_is_tang(around, line, o), tangentByAngles(around, line, o));
}

}  // namespace
