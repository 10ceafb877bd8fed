// Numeric helpers shared by the polyline kernel: the angle literals it is written in, the sign
// of a bulge, and a safe truncation of a computed count.
#pragma once

#include <cmath>

namespace ZOR::detail {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kTwoPi = 6.283185307179586;

// -1, 0 or +1; -0.0 counts as 0.
inline int sign(double v) {
    return v > 0.0 ? 1 : (v < 0.0 ? -1 : 0);
}

// Truncation of a computed count towards zero. Counts come from divisions that degenerate on
// odd input (a zero deviation, a zero radius); a NaN or a negative value counts as no piece and
// the count is capped so that such input can't ask for an unbounded number of points.
inline int truncCount(double v) {
    constexpr double kMaxCount = 1000000.0;
    if (!(v > 0.0)) return 0;
    if (v > kMaxCount) return static_cast<int>(kMaxCount);
    return static_cast<int>(v);
}

}  // namespace ZOR::detail
