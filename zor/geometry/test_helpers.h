// What the geometry tests share: short names, coordinate checks, point lists from braces and
// the fixture that keeps the process-wide point tolerance.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <numbers>

#include "zor/geometry/point3d.h"
#include "zor/geometry/point3d_array.h"

namespace ZOR::test {

using ::testing::ElementsAre;
using ::testing::IsNan;
using P = CZorPoint3d;
using V = CZorVector3d;

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kInf = std::numeric_limits<double>::infinity();
inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// The three coordinates, to match exactly with ElementsAre.
inline std::array<double, 3> Xyz(const double* p) {
    return {p[0], p[1], p[2]};
}

// Every coordinate of `p` within `eps` of that of `q`; NaN is never near.
inline ::testing::AssertionResult near(const double* p, const double* q, double eps = 1e-9) {
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(p[i] - q[i]) <= eps)) {
            return ::testing::AssertionFailure()
                   << "(" << p[0] << ", " << p[1] << ", " << p[2] << ") is not (" << q[0] << ", "
                   << q[1] << ", " << q[2] << ")";
        }
    }
    return ::testing::AssertionSuccess();
}

inline CZorPoint3dArray makeList(std::initializer_list<P> points) {
    CZorPoint3dArray a;
    for (const P& p : points) a.append(p);
    return a;
}

// Leaves the process-wide point tolerance as it found it, whatever a test does to it.
class PointTolTest : public ::testing::Test {
  protected:
    CZorPoint3dTol restore_;
};

}  // namespace ZOR::test
