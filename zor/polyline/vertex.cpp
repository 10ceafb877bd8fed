#include "zor/polyline/vertex.h"

#include <cmath>
#include <utility>

#include "zor/geometry/circles.h"
#include "zor/geometry/formulas.h"
#include "zor/geometry/lines.h"
#include "zor/geometry/matrix3d.h"
#include "zor/geometry/plane.h"
#include "zor/polyline/numeric.h"

using ZOR::detail::kHalfPi;
using ZOR::detail::kPi;
using ZOR::detail::kTwoPi;

namespace {

// The left normal of the chord, not normalised.
CZorVector3d chordLeft(const CZorPoint3d& s, const CZorPoint3d& e) {
    return CZorVector3d::kZAxis * (e - s);
}

// The line of the tangent of `v` at `p` as a unit vector, in the plane; false when it has no
// finite direction. Worked out from the vectors that wTan takes the angles of.
bool unitTangent(const CZorVertex& v, const CZorPoint3d& p, double& dx, double& dy) {
    if (v.bulge == 0.0) {
        dx = v.end.x - v.start.x;
        dy = v.end.y - v.start.y;
    } else {
        const CZorPoint3d c = v.center();
        dx = c.y - p.y;
        dy = p.x - c.x;
    }
    // Squares that overflow give an infinite length, which counts as no direction.
    const double len = std::sqrt(dx * dx + dy * dy);
    if (!(len > 0.0 && std::isfinite(len))) return false;
    dx /= len;
    dy /= len;
    return true;
}

}  // namespace

CZorVertex::CZorVertex(const CZorPoint3d& s, const CZorPoint3d& e, double b)
    : start(s), end(e), bulge(b) {}

CZorVertex::CZorVertex(const CZorPoint3d& s, const CZorPoint3d& m, const CZorPoint3d& e)
    : start(s), end(e) {
    ZOR::g_arc3p_bulg(s, m, e, bulge);
}

CZorVertex::CZorVertex(const CZorPoint3d& c, double r, double a1, double a2)
    : start(ZOR::polar(c, a1, r)), end(ZOR::polar(c, a2, r)), bulge(ZOR::g_arc_bulg(a1, a2)) {}

CZorVertex& CZorVertex::set(const CZorPoint3d& s, const CZorPoint3d& e, double b) {
    start = s;
    end = e;
    bulge = b;
    return *this;
}

bool CZorVertex::operator==(const CZorVertex& v) const {
    if (this == &v) return true;
    if (!(1e-5 > std::fabs(bulge - v.bulge))) return false;
    return start == v.start && end == v.end;
}

bool CZorVertex::center(CZorPoint3d& c) const {
    if (bulge == 0.0) return false;
    if (start == end) {
        c = ZOR::g_midp3d(start, end);
        return true;
    }
    const double d = start.distanceTo(end);
    const double h = (1.0 / bulge + bulge) * (d * 0.25) - bulge * 0.5 * d;
    const CZorVector3d n = chordLeft(start, end).normal();
    c = ZOR::g_midp3d(start, end) + n * h;
    return true;
}

CZorPoint3d CZorVertex::center() const {
    CZorPoint3d c(ZOR::nan(), ZOR::nan(), ZOR::nan());
    center(c);
    return c;
}

bool CZorVertex::radius(double& r) const {
    if (bulge == 0.0) return false;
    r = end.distanceTo(start) * 0.25 * std::fabs(1.0 / bulge + bulge);
    return true;
}

double CZorVertex::radius() const {
    double r = ZOR::nan();
    radius(r);
    return r;
}

CZorPoint3d CZorVertex::mid() const {
    const CZorPoint3d m = ZOR::g_midp3d(start, end);
    if (bulge == 0.0 || start == end) return m;
    return m - chordLeft(start, end) * (bulge * 0.5);
}

double CZorVertex::bulgLen() const {
    const double d = end.distanceTo(start);
    if (bulge == 0.0) return d;
    const double w = std::fabs(4.0 * std::atan(bulge));
    return d / (2.0 * std::sin(w * 0.5)) * w;
}

bool CZorVertex::toArc(CZorPoint3d& c, double& r, double& a1, double& a2) const {
    if (bulge == 0.0) return false;
    center(c);
    radius(r);
    a1 = ZOR::angle(c, start);
    a2 = ZOR::angle(c, end);
    if (bulge < 0.0) std::swap(a1, a2);
    return true;
}

double CZorVertex::wTan(const CZorPoint3d& p) const {
    if (bulge == 0.0) return ZOR::angle(start, end);
    double a = ZOR::angle(center(), p) + (bulge > 0.0 ? kHalfPi : -kHalfPi);
    if (a >= kTwoPi) a -= kTwoPi;
    if (0.0 > a) a += kTwoPi;
    return a;
}

CZorPoint3d CZorVertex::lotp(const CZorPoint3d& p) const {
    if (start == end) return start;
    if (bulge == 0.0) return ZOR::g_lotp(start, end, p);
    const CZorPoint3d c = center();
    return ZOR::polar(c, ZOR::angle(c, p), c.distanceTo(start));
}

int CZorVertex::orientp(const CZorPoint3d& p) const {
    const CZorPoint3d f = lotp(p);
    if (p == f) return 0;
    const double t = wTan(f);
    const CZorPoint3d q = ZOR::polar(f, t, 1.0);
    const double a = ZOR::g_lot(f, q, p);
    return ZOR::g_ang_equal(a, t + kHalfPi, 1e-5) ? 1 : -1;
}

bool CZorVertex::isPoint(const CZorPoint3d& p) const {
    return ZOR::detail::isPointOn(*this, nullptr, p);
}

bool CZorVertex::pointAtDist(CZorPoint3d& p, double d, bool bounded) const {
    if (bounded && (0.0 > d || d > bulgLen())) return false;
    if (bulge == 0.0) {
        p = start + (end - start).normal() * d;
        return true;
    }
    const CZorPoint3d c = center();
    const double r = radius();
    const double a0 = ZOR::angle(c, start);
    p = ZOR::polar(c, bulge > 0.0 ? a0 + d / r : a0 - d / r, r);
    return true;
}

bool CZorVertex::distAtPoint(double& d, const CZorPoint3d& p) const {
    if (!isPoint(p)) return false;
    if (p == start) {
        d = 0.0;
    } else if (p == end) {
        d = bulgLen();
    } else if (bulge == 0.0) {
        d = start.distanceTo(p);
    } else {
        const CZorPoint3d c = center();
        const double r = radius();
        d = bulge > 0.0 ? r * ZOR::g_ang(ZOR::angle(c, p) - ZOR::angle(c, start))
                        : r * ZOR::g_ang(ZOR::angle(c, start) - ZOR::angle(c, p));
    }
    return true;
}

bool CZorVertex::coLinear(const CZorVertex& v) const {
    if (this == &v) return false;
    if (ZOR::detail::sign(bulge) != ZOR::detail::sign(v.bulge)) return false;
    if (end != v.start) return false;
    if (bulge == 0.0) return (end - start).normal().isParallelTo((v.end - v.start).normal());
    if (start == v.end) return false;
    return center() == v.center();
}

CZorVertex& CZorVertex::revert() {
    std::swap(start, end);
    if (bulge != 0.0) bulge = -bulge;
    return *this;
}

CZorVertex& CZorVertex::complement() {
    revert();
    if (bulge != 0.0) bulge = std::tan((4.0 * std::atan(bulge) - kTwoPi) * 0.25);
    return *this;
}

CZorVertex& CZorVertex::setStartPoint(const CZorPoint3d& p) {
    if (bulge == 0.0) {
        start = p;
        return *this;
    }
    const CZorPoint3d c = center();
    const double r = radius();
    const double a = ZOR::angle(c, p);
    bulge = bulge > 0.0 ? ZOR::g_arc_bulg(a, ZOR::angle(c, end))
                        : -ZOR::g_arc_bulg(ZOR::angle(c, end), a);
    start = ZOR::polar(c, a, r);
    return *this;
}

CZorVertex& CZorVertex::setEndPoint(const CZorPoint3d& p) {
    if (bulge == 0.0) {
        end = p;
        return *this;
    }
    const CZorPoint3d c = center();
    const double r = radius();
    const double a = ZOR::angle(c, p);
    bulge = bulge > 0.0 ? ZOR::g_arc_bulg(ZOR::angle(c, start), a)
                        : -ZOR::g_arc_bulg(a, ZOR::angle(c, start));
    end = ZOR::polar(c, a, r);
    return *this;
}

CZorVertex& CZorVertex::offset(double d) {
    if (!std::isfinite(d) || d == 0.0) return *this;
    if (bulge == 0.0) {
        const CZorVector3d v = (CZorVector3d::kZAxis * (start - end)).normal() * d;
        start += v;
        end += v;
        return *this;
    }
    const CZorPoint3d c = center();
    const double r = radius();
    const double e = bulge < 0.0 ? -d : d;
    if (0.0 > r + e) {
        // The circle collapses through its centre.
        start = c;
        end = c;
        return *this;
    }
    start += (start - c).normal() * e;
    end += (end - c).normal() * e;
    return *this;
}

CZorVertex& CZorVertex::offset(CZorPoint3d p) {
    p.z = start.z;
    double d = 0.0;
    if (bulge != 0.0) {
        d = std::fabs(radius() - center().distanceTo(p));
    } else {
        d = p.distanceTo(ZOR::g_lotp(start, end, p));
    }
    return offset(orientp(p) == 1 ? -d : d);
}

CZorVertex& CZorVertex::move(const CZorVector3d& v) {
    start += v;
    end += v;
    return *this;
}

CZorVertex& CZorVertex::rotate(double ang, const CZorPoint3d& p) {
    CZorMatrix3d m;
    m.setToRotation(ang, CZorVector3d::kZAxis, p);
    start *= m.m;
    end *= m.m;
    return *this;
}

CZorVertex& CZorVertex::mirror(double ang, const CZorPoint3d& p) {
    CZorMatrix3d m;
    m.setToMirroring(CZorPlane(p, CZorVector3d(-std::sin(ang), std::cos(ang), 0.0)));
    start *= m.m;
    end *= m.m;
    if (bulge != 0.0) bulge *= -1.0;
    return *this;
}

CZorVertex& CZorVertex::transformBy(const double m[4][4]) {
    start *= m;
    end *= m;
    if (bulge != 0.0 && ZOR::mtxIsMir(m)) bulge = -bulge;
    return *this;
}

CZorVertex CZorVertex::reverse() const {
    return CZorVertex(end, start, bulge != 0.0 ? -bulge : 0.0);
}

CZorVertex CZorVertex::getTransformedCopy(const double m[4][4]) const {
    CZorVertex v(*this);
    v.transformBy(m);
    return v;
}

CZorVertex CZorVertex::unite(const CZorVertex& v) const {
    CZorVertex u(*this);
    if (&v != this) u.setEndPoint(v.end);
    return u;
}

bool CZorVertex::intersectWith(CZorPoint3dArray& out, const CZorVertex& v,
                               unsigned int flags) const {
    return ZOR::detail::intersectSegments(*this, nullptr, out, v, nullptr, flags);
}

CZorPoint3dArray CZorVertex::intersectWith(const CZorVertex& v, unsigned int flags) const {
    CZorPoint3dArray out;
    intersectWith(out, v, flags);
    return out;
}

CZorPoint3dArray CZorVertex::intersectWithBulg0(const CZorVertex& v) const {
    CZorPoint3dArray out;
    if (&v == this) return out;
    CZorPoint3d pt;
    if (ZOR::inters(start, end, v.start, v.end, true, pt)) out.append(pt);
    return out;
}

bool CZorVertex::intNear(const CZorVertex& v, const CZorPoint3d& near, CZorPoint3d& out) const {
    CZorPoint3dArray pts;
    if (!intersectWith(pts, v, 0x100)) return false;
    out = ZOR::g_near_p1(near, pts);
    return true;
}

namespace ZOR {

double vx_start_angle(const CZorVertex& v) {
    double a = angle(v.start, v.end);
    if (v.bulge != 0.0) a = a - 4.0 * std::atan(v.bulge) * 0.5;
    return g_ang(a);
}

double vx_end_angle(const CZorVertex& v) {
    double a = angle(v.end, v.start);
    if (v.bulge != 0.0) a = a + 4.0 * std::atan(v.bulge) * 0.5;
    return g_ang(a);
}

CZorVector3d vx_start_dir(const CZorVertex& v) {
    return polar(vx_start_angle(v), 1.0);
}

CZorVector3d vx_end_dir(const CZorVertex& v) {
    return polar(vx_end_angle(v), 1.0);
}

double g_vx_lotd(const CZorVertex& v, const CZorPoint3d& p) {
    return v.lotp(p).distanceTo(p) * v.orientp(p);
}

CZorPoint3d g_arc_mid(const CZorPoint3d& c, double r, double a0, double a1) {
    return CZorVertex(c, r, a0, a1).mid();
}

CZorPoint3d g_bulg_mid(const CZorPoint3d& p0, const CZorPoint3d& p1, double b) {
    return CZorVertex(p0, p1, b).mid();
}

CZorPoint3d g_bulg_cen(const CZorPoint3d& p0, const CZorPoint3d& p1, double b) {
    const CZorVertex v(p0, p1, b);
    CZorPoint3d c;
    if (!v.center(c)) return v.mid();
    return c;
}

double g_bulg_len(const CZorPoint3d& p0, const CZorPoint3d& p1, double b) {
    return CZorVertex(p0, p1, b).bulgLen();
}

int g_bulg_split(const CZorVertex& v) {
    if (v.bulge == 0.0) return 0;
    const double r = v.radius();
    return detail::truncCount(kPi / (2.0 * std::atan(std::sqrt(r * r - (r / 4) * (r / 4)) / r)));
}

bool g_vx_is_tang(const CZorVertex& a, const CZorVertex& b, const CZorPoint3d& p) {
    // Tangents whose lines cross at more than about 1e-3 rad can't pass the 1e-5 test of the
    // angles; the sine between them tells so without the arc tangents' arctangents.
    double ax, ay, bx, by;
    if (unitTangent(a, p, ax, ay) && unitTangent(b, p, bx, by) &&
        std::fabs(ax * by - ay * bx) > 1e-3) {
        return false;
    }
    const double wa = a.wTan(p);
    const double wb = b.wTan(p);
    return g_ang_equal(wa, wb, 1e-5) || g_ang_equal(wa, wb + kPi, 1e-5);
}

int g_vx_split_n(const CZorVertex& v, double dif) {
    if (v.bulge == 0.0) return 0;
    const double r = v.radius();
    const double s = std::fabs(4.0 * std::atan(v.bulge));
    const int byQuarter = detail::truncCount(s / kHalfPi);
    const int byDeviation = detail::truncCount((s / 2) / std::acos((r - dif) / r));
    return byQuarter > byDeviation ? byQuarter : byDeviation;
}

int g_vx_split_dif(const CZorVertex& v, double dif) {
    if (std::fabs(v.bulge) < 0.0001) return 0;
    const double r = v.radius();
    const double h = r - dif;
    const double a = std::atan(std::sqrt(r * r - h * h) / h);
    const int byLength = detail::truncCount(v.bulgLen() / (2.0 * a * r));
    const int byAngle = detail::truncCount(kPi / a);
    return byLength > byAngle ? byLength : byAngle;
}

}  // namespace ZOR

namespace ZOR::detail {

namespace {

// The circle of the arc `s`: the one given, or toArc's.
ArcCircle circleOf(const CZorVertex& s, const ArcCircle* arc) {
    if (arc != nullptr) return *arc;
    ArcCircle a;
    s.toArc(a.c, a.r, a.a1, a.a2);
    return a;
}

// The points where `s` and `v` meet, before any filter, into `pts` (emptied first).
void meetingPoints(const CZorVertex& s, const ArcCircle* sArc, const CZorVertex& v,
                   const ArcCircle* vArc, bool extended, CZorPoint3dArray& pts) {
    pts.setLogicalLength(0);
    if (s.bulge == 0.0 && v.bulge == 0.0) {
        CZorPoint3d pt;
        if (inters(s.start, s.end, v.start, v.end, !extended, pt)) pts.append(pt);
    } else if (s.bulge == 0.0) {
        // The arc always leads.
        meetingPoints(v, vArc, s, sArc, extended, pts);
    } else if (v.bulge == 0.0) {
        const ArcCircle a = circleOf(s, sArc);
        if (extended) {
            g_cli0(pts, a.c, a.r, v.start, v.end);
        } else {
            g_ali(pts, a.c, a.r, a.a1, a.a2, v.start, v.end);
        }
    } else {
        const ArcCircle a = circleOf(s, sArc);
        const ArcCircle b = circleOf(v, vArc);
        if (extended) {
            g_cci(pts, a.c, a.r, b.c, b.r);
        } else {
            g_aai(pts, a.c, a.r, a.a1, a.a2, b.c, b.r, b.a1, b.a2);
        }
    }
}

}  // namespace

bool isPointOn(const CZorVertex& s, const ArcCircle* arc, const CZorPoint3d& p) {
    if (p == s.start || p == s.end) return true;
    if (s.bulge == 0.0) return g_line_pt(s.start, s.end, p);
    const ArcCircle a = circleOf(s, arc);
    return g_arc_pt(a.c, a.r, a.a1, a.a2, p);
}

bool intersectSegments(const CZorVertex& s, const ArcCircle* sArc, CZorPoint3dArray& out,
                       const CZorVertex& v, const ArcCircle* vArc, unsigned int flags) {
    if (&v == &s) return false;
    // The searches of the kernel run this for every candidate pair: a list kept per thread
    // spares them an allocation each time. Nothing called below comes back here.
    thread_local CZorPoint3dArray pts;
    meetingPoints(s, sArc, v, vArc, (flags & 0x100) != 0, pts);
    if ((flags & 0xFF) != 0) {
        // Filtered in place: the points kept move forward, in their order.
        int kept = 0;
        for (int i = 0; i < pts.len(); ++i) {
            const CZorPoint3d p = pts[i];
            if ((flags & 0x001) && g_vx_is_tang(s, v, p)) continue;
            if ((flags & 0x002) && (p == s.start || p == s.end)) continue;
            if ((flags & 0x004) && (p == v.start || p == v.end)) continue;
            pts[kept++] = p;
        }
        pts.setLogicalLength(kept);
    }
    if (pts.len() == 0) return false;
    out = pts;
    return true;
}

}  // namespace ZOR::detail
