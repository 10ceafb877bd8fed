#include "zor/geometry/point3d.h"

#include <bit>
#include <cstdint>
#include <stdexcept>

#include "zor/geometry/test_helpers.h"

namespace {

using namespace ZOR::test;
using PointTest = PointTolTest;

TEST(NanTest, HasAllBitsButTheSignSet) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(ZOR::nan()), 0x7FFFFFFFFFFFFFFFull);
}

TEST_F(PointTest, EqualityIsEuclideanAndInclusiveOrderIsExact) {
    const P o(0, 0, 0);
    EXPECT_EQ(P::tol, 1e-5);
    EXPECT_TRUE(o == P(1e-5, 0, 0));
    EXPECT_FALSE(o == P(1.1e-5, 0, 0));
    EXPECT_FALSE(o == P(0, 0, 1.1e-5));
    EXPECT_TRUE(o != P(0.8e-5, 0.8e-5, 0));  // each coordinate passes, the distance does not
    {
        CZorPoint3dTol wide(5.0);
        EXPECT_TRUE(o == P(3, 4, 0));  // a distance of exactly tol
        EXPECT_FALSE(o == P(3, std::nextafter(4.0, 5.0), 0));
    }

    const P nan(kNan, 0, 0), copy(nan);  // NaN is equal only to the very same object
    EXPECT_TRUE(nan == nan);
    EXPECT_FALSE(nan == copy);
    EXPECT_FALSE(nan.isValid() || P(0, 0, -kInf).isValid());

    // Order is exact and lexicographic: later coordinates count only on exact ties.
    const P a(1, 0, 0), b(1 + 1e-9, 0, 0);
    EXPECT_TRUE(a == b && a < b && b > a && !(a > b));
    EXPECT_TRUE(P(1, 9, 9) < P(1 + 1e-12, 0, 0) && P(1, 2, 3) < P(1, 2, 4));
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
    EXPECT_THAT(Xyz(P(static_cast<const double*>(nullptr))), ElementsAre(0, 0, 0));
}

TEST_F(PointTest, ToleranceScopeSetsAndRestores) {
    {
        CZorPoint3dTol t(1e-12);  // not above 1e-12: ignored, as NaN is
        t = kNan;
        EXPECT_EQ(P::tol, 1e-5);
        t = 2e-3;
        EXPECT_EQ(P::tol, 2e-3);
        EXPECT_EQ(static_cast<double>(t), 1e-5);  // the saved value, not the current one
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

TEST_F(PointTest, TransformAndFreeFunctions) {
    const double m[4][4] = {{1, 0, 0, 10}, {0, 1, 0, 20}, {0, 0, 1, 30}, {0.5, 0, 0, 1}};
    P q(2, 4, 6);
    EXPECT_THAT(Xyz(q *= m), ElementsAre(6, 12, 18));  // w = 0.5 x + 1
    const P o;
    EXPECT_DOUBLE_EQ(ZOR::angle(o, P(0, -1, 0)), 1.5 * kPi);
    const P moved = ZOR::polar(P(1, 1, -0.0), 0, 2);
    EXPECT_TRUE(moved.x == 3.0 && std::signbit(moved.z));  // z stays, even its sign

    EXPECT_EQ(ZOR::round(2.5, 1.0), 3.0);
    EXPECT_EQ(ZOR::round(-2.5, 1.0), -2.0);
    EXPECT_EQ(ZOR::round(7.3, 0.99e-9), 7.3);
    EXPECT_EQ(ZOR::g_p_rnd(P(1.2, -1.26, 0.3), 0.5).y, -1.5);
    // Below the tolerance in magnitude becomes 0; at the tolerance stays.
    EXPECT_THAT(Xyz(ZOR::g_nrm_p(P(0.99e-5, -0.99e-5, 1e-5))), ElementsAre(0, 0, 1e-5));

    EXPECT_THAT(Xyz(ZOR::p_min(P(1, 5, -1), P(2, 3, -2))), ElementsAre(1, 3, -2));
    EXPECT_THAT(Xyz(ZOR::p_max(P(1, 5, -1), P(2, 3, -2))), ElementsAre(2, 5, -1));
    // Without a strict order (signed zeros, NaN) the second point wins, in both.
    const P a(0.0, kNan, 1), b(-0.0, 1, kNan);
    for (const P& r : {ZOR::p_min(a, b), ZOR::p_max(a, b)}) {
        EXPECT_TRUE(std::signbit(r.x));
        EXPECT_THAT(Xyz(r), ElementsAre(0, 1, IsNan()));
    }
}

}  // namespace
