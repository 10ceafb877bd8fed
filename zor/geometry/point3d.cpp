#include "zor/geometry/point3d.h"

#include <cmath>

double CZorPoint3d::tol = 1e-5;

CZorPoint3d::CZorPoint3d(const double* p) {
    if (p != nullptr) set(p[0], p[1], p[2]);
}

// The two classes are laid out alike on purpose: callers switch between the views of one
// object without copying.
CZorVector3d& CZorPoint3d::asVector() {
    return reinterpret_cast<CZorVector3d&>(*this);
}
const CZorVector3d& CZorPoint3d::asVector() const {
    return reinterpret_cast<const CZorVector3d&>(*this);
}

CZorPoint3d& CZorPoint3d::operator*=(const double m[4][4]) {
    const double v[4] = {x, y, z, 1.0};
    double t[4];
    for (int r = 0; r < 4; ++r) {
        double sum = 0.0;
        for (int c = 0; c < 4; ++c) sum += m[r][c] * v[c];
        t[r] = sum;
    }
    return set(t[0] / t[3], t[1] / t[3], t[2] / t[3]);
}

CZorPoint3d CZorPoint3d::operator*(const double m[4][4]) const {
    CZorPoint3d r(*this);
    return r *= m;
}

CZorPoint3d CZorPoint3d::scale(CZorPoint3d s) const {
    return s.set(x * s.x, y * s.y, z * s.z);
}

bool CZorPoint3d::isValid() const {
    return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
}

bool CZorPoint3d::operator<(const CZorPoint3d& p) const {
    if (x != p.x) return x < p.x;
    if (y != p.y) return y < p.y;
    return z < p.z;
}

bool CZorPoint3d::operator>(const CZorPoint3d& p) const {
    return p < *this;
}

CZorPoint3dTol::CZorPoint3dTol() : saved_(CZorPoint3d::tol) {}

CZorPoint3dTol::CZorPoint3dTol(double t) : saved_(CZorPoint3d::tol) {
    *this = t;
}

CZorPoint3dTol::CZorPoint3dTol(const CZorPoint3dTol& other)
    : CZorObj(other), saved_(other.saved_) {}

CZorPoint3dTol& CZorPoint3dTol::operator=(const CZorPoint3dTol& other) {
    saved_ = other.saved_;
    return *this;
}

CZorPoint3dTol::~CZorPoint3dTol() {
    CZorPoint3d::tol = saved_;
}

CZorPoint3dTol& CZorPoint3dTol::operator=(double t) {
    if (t > 1e-12) CZorPoint3d::tol = t;
    return *this;
}

namespace ZOR {

namespace {

constexpr double kTwoPi = 6.283185307179586;

}  // namespace

double angle(const double* a, const double* b) {
    double w = std::atan2(b[1] - a[1], b[0] - a[0]);
    if (w >= kTwoPi) w -= kTwoPi;
    if (0.0 > w) w += kTwoPi;
    return w;
}

double angle(const CZorPoint3d& a, const CZorPoint3d& b) {
    return angle(&a.x, &b.x);
}

CZorPoint3d polar(const CZorPoint3d& p, double ang, double len) {
    // Only x and y move: adding the offset's zero z would turn a -0.0 height into +0.0.
    const CZorVector3d d = polar(ang, len);
    return CZorPoint3d(p.x + d.x, p.y + d.y, p.z);
}

double round(double v, double grid) {
    if (1e-9 > grid) return v;
    return std::floor(v / grid + 0.5) * grid;
}

CZorPoint3d g_p_rnd(CZorPoint3d p, double grid) {
    return p.set(round(p.x, grid), round(p.y, grid), round(p.z, grid));
}

CZorPoint3d g_p_mrx(CZorPoint3d p) {
    return p.set(-p.x, p.y, p.z);
}

CZorPoint3d g_p_mry(CZorPoint3d p) {
    return p.set(p.x, -p.y, p.z);
}

CZorPoint3d g_nrm_p(const CZorPoint3d& p) {
    const auto snap = [](double c) { return CZorPoint3d::tol > std::fabs(c) ? 0.0 : c; };
    return CZorPoint3d(snap(p.x), snap(p.y), snap(p.z));
}

CZorPoint3d g_midp3d(const CZorPoint3d& a, const CZorPoint3d& b) {
    return CZorPoint3d((b.x + a.x) * 0.5, (b.y + a.y) * 0.5, (b.z + a.z) * 0.5);
}

CZorPoint3d p_min(const CZorPoint3d& a, const CZorPoint3d& b) {
    return CZorPoint3d(b.x > a.x ? a.x : b.x, b.y > a.y ? a.y : b.y, b.z > a.z ? a.z : b.z);
}

CZorPoint3d p_max(const CZorPoint3d& a, const CZorPoint3d& b) {
    return CZorPoint3d(a.x > b.x ? a.x : b.x, a.y > b.y ? a.y : b.y, a.z > b.z ? a.z : b.z);
}

}  // namespace ZOR
