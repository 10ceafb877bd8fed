#include "zor/polyline/analysis.h"

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <string>

#include "zor/geometry/formulas.h"
#include "zor/polyline/numeric.h"
#include "zor/polyline/orientation.h"

using ZOR::detail::kHalfPi;
using ZOR::detail::kPi;

namespace ZOR {

namespace {

// Start, mid and end of every segment (mid only for arcs when `midOfLines` is false).
CZorPoint3dArray shapePoints(const CZorVertexArray& vl, bool midOfLines) {
    CZorPoint3dArray out;
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        out.append(s.start);
        if (midOfLines || s.bulge != 0.0) out.append(s.mid());
        out.append(s.end);
    }
    return out;
}

CZorPoint3d diagonal(const CZorPoint3dArray& box) {
    const CZorVector3d d = box[1] - box[0];
    return CZorPoint3d(d.x, d.y, d.z);
}

}  // namespace

bool g_pl_statics(const CZorPoint3dArray& pts, Statics& st) {
    const int n = pts.len();
    if (n < 3) return false;
    const CZorPoint3d p0 = pts[0];
    double a = 0.0, sx = 0.0, sy = 0.0, mxx = 0.0, myy = 0.0, mxy = 0.0;
    for (int i = 0; i < n; ++i) {
        const CZorPoint3d& p1 = pts[i];
        const CZorPoint3d& p2 = pts[(i + 1) % n];
        const double x1 = p1.x - p0.x, y1 = p1.y - p0.y;
        const double x2 = p2.x - p0.x, y2 = p2.y - p0.y;
        const double c = x1 * y2 - x2 * y1;
        a += c / 2;
        sx += (x1 + x2) * c / 6;
        sy += (y1 + y2) * c / 6;
        mxx += (y1 * y1 + y1 * y2 + y2 * y2) * c / 12;
        myy += (x1 * x1 + x1 * x2 + x2 * x2) * c / 12;
        mxy += (x1 * y1 + x2 * y2 + (x1 * y2 + x2 * y1) / 2) * c / 12;
    }
    const double xb = sx / a;
    const double yb = sy / a;
    st.center = CZorPoint3d(p0.x + xb, p0.y + yb, 0.0);
    st.area = std::fabs(a);
    st.ix = std::fabs(mxx - yb * yb * a);
    st.iy = std::fabs(myy - xb * xb * a);
    const double d = (st.ix - st.iy) / 2;
    const double m = (st.ix + st.iy) / 2;
    if (std::fabs(d) <= 0.0001) {
        st.ixy = 0.0;
        st.phi = 0.0;
        st.i1 = m;
        st.i2 = m;
    } else {
        st.ixy = mxy - sx * sy / std::fabs(a);
        const double r = std::sqrt(st.ixy * st.ixy + d * d);
        st.i1 = m + r;
        st.i2 = m - r;
        st.phi = std::atan2(st.ixy, d) / 2;
    }
    return true;
}

bool g_vl_statics(const CZorVertexArray& vl, Statics& st) {
    CZorPoint3d c;
    double r = 0.0;
    if (g_vl_circlep(vl, &c, &r)) {
        st.center = c;
        st.area = kPi * (2 * r) * (2 * r) / 4;
        const double moment = kPi / 4 * r * r * r * r;
        st.ix = st.iy = st.i1 = st.i2 = moment;
        st.ixy = 0.0;
        st.phi = 0.0;
        return true;
    }
    return g_pl_statics(vl.pts(true, 0.01), st);
}

bool g_schw_p(const CZorPoint3dArray& pts, CZorPoint3d& out, int& orient) {
    const int n = pts.len();
    if (n == 0) return false;
    if (n == 1) {
        out = pts[0];
        return true;
    }
    if (n == 2) {
        out = g_midp3d(pts[0], pts[1]);
        return true;
    }
    double f = 0.0, gx = 0.0, gy = 0.0;
    for (int i = 0; i < n; ++i) {
        const CZorPoint3d& p1 = pts[i];
        const CZorPoint3d& p2 = pts[(i + 1) % n];
        const double x1 = p1.x, y1 = p1.y, x2 = p2.x, y2 = p2.y;
        f += (x1 + x2) * (y2 - y1) / 2;
        gx += (x2 * x2 + x1 * x2 + x1 * x1) * (y2 - y1) / 6;
        gy -= (y2 * y2 + y1 * y2 + y1 * y1) * (x2 - x1) / 6;
    }
    out = CZorPoint3d(gx / f, gy / f, pts[0].z);
    orient = f > 0.0 ? 1 : 0;
    return true;
}

CZorPoint3d g_schw_p(const CZorPoint3dArray& pts, int& orient) {
    CZorPoint3d out;
    g_schw_p(pts, out, orient);
    return out;
}

bool g_vl_model(CZorVertexArray vl, CZorString& name, double& rot) {
    const CZorPoint3dTol scope(0.001);
    name = L"";
    vl.norm(false);
    if (vl.isClosed() && !g_vl_orient(vl, CZorVector3d::kZAxis)) vl.revert();
    int straight = 0;
    while (straight < vl.len() && vl[straight].bulge != 0.0) ++straight;
    if (straight > 0 && straight < vl.len()) {
        CZorVertexArray turned;
        turned.setNormal(vl.normal());
        for (int i = 0; i < vl.len(); ++i) turned.append(vl[(straight + i) % vl.len()]);
        vl = turned;
    }
    // An empty polyline gets a default segment here, by the non-const index.
    const double w = g_rnd_quad(angle(vl[0].start, vl[0].end));
    if (std::fabs(w) > 0.001) {
        vl.rotate(-w, vl[0].start);
        rot += w;
    }
    std::wstring code;
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        if (i > 0) code += L'_';
        code += std::to_wstring(g_oktant(angle(s.start, s.end)));
        code += s.bulge == 0.0 ? L'L' : (s.bulge > 0.0 ? L'X' : L'V');
    }
    name = code.c_str();
    return true;
}

CZorPoint3d g_vl_point(const CZorVertexArray& vl, const CZorString& key) {
    if (vl.len() < 4) return CZorPoint3d();
    if (key == L"BL") return vl[0].start;
    if (key == L"BC") return vl[0].mid();
    if (key == L"BR") return vl[1].start;
    if (key == L"CL") return vl[3].mid();
    if (key == L"CC") return g_midp3d(vl[0].start, vl[2].start);
    if (key == L"CR") return vl[1].mid();
    if (key == L"TL") return vl[3].start;
    if (key == L"TC") return vl[2].mid();
    if (key == L"TR") return vl[2].start;
    return CZorPoint3d();
}

namespace {

// The common start of both equality tests: normalise the two outlines and, when they have as
// many segments, measure their extents (taken before the caller's tolerance scope opens).
bool sameSegmentCount(CZorVertexArray& a, CZorVertexArray& b, CZorPoint3dArray& ea,
                      CZorPoint3dArray& eb) {
    a.norm(false);
    b.norm(false);
    if (a.len() != b.len()) return false;
    ea = g_vl_extmax(a, 0.0);
    eb = g_vl_extmax(b, 0.0);
    return true;
}

}  // namespace

bool g_vl_equal(CZorVertexArray a, CZorVertexArray b, double tol) {
    CZorPoint3dArray ea, eb;
    if (!sameSegmentCount(a, b, ea, eb)) return false;
    const CZorPoint3dTol scope(tol);
    if (diagonal(ea) != diagonal(eb)) return false;
    a.move(CZorPoint3d::kOrigin - ea[0]);
    b.move(CZorPoint3d::kOrigin - eb[0]);
    return g_pl_equal(shapePoints(a, true), shapePoints(b, true));
}

bool g_vl_equal1(CZorVertexArray a, CZorVertexArray b, double tol) {
    CZorPoint3dArray ea, eb;
    if (!sameSegmentCount(a, b, ea, eb)) return false;
    const CZorPoint3dTol scope(tol);
    if ((ea[1] - ea[0]) != (eb[1] - eb[0])) return false;
    return g_pl_equal(shapePoints(a, false), shapePoints(b, false));
}

bool g_vl_is_symmetric(const CZorVertexArray& vl, double w) {
    if (vl.len() == 0) return false;
    const CZorPoint3dArray box = g_vl_extmax(vl, 0.0);
    CZorVertexArray mirrored(vl);
    mirrored.mirror(w, g_midp3d(box[0], box[1]));
    return g_vl_equal(vl, mirrored, CZorPoint3d::tol);
}

CZorVertexArray g_vl_normal(const CZorVertexArray& vl, bool toOrigin) {
    CZorPoint3d lo, hi;
    vl.extents(lo, hi);
    const CZorPoint3d q = g_near_p1(lo, vl.pts(false, 0.01));
    CZorVertexArray result, tail;
    result.setNormal(vl.normal());
    bool found = false;
    for (int i = 0; i < vl.len(); ++i) {
        if (!found && vl[i].start == q) found = true;
        if (found) {
            result.append(vl[i]);
        } else {
            tail.append(vl[i]);
        }
    }
    result += tail;
    if (toOrigin) result.move(CZorPoint3d::kOrigin - q);
    return result;
}

CZorArrayTempl<int> g_vl_oktant(const CZorVertexArray& vl) {
    CZorPoint3dArray starts;
    for (int i = 0; i < vl.len(); ++i) starts.append(vl[i].start);
    const bool ccw = g_pl_orient(starts, CZorVector3d::kZAxis);
    CZorArrayTempl<int> out;
    for (int i = 0; i < vl.len(); ++i) {
        const CZorVertex& s = vl[i];
        const double t = s.wTan(s.mid());
        out.append(g_oktant(ccw ? t - kHalfPi : t + kHalfPi));
    }
    return out;
}

bool g_vll_near(const CZorArrayTempl<CZorVertexArray>& vll, const CZorPoint3d& p,
                unsigned int& index) {
    if (vll.len() == 0) return false;
    double best = DBL_MAX;
    unsigned int found = 0;
    for (std::uint32_t i = 0; i < vll.len(); ++i) {
        const CZorVertex& s = vll[static_cast<int>(i)].vxNear(p);
        const double d = std::fmin(p.distanceTo(s.mid()), p.distanceTo(s.start));
        if (d < best) {
            best = d;
            found = i;
        }
    }
    index = found;
    return true;
}

}  // namespace ZOR
