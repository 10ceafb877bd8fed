#include "zor/polyline/segment_relations.h"

#include <cfloat>
#include <cmath>

#include "zor/geometry/circles.h"
#include "zor/geometry/formulas.h"
#include "zor/polyline/numeric.h"

using ZOR::detail::kHalfPi;
using ZOR::detail::kPi;

namespace ZOR {

namespace {

bool lineTest(const CZorVertex& a, const CZorVertex& b, double tol) {
    const double wa = g_ang(a.wTan(a.start));
    const bool sameSense = std::fabs(wa - g_ang(b.wTan(b.start))) <= tol;
    const bool oppositeSense = std::fabs(wa - g_ang(b.reverse().wTan(b.start))) <= tol;
    if (!sameSense && !oppositeSense) return false;
    if (a == b || a == b.reverse()) return true;
    // A connecting direction must run along `a`; each direction is listed in both senses
    // rather than folded, so that differences of pi are told apart.
    const double connecting[4] = {angle(a.start, b.start), angle(b.start, a.start),
                                  angle(a.start, b.end), angle(b.end, a.start)};
    for (const double w : connecting) {
        if (std::fabs(g_ang(w) - wa) <= tol) return true;
    }
    return false;
}

CZorPoint3dArray keepInner(const CZorPoint3dArray& candidates, const CZorVertex& v, bool inner) {
    CZorPoint3dArray out;
    for (int i = 0; i < candidates.len(); ++i) {
        const CZorPoint3d& q = candidates[i];
        if (inner && (q == v.start || q == v.end)) continue;
        out.append(q);
    }
    if (v.bulge < 0.0) out.revert();
    return out;
}

}  // namespace

bool g_vx_colinear(const CZorVertex& a, const CZorVertex& b, double tol) {
    const CZorPoint3dTol scope(tol);
    if (a.bulgLen() > 0.0 && b.bulgLen() > 0.0 && std::fabs(a.bulge) <= tol &&
        std::fabs(b.bulge) <= tol && lineTest(a, b, tol)) {
        return true;
    }
    if (!(std::fabs(a.bulge) > tol && std::fabs(b.bulge) > tol)) return false;
    return a.center() == b.center() && std::fabs(a.radius() - b.radius()) <= tol;
}

bool g_vx_parallel(const CZorVertex& a, const CZorVertex& b) {
    if (a.end == a.start || b.end == b.start) return false;
    if (a.bulge == 0.0 && b.bulge == 0.0) return (a.end - a.start).isParallelTo(b.end - b.start);
    if (a.bulge == 0.0 || b.bulge == 0.0) return false;
    return a.center() == b.center();
}

double g_vx_ang(const CZorVertex& a, const CZorVertex& b) {
    const CZorPoint3d c = a.end;
    const CZorPoint3d p1 = polar(c, a.wTan(c), -1.0);
    const CZorPoint3d p2 = polar(c, b.wTan(c), 1.0);
    return g_delta_w(p1, c, p2);
}

bool g_vx_trim(CZorVertex& a, CZorVertex& b) {
    if (a.end == b.start || g_vx_is_tang(a, b, a.end)) return false;
    const CZorPoint3d m = g_midp3d(a.end, b.start);
    CZorPoint3d x;
    if (!a.intNear(b, m, x)) return false;
    if (a.coLinear(b)) return false;
    a.setEndPoint(x);
    b.setStartPoint(x);
    return true;
}

bool g_vx_search(const CZorVertexArray& vl, const CZorPoint3d& p, int& index) {
    for (int i = 0; i < vl.len(); ++i) {
        if (vl[i].isPoint(p)) {
            index = i;
            return true;
        }
    }
    return false;
}

CZorVertex g_vx_search_near(const CZorVertexArray& vl, const CZorPoint3d& p) {
    CZorVertex best;
    double bestDist = DBL_MAX;
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        const CZorPoint3d f = s.lotp(p);
        const double d =
            s.isPoint(f) ? f.distanceTo(p) : std::fmin(p.distanceTo(s.end), p.distanceTo(s.start));
        if (bestDist >= d) {
            bestDist = d;
            best = s;
        }
    }
    return best;
}

CZorPoint3dArray g_vx_tangp(const CZorVertex& v, double w, bool inner) {
    CZorPoint3dArray candidates;
    if (v.bulge == 0.0) return candidates;
    const CZorPoint3d c = v.center();
    const double r = v.radius();
    const CZorPoint3d q[2] = {polar(c, w + kHalfPi, r), polar(c, w + kHalfPi + kPi, r)};
    for (const CZorPoint3d& p : q) {
        if (v.isPoint(p)) candidates.append(p);
    }
    return keepInner(candidates, v, inner);
}

CZorPoint3dArray g_vx_tangp(const CZorVertex& v, const CZorPoint3d& p, bool inner) {
    CZorPoint3dArray candidates;
    if (v.bulge == 0.0) return candidates;
    CZorPoint3d c;
    double r = 0.0, a0 = 0.0, a1 = 0.0;
    v.toArc(c, r, a0, a1);
    const double d = p.distanceTo(c);
    const double t = g_w_3eck(d, r, std::sqrt(d * d - r * r));
    const double b = angle(c, p);
    const double s = g_ang(a1 - a0) + 1e-5;
    if (g_ang(b - t - a0) < s) candidates.append(polar(c, b - t, r));
    if (g_ang(b + t - a0) < s) candidates.append(polar(c, b + t, r));
    return keepInner(candidates, v, inner);
}

CZorVertex g_vx_rnd(CZorVertex v, double step) {
    v.start = g_p_rnd(v.start, step);
    v.end = g_p_rnd(v.end, step);
    return v;
}

CZorVertex& g_vx_xy(CZorVertex& v) {
    v.start.z = 0.0;
    v.end.z = 0.0;
    return v;
}

}  // namespace ZOR

CZorVertex zor_g_vx_vx(const CZorPoint3d& p, const CZorPoint3d& q, const CZorVertex& v,
                       bool /*flag*/) {
    if (std::fabs(v.bulge) <= 1e-9) {
        CZorVertex line(p, ZOR::polar(p, v.wTan(p), v.bulgLen()), 0.0);
        line.setEndPoint(line.lotp(q));
        return line;
    }
    const CZorPoint3d c = v.center();
    const double r = c.distanceTo(p);
    const CZorPoint3d e = ZOR::polar(c, ZOR::angle(c, q), r);
    const double b = v.bulge > 0.0 ? ZOR::g_arcmp_bulg(c, p, e) : -ZOR::g_arcmp_bulg(c, e, p);
    return CZorVertex(p, e, b);
}
