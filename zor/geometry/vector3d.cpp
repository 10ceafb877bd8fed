#include "zor/geometry/vector3d.h"

#include <algorithm>
#include <cmath>

#include "zor/geometry/point3d.h"

double CZorVector3d::tol = 1e-7;

CZorVector3d::CZorVector3d(const double* p) {
    if (p != nullptr) set(p[0], p[1], p[2]);
}

CZorVector3d& CZorVector3d::operator=(const double* p) {
    if (p != nullptr) set(p[0], p[1], p[2]);
    return *this;
}

// The two classes are laid out alike on purpose: callers switch between the views of one
// object without copying.
CZorPoint3d& CZorVector3d::asPoint() {
    return reinterpret_cast<CZorPoint3d&>(*this);
}
const CZorPoint3d& CZorVector3d::asPoint() const {
    return reinterpret_cast<const CZorPoint3d&>(*this);
}

CZorVector3d CZorVector3d::operator-() const {
    return *this * -1.0;
}

CZorVector3d operator*(double f, const CZorVector3d& v) {
    return v * f;
}

CZorVector3d& CZorVector3d::operator*=(const double m[4][4]) {
    const double v[3] = {x, y, z};
    double t[4];
    for (int r = 0; r < 4; ++r) {
        double sum = 0.0;
        for (int c = 0; c < 3; ++c) sum += m[r][c] * v[c];
        // A vector has no position: the translation column is dropped, but row 3 still
        // carries its own m[3][3] into the divisor.
        if (r == 3) sum += m[3][3];
        t[r] = sum;
    }
    return set(t[0] / t[3], t[1] / t[3], t[2] / t[3]);
}

CZorVector3d CZorVector3d::operator*(const double m[4][4]) const {
    CZorVector3d r(*this);
    return r *= m;
}

CZorVector3d& CZorVector3d::scale(const CZorPoint3d& s) {
    return set(x * s.x, y * s.y, z * s.z);
}

CZorVector3d CZorVector3d::normal() const {
    CZorVector3d r(*this);
    return r.normalize();
}

double CZorVector3d::angleTo(const CZorVector3d& v) const {
    if (*this == kNull || v == kNull) return ZOR::nan();
    const double c = ZOR::sprod(&x, &v.x) / (v.abs() * abs());
    return std::acos(std::clamp(c, -1.0, 1.0));
}

bool CZorVector3d::isParallelTo(CZorVector3d v) const {
    const CZorVector3d a = normal();
    v.normalize();
    return a == v || a == -v;
}

bool CZorVector3d::isOrthoTo(const CZorVector3d& v) const {
    return 1e-9 > std::fabs(ZOR::sprod(&x, &v.x));
}

bool CZorVector3d::isValid() const {
    return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
}

namespace ZOR {

double angle(const CZorVector3d& v) {
    const double origin[3] = {0.0, 0.0, 0.0};
    return angle(origin, &v.x);
}

double g_v_ang(const CZorVector3d& a, const CZorVector3d& b) {
    return a.angleTo(b);
}

CZorVector3d polar(double ang, double len) {
    return CZorVector3d(std::cos(ang) * len, std::sin(ang) * len, 0.0);
}

}  // namespace ZOR
