#include "zor/geometry/plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "zor/geometry/matrix3d.h"

namespace {

using P = CZorPoint3d;
using V = CZorVector3d;

void ExpectNear(const P& p, double x, double y, double z) {
    EXPECT_NEAR(p.x, x, 1e-12);
    EXPECT_NEAR(p.y, y, 1e-12);
    EXPECT_NEAR(p.z, z, 1e-12);
}

class PlaneTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;  // every test leaves the point tolerance as it found it
};

TEST_F(PlaneTest, ConstructionNormalisesOnlyInSet) {
    const CZorPlane xy;
    EXPECT_EQ(xy.normal().z, 1.0);
    EXPECT_EQ(xy.position().x, 0.0);
    CZorPlane p(P(0, 0, 0), V(0, 0, 5));
    EXPECT_EQ(p.normal().z, 5.0);
    p.set(P(1, 0, 0), V(0, 0, 5));
    EXPECT_EQ(p.normal().z, 1.0);
    EXPECT_EQ(p.position().x, 1.0);
    p.setNormal(V(0, 3, 0));
    EXPECT_EQ(p.normal().y, 1.0);
    p.setPosition(P(2, 2, 2));
    EXPECT_EQ(p.position().z, 2.0);
}

TEST_F(PlaneTest, ThreePointsTakeTheMiddleOneAsPosition) {
    const P a(1, 0, 0), b(0, 0, 0), c(0, 1, 0);
    const CZorPlane up(a, b, c);
    EXPECT_TRUE(up.normal() == V(0, 0, 1));
    EXPECT_TRUE(up.position() == b);
    const CZorPlane down(c, b, a);
    EXPECT_TRUE(down.normal() == V(0, 0, -1));
    CZorPlane line;
    line.set(P(0, 0, 0), P(1, 1, 1), P(2, 2, 2));
    EXPECT_TRUE(line.normal() == V(0, 0, 0));
    EXPECT_TRUE(line.position() == P(1, 1, 1));
}

TEST_F(PlaneTest, EqualityUsesThePointAndVectorRules) {
    const CZorPlane p(P(1, 2, 0), V(0, 0, 1));
    EXPECT_TRUE(p == p);
    EXPECT_TRUE(p == CZorPlane(P(1, 2, 1e-5), V(1e-7, 0, 1)));
    EXPECT_FALSE(p == CZorPlane(P(1, 2, 1.1e-5), V(0, 0, 1)));
    EXPECT_FALSE(p == CZorPlane(P(1, 2, 0), V(1.1e-7, 0, 1)));
    EXPECT_TRUE(p != CZorPlane(P(1, 2, 0), V(0, 0, -1)));
}

TEST_F(PlaneTest, TransformKeepsTheNormalLength) {
    CZorMatrix3d m;
    m.setToScaling(2, P());
    m.setTranslation(V(0, 0, 10));
    const CZorPlane p(P(1, 0, 0), V(0, 0, 1));
    const CZorPlane t = p.getTransformedCopy(m);
    ExpectNear(t.position(), 2, 0, 10);
    EXPECT_EQ(t.normal().z, 2.0);  // the translation left it, the scaling did not
    EXPECT_EQ(p.position().x, 1.0);
    CZorPlane q(p);
    EXPECT_TRUE(q.transformBy(m) == t);
}

TEST_F(PlaneTest, LineIntersection) {
    const CZorPlane xy;
    P out;
    ASSERT_TRUE(xy.intersectWith(P(1, 1, 5), V(0, 0, -3), out));
    ExpectNear(out, 1, 1, 0);
    ASSERT_TRUE(CZorPlane(P(0, 0, 2), V(0, 0, 7)).intersectWith(P(1, 1, 5), V(1, 0, -1), out));
    ExpectNear(out, 4, 1, 2);

    // Below 0.001 between line and plane counts as parallel, and `out` holds the line's point.
    const double flat = 0.0009;
    EXPECT_FALSE(xy.intersectWith(P(3, 4, 5), V(std::cos(flat), 0, std::sin(flat)), out));
    ExpectNear(out, 3, 4, 5);
    const double steep = 0.0011;
    EXPECT_TRUE(xy.intersectWith(P(3, 4, 5), V(std::cos(steep), 0, std::sin(steep)), out));
    EXPECT_NEAR(out.z, 0, 1e-9);

    EXPECT_FALSE(xy.intersectWith(P(3, 4, 5), V(0, 0, 0), out));
    EXPECT_FALSE(CZorPlane(P(), V(0, 0, 0)).intersectWith(P(3, 4, 5), V(0, 0, 1), out));
}

TEST_F(PlaneTest, SegmentIntersection) {
    const CZorPlane xy;
    P out;
    ASSERT_TRUE(xy.intersectWith(P(1, 1, 5), P(1, 1, -5), out));
    ExpectNear(out, 1, 1, 0);
    // Ends count, also within the tolerance.
    EXPECT_TRUE(xy.intersectWith(P(1, 1, 5), P(1, 1, 0), out));
    EXPECT_TRUE(xy.intersectWith(P(1, 1, 5), P(1, 1, 1e-5), out));
    // A segment stopping short finds nothing, though `out` holds the line's crossing.
    EXPECT_FALSE(xy.intersectWith(P(1, 1, 5), P(1, 1, 1), out));
    ExpectNear(out, 1, 1, 0);
}

TEST_F(PlaneTest, TwoPlanes) {
    const CZorPlane xy;
    const CZorPlane xz(P(), V(0, 1, 0));
    P p(9, 9, 9);
    V v;
    ASSERT_TRUE(xy.intersectWith(xz, p, v));
    EXPECT_TRUE(v == V(1, 0, 0) || v == V(-1, 0, 0));
    EXPECT_NEAR(p.y, 0, 1e-12);
    EXPECT_NEAR(p.z, 0, 1e-12);

    // Two tilted planes: the common line passes through a point both contain.
    const CZorPlane a(P(1, 2, 3), V(1, 1, 0));
    const CZorPlane b(P(1, 2, 3), V(0, 1, 1));
    ASSERT_TRUE(a.intersectWith(b, p, v));
    EXPECT_TRUE(v == (V(1, 1, 0) * V(0, 1, 1)).normal());
    EXPECT_NEAR(ZOR::sprod(a.normal(), p - a.position()), 0, 1e-9);
    EXPECT_NEAR(ZOR::sprod(b.normal(), p - b.position()), 0, 1e-9);
    EXPECT_TRUE(p == P(1, 2, 3) || (p - P(1, 2, 3)).isParallelTo(v));
}

TEST_F(PlaneTest, ParallelPlanesLeaveTheOutputs) {
    const CZorPlane xy;
    P p(9, 9, 9);
    V v(7, 7, 7);
    EXPECT_FALSE(xy.intersectWith(CZorPlane(P(0, 0, 4), V(0, 0, -1)), p, v));
    EXPECT_FALSE(xy.intersectWith(CZorPlane(P(0, 0, 4), V(0, 0, 1)), p, v));
    EXPECT_EQ(p.x, 9.0);
    EXPECT_EQ(v.x, 7.0);
}

}  // namespace
