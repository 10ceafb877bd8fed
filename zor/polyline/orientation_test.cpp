#include "zor/polyline/orientation.h"

#include <cmath>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace {

using zor_test::P;
using zor_test::Points;
using zor_test::Polygon;

constexpr double kPi = 3.141592653589793;

TEST(OrientationTest, PointListSense) {
    EXPECT_TRUE(ZOR::g_pl_orient(Points({P(0, 0), P(1, 0)}), CZorVector3d::kZAxis));
    const CZorPoint3dArray ccw = Points({P(0, 0), P(1, 0), P(0, 1)});
    EXPECT_TRUE(ZOR::g_pl_orient(ccw, CZorVector3d::kZAxis));
    EXPECT_FALSE(ZOR::g_pl_orient(ccw.reverse(), CZorVector3d::kZAxis));
    EXPECT_FALSE(ZOR::g_pl_orient(Points({P(0, 0), P(1, 0), P(2, 0)}), CZorVector3d::kZAxis));
    // Seen from below, counter-clockwise turns clockwise.
    EXPECT_FALSE(ZOR::g_pl_orient(ccw, CZorVector3d(0, 0, -1)));
}

TEST(OrientationTest, PolylineSenseCountsArcs) {
    // Two arcs that bulge outwards make a counter-clockwise lens although the chords cancel.
    CZorVertexArray lens;
    lens.append(CZorVertex(P(0, 0), P(2, 0), 0.5));
    lens.append(CZorVertex(P(2, 0), P(0, 0), 0.5));
    EXPECT_TRUE(ZOR::g_vl_orient(lens, CZorVector3d::kZAxis));
    EXPECT_FALSE(ZOR::g_vl_orient(lens.reverse(), CZorVector3d::kZAxis));
}

TEST(OrientationTest, ChordForms) {
    const CZorVertexArray half(CZorVertex(P(1, 0), P(-1, 0), 1.0));
    const CZorVertexArray k0 = ZOR::g_vl_expl(half, 0);
    ASSERT_EQ(k0.len(), 3);
    EXPECT_EQ(k0[0].bulge, 0.0);
    EXPECT_EQ(k0[0].end, P(std::cos(kPi / 3), std::sin(kPi / 3)));
    EXPECT_EQ(ZOR::g_vl_expl(half, 3).len(), 4);
    EXPECT_EQ(ZOR::g_vl_expl(CZorVertexArray(), 3).len(), 0);
    const CZorVertexArray circle = ZOR::g_vl_expl(zor_test::Circle(0, 0, 1), 0);
    EXPECT_EQ(circle.len(), 6);
    EXPECT_TRUE(circle.isClosed());
}

TEST(OrientationTest, CircleRecognition) {
    CZorPoint3d c(9, 9, 9);
    double r = 0;
    EXPECT_TRUE(ZOR::g_vl_circlep(zor_test::Circle(2, 3, 4), &c, &r));
    EXPECT_EQ(c, P(2, 3));
    EXPECT_DOUBLE_EQ(r, 4.0);
    EXPECT_TRUE(ZOR::g_vl_circlep(zor_test::Circle(0, 0, 1), nullptr, nullptr));

    CZorVertexArray mixed;
    mixed.append(CZorVertex(P(1, 0), P(-1, 0), 1.0));
    mixed.append(CZorVertex(P(-1, 0), P(1, 0), -1.0));
    c = P(9, 9);
    r = 0;
    EXPECT_FALSE(ZOR::g_vl_circlep(mixed, &c, &r));
    EXPECT_EQ(c, P(9, 9));     // the centre only on success
    EXPECT_DOUBLE_EQ(r, 1.0);  // the radius from the first segment all the same
    EXPECT_FALSE(ZOR::g_vl_circlep(zor_test::Rect(0, 0, 1, 1), nullptr, nullptr));
    EXPECT_FALSE(
        ZOR::g_vl_circlep(CZorVertexArray(CZorVertex(P(1, 0), P(-1, 0), 1.0)), nullptr, nullptr));
}

TEST(OrientationTest, Rectangles) {
    CZorVertexArray vl = zor_test::Rect(5, 5, 6, 6);
    EXPECT_FALSE(ZOR::g_rect_vl(vl, P(1, 1), P(1, 1)));
    EXPECT_EQ(vl, zor_test::Rect(5, 5, 6, 6));
    ASSERT_TRUE(ZOR::g_rect_vl(vl, P(0, 0), P(2, 1)));
    EXPECT_EQ(vl, zor_test::Rect(0, 0, 2, 1));

    const CZorVertexArray axis = ZOR::g_ext_vl(Points({P(0, 0), P(2, 1)}), 0.0);
    ASSERT_EQ(axis.len(), 4);
    EXPECT_EQ(axis[0], CZorVertex(P(0, 0), P(2, 0), 0.0));
    EXPECT_TRUE(ZOR::g_vl_orient(axis, CZorVector3d::kZAxis));
    const CZorVertexArray turned = ZOR::g_ext_vl(Points({P(0, 1), P(2, 0)}), 0.0);
    ASSERT_EQ(turned.len(), 4);
    EXPECT_TRUE(ZOR::g_vl_orient(turned, CZorVector3d::kZAxis));
    EXPECT_TRUE(turned.isClosed());
    EXPECT_EQ(ZOR::g_ext_vl(Points({P(1, 1)}), 0.0).len(), 0);
}

TEST(OrientationTest, TurnedBoxes) {
    // A unit square turned by pi/4, measured in its own frame.
    CZorVertexArray square = zor_test::Rect(0, 0, 1, 1);
    square.rotate(kPi / 4, P(0, 0));
    CZorPoint3d lo, hi;
    ASSERT_TRUE(ZOR::g_vl_extmax(lo, hi, square, kPi / 4));
    EXPECT_NEAR(lo.x, 0.0, 1e-12);
    EXPECT_NEAR(lo.y, 0.0, 1e-12);
    EXPECT_NEAR(hi.x, 0.0, 1e-12);
    EXPECT_NEAR(hi.y, std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(ZOR::g_vl_extmax_x(square, kPi / 4), 1.0, 1e-12);
    EXPECT_NEAR(ZOR::g_vl_extmax_y(square, kPi / 4), 1.0, 1e-12);
    EXPECT_NEAR(ZOR::g_vl_extmax_x(square, 0.0), std::sqrt(2.0), 1e-12);
    EXPECT_EQ(ZOR::g_vl_extmax_x(CZorVertexArray(), 0.3), 0.0);
    EXPECT_EQ(ZOR::g_vl_extmax(CZorVertexArray(), 0.3).len(), 0);

    const CZorVertexArray rect = ZOR::g_vl_extrect(square, kPi / 4);
    ASSERT_EQ(rect.len(), 4);
    EXPECT_TRUE(rect.isClosed());
    EXPECT_NEAR(rect.geomLength(), 4.0, 1e-12);

    CZorArrayTempl<CZorVertexArray> vll;
    vll.append(zor_test::Rect(0, 0, 1, 1));
    vll.append(zor_test::Rect(3, -2, 4, 0));
    const CZorPoint3dArray all = ZOR::g_vll_extmax(vll, 0.0);
    ASSERT_EQ(all.len(), 2);
    EXPECT_EQ(all[0], P(0, -2));
    EXPECT_EQ(all[1], P(4, 1));
}

TEST(OrientationTest, PointListBoxes) {
    const CZorPoint3dArray one = ZOR::g_pl_extmax(Points({P(3, 4)}), 1.0);
    ASSERT_EQ(one.len(), 2);
    EXPECT_EQ(one[0], P(3, 4));
    EXPECT_EQ(one[1], P(3, 4));
    EXPECT_EQ(ZOR::g_pl_extmax(CZorPoint3dArray(), 1.0).len(), 0);
    const CZorPoint3dArray box = ZOR::g_pl_extmax(Points({P(0, 0), P(2, 2), P(1, 3)}), 0.0);
    EXPECT_EQ(box[1], P(2, 3));
    EXPECT_EQ(ZOR::g_pl_extrect(Points({P(0, 0), P(2, 2)}), 0.0), zor_test::Rect(0, 0, 2, 2));
}

}  // namespace
