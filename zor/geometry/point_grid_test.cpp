#include "zor/geometry/point_grid.h"

#include <algorithm>
#include <random>
#include <vector>

#include "zor/geometry/test_helpers.h"

namespace {

TEST(PointGridTest, FindsEveryPointWithinTolerance) {
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> coord(-1.0, 1.0);
    std::uniform_real_distribution<double> off(-1e-5, 1e-5);
    std::vector<CZorPoint3d> pts;
    // Crowds near the origin and far from it, where the position within a cell rounds coarsely.
    for (int i = 0; i < 2000; ++i) {
        const double far = i % 2 == 0 ? 0.0 : 3e7;
        pts.emplace_back(far + coord(rng) * 1e-3, -far + coord(rng) * 1e-3, 0.0);
    }
    // Coordinates beyond integer cells go to the shared bucket and are still found.
    pts.emplace_back(1e300, 0.0, 0.0);
    const ZOR::detail::PointGrid grid(pts);
    std::vector<int> near;
    for (int q = 0; q < 4000; ++q) {
        // Around a point, or at just under the tolerance from it in any direction.
        const CZorPoint3d& base = pts[q % pts.size()];
        const double w = ZOR::test::kPi * off(rng) * 1e5;
        const CZorPoint3d p = q % 2 == 0 ? CZorPoint3d(base.x + off(rng), base.y + off(rng), 0.0)
                                         : ZOR::polar(base, w, 0.999e-5);
        grid.near(p, near);
        for (int i = 0; i < static_cast<int>(pts.size()); ++i) {
            if (pts[i] == p) {
                ASSERT_NE(std::find(near.begin(), near.end(), i), near.end());
            }
        }
    }
    grid.near(pts.back(), near);
    EXPECT_NE(std::find(near.begin(), near.end(), 2000), near.end());
}

}  // namespace
