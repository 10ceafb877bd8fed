#include "zor/geometry/matrix3d.h"

#include <tuple>

#include "zor/geometry/plane.h"
#include "zor/geometry/test_helpers.h"

namespace {

using namespace ZOR::test;
using M = CZorMatrix3d;

M FromRows(const double (&rows)[4][4]) {
    return M(rows);
}

TEST(MatrixTest, StartsAsIdentityAndComparesWithinOneBillionth) {
    M m;
    EXPECT_TRUE(m == M::kIdentity);
    m.m[2][1] = 1e-9;  // a difference of exactly the bound is no difference
    EXPECT_TRUE(m == M::kIdentity);
    m.m[2][1] = 1.1e-9;
    EXPECT_TRUE(m != M::kIdentity);
}

TEST(MatrixTest, ProductAppliesTheRightOperandFirst) {
    const M move = M().setToTranslation(V(10, 0, 0));
    const M turn = M().setToRotation(kPi / 2, V(0, 0, 1), P());
    EXPECT_TRUE(near(P(1, 0, 0) * (move * turn), P(10, 1, 0)));
    EXPECT_TRUE(near(P(1, 0, 0) * (turn * move), P(0, 11, 0)));
    EXPECT_TRUE((M(turn) *= move) == turn * move);
}

TEST(MatrixTest, Reading) {
    M m = M().setToTranslation(V(5, 5, 5));
    m.setCoordSystem(P(7, 8, 9), V(3, 4, 0), V(0, 2, 0), V(0, 0, 5));  // starts from scratch
    EXPECT_THAT(Xyz(m.axis(5)), ElementsAre(0, 0, 5));                 // above 2 counts as 2
    EXPECT_EQ(m.scale(), 5.0);  // no normalising on the way in
    P o;
    V x, y, z;
    m.getCoordSystem(o, x, y, z);
    EXPECT_THAT(Xyz(o), ElementsAre(7, 8, 9));
    EXPECT_THAT(Xyz(y), ElementsAre(0, 2, 0));
    m.setTranslation(V(1, 1, 1));  // keeps the rest
    EXPECT_THAT(Xyz(m.translation()), ElementsAre(1, 1, 1));
    EXPECT_THAT(Xyz(m.axis(0)), ElementsAre(3, 4, 0));
}

TEST(MatrixTest, WorldToPlaneFollowsTheArbitraryAxisRule) {
    M m;
    EXPECT_TRUE(m.setToWorldToPlane(V(0, 0, 1)) == M::kIdentity);
    m.setToWorldToPlane(V(0, 0, -1));  // rows are the plane's axes
    EXPECT_TRUE(m == FromRows({{-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0}, {0, 0, 0, 1}}));
    // Near the Z axis X comes from world Y; 0.02 is still above 1/64 after normalising.
    m.setToWorldToPlane(V(0.01, 0, 1));
    EXPECT_TRUE(m.m[0][0] > 0.99 && m.m[0][2] < 0.0);
    EXPECT_TRUE(near(m.setToWorldToPlane(V(0.02, 0, 1)).m[0], P(0, 1, 0)));
    // A null normal gives the identity whatever the matrix held.
    m.setToTranslation(V(1, 2, 3));
    EXPECT_TRUE(m.setToWorldToPlane(V(0, 0, 5e-8)) == M::kIdentity);
    m.setToTranslation(V(1, 2, 3));
    EXPECT_TRUE(m.setToPlaneToWorld(V(0, 0, 0)) == M::kIdentity);
    const M w = M().setToWorldToPlane(V(1, 2, 3));
    EXPECT_TRUE(M().setToPlaneToWorld(V(1, 2, 3)) * w == M::kIdentity);
    EXPECT_TRUE(V(1, 2, 3).normal() * w == V(0, 0, 1));
}

TEST(MatrixTest, RotationMirroringScaling) {
    M m;
    EXPECT_TRUE(near(P(2, 0, 0) * m.setToRotation(kPi / 2, V(0, 0, 1), P(1, 0, 0)), P(1, 1, 0)));
    EXPECT_TRUE(near(P(0, 1, 0) * m.setToRotation(kPi / 2, V(2, 0, 0), P()), P(0, 0, 1)));
    EXPECT_FALSE(ZOR::mtxIsMir(m));
    EXPECT_TRUE(near(P(1, 2, 3) * m.setToMirroring(CZorPlane(P(), V(0, 1, 0))), P(1, -2, 3)));
    EXPECT_TRUE(ZOR::mtxIsMir(m));
    EXPECT_TRUE(
        near(P(1, 2, 3) * m.setToMirroring(CZorPlane(P(0, 0, 1), V(0, 0, 2))), P(1, 2, -1)));
    EXPECT_TRUE(near(P(2, 1, 0) * m.setToScaling(2, P(1, 1, 0)), P(3, 1, 0)));
    EXPECT_FALSE(ZOR::mtxIsMir(m.setToScaling(0, P())));  // zero determinant: no mirroring
    // (1, 1, 1) scales to (2, 3, 4), turns to (-3, 2, 4), moves to (7, 2, 5).
    EXPECT_TRUE(near(P(1, 1, 1) * m.setToSRM(P(2, 3, 4), kPi / 2, V(10, 0, 1)), P(7, 2, 5)));
}

TEST(MatrixTest, InversionAndPlacementIn2d) {
    M m;
    m.setToSRM(P(2, 3, 4), 0.7, V(10, -2, 1));
    m *= M().setToRotation(1.1, V(1, 2, 3), P(4, 5, 6));
    EXPECT_TRUE(m * m.inverse() == M::kIdentity);
    EXPECT_TRUE(M(m).invert() == m.inverse());

    // A permutation needs column exchanges and inverts to its transpose.
    const M perm = FromRows({{0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}});
    EXPECT_TRUE(perm.inverse() ==
                FromRows({{0, 0, 1, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}}));
    // The zero pivot of row 1 takes column 0, the first usable one, though it lies before.
    const M back = FromRows({{1, 2, 0, 0}, {3, 0, 0, 0}, {0, 0, 1, 5}, {0, 0, 0, 1}});
    EXPECT_TRUE(back * back.inverse() == M::kIdentity);
    // That choice can undo an earlier pivot: a zero pivot in the elimination, no inverse.
    const M undone = FromRows({{1, 0, 0, 0}, {5, 0, 1, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}});
    EXPECT_FALSE(std::isfinite(undone.inverse().m[0][0]));

    // Singular when choosing pivots: the identity.
    EXPECT_TRUE(FromRows({{1, 2, 3, 4}, {0, 0, 0, 0}, {5, 6, 7, 8}, {0, 0, 0, 1}}).inverse() ==
                M::kIdentity);
    M tiny;
    tiny.m[2][2] = 1e-10;
    EXPECT_TRUE(tiny.invert() == M::kIdentity);
    EXPECT_TRUE(ZOR::g_mtx_2d(m, 1, 2, kPi / 2, 3, -2));
    // The Y scale comes before the X scale in the arguments; Z takes |sx|.
    EXPECT_TRUE(m == FromRows({{0, -3, 0, 1}, {-2, 0, 0, 2}, {0, 0, 2, 0}, {0, 0, 0, 1}}));
}

TEST(MatrixTest, TurnBySide) {
    const double q = kPi / 2;  // pi - ang for ang = pi / 2
    const M left = M().setToTranslation(V(-1, 0, 0));
    const M right = M().setToTranslation(V(0, 3, 0));  // x of exactly 0 counts as not negative
    const auto turned = [](double turn, const M& m) {
        return M().setToRotation(turn, V(0, 0, 1), P()) * m;
    };
    // Side by text and by number, with the turn for a placement left and right of the Y axis.
    const std::tuple<const wchar_t*, int, double, double> cases[] = {
        {L"L", 1, 0, -q}, {L"R", 2, q, 0}, {L"l", 7, q / 2, -q / 2}, {nullptr, -1, q / 2, -q / 2}};
    for (const auto& [text, number, turn_left, turn_right] : cases) {
        SCOPED_TRACE(number);
        EXPECT_TRUE(zor_g_mtx_ang2d(left, q, text) == turned(turn_left, left));
        EXPECT_TRUE(zor_g_mtx_ang2d(right, q, text) == turned(turn_right, right));
        EXPECT_TRUE(zor_g_mtx_ang2d(left, q, number) == turned(turn_left, left));
        EXPECT_TRUE(zor_g_mtx_ang2d(right, q, number) == turned(turn_right, right));
    }
    // A straight angle turns "L" by nothing on either side.
    EXPECT_TRUE(zor_g_mtx_ang2d(left, kPi, L"L") == left &&
                zor_g_mtx_ang2d(right, kPi, 1) == right);
}

}  // namespace
