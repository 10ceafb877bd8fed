#include "zor/geometry/plane.h"

#include "zor/geometry/matrix3d.h"
#include "zor/geometry/test_helpers.h"

namespace {

using namespace ZOR::test;
using PlaneTest = PointTolTest;

TEST_F(PlaneTest, OnlySetNormalises) {
    CZorPlane p(P(0, 0, 0), V(0, 0, 5));
    EXPECT_EQ(p.normal().z, 5.0);
    EXPECT_EQ(p.set(P(1, 0, 0), V(0, 0, 5)).normal().z, 1.0);
    EXPECT_EQ(p.setNormal(V(0, 3, 0)).normal().y, 1.0);
    // From three points: the middle one is the position; the order turns the normal.
    const P a(1, 0, 0), b(0, 0, 0), c(0, 1, 0);
    EXPECT_THAT(Xyz(CZorPlane(a, b, c).normal()), ElementsAre(0, 0, 1));
    EXPECT_THAT(Xyz(CZorPlane(c, b, a).normal()), ElementsAre(0, 0, -1));
    const CZorPlane line(P(0, 0, 0), P(1, 1, 1), P(2, 2, 2));
    EXPECT_THAT(Xyz(line.normal()), ElementsAre(0, 0, 0));
    EXPECT_THAT(Xyz(line.position()), ElementsAre(1, 1, 1));
}

TEST_F(PlaneTest, EqualityAndTransform) {
    const CZorPlane p(P(1, 2, 0), V(0, 0, 1));
    EXPECT_TRUE(p == CZorPlane(P(1, 2, 1e-5), V(1e-7, 0, 1)));
    EXPECT_FALSE(p == CZorPlane(P(1, 2, 1.1e-5), V(0, 0, 1)));
    EXPECT_FALSE(p == CZorPlane(P(1, 2, 0), V(1.1e-7, 0, 1)));

    CZorMatrix3d m;
    m.setToScaling(2, P());
    m.setTranslation(V(0, 0, 10));
    const CZorPlane t = p.getTransformedCopy(m);
    EXPECT_THAT(Xyz(t.position()), ElementsAre(2, 4, 10));
    EXPECT_THAT(Xyz(t.normal()), ElementsAre(0, 0, 2));  // not moved, scaled, not normalised
}

TEST_F(PlaneTest, LineAndSegmentIntersection) {
    const CZorPlane xy;
    P out;
    ASSERT_TRUE(xy.intersectWith(P(1, 1, 5), V(0, 0, -3), out));
    EXPECT_TRUE(near(out, P(1, 1, 0)));
    ASSERT_TRUE(CZorPlane(P(0, 0, 2), V(0, 0, 7)).intersectWith(P(1, 1, 5), V(1, 0, -1), out));
    EXPECT_TRUE(near(out, P(4, 1, 2)));
    // Below 0.001 between line and plane counts as parallel, and `out` holds the line's point.
    EXPECT_FALSE(xy.intersectWith(P(3, 4, 5), V(std::cos(0.0009), 0, std::sin(0.0009)), out));
    EXPECT_THAT(Xyz(out), ElementsAre(3, 4, 5));
    EXPECT_TRUE(xy.intersectWith(P(3, 4, 5), V(std::cos(0.0011), 0, std::sin(0.0011)), out));
    EXPECT_FALSE(xy.intersectWith(P(3, 4, 5), V(0, 0, 0), out));
    // A NaN normal finds nothing rather than a NaN point.
    EXPECT_FALSE(CZorPlane(P(), V(kNan, 0, 1)).intersectWith(P(1, 2, 3), V(0, 0, 1), out));
    EXPECT_THAT(Xyz(out), ElementsAre(1, 2, 3));

    // Segment ends count, within the tolerance; one that stops short finds nothing, though
    // `out` holds the line's crossing.
    EXPECT_TRUE(xy.intersectWith(P(1, 1, 5), P(1, 1, 1e-5), out));
    EXPECT_FALSE(xy.intersectWith(P(1, 1, 5), P(1, 1, 1), out));
    EXPECT_TRUE(near(out, P(1, 1, 0)));
}

TEST_F(PlaneTest, TwoPlanes) {
    const CZorPlane xy, xz(P(), V(0, 1, 0));
    P p(9, 9, 9);
    V v(7, 7, 7);
    // Parallel planes, with equal or opposite normals, leave the outputs.
    EXPECT_FALSE(xy.intersectWith(CZorPlane(P(0, 0, 4), V(0, 0, -1)), p, v));
    EXPECT_FALSE(xy.intersectWith(CZorPlane(P(0, 0, 4), V(0, 0, 1)), p, v));
    EXPECT_THAT(Xyz(p), ElementsAre(9, 9, 9));
    EXPECT_THAT(Xyz(v), ElementsAre(7, 7, 7));

    // The direction is this normal crossed with the other's: the order of the planes turns it.
    ASSERT_TRUE(xy.intersectWith(xz, p, v));
    EXPECT_THAT(Xyz(v), ElementsAre(-1, 0, 0));
    EXPECT_NEAR(std::fabs(p.y) + std::fabs(p.z), 0, 1e-12);
    ASSERT_TRUE(xz.intersectWith(xy, p, v));
    EXPECT_THAT(Xyz(v), ElementsAre(1, 0, 0));

    // Tilted planes: the point lies in both.
    const CZorPlane a(P(1, 2, 3), V(1, 1, 0)), b(P(1, 2, 3), V(0, 1, 1));
    ASSERT_TRUE(a.intersectWith(b, p, v));
    EXPECT_TRUE(v == (V(1, 1, 0) * V(0, 1, 1)).normal());
    EXPECT_NEAR(ZOR::sprod(a.normal(), p - a.position()), 0, 1e-9);
    EXPECT_NEAR(ZOR::sprod(b.normal(), p - b.position()), 0, 1e-9);
}

}  // namespace
