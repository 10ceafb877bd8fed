#include "zor/geometry/plane.h"

#include <cmath>

#include "zor/geometry/lines.h"
#include "zor/geometry/matrix3d.h"

namespace {

// A line whose direction has a smaller component along the normal than this counts as
// parallel to the plane.
constexpr double kParallelLimit = 0.001;

}  // namespace

CZorPlane::CZorPlane() : normal_(0.0, 0.0, 1.0) {}

CZorPlane::CZorPlane(const CZorPoint3d& p, const CZorVector3d& n) : position_(p), normal_(n) {}

CZorPlane::CZorPlane(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c) {
    set(a, b, c);
}

CZorPlane& CZorPlane::set(const CZorPoint3d& p, const CZorVector3d& n) {
    position_ = p;
    return setNormal(n);
}

CZorPlane& CZorPlane::set(const CZorPoint3d& a, const CZorPoint3d& b, const CZorPoint3d& c) {
    position_ = b;
    return setNormal((a - b) * (c - b));
}

CZorPlane& CZorPlane::setNormal(const CZorVector3d& n) {
    normal_ = n.normal();
    return *this;
}

CZorPlane& CZorPlane::setPosition(const CZorPoint3d& p) {
    position_ = p;
    return *this;
}

bool CZorPlane::operator==(const CZorPlane& q) const {
    if (this == &q) return true;
    return position_ == q.position_ && normal_ == q.normal_;
}

CZorPlane& CZorPlane::transformBy(const double m[4][4]) {
    position_ *= m;
    normal_ *= m;
    return *this;
}

CZorPlane CZorPlane::getTransformedCopy(const double m[4][4]) const {
    CZorPlane copy(*this);
    return copy.transformBy(m);
}

bool CZorPlane::intersectWith(const CZorPoint3d& p, const CZorVector3d& v, CZorPoint3d& out) const {
    const CZorVector3d d = v.normal();
    const double x = ZOR::sprod(normal_, d);
    out = p;
    // Negated, so that a plane with a NaN normal finds nothing instead of a NaN point.
    if (!(std::fabs(x) >= kParallelLimit)) return false;
    const double t = (ZOR::sprod(normal_, position_) - ZOR::sprod(normal_, p)) / x;
    out = p + d * t;
    return true;
}

bool CZorPlane::intersectWith(const CZorPoint3d& a, const CZorPoint3d& b, CZorPoint3d& out) const {
    return intersectWith(a, b - a, out) && ZOR::g_line_pt(a, b, out);
}

bool CZorPlane::intersectWith(const CZorPlane& q, CZorPoint3d& p, CZorVector3d& v) const {
    if (normal_ == q.normal_ || normal_ == -q.normal_) return false;
    const CZorVector3d dir = (normal_ * q.normal_).normalize();
    CZorMatrix3d w;
    w.setToWorldToPlane(dir);
    // Seen along `dir` both planes are lines, each through its plane's position and across
    // `dir`; where they cross is the common line.
    const CZorPoint3d a = position_ * w;
    const CZorPoint3d b = (position_ + normal_ * dir) * w;
    const CZorPoint3d c = q.position_ * w;
    const CZorPoint3d d = (q.position_ + q.normal_ * dir) * w;
    CZorPoint3d crossing;
    if (!ZOR::inters(a, b, c, d, false, crossing)) return false;
    p = crossing * w.inverse();
    v = dir;
    return true;
}
