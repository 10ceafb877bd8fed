#include "zor/polyline/orientation.h"

#include <cmath>

#include "zor/geometry/formulas.h"
#include "zor/geometry/lines.h"
#include "zor/geometry/matrix3d.h"
#include "zor/polyline/numeric.h"

using ZOR::detail::kHalfPi;
using ZOR::detail::kPi;

namespace ZOR {

namespace {

CZorPoint3d turned(const CZorPoint3d& p, double w) {
    CZorMatrix3d m;
    m.setToRotation(w, CZorVector3d::kZAxis, CZorPoint3d::kOrigin);
    return p * m.m;
}

CZorVertexArray rectangleThrough(const CZorPoint3d& p0, const CZorPoint3d& p1,
                                 const CZorPoint3d& p2, const CZorPoint3d& p3) {
    CZorPoint3dArray corners;
    corners.append(p0).append(p1).append(p2).append(p3);
    CZorVertexArray vl;
    vl.fromPoints(corners, true);
    return vl;
}

CZorVertexArray extrectOf(const CZorPoint3dArray& box, double w) {
    if (box.len() < 2) return CZorVertexArray();
    const CZorPoint3d& lo = box[0];
    const CZorPoint3d& hi = box[1];
    const double length = g_dist_w(lo, hi, w);
    return rectangleThrough(lo, polar(lo, w, length), hi, polar(hi, w + kPi, length));
}

}  // namespace

bool g_pl_orient(const CZorPoint3dArray& pts, const CZorVector3d& n) {
    if (pts.len() < 3) return true;
    CZorPoint3dArray p(pts);
    if (n != CZorVector3d::kZAxis) {
        CZorMatrix3d m;
        m.setToWorldToPlane(n);
        p.transformBy(m.m);
    }
    double s = 0.0;
    const int count = p.len();
    for (int i = 0; i < count; ++i) {
        const CZorPoint3d& a = p[i];
        const CZorPoint3d& b = p[(i + 1) % count];
        s += (b.y - a.y) * (b.x + a.x);
    }
    return s > 0.0;
}

bool g_vl_orient(const CZorVertexArray& vl, const CZorVector3d& n) {
    CZorVertexArray copy(vl);
    if (n != CZorVector3d::kZAxis) {
        CZorMatrix3d m;
        m.setToWorldToPlane(n);
        copy.transformBy(m.m);
    }
    return g_pl_orient(g_vl_expl(copy, 4).pts(false, 0.01), CZorVector3d::kZAxis);
}

CZorVertexArray g_vl_expl(const CZorVertexArray& vl, int k) {
    CZorVertexArray out;
    if (vl.len() == 0) return out;
    CZorPoint3dArray points;
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        points.append(s.start);
        if (s.bulge == 0.0) continue;
        const CZorPoint3d c = s.center();
        const double r = s.radius();
        const double sweep = 4.0 * std::atan(s.bulge);
        int n = 0;
        if (k >= 1) {
            n = detail::truncCount(std::fabs(k * sweep / kPi));
            if (n < 2) n = 2;
        } else {
            n = g_bulg_split(s);
        }
        const double a0 = angle(c, s.start);
        for (int m = 1; m <= n; ++m) points.append(polar(c, a0 + m * sweep / (n + 1), r));
    }
    points.append(vl[-1].end);
    out.fromPoints(points, false);
    return out;
}

bool g_vl_circlep(const CZorVertexArray& vl, CZorPoint3d* c, double* r) {
    if (!vl.isClosed()) return false;
    const CZorVertex& first = vl[0];
    if (first.bulge == 0.0) return false;
    if (r != nullptr) *r = first.radius();
    const CZorPoint3d centre = first.center();
    const int sense = detail::sign(first.bulge);
    for (int i = 0; i < vl.len(); ++i) {
        if (detail::sign(vl[i].bulge) != sense) return false;
        if (vl[i].center() != centre) return false;
    }
    if (c != nullptr) *c = centre;
    return true;
}

bool g_rect_vl(CZorVertexArray& vl, const CZorPoint3d& a, const CZorPoint3d& b) {
    if (a == b) return false;
    CZorPoint3dArray corners;
    corners.append(a)
        .append(CZorPoint3d(b.x, a.y, a.z))
        .append(b)
        .append(CZorPoint3d(a.x, b.y, a.z));
    vl.fromPoints(corners, true);
    return true;
}

bool g_vl_extmax(CZorPoint3d& lo, CZorPoint3d& hi, const CZorVertexArray& vl, double w) {
    if (vl.len() == 0) return false;
    CZorVertexArray copy(vl);
    copy.rotate(-w, CZorPoint3d::kOrigin);
    CZorPoint3d l, h;
    copy.extents(l, h);
    lo = turned(l, w);
    hi = turned(h, w);
    return true;
}

CZorPoint3dArray g_vl_extmax(const CZorVertexArray& vl, double w) {
    CZorPoint3dArray out;
    CZorPoint3d lo, hi;
    if (g_vl_extmax(lo, hi, vl, w)) out.append(lo).append(hi);
    return out;
}

bool g_vll_extmax(CZorPoint3d& lo, CZorPoint3d& hi, const CZorArrayTempl<CZorVertexArray>& vll,
                  double w) {
    CZorVertexArray all;
    for (std::uint32_t i = 0; i < vll.len(); ++i) all += vll[static_cast<int>(i)];
    return g_vl_extmax(lo, hi, all, w);
}

CZorPoint3dArray g_vll_extmax(const CZorArrayTempl<CZorVertexArray>& vll, double w) {
    CZorPoint3dArray out;
    CZorPoint3d lo, hi;
    if (g_vll_extmax(lo, hi, vll, w)) out.append(lo).append(hi);
    return out;
}

CZorPoint3dArray g_pl_extmax(CZorPoint3dArray pts, double w) {
    CZorPoint3dArray out;
    CZorPoint3d lo, hi;
    if (pts.len() == 0) return out;
    if (pts.len() == 1) {
        pts.extents(lo, hi);
        return out.append(lo).append(hi);
    }
    pts.rotate(-w, CZorPoint3d::kOrigin);
    pts.extents(lo, hi);
    return out.append(turned(lo, w)).append(turned(hi, w));
}

double g_vl_extmax_x(const CZorVertexArray& vl, double w) {
    CZorPoint3d lo, hi;
    if (!g_vl_extmax(lo, hi, vl, w)) return 0.0;
    return g_dist_w(lo, hi, w);
}

double g_vl_extmax_y(const CZorVertexArray& vl, double w) {
    CZorPoint3d lo, hi;
    if (!g_vl_extmax(lo, hi, vl, w)) return 0.0;
    return g_dist_w(lo, hi, w + kHalfPi);
}

CZorVertexArray g_vl_extrect(const CZorVertexArray& vl, double w) {
    return extrectOf(g_vl_extmax(vl, w), w);
}

CZorVertexArray g_pl_extrect(CZorPoint3dArray pts, double w) {
    return extrectOf(g_pl_extmax(pts, w), w);
}

CZorVertexArray g_ext_vl(const CZorPoint3dArray& pts, double w) {
    // Without two corners there is no rectangle; four zero segments at the origin would pass
    // for one.
    if (pts.len() < 2) return CZorVertexArray();
    const CZorPoint3d& a = pts[0];
    const CZorPoint3d& b = pts[1];
    CZorPoint3d q1, q2;
    inters(a, polar(a, w, 1.0), b, polar(b, w + kHalfPi, 1.0), false, q1);
    inters(a, polar(a, w + kHalfPi, 1.0), b, polar(b, w, 1.0), false, q2);
    CZorVertexArray out;
    out.append(CZorVertex(a, q1, 0.0))
        .append(CZorVertex(q1, b, 0.0))
        .append(CZorVertex(b, q2, 0.0))
        .append(CZorVertex(q2, a, 0.0));
    if (!g_vl_orient(out, CZorVector3d::kZAxis)) {
        CZorVertexArray turnedOrder;
        for (int i = 1; i <= 4; ++i) turnedOrder.append(out[i % 4]);
        turnedOrder.revert();
        return turnedOrder;
    }
    return out;
}

}  // namespace ZOR
