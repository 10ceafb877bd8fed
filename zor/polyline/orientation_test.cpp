#include "zor/polyline/orientation.h"

#include <cmath>

#include <gtest/gtest.h>

#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

TEST(OrientationTest, TurningSense) {
    // Two points count as counter-clockwise, a line of three as not; seen from below the sense
    // turns.
    const CZorPoint3dArray ccw = Points({P(0, 0), P(1, 0), P(0, 1)});
    const CZorVector3d up = CZorVector3d::kZAxis;
    EXPECT_TRUE(ZOR::g_pl_orient(Points({P(0, 0), P(1, 0)}), up));
    EXPECT_TRUE(ZOR::g_pl_orient(ccw, up));
    EXPECT_FALSE(ZOR::g_pl_orient(ccw.reverse(), up));
    EXPECT_FALSE(ZOR::g_pl_orient(Points({P(0, 0), P(1, 0), P(2, 0)}), up));
    EXPECT_FALSE(ZOR::g_pl_orient(ccw, CZorVector3d(0, 0, -1)));
    // Two arcs that bulge outwards make a counter-clockwise lens although the chords cancel.
    const CZorVertexArray lens = Chain({A(0, 0, 2, 0, 0.5), A(2, 0, 0, 0, 0.5)});
    EXPECT_TRUE(ZOR::g_vl_orient(lens, up));
    EXPECT_FALSE(ZOR::g_vl_orient(lens.reverse(), up));
}

TEST(OrientationTest, ChordForms) {
    const CZorVertexArray half(A(1, 0, -1, 0, 1.0));
    const double c = std::cos(kPi / 3), s = std::sin(kPi / 3);
    ExpectNear(ZOR::g_vl_expl(half, 0), Polygon({P(1, 0), P(c, s), P(-c, s), P(-1, 0)}, false),
               1e-12);
    EXPECT_EQ(ZOR::g_vl_expl(half, 3).len(), 4);
    EXPECT_EQ(ZOR::g_vl_expl(half, 1).len(), 3);  // never fewer than 3 chords
    EXPECT_EQ(ZOR::g_vl_expl(CZorVertexArray(), 3).len(), 0);
    const CZorVertexArray circle = ZOR::g_vl_expl(Circle(0, 0, 1), 0);
    EXPECT_EQ(circle.len(), 6);
    EXPECT_TRUE(circle.isClosed());
}

TEST(OrientationTest, CircleRecognition) {
    CZorPoint3d c(9, 9, 9);
    double r = 0;
    EXPECT_TRUE(ZOR::g_vl_circlep(Circle(2, 3, 4), &c, &r));
    EXPECT_EQ(c, P(2, 3));
    EXPECT_DOUBLE_EQ(r, 4.0);
    EXPECT_TRUE(ZOR::g_vl_circlep(Circle(0, 0, 1), nullptr, nullptr));
    // Mixed senses: the radius from the first segment all the same, the centre only on success.
    c = P(9, 9);
    r = 0;
    EXPECT_FALSE(ZOR::g_vl_circlep(Chain({A(1, 0, -1, 0, 1.0), A(-1, 0, 1, 0, -1.0)}), &c, &r));
    EXPECT_EQ(c, P(9, 9));
    EXPECT_DOUBLE_EQ(r, 1.0);
    EXPECT_FALSE(ZOR::g_vl_circlep(Rect(0, 0, 1, 1), nullptr, nullptr));
    EXPECT_FALSE(ZOR::g_vl_circlep(CZorVertexArray(A(1, 0, -1, 0, 1.0)), nullptr, nullptr));
}

TEST(OrientationTest, Rectangles) {
    CZorVertexArray vl = Rect(5, 5, 6, 6);
    EXPECT_FALSE(ZOR::g_rect_vl(vl, P(1, 1), P(1, 1)));
    EXPECT_EQ(vl, Rect(5, 5, 6, 6));
    ASSERT_TRUE(ZOR::g_rect_vl(vl, P(0, 0), P(2, 1)));
    EXPECT_EQ(vl, Rect(0, 0, 2, 1));
    // Counter-clockwise whichever corners are given.
    EXPECT_EQ(ZOR::g_ext_vl(Points({P(0, 0), P(2, 1)}), 0.0), Rect(0, 0, 2, 1));
    const CZorVertexArray turned = ZOR::g_ext_vl(Points({P(0, 1), P(2, 0)}), 0.0);
    ASSERT_EQ(turned.len(), 4);
    EXPECT_TRUE(ZOR::g_vl_orient(turned, CZorVector3d::kZAxis));
    EXPECT_TRUE(turned.isClosed());
    EXPECT_EQ(ZOR::g_ext_vl(Points({P(1, 1)}), 0.0).len(), 0);
}

TEST(OrientationTest, TurnedBoxes) {
    // A unit square turned by pi/4, measured in its own frame.
    CZorVertexArray square = Rect(0, 0, 1, 1);
    square.rotate(kPi / 4, P(0, 0));
    CZorPoint3d lo, hi;
    ASSERT_TRUE(ZOR::g_vl_extmax(lo, hi, square, kPi / 4));
    ExpectPoint(lo, 0, 0);
    ExpectPoint(hi, 0, std::sqrt(2.0));
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
    vll.append(Rect(0, 0, 1, 1)).append(Rect(3, -2, 4, 0));
    EXPECT_EQ(ZOR::g_vll_extmax(vll, 0.0), Points({P(0, -2), P(4, 1)}));
    // Point lists: one point gives its extents.
    EXPECT_EQ(ZOR::g_pl_extmax(Points({P(3, 4)}), 1.0), Points({P(3, 4), P(3, 4)}));
    EXPECT_EQ(ZOR::g_pl_extmax(CZorPoint3dArray(), 1.0).len(), 0);
    EXPECT_EQ(ZOR::g_pl_extmax(Points({P(0, 0), P(2, 2), P(1, 3)}), 0.0),
              Points({P(0, 0), P(2, 3)}));
    EXPECT_EQ(ZOR::g_pl_extrect(Points({P(0, 0), P(2, 2)}), 0.0), Rect(0, 0, 2, 2));
}

}  // namespace
}  // namespace zor_test
