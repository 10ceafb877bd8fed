#include "zor/geometry/point3d.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace {

using ::testing::ElementsAre;
using P = CZorPoint3d;

constexpr double kQuietNan = std::numeric_limits<double>::quiet_NaN();

std::array<double, 3> Xyz(const double* p) {
    return {p[0], p[1], p[2]};
}

// Every test leaves the process-wide point tolerance as it found it.
class PointTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;
};

TEST(NanTest, HasAllBitsButTheSignSet) {
    const double v = ZOR::nan();
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    EXPECT_EQ(bits, 0x7FFFFFFFFFFFFFFFull);
}

TEST_F(PointTest, EqualityIsEuclideanAndInclusive) {
    const P o(0, 0, 0);
    EXPECT_EQ(P::tol, 1e-5);
    EXPECT_TRUE(o == P(1e-5, 0, 0));
    EXPECT_FALSE(o == P(1.1e-5, 0, 0));
    EXPECT_FALSE(o == P(0, 0, 1.1e-5));
    // Each coordinate passes, the distance 1.13e-5 does not.
    EXPECT_TRUE(o != P(0.8e-5, 0.8e-5, 0));
    // A distance of exactly tol is equal; one step beyond is not.
    CZorPoint3dTol wide(5.0);
    EXPECT_TRUE(o == P(3, 4, 0));
    EXPECT_FALSE(o == P(3, std::nextafter(4.0, 5.0), 0));
}

TEST_F(PointTest, NanCoordinatesAreEqualOnlyToTheSameObject) {
    const P p(kQuietNan, 0, 0);
    const P copy(p);
    EXPECT_TRUE(p == p);
    EXPECT_FALSE(p == copy);
    EXPECT_FALSE(p.isValid());
    EXPECT_FALSE(P(0, 0, -std::numeric_limits<double>::infinity()).isValid());
}

TEST_F(PointTest, OrderIsExactAndLexicographic) {
    const P a(1, 0, 0), b(1 + 1e-9, 0, 0);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a < b && b > a && !(a > b));
    // Later coordinates are consulted only on exact ties.
    EXPECT_TRUE(P(1, 9, 9) < P(1 + 1e-12, 0, 0));
    EXPECT_TRUE(P(1, 2, 3) < P(1, 2, 4));
    EXPECT_FALSE(P(1, 2, 3) < P(1, 2, 3) || P(1, 2, 3) > P(1, 2, 3));
}

// A point and a vector inside another object, as a segment holds its ends and a plane its normal.
struct Held {
    P p;
    CZorVector3d v;
};

// Each writes a held value, then the same coordinate through a view of it, and reads the held
// value back. Out of line, so that an optimised build has only the types to decide whether the
// view can reach the held value. The views are deliberate reinterpretations, which the
// sanitizer's dynamic-type check would report.
[[gnu::noinline, gnu::no_sanitize("vptr")]] double WriteThroughView(Held& h, CZorVector3d& view) {
    h.p.x = 1;
    view.x = 2;
    return h.p.x;
}
[[gnu::noinline, gnu::no_sanitize("vptr")]] double WriteThroughView(Held& h, P& view) {
    h.v.x = 1;
    view.x = 2;
    return h.v.x;
}

TEST_F(PointTest, ViewsAreTheSameObject) {
    Held h;
    EXPECT_EQ(WriteThroughView(h, h.p.asVector()), 2.0);
    EXPECT_EQ(WriteThroughView(h, h.v.asPoint()), 2.0);
    const Held& c = h;
    EXPECT_EQ(static_cast<const void*>(&c.p.asVector()), &c.p);
    EXPECT_EQ(static_cast<const void*>(&c.v.asPoint()), &c.v);
}

TEST_F(PointTest, ConstructionArithmeticAndViews) {
    P p(1, 2, 3);
    EXPECT_THAT(Xyz(P(static_cast<const double*>(nullptr))), ElementsAre(0, 0, 0));
    EXPECT_THAT(Xyz(P(4, 6, 3) - p), ElementsAre(3, 4, 0));
    EXPECT_EQ(P(0, 0, 2).distanceTo(P()), 2.0);
}

TEST_F(PointTest, HomogeneousTransformDividesByW) {
    const double m[4][4] = {{1, 0, 0, 10}, {0, 1, 0, 20}, {0, 0, 1, 30}, {0, 0, 0, 2}};
    EXPECT_THAT(Xyz(P(2, 4, 6) * m), ElementsAre(6, 12, 18));
    // The perspective row: w = 1 + x.
    const double persp[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 1}};
    P q(1, 4, 8);
    EXPECT_THAT(Xyz(q *= persp), ElementsAre(0.5, 2, 4));
}

TEST_F(PointTest, ToleranceScopeSetsAndRestores) {
    {
        CZorPoint3dTol ignored(0.0);
        ignored = 1e-12;  // not above 1e-12
        ignored = kQuietNan;
        EXPECT_EQ(P::tol, 1e-5);
    }
    {
        CZorPoint3dTol t(1e-3);
        EXPECT_EQ(P::tol, 1e-3);
        EXPECT_EQ(static_cast<double>(t), 1e-5);
        t = 2e-3;
        EXPECT_EQ(P::tol, 2e-3);
        EXPECT_EQ(static_cast<double>(t), 1e-5);
        {
            CZorPoint3dTol inner(0.5);
            const CZorPoint3dTol copy(inner);  // carries the saved value, leaves tol alone
            EXPECT_EQ(static_cast<double>(copy), 2e-3);
            EXPECT_EQ(P::tol, 0.5);
        }
        EXPECT_EQ(P::tol, 2e-3);
    }
    EXPECT_EQ(P::tol, 1e-5);
    const auto nested = [] {
        CZorPoint3dTol outer(0.1), inner(0.2);
        throw std::runtime_error("leave");
    };
    EXPECT_THROW(nested(), std::runtime_error);
    EXPECT_EQ(P::tol, 1e-5);
}

TEST_F(PointTest, FreeFunctions) {
    const P o;
    EXPECT_DOUBLE_EQ(ZOR::angle(o, P(0, -1, 0)), 1.5 * std::numbers::pi);
    const double just_below = ZOR::angle(o, P(1, -1e-30, 0));
    EXPECT_TRUE(just_below > 6.28 && just_below < 2 * std::numbers::pi + 1e-15);
    EXPECT_EQ(ZOR::angle(o, o), 0.0);
    EXPECT_EQ(ZOR::polar(P(1, 1, 7), 0, 2).x, 3.0);
    EXPECT_TRUE(std::signbit(ZOR::polar(P(1, 1, -0.0), 0, 2).z));  // z stays, even its sign

    EXPECT_EQ(ZOR::round(2.5, 1.0), 3.0);
    EXPECT_EQ(ZOR::round(-2.5, 1.0), -2.0);
    EXPECT_EQ(ZOR::round(7.3, 0.0), 7.3);
    EXPECT_EQ(ZOR::round(7.3, 0.99e-9), 7.3);
    EXPECT_EQ(ZOR::g_p_rnd(P(1.2, -1.26, 0.3), 0.5).y, -1.5);

    // Below the tolerance in magnitude becomes 0; at the tolerance stays.
    EXPECT_THAT(Xyz(ZOR::g_nrm_p(P(0.99e-5, -0.99e-5, 1e-5))), ElementsAre(0, 0, 1e-5));
    EXPECT_THAT(Xyz(ZOR::p_min(P(1, 5, -1), P(2, 3, -2))), ElementsAre(1, 3, -2));
    EXPECT_THAT(Xyz(ZOR::p_max(P(1, 5, -1), P(2, 3, -2))), ElementsAre(2, 5, -1));
}

}  // namespace
