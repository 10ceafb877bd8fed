#include <gtest/gtest.h>

#include "zor/geometry/point3d_array.h"
#include "zor/polyline/test_shapes.h"

namespace zor_test {
namespace {

TEST(PointListRing, InsideOfConvexAndConcaveRings) {
    // With and without a repeated first point; an L shape whose notch lies within the box but
    // outside the ring. Fewer than three points hold nothing.
    const CZorPoint3dArray open = Points({P(0, 0), P(10, 0), P(10, 10), P(0, 10)});
    const CZorPoint3dArray closed = Points({P(0, 0), P(10, 0), P(10, 10), P(0, 10), P(0, 0)});
    const CZorPoint3dArray l = Points({P(0, 0), P(10, 0), P(10, 4), P(4, 4), P(4, 10), P(0, 10)});
    struct Case {
        const CZorPoint3dArray* ring;
        CZorPoint3d p;
        bool inside;
    };
    for (const Case& c :
         {Case{&open, P(5, 5), true}, Case{&open, P(1, 9), true}, Case{&open, P(15, 5), false},
          Case{&open, P(-3, -3), false}, Case{&closed, P(5, 5), true}, Case{&closed, P(1, 9), true},
          Case{&closed, P(15, 5), false}, Case{&closed, P(-3, -3), false}, Case{&l, P(2, 8), true},
          Case{&l, P(8, 2), true}, Case{&l, P(8, 8), false}}) {
        EXPECT_EQ(c.ring->ptInside(c.p), c.inside)
            << c.ring->len() << ": " << c.p.x << " " << c.p.y;
    }
    EXPECT_FALSE(Points({P(0, 0), P(10, 0)}).ptInside(P(5, 0)));
    EXPECT_FALSE(CZorPoint3dArray().ptInside(P(0, 0)));
}

}  // namespace
}  // namespace zor_test
