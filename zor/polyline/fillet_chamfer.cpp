#include "zor/polyline/fillet_chamfer.h"

#include <cmath>

#include "zor/geometry/circles.h"
#include "zor/geometry/formulas.h"
#include "zor/geometry/lines.h"
#include "zor/geometry/point3d_array.h"
#include "zor/polyline/numeric.h"
#include "zor/polyline/orientation.h"
#include "zor/polyline/segment_relations.h"

using ZOR::detail::kPi;
using ZOR::detail::kTwoPi;

namespace ZOR {

namespace {

CZorVertexArray pair(const CZorVertex& a, const CZorVertex& b) {
    CZorVertexArray out;
    out.append(a);
    out.append(b);
    return out;
}

// Both segments offset by `r`; false when one of them collapsed onto a point.
bool offsetBoth(const CZorVertex& s1, const CZorVertex& s2, double r, CZorVertex& o1,
                CZorVertex& o2) {
    o1 = s1;
    o2 = s2;
    o1.offset(r);
    o2.offset(r);
    return !(o1.start == o1.end) && !(o2.start == o2.end);
}

// The circle that cuts a corner at `c`: radius d about it, or for a negative d the circle of
// diameter |d| through it; two half arcs.
CZorVertexArray chamferCircle(const CZorPoint3d& c, double d) {
    const CZorVector3d along(std::fabs(d), 0.0, 0.0);
    const CZorPoint3d from = d > 0.0 ? c - along : c;
    const CZorPoint3d to = c + along;
    CZorVertexArray k;
    k.append(CZorVertex(from, to, 1.0));
    k.append(CZorVertex(to, from, 1.0));
    return k;
}

}  // namespace

CZorVertexArray g_vx_fillet(CZorVertex s1, CZorVertex s2, double r, int side) {
    if (!(std::isnormal(r) || r == 0.0)) return pair(s1, s2);
    if (g_vx_is_tang(s1, s2, s1.end)) return pair(s1, s2);
    if (r == 0.0) {
        if (g_vx_trim(s1, s2)) return pair(s1, s2);
        return CZorVertexArray();
    }
    CZorVertex o1, o2;
    if (!offsetBoth(s1, s2, r, o1, o2)) return CZorVertexArray();
    int sign = -1;
    CZorPoint3dArray crossings;
    o1.intersectWith(crossings, o2, 0);
    if (crossings.len() == 0) {
        r = -r;
        sign = 1;
        if (!offsetBoth(s1, s2, r, o1, o2)) return CZorVertexArray();
        o1.intersectWith(crossings, o2, 0);
    }
    if (crossings.len() == 0 || (side != 0 && side != sign)) return pair(s1, s2);
    if (o1.coLinear(o2)) return CZorVertexArray();
    const CZorPoint3d m = crossings[0];
    const CZorPoint3d t1 = s1.lotp(m);
    const CZorPoint3d t2 = s2.lotp(m);
    double sweep = sign > 0 ? angle(m, t2) - angle(m, t1) : angle(m, t1) - angle(m, t2);
    if (sweep < 0.0) sweep += kTwoPi;
    double bulge = std::tan(sweep / 4.0);
    if (sign < 0) bulge = -bulge;
    s1.setEndPoint(t1);
    s2.setStartPoint(t2);
    CZorVertexArray out = pair(s1, s2);
    out.append(CZorVertex(t1, t2, bulge));
    return out;
}

CZorVertexArray g_vl_fillet(const CZorVertexArray& vl, double r, int side, bool closed) {
    if (vl.len() < 2) return vl;
    closed = closed && vl.isClosed();
    CZorVertexArray out;
    out.setNormal(vl.normal());
    CZorVertex cur = vl[0];
    for (int i = 0; i + 1 < vl.len(); ++i) {
        CZorVertex next = vl[i + 1];
        if (cur.end != next.start) {
            // Bring the two together first; when they can't meet they stay as they are.
            const CZorVertexArray met = g_vx_fillet(cur, next, 0.0, 0);
            if (met.len() >= 2) {
                cur = met[0];
                next = met[1];
            }
        }
        CZorVertexArray t = g_vx_fillet(cur, next, r, side);
        // A fillet that leaves the first segment an arc of more than half a circle is refused.
        if (t.len() > 0 && std::fabs(t[0].bulge) > 1.0) t.setLogicalLength(0);
        if (t.len() == 0) {
            if (i == 0) out.append(cur);
            out.append(next);
            cur = next;
            continue;
        }
        if (i == 0) {
            out.append(t[0]);
        } else {
            out[-1] = t[0];
        }
        if (t.len() == 3) out.append(t[2]);
        out.append(t[1]);
        cur = t[1];
    }
    if (closed) {
        const CZorVertexArray t = g_vx_fillet(out[-1], out[0], r, side);
        if (t.len() == 3) {
            out[0] = t[1];
            out[-1] = t[0];
            out.append(t[2]);
        }
    }
    return out;
}

CZorVertexArray g_vl_fillet_p(const CZorVertexArray& vl, const CZorPoint3d& p, double r) {
    const int n = vl.len();
    if (!(std::isnormal(r) && r > 0.0) || n < 2) return vl;
    if (p == vl[-1].end && p == vl[0].start) {
        const CZorVertexArray t = g_vx_fillet(vl[-1], vl[0], r, 0);
        if (t.len() == 3) {
            CZorVertexArray out = vl;
            out[0] = t[1];
            out[-1] = t[0];
            out.append(t[2]);
            return out;
        }
    }
    CZorVertexArray out;
    out.setNormal(vl.normal());
    for (int i = 0; i < n; ++i) {
        const int j = (i + 1) % n;
        if (!(p == vl[i].end && p == vl[j].start)) {
            out.append(vl[i]);
            continue;
        }
        const CZorVertexArray t = g_vx_fillet(vl[i], vl[j], r, 0);
        if (t.len() != 3) return vl;
        out.append(t[0]);
        out.append(t[2]);
        out.append(t[1]);
        for (int k = j + 1; k < n; ++k) out.append(vl[k]);
        return out;
    }
    return vl;
}

CZorPoint3d g_nm_fillet_mp(const CZorPoint3d& m, double r1, double r2, const CZorPoint3d& a,
                           const CZorPoint3d& b, double k) {
    const double w = g_lot(a, b, m);
    CZorPoint3d f;
    if (!inters(a, b, m, polar(m, w, r1), false, f)) return CZorPoint3d();
    const double d = m.distanceTo(f);
    const double u = g_ang(w - kPi);
    const double q = (r1 - r2) * (r1 - r2) * k + d;
    const double s = std::sqrt(r2 * r2 - q * q);
    return polar(polar(m, angle(b, a), s), u, q);
}

bool g_vl_chamfer(CZorVertexArray& vl, double d, int side) {
    const bool closed = vl.isClosed();
    const CZorVertexArray work = vl;
    const int n = work.len();
    // The turn of the whole is read with the first segment moved behind the last, as the corner
    // walk starts. A closed outline keeps its ring of points that way; an open polyline loses
    // its last end from the ring, so an open single corner reads as without area, clockwise.
    CZorVertexArray turned;
    for (int i = 1; i <= n; ++i) turned.append(work[i % n]);
    int sel = side == 0x7FFFFFFF ? 0 : side;
    if (!g_pl_orient(turned.pts(false, 0.01), CZorVector3d::kZAxis)) sel = -sel;
    CZorVertexArray out;
    out.setNormal(vl.normal());
    if (n == 0) {
        vl = out;
        return false;
    }
    // Corner i lies between segment i and segment i + 1, the last one between the last segment
    // and the first as it was before any trimming.
    CZorVertex prev = work[0];
    for (int i = 0; i < n; ++i) {
        CZorVertex p = prev;
        CZorVertex q = work[(i + 1) % n];
        const CZorPoint3d c = p.end;
        const double w1 = p.wTan(c);
        const double w2 = q.wTan(c);
        const CZorVertexArray circle = chamferCircle(c, d);
        const CZorPoint3dArray onP = circle.intersectWith(CZorVertexArray(p), 0);
        const CZorPoint3dArray onQ = circle.intersectWith(CZorVertexArray(q), 0);
        bool cut = onP.len() > 0 && onQ.len() > 0 && std::fabs(w1 - w2) > 0.001;
        const CZorPoint3d t1 = cut ? g_near_p1(c, onP) : c;
        const CZorPoint3d t2 = cut ? g_near_p1(c, onQ) : c;
        if (cut && sel != 0) {
            const bool ccw = g_pl_orient(CZorPoint3dArray().append(t1).append(c).append(t2),
                                         CZorVector3d::kZAxis);
            cut = sel > 0 ? ccw : !ccw;
        }
        if (cut && !(!closed && i == n - 1)) {
            p.setEndPoint(t1);
            q.setStartPoint(t2);
            out.append(p);
            out.append(CZorVertex(t1, t2, 0.0));
        } else {
            // Uncut, or the wrap from the last to the first segment, which no open polyline has.
            out.append(p);
        }
        prev = q;
    }
    if (closed) {
        CZorVertex first = out[0];
        const CZorPoint3d joint = out[-1].end;
        first.setStartPoint(joint);
        first.start = joint;
        out[0] = first;
    }
    const bool added = out.len() != vl.len();
    out.norm(false);
    vl = out;
    return added;
}

bool g_vll_chamfer(CZorArrayTempl<CZorVertexArray>& vll, double d, int side) {
    for (int i = 0; i < static_cast<int>(vll.len()); ++i) g_vl_chamfer(vll[i], d, side);
    return true;
}

}  // namespace ZOR
