#include "zor/geometry/formulas.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

#include "zor/geometry/vector3d.h"

namespace ZOR {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = kPi / 2;
constexpr double kQuarterPi = kPi / 4;
constexpr double kTwoPi = 2 * kPi;

// Snaps onto axis directions use this angular tolerance throughout.
constexpr double kAxisSnap = 0.001;

// Angles are wrapped by repeated addition and subtraction of the period, whose rounding differs
// from that of `fmod` in the last bits; results depend on it, so the loops stay. A value more
// than this many periods away would keep the loop running for too long (or, above 2^53 periods,
// forever), so it is first brought near with `fmod`.
constexpr double kMaxLoopPeriods = 1 << 20;

double bring_near(double w, double period) {
    return std::fabs(w) > kMaxLoopPeriods * period ? std::fmod(w, period) : w;
}

bool near(double a, double b, double tol) {
    return std::fabs(a - b) < tol;
}

}  // namespace

double g_ang(double w) {
    if (std::isinf(w)) return nan();
    if (near(w, kTwoPi, 1e-8)) return 0.0;
    w = bring_near(w, kTwoPi);
    while (w >= kTwoPi) w -= kTwoPi;
    while (w < 0.0) w += kTwoPi;
    return w;
}

double g_signed_ang(double w) {
    if (std::isinf(w)) return nan();
    w = bring_near(w, kTwoPi);
    while (w > kPi) w -= kTwoPi;
    while (w < -kPi) w += kTwoPi;
    return w;
}

double g_dir_nrm(double w) {
    // Only the subtraction runs, so negative input (-inf included) is never reduced.
    if (w == std::numeric_limits<double>::infinity()) return nan();
    if (w > 0.0) w = bring_near(w, kPi);
    while (w >= kPi) w -= kPi;
    if (near(w, kPi, kAxisSnap) || near(w, 0.0, kAxisSnap)) return 0.0;
    return w;
}

double g_qw(double w) {
    if (std::isnan(w)) return w;
    if (w < 0.0) return -g_qw(-w);
    // The quarter index is a 32-bit integer; a quotient beyond its range converts to the
    // integer indefinite value 0x80000000, whose remainder by 4 is 0.
    const double q = std::trunc((w + kQuarterPi) / kHalfPi);
    const std::int32_t quarter = q < 2147483648.0 ? static_cast<std::int32_t>(q) : INT32_MIN;
    return (quarter % 4) * kHalfPi;
}

double g_rnd_quad(double w) {
    const double a = g_ang(w);
    const double q = g_qw(a);
    if (near(a, q, kAxisSnap) || near(a, q + kTwoPi, kAxisSnap)) return q;
    return a;
}

bool g_ang_equal(double a, double b, double tol) {
    const double d = std::fabs(g_ang(a) - g_ang(b));
    return d < tol || kTwoPi - d < tol;
}

double g_dw(double a, double b) {
    const double d = std::fabs(a - b);
    return d > kPi ? d - kPi : d;
}

double g_dw1(double a, double b) {
    return g_rnd_quad(g_ang(kPi - (a - b)));
}

double g_w_mid(double a, double b) {
    return g_ang(a + 0.5 * g_ang(b - a));
}

double g_w_halb(double a, double b) {
    const double h = (a + b) / 2;
    return std::fabs(a - b) > kPi ? h + kPi : h;
}

double g_aabs(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2) {
    const double d = std::fabs(angle(p1, p0) - angle(p1, p2));
    return d < kPi ? d : kTwoPi - d;
}

double g_delta_w(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2) {
    return g_ang(angle(p1, p0) - angle(p1, p2));
}

double g_delta_w1(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2) {
    return g_ang(angle(p1, p2) - angle(p1, p0));
}

double g_delta_w2(const CZorPoint3d& p0, const CZorPoint3d& p1, const CZorPoint3d& p2) {
    const double v = g_delta_w1(p0, p1, p2);
    return v > kPi ? kTwoPi - v : v;
}

int g_oktant(double w) {
    const double a = g_ang(w);
    if (near(a, 0.0, kAxisSnap) || near(a, kTwoPi, kAxisSnap)) return 0;
    if (near(a, kPi, kAxisSnap)) return 4;
    if (near(a, kHalfPi, kAxisSnap)) return 2;
    if (near(a, 3 * kHalfPi, kAxisSnap)) return 6;
    if (a < kHalfPi) return 1;
    if (a < kPi) return 3;
    if (a < 3 * kHalfPi) return 5;
    return 7;
}

int g_sextant(double w) {
    const double a = g_ang(w);
    if (near(a, kTwoPi, kAxisSnap)) return 0;
    for (int k = 0; k < 8; ++k) {
        if (near(a, k * kQuarterPi, kAxisSnap)) return 2 * k;
    }
    for (int k = 1; k < 8; ++k) {
        if (a < k * kQuarterPi) return 2 * k - 1;
    }
    return 15;
}

double g_w_3eck(double a, double b, double c) {
    return std::acos((a * a + b * b - c * c) / (2 * a * b));
}

double g_sec_ang(double r, double s) {
    return 2 * std::atan((s / 2) / std::sqrt(r * r - s * s / 4));
}

double g_sec_len(double r, double w) {
    return 2 * r * std::sin(w / 2);
}

double g_sec_len2(double r, double w) {
    if (r == w) return nan();
    const double t = 2 * r * std::cos(w / 2) * std::sin(w / 2);
    return t * r / (r - t);
}

double g_tang_radius(double h, double s) {
    return s * s / (2 * h) + h / 2;
}

double g_tang_cen(double m, double y0, double x0, double r) {
    if (r == 0.0) return nan();
    return y0 - m * x0 + m * r - r / std::cos(std::atan(m));
}

CZorPoint3d g_tang2_cen(double m1, double y1, double x1, double m2, double x2, double y2,
                        double r) {
    const double t1 = r / std::cos(std::atan(m1));
    const double t2 = r / std::cos(std::atan(m2));
    const double y = (m1 * x2 - y1 - t1 - m1 * x1 + m1 * y2 * m2 + t2 * m1) / (m1 * m2 - 1);
    const double x = t2 + x2 + m2 * y2 - m2 * y;
    return CZorPoint3d(x, y, 0.0);
}

CZorPoint3d g_tang3_cen(const CZorPoint3d& p, double r, double w, double h) {
    const double s = 2 * r * std::sin(w);
    const double c = 2 * r * std::cos(w);
    const double e = h - r - s;
    return CZorPoint3d(p.x + e * s / c - c, p.y + e + s, p.z);
}

double g_tang_ang(const CZorPoint3d& p1, double r1, const CZorPoint3d& p2, double r2) {
    const double d = p1.distanceTo(p2) * r1 / (r1 + r2);
    return std::atan(r1 / std::sqrt(d * d - r1 * r1));
}

double g_achs_dist(double a, double b, double c, double d, double e) {
    return c / 2 - (d / 2 * b / a - (e / 2) / std::sin(std::atan(a / b)));
}

double g_ellips_pt(double a, double b, double w) {
    if (std::fabs(std::cos(w)) < 1e-9) return b;
    const double t = std::tan(w);
    const double x2 = a * a * b * b / (t * t * a * a + b * b);
    return std::sqrt((1 - x2 / (a * a)) * b * b + x2);
}

CZorPoint3d g_elps_p(const CZorPoint3d& c, double a, double b, double rot, double w) {
    const double cw = std::cos(w);
    const double sw = std::sin(w);
    const double r = std::sqrt(1 / (cw * cw / (a * a) + sw * sw / (b * b)));
    return polar(c, rot + w, r);
}

double g_elps_w(double a, double b, double rot, double w) {
    const double cw = std::cos(w);
    const double sw = std::sin(w);
    const double r = std::sqrt(1 / (sw * sw / (b * b) + cw * cw / (a * a)));
    const double x = r * cw;
    const double y = r * sw;
    const double tol = CZorPoint3d::tol;
    double t;
    if (std::fabs(y) < tol) {
        t = (w > kHalfPi && w < 3 * kHalfPi) ? 3 * kHalfPi : kHalfPi;
    } else if (std::fabs(x) < tol) {
        t = w < kPi ? kPi : 0.0;
    } else {
        t = std::atan(-(b * b * x) / (a * a * y));
        if (w > 0.0 && w < kPi) t += kPi;
    }
    return g_ang(t + rot);
}

double g_korb_3m(double a, double b) {
    const double z = std::sqrt(a * a + b * b);
    return (z + a - b) * (z / 2) / b;
}

double g_rkorb(double s, double h, double R) {
    return (2 * h * R - h * h - s * s / 4) / (2 * R - s);
}

double g_rkorb2(double s, double h, double r) {
    return (s * r - h * h - s * s / 4) / (2 * (r - h));
}

double g_fries_r(double a, double b, double w) {
    const double sw = std::sin(w);
    if (std::fabs(sw) < 0.0001) return (a * a + b * b) / a * 0.25;
    const double c1 = std::cos(w) + 1;
    const double D = c1 * c1 + sw * sw - 4;
    const double p = (2 * b * sw - 2 * a * c1) / D * 0.5;
    const double q = (a * a + b * b) / D;
    return -p + std::sqrt(p * p - q);
}

double g_fries_w(double a, double b, double r) {
    if (r < 0.0) return nan();
    const double d = a - r;
    return g_w_3eck(r, std::sqrt(d * d + b * b), 2 * r) + std::atan(d / b) - kHalfPi;
}

double g_dist2d(const CZorPoint3d& p, const CZorPoint3d& q) {
    const double dx = q.x - p.x;
    const double dy = q.y - p.y;
    return std::sqrt(dx * dx + dy * dy);
}

double g_dist_w1(const CZorPoint3d& p, const CZorPoint3d& q, double w) {
    const CZorVector3d d = q - p;
    const CZorVector3d u = polar(w, 1.0);
    return sprod(d, u);
}

double g_dist_w(const CZorPoint3d& p, const CZorPoint3d& q, double w) {
    return std::fabs(g_dist_w1(p, q, w));
}

}  // namespace ZOR
