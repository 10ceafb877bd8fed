#include "zor/geometry/matrix3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "zor/geometry/plane.h"

namespace {

constexpr double kPi = std::numbers::pi;

using M = CZorMatrix3d;
using P = CZorPoint3d;
using V = CZorVector3d;

void ExpectNear(const P& p, double x, double y, double z) {
    EXPECT_NEAR(p.x, x, 1e-12);
    EXPECT_NEAR(p.y, y, 1e-12);
    EXPECT_NEAR(p.z, z, 1e-12);
}

void ExpectRow(const M& m, int r, double a, double b, double c) {
    EXPECT_NEAR(m.m[r][0], a, 1e-12) << "row " << r;
    EXPECT_NEAR(m.m[r][1], b, 1e-12) << "row " << r;
    EXPECT_NEAR(m.m[r][2], c, 1e-12) << "row " << r;
}

M FromRows(std::initializer_list<std::initializer_list<double>> rows) {
    M m;
    int r = 0;
    for (const auto& row : rows) {
        int c = 0;
        for (double v : row) m.m[r][c++] = v;
        ++r;
    }
    return m;
}

TEST(MatrixTest, StartsAsIdentityAndComparesWithinOneBillionth) {
    const M m;
    EXPECT_TRUE(m == M::kIdentity);
    EXPECT_EQ(m.m[3][3], 1.0);
    EXPECT_EQ(m.m[0][3], 0.0);
    M off;
    off.m[2][1] = 1e-9;  // a difference of exactly the bound is no difference
    EXPECT_TRUE(off == m);
    off.m[2][1] = 1.1e-9;
    EXPECT_FALSE(off == m);
    EXPECT_TRUE(off != m);
}

TEST(MatrixTest, ConvertsToAndFromRawArrays) {
    double raw[4][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}};
    M m(raw);
    EXPECT_EQ(m.m[2][1], 10.0);
    double copy[4][4];
    ZOR::g_mtx_copy(copy, m);
    EXPECT_EQ(copy[3][0], 13.0);
    M assigned;
    assigned = raw;
    EXPECT_TRUE(assigned == m);
    M::Array& view = assigned;
    view[0][0] = 42;
    EXPECT_EQ(assigned.m[0][0], 42.0);
}

TEST(MatrixTest, ProductAppliesTheRightOperandFirst) {
    M move, turn;
    move.setToTranslation(V(10, 0, 0));
    turn.setToRotation(kPi / 2, V(0, 0, 1), P());
    const P p(1, 0, 0);
    ExpectNear(p * (move * turn), 10, 1, 0);
    ExpectNear((p * turn) * move, 10, 1, 0);
    ExpectNear(p * (turn * move), 0, 11, 0);
    M acc(turn);
    acc *= move;
    EXPECT_TRUE(acc == turn * move);
}

TEST(MatrixTest, Reading) {
    M m;
    m.setCoordSystem(P(7, 8, 9), V(3, 4, 0), V(0, 2, 0), V(0, 0, 5));
    EXPECT_EQ(m.translation().z, 9.0);
    EXPECT_EQ(m.axis(1).y, 2.0);
    EXPECT_EQ(m.axis(5).z, 5.0);  // above 2 counts as 2
    EXPECT_EQ(m.axis(2).z, 5.0);
    EXPECT_EQ(m.scale(), 5.0);  // no normalising on the way in
    P o;
    V x, y, z;
    m.getCoordSystem(o, x, y, z);
    EXPECT_EQ(o.x, 7.0);
    EXPECT_EQ(x.x, 3.0);
    EXPECT_EQ(y.y, 2.0);
    EXPECT_EQ(z.z, 5.0);
    m.setTranslation(V(1, 1, 1));
    EXPECT_EQ(m.m[0][0], 3.0);  // setTranslation keeps the rest
    EXPECT_EQ(m.m[2][3], 1.0);
}

TEST(MatrixTest, WorldToPlaneFollowsTheArbitraryAxisRule) {
    M m;
    m.setToWorldToPlane(V(0, 0, 1));
    EXPECT_TRUE(m == M::kIdentity);

    m.setToWorldToPlane(V(0, 0, -1));
    ExpectRow(m, 0, -1, 0, 0);
    ExpectRow(m, 1, 0, 1, 0);
    ExpectRow(m, 2, 0, 0, -1);

    // Near the Z axis the X axis comes from world Y; 0.02 is still above 1/64 after
    // normalising, so that normal takes X from world Z.
    m.setToWorldToPlane(V(0.01, 0, 1));
    EXPECT_GT(m.m[0][0], 0.99);
    EXPECT_LT(m.m[0][2], 0.0);
    m.setToWorldToPlane(V(0.02, 0, 1));
    ExpectRow(m, 0, 0, 1, 0);

    // A null normal gives the identity whatever the matrix held.
    m.setToWorldToPlane(V(0, 0, 5e-8));
    EXPECT_TRUE(m == M::kIdentity);
    m.setToTranslation(V(1, 2, 3));
    m.setToPlaneToWorld(V(0, 0, 0));
    EXPECT_TRUE(m == M::kIdentity);

    // Plane to world undoes world to plane.
    M w, back;
    w.setToWorldToPlane(V(1, 2, 3));
    back.setToPlaneToWorld(V(1, 2, 3));
    EXPECT_TRUE(back * w == M::kIdentity);
    // The plane normal becomes the local Z axis.
    const V local_z = V(1, 2, 3).normal() * w;
    EXPECT_TRUE(local_z == V(0, 0, 1));
}

TEST(MatrixTest, RotationAboutAnyLine) {
    M m;
    m.setToTranslation(V(5, 5, 5));  // builders start from scratch
    m.setToRotation(kPi / 2, V(0, 0, 1), P(1, 0, 0));
    ExpectNear(P(2, 0, 0) * m, 1, 1, 0);
    m.setToRotation(kPi / 2, V(2, 0, 0), P());
    ExpectNear(P(0, 1, 0) * m, 0, 0, 1);
    EXPECT_FALSE(ZOR::mtxIsMir(m));
    m.setToRotation(kPi, V(1, 1, 1), P(1, 2, 3));
    EXPECT_FALSE(ZOR::mtxIsMir(m));
    ExpectNear(P(2, 3, 4) * m, 2, 3, 4);  // points on the axis stay
}

TEST(MatrixTest, MirroringAndScaling) {
    M m;
    m.setToMirroring(CZorPlane(P(), V(0, 1, 0)));
    ExpectNear(P(1, 2, 3) * m, 1, -2, 3);
    EXPECT_TRUE(ZOR::mtxIsMir(m));
    m.setToMirroring(CZorPlane(P(0, 0, 1), V(0, 0, 2)));
    ExpectNear(P(1, 2, 3) * m, 1, 2, -1);

    m.setToScaling(2, P(1, 1, 0));
    ExpectNear(P(2, 1, 0) * m, 3, 1, 0);
    EXPECT_FALSE(ZOR::mtxIsMir(m));
    m.setToScaling(-1, P());
    EXPECT_TRUE(ZOR::mtxIsMir(m));
    m.setToScaling(0, P());
    EXPECT_FALSE(ZOR::mtxIsMir(m));  // a zero determinant is no mirroring
}

TEST(MatrixTest, ScaleRotateMove) {
    M m;
    m.setToSRM(P(2, 3, 4), kPi / 2, V(10, 0, 1));
    // (1, 1, 1) scales to (2, 3, 4), turns to (-3, 2, 4), moves to (7, 2, 5).
    ExpectNear(P(1, 1, 1) * m, 7, 2, 5);
}

TEST(MatrixTest, InverseOfAGeneralMatrix) {
    M m;
    m.setToSRM(P(2, 3, 4), 0.7, V(10, -2, 1));
    m *= M().setToRotation(1.1, V(1, 2, 3), P(4, 5, 6));
    EXPECT_TRUE(m * m.inverse() == M::kIdentity);
    EXPECT_TRUE(m.inverse() * m == M::kIdentity);
    M copy(m);
    EXPECT_TRUE(copy.invert() == m.inverse());
}

TEST(MatrixTest, InverseWithColumnExchange) {
    // A permutation needs exchanges and inverts to its transpose.
    const M perm = FromRows({{0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}});
    M t;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) t.m[r][c] = perm.m[c][r];
    }
    EXPECT_TRUE(perm.inverse() == t);

    // The zero pivot of row 1 takes column 0, the first usable one, though it lies before.
    const M back = FromRows({{1, 2, 0, 0}, {3, 0, 0, 0}, {0, 0, 1, 5}, {0, 0, 0, 1}});
    EXPECT_TRUE(back * back.inverse() == M::kIdentity);

    // That choice can undo an earlier pivot; the elimination then runs into a zero pivot
    // and gives what the arithmetic gives rather than the inverse.
    const M undone = FromRows({{1, 0, 0, 0}, {5, 0, 1, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}});
    const M garbage = undone.inverse();
    bool all_finite = true;
    for (const auto& row : garbage.m) {
        for (double v : row) all_finite = all_finite && std::isfinite(v);
    }
    EXPECT_FALSE(all_finite);
}

TEST(MatrixTest, SingularMatrixInvertsToIdentity) {
    M m = FromRows({{1, 2, 3, 4}, {0, 0, 0, 0}, {5, 6, 7, 8}, {0, 0, 0, 1}});
    EXPECT_TRUE(m.invert() == M::kIdentity);
    M tiny;
    tiny.m[2][2] = 1e-10;
    EXPECT_TRUE(tiny.inverse() == M::kIdentity);
}

TEST(MatrixTest, PlacementIn2d) {
    M m;
    EXPECT_TRUE(ZOR::g_mtx_2d(m, 1, 2, kPi / 2, 3, -2));
    // The Y scale comes before the X scale in the arguments.
    EXPECT_NEAR(m.axis(0).x, 0, 1e-15);
    EXPECT_EQ(m.axis(0).y, -2.0);
    EXPECT_EQ(m.axis(1).x, -3.0);
    EXPECT_EQ(m.axis(2).z, 2.0);
    EXPECT_EQ(m.translation().x, 1.0);
    EXPECT_EQ(m.translation().y, 2.0);
    EXPECT_EQ(m.translation().z, 0.0);
    EXPECT_TRUE(ZOR::mtxIsMir(m));
}

TEST(MatrixTest, TurnBySide) {
    const double ang = kPi / 2;
    const double q = kPi - ang;
    M left, right, centre;
    left.setToTranslation(V(-1, 0, 0));
    right.setToTranslation(V(1, 0, 0));
    centre.setToTranslation(V(0, 3, 0));  // x of exactly 0 counts as "otherwise"
    const auto turned = [](double turn, const M& m) {
        return M().setToRotation(turn, V(0, 0, 1), P()) * m;
    };
    struct Case {
        const wchar_t* side;
        int number;
        double turn_left;  // when the translation has a negative x
        double turn_other;
    };
    const Case cases[] = {{L"L", 1, 0, -q},
                          {L"R", 2, q, 0},
                          {L"C", 0, q * 0.5, -q * 0.5},
                          {L"l", 7, q * 0.5, -q * 0.5},
                          {nullptr, -1, q * 0.5, -q * 0.5}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.number);
        EXPECT_TRUE(zor_g_mtx_ang2d(left, ang, c.side) == turned(c.turn_left, left));
        EXPECT_TRUE(zor_g_mtx_ang2d(right, ang, c.side) == turned(c.turn_other, right));
        EXPECT_TRUE(zor_g_mtx_ang2d(centre, ang, c.side) == turned(c.turn_other, centre));
        EXPECT_TRUE(zor_g_mtx_ang2d(left, ang, c.number) == turned(c.turn_left, left));
        EXPECT_TRUE(zor_g_mtx_ang2d(right, ang, c.number) == turned(c.turn_other, right));
    }
    // A straight angle turns "L" by nothing on either side.
    EXPECT_TRUE(zor_g_mtx_ang2d(left, kPi, L"L") == left);
    EXPECT_TRUE(zor_g_mtx_ang2d(right, kPi, L"L") == right);
    ExpectNear(P() * zor_g_mtx_ang2d(right, ang, L"L"), 0, -1, 0);
}

}  // namespace
