#include <gtest/gtest.h>

#include "zor/geometry/point3d_array.h"

namespace {

CZorPoint3dArray ring(std::initializer_list<CZorPoint3d> points) {
    CZorPoint3dArray a;
    for (const CZorPoint3d& p : points) a.append(p);
    return a;
}

TEST(PointListRing, InsideWithAndWithoutRepeatedFirstPoint) {
    const CZorPoint3dArray open = ring({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}});
    const CZorPoint3dArray closed =
        ring({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}});
    for (const CZorPoint3dArray* a : {&open, &closed}) {
        EXPECT_TRUE(a->ptInside(CZorPoint3d(5, 5, 0)));
        EXPECT_TRUE(a->ptInside(CZorPoint3d(1, 9, 0)));
        EXPECT_FALSE(a->ptInside(CZorPoint3d(15, 5, 0)));
        EXPECT_FALSE(a->ptInside(CZorPoint3d(-3, -3, 0)));
    }
}

TEST(PointListRing, ConcaveRingAndTooFewPoints) {
    // An L shape: the notch is outside although it lies within the bounding box.
    const CZorPoint3dArray l =
        ring({{0, 0, 0}, {10, 0, 0}, {10, 4, 0}, {4, 4, 0}, {4, 10, 0}, {0, 10, 0}});
    EXPECT_TRUE(l.ptInside(CZorPoint3d(2, 8, 0)));
    EXPECT_TRUE(l.ptInside(CZorPoint3d(8, 2, 0)));
    EXPECT_FALSE(l.ptInside(CZorPoint3d(8, 8, 0)));
    EXPECT_FALSE(ring({{0, 0, 0}, {10, 0, 0}}).ptInside(CZorPoint3d(5, 0, 0)));
    EXPECT_FALSE(CZorPoint3dArray().ptInside(CZorPoint3d(0, 0, 0)));
}

}  // namespace
